#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/odbc/base_datos.h"

namespace zuvi::host {

/// The printable page of a production order: header, lines, totals. Throws HostError when there is no such
/// order.
std::string PaginaDeOrden(BaseDatos& base, std::int32_t op);
/// Writes that page into the first of these folders that can be written, and returns the file's name.
std::string EscribeReporteOrden(BaseDatos& base, std::int32_t op, const std::vector<std::string>& carpetas);

}  // namespace zuvi::host
