#include "native/bags/typed_value.h"

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

#include "zlog/format_example.h"

namespace qv::native::bags {
namespace {

using Bytes = std::vector<std::uint8_t>;
using zlog::format_example;

ValuePlace find(const Bytes& bytes, std::size_t at = 0) {
  return find_value(SpanSource(bytes), at);
}

Bytes data_of(const Bytes& bytes, const ValuePlace& value) {
  const auto begin = bytes.begin() + static_cast<std::ptrdiff_t>(value.data);
  return {begin, begin + static_cast<std::ptrdiff_t>(value.data_bytes)};
}

// An array of `Long` of that shape, with the data length given and no data behind it.
Bytes array_head(std::uint8_t element, const std::vector<std::int32_t>& bounds,
                 std::int32_t data_bytes) {
  Bytes head{32, element, static_cast<std::uint8_t>(bounds.size() / 2), 0};
  const auto put = [&](std::int32_t number) {
    for (int shift = 0; shift < 32; shift += 8) {
      head.push_back(static_cast<std::uint8_t>(static_cast<std::uint32_t>(number) >> shift));
    }
  };
  for (const std::int32_t bound : bounds) put(bound);
  put(data_bytes);
  return head;
}

TEST(TypedValue, the_example_of_the_format_page_reads) {
  const Bytes page = format_example("typed-buffer.md");
  const std::vector<std::tuple<Tag, Bytes>> expected = {
      {Tag::kInteger, {0xFE, 0xFF}},
      {Tag::kLong, {1, 0, 0, 0}},
      {Tag::kSingle, {0, 0, 0xC0, 0x3F}},
      {Tag::kDouble, {0, 0, 0, 0, 0, 0, 0, 0xC0}},
      {Tag::kCurrency, {0xD4, 0x30, 0, 0, 0, 0, 0, 0}},
      {Tag::kDate, {0, 0, 0, 0, 0, 0, 4, 0x40}},
      {Tag::kBoolean, {0xFF, 0xFF}},
      {Tag::kByte, {200}},
      {Tag::kString, {'a', 'b'}},
      {Tag::kShortString, {'a', 'b'}},
      {Tag::kArray, {5, 0, 0, 0, 6, 0, 0, 0}},
  };
  std::size_t at = 0;
  for (const auto& [tag, data] : expected) {
    const ValuePlace value = find(page, at);
    ASSERT_EQ(value.status, ReadStatus::kDone);
    EXPECT_EQ(value.tag, static_cast<std::uint8_t>(tag));
    EXPECT_EQ(data_of(page, value), data);
    if (tag == Tag::kArray) {
      EXPECT_EQ(value.element, 3);
      EXPECT_EQ(value.dimensions, 1U);
      EXPECT_EQ(array_bytes(SpanSource(page), value, 4), 8U);
    }
    at = value.end;
  }
  EXPECT_EQ(at, page.size());
}

TEST(TypedValue, a_value_cut_at_any_byte_is_cut_short) {
  const Bytes page = format_example("typed-buffer.md");
  for (std::size_t at = 0; at < page.size(); at = find(page, at).end) {
    const std::size_t end = find(page, at).end;
    for (std::size_t length = at; length < end; ++length) {
      const Bytes cut(page.begin(), page.begin() + static_cast<std::ptrdiff_t>(length));
      const ValuePlace value = find(cut, at);
      EXPECT_EQ(value.status, ReadStatus::kCutShort) << at << " " << length;
      EXPECT_LE(value.end, length);
    }
  }
}

TEST(TypedValue, a_place_behind_the_end_holds_no_value) {
  EXPECT_EQ(find({}).status, ReadStatus::kCutShort);
  EXPECT_EQ(find({2, 0, 0}, 3).status, ReadStatus::kCutShort);
  EXPECT_EQ(find({2, 0, 0}, 1000).status, ReadStatus::kCutShort);
  EXPECT_EQ(find({2, 0, 0}, static_cast<std::size_t>(-1)).end, static_cast<std::size_t>(-1));
}

TEST(TypedValue, every_other_tag_is_unknown_and_passed) {
  for (int tag = 0; tag < 256; ++tag) {
    const bool known =
        fixed_width(static_cast<std::uint8_t>(tag)) != 0 || tag == 8 || tag == 32 || tag == 255;
    const ValuePlace value = find(Bytes{static_cast<std::uint8_t>(tag), 1, 0, 1, 0, 0, 0, 0, 0});
    EXPECT_EQ(value.status == ReadStatus::kUnknownTag, !known) << tag;
    if (!known) {
      EXPECT_EQ(value.end, 1U);
    }
  }
}

TEST(TypedValue, a_negative_length_is_told) {
  const ValuePlace text = find({255, 0xFF, 0xFF, 0xFF, 0xFF, 'a'});
  EXPECT_EQ(text.status, ReadStatus::kNegativeLength);
  EXPECT_EQ(text.end, 5U);
  const ValuePlace short_text = find({8, 0xFF, 0xFF, 'a'});
  EXPECT_EQ(short_text.status, ReadStatus::kNegativeLength);
  EXPECT_EQ(short_text.end, 3U);
  EXPECT_EQ(find(array_head(3, {1, 1}, -1)).status, ReadStatus::kNegativeLength);
}

TEST(TypedValue, a_length_beyond_the_buffer_is_cut_short) {
  EXPECT_EQ(find({255, 0xFF, 0xFF, 0xFF, 0x7F, 'a'}).status, ReadStatus::kCutShort);
  EXPECT_EQ(find({8, 0xFF, 0x7F, 'a'}).status, ReadStatus::kCutShort);
  EXPECT_EQ(find(array_head(3, {1, 1}, 4)).status, ReadStatus::kCutShort);
}

TEST(TypedValue, empty_texts_and_empty_arrays_read) {
  EXPECT_EQ(find({255, 0, 0, 0, 0}).data_bytes, 0U);
  EXPECT_EQ(find({8, 0, 0}).data_bytes, 0U);
  const Bytes array = array_head(17, {0, -1}, 0);
  EXPECT_EQ(find(array).status, ReadStatus::kDone);
  EXPECT_EQ(array_bytes(SpanSource(array), find(array), 1), 0U);
}

TEST(TypedValue, an_array_without_dimensions_is_cut_short) {
  EXPECT_EQ(find({32, 3, 0, 0, 0, 0, 0, 0}).status, ReadStatus::kCutShort);
  EXPECT_EQ(find({32, 3, 0xFF, 0xFF, 0, 0, 0, 0}).status, ReadStatus::kCutShort);
}

TEST(TypedValue, more_dimensions_than_the_buffer_holds_are_cut_short) {
  Bytes array = array_head(3, {1, 1}, 0);
  array[2] = 0xFF;
  array[3] = 0x7F;
  EXPECT_EQ(find(array).status, ReadStatus::kCutShort);
}

std::optional<std::size_t> bytes_of_shape(std::uint8_t element,
                                          const std::vector<std::int32_t>& bounds) {
  const Bytes array = array_head(element, bounds, 0);
  const ValuePlace place = find(array);
  EXPECT_EQ(place.status, ReadStatus::kDone);
  return array_bytes(SpanSource(array), place, fixed_width(element));
}

TEST(TypedValue, shapes_tell_their_bytes) {
  constexpr std::int32_t kMin = -2147483647 - 1;
  constexpr std::int32_t kMax = 2147483647;
  EXPECT_EQ(bytes_of_shape(3, {1, 2}), 8U);
  EXPECT_EQ(bytes_of_shape(5, {-5, 5, 0, 1, 7, 7}), 176U);
  EXPECT_EQ(bytes_of_shape(17, {1, kMax}), 2147483647U);
  EXPECT_EQ(bytes_of_shape(17, {0, kMax}), std::nullopt);
  EXPECT_EQ(bytes_of_shape(2, {1, kMax}), std::nullopt);
  EXPECT_EQ(bytes_of_shape(17, {kMin, kMax}), std::nullopt);
  EXPECT_EQ(bytes_of_shape(17, {1, 65536, 1, 65536, 1, 65536, 1, 65536, 1, 65536}), std::nullopt);
  EXPECT_EQ(bytes_of_shape(17, {kMin, kMax, kMin, kMax, 1, 0}), 0U);
  EXPECT_EQ(bytes_of_shape(17, {1, 0, kMin, kMax}), 0U);
  EXPECT_EQ(bytes_of_shape(17, {1, -1}), std::nullopt);
  EXPECT_EQ(bytes_of_shape(17, {kMax, kMin}), std::nullopt);
}

TEST(TypedValue, elements_have_a_fixed_width) {
  for (const std::uint8_t element : Bytes{0, 1, 8, 9, 12, 32, 255}) {
    EXPECT_EQ(bytes_of_shape(element, {1, 2}), std::nullopt);
  }
}

}  // namespace
}  // namespace qv::native::bags
