// What handlers are told, and what they answer with: they change these in place.
#pragma once

#include <cstdint>

namespace zuvi {

/// A key going down or up: first the window's preview has it, then the focused control.
struct KeyEvent {
  std::int16_t key;    // virtual key code (toolkit/keys.h); 0 once a handler has used it up
  std::int16_t shift;  // bits of zuvi::shift

  void Use() { key = 0; }
};

/// A character on its way into a control, a UTF-16 unit. A handler may put another one in its place.
struct KeyPressEvent {
  std::int16_t character;  // 0 once it was dropped

  void Drop() { character = 0; }
};

/// A window about to close, which a handler may keep open.
struct CancelEvent {
  bool cancel = false;
};

}  // namespace zuvi
