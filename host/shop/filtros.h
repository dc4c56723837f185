// What may be typed into a text box, and how its content is shown, by the box's tag:
//   "U"   text in upper case
//   "N"   a number: digits and separators
//   "SD"  an amount: the same, with at most six decimals; shown with two decimals at least
//   "SN"  a number that may carry a minus sign
//   "D"   a date dd-MM-yyyy: digits and separators
// Any other tag takes everything as it is. What separators mean is `NumeroEscrito`'s to say.
#pragma once

#include <cstdint>
#include <string>

#include "base/object.h"

namespace zuvi::host {

/// What is read of a text box: its tag and its text.
struct Caja {
  std::string etiqueta;
  std::string texto;
  /// The caret stands at the beginning.
  bool al_principio = false;
};

/// Reads `Tag` and the whole `Text`, as for showing it.
Caja ContenidoDe(const ObjectPtr& caja);
/// The same for a character typed into the box, which takes the place of the selected part: where the box has
/// `SelStart` and `SelLength`, the text is without that part.
Caja CajaDe(const ObjectPtr& caja);
/// The character to keep of one typed into the box; 0 drops it. Control characters pass.
std::int16_t Filtra(const Caja& caja, std::int16_t caracter);
/// Display form of the text. A text that the tag cannot read stays as it is.
std::string Formatea(const Caja& caja);

}  // namespace zuvi::host
