#include "host/shop/costo_promedio.h"

#include <cmath>

#include "host/shop/celdas.h"

namespace zuvi::host {

std::optional<double> CostoBajoCandado(BaseDatos& base, const std::string& articulo) {
  // A SQLite transaction has the whole file locked by now.
  const auto fila = base.Consulta("SELECT costo FROM prods WHERE articulo = " + articulo +
                                  (base.GetEngine() == Engine::MariaDb ? " FOR UPDATE" : ""));
  if (fila->Eof()) return std::nullopt;
  return NumeroDe(fila->Campo(0));
}

bool ExplicaElCosto(double costo, double cantidad, std::int64_t centavos) {
  // The half centavo, and a hair for the arithmetic.
  return std::abs(static_cast<double>(centavos) - cantidad * costo * 100) <= 0.51;
}

void PonCostoPromedio(BaseDatos& base, const std::string& articulo) {
  const std::string de_el = " FROM existencias WHERE articulo = " + articulo + ")";
  base.Ejecuta("UPDATE prods SET costo = (SELECT SUM(valor) / SUM(cantidad) / 100" + de_el +
               " WHERE articulo = " + articulo + " AND (SELECT SUM(cantidad)" + de_el +
               " > 0 AND (SELECT SUM(valor)" + de_el + " >= 0");
}

}  // namespace zuvi::host
