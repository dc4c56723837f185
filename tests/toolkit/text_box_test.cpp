#include "tests/toolkit/ventana.h"

namespace zuvi::pruebas {
namespace {

class Textos : public ConVentana {
 protected:
  TextBox& Caja() { return *ventana->a; }
  /// The selection and the text.
  std::string Marcado() {
    return std::to_string(Caja().SelStart()) + "+" + std::to_string(Caja().SelLength()) + "[" +
           Caja().SelText() + "]" + Caja().Text();
  }
  std::string Tras(std::initializer_list<std::int16_t> teclas, std::int16_t con = shift::kNone) {
    for (const std::int16_t tecla : teclas) Tecla(tecla, con);
    return Marcado();
  }
};

TEST_F(Textos, LengthsCountUtf16AndPairsStayWhole) {
  ventana->Type("a😀ñ");
  EXPECT_EQ(Caja().Length(), 4);
  EXPECT_EQ(Marcado(), "4+0[]a😀ñ");
  EXPECT_EQ(Tras({key::kLeft, key::kLeft, key::kDelete}), "1+0[]añ");
  Caja().SetText("😀😀");
  EXPECT_EQ(Tras({key::kEnd, key::kBack}), "2+0[]😀");
  // A position within a pair, which only code can choose, takes the pair as a whole.
  Caja().SetSelStart(1);
  ventana->Type("x");
  EXPECT_EQ(Caja().Text(), "x😀");
  Caja().SetSelStart(2);
  Tecla(key::kBack);
  // Half a pair is no character, and does not join one that comes later.
  for (const char16_t unidad : {char16_t{0xD83D}, u'y', char16_t{0xDE00}}) Caja().DefaultChar(unidad);
  EXPECT_EQ(Caja().Text(), "xy");
}

TEST_F(Textos, WhatTheUserMayWrite) {
  Caja().SetMaxLength(3);
  ventana->Type("ab😀");  // a pair does not fit into what is left
  EXPECT_EQ(Caja().Text(), "ab");
  ventana->Type("cd");
  EXPECT_EQ(Caja().Text(), "abc");
  Tecla('A', shift::kCtrl);
  ventana->Type("z");
  EXPECT_EQ(Caja().Text(), "z");
  Caja().SetText("código");  // the limit is not for code
  Tecla(key::kEnd);
  ventana->Type("x");
  EXPECT_EQ(Tras({key::kBack}), "5+0[]códig");
  EXPECT_THROW(Caja().SetMaxLength(-1), HostError);
  Caja().SetText("");
  ventana->Type("a\tb\x1b\x7f\r");
  Caja().SetLocked(true);
  Tras({key::kBack, key::kHome, key::kDelete});
  ventana->Type("c");
  EXPECT_EQ(Marcado(), "0+0[]ab");
}

TEST_F(Textos, SelectionFollowsKeysAndCode) {
  ventana->Type("abcdef");
  Tras({key::kHome, key::kRight});
  EXPECT_EQ(Tras({key::kRight, key::kRight}, shift::kShift), "1+2[bc]abcdef");
  EXPECT_EQ(Tras({key::kLeft, key::kLeft, key::kLeft}, shift::kShift), "0+1[a]abcdef");
  EXPECT_EQ(Tras({key::kRight}), "1+0[]abcdef");
  Tras({key::kEnd}, shift::kShift);
  ventana->Type("X");
  EXPECT_EQ(Marcado(), "2+0[]aX");
  Caja().SetSelStart(-5);
  Caja().SetSelLength(99);
  EXPECT_EQ(Marcado(), "0+2[aX]aX");
  EXPECT_EQ(Al([&] { Caja().SetSelText("largo"); }), Sucesos{"a.Change largo"});
  EXPECT_EQ(Marcado(), "5+0[]largo");
  Caja().SetText("corto");
  EXPECT_EQ(Marcado(), "0+0[]corto");
  Caja().UserEdited("cortos", 6, 7);
  EXPECT_EQ(Marcado(), "6+0[]cortos");
}

TEST_F(Textos, SeveralLines) {
  const auto notas = ventana->Add<RichTextBox>("notas");
  notas->SetFocus();
  ventana->Type("uno");
  Tecla(key::kEnter);
  ventana->Type("dos");
  EXPECT_EQ(notas->Text(), "uno\r\ndos");
  Tecla(key::kHome);
  EXPECT_EQ(notas->SelStart(), 5);
  Tecla(key::kLeft);
  EXPECT_EQ(notas->SelStart(), 3);
  Tecla(key::kDelete);
  notas->SetMaxLength(7);
  Tecla(key::kEnter);  // a line break is two
  EXPECT_EQ(notas->Text(), "unodos");
}

}  // namespace
}  // namespace zuvi::pruebas
