#pragma once

#include <vector>

#include "toolkit/win32/windows_ui.h"

namespace zuvi::native {

/// Offers a message that was taken from the queue to whoever filters those of dialogs (WH_MSGFILTER); true
/// when it was taken.
inline bool Filtered(MSG& message) { return ::CallMsgFilterW(&message, MSGF_DIALOGBOX) != FALSE; }

/// What every loop does with a message: filters first, then its window.
inline void Serve(MSG& message) {
  if (Filtered(message)) return;
  ::TranslateMessage(&message);
  ::DispatchMessageW(&message);
}

/// Stands while messages are served inside somebody else's loop, to which those of the thread itself, without
/// a window, belong: what no filter takes of them is put back, in order, when the outermost of these goes.
class NestedLoop {
 public:
  NestedLoop();
  NestedLoop(const NestedLoop&) = delete;
  NestedLoop& operator=(const NestedLoop&) = delete;
  ~NestedLoop();

  /// One stands on this thread.
  static bool Standing();
  void Serve(MSG& message);
  /// Keeps a message of the thread to put it back; false for all others.
  bool Keep(const MSG& message) noexcept;

 private:
  void Store(const MSG& message) noexcept;
  void PutBack() noexcept;

  NestedLoop* outermost_;  // itself, unless it stands inside another
  std::vector<MSG> kept_;
};

}  // namespace zuvi::native
