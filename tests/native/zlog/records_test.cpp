#include "native/zlog/records.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <random>
#include <vector>

#include "native/zlog/bit_algebra.h"
#include "native/zlog/bit_walk.h"
#include "tests/native/zlog/set_model.h"

namespace qv::native::zlog {
namespace {

constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();

// One record after the other, as a caller would walk.
std::int32_t skip_by_walking(ConstBitSpan set, std::int32_t tid, std::int32_t steps) {
  if (steps == 0) return test_bit(set, tid_to_bit(tid, set.limit())) != 0 ? tid : 0;
  std::int32_t bit = tid - 1;
  for (; steps > 0; --steps) {
    if ((bit = next_set(set, bit)) < 0) return 0;
  }
  for (; steps < 0; ++steps) {
    if ((bit = prev_set(set, bit)) < 0) return 0;
  }
  return bit + 1;
}

TEST(Records, Tid_is_bit_plus_1) {
  EXPECT_EQ(tid_to_bit(1, 33), 0);
  EXPECT_EQ(tid_to_bit(33, 33), 32);
  EXPECT_EQ(bit_to_tid(0, 33), 1);
  EXPECT_EQ(bit_to_tid(32, 33), 33);
  EXPECT_EQ(tid_to_bit(kMaxBits, kMaxBits), kMaxBits - 1);
  EXPECT_EQ(bit_to_tid(kMaxBits - 1, kMaxBits), kMaxBits);
}

TEST(Records, Tid_out_of_range_is_bit_minus_1) {
  for (const std::int32_t tid : {kLowest, -1, 0, 34, kMaxBits}) EXPECT_EQ(tid_to_bit(tid, 33), -1);
  EXPECT_EQ(tid_to_bit(1, 0), -1);
  EXPECT_EQ(tid_to_bit(1, -7), -1);
}

TEST(Records, Bit_out_of_range_is_Tid_0) {
  for (const std::int32_t bit : {kLowest, -1, 33, kMaxBits}) EXPECT_EQ(bit_to_tid(bit, 33), 0);
  EXPECT_EQ(bit_to_tid(0, 0), 0);
  EXPECT_EQ(bit_to_tid(0, -7), 0);
}

TEST(Records, Skip_of_0_is_the_record_itself_if_set) {
  BitMap map = *BitMap::make(33);
  set_bit(map.view(), 32, true);
  EXPECT_EQ(skip_records(map.view(), 33, 0), 33);
  EXPECT_EQ(skip_records(map.view(), 32, 0), 0);
  for (const std::int32_t tid : {kLowest, -1, 0, 34, kMaxBits}) {
    EXPECT_EQ(skip_records(map.view(), tid, 0), 0);
  }
}

TEST(Records, Skip_agrees_with_walking) {
  std::mt19937 random(10);
  for (const std::int32_t bits : {0, 1, 31, 32, 33, 64, 1000, 1056, 20011, 40000}) {
    for (const double share : kShares) {
      const BitMap map = map_of(random_model(random, bits, share));
      std::uniform_int_distribution<std::int32_t> tids(-2, bits + 3);
      std::uniform_int_distribution<std::int32_t> steps(-bits / 2 - 3, bits / 2 + 3);
      for (int i = 0; i < 20; ++i) {
        const std::int32_t tid = tids(random);
        for (const std::int32_t distance : {steps(random), i - 10}) {
          ASSERT_EQ(skip_records(map.view(), tid, distance),
                    skip_by_walking(map.view(), tid, distance))
              << bits << " bits, from " << tid << " by " << distance;
        }
      }
    }
  }
}

TEST(Records, Skip_beyond_the_end_finds_no_record) {
  BitMap map = *BitMap::make(100);
  ASSERT_TRUE(fill(map.view(), 100));
  EXPECT_EQ(skip_records(map.view(), 0, 100), 100);
  EXPECT_EQ(skip_records(map.view(), 0, 101), 0);
  EXPECT_EQ(skip_records(map.view(), 101, -100), 1);
  EXPECT_EQ(skip_records(map.view(), 101, -101), 0);
  EXPECT_EQ(skip_records(map.view(), 50, kMaxBits), 0);
  EXPECT_EQ(skip_records(map.view(), 50, kLowest), 0);
  EXPECT_EQ(skip_records(map.view(), kMaxBits, 1), 0);
  EXPECT_EQ(skip_records(map.view(), kMaxBits, -1), 100);
  EXPECT_EQ(skip_records(map.view(), kLowest, 1), 1);
  EXPECT_EQ(skip_records(map.view(), kLowest, -1), 0);
}

TEST(Records, Skip_finds_nothing_past_the_bits_of_an_application_s_map) {
  std::vector<std::uint32_t> words = {0, 0xFFFFFFFF};
  EXPECT_EQ(skip_records(BitSpan{words, 33}, 0, 1), 33);
  EXPECT_EQ(skip_records(BitSpan{words, 33}, 0, 2), 0);
  EXPECT_EQ(skip_records(BitSpan{words, 33}, 60, -1), 33);
}

TEST(Records, Index_block_sets_its_records_and_passes_over_others) {
  BitMap map = *BitMap::make(40);
  set_bit(map.view(), 7, true);
  const std::vector<std::uint8_t> block = {
      1,   0,   0,   0,   40, 0, 0, 0,   41, 0, 0, 0,
      0,   0,   0,   0,                                // the first, the last, beyond, none
      255, 255, 255, 255, 0,  0, 0, 128, 3,  1, 0, 0,  // negative, lowest, 259
      1,   0,   0,   0,   5,  0, 0};                   // again; a cut one
  add_index_block(map.view(), block);
  EXPECT_EQ(set_bits_of(model_of(map.view())), (std::vector<std::int32_t>{0, 7, 39}));
}

TEST(Records, Index_block_may_lie_at_any_address) {
  const std::vector<std::uint8_t> bytes = {9, 9, 9, 2, 0, 0, 0, 4, 0, 0, 0};
  BitMap map = *BitMap::make(32);
  add_index_block(map.view(), std::span(bytes).subspan(3));
  EXPECT_EQ(map.view().words[0], 0b1010U);
  add_index_block(map.view(), {});
  EXPECT_EQ(map.view().words[0], 0b1010U);
}

}  // namespace
}  // namespace qv::native::zlog
