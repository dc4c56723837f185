// Whether everything that is written in a window can be read, in the font that most users have: it is wider
// and higher than the one of the machine that tests.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "base/text.h"
#include "toolkit/buttons.h"
#include "toolkit/combo_box.h"
#include "toolkit/flex_grid.h"
#include "toolkit/form.h"
#include "toolkit/list_view.h"
#include "toolkit/multi_combo.h"

namespace zuvi::pruebas {

/// The letters of Segoe UI by their advance widths, each rounded up to a whole pixel.
class Letra final : public TextMeasure {
 public:
  Letra(int puntos, int dpi) : dpi_(dpi), em_((puntos * dpi + 36) / 72) {}
  std::int32_t Width(std::string_view text, bool bold) const override {
    return Twips(Pixeles(text) * (bold ? 11 : 10) / 10);
  }
  std::int32_t LineHeight() const override { return Twips(Linea()); }
  int Pixeles(std::string_view texto) const {
    int suma = 0;
    for (const char16_t unidad : Utf16(texto)) suma += (Avance(unidad) * em_ + 999) / 1000;
    return suma;
  }
  int Linea() const { return (em_ * (2210 + 514) + 2047) / 2048; }
  int Puntos(int dips) const { return dips * dpi_ / 96; }
  /// As the native side does.
  int Px(std::int32_t twips) const { return static_cast<int>((std::int64_t{twips} * dpi_ + 720) / 1440); }
  std::int32_t Twips(int pixeles) const { return (pixeles * 1440 + dpi_ / 2) / dpi_; }

 private:
  static int Avance(char16_t unidad) {
    // From the blank to the tilde, in thousandths of the em.
    static constexpr std::array<int, 95> kAvances{
        274, 284, 392, 591, 539, 818, 800, 230, 302, 302, 417, 684, 217, 400, 217, 390, 539, 539, 539,
        539, 539, 539, 539, 539, 539, 539, 217, 217, 684, 684, 684, 448, 955, 645, 573, 619, 701, 506,
        488, 687, 710, 266, 357, 580, 471, 898, 748, 754, 560, 754, 598, 531, 524, 687, 621, 934, 590,
        553, 570, 302, 379, 302, 684, 415, 268, 509, 588, 462, 588, 523, 313, 589, 566, 242, 242, 497,
        242, 861, 566, 586, 588, 589, 348, 434, 339, 566, 479, 723, 458, 484, 452, 302, 239, 302, 684};
    static const std::u16string con = u"áéíóúüñÁÉÍÓÚÜÑ";
    static constexpr std::string_view sin = "aeiouunAEIOUUN";
    if (const auto i = con.find(unidad); i != con.npos) unidad = static_cast<char16_t>(sin[i]);
    const std::size_t lugar = static_cast<std::size_t>(unidad) - u' ';
    return lugar < kAvances.size() ? kAvances[lugar] : 1000;
  }

  int dpi_, em_;
};

struct Lugar {
  int izquierda, arriba, derecha, abajo;
  int Ancho() const { return derecha - izquierda; }
  int Alto() const { return abajo - arriba; }
};

inline Lugar LugarDe(const zuvi::Control& control, const Letra& letra) {
  const Rect& r = control.Bounds();
  return {letra.Px(r.left), letra.Px(r.top), letra.Px(r.left + r.width), letra.Px(r.top + r.height)};
}

/// Lines that a text takes, broken between words.
inline int Renglones(std::string_view texto, int ancho, const Letra& letra) {
  int renglones = 1, usado = 0;
  while (!texto.empty()) {
    const auto fin = std::min(texto.find(' '), texto.size() - 1) + 1;
    const int palabra = letra.Pixeles(texto.substr(0, fin));
    if (usado > 0 && usado + palabra > ancho) ++renglones, usado = 0;
    usado += palabra;
    texto.remove_prefix(fin);
  }
  return renglones;
}

/// What cannot be read in a control: "" when all can.
inline std::string LoCortado(const zuvi::Control& control, const Letra& letra) {
  const Lugar lugar = LugarDe(control, letra);
  const auto cabe = [&](std::string_view texto, int de_mas, int ancho) {
    return letra.Pixeles(texto) + letra.Puntos(de_mas) <= ancho;
  };
  const std::string texto = WithoutMnemonic(control.Caption());
  const int linea = letra.Linea(), lineas = std::max(1, lugar.Alto() / linea);
  if (dynamic_cast<const Label*>(&control) && !texto.empty())
    return linea <= lugar.Alto() && Renglones(texto, lugar.Ancho(), letra) <= lineas ? "" : texto;
  if (const auto* boton = dynamic_cast<const Button*>(&control); boton && boton->Picture() == Glyph::None)
    return cabe(texto, 8, lugar.Ancho()) && linea + letra.Puntos(6) <= lugar.Alto() ? "" : texto;
  if (dynamic_cast<const CheckBox*>(&control) && !texto.empty())
    return cabe(texto, 18, lugar.Ancho()) && linea <= lugar.Alto() ? "" : texto;
  const bool caja = dynamic_cast<const TextBox*>(&control) || dynamic_cast<const ComboBox*>(&control);
  if (caja && linea + letra.Puntos(6) > lugar.Alto()) return "its height";
  if (const auto* combo = dynamic_cast<const ComboBox*>(&control);
      combo && combo->Kind() == ComboBox::Style::DropDownList)
    for (std::int32_t i = 0; i < combo->ListCount(); ++i)
      if (!cabe(combo->List(i), 26, lugar.Ancho())) return combo->List(i);
  if (const auto* lista = dynamic_cast<const ListView*>(&control))
    for (std::size_t i = 0; const std::int32_t ancho : lista->ColumnWidths(control.Width() - Dip(21)))
      if (const std::string& titulo = lista->Columns().All()[i++].caption; !cabe(titulo, 14, letra.Px(ancho)))
        return titulo;
  if (const auto* rejilla = dynamic_cast<const FlexGrid*>(&control)) {
    if (linea > letra.Px(rejilla->RowHeight())) return "the height of a row";
    for (std::int32_t col = 0; col < rejilla->Cols(); ++col)
      if (rejilla->ColWidth(col) > 0 &&
          !cabe(rejilla->TextMatrix(0, col), 10, letra.Px(rejilla->ShownWidth(col))))
        return rejilla->TextMatrix(0, col);
  }
  return {};
}

/// Every text of a window can be read in full, over no other control and within the window.
inline void SeLeeTodo(Form& ventana, const Letra& letra) {
  const int ancho = letra.Px(ventana.ClientWidth()), alto = letra.Px(ventana.ClientHeight());
  std::vector<const zuvi::Control*> antes;
  for (const auto& control : ventana.Controls()) {
    const Lugar lugar = LugarDe(*control, letra);
    if (!control->Visible() || lugar.Ancho() == 0 || dynamic_cast<const MultiCombo*>(control.get())) continue;
    const std::string cual = control->Name() + "(" + std::to_string(control->Index()) + ")";
    EXPECT_EQ(LoCortado(*control, letra), "") << cual;
    EXPECT_TRUE(lugar.izquierda >= 0 && lugar.arriba >= 0 && lugar.derecha <= ancho && lugar.abajo <= alto)
        << cual << " to " << lugar.derecha << "," << lugar.abajo << " of " << ancho << "," << alto;
    for (const zuvi::Control* otro : antes) {
      const Lugar suyo = LugarDe(*otro, letra);
      EXPECT_FALSE(lugar.izquierda < suyo.derecha && suyo.izquierda < lugar.derecha &&
                   lugar.arriba < suyo.abajo && suyo.arriba < lugar.abajo)
          << cual << " over " << otro->Name() << "(" << otro->Index() << ")";
    }
    antes.push_back(control.get());
  }
}

}  // namespace zuvi::pruebas
