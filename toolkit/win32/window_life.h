#pragma once

#include <memory>

#include "toolkit/form.h"
#include "toolkit/win32/native_module.h"

namespace zuvi::native {

class NativeForm;

/// What the procedures of a window and of its controls share. A handler may close the window while some of
/// them are on the stack: the peers go at once, the native windows only when the last procedure has returned.
struct WindowLife : std::enable_shared_from_this<WindowLife> {
  std::shared_ptr<NativeModule> module;
  HWND window = nullptr;
  NativeForm* peer = nullptr;                // null once the window was closed
  int procedures = 0;                        // on the stack
  bool going = false;                        // Windows is destroying it already
  std::shared_ptr<WindowLife> while_native;  // itself, until the native window is gone

  /// The native window is not wanted any more.
  void Close();
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
