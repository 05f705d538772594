#include "native/cpr/archive_names.h"

#include <gtest/gtest.h>

#include <string>

namespace qv::native::cpr {
namespace {

using namespace std::string_view_literals;

TEST(ArchiveNames, entry_name_fits_up_to_253_characters) {
  EXPECT_TRUE(entry_name_fits(""));
  EXPECT_TRUE(entry_name_fits(std::string(253, 'a')));
  EXPECT_FALSE(entry_name_fits(std::string(254, 'a')));
}

TEST(ArchiveNames, parent_directory_fits_up_to_254_with_its_separator) {
  EXPECT_TRUE(parent_directory_fits(""));
  EXPECT_TRUE(parent_directory_fits(std::string(253, 'a') + "\\"));
  EXPECT_FALSE(parent_directory_fits(std::string(254, 'a') + "\\"));
}

TEST(ArchiveNames, name_with_character_0_does_not_fit) {
  EXPECT_FALSE(entry_name_fits("a\0b"sv));
  EXPECT_FALSE(parent_directory_fits("a\0"sv));
}

struct NameCase {
  std::string_view name;
  bool stays;
};

TEST(ArchiveNames, only_names_below_the_folder_stay) {
  static constexpr NameCase kCases[] = {
      {"a.txt", true},
      {"sub\\a.txt", true},
      {"sub/deeper/a.txt", true},
      {"sub\\\\a.txt", true},
      {"sub\\", true},
      {".hidden", true},
      {".\\a.txt", true},
      {"a..b", true},
      {"..a", true},
      {"a..", true},
      {"perch\xE8.txt", true},
      {" a", true},
      {"", false},
      {"\\a.txt", false},
      {"/a.txt", false},
      {"\\\\server\\share\\a.txt", false},
      {"C:\\a.txt", false},
      {"C:a.txt", false},
      {"a.txt:stream", false},
      {"sub\\C:", false},
      {"..", false},
      {"..\\a.txt", false},
      {"../a.txt", false},
      {"sub\\..\\..\\a.txt", false},
      {"sub/..", false},
      {"sub\\..\\a.txt", false},
      {"...\\a.txt", false},
      {".. \\a.txt", false},
      {". .\\a.txt", false},
      {"sub\\ ..", false},
      {"a\0.txt"sv, false},
  };
  for (const NameCase& test : kCases) {
    EXPECT_EQ(stays_in_folder(test.name), test.stays) << test.name;
    EXPECT_EQ(stays_in_folder(std::u16string(test.name.begin(), test.name.end())), test.stays)
        << test.name;
  }
}

}  // namespace
}  // namespace qv::native::cpr
