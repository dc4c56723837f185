#include "toolkit/list_view.h"

#include <algorithm>

#include "toolkit/form.h"

namespace zuvi {

// The columns.

void ColumnHeaders::Changed() {
  if (list_) list_->Changed(Aspect::Columns);
}

void ColumnHeaders::Add(std::string key, std::string caption, std::int32_t width, bool right_aligned) {
  if (width < 0) throw HostError(ErrorNumber::InvalidCall);
  columns_.push_back({std::move(caption), std::move(key), width, right_aligned});
  Changed();
}

void ColumnHeaders::Clear() {
  columns_.clear();
  Changed();
}

void ColumnHeaders::AddByName(const Value& index, const Value& key, const Value& caption,
                              const Value& width) {
  const std::int32_t position = index.IsEmpty() ? Count() + 1 : ToInt32(index);
  if (position < 1 || position > Count() + 1) throw HostError(ErrorNumber::SubscriptOutOfRange);
  Add(ToText(key), ToText(caption), ToInt32(width));
  std::rotate(columns_.begin() + (position - 1), columns_.end() - 1, columns_.end());
  Changed();
}

const MemberTable* ColumnHeaders::Members() const {
  using T = ColumnHeaders;
  static const MemberTable table = MemberTable::Of<T>()
                                       .Method<&T::AddByName>("Add", {"index", "key", "caption", "width"}, 4)
                                       .Property<&T::Count>("Count")
                                       .Method<&T::Clear>("Clear");
  return &table;
}

// The list.

ListView::ListView(Form& form, std::string name, std::int16_t index)
    : Control(form, std::move(name), index),
      items_(std::make_shared<ListItems>(*this)),
      columns_(std::make_shared<ColumnHeaders>(*this)) {}

ListView::~ListView() {
  // Rows and columns that others still hold must not reach back.
  *items_->home_ = nullptr;
  columns_->list_ = nullptr;
}

void ListView::SetView(std::int16_t view) {
  if (view < 0 || view > kReport) throw HostError(ErrorNumber::InvalidCall);
  view_ = view;
  Changed(Aspect::State);
}

void ListView::Select(ListItem* item) {
  if (item && item->List() != this) throw HostError(ErrorNumber::InvalidCall);
  if (item == selected_) return;
  selected_ = item;
  Changed(Aspect::Selection);
}

std::string ListView::Cell(std::int32_t position, std::size_t column) const {
  if (position < 1 || position > items_->Count()) return {};
  const ListItem& item = (*items_)(position);
  if (column == 0) return item.text_;
  return column <= item.sub_items_.size() ? item.sub_items_[column - 1] : std::string();
}

void ListView::UserSelected(std::int32_t position) {
  if (position < 1 || position > items_->Count()) return Select(nullptr);
  const auto item = std::static_pointer_cast<ListItem>((*items_)(position).shared_from_this());
  if (item.get() == selected_) return;
  Select(item.get());
  Raise(OnItemClick, *item);
}

std::vector<std::int32_t> ListView::ColumnWidths(std::int32_t room) const {
  constexpr std::int32_t kLeastShare = Dip(60), kBesideHeading = Dip(18);
  const TextMeasure* const texts = Window() ? Window()->Texts() : nullptr;
  std::vector<std::int32_t> widths;
  std::vector<std::size_t> sharing;
  for (const ListColumn& column : columns_->All()) {
    const std::int32_t own = column.width > 0 ? column.width : kLeastShare;
    const std::int32_t heading = texts ? texts->Width(column.caption) + kBesideHeading : 0;
    widths.push_back(std::max(texts ? texts->Scaled(own) : own, heading));
    if (column.width == 0) sharing.push_back(widths.size() - 1);
    room -= widths.back();
  }
  // The narrowest first, so that all become equal as far as they can.
  std::ranges::stable_sort(sharing, {}, [&](std::size_t i) { return widths[i]; });
  for (std::size_t i = 0; i < sharing.size(); ++i) room += widths[sharing[i]];
  for (std::size_t i = sharing.size(); i-- > 0;) {
    const auto left = static_cast<std::int32_t>(i + 1);
    std::int32_t& width = widths[sharing[i]];
    width = std::max(width, room / left);
    room -= width;
  }
  return widths;
}

Extent ListView::MinimumSize(const TextMeasure& /*texts*/) const {
  constexpr std::int32_t kFrameAndBar = Dip(21);
  std::int32_t width = kFrameAndBar;
  for (const std::int32_t column : ColumnWidths(0)) width += column;
  return {view_ == kReport ? width : 0, 0};
}

void ListView::DefaultKey(std::int16_t key, std::int16_t /*shift*/) {
  const std::int32_t count = items_->Count();
  if (count == 0) return;
  const std::int32_t now = selected_ ? selected_->Index() : 0;
  const std::int32_t page = std::max(1, Height() / kRowHeight - 1);  // without the headings
  std::int32_t to = now;
  switch (key) {
    case key::kUp:
      to = now - 1;
      break;
    case key::kDown:
      to = now + 1;
      break;
    case key::kPageUp:
      to = now - page;
      break;
    case key::kPageDown:
      to = now + page;
      break;
    case key::kHome:
      to = 1;
      break;
    case key::kEnd:
      to = count;
      break;
    default:
      return;
  }
  UserSelected(std::clamp(to, 1, count));
}

ObjectPtr ListView::SelectedObject() const { return selected_ ? selected_->shared_from_this() : nullptr; }

void ListView::SelectObject(const ObjectPtr& item) {
  auto* const row = dynamic_cast<ListItem*>(item.get());
  if (item && !row) throw HostError(ErrorNumber::TypeMismatch);
  Select(row);
}

const MemberTable* ListView::Members() const {
  using T = ListView;
  static const MemberTable table =
      WithControlMembers(MemberTable::Of<T>()
                             .Property<&T::ItemsObject>("ListItems")
                             .AsDefault()
                             .Property<&T::ColumnsObject>("ColumnHeaders")
                             .Property<&T::SelectedObject, &T::SelectObject>("SelectedItem")
                             .Property<&T::View, &T::SetView>("View"));
  return &table;
}

}  // namespace zuvi
