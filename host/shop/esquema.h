// host/shop/: what the shop keeps and its rules: schema, numbering, stock and cost, orders, catalogues, texts
// of messages, key filters. Statements go through host/odbc; nobody is asked or shown anything here.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "base/date.h"
#include "host/odbc/base_datos.h"

namespace zuvi::host {

/// The version that this program makes. From `kVersionMinima` on a database works as it is; what came in
/// between is undone by the upgrade alone.
inline constexpr std::int32_t kVersionEsquema = 4;
inline constexpr std::int32_t kVersionMinima = 3;

/// What a database holds of this host.
enum class EstadoEsquema {
  Falta,    // no table of ours, and none that is called like one
  AMedias,  // an attempt to make it broke off: empty tables without a version
  Antiguo,  // an earlier version that has to be upgraded first
  Listo,
  Nuevo,  // made by a later program
  Ajeno,  // a table that is called like one of ours and is somebody else's
  Roto,   // ours, and a table is missing
};

/// What was found in a database.
struct Esquema {
  EstadoEsquema estado = EstadoEsquema::Falta;
  /// As table `esquema` has it; 0 without one.
  std::int32_t version = 0;
  /// The table that tells, for `Ajeno` and `Roto`.
  std::string tabla;
  /// Our tables that are there.
  std::set<std::string> tablas;
};

/// What a new schema is filled with: the rows nobody works without, or the example shop.
enum class Contenido { Vacio, Tienda };

/// Finds out by reading alone.
Esquema Examina(BaseDatos& base);
/// Whether table op needs a second name: the component spells it in two ways, which are two tables to a
/// server that tells capitals apart.
bool NecesitaVistaOp(BaseDatos& base);
/// Throws HostError, which tells what to do, unless the database can be worked with.
void ExigeListo(const Esquema& esquema);
/// Makes the schema where there is none, also when several programs start on it at once or an earlier attempt
/// broke off. False when another program was faster. Throws HostError for anything else than such a database.
bool CreaEsquema(BaseDatos& base, Contenido contenido);
/// Brings an earlier version up to date; returns the version found. Throws HostError when this account may
/// not.
std::int32_t ActualizaEsquema(BaseDatos& base);
/// Empties the tables and fills them anew, all or nothing.
void RehaceEsquema(BaseDatos& base, Contenido contenido);

/// Fills empty tables with the example shop as it stands on that day.
void LlenaTienda(BaseDatos& base, const Date& hoy);
/// Fills empty tables with what an empty shop needs: concepts, taxes, a currency, a warehouse, a station.
void LlenaVacia(BaseDatos& base);
/// Inserts rows into a table; `columnas` is their list between parentheses.
void InsertaFilas(BaseDatos& base, const std::string& tabla, const std::string& columnas,
                  const std::vector<std::vector<Value>>& filas);

}  // namespace zuvi::host
