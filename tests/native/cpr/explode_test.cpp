#include "native/cpr/explode.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "native/cpr/block_format.h"
#include "native/cpr/implode.h"
#include "tests/native/cpr/samples.h"

namespace qv::native::cpr {
namespace {

using testing::Bytes;

constexpr std::uint8_t kGuard = 0xA5;

// Writes blocks token by token, sensible or not.
class BlockBuilder {
 public:
  BlockBuilder(unsigned mode, unsigned dictionary_code) : dictionary_code_(dictionary_code) {
    bytes_ = {static_cast<std::uint8_t>(mode), static_cast<std::uint8_t>(dictionary_code)};
  }

  BlockBuilder& literal(std::uint8_t character) {
    put(0, 1);
    if (bytes_[0] == 0) {
      put(character, 8);
    } else {
      put(block_format::kLiteralCodes[character]);
    }
    return *this;
  }

  BlockBuilder& match(unsigned length, unsigned distance) {
    put_length(length);
    const unsigned low_bits = length == 2 ? 2 : dictionary_code_;
    put(block_format::kDistanceCodes[(distance - 1) >> low_bits]);
    put((distance - 1) & ((1u << low_bits) - 1), low_bits);
    return *this;
  }

  Bytes end() {
    put_length(block_format::kEndMark);
    return bytes_;
  }

  Bytes unfinished() const { return bytes_; }

 private:
  void put_length(unsigned length) {
    std::size_t symbol = 0;
    for (std::size_t i = 0; i < block_format::kLengthSymbols; ++i) {
      const unsigned base = block_format::kLengthBase[i];
      if (length >= base && length < base + (1u << block_format::kLengthExtraBits[i])) symbol = i;
    }
    put(1, 1);
    put(block_format::kLengthCodes[symbol]);
    put(length - block_format::kLengthBase[symbol], block_format::kLengthExtraBits[symbol]);
  }

  void put(block_format::Code code) { put(code.pattern, code.bits); }

  void put(unsigned pattern, unsigned bits) {
    for (unsigned i = 0; i < bits; ++i, ++count_) {
      if (count_ % 8 == 0) bytes_.push_back(0);
      bytes_.back() |= static_cast<std::uint8_t>(((pattern >> i) & 1) << (count_ % 8));
    }
  }

  unsigned dictionary_code_;
  Bytes bytes_;
  std::size_t count_ = 0;
};

// Expands behind a guard, and checks what holds for any input.
CoderResult exploded(const Bytes& packed, Bytes& output) {
  Bytes guarded(output.size() + 64, kGuard);
  const CoderResult result = explode(packed, std::span(guarded).first(output.size()));
  EXPECT_LE(result.bytes_written, output.size());
  for (std::size_t i = output.size(); i < guarded.size(); ++i) EXPECT_EQ(guarded[i], kGuard);
  for (std::size_t i = result.bytes_written; i < output.size(); ++i) EXPECT_EQ(guarded[i], 0);
  std::copy_n(guarded.begin(), output.size(), output.begin());
  return result;
}

CoderCode code_of(const Bytes& packed, std::size_t size) {
  Bytes output(size);
  return exploded(packed, output).code;
}

TEST(Explode, published_example_of_the_smallest_dictionary) {
  const Bytes packed{0x00, 0x04, 0x82, 0x24, 0x25, 0x8F, 0x80, 0x7F};
  Bytes output(13);
  EXPECT_EQ(exploded(packed, output).code, CoderCode::done);
  EXPECT_EQ(output, testing::bytes_of("AIAIAIAIAIAIA"));
}

TEST(Explode, every_literal_in_both_modes) {
  for (const unsigned mode : {0u, 1u}) {
    BlockBuilder builder(mode, 6);
    Bytes expected;
    for (unsigned round = 0; round < 2; ++round) {
      for (unsigned character = 0; character < 256; ++character) {
        builder.literal(static_cast<std::uint8_t>(character));
        expected.push_back(static_cast<std::uint8_t>(character));
      }
    }
    Bytes output(expected.size());
    EXPECT_EQ(exploded(builder.end(), output).code, CoderCode::done);
    EXPECT_EQ(output, expected);
  }
}

TEST(Explode, every_length_at_every_short_distance_and_dictionary) {
  const Bytes start = testing::random_bytes(40);
  for (const unsigned dictionary_code : {4u, 5u, 6u}) {
    for (unsigned length = 2; length <= 518; ++length) {
      for (unsigned distance = 1; distance <= 40; distance += 1 + length / 40) {
        BlockBuilder builder(0, dictionary_code);
        for (const std::uint8_t byte : start) builder.literal(byte);
        builder.match(length, distance);
        builder.literal('!');
        Bytes expected = start;
        for (unsigned i = 0; i < length; ++i)
          expected.push_back(expected[expected.size() - distance]);
        expected.push_back('!');
        // Once with the end right behind, once with room for the fast road.
        const Bytes packed = builder.end();
        Bytes output(expected.size());
        ASSERT_EQ(exploded(packed, output).code, CoderCode::done) << length << ' ' << distance;
        ASSERT_EQ(output, expected) << length << ' ' << distance;
        Bytes roomy(expected.size() + 100);
        ASSERT_EQ(exploded(packed, roomy).bytes_written, expected.size());
        roomy.resize(expected.size());
        ASSERT_EQ(roomy, expected) << length << ' ' << distance;
      }
    }
  }
}

TEST(Explode, every_distance_of_every_dictionary) {
  for (const unsigned dictionary_code : {4u, 5u, 6u}) {
    const unsigned reach = 64u << dictionary_code;
    const Bytes start = testing::random_bytes(reach);
    BlockBuilder builder(0, dictionary_code);
    for (const std::uint8_t byte : start) builder.literal(byte);
    Bytes expected = start;
    for (unsigned distance = 1; distance <= reach; ++distance) {
      for (const unsigned length : {3u, 2u}) {
        if (length == 2 && distance > 256) continue;
        builder.match(length, distance);
        for (unsigned i = 0; i < length; ++i)
          expected.push_back(expected[expected.size() - distance]);
      }
    }
    Bytes output(expected.size());
    EXPECT_EQ(exploded(builder.end(), output).code, CoderCode::done);
    EXPECT_EQ(output, expected);
  }
}

TEST(Explode, unknown_dictionary_is_told_before_unknown_mode) {
  for (unsigned code = 0; code < 256; ++code) {
    Bytes packed{2, static_cast<std::uint8_t>(code), 0x01, 0xFF};
    const bool known = code >= 4 && code <= 6;
    EXPECT_EQ(code_of(packed, 10), known ? CoderCode::bad_mode : CoderCode::bad_dictionary) << code;
  }
}

TEST(Explode, every_mode_but_two_is_bad) {
  for (unsigned mode = 2; mode < 256; ++mode) {
    EXPECT_EQ(code_of({static_cast<std::uint8_t>(mode), 6, 0x01, 0xFF}, 10), CoderCode::bad_mode);
  }
}

TEST(Explode, end_mark_alone_is_an_empty_original) {
  const Bytes packed = BlockBuilder(0, 6).end();
  EXPECT_EQ(packed, (Bytes{0, 6, 0x01, 0xFF}));
  EXPECT_EQ(code_of(packed, 0), CoderCode::done);
}

TEST(Explode, block_that_ends_early_is_done_and_rest_is_zero) {
  Bytes output(20);
  const CoderResult result = exploded(BlockBuilder(1, 5).literal('e').match(9, 1).end(), output);
  EXPECT_EQ(result.code, CoderCode::done);
  EXPECT_EQ(result.bytes_written, 10u);
  EXPECT_EQ(output[9], 'e');
  EXPECT_EQ(output[10], 0);
}

TEST(Explode, bytes_behind_end_mark_are_ignored) {
  Bytes packed = BlockBuilder(0, 6).literal('x').end();
  packed.insert(packed.end(), 100, 0xFF);
  Bytes output(1);
  EXPECT_EQ(exploded(packed, output).code, CoderCode::done);
  EXPECT_EQ(output[0], 'x');
}

TEST(Explode, literal_beyond_expected_size_is_damaged) {
  for (const unsigned mode : {0u, 1u}) {
    for (const std::uint8_t character : {std::uint8_t{'e'}, std::uint8_t{0xFF}}) {
      for (std::size_t size = 0; size < 40; ++size) {
        BlockBuilder builder(mode, 6);
        for (std::size_t i = 0; i <= size; ++i) builder.literal(character);
        EXPECT_EQ(code_of(builder.end(), size), CoderCode::damaged) << size;
      }
    }
  }
}

TEST(Explode, match_beyond_expected_size_is_damaged) {
  for (unsigned length = 2; length <= 518; ++length) {
    const Bytes packed = BlockBuilder(0, 6).literal('x').match(length, 1).end();
    EXPECT_EQ(code_of(packed, length), CoderCode::damaged) << length;
    EXPECT_EQ(code_of(packed, length + 1), CoderCode::done) << length;
  }
}

TEST(Explode, distance_before_the_beginning_is_damaged) {
  for (const std::size_t size : {100u, 2000u}) {
    EXPECT_EQ(code_of(BlockBuilder(0, 6).match(2, 1).end(), size), CoderCode::damaged);
    EXPECT_EQ(code_of(BlockBuilder(0, 6).literal('x').match(3, 2).end(), size), CoderCode::damaged);
    EXPECT_EQ(code_of(BlockBuilder(0, 6).literal('x').match(3, 4096).end(), size),
              CoderCode::damaged);
  }
}

TEST(Explode, every_truncation_is_damaged) {
  for (const DataType type : {DataType::binary, DataType::text}) {
    for (const Bytes& sample : testing::samples(1200)) {
      Bytes packed(sample.size());
      const CoderResult result = implode(sample, packed, type);
      if (result.code != CoderCode::done) continue;
      for (std::size_t length = 0; length < result.bytes_written; ++length) {
        const Bytes part(packed.begin(), packed.begin() + static_cast<std::ptrdiff_t>(length));
        ASSERT_EQ(code_of(part, sample.size()), CoderCode::damaged) << length;
      }
    }
  }
}

TEST(Explode, truncation_keeps_what_was_complete) {
  const Bytes original = testing::wordy_bytes(1000);
  Bytes packed(original.size());
  packed.resize(implode(original, packed, DataType::text).bytes_written);
  packed.resize(packed.size() / 2);
  Bytes output(original.size());
  const CoderResult result = exploded(packed, output);
  EXPECT_EQ(result.code, CoderCode::damaged);
  EXPECT_GT(result.bytes_written, 100u);
  EXPECT_TRUE(std::equal(original.begin(),
                         original.begin() + static_cast<std::ptrdiff_t>(result.bytes_written),
                         output.begin()));
}

TEST(Explode, flipped_bits_never_leave_the_buffer) {
  for (const Bytes& sample : testing::samples(700)) {
    Bytes packed(sample.size());
    packed.resize(implode(sample, packed, DataType::text).bytes_written);
    for (std::size_t bit = 0; bit < packed.size() * 8; ++bit) {
      packed[bit / 8] ^= static_cast<std::uint8_t>(1u << (bit % 8));
      code_of(packed, sample.size());
      packed[bit / 8] ^= static_cast<std::uint8_t>(1u << (bit % 8));
    }
  }
}

TEST(Explode, random_input_never_leaves_the_buffer) {
  for (unsigned seed = 0; seed < 2000; ++seed) {
    Bytes packed = testing::random_bytes(2 + seed % 90, seed);
    packed[0] %= 2;
    packed[1] = static_cast<std::uint8_t>(4 + packed[1] % 3);
    code_of(packed, seed % 1000);
  }
}

}  // namespace
}  // namespace qv::native::cpr
