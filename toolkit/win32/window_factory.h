#pragma once

#include "toolkit/win32/windows_ui.h"
#include "win32/handles.h"

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

/// The look that a program file's manifest (resource 2) asks for. The controls of a host that never asked for
/// one have the old look, and lack what came with the new.
class VisualStyles {
 public:
  explicit VisualStyles(HINSTANCE instance);

  /// While it lives windows of this thread are created in that look.
  class Scope {
   public:
    explicit Scope(const VisualStyles& styles);
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;
    ~Scope();

   private:
    bool active_ = false;
    ULONG_PTR cookie_ = 0;
  };

 private:
  UniqueHandle<HANDLE, &::ReleaseActCtx> context_;  // empty where the file has no manifest
};

/// What the windows of one program file share: its resources, its visual styles, its window classes. It must
/// outlive them.
class WindowFactory {
 public:
  /// `form_procedure` serves windows of kFormClass; the others have the system's default one.
  WindowFactory(HINSTANCE instance, WNDPROC form_procedure);
  WindowFactory(const WindowFactory&) = delete;
  WindowFactory& operator=(const WindowFactory&) = delete;

  HINSTANCE Instance() const { return instance_; }
  /// Creates a window in the look that the program file's manifest asks for. Throws HostError.
  HWND Create(const WindowPlan& plan);
  /// Class of the rich text control; the plain one where the system has none.
  const wchar_t* RichTextClass();

  /// Dots per inch of the screen a window is on; 0 stands for the one new windows come to.
  static UINT DpiOf(HWND window);
  /// Grows the place of a client area by frame and caption.
  static void AddFrame(RECT& place, DWORD style, DWORD extended, UINT dpi);
  /// The font for texts of windows, as the user has set it.
  static LOGFONTW MessageFont(UINT dpi);
  /// A measure of the system's (SM_…) in pixels of a screen with so many dots per inch.
  static int Metric(int which, UINT dpi);
  /// What the task bar leaves of the screen that most of a window is on; of the first one for null.
  static RECT WorkArea(HWND near_to);

 private:
  void RegisterClasses(WNDPROC form_procedure) const;

  HINSTANCE instance_;
  VisualStyles styles_;
  UniqueLibrary rich_text_;
  bool rich_text_tried_ = false;
};

}  // namespace zuvi::native
