#include "native/zlog/bit_algebra.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <vector>

#include "native/zlog/bit_walk.h"
#include "tests/native/zlog/set_model.h"

namespace qv::native::zlog {
namespace {

using Words = std::vector<std::uint32_t>;

constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();

TEST(Algebra, Truth_tables) {
  const Words source = {0b0011};
  Words target = {0b0101};
  and_with(target, source);
  EXPECT_EQ(target[0], 0b0001U);
  target = {0b0101};
  or_with(target, source);
  EXPECT_EQ(target[0], 0b0111U);
  target = {0b0101};
  xor_with(target, source);
  EXPECT_EQ(target[0], 0b0110U);
  target = {0b0101};
  exclude(target, source);
  EXPECT_EQ(target[0], 0b0100U);
}

TEST(Algebra, Words_that_the_source_has_not_count_as_clear) {
  const Words source = {0x0F};
  Words target = {0x3C, 0x77};
  and_with(target, source);
  EXPECT_EQ(target, (Words{0x0C, 0}));
  target = {0x3C, 0x77};
  or_with(target, source);
  EXPECT_EQ(target, (Words{0x3F, 0x77}));
  xor_with(target, source);
  EXPECT_EQ(target, (Words{0x30, 0x77}));
  exclude(target, Words{0x10});
  EXPECT_EQ(target, (Words{0x20, 0x77}));
}

TEST(Algebra, Words_that_the_target_has_not_are_passed_over) {
  const Words source = {0xFF, 0xFF};
  Words target = {0xF0F};
  and_with(target, source);
  EXPECT_EQ(target, Words{0x00F});
  or_with(target, source);
  EXPECT_EQ(target, Words{0x0FF});
  xor_with(target, source);
  EXPECT_EQ(target, Words{0});
  or_with(target, source);
  exclude(target, source);
  EXPECT_EQ(target, Words{0});
}

TEST(Algebra, A_set_may_be_combined_with_itself) {
  std::mt19937 random(4);
  const Model model = random_model(random, 1000, 0.4);
  BitMap map = map_of(model);
  and_with(map.view().words, map.view().words);
  EXPECT_EQ(model_of(map.view()), model);
  or_with(map.view().words, map.view().words);
  EXPECT_EQ(model_of(map.view()), model);
  xor_with(map.view().words, map.view().words);
  EXPECT_EQ(count(map.view().words), 0U);
  map = map_of(model);
  exclude(map.view().words, map.view().words);
  EXPECT_EQ(count(map.view().words), 0U);
}

TEST(Algebra, Invert_keeps_trailing_bits_clear) {
  for (const std::int32_t bits : kSizes) {
    BitMap map = *BitMap::make(bits);
    invert(map.view());
    EXPECT_EQ(count(map.view().words), static_cast<std::uint64_t>(bits));
    invert(map.view());
    EXPECT_EQ(count(map.view().words), 0U);
  }
}

TEST(Algebra, Invert_stays_within_the_bits_of_an_application_s_map) {
  Words words = {0, 0, 0x1234};
  invert({words, 33});
  EXPECT_EQ(words, (Words{0xFFFFFFFF, 1, 0x1234}));
  invert({words, -1});
  EXPECT_EQ(words, (Words{0xFFFFFFFF, 1, 0x1234}));
}

TEST(Algebra, Trim_clears_past_the_last_bit_only) {
  Words words = {0xFFFFFFFF, 0xFFFFFFFF};
  trim({words, 64});
  EXPECT_EQ(words, (Words{0xFFFFFFFF, 0xFFFFFFFF}));
  trim({words, 33});
  EXPECT_EQ(words, (Words{0xFFFFFFFF, 1}));
  trim({words, 0});
  EXPECT_EQ(words, (Words{0xFFFFFFFF, 1}));
}

TEST(Algebra, Fill_sets_exactly_the_first_records) {
  std::mt19937 random(5);
  for (const std::int32_t bits : kSizes) {
    for (const std::int32_t records : kSizes) {
      const Model before = random_model(random, bits, 0.5);
      BitMap map = map_of(before);
      if (records > bits) {
        EXPECT_FALSE(fill(map.view(), records));
        EXPECT_EQ(model_of(map.view()), before);
        continue;
      }
      EXPECT_TRUE(fill(map.view(), records));
      Model expected(static_cast<std::size_t>(bits));
      std::fill_n(expected.begin(), records, true);
      EXPECT_EQ(model_of(map.view()), expected) << records << " of " << bits;
      EXPECT_EQ(count(map.view().words), static_cast<std::uint64_t>(records));
    }
  }
}

TEST(Algebra, Fill_of_a_negative_number_changes_nothing) {
  BitMap map = *BitMap::make(40);
  ASSERT_TRUE(fill(map.view(), 3));
  EXPECT_FALSE(fill(map.view(), -1));
  EXPECT_FALSE(fill(map.view(), kLowest));
  EXPECT_FALSE(fill(map.view(), 41));
  EXPECT_EQ(count(map.view().words), 3U);
}

TEST(Algebra, Summary_tells_which_words_have_bits) {
  std::mt19937 random(6);
  for (const std::int32_t bits : kSizes) {
    const Model model = random_model(random, bits, 0.02);
    const BitMap map = map_of(model);
    const auto words = static_cast<std::int32_t>(words_for(bits));
    BitMap summary = *BitMap::make(words + 40);
    invert(summary.view());
    ASSERT_TRUE(summarise(map.view().words, summary.view()));
    Model expected(static_cast<std::size_t>(words + 40));
    for (const std::int32_t bit : set_bits_of(model)) expected[bit / 32] = true;
    EXPECT_EQ(model_of(summary.view()), expected) << bits;
    EXPECT_EQ(trailing_bits(summary.view()), 0U);
  }
}

TEST(Algebra, Summary_with_fewer_bits_than_words_changes_nothing) {
  const BitMap map = *BitMap::make(33 * 32);
  BitMap summary = *BitMap::make(32);
  invert(summary.view());
  EXPECT_FALSE(summarise(map.view().words, summary.view()));
  EXPECT_EQ(count(summary.view().words), 32U);
  BitMap enough = *BitMap::make(33);
  EXPECT_TRUE(summarise(map.view().words, enough.view()));
}

TEST(Algebra, A_set_may_be_its_own_summary) {
  std::mt19937 random(7);
  const BitMap map = map_of(random_model(random, 20011, 0.01));
  BitMap expected = *BitMap::make(20011);
  ASSERT_TRUE(summarise(map.view().words, expected.view()));
  BitMap own = *resized(map.view(), 20011);
  ASSERT_TRUE(summarise(own.view().words, own.view()));
  EXPECT_EQ(model_of(own.view()), model_of(expected.view()));
}

TEST(Algebra, Works_up_to_the_greatest_size) {
  BitMap map = *BitMap::make(kMaxBits);
  EXPECT_EQ(map.view().words.size(), std::size_t{1} << 26);
  EXPECT_EQ(set_bit(map.view(), kMaxBits - 1, true), 0);
  EXPECT_EQ(set_bit(map.view(), kMaxBits, true), -1);
  EXPECT_EQ(next_set(map.view(), -1), kMaxBits - 1);
  EXPECT_EQ(next_set(map.view(), kMaxBits - 1), -1);
  EXPECT_EQ(prev_set(map.view(), kMaxBits), kMaxBits - 1);
  EXPECT_EQ(prev_set(map.view(), kMaxBits - 1), -1);
  EXPECT_EQ(count(map.view().words), 1U);
  invert(map.view());
  EXPECT_EQ(count(map.view().words), static_cast<std::uint64_t>(kMaxBits) - 1);
  EXPECT_EQ(next_clear(map.view(), -1), kMaxBits - 1);
  EXPECT_EQ(next_clear(map.view(), kMaxBits - 1), -1);
  EXPECT_TRUE(fill(map.view(), kMaxBits));
  EXPECT_EQ(count(map.view().words), static_cast<std::uint64_t>(kMaxBits));
  EXPECT_EQ(map.view().words.back(), 0x7FFFFFFFU);
}

}  // namespace
}  // namespace qv::native::zlog
