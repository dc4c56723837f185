// toolkit/: windows and controls as objects with state and events, complete without a screen. The Desktop is
// the one seam to the system: message boxes, pending events, modal loops, the clock and the native peers.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "base/date.h"

namespace zuvi {

class Form;

/// The user's screen. Implementations: HeadlessDesktop (records, scripted) and Win32Desktop.
class Desktop {
 public:
  Desktop() = default;
  Desktop(const Desktop&) = delete;
  Desktop& operator=(const Desktop&) = delete;
  virtual ~Desktop();

  /// Shows a plain message box with an OK button, no icon and the component's own title, and waits. Never
  /// throws.
  virtual void ShowMessage(const std::string& text) noexcept = 0;
  /// Lets pending window events run. Anything may have happened afterwards.
  virtual void PumpEvents() = 0;
  /// The same between the pieces of a long work, however small these are: a screen may let pieces go by, but
  /// keeps answering within a blink.
  virtual void PumpIfDue() { PumpEvents(); }
  /// Runs until the window is hidden or closed; `owner`, when given, takes no input meanwhile.
  virtual void RunModal(Form& form, Form* owner) = 0;
  /// Gives a window and its controls native peers and shows it; without a screen nothing happens.
  virtual void Attach(Form& /*form*/) {}
  /// Date and time of this station.
  virtual Date Now() const = 0;

  /// The window whose event is being handled, the newest one of those that are; null between events.
  const Form* Handling() const { return handling_; }
  /// The windows that are loaded. A window is kept alive by being in this list.
  const std::vector<std::shared_ptr<Form>>& Forms() const { return forms_; }

 protected:
  /// A window was closed or hidden, maybe by one of its own handlers.
  virtual void Gone(Form& /*form*/) {}

 private:
  friend class Form;
  friend class Control;
  void Opened(std::shared_ptr<Form> form) { forms_.push_back(std::move(form)); }
  void Closed(const Form& form);

  std::vector<std::shared_ptr<Form>> forms_;
  const Form* handling_ = nullptr;
};

}  // namespace zuvi
