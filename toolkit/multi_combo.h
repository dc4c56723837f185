#pragma once

#include <vector>

#include "toolkit/text_box.h"

namespace zuvi {

/// A frame around a text box that drops down rows of a data source in several columns; the first column's
/// value of the chosen row goes into the box. Bound to an automation connection (`Execute` of a statement
/// gives a record set with `EOF`, `MoveNext`, `Fields`). Without a row source it shows no arrow and drops
/// nothing down.
class MultiCombo final : public Control {
 public:
  using Control::Control;
  /// Room of the arrow at its right end.
  static constexpr std::int32_t kArrowWidth = Dip(17);

  const ObjectPtr& Connection() const { return connection_; }
  void SetConnection(ObjectPtr connection) { connection_ = std::move(connection); }
  /// The SELECT whose rows are offered. With one its box makes room for the arrow; to be set before the
  /// window is resized.
  const std::string& RowSource() const { return row_source_; }
  void SetRowSource(std::string sql);
  /// The box it serves; the box's container is this control.
  const std::shared_ptr<TextBox>& Box() const { return box_; }
  void SetBox(const std::shared_ptr<TextBox>& box);

  /// Reads the rows anew and drops them down. Throws what the connection throws. Nothing without a row
  /// source, or while the box is disabled.
  void ShowData();
  void CloseUp();
  bool DroppedDown() const { return dropped_down_; }
  const std::vector<std::string>& Columns() const { return columns_; }
  const std::vector<std::vector<std::string>>& Rows() const { return rows_; }
  /// Takes row `row`: its first column goes into the box, which gets the focus; the list closes.
  void Choose(std::size_t row);

  bool TakesFocus() const override { return false; }
  void Click() override;
  const MemberTable* Members() const override;

 private:
  ObjectPtr connection_;
  std::string row_source_;
  std::shared_ptr<TextBox> box_;
  std::vector<std::string> columns_;
  std::vector<std::vector<std::string>> rows_;
  bool dropped_down_ = false;
};

}  // namespace zuvi
