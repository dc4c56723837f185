// Text across the system's edge: UTF-8 inside, UTF-16 there.
#pragma once

#include <windows.h>

#include <algorithm>
#include <string>
#include <string_view>

#include "base/text.h"

namespace zuvi {

/// UTF-16 of a text of ours.
inline std::wstring Wide(std::string_view text) {
  const std::u16string wide = Utf16(text);
  return {reinterpret_cast<const wchar_t*>(wide.data()), wide.size()};
}

/// UTF-8 of a text of the system, zeros inside included; broken surrogates become U+FFFD.
inline std::string Narrow(std::wstring_view text) {
  // Plain text, the usual case, is narrowed without looking for surrogates, and without an early way out:
  // such a loop runs many characters at a time.
  unsigned beyond_ascii = 0;
  for (const wchar_t c : text) beyond_ascii |= c;
  if (beyond_ascii >= 0x80) return Utf8({reinterpret_cast<const char16_t*>(text.data()), text.size()});
  std::string out(text.size(), '\0');
  std::ranges::transform(text, out.begin(), [](wchar_t c) { return static_cast<char>(c); });
  return out;
}
/// The same up to the text's zero; null is the empty text.
inline std::string Narrow(const wchar_t* text) {
  return text ? Narrow(std::wstring_view(text)) : std::string();
}

/// The text of any length that a function of the system writes into (buffer, room in characters); empty when
/// it fails. With too little room the function tells how much it wants.
template <class Function>
std::wstring SystemText(Function write) {
  std::wstring text(MAX_PATH, L'\0');
  DWORD length = write(text.data(), static_cast<DWORD>(text.size()));
  if (length > text.size()) {
    text.resize(length);
    length = write(text.data(), static_cast<DWORD>(text.size()));
  }
  text.resize(length <= text.size() ? length : 0);
  return text;
}

}  // namespace zuvi
