#include "toolkit/win32/message_loop.h"

namespace zuvi::native {
namespace {

// A plain pointer: nothing is left to be done at the end of a thread.
NestedLoop*& Outermost() {
  thread_local NestedLoop* outermost = nullptr;
  return outermost;
}

}  // namespace

NestedLoop::NestedLoop() : outermost_(Outermost() ? Outermost() : this) { Outermost() = outermost_; }

NestedLoop::~NestedLoop() {
  if (outermost_ != this) return;
  Outermost() = nullptr;
  PutBack();
}

bool NestedLoop::Standing() { return Outermost() != nullptr; }

void NestedLoop::Serve(MSG& message) {
  if (Filtered(message) || Keep(message)) return;
  ::TranslateMessage(&message);
  ::DispatchMessageW(&message);
}

bool NestedLoop::Keep(const MSG& message) noexcept {
  // Timers come again by themselves, and those with a procedure are to be dispatched; WM_NULL only wakes.
  if (message.hwnd || message.message == WM_NULL || message.message == WM_TIMER || message.message == WM_QUIT)
    return false;
  outermost_->Store(message);
  return true;
}

void NestedLoop::Store(const MSG& message) noexcept {
  try {
    kept_.push_back(message);
  } catch (...) {
    // Out of memory: it is lost, as all of them are in a loop of the system's.
  }
}

void NestedLoop::PutBack() noexcept {
  if (kept_.empty()) return;
  // What still waits came later.
  const HWND of_thread = reinterpret_cast<HWND>(static_cast<LONG_PTR>(-1));
  MSG waiting;
  while (::PeekMessageW(&waiting, of_thread, 0, 0, PM_REMOVE | PM_NOYIELD)) {
    if (waiting.message == WM_QUIT) {
      ::PostQuitMessage(static_cast<int>(waiting.wParam));
      break;  // it comes when all others have been read
    }
    // Nobody dispatches here: a clock that went off is left to the host's own loop.
    if (!Keep(waiting) && waiting.message == WM_TIMER) Store(waiting);
  }
  const DWORD thread = ::GetCurrentThreadId();
  for (const MSG& message : kept_)
    ::PostThreadMessageW(thread, message.message, message.wParam, message.lParam);
}

}  // namespace zuvi::native
