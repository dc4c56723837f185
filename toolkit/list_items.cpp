// The rows of a list.
#include <algorithm>

#include "toolkit/list_view.h"

namespace zuvi {
namespace {

/// The lowest set bit: how many slots a node of the binary indexed tree counts.
std::size_t Span(std::size_t node) { return node & (~node + 1); }

std::size_t SubColumn(std::int32_t column) {
  if (column < 1 || column > ListItem::kMostColumns) throw HostError(ErrorNumber::InvalidCall);
  return static_cast<std::size_t>(column) - 1;
}

}  // namespace

// One row.

void ListItem::Changed() {
  if (ListView* list = List()) list->Changed(Aspect::Items);
}

void ListItem::SetText(std::string text) {
  text_ = std::move(text);
  Changed();
}

std::string ListItem::SubItems(std::int32_t column) const {
  const std::size_t at = SubColumn(column);
  return at < sub_items_.size() ? sub_items_[at] : std::string();
}

void ListItem::SetSubItems(std::int32_t column, std::string text) {
  const std::size_t at = SubColumn(column);
  if (at >= sub_items_.size()) sub_items_.resize(at + 1);
  sub_items_[at] = std::move(text);
  Changed();
}

std::int32_t ListItem::Index() const { return List() ? List()->items_->PositionOf(slot_) : 0; }

bool ListItem::Selected() const { return List() && List()->selected_ == this; }

void ListItem::SetSelected(bool selected) {
  if (List() && selected != Selected()) List()->Select(selected ? this : nullptr);
}

const MemberTable* ListItem::Members() const {
  using T = ListItem;
  static const MemberTable table = MemberTable::Of<T>()
                                       .Property<&T::Text, &T::SetText>("Text")
                                       .AsDefault()
                                       .Property<&T::Key>("Key")
                                       .Property<&T::SubItems, &T::SetSubItems>("SubItems", {"index"})
                                       .Property<&T::Index>("Index")
                                       .Property<&T::Selected, &T::SetSelected>("Selected");
  return &table;
}

// All of them.

ListItems::~ListItems() {
  // Rows that others still hold must not reach back.
  for (const auto& item : slots_)
    if (item) item->home_ = nullptr;
}

ListView& ListItems::List() const {
  if (!*home_) throw HostError(ErrorNumber::ObjectNotSet);  // kept by somebody longer than its list
  return **home_;
}

std::shared_ptr<ListItem> ListItems::Make(std::string key, std::string text) {
  List();  // there to be added to
  auto item = std::make_shared<ListItem>(*home_, std::move(key), std::move(text));
  if (!item->key_.empty() && !by_key_.insert(item.get()).second)
    throw HostError("Key is not unique in collection");
  return item;
}

void ListItems::Reserve(std::size_t rows) {
  slots_.reserve(slots_.size() + rows);
  by_key_.reserve(by_key_.size() + rows);
}

ListItem& ListItems::Add(std::string key, std::string text) {
  const auto item = Make(std::move(key), std::move(text));
  item->slot_ = slots_.size();
  slots_.push_back(item);
  ++count_;
  if (!rows_up_to_.empty()) {
    const std::size_t node = slots_.size();
    std::size_t rows = 1;
    for (std::size_t child = node - 1; child > node - Span(node); child -= Span(child))
      rows += rows_up_to_[child - 1];
    rows_up_to_.push_back(rows);
  }
  List().Changed(Aspect::Items);
  return *item;
}

ListItem& ListItems::Insert(std::int32_t position, std::string key, std::string text) {
  if (position == Count() + 1) return Add(std::move(key), std::move(text));
  if (position < 1 || position > Count()) throw HostError(ErrorNumber::SubscriptOutOfRange);
  const auto item = Make(std::move(key), std::move(text));
  slots_.insert(slots_.begin() + static_cast<std::ptrdiff_t>(SlotOf(position)), item);
  ++count_;
  Compact();
  List().Changed(Aspect::Items);
  return *item;
}

ListItem& ListItems::operator()(std::int32_t position) { return *slots_[SlotOf(position)]; }

ListItem& ListItems::operator()(std::string_view key) {
  if (ListItem* item = ByKey(key)) return *item;
  throw HostError(ErrorNumber::SubscriptOutOfRange);
}

ListItem* ListItems::ByKey(std::string_view key) {
  const auto found = by_key_.find(key);
  return found == by_key_.end() ? nullptr : *found;
}

void ListItems::Remove(std::string_view key) { Take((*this)(key)); }
void ListItems::Remove(std::int32_t position) { Take((*this)(position)); }

void ListItems::Take(ListItem& item) {
  const std::size_t slot = item.slot_;
  const auto taken = std::move(slots_[slot]);
  slots_[slot] = nullptr;
  --count_;
  for (std::size_t node = slot + 1; node <= rows_up_to_.size(); node += Span(node)) --rows_up_to_[node - 1];
  if (!taken->key_.empty()) by_key_.erase(taken.get());
  taken->home_ = nullptr;
  // Thrown together only when the gaps outnumber the rows, so that each removal pays for few moves.
  if (slots_.size() > 2 * count_ + 16) Compact();
  ListView& list = List();
  const bool was_selected = list.selected_ == taken.get();
  if (was_selected) list.selected_ = nullptr;
  list.Changed(Aspect::Items);
  if (was_selected) list.Changed(Aspect::Selection);
}

void ListItems::Clear() {
  by_key_.clear();
  for (auto& item : slots_) {
    if (item) item->home_ = nullptr;
    item.reset();
  }
  slots_.clear();
  rows_up_to_.clear();
  count_ = 0;
  ListView& list = List();
  const bool was_selected = list.selected_ != nullptr;
  list.selected_ = nullptr;
  list.Changed(Aspect::Items);
  if (was_selected) list.Changed(Aspect::Selection);
}

bool ListItems::TakeAll(ListItems& from) {
  if (count_ == 0) {
    slots_.swap(from.slots_);
    rows_up_to_.swap(from.rows_up_to_);
    by_key_.swap(from.by_key_);
    std::swap(count_, from.count_);
    home_.swap(from.home_);
    std::swap(*home_, *from.home_);
  } else {
    const auto is_here = [this](const auto& item) { return by_key_.contains(item); };
    if (std::ranges::any_of(from.by_key_, is_here)) return false;
    // All the memory there is need of comes first: half a move would leave keys without rows.
    slots_.reserve(slots_.size() + from.count_);
    by_key_.reserve(by_key_.size() + from.by_key_.size());
    by_key_.merge(from.by_key_);
    for (auto& item : from.slots_) {
      if (!item) continue;
      item->home_ = home_.get();
      item->slot_ = slots_.size();
      slots_.push_back(std::move(item));
    }
    count_ += from.count_;
    rows_up_to_.clear();
  }
  List().Changed(Aspect::Items);
  from.Clear();
  return true;
}

void ListItems::Compact() {
  visited_ += slots_.size();
  std::erase(slots_, nullptr);
  for (std::size_t slot = 0; slot < slots_.size(); ++slot) slots_[slot]->slot_ = slot;
  rows_up_to_.clear();
}

void ListItems::CountRows() {
  if (!rows_up_to_.empty()) return;
  visited_ += slots_.size();
  rows_up_to_.resize(slots_.size());
  for (std::size_t node = 1; node <= slots_.size(); ++node) {
    rows_up_to_[node - 1] += slots_[node - 1] ? 1u : 0u;
    const std::size_t parent = node + Span(node);
    if (parent <= slots_.size()) rows_up_to_[parent - 1] += rows_up_to_[node - 1];
  }
}

std::size_t ListItems::SlotOf(std::int32_t position) {
  if (position < 1 || position > Count()) throw HostError(ErrorNumber::SubscriptOutOfRange);
  auto before = static_cast<std::size_t>(position) - 1;
  if (count_ == slots_.size()) return before;
  CountRows();
  // Walks down the tree past as many slots as hold `before` rows.
  std::size_t slot = 0, step = 1;
  while (step * 2 <= slots_.size()) step *= 2;
  for (; step > 0; step /= 2) {
    if (slot + step > slots_.size() || rows_up_to_[slot + step - 1] > before) continue;
    slot += step;
    before -= rows_up_to_[slot - 1];
  }
  return slot;
}

std::int32_t ListItems::PositionOf(std::size_t slot) {
  if (count_ == slots_.size()) return static_cast<std::int32_t>(slot) + 1;
  CountRows();
  std::size_t rows = 0;
  for (std::size_t node = slot + 1; node > 0; node -= Span(node)) rows += rows_up_to_[node - 1];
  return static_cast<std::int32_t>(rows);
}

ObjectPtr ListItems::AddByName(const Value& index, const Value& key, const Value& text) {
  std::string caption = ToText(text), name = ToText(key);
  ListItem& item = index.IsEmpty() ? Add(std::move(name), std::move(caption))
                                   : Insert(ToInt32(index), std::move(name), std::move(caption));
  return item.shared_from_this();
}

ObjectPtr ListItems::ItemByName(const Value& which) {
  const auto* key = std::get_if<std::string>(&which.Get());
  return (key ? (*this)(std::string_view(*key)) : (*this)(ToInt32(which))).shared_from_this();
}

void ListItems::RemoveByName(const Value& which) {
  const ObjectPtr item = ItemByName(which);
  Take(static_cast<ListItem&>(*item));
}

const MemberTable* ListItems::Members() const {
  using T = ListItems;
  static const MemberTable table = MemberTable::Of<T>()
                                       .Method<&T::ItemByName>("Item", {"index"})
                                       .AsDefault()
                                       .Property<&T::Count>("Count")
                                       .Method<&T::AddByName>("Add", {"index", "key", "text"}, 3)
                                       .Method<&T::RemoveByName>("Remove", {"index"})
                                       .Method<&T::Clear>("Clear");
  return &table;
}

}  // namespace zuvi
