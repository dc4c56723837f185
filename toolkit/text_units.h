// UTF-16 units of a text that is typed in: pairs of surrogates stay whole.
#pragma once

#include <string>
#include <string_view>

#include "base/text.h"

namespace zuvi {

/// Whether position `at` lies between the two halves of a pair.
inline bool SplitsPair(std::u16string_view text, std::size_t at) {
  return at > 0 && at < text.size() && IsHighSurrogate(text[at - 1]) && IsLowSurrogate(text[at]);
}

/// The position one character (a line break counts as one) before or after `at`; stays at the ends.
std::size_t UnitBefore(std::u16string_view text, std::size_t at);
std::size_t UnitAfter(std::u16string_view text, std::size_t at);

/// Puts together the characters that arrive unit by unit.
class UnitJoiner {
 public:
  /// The whole character that `unit` ends; empty while its second half is missing, and for a half without
  /// its other.
  std::u16string Next(char16_t unit);

 private:
  char16_t first_half_ = 0;
};

}  // namespace zuvi
