#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zuvi::host {

/// An ODBC connection string taken apart: "DRIVER={…};Server=…;PWD={a;b}". Names are compared without case.
class CadenaOdbc {
 public:
  explicit CadenaOdbc(std::string_view cadena);
  /// Value without its braces; empty when there is none.
  std::string Trae(std::string_view nombre) const;
  void Pon(std::string_view nombre, std::string_view valor);
  void Quita(std::string_view nombre);
  std::string Texto() const;

 private:
  std::vector<std::pair<std::string, std::string>> atributos_;  // values as they stand in the string
};

}  // namespace zuvi::host
