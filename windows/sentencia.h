#pragma once

#include <string>
#include <string_view>

namespace zuvi {

/// A statement that ends in a key between single quotes; the opening one ends `sql`. The key goes in as it
/// is: one with a quote of its own is refused by the database, which takes one statement a call.
inline std::string EntreApostrofos(std::string_view sql, std::string_view clave) {
  std::string sentencia;
  sentencia.reserve(sql.size() + clave.size() + 1);
  sentencia += sql;
  sentencia += clave;
  sentencia += '\'';
  return sentencia;
}

}  // namespace zuvi
