// One order editor on the memory host: opened as a host opens it, worked by keyboard, seen by name.
#pragma once

#include <gmock/gmock.h>

#include "orders/frm_op.h"
#include "tests/support/controles.h"
#include "tests/support/taller.h"

namespace zuvi::pruebas {

/// How releasing an order shows in the log, up to its number; and letting go of a window.
inline const std::string kSuelta = "EjecutaSQL(UPDATE Op SET ocupado = 0 WHERE Op = ";
inline const std::string kLibera = "LiberaVentana(frmOp, Ambiente)\n";

/// The caller that opens orders and wants the focus back.
inline ObjectPtr NuevoPadre(Mundo& mundo) {
  return std::make_shared<ObjetoMemoria>(mundo, "Padre",
                                         [&mundo](const std::string& nombre, std::span<Value>) {
                                           mundo.Llama("Padre." + nombre);
                                           return Value();
                                         });
}

struct Mesa {
  Mesa() {
    t.escritorio.SetNow(Date::FromText("2026-03-05 14:07:09"));
    t.mundo.claves = {"almacen.almacen=9", "almacen.almacen=2", "prods.articulo=MESA"};
    t.mundo.tablas["SELECT ubicacion FROM prods WHERE articulo = 'MESA'"] = {{{"ubicacion", "A1"}}};
    t.mundo.tablas["SELECT descrip,unidad,costo_u FROM prods WHERE articulo = 'MESA'"] = {
        {{"descrip", "Mesa de pino "}, {"unidad", "PZA "}, {"costo_u", 80.0}}};
    t.mundo.tablas["SELECT articulo,descrip FROM prods WHERE articulo = 'MESA'"] = {
        {{"articulo", "MESA"}, {"descrip", "Mesa de pino "}}};
    t.mundo.proceso = [](PeticionProceso& p) { p.bandera = false; };
    PonOrden();
  }

  /// Order 120, with some columns changed, and its lines; the next new ones look like it.
  void PonOrden(const Fila& cambios = {}, const Filas& lineas = {}) {
    // A line takes the number as it comes; as a text it cannot be spoiled on the way.
    Fila fila{{"op", ""},
              {"estado", "PE"},
              {"ocupado", std::int16_t{0}},
              {"usuario", "ANA"},
              {"almacen", "9"},
              {"f_emision", Date::FromText("2026-03-01")},
              {"fechaEntrega", Date::FromText("2026-03-20")},
              {"observ", "urge"},
              {"automatico", std::int16_t{1}},
              {"ordencompra", 0.0},
              {"importe", 0.0},
              {"costo", 0.0},
              {"Tipo_doc", "OP"}};
    for (const auto& [nombre, valor] : cambios)
      for (auto& [columna, actual] : fila)
        if (columna == nombre) actual = valor;
    for (std::int32_t op = 500; op < 520; ++op) {
      const std::string numero = Decimal(op == 500 ? 120 : op);
      fila[0].second = numero;
      t.mundo.tablas["SELECT * FROM op WHERE op = " + numero] = {fila};
      t.mundo.tablas["SELECT * FROM op WHERE (((op) = " + numero + "))"] = {fila};
    }
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

  /// Opens by a method of the component; false when there is no window then.
  bool Abre(const char* metodo, std::int32_t op = 120) {
    std::vector<Value> args;
    if (metodo != std::string("NuevaOp")) args.emplace_back(op);
    t.prod->Call(metodo, args);
    const auto& abiertas = t.escritorio.Forms();
    v = abiertas.empty() ? nullptr : std::dynamic_pointer_cast<frmOp>(abiertas.back());
    return v != nullptr;
  }

  // The window at work.
  template <class T>
  T& C(const char* nombre) {
    return Control<T>(*v, nombre);
  }
  TextBox& F(std::int32_t indice) { return Control<TextBox>(*v, "txtFields", indice); }
  CheckBox& Casilla(const char* nombre) { return C<CheckBox>(nombre); }
  Button& Boton(const char* nombre) { return C<Button>(nombre); }
  FlexGrid& Rejilla() { return C<FlexGrid>("fg2"); }
  /// The user confirms and finishes.
  void Finaliza() {
    t.mundo.respuestas = {true};
    F(0).SetFocus();
    v->Press(key::kF5);
  }
  std::vector<std::string> Avisos() { return t.Avisos(); }

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
  static std::string Informe(const std::string& funcion, const std::string& descripcion = "") {
    return "Error occured:\r\nModule: frmOp\r\nFunction: " + funcion + "\r\nDescription: " + descripcion;
  }

  Taller t;
  std::shared_ptr<frmOp> v;
};

/// Reports that a test does not take are a fault.
class Editor : public testing::Test, public Mesa {
 protected:
  ~Editor() override { Cierra(); }

  /// Opens an editor in place of those before. Its first lines are ART71, ART72 and so on.
  void Nuevo(const char* metodo = "ModificaOp", std::int32_t lineas = 0) {
    Cierra();
    Filas filas;
    for (std::int32_t i = 1; i <= lineas; ++i) filas.push_back(Linea(70 + i));
    PonOrden({}, filas);
    ASSERT_TRUE(Abre(metodo));
    t.mundo.bitacora.clear();
  }
  void Cierra() {
    t.mundo.gancho = nullptr;
    t.mundo.formato = nullptr;
    for (const auto abiertas = t.escritorio.Forms(); const auto& ventana : abiertas) ventana->Unload();
    EXPECT_THAT(Avisos(), testing::IsEmpty());
  }

  /// A secondary key of an article.
  void PonClave(const std::string& clave, const std::string& articulo) {
    t.mundo.tablas["SELECT * FROM clavesadd WHERE clave = '" + clave + "'"] = {
        {{"Articulo", articulo}, {"Clave", clave}, {"Dato1", " Caja "}, {"Dato2", Null{}}}};
  }
  /// A line in the entry fields, added by F9 pressed where it says nothing about a field.
  void Agrega(const std::string& articulo, const std::string& cantidad) {
    F(4).SetText(articulo);
    F(5).SetText(cantidad);
    F(6).SetText("2.5");
    F(1).SetText("nota");
    Boton("Command6").SetFocus();
    t.mundo.bitacora.clear();
    v->Press(key::kF9);
  }
  std::string Celda(std::int32_t fila, std::int32_t col) { return Rejilla().TextMatrix(fila, col); }
  /// Name of the control with the focus, as the log shows it.
  std::string Foco() {
    return v->ActiveControl() ? Mundo::Texto(v->ActiveControl()->shared_from_this()) : "";
  }
  static std::string Campo(int indice) { return "txtFields(" + Decimal(indice) + ")"; }
  std::size_t Veces(const std::string& comienzo) const { return t.Lineas(comienzo).size(); }
};

}  // namespace zuvi::pruebas
