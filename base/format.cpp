#include "base/format.h"

#include <optional>

namespace zuvi {
namespace {

std::optional<Date> AsDate(const Value& value) {
  try {
    return ToDate(value);
  } catch (const HostError&) {
  }
  try {
    return Date::FromSerial(ToNumber(value));
  } catch (const HostError&) {
  }
  return std::nullopt;
}

}  // namespace

std::string FormatAsDate(const Value& value, std::string_view pattern) {
  if (value.IsNull() || value.IsEmpty()) return {};
  const auto date = AsDate(value);
  return date ? date->Formatea(pattern) : ToText(value);
}

}  // namespace zuvi
