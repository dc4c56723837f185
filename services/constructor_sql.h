#pragma once

#include <memory>
#include <string>

#include "services/recordset.h"

namespace zuvi {

/// The host's statement builder: every INSERT and UPDATE of `op`, `oppart`, `turnos` and `turnoempleado`.
class ConstructorSql : public Object {
 public:
  static constexpr const char* kProgId = "ZuviQuery.ConstructorSql";

  /// The connection that `Ejecuta` runs on; set once, first.
  virtual void PonConexion(const std::shared_ptr<Conexion>& conexion) = 0;
  /// Binds to the host's path collection (order editor only, when the host offers one).
  virtual void PonRutas(const ObjectPtr& rutas) = 0;
  /// Forgets kind, columns and condition collected before.
  virtual void Limpia() = 0;
  /// "INSERT" or "UPDATE".
  virtual void Tipo(const std::string& tipo) = 0;
  /// Adds one column and its value: a 16-bit or 32-bit integer, a real, a text, a date, or an object that
  /// stands for its default text. The host writes the literal.
  virtual void AgregaCampo(const std::string& tabla, const std::string& columna, const Value& valor) = 0;
  /// WHERE condition of an UPDATE, for example "op = 12".
  virtual void Condicion(const std::string& condicion) = 0;
  /// Builds the statement for that table; an UPDATE without columns is accepted and does nothing.
  virtual void Genera(const std::string& tabla) = 0;
  /// Runs the built statement on the bound connection. Throws HostError with the database's own description.
  virtual void Ejecuta() = 0;
};

}  // namespace zuvi
