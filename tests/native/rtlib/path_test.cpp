#include "native/rtlib/path.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <random>
#include <string>

namespace qv::native::rtlib {
namespace {

using namespace std::string_view_literals;

struct Expected {
  std::string_view path, drive, dir, fname, ext;
};

TEST(SplitPath, components) {
  const Expected cases[] = {
      {"C:\\APP\\DATA\\SETUP.INI", "C:", "\\APP\\DATA\\", "SETUP", ".INI"},
      {"C:\\a\\b.txt", "C:", "\\a\\", "b", ".txt"},
      {"b.txt", "", "", "b", ".txt"},
      {"C:b.txt", "C:", "", "b", ".txt"},
      {"C:", "C:", "", "", ""},
      {"C:\\", "C:", "\\", "", ""},
      {"", "", "", "", ""},
      {"\\a\\", "", "\\a\\", "", ""},
      {"a/b\\c/d.e", "", "a/b\\c/", "d", ".e"},
      {"c:/x/y", "c:", "/x/", "y", ""},
      {"\\\\server\\share\\dir\\f.x", "", "\\\\server\\share\\dir\\", "f", ".x"},
      {"\\\\server\\share", "", "\\\\server\\", "share", ""},
      {"a.b.c", "", "", "a.b", ".c"},
      {".profile", "", "", "", ".profile"},
      {"a.", "", "", "a", "."},
      {".", "", "", "", "."},
      {"..", "", "", ".", "."},
      {"x.y\\name", "", "x.y\\", "name", ""},
      {"x.y\\.", "", "x.y\\", "", "."},
      {":", "", "", ":", ""},
      {"1:x", "1:", "", "x", ""},
      {"file:stream", "", "", "file:stream", ""},
      {"a b\\c d.e f", "", "a b\\", "c d", ".e f"},
      {"C:\\a\0b.txt"sv, "C:", "\\", "a", ""},
  };
  for (const Expected& expected : cases) {
    const auto parts = split_path(expected.path);
    EXPECT_EQ(parts.drive, expected.drive) << expected.path;
    EXPECT_EQ(parts.dir, expected.dir) << expected.path;
    EXPECT_EQ(parts.fname, expected.fname) << expected.path;
    EXPECT_EQ(parts.ext, expected.ext) << expected.path;
  }
}

TEST(SplitPath, wide_characters) {
  const auto parts = split_path(u"C:\\\u20AC\\\u0416.\u00E0"sv);
  EXPECT_EQ(parts.drive, u"C:");
  EXPECT_EQ(parts.dir, u"\\\u20AC\\");
  EXPECT_EQ(parts.fname, u"\u0416");
  EXPECT_EQ(parts.ext, u".\u00E0");
}

// One component after the other: GCC 12 warns of overlaps where literals are added to strings.
std::string joined(std::initializer_list<std::string_view> pieces) {
  std::string text;
  for (const std::string_view piece : pieces) text += piece;
  return text;
}

std::string repeated(std::size_t count, char c) { return std::string(count, c); }

TEST(SplitPath, a_component_longer_than_its_limit_is_cut) {
  const std::string path =
      joined({"C:\\", repeated(300, 'd'), "\\", repeated(300, 'f'), ".", repeated(300, 'e')});
  const auto parts = split_path(std::string_view(path));
  EXPECT_EQ(parts.drive, "C:");
  EXPECT_EQ(parts.dir, joined({"\\", repeated(254, 'd')}));
  EXPECT_EQ(parts.fname, repeated(255, 'f'));
  EXPECT_EQ(parts.ext, joined({".", repeated(254, 'e')}));
}

TEST(SplitPath, components_at_their_limits_stay_whole) {
  const std::string path =
      joined({repeated(254, 'd'), "\\", repeated(255, 'f'), ".", repeated(254, 'e')});
  const auto parts = split_path(std::string_view(path));
  EXPECT_EQ(parts.dir.size(), 255u);
  EXPECT_EQ(parts.fname.size(), 255u);
  EXPECT_EQ(parts.ext.size(), 255u);
}

std::string made(std::string_view drive, std::string_view dir, std::string_view fname,
                 std::string_view ext, std::size_t room = kMaxPath) {
  std::string path(room, '#');
  path.resize(make_path(PathParts<char>{drive, dir, fname, ext}, std::span<char>(path)));
  return path;
}

TEST(MakePath, adds_what_is_missing) {
  EXPECT_EQ(made("C", "\\a", "b", "txt"), "C:\\a\\b.txt");
  EXPECT_EQ(made("C:", "\\a\\", "b", ".txt"), "C:\\a\\b.txt");
  EXPECT_EQ(made("", "a/", "b", ""), "a/b");
  EXPECT_EQ(made("", "", "b", ""), "b");
  EXPECT_EQ(made("C", "", "", ""), "C:");
  EXPECT_EQ(made("", "a", "", ""), "a\\");
  EXPECT_EQ(made("", "", "", "x"), ".x");
  EXPECT_EQ(made("", "", "", ""), "");
}

TEST(MakePath, of_the_drive_only_the_first_letter_counts) {
  EXPECT_EQ(made("CDE", "", "b", ""), "C:b");
}

TEST(MakePath, a_character_0_ends_a_component) {
  EXPECT_EQ(made("C"sv, "\\a\0x"sv, "b\0y"sv, "\0.t"sv), "C:\\a\\b");
}

TEST(MakePath, is_cut_and_never_overruns) {
  EXPECT_EQ(made("C", "\\abc", "def", "ghi", 6), "C:\\abc");
  EXPECT_EQ(made("C", "\\abc", "def", "ghi", 7), "C:\\abc\\");
  EXPECT_EQ(made("C", "\\abc", "def", "ghi", 1), "C");
  EXPECT_EQ(made("C", "\\abc", "def", "ghi", 0), "");
  EXPECT_EQ(made("", repeated(300, 'd'), repeated(300, 'f'), repeated(300, 'e'), 2000),
            joined({repeated(255, 'd'), "\\", repeated(255, 'f'), ".", repeated(255, 'e')}));
}

TEST(MakePath, puts_together_what_was_split) {
  std::mt19937 random(10);
  for (int round = 0; round < 20000; ++round) {
    std::string path(random() % 30, ' ');
    for (char& c : path) c = "ab\\/.:"[random() % 6];
    const auto parts = split_path(std::string_view(path));
    ASSERT_EQ(made(parts.drive, parts.dir, parts.fname, parts.ext), path);
  }
}

TEST(MakePath, wide_characters) {
  std::u16string out(kMaxPath, u'#');
  const PathParts<char16_t> parts{u"C", u"\\\u20AC", u"b", u"c"};
  out.resize(make_path(parts, std::span<char16_t>(out)));
  EXPECT_EQ(out, u"C:\\\u20AC\\b.c");
}

}  // namespace
}  // namespace qv::native::rtlib
