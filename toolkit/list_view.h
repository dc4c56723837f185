#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "toolkit/control.h"

namespace zuvi {

class ListView;

/// One row of a list: key, text (first column) and the texts of the further columns. Taken out of its list it
/// keeps them.
class ListItem final : public Object {
 public:
  /// For ListItems: rows are made by adding them.
  ListItem(ListView* const& home, std::string key, std::string text)
      : home_(&home), key_(std::move(key)), text_(std::move(text)) {}
  const std::string& Key() const { return key_; }
  const std::string& Text() const { return text_; }
  void SetText(std::string text);
  static constexpr std::int32_t kMostColumns = 1000;
  /// Column from 1, counted after the text; a column never set is "". Throws HostError (InvalidCall) outside
  /// 1 to kMostColumns.
  std::string SubItems(std::int32_t column) const;
  void SetSubItems(std::int32_t column, std::string text);
  /// Position from 1; 0 once it was taken out.
  std::int32_t Index() const;
  bool Selected() const;
  void SetSelected(bool selected);
  const MemberTable* Members() const override;

 private:
  friend class ListItems;
  friend class ListView;
  /// Null when it is in no list.
  ListView* List() const { return home_ ? *home_ : nullptr; }
  void Changed();

  ListView* const* home_;  // what ListItems keeps for all its rows; null once it was taken out
  std::size_t slot_ = 0;
  std::string key_, text_;
  std::vector<std::string> sub_items_;
};

/// The rows of a list. Adding, finding by key and removing take constant time on average with any number of
/// rows; positions, while there are gaps of removed rows, logarithmic time.
class ListItems final : public Object {
 public:
  explicit ListItems(ListView& list) : home_(std::make_unique<ListView*>(&list)) {}
  ListItems(const ListItems&) = delete;
  ListItems& operator=(const ListItems&) = delete;
  ~ListItems() override;
  /// A row at the end, or before the one at `position`. Throws HostError for a key that is there already (an
  /// empty key is none), and (SubscriptOutOfRange) for a position that is not 1 to `Count` + 1.
  ListItem& Add(std::string key, std::string text);
  ListItem& Insert(std::int32_t position, std::string key, std::string text);
  /// Makes room for so many rows more, as far as is known beforehand: it only spares time.
  void Reserve(std::size_t rows);
  std::int32_t Count() const { return static_cast<std::int32_t>(count_); }
  /// By position from 1, or by key (a text). Throws HostError (SubscriptOutOfRange) when there is none.
  ListItem& operator()(std::int32_t position);
  ListItem& operator()(std::string_view key);
  /// Null when there is none.
  ListItem* ByKey(std::string_view key);
  void Remove(std::string_view key);
  void Remove(std::int32_t position);
  void Clear();
  /// Adds all rows of another list, which is empty then, without making them anew; into an empty list in
  /// constant time. False, and nothing done, when a key is here already.
  bool TakeAll(ListItems& from);
  /// Rows visited so far to keep positions in order; grows no faster than the rows added and removed.
  std::size_t Visited() const { return visited_; }
  const MemberTable* Members() const override;

 private:
  friend class ListItem;
  friend class ListView;
  /// A row and its key are looked up alike.
  static std::string_view KeyOf(const ListItem* item) { return item->Key(); }
  static std::string_view KeyOf(std::string_view key) { return key; }
  struct KeyHash {
    using is_transparent = void;
    std::size_t operator()(const auto& which) const { return std::hash<std::string_view>{}(KeyOf(which)); }
  };
  struct SameKey {
    using is_transparent = void;
    bool operator()(const auto& a, const auto& b) const { return KeyOf(a) == KeyOf(b); }
  };
  ListView& List() const;
  std::shared_ptr<ListItem> Make(std::string key, std::string text);
  void Take(ListItem& item);
  void Compact();
  std::size_t SlotOf(std::int32_t position);
  std::int32_t PositionOf(std::size_t slot);
  void CountRows();
  ObjectPtr AddByName(const Value& index, const Value& key, const Value& text);
  ObjectPtr ItemByName(const Value& which);
  void RemoveByName(const Value& which);

  /// The list, where its rows look it up, so that rows that go over to another list need not be told one by
  /// one. Null once the list is gone and somebody keeps the rows.
  std::unique_ptr<ListView*> home_;
  std::vector<std::shared_ptr<ListItem>> slots_;  // a row taken out leaves a gap until gaps are many
  std::vector<std::size_t> rows_up_to_;  // binary indexed tree of rows per slot, once positions need it
  std::unordered_set<ListItem*, KeyHash, SameKey> by_key_;  // the rows' own keys, not copies of them
  std::size_t count_ = 0, visited_ = 0;
};

/// A column of a list in report view.
struct ListColumn {
  std::string caption, key;
  std::int32_t width = 0;  // twips; 0 lets the list share out its room
  bool right_aligned = false;
};

/// The columns; by name `ColumnHeaders.Add(index, key, caption, width)`, `Count`, `Clear`.
class ColumnHeaders final : public Object {
 public:
  explicit ColumnHeaders(ListView& list) : list_(&list) {}
  /// Throws HostError (InvalidCall) for a negative width.
  void Add(std::string key, std::string caption, std::int32_t width = 0, bool right_aligned = false);
  void Clear();
  std::int32_t Count() const { return static_cast<std::int32_t>(columns_.size()); }
  const std::vector<ListColumn>& All() const { return columns_; }
  const MemberTable* Members() const override;

 private:
  void Changed();
  void AddByName(const Value& index, const Value& key, const Value& caption, const Value& width);
  friend class ListView;
  ListView* list_;
  std::vector<ListColumn> columns_;
};

/// A list of rows in columns, of which one row can be selected.
class ListView final : public Control {
 public:
  static constexpr std::int16_t kReport = 3;

  ListView(Form& form, std::string name, std::int16_t index);
  ~ListView() override;

  /// View value: 0 icons, 1 small icons, 2 list, 3 report.
  std::int16_t View() const { return view_; }
  void SetView(std::int16_t view);
  ListItems& Items() const { return *items_; }
  ColumnHeaders& Columns() const { return *columns_; }
  /// Null when none is selected.
  ListItem* SelectedItem() const { return selected_; }
  /// By code: without an event. Throws HostError (InvalidCall) for a row of another list.
  void Select(ListItem* item);
  /// The text of row `position` (from 1) in column `column` (from 0).
  std::string Cell(std::int32_t position, std::size_t column) const;
  /// What the columns are shown with in so much room: a width of their own that grows with the letters, a
  /// share of what is left for the others; no heading cut off.
  std::vector<std::int32_t> ColumnWidths(std::int32_t room) const;
  Extent MinimumSize(const TextMeasure& texts) const override;
  void FitTo(const TextMeasure& /*texts*/) override { Changed(Aspect::Columns); }
  bool Scrolls() const override { return true; }
  /// Rows a page is counted with where no native control tells.
  static constexpr std::int32_t kRowHeight = Dip(20);

  /// The user selected a row. OnClick comes with mouse clicks, OnItemClick whenever the row changes.
  void UserSelected(std::int32_t position);
  std::function<void(ListItem& item)> OnItemClick;

  void DefaultKey(std::int16_t key, std::int16_t shift) override;
  bool WantsKey(std::int16_t key) const override { return key >= key::kPageUp && key <= key::kDown; }
  const MemberTable* Members() const override;

  // By name.
  ObjectPtr ItemsObject() const { return items_; }
  ObjectPtr ColumnsObject() const { return columns_; }
  ObjectPtr SelectedObject() const;
  void SelectObject(const ObjectPtr& item);

 private:
  friend class ListItem;
  friend class ListItems;
  friend class ColumnHeaders;
  std::shared_ptr<ListItems> items_;
  std::shared_ptr<ColumnHeaders> columns_;
  ListItem* selected_ = nullptr;
  std::int16_t view_ = kReport;
};

}  // namespace zuvi
