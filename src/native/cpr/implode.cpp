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

// Measured over texts, programs, logs and tables: a farther standard search buys about 0.1 % of
// size for a tenth of the time, a farther one for the smallest size next to nothing.
constexpr Search kStandardSearch{16, 8};
constexpr Search kSmallestSearch{160, 24};

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

// What a token of some length costs to the end of the piece, in bits, above that length, so that
// the cheapest of several is their minimum.
using Choice = std::uint32_t;
constexpr unsigned kLengthBits = 10;
static_assert(kLongestMatch < 1u << kLengthBits);
static_assert(kPieceBytes * (1 + kLongestLiteralCode) < 1u << (32 - kLengthBits));

constexpr Choice bits_as_choice(std::uint32_t bits) { return bits << kLengthBits; }
constexpr Choice without_length(Choice choice) { return choice >> kLengthBits << kLengthBits; }
constexpr unsigned length_of(Choice choice) { return choice & ((1u << kLengthBits) - 1); }

consteval std::array<Choice, kLongestMatch + 1> make_length_choices() {
  std::array<Choice, kLongestMatch + 1> choices{};
  for (unsigned length = kShortestMatch; length <= kLongestMatch; ++length) {
    choices[length] = bits_as_choice(kLengthWords[length].bits) | length;
  }
  return choices;
}
constexpr auto kLengthChoices = make_length_choices();

// Lengths up to the first of these are all tried; beyond it, the longest one of each code, and the
// whole match.
constexpr std::array<unsigned, 7> kGroupEnds{11, 15, 23, 39, 71, 135, 263};

class Parser {
 public:
  explicit Parser(const LiteralWords& literals) : literals_(literals) {}

  // Finds the cheapest parse of the piece, which the finder has been given; its cost in bits.
  std::size_t parse(const std::uint8_t* piece, std::size_t size, MatchFinder& finder) {
    costs_[size] = 0;
    for (std::size_t end = size; (end = before_repeats(end, finder)) > 0; --end) {
      const std::size_t i = end - 1;
      const Choice* const costs = &costs_[i];
      // The distance rides below the choice, so that the minimum takes it along without a branch.
      std::uint64_t best = std::uint64_t{costs[1] + (bits_as_choice(literals_[piece[i]].bits) | 1)}
                           << 32;
      finder.for_each_match(i, [&](unsigned shortest, unsigned longest, unsigned distance) {
        const Choice choice = best_of_match(costs, shortest, longest, distance - 1);
        best = std::min(best, (std::uint64_t{choice} << 32) | distance);
      });
      const auto choice = static_cast<Choice>(best >> 32);
      costs_[i] = without_length(choice);
      steps_[i] = {static_cast<std::uint16_t>(length_of(choice)), static_cast<std::uint16_t>(best)};
    }
    return costs_[0] >> kLengthBits;
  }

  void write(const std::uint8_t* piece, std::size_t size, BitWriter& out) const {
    for (std::size_t i = 0; i < size; i += steps_[i].length) {
      if (steps_[i].distance == 0) {
        const Word literal = literals_[piece[i]];
        out.put(literal.pattern, literal.bits);
      } else {
        put_match(steps_[i].length, steps_[i].distance - 1u, out);
      }
    }
  }

 private:
  struct Step {
    std::uint16_t length;
    std::uint16_t distance;  // 0: a literal
  };

  static void put_match(unsigned length, unsigned back, BitWriter& out) {
    const unsigned low_bits = length == kShortestMatch ? kPairDistanceBits : kDictionaryCode;
    const Code code = kDistanceCodes[back >> low_bits];
    Word word = kLengthWords[length];
    word = joined(word, code.pattern, code.bits);
    word = joined(word, back & ((1u << low_bits) - 1), low_bits);
    out.put(word.pattern, word.bits);
  }

  // Parses the inside of a long repetition, up to `end`, and tells where it begins: there the
  // greatest length is the best one, a step behind the next, with no need to look for others.
  std::size_t before_repeats(std::size_t end, const MatchFinder& finder) {
    if (finder.longest() != kLongestMatch ||
        steps_[end - 1 + kLongestMatch].length != kLongestMatch)
      return end;
    const unsigned distance = finder.distance_of_longest();
    const Choice cost = without_length(kLengthChoices[kLongestMatch]) +
                        bits_as_choice(distance_bits(kLongestMatch, distance - 1));
    for (std::size_t left = finder.repeats_before(end); left > 0; --left) {
      --end;
      costs_[end] = costs_[end + kLongestMatch] + cost;
      steps_[end] = {kLongestMatch, static_cast<std::uint16_t>(distance)};
    }
    return end;
  }

  static unsigned distance_bits(unsigned length, unsigned back) {
    const unsigned low_bits = length == kShortestMatch ? kPairDistanceBits : kDictionaryCode;
    return kDistanceCodeBits[back >> low_bits] + low_bits;
  }

  static Choice best_of_match(const Choice* costs, unsigned shortest, unsigned longest,
                              unsigned back) {
    if (shortest == kShortestMatch) {
      return costs[shortest] + kLengthChoices[shortest] +
             bits_as_choice(distance_bits(kShortestMatch, back));
    }
    Choice best = costs[longest] + kLengthChoices[longest];
    if (longest > kGroupEnds[0]) {
      for (std::size_t i = 1; i < kGroupEnds.size() && kGroupEnds[i] < longest; ++i) {
        const unsigned end = kGroupEnds[i];
        if (end >= shortest) best = std::min(best, costs[end] + kLengthChoices[end]);
      }
      longest = kGroupEnds[0] + 1;
    }
    for (unsigned length = shortest; length < longest; ++length) {
      best = std::min(best, costs[length] + kLengthChoices[length]);
    }
    return best + bits_as_choice(distance_bits(kLongestMatch, back));
  }

  const LiteralWords& literals_;
  std::array<Choice, kPieceBytes + 1> costs_;
  std::array<Step, kPieceBytes> steps_;
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
