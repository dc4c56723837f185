#pragma once

#include <string>

#include "host/cli/opciones.h"

namespace zuvi::cli {

/// The text of `zuvi --help`.
std::string Ayuda();
/// Runs the command of the line on the database that it names. Throws MalUso, and HostError for what failed
/// and was not told yet.
Salida Corre(const LineaDeOrdenes& linea);

}  // namespace zuvi::cli
