#include "native/bags/stored_bag.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "native/bags/directory.h"
#include "zlog/format_example.h"

namespace qv::native::bags {
namespace {

using Bytes = std::vector<std::uint8_t>;
using zlog::format_example;
using namespace std::string_literals;

std::string_view directory_of(const Bytes& bag, const BagParts& parts) {
  return {reinterpret_cast<const char*>(bag.data()) + parts.directory, parts.directory_bytes};
}

Bytes bytes_of(const std::string& text) { return {text.begin(), text.end()}; }

std::vector<std::string> names_in(std::string_view directory) {
  std::vector<std::string> found;
  for (Names names(directory); names.next();) found.emplace_back(names.name());
  return found;
}

TEST(StoredBag, the_example_of_the_second_form_reads) {
  const Bytes bag = format_example("property-bag-2.md");
  const BagParts parts = find_bag_2(SpanSource(bag));
  ASSERT_EQ(parts.status, BagStatus::kDone);
  EXPECT_EQ(parts.version, 5);
  EXPECT_EQ(parts.directory, 11U);
  EXPECT_EQ(parts.directory_bytes, 20U);
  EXPECT_EQ(parts.data, 31U);
  EXPECT_EQ(parts.data_bytes, 11U);
  const auto directory = directory_of(bag, parts);
  EXPECT_EQ(names_in(directory), (std::vector<std::string>{"ONE", "TWO"}));
  EXPECT_EQ(find_entry<char>(directory, "TWO"), 10U);
  const std::size_t position = value_position_of(10, 3);
  EXPECT_EQ(directory.substr(position, kPositionBytes), "\x06\0\0\0"s);
  const ValuePlace value = find_value(SpanSource(bag), parts.data + 6 - 1);
  EXPECT_EQ(value.tag, 255);
  EXPECT_EQ(bag[value.data], 'x');
}

TEST(StoredBag, the_example_of_the_first_form_reads) {
  const Bytes bag = format_example("property-bag-1.md");
  const BagParts parts = find_bag_1(SpanSource(bag));
  ASSERT_EQ(parts.status, BagStatus::kDone);
  EXPECT_EQ(parts.version, 5);
  EXPECT_EQ(names_in(directory_of(bag, parts)), std::vector<std::string>{"ONE"});
  EXPECT_EQ(parts.data, 19U);
  EXPECT_EQ(parts.data_bytes, 5U);
}

TEST(StoredBag, a_bag_cut_at_any_byte_has_what_is_left) {
  const Bytes whole = format_example("property-bag-2.md");
  for (std::size_t length = 0; length < whole.size(); ++length) {
    const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
    const BagParts parts = find_bag_2(SpanSource(cut));
    EXPECT_EQ(parts.status, length < 3 ? BagStatus::kNoBag : BagStatus::kDone);
    EXPECT_EQ(parts.version, length < 7 ? 0 : 5);
    EXPECT_LE(parts.directory + parts.directory_bytes, length);
    EXPECT_LE(parts.data + parts.data_bytes, length);
    if (length > 11) {
      EXPECT_EQ(parts.directory_bytes, std::min<std::size_t>(length - 11, 20));
    }
  }
}

TEST(StoredBag, a_first_form_cut_at_any_byte_has_what_is_left) {
  const Bytes whole = format_example("property-bag-1.md");
  for (std::size_t length = 0; length < whole.size(); ++length) {
    const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
    const BagParts parts = find_bag_1(SpanSource(cut));
    EXPECT_EQ(parts.status, length < 5 ? BagStatus::kNoBag : BagStatus::kDone);
    EXPECT_LE(parts.data + parts.data_bytes, length);
  }
}

TEST(StoredBag, another_magic_is_no_bag) {
  for (const char* text : {"PB1xxxxxxxxxxxx", "pb2xxxxxxxxxxxx", "xPB2xxxxxxxxxx"}) {
    EXPECT_EQ(find_bag_2(SpanSource(bytes_of(text))).status, BagStatus::kNoBag);
  }
  EXPECT_EQ(find_bag_1(SpanSource(bytes_of("\x02\x05\x00\x00\x00"s))).status, BagStatus::kNoBag);
}

TEST(StoredBag, sizes_that_no_directory_has_are_told) {
  const BagParts negative = find_bag_2(SpanSource(bytes_of("PB2\1\0\0\0\xFF\xFF\xFF\xFFxy"s)));
  EXPECT_EQ(negative.status, BagStatus::kNegativeSize);
  EXPECT_EQ(negative.version, 1);
  const BagParts large = find_bag_2(SpanSource(bytes_of("PB2\1\0\0\0\xFF\xFF\xFF\x7Fxy"s)));
  EXPECT_EQ(large.status, BagStatus::kTooLarge);
  EXPECT_EQ(large.directory_bytes, 2U);
  EXPECT_EQ(large.data_bytes, 0U);
  const BagParts largest = find_bag_2(SpanSource(bytes_of("PB2\1\0\0\0\xF3\xFF\xFF\x7Fxy"s)));
  EXPECT_EQ(largest.status, BagStatus::kDone);
  const BagParts above = find_bag_2(SpanSource(bytes_of("PB2\1\0\0\0\xF4\xFF\xFF\x7Fxy"s)));
  EXPECT_EQ(above.status, BagStatus::kTooLarge);
}

TEST(Directory, names_are_found_whole) {
  const std::string directory = "\0AB\1\1\0\0\0\0"s + "\0B\1\2\0\0\0\0"s + "\0\1\3\0\0\0\0"s;
  EXPECT_EQ(find_entry<char>(directory, "AB"), 0U);
  EXPECT_EQ(find_entry<char>(directory, "B"), 9U);
  EXPECT_EQ(find_entry<char>(directory, ""), 17U);
  EXPECT_EQ(find_entry<char>(directory, "A"), std::string_view::npos);
  EXPECT_EQ(find_entry<char>(directory, "ab"), std::string_view::npos);
  EXPECT_EQ(find_entry<char>("", "A"), std::string_view::npos);
}

TEST(Directory, names_of_wide_characters_are_found) {
  const std::u16string directory = u"\0\u0416\1\1\0\0\0\0"s + u"\0\u4E2D\1\2\0\0\0\0"s;
  EXPECT_EQ(find_entry<char16_t>(directory, u"\u4E2D"), 8U);
}

TEST(Directory, names_with_characters_0_and_1_confuse_it) {
  const std::string directory = "\0A\1\1\0\0\0\0"s + "\0B\1C\1\6\0\0\0\0"s;
  EXPECT_EQ(find_entry<char>(directory, "B\1C"s), 8U);
  // The part before the character 1 passes for a name of its own.
  EXPECT_EQ(find_entry<char>(directory, "B"), 8U);
  EXPECT_EQ(names_in(directory), (std::vector<std::string>{"A", "B"}));
}

TEST(Directory, an_empty_or_cut_directory_gives_the_names_it_has) {
  EXPECT_EQ(names_in(""), std::vector<std::string>{});
  EXPECT_EQ(names_in("\0"s), std::vector<std::string>{});
  EXPECT_EQ(names_in("\0AB"s), std::vector<std::string>{});
  const std::string cut = "\0AB\1\1\0"s;
  Names<char> names(cut);
  ASSERT_TRUE(names.next());
  EXPECT_EQ(names.name(), "AB");
  EXPECT_EQ(names.value_position(), "\1\0"s);
  EXPECT_FALSE(names.next());
}

}  // namespace
}  // namespace qv::native::bags
