// toolkit/win32/: native peers, the only place of the toolkit that knows <windows.h>. A peer mirrors one
// control of the model; native_form.* is the window, native_control.* what all controls have in common, the
// other files hold a family of controls each.
#pragma once

#include <memory>

#include "toolkit/desktop.h"

struct HINSTANCE__;

namespace zuvi {

namespace native {
class MessageBoxes;
class WindowFactory;
}  // namespace native

/// The real screen. Belongs to one thread.
class Win32Desktop : public Desktop {
 public:
  /// `instance` is the program file the windows belong to: their classes, manifest (resource 2) and icon
  /// (resource 1) are that file's.
  explicit Win32Desktop(HINSTANCE__* instance);
  ~Win32Desktop() override;

  /// Shows a message box over the active window; result and `style` are those of the system's MessageBox.
  /// What is typed meanwhile is neither an answer nor lost.
  int Box(const std::string& text, const wchar_t* title, unsigned style) noexcept;
  void ShowMessage(const std::string& text) noexcept override;
  void PumpEvents() override;
  void PumpIfDue() override;
  /// Without an owner the window that was in front on this thread is blocked, whoever it belongs to.
  void RunModal(Form& form, Form* owner) override;
  /// Throws HostError when Windows has no window left to give.
  void Attach(Form& form) override;
  Date Now() const override;

 private:
  HINSTANCE__* instance_;
  std::unique_ptr<native::MessageBoxes> boxes_;
  unsigned long breathed_ = 0;                      // milliseconds of the system, at the end of the last pump
  std::shared_ptr<native::WindowFactory> factory_;  // made with the first window
};

}  // namespace zuvi
