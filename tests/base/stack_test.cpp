#include "base/stack.h"

#include <gtest/gtest.h>

namespace zuvi {
namespace {

TEST(Stack, RecursionStopsAtAShareOfWhateverStackThereIs) {
  constexpr std::uintptr_t kLow = 0x10000;
  constexpr std::size_t kKiB = 1024;
  const struct {
    std::size_t size, reserve;
  } stacks[] = {{8192 * kKiB, 256 * kKiB}, {1024 * kKiB, 256 * kKiB}, {1023 * kKiB, 1023 * kKiB / 4},
                {400 * kKiB, 100 * kKiB},  {256 * kKiB, 96 * kKiB},   {64 * kKiB, 96 * kKiB}};
  for (const auto& [size, reserve] : stacks) {
    const StackBounds stack{kLow, kLow + size};
    // What lies below has been set aside by the program: it is spent as well.
    for (const std::uintptr_t here : {kLow - 1, kLow, kLow + reserve - 1})
      EXPECT_TRUE(StackNearlySpent(stack, here)) << size;
    for (const std::uintptr_t here : {kLow + reserve, kLow + size + reserve})
      EXPECT_FALSE(StackNearlySpent(stack, here)) << size;
  }
  EXPECT_FALSE(StackNearlySpent({}, 0) || StackNearlySpent({}, kLow));
  // More set aside than is in use.
  EXPECT_TRUE(StackNearlySpent({kLow + 1, kLow}, kLow));
}

}  // namespace
}  // namespace zuvi
