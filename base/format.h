// Display forms of values, the same under every setting of the system.
#pragma once

#include <string>
#include <string_view>

#include "base/value.h"

namespace zuvi {

/// The text of a value as `ToText` gives it; "" for Null.
inline std::string TextOrNothing(const Value& value) {
  return value.IsNull() ? std::string() : ToText(value);
}
/// A value by a date pattern (`Date::Formatea`): dates, texts that are one, and numbers as the days since
/// 30-12-1899. What can be read as neither comes back as its text; Null and Empty give "". Never throws for
/// the value's sake.
std::string FormatAsDate(const Value& value, std::string_view pattern);

}  // namespace zuvi
