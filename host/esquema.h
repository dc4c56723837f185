#pragma once

#include <vector>

#include "base/fecha.h"
#include "host/base_datos.h"

namespace zuvi::host {

/// Makes the tables and the example shop in a database that has none yet, also when several programs start
/// on it at once or an earlier attempt broke off; adds what a database of an earlier version lacks. True when
/// this call made the shop. Throws HostError for a
/// database of somebody else.
bool PreparaEsquema(BaseDatos& base);
/// Drops the host's tables and makes them anew with the example shop.
void RehaceEsquema(BaseDatos& base);

/// Fills empty tables with the example shop as it stands on that day.
void LlenaTienda(BaseDatos& base, const Fecha& hoy);
/// Inserts rows into a table; `columnas` is their list between parentheses.
void InsertaFilas(BaseDatos& base, const std::string& tabla, const std::string& columnas,
                  const std::vector<std::vector<Value>>& filas);

}  // namespace zuvi::host
