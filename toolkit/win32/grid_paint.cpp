#include "toolkit/win32/grid_paint.h"

#include <algorithm>

#include "toolkit/win32/drawing.h"

namespace zuvi::native {
namespace {

COLORREF Blend(COLORREF under, COLORREF over, int percent) {
  const auto mix = [percent](int a, int b) {
    return static_cast<BYTE>((a * (100 - percent) + b * percent) / 100);
  };
  return RGB(mix(GetRValue(under), GetRValue(over)), mix(GetGValue(under), GetGValue(over)),
             mix(GetBValue(under), GetBValue(over)));
}

void Fill(HDC canvas, const RECT& place, COLORREF colour) {
  ::SetBkColor(canvas, colour);
  ::ExtTextOutW(canvas, 0, 0, ETO_OPAQUE, &place, nullptr, 0, nullptr);
}

void Frame(HDC canvas, RECT place, COLORREF colour, int thickness) {
  const UniqueGdi<HBRUSH> brush(::CreateSolidBrush(colour));
  for (; thickness > 0; --thickness) {
    ::FrameRect(canvas, &place, brush.get());
    ::InflateRect(&place, -1, -1);
  }
}

/// Colours of one painting: the system's, so that schemes of high contrast are kept to.
struct Palette {
  COLORREF paper, tint, ink, heading, heading_ink, line, current_row, mark;

  Palette(const FlexGrid& grid, const GridLook& look) {
    const bool enabled = grid.Enabled();
    paper = ::GetSysColor(enabled ? COLOR_WINDOW : COLOR_3DFACE);
    // The paper says that nothing can be changed; what stands on it is still to be read.
    ink = ::GetSysColor(enabled ? COLOR_WINDOWTEXT : COLOR_BTNTEXT);
    heading = ::GetSysColor(COLOR_3DFACE);
    heading_ink = ::GetSysColor(COLOR_BTNTEXT);
    mark = ::GetSysColor(look.focused ? COLOR_HIGHLIGHT : COLOR_3DSHADOW);
    if (look.high_contrast) {
      tint = current_row = paper;
      line = ink;
    } else {
      tint = Blend(paper, ::GetSysColor(COLOR_3DFACE), 25);
      current_row = Blend(paper, ::GetSysColor(COLOR_HIGHLIGHT), look.focused ? 14 : 7);
      line = Blend(paper, ::GetSysColor(COLOR_3DSHADOW), 35);
    }
  }
};

class Painter {
 public:
  Painter(HDC canvas, const RECT& client, const FlexGrid& grid, const GridLook& look)
      : canvas_(canvas), client_(client), grid_(grid), look_(look), palette_(grid, look) {}

  void Paint(const RECT& part) {
    Fill(canvas_, part, palette_.paper);
    ::SetBkMode(canvas_, TRANSPARENT);
    std::int32_t top = 0;
    for (std::int32_t row = 0; row < grid_.Rows() && Px(top) < part.bottom; ++row) {
      if (row == grid_.FixedRows()) row = std::max(row, grid_.TopRow());
      if (row >= grid_.Rows()) break;
      const std::int32_t bottom = top + grid_.RowHeight();
      if (Px(bottom) > part.top) PaintRow(row, top, bottom, part);
      top = bottom;
    }
    Frame(canvas_, client_, palette_.line, 1);
  }

 private:
  int Px(std::int32_t twips) const { return look_.form.Pixels(twips); }

  void PaintRow(std::int32_t row, std::int32_t top, std::int32_t bottom, const RECT& part) {
    std::int32_t left = 0;
    for (std::int32_t col = 0; col < grid_.Cols() && Px(left) < part.right; ++col) {
      if (col == grid_.FixedCols()) col = std::max(col, grid_.LeftCol());
      if (col >= grid_.Cols()) break;
      const std::int32_t right = left + grid_.ShownWidth(col);
      if (right > left && Px(right) > part.left)
        PaintCell(row, col, {Px(left), Px(top), Px(right), Px(bottom)});
      left = right;
    }
  }

  void PaintCell(std::int32_t row, std::int32_t col, const RECT& cell) {
    const bool heading = row < grid_.FixedRows() || col < grid_.FixedCols();
    const bool current = !heading && row == grid_.Row() && col == grid_.Col() && grid_.FocusRect() != 0;
    const bool inverted = current && look_.high_contrast && look_.focused;
    const COLORREF paper = heading                         ? palette_.heading
                           : inverted                      ? ::GetSysColor(COLOR_HIGHLIGHT)
                           : row == grid_.Row()            ? palette_.current_row
                           : (row - grid_.FixedRows()) % 2 ? palette_.tint
                                                           : palette_.paper;
    Fill(canvas_, cell, paper);
    Fill(canvas_, {cell.left, cell.bottom - 1, cell.right, cell.bottom}, palette_.line);
    Fill(canvas_, {cell.right - 1, cell.top, cell.right, cell.bottom}, palette_.line);

    const std::string& text = grid_.TextMatrix(row, col);
    if (!text.empty()) {
      const std::wstring wide = Wide(text);
      RECT room = cell;
      ::InflateRect(&room, -Px(Dip(5)), 0);
      ::SetTextColor(canvas_, heading    ? palette_.heading_ink
                              : inverted ? ::GetSysColor(COLOR_HIGHLIGHTTEXT)
                                         : palette_.ink);
      ::DrawTextW(canvas_, wide.c_str(), static_cast<int>(wide.size()), &room,
                  DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS |
                      (grid_.RightAligned(col) ? DT_RIGHT : DT_LEFT));
    }
    if (current) MarkCurrent(cell);
  }

  void MarkCurrent(RECT cell) {
    --cell.right;
    --cell.bottom;
    const int pixel = std::max(1, Px(kTwipsPerDip));
    if (grid_.FocusRect() == 3)
      ::DrawEdge(canvas_, &cell, EDGE_SUNKEN, BF_RECT);
    else
      Frame(canvas_, cell, palette_.mark, grid_.FocusRect() * pixel);
  }

  HDC canvas_;
  RECT client_;
  const FlexGrid& grid_;
  const GridLook& look_;
  Palette palette_;
};

}  // namespace

void PaintGrid(HDC canvas, const RECT& client, const RECT& part, const FlexGrid& grid, const GridLook& look) {
  Painter(canvas, client, grid, look).Paint(part);
}

GridCell CellAt(const FlexGrid& grid, std::int32_t x, std::int32_t y) {
  GridCell cell;
  if (x < 0 || y < 0) return cell;
  const std::int32_t line = y / grid.RowHeight();
  const std::int32_t row = line < grid.FixedRows() ? line : grid.TopRow() + line - grid.FixedRows();
  if (row < grid.Rows()) cell.row = row;
  std::int32_t left = 0;
  for (std::int32_t col = 0; col < grid.Cols(); ++col) {
    if (col == grid.FixedCols()) col = std::max(col, grid.LeftCol());
    if (col >= grid.Cols()) break;
    left += grid.ShownWidth(col);
    if (x >= left) continue;
    cell.col = col;
    break;
  }
  return cell;
}

}  // namespace zuvi::native
