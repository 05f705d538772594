#include "native/zstr/mask.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <string_view>

namespace qv::native::zstr {
namespace {

using namespace std::string_literals;
using Mask = std::size_t (*)(std::span<std::uint8_t>);

std::string masked(Mask mask, std::string_view key) {
  std::string text(key);
  auto* bytes = reinterpret_cast<std::uint8_t*>(text.data());
  text.resize(mask(std::span(bytes, text.size())));
  return text;
}

std::string display(std::string_view key) { return masked(Mask_Display, key); }
std::string sorting(std::string_view key) { return masked(Mask_Sort, key); }

TEST(Mask, angle_brackets_show_only) {
  EXPECT_EQ(display("<La >Bibbia"), "La Bibbia");
  EXPECT_EQ(sorting("<La >Bibbia"), "Bibbia");
}

TEST(Mask, at_signs_sort_only) {
  EXPECT_EQ(display("Rossini @1792@G."), "Rossini G.");
  EXPECT_EQ(sorting("Rossini @1792@G."), "Rossini 1792G.");
}

TEST(Mask, quotes_are_literal_for_both) {
  EXPECT_EQ(display("a\"<b>@c@\"d"), "a<b>@c@d");
  EXPECT_EQ(sorting("a\"<b>@c@\"d"), "a<b>@c@d");
}

TEST(Mask, an_unclosed_mark_runs_to_the_end) {
  EXPECT_EQ(display("a<bc"), "abc");
  EXPECT_EQ(sorting("a<bc"), "a");
  EXPECT_EQ(display("a@bc"), "a");
  EXPECT_EQ(sorting("a@bc"), "abc");
  EXPECT_EQ(display("a\"b<c"), "ab<c");
  EXPECT_EQ(sorting("a\"b<c"), "ab<c");
}

TEST(Mask, other_marks_inside_a_mask_are_plain_text) {
  EXPECT_EQ(display("<a@b\"c>d"), "a@b\"cd");
  EXPECT_EQ(sorting("<a@b\"c>d"), "d");
  EXPECT_EQ(sorting("@a<b>\"c@d"), "a<b>\"cd");
  EXPECT_EQ(display("@a<b>\"c@d"), "d");
}

TEST(Mask, a_bracket_that_closes_nothing_is_plain_text) {
  EXPECT_EQ(display("a>b"), "a>b");
  EXPECT_EQ(sorting("a>b"), "a>b");
}

TEST(Mask, empty_masks_vanish) {
  EXPECT_EQ(display("a<>b@@c\"\"d"), "abcd");
  EXPECT_EQ(sorting("a<>b@@c\"\"d"), "abcd");
  EXPECT_EQ(display(""), "");
  EXPECT_EQ(sorting(""), "");
}

TEST(Mask, an_escaped_mark_is_no_mark_and_keeps_its_escape) {
  EXPECT_EQ(display("a\x1B<b\x1B@c"), "a\x1B<b\x1B@c");
  EXPECT_EQ(sorting("a\x1B<b"), "a\x1B<b");
  EXPECT_EQ(sorting("<a\x1B>b>c"), "c");
  EXPECT_EQ(display("<a\x1B>b>c"), "a\x1B>bc");
  EXPECT_EQ(sorting("a\x1B\x1B<b>c"),
            "a\x1B\x1B"
            "c")
      << "an escaped escape escapes nothing";
  EXPECT_EQ(display("a\x1B"), "a\x1B");
}

TEST(Mask, characters_0_are_data) {
  EXPECT_EQ(sorting("a\0<b\0>\0c"s), "a\0\0c"s);
  EXPECT_EQ(display("a\0<b\0>\0c"s), "a\0b\0\0c"s);
}

// The same by cutting the key piece by piece.
std::string naive(std::string_view key, char dropped) {
  std::string result;
  while (!key.empty()) {
    const char mark = key[0];
    if (mark != '<' && mark != '@' && mark != '"') {
      result += mark;
      key.remove_prefix(1);
      continue;
    }
    key.remove_prefix(1);
    const std::size_t end = key.find(mark == '<' ? '>' : mark);
    if (mark != dropped) result += key.substr(0, end);
    key.remove_prefix(end == std::string_view::npos ? key.size() : end + 1);
  }
  return result;
}

TEST(Mask, random_keys_agree_with_cutting_piece_by_piece) {
  std::mt19937 random(20);
  for (int round = 0; round < 50000; ++round) {
    std::string key(random() % 16, ' ');
    for (char& c : key) c = "abc<>@\""[random() % 7];
    ASSERT_EQ(display(key), naive(key, '@')) << key;
    ASSERT_EQ(sorting(key), naive(key, '<')) << key;
  }
}

}  // namespace
}  // namespace qv::native::zstr
