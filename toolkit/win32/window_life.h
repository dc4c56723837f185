#pragma once

#include <memory>
#include <vector>

#include "toolkit/form.h"
#include "toolkit/win32/window_factory.h"

namespace zuvi::native {

class NativeForm;

/// Sent to a window over which modal windows have ended.
inline constexpr UINT kModalEnded = WM_APP + 2;

/// What the procedures of a window and of its controls share. A handler may close the window while some of
/// them are on the stack: the peers go at once, the native windows only when the last procedure has returned.
struct WindowLife : std::enable_shared_from_this<WindowLife> {
  std::shared_ptr<WindowFactory> factory;
  HWND window = nullptr;
  NativeForm* peer = nullptr;                // null once the window was closed
  int procedures = 0;                        // on the stack
  bool going = false;                        // Windows is destroying it already
  std::shared_ptr<WindowLife> while_native;  // itself, until the native window is gone

  // Of a modal window, which others that were opened later may keep on the stack when it has gone.
  std::weak_ptr<Form> modal;                            // the window, while somebody waits for its end
  std::weak_ptr<WindowLife> opener;                     // where that is told
  bool ended = false;                                   // closed or hidden
  std::vector<std::shared_ptr<WindowLife>> ended_over;  // modal windows of this one that have

  /// The native window is not wanted any more.
  void Close();
  /// A modal window that has gone, and whose last procedure has returned, has its opener told.
  void TellOpener();
};

/// A procedure on the stack: keeps the window object and what it needs alive.
class Entry {
 public:
  explicit Entry(WindowLife& life);
  Entry(const Entry&) = delete;
  Entry& operator=(const Entry&) = delete;
  ~Entry();

 private:
  std::shared_ptr<WindowLife> life_;
  std::shared_ptr<Form> form_;
};

}  // namespace zuvi::native
