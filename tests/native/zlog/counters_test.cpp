#include "native/zlog/counters.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <vector>

#include "native/zlog/bit_algebra.h"
#include "native/zlog/bit_walk.h"
#include "tests/native/zlog/set_model.h"

namespace qv::native::zlog {
namespace {

using Counters = std::vector<std::int16_t>;
using Text = std::vector<std::uint8_t>;

TEST(Counters, Sum_adds_1_for_each_set_record) {
  std::mt19937 random(11);
  for (const std::int32_t bits : kSizes) {
    Counters counters(static_cast<std::size_t>(bits) + 2, 5);
    Text text((static_cast<std::size_t>(bits) + 2) * 2, 0);
    Counters expected = counters;
    for (const double share : kShares) {
      const Model model = random_model(random, bits, share);
      const BitMap map = map_of(model);
      ASSERT_TRUE(add_to_counters(map.view(), counters));
      ASSERT_TRUE(add_to_counters(map.view(), text));
      for (const std::int32_t bit : set_bits_of(model)) ++expected[bit];
    }
    EXPECT_EQ(counters, expected) << bits;
    for (std::size_t i = 0; i < expected.size(); ++i) {
      EXPECT_EQ(text[2 * i] + 256 * text[2 * i + 1], expected[i] - 5) << bits << " " << i;
    }
  }
}

TEST(Counters, Sum_stops_at_the_greatest_value) {
  BitMap map = *BitMap::make(3);
  ASSERT_TRUE(fill(map.view(), 3));
  Counters counters = {32766, 32767, -1};
  ASSERT_TRUE(add_to_counters(map.view(), counters));
  EXPECT_EQ(counters, (Counters{32767, 32767, 0}));
  Text text = {0xFE, 0x7F, 0xFF, 0x7F, 0xFF, 0x00};
  ASSERT_TRUE(add_to_counters(map.view(), text));
  EXPECT_EQ(text, (Text{0xFF, 0x7F, 0xFF, 0x7F, 0x00, 0x01}));
}

TEST(Counters, Sum_into_too_few_counters_changes_nothing) {
  BitMap map = *BitMap::make(33);
  ASSERT_TRUE(fill(map.view(), 33));
  Counters counters(32);
  EXPECT_FALSE(add_to_counters(map.view(), counters));
  EXPECT_EQ(counters, Counters(32));
  Text text(65);
  EXPECT_FALSE(add_to_counters(map.view(), text));
  EXPECT_EQ(text, Text(65));
  text.resize(66);
  EXPECT_TRUE(add_to_counters(map.view(), text));
}

TEST(Counters, Sum_counts_nothing_past_the_bits_of_an_application_s_map) {
  std::vector<std::uint32_t> words = {0xFFFFFFFF, 0xFFFFFFFF};
  Counters counters(64);
  ASSERT_TRUE(add_to_counters(BitSpan{words, 33}, counters));
  EXPECT_EQ(std::ranges::count(counters, 1), 33);
  EXPECT_EQ(counters[33], 0);
}

TEST(Counters, Greatest_leaves_exactly_the_records_that_have_it) {
  BitMap map = *BitMap::make(35);
  ASSERT_TRUE(fill(map.view(), 10));
  Counters counters(35, 2);
  counters[1] = counters[31] = counters[34] = 7;
  EXPECT_EQ(keep_greatest(map.view(), counters), 7);
  EXPECT_EQ(set_bits_of(model_of(map.view())), (std::vector<std::int32_t>{1, 31, 34}));
}

TEST(Counters, Greatest_of_nothing_above_0_leaves_no_record) {
  for (const Counters& counters : {Counters(40), Counters(40, -3), Counters{}}) {
    BitMap map = *BitMap::make(40);
    ASSERT_TRUE(fill(map.view(), 40));
    EXPECT_EQ(keep_greatest(map.view(), counters), 0);
    EXPECT_EQ(count(map.view().words), 0U);
  }
}

TEST(Counters, Greatest_of_a_single_counter) {
  BitMap map = *BitMap::make(40);
  ASSERT_TRUE(fill(map.view(), 40));
  EXPECT_EQ(keep_greatest(map.view(), Counters{1}), 1);
  EXPECT_EQ(set_bits_of(model_of(map.view())), std::vector<std::int32_t>{0});
}

TEST(Counters, Counters_past_the_set_are_no_record_s) {
  BitMap map = *BitMap::make(33);
  Counters counters(64, 3);
  counters[33] = 9;
  EXPECT_EQ(keep_greatest(map.view(), counters), 3);
  EXPECT_EQ(count(map.view().words), 33U);
}

// Counts as the bit planes of `counter` tell them.
std::vector<int> counts_in(ConstBitSpan counter, std::int32_t bits, std::size_t planes) {
  std::vector<int> counts(static_cast<std::size_t>(bits));
  for (std::size_t plane = 0; plane < planes; ++plane) {
    for (std::size_t bit = 0; bit < counts.size(); ++bit) {
      const std::size_t at = plane * words_for(bits) * 32 + bit;
      counts[bit] += (counter.words[at / 32] >> at % 32 & 1) << plane;
    }
  }
  return counts;
}

TEST(Planes, Merge_counts_up_to_what_the_planes_hold_and_result_keeps_the_greatest) {
  std::mt19937 random(12);
  for (const std::int32_t bits : {1, 31, 32, 33, 64, 65, 777}) {
    for (std::size_t planes = 1; planes <= 4; ++planes) {
      const auto counter_words = static_cast<std::int32_t>(words_for(bits) * planes);
      BitMap counter = *BitMap::make(counter_words * 32);
      std::vector<int> expected(static_cast<std::size_t>(bits));
      for (int round = 0; round < 20; ++round) {
        const Model model = random_model(random, bits, 0.4);
        BitMap set = map_of(model);
        ASSERT_TRUE(merge_into_planes(set.view(), counter.view()));
        EXPECT_EQ(model_of(set.view()), model);
        for (const std::int32_t bit : set_bits_of(model)) {
          expected[bit] = std::min(expected[bit] + 1, (1 << planes) - 1);
        }
        ASSERT_EQ(counts_in(counter.view(), bits, planes), expected);

        ASSERT_TRUE(keep_greatest_of_planes(set.view(), counter.view()));
        const int greatest = std::ranges::max(expected);
        Model best(static_cast<std::size_t>(bits));
        for (std::size_t bit = 0; bit < best.size(); ++bit) {
          best[bit] = greatest > 0 && expected[bit] == greatest;
        }
        ASSERT_EQ(model_of(set.view()), best);
        EXPECT_EQ(trailing_bits(set.view()), 0U);
      }
    }
  }
}

TEST(Planes, Result_of_a_clear_counter_is_empty) {
  const BitMap counter = *BitMap::make(64);
  BitMap set = *BitMap::make(32);
  ASSERT_TRUE(fill(set.view(), 32));
  EXPECT_TRUE(keep_greatest_of_planes(set.view(), counter.view()));
  EXPECT_EQ(count(set.view().words), 0U);
}

TEST(Planes, A_counter_without_one_plane_changes_nothing) {
  BitMap counter = *BitMap::make(39);
  BitMap set = *BitMap::make(40);
  ASSERT_TRUE(fill(set.view(), 3));
  EXPECT_FALSE(merge_into_planes(set.view(), counter.view()));
  EXPECT_FALSE(keep_greatest_of_planes(set.view(), counter.view()));
  EXPECT_EQ(count(set.view().words), 3U);
  EXPECT_EQ(count(counter.view().words), 0U);
}

TEST(Planes, A_plane_that_the_counter_s_bits_do_not_cover_stays_out) {
  BitMap counter = *BitMap::make(64 + 39);  // the second plane of 40 bits lacks the last record
  BitMap set = *BitMap::make(40);
  ASSERT_TRUE(fill(set.view(), 40));
  EXPECT_TRUE(merge_into_planes(set.view(), counter.view()));
  EXPECT_TRUE(merge_into_planes(set.view(), counter.view()));
  EXPECT_EQ(count(counter.view().words), 40U);
  BitMap wider = *BitMap::make(64 + 40);
  EXPECT_TRUE(merge_into_planes(set.view(), wider.view()));
  EXPECT_TRUE(merge_into_planes(set.view(), wider.view()));
  EXPECT_EQ(next_set(wider.view(), -1), 64);
  EXPECT_EQ(count(wider.view().words), 40U);
}

TEST(Planes, A_set_of_no_bits_has_nothing_to_count) {
  BitMap set = *BitMap::make(0);
  BitMap counter = *BitMap::make(0);
  EXPECT_TRUE(merge_into_planes(set.view(), counter.view()));
  EXPECT_TRUE(keep_greatest_of_planes(set.view(), counter.view()));
}

TEST(Planes, A_set_may_be_its_own_counter) {
  BitMap set = *BitMap::make(40);
  ASSERT_TRUE(fill(set.view(), 9));
  EXPECT_TRUE(merge_into_planes(set.view(), set.view()));
  EXPECT_EQ(count(set.view().words), 9U);
  EXPECT_TRUE(keep_greatest_of_planes(set.view(), set.view()));
  EXPECT_EQ(count(set.view().words), 9U);
}

}  // namespace
}  // namespace qv::native::zlog
