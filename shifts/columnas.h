#pragma once

#include <initializer_list>
#include <string>

#include "toolkit/list_view.h"

namespace zuvi {

/// A column as the shift windows give it to a list.
struct ColumnaDeLista {
  const char* titulo;
  const char* clave;
  std::int32_t ancho = 0;
};

/// Gives a list in report view its columns anew; any other view has none.
inline void PonColumnas(ListView& lista, std::initializer_list<ColumnaDeLista> columnas) {
  if (lista.View() != ListView::kReport) return;
  lista.Columns().Clear();
  for (const ColumnaDeLista& columna : columnas)
    lista.Columns().Add(columna.clave, columna.titulo, columna.ancho);
}

/// Key of a list item. It begins with a letter: a key of digits alone would be taken for a position.
inline std::string ClaveDeItem(const std::string& clave) {
  std::string item = "P";
  item += clave;
  return item;
}

}  // namespace zuvi
