// Saving an order, finishing and printing it.
#include "tests/orders/editor.h"

namespace zuvi::pruebas {
namespace {

class Guarda : public Editor {
 protected:
  void LlenaEncabezado() {
    F(0).SetText("4501");
    C<DatePicker>("DTPicker1").SetValue(Date::FromText("2026-03-02"));
    C<DatePicker>("DTPicker2").SetValue(Date::FromText("2026-03-25"));
    F(14).SetText("9");
    C<RichTextBox>("RichTextBox2").SetText("con cuidado");
    Casilla("Check1").SetValue(0);
  }
};

const std::string kAlmacenBueno = "ExisteClave(9, almacen, almacen, Conexion)\n";
const std::string kPregunta = "Pregunta(mensaje 759, 2)\n";
const std::string kSinLineas = "Mensaje(mensaje 343, 64, Ambiente)\n";

std::string Columna(const std::string& columna, const std::string& valor) {
  return "AgregaCampo(op, " + columna + ", " + valor + ")\n";
}
/// The final save of the filled header, from the statement's kind on, and the lines opened after it.
std::string SalvaOp(const std::string& op, const std::string& estado, const std::string& comienzo = "") {
  return "Limpia()\n" + (comienzo.empty() ? "Tipo(UPDATE)\nCondicion(Op = " + op + ")\n" : comienzo) +
         Columna("ocupado", "i2 0") + Columna("f_emision", "fecha 2026-03-02") +
         Columna("fechaEntrega", "fecha 2026-03-25") + Columna("importe", "r8 0") + Columna("costo", "r8 0") +
         Columna("almacen", "r8 9") + estado + Columna("observ", "txt con cuidado") + "UsuarioActual()\n" +
         Columna("usuario", "txt ADMIN") + Columna("usufecha", "fecha 2026-03-05") +
         Columna("usuhora", "txt 14:07:09") + Columna("ordencompra", "r8 4501") +
         "Genera(op)\nEjecuta()\nCursorType(1)\nLockType(3)\nOpen(SELECT * FROM oppart WHERE (((Op)=" + op +
         ")), Conexion, -1, -1, 1)\n";
}
const std::string kConfirmada = Columna("estado", "txt CO"), kPendiente = Columna("estado", "txt PE");

TEST_F(Guarda, FinalizarGuardaProcesaImprimeYCierra) {
  using Caso = std::tuple<bool, bool, bool>;
  for (const auto& [pendiente, automatico, imprime] :
       {Caso{false, false, false}, Caso{false, true, true}, Caso{true, true, true}}) {
    const std::string estado =
        pendiente ? kPendiente : kConfirmada + (automatico ? Columna("automatico", "i2 1") : "");
    SCOPED_TRACE(estado);
    Nuevo("ModificaOp", 2);
    LlenaEncabezado();
    Casilla("Check1").SetValue(automatico);
    // The captions of these two boxes are labels that can be clicked.
    if (pendiente) Control<Label>(*v, "Label10", 1).Click();
    if (imprime) Control<Label>(*v, "Label10", 2).Click();
    Finaliza();
    EXPECT_EQ(Hecho(), "\n" + kAlmacenBueno + (pendiente ? "" : kPregunta) + SalvaOp("120", estado) +
                           (pendiente ? "" : Proceso("OP007")) +
                           (imprime ? "ImprimeReporte(ORDENP, 120, Ambiente, frmOp)\n" : "") +
                           Proceso("Op006") + kSuelta + "120)\n" + kLibera);
    EXPECT_TRUE(v->Closed());
  }
}

TEST_F(Guarda, FinalizarSeDetieneDondeDebe) {
  Nuevo("ModificaOp", 1);
  auto& dia = C<DatePicker>("DTPicker1");
  const auto intenta = [&](bool respuesta) {
    t.mundo.respuestas = {respuesta};
    Boton("Command5").Click();
    EXPECT_TRUE(Boton("Command5").Enabled());
    return Hecho();
  };
  F(14).SetText(" ");
  EXPECT_EQ(intenta(true), "\nMensaje(mensaje 240, 64, Ambiente)\n");
  EXPECT_EQ(Foco(), Campo(14));
  F(14).SetText("77");
  EXPECT_EQ(intenta(true),
            "\nExisteClave(77, almacen, almacen, Conexion)\nMensaje(mensaje 241, 64, Ambiente)\n");
  F(14).SetText("9");
  EXPECT_EQ(intenta(false), "\n" + kAlmacenBueno + kPregunta);
  for (const char* fecha : {"2026-03-21", "1899-12-31", "2101-01-01"}) {
    dia.SetValue(Date::FromText(fecha));
    EXPECT_EQ(intenta(true), "\n" + kAlmacenBueno + kPregunta + "Mensaje(mensaje 224, 64, Ambiente)\n")
        << fecha;
    EXPECT_TRUE(dia.HasFocus());
  }
  dia.SetValue(Date::FromText("2026-03-20 23:00:00"));
  F(0).SetText("12abc");
  EXPECT_EQ(intenta(true), "\n" + kAlmacenBueno + kPregunta);
  EXPECT_EQ(Avisos(), std::vector{Informe("Command5_Click", "\"12abc\" no es un número")});
  F(0).SetText("");
  // Shown lines count up to the first blank one; the order goes its way as pending, for some are stored.
  Rejilla().SetTextMatrix(1, 0, " ");
  Rejilla().SetTextMatrix(2, 0, "MESA");
  Finaliza();
  EXPECT_EQ(Veces("Mensaje(mensaje 343"), 1u);
  EXPECT_EQ(Veces("IniciaProceso(OP007"), 0u);
  EXPECT_TRUE(v->Closed());
}

TEST_F(Guarda, SinLineasSeGuardaPendienteYQuedaAbierta) {
  for (const auto& [metodo, pendiente] :
       {std::pair("ModificaOp", false), std::pair("ModificaOp", true), std::pair("NuevaOp", false)}) {
    Nuevo(metodo);
    const bool alta = v->Modo() == "ALTA";
    LlenaEncabezado();
    Casilla("Check3").SetValue(pendiente);
    Casilla("Check2").SetValue(1);
    Finaliza();
    EXPECT_EQ(Hecho(), "\n" + kAlmacenBueno + (pendiente ? "" : kPregunta + kSinLineas) +
                           (alta ? SalvaOp("501", kPendiente,
                                           "SiguienteFolio(Op, Conexion, 0, Nothing)\nTipo(INSERT)\n" +
                                               Columna("op", "i4 501"))
                                 : SalvaOp("120", kPendiente)));
    EXPECT_EQ(Casilla("Check3").Value(), 1);
    EXPECT_TRUE(v->Visible());
    // Nor can the key finish it once more.
    Finaliza();
    EXPECT_EQ(Hecho(), "\n" + kAlmacenBueno);
    // A new one was not marked busy.
    v->Unload();
    EXPECT_EQ(Hecho(), "\n" + Proceso("Op006") + (alta ? "" : kSuelta + "120)\n") + kLibera);
  }
}

TEST_F(Guarda, FinalizarConservaElDineroYSumaElCosto) {
  PonOrden({{"importe", 345.5}, {"costo", 1000.25}}, {Linea(71)});
  const auto agrega = [this](const char* cantidad) {
    F(4).SetFocus();
    v->Type("MESA");
    v->Press(key::kEnter);
    v->Type(cantidad);
    v->Press(key::kEnter);
  };
  // What becomes of the stored line and of two more at 80 each, and the cost then.
  const std::pair<std::function<void()>, double> casos[] = {
      {[] {}, 1000.25},
      {[&] { agrega("3"), agrega("0.1"); }, 1248.25},
      {[&] { agrega("3"), agrega("0.1"), Rejilla().MoveTo(2, 1), Rejilla().SetFocus(), v->Type("5"); },
       1408.25},
      {[&] {
         agrega("3"), agrega("0.1"), Rejilla().SetFocus();
         for (const int fila : {2, 2}) Rejilla().MoveTo(fila, 1), v->Press(key::kDelete);
       },
       1000.25},
      // What the stored line costs is not known here.
      {[&] { Rejilla().MoveTo(1, 1), Rejilla().SetFocus(), v->Type("5"); }, 1000.25},
      {[&] { Rejilla().SetFocus(), v->Press(key::kDelete); }, 1000.25},
      // An article that was not looked up adds nothing.
      {[&] { Agrega("MESA", "3"); }, 1000.25},
  };
  for (const auto& [hace, costo] : casos) {
    SCOPED_TRACE(&hace - &casos[0].first);
    Cierra();
    ASSERT_TRUE(Abre("ModificaOp"));
    hace();
    Hecho();
    Finaliza();
    EXPECT_EQ(Veces(Columna("importe", "r8 345.5").substr(0, 34)), 1u);
    EXPECT_THAT(t.mundo.bitacora, testing::Contains("AgregaCampo(op, costo, r8 " + NumberText(costo) + ")"));
    EXPECT_TRUE(v->Closed());
  }
}

TEST_F(Guarda, LaPrimeraLineaCreaElEncabezadoYConservaLaCasilla) {
  Nuevo("NuevaOp");
  PonOrden({{"automatico", Null{}}, {"ordencompra", Null{}}});
  Casilla("Check1").SetValue(1);
  Agrega("MESA", "3");
  EXPECT_EQ(Veces("AgregaCampo(op, ocupado, i2 1)"), 1u);
  EXPECT_EQ(v->Modo() + " " + v->Caption(), "MODIFICACION Op: 501");
  EXPECT_EQ(Casilla("Check1").Value(), 1);
}

}  // namespace
}  // namespace zuvi::pruebas
