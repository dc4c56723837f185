#include "toolkit/win32/native_texts.h"

#include <cstddef>
#include <cstring>

namespace zuvi::native {
namespace {

/// A canvas to measure on, in a font.
class Canvas {
 public:
  explicit Canvas(HFONT font)
      : canvas_(::CreateCompatibleDC(nullptr)), before_(::SelectObject(canvas_, font)) {}
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;
  ~Canvas() {
    ::SelectObject(canvas_, before_);
    ::DeleteDC(canvas_);
  }
  operator HDC() const { return canvas_; }  // NOLINT: for the system's calls

 private:
  HDC canvas_;
  HGDIOBJ before_;
};

}  // namespace

NativeTexts::NativeTexts(const LOGFONTW& font, UINT dpi) : made_of_(font), dpi_(dpi) {
  LOGFONTW wanted = font;
  font_.reset(::CreateFontIndirectW(&wanted));
  wanted.lfWeight = FW_BOLD;
  bold_.reset(::CreateFontIndirectW(&wanted));
  TEXTMETRICW metrics{};
  ::GetTextMetricsW(Canvas(font_.get()), &metrics);
  height_ = static_cast<int>(metrics.tmHeight);
}

std::int32_t NativeTexts::Width(std::string_view text, bool bold) const {
  const std::wstring wide = Wide(text);
  SIZE size{};
  ::GetTextExtentPoint32W(Canvas(Font(bold)), wide.c_str(), static_cast<int>(wide.size()), &size);
  return Twips(size.cx);
}

bool NativeTexts::Is(const LOGFONTW& font, UINT dpi) const {
  return dpi == dpi_ && std::wstring_view(font.lfFaceName) == made_of_.lfFaceName &&
         std::memcmp(&font, &made_of_, offsetof(LOGFONTW, lfFaceName)) == 0;
}

}  // namespace zuvi::native
