// What a row of the database shows to people: a NULL is an empty text (`TextOrNothing`), or zero.
#pragma once

#include <string>
#include <string_view>

#include "base/format.h"

namespace zuvi::host {

/// Throws HostError for a cell that holds no number.
inline double NumeroDe(const Value& celda) { return celda.IsNull() ? 0 : ToNumber(celda); }
/// The day of a date, by a pattern as `Date::Formatea` takes it.
inline std::string DiaDe(const Value& celda, std::string_view patron = "dd-MM-yyyy") {
  return TextOrNothing(celda).empty() ? std::string() : ToDate(celda).Formatea(patron);
}

}  // namespace zuvi::host
