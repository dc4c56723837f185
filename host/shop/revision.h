// Looks for stock and costs that another program wrote past the movements. Reads alone.
#pragma once

#include <memory>

#include "host/odbc/base_datos.h"

namespace zuvi::host {

/// Stock rows that are not the sum of their movements, with columns articulo, almacen, cantidad, movida,
/// valor and importe (centavos).
std::shared_ptr<Recordset> ExistenciasSinMovimientos(BaseDatos& base);
/// Articles in stock whose cost is further from the average than rounding explains: articulo, costo,
/// promedio. Movements while the stock was negative may also lead there.
std::shared_ptr<Recordset> CostosSinExplicar(BaseDatos& base);

}  // namespace zuvi::host
