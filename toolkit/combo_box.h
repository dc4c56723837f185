#pragma once

#include <vector>

#include "toolkit/control.h"
#include "toolkit/text_units.h"

namespace zuvi {

/// A list that drops down: with a text that can be typed, or (DropDownList) only to choose from.
class ComboBox final : public Control {
 public:
  enum class Style { DropDown, DropDownList };

  using Control::Control;
  Style Kind() const { return style_; }
  /// Set while the window is built.
  void SetKind(Style style) { style_ = style; }

  const std::string& Text() const { return text_; }
  /// With a typed text any text: raises Change when it differs. A list chooses the item of that text, ""
  /// none: raises Click when that is another one, throws HostError (InvalidCall) when there is no such item.
  void SetText(std::string text);
  /// Chosen item from 0, -1 for none. Setting raises Click. Throws HostError (InvalidCall) out of range.
  std::int32_t ListIndex() const { return list_index_; }
  void SetListIndex(std::int32_t index);
  std::int32_t ListCount() const { return static_cast<std::int32_t>(items_.size()); }
  const std::string& List(std::int32_t index) const;
  void AddItem(std::string text);
  void Clear();

  std::function<void()> OnChange;

  /// The user chose an item, or typed.
  void UserChose(std::int32_t index);
  void UserTyped(std::string text);

  void DefaultKey(std::int16_t key, std::int16_t shift) override;
  void DefaultChar(char16_t character) override;
  Extent MinimumSize(const TextMeasure& texts) const override;
  const MemberTable* Members() const override;

 private:
  Style style_ = Style::DropDown;
  std::vector<std::string> items_;
  std::string text_;
  UnitJoiner typed_;
  std::int32_t list_index_ = -1;
};

}  // namespace zuvi
