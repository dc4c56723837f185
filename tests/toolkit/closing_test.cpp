// Every event may close the window, and with the desktop letting go of it the window and its controls are
// gone before the event's own code has ended. Run with the address sanitizer this finds whoever goes on using
// them.
#include "tests/toolkit/ventana.h"

namespace zuvi::pruebas {
namespace {

/// What a user and a program do, until the window is gone.
void (*const kAcciones[])(Ventana&) = {
    [](Ventana& v) { v.Type("xyz"); },
    [](Ventana& v) { v.Press(key::kEnter); },
    [](Ventana& v) { v.a->SetText("otro"); },
    [](Ventana& v) { v.a->UserEdited("pegado", 6, 0); },
    [](Ventana& v) { v.Press(key::kTab); },
    [](Ventana& v) { v.a->SetFocus(); },
    [](Ventana& v) { v.a->SetEnabled(false); },
    [](Ventana& v) { v.b->SetVisible(false); },
    [](Ventana& v) { v.Press('H', shift::kAlt); },
    [](Ventana& v) { v.SetDefaultButton(v.boton.get()); },
    [](Ventana& v) { v.combo->SetFocus(); },
    [](Ventana& v) { v.Press(key::kEnter); },
    [](Ventana& v) { v.Mnemonic(u'ñ'); },
    [](Ventana& v) { v.casilla->SetValue(2); },
    [](Ventana& v) { v.etiqueta->Click(); },
    [](Ventana& v) { v.etiqueta->DblClick(); },
    [](Ventana& v) { v.combo->UserChose(1); },
    [](Ventana& v) { v.combo->UserTyped("Mes"); },
    [](Ventana& v) { v.fecha->DefaultKey(key::kUp, 0); },
    [](Ventana& v) { v.mes->DefaultKey(key::kRight, 0); },
    [](Ventana& v) { v.lista->UserSelected(2); },
    [](Ventana& v) { v.rejilla->DefaultKey(key::kDown, 0); },
    [](Ventana& v) { v.rejilla->UserClicked(5, 1); },
    [](Ventana& v) { v.rejilla->SetRow(80); },
    [](Ventana& v) { v.reloj->SetInterval(10); },
    [](Ventana& v) { static_cast<HeadlessDesktop&>(v.Screen()).Advance(15); },
    [](Ventana& v) { v.Resized(Dip(900), Dip(700)); },
    [](Ventana& v) { v.multi->SetRowSource("SELECT 1"); },
    [](Ventana& v) { v.multi->Click(); },
    [](Ventana& v) { v.Unload(UnloadMode::TitleBar); }};

TEST(Cierre, EnCualquierSucesoNoDejaNadaYDevuelveASuDuena) {
  for (const bool modal : {false, true})
    for (std::size_t n = 1, sucesos = n; n <= sucesos; ++n) {
      HeadlessDesktop escritorio;
      Diario diario;
      const auto duena = std::make_shared<Ventana>(escritorio, diario);
      auto ventana = std::make_shared<Ventana>(escritorio, diario);
      ventana->multi->SetConnection(std::make_shared<Conexion>(diario, 0));
      const std::weak_ptr<Ventana> testigo = ventana;
      // Nobody but the desktop holds it once it is shown.
      Ventana* const cruda = ventana.get();
      std::string cual;
      std::size_t visto = 0;
      diario.al_suceder = [&](const std::string& suceso) {
        if (++visto != n) return;
        cual = suceso;
        // By way of the pump, as when a click waits while an event works.
        escritorio.Post([cruda] { cruda->Unload(); });
        escritorio.PumpEvents();
      };
      const auto trabaja = [&](Form&) {
        for (const auto accion : kAcciones)
          if (visto < n) accion(*cruda);
      };
      if (modal) {
        escritorio.OnModal(trabaja);
        std::exchange(ventana, nullptr)->ShowModal(duena.get());
        EXPECT_TRUE(duena->Enabled());
      } else {
        std::exchange(ventana, nullptr)->Show();
        trabaja(*duena);
      }
      SCOPED_TRACE(cual);
      EXPECT_TRUE(testigo.expired());
      EXPECT_TRUE(escritorio.Forms().empty());
      EXPECT_TRUE(diario.sucesos.back().starts_with("Unload")) << diario.sucesos.back();
      // One more, as long as there was one to close at.
      if (!cual.empty()) sucesos = n + 1;
    }
}

}  // namespace
}  // namespace zuvi::pruebas
