#include "native/rtlib/tokenizer.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>
#include <vector>

namespace qv::native::rtlib {
namespace {

using namespace std::string_view_literals;

std::vector<std::size_t> positions(std::string_view text, std::string_view delimiters) {
  Tokenizer<char> tokenizer;
  tokenizer.start(text);
  std::vector<std::size_t> found;
  while (const auto token = tokenizer.next(delimiters)) found.push_back(token->position);
  return found;
}

using Positions = std::vector<std::size_t>;

TEST(Tokenizer, positions_are_those_in_the_text_that_was_started) {
  EXPECT_EQ(positions("one, two,,three", ", "), (Positions{0, 5, 10}));
  EXPECT_EQ(positions("  x ", " "), (Positions{2}));
}

TEST(Tokenizer, a_text_of_delimiters_alone_has_no_token) {
  EXPECT_TRUE(positions(",,,", ",").empty());
  EXPECT_TRUE(positions("", ",").empty());
}

TEST(Tokenizer, without_delimiters_the_rest_is_one_token) {
  EXPECT_EQ(positions("a b", ""), (Positions{0}));
}

TEST(Tokenizer, stays_at_the_end) {
  Tokenizer<char> tokenizer;
  tokenizer.start("a"sv);
  EXPECT_TRUE(tokenizer.next(","sv));
  EXPECT_FALSE(tokenizer.next(","sv));
  EXPECT_FALSE(tokenizer.next(""sv));
}

TEST(Tokenizer, nothing_started_has_no_token) {
  Tokenizer<char16_t> tokenizer;
  EXPECT_FALSE(tokenizer.next(u","sv));
}

TEST(Tokenizer, a_new_text_forgets_the_old_one) {
  Tokenizer<char16_t> tokenizer;
  tokenizer.start(u"a,b"sv);
  EXPECT_EQ(tokenizer.next(u","sv)->position, 0u);
  tokenizer.start(u"\u20AC;xy"sv);
  EXPECT_EQ(tokenizer.next(u";"sv)->length, 1u);
  const auto token = tokenizer.next(u";"sv);
  EXPECT_EQ(token->position, 2u);
  EXPECT_EQ(token->length, 2u);
  EXPECT_FALSE(tokenizer.next(u";"sv));
}

TEST(Tokenizer, keeps_its_own_copy_of_the_text) {
  Tokenizer<char> tokenizer;
  {
    std::string text = "first second and more than a short text holds";
    tokenizer.start(std::string_view(text));
    text.assign(text.size(), ' ');
  }
  EXPECT_EQ(tokenizer.next(" "sv)->length, 5u);
  EXPECT_EQ(tokenizer.next(" "sv)->position, 6u);
}

TEST(Tokenizer, the_delimiters_may_change_between_tokens) {
  Tokenizer<char> tokenizer;
  tokenizer.start("key=a b"sv);
  EXPECT_EQ(tokenizer.next("="sv)->position, 0u);
  EXPECT_EQ(tokenizer.next("!"sv)->position, 4u) << "the = went with the first token";
  EXPECT_FALSE(tokenizer.next("!"sv));
}

TEST(Tokenizer, a_character_0_ends_the_text) {
  EXPECT_EQ(positions("a,b\0,c"sv, ","), (Positions{0, 2}));
}

TEST(Tokenizer, random_walks_agree_with_the_run_time_library) {
  std::mt19937 random(5);
  for (int round = 0; round < 5000; ++round) {
    std::string text(random() % 20, ' ');
    for (char& c : text) c = "ab,; "[random() % 5];
    Tokenizer<char> tokenizer;
    tokenizer.start(std::string_view(text));
    std::string worn = text;
    char* argument = worn.data();
    for (;;) {
      const std::string delimiters = std::string(",; ").substr(random() % 3);
      const char* expected = std::strtok(argument, delimiters.c_str());
      argument = nullptr;
      const auto token = tokenizer.next(std::string_view(delimiters));
      ASSERT_EQ(token.has_value(), expected != nullptr) << text;
      if (!token) break;
      ASSERT_EQ(token->position, static_cast<std::size_t>(expected - worn.data())) << text;
      ASSERT_EQ(token->length, std::strlen(expected)) << text;
    }
  }
}

}  // namespace
}  // namespace qv::native::rtlib
