#include "native/setup/file_line.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace qv::native::setup {
namespace {

template <std::size_t N>
std::vector<std::u16string> list(const Pieces<N>& split) {
  return {split.pieces.begin(), split.pieces.begin() + static_cast<std::ptrdiff_t>(split.count)};
}

using List = std::vector<std::u16string>;

TEST(SplitFileLine, fields_stand_between_commas) {
  const auto line = split_file_line(u"@a.dll,$(WinSysPath),,$(Shared),8/6/98,17,1.2.3.4");
  EXPECT_EQ(list(line),
            (List{u"@a.dll", u"$(WinSysPath)", u"", u"$(Shared)", u"8/6/98", u"17", u"1.2.3.4"}));
  EXPECT_EQ(line.pieces[FileLine::kSharing], u"$(Shared)");
}

TEST(SplitFileLine, an_empty_line_has_no_field) { EXPECT_EQ(split_file_line(u"").count, 0u); }

TEST(SplitFileLine, a_line_may_have_fewer_fields) {
  EXPECT_EQ(list(split_file_line(u"@a")), (List{u"@a"}));
  EXPECT_EQ(list(split_file_line(u"@a,")), (List{u"@a", u""}));
  EXPECT_EQ(list(split_file_line(u",,,,,")), (List{u"", u"", u"", u"", u"", u""}));
}

TEST(SplitFileLine, fields_past_the_seventh_are_passed_over) {
  EXPECT_EQ(list(split_file_line(u"1,2,3,4,5,6,7,8,9")),
            (List{u"1", u"2", u"3", u"4", u"5", u"6", u"7"}));
}

TEST(SplitFileLine, nothing_is_quoted_and_blanks_stay) {
  EXPECT_EQ(list(split_file_line(u"\"a,b\", c ")), (List{u"\"a", u"b\"", u" c "}));
}

TEST(NameIn, drops_the_first_character) {
  EXPECT_EQ(name_in(u"@setup.exe"), u"setup.exe");
  EXPECT_EQ(name_in(u"setup.exe"), u"etup.exe");
  EXPECT_EQ(name_in(u"@"), u"");
  EXPECT_EQ(name_in(u""), u"");
}

TEST(RegistrationIn, knows_three_markers_in_any_case) {
  EXPECT_EQ(registration_in(u"$(DLLSELFREGISTER)"), Registration::kLibrary);
  EXPECT_EQ(registration_in(u"$(DLLSelfRegister)"), Registration::kLibrary);
  EXPECT_EQ(registration_in(u"$(EXESELFREGISTER)"), Registration::kProgram);
  EXPECT_EQ(registration_in(u"$(exeselfregister)"), Registration::kProgram);
  EXPECT_EQ(registration_in(u"$(TLBREGISTER)"), Registration::kTypeLibrary);
  EXPECT_EQ(registration_in(u"$(TLBRegister)"), Registration::kTypeLibrary);
}

TEST(RegistrationIn, is_none_for_anything_else) {
  for (const auto* field :
       {u"", u"$(REMOTE)", u"DLLSELFREGISTER", u" $(TLBREGISTER)", u"$(TLBREGISTER) ",
        u"$(DLLSELFREGISTERX)", u"$(DLLSELFREGISTER", u"$(TLBREGI\u017FTER)"}) {
    EXPECT_EQ(registration_in(field), Registration::kNone);
  }
}

TEST(IsShared, by_the_marker_in_any_case) {
  EXPECT_TRUE(is_shared(u"$(Shared)"));
  EXPECT_TRUE(is_shared(u"$(SHARED)"));
  EXPECT_FALSE(is_shared(u""));
  EXPECT_FALSE(is_shared(u"$(Share)"));
  EXPECT_FALSE(is_shared(u"$(Shared) "));
}

struct MomentCase {
  const char16_t* field;
  const char16_t *month, *day, *year, *hour, *minute, *second;
  bool is_afternoon;
};

TEST(SplitMoment, pieces) {
  const MomentCase cases[] = {
      {u"8/6/98 5:30:00 PM", u"8", u"6", u"98", u"5", u"30", u"00", true},
      {u"8/6/98 5:30:00 AM", u"8", u"6", u"98", u"5", u"30", u"00", false},
      {u"12/31/1999 23:59:58", u"12", u"31", u"1999", u"23", u"59", u"58", false},
      {u"1/2/03   4:5:6   pm", u"1", u"2", u"03", u"4", u"5", u"6", true},
      {u"1/2/03 4:5:6 PM ", u"1", u"2", u"03", u"4", u"5", u"6", false},
      {u"1/2/03 4:5:6PM", u"1", u"2", u"03", u"4", u"5", u"6PM", false},
      {u"8/6/98", u"8", u"6", u"98", u"", u"", u"", false},
      {u"8/6/98 ", u"8", u"6", u"98", u"", u"", u"", false},
      {u"8/6/98 5", u"8", u"6", u"98", u"5", u"", u"", false},
      {u"8/6", u"8", u"6", u"", u"", u"", u"", false},
      {u"8", u"8", u"", u"", u"", u"", u"", false},
      {u"", u"", u"", u"", u"", u"", u"", false},
      {u" 8/6/98 5:30:00 PM", u" 8", u"6", u"98", u"5", u"30", u"00", true},
      {u"//", u"", u"", u"", u"", u"", u"", false},
      {u"8-6-98 5.30.00", u"8-6-98 5.30.00", u"", u"", u"", u"", u"", false},
  };
  for (const auto& expected : cases) {
    const auto moment = split_moment(expected.field);
    EXPECT_EQ(moment.month, expected.month);
    EXPECT_EQ(moment.day, expected.day);
    EXPECT_EQ(moment.year, expected.year);
    EXPECT_EQ(moment.hour, expected.hour);
    EXPECT_EQ(moment.minute, expected.minute);
    EXPECT_EQ(moment.second, expected.second);
    EXPECT_EQ(moment.is_afternoon, expected.is_afternoon);
  }
}

TEST(SplitVersion, numbers_stand_between_points) {
  EXPECT_EQ(list(split_version(u"5.0.0.267")), (List{u"5", u"0", u"0", u"267"}));
  EXPECT_EQ(list(split_version(u"5.0")), (List{u"5", u"0"}));
  EXPECT_EQ(list(split_version(u"1.2.3.4.5")), (List{u"1", u"2", u"3", u"4"}));
  EXPECT_EQ(list(split_version(u"...")), (List{u"", u"", u"", u""}));
  EXPECT_EQ(split_version(u"").count, 0u);
}

// The plain way, piece by piece into texts of its own.
List naive_split(const std::u16string& text, char16_t separator, std::size_t most) {
  List pieces;
  if (text.empty()) return pieces;
  pieces.emplace_back();
  for (const char16_t character : text) {
    if (character == separator) {
      pieces.emplace_back();
    } else {
      pieces.back() += character;
    }
  }
  pieces.resize(std::min(pieces.size(), most));
  return pieces;
}

TEST(SplitFileLine, agrees_with_a_plain_split) {
  std::mt19937 random(7);
  constexpr std::u16string_view kLetters = u",,.a@ ";
  for (int round = 0; round < 20000; ++round) {
    std::u16string text;
    for (std::size_t length = random() % 14; length > 0; --length) {
      text += kLetters[random() % kLetters.size()];
    }
    EXPECT_EQ(list(split_file_line(text)), naive_split(text, u',', 7));
    EXPECT_EQ(list(split_version(text)), naive_split(text, u'.', 4));
  }
}

}  // namespace
}  // namespace qv::native::setup
