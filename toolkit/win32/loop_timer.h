#pragma once

#include <functional>
#include <utility>

#include "toolkit/win32/windows_ui.h"
#include "win32/image.h"

namespace zuvi::native {

/// A timer of the thread's message loop that belongs to no window of the user's. It fires only when the loop
/// has nothing else to do. Belongs to the thread that started it last.
class LoopTimer {
 public:
  explicit LoopTimer(std::function<void()> tick) : tick_(std::move(tick)) {}
  LoopTimer(const LoopTimer&) = delete;
  LoopTimer& operator=(const LoopTimer&) = delete;
  ~LoopTimer() {
    if (Ours()) ::DestroyWindow(window_);
  }

  /// From now on every so many milliseconds; false when the system has no timer to give.
  bool Start(UINT milliseconds) {
    PinImage();
    // One of a thread that has ended went with it.
    if (!Ours()) {
      window_ = ::CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
      if (!window_) return false;
      ::SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    }
    return ::SetTimer(window_, 1, milliseconds, &Tick) != 0;
  }
  void Stop() {
    if (Ours()) ::KillTimer(window_, 1);
  }

 private:
  bool Ours() const {
    return window_ && ::GetWindowThreadProcessId(window_, nullptr) == ::GetCurrentThreadId() &&
           ::GetWindowLongPtrW(window_, GWLP_USERDATA) == reinterpret_cast<LONG_PTR>(this);
  }
  static void CALLBACK Tick(HWND window, UINT, UINT_PTR, DWORD) {
    try {
      if (const auto* const self = reinterpret_cast<LoopTimer*>(::GetWindowLongPtrW(window, GWLP_USERDATA)))
        self->tick_();
    } catch (...) {
      // Out of memory: the next tick is as good.
    }
  }

  std::function<void()> tick_;
  HWND window_ = nullptr;
};

}  // namespace zuvi::native
