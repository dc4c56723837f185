#include "tests/toolkit/ventana.h"

namespace zuvi::pruebas {
namespace {

// How the box edits by itself is for windows without a screen; there is the native control for the rest.
class Textos : public ConVentana {
 protected:
  TextBox& Caja() { return *ventana->a; }
  /// The selection and the text.
  std::string Marcado() {
    return std::to_string(Caja().SelStart()) + "+" + std::to_string(Caja().SelLength()) + "[" +
           Caja().SelText() + "]" + Caja().Text();
  }
};

TEST_F(Textos, LengthsCountUtf16AndPairsStayWhole) {
  ventana->Type("a😀ñ");
  EXPECT_EQ(Caja().Length(), 4);
  EXPECT_EQ(Marcado(), "4+0[]a😀ñ");
  for (const std::int16_t tecla : {key::kLeft, key::kLeft, key::kDelete}) Tecla(tecla);
  EXPECT_EQ(Marcado(), "1+0[]añ");
  Caja().SetMaxLength(3);
  ventana->Type("😀");  // a pair does not fit into what is left
  // Half a pair is no character, and does not join one that comes later.
  for (const char16_t unidad : {char16_t{0xD83D}, u'y', char16_t{0xDE00}}) Caja().DefaultChar(unidad);
  ventana->Type("z\t\x1b");
  EXPECT_EQ(Marcado(), "2+0[]ayñ");
  Caja().SetText("más largo");
  EXPECT_EQ(Caja().Length(), 9);  // the limit is for the user
  // A position within a pair, which only code can choose, takes the pair as a whole.
  Caja().SetText("😀");
  Caja().SetSelStart(1);
  Tecla(key::kBack);
  EXPECT_EQ(Caja().Text(), "");
  EXPECT_THROW(Caja().SetMaxLength(-1), HostError);
}

TEST_F(Textos, CodeChoosesWhatIsSelected) {
  Caja().SetText("aX");
  Caja().SetSelStart(-5);
  Caja().SetSelLength(99);
  EXPECT_EQ(Marcado(), "0+2[aX]aX");
  EXPECT_EQ(Al([&] { Caja().SetSelText("largo"); }), Sucesos{"a.Change largo"});
  EXPECT_EQ(Marcado(), "5+0[]largo");
  Caja().SetText("corto");
  EXPECT_EQ(Marcado(), "0+0[]corto");
  Caja().UserEdited("cortos", 6, 7);
  EXPECT_EQ(Marcado(), "6+0[]cortos");
  Caja().SetLocked(true);
  for (const std::int16_t tecla : {key::kBack, key::kHome, key::kDelete}) Tecla(tecla);
  ventana->Type("c");
  EXPECT_EQ(Caja().Text(), "cortos");
}

TEST_F(Textos, WhatIsPastedPassesTheFilterOfWhatIsTyped) {
  Caja().OnKeyPress = [](KeyPressEvent& event) {
    if (event.character == 'a') event.character = 'A';
    if (event.character == 'x') event.Drop();
  };
  Caja().SetMaxLength(7);
  Caja().SetText("1-2");
  Caja().SetSelStart(1);
  Caja().SetSelLength(1);
  for (const auto& [pegado, queda] :
       {std::pair("3x", "1-2"), std::pair("x", "1-2"), std::pair("  a \r\nx", "1A2"),
        std::pair("456789", "1A45672"), std::pair("0", "1A45672")}) {
    const bool entra = Caja().Paste(pegado);
    EXPECT_EQ(Caja().Text(), queda) << pegado;
    EXPECT_EQ(entra, std::string_view(pegado).find('x') > 2) << pegado;
  }
  Caja().SetLocked(true);
  EXPECT_FALSE(Caja().Paste("9"));
}

TEST_F(Textos, SeveralLines) {
  const auto notas = ventana->Add<RichTextBox>("notas");
  notas->SetFocus();
  ventana->Type("uno");
  Tecla(key::kEnter);
  ventana->Type("dos");
  EXPECT_EQ(notas->Text(), "uno\r\ndos");
  for (const std::int16_t tecla : {key::kHome, key::kLeft, key::kDelete}) Tecla(tecla);
  EXPECT_EQ(notas->Text(), "unodos");
}

}  // namespace
}  // namespace zuvi::pruebas
