// What every native peer needs of Windows: the headers, text across the edge, messages.
#pragma once

#include <windows.h>

#include <commctrl.h>
#include <windowsx.h>

#include <string>

#include "win32/text.h"

namespace zuvi::native {

/// A window's text.
inline std::wstring TextOf(HWND window) {
  std::wstring text(static_cast<std::size_t>(::GetWindowTextLengthW(window)), L'\0');
  if (text.empty()) return text;
  text.resize(
      static_cast<std::size_t>(::GetWindowTextW(window, text.data(), static_cast<int>(text.size()) + 1)));
  return text;
}

/// A message on its way to a window.
struct Message {
  HWND window;
  UINT id;
  WPARAM w;
  LPARAM l;
};

}  // namespace zuvi::native
