#include "base/text.h"

#include <gtest/gtest.h>

namespace zuvi {
namespace {

TEST(Utf, WhatIsValidGoesBothWays) {
  const std::pair<std::string, std::u16string> cases[] = {
      {"", u""},
      {"\xED\x9F\xBF\xEE\x80\x80", u"\xD7FF\xE000"},
      {"\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", u"\xD800\xDC00\xDBFF\xDFFF"},
      {"\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80", u"\x7F\x80\x7FF\x800"},
      {std::string("a\0ñ", 4), std::u16string(u"a\0ñ", 3)}};
  for (const auto& [utf8, utf16] : cases) {
    EXPECT_EQ(Utf16(utf8), utf16) << utf8;
    EXPECT_EQ(Utf8(utf16), utf8) << utf8;
  }
}

TEST(Utf, WhatIsBrokenBecomesReplacementAndSparesTheRest) {
  const std::u16string r = u"\xFFFD";
  const std::pair<std::string, std::u16string> broken8[] = {
      {"a\x80z", u"a" + r + u"z"}, {"\xC3(", r + u"("},         {"\xC0\xAF", r + r},
      {"\xE0\x80\xAF", r + r + r}, {"\xED\xA0\x80", r + r + r}, {"\xF4\x90\x80\x80", r + r + r + r},
      {"\xF5z", r + u"z"},         {"\xE2\x82", r + r},         {"\xE2\x82ñ", r + r + u"ñ"}};
  for (const auto& [utf8, utf16] : broken8) EXPECT_EQ(Utf16(utf8), utf16);
  const std::pair<std::u16string, std::string> broken16[] = {{u"\xDC00z", "\uFFFDz"},
                                                             {u"\xD800\xD800\xDC00", "\uFFFD\U00010000"},
                                                             {u"\xDC00\xD800", "\uFFFD\uFFFD"},
                                                             {u"\xD83Dñ", "\uFFFDñ"}};
  for (const auto& [utf16, utf8] : broken16) EXPECT_EQ(Utf8(utf16), utf8);
}

TEST(Texts, OnlyBlanksAreTrimmedAndOnlyAsciiFolds) {
  EXPECT_EQ(Recorta("   "), "");
  EXPECT_EQ(Recorta("\ta\n"), "\ta\n");
  EXPECT_EQ(Minusculas("AZ@[Ñ"), "az@[Ñ");
  EXPECT_FALSE(IgualSinCaso("Ñ", "ñ"));
  EXPECT_FALSE(IgualSinCaso("a", "a "));
  EXPECT_FALSE(IgualSinCaso("@", "`"));
}

}  // namespace
}  // namespace zuvi
