// Closing the editor: through the timer, with the busy mark released, or refused.
#include "tests/orders/editor.h"

namespace zuvi::pruebas {
namespace {

/// The host object that opens orders and wants the focus back.
class Padre final : public Object {
 public:
  void SetFocus() { ++enfocado; }
  const MemberTable* Members() const override {
    static const MemberTable tabla = MemberTable::Of<Padre>().Method<&Padre::SetFocus>("SetFocus");
    return &tabla;
  }
  int enfocado = 0;
};

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
  const auto padre = std::make_shared<Padre>();
  t.prod->PonParent(padre);
  int veces = 0;
  for (const char* metodo : {"NuevaOp", "ModificaOp", "ConsultaOp"}) {
    SCOPED_TRACE(metodo);
    const auto ventana = Abre(metodo);
    EXPECT_EQ(ventana->Call("Parent"), Value(padre));
    Hecho();
    Control<Button>(*ventana, "Command2").Click();
    EXPECT_TRUE(ventana->Closed());
    const bool modificaba = metodo == std::string("ModificaOp");
    EXPECT_EQ(Hecho(), "\n" + Proceso("Op006") + (modificaba ? kSuelta : "") + kLibera);
    EXPECT_EQ(padre->enfocado, ++veces);
  }
}

TEST_P(Cierre, ElRechazoDeLaCargaImpideElPrimerCierre) {
  t.mundo.proceso = [](PeticionProceso& p) {
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

TEST_P(Cierre, ElRechazoAlCerrarDejaLaVentanaAbierta) {
  int rechazos = 1;
  t.mundo.proceso = [&](PeticionProceso& p) {
    // What comes back in the argument does not count, only the member.
    p.bandera = true;
    if (p.clave == "Op006" && rechazos-- > 0) p.objeto->Put("Rechazado", true);
  };
  const auto ventana = Abre("ModificaOp");
  EXPECT_EQ(t.Lineas("PreparaVentana").size(), 1u);
  EXPECT_FALSE(ventana->Unload());
  EXPECT_TRUE(ventana->Unload());
}

TEST_P(Cierre, UnCierreQueFallaSeInformaYCierra) {
  for (const char* falla : {"IniciaProceso(Op006", "EjecutaSQL", "LiberaVentana"}) {
    SCOPED_TRACE(falla);
    const auto ventana = Abre("ModificaOp");
    Falla(falla);
    EXPECT_TRUE(ventana->Unload());
    EXPECT_EQ(t.escritorio.Avisos(), std::vector{Informe("Form_Unload", "se cayó")});
    // Nobody is left to release the order: it is released whatever failed, and the statement tried once.
    EXPECT_EQ(t.Lineas("EjecutaSQL(UPDATE Op SET ocupado = 0").size(), 1u);
    t.mundo.bitacora.clear();
    t.escritorio.Olvida();
    t.mundo.gancho = nullptr;
  }
}

TEST_P(Cierre, NadaQuedaVivo) {
  t.prod->NuevaOp();
  t.escritorio.Forms().front()->Unload();
  const int vivos = t.mundo.vivos;
  for (const char* metodo : {"NuevaOp", "ModificaOp", "ConsultaOp"}) {
    std::weak_ptr<frmOp> ventana = Abre(metodo);
    EXPECT_GT(t.mundo.vivos, vivos);
    ventana.lock()->Unload();
    EXPECT_TRUE(ventana.expired());
    EXPECT_EQ(t.mundo.vivos, vivos);
  }
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
