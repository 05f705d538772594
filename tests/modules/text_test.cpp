#include "automation/text.h"

#include <gtest/gtest.h>

namespace qv {
namespace {

TEST(Text, grow_keeps_the_content_and_adds_characters_0) {
  Text text(L"abc");
  text.grow(5);
  EXPECT_EQ(text.view(), std::wstring_view(L"abc\0\0", 5));
}

TEST(Text, growing_in_steps_moves_the_block_a_logarithmic_number_of_times) {
  Text text;
  int moves = 0;
  for (std::size_t length = 16384; length <= 16384 * 1024; length += 16384) {
    const wchar_t* before = text.data();
    text.grow(length);
    if (text.data() != before) ++moves;
    ASSERT_EQ(text.size(), length);
    ASSERT_EQ(text[length], L'\0');
  }
  EXPECT_LT(moves, 30);
}

TEST(Text, cut_gives_the_spare_room_back) {
  Text text;
  text.grow(100000);
  const wchar_t* grown = text.data();
  text.cut(10);
  EXPECT_NE(text.data(), grown);
  EXPECT_EQ(text.size(), 10U);
}

TEST(Text, appending_a_part_of_itself_works) {
  Text text(L"abc");
  text += text.view().substr(1);
  EXPECT_EQ(text, L"abcbc");
}

}  // namespace
}  // namespace qv
