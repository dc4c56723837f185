#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "host/odbc/base_datos.h"

namespace zuvi::host {

/// Orders that carry the busy mark, with who last saved them and when: op, estado, usuario, usufecha,
/// usuhora. A mark is stale when the program that set it has died.
std::shared_ptr<Recordset> OrdenesOcupadas(BaseDatos& base);
/// Takes the busy mark off an order and logs who did it; both or nothing. False when the order carries none.
bool LiberaOrden(BaseDatos& base, std::int32_t op, const std::string& usuario);
/// Writes a line into the log.
void AnotaEnBitacora(BaseDatos& base, std::int32_t id, const std::string& usuario, const std::string& suceso);

}  // namespace zuvi::host
