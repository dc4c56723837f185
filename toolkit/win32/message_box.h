#pragma once

#include <deque>
#include <string>
#include <vector>

#include "toolkit/win32/loop_timer.h"
#include "win32/handles.h"

namespace zuvi::native {

/// The system's message boxes, for people whose reader goes on while they look elsewhere: a text that is
/// typed into a box is no answer to it, nor is the Enter behind that text. It is kept, with a beep, and typed
/// into the window that had the keyboard once that has it again and nobody is in the middle of an entry. The
/// rest is as usual: Enter alone, Escape, the mouse, Alt with a letter; a letter alone counts when nothing
/// follows it. Belongs to one thread.
class MessageBoxes {
 public:
  MessageBoxes() = default;
  MessageBoxes(const MessageBoxes&) = delete;
  MessageBoxes& operator=(const MessageBoxes&) = delete;
  ~MessageBoxes();

  /// Shows a box over the active window and waits; the result and the bits of `style` are those of
  /// MessageBox.
  int Show(const std::wstring& text, const wchar_t* title, UINT style) noexcept;

 private:
  class Guard;
  /// One entry: its characters, the key that ended it (0 when it was cut off), the window it was meant for.
  struct Entry {
    std::wstring text;
    WPARAM end = 0;
    HWND window = nullptr;
  };

  void Keep(std::vector<Entry> entries);
  /// Types the next entry if this is the moment for it.
  void Deliver();
  /// Types it into whatever has the keyboard in its window, character by character; puts back what is left
  /// when the keyboard goes elsewhere.
  void Type(Entry entry);
  void GiveUp();
  /// Begins and ends the waiting; false when the system has no timer to give.
  bool Start();
  void Stop();
  static LRESULT CALLBACK KeyboardHook(int code, WPARAM key, LPARAM flags);

  std::deque<Entry> waiting_;
  LoopTimer clock_{[this] { Deliver(); }};  // ticks while there are some
  UniqueHook hook_;                         // hears the user's own keys meanwhile
  bool in_entry_ = false;                   // the user has begun an entry
  int elsewhere_ = 0;                       // ticks with the keyboard in another window
};

}  // namespace zuvi::native
