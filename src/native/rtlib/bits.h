#pragma once

#include <bit>
#include <concepts>
#include <cstdint>
#include <limits>

namespace qv::native::rtlib {

// Shifts and rotations of the two signed widths of the calling language. Shifts move zeros in on
// either side, whatever the sign; by the width or more they give 0, by a negative count they change
// nothing. Rotations take the count modulo the width; a negative count turns the other way.
template <class T>
concept BitWord = std::same_as<T, std::int16_t> || std::same_as<T, std::int32_t>;

template <BitWord T>
inline constexpr std::int32_t kBitWidth = std::numeric_limits<std::make_unsigned_t<T>>::digits;

template <BitWord T>
constexpr T shift_left(T value, std::int32_t count) {
  using U = std::make_unsigned_t<T>;
  if (count < 0) return value;
  if (count >= kBitWidth<T>) return 0;
  return static_cast<T>(static_cast<U>(static_cast<std::uint32_t>(static_cast<U>(value)) << count));
}

template <BitWord T>
constexpr T shift_right(T value, std::int32_t count) {
  using U = std::make_unsigned_t<T>;
  if (count < 0) return value;
  if (count >= kBitWidth<T>) return 0;
  return static_cast<T>(static_cast<U>(static_cast<U>(value) >> count));
}

template <BitWord T>
constexpr T rotate_left(T value, std::int32_t count) {
  using U = std::make_unsigned_t<T>;
  return static_cast<T>(std::rotl(static_cast<U>(value), count % kBitWidth<T>));
}

template <BitWord T>
constexpr T rotate_right(T value, std::int32_t count) {
  using U = std::make_unsigned_t<T>;
  return static_cast<T>(std::rotr(static_cast<U>(value), count % kBitWidth<T>));
}

}  // namespace qv::native::rtlib
