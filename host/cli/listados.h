// What `zuvi` prints: rows of the shop as tables on standard output, numbers with a decimal point.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>

#include "host/odbc/base_datos.h"

namespace zuvi::cli {

/// Any query, with its columns' names as headings.
void EscribeConsulta(std::ostream& salida, host::BaseDatos& base, const std::string& sql);
/// Stock and value by warehouse; of one article or of all.
void EscribeExistencias(std::ostream& salida, host::BaseDatos& base, const std::string& articulo);
/// All orders, one a line.
void EscribeOrdenes(std::ostream& salida, host::BaseDatos& base);
/// One order with its lines. Throws HostError when there is none of that number.
void EscribeOrden(std::ostream& salida, host::BaseDatos& base, std::int32_t op);
/// Recipe of a kit with the present costs. Throws HostError when the article has none.
void EscribeKit(std::ostream& salida, host::BaseDatos& base, const std::string& articulo);
/// Stock that is not the sum of its movements, and costs that the stock's value does not explain. True when
/// all stock is.
bool EscribeRevision(std::ostream& salida, host::BaseDatos& base);
/// The orders that carry the busy mark.
void EscribeOcupadas(std::ostream& salida, host::BaseDatos& base);

}  // namespace zuvi::cli
