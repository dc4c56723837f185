#include "tests/toolkit/ventana.h"

namespace zuvi::pruebas {
namespace {

class Textos : public ConVentana {
 protected:
  TextBox& Caja() { return *ventana->a; }
  /// The text, with the selection marked.
  static std::string Marcado(const TextBox& caja) {
    const std::string seleccion = caja.SelText();
    return std::to_string(caja.SelStart()) + "+" + std::to_string(caja.SelLength()) + "[" + seleccion + "]" +
           caja.Text();
  }
};

TEST_F(Textos, LengthsCountUtf16AndPairsStayWhole) {
  ventana->Type("a😀ñ");
  EXPECT_EQ(Caja().Text(), "a😀ñ");
  EXPECT_EQ(Caja().Length(), 4);
  EXPECT_EQ(Marcado(Caja()), "4+0[]a😀ñ");
  Tecla(key::kLeft);
  Tecla(key::kLeft);
  EXPECT_EQ(Caja().SelStart(), 1);
  Tecla(key::kDelete);
  EXPECT_EQ(Caja().Text(), "añ");
  Caja().SetText("😀😀");
  Tecla(key::kEnd);
  Tecla(key::kBack);
  EXPECT_EQ(Marcado(Caja()), "2+0[]😀");
  // A position within a pair, which only code can choose, takes the pair as a whole.
  Caja().SetSelStart(1);
  ventana->Type("x");
  EXPECT_EQ(Caja().Text(), "x😀");
  Caja().SetSelStart(2);
  Tecla(key::kBack);
  EXPECT_EQ(Caja().Text(), "x");
  // Half a pair is no character, and does not join one that comes later.
  Caja().DefaultChar(0xD83D);
  Caja().DefaultChar(u'y');
  Caja().DefaultChar(0xDE00);
  EXPECT_EQ(Caja().Text(), "xy");
}

TEST_F(Textos, TheLimitIsForTheUser) {
  Caja().SetMaxLength(3);
  ventana->Type("ab😀");  // a pair does not fit into what is left
  EXPECT_EQ(Caja().Text(), "ab");
  ventana->Type("cd");
  EXPECT_EQ(Caja().Text(), "abc");
  Tecla('A', shift::kCtrl);
  ventana->Type("z");
  EXPECT_EQ(Caja().Text(), "z");
  Caja().SetText("código");
  EXPECT_EQ(Caja().Length(), 6);
  Tecla(key::kEnd);
  ventana->Type("x");
  Tecla(key::kBack);
  EXPECT_EQ(Caja().Text(), "códig");
  EXPECT_THROW(Caja().SetMaxLength(-1), HostError);
}

TEST_F(Textos, SelectionFollowsKeysAndCode) {
  ventana->Type("abcdef");
  Tecla(key::kHome);
  Tecla(key::kRight);
  Tecla(key::kRight, shift::kShift);
  Tecla(key::kRight, shift::kShift);
  EXPECT_EQ(Marcado(Caja()), "1+2[bc]abcdef");
  Tecla(key::kLeft, shift::kShift);
  Tecla(key::kLeft, shift::kShift);
  Tecla(key::kLeft, shift::kShift);
  EXPECT_EQ(Marcado(Caja()), "0+1[a]abcdef");
  Tecla(key::kRight);
  EXPECT_EQ(Marcado(Caja()), "1+0[]abcdef");
  Tecla(key::kEnd, shift::kShift);
  ventana->Type("X");
  EXPECT_EQ(Marcado(Caja()), "2+0[]aX");
  Caja().SetSelStart(-5);
  Caja().SetSelLength(99);
  EXPECT_EQ(Marcado(Caja()), "0+2[aX]aX");
  diario.sucesos.clear();
  Caja().SetSelText("largo");
  EXPECT_EQ(Marcado(Caja()), "5+0[]largo");
  EXPECT_EQ(diario.sucesos, Sucesos{"a.Change largo"});
  Caja().SetText("corto");
  EXPECT_EQ(Marcado(Caja()), "0+0[]corto");
  Caja().UserEdited("cortos", 6, 7);
  EXPECT_EQ(Marcado(Caja()), "6+0[]cortos");
}

TEST_F(Textos, ControlCharactersAndLockedBoxesTakeNothing) {
  ventana->Type("a\tb\x1b\x7f\r");
  EXPECT_EQ(Caja().Text(), "ab");
  Caja().SetLocked(true);
  Tecla(key::kBack);
  Tecla(key::kHome);
  Tecla(key::kDelete);
  ventana->Type("c");
  EXPECT_EQ(Caja().Text(), "ab");
  EXPECT_EQ(Caja().SelStart(), 0);
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
  EXPECT_EQ(notas->Text(), "unodos");
  notas->SetMaxLength(7);
  Tecla(key::kEnter);  // a line break is two
  EXPECT_EQ(notas->Text(), "unodos");
  Tecla(key::kEnd, shift::kCtrl);
  EXPECT_EQ(notas->SelStart(), 6);
}

}  // namespace
}  // namespace zuvi::pruebas
