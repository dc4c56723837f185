#pragma once

#include <cstdint>
#include <string>

#include "host/odbc/base_datos.h"

namespace zuvi::host {

/// Takes the next `cuantos` numbers of a key and returns the last of them. Atomic across processes; a key
/// that does not exist yet starts at 1.
std::int32_t TomaFolios(BaseDatos& base, const std::string& clave, std::int32_t cuantos = 1);
/// The same within a transaction of the caller: until that ends nobody else takes numbers of this key, and a
/// negative `cuantos` gives back those that were not used.
std::int32_t TomaFoliosEn(Transaccion& transaccion, const std::string& clave, std::int32_t cuantos);

}  // namespace zuvi::host
