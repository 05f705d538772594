#include "runtime/random.h"

#include <gtest/gtest.h>

#include <array>

namespace qv {
namespace {

TEST(Random, numbers_lie_from_0_up_to_1_and_fill_it_evenly) {
  std::array<int, 16> counts{};
  for (int i = 0; i < 16000; ++i) {
    const Double number = Rnd();
    ASSERT_GE(number, 0.0);
    ASSERT_LT(number, 1.0);
    ++counts[static_cast<std::size_t>(number * 16)];
  }
  for (const int count : counts) EXPECT_NEAR(count, 1000, 150);
}

TEST(Random, Randomize_leaves_the_sequence) {
  const Double before = Rnd();
  Randomize();
  EXPECT_NE(Rnd(), before);
}

}  // namespace
}  // namespace qv
