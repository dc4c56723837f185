#pragma once

#include <array>
#include <cstdint>

namespace zuvi::campo {

/// Indices of `txtFields`, the editor's text fields. The first one is saved as the purchase order's number,
/// though its lookup offers concepts.
inline constexpr std::int16_t kConcepto = 0, kOrdenCompra = 0, kDescripcion = 1, kArticulo = 4, kCantidad = 5,
                              kPrecio = 6, kImpuesto = 8, kImporte = 11, kAlmacen = 14, kMoneda = 15,
                              kTipoCambio = 16, kClaveSecundaria = 24, kDato1 = 25, kDato2 = 26, kUnidad = 27,
                              kPresentacion = 28, kUnidadDeClave = 29;

/// Fields that only keys know: this window gives them neither place nor meaning, a host may.
inline constexpr std::int16_t kLibre7 = 7, kLibre13 = 13, kLibre17 = 17, kLibre18 = 18, kLibre19 = 19,
                              kLibre22 = 22, kLibre23 = 23;

/// Fields that the window carries without showing them, besides `kImporte`.
inline constexpr std::array kOcultos{kLibre7,  kImpuesto, kLibre13, kMoneda,  kTipoCambio,
                                     kLibre17, kLibre18,  kLibre19, kLibre22, kLibre23};

/// Labels of `Label10` that are the captions of boxes.
inline constexpr std::int16_t kRotuloPendiente = 1, kRotuloImprime = 2;

}  // namespace zuvi::campo
