// Closing the editor: through the timer, with the busy mark released, or refused.
#include "tests/orders/editor.h"

namespace zuvi::pruebas {
namespace {

class Cierre : public Editor {
 protected:
  Cierre() { PonOrden(); }
};
ZUVI_AMBOS_ANFITRIONES(Cierre);

const std::string kLibera = "LiberaVentana(frmOp, Ambiente)\n";
const std::string kSuelta = "EjecutaSQL(UPDATE Op SET ocupado = 0 WHERE Op = 120)\n";

TEST_P(Cierre, DesdeLaBarraDeTituloCierraElTemporizador) {
  const auto ventana = Abre("ModificaOp");
  Hecho();
  EXPECT_FALSE(ventana->Unload(UnloadMode::TitleBar));
  EXPECT_EQ(Hecho(), "\n");
  t.escritorio.Advance(9);
  EXPECT_FALSE(ventana->Closed());
  t.escritorio.Advance(1);
  EXPECT_TRUE(ventana->Closed());
  EXPECT_EQ(Hecho(), "\n" + Proceso("Op006") + kSuelta + kLibera);
}

TEST_P(Cierre, CadaModoSueltaLoSuyoYDevuelveElFoco) {
  const auto padre = std::make_shared<Padre>(t.mundo);
  t.prod->PonParent(padre);
  for (const char* metodo : {"NuevaOp", "ModificaOp", "ConsultaOp"}) {
    SCOPED_TRACE(metodo);
    const auto ventana = Abre(metodo);
    EXPECT_EQ(ventana->Call("Parent"), Value(padre));
    Hecho();
    Control<Button>(*ventana, "Command2").Click();
    EXPECT_TRUE(ventana->Closed());
    const bool modificaba = metodo == std::string("ModificaOp");
    EXPECT_EQ(Hecho(),
              "\n" + Proceso("Op006") + (modificaba ? kSuelta : "") + "Padre.SetFocus()\n" + kLibera);
  }
}

TEST_P(Cierre, ElRechazoDeLaCargaImpideElPrimerCierre) {
  t.mundo.proceso = [](PeticionProceso& p) {
    // What comes back in the argument does not count, only the member.
    p.bandera = true;
    if (p.clave == "Op001") p.objeto->Put("Rechazado", true);
  };
  const auto ventana = Abre("ModificaOp");
  EXPECT_TRUE(t.Lineas("PreparaVentana").empty());
  EXPECT_TRUE(ventana->Rechazado());
  EXPECT_FALSE(ventana->Unload());
  EXPECT_FALSE(ventana->Rechazado());
  EXPECT_TRUE(ventana->Visible());
  EXPECT_TRUE(t.Lineas("EjecutaSQL").empty());
  EXPECT_TRUE(ventana->Unload());

  // The title bar tries once per click; the timer does not go on by itself.
  const auto otra = Abre("ModificaOp");
  t.mundo.bitacora.clear();
  otra->Unload(UnloadMode::TitleBar);
  t.escritorio.Advance(100);
  EXPECT_FALSE(otra->Closed());
  EXPECT_EQ(t.Lineas("IniciaProceso(Op006").size(), 1u);
  otra->Unload(UnloadMode::TitleBar);
  t.escritorio.Advance(10);
  EXPECT_TRUE(otra->Closed());
}

TEST_P(Cierre, LosRotulosMuevenSuCasilla) {
  const auto ventana = Abre("ModificaOp");
  auto& pendiente = Control<CheckBox>(*ventana, "Check3");
  auto& imprime = Control<CheckBox>(*ventana, "Check2");
  const auto pulsa = [&](std::int32_t rotulo) { Control<Label>(*ventana, "Label10", rotulo).Click(); };
  pulsa(1);
  EXPECT_EQ(std::pair(pendiente.Value(), imprime.Value()), std::pair(std::int16_t{1}, std::int16_t{0}));
  pulsa(2);
  pulsa(1);
  pulsa(0);
  EXPECT_EQ(std::pair(pendiente.Value(), imprime.Value()), std::pair(std::int16_t{0}, std::int16_t{1}));
  imprime.SetValue(2);
  pulsa(2);
  EXPECT_EQ(imprime.Value(), 1);
  imprime.SetEnabled(false);
  pulsa(2);
  EXPECT_EQ(imprime.Value(), 1);
}

}  // namespace
}  // namespace zuvi::pruebas
