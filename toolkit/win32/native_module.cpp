#include "toolkit/win32/native_module.h"

#include <algorithm>

#include "base/error.h"
#include "toolkit/win32/module_pin.h"
#include "toolkit/win32/system_library.h"

namespace zuvi::native {
namespace {

constexpr int kStylesResource = 2;  // where the loader, too, looks for a DLL's manifest
constexpr int kIconResource = 1;

/// A function that only newer systems have.
template <class Function>
Function Newer(const char* name) {
  return reinterpret_cast<Function>(
      reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"user32.dll"), name)));
}

UINT SystemDpi() {
  static const auto get = Newer<UINT(WINAPI*)()>("GetDpiForSystem");
  if (const UINT dpi = get ? get() : 0) return dpi;
  const HDC screen = ::GetDC(nullptr);
  const int dpi = ::GetDeviceCaps(screen, LOGPIXELSY);
  ::ReleaseDC(nullptr, screen);
  return static_cast<UINT>(std::max(dpi, 48));
}

}  // namespace

Styles::Styles(HINSTANCE instance) {
  ACTCTXW context{};
  context.cbSize = sizeof context;
  context.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
  context.hModule = instance;
  context.lpResourceName = MAKEINTRESOURCEW(kStylesResource);
  context_ = ::CreateActCtxW(&context);
}

Styles::~Styles() {
  if (context_ != INVALID_HANDLE_VALUE) ::ReleaseActCtx(context_);
}

Styles::Scope::Scope(const Styles& styles) {
  active_ = styles.context_ != INVALID_HANDLE_VALUE && ::ActivateActCtx(styles.context_, &cookie_);
}

Styles::Scope::~Scope() {
  if (active_) ::DeactivateActCtx(0, cookie_);
}

NativeModule::NativeModule(HINSTANCE instance, WNDPROC form_procedure)
    : instance_(instance), form_procedure_(form_procedure), styles_(instance) {
  PinModule();
  const Styles::Scope styles(styles_);
  const INITCOMMONCONTROLSEX kinds{sizeof kinds, ICC_STANDARD_CLASSES | ICC_LISTVIEW_CLASSES |
                                                     ICC_DATE_CLASSES | ICC_PROGRESS_CLASS | ICC_BAR_CLASSES};
  ::InitCommonControlsEx(&kinds);
  RegisterClasses();
}

NativeModule::~NativeModule() {
  // Refused while another thread's windows of the class are open; that thread's end takes it away then.
  for (const wchar_t* name : {kFormClass, kGridClass, kPopupClass}) ::UnregisterClassW(name, instance_);
  if (rich_text_) ::FreeLibrary(rich_text_);
}

void NativeModule::RegisterClasses() {
  WNDCLASSEXW own{};
  own.cbSize = sizeof own;
  own.hInstance = instance_;
  own.hCursor = ::LoadCursorW(nullptr, IDC_ARROW);
  const auto add = [&](const wchar_t* name, WNDPROC procedure, UINT style, int background) {
    own.lpszClassName = name;
    own.lpfnWndProc = procedure;
    own.style = style;
    own.hbrBackground =
        background < 0 ? nullptr : reinterpret_cast<HBRUSH>(static_cast<INT_PTR>(background + 1));
    ::RegisterClassExW(&own);  // that it is there already is as good
  };
  add(kGridClass, &::DefWindowProcW, CS_DBLCLKS, -1);
  add(kPopupClass, &::DefWindowProcW, CS_DROPSHADOW | CS_SAVEBITS, COLOR_WINDOW);
  const auto icon = [&](int width, int height) {
    void* own_icon = ::LoadImageW(instance_, MAKEINTRESOURCEW(kIconResource), IMAGE_ICON,
                                  ::GetSystemMetrics(width), ::GetSystemMetrics(height), LR_SHARED);
    return own_icon ? static_cast<HICON>(own_icon) : ::LoadIconW(nullptr, IDI_APPLICATION);
  };
  own.hIcon = icon(SM_CXICON, SM_CYICON);
  own.hIconSm = icon(SM_CXSMICON, SM_CYSMICON);
  add(kFormClass, form_procedure_, CS_DBLCLKS, COLOR_3DFACE);
}

HWND NativeModule::Create(const WindowPlan& plan) {
  const Styles::Scope styles(styles_);
  const auto create = [&] {
    return ::CreateWindowExW(plan.extended, plan.window_class, plan.text.c_str(), plan.style, plan.place.left,
                             plan.place.top, plan.place.right - plan.place.left,
                             plan.place.bottom - plan.place.top, plan.parent, nullptr, instance_, plan.param);
  };
  HWND window = create();
  // Another thread's end may have taken the classes away.
  for (int tries = 0; !window && ::GetLastError() == ERROR_CANNOT_FIND_WND_CLASS && tries < 3; ++tries) {
    RegisterClasses();
    window = create();
  }
  if (!window) throw HostError("Windows could not create a window", ErrorNumber::OutOfMemory);
  return window;
}

const wchar_t* NativeModule::RichTextClass() {
  if (!rich_text_tried_) {
    rich_text_tried_ = true;
    rich_text_ = LoadSystemLibrary(L"msftedit.dll");
  }
  return rich_text_ ? L"RICHEDIT50W" : L"EDIT";
}

UINT NativeModule::DpiOf(HWND window) {
  static const auto get = Newer<UINT(WINAPI*)(HWND)>("GetDpiForWindow");
  const UINT dpi = window && get ? get(window) : 0;
  return dpi ? dpi : SystemDpi();
}

void NativeModule::AddFrame(RECT& place, DWORD style, DWORD extended, UINT dpi) {
  static const auto adjust =
      Newer<BOOL(WINAPI*)(LPRECT, DWORD, BOOL, DWORD, UINT)>("AdjustWindowRectExForDpi");
  if (!adjust || !adjust(&place, style, FALSE, extended, dpi))
    ::AdjustWindowRectEx(&place, style, FALSE, extended);
}

LOGFONTW NativeModule::MessageFont(UINT dpi) {
  static const auto ask = Newer<BOOL(WINAPI*)(UINT, UINT, PVOID, UINT, UINT)>("SystemParametersInfoForDpi");
  NONCLIENTMETRICSW metrics{};
  metrics.cbSize = sizeof metrics;
  if (ask && ask(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0, dpi)) return metrics.lfMessageFont;
  if (::SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0)) {
    LOGFONTW font = metrics.lfMessageFont;
    font.lfHeight = ::MulDiv(font.lfHeight, static_cast<int>(dpi), static_cast<int>(SystemDpi()));
    return font;
  }
  LOGFONTW font{};
  ::GetObjectW(::GetStockObject(DEFAULT_GUI_FONT), sizeof font, &font);
  return font;
}

int NativeModule::Metric(int which, UINT dpi) {
  static const auto ask = Newer<int(WINAPI*)(int, UINT)>("GetSystemMetricsForDpi");
  return ask ? ask(which, dpi) : ::GetSystemMetrics(which);
}

RECT NativeModule::WorkArea(HWND near_to) {
  MONITORINFO monitor{};
  monitor.cbSize = sizeof monitor;
  ::GetMonitorInfoW(::MonitorFromWindow(near_to, MONITOR_DEFAULTTOPRIMARY), &monitor);
  return monitor.rcWork;
}

}  // namespace zuvi::native
