#include "toolkit/buttons.h"

#include <algorithm>

#include "base/text.h"
#include "toolkit/form.h"

namespace zuvi {
namespace {

/// The label made directly before or after a control; null when something else, or nothing, is there.
const Label* NeighbouringLabel(const Control& control, bool before) {
  if (!control.Window()) return nullptr;
  const auto& all = control.Window()->Controls();
  for (std::size_t i = 0; i < all.size(); ++i) {
    if (all[i].get() != &control) continue;
    if (before ? i == 0 : i + 1 == all.size()) return nullptr;
    return dynamic_cast<const Label*>(all[before ? i - 1 : i + 1].get());
  }
  return nullptr;
}

}  // namespace

std::string WithoutMnemonic(std::string_view caption) {
  std::string out;
  for (std::size_t i = 0; i < caption.size(); ++i) {
    if (caption[i] == '&' && ++i == caption.size()) break;
    out += caption[i];
  }
  return out;
}

char16_t UpperLetter(char16_t letter) {
  const bool ascii = letter >= u'a' && letter <= u'z';
  const bool latin = letter >= 0xE0 && letter <= 0xFE && letter != 0xF7;
  if (ascii || latin) return static_cast<char16_t>(letter - 0x20);
  if (letter == 0xFF) return 0x178;
  if (letter == 0x153 || letter == 0x161 || letter == 0x17E) return static_cast<char16_t>(letter - 1);
  return letter;
}

char16_t MnemonicOf(std::string_view caption) {
  const std::u16string units = Utf16(caption);
  for (std::size_t i = 0; i + 1 < units.size(); ++i) {
    if (units[i] != u'&') continue;
    if (units[++i] != u'&') return UpperLetter(units[i]);
  }
  return 0;
}

void Captioned::SetCaption(std::string caption) {
  caption_ = std::move(caption);
  Changed(Aspect::Text);
}

std::string Captioned::AccessibleName() const {
  return caption_.empty() ? Control::AccessibleName() : WithoutMnemonic(caption_);
}

Extent Label::MinimumSize(const TextMeasure& texts) const {
  const auto width_of = [&](std::string_view text) { return texts.Width(WithoutMnemonic(text), heading_); };
  const std::int32_t width = std::max(width_of(CaptionText()), width_of(longest_));
  // As many lines as were designed. Words that go to the next one leave room behind them.
  const std::int32_t lines = std::max(1, DesignBounds().height / Dip(16));
  return {lines == 1 ? width + Dip(2) : width / lines * 5 / 4, lines * texts.LineHeight()};
}

void Label::Mnemonic() {
  if (!Window()) return;
  const auto& all = Window()->Controls();
  bool after = false;
  for (const auto& control : all) {
    if (after && control->CanFocus()) return control->SetFocus();
    after = after || control.get() == this;
  }
}

const MemberTable* Label::Members() const {
  using T = Label;
  static const MemberTable table = WithControlMembers(
      MemberTable::Of<T>().Property<&T::CaptionText, &T::SetCaption>("Caption").AsDefault());
  return &table;
}

void Button::SetValue(bool pressed) {
  if (pressed) Click();
}

void Button::DefaultKey(std::int16_t key, std::int16_t shift) {
  if (shift & (shift::kCtrl | shift::kAlt)) return;
  if (key == key::kSpace || key == key::kEnter) Click();
}

std::string Button::AccessibleName() const {
  // A picture says nothing aloud, its tip does.
  return CaptionText().empty() && !ToolTipText().empty() ? ToolTipText() : Captioned::AccessibleName();
}

Extent Button::MinimumSize(const TextMeasure& texts) const {
  if (picture_ != Glyph::None) return {};
  const std::int32_t width = texts.Width(WithoutMnemonic(CaptionText()));
  // What grows gets the margin of a button that was designed for its caption.
  const bool fits = width + Dip(10) <= DesignBounds().width;
  return {width + (fits ? Dip(10) : Dip(20)), texts.LineHeight() + Dip(9)};
}

const MemberTable* Button::Members() const {
  using T = Button;
  static const MemberTable table =
      WithControlMembers(MemberTable::Of<T>()
                             .Property<&T::Value, &T::SetValue>("Value")
                             .AsDefault()
                             .Property<&T::CaptionText, &T::SetCaption>("Caption"));
  return &table;
}

void CheckBox::SetValue(std::int16_t value) {
  if (value < 0 || value > 2) throw HostError(ErrorNumber::InvalidCall);
  if (value == value_) return;
  value_ = value;
  Changed(Aspect::Value);
  Raise(OnClick);
}

void CheckBox::Click() {
  const auto self = shared_from_this();
  if (TakeClick()) SetValue(value_ == 0 ? 1 : 0);
}

void CheckBox::Mnemonic() { Click(); }

void CheckBox::DefaultKey(std::int16_t key, std::int16_t shift) {
  if (key == key::kSpace && !(shift & (shift::kCtrl | shift::kAlt))) Click();
}

std::string CheckBox::AccessibleName() const {
  if (!CaptionText().empty()) return WithoutMnemonic(CaptionText());
  for (const bool before : {true, false})
    if (const Label* label = NeighbouringLabel(*this, before)) return WithoutMnemonic(label->Caption());
  return {};
}

Extent CheckBox::MinimumSize(const TextMeasure& texts) const {
  // The box itself does not grow with the font.
  if (CaptionText().empty()) return {};
  return {texts.Width(WithoutMnemonic(CaptionText())) + Dip(22), texts.LineHeight() + Dip(2)};
}

const MemberTable* CheckBox::Members() const {
  using T = CheckBox;
  static const MemberTable table =
      WithControlMembers(MemberTable::Of<T>()
                             .Property<&T::Value, &T::SetValue>("Value")
                             .AsDefault()
                             .Property<&T::CaptionText, &T::SetCaption>("Caption"));
  return &table;
}

}  // namespace zuvi
