#include "native/sorting/radix_sort.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace qv::native::sorting {
namespace {

// Around the sizes where the way of sorting changes.
constexpr std::size_t kSizes[] = {0, 1, 2, 3, 100, 255, 256, 257, 5000, 32767, 32768, 70000};

template <class Number>
class RadixSort : public testing::Test {};
using Numbers =
    testing::Types<std::uint8_t, std::int16_t, std::int32_t, std::int64_t, float, double>;
TYPED_TEST_SUITE(RadixSort, Numbers);

template <class Number>
Number random_number(std::mt19937_64& random, int kind) {
  if constexpr (std::is_floating_point_v<Number>) {
    if (kind == 0) return static_cast<Number>(static_cast<std::int64_t>(random() % 20)) - 10;
    const auto exponent = static_cast<int>(random() % 60) - 30;
    return std::ldexp(static_cast<Number>(static_cast<std::int64_t>(random())), exponent);
  } else {
    return static_cast<Number>(kind == 0 ? random() % 20 : random());
  }
}

TYPED_TEST(RadixSort, sorts_like_comparing) {
  std::mt19937_64 random(6);
  for (const std::size_t size : kSizes) {
    for (const int kind : {0, 1}) {
      std::vector<TypeParam> numbers(size);
      for (TypeParam& number : numbers) number = random_number<TypeParam>(random, kind);
      auto expected = numbers;
      std::ranges::sort(expected);
      sort_numbers(std::span(numbers));
      ASSERT_EQ(numbers, expected) << size << " of kind " << kind;
      sort_numbers(std::span(numbers));
      ASSERT_EQ(numbers, expected) << "in order already";
      std::ranges::reverse(numbers);
      sort_numbers(std::span(numbers));
      ASSERT_EQ(numbers, expected) << "in reverse order";
    }
  }
}

TYPED_TEST(RadixSort, keys_keep_the_order_of_the_limits) {
  using Limits = std::numeric_limits<TypeParam>;
  std::vector<TypeParam> numbers = {Limits::max(), 1, 0, Limits::lowest()};
  if constexpr (Limits::has_infinity) {
    numbers.insert(numbers.begin(), Limits::infinity());
    numbers.push_back(-Limits::infinity());
  }
  for (std::size_t i = 1; i < numbers.size(); ++i) {
    if (numbers[i - 1] == numbers[i]) continue;
    EXPECT_GT(radix_key(numbers[i - 1]), radix_key(numbers[i]));
  }
}

TEST(RadixSort, minus_0_lies_below_0) { EXPECT_LT(radix_key(-0.0), radix_key(0.0)); }

TEST(RadixSort, keyed_items_keep_their_index) {
  std::mt19937_64 random(7);
  for (const std::size_t size : kSizes) {
    std::vector<KeyedIndex> items(size);
    std::vector<std::uint64_t> keys(size);
    for (std::uint32_t i = 0; i < size; ++i) {
      keys[i] = random() & 0xFF00FF0000FF;  // some bytes are the same everywhere
      items[i] = {keys[i], i};
    }
    sort_keyed(items);
    ASSERT_TRUE(std::ranges::is_sorted(items, {}, &KeyedIndex::key));
    std::vector<bool> seen(size);
    for (const KeyedIndex& item : items) {
      ASSERT_EQ(item.key, keys[item.index]);
      ASSERT_FALSE(seen[item.index]);
      seen[item.index] = true;
    }
  }
}

}  // namespace
}  // namespace qv::native::sorting
