// Display forms of values, the same under every setting of the system.
#pragma once

#include <string>
#include <string_view>

#include "base/value.h"

namespace zuvi {

/// The text of a value as `ATexto` gives it; "" for Null.
inline std::string TextoDe(const Value& value) { return value.IsNull() ? std::string() : ATexto(value); }
/// A value by a date pattern (`Fecha::Formatea`): dates, texts that are one, and numbers as the days since
/// 30-12-1899. What can be read as neither comes back as its text; Null and Empty give "". Never throws for
/// the value's sake.
std::string FormateaComoFecha(const Value& value, std::string_view pattern);

}  // namespace zuvi
