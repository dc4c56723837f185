#pragma once

#include <chrono>
#include <deque>
#include <string>
#include <vector>

#include "toolkit/win32/loop_timer.h"

namespace zuvi::native {

/// The system's message boxes, for people whose reader goes on while they look elsewhere: a text that is
/// typed while a box stands is no answer to it, nor is the Enter behind that text. It is kept, with a beep,
/// and typed into the window that had the keyboard once that has it again and no key is on its way. The rest
/// is as usual: Enter alone, Escape, the mouse, Alt with a letter; a letter alone counts when nothing follows
/// it. Belongs to one thread.
class MessageBoxes {
 public:
  MessageBoxes() = default;
  MessageBoxes(const MessageBoxes&) = delete;
  MessageBoxes& operator=(const MessageBoxes&) = delete;

  /// Shows a box over the active window and waits; the result and the bits of `style` are those of
  /// MessageBox.
  int Show(const std::wstring& text, const wchar_t* title, UINT style) noexcept;

 private:
  class Guard;
  /// One entry: its characters, and the key that ended it; 0 when it was cut off.
  struct Entry {
    std::wstring text;
    WPARAM end = 0;
  };

  void Keep(std::vector<Entry> entries, HWND window);
  /// Types the next entry if this is the moment for it.
  void Deliver();
  void TypeNext(HWND focus);
  void GiveUp();

  std::deque<Entry> waiting_;
  HWND destination_ = nullptr;              // the window they were meant for
  LoopTimer clock_{[this] { Deliver(); }};  // ticks while there are some
  std::chrono::steady_clock::time_point since_{};
};

}  // namespace zuvi::native
