#include "host/cli/tabla.h"

#include <utf8.h>

#include <algorithm>

#include "host/anfitrion/consola.h"

namespace zuvi::cli {
namespace {

/// Characters of a text; what is broken in it counts as one.
std::size_t Largo(const std::string& texto) {
  const std::string entero = utf8::replace_invalid(texto);
  return static_cast<std::size_t>(utf8::unchecked::distance(entero.begin(), entero.end()));
}

}  // namespace

Tabla::Tabla(std::vector<std::string> encabezados) {
  for (std::string& encabezado : encabezados) {
    a_la_derecha_.push_back(encabezado.starts_with('>'));
    if (a_la_derecha_.back()) encabezado.erase(0, 1);
  }
  filas_.push_back(std::move(encabezados));
}

void Tabla::Escribe(std::ostream& salida) const {
  // On a terminal a line end inside a cell would look like another row.
  if (dynamic_cast<const host::SalidaVisible*>(salida.rdbuf())) return EscribeFilas(salida, Visibles());
  EscribeFilas(salida, filas_);
}

Tabla::Filas Tabla::Visibles() const {
  Filas visibles = filas_;
  for (auto& fila : visibles)
    for (std::string& celda : fila) celda = host::Visible(celda, false);
  return visibles;
}

void Tabla::EscribeFilas(std::ostream& salida, const Filas& filas) const {
  std::vector<std::size_t> anchos(a_la_derecha_.size());
  for (const auto& fila : filas)
    for (std::size_t i = 0; i < fila.size(); ++i) anchos[i] = std::max(anchos[i], Largo(fila[i]));
  for (const auto& fila : filas) {
    std::string linea;
    for (std::size_t i = 0; i < fila.size(); ++i) {
      const std::string relleno(anchos[i] - Largo(fila[i]), ' ');
      if (i > 0) linea += "  ";
      linea += a_la_derecha_[i] ? relleno + fila[i] : fila[i] + relleno;
    }
    linea.erase(linea.find_last_not_of(' ') + 1);
    salida << linea << '\n';
  }
}

}  // namespace zuvi::cli
