#include "toolkit/multi_combo.h"

#include <algorithm>

#include "base/format.h"
#include "toolkit/form.h"

namespace zuvi {
namespace {

/// What a list to choose from still serves for; a longer one is searched, not looked through.
constexpr std::size_t kMostRows = 1000;

Value OfField(Object& record_set, std::int32_t index, FixedText what) {
  Value which(index);
  const Step steps[] = {{"Fields"}, {"Item", std::span(&which, 1)}, {what}};
  return record_set.ReadChain(steps);
}

}  // namespace

void MultiCombo::SetRowSource(std::string sql) {
  if (box_ && sql.empty() != row_source_.empty()) {
    Rect place = box_->DesignBounds();
    place.width += sql.empty() ? kArrowWidth : -kArrowWidth;
    box_->Design(place, box_->Anchors());
  }
  row_source_ = std::move(sql);
  if (row_source_.empty()) CloseUp();
  Changed(Aspect::State);
}

void MultiCombo::SetBox(const std::shared_ptr<TextBox>& box) {
  box_ = box;
  if (box_) box_->SetContainer(std::static_pointer_cast<Control>(shared_from_this()));
}

void MultiCombo::ShowData() {
  if (row_source_.empty() || !Enabled() || (box_ && !box_->Enabled())) return;
  if (!connection_) throw HostError(ErrorNumber::ObjectNotSet);
  // A connection may let events run while it works, and with them anything happen.
  const auto self = shared_from_this();
  const ObjectPtr connection = connection_;
  Value statement(row_source_);
  const ObjectPtr record_set = ToObject(connection->Call("Execute", std::span(&statement, 1)));
  if (!record_set) throw HostError(ErrorNumber::ObjectNotSet);
  const Step count[] = {{"Fields"}, {"Count"}};
  const std::int32_t width = ToInt32(record_set->ReadChain(count));
  const auto of_all_fields = [&](FixedText member) {
    std::vector<std::string> texts;
    // What a host claims to have is not asked of the memory at once.
    texts.reserve(static_cast<std::size_t>(std::clamp(width, 0, 64)));
    for (std::int32_t i = 0; i < width; ++i)
      texts.emplace_back(TextOrNothing(OfField(*record_set, i, member)));
    return texts;
  };
  std::vector<std::string> columns = of_all_fields("Name");
  std::vector<std::vector<std::string>> rows;
  while (rows.size() < kMostRows && !ToBool(record_set->Call("EOF"))) {
    rows.push_back(of_all_fields("Value"));
    record_set->Call("MoveNext");
  }
  if (!Window() || Window()->Closed()) return;
  columns_ = std::move(columns);
  rows_ = std::move(rows);
  dropped_down_ = true;
  Changed(Aspect::Items);
  Changed(Aspect::State);
}

void MultiCombo::CloseUp() {
  if (!dropped_down_) return;
  dropped_down_ = false;
  Changed(Aspect::State);
}

void MultiCombo::Choose(std::size_t row) {
  if (row >= rows_.size() || rows_[row].empty()) throw HostError(ErrorNumber::SubscriptOutOfRange);
  const auto self = shared_from_this();
  const std::string chosen = rows_[row].front();
  CloseUp();
  // First the focus: what follows the change may want to move it on.
  if (!box_ || !box_->CanFocus() || box_->Locked()) return;
  box_->SetFocus();
  if (box_->HasFocus()) box_->SetText(chosen);
}

void MultiCombo::Click() {
  const auto self = shared_from_this();
  if (!TakeClick()) return;
  if (dropped_down_) {
    CloseUp();
  } else {
    if (box_ && box_->CanFocus()) box_->SetFocus();
    if (!Window() || Window()->Closed()) return;
    try {
      ShowData();
    } catch (const HostError& error) {
      // The user's own click: there is no procedure above that would tell.
      if (Window()) Window()->Screen().ShowMessage(error.what());
    }
  }
  if (Window() && !Window()->Closed()) Raise(OnClick);
}

const MemberTable* MultiCombo::Members() const {
  using T = MultiCombo;
  static const MemberTable table =
      WithControlMembers(MemberTable::Of<T>()
                             .Property<&T::Connection, &T::SetConnection>("Connection")
                             .Property<&T::RowSource, &T::SetRowSource>("RowSource")
                             .Property<&T::DroppedDown>("DroppedDown")
                             .Method<&T::ShowData>("ShowData")
                             .Method<&T::CloseUp>("CloseUp"));
  return &table;
}

}  // namespace zuvi
