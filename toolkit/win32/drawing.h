// What is drawn with and drawn on, given back at the end of its scope.
#pragma once

#include "toolkit/win32/windows_ui.h"
#include "win32/handles.h"

namespace zuvi::native {

/// Owner of a font, brush, pen or bitmap.
template <class Handle>
using UniqueGdi = UniqueHandle<Handle, &::DeleteObject>;
using UniqueIcon = UniqueHandle<HICON, &::DestroyIcon>;
/// A device context in memory.
using MemoryDc = UniqueHandle<HDC, &::DeleteDC>;

/// The device context of a window's client area; of the screen for null.
class WindowDc {
 public:
  explicit WindowDc(HWND window) : window_(window), dc_(::GetDC(window)) {}
  WindowDc(const WindowDc&) = delete;
  WindowDc& operator=(const WindowDc&) = delete;
  ~WindowDc() { ::ReleaseDC(window_, dc_); }
  HDC get() const { return dc_; }

 private:
  HWND window_;
  HDC dc_;
};

/// One painting of a window, in answer to WM_PAINT.
class Painting {
 public:
  explicit Painting(HWND window) : window_(window) { ::BeginPaint(window_, &paint_); }
  Painting(const Painting&) = delete;
  Painting& operator=(const Painting&) = delete;
  ~Painting() { ::EndPaint(window_, &paint_); }
  HDC get() const { return paint_.hdc; }
  /// What of the client area is to be painted, in pixels.
  const RECT& Part() const { return paint_.rcPaint; }

 private:
  HWND window_;
  PAINTSTRUCT paint_;
};

/// An object selected into a device context; the one before comes back at the end. The object must outlive
/// it.
class Selected {
 public:
  Selected(HDC dc, HGDIOBJ object) : dc_(dc), before_(::SelectObject(dc, object)) {}
  Selected(const Selected&) = delete;
  Selected& operator=(const Selected&) = delete;
  ~Selected() {
    if (before_) ::SelectObject(dc_, before_);
  }

 private:
  HDC dc_;
  HGDIOBJ before_;
};

}  // namespace zuvi::native
