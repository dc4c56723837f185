#pragma once

#include <cstdint>
#include <vector>

#include "toolkit/geometry.h"

namespace zuvi {

/// A control along one axis, in twips: where it was designed, how much room it needs, and to how little it
/// can be squeezed.
struct AxisSpan {
  std::int32_t from = 0, extent = 0, need = 0, least = 0;
};

/// What is left, at least, of a list, or of a control that stretches, when its window is squeezed.
inline constexpr std::int32_t kMinimumStretched = Dip(96);

/// One axis of a window, stretched where a control needs more room than it was designed with. All edges that
/// were at one place stay so, all others keep at least their distance: what did not overlap does not, and
/// what was aligned is.
class Axis {
 public:
  /// As designed.
  explicit Axis(std::int32_t length) : Axis(length, {}) {}
  Axis(std::int32_t length, std::vector<AxisSpan> spans);

  /// Where a designed place comes to lie.
  std::int32_t At(std::int32_t designed) const;
  std::int32_t Length() const { return At(length_); }
  /// The axis made shorter where nothing lies but what can be squeezed; as much of `by` as that gives.
  Axis Squeezed(std::int32_t by) const;

 private:
  std::size_t IndexOf(std::int32_t designed) const;
  /// Makes room of `need` between two edges.
  void Stretch(std::size_t from, std::size_t to, std::int32_t need);

  std::int32_t length_;
  std::vector<AxisSpan> spans_;
  std::vector<std::int32_t> edges_, places_;  // designed and stretched, both in order
};

}  // namespace zuvi
