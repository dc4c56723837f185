#pragma once

#include <cstdint>

namespace zuvi::campo {

/// Indices of `txtFields`, the editor's text fields. The first one is saved as the purchase order's number,
/// though its lookup offers concepts.
inline constexpr std::int16_t kConcepto = 0, kOrdenCompra = 0, kDescripcion = 1, kArticulo = 4, kCantidad = 5,
                              kPrecio = 6, kImpuesto = 8, kImporte = 11, kAlmacen = 14, kMoneda = 15,
                              kTipoCambio = 16, kClaveSecundaria = 24, kDato1 = 25, kDato2 = 26, kUnidad = 27,
                              kPresentacion = 28, kUnidadDeClave = 29;

}  // namespace zuvi::campo
