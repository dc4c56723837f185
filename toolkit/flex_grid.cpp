#include "toolkit/flex_grid.h"

#include <algorithm>
#include <utility>

#include "toolkit/form.h"

namespace zuvi {
namespace {

/// What no real grid has: a number beyond is a mistake, and the memory for it would be too.
constexpr std::int32_t kMostRows = 1'000'000, kMostCols = 1'000;

const std::string kBlank;

}  // namespace

FlexGrid::FlexGrid(Form& form, std::string name, std::int16_t index)
    : Control(form, std::move(name), index), cells_(2), columns_(2) {}

void FlexGrid::Check(std::int32_t row, std::int32_t col) const {
  if (row < 0 || row >= Rows() || col < 0 || col >= cols_) throw HostError(ErrorNumber::SubscriptOutOfRange);
}

void FlexGrid::Show(Aspect aspect) {
  if (redraw_) Changed(aspect);
}

// Shape.

void FlexGrid::SetRows(std::int32_t rows) {
  if (rows <= fixed_rows_ || rows > kMostRows) throw HostError(ErrorNumber::InvalidCall);
  cells_.resize(At(rows));
  KeepWithin();
}

void FlexGrid::SetCols(std::int32_t cols) {
  if (cols <= fixed_cols_ || cols > kMostCols) throw HostError(ErrorNumber::InvalidCall);
  columns_.resize(At(cols));
  if (cols < cols_)
    for (auto& row : cells_)
      if (row.size() > At(cols)) row.resize(At(cols));
  for (std::int32_t col = std::exchange(cols_, cols); col < cols; ++col) Measure(col);
  Show(Aspect::Columns);
  KeepWithin();
}

void FlexGrid::SetFixedRows(std::int32_t rows) {
  if (rows < 0 || rows >= Rows()) throw HostError(ErrorNumber::InvalidCall);
  fixed_rows_ = rows;
  row_ = std::max(row_, rows);
  KeepWithin();
}

void FlexGrid::SetFixedCols(std::int32_t cols) {
  if (cols < 0 || cols >= cols_) throw HostError(ErrorNumber::InvalidCall);
  fixed_cols_ = cols;
  col_ = std::max(col_, cols);
  KeepWithin();
}

void FlexGrid::KeepWithin() {
  row_ = std::min(row_, Rows() - 1);
  col_ = std::min(col_, cols_ - 1);
  top_row_ = std::clamp(top_row_, fixed_rows_, LastTopRow());
  left_col_ = std::clamp(left_col_, fixed_cols_, cols_ - 1);
  Show(Aspect::Items);
  Show(Aspect::Cell);
}

// Cells.

const std::string& FlexGrid::Cell(std::int32_t row, std::int32_t col) const {
  const auto& cells = cells_[At(row)];
  return At(col) < cells.size() ? cells[At(col)] : kBlank;
}

const std::string& FlexGrid::TextMatrix(std::int32_t row, std::int32_t col) const {
  Check(row, col);
  return Cell(row, col);
}

void FlexGrid::SetTextMatrix(std::int32_t row, std::int32_t col, std::string text) {
  if (row >= Rows() && row < kMostRows && col >= 0 && col < cols_) SetRows(row + 1);
  Check(row, col);
  auto& cells = cells_[At(row)];
  if (At(col) >= cells.size()) cells.resize(At(cols_));
  cells[At(col)] = std::move(text);
  if (row == 0) Measure(col);
  Show(Aspect::Items);
}

void FlexGrid::RemoveItem(std::int32_t row) {
  if (row < fixed_rows_ || row >= Rows()) throw HostError(ErrorNumber::SubscriptOutOfRange);
  cells_.erase(cells_.begin() + row);
  cells_.emplace_back();
  Show(Aspect::Items);
}

// Columns.

std::int32_t FlexGrid::ColWidth(std::int32_t col) const {
  return col >= 0 && col < cols_ ? columns_[At(col)].width : 0;
}

void FlexGrid::SetColWidth(std::int32_t col, std::int32_t width) {
  if (col < 0 || col >= cols_) return;
  columns_[At(col)].width = std::max(0, width);
  Measure(col);
  Show(Aspect::Columns);
}

void FlexGrid::SetStretchCol(std::int32_t col) {
  stretch_col_ = col;
  Show(Aspect::Columns);
}

bool FlexGrid::RightAligned(std::int32_t col) const {
  return col >= 0 && col < cols_ && columns_[At(col)].right_aligned;
}

void FlexGrid::SetRightAligned(std::int32_t col, bool right) {
  if (col < 0 || col >= cols_) return;
  columns_[At(col)].right_aligned = right;
  Show(Aspect::Columns);
}

std::int32_t FlexGrid::MinimumWidth(std::int32_t col) const {
  return col >= 0 && col < cols_ ? columns_[At(col)].least : 0;
}

void FlexGrid::Measure(std::int32_t col) {
  constexpr std::int32_t kBesideHeading = Dip(12);
  Column& column = columns_[At(col)];
  column.least = column.width;
  const TextMeasure* const texts = Window() ? Window()->Texts() : nullptr;
  if (column.width == 0 || !texts) return;
  const std::int32_t heading = fixed_rows_ > 0 ? texts->Width(Cell(0, col)) + kBesideHeading : 0;
  column.least = std::max(texts->Scaled(column.width), heading);
}

std::int32_t FlexGrid::ShownWidth(std::int32_t col) const {
  const std::int32_t own = MinimumWidth(col);
  if (col != stretch_col_ || own == 0) return own;
  std::int32_t room = Width() - chrome_width_;
  for (std::int32_t other = 0; other < cols_; ++other)
    if (other != col) room -= MinimumWidth(other);
  return std::max(own, room);
}

void FlexGrid::FitTo(const TextMeasure& texts) {
  row_height_ = std::max(kRowHeight, texts.LineHeight() + Dip(5));
  for (std::int32_t col = 0; col < cols_; ++col) Measure(col);
  KeepWithin();
}

// What shows.

void FlexGrid::SetRedraw(bool redraw) {
  if (redraw == redraw_) return;
  redraw_ = redraw;
  for (const Aspect waited : {Aspect::Columns, Aspect::Items, Aspect::Cell, Aspect::State}) Show(waited);
}

void FlexGrid::SetFocusRect(std::int16_t style) {
  if (style < 0 || style > 3) throw HostError(ErrorNumber::InvalidCall);
  if (style == focus_rect_) return;
  focus_rect_ = style;
  Show(Aspect::State);
}

std::int32_t FlexGrid::VisibleRows() const {
  return std::max(1, (Height() - chrome_height_) / row_height_ - fixed_rows_);
}

std::int32_t FlexGrid::LastTopRow() const { return std::max(fixed_rows_, Rows() - VisibleRows()); }

void FlexGrid::SetChrome(std::int32_t width, std::int32_t height) {
  chrome_width_ = width;
  chrome_height_ = height;
  top_row_ = std::clamp(top_row_, fixed_rows_, LastTopRow());
}

void FlexGrid::SetTopRow(std::int32_t row) {
  ScrollTo(std::clamp(row, fixed_rows_, LastTopRow()), left_col_);
}

void FlexGrid::SetLeftCol(std::int32_t col) { ScrollTo(top_row_, std::clamp(col, fixed_cols_, cols_ - 1)); }

void FlexGrid::ScrollTo(std::int32_t top_row, std::int32_t left_col) {
  if (top_row == top_row_ && left_col == left_col_) return;
  top_row_ = top_row;
  left_col_ = left_col;
  Show(Aspect::Cell);
  Raise(OnScroll);
}

void FlexGrid::ScrollIntoView() {
  std::int32_t top = top_row_, left = left_col_;
  if (row_ >= fixed_rows_) top = std::clamp(top, row_ - VisibleRows() + 1, row_);
  top = std::max(top, fixed_rows_);
  if (col_ >= fixed_cols_ && ShownWidth(col_) > 0) {
    std::int32_t room = Width() - chrome_width_;
    for (std::int32_t col = 0; col < fixed_cols_; ++col) room -= ShownWidth(col);
    left = std::min(left, col_);
    std::int32_t wanted = 0;
    for (std::int32_t col = left; col <= col_; ++col) wanted += ShownWidth(col);
    for (; wanted > room && left < col_; ++left) wanted -= ShownWidth(left);
  }
  ScrollTo(top, left);
}

Rect FlexGrid::CellBounds() {
  const auto self = shared_from_this();
  ScrollIntoView();
  Rect cell;
  for (std::int32_t col = 0; col < std::min(col_, fixed_cols_); ++col) cell.left += ShownWidth(col);
  for (std::int32_t col = left_col_; col < col_; ++col) cell.left += ShownWidth(col);
  const std::int32_t line = row_ < fixed_rows_ ? row_ : fixed_rows_ + row_ - top_row_;
  cell.top = line * row_height_;
  // As much of a wide column as there is to be seen.
  cell.width = std::clamp(Width() - chrome_width_ - cell.left, 0, ShownWidth(col_));
  cell.height = row_height_;
  return cell;
}

// The current cell.

void FlexGrid::MoveTo(std::int32_t row, std::int32_t col) {
  Check(row, col);
  if (row == row_ && col == col_) return;
  const auto self = shared_from_this();
  const auto alive = [this] { return Window() && !Window()->Closed(); };
  // A handler that itself moves leaves no other cell than the one that is being left.
  if (!leaving_) {
    leaving_ = true;
    try {
      Raise(OnLeaveCell);
    } catch (...) {
      leaving_ = false;
      throw;
    }
    leaving_ = false;
    // It may have closed the window, taken the cell away, or gone there itself.
    if (!alive() || row >= Rows() || col >= cols_ || (row == row_ && col == col_)) return;
  }
  row_ = row;
  col_ = col;
  Show(Aspect::Cell);
  ScrollIntoView();
  if (alive() && row == row_ && col == col_) Raise(OnRowColChange);
}

void FlexGrid::UserClicked(std::int32_t row, std::int32_t col) {
  if (row >= fixed_rows_ && row < Rows() && col >= fixed_cols_ && col < cols_) MoveTo(row, col);
}

std::int32_t FlexGrid::ShownColumn(std::int32_t from, std::int32_t step) const {
  for (std::int32_t col = from; col >= fixed_cols_ && col < cols_; col += step)
    if (ShownWidth(col) > 0) return col;
  return col_;
}

void FlexGrid::DefaultKey(std::int16_t key, std::int16_t shift) {
  if (shift & shift::kAlt) return;
  const bool whole = (shift & shift::kCtrl) != 0;
  const std::int32_t last_row = Rows() - 1;
  std::int32_t row = row_, col = col_;
  switch (key) {
    case key::kUp:
      --row;
      break;
    case key::kDown:
      ++row;
      break;
    case key::kPageUp:
      row -= VisibleRows();
      break;
    case key::kPageDown:
      row += VisibleRows();
      break;
    case key::kLeft:
      col = ShownColumn(col_ - 1, -1);
      break;
    case key::kRight:
      col = ShownColumn(col_ + 1, 1);
      break;
    case key::kHome:
      col = ShownColumn(fixed_cols_, 1);
      if (whole) row = fixed_rows_;
      break;
    case key::kEnd:
      col = ShownColumn(cols_ - 1, -1);
      if (whole) row = last_row;
      break;
    default:
      return;
  }
  MoveTo(std::clamp(row, fixed_rows_, last_row), col);
}

bool FlexGrid::PageKey(std::int16_t key, std::int16_t shift) {
  if (Enabled() || !Visible() || (shift & (shift::kAlt | shift::kShift))) return false;
  const bool whole = (shift & shift::kCtrl) != 0;
  if (key == key::kPageUp && !whole) {
    SetTopRow(top_row_ - VisibleRows());
  } else if (key == key::kPageDown && !whole) {
    SetTopRow(top_row_ + VisibleRows());
  } else if (key == key::kHome && whole) {
    SetTopRow(fixed_rows_);
  } else if (key == key::kEnd && whole) {
    std::int32_t last = Rows() - 1;
    while (last > fixed_rows_ && std::ranges::all_of(cells_[At(last)], &std::string::empty)) --last;
    SetTopRow(last - VisibleRows() + 1);
  } else {
    return false;
  }
  return true;
}

const MemberTable* FlexGrid::Members() const {
  using T = FlexGrid;
  static const MemberTable table =
      WithControlMembers(MemberTable::Of<T>()
                             .Property<&T::Text, &T::SetText>("Text")
                             .AsDefault()
                             .Property<&T::TextMatrix, &T::SetTextMatrix>("TextMatrix", {"row", "col"})
                             .Property<&T::Rows, &T::SetRows>("Rows")
                             .Property<&T::Cols, &T::SetCols>("Cols")
                             .Property<&T::FixedRows, &T::SetFixedRows>("FixedRows")
                             .Property<&T::FixedCols, &T::SetFixedCols>("FixedCols")
                             .Property<&T::Row, &T::SetRow>("Row")
                             .Property<&T::Col, &T::SetCol>("Col")
                             .Property<&T::ColWidth, &T::SetColWidth>("ColWidth", {"col"})
                             .Property<&T::TopRow, &T::SetTopRow>("TopRow")
                             .Property<&T::LeftCol, &T::SetLeftCol>("LeftCol")
                             .Property<&T::CellLeft>("CellLeft")
                             .Property<&T::CellTop>("CellTop")
                             .Property<&T::CellWidth>("CellWidth")
                             .Property<&T::CellHeight>("CellHeight")
                             .Property<&T::Redraw, &T::SetRedraw>("Redraw")
                             .Property<&T::FocusRect, &T::SetFocusRect>("FocusRect")
                             .Method<&T::RemoveItem>("RemoveItem", {"row"}));
  return &table;
}

}  // namespace zuvi
