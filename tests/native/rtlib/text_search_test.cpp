#include "native/rtlib/text_search.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "tests/native/rtlib/simd_levels.h"

namespace qv::native::rtlib {
namespace {

using Token = std::optional<std::u16string_view>;

std::vector<std::size_t> places(std::u16string_view text, std::u16string_view wanted,
                                SimdLevel level = simd_level()) {
  std::vector<std::size_t> found;
  Occurrences occurrences(text, wanted, level);
  while (const auto at = occurrences.next()) found.push_back(*at);
  EXPECT_EQ(occurrences.next(), std::nullopt) << "and so it stays";
  return found;
}

using Places = std::vector<std::size_t>;

TEST(TextSearch, occurrences_come_from_the_left_without_overlap) {
  EXPECT_EQ(places(u"abcabc", u"bc"), (Places{1, 4}));
  EXPECT_EQ(places(u"aaaaa", u"aa"), (Places{0, 2}));
  EXPECT_EQ(places(u"abc", u"abcd"), Places());
  EXPECT_EQ(places(u"abc", u"C"), Places()) << "case counts";
}

TEST(TextSearch, an_empty_text_is_nowhere) {
  EXPECT_EQ(places(u"abc", u""), Places());
  EXPECT_EQ(places(u"", u""), Places());
  EXPECT_EQ(places(u"", u"a"), Places());
}

TEST(TextSearch, a_text_may_change_up_to_the_end_of_the_last_occurrence) {
  for (const SimdLevel level : simd_levels()) {
    std::u16string text(100, u'a');
    Occurrences occurrences(text, u"aa", level);
    std::size_t count = 0;
    while (const auto at = occurrences.next()) {
      text.replace(*at, 2, u"ba");
      ++count;
    }
    EXPECT_EQ(count, 50U);
  }
}

TEST(TextSearch, tokens_stand_between_separators) {
  EXPECT_EQ(find_token(u"a$$b", u"$", 0), Token(u"a"));
  EXPECT_EQ(find_token(u"a$$b", u"$", 1), Token(u""));
  EXPECT_EQ(find_token(u"a$$b", u"$", 2), Token(u"b"));
  EXPECT_EQ(find_token(u"a$$b", u"$", 3), std::nullopt);
  EXPECT_EQ(find_token(u"a$", u"$", 1), Token(u""));
  EXPECT_EQ(find_token(u"a$", u"$", 2), std::nullopt);
}

TEST(TextSearch, a_separator_is_one_whole_text_found_without_overlap) {
  EXPECT_EQ(find_token(u"a%%%b", u"%%", 0), Token(u"a"));
  EXPECT_EQ(find_token(u"a%%%b", u"%%", 1), Token(u"%b"));
  EXPECT_EQ(find_token(u"a%%%%b", u"%%", 1), Token(u""));
  EXPECT_EQ(find_token(u"a%b", u"%%", 0), Token(u"a%b"));
}

TEST(TextSearch, an_empty_separator_separates_nothing) {
  EXPECT_EQ(find_token(u"ab", u"", 0), Token(u"ab"));
  EXPECT_EQ(find_token(u"ab", u"", 1), std::nullopt);
}

std::vector<std::u16string> tokens_by_cutting(std::u16string text,
                                              const std::u16string& separator) {
  std::vector<std::u16string> tokens;
  std::size_t end = 0;
  while ((end = text.find(separator)) != std::u16string::npos) {
    tokens.push_back(text.substr(0, end));
    text.erase(0, end + separator.size());
  }
  tokens.push_back(text);
  return tokens;
}

TEST(TextSearch, random_texts_agree_with_plain_search_at_every_level) {
  std::mt19937 random(7);
  for (int round = 0; round < 3000; ++round) {
    std::u16string text(random() % 200, u' ');
    const std::size_t range = 2 + random() % 3;
    for (char16_t& c : text) c = u"ab\u0161\u6100"[random() % range];
    std::u16string wanted(1 + random() % 3, u' ');
    for (char16_t& c : wanted) c = u"ab\u0161\u6100"[random() % range];
    const auto tokens = tokens_by_cutting(text, wanted);
    Places expected;
    std::size_t at = 0;
    for (; (at = text.find(wanted, at)) != std::u16string::npos; at += wanted.size()) {
      expected.push_back(at);
    }
    for (const SimdLevel level : simd_levels()) {
      ASSERT_EQ(places(text, wanted, level), expected);
      for (std::size_t number = 0; number <= tokens.size(); ++number) {
        const auto token = find_token(text, wanted, number, level);
        ASSERT_EQ(token.has_value(), number < tokens.size());
        if (token) {
          ASSERT_EQ(*token, tokens[number]);
        }
      }
    }
  }
}

}  // namespace
}  // namespace qv::native::rtlib
