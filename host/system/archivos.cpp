#include "host/system/archivos.h"

#include <array>

namespace zuvi::host {

std::string Motivo(const std::error_code& fallo) {
  struct Conocido {
    std::errc motivo;
    const char* texto;
  };
  constexpr std::array<Conocido, 9> kConocidos{{
      {std::errc::permission_denied, "falta permiso"},
      {std::errc::operation_not_permitted, "falta permiso"},
      {std::errc::read_only_file_system, "el disco es de sólo lectura"},
      {std::errc::no_space_on_device, "el disco está lleno"},
      {std::errc::no_such_file_or_directory, "la carpeta no existe"},
      {std::errc::not_a_directory, "no es una carpeta"},
      {std::errc::is_a_directory, "ahí hay una carpeta con ese nombre"},
      {std::errc::device_or_resource_busy, "otro programa lo tiene abierto"},
      {std::errc::filename_too_long, "el nombre es demasiado largo"},
  }};
  for (const Conocido& conocido : kConocidos)
    if (fallo == conocido.motivo) return conocido.texto;
  return TextoDelSistema(fallo);
}

}  // namespace zuvi::host
