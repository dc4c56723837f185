#include "base/object.h"
#include "host/odbc/base_datos.h"

namespace zuvi::host {
std::string Literal(Engine engine, const std::string& text) {
  std::string literal = "'";
  literal.reserve(text.size() + 2);
  for (const char c : text) {
    if (c == '\'' || (c == '\\' && engine == Engine::MariaDb)) literal += c;
    literal += c;
  }
  return literal += '\'';
}

std::string LiteralFecha(Engine engine, const Date& date) { return Literal(engine, date.Texto()); }

std::string Literal(Engine engine, const Value& value) {
  if (value.IsNull() || value.IsEmpty()) return "NULL";
  if (const auto* text = std::get_if<std::string>(&value.Get())) return Literal(engine, *text);
  if (const auto* date = std::get_if<Date>(&value.Get())) return LiteralFecha(engine, *date);
  // A flag in a table is 0 or not 0; text would not do.
  if (const auto* flag = std::get_if<bool>(&value.Get())) return *flag ? "-1" : "0";
  if (value.IsObject()) return Literal(engine, PlainValue(value));
  return ToText(value);
}

}  // namespace zuvi::host
