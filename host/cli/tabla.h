#pragma once

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace zuvi::cli {

/// Text in columns. A heading that begins with '>' aligns its column to the right.
class Tabla {
 public:
  explicit Tabla(std::vector<std::string> encabezados);
  /// One cell for each heading.
  void Agrega(std::vector<std::string> fila) { filas_.push_back(std::move(fila)); }
  bool Vacia() const { return filas_.size() == 1; }
  /// Headings and rows, as wide as the longest cell; on a terminal a cell is one line.
  void Escribe(std::ostream& salida) const;

 private:
  using Filas = std::vector<std::vector<std::string>>;
  Filas Visibles() const;
  void EscribeFilas(std::ostream& salida, const Filas& filas) const;

  std::vector<bool> a_la_derecha_;
  Filas filas_;  // the headings first
};

}  // namespace zuvi::cli
