#include "native/cpr/explode.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "native/cpr/block_format.h"
#include "native/cpr/little_endian.h"

namespace qv::native::cpr {
namespace {

using namespace block_format;

// One look at the next kTokenBits bits tells the whole token where it is that short: a literal, or
// a length with its extra bits. Longer lengths say how many extra bits follow; longer literals are
// found in a second table.
constexpr unsigned kTokenBits = 10;
constexpr unsigned kTailBits = 1 + kLongestLiteralCode - kTokenBits;

struct Token {
  std::uint16_t value;  // character, length, or the tail's first entry in the second table
  std::uint8_t bits;    // taken by the token, from its flag to its extra bits
  std::uint8_t kind;    // one of these, or how many of the bits are extra ones not looked at yet
};
constexpr std::uint8_t kLiteral = 0x80;
constexpr std::uint8_t kTail = 0x40;

constexpr Token make_token(std::size_t kind, std::size_t value, unsigned bits) {
  return {static_cast<std::uint16_t>(value), static_cast<std::uint8_t>(bits),
          static_cast<std::uint8_t>(kind)};
}

// Sets every entry of the table that the pattern is the beginning of.
template <std::size_t size>
constexpr void spread(std::array<Token, size>& table, std::size_t first, std::size_t count,
                      std::size_t pattern, unsigned bits, Token token) {
  for (std::size_t i = pattern; i < count; i += std::size_t{1} << bits) table[first + i] = token;
}

using TokenTable = std::array<Token, 1u << kTokenBits>;

constexpr void add_lengths(TokenTable& table) {
  for (std::size_t symbol = 0; symbol < kLengthSymbols; ++symbol) {
    const Code code = kLengthCodes[symbol];
    const unsigned extra_bits = kLengthExtraBits[symbol];
    const unsigned code_bits = 1u + code.bits;
    const unsigned pattern = 1u | (unsigned{code.pattern} << 1);
    if (code_bits + extra_bits > kTokenBits) {
      spread(table, 0, table.size(), pattern, code_bits,
             make_token(extra_bits, kLengthBase[symbol], code_bits + extra_bits));
      continue;
    }
    for (unsigned extra = 0; extra < 1u << extra_bits; ++extra) {
      spread(table, 0, table.size(), pattern | (extra << code_bits), code_bits + extra_bits,
             make_token(0, kLengthBase[symbol] + extra, code_bits + extra_bits));
    }
  }
}

consteval TokenTable make_binary_tokens() {
  TokenTable table{};
  add_lengths(table);
  for (unsigned character = 0; character < 256; ++character) {
    spread(table, 0, table.size(), character << 1, 9, make_token(kLiteral, character, 9));
  }
  return table;
}

constexpr std::size_t kTailEntries = std::size_t{1} << kTailBits;
constexpr std::size_t kMostTails = 32;

struct TextTables {
  TokenTable tokens{};
  std::array<Token, kMostTails * kTailEntries> tails{};
};

consteval TextTables make_text_tables() {
  TextTables tables;
  add_lengths(tables.tokens);
  std::size_t tails = 0;
  for (unsigned character = 0; character < 256; ++character) {
    const Code code = kLiteralCodes[character];
    const unsigned bits = 1u + code.bits;
    const std::size_t pattern = std::size_t{code.pattern} << 1;
    const Token literal = make_token(kLiteral, character, bits);
    if (bits <= kTokenBits) {
      spread(tables.tokens, 0, tables.tokens.size(), pattern, bits, literal);
      continue;
    }
    Token& entry = tables.tokens[pattern & (tables.tokens.size() - 1)];
    if (entry.kind != kTail) {
      entry = make_token(kTail, tails, kTokenBits);
      tails += kTailEntries;
    }
    spread(tables.tails, entry.value, kTailEntries, pattern >> kTokenBits, bits - kTokenBits,
           literal);
  }
  return tables;
}

struct Distance {
  std::uint8_t symbol;
  std::uint8_t bits;  // of its code
};

consteval std::array<Distance, 1u << kLongestDistanceCode> make_distances() {
  std::array<Distance, 1u << kLongestDistanceCode> table{};
  for (std::size_t symbol = 0; symbol < kDistanceSymbols; ++symbol) {
    const Code code = kDistanceCodes[symbol];
    for (std::size_t i = code.pattern; i < table.size(); i += std::size_t{1} << code.bits) {
      table[i] = {static_cast<std::uint8_t>(symbol), code.bits};
    }
  }
  return table;
}

constexpr TokenTable kBinaryTokens = make_binary_tokens();
constexpr TextTables kTextTables = make_text_tables();
constexpr auto kDistances = make_distances();

constexpr bool takes_bits(Token token) { return token.bits != 0; }
static_assert(std::ranges::all_of(kBinaryTokens, takes_bits));
static_assert(std::ranges::all_of(kTextTables.tokens, takes_bits));

constexpr std::ptrdiff_t kWordBytes = 8;
constexpr std::ptrdiff_t kCopyStep = 2 * kWordBytes;

// Bits of the input, first bit lowest. Past the input's end there are zeros, and `overrun` tells
// that some were used.
class BitReader {
 public:
  explicit BitReader(std::span<const std::uint8_t> input)
      : at_(input.data()), end_(input.data() + input.size()) {}

  bool has_word() const { return end_ - at_ >= kWordBytes; }

  // Makes 56 bits or more available; only where has_word().
  void refill_by_word() {
    bits_ |= load_little_endian<std::uint64_t>(at_) << count_;
    at_ += (63 - count_) >> 3;
    count_ |= 56;
  }

  void refill_by_bytes() {
    for (; count_ <= 56 && at_ != end_; count_ += 8) {
      bits_ |= std::uint64_t{*at_++} << count_;
    }
  }

  std::size_t peek(unsigned bits) const {
    return static_cast<std::size_t>(bits_) & ((std::size_t{1} << bits) - 1);
  }

  void skip(unsigned bits) {
    bits_ >>= bits;
    count_ -= static_cast<int>(bits);
  }

  bool overrun() const { return count_ < 0; }

 private:
  const std::uint8_t* at_;
  const std::uint8_t* end_;
  std::uint64_t bits_ = 0;
  int count_ = 0;
};

// Copies `length` bytes from `distance` back; may write up to kCopyStep - 1 bytes more.
void copy_with_slack(std::uint8_t* to, std::size_t distance, std::size_t length) {
  const std::uint8_t* from = to - distance;
  if (distance >= kWordBytes) {
    for (std::size_t done = 0; done < length; done += kCopyStep) {
      std::memcpy(to + done, from + done, kWordBytes);
      std::memcpy(to + done + kWordBytes, from + done + kWordBytes, kWordBytes);
    }
  } else if (distance == 1) {
    std::memset(to, *from, length);
  } else {
    // The first bytes are a period several times over; then whole words repeat at a multiple of it.
    for (std::size_t i = 0; i < kWordBytes; ++i) to[i] = from[i];
    const std::size_t stride = distance * ((kWordBytes + distance - 1) / distance);
    for (std::size_t done = kWordBytes; done < length; done += kWordBytes) {
      std::memcpy(to + done, to + done - stride, kWordBytes);
    }
  }
}

class Decoder {
 public:
  Decoder(std::span<const std::uint8_t> input, std::span<std::uint8_t> output,
          unsigned dictionary_code)
      : in_(input),
        begin_(output.data()),
        out_(begin_),
        end_(begin_ + output.size()),
        dictionary_code_(dictionary_code) {}

  CoderCode run(const TokenTable& tokens) {
    Step step = run_fast(tokens);
    while (step == Step::go_on) step = one_token(tokens);
    return step == Step::end_mark ? CoderCode::done : CoderCode::damaged;
  }

  std::size_t bytes_written() const { return static_cast<std::size_t>(out_ - begin_); }

 private:
  enum class Step { go_on, end_mark, damaged };

  static Token look_up(const TokenTable& tokens, const BitReader& in) {
    return tokens[in.peek(kTokenBits)];
  }

  // Runs while a whole word of input and room for three literals are there, so that neither need
  // be asked for within a round: 30 bits of a match behind two literals of 10 bits at most.
  Step run_fast(const TokenTable& tokens) {
    BitReader in = in_;
    std::uint8_t* out = out_;
    Step step = Step::go_on;
    while (in.has_word() && end_ - out >= 3) {
      in.refill_by_word();
      Token token = look_up(tokens, in);
      if (token.kind == kLiteral) {
        in.skip(token.bits);
        *out++ = static_cast<std::uint8_t>(token.value);
        token = look_up(tokens, in);
        if (token.kind == kLiteral) {
          in.skip(token.bits);
          *out++ = static_cast<std::uint8_t>(token.value);
          token = look_up(tokens, in);
          if (token.kind == kLiteral) {
            in.skip(token.bits);
            *out++ = static_cast<std::uint8_t>(token.value);
            continue;
          }
        }
      }
      if (token.kind == kTail) {
        put_tail(in, out, token);
        continue;
      }
      step = put_match<false>(in, out, token);
      if (step != Step::go_on) break;
    }
    in_ = in;
    out_ = out;
    return step;
  }

  // Any token, with every bound asked for.
  Step one_token(const TokenTable& tokens) {
    in_.refill_by_bytes();
    const Token token = look_up(tokens, in_);
    if (token.kind < kTail) return put_match<true>(in_, out_, token);
    if (out_ == end_) return Step::damaged;
    std::uint8_t* const before = out_;
    if (token.kind == kLiteral) {
      in_.skip(token.bits);
      *out_++ = static_cast<std::uint8_t>(token.value);
    } else {
      put_tail(in_, out_, token);
    }
    if (in_.overrun()) {
      out_ = before;
      return Step::damaged;
    }
    return Step::go_on;
  }

  static void put_tail(BitReader& in, std::uint8_t*& out, Token token) {
    const std::size_t pattern = in.peek(kTokenBits + kTailBits) >> kTokenBits;
    const Token literal = kTextTables.tails[token.value + pattern];
    in.skip(literal.bits);
    *out++ = static_cast<std::uint8_t>(literal.value);
  }

  template <bool may_overrun>
  Step put_match(BitReader& in, std::uint8_t*& out, Token token) const {
    const std::size_t length = token.value + (in.peek(token.bits) >> (token.bits - token.kind));
    in.skip(token.bits);
    if (length == kEndMark) return may_overrun && in.overrun() ? Step::damaged : Step::end_mark;
    const Distance code = kDistances[in.peek(kLongestDistanceCode)];
    const unsigned low_bits = length == kShortestMatch ? kPairDistanceBits : dictionary_code_;
    const std::size_t low = in.peek(code.bits + low_bits) >> code.bits;
    const std::size_t distance = ((std::size_t{code.symbol} << low_bits) | low) + 1;
    in.skip(code.bits + low_bits);
    const auto room = static_cast<std::size_t>(end_ - out);
    if ((may_overrun && in.overrun()) || distance > static_cast<std::size_t>(out - begin_) ||
        length > room) {
      return Step::damaged;
    }
    if (room - length >= kCopyStep) {
      copy_with_slack(out, distance, length);
    } else {
      const std::uint8_t* const from = out - distance;
      for (std::size_t i = 0; i < length; ++i) out[i] = from[i];
    }
    out += length;
    return Step::go_on;
  }

  BitReader in_;
  std::uint8_t* begin_;
  std::uint8_t* out_;
  std::uint8_t* end_;
  unsigned dictionary_code_;
};

}  // namespace

CoderResult explode(std::span<const std::uint8_t> input, std::span<std::uint8_t> output) {
  CoderResult result{CoderCode::damaged, 0};
  if (input.size() >= kHeadBytes) {
    const unsigned mode = input[0];
    const unsigned dictionary_code = input[1];
    if (dictionary_code < kSmallestDictionaryCode || dictionary_code > kLargestDictionaryCode) {
      result.code = CoderCode::bad_dictionary;
    } else if (mode > static_cast<unsigned>(DataType::text)) {
      result.code = CoderCode::bad_mode;
    } else {
      Decoder decoder(input.subspan(kHeadBytes), output, dictionary_code);
      result.code = decoder.run(mode == static_cast<unsigned>(DataType::text) ? kTextTables.tokens
                                                                              : kBinaryTokens);
      result.bytes_written = decoder.bytes_written();
    }
  }
  std::fill(output.begin() + static_cast<std::ptrdiff_t>(result.bytes_written), output.end(),
            std::uint8_t{0});
  return result;
}

}  // namespace qv::native::cpr
