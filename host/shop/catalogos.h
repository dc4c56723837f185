#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "host/odbc/base_datos.h"

namespace zuvi::host {

/// What a catalogue lookup shows: a table with its key and its description.
struct Catalogo {
  std::string_view titulo;
  const char* tabla;
  const char* clave;
  const char* descripcion;
  /// Only keys made of digits are offered.
  bool numerico = false;
};

/// The catalogue of that caption. Throws HostError when there is none.
const Catalogo& CatalogoDe(std::string_view titulo);
/// Its rows as two columns, key and description, in the order of the key: those that meet `filtro` (a
/// condition of the caller's, may be empty) and hold `busqueda` in key or description, in either case. Not
/// more than `maximo` of them; 0 means all.
std::shared_ptr<Recordset> BuscaEnCatalogo(BaseDatos& base, const Catalogo& catalogo,
                                           const std::string& filtro, const std::string& busqueda,
                                           std::int32_t maximo = 0);

}  // namespace zuvi::host
