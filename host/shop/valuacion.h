// Rounding of quantities and amounts. Both round half to even, and both take a number within a hair of the
// half as the half: 0.1 * 5 and 0.5 must not part ways because of how they were worked out.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zuvi::host {

/// A quantity, to six decimals. Throws HostError (Overflow) for what is no finite number.
double RedondeaCantidad(double cantidad);
/// An amount in whole centavos. Throws HostError (Overflow) beyond what is kept exactly.
std::int64_t ACentavos(double importe);
/// Centavos as an amount.
double DeCentavos(std::int64_t centavos);
/// Centavos as text with two decimals.
std::string TextoImporte(std::int64_t centavos);

/// Whether a movement is the kit's own one of an assembly or a disassembly: its cost is then the amount of
/// the whole line, not a unit cost.
bool EsMovimientoDeKit(std::string_view tipo, std::string_view concepto);

}  // namespace zuvi::host
