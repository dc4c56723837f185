// toolkit/: windows and controls as objects with state and events, headless by themselves. The Desktop is the
// one seam to the system: what the toolkit cannot do without a real screen passes through it.
#pragma once

#include <string>

namespace zuvi {

/// The user's screen. Implementations: HeadlessDesktop (records, scripted) and Win32Desktop.
class Desktop {
 public:
  virtual ~Desktop() = default;
  /// Shows a plain message box with an OK button, no icon and the component's own title, and waits. Never
  /// throws.
  virtual void Avisa(const std::string& text) noexcept = 0;
};

}  // namespace zuvi
