#include "native/setup/path_macro.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace qv::native::setup {
namespace {

using namespace std::string_literals;

TEST(Replaced, replaces_every_occurrence_in_any_case) {
  EXPECT_EQ(replaced(u"$(a)x$(A)y", u"$(a)", u"C:\\"), u"C:\\xC:\\y");
  EXPECT_EQ(replaced(u"$(WinPath)", u"$(WINPATH)", u""), u"");
  EXPECT_EQ(replaced(u"aaa", u"AA", u"b"), u"ba");
}

TEST(Replaced, looks_at_no_value_again) {
  EXPECT_EQ(replaced(u"$(a)", u"$(a)", u"x$(a)"), u"x$(a)");
  EXPECT_EQ(replaced(u"$($(a)a)", u"$(a)", u"$(a)"), u"$($(a)a)");
}

TEST(Replaced, is_none_without_an_occurrence) {
  EXPECT_EQ(replaced(u"$(b)", u"$(a)", u"x"), std::nullopt);
  EXPECT_EQ(replaced(u"", u"$(a)", u"x"), std::nullopt);
  EXPECT_EQ(replaced(u"abc", u"", u"x"), std::nullopt);
  EXPECT_EQ(replaced(u"$(", u"$(a)", u"x"), std::nullopt);
}

TEST(Replaced, keeps_characters_of_code_0) {
  EXPECT_EQ(replaced(u"a\0b"s, u"B", u"\0c"s), u"a\0\0c"s);
}

TEST(Replaced, folds_the_letters_A_to_Z_and_no_other) {
  EXPECT_EQ(replaced(u"\u00E8", u"\u00C8", u"x"), std::nullopt);
  EXPECT_EQ(replaced(u"[", u"{", u"x"), std::nullopt);
  EXPECT_EQ(replaced(u"@", u"`", u"x"), std::nullopt);
}

TEST(Holds, any_case) {
  EXPECT_TRUE(holds(u"x$(WinPath)", u"$(winpath)"));
  EXPECT_FALSE(holds(u"x$(WinPath", u"$(winpath)"));
  EXPECT_FALSE(holds(u"x", u""));
}

TEST(Backslashes, come_back_as_they_were) {
  for (const auto* name : {u"", u"\\", u"\\\\", u"C:\\a\\\\b\\", u"\\\\server\\share\\a"}) {
    EXPECT_EQ(join_backslashes(mark_backslashes(name)), name);
  }
  EXPECT_EQ(mark_backslashes(u"a\\b"),
            u"a\x1B\x0B"
            u"b");
}

TEST(Backslashes, of_name_and_value_that_meet_are_one) {
  const auto resolved = [](std::u16string_view name, std::u16string_view value) {
    return join_backslashes(replaced(mark_backslashes(name), u"$(a)", value).value());
  };
  EXPECT_EQ(resolved(u"$(a)\\x", u"C:\\w\\"), u"C:\\w\\x");
  EXPECT_EQ(resolved(u"$(a)\\x", u"C:\\w"), u"C:\\w\\x");
  EXPECT_EQ(resolved(u"$(a)x", u"C:\\w\\"), u"C:\\w\\x");
  EXPECT_EQ(resolved(u"x\\$(a)", u"\\w"), u"x\\w");
  EXPECT_EQ(resolved(u"$(a)\\$(a)", u"\\w\\"), u"\\w\\\\w\\");
  EXPECT_EQ(resolved(u"$(a)\\\\x", u"C:\\w\\"), u"C:\\w\\\\x");
  EXPECT_EQ(resolved(u"$(a)$(a)", u"\\w\\"), u"\\w\\\\w\\");
}

TEST(FindProgramMacro, finds_the_first_in_any_case) {
  const std::u16string text = u"x$(setuppath:a b.exe)$(SetupPath:c)";
  const auto macro = find_program_macro(text);
  ASSERT_TRUE(macro);
  EXPECT_EQ(macro->whole, u"$(setuppath:a b.exe)");
  EXPECT_EQ(macro->program, u"a b.exe");
  EXPECT_TRUE(macro->is_closed);
}

TEST(FindProgramMacro, without_its_bracket_goes_to_the_end) {
  const auto macro = find_program_macro(u"x$(SetupPath:a.exe");
  ASSERT_TRUE(macro);
  EXPECT_EQ(macro->whole, u"$(SetupPath:a.exe");
  EXPECT_EQ(macro->program, u"a.exe");
  EXPECT_FALSE(macro->is_closed);
}

TEST(FindProgramMacro, may_name_no_program) {
  const auto macro = find_program_macro(u"$(SetupPath:)");
  ASSERT_TRUE(macro);
  EXPECT_EQ(macro->program, u"");
  EXPECT_TRUE(macro->is_closed);
}

TEST(FindProgramMacro, is_none_in_other_texts) {
  EXPECT_FALSE(find_program_macro(u""));
  EXPECT_FALSE(find_program_macro(u"$(SetupPath)"));
  EXPECT_FALSE(find_program_macro(u"(SetupPath:a)"));
}

TEST(FolderAbove, is_the_path_before_its_last_backslash) {
  EXPECT_EQ(folder_above(u"C:\\a\\b"), u"C:\\a");
  EXPECT_EQ(folder_above(u"C:\\a\\"), u"C:\\a");
  EXPECT_EQ(folder_above(u"C:\\"), u"C:");
  EXPECT_EQ(folder_above(u"C:"), u"C:");
  EXPECT_EQ(folder_above(u""), u"");
}

TEST(RelativeName, begins_with_one_or_two_points) {
  auto name = relative_name(u".\\x", u"C:\\App");
  ASSERT_TRUE(name);
  EXPECT_EQ(name->folder, u"C:\\App");
  EXPECT_EQ(name->name, u"x");
  name = relative_name(u"..\\..\\x", u"C:\\a\\b\\c");
  ASSERT_TRUE(name);
  EXPECT_EQ(name->folder, u"C:\\a");
  EXPECT_EQ(name->name, u"x");
  name = relative_name(u"..\\..\\..\\x", u"C:\\a");
  ASSERT_TRUE(name);
  EXPECT_EQ(name->folder, u"C:");
  EXPECT_EQ(name->name, u"x");
}

TEST(RelativeName, goes_up_at_its_beginning_alone) {
  auto name = relative_name(u".\\..\\x", u"C:\\App");
  ASSERT_TRUE(name);
  EXPECT_EQ(name->folder, u"C:\\App");
  EXPECT_EQ(name->name, u"..\\x");
  name = relative_name(u"..\\.\\..\\x", u"C:\\a\\b");
  ASSERT_TRUE(name);
  EXPECT_EQ(name->folder, u"C:\\a");
  EXPECT_EQ(name->name, u".\\..\\x");
}

TEST(RelativeName, is_none_for_other_names) {
  for (const auto* name : {u"", u".", u"..", u"x", u"./x", u"...\\x", u"\\.\\x", u"C:.\\x"}) {
    EXPECT_FALSE(relative_name(name, u"C:\\App"));
  }
}

// Three passes over the text, each the plain way.
std::u16string naive_pass(const std::u16string& text, std::u16string_view wanted) {
  std::u16string result;
  for (std::size_t at = 0; at < text.size();) {
    if (text.compare(at, wanted.size(), wanted) == 0) {
      result += u'\\';
      at += wanted.size();
    } else {
      result += text[at++];
    }
  }
  return result;
}

TEST(Backslashes, agree_with_three_plain_passes) {
  std::mt19937 random(11);
  constexpr std::u16string_view kCharacters =
      u"\\\x1B\x0B\x1B\x0B"
      u"a";
  for (int round = 0; round < 20000; ++round) {
    std::u16string text;
    for (std::size_t length = random() % 16; length > 0; --length) {
      text += kCharacters[random() % kCharacters.size()];
    }
    auto expected = naive_pass(text, u"\x1B\x0B\\");
    expected = naive_pass(expected, u"\\\x1B\x0B");
    expected = naive_pass(expected, u"\x1B\x0B");
    EXPECT_EQ(join_backslashes(text), expected);
  }
}

}  // namespace
}  // namespace qv::native::setup
