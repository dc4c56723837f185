// Text helpers. Text inside the programs is UTF-8; UTF-16 exists only at their edges, where broken surrogates
// become U+FFFD.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

namespace zuvi {

/// Without the blanks (U+0020) at both ends.
std::string_view Trim(std::string_view text);
/// Compares without regard to the case of ASCII letters: names of members, columns and files.
bool EqualsIgnoringCase(std::string_view a, std::string_view b);
/// ASCII letters in lower case; all other bytes stay.
constexpr char LowerCase(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }
std::string ToLower(std::string_view text);
/// The letters of the western languages in upper case, accented ones too; one UTF-16 unit stays one.
char16_t UpperCase(char16_t c);
std::string ToUpper(std::string_view text);
/// A whole number with zeros in front, the sign before them, at least `width` characters long.
std::string ZeroPadded(std::int32_t number, std::size_t width);
/// The pieces one after the other, with a text between each two.
std::string Join(std::initializer_list<std::string_view> pieces, std::string_view between = {});
/// The two halves of a character that takes two units of UTF-16.
constexpr bool IsHighSurrogate(char16_t c) { return c >= 0xD800 && c < 0xDC00; }
constexpr bool IsLowSurrogate(char16_t c) { return c >= 0xDC00 && c < 0xE000; }
/// One character in UTF-8; U+FFFD for a number that is none.
std::string Utf8(char32_t c);
/// UTF-16 to UTF-8; a lone surrogate becomes U+FFFD.
std::string Utf8(std::u16string_view text);
/// UTF-8 to UTF-16; each byte of what is not valid UTF-8 becomes U+FFFD.
std::u16string Utf16(std::string_view text);

}  // namespace zuvi
