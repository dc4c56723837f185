#pragma once

#include <string>
#include <vector>

#include "toolkit/control.h"

namespace zuvi {

/// A grid of cells with a current one. Rows and columns count from 0, the fixed ones (headings) first; widths
/// and places are twips. The grid itself edits nothing.
///
/// Moving the current cell raises LeaveCell with the old cell still current, then RowColChange with the new.
class FlexGrid final : public Control {
 public:
  static constexpr std::int32_t kDefaultWidth = 960, kRowHeight = Dip(22);

  FlexGrid(Form& form, std::string name, std::int16_t index);

  std::int32_t Rows() const { return static_cast<std::int32_t>(cells_.size()); }
  std::int32_t Cols() const { return cols_; }
  std::int32_t FixedRows() const { return fixed_rows_; }
  std::int32_t FixedCols() const { return fixed_cols_; }
  /// All throw HostError (InvalidCall) for numbers that make no grid.
  void SetRows(std::int32_t rows);
  void SetCols(std::int32_t cols);
  void SetFixedRows(std::int32_t rows);
  void SetFixedCols(std::int32_t cols);

  std::int32_t Row() const { return row_; }
  std::int32_t Col() const { return col_; }
  /// Throw HostError (SubscriptOutOfRange) outside the grid.
  void SetRow(std::int32_t row) { MoveTo(row, col_); }
  void SetCol(std::int32_t col) { MoveTo(row_, col); }
  void MoveTo(std::int32_t row, std::int32_t col);

  /// The current cell.
  const std::string& Text() const { return Cell(row_, col_); }
  void SetText(std::string text) { SetTextMatrix(row_, col_, std::move(text)); }
  /// Any cell. Throws HostError (SubscriptOutOfRange) outside; writing below the last row adds rows.
  const std::string& TextMatrix(std::int32_t row, std::int32_t col) const;
  void SetTextMatrix(std::int32_t row, std::int32_t col, std::string text);
  /// Width of a column; 0 hides it, its cells keep their texts. A column that is not there is passed over.
  std::int32_t ColWidth(std::int32_t col) const;
  void SetColWidth(std::int32_t col, std::int32_t width);
  /// The column that takes what room the others leave; -1 for none.
  std::int32_t StretchCol() const { return stretch_col_; }
  void SetStretchCol(std::int32_t col);
  /// Columns shown to the right, as numbers are.
  bool RightAligned(std::int32_t col) const;
  void SetRightAligned(std::int32_t col, bool right);
  /// Takes a row out, the following move up; the grid keeps its number of rows by a blank one at the end.
  /// Throws HostError (SubscriptOutOfRange) for a fixed row or none.
  void RemoveItem(std::int32_t row);

  /// Whether changes show at once; turning it on shows what waited.
  bool Redraw() const { return redraw_; }
  void SetRedraw(bool redraw);
  /// How the current cell is framed: 0 not, 1 thin, 2 heavy, 3 inset.
  std::int16_t FocusRect() const { return focus_rect_; }
  void SetFocusRect(std::int16_t style);

  /// Place of the current cell within the grid; scrolls it into view first.
  std::int32_t CellLeft() { return CellBounds().left; }
  std::int32_t CellTop() { return CellBounds().top; }
  std::int32_t CellWidth() { return CellBounds().width; }
  std::int32_t CellHeight() { return CellBounds().height; }
  Rect CellBounds();
  /// First row and column shown after the fixed ones.
  std::int32_t TopRow() const { return top_row_; }
  std::int32_t LeftCol() const { return left_col_; }
  void SetTopRow(std::int32_t row);
  void SetLeftCol(std::int32_t col);
  /// Width a column is shown with, the stretching one included.
  std::int32_t ShownWidth(std::int32_t col) const;
  /// The least of it: its own, grown with the letters of the font, no heading cut off.
  std::int32_t MinimumWidth(std::int32_t col) const;
  std::int32_t RowHeight() const { return row_height_; }
  void FitTo(const TextMeasure& texts) override;
  bool Scrolls() const override { return true; }
  /// Rows that fit whole below the fixed ones, at least 1.
  std::int32_t VisibleRows() const;
  /// Room the native side loses to frame and scroll bars, in twips.
  void SetChrome(std::int32_t width, std::int32_t height);

  std::function<void()> OnLeaveCell, OnRowColChange, OnScroll;

  /// The user clicked a cell; one outside the grid or in the headings is passed over.
  void UserClicked(std::int32_t row, std::int32_t col);
  void DefaultKey(std::int16_t key, std::int16_t shift) override;
  bool WantsKey(std::int16_t key) const override {
    return (key >= key::kPageUp && key <= key::kDown) || key == key::kEnter || key == key::kEscape;
  }
  /// Disabled, it scrolls by them: PageUp, PageDown, and Ctrl with Home or End to the first and last rows
  /// that hold something.
  bool PageKey(std::int16_t key, std::int16_t shift) override;
  const MemberTable* Members() const override;

 private:
  static std::size_t At(std::int32_t i) { return static_cast<std::size_t>(i); }
  void Check(std::int32_t row, std::int32_t col) const;
  const std::string& Cell(std::int32_t row, std::int32_t col) const;
  /// Tells the native side, unless changes wait.
  void Show(Aspect aspect);
  /// After a change of shape: the current cell and what is scrolled into view lie within the grid.
  void KeepWithin();
  /// Finds the least width of a column anew: texts are not measured for every painting.
  void Measure(std::int32_t col);
  std::int32_t LastTopRow() const;
  void ScrollTo(std::int32_t top_row, std::int32_t left_col);
  void ScrollIntoView();
  /// The first column from `from` on that is not hidden; the current one when there is none.
  std::int32_t ShownColumn(std::int32_t from, std::int32_t step) const;

  struct Column {
    std::int32_t width = kDefaultWidth, least = kDefaultWidth;
    bool right_aligned = false;
  };
  std::vector<std::vector<std::string>> cells_;  // a row has no cells until one is written
  std::vector<Column> columns_;
  std::int32_t cols_ = 2, fixed_rows_ = 1, fixed_cols_ = 0, row_ = 1, col_ = 0;
  std::int32_t top_row_ = 1, left_col_ = 0, stretch_col_ = -1;
  std::int32_t chrome_width_ = 0, chrome_height_ = 0, row_height_ = kRowHeight;
  std::int16_t focus_rect_ = 1;
  bool redraw_ = true, leaving_ = false;
};

}  // namespace zuvi
