#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace zuvi {

/// A thread's stack: the lowest address it may reach and the one past its highest, as the system tells them.
/// `low` 0 stands for a stack that the system tells nothing about.
struct StackBounds {
  std::uintptr_t low = 0, high = 0;
};

/// Bytes of a stack that recursion leaves to what a level calls before the next one is asked for: the host,
/// its database driver, the unwinding of an error. A quarter, since threads of some programs have little in
/// all; never less than 96 KiB (a driver that connects anew was seen to take 64), nor more than 256.
constexpr std::size_t StackReserve(const StackBounds& stack) {
  return std::clamp<std::size_t>((stack.high - stack.low) / 4, std::size_t{96} * 1024,
                                 std::size_t{256} * 1024);
}

/// Whether recursion that has come to the address `here` should go no further. A stack that is not known
/// refuses nothing.
constexpr bool StackNearlySpent(const StackBounds& stack, std::uintptr_t here) {
  return stack.low != 0 && here < stack.low + StackReserve(stack);
}

}  // namespace zuvi
