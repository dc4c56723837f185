#include "base/object.h"
#include "host/odbc/base_datos.h"

namespace zuvi::host {
std::string Literal(Motor motor, const std::string& texto) {
  std::string literal = "'";
  literal.reserve(texto.size() + 2);
  for (const char c : texto) {
    if (c == '\'' || (c == '\\' && motor == Motor::MariaDb)) literal += c;
    literal += c;
  }
  return literal += '\'';
}

std::string LiteralFecha(Motor motor, const Fecha& fecha) { return Literal(motor, fecha.Texto()); }

std::string Literal(Motor motor, const Value& valor) {
  if (valor.IsNull() || valor.IsEmpty()) return "NULL";
  if (const auto* texto = std::get_if<std::string>(&valor.Get())) return Literal(motor, *texto);
  if (const auto* fecha = std::get_if<Fecha>(&valor.Get())) return LiteralFecha(motor, *fecha);
  // A flag in a table is 0 or not 0; text would not do.
  if (const auto* bandera = std::get_if<bool>(&valor.Get())) return *bandera ? "-1" : "0";
  if (valor.IsObject()) return Literal(motor, PlainValue(valor));
  return ATexto(valor);
}

}  // namespace zuvi::host
