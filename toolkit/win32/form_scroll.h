#pragma once

#include "toolkit/win32/windows_ui.h"

namespace zuvi::native {

class NativeForm;

/// The range, the part in view and the position of a window's scroll bar (SB_HORZ, SB_VERT), in its own
/// units.
void SetScrollBar(HWND window, int bar, int content, int page, int position);
SCROLLINFO ScrollBarOf(HWND window, int bar);

/// The scroll bars of a window whose controls take more than the screen has. All places are pixels.
class FormScroll {
 public:
  explicit FormScroll(NativeForm& form) : form_(form) {}
  FormScroll(const FormScroll&) = delete;
  FormScroll& operator=(const FormScroll&) = delete;

  /// What of the controls lies beyond the left and upper edge.
  const POINT& At() const { return at_; }
  void Hide();
  /// Shows the bars that are needed now; true when that has taken room from the client area.
  bool Show();
  /// Whether bars are being shown: the window tells of sizes meanwhile that are not its last.
  bool Showing() const { return showing_; }
  /// A bar was used; `how` is what the message says.
  void Turn(int bar, int how);
  /// The wheel, over what does not scroll itself.
  void Wheel(int delta);
  /// Brings a place of the client area into view.
  void Reveal(const RECT& place);

 private:
  void MoveTo(POINT at);
  POINT Farthest() const;
  void Switch(int bar, bool shown);

  NativeForm& form_;
  POINT at_{0, 0};
  bool showing_ = false;
};

}  // namespace zuvi::native
