// What every native peer needs of Windows: the headers, text across the edge, owners of drawing objects.
#pragma once

#include <windows.h>

#include <commctrl.h>
#include <windowsx.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

#include "base/text.h"

namespace zuvi::native {

inline std::wstring Wide(std::string_view text) {
  const std::u16string wide = Utf16(text);
  return {reinterpret_cast<const wchar_t*>(wide.data()), wide.size()};
}
inline std::string Narrow(std::wstring_view text) {
  return Utf8({reinterpret_cast<const char16_t*>(text.data()), text.size()});
}
/// A window's text.
inline std::wstring TextOf(HWND window) {
  std::wstring text(static_cast<std::size_t>(::GetWindowTextLengthW(window)), L'\0');
  if (text.empty()) return text;
  text.resize(
      static_cast<std::size_t>(::GetWindowTextW(window, text.data(), static_cast<int>(text.size()) + 1)));
  return text;
}

struct DeleteGdiObject {
  void operator()(void* object) const { ::DeleteObject(object); }
};
/// Owner of a font, brush, pen or bitmap.
template <class Handle>
using UniqueGdi = std::unique_ptr<std::remove_pointer_t<Handle>, DeleteGdiObject>;

/// A message on its way to a window.
struct Message {
  HWND window;
  UINT id;
  WPARAM w;
  LPARAM l;
};

}  // namespace zuvi::native
