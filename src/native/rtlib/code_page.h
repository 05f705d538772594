#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "native/rtlib/simd.h"

namespace qv::native::rtlib {

// The character of each byte.
using ForwardTable = std::array<char16_t, 256>;
// The byte of each UTF-16 code unit, best fits included.
using ReverseTable = std::span<std::uint8_t, 65536>;

// Windows code page 1252, its five undefined bytes 81, 8D, 8F, 90, 9D hex as the characters of the
// same codes. The table of systems whose own code page takes several bytes a character.
extern const ForwardTable kWindows1252;

// Makes the reverse of a table that has no best fits: every character of the table goes to its
// (first) byte, every other code unit to `unmapped`.
void make_reverse(const ForwardTable& forward, std::uint8_t unmapped, ReverseTable reverse);

// A single-byte code page, ready for conversion: one byte is one code unit, both ways. Immutable
// once made, so threads share it. 64 KiB large: made once and kept, not on a stack.
// The vector forms: a byte's character by two 128-byte table permutations (or, without them, 16
// bytes at a time for those of the 16 rows of the table that are not simply the byte's own code);
// a character's byte by a perfect hash of the characters whose code is not their byte.
class CodePage {
 public:
  // Copies both tables. `forward` and `reverse` need not agree: each direction follows its own.
  CodePage(const ForwardTable& forward, std::span<const std::uint8_t, 65536> reverse);

  // Writes bytes.size() code units; `out` does not overlap `bytes`.
  void from_bytes(std::span<const std::uint8_t> bytes, char16_t* out,
                  SimdLevel level = simd_level()) const;

  // Writes text.size() bytes; `out` does not overlap `text`. Halves of a surrogate pair are
  // converted one by one like any other code unit.
  void to_bytes(std::u16string_view text, std::uint8_t* out, SimdLevel level = simd_level()) const;

 private:
  static constexpr std::size_t kRowSize = 16;
  static constexpr std::size_t kHashSlots = 64;

  struct Row {
    std::uint8_t number;  // bytes 16 * number to 16 * number + 15
    std::array<std::uint8_t, kRowSize> low;
    std::array<std::uint8_t, kRowSize> high;
  };

  void split_forward();
  void find_hash();

  void from_bytes_avx2(const std::uint8_t* bytes, std::size_t count, char16_t* out) const;
  void from_bytes_avx512(const std::uint8_t* bytes, std::size_t count, char16_t* out) const;
  void to_bytes_avx2(const char16_t* text, std::size_t count, std::uint8_t* out) const;
  void to_bytes_avx512(const char16_t* text, std::size_t count, std::uint8_t* out) const;
  // The characters of a block that a vector form does not know, one bit each.
  void convert_marked(const char16_t* text, std::uint32_t marked, std::uint8_t* out) const;

  ForwardTable forward_;
  std::array<std::uint8_t, 65536> reverse_;

  // The forward table's code units, split into low and high bytes, and its rows that are not the
  // identity.
  std::array<std::uint8_t, 256> forward_low_;
  std::array<std::uint8_t, 256> forward_high_;
  std::array<Row, 16> odd_rows_;
  std::size_t odd_row_count_ = 0;
  std::array<std::uint8_t, 16> is_odd_row_{};  // 0 or FF hex, by the row's number
  bool forward_ascii_is_identity_ = true;

  // Bit c % 16 of element c / 16: the code unit c below 256 goes to the byte c. The same set with
  // rows and columns exchanged: bit (c / 16) % 8 of element c % 16, rows 0 to 7 and 8 to 15 apart.
  std::array<std::uint16_t, 32> identity_{};
  std::array<std::uint8_t, kRowSize> identity_of_rows_below_8_{};
  std::array<std::uint8_t, kRowSize> identity_of_rows_from_8_{};
  bool reverse_ascii_is_identity_ = true;

  // Slot (c * hash_factor_) >> 10 in 16 bits of the characters outside the identity, where a factor
  // was found that gives each its own slot. Without one hash_factor_ is 0.
  std::uint16_t hash_factor_ = 0;
  std::array<char16_t, kHashSlots> hash_keys_{};
  std::array<std::uint16_t, kHashSlots> hash_bytes_{};
};

}  // namespace qv::native::rtlib
