#pragma once

#include "toolkit/text_measure.h"
#include "toolkit/win32/drawing.h"

namespace zuvi::native {

/// The fonts of a window's texts at its scale, and the room that texts take in them.
class NativeTexts final : public TextMeasure {
 public:
  NativeTexts(const LOGFONTW& font, UINT dpi);
  std::int32_t Width(std::string_view text, bool bold) const override;
  std::int32_t LineHeight() const override { return Twips(height_); }
  HFONT Font(bool bold) const { return bold ? bold_.get() : font_.get(); }
  /// Whether it is the same font as another one, at the same scale.
  bool Is(const LOGFONTW& font, UINT dpi) const;

 private:
  std::int32_t Twips(int pixels) const { return ::MulDiv(pixels, 1440, static_cast<int>(dpi_)); }

  LOGFONTW made_of_;
  UINT dpi_;
  UniqueGdi<HFONT> font_, bold_;
  int height_ = 0;
};

}  // namespace zuvi::native
