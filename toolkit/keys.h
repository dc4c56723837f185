#pragma once

#include <cstdint>

namespace zuvi {

/// Virtual key codes as the keyboard sends them.
namespace key {
inline constexpr std::int16_t kBack = 8, kTab = 9, kEnter = 13, kEscape = 27, kSpace = 32, kPageUp = 33,
                              kPageDown = 34, kEnd = 35, kHome = 36, kLeft = 37, kUp = 38, kRight = 39,
                              kDown = 40, kInsert = 45, kDelete = 46;
inline constexpr std::int16_t kF1 = 112, kF2 = 113, kF3 = 114, kF4 = 115, kF5 = 116, kF6 = 117, kF7 = 118,
                              kF8 = 119, kF9 = 120, kF10 = 121, kF11 = 122, kF12 = 123;
}  // namespace key

/// Bits of a shift state.
namespace shift {
inline constexpr std::int16_t kNone = 0, kShift = 1, kCtrl = 2, kAlt = 4;
}  // namespace shift

}  // namespace zuvi
