#pragma once

#include <string>
#include <string_view>

namespace zuvi {

/// The text of a page without its marks: runs of white space are one blank, blocks and line breaks begin a
/// new line ("\n"), references of characters are the characters, scripts and style sheets are left out.
/// Broken pages give what text they have.
std::string PlainTextOfHtml(std::string_view html);

}  // namespace zuvi
