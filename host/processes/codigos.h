// Codes of an order's lines: each line gets one of its own, which a label with bars carries to the finished
// goods. They live in the host's table `codigos`; the order and its lines are not touched.
#pragma once

#include <cstdint>
#include <string>

#include "host/odbc/base_datos.h"

namespace zuvi::host {

/// Gives a code, "000103-001", to each line of an order that has none for its article yet, all or nothing.
/// Codes already given stay; none is given twice. Returns how many were new.
std::int32_t GeneraCodigos(BaseDatos& base, std::int32_t op, const std::string& usuario);
/// The page with one label a line. Throws HostError for an order without lines.
std::string PaginaDeCodigos(BaseDatos& base, std::int32_t op);
/// The bars of a code of digits and dashes (Code 39) as a picture in HTML. Throws HostError (InvalidCall)
/// for other characters.
std::string Barras(const std::string& codigo);

}  // namespace zuvi::host
