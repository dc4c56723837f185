#include "host/shop/valuacion.h"

#include <algorithm>
#include <cmath>

#include "base/error.h"
#include "base/text.h"

namespace zuvi::host {
namespace {

/// Amounts stay whole numbers of a double up to here.
constexpr double kMaximo = 9007199254740992.0;

double RedondeaAlPar(double numero) {
  if (!(std::abs(numero) <= kMaximo)) throw HostError(ErrorNumber::Overflow);
  const double abajo = std::floor(numero);
  const double sobra = numero - abajo;
  // A few units of the last place of a product, and never so much that other numbers count as halves.
  const double margen = std::clamp(std::abs(numero) * 4e-15, 1e-9, 0.1);
  if (std::abs(sobra - 0.5) <= margen) return std::fmod(abajo, 2) == 0 ? abajo : abajo + 1;
  return std::floor(numero + 0.5);
}

}  // namespace

double RedondeaCantidad(double cantidad) { return RedondeaAlPar(cantidad * 1e6) / 1e6; }

std::int64_t ACentavos(double importe) { return static_cast<std::int64_t>(RedondeaAlPar(importe * 100)); }

double DeCentavos(std::int64_t centavos) { return static_cast<double>(centavos) / 100; }

std::string TextoImporte(std::int64_t centavos) {
  const std::uint64_t absoluto =
      centavos < 0 ? 0 - static_cast<std::uint64_t>(centavos) : static_cast<std::uint64_t>(centavos);
  return (centavos < 0 ? "-" : "") + std::to_string(absoluto / 100) + "." +
         ZeroPadded(static_cast<std::int32_t>(absoluto % 100), 2);
}

bool EsMovimientoDeKit(std::string_view tipo, std::string_view concepto) {
  if (tipo == "E") return concepto == "OP" || concepto == "DE";
  if (tipo == "S") return concepto == "COP" || concepto == "DEN";
  return false;
}

}  // namespace zuvi::host
