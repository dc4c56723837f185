// A screen for tests: input as a user gives it, through the system's queue, and a message loop of either of
// the two kinds that hosts have.
#pragma once

#include <algorithm>
#include <chrono>
#include <memory>
#include <string>

#include "tests/toolkit_win32/sample_form.h"
#include "toolkit/win32/win32_desktop.h"
#include "toolkit/win32/windows_ui.h"

#ifndef WM_DPICHANGED
#define WM_DPICHANGED 0x02E0
#endif

namespace zuvi::sample {

enum class Loop { Plain, Dialog };

class Pantalla {
 public:
  explicit Pantalla(Loop loop = Loop::Plain) : loop_(loop) {}

  Win32Desktop desktop{::GetModuleHandleW(nullptr)};

  /// A window that is shown and has the keyboard; what was logged until then is forgotten.
  std::shared_ptr<SampleForm> Open() {
    auto form = std::make_shared<SampleForm>(desktop);
    form->Show();
    Settle();
    form->log.clear();
    return form;
  }

  /// Runs the host's loop until nothing has come for `quiet` milliseconds.
  void Settle(int quiet = 40) const {
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + std::chrono::seconds(5);
    auto last = Clock::now();
    while (Clock::now() < end && Clock::now() - last < std::chrono::milliseconds(quiet)) {
      MSG message;
      if (!::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        ::MsgWaitForMultipleObjects(0, nullptr, FALSE, 5, QS_ALLINPUT);
        continue;
      }
      const bool counts = message.message != WM_TIMER && message.message != WM_MOUSEMOVE;
      if (loop_ == Loop::Plain || !::IsDialogMessageW(::GetActiveWindow(), &message)) {
        ::TranslateMessage(&message);
        ::DispatchMessageW(&message);
      }
      if (counts) last = Clock::now();
    }
  }

  static void Send(WORD key, bool up) {
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    input.ki.wScan = static_cast<WORD>(::MapVirtualKeyW(key, MAPVK_VK_TO_VSC));
    input.ki.dwFlags = up ? KEYEVENTF_KEYUP : 0;
    ::SendInput(1, &input, sizeof input);
  }
  /// A key with the given modifiers (VK_SHIFT, VK_CONTROL, VK_MENU; 0 for none).
  void Press(WORD key, WORD modifier = 0) const {
    if (modifier) Send(modifier, false);
    Send(key, false);
    Send(key, true);
    if (modifier) Send(modifier, true);
    Settle();
  }
  /// Lower case letters, digits and blanks.
  void Type(const char* text) const {
    for (; *text; ++text) {
      const auto key = static_cast<WORD>(*text >= 'a' && *text <= 'z' ? *text - 32 : *text);
      Send(key, false);
      Send(key, true);
    }
    Settle();
  }
  /// A press of the left button on a control, in pixels of its inside.
  void Click(const Control& control, int x, int y) const {
    const HWND window = HandleOf(control);
    ::PostMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
    ::PostMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(x, y));
    Settle();
  }
  static HWND HandleOf(const Control& control) {
    return control.NativeSide() ? reinterpret_cast<HWND>(control.NativeSide()->Handle()) : nullptr;
  }
  static HWND HandleOf(const Form& form) {
    return form.NativeSide() ? reinterpret_cast<HWND>(form.NativeSide()->Handle()) : nullptr;
  }

 private:
  Loop loop_;
};

using Log = std::vector<std::string>;

inline std::string NativeText(const Control& control) {
  return native::Narrow(native::TextOf(Pantalla::HandleOf(control)));
}
inline bool Has(const Log& log, const std::string& event) {
  return std::ranges::find(log, event) != log.end();
}
inline BOOL CALLBACK CountOurs(HWND window, LPARAM count) {
  wchar_t name[64];
  ::GetClassNameW(window, name, 64);
  if (std::wstring_view(name).starts_with(L"Zuvi")) ++*reinterpret_cast<int*>(count);
  return TRUE;
}
/// Native windows of ours that are left.
inline int Windows() {
  int count = 0;
  ::EnumThreadWindows(::GetCurrentThreadId(), &CountOurs, reinterpret_cast<LPARAM>(&count));
  return count;
}

}  // namespace zuvi::sample
