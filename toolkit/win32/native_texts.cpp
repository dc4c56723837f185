#include "toolkit/win32/native_texts.h"

#include <cstddef>
#include <cstring>

namespace zuvi::native {
NativeTexts::NativeTexts(const LOGFONTW& font, UINT dpi) : made_of_(font), dpi_(dpi) {
  LOGFONTW wanted = font;
  font_ = UniqueGdi<HFONT>(::CreateFontIndirectW(&wanted));
  wanted.lfWeight = FW_BOLD;
  bold_ = UniqueGdi<HFONT>(::CreateFontIndirectW(&wanted));
  const MemoryDc canvas(::CreateCompatibleDC(nullptr));
  const Selected in_use(canvas.get(), font_.get());
  TEXTMETRICW metrics{};
  ::GetTextMetricsW(canvas.get(), &metrics);
  height_ = static_cast<int>(metrics.tmHeight);
}

std::int32_t NativeTexts::Width(std::string_view text, bool bold) const {
  const std::wstring wide = Wide(text);
  SIZE size{};
  const MemoryDc canvas(::CreateCompatibleDC(nullptr));
  const Selected in_use(canvas.get(), Font(bold));
  ::GetTextExtentPoint32W(canvas.get(), wide.c_str(), static_cast<int>(wide.size()), &size);
  return Twips(size.cx);
}

bool NativeTexts::Is(const LOGFONTW& font, UINT dpi) const {
  return dpi == dpi_ && std::wstring_view(font.lfFaceName) == made_of_.lfFaceName &&
         std::memcmp(&font, &made_of_, offsetof(LOGFONTW, lfFaceName)) == 0;
}

}  // namespace zuvi::native
