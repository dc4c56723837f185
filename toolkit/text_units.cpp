#include "toolkit/text_units.h"

namespace zuvi {

std::size_t UnitBefore(std::u16string_view text, std::size_t at) {
  if (at == 0) return 0;
  --at;
  const bool line_break = at > 0 && text[at - 1] == u'\r' && text[at] == u'\n';
  return line_break || SplitsPair(text, at) ? at - 1 : at;
}

std::size_t UnitAfter(std::u16string_view text, std::size_t at) {
  if (at >= text.size()) return text.size();
  ++at;
  const bool line_break = at < text.size() && text[at - 1] == u'\r' && text[at] == u'\n';
  return line_break || SplitsPair(text, at) ? at + 1 : at;
}

std::u16string UnitJoiner::Next(char16_t unit) {
  const char16_t first_half = first_half_;
  first_half_ = IsHighSurrogate(unit) ? unit : char16_t{0};
  if (first_half_) return {};
  if (!IsLowSurrogate(unit)) return {unit};
  return first_half ? std::u16string{first_half, unit} : std::u16string();
}

}  // namespace zuvi
