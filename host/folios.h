#pragma once

#include <cstdint>
#include <string>

#include "host/base_datos.h"

namespace zuvi::host {

/// Takes the next `cuantos` numbers of a key and returns the last of them. Atomic across processes; a key
/// that does not exist yet starts at 1.
std::int32_t TomaFolios(BaseDatos& base, const std::string& clave, std::int32_t cuantos = 1);

}  // namespace zuvi::host
