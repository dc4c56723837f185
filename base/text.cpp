#include "base/text.h"

#include <utf8.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace zuvi {
namespace {

constexpr char16_t kReplacement = 0xFFFD;

/// What is no character, a lone surrogate among them, becomes U+FFFD.
void Append(std::string& out, char32_t c) {
  const bool none = c > 0x10FFFF || (c >= 0xD800 && c < 0xE000);
  utf8::unchecked::append(none ? char32_t{kReplacement} : c, std::back_inserter(out));
}

}  // namespace

std::string_view Trim(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

bool EqualsIgnoringCase(std::string_view a, std::string_view b) {
  return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(),
                                            [](char x, char y) { return LowerCase(x) == LowerCase(y); });
}

std::string ToLower(std::string_view text) {
  std::string out(text);
  std::transform(out.begin(), out.end(), out.begin(), LowerCase);
  return out;
}

char16_t UpperCase(char16_t c) {
  const bool latin1 = c >= 0xE0 && c <= 0xFE && c != u'÷';
  if ((c >= u'a' && c <= u'z') || latin1) return static_cast<char16_t>(c - 32);
  return c == u'ÿ' ? u'Ÿ' : c;
}

std::string ZeroPadded(std::int32_t number, std::size_t width) {
  std::string text = std::to_string(number);
  if (text.size() < width) text.insert(number < 0 ? 1 : 0, width - text.size(), '0');
  return text;
}

std::string ToUpper(std::string_view text) {
  std::u16string wide = Utf16(text);
  std::transform(wide.begin(), wide.end(), wide.begin(), UpperCase);
  return Utf8(wide);
}

std::string Join(std::initializer_list<std::string_view> pieces, std::string_view between) {
  std::size_t size = 0;
  for (const auto piece : pieces) size += piece.size() + between.size();
  std::string out;
  out.reserve(size);
  for (bool first = true; const auto piece : pieces) {
    if (!std::exchange(first, false)) out += between;
    out += piece;
  }
  return out;
}

std::string Utf8(char32_t c) {
  std::string out;
  Append(out, c);
  return out;
}

std::string Utf8(std::u16string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool pair = IsHighSurrogate(text[i]) && i + 1 < text.size() && IsLowSurrogate(text[i + 1]);
    char32_t c = text[i];
    if (pair) c = 0x10000 + ((c - 0xD800) << 10) + (text[++i] - 0xDC00u);
    Append(out, c);
  }
  return out;
}

std::u16string Utf16(std::string_view text) {
  // No text takes more units than bytes.
  std::u16string out(text.size(), u'\0');
  char16_t* to = out.data();
  for (auto from = text.begin(); from != text.end();) {
    const auto broken = utf8::find_invalid(from, text.end());
    to = utf8::unchecked::utf8to16(from, broken, to);
    from = broken;
    if (from == text.end()) break;
    // A broken sequence costs one byte.
    *to++ = kReplacement;
    ++from;
  }
  out.resize(static_cast<std::size_t>(to - out.data()));
  return out;
}

}  // namespace zuvi
