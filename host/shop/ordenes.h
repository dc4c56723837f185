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
/// The lines of an order as they stand: how many there are, and what is left to deliver of them, a line of
/// text each; that is empty when all are finished.
struct PartidasDeOrden {
  PartidasDeOrden(BaseDatos& base, std::int32_t op);
  std::int32_t cuantas = 0;
  std::string por_entregar;
};
/// Whether there is an order of that number.
bool HayOrden(BaseDatos& base, std::int32_t op);

/// What command line and main window say of an order, with the same words.
struct DeOrden {
  explicit DeOrden(std::int32_t op);
  std::string orden;  // "La orden 103"
  std::string no_existe, sin_partidas, ya_entregada, no_cancelada, no_ocupada;
};

}  // namespace zuvi::host
