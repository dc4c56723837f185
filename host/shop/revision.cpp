#include "host/shop/revision.h"

namespace zuvi::host {

std::shared_ptr<Recordset> ExistenciasSinMovimientos(BaseDatos& base) {
  // Quantities have six decimals; less is the arithmetic of a long sum. Sums of whole numbers would end the
  // query where they get too large, which is what it is there to find.
  return base.Consulta(
      "SELECT articulo, almacen, SUM(cantidad) AS cantidad, SUM(movida) AS movida, SUM(valor * 1.0) AS "
      "valor, "
      "SUM(importe * 1.0) AS importe FROM (SELECT articulo, almacen, cantidad, 0 AS movida, valor, 0 AS "
      "importe "
      "FROM "
      "existencias UNION ALL SELECT articulo, almacen, 0, CASE WHEN tipo = 'E' THEN cantidad ELSE -cantidad "
      "END, "
      "0, CASE WHEN tipo = 'E' THEN importe ELSE -importe END FROM movimientos) AS lados GROUP BY articulo, "
      "almacen HAVING ABS(SUM(cantidad) - SUM(movida)) > 0.000005 OR SUM(valor * 1.0) <> SUM(importe * 1.0) "
      "ORDER BY "
      "articulo, almacen");
}

std::shared_ptr<Recordset> CostosSinExplicar(BaseDatos& base) {
  // Each movement that the cost explained may have left half a centavo.
  return base.Consulta(
      "SELECT prods.articulo, prods.costo, total.valor / total.cantidad / 100 AS promedio FROM prods JOIN "
      "(SELECT "
      "articulo, SUM(cantidad) AS cantidad, SUM(valor * 1.0) AS valor FROM existencias GROUP BY articulo) AS "
      "total "
      "ON "
      "total.articulo = prods.articulo LEFT JOIN (SELECT articulo, COUNT( * ) AS cuantos FROM movimientos "
      "GROUP "
      "BY articulo) AS movidos ON movidos.articulo = prods.articulo WHERE total.cantidad > 0 AND total.valor "
      ">= 0 "
      "AND ABS(total.valor - total.cantidad * prods.costo * 100) > 0.51 * (1 + COALESCE(movidos.cuantos, 0)) "
      "ORDER BY prods.articulo");
}

}  // namespace zuvi::host
