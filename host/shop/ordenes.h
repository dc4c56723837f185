#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "host/odbc/base_datos.h"

namespace zuvi::host {

/// One row an order, by number: op, estado, cerrado, ocupado, f_emision, fechaEntrega, almacen, nombre (of
/// the warehouse), usuario, usufecha, usuhora, and of its lines partidas, cantidad, terminado, importe.
std::shared_ptr<Recordset> ResumenDeOrdenes(BaseDatos& base);
/// State of an order's row in words: "Pendiente" or "Confirmada", and ", cerrada".
std::string EstadoEnPalabras(Recordset& orden);
/// What is left to deliver of an order, a line each; empty when all is finished.
std::string PorEntregar(BaseDatos& base, std::int32_t op);
/// How many lines an order has.
std::int32_t CuantasPartidas(BaseDatos& base, std::int32_t op);
/// Whether there is an order of that number.
bool HayOrden(BaseDatos& base, std::int32_t op);

}  // namespace zuvi::host
