#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

// The facts of the compressed block that coder and decoder share; docs/formats/compressed-block.md
// tells the whole format.
namespace qv::native::cpr::block_format {

inline constexpr std::size_t kHeadBytes = 2;
inline constexpr unsigned kSmallestDictionaryCode = 4;  // 1024 bytes, and twice as many a step
inline constexpr unsigned kLargestDictionaryCode = 6;
inline constexpr std::size_t kLargestDictionary = 4096;
inline constexpr unsigned kShortestMatch = 2;
inline constexpr unsigned kLongestMatch = 518;
inline constexpr unsigned kEndMark = 519;  // a length that ends the block
inline constexpr unsigned kPairDistanceBits = 2;
inline constexpr std::size_t kPairReach = 64u << kPairDistanceBits;

inline constexpr std::size_t kLengthSymbols = 16;
inline constexpr std::array<std::uint8_t, kLengthSymbols> kLengthCodeBits{2, 3, 3, 3, 4, 4, 4, 5,
                                                                          5, 5, 5, 6, 6, 6, 7, 7};
inline constexpr std::array<std::uint16_t, kLengthSymbols> kLengthBase{
    3, 2, 4, 5, 6, 7, 8, 9, 10, 12, 16, 24, 40, 72, 136, 264};
inline constexpr std::array<std::uint8_t, kLengthSymbols> kLengthExtraBits{0, 0, 0, 0, 0, 0, 0, 0,
                                                                           1, 2, 3, 4, 5, 6, 7, 8};

inline constexpr std::size_t kDistanceSymbols = 64;
inline constexpr unsigned kLongestDistanceCode = 8;
inline constexpr unsigned kLongestLiteralCode = 13;

// Symbols with a code of so many bits: this many of them, in ascending order.
struct CodeRun {
  std::uint8_t symbols;
  std::uint8_t bits;
};

inline constexpr std::array<CodeRun, 6> kDistanceRuns{
    {{1, 2}, {2, 4}, {4, 5}, {15, 6}, {26, 7}, {16, 8}}};

consteval std::array<std::uint8_t, kDistanceSymbols> make_distance_code_bits() {
  std::array<std::uint8_t, kDistanceSymbols> bits{};
  std::size_t symbol = 0;
  for (const CodeRun run : kDistanceRuns) {
    for (unsigned i = 0; i < run.symbols; ++i) bits[symbol++] = run.bits;
  }
  return bits;
}
inline constexpr auto kDistanceCodeBits = make_distance_code_bits();

// The characters that have a code of their own length in a text block; all others up to DF have 12
// bits, and 13 from 80 to AF, from E0 on, and at 1A, but for the few in kTwelveBitLetters.
struct LiteralGroup {
  std::uint8_t bits;
  std::string_view characters;
};

inline constexpr std::array<LiteralGroup, 8> kLiteralGroups{{
    {4, " "},
    {5, "Eaeilnorstu"},
    {6, "-1ACDILNORSTbcdfghmp"},
    {7, "\n\r(),.0234578=BFMPUkw"},
    {8, "\t\"'*/69:GHW[_vxy"},
    {9, "+>KVXY]"},
    {10, "!$&qz"},
    {11, std::string_view("\0<?JQZ\\j{|", 10)},
}};
inline constexpr std::string_view kTwelveBitLetters = "\xE1\xE5\xE9\xEE\xF2\xF3\xF4";

consteval std::array<std::uint8_t, 256> make_literal_code_bits() {
  std::array<std::uint8_t, 256> bits{};
  for (unsigned character = 0; character < 256; ++character) {
    const bool rare =
        character == 0x1A || (character >= 0x80 && character < 0xB0) || character >= 0xE0;
    bits[character] = rare ? 13 : 12;
  }
  for (const char letter : kTwelveBitLetters) bits[static_cast<std::uint8_t>(letter)] = 12;
  for (const LiteralGroup& group : kLiteralGroups) {
    for (const char character : group.characters) {
      bits[static_cast<std::uint8_t>(character)] = group.bits;
    }
  }
  return bits;
}
inline constexpr auto kLiteralCodeBits = make_literal_code_bits();

// A code as it stands in the stream, its first bit the lowest.
struct Code {
  std::uint16_t pattern;
  std::uint8_t bits;
};

// Codes follow from their lengths: counted up through the symbols of each length, shortest first,
// as in any canonical prefix code; but each is written from its highest bit on, and complemented.
template <std::size_t symbols>
consteval std::array<Code, symbols> make_codes(const std::array<std::uint8_t, symbols>& code_bits) {
  std::array<Code, symbols> codes{};
  unsigned next = 0;
  for (unsigned bits = 1; bits <= 16; ++bits) {
    next <<= 1;
    for (std::size_t symbol = 0; symbol < symbols; ++symbol) {
      if (code_bits[symbol] != bits) continue;
      unsigned pattern = 0;
      for (unsigned bit = 0; bit < bits; ++bit) {
        pattern |= (~(next >> (bits - 1 - bit)) & 1u) << bit;
      }
      codes[symbol] = {static_cast<std::uint16_t>(pattern), static_cast<std::uint8_t>(bits)};
      ++next;
    }
  }
  return codes;
}

inline constexpr auto kLengthCodes = make_codes(kLengthCodeBits);
inline constexpr auto kDistanceCodes = make_codes(kDistanceCodeBits);
inline constexpr auto kLiteralCodes = make_codes(kLiteralCodeBits);

}  // namespace qv::native::cpr::block_format
