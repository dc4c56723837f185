// The work of the shift windows on many rows. The same on a screen and without one.
#pragma once

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>

#include "bench/banco.h"
#include "shifts/frm_turno.h"
#include "shifts/frm_turnos.h"

namespace zuvi::bench {

/// `n` numbers from 1.
inline std::string Numeros(std::int64_t n) {
  return "(WITH RECURSIVE serie(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM serie WHERE n < " +
         std::to_string(n) + ") SELECT n FROM serie)";
}

/// A shop with that many rows, and what is done in it. `Lugar` is a kind of Banco that knows how to measure.
template <class Lugar>
class Turnos : public Lugar {
 public:
  Turnos() : Lugar(Sqlite(":memory:")) {
    this->Abre();
    for (const char* tabla : {"turnos", "turnoempleado", "empleados", "horarios"})
      this->Base().Ejecuta(std::string("DELETE FROM ") + tabla);
  }

 protected:
  void PonTurnos(std::int64_t n) {
    this->Base().Ejecuta(
        "INSERT INTO turnos (turno, entrada, comida, salida, descanso, regcomida) SELECT 'T' || n, '06:00', "
        "'10:00', '14:00', 'Lunes', '10:30' FROM " +
        Numeros(n));
  }
  template <class Ventana>
  std::shared_ptr<Ventana> Nueva() {
    auto ventana = std::make_shared<Ventana>(this->ElModulo());
    ventana->PonAmbiente(this->NuevoAmbiente());
    return ventana;
  }
  template <class T>
  static T& Busca(Form& ventana, const char* nombre, std::int32_t indice) {
    Value i = indice;
    return dynamic_cast<T&>(*ToObject(ventana.Call(nombre, std::span(&i, 1))));
  }
  static void Exige(ListView& lista, std::int64_t cuantos) {
    if (lista.Items().Count() != cuantos) throw std::runtime_error("rows are missing");
  }
  double Mide(auto&& trabajo) {
    const double antes = this->Ahora();
    trabajo();
    return this->Ahora() - antes;
  }
  /// Opens the window. The time from a query for rows on until the last of them is listed, and that of
  /// drawing them; what else the window does to open is left out where there is a screen.
  double MideDesde(const std::string& consulta, Form& ventana, ListView& lista) {
    double antes = 0;
    this->Oye([&](const std::string& sql) { antes = sql == consulta ? this->Ahora() : antes; },
              [&] { ventana.Show(); });
    const double llenada = this->Listadas() - antes;
    return llenada + Mide([&] { this->Pinta(lista); });
  }
  void Cierra(Form& ventana) {
    ventana.Unload();
    this->ExigeSinAvisos();
  }
};

template <class Lugar>
class Lista final : public Turnos<Lugar> {
 public:
  explicit Lista(std::int64_t n) : n_(n) { this->PonTurnos(n); }
  double Corre() {
    const auto ventana = this->template Nueva<frmTurnos>();
    ListView& lista = this->template Busca<ListView>(*ventana, "lv", 0);
    const double tiempo = this->MideDesde("SELECT * FROM turnos ORDER BY turno", *ventana, lista);
    this->Exige(lista, this->n_);
    this->Cierra(*ventana);
    return tiempo;
  }

 private:
  std::int64_t n_;
};

/// The editor of a shift: half of the employees belong to some shift.
template <class Lugar>
class Empleados : public Turnos<Lugar> {
 public:
  explicit Empleados(std::int64_t n) : n_(n) {
    this->Base().Ejecuta("INSERT INTO empleados (empleado, nombre) SELECT 'E' || n, 'Empleado ' || n FROM " +
                         Numeros(n));
  }

 protected:
  std::shared_ptr<frmTurno> Editor() {
    auto editor = this->template Nueva<frmTurno>();
    editor->PonModo(kAlta);
    return editor;
  }
  /// Opens the editor, which lists so many free employees then.
  double MideCarga(std::int64_t libres) {
    const auto editor = Editor();
    ListView& lista = this->template Busca<ListView>(*editor, "lv", 0);
    const double tiempo = this->MideDesde("SELECT * FROM empleados ORDER BY empleado", *editor, lista);
    this->Exige(lista, libres);
    this->Cierra(*editor);
    return tiempo;
  }
  std::int64_t n_;
};

template <class Lugar>
class LlenaEmpleados final : public Empleados<Lugar> {
 public:
  using Empleados<Lugar>::Empleados;
  double Corre() { return this->MideCarga(this->n_); }
};

template <class Lugar>
class LlenaYRemueve final : public Empleados<Lugar> {
 public:
  explicit LlenaYRemueve(std::int64_t n) : Empleados<Lugar>(n) {
    this->Base().Ejecuta(
        "INSERT INTO turnoempleado (turno, empleado) SELECT 'T', empleado FROM empleados WHERE "
        "CAST(SUBSTR(empleado, 2) AS INTEGER) % 2 = 0");
  }
  double Corre() { return this->MideCarga(this->n_ - this->n_ / 2); }
};

template <class Lugar>
class MueveTodos final : public Empleados<Lugar> {
 public:
  using Empleados<Lugar>::Empleados;
  double Corre() {
    const auto editor = this->Editor();
    editor->Show();
    const double tiempo = this->Mide([&] {
      this->template Busca<Button>(*editor, "cmdButton", 2).Click();
      this->Exige(this->template Busca<ListView>(*editor, "lv", 1), this->n_);
      this->template Busca<Button>(*editor, "cmdButton", 5).Click();
    });
    this->Exige(this->template Busca<ListView>(*editor, "lv", 0), this->n_);
    this->Cierra(*editor);
    return tiempo;
  }
};

}  // namespace zuvi::bench
