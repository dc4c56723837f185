#include "toolkit/win32/win32_desktop.h"

#include <windows.h>

#include "base/text.h"

namespace zuvi {

void Win32Desktop::Avisa(const std::string& text) noexcept {
  try {
    const std::u16string wide = Utf16(text);
    MessageBoxW(GetActiveWindow(), reinterpret_cast<const wchar_t*>(wide.c_str()), L"ZuviProduccion", MB_OK);
  } catch (...) {
    MessageBoxW(nullptr, L"Out of memory", L"ZuviProduccion", MB_OK);
  }
}

}  // namespace zuvi
