// One order editor on the memory host: opened as a host opens it, worked by keyboard, seen by name.
#pragma once

#include <gtest/gtest.h>

#include "orders/frm_op.h"
#include "tests/support/controles.h"
#include "tests/support/taller.h"

namespace zuvi::pruebas {

/// The caller that opens orders and wants the focus back.
class Padre final : public EnMemoria<Object> {
 public:
  explicit Padre(Mundo& mundo) : EnMemoria(mundo, "Padre") {}
  void SetFocus() { mundo_.Llama("Padre.SetFocus"); }
  const MemberTable* Members() const override {
    static const MemberTable tabla = MemberTable::Of<Padre>().Method<&Padre::SetFocus>("SetFocus");
    return &tabla;
  }
};

/// With true the host can only be called by name.
struct Mesa {
  explicit Mesa(bool por_nombre) : t(por_nombre) {
    t.escritorio.SetNow(Fecha::DesdeTexto("2026-03-05 14:07:09"));
    t.mundo.claves = {"almacen.almacen=9", "almacen.almacen=2", "prods.articulo=MESA"};
    t.mundo.tablas["SELECT ubicacion FROM prods WHERE articulo = 'MESA'"] = {{{"ubicacion", "A1"}}};
    t.mundo.tablas["SELECT descrip,unidad,costo_u FROM prods WHERE articulo = 'MESA'"] = {
        {{"descrip", "Mesa de pino "}, {"unidad", "PZA "}, {"costo_u", 80.0}}};
  }

  /// Order 120, with some columns changed, and its lines.
  void PonOrden(const Fila& cambios = {}, const Filas& lineas = {}) {
    Fila fila{{"op", std::int32_t{120}},
              {"estado", "PE"},
              {"ocupado", std::int16_t{0}},
              {"usuario", "ANA"},
              {"almacen", "9"},
              {"f_emision", Fecha::DesdeTexto("2026-03-01")},
              {"fechaEntrega", Fecha::DesdeTexto("2026-03-20")},
              {"observ", "urge"},
              {"automatico", std::int16_t{1}},
              {"ordencompra", 0.0},
              {"Tipo_doc", "OP"}};
    for (const auto& [nombre, valor] : cambios)
      for (auto& [columna, actual] : fila)
        if (columna == nombre) actual = valor;
    for (const char* sql : {"SELECT * FROM op WHERE op = 120", "SELECT * FROM op WHERE (((op) = 120))"})
      t.mundo.tablas[sql] = {fila};
    for (const char* sql :
         {"SELECT * FROM oppart WHERE Op = (120)", "SELECT * FROM oppart WHERE (((Op)=120))"})
      t.mundo.tablas[sql] = lineas;
  }
  static Fila Linea(std::int32_t id, const Value& observ = "obs") {
    return {{"Articulo", "ART" + Decimal(id)},
            {"Cantidad", 2.5},
            {"Precio", 10.0},
            {"Observ", observ},
            {"id_entrada", id}};
  }

  /// The window that a method of the component has opened; null for none.
  std::shared_ptr<frmOp> Abre(const char* metodo, std::int32_t op = 120) {
    std::vector<Value> args;
    if (metodo != std::string("NuevaOp")) args.emplace_back(op);
    t.prod->Call(metodo, args);
    const auto& abiertas = t.escritorio.Forms();
    return abiertas.empty() ? nullptr : std::dynamic_pointer_cast<frmOp>(abiertas.back());
  }

  static TextBox& Campo(Form& ventana, std::int32_t indice) {
    return Control<TextBox>(ventana, "txtFields", indice);
  }

  // The window at work.
  TextBox& F(std::int32_t indice) { return Campo(*v, indice); }
  template <class T>
  T& C(const char* nombre) {
    return Control<T>(*v, nombre);
  }
  FlexGrid& Rejilla() { return C<FlexGrid>("fg2"); }
  std::vector<std::string> Avisos() {
    auto avisos = t.escritorio.Avisos();
    t.escritorio.Olvida();
    return avisos;
  }

  /// What the component called since the last time, one call a line. Reading the connection, fetching a
  /// message and creating an object are left out.
  std::string Hecho() {
    std::string texto = "\n";
    for (const auto& linea : std::exchange(t.mundo.bitacora, {}))
      if (!linea.starts_with("Ambiente.Conexion") && !linea.starts_with("TraeMensaje") &&
          !linea.starts_with("Crea("))
        texto += linea + "\n";
    return texto;
  }
  /// How a process call of the editor shows in the log.
  static std::string Proceso(const std::string& clave) {
    return "IniciaProceso(" + clave + ", frmOp, Ambiente, , Nothing, True, 0, , Null, , Nothing)\n";
  }
  static std::string Informe(const std::string& funcion, const std::string& descripcion) {
    return "Error occured:\r\nModule: frmOp\r\nFunction: " + funcion + "\r\nDescription: " + descripcion;
  }
  /// Every host call that logs this line, or begins so, fails.
  void Falla(const std::string& comienzo) {
    t.mundo.gancho = [comienzo](const std::string& linea) {
      if (linea.starts_with(comienzo)) throw HostError("se cayó");
    };
  }

  Taller t;
  std::shared_ptr<frmOp> v;
};

class Editor : public testing::TestWithParam<bool>, public Mesa {
 protected:
  Editor() : Mesa(GetParam()) {}
};

}  // namespace zuvi::pruebas
