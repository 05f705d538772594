#include "native/rtlib/c_string.h"

#include <gtest/gtest.h>

#include <cstring>
#include <optional>
#include <random>
#include <string>

namespace qv::native::rtlib {
namespace {

using namespace std::string_view_literals;
constexpr std::size_t kAll = 1000;

std::u16string widened(std::string_view text) {
  std::u16string wide;
  for (const char c : text) wide += static_cast<unsigned char>(c);
  return wide;
}

int sign(int value) { return (value > 0) - (value < 0); }

TEST(CString, first_character_of_a_set) {
  EXPECT_EQ(find_in_set("word two"sv, " '"sv), 4u);
  EXPECT_EQ(find_in_set("l'acqua"sv, " '"sv), 1u);
  EXPECT_EQ(find_in_set("word"sv, " '"sv), std::nullopt);
  EXPECT_EQ(find_in_set(""sv, "a"sv), std::nullopt);
  EXPECT_EQ(find_in_set("a"sv, ""sv), std::nullopt);
}

TEST(CString, first_character_outside_a_set) {
  EXPECT_EQ(find_not_in_set("aab"sv, "a"sv), 2u);
  EXPECT_EQ(find_not_in_set("aaa"sv, "a"sv), std::nullopt);
  EXPECT_EQ(find_not_in_set("abc"sv, ""sv), 0u);
  EXPECT_EQ(find_not_in_set(""sv, ""sv), std::nullopt);
}

TEST(CString, a_character_0_ends_text_and_set) {
  EXPECT_EQ(find_in_set("ab\0c"sv, "c"sv), std::nullopt);
  EXPECT_EQ(find_in_set("abc"sv, "\0c"sv), std::nullopt);
  EXPECT_EQ(find_not_in_set("aa\0b"sv, "a"sv), std::nullopt);
  EXPECT_EQ(c_text("ab\0c"sv), "ab");
  EXPECT_EQ(c_text(u"ab"sv), u"ab");
}

TEST(CString, sets_know_characters_beyond_one_byte) {
  EXPECT_EQ(find_in_set(u"a\u20ACb"sv, u"\u20AC"sv), 1u);
  EXPECT_EQ(find_in_set(u"a\u20ACb"sv, u"\u20AD\u00AC"sv), std::nullopt);
  EXPECT_EQ(find_not_in_set(u"\u20AC\u20ACb"sv, u"\u20AC"sv), 2u);
  EXPECT_EQ(find_in_set("a\xE0"sv, "\xE0"sv), 1u);
}

TEST(CString, comparison_looks_at_no_more_than_count_characters) {
  EXPECT_EQ(compare("abcX"sv, "abcY"sv, 3), 0);
  EXPECT_EQ(compare("abcX"sv, "abcY"sv, 4), -1);
  EXPECT_EQ(compare("b"sv, "a"sv, 0), 0);
  EXPECT_EQ(compare("abc"sv, "ab"sv, kAll), 1);
  EXPECT_EQ(compare("abc"sv, "ab"sv, 2), 0);
  EXPECT_EQ(compare("ab\0x"sv, "ab\0y"sv, kAll), 0);
  EXPECT_EQ(compare("a"sv, "\xE0"sv, 1), -1) << "codes are unsigned";
  EXPECT_EQ(compare("A"sv, "a"sv, 1), -1);
}

TEST(CString, comparison_ignoring_case_folds_ascii_letters_to_small_ones) {
  EXPECT_EQ(compare_ignoring_case("AbC"sv, "aBc"sv, kAll), 0);
  EXPECT_EQ(compare_ignoring_case("_"sv, "A"sv, 1), -1);
  EXPECT_EQ(compare("_"sv, "A"sv, 1), 1);
  EXPECT_EQ(compare_ignoring_case("\xC0"sv, "\xE0"sv, 1), -1) << "accented letters keep their case";
  EXPECT_EQ(compare_ignoring_case(u"ABC\u20AC"sv, u"abc\u20ACd"sv, 4), 0);
}

TEST(CString, last_occurrence) {
  EXPECT_EQ(find_last("a.b.c"sv, '.'), 3u);
  EXPECT_EQ(find_last("a.b\0.c"sv, '.'), 1u);
  EXPECT_EQ(find_last("abc"sv, 'x'), std::nullopt);
  EXPECT_EQ(find_last("abc"sv, '\0'), std::nullopt);
  EXPECT_EQ(find_last(u"\u20ACa\u20AC"sv, u'\u20AC'), 2u);
}

TEST(CString, reversal_stops_at_a_character_0) {
  std::string text = "abcd";
  reverse(std::span<char>(text));
  EXPECT_EQ(text, "dcba");
  std::string with_0("abc\0de", 6);
  reverse(std::span<char>(with_0));
  EXPECT_EQ(with_0, std::string("cba\0de", 6));
  std::u16string wide = u"xy\u20AC";
  reverse(std::span<char16_t>(wide));
  EXPECT_EQ(wide, u"\u20ACyx");
  std::string nothing;
  reverse(std::span<char>(nothing));
  EXPECT_EQ(nothing, "");
}

TEST(CString, random_texts_agree_with_the_run_time_library_in_both_widths) {
  std::mt19937 random(4);
  const auto any_text = [&](std::size_t longest) {
    std::string text(random() % longest, ' ');
    for (char& c : text) c = "abAB_\xE0\xC0z"[random() % 8];
    return text;
  };
  for (int round = 0; round < 20000; ++round) {
    const std::string text = any_text(12);
    const std::string other = any_text(12);
    const std::string set = any_text(4);
    const std::size_t count = random() % 14;
    const std::size_t in = std::strcspn(text.c_str(), set.c_str());
    const std::size_t out = std::strspn(text.c_str(), set.c_str());
    const auto found = [&](std::size_t at) {
      return at == text.size() ? std::nullopt : std::optional(at);
    };
    ASSERT_EQ(find_in_set<char>(text, set), found(in));
    ASSERT_EQ(find_in_set<char16_t>(widened(text), widened(set)), found(in));
    ASSERT_EQ(find_not_in_set<char>(text, set), found(out));
    ASSERT_EQ(find_not_in_set<char16_t>(widened(text), widened(set)), found(out));
    const int order = sign(std::strncmp(text.c_str(), other.c_str(), count));
    ASSERT_EQ(compare<char>(text, other, count), order);
    ASSERT_EQ(compare<char16_t>(widened(text), widened(other), count), order);
    const char* last = std::strrchr(text.c_str(), 'a');
    ASSERT_EQ(find_last<char>(text, 'a'),
              last == nullptr ? std::nullopt
                              : std::optional(static_cast<std::size_t>(last - text.c_str())));
  }
}

}  // namespace
}  // namespace qv::native::rtlib
