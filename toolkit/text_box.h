#pragma once

#include <optional>

#include "toolkit/control.h"
#include "toolkit/text_measure.h"
#include "toolkit/text_units.h"

namespace zuvi {

/// A text box. Lengths and positions count UTF-16 units, as the native control does.
class TextBox : public Control {
 public:
  using Control::Control;

  const std::string& Text() const { return text_; }
  /// Sets the text, the caret before it. Raises Change when it differs.
  void SetText(std::string text);
  /// Longest text a user can type; 0 means no limit. Text set by code may be longer.
  std::int32_t MaxLength() const { return max_length_; }
  void SetMaxLength(std::int32_t length);
  /// Length of the text.
  std::int32_t Length() const;
  std::int32_t SelStart() const;
  std::int32_t SelLength() const;
  /// Both are brought within the text. Setting the start leaves nothing selected.
  void SetSelStart(std::int32_t start);
  void SetSelLength(std::int32_t length);
  /// The selected part. Setting it puts a text in its place, the caret after it; raises Change when the text
  /// differs.
  std::string SelText() const;
  void SetSelText(const std::string& text);
  bool Locked() const { return locked_; }
  void SetLocked(bool locked);
  /// Enter makes a new line; set while the window is built.
  bool MultiLine() const { return multi_line_; }
  void SetMultiLine(bool multi_line) { multi_line_ = multi_line; }
  /// Text to the right, as for numbers; set while the window is built.
  bool RightAligned() const { return right_aligned_; }
  void SetRightAligned(bool right) { right_aligned_ = right; }

  std::function<void()> OnChange;

  /// The user has changed the text in the native control; selection in UTF-16 units. Raises Change.
  void UserEdited(std::string text, std::int32_t sel_start, std::int32_t sel_length);
  /// What may go in of a text that the user pastes: each character goes the way of a typed one. Nothing when
  /// one of them is dropped there, for what is left would be another text. One line, and no longer than fits.
  std::optional<std::string> Pasting(std::string_view text);
  /// Pastes where there is no native control. False when it was refused.
  bool Paste(std::string_view text);
  /// What the native control says is selected.
  void NoteSelection(std::int32_t start, std::int32_t length);

  void DefaultKey(std::int16_t key, std::int16_t shift) override;
  void DefaultChar(char16_t character) override;
  bool WantsKey(std::int16_t key) const override { return multi_line_ && key == key::kEnter; }
  Extent MinimumSize(const TextMeasure& texts) const override { return {0, texts.BoxHeight()}; }
  bool Scrolls() const override { return multi_line_; }
  const MemberTable* Members() const override;

 private:
  /// Puts a text in the place of another, the caret after it.
  void Replace(std::size_t from, std::size_t to, std::u16string_view by);
  void Select(std::size_t anchor, std::size_t caret);
  void PullSelection() const;

  std::string text_;
  UnitJoiner typed_;
  std::int32_t max_length_ = 0, sel_start_ = 0, sel_length_ = 0;
  bool caret_first_ = false;  // which end of the selection Shift and an arrow move
  bool locked_ = false, multi_line_ = false, right_aligned_ = false;
};

/// A box for longer texts in several lines.
class RichTextBox : public TextBox {
 public:
  RichTextBox(Form& form, std::string name, std::int16_t index) : TextBox(form, std::move(name), index) {
    SetMultiLine(true);
  }
};

}  // namespace zuvi
