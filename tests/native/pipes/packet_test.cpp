#include "native/pipes/packet.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "zlog/format_example.h"

namespace qv::native::pipes {
namespace {

using Bytes = std::vector<std::uint8_t>;
using zlog::format_example;

Bytes packet(const Head& head, const Bytes& data) {
  const auto packed = packed_head(head);
  Bytes bytes(packed.size() + data.size());
  std::copy(data.begin(), data.end(), std::copy(packed.begin(), packed.end(), bytes.begin()));
  return bytes;
}

Bytes data_in(const Bytes& bytes) {
  const auto data = data_of(bytes, read_head(bytes));
  return {data.begin(), data.end()};
}

TEST(PipePacket, the_example_of_the_format_page_is_what_is_written_and_read) {
  const Bytes page = format_example("pipe-packet.md");
  const Head head{.request_id = 7, .date_days = 2.5, .data_bytes = 2};
  EXPECT_EQ(packet(head, {'a', 'b'}), page);
  const Head read = read_head(page);
  EXPECT_EQ(read.request_id, 7);
  EXPECT_EQ(read.date_days, 2.5);
  EXPECT_EQ(read.data_bytes, 2);
  EXPECT_EQ(data_in(page), (Bytes{'a', 'b'}));
}

TEST(PipePacket, a_negative_number_has_all_bits_set_and_date_0_none) {
  const auto bytes = packed_head({.request_id = -1, .date_days = 0, .data_bytes = 0});
  EXPECT_EQ(Bytes(bytes.begin(), bytes.end()),
            (Bytes{0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(PipePacket, every_head_comes_back) {
  std::mt19937_64 random(10);
  for (int round = 0; round < 10000; ++round) {
    const Head head{
        .request_id = static_cast<std::int32_t>(random()),
        .date_days = std::ldexp(static_cast<double>(static_cast<std::int64_t>(random())),
                                static_cast<int>(random() % 100) - 100),
        .data_bytes = static_cast<std::int32_t>(random())};
    const Head read = read_head(packed_head(head));
    EXPECT_EQ(read.request_id, head.request_id);
    EXPECT_EQ(read.date_days, head.date_days);
    EXPECT_EQ(read.data_bytes, head.data_bytes);
  }
}

TEST(PipePacket, a_field_cut_short_is_0) {
  const Bytes whole = format_example("pipe-packet.md");
  for (std::size_t length = 0; length <= whole.size(); ++length) {
    const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
    const Head head = read_head(cut);
    EXPECT_EQ(head.request_id, length >= 4 ? 7 : 0) << length;
    EXPECT_EQ(head.date_days, length >= 12 ? 2.5 : 0) << length;
    EXPECT_EQ(head.data_bytes, length >= 16 ? 2 : 0) << length;
    const Bytes data(cut.begin() + static_cast<std::ptrdiff_t>(length < 16 ? length : 16),
                     cut.end());
    EXPECT_EQ(data_in(cut), data) << length;
  }
}

TEST(PipePacket, what_lies_behind_the_data_is_passed_over) {
  Bytes bytes = packet({.request_id = 1, .date_days = 0, .data_bytes = 3}, {1, 2, 3, 4, 5});
  EXPECT_EQ(data_in(bytes), (Bytes{1, 2, 3}));
  bytes = packet({}, Bytes(100001, 9));
  EXPECT_EQ(data_in(bytes), Bytes());
}

TEST(PipePacket, a_length_past_the_end_gives_what_is_there) {
  for (const std::int32_t told : {4, 100001, std::numeric_limits<std::int32_t>::max()}) {
    EXPECT_EQ(data_in(packet({.request_id = 1, .date_days = 0, .data_bytes = told}, {1, 2, 3})),
              (Bytes{1, 2, 3}));
  }
}

}  // namespace
}  // namespace qv::native::pipes
