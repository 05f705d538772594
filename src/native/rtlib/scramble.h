#pragma once

#include <cstdint>
#include <span>

namespace qv::native::rtlib {

// Scrambles the bytes in place; a second pass with the same code restores them. This is no
// encryption: whoever knows the routine reads the text.
//   code 0          byte i (from 0) is XORed with scramble_byte(i)
//   code 1 to 255   every byte is XORed with the code
//   other codes     bytes are XORed with the code's low and high byte in turn; a negative code
//                   counts as its 16-bit pattern
void scramble(std::span<std::uint8_t> bytes, std::int16_t code);

// The byte that place i (from 0) is scrambled with under code 0. Stored texts depend on it: it must
// never change. It is the top byte of the low 32 bits of (i + 1) * 9E3779B1 hex (the golden ratio).
constexpr std::uint8_t scramble_byte(std::uint32_t i) {
  return static_cast<std::uint8_t>(((i + 1) * 0x9E3779B1u) >> 24);
}

}  // namespace qv::native::rtlib
