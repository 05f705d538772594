#include "native/cpr/implode.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>

#include "native/cpr/bit_writer.h"
#include "native/cpr/block_format.h"
#include "native/cpr/match_finder.h"

// The codes are fixed, so what a token costs is known before the text is parsed. The parse is
// therefore a shortest path: from the end of the text backwards, each position learns the cheapest
// way to the end, over a literal and over every length of the matches found there. What is not
// exhaustive is only the search for matches (match_finder.h).

namespace qv::native::cpr {
namespace {

using namespace block_format;

// Texts longer than this are parsed piece by piece; matches still reach back into the piece before.
constexpr std::size_t kPieceBytes = MatchFinder::kMostBytes;

constexpr Search kStandardSearch{48, 24};
constexpr Search kSmallestSearch{1024, 160};

// A code with what follows it, first bit lowest.
struct Word {
  std::uint32_t pattern;
  std::uint8_t bits;
};

constexpr Word joined(Word first, std::uint32_t pattern, unsigned bits) {
  return {first.pattern | (pattern << first.bits), static_cast<std::uint8_t>(first.bits + bits)};
}

consteval std::array<Word, kEndMark + 1> make_length_words() {
  std::array<Word, kEndMark + 1> words{};
  for (std::size_t symbol = 0; symbol < kLengthSymbols; ++symbol) {
    const Code code = kLengthCodes[symbol];
    const Word start = joined({1, 1}, code.pattern, code.bits);
    for (unsigned extra = 0; extra < 1u << kLengthExtraBits[symbol]; ++extra) {
      words[kLengthBase[symbol] + extra] = joined(start, extra, kLengthExtraBits[symbol]);
    }
  }
  return words;
}

using LiteralWords = std::array<Word, 256>;

consteval LiteralWords make_literal_words(DataType type) {
  LiteralWords words{};
  for (unsigned character = 0; character < 256; ++character) {
    const Code code = kLiteralCodes[character];
    words[character] = type == DataType::text ? joined({0, 1}, code.pattern, code.bits)
                                              : joined({0, 1}, character, 8);
  }
  return words;
}

constexpr auto kLengthWords = make_length_words();
constexpr LiteralWords kBinaryWords = make_literal_words(DataType::binary);
constexpr LiteralWords kTextWords = make_literal_words(DataType::text);

constexpr unsigned kDictionaryCode = kLargestDictionaryCode;

// A token of the parse, and the bits from it to the end of the piece above it, so that the cheapest
// of several is their minimum.
using Step = std::uint64_t;
constexpr unsigned kCostShift = 32;

constexpr Step step_of(std::uint32_t cost_bits, std::uint32_t length, std::uint32_t distance) {
  return (Step{cost_bits} << kCostShift) | (length << 16) | distance;
}
constexpr std::uint32_t cost_of(Step step) {
  return static_cast<std::uint32_t>(step >> kCostShift);
}
constexpr std::uint32_t length_of(Step step) {
  return static_cast<std::uint32_t>(step >> 16) & 0xFFFF;
}
constexpr std::uint32_t distance_of(Step step) { return static_cast<std::uint32_t>(step) & 0xFFFF; }

// Among lengths of one code only the longest is worth a try beyond this one.
constexpr unsigned kEveryLength = 11;

class Parser {
 public:
  explicit Parser(const LiteralWords& literals) : literals_(literals) {}

  // The cheapest parse of text[begin, end), which the finder has been given; its cost in bits.
  std::size_t parse(const std::uint8_t* text, std::size_t size, MatchFinder& finder) {
    costs_[size] = 0;
    for (std::size_t i = size; i-- > 0;) {
      const std::uint32_t* const costs = &costs_[i];
      Step best = step_of(literals_[text[i]].bits + costs[1], 1, 0);
      unsigned tried = kShortestMatch;
      finder.for_each_match(i, [&](unsigned length, unsigned distance) {
        best = std::min(best, best_of_match(costs, tried, length, distance));
        tried = length + 1;
      });
      steps_[i] = static_cast<std::uint32_t>(best);
      costs_[i] = cost_of(best);
    }
    return costs_[0];
  }

  void write(const std::uint8_t* text, std::size_t size, BitWriter& out) const {
    for (std::size_t i = 0; i < size;) {
      const unsigned length = length_of(steps_[i]);
      if (length == 1) {
        const Word literal = literals_[text[i]];
        out.put(literal.pattern, literal.bits);
      } else {
        put_match(length, distance_of(steps_[i]) - 1, out);
      }
      i += length;
    }
  }

 private:
  static void put_match(unsigned length, unsigned back, BitWriter& out) {
    const unsigned low_bits = length == kShortestMatch ? kPairDistanceBits : kDictionaryCode;
    const Code code = kDistanceCodes[back >> low_bits];
    Word word = kLengthWords[length];
    word = joined(word, code.pattern, code.bits);
    word = joined(word, back & ((1u << low_bits) - 1), low_bits);
    out.put(word.pattern, word.bits);
  }

  // The cheapest of the lengths first to last at this distance.
  static Step best_of_match(const std::uint32_t* costs, unsigned first, unsigned last,
                            unsigned distance) {
    Step best = ~Step{0};
    const unsigned back = distance - 1;
    unsigned length = first;
    if (length == kShortestMatch) {
      if (back < kPairReach) {
        const std::uint32_t bits = kLengthWords[length].bits +
                                   kDistanceCodeBits[back >> kPairDistanceBits] + kPairDistanceBits;
        best = step_of(bits + costs[length], length, distance);
      }
      ++length;
    }
    const std::uint32_t distance_bits =
        kDistanceCodeBits[back >> kDictionaryCode] + kDictionaryCode;
    for (const unsigned stop = std::min(last, kEveryLength); length <= stop; ++length) {
      const std::uint32_t bits = distance_bits + kLengthWords[length].bits;
      best = std::min(best, step_of(bits + costs[length], length, distance));
    }
    if (length > last) return best;
    for (std::size_t symbol = kLengthSymbols; symbol-- > 0;) {
      const unsigned base = kLengthBase[symbol];
      if (base > last) continue;
      if (base < kEveryLength) break;
      const unsigned end =
          std::min({last, base + (1u << kLengthExtraBits[symbol]) - 1, kLongestMatch});
      if (end < length) break;
      const std::uint32_t bits = distance_bits + kLengthWords[end].bits;
      best = std::min(best, step_of(bits + costs[end], end, distance));
    }
    return best;
  }

  const LiteralWords& literals_;
  std::array<std::uint32_t, kPieceBytes + 1> costs_;
  std::array<std::uint32_t, kPieceBytes> steps_;
};

}  // namespace

CoderResult implode(std::span<const std::uint8_t> input, std::span<std::uint8_t> output,
                    DataType type, Effort effort) {
  if (type != DataType::binary && type != DataType::text) return {CoderCode::bad_mode, 0};
  constexpr CoderResult kNotReducible{CoderCode::not_reducible, 0};
  const std::size_t end_bits = kLengthWords[kEndMark].bits;
  if (input.empty()) return kNotReducible;
  const std::size_t limit_bytes = std::min(output.size(), input.size() - 1);
  if (limit_bytes <= kHeadBytes) return kNotReducible;
  // The whole result is known to fit before a bit of it is written.
  std::uint64_t room_bits = std::uint64_t{limit_bytes - kHeadBytes} * 8;
  if (room_bits < end_bits) return kNotReducible;
  room_bits -= end_bits;

  output[0] = static_cast<std::uint8_t>(type);
  output[1] = static_cast<std::uint8_t>(kDictionaryCode);
  BitWriter out(output.subspan(kHeadBytes));
  const auto parser = std::make_unique<Parser>(type == DataType::text ? kTextWords : kBinaryWords);
  const auto finder =
      std::make_unique<MatchFinder>(effort == Effort::smallest ? kSmallestSearch : kStandardSearch);
  for (std::size_t begin = 0; begin < input.size(); begin += kPieceBytes) {
    const std::size_t size = std::min(kPieceBytes, input.size() - begin);
    finder->load(input, begin, size);
    const std::size_t bits = parser->parse(input.data() + begin, size, *finder);
    if (bits > room_bits) return kNotReducible;
    room_bits -= bits;
    parser->write(input.data() + begin, size, out);
  }
  out.put(kLengthWords[kEndMark].pattern, kLengthWords[kEndMark].bits);
  return {CoderCode::done, kHeadBytes + out.finish()};
}

}  // namespace qv::native::cpr
