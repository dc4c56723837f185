#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "toolkit/flex_grid.h"
#include "toolkit/text_box.h"
#include "windows/modulo.h"

namespace zuvi {

/// The text box that floats over the current cell of the lines grid while that is edited. It knows which
/// cells can be edited, what may be typed there and which keys leave; saving the cell is its window's. Throws
/// what the host's calls throw.
class EditorCelda {
 public:
  /// The controls belong to the window, which outlives this.
  EditorCelda(Modulo& modulo, FlexGrid& rejilla, TextBox& caja)
      : modulo_(modulo), rejilla_(rejilla), caja_(caja) {}

  bool Abierto() const { return caja_.Visible(); }
  /// Opens over the current cell, where that can be edited: with the character typed there in place of its
  /// text; with its text when none was typed, or one that prints nothing.
  void Abre(std::optional<std::int16_t> tecleado, bool solo_consulta);
  /// Lies over the cell: also after the grid was scrolled, or the window's size changed.
  void Coloca();
  /// A character typed into it: the host's filter has its say, except over columns of text.
  void Filtra(KeyPressEvent& event) const;
  /// Enter, Escape and the arrows go back to the grid, Escape without the text. Other keys are its own.
  void Sal(std::int16_t tecla);
  /// Closes, its text in the cell. What the cell held before.
  std::string Vuelca();

 private:
  /// False when the character begins no edit.
  bool EmpiezaCon(std::int16_t caracter);

  Modulo& modulo_;
  FlexGrid& rejilla_;
  TextBox& caja_;
};

}  // namespace zuvi
