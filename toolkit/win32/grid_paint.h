#pragma once

#include "toolkit/flex_grid.h"
#include "toolkit/win32/native_form.h"

namespace zuvi::native {

/// How a grid is drawn.
struct GridLook {
  const NativeForm& form;  // scale and font
  bool focused = false;
  bool high_contrast = false;
};

/// Draws what of the grid lies within `part`, in pixels of the client area.
void PaintGrid(HDC canvas, const RECT& client, const RECT& part, const FlexGrid& grid, const GridLook& look);
/// The cell under a point; -1 for row or column where there is none.
struct GridCell {
  std::int32_t row = -1, col = -1;
};
GridCell CellAt(const FlexGrid& grid, std::int32_t x_twips, std::int32_t y_twips);

}  // namespace zuvi::native
