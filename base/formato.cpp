#include "base/formato.h"

#include <optional>

namespace zuvi {
namespace {

std::optional<Fecha> AsDate(const Value& value) {
  try {
    return AFecha(value);
  } catch (const HostError&) {
  }
  try {
    return Fecha::DesdeSerie(ANumero(value));
  } catch (const HostError&) {
  }
  return std::nullopt;
}

}  // namespace

std::string FormateaComoFecha(const Value& value, std::string_view pattern) {
  if (value.IsNull() || value.IsEmpty()) return {};
  const auto date = AsDate(value);
  return date ? date->Formatea(pattern) : ATexto(value);
}

}  // namespace zuvi
