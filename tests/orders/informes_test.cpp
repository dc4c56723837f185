// Whichever key, button or scanner asks for something: its failure is reported under the one name it has.
#include <functional>

#include "tests/orders/editor.h"

namespace zuvi::pruebas {
namespace {

class Informes : public Editor {};

TEST_F(Informes, NombranAlProcedimientoQueFallo) {
  struct Caso {
    const char* procedimiento;
    std::function<void()> actua;
  };
  const auto oprime = [this](zuvi::Control& donde, std::int16_t tecla) {
    donde.SetFocus();
    v->Press(tecla);
  };
  // The article takes no focus where a host has hidden it, nor the grid.
  const Caso kCasos[] = {
      {"txtFields_KeyDown", [&] { oprime(F(14), key::kEnter); }},
      {"txtFields_KeyDown", [&] { F(14).SetMaxLength(1), F(14).SetText("2"); }},
      {"txtFields_KeyDown", [&] { oprime(F(0), key::kF2); }},
      {"RichTextBox1_KeyDown", [&] { oprime(C<RichTextBox>("RichTextBox2"), key::kF8); }},
      {"Form_KeyDown", [&] { oprime(F(0), key::kF3); }},
      {"LlenaPartida", [&] { Agrega("", "1"); }},
      {"LlenaPartida", [&] { Boton("Command6").Click(); }},
      {"EditKeyCode",
       [&] {
         C<TextBox>("txtEdit").SetVisible(true);
         Rejilla().SetVisible(false);
         oprime(C<TextBox>("txtEdit"), key::kEnter);
       }},
  };
  for (const auto& [procedimiento, actua] : kCasos) {
    Nuevo();
    F(4).SetVisible(false);
    actua();
    EXPECT_EQ(Avisos(), std::vector{Informe(procedimiento, "Invalid procedure call or argument")});
  }
}

}  // namespace
}  // namespace zuvi::pruebas
