#pragma once

#include <algorithm>
#include <cstdint>
#include <string_view>

#include "toolkit/geometry.h"

namespace zuvi {

/// Room that texts take in the font of a window, in twips. Given by who shows them.
class TextMeasure {
 public:
  virtual ~TextMeasure() = default;
  /// Width of a text in one line; UTF-8, without mnemonic marks.
  virtual std::int32_t Width(std::string_view text, bool bold = false) const = 0;
  /// Height of a line.
  virtual std::int32_t LineHeight() const = 0;

  /// A width that was designed for texts, at the size of these: it grows with the letters, and never shrinks.
  std::int32_t Scaled(std::int32_t width) const {
    constexpr std::string_view kLetters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
    constexpr std::int32_t kDesigned = static_cast<std::int32_t>(kLetters.size()) * Dip(7);
    const std::int64_t letters = std::max(Width(kLetters), kDesigned);
    return static_cast<std::int32_t>(width * letters / kDesigned);
  }
  /// Height of a box with a frame around one line of text.
  std::int32_t BoxHeight() const { return LineHeight() + Dip(8); }
};

}  // namespace zuvi
