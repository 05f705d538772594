#include "native/zlog/bit_walk.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <random>
#include <vector>

#include "native/zlog/bit_algebra.h"
#include "tests/native/zlog/set_model.h"

namespace qv::native::zlog {
namespace {

using Words = std::vector<std::uint32_t>;

constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();

std::int32_t next_in(const Model& model, std::int32_t bit, bool value) {
  const auto bits = static_cast<std::int32_t>(model.size());
  for (std::int64_t at = std::max<std::int64_t>(std::int64_t{bit} + 1, 0); at < bits; ++at) {
    if (model[static_cast<std::size_t>(at)] == value) return static_cast<std::int32_t>(at);
  }
  return -1;
}

std::int32_t prev_in(const Model& model, std::int32_t bit) {
  const auto bits = static_cast<std::int32_t>(model.size());
  for (std::int32_t at = std::min(bit, bits) - 1; at >= 0; --at) {
    if (model[static_cast<std::size_t>(at)]) return at;
  }
  return -1;
}

TEST(Walk, Steps_from_any_bit_number_as_the_model_does) {
  std::mt19937 random(8);
  for (const std::int32_t bits : kSizes) {
    if (bits > 2100) continue;
    for (const double share : kShares) {
      const Model model = random_model(random, bits, share);
      const BitMap map = map_of(model);
      for (std::int32_t bit = -3; bit < bits + 70; ++bit) {
        ASSERT_EQ(next_set(map.view(), bit), next_in(model, bit, true)) << bits << " " << bit;
        ASSERT_EQ(next_clear(map.view(), bit), next_in(model, bit, false)) << bits << " " << bit;
        const std::int32_t before = bit < 0 ? -1 : prev_in(model, bit);
        ASSERT_EQ(prev_set(map.view(), bit), before) << bits << " " << bit;
      }
    }
  }
}

TEST(Walk, Long_gaps_are_crossed_both_ways) {
  BitMap map = *BitMap::make(1000003);
  set_bit(map.view(), 5, true);
  set_bit(map.view(), 700001, true);
  EXPECT_EQ(next_set(map.view(), 5), 700001);
  EXPECT_EQ(next_set(map.view(), 700001), -1);
  EXPECT_EQ(prev_set(map.view(), 1000003), 700001);
  EXPECT_EQ(prev_set(map.view(), 700001), 5);
  EXPECT_EQ(prev_set(map.view(), 5), -1);
  invert(map.view());
  EXPECT_EQ(next_clear(map.view(), -1), 5);
  EXPECT_EQ(next_clear(map.view(), 5), 700001);
  EXPECT_EQ(next_clear(map.view(), 700001), -1);
}

TEST(Walk, Bit_numbers_far_out_of_range_are_harmless) {
  BitMap map = *BitMap::make(33);
  ASSERT_TRUE(fill(map.view(), 33));
  EXPECT_EQ(next_set(map.view(), kLowest), 0);
  EXPECT_EQ(next_set(map.view(), kMaxBits), -1);
  EXPECT_EQ(next_clear(map.view(), kLowest), -1);
  EXPECT_EQ(next_clear(map.view(), kMaxBits), -1);
  EXPECT_EQ(prev_set(map.view(), kLowest), -1);
  EXPECT_EQ(prev_set(map.view(), kMaxBits), 32);
  EXPECT_EQ(test_bit(map.view(), kLowest), 0);
  EXPECT_EQ(test_bit(map.view(), -1), 0);
  EXPECT_EQ(test_bit(map.view(), 32), 1);
  EXPECT_EQ(test_bit(map.view(), 33), 0);
  EXPECT_EQ(test_bit(map.view(), kMaxBits), 0);
  for (const bool value : {false, true}) {
    EXPECT_EQ(set_bit(map.view(), kLowest, value), -1);
    EXPECT_EQ(set_bit(map.view(), -1, value), -1);
    EXPECT_EQ(set_bit(map.view(), 33, value), -1);
    EXPECT_EQ(set_bit(map.view(), kMaxBits, value), -1);
  }
  EXPECT_EQ(count(map.view().words), 33U);
}

TEST(Walk, An_empty_set_has_no_bit) {
  const BitMap map = *BitMap::make(0);
  for (const std::int32_t bit : {kLowest, -1, 0, 1, kMaxBits}) {
    EXPECT_EQ(next_set(map.view(), bit), -1);
    EXPECT_EQ(next_clear(map.view(), bit), -1);
    EXPECT_EQ(prev_set(map.view(), bit), -1);
    EXPECT_EQ(test_bit(map.view(), bit), 0);
  }
}

TEST(Walk, Set_gives_the_old_value) {
  BitMap map = *BitMap::make(65);
  EXPECT_EQ(set_bit(map.view(), 64, true), 0);
  EXPECT_EQ(set_bit(map.view(), 64, true), 1);
  EXPECT_EQ(test_bit(map.view(), 64), 1);
  EXPECT_EQ(set_bit(map.view(), 64, false), 1);
  EXPECT_EQ(set_bit(map.view(), 64, false), 0);
  EXPECT_EQ(test_bit(map.view(), 64), 0);
}

TEST(Walk, Nothing_past_the_bits_of_an_application_s_map_is_found) {
  Words words = {0, 0xFFFFFFFF, 0xFFFFFFFF};
  const BitSpan set{words, 33};
  EXPECT_EQ(next_set(set, -1), 32);
  EXPECT_EQ(next_set(set, 32), -1);
  EXPECT_EQ(prev_set(set, 90), 32);
  EXPECT_EQ(next_set({words, 32}, -1), -1);
  EXPECT_EQ(prev_set({words, 32}, 90), -1);
  EXPECT_EQ(next_set({words, 100000}, 95), -1);
  EXPECT_EQ(next_clear({words, 100000}, 31), -1);
  EXPECT_EQ(test_bit({words, 100000}, 95), 1);
  EXPECT_EQ(test_bit({words, 100000}, 96), 0);
  EXPECT_EQ(set_bit({words, 100000}, 96, true), -1);
  std::vector<std::uint32_t> visited;
  for_each_set(set, [&](std::uint32_t bit) { visited.push_back(bit); });
  EXPECT_EQ(visited, Words{32});
}

TEST(Walk, Visits_every_set_bit_once_ascending) {
  std::mt19937 random(9);
  for (const std::int32_t bits : kSizes) {
    for (const double share : kShares) {
      const Model model = random_model(random, bits, share);
      const BitMap map = map_of(model);
      std::vector<std::int32_t> visited;
      for_each_set(map.view(),
                   [&](std::uint32_t bit) { visited.push_back(static_cast<std::int32_t>(bit)); });
      EXPECT_EQ(visited, set_bits_of(model)) << bits << " " << share;
    }
  }
}

}  // namespace
}  // namespace qv::native::zlog
