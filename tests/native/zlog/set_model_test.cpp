#include "tests/native/zlog/set_model.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <random>

#include "native/zlog/bit_algebra.h"
#include "native/zlog/bit_walk.h"
#include "native/zlog/records.h"

namespace qv::native::zlog {
namespace {

// One random operation on the map and on the model alike.
void operate(std::mt19937& random, BitMap& map, Model& model) {
  const auto bits = static_cast<std::int32_t>(model.size());
  std::uniform_int_distribution<std::int32_t> any_bit(-2, bits + 2);
  std::uniform_real_distribution<double> any_share(0, 1);
  const Model other_model = random_model(random, bits, any_share(random));
  const BitMap other = map_of(other_model);
  const auto combine = [&](auto operation) {
    for (std::size_t i = 0; i < model.size(); ++i) {
      model[i] = operation(bool{model[i]}, bool{other_model[i]});
    }
  };
  switch (std::uniform_int_distribution<int>(0, 8)(random)) {
    case 0:
      and_with(map.view().words, other.view().words);
      return combine([](bool a, bool b) { return a && b; });
    case 1:
      or_with(map.view().words, other.view().words);
      return combine([](bool a, bool b) { return a || b; });
    case 2:
      xor_with(map.view().words, other.view().words);
      return combine([](bool a, bool b) { return a != b; });
    case 3:
      exclude(map.view().words, other.view().words);
      return combine([](bool a, bool b) { return a && !b; });
    case 4:
      invert(map.view());
      return model.flip();
    case 5: {
      const std::int32_t records = any_bit(random);
      const bool fits = records >= 0 && records <= bits;
      EXPECT_EQ(fill(map.view(), records), fits);
      if (fits) {
        std::fill(model.begin(), model.end(), false);
        std::fill_n(model.begin(), records, true);
      }
      return;
    }
    case 6: {
      const std::int32_t size = std::uniform_int_distribution<std::int32_t>(0, 700)(random);
      map = *resized(map.view(), size);
      return model.resize(static_cast<std::size_t>(size));
    }
    case 7: {
      const std::int32_t tid = any_bit(random);
      const auto block = std::bit_cast<std::array<std::uint8_t, 4>>(tid);
      add_index_block(map.view(), block);
      if (tid >= 1 && tid <= bits) model[static_cast<std::size_t>(tid - 1)] = true;
      return;
    }
    default: {
      const std::int32_t bit = any_bit(random);
      const bool value = random() % 2 == 0;
      const bool there = bit >= 0 && bit < bits;
      const int before = there ? static_cast<int>(model[static_cast<std::size_t>(bit)]) : -1;
      EXPECT_EQ(test_bit(map.view(), bit), std::max(before, 0));
      EXPECT_EQ(set_bit(map.view(), bit, value), before);
      if (there) model[static_cast<std::size_t>(bit)] = value;
      return;
    }
  }
}

TEST(Set, Behaves_as_a_row_of_bits_under_random_operations) {
  std::mt19937 random(13);
  for (const std::int32_t bits : kSizes) {
    if (bits > 1100) continue;
    Model model(static_cast<std::size_t>(bits));
    BitMap map = *BitMap::make(bits);
    for (int step = 0; step < 200; ++step) {
      operate(random, map, model);
      ASSERT_EQ(model_of(map.view()), model) << bits << " bits, step " << step;
      ASSERT_EQ(count(map.view().words),
                static_cast<std::uint64_t>(std::ranges::count(model, true)));
      if (map.bits() > 0) {
        ASSERT_EQ(trailing_bits(map.view()), 0U);
      }
    }
  }
}

}  // namespace
}  // namespace qv::native::zlog
