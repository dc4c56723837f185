#include "toolkit/plain_html.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <utility>

#include "base/text.h"

namespace zuvi {
namespace {

constexpr auto kNone = std::string_view::npos;

/// Marks that begin a line of their own. Cells of a row stay in its line.
constexpr std::array kBlocks = std::to_array<std::string_view>(
    {"address", "article", "aside",    "blockquote", "br",     "caption", "center", "dd",  "div",
     "dl",      "dt",      "fieldset", "figure",     "footer", "form",    "h1",     "h2",  "h3",
     "h4",      "h5",      "h6",       "header",     "hr",     "li",      "main",   "nav", "ol",
     "p",       "pre",     "section",  "table",      "tbody",  "tfoot",   "thead",  "tr",  "ul"});

struct Reference {
  std::string_view name;
  char16_t character;
};
constexpr std::array kReferences = std::to_array<Reference>(
    {{"amp", u'&'},    {"lt", u'<'},     {"gt", u'>'},     {"quot", u'"'},   {"apos", u'\''},
     {"nbsp", u' '},   {"aacute", u'á'}, {"eacute", u'é'}, {"iacute", u'í'}, {"oacute", u'ó'},
     {"uacute", u'ú'}, {"ntilde", u'ñ'}, {"uuml", u'ü'},   {"Aacute", u'Á'}, {"Eacute", u'É'},
     {"Iacute", u'Í'}, {"Oacute", u'Ó'}, {"Uacute", u'Ú'}, {"Ntilde", u'Ñ'}, {"Uuml", u'Ü'},
     {"iquest", u'¿'}, {"iexcl", u'¡'},  {"ordf", u'ª'},   {"ordm", u'º'},   {"deg", u'°'},
     {"middot", u'·'}, {"laquo", u'«'},  {"raquo", u'»'},  {"copy", u'©'},   {"reg", u'®'},
     {"sect", u'§'},   {"frac12", u'½'}, {"frac14", u'¼'}, {"frac34", u'¾'}, {"times", u'×'},
     {"plusmn", u'±'}, {"euro", u'€'},   {"hellip", u'…'}, {"ndash", u'–'},  {"mdash", u'—'},
     {"lsquo", u'‘'},  {"rsquo", u'’'},  {"ldquo", u'“'},  {"rdquo", u'”'},  {"bull", u'•'}});

/// The character that "#233" or "eacute" stands for.
std::optional<std::string> Decoded(std::string_view name) {
  if (!name.starts_with('#')) {
    const auto found = std::ranges::find(kReferences, name, &Reference::name);
    if (found == kReferences.end()) return std::nullopt;
    return Utf8({&found->character, 1});
  }
  const bool hex = name.size() > 1 && (name[1] == 'x' || name[1] == 'X');
  const std::string_view digits = name.substr(hex ? 2 : 1);
  std::uint32_t code = 0;
  const auto [end, error] =
      std::from_chars(digits.data(), digits.data() + digits.size(), code, hex ? 16 : 10);
  if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
  constexpr std::uint32_t kNoBreakSpace = 0xA0, kReplacement = 0xFFFD;
  if (code == kNoBreakSpace) return " ";
  return Utf8(char32_t{code == 0 ? kReplacement : code});
}

/// Gathers the text: white space only between words and cells, no empty lines.
class Lines {
 public:
  void Add(std::string_view word) {
    if ((blank_ || cell_) && !text_.empty() && text_.back() != '\n') text_ += cell_ ? '\t' : ' ';
    blank_ = cell_ = false;
    text_ += word;
  }
  void Blank() { blank_ = true; }
  /// Cells of a row stand under each other by tabs.
  void Cell() { cell_ = true; }
  void Break() {
    blank_ = cell_ = false;
    if (!text_.empty() && text_.back() != '\n') text_ += '\n';
  }
  std::string Take() {
    while (text_.ends_with('\n')) text_.pop_back();
    return std::move(text_);
  }

 private:
  std::string text_;
  bool blank_ = false, cell_ = false;
};

/// Name of a mark ("/td class=x" is "td"), in lower case.
std::string NameOf(std::string_view mark) {
  if (mark.starts_with('/')) mark.remove_prefix(1);
  const auto end = std::ranges::find_if(mark, [](char c) {
    return !((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9'));
  });
  return ToLower(mark.substr(0, static_cast<std::size_t>(end - mark.begin())));
}

/// Where a mark that begins before `at` ends; a ">" within quotes does not end it.
std::size_t EndOfMark(std::string_view html, std::size_t at) {
  char quote = 0;
  for (; at < html.size(); ++at) {
    const char c = html[at];
    if (quote) {
      if (c == quote) quote = 0;
    } else if (c == '"' || c == '\'') {
      quote = c;
    } else if (c == '>') {
      return at;
    }
  }
  return kNone;
}

}  // namespace

std::string PlainTextOfHtml(std::string_view html) {
  Lines lines;
  std::string skipped_until;  // name of the mark whose end is waited for
  std::size_t at = 0;
  while (at < html.size()) {
    const char c = html[at];
    const bool mark = c == '<' && at + 1 < html.size() &&
                      (html[at + 1] == '/' || html[at + 1] == '!' || html[at + 1] == '?' ||
                       (html[at + 1] >= 'A' && html[at + 1] <= 'z'));
    if (mark) {
      if (html.substr(at, 4) == "<!--" && skipped_until.empty()) {
        const auto end = html.find("-->", at + 4);
        at = end == kNone ? html.size() : end + 3;
        continue;
      }
      const std::string name = NameOf(html.substr(at + 1));
      const bool closing = html[at + 1] == '/';
      if (!skipped_until.empty() && !(closing && name == skipped_until)) {
        ++at;
        continue;
      }
      skipped_until.clear();
      if (!closing && (name == "script" || name == "style" || name == "title")) skipped_until = name;
      if (std::ranges::find(kBlocks, name) != kBlocks.end()) lines.Break();
      if (!closing && (name == "td" || name == "th")) lines.Cell();
      const auto end = EndOfMark(html, at);
      at = end == kNone ? html.size() : end + 1;
      continue;
    }
    if (!skipped_until.empty()) {
      ++at;
      continue;
    }
    if (c == ' ' || c == '\t' || c == '\r' || c == '\n') {
      lines.Blank();
      ++at;
      continue;
    }
    if (c == '&') {
      const auto end = html.substr(at, 12).find(';');
      if (const auto decoded = end == kNone ? std::nullopt : Decoded(html.substr(at + 1, end - 1))) {
        lines.Add(*decoded);
        at += end + 1;
        continue;
      }
    }
    lines.Add(html.substr(at, 1));
    ++at;
  }
  return lines.Take();
}

}  // namespace zuvi
