#pragma once

#include <cstdint>

namespace zuvi {

/// All measures of the toolkit are twips, 1/1440 inch: 15 of them are a pixel at 96 dots per inch.
inline constexpr std::int32_t kTwipsPerDip = 15;
inline constexpr std::int32_t Dip(std::int32_t dips) { return dips * kTwipsPerDip; }

/// Place within the window's client area.
struct Rect {
  std::int32_t left = 0, top = 0, width = 0, height = 0;
  friend bool operator==(const Rect&, const Rect&) = default;
};

/// A size, in twips.
struct Extent {
  std::int32_t width = 0, height = 0;
  friend bool operator==(const Extent&, const Extent&) = default;
};

/// Edges of the window that a control keeps its distance to; opposite ones together stretch it.
namespace anchor {
inline constexpr unsigned kLeft = 1, kTop = 2, kRight = 4, kBottom = 8, kTopLeft = kLeft | kTop,
                          kAcross = kLeft | kTop | kRight, kAll = 15;
}  // namespace anchor

/// Where a control comes to lie when the client area of its window grows by `dx`, `dy` from the design. Never
/// smaller than nothing.
inline Rect Anchored(const Rect& design, unsigned anchors, std::int32_t dx, std::int32_t dy) {
  Rect r = design;
  const auto axis = [](std::int32_t& from, std::int32_t& extent, bool near_edge, bool far_edge,
                       std::int32_t by) {
    if (near_edge && far_edge)
      extent = extent + by > 0 ? extent + by : 0;
    else if (far_edge)
      from += by;
  };
  axis(r.left, r.width, anchors & anchor::kLeft, anchors & anchor::kRight, dx);
  axis(r.top, r.height, anchors & anchor::kTop, anchors & anchor::kBottom, dy);
  return r;
}

}  // namespace zuvi
