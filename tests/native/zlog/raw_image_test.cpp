#include "native/zlog/raw_image.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <random>
#include <vector>

#include "native/zlog/bit_algebra.h"
#include "tests/native/zlog/format_example.h"
#include "tests/native/zlog/set_model.h"

namespace qv::native::zlog {
namespace {

using Bytes = std::vector<std::uint8_t>;

// An older image from memory, as a reader of files takes it.
std::optional<BitMap> read_older(std::span<const std::uint8_t> image) {
  if (image.size() < kOlderImageHeadBytes) return std::nullopt;
  const auto bits = read_older_image_head(image.first<kOlderImageHeadBytes>());
  const auto body = image.subspan(kOlderImageHeadBytes);
  if (!bits || body.size() < raw_image_bytes(*bits)) return std::nullopt;
  std::optional<BitMap> map = BitMap::make(*bits);
  std::ranges::copy(body.first(raw_image_bytes(*bits)), raw_image_of(map->view()).begin());
  trim(map->view());
  return map;
}

Bytes write_older(ConstBitSpan set) {
  const auto head = write_older_image_head(set.bits);
  Bytes image(head.begin(), head.end());
  const auto body = raw_image_of(set);
  image.insert(image.end(), body.begin(), body.end());
  return image;
}

TEST(RawImage, A_byte_has_8_bits) {
  EXPECT_EQ(raw_image_bytes(-1), 0U);
  EXPECT_EQ(raw_image_bytes(0), 0U);
  EXPECT_EQ(raw_image_bytes(1), 1U);
  EXPECT_EQ(raw_image_bytes(8), 1U);
  EXPECT_EQ(raw_image_bytes(9), 2U);
  EXPECT_EQ(raw_image_bytes(kMaxBits), std::size_t{1} << 28);
}

TEST(RawImage, Bit_0_is_the_lowest_of_the_first_byte) {
  std::mt19937 random(14);
  for (const std::int32_t bits : kSizes) {
    const Model model = random_model(random, bits, 0.5);
    const BitMap map = map_of(model);
    Bytes expected(raw_image_bytes(bits));
    for (const std::int32_t bit : set_bits_of(model)) {
      expected[bit / 8] |= static_cast<std::uint8_t>(1 << bit % 8);
    }
    Bytes image(expected.size());
    EXPECT_TRUE(copy_to_raw_image(map.view(), image));
    EXPECT_EQ(image, expected);

    const BitMap again = *from_raw_image(image);
    EXPECT_EQ(again.bits(), static_cast<std::int32_t>(8 * image.size()));
    Model padded = model;
    padded.resize(8 * image.size());
    EXPECT_EQ(model_of(again.view()), padded);
  }
}

TEST(RawImage, A_buffer_too_small_is_not_written) {
  BitMap map = *BitMap::make(9);
  ASSERT_TRUE(fill(map.view(), 9));
  Bytes small = {0x55};
  EXPECT_FALSE(copy_to_raw_image(map.view(), small));
  EXPECT_EQ(small, Bytes{0x55});
  Bytes large = {0x55, 0x55, 0x55};
  EXPECT_TRUE(copy_to_raw_image(map.view(), large));
  EXPECT_EQ(large, (Bytes{0xFF, 0x01, 0x55}));
}

TEST(RawImage, Bits_past_the_end_of_an_application_s_map_are_0) {
  const std::vector<std::uint32_t> words = {0xFFFFFFFF};
  Bytes image(2);
  EXPECT_TRUE(copy_to_raw_image(ConstBitSpan{words, 9}, image));
  EXPECT_EQ(image, (Bytes{0xFF, 0x01}));
}

TEST(RawImage, More_bytes_than_a_set_can_hold_are_refused) {
  const Bytes few = {1};
  // Never read: the length alone is refused.
  EXPECT_FALSE(from_raw_image({few.data(), std::size_t{1} << 28}));
}

TEST(RawImage, Worked_example) {
  const BitMap map = *from_raw_image(format_example("filter-raw-image.md"));
  EXPECT_EQ(map.bits(), 16);
  EXPECT_EQ(set_bits_of(model_of(map.view())), (std::vector<std::int32_t>{0, 3, 8}));
}

TEST(OlderImage, Comes_back_as_it_was) {
  std::mt19937 random(15);
  for (const std::int32_t bits : kSizes) {
    const Model model = random_model(random, bits, 0.3);
    const Bytes image = write_older(map_of(model).view());
    EXPECT_EQ(image.size(), 4 + raw_image_bytes(bits));
    const std::optional<BitMap> map = read_older(image);
    ASSERT_TRUE(map);
    EXPECT_EQ(model_of(map->view()), model);
  }
}

TEST(OlderImage, Worked_example) {
  const std::optional<BitMap> map = read_older(format_example("filter-image-older.md"));
  ASSERT_TRUE(map);
  EXPECT_EQ(map->bits(), 12);
  EXPECT_EQ(set_bits_of(model_of(map->view())), (std::vector<std::int32_t>{0, 3, 8, 11}));
}

TEST(OlderImage, Cut_anywhere_it_is_refused) {
  BitMap map = *BitMap::make(40);
  const Bytes image = write_older(map.view());
  for (std::size_t length = 0; length < image.size(); ++length) {
    EXPECT_FALSE(read_older(std::span(image).first(length))) << length;
  }
}

TEST(OlderImage, Negative_size_is_refused) {
  EXPECT_FALSE(read_older_image_head(std::array<std::uint8_t, 4>{0xFF, 0xFF, 0xFF, 0xFF}));
  EXPECT_FALSE(read_older_image_head(std::array<std::uint8_t, 4>{0x00, 0x00, 0x00, 0x80}));
  EXPECT_EQ(read_older_image_head(std::array<std::uint8_t, 4>{0xFF, 0xFF, 0xFF, 0x7F}), kMaxBits);
  EXPECT_EQ(read_older_image_head(std::array<std::uint8_t, 4>{}), 0);
}

TEST(OlderImage, Bits_past_the_last_one_are_passed_over) {
  const std::optional<BitMap> map = read_older(Bytes{9, 0, 0, 0, 0xFF, 0xFF});
  ASSERT_TRUE(map);
  EXPECT_EQ(count(map->view().words), 9U);
}

}  // namespace
}  // namespace qv::native::zlog
