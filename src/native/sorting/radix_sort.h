// Sorting of numbers without comparing them: byte by byte from the least significant one, bytes
// that are the same everywhere skipped (Knuth, The Art of Computer Programming 3, 5.2.5).
#pragma once

#include <bit>
#include <cstdint>
#include <span>

namespace qv::native::sorting {

// An unsigned number in the order of the signed or floating one. For floating numbers: -0 lies
// below 0; a NaN lies beyond the infinities, and no order of values is kept for it.
constexpr std::uint8_t radix_key(std::uint8_t value) { return value; }
constexpr std::uint16_t radix_key(std::int16_t value) {
  return static_cast<std::uint16_t>(value ^ 0x8000);
}
constexpr std::uint32_t radix_key(std::int32_t value) {
  return static_cast<std::uint32_t>(value) ^ 0x80000000;
}
constexpr std::uint64_t radix_key(std::int64_t value) {
  return static_cast<std::uint64_t>(value) ^ 0x8000000000000000;
}
constexpr std::uint32_t radix_key(float value) {
  const auto bits = std::bit_cast<std::uint32_t>(value);
  return bits ^ (static_cast<std::uint32_t>(static_cast<std::int32_t>(bits) >> 31) | 0x80000000);
}
constexpr std::uint64_t radix_key(double value) {
  const auto bits = std::bit_cast<std::uint64_t>(value);
  return bits ^
         (static_cast<std::uint64_t>(static_cast<std::int64_t>(bits) >> 63) | 0x8000000000000000);
}

// A key and the place of its element.
struct KeyedIndex {
  std::uint64_t key;
  std::uint32_t index;
};

// Ascending by radix_key(). Memory for a second copy is used where there is some; nothing fails for
// want of it.
void sort_numbers(std::span<std::uint8_t> numbers);
void sort_numbers(std::span<std::int16_t> numbers);
void sort_numbers(std::span<std::int32_t> numbers);
void sort_numbers(std::span<std::int64_t> numbers);
void sort_numbers(std::span<float> numbers);
void sort_numbers(std::span<double> numbers);

// Ascending by key, in any order among equal ones.
void sort_keyed(std::span<KeyedIndex> items);

}  // namespace qv::native::sorting
