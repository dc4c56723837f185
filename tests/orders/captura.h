// The editor with order 120 or a new one, ready to be typed into.
#pragma once

#include <gmock/gmock.h>

#include "tests/orders/editor.h"

namespace zuvi::pruebas {

class Captura : public Editor {
 protected:
  Captura() {
    t.mundo.proceso = [](PeticionProceso& p) { p.bandera = false; };
    t.mundo.tablas["SELECT articulo,descrip FROM prods WHERE articulo = 'MESA'"] = {
        {{"articulo", "MESA"}, {"descrip", "Mesa de pino "}}};
    PonOrden();
    auto nueva = t.mundo.tablas["SELECT * FROM op WHERE op = 120"];
    nueva[0][0].second = std::int32_t{501};
    for (const char* sql : {"SELECT * FROM op WHERE op = 501", "SELECT * FROM op WHERE (((op) = 501))"})
      t.mundo.tablas[sql] = nueva;
  }
  ~Captura() override { Cierra(); }

  /// Opens an editor in place of the one before. Its first lines are ART71, ART72 and so on.
  void AbreCaptura(const char* metodo = "ModificaOp", std::int32_t lineas = 0) {
    Cierra();
    Filas filas;
    for (std::int32_t i = 1; i <= lineas; ++i) filas.push_back(Linea(70 + i));
    PonOrden({}, filas);
    v = Abre(metodo);
    ASSERT_TRUE(v);
    t.mundo.bitacora.clear();
  }
  void Cierra() {
    t.mundo.gancho = nullptr;
    t.mundo.formato = nullptr;
    if (v) v->Unload();
    v.reset();
    t.escritorio.Olvida();
  }

  /// A secondary key of an article.
  void PonClave(const std::string& clave, const std::string& articulo) {
    t.mundo.tablas["SELECT * FROM clavesadd WHERE clave = '" + clave + "'"] = {
        {{"Articulo", articulo}, {"Clave", clave}, {"Dato1", " Caja "}, {"Dato2", Null{}}}};
  }
  TextBox& CajaDeCelda() { return C<TextBox>("txtEdit"); }
  std::string Celda(std::int32_t fila, std::int32_t col) { return Rejilla().TextMatrix(fila, col); }
  /// Name of the control with the focus, as the log shows it.
  std::string Foco() {
    return v->ActiveControl() ? Mundo::Texto(v->ActiveControl()->shared_from_this()) : "";
  }
  /// A line in the entry fields, added by F9 pressed where it says nothing about a field.
  void Agrega(const std::string& articulo, const std::string& cantidad, const std::string& precio = "2.5") {
    F(4).SetText(articulo);
    F(5).SetText(cantidad);
    F(6).SetText(precio);
    F(1).SetText("nota");
    C<Button>("Command6").SetFocus();
    t.mundo.bitacora.clear();
    v->Press(key::kF9);
  }
  std::size_t Veces(const std::string& comienzo) const { return t.Lineas(comienzo).size(); }
};

}  // namespace zuvi::pruebas
