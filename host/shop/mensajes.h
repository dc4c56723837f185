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
/// that names it. `dato` is asked for what the text speaks of: "turno", the selected shift, or "clave", the
/// key that was looked up last and not found; without it the text leaves it out.
std::string TextoMensaje(std::int32_t numero, std::string_view idioma,
                         const std::function<std::string(std::string_view)>& dato = {});

}  // namespace zuvi::host
