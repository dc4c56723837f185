#include "toolkit/win32/window_factory.h"

#include <algorithm>

#include "base/error.h"
#include "toolkit/win32/drawing.h"
#include "win32/image.h"

namespace zuvi::native {
namespace {

constexpr int kStylesResource = 2;  // where the loader, too, looks for a DLL's manifest
constexpr int kIconResource = 1;

/// A function that only newer systems have; null on others.
template <class Function>
Function Newer(const char* name) {
  return FunctionOf<Function>(L"user32.dll", name);
}

UINT SystemDpi() {
  static const auto get = Newer<UINT(WINAPI*)()>("GetDpiForSystem");
  if (const UINT dpi = get ? get() : 0) return dpi;
  return static_cast<UINT>(std::max(::GetDeviceCaps(WindowDc(nullptr).get(), LOGPIXELSY), 48));
}

}  // namespace

VisualStyles::VisualStyles(HINSTANCE instance) {
  ACTCTXW context{};
  context.cbSize = sizeof context;
  context.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
  context.hModule = instance;
  context.lpResourceName = MAKEINTRESOURCEW(kStylesResource);
  if (const HANDLE made = ::CreateActCtxW(&context); made != INVALID_HANDLE_VALUE)
    context_ = decltype(context_)(made);
}

VisualStyles::Scope::Scope(const VisualStyles& styles) {
  active_ = styles.context_ && ::ActivateActCtx(styles.context_.get(), &cookie_);
}

VisualStyles::Scope::~Scope() {
  if (active_) ::DeactivateActCtx(0, cookie_);
}

WindowFactory::WindowFactory(HINSTANCE instance, WNDPROC form_procedure)
    : instance_(instance), styles_(instance) {
  PinImage();
  const VisualStyles::Scope styles(styles_);
  const INITCOMMONCONTROLSEX kinds{sizeof kinds, ICC_STANDARD_CLASSES | ICC_LISTVIEW_CLASSES |
                                                     ICC_DATE_CLASSES | ICC_PROGRESS_CLASS | ICC_BAR_CLASSES};
  ::InitCommonControlsEx(&kinds);
  RegisterClasses(form_procedure);
}

void WindowFactory::RegisterClasses(WNDPROC form_procedure) const {
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
    ::RegisterClassExW(&own);  // that it is there already is as good: classes stay as long as this file
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
  add(kFormClass, form_procedure, CS_DBLCLKS, COLOR_3DFACE);
}

HWND WindowFactory::Create(const WindowPlan& plan) {
  const VisualStyles::Scope styles(styles_);
  const HWND window =
      ::CreateWindowExW(plan.extended, plan.window_class, plan.text.c_str(), plan.style, plan.place.left,
                        plan.place.top, plan.place.right - plan.place.left,
                        plan.place.bottom - plan.place.top, plan.parent, nullptr, instance_, plan.param);
  if (!window) throw HostError("Windows could not create a window", ErrorNumber::OutOfMemory);
  return window;
}

const wchar_t* WindowFactory::RichTextClass() {
  if (!rich_text_tried_) {
    rich_text_tried_ = true;
    rich_text_ = UniqueLibrary(LoadSystemLibrary(L"msftedit.dll"));
  }
  return rich_text_ ? L"RICHEDIT50W" : L"EDIT";
}

UINT WindowFactory::DpiOf(HWND window) {
  static const auto get = Newer<UINT(WINAPI*)(HWND)>("GetDpiForWindow");
  const UINT dpi = window && get ? get(window) : 0;
  return dpi ? dpi : SystemDpi();
}

void WindowFactory::AddFrame(RECT& place, DWORD style, DWORD extended, UINT dpi) {
  static const auto adjust =
      Newer<BOOL(WINAPI*)(LPRECT, DWORD, BOOL, DWORD, UINT)>("AdjustWindowRectExForDpi");
  if (!adjust || !adjust(&place, style, FALSE, extended, dpi))
    ::AdjustWindowRectEx(&place, style, FALSE, extended);
}

LOGFONTW WindowFactory::MessageFont(UINT dpi) {
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

int WindowFactory::Metric(int which, UINT dpi) {
  static const auto ask = Newer<int(WINAPI*)(int, UINT)>("GetSystemMetricsForDpi");
  return ask ? ask(which, dpi) : ::GetSystemMetrics(which);
}

RECT WindowFactory::WorkArea(HWND near_to) {
  MONITORINFO monitor{};
  monitor.cbSize = sizeof monitor;
  ::GetMonitorInfoW(::MonitorFromWindow(near_to, MONITOR_DEFAULTTOPRIMARY), &monitor);
  return monitor.rcWork;
}

}  // namespace zuvi::native
