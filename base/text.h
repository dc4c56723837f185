// Text helpers. Text inside the module is UTF-8; UTF-16 exists only at the edge, where broken surrogates
// become U+FFFD.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace zuvi {

/// Without the blanks (U+0020) at both ends.
std::string_view Recorta(std::string_view text);
/// Compares without regard to the case of ASCII letters: names of members, columns and files.
bool IgualSinCaso(std::string_view a, std::string_view b);
/// ASCII letters in lower case.
std::string Minusculas(std::string_view text);
/// The pieces one after the other, with a text between each two.
std::string Junta(std::initializer_list<std::string_view> pieces, std::string_view between = {});
/// UTF-16 to UTF-8; a lone surrogate becomes U+FFFD.
std::string Utf8(std::u16string_view text);
/// UTF-8 to UTF-16; what is not valid UTF-8 becomes U+FFFD.
std::u16string Utf16(std::string_view text);

}  // namespace zuvi
