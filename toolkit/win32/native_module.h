#pragma once

#include "toolkit/win32/windows_ui.h"

namespace zuvi::native {

/// Names of our own window classes.
inline constexpr const wchar_t *kFormClass = L"ZuviVentana", *kGridClass = L"ZuviRejilla",
                               *kPopupClass = L"ZuviDesplegable";

/// How a window is to be created; places are pixels.
struct WindowPlan {
  const wchar_t* window_class = nullptr;
  DWORD style = 0, extended = 0;
  std::wstring text{};
  RECT place{};
  HWND parent = nullptr;
  void* param = nullptr;
};

/// What the windows of one program file share: its resources, its visual styles, its window classes. It must
/// outlive them.
class NativeModule {
 public:
  /// `form_procedure` serves windows of kFormClass; the others have the system's default one.
  NativeModule(HINSTANCE instance, WNDPROC form_procedure);
  NativeModule(const NativeModule&) = delete;
  NativeModule& operator=(const NativeModule&) = delete;
  ~NativeModule();

  HINSTANCE Instance() const { return instance_; }
  /// Creates a window in the look that the module's manifest asks for. Throws HostError.
  HWND Create(const WindowPlan& plan);
  /// Class of the rich text control; the plain one where the system has none.
  const wchar_t* RichTextClass();

  /// Dots per inch of the screen a window is on; 0 stands for the one new windows come to.
  UINT DpiOf(HWND window) const;
  /// Grows the place of an inside by frame and caption.
  void AddFrame(RECT& place, DWORD style, DWORD extended, UINT dpi) const;
  /// The font for texts of windows, as the user has set it.
  LOGFONTW MessageFont(UINT dpi) const;

 private:
  void RegisterClasses();

  HINSTANCE instance_;
  WNDPROC form_procedure_;
  HANDLE styles_ = INVALID_HANDLE_VALUE;
  HMODULE rich_text_ = nullptr;
  bool rich_text_tried_ = false;
};

}  // namespace zuvi::native
