// Saving an order, finishing and printing it.
#include "tests/orders/editor.h"

namespace zuvi::pruebas {
namespace {

class Guarda : public Editor {
 protected:
  /// Opens and forgets what that did.
  void Abierta(const char* metodo) {
    v = Abre(metodo);
    Hecho();
  }
  void LlenaEncabezado() {
    F(0).SetText("4501");
    C<DatePicker>("DTPicker1").SetValue(Fecha::DesdeTexto("2026-03-02"));
    C<DatePicker>("DTPicker2").SetValue(Fecha::DesdeTexto("2026-03-25"));
    F(14).SetText("9");
    C<RichTextBox>("RichTextBox2").SetText("con cuidado");
  }
  CheckBox& Casilla(const char* nombre) { return C<CheckBox>(nombre); }
  Button& Boton(const char* nombre) { return C<Button>(nombre); }
  void Finaliza() { Boton("Command5").Click(); }
};
ZUVI_AMBOS_ANFITRIONES(Guarda);

const std::string kAlmacenBueno = "ExisteClave(9, almacen, almacen, Conexion)\n";
const std::string kPregunta = "Pregunta(mensaje 759, 2)\n";
const std::string kCierra = "LiberaVentana(frmOp, Ambiente)\n";
const std::string kSuelta = "EjecutaSQL(UPDATE Op SET ocupado = 0 WHERE Op = 120)\n";
const std::string kImprime = "ImprimeReporte(ORDENP, 120, Ambiente, frmOp)\n";

std::string Agrega(const std::string& columna, const std::string& valor) {
  return "AgregaCampo(op, " + columna + ", " + valor + ")\n";
}
std::string AbrePartidas(const std::string& op) {
  return "CursorType(1)\nLockType(3)\nOpen(SELECT * FROM oppart WHERE (((Op)=" + op +
         ")), Conexion, -1, -1, 1)\n";
}
/// The final save of the filled header, from the statement's kind on.
std::string SalvaOp(const std::string& comienzo, const std::string& estado) {
  return "Limpia()\n" + comienzo + Agrega("ocupado", "i2 0") + Agrega("f_emision", "fecha 2026-03-02") +
         Agrega("fechaEntrega", "fecha 2026-03-25") + Agrega("importe", "r8 0") + Agrega("costo", "r8 0") +
         Agrega("almacen", "r8 9") + estado + Agrega("observ", "txt con cuidado") + "UsuarioActual()\n" +
         Agrega("usuario", "txt ADMIN") + Agrega("usufecha", "fecha 2026-03-05") +
         Agrega("usuhora", "txt 14:07:09") + Agrega("ordencompra", "r8 4501") + "Genera(op)\nEjecuta()\n";
}
const std::string kActualiza = "Tipo(UPDATE)\nCondicion(Op = 120)\n";

TEST_P(Guarda, FinalizarGuardaProcesaImprimeYCierra) {
  struct Caso {
    bool pendiente, automatico, imprime;
    std::string estado;
  };
  const std::string confirmada = Agrega("estado", "txt CO"), pendiente = Agrega("estado", "txt PE");
  const Caso casos[] = {{false, false, false, confirmada},
                        {false, true, true, confirmada + Agrega("automatico", "i2 1")},
                        {true, true, false, pendiente},
                        {true, false, true, pendiente}};
  PonOrden({}, {Linea(1), Linea(2)});
  for (const auto& caso : casos) {
    SCOPED_TRACE(caso.estado + (caso.imprime ? "imprime" : ""));
    Abierta("ModificaOp");
    LlenaEncabezado();
    Casilla("Check3").SetValue(caso.pendiente);
    Casilla("Check1").SetValue(caso.automatico);
    Casilla("Check2").SetValue(caso.imprime);
    t.mundo.respuestas = {true};
    Finaliza();
    EXPECT_EQ(Hecho(), "\n" + kAlmacenBueno + (caso.pendiente ? "" : kPregunta) +
                           SalvaOp(kActualiza, caso.estado) + AbrePartidas("120") +
                           (caso.pendiente ? "" : Proceso("OP007")) + (caso.imprime ? kImprime : "") +
                           Proceso("Op006") + kSuelta + kCierra);
    EXPECT_TRUE(v->Closed());
  }
  EXPECT_TRUE(Avisos().empty());
}

TEST_P(Guarda, FinalizarSeDetieneDondeDebe) {
  PonOrden({}, {Linea(1)});
  Abierta("ModificaOp");
  auto& dia = C<DatePicker>("DTPicker1");
  const auto intenta = [&](bool respuesta) {
    t.mundo.respuestas = {respuesta};
    Finaliza();
    EXPECT_TRUE(Boton("Command5").Enabled());
    EXPECT_FALSE(v->Closed());
    return Hecho();
  };
  F(14).SetText(" ");
  EXPECT_EQ(intenta(true), "\nMensaje(mensaje 240, 64, Ambiente)\n");
  EXPECT_TRUE(F(14).HasFocus());
  F(14).SetText("77");
  EXPECT_EQ(intenta(true),
            "\nExisteClave(77, almacen, almacen, Conexion)\nMensaje(mensaje 241, 64, Ambiente)\n");
  F(14).SetText("9");
  EXPECT_EQ(intenta(false), "\n" + kAlmacenBueno + kPregunta);
  for (const char* fecha : {"2026-03-21", "1899-12-31", "2101-01-01"}) {
    dia.SetValue(Fecha::DesdeTexto(fecha));
    EXPECT_EQ(intenta(true), "\n" + kAlmacenBueno + kPregunta + "Mensaje(mensaje 224, 64, Ambiente)\n")
        << fecha;
    EXPECT_TRUE(dia.HasFocus());
  }
  dia.SetValue(Fecha::DesdeTexto("2026-03-20 23:00:00"));
  t.mundo.respuestas = {true};
  Finaliza();
  EXPECT_TRUE(v->Closed());
}

TEST_P(Guarda, SinLineasSeGuardaPendienteYQuedaAbierta) {
  PonOrden();
  for (const bool pendiente : {false, true}) {
    Abierta("ModificaOp");
    LlenaEncabezado();
    Casilla("Check3").SetValue(pendiente);
    Casilla("Check2").SetValue(1);
    t.mundo.respuestas = {true};
    Finaliza();
    EXPECT_EQ(Hecho(), "\n" + kAlmacenBueno +
                           (pendiente ? "" : kPregunta + "Mensaje(mensaje 343, 64, Ambiente)\n") +
                           SalvaOp(kActualiza, Agrega("estado", "txt PE")) + AbrePartidas("120"));
    EXPECT_EQ(Casilla("Check3").Value(), 1);
    EXPECT_FALSE(Boton("Command5").Enabled());
    EXPECT_TRUE(v->Visible());
    // Nor can the key finish it once more.
    F(0).SetFocus();
    v->Press(key::kF5);
    EXPECT_EQ(Hecho(), "\n" + kAlmacenBueno);
    v->Unload();
  }
}

TEST_P(Guarda, UnaOrdenNuevaSinLineasSeInsertaAlFinalizar) {
  Abierta("NuevaOp");
  LlenaEncabezado();
  t.mundo.respuestas = {true};
  Finaliza();
  EXPECT_EQ(Hecho(),
            "\n" + kAlmacenBueno + kPregunta + "Mensaje(mensaje 343, 64, Ambiente)\n" +
                SalvaOp("SiguienteFolio(Op, Conexion, 0, Nothing)\nTipo(INSERT)\n" + Agrega("op", "i4 501"),
                        Agrega("estado", "txt PE")) +
                AbrePartidas("501"));
  EXPECT_EQ(v->Op(), 501);
  // Neither was it marked busy nor is it released.
  v->Unload();
  EXPECT_EQ(Hecho(), "\n" + Proceso("Op006") + kCierra);
}

TEST_P(Guarda, LasLineasSeCuentanHastaLaPrimeraEnBlanco) {
  PonOrden({}, {Linea(1), Linea(2)});
  Abierta("ModificaOp");
  Rejilla().SetTextMatrix(1, 0, " ");
  t.mundo.respuestas = {true};
  Finaliza();
  EXPECT_EQ(t.Lineas("Mensaje(mensaje 343").size(), 1u);
  // There are stored lines all the same: the order goes its way, as pending.
  EXPECT_TRUE(t.Lineas("IniciaProceso(OP007").empty());
  EXPECT_TRUE(v->Closed());
}

TEST_P(Guarda, EnConsultaSoloSeGeneranCodigosYSeCierra) {
  PonOrden({{"estado", "CO"}}, {Linea(1)});
  Abierta("ConsultaOp");
  Boton("Command1").Click();
  EXPECT_EQ(Hecho(), "\n" + Proceso("OP007"));
  Boton("Command5").SetEnabled(true);
  Finaliza();
  EXPECT_EQ(Hecho(), "\n" + kAlmacenBueno + Proceso("Op006") + kCierra);
  EXPECT_TRUE(v->Closed());
}

TEST_P(Guarda, LaPrimeraLineaCreaElEncabezadoYLasDemasNo) {
  Fila creada{{"op", std::int32_t{501}},
              {"almacen", "9"},
              {"f_emision", Fecha::DesdeTexto("2026-03-02")},
              {"fechaEntrega", Fecha::DesdeTexto("2026-03-25")},
              {"observ", "con cuidado"},
              {"automatico", std::int16_t{0}},
              {"ordencompra", Null{}},
              {"Tipo_doc", Null{}}};
  for (const char* sql : {"SELECT * FROM op WHERE op = 501", "SELECT * FROM op WHERE (((op) = 501))"})
    t.mundo.tablas[sql] = {creada};
  t.mundo.proceso = [](PeticionProceso& p) { p.bandera = false; };
  Abierta("NuevaOp");
  LlenaEncabezado();
  Casilla("Check1").SetValue(1);
  const auto agrega_linea = [&] {
    F(4).SetText("MESA");
    F(5).SetText("3");
    Boton("Command6").Click();
  };
  agrega_linea();
  const std::string hecho = Hecho();
  const auto desde = hecho.find("Limpia()");
  ASSERT_NE(desde, std::string::npos) << hecho;
  const std::string lee = "Consulta(SELECT * FROM op WHERE op = 501)\n";
  EXPECT_EQ(hecho.substr(desde, hecho.find(lee) - desde),
            "Limpia()\nSiguienteFolio(Op, Conexion, 0, Nothing)\nTipo(INSERT)\n" + Agrega("op", "i4 501") +
                Agrega("ocupado", "i2 1") + Agrega("f_emision", "fecha 2026-03-02") +
                Agrega("importe", "r8 0") + Agrega("costo", "i2 0") + Agrega("almacen", "txt 9") +
                Agrega("estado", "txt PE") + Agrega("observ", "txt con cuidado") + "UsuarioActual()\n" +
                Agrega("usuario", "txt ADMIN") + Agrega("usufecha", "fecha 2026-03-05") +
                Agrega("usuhora", "txt 14:07:09") + Agrega("fechaEntrega", "fecha 2026-03-25") +
                Agrega("ordencompra", "r8 4501") + "Condicion(op = 501)\nGenera(op)\nEjecuta()\n");
  EXPECT_EQ(v->Modo(), "MODIFICACION");
  EXPECT_EQ(v->Caption(), "Op: 501");
  EXPECT_EQ(v->Op(), 501);
  EXPECT_EQ(Casilla("Check1").Value(), 1);

  agrega_linea();
  EXPECT_EQ(Hecho().find("SiguienteFolio(Op,"), std::string::npos);
  EXPECT_TRUE(Avisos().empty());
  v->Unload();
  EXPECT_NE(Hecho().find("EjecutaSQL(UPDATE Op SET ocupado = 0 WHERE Op = 501)"), std::string::npos);
}

TEST_P(Guarda, UnaCeldaEditadaEscribeSuColumna) {
  PonOrden({}, {Linea(31), Linea(32)});
  Abierta("ModificaOp");
  auto& rejilla = Rejilla();
  auto& editor = C<TextBox>("txtEdit");
  // The editor is opened by code, as no user can in most columns.
  const auto escribe = [&](std::int32_t col, const char* texto) {
    rejilla.MoveTo(2, col);
    editor.SetVisible(true);
    editor.SetText(texto);
    rejilla.MoveTo(1, col);
    return Hecho();
  };
  const std::string comienzo = "\nLimpia()\nTipo(UPDATE)\nCondicion(id_entrada = 32)\n";
  const std::string fin = "Genera(oppart)\nEjecuta()\n";
  const auto con = [](const char* columna, const char* valor) {
    return "AgregaCampo(oppart, " + std::string(columna) + ", " + valor + ")\n";
  };
  EXPECT_EQ(escribe(0, "X"), comienzo + fin);
  EXPECT_EQ(escribe(1, "7.5"), comienzo + con("cantidad", "r8 7.5") + fin);
  EXPECT_EQ(escribe(2, "8"), comienzo + con("cantidad", "r8 8") + fin);
  EXPECT_EQ(escribe(3, "9"), comienzo + fin);
  EXPECT_EQ(escribe(4, "nota"), comienzo + fin);
  EXPECT_EQ(escribe(6, "caja"), comienzo + con("observ", "txt caja") + fin);
  EXPECT_EQ(escribe(7, "1"), comienzo + fin);
  // The key's own column: the new text is the key by then.
  EXPECT_EQ(escribe(5, "16"),
            "\nLimpia()\nTipo(UPDATE)\nCondicion(id_entrada = 16)\n" + con("impuesto", "r8 16") + fin);
  EXPECT_TRUE(Avisos().empty());
}

}  // namespace
}  // namespace zuvi::pruebas
