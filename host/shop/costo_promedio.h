// The average cost of an article, over all warehouses. Used inside the transaction of a movement.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "host/odbc/base_datos.h"

namespace zuvi::host {

/// The present cost of an article, whose row stays locked until the transaction ends: movements of one
/// article follow one another. Nothing for an article that is not in `prods`. `articulo` is a literal.
std::optional<double> CostoBajoCandado(BaseDatos& base, const std::string& articulo);

/// Whether that cost explains a movement's amount, to the half centavo that rounding takes or gives. As long
/// as it does the cost stays: were it worked out anew each time, the rounding left on a small rest of stock
/// would move it.
bool ExplicaElCosto(double costo, double cantidad, std::int64_t centavos);

/// Makes the cost total value by total quantity, once the stock has changed. Without stock, or with a
/// negative one, the last cost stays.
void PonCostoPromedio(BaseDatos& base, const std::string& articulo);

}  // namespace zuvi::host
