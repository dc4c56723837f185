// What a row of the database shows to people: a NULL is an empty text (`TextoDe`), or zero.
#pragma once

#include <string>
#include <string_view>

#include "base/formato.h"

namespace zuvi::host {

/// Throws HostError for a cell that holds no number.
inline double NumeroDe(const Value& celda) { return celda.IsNull() ? 0 : ANumero(celda); }
/// The day of a date, by a pattern as `Fecha::Formatea` takes it.
inline std::string DiaDe(const Value& celda, std::string_view patron = "dd-MM-yyyy") {
  return TextoDe(celda).empty() ? std::string() : AFecha(celda).Formatea(patron);
}

}  // namespace zuvi::host
