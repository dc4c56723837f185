#include "toolkit/combo_box.h"

#include <algorithm>

#include "base/text.h"
#include "toolkit/buttons.h"
#include "toolkit/text_measure.h"

namespace zuvi {

void ComboBox::SetText(std::string text) {
  const auto found = std::ranges::find(items_, text);
  const auto index = found == items_.end() ? -1 : static_cast<std::int32_t>(found - items_.begin());
  if (style_ == Style::DropDownList) {
    if (index < 0 && !text.empty()) throw HostError(ErrorNumber::InvalidCall);
    if (index != list_index_) SetListIndex(index);
    return;
  }
  list_index_ = index;
  if (text == text_) return;
  text_ = std::move(text);
  Changed(Aspect::Text);
  Raise(OnChange);
}

void ComboBox::SetListIndex(std::int32_t index) {
  if (index < -1 || index >= ListCount()) throw HostError(ErrorNumber::InvalidCall);
  list_index_ = index;
  text_ = index < 0 ? std::string() : items_[static_cast<std::size_t>(index)];
  Changed(Aspect::Text);
  Raise(OnClick);
}

const std::string& ComboBox::List(std::int32_t index) const {
  if (index < 0 || index >= ListCount()) throw HostError(ErrorNumber::SubscriptOutOfRange);
  return items_[static_cast<std::size_t>(index)];
}

void ComboBox::AddItem(std::string text) {
  items_.push_back(std::move(text));
  Changed(Aspect::Items);
}

void ComboBox::Clear() {
  items_.clear();
  list_index_ = -1;
  text_.clear();
  Changed(Aspect::Items);
  Changed(Aspect::Text);
}

void ComboBox::UserChose(std::int32_t index) {
  if (index >= 0 && index < ListCount()) SetListIndex(index);
}

void ComboBox::UserTyped(std::string text) {
  if (style_ == Style::DropDown) SetText(std::move(text));
}

void ComboBox::DefaultKey(std::int16_t key, std::int16_t /*shift*/) {
  const std::int32_t last = ListCount() - 1;
  std::int32_t index = list_index_;
  if (key == key::kUp)
    --index;
  else if (key == key::kDown)
    ++index;
  else if (key == key::kHome && style_ == Style::DropDownList)
    index = 0;
  else if (key == key::kEnd && style_ == Style::DropDownList)
    index = last;
  else
    return;
  index = std::clamp(index, std::min(0, last), std::max(last, 0));
  if (last >= 0 && index != list_index_) SetListIndex(index);
}

void ComboBox::DefaultChar(char16_t character) {
  std::u16string typed = typed_.Next(character);
  if (style_ == Style::DropDown) {
    std::u16string units = Utf16(text_);
    if (character == key::kBack)
      units.resize(UnitBefore(units, units.size()));
    else if (!typed.empty() && typed[0] >= 0x20 && typed[0] != 0x7F)
      units += typed;
    return UserTyped(Utf8(units));
  }
  // The next item that begins with the letter, from the chosen one round to it again.
  if (typed.empty()) return;
  for (std::int32_t i = 1; i <= ListCount(); ++i) {
    const std::int32_t candidate = (list_index_ + i) % ListCount();
    const std::u16string item = Utf16(items_[static_cast<std::size_t>(candidate)]);
    if (item.empty() || UpperLetter(item[0]) != UpperLetter(typed[0])) continue;
    if (candidate != list_index_) SetListIndex(candidate);
    return;
  }
}

Extent ComboBox::MinimumSize(const TextMeasure& texts) const {
  // What can be typed scrolls; what can only be chosen is to be read.
  std::int32_t widest = 0;
  if (style_ == Style::DropDownList)
    for (const std::string& item : items_) widest = std::max(widest, texts.Width(item));
  return {widest > 0 ? widest + Dip(30) : 0, texts.BoxHeight()};
}

const MemberTable* ComboBox::Members() const {
  using T = ComboBox;
  static const MemberTable table =
      WithControlMembers(MemberTable::Of<T>()
                             .Property<&T::Text, &T::SetText>("Text")
                             .AsDefault()
                             .Property<&T::ListIndex, &T::SetListIndex>("ListIndex")
                             .Property<&T::ListCount>("ListCount")
                             .Property<&T::List>("List", {"index"})
                             .Method<&T::AddItem>("AddItem", {"item"})
                             .Method<&T::Clear>("Clear"));
  return &table;
}

}  // namespace zuvi
