#include "native/rtlib/bits.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <random>

namespace qv::native::rtlib {
namespace {

constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();

// One bit at a time, as the definition has it.
template <class T>
T naive_rotate_left(T value, std::int32_t count) {
  using U = std::make_unsigned_t<T>;
  constexpr int kWidth = static_cast<int>(sizeof(T) * 8);
  int steps = count % kWidth;
  if (steps < 0) steps += kWidth;
  auto bits = static_cast<U>(value);
  for (int i = 0; i < steps; ++i) {
    const bool top = (bits >> (kWidth - 1)) != 0;
    bits = static_cast<U>(static_cast<U>(bits * 2u) + (top ? 1u : 0u));
  }
  return static_cast<T>(bits);
}

template <class T>
T naive_shift(T value, std::int32_t count, bool left) {
  using U = std::make_unsigned_t<T>;
  auto bits = static_cast<U>(value);
  for (std::int32_t i = 0; i < count && bits != 0; ++i) {
    bits = static_cast<U>(left ? bits * 2u : bits / 2u);
  }
  return static_cast<T>(bits);
}

template <class T>
void compare_with_models() {
  std::mt19937 random(1);
  for (int round = 0; round < 20000; ++round) {
    const auto value = static_cast<T>(random());
    const auto count = static_cast<std::int32_t>(random() % 160) - 80;
    ASSERT_EQ(shift_left(value, count), naive_shift(value, count, true)) << value << " " << count;
    ASSERT_EQ(shift_right(value, count), naive_shift(value, count, false)) << value << " " << count;
    ASSERT_EQ(rotate_left(value, count), naive_rotate_left(value, count)) << value << " " << count;
    ASSERT_EQ(rotate_right(value, count), naive_rotate_left(value, -count))
        << value << " " << count;
  }
}

TEST(Bits, sixteen_bits_agree_with_one_bit_at_a_time) { compare_with_models<std::int16_t>(); }
TEST(Bits, thirty_two_bits_agree_with_one_bit_at_a_time) { compare_with_models<std::int32_t>(); }

TEST(Bits, rotating_by_the_width_changes_nothing) {
  EXPECT_EQ(rotate_left(std::int32_t{0x12345678}, 32), 0x12345678);
  EXPECT_EQ(rotate_right(std::int16_t{0x1234}, 16), 0x1234);
}

TEST(Bits, the_sign_bit_is_lost_by_a_left_shift) {
  EXPECT_EQ(shift_left(kLowest, 1), 0);
  EXPECT_EQ(shift_left(std::int16_t{-32768}, 1), 0);
}

TEST(Bits, a_right_shift_moves_zeros_in) {
  EXPECT_EQ(shift_right(std::int16_t{-1}, 4), 0x0FFF);
  EXPECT_EQ(shift_right(std::int32_t{-1}, 4), 0x0FFFFFFF);
}

TEST(Bits, shifts_by_the_width_or_more_give_0) {
  for (const std::int32_t count : {16, 17, 31, 32, 1000, kHighest}) {
    EXPECT_EQ(shift_left(std::int16_t{-1}, count), 0);
    EXPECT_EQ(shift_right(std::int16_t{-1}, count), 0);
  }
  for (const std::int32_t count : {32, 33, 64, kHighest}) {
    EXPECT_EQ(shift_left(std::int32_t{-1}, count), 0);
    EXPECT_EQ(shift_right(std::int32_t{-1}, count), 0);
  }
}

TEST(Bits, a_negative_count_shifts_nothing) {
  for (const std::int32_t count : {-1, -16, -32, kLowest}) {
    EXPECT_EQ(shift_left(std::int16_t{123}, count), 123);
    EXPECT_EQ(shift_right(std::int32_t{-123}, count), -123);
  }
}

TEST(Bits, a_negative_count_turns_the_other_way) {
  EXPECT_EQ(rotate_left(std::int16_t{1}, -1), -32768);
  EXPECT_EQ(rotate_right(std::int16_t{-32768}, -1), 1);
  EXPECT_EQ(rotate_left(std::int32_t{5}, kLowest), 5);
  EXPECT_EQ(rotate_left(std::int32_t{1}, kHighest), kLowest);
}

}  // namespace
}  // namespace qv::native::rtlib
