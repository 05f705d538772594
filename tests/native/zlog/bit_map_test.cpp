#include "native/zlog/bit_map.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <utility>
#include <vector>

#include "native/zlog/bit_algebra.h"
#include "tests/native/zlog/set_model.h"

namespace qv::native::zlog {
namespace {

TEST(BitMap, A_word_has_32_bits) {
  EXPECT_EQ(words_for(0), 0U);
  EXPECT_EQ(words_for(1), 1U);
  EXPECT_EQ(words_for(31), 1U);
  EXPECT_EQ(words_for(32), 1U);
  EXPECT_EQ(words_for(33), 2U);
  EXPECT_EQ(words_for(kMaxBits), std::size_t{1} << 26);
  EXPECT_EQ(words_for(-1), 0U);
}

TEST(BitMap, Negative_size_is_refused) {
  EXPECT_FALSE(BitMap::make(-1));
  EXPECT_FALSE(BitMap::make(std::numeric_limits<std::int32_t>::min()));
  EXPECT_FALSE(resized(BitMap::make(40)->view(), -1));
}

TEST(BitMap, New_map_is_clear_and_starts_on_a_cache_line) {
  for (const std::int32_t bits : kSizes) {
    BitMap map = *BitMap::make(bits);
    EXPECT_EQ(map.bits(), bits);
    EXPECT_EQ(map.view().bits, bits);
    EXPECT_EQ(map.view().words.size(), words_for(bits));
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(map.view().words.data()) % 64, 0U);
    EXPECT_EQ(count(map.view().words), 0U);
  }
}

TEST(BitMap, Moved_from_map_is_empty) {
  BitMap map = *BitMap::make(100);
  ASSERT_TRUE(fill(map.view(), 100));
  BitMap other = std::move(map);
  EXPECT_EQ(map.bits(), 0);  // NOLINT(bugprone-use-after-move)
  EXPECT_TRUE(map.view().words.empty());
  EXPECT_EQ(count(other.view().words), 100U);
  map = std::move(other);
  EXPECT_EQ(count(map.view().words), 100U);
  EXPECT_EQ(other.bits(), 0);  // NOLINT(bugprone-use-after-move)
}

TEST(BitMap, Resize_keeps_the_bits_that_fit_and_adds_clear_ones) {
  std::mt19937 random(1);
  for (const std::int32_t from : kSizes) {
    const Model before = random_model(random, from, 0.5);
    const BitMap map = map_of(before);
    for (const std::int32_t to : kSizes) {
      const BitMap after = *resized(map.view(), to);
      Model expected = before;
      expected.resize(static_cast<std::size_t>(to));
      EXPECT_EQ(model_of(after.view()), expected) << from << " to " << to;
      if (to > 0) {
        EXPECT_EQ(trailing_bits(after.view()), 0U);
      }
    }
  }
}

TEST(BitMap, Resize_leaves_out_what_an_application_set_past_its_last_bit) {
  std::vector<std::uint32_t> words = {0xFFFFFFFF, 0xFFFFFFFF};
  EXPECT_EQ(count(resized(BitSpan{words, 33}, 64)->view().words), 33U);
}

TEST(BitSpan, Fewer_words_than_bits_limit_the_set) {
  std::vector<std::uint32_t> words = {1, 2};
  EXPECT_EQ((BitSpan{words, 1000}).limit(), 64);
  EXPECT_EQ((BitSpan{words, 64}).limit(), 64);
  EXPECT_EQ((BitSpan{words, 63}).limit(), 63);
  EXPECT_EQ((BitSpan{words, 0}).limit(), 0);
  EXPECT_EQ((BitSpan{words, -5}).limit(), 0);
  EXPECT_EQ((BitSpan{words, 3}).used().size(), 1U);
  EXPECT_EQ((BitSpan{words, 1000}).used().size(), 2U);
}

}  // namespace
}  // namespace qv::native::zlog
