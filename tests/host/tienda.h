// A shop for tests: the host on a fresh database, the component on top of it, and short words to set the
// stage and to read what came of it.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include "component/produccion.h"
#include "host/anfitrion/anfitrion.h"
#include "host/anfitrion/interaccion_respuestas.h"
#include "host/services/fabrica_anfitrion.h"
#include "host/shop/esquema.h"
#include "host/system/pila.h"
#include "tests/support/controles.h"
#include "tests/support/errores.h"
#include "tests/support/headless_desktop.h"
#include "toolkit/text_box.h"

namespace zuvi::host {

using pruebas::Control;
using pruebas::ErrorDe;

/// The server that ZUVI_MARIADB names; "" for none.
inline std::string Servidor() {
  const char* servidor = std::getenv("ZUVI_MARIADB");
  return servidor ? servidor : "";
}

/// Databases that the cases run on: SQLite in memory, and the server.
inline std::vector<std::string> Bases() {
  return Servidor().empty() ? std::vector<std::string>{":memory:"}
                            : std::vector<std::string>{":memory:", Servidor()};
}

/// A host on this database, for one user.
inline std::shared_ptr<Anfitrion> AnfitrionEn(const std::string& base, const std::string& usuario = "ADMIN",
                                              const std::string& respuestas = "") {
  Opciones opciones;
  PonBase(opciones, base);
  opciones.ruta = testing::TempDir() + "zuvi_tienda";
  opciones.reportes = {std::getenv("ZUVI_REPORTES")};
  opciones.usuario = usuario;
  opciones.crea_archivo = true;
  return std::make_shared<Anfitrion>(opciones, std::make_unique<RespuestasInteraccion>(respuestas));
}

struct Parte {
  std::string componente;
  double cantidad;
  std::int32_t almacen;
};

/// The same host with the example shop as it was made, whatever the tests before have left.
inline std::shared_ptr<Anfitrion> Preparado(std::shared_ptr<Anfitrion> anfitrion) {
  if (anfitrion->ExaminaBase().estado == EstadoEsquema::Falta)
    anfitrion->CreaBase(Contenido::Tienda);
  else
    anfitrion->RehaceTienda();
  return anfitrion;
}

class Tienda {
 public:
  explicit Tienda(const std::string& base, const std::string& respuestas = "")
      : Tienda(Preparado(AnfitrionEn(base, "ADMIN", respuestas))) {}
  /// On what the host's database holds.
  explicit Tienda(std::shared_ptr<Anfitrion> en) : anfitrion(std::move(en)) {
    Base();
    produccion->PonAmbiente(fabrica.Crea(Ambiente::kProgId));
  }

  BaseDatos& Base() { return *anfitrion->Base(); }
  std::string Literal(const std::string& texto) { return host::Literal(Base().GetEngine(), texto); }
  void Prod(const std::string& articulo, double costo, std::int32_t kit = 0) {
    InsertaFilas(Base(), "prods", "(articulo, costo, kit)", {{articulo, costo, kit}});
  }
  void Kit(const std::string& articulo, double minimo, const std::vector<Parte>& partes) {
    InsertaFilas(Base(), "componen", "(articulo, Minimo)", {{articulo, minimo}});
    std::vector<std::vector<Value>> filas;
    for (const Parte& p : partes)
      filas.push_back(
          {articulo, static_cast<std::int32_t>(filas.size()), p.componente, p.cantidad, p.almacen});
    InsertaFilas(Base(), "comppart", "(articulo, renglon, Componente, Cantidad, Almacen)", filas);
  }
  double Numero(const std::string& sql) {
    const Value valor = Base().Consulta(sql)->Campo(0);
    return valor.IsNull() ? 0 : ToNumber(valor);
  }
  /// Rows of a query, one text each, columns separated by blanks.
  std::vector<std::string> Filas(const std::string& sql, std::int32_t columnas) {
    std::vector<std::string> filas;
    for (const auto r = Base().Consulta(sql); !r->Eof(); r->MoveNext()) {
      std::string fila;
      for (std::int32_t i = 0; i < columnas; ++i)
        fila += (i ? " " : "") + (r->Campo(i).IsNull() ? "NULL" : ToText(r->Campo(i)));
      filas.push_back(fila);
    }
    return filas;
  }
  double UltimoMovimiento() { return Numero("SELECT MAX(id) FROM movimientos"); }
  double ValorTotal() { return Numero("SELECT SUM(valor) FROM existencias"); }
  template <class T>
  std::shared_ptr<T> Nuevo() {
    return fabrica.Nuevo<T>();
  }

  std::shared_ptr<Anfitrion> anfitrion;
  FabricaAnfitrion fabrica{anfitrion};
  HeadlessDesktop escritorio;
  Modulo modulo{fabrica, escritorio, PilaCasiAgotada};
  std::shared_ptr<Produccion> produccion = std::make_shared<Produccion>(modulo);
};

class ConTienda : public testing::TestWithParam<std::string> {
 protected:
  Tienda tienda{GetParam()};
};

/// A user who goes on working while the host is at it: what he does between two pieces of the work, and
/// whether he ends it.
class Manos : public Interaccion {
 public:
  explicit Manos(std::function<bool()> hace) : hace_(std::move(hace)) {}
  void Mensaje(const std::string&, EstiloMensaje) override {}
  bool Pregunta(const std::string&) override { return true; }
  std::unique_ptr<Progreso> AbreProgreso(std::int32_t, const std::string&, const std::string&) override {
    return std::make_unique<ProgresoMudo>();
  }
  bool Cancelado() override { return cancelado_; }
  void NuevaOperacion() override { cancelado_ = false; }
  bool AtiendeVentanas() override {
    cancelado_ = !hace_();
    return true;
  }

 private:
  std::function<bool()> hace_;
  bool cancelado_ = false;
};

/// A text box of nobody, in a window of its own.
struct Destino {
  explicit Destino(Desktop& escritorio, const std::string& texto = "", const std::string& etiqueta = "")
      : ventana(std::make_shared<Form>(escritorio, "frmDestino", nullptr)),
        caja(ventana->Add<TextBox>("caja")) {
    caja->SetText(texto);
    caja->SetTag(etiqueta);
  }
  std::shared_ptr<Form> ventana;
  std::shared_ptr<TextBox> caja;
};

}  // namespace zuvi::host

/// Runs the tests of a suite on every database.
#define ZUVI_EN_CADA_BASE(suite)                                     \
  INSTANTIATE_TEST_SUITE_P(Bases, suite, testing::ValuesIn(Bases()), \
                           [](const auto& info) { return info.index ? "MariaDb" : "Sqlite"; })
