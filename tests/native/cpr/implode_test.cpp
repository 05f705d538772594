#include "native/cpr/implode.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "native/cpr/block_format.h"
#include "native/cpr/explode.h"
#include "tests/native/cpr/samples.h"

namespace qv::native::cpr {
namespace {

using testing::Bytes;

constexpr std::uint8_t kGuard = 0xA5;

// Compresses into a buffer of the public function's size rule and checks everything that holds for
// any input; the compressed bytes, none where it is not reducible.
Bytes imploded(const Bytes& original, DataType type, Effort effort = Effort::standard) {
  const std::size_t capacity = original.size() + original.size() / 1000 + 16;
  Bytes output(capacity + 8, kGuard);
  const CoderResult result = implode(original, std::span(output).first(capacity), type, effort);
  for (std::size_t i = capacity; i < output.size(); ++i) EXPECT_EQ(output[i], kGuard);
  if (result.code != CoderCode::done) {
    EXPECT_EQ(result.code, CoderCode::not_reducible);
    EXPECT_EQ(result.bytes_written, 0u);
    return {};
  }
  EXPECT_LT(result.bytes_written, original.size());
  output.resize(result.bytes_written);
  return output;
}

void expect_round_trip(const Bytes& original) {
  for (const DataType type : {DataType::binary, DataType::text}) {
    for (const Effort effort : {Effort::standard, Effort::smallest}) {
      const Bytes packed = imploded(original, type, effort);
      if (packed.empty()) continue;
      Bytes back(original.size());
      const CoderResult result = explode(packed, back);
      ASSERT_EQ(result.code, CoderCode::done) << original.size();
      ASSERT_EQ(result.bytes_written, original.size());
      ASSERT_TRUE(back == original) << original.size();
    }
  }
}

TEST(Implode, every_size_up_to_600_comes_back) {
  for (std::size_t size = 0; size <= 600; ++size) {
    for (const Bytes& sample : testing::samples(size)) expect_round_trip(sample);
  }
}

TEST(Implode, sizes_about_a_full_block_come_back) {
  for (const std::size_t size : {4095u, 4096u, 4097u, 32766u, 32767u, 32768u}) {
    for (const Bytes& sample : testing::samples(size)) expect_round_trip(sample);
  }
}

TEST(Implode, buffers_far_beyond_a_block_come_back) {
  for (const Bytes& sample : testing::samples(150001)) expect_round_trip(sample);
}

TEST(Implode, random_texts_of_few_characters_come_back) {
  for (unsigned seed = 0; seed < 300; ++seed) {
    Bytes text = testing::random_bytes(seed * 13 % 3000, seed);
    for (auto& byte : text) byte = static_cast<std::uint8_t>('a' + byte % (2 + seed % 7));
    expect_round_trip(text);
  }
}

TEST(Implode, periodic_texts_of_every_period_to_70_come_back) {
  for (std::size_t period = 1; period <= 70; ++period) {
    Bytes text = testing::random_bytes(1500);
    for (std::size_t i = period; i < text.size(); ++i) text[i] = text[i - period];
    expect_round_trip(text);
  }
}

TEST(Implode, long_repetitions_among_other_bytes_come_back) {
  for (const std::size_t period : {1u, 2u, 3u, 7u, 100u, 517u, 518u, 519u, 4095u, 4096u, 4097u}) {
    for (const std::size_t tail : {0u, 1u, 300u}) {
      Bytes text = testing::wordy_bytes(700);
      const Bytes start = testing::random_bytes(period);
      text.insert(text.end(), start.begin(), start.end());
      while (text.size() < 36000) text.push_back(text[text.size() - period]);
      const Bytes rest = testing::wordy_bytes(tail);
      text.insert(text.end(), rest.begin(), rest.end());
      expect_round_trip(text);
    }
  }
}

TEST(Implode, run_of_a_whole_block_takes_the_fewest_greatest_lengths) {
  // 2 of head, a literal of 9 bits, 63 times 16 + 8 bits for 518 bytes, 13 + 8 for the 132 left and
  // 16 of the end mark.
  EXPECT_EQ(imploded(Bytes(32767), DataType::binary).size(), 2u + (9 + 63 * 24 + 21 + 16 + 7) / 8);
}

TEST(Implode, repetition_just_in_reach_is_used_and_just_beyond_is_not) {
  for (const std::size_t distance : {4096u, 4097u}) {
    Bytes data = testing::random_bytes(distance);
    data.insert(data.end(), data.begin(), data.begin() + 300);
    const Bytes padding(700, 0);
    data.insert(data.end(), padding.begin(), padding.end());
    const Bytes packed = imploded(data, DataType::binary);
    expect_round_trip(data);
    if (distance == 4096) {
      EXPECT_LT(packed.size(), 4690u);
    } else {
      EXPECT_GT(packed.size(), 4900u);
    }
  }
}

TEST(Implode, run_of_zeros_is_golden) {
  // A literal, 135 and 464 zeros from one byte back, the end mark.
  EXPECT_EQ(imploded(Bytes(600), DataType::binary),
            (Bytes{0x00, 0x06, 0x00, 0x82, 0xFF, 0x40, 0x00, 0xF2, 0x40, 0xC0, 0x3F}));
}

TEST(Implode, head_names_mode_and_dictionary) {
  const Bytes original = testing::wordy_bytes(500);
  const Bytes binary = imploded(original, DataType::binary);
  const Bytes text = imploded(original, DataType::text);
  EXPECT_EQ(binary[0], 0);
  EXPECT_EQ(binary[1], 6);
  EXPECT_EQ(text[0], 1);
  EXPECT_EQ(text[1], 6);
}

TEST(Implode, same_input_gives_same_bytes) {
  for (const Bytes& sample : testing::samples(20000)) {
    EXPECT_EQ(imploded(sample, DataType::binary), imploded(sample, DataType::binary));
  }
}

TEST(Implode, smallest_is_never_larger_over_samples) {
  for (const Bytes& sample : testing::samples(32767)) {
    for (const DataType type : {DataType::binary, DataType::text}) {
      EXPECT_LE(imploded(sample, type, Effort::smallest).size(), imploded(sample, type).size());
    }
  }
}

// The bytes of the smallest block there can be: of every length at every position the nearest
// match.
std::size_t fewest_bytes(const Bytes& original, DataType type) {
  using namespace block_format;
  const auto length_bits = [](std::size_t length) {
    std::size_t symbol = 0;
    while (length < kLengthBase[symbol] ||
           (length - kLengthBase[symbol]) >> kLengthExtraBits[symbol])
      ++symbol;
    return 1u + kLengthCodeBits[symbol] + kLengthExtraBits[symbol];
  };
  std::vector<unsigned> bits(original.size() + 1);
  for (std::size_t i = original.size(); i-- > 0;) {
    bits[i] = bits[i + 1] + 1 + (type == DataType::text ? kLiteralCodeBits[original[i]] : 8);
    const std::size_t limit = std::min<std::size_t>(kLongestMatch, original.size() - i);
    std::size_t longest = 1;
    for (std::size_t back = 0; longest < limit && back < std::min(i, kLargestDictionary); ++back) {
      std::size_t length = 0;
      while (length < limit && original[i + length] == original[i + length - back - 1]) ++length;
      for (std::size_t some = longest + 1; some <= length; ++some) {
        const unsigned low_bits = some == kShortestMatch ? kPairDistanceBits : 6;
        if (back >> low_bits >= kDistanceSymbols) continue;
        bits[i] = std::min(bits[i], bits[i + some] + length_bits(some) +
                                        kDistanceCodeBits[back >> low_bits] + low_bits);
      }
      longest = std::max(longest, length);
    }
  }
  return kHeadBytes + (bits[0] + length_bits(kEndMark) + 7) / 8;
}

TEST(Implode, smallest_of_a_text_is_within_a_thousandth_of_the_fewest_bytes) {
  for (unsigned seed = 1; seed <= 3; ++seed) {
    const Bytes sample = testing::wordy_bytes(6000, seed);
    for (const DataType type : {DataType::binary, DataType::text}) {
      const std::size_t packed_bytes = imploded(sample, type, Effort::smallest).size();
      const std::size_t fewest = fewest_bytes(sample, type);
      EXPECT_GE(packed_bytes, fewest);
      EXPECT_LE(packed_bytes, fewest + 1 + fewest / 1000);
    }
  }
}

TEST(Implode, western_text_is_smaller_as_text) {
  const Bytes original = testing::wordy_bytes(2000);
  EXPECT_LT(imploded(original, DataType::text).size(), imploded(original, DataType::binary).size());
}

TEST(Implode, nothing_is_not_reducible) {
  Bytes output(16);
  const CoderResult result = implode({}, output, DataType::binary);
  EXPECT_EQ(result.code, CoderCode::not_reducible);
  EXPECT_EQ(result.bytes_written, 0u);
}

TEST(Implode, random_bytes_are_not_reducible) {
  const Bytes original = testing::random_bytes(32767);
  EXPECT_TRUE(imploded(original, DataType::binary).empty());
  EXPECT_TRUE(imploded(original, DataType::text).empty());
}

TEST(Implode, result_as_large_as_input_is_not_reducible) {
  // Seven equal bytes take 2 of head, 9 + 12 bits, and 16 of the end mark: seven bytes.
  EXPECT_TRUE(imploded(Bytes(7), DataType::binary).empty());
  EXPECT_EQ(imploded(Bytes(8), DataType::binary).size(), 7u);
}

TEST(Implode, unknown_data_type_is_bad_mode) {
  const Bytes original(100);
  Bytes output(200);
  for (const int mode : {-1, 2, 255, 256}) {
    const CoderResult result = implode(original, output, static_cast<DataType>(mode));
    EXPECT_EQ(result.code, CoderCode::bad_mode) << mode;
    EXPECT_EQ(result.bytes_written, 0u);
  }
}

TEST(Implode, output_one_byte_short_is_not_reducible_and_not_overrun) {
  for (const Bytes& sample : testing::samples(3000)) {
    const Bytes packed = imploded(sample, DataType::text);
    if (packed.empty()) continue;
    Bytes output(packed.size() + 8, kGuard);
    const auto run = [&](std::size_t capacity) {
      return implode(sample, std::span(output).first(capacity), DataType::text);
    };
    for (std::size_t short_by = 1; short_by <= packed.size(); short_by += 1 + short_by / 4) {
      const std::size_t capacity = packed.size() - short_by;
      std::fill(output.begin(), output.end(), kGuard);
      EXPECT_EQ(run(capacity).code, CoderCode::not_reducible);
      ASSERT_EQ(output[capacity], kGuard);
    }
    EXPECT_EQ(run(packed.size()).code, CoderCode::done);
    EXPECT_EQ(run(packed.size()).bytes_written, packed.size());
  }
}

}  // namespace
}  // namespace qv::native::cpr
