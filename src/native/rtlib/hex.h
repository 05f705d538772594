#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "native/rtlib/simd.h"

namespace qv::native::rtlib {

// Bytes as hexadecimal text, two upper-case digits a byte. Writes 2 * bytes.size() characters.
void hex_encode(std::span<const std::uint8_t> bytes, char16_t* out, SimdLevel level = simd_level());

// The bytes that so many digits make: a last digit without a partner makes a byte of its own.
constexpr std::size_t hex_decoded_size(std::size_t digits) { return digits / 2 + digits % 2; }

// Hexadecimal text, digits of either case, as bytes. Writes hex_decoded_size(digits.size()) bytes
// and returns that number; none when a character is no digit, and then `out` holds no result.
// A last digit without a partner becomes the byte of its value: "12F" is 12 0F.
std::optional<std::size_t> hex_decode(std::u16string_view digits, std::uint8_t* out,
                                      SimdLevel level = simd_level());

// A dump: a blank and two upper-case digits a byte, `line_end` between lines but not behind the
// last. A line is as many bytes as fit into `width` characters; a width of 0 or below means
// 2147483647. A width of 1 or 2 fits none: `line_end` then goes in front of every byte.
struct HexDumpLayout {
  std::size_t bytes_per_line;  // 0: none fits
  std::size_t line_ends;
  std::uint64_t characters;  // of the whole dump; may exceed what memory can hold
};
HexDumpLayout hex_dump_layout(std::size_t byte_count, std::int32_t width,
                              std::size_t line_end_length);

// Writes hex_dump_layout(bytes.size(), width, line_end.size()).characters characters to `out`.
void hex_dump(std::span<const std::uint8_t> bytes, std::int32_t width, std::u16string_view line_end,
              char16_t* out, SimdLevel level = simd_level());

}  // namespace qv::native::rtlib
