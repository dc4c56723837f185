// Every event may close the window, and with the desktop letting go of it the window and its controls are
// gone before the event's own code has ended. Run with the address sanitizer this finds whoever goes on using
// them.
#include "tests/toolkit/ventana.h"

namespace zuvi::pruebas {
namespace {

struct Caso {
  const char* suceso;
  void (*accion)(Ventana& ventana);
};

const Caso kCasos[] = {
    {"Load", nullptr},
    {"Paint", nullptr},
    {"a.GotFocus", nullptr},
    {"KeyDown", [](Ventana& v) { v.Type("x"); }},
    {"a.KeyDown", [](Ventana& v) { v.Type("x"); }},
    {"a.KeyPress", [](Ventana& v) { v.Type("xyz"); }},
    {"a.Change", [](Ventana& v) { v.Type("xyz"); }},
    {"a.KeyUp", [](Ventana& v) { v.Type("xyz"); }},
    {"a.KeyPress", [](Ventana& v) { v.Press(key::kEnter); }},
    {"a.Change", [](Ventana& v) { v.a->SetText("otro"); }},
    {"a.Change", [](Ventana& v) { v.a->UserEdited("pegado", 6, 0); }},
    {"a.LostFocus", [](Ventana& v) { v.Press(key::kTab); }},
    {"b.GotFocus", [](Ventana& v) { v.Press(key::kTab); }},
    {"a.LostFocus", [](Ventana& v) { v.boton->Click(); }},
    {"a.LostFocus", [](Ventana& v) { v.a->SetEnabled(false); }},
    {"a.LostFocus", [](Ventana& v) { v.a->SetVisible(false); }},
    {"boton.GotFocus", [](Ventana& v) { v.Mnemonic(u'h'); }},
    {"boton.Click", [](Ventana& v) { v.Press('H', shift::kAlt); }},
    {"boton.Click",
     [](Ventana& v) {
       v.SetDefaultButton(v.boton.get());
       v.Press(key::kEnter);
     }},
    {"casilla.Click", [](Ventana& v) { v.Mnemonic(u'ñ'); }},
    {"casilla.Click", [](Ventana& v) { v.casilla->SetValue(2); }},
    {"etiqueta.Click", [](Ventana& v) { v.etiqueta->Click(); }},
    {"etiqueta.DblClick", [](Ventana& v) { v.etiqueta->DblClick(); }},
    {"combo.Click", [](Ventana& v) { v.combo->UserChose(1); }},
    {"combo.Change", [](Ventana& v) { v.combo->UserTyped("Mes"); }},
    {"fecha.Change", [](Ventana& v) { v.fecha->DefaultKey(key::kUp, 0); }},
    {"mes.DateClick", [](Ventana& v) { v.mes->DefaultKey(key::kRight, 0); }},
    {"lista.ItemClick", [](Ventana& v) { v.lista->UserSelected(2); }},
    {"rejilla.LeaveCell", [](Ventana& v) { v.rejilla->DefaultKey(key::kDown, 0); }},
    {"rejilla.RowColChange", [](Ventana& v) { v.rejilla->UserClicked(5, 1); }},
    {"rejilla.Scroll", [](Ventana& v) { v.rejilla->SetRow(80); }},
    {"reloj.Timer",
     [](Ventana& v) {
       v.reloj->SetInterval(10);
       static_cast<HeadlessDesktop&>(v.Screen()).Advance(100);
     }},
    {"Resize", [](Ventana& v) { v.Resized(Dip(900), Dip(700)); }},
    {"Execute",
     [](Ventana& v) {
       v.multi->SetRowSource("SELECT 1");
       v.multi->Click();
     }},
    {"QueryUnload", [](Ventana& v) { v.Unload(UnloadMode::TitleBar); }},
    {"Unload", [](Ventana& v) { v.Unload(UnloadMode::TitleBar); }},
};

class Cierre : public testing::TestWithParam<Caso> {
 protected:
  /// A window that only the desktop holds once it is shown.
  std::shared_ptr<Ventana> Nueva() {
    auto ventana = std::make_shared<Ventana>(escritorio, diario);
    ventana->multi->SetConnection(std::make_shared<Conexion>(diario, 0));
    testigo = ventana;
    diario.al_suceder = [this, cruda = ventana.get()](const std::string& suceso) {
      if (suceso != GetParam().suceso) return;
      diario.al_suceder = nullptr;
      // By way of the pump, as when a click waits while an event works.
      escritorio.Post([cruda] { cruda->Unload(); });
      escritorio.PumpEvents();
    };
    return ventana;
  }
  void EsperaCerrada() {
    EXPECT_TRUE(testigo.expired());
    // It did happen, and after the closing nothing did.
    ASSERT_FALSE(diario.sucesos.empty());
    EXPECT_FALSE(diario.al_suceder);
    EXPECT_TRUE(diario.sucesos.back().starts_with("Unload")) << diario.sucesos.back();
  }
  HeadlessDesktop escritorio;
  Diario diario;
  std::weak_ptr<Ventana> testigo;
};

TEST_P(Cierre, LeavesNothingAndGivesAnOwnerBack) {
  const auto accion = GetParam().accion;
  Nueva()->Show();
  // Nobody else holds it meanwhile.
  Ventana* const cruda = testigo.lock().get();
  if (accion) accion(*cruda);
  EsperaCerrada();
  EXPECT_TRUE(escritorio.Forms().empty());

  const auto duena = std::make_shared<Ventana>(escritorio, diario);
  bool visitada = false;
  escritorio.OnModal([&](Form& form) {
    visitada = true;
    EXPECT_FALSE(duena->Enabled());
    if (accion) accion(static_cast<Ventana&>(form));
    EXPECT_FALSE(form.Visible());
  });
  Nueva()->ShowModal(duena.get());
  EXPECT_EQ(visitada, accion != nullptr);
  EXPECT_TRUE(duena->Enabled());
  EsperaCerrada();
}

INSTANTIATE_TEST_SUITE_P(Sucesos, Cierre, testing::ValuesIn(kCasos), [](const auto& info) {
  std::string nombre = info.param.suceso + std::to_string(info.index);
  std::erase(nombre, '.');
  return nombre;
});

}  // namespace
}  // namespace zuvi::pruebas
