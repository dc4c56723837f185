#pragma once

#include <cstdint>

#include "toolkit/geometry.h"

namespace zuvi {

/// What of a control's state changed.
enum class Aspect {
  Text,       // text or caption
  Enabled,    // enabled state
  Visible,    // shown or hidden
  Bounds,     // place and size
  Content,    // room that the controls of a window take in all
  Selection,  // selected part of a text, selected item of a list
  Value,      // tick, date, position of a bar
  Items,      // rows of a list or cells of a grid
  Columns,    // columns of a list or a grid
  Cell,       // current cell of a grid, or what of it is scrolled into view
  State,      // everything else: tool tip, limits, window state, timer interval, document
};

/// The native side of a control or window. It mirrors the model's state when told that it changed, and turns
/// native input into the model's entry points. Without one the model is complete. The model owns it.
class Peer {
 public:
  virtual ~Peer() = default;
  /// Brings one aspect of the native control into line with the model.
  virtual void Update(Aspect aspect) = 0;
  /// Gives the native control the keyboard. The model hears of it through `Form::FocusMoved`.
  virtual void TakeFocus() = 0;
  /// Brings what only the native control knows (the selection in a text) into the model.
  virtual void Pull() {}
  /// Ends what the user is in the middle of entering and the native control still keeps to itself: the model
  /// has it afterwards, and whoever listens was told. Handlers run.
  virtual void Commit() {}
  /// Least size that the native control itself asks for; 0 where it does not.
  virtual Extent MinimumSize() const { return {}; }
  /// The native handle; 0 without one.
  virtual std::intptr_t Handle() const { return 0; }
};

}  // namespace zuvi
