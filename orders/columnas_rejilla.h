#pragma once

#include <array>
#include <cstdint>

namespace zuvi {

/// Columns of the lines grid `fg2`, by which its cells are read and written. `kEntrada` holds the key of the
/// stored line, whatever its heading says.
namespace columna {
inline constexpr std::int32_t kArticulo = 0, kCantidad = 1, kPrecio = 2, kImporte = 3, kDescripcion = 4,
                              kEntrada = 5, kPresentacion = 6, kCantidadDePresentacion = 7;
}  // namespace columna

/// Heading and width, in twips, of a column. A hidden one (width 0) keeps cells that saving reads.
struct EncabezadoDeColumna {
  std::int32_t columna;
  const char* titulo;
  std::int32_t ancho;
};
inline constexpr std::array kEncabezados{
    EncabezadoDeColumna{columna::kArticulo, "Artículo", 1800},
    EncabezadoDeColumna{columna::kCantidad, "QTY", 1800},
    EncabezadoDeColumna{columna::kPrecio, "Precio", 0},
    EncabezadoDeColumna{columna::kImporte, "Importe", 0},
    EncabezadoDeColumna{columna::kDescripcion, "Descripción", 6000},
    EncabezadoDeColumna{columna::kEntrada, "No de Op", 0},
    EncabezadoDeColumna{columna::kPresentacion, "Presentación", 0},
    EncabezadoDeColumna{columna::kCantidadDePresentacion, "Pr. QTY", 0},
};

}  // namespace zuvi
