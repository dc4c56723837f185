// Controls with a caption: labels, buttons, check boxes. "&" in a caption marks the mnemonic, "&&" is an
// ampersand.
#pragma once

#include "toolkit/control.h"

namespace zuvi {

/// The caption without mnemonic marks.
std::string WithoutMnemonic(std::string_view caption);
/// A letter in upper case, accented ones of Western European languages included.
char16_t UpperLetter(char16_t letter);
/// The mnemonic letter of a caption in upper case; 0 without one.
char16_t MnemonicOf(std::string_view caption);

/// A caption and its control's common part.
class Captioned : public Control {
 public:
  using Control::Control;
  std::string_view Caption() const override { return caption_; }
  const std::string& CaptionText() const { return caption_; }
  void SetCaption(std::string caption);
  std::string AccessibleName() const override;

 private:
  std::string caption_;
};

/// A label. It can be clicked but never has the focus; its mnemonic goes to the control made after it.
class Label final : public Captioned {
 public:
  using Captioned::Captioned;
  bool TakesFocus() const override { return false; }
  void Mnemonic() override;
  /// Drawn in bold, as a heading; set while the window is built.
  bool Heading() const { return heading_; }
  void SetHeading(bool heading) { heading_ = heading; }
  bool RightAligned() const { return right_aligned_; }
  void SetRightAligned(bool right) { right_aligned_ = right; }
  /// The longest text that it has to have room for, where the caption comes later; set while the window is
  /// built. A label that was designed high enough has several lines for it.
  void SetLongest(std::string text) { longest_ = std::move(text); }
  Extent MinimumSize(const TextMeasure& texts) const override;
  const MemberTable* Members() const override;

 private:
  std::string longest_;
  bool heading_ = false, right_aligned_ = false;
};

/// Picture of a button without a caption.
enum class Glyph { None, AllRight, Right, Left, AllLeft, Down };

class Button final : public Captioned {
 public:
  using Captioned::Captioned;
  void Mnemonic() override { Click(); }
  Glyph Picture() const { return picture_; }
  /// Set while the window is built.
  void SetPicture(Glyph picture) { picture_ = picture; }
  /// By name: reading gives false; setting it to true clicks.
  bool Value() const { return false; }
  void SetValue(bool pressed);
  void DefaultKey(std::int16_t key, std::int16_t shift) override;
  std::string AccessibleName() const override;
  Extent MinimumSize(const TextMeasure& texts) const override;
  const MemberTable* Members() const override;

 private:
  Glyph picture_ = Glyph::None;
};

/// A check box: 0 clear, 1 ticked, 2 greyed. A click, or setting another value, raises Click.
class CheckBox final : public Captioned {
 public:
  using Captioned::Captioned;
  std::int16_t Value() const { return value_; }
  /// Throws HostError (InvalidCall) outside 0 to 2.
  void SetValue(std::int16_t value);
  void Click() override;
  void Mnemonic() override;
  void DefaultKey(std::int16_t key, std::int16_t shift) override;
  /// Its caption may also be a separate label, made directly before or after it.
  std::string AccessibleName() const override;
  Extent MinimumSize(const TextMeasure& texts) const override;
  const MemberTable* Members() const override;

 private:
  std::int16_t value_ = 0;
};

}  // namespace zuvi
