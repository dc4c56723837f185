#include "base/text.h"

#include <algorithm>
#include <utility>

namespace zuvi {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

void AppendUtf8(std::string& out, char32_t c) {
  const auto byte = [&out](char32_t value) { out += static_cast<char>(static_cast<unsigned char>(value)); };
  if (c < 0x80) {
    byte(c);
  } else if (c < 0x800) {
    byte(0xC0 | (c >> 6));
    byte(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    byte(0xE0 | (c >> 12));
    byte(0x80 | ((c >> 6) & 0x3F));
    byte(0x80 | (c & 0x3F));
  } else {
    byte(0xF0 | (c >> 18));
    byte(0x80 | ((c >> 12) & 0x3F));
    byte(0x80 | ((c >> 6) & 0x3F));
    byte(0x80 | (c & 0x3F));
  }
}

/// Takes one code point off the front; a broken sequence costs one byte and gives U+FFFD.
char32_t NextCodePoint(std::string_view& text) {
  const auto at = [&text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char lead = at(0);
  std::size_t length = 1;
  char32_t c = lead;
  char32_t least = 0;
  if (lead >= 0x80) {
    if (lead >= 0xC2 && lead <= 0xDF) {
      length = 2, c = lead & 0x1Fu, least = 0x80;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
      length = 3, c = lead & 0x0Fu, least = 0x800;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
      length = 4, c = lead & 0x07u, least = 0x10000;
    } else {
      c = kReplacement;
    }
  }
  if (length > text.size()) {
    length = 1;
    c = kReplacement;
  }
  for (std::size_t i = 1; i < length; ++i) {
    if ((at(i) & 0xC0) != 0x80) {
      length = 1;
      c = kReplacement;
      break;
    }
    c = (c << 6) | (at(i) & 0x3Fu);
  }
  if (length > 1 && (c < least || c > 0x10FFFF || (c >= 0xD800 && c < 0xE000))) {
    length = 1;
    c = kReplacement;
  }
  text.remove_prefix(length);
  return c;
}

}  // namespace

std::string_view Recorta(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

bool IgualSinCaso(std::string_view a, std::string_view b) {
  return a.size() == b.size() &&
         std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) { return Lower(x) == Lower(y); });
}

std::string Minusculas(std::string_view text) {
  std::string out(text);
  std::transform(out.begin(), out.end(), out.begin(), Lower);
  return out;
}

std::string Junta(std::initializer_list<std::string_view> pieces, std::string_view between) {
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

std::string Utf8(std::u16string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    char32_t c = text[i];
    if (c >= 0xD800 && c < 0xE000) {
      const bool pair = c < 0xDC00 && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] < 0xE000;
      c = pair ? 0x10000 + ((c - 0xD800) << 10) + (text[++i] - 0xDC00u) : kReplacement;
    }
    AppendUtf8(out, c);
  }
  return out;
}

std::u16string Utf16(std::string_view text) {
  std::u16string out;
  out.reserve(text.size());
  while (!text.empty()) {
    const char32_t c = NextCodePoint(text);
    if (c < 0x10000) {
      out += static_cast<char16_t>(c);
    } else {
      out += static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
      out += static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
    }
  }
  return out;
}

}  // namespace zuvi
