#include "toolkit/text_box.h"

#include <algorithm>

#include "base/text.h"
#include "toolkit/form.h"

namespace zuvi {

std::int32_t TextBox::Length() const { return static_cast<std::int32_t>(Utf16(text_).size()); }

void TextBox::SetText(std::string text) {
  const auto self = shared_from_this();
  const bool differs = text != text_;
  text_ = std::move(text);
  sel_start_ = sel_length_ = 0;
  Changed(Aspect::Text);
  if (differs) Raise(OnChange);
}

void TextBox::SetMaxLength(std::int32_t length) {
  if (length < 0) throw HostError(ErrorNumber::InvalidCall);
  max_length_ = length;
  Changed(Aspect::State);
}

void TextBox::SetLocked(bool locked) {
  locked_ = locked;
  Changed(Aspect::State);
}

void TextBox::PullSelection() const {
  if (NativeSide()) NativeSide()->Pull();
}

std::int32_t TextBox::SelStart() const {
  PullSelection();
  return sel_start_;
}

std::int32_t TextBox::SelLength() const {
  PullSelection();
  return sel_length_;
}

void TextBox::SetSelStart(std::int32_t start) {
  sel_start_ = std::clamp(start, 0, Length());
  sel_length_ = 0;
  Changed(Aspect::Selection);
}

void TextBox::SetSelLength(std::int32_t length) {
  PullSelection();
  sel_length_ = std::clamp(length, 0, Length() - sel_start_);
  caret_first_ = false;
  Changed(Aspect::Selection);
}

std::string TextBox::SelText() const {
  PullSelection();
  return Utf8(
      Utf16(text_).substr(static_cast<std::size_t>(sel_start_), static_cast<std::size_t>(sel_length_)));
}

void TextBox::SetSelText(const std::string& text) {
  PullSelection();
  const auto from = static_cast<std::size_t>(sel_start_);
  Replace(from, from + static_cast<std::size_t>(sel_length_), Utf16(text));
}

void TextBox::UserEdited(std::string text, std::int32_t sel_start, std::int32_t sel_length) {
  const bool differs = text != text_;
  text_ = std::move(text);
  NoteSelection(sel_start, sel_length);
  if (differs) Raise(OnChange);
}

std::optional<std::string> TextBox::Pasting(std::string_view text) {
  const auto self = shared_from_this();
  Form* const form = Window();
  if (locked_ || !form || !CanFocus()) return std::nullopt;
  const auto window = form->Keep();
  PullSelection();
  // A cell copied from a sheet ends in a line end, and often has blanks around it.
  const std::u16string line = Utf16(Trim(text.substr(0, text.find_first_of("\r\n"))));
  std::u16string kept;
  for (const char16_t character : line) {
    const char16_t unit = form->KeyPress(*this, character);
    if (unit == 0 || form->Closed()) return std::nullopt;
    kept += unit;
  }
  if (max_length_ > 0) {
    auto room = static_cast<std::size_t>(std::max(0, max_length_ - Length() + sel_length_));
    if (SplitsPair(kept, std::min(room, kept.size()))) --room;
    kept.resize(std::min(room, kept.size()));
  }
  return Utf8(kept);
}

bool TextBox::Paste(std::string_view text) {
  const auto kept = Pasting(text);
  if (kept) SetSelText(*kept);
  return kept.has_value();
}

void TextBox::NoteSelection(std::int32_t start, std::int32_t length) {
  const std::int32_t whole = Length();
  sel_start_ = std::clamp(start, 0, whole);
  sel_length_ = std::clamp(length, 0, whole - sel_start_);
}

void TextBox::Replace(std::size_t from, std::size_t to, std::u16string_view by) {
  const auto self = shared_from_this();
  std::u16string units = Utf16(text_);
  const bool inserts = from == to;
  if (SplitsPair(units, from)) --from;
  if (inserts) to = from;
  if (SplitsPair(units, to)) ++to;
  units.replace(from, to - from, by);
  std::string text = Utf8(units);
  const bool differs = text != text_;
  text_ = std::move(text);
  sel_start_ = static_cast<std::int32_t>(from + by.size());
  sel_length_ = 0;
  Changed(Aspect::Text);
  if (differs) Raise(OnChange);
}

void TextBox::Select(std::size_t anchor, std::size_t caret) {
  sel_start_ = static_cast<std::int32_t>(std::min(anchor, caret));
  sel_length_ = static_cast<std::int32_t>(std::max(anchor, caret)) - sel_start_;
  caret_first_ = caret < anchor;
  Changed(Aspect::Selection);
}

void TextBox::DefaultKey(std::int16_t key, std::int16_t shift) {
  PullSelection();
  const std::u16string units = Utf16(text_);
  const auto first = static_cast<std::size_t>(sel_start_);
  const auto last = first + static_cast<std::size_t>(sel_length_);
  if (key == 'A' && shift == shift::kCtrl) return Select(0, units.size());
  if (key == key::kDelete) {
    if (!locked_) Replace(first, first == last ? UnitAfter(units, last) : last, {});
    return;
  }

  const bool extends = (shift & shift::kShift) != 0, whole = (shift & shift::kCtrl) != 0;
  std::size_t caret = caret_first_ ? first : last;
  const std::size_t anchor = caret_first_ ? last : first;
  // Within several lines Home and End stay in theirs, unless Ctrl goes with them.
  const bool by_line = multi_line_ && !whole;
  if (key == key::kLeft) {
    caret = extends || first == last ? UnitBefore(units, caret) : first;
  } else if (key == key::kRight) {
    caret = extends || first == last ? UnitAfter(units, caret) : last;
  } else if (key == key::kHome) {
    const auto line = by_line && caret > 0 ? units.rfind(u'\n', caret - 1) : std::u16string::npos;
    caret = line == std::u16string::npos ? 0 : line + 1;
  } else if (key == key::kEnd) {
    const auto line = by_line ? units.find(u'\r', caret) : std::u16string::npos;
    caret = line == std::u16string::npos ? units.size() : line;
  } else {
    return;
  }
  Select(extends ? anchor : caret, caret);
}

void TextBox::DefaultChar(char16_t character) {
  if (locked_) return;
  PullSelection();
  const auto first = static_cast<std::size_t>(sel_start_);
  const auto last = first + static_cast<std::size_t>(sel_length_);
  if (character == key::kBack) {
    const std::size_t from = first == last ? UnitBefore(Utf16(text_), first) : first;
    return Replace(from, last, {});
  }
  std::u16string typed = typed_.Next(character);
  if (character == key::kEnter && multi_line_) typed = u"\r\n";
  const bool control = character < 0x20 || character == 0x7F;
  if (typed.empty() || (control && typed != u"\r\n")) return;
  const auto length = static_cast<std::size_t>(Length()) - (last - first) + typed.size();
  if (max_length_ > 0 && length > static_cast<std::size_t>(max_length_)) return;
  Replace(first, last, typed);
}

const MemberTable* TextBox::Members() const {
  using T = TextBox;
  static const MemberTable table =
      WithControlMembers(MemberTable::Of<T>()
                             .Property<&T::Text, &T::SetText>("Text")
                             .AsDefault()
                             .Property<&T::MaxLength, &T::SetMaxLength>("MaxLength")
                             .Property<&T::SelStart, &T::SetSelStart>("SelStart")
                             .Property<&T::SelLength, &T::SetSelLength>("SelLength")
                             .Property<&T::SelText, &T::SetSelText>("SelText")
                             .Property<&T::Locked, &T::SetLocked>("Locked")
                             .Property<&T::MultiLine>("MultiLine"));
  return &table;
}

}  // namespace zuvi
