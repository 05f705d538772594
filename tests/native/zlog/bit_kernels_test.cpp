#include "native/zlog/bit_kernels.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <random>
#include <vector>

namespace qv::native::zlog {
namespace {

using Words = std::vector<std::uint32_t>;

// Every set of loops that this processor can run.
std::vector<const Kernels*> all_kernels() {
  std::vector<const Kernels*> all = {&portable_kernels()};
  for (const Kernels* kernels : {avx2_kernels(), avx512_kernels()}) {
    if (kernels != nullptr) all.push_back(kernels);
  }
  return all;
}

Words random_words(std::mt19937& random, std::size_t words) {
  Words result(words);
  for (std::uint32_t& word : result) word = static_cast<std::uint32_t>(random());
  return result;
}

TEST(Kernels, The_chosen_set_is_one_that_the_processor_has) {
  const std::vector<const Kernels*> all = all_kernels();
  EXPECT_EQ(&kernels(), all.back());
}

TEST(Kernels, All_combine_alike_at_every_length_and_alignment) {
  std::mt19937 random(2);
  const auto check = [&](Kernels::Combine Kernels::*operation, auto expected_of) {
    for (const Kernels* kernels : all_kernels()) {
      for (std::size_t length = 0; length < 140; ++length) {
        const std::size_t skew = length % 5;
        Words target = random_words(random, length + skew + 1);
        const Words source = random_words(random, length + 2);
        Words expected = target;
        for (std::size_t i = 0; i < length; ++i) {
          expected[skew + i] = expected_of(target[skew + i], source[1 + i]);
        }
        (kernels->*operation)(target.data() + skew, source.data() + 1, length);
        EXPECT_EQ(target, expected) << length;
      }
    }
  };
  check(&Kernels::and_with, [](std::uint32_t a, std::uint32_t b) { return a & b; });
  check(&Kernels::or_with, [](std::uint32_t a, std::uint32_t b) { return a | b; });
  check(&Kernels::xor_with, [](std::uint32_t a, std::uint32_t b) { return a ^ b; });
  check(&Kernels::exclude, [](std::uint32_t a, std::uint32_t b) { return a & ~b; });
}

TEST(Kernels, All_invert_and_count_alike) {
  std::mt19937 random(3);
  for (const Kernels* kernels : all_kernels()) {
    for (std::size_t length = 0; length < 300; ++length) {
      Words words = random_words(random, length + 2);
      Words expected = words;
      std::uint64_t total = 0;
      for (std::size_t i = 1; i <= length; ++i) {
        expected[i] = ~words[i];
        total += static_cast<unsigned>(std::popcount(words[i]));
      }
      EXPECT_EQ(kernels->count(words.data() + 1, length), total) << length;
      kernels->invert(words.data() + 1, length);
      EXPECT_EQ(words, expected) << length;
    }
  }
}

TEST(Kernels, All_count_long_full_rows) {
  const Words words(200003, 0xFFFFFFFF);
  for (const Kernels* kernels : all_kernels()) {
    EXPECT_EQ(kernels->count(words.data(), words.size()), 32U * 200003U);
  }
}

TEST(Kernels, All_find_the_first_and_the_last_other_word) {
  for (const Kernels* kernels : all_kernels()) {
    for (const std::uint32_t value : {0U, 0xFFFFFFFFU}) {
      for (std::size_t length = 0; length < 140; ++length) {
        Words words(length, value);
        EXPECT_EQ(kernels->first_other(words.data(), length, value), length);
        EXPECT_EQ(kernels->last_other(words.data(), length, value), length);
        for (std::size_t at = 0; at < length; ++at) {
          words[at] ^= 0x00010000;
          EXPECT_EQ(kernels->first_other(words.data(), length, value), at);
          EXPECT_EQ(kernels->last_other(words.data(), length, value), at);
          words[at] = value;
        }
      }
    }
  }
}

TEST(Kernels, All_list_the_set_bits_and_write_no_further_than_the_slack) {
  std::mt19937 random(21);
  for (const Kernels* kernels : all_kernels()) {
    for (std::size_t length = 0; length < 60; ++length) {
      for (const unsigned sparseness : {0U, 1U, 4U, 6U}) {
        Words words = random_words(random, length + 1);
        Words expected;
        for (std::size_t i = 1; i <= length; ++i) {
          for (unsigned more = 0; more < sparseness; ++more) {
            words[i] &= static_cast<std::uint32_t>(random());
          }
          for (unsigned bit = 0; bit < 32; ++bit) {
            const auto number = static_cast<std::uint32_t>(7 + 32 * (i - 1) + bit);
            if ((words[i] >> bit & 1) != 0) expected.push_back(number);
          }
        }
        constexpr std::uint32_t kUntouched = 0xABCDEF01;
        Words numbers(expected.size() + kListSlack + 1, kUntouched);
        ASSERT_EQ(kernels->list(words.data() + 1, length, 7, numbers.data()), expected.size());
        EXPECT_EQ(numbers.back(), kUntouched);
        numbers.resize(expected.size());
        EXPECT_EQ(numbers, expected);
      }
    }
  }
}

}  // namespace
}  // namespace qv::native::zlog
