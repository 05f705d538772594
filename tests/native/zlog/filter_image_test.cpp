#include "native/zlog/filter_image.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <random>
#include <vector>

#include "native/cpr/crc32.h"
#include "native/zlog/bit_algebra.h"
#include "native/zlog/bit_walk.h"
#include "tests/native/zlog/format_example.h"
#include "tests/native/zlog/set_model.h"

namespace qv::native::zlog {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes encode(ConstBitSpan set, std::size_t scratch_words = kImageScratchWords) {
  ImageEncoder encoder(set);
  const ImageHead early_head = encoder.head();
  std::vector<std::uint32_t> scratch(scratch_words);
  Bytes image(kImageHeadBytes);
  while (true) {
    const auto piece = encoder.next(scratch);
    if (piece.empty()) break;
    image.insert(image.end(), piece.begin(), piece.end());
  }
  EXPECT_EQ(early_head, encoder.head());
  EXPECT_EQ(image.size(), kImageHeadBytes + early_head.body_bytes);
  std::ranges::copy(write_image_head(early_head), image.begin());
  return image;
}

// Reads as a file reader would: `used` is where the image ends.
std::optional<BitMap> decode(std::span<const std::uint8_t> image, std::size_t* used = nullptr,
                             std::size_t scratch_words = kImageScratchWords) {
  if (image.size() < kImageHeadBytes) return std::nullopt;
  const auto head = read_image_head(image.first<kImageHeadBytes>());
  if (!head) return std::nullopt;
  std::size_t at = kImageHeadBytes;
  ImageDecoder decoder(*head);
  std::vector<std::uint32_t> scratch(scratch_words);
  while (true) {
    const auto room = decoder.room(scratch);
    if (room.empty()) break;
    if (image.size() - at < room.size()) return std::nullopt;
    std::ranges::copy(image.subspan(at, room.size()), room.begin());
    at += room.size();
    if (!decoder.take(room)) return std::nullopt;
  }
  if (used != nullptr) *used = at;
  return decoder.finish();
}

std::uint32_t crc(std::span<const std::uint8_t> bytes) {
  return ~cpr::crc32_update(0xFFFFFFFF, bytes);
}

void put(Bytes& image, std::size_t at, std::uint32_t value, std::size_t bytes = 4) {
  for (std::size_t i = 0; i < bytes; ++i) {
    image[at + i] = static_cast<std::uint8_t>(value >> (8 * i));
  }
}

// Makes both checksums right again after a change.
void seal(Bytes& image) {
  put(image, 16, crc(std::span(image).subspan(kImageHeadBytes)));
  put(image, 20, crc(std::span(image).first(20)));
}

TEST(FilterImage, Comes_back_as_it_was) {
  std::mt19937 random(16);
  for (const std::int32_t bits : kSizes) {
    for (const double share : kShares) {
      const Model model = random_model(random, bits, share);
      const BitMap map = map_of(model);
      const Bytes image = encode(map.view());
      std::size_t used = 0;
      const std::optional<BitMap> again = decode(image, &used);
      ASSERT_TRUE(again) << bits << " " << share;
      EXPECT_EQ(used, image.size());
      EXPECT_EQ(again->bits(), bits);
      EXPECT_EQ(model_of(again->view()), model);
    }
  }
}

TEST(FilterImage, Is_the_same_whatever_the_scratch) {
  std::mt19937 random(17);
  for (const double share : {0.001, 0.02, 0.5}) {
    const Model model = random_model(random, 20011, share);
    const BitMap map = map_of(model);
    const Bytes image = encode(map.view());
    for (const std::size_t scratch : {kMinImageScratchWords, std::size_t{65}, std::size_t{1000}}) {
      EXPECT_EQ(encode(map.view(), scratch), image);
      const std::optional<BitMap> again = decode(image, nullptr, scratch);
      ASSERT_TRUE(again);
      EXPECT_EQ(model_of(again->view()), model);
    }
  }
}

TEST(FilterImage, Body_is_the_smaller_form) {
  BitMap map = *BitMap::make(96);
  EXPECT_EQ(encode(map.view()).size(), kImageHeadBytes);
  set_bit(map.view(), 95, true);
  set_bit(map.view(), 0, true);
  EXPECT_EQ(encode(map.view()).size(), kImageHeadBytes + 8);
  EXPECT_EQ(ImageEncoder(map.view()).head().body, ImageBody::kBitNumbers);
  set_bit(map.view(), 50, true);
  EXPECT_EQ(encode(map.view()).size(), kImageHeadBytes + 12);
  EXPECT_EQ(ImageEncoder(map.view()).head().body, ImageBody::kWords);
  ASSERT_TRUE(fill(map.view(), 96));
  EXPECT_EQ(encode(map.view()).size(), kImageHeadBytes + 12);
}

TEST(FilterImage, Of_a_set_without_bits_is_a_head_alone) {
  const Bytes image = encode(BitMap::make(0)->view());
  EXPECT_EQ(image.size(), kImageHeadBytes);
  const std::optional<BitMap> map = decode(image);
  ASSERT_TRUE(map);
  EXPECT_EQ(map->bits(), 0);
}

TEST(FilterImage, Long_bodies_pass_in_pieces) {
  std::mt19937 random(18);
  for (const std::int32_t share_of_words : {1, 100}) {
    BitMap map = *BitMap::make(5000001);
    for (std::uint32_t& word : map.view().words) {
      if (random() % share_of_words == 0) word = static_cast<std::uint32_t>(random() & random());
    }
    trim(map.view());
    const Bytes image = encode(map.view());
    const std::optional<BitMap> again = decode(image);
    ASSERT_TRUE(again);
    EXPECT_TRUE(std::ranges::equal(again->view().words, map.view().words));
  }
}

TEST(FilterImage, Images_follow_each_other) {
  BitMap first = *BitMap::make(100);
  set_bit(first.view(), 99, true);
  BitMap second = *BitMap::make(33);
  ASSERT_TRUE(fill(second.view(), 33));
  Bytes both = encode(first.view());
  const Bytes tail = encode(second.view());
  both.insert(both.end(), tail.begin(), tail.end());
  std::size_t used = 0;
  std::optional<BitMap> map = decode(both, &used);
  ASSERT_TRUE(map);
  EXPECT_EQ(model_of(map->view()), model_of(first.view()));
  map = decode(std::span(both).subspan(used), &used);
  ASSERT_TRUE(map);
  EXPECT_EQ(model_of(map->view()), model_of(second.view()));
  EXPECT_EQ(used, tail.size());
}

TEST(FilterImage, Of_an_application_s_map_leaves_out_what_lies_past_its_bits) {
  for (const std::int32_t bits : {1, 31, 33, 40, 64}) {
    std::vector<std::uint32_t> words = {0, 0xFFFFFFFF, 0xFFFFFFFF};
    for (const std::uint32_t first : {0U, 0x00000001U, 0xFFFFFFFFU}) {
      words[0] = first;
      const ConstBitSpan set{words, bits};
      const std::optional<BitMap> again = decode(encode(set));
      ASSERT_TRUE(again) << bits;
      EXPECT_EQ(again->bits(), bits);
      EXPECT_EQ(model_of(again->view()), model_of(set));
    }
  }
}

TEST(FilterImage, Worked_example) {
  const Bytes image = format_example("filter-image.md");
  const std::optional<BitMap> map = decode(image);
  ASSERT_TRUE(map);
  EXPECT_EQ(map->bits(), 100);
  EXPECT_EQ(set_bits_of(model_of(map->view())), (std::vector<std::int32_t>{0, 70}));
  EXPECT_EQ(encode(map->view()), image);
}

TEST(FilterImage, Cut_at_any_byte_it_is_refused) {
  std::mt19937 random(19);
  for (const double share : {0.01, 0.5}) {
    const Bytes image = encode(map_of(random_model(random, 999, share)).view());
    for (std::size_t length = 0; length < image.size(); ++length) {
      EXPECT_FALSE(decode(std::span(image).first(length))) << length;
    }
  }
}

TEST(FilterImage, Damaged_in_any_bit_it_is_refused) {
  std::mt19937 random(20);
  for (const double share : {0.01, 0.5}) {
    Bytes image = encode(map_of(random_model(random, 999, share)).view());
    for (std::size_t bit = 0; bit < 8 * image.size(); ++bit) {
      image[bit / 8] ^= static_cast<std::uint8_t>(1 << bit % 8);
      if (bit < 8 * kImageHeadBytes) {
        EXPECT_FALSE(read_image_head(std::span(image).first<kImageHeadBytes>())) << bit;
      }
      EXPECT_FALSE(decode(image)) << bit;
      image[bit / 8] ^= static_cast<std::uint8_t>(1 << bit % 8);
    }
    EXPECT_TRUE(decode(image));
  }
}

TEST(FilterImage, A_head_that_contradicts_itself_is_refused_in_spite_of_right_checksums) {
  struct Change {
    std::size_t at;
    std::uint32_t value;
    std::size_t bytes;
  };
  const Bytes sparse = encode(BitMap::make(96)->view());
  for (const Change& change :
       {Change{0, 'q', 1}, Change{4, 0, 2}, Change{4, 2, 2}, Change{6, 2, 2},  // no such kind
        Change{6, 0, 2},                                                       // words, but no body
        Change{8, 0xFFFFFFFF, 4},                                              // negative size
        Change{8, 0, 4},                     // sparse, nothing to be
        Change{12, 1, 4}, Change{12, 2, 4},  // no whole number
        Change{12, 12, 4},                   // as large as words
        Change{12, 0xFFFFFFFC, 4}}) {
    Bytes image = sparse;
    put(image, change.at, change.value, change.bytes);
    seal(image);
    EXPECT_FALSE(read_image_head(std::span(image).first<kImageHeadBytes>()))
        << change.at << " " << change.value;
  }
  BitMap full = *BitMap::make(96);
  invert(full.view());
  for (const std::uint32_t body_bytes : {0U, 8U, 11U, 13U, 16U, 0x10000000U, 0xFFFFFFFFU}) {
    Bytes image = encode(full.view());
    put(image, 12, body_bytes);
    seal(image);
    EXPECT_FALSE(read_image_head(std::span(image).first<kImageHeadBytes>())) << body_bytes;
  }
}

TEST(FilterImage, Bit_numbers_out_of_order_or_range_are_refused_in_spite_of_right_checksums) {
  BitMap map = *BitMap::make(128);
  set_bit(map.view(), 3, true);
  set_bit(map.view(), 90, true);
  const Bytes good = encode(map.view());
  ASSERT_EQ(good.size(), kImageHeadBytes + 8);
  for (const auto& [first, second] : std::vector<std::pair<std::uint32_t, std::uint32_t>>{
           {90, 3}, {3, 3}, {3, 128}, {3, 0x80000000}, {0xFFFFFFFF, 3}, {128, 3}}) {
    Bytes image = good;
    put(image, 24, first);
    put(image, 28, second);
    seal(image);
    EXPECT_FALSE(decode(image)) << first << " " << second;
  }
}

TEST(FilterImage, Set_bits_past_the_last_one_are_refused_in_spite_of_right_checksums) {
  BitMap map = *BitMap::make(33);
  ASSERT_TRUE(fill(map.view(), 33));
  Bytes image = encode(map.view());
  image[kImageHeadBytes + 4] = 3;
  seal(image);
  EXPECT_FALSE(decode(image));
}

TEST(FilterImage, Words_can_be_asked_for_where_bit_numbers_are_shorter) {
  BitMap map = *BitMap::make(100);
  set_bit(map.view(), 70, true);
  EXPECT_EQ(ImageEncoder(map.view()).head().body, ImageBody::kBitNumbers);
  ImageEncoder encoder(map.view(), BodyChoice::words);
  EXPECT_EQ(encoder.head().body, ImageBody::kWords);
  EXPECT_EQ(encoder.head().body_bytes, 16U);
  const auto head = write_image_head(encoder.head());
  Bytes image(head.begin(), head.end());
  std::vector<std::uint32_t> scratch(kMinImageScratchWords);
  for (auto piece = encoder.next(scratch); !piece.empty(); piece = encoder.next(scratch)) {
    image.insert(image.end(), piece.begin(), piece.end());
  }
  EXPECT_EQ(image.size(), kImageHeadBytes + 16);
  const std::optional<BitMap> again = decode(image);
  ASSERT_TRUE(again);
  EXPECT_EQ(prev_set(again->view(), 100), 70);
  EXPECT_EQ(count(again->view().words), 1U);
}

TEST(FilterImage, Words_of_a_set_with_bits_past_its_last_one_leave_them_out) {
  std::vector<std::uint32_t> words{1U, 0xFFFFFFFFU};
  ImageEncoder encoder({words, 33}, BodyChoice::words);
  EXPECT_EQ(encoder.head().body_bytes, 8U);
  std::vector<std::uint32_t> scratch(kMinImageScratchWords);
  Bytes body;
  for (auto piece = encoder.next(scratch); !piece.empty(); piece = encoder.next(scratch)) {
    body.insert(body.end(), piece.begin(), piece.end());
  }
  EXPECT_EQ(body, (Bytes{1, 0, 0, 0, 1, 0, 0, 0}));
}

TEST(FilterImage, Greatest_size_has_a_small_sparse_image) {
  BitMap map = *BitMap::make(kMaxBits);
  set_bit(map.view(), kMaxBits - 1, true);
  set_bit(map.view(), 77, true);
  const Bytes image = encode(map.view());
  EXPECT_EQ(image.size(), kImageHeadBytes + 8);
  const std::optional<BitMap> again = decode(image);
  ASSERT_TRUE(again);
  EXPECT_EQ(again->bits(), kMaxBits);
  EXPECT_EQ(count(again->view().words), 2U);
  EXPECT_EQ(prev_set(again->view(), kMaxBits), kMaxBits - 1);
}

TEST(FilterImage, Greatest_size_has_a_body_of_256_MiB) {
  BitMap map = *BitMap::make(kMaxBits);
  ASSERT_TRUE(fill(map.view(), kMaxBits));
  const ImageHead head = ImageEncoder(map.view()).head();
  EXPECT_EQ(head.body, ImageBody::kWords);
  EXPECT_EQ(head.body_bytes, std::uint32_t{1} << 28);
  EXPECT_EQ(read_image_head(write_image_head(head)), head);
}

}  // namespace
}  // namespace qv::native::zlog
