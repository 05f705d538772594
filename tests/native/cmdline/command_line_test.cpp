#include "native/cmdline/command_line.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace qv::native::cmdline {
namespace {

constexpr char16_t kMark = 0xFF;

using Texts = std::vector<std::u16string>;

Texts words_of(std::u16string_view line) {
  Texts words;
  Words all(line);
  while (const auto word = all.next()) words.emplace_back(*word);
  return words;
}

TEST(CommandLine, working_line_trims_blanks_and_takes_quotes_out) {
  EXPECT_EQ(working_line(u"  a b  ", kMark), u"a b");
  EXPECT_EQ(working_line(u"\"one two\" three", kMark), u"one\xFFtwo three");
  EXPECT_EQ(working_line(u"a\"b c\"d e", kMark),
            u"a"
            u"b\xFF"
            u"cd e")
      << "in the middle of a word";
  EXPECT_EQ(working_line(u"\"a b\"\"c d\"", kMark),
            u"a\xFF"
            u"bc\xFF"
            u"d");
  EXPECT_EQ(working_line(u"x \"a b", kMark),
            u"x a\xFF"
            u"b")
      << "an unclosed quote";
  EXPECT_EQ(working_line(u"\"\"", kMark), u"");
  EXPECT_EQ(working_line(u"\"  \"", kMark), u"\xFF\xFF") << "quoted blanks are not trimmed";
  EXPECT_EQ(working_line(u"\t a", kMark), u"\t a") << "blanks alone are trimmed";
  EXPECT_EQ(working_line(u"", kMark), u"");
}

TEST(CommandLine, words_are_split_at_every_single_blank) {
  EXPECT_EQ(words_of(u"a b"), (Texts{u"a", u"b"}));
  EXPECT_EQ(words_of(u"a  b"), (Texts{u"a", u"", u"b"}));
  EXPECT_EQ(words_of(u"a"), (Texts{u"a"}));
  EXPECT_EQ(words_of(u"a "), (Texts{u"a", u""}));
  EXPECT_EQ(words_of(u""), Texts());
}

void expect_argument(std::u16string_view word, bool is_named, std::u16string_view name,
                     std::u16string_view value) {
  const Argument argument = read_argument(word, kMark);
  EXPECT_EQ(argument.is_named, is_named);
  EXPECT_EQ(argument.name, name);
  EXPECT_EQ(argument.value, value);
}

TEST(CommandLine, a_word_with_a_switch_is_named) {
  expect_argument(u"/a=1", true, u"a", u"1");
  expect_argument(u"-x", true, u"x", u"");
  expect_argument(u"/a=b=c", true, u"a", u"b=c");
  expect_argument(u"/=c", true, u"", u"c");
  expect_argument(u"/", true, u"", u"");
  expect_argument(u"/a=", true, u"a", u"");
  expect_argument(u"//a", true, u"/a", u"");
  expect_argument(
      u"/a\xFF\xFF=\xFF"
      u"b c\xFF",
      true, u"a", u"b c");
  expect_argument(
      u"/\xFF"
      u"a",
      true, u" a", u"");  // blanks before a name stay
}

TEST(CommandLine, any_other_word_is_a_value_whole) {
  expect_argument(u"a=1", false, u"", u"a=1");
  expect_argument(u"", false, u"", u"");
  expect_argument(
      u"\xFF"
      u"a\xFF",
      false, u"", u" a ");
  expect_argument(u"\xFF/a", false, u"", u" /a");
}

// The same by cutting the line again and again, as it is told.
std::u16string plain_working_line(std::u16string line) {
  while (!line.empty() && line.front() == u' ') line.erase(0, 1);
  while (!line.empty() && line.back() == u' ') line.pop_back();
  for (std::size_t a; (a = line.find(u'"')) != line.npos;) {
    const std::size_t b = std::min(line.find(u'"', a + 1), line.size());
    std::u16string quoted = line.substr(a + 1, b - a - 1);
    for (char16_t& character : quoted) {
      if (character == u' ') character = kMark;
    }
    line = line.substr(0, a) + quoted + (b < line.size() ? line.substr(b + 1) : u"");
  }
  return line;
}

TEST(CommandLine, working_line_is_that_of_cutting_quotes_out_one_by_one) {
  std::mt19937 random(9);
  for (int round = 0; round < 20000; ++round) {
    std::u16string line(random() % 12, 0);
    for (char16_t& character : line) character = u" \"a/="[random() % 5];
    ASSERT_EQ(working_line(line, kMark), plain_working_line(line));
  }
}

}  // namespace
}  // namespace qv::native::cmdline
