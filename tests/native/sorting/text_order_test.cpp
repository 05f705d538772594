#include "native/sorting/text_order.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace qv::native::sorting {
namespace {

using Texts = std::vector<std::u16string>;

Texts in_order(const Texts& texts) {
  const std::vector<std::u16string_view> views(texts.begin(), texts.end());
  std::vector<std::uint32_t> order(texts.size());
  order_texts(views, order);
  Texts result;
  std::vector<bool> seen(texts.size());
  for (const std::uint32_t place : order) {
    EXPECT_FALSE(seen.at(place));
    seen[place] = true;
    result.push_back(texts[place]);
  }
  return result;
}

void expect_sorted(const Texts& texts) {
  Texts expected = texts;
  std::ranges::sort(expected);
  ASSERT_EQ(in_order(texts), expected);
}

// Characters of few kinds make long common beginnings; character 0 is one of them.
std::u16string random_text(std::mt19937& random, std::size_t most, unsigned kinds) {
  static constexpr std::u16string_view kCharacters(u"\0ab\xE4\x20AC\xD83D\xFFFF", 7);
  std::u16string text(random() % (most + 1), 0);
  for (char16_t& character : text) character = kCharacters[random() % kinds];
  return text;
}

TEST(TextOrder, is_that_of_comparing_by_character_code) {
  std::mt19937 random(8);
  for (const std::size_t count : {0, 1, 2, 11, 12, 13, 300, 2000}) {
    for (const std::size_t most : {1, 3, 4, 5, 9, 40}) {
      for (const unsigned kinds : {1U, 2U, 7U}) {
        Texts texts;
        for (std::size_t i = 0; i < count; ++i) texts.push_back(random_text(random, most, kinds));
        expect_sorted(texts);
      }
    }
  }
}

TEST(TextOrder, a_text_is_less_than_what_it_begins_even_with_characters_0) {
  Texts texts;
  for (std::size_t length = 0; length < 40; ++length)
    texts.insert(texts.begin(), std::u16string(length, 0));
  expect_sorted(texts);
  for (std::size_t length = 0; length < 40; ++length)
    texts.push_back(u"ab" + std::u16string(length, 0));
  expect_sorted(texts);
}

TEST(TextOrder, long_common_beginnings_need_no_deep_stack) {
  Texts texts;
  for (std::size_t i = 0; i < 3000; ++i) texts.push_back(std::u16string(3000 - i, u'x'));
  expect_sorted(texts);
}

TEST(TextOrder, codes_order_and_not_letters) {
  EXPECT_EQ(in_order({u"a", u"B", u"\xE4", u"\xFF21", u"\xD83D"}),
            (Texts{u"B", u"a", u"\xE4", u"\xD83D", u"\xFF21"}));
}

}  // namespace
}  // namespace qv::native::sorting
