#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace zuvi::host {

/// One message of the catalogue, in both languages.
struct MensajeCatalogo {
  std::int32_t numero;
  std::string_view es;
  std::string_view en;
};

/// The whole catalogue, in the order of its numbers.
std::span<const MensajeCatalogo> CatalogoMensajes();
/// Text of a message in "es" or "en" (any other language is taken as "es"). An unknown number gives a text
/// that names it. A message on a shift asks `turno` for its name; without one it speaks of the selected
/// shift.
std::string TextoMensaje(std::int32_t numero, std::string_view idioma,
                         const std::function<std::string()>& turno = {});

}  // namespace zuvi::host
