#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "native/rtlib/path.h"

namespace qv::native::rtlib {
namespace {

using namespace std::string_view_literals;

std::optional<std::string> full(std::string_view path, std::string_view current = "C:\\work\\sub",
                                std::size_t room = kMaxPath) {
  std::string out(room, '#');
  const auto length = full_path(path, current, std::span<char>(out));
  if (!length) return std::nullopt;
  return out.substr(0, *length);
}

TEST(FullPath, relative_paths_begin_at_the_current_folder) {
  EXPECT_EQ(full("a\\b.txt"), "C:\\work\\sub\\a\\b.txt");
  EXPECT_EQ(full("a", "C:\\"), "C:\\a");
  EXPECT_EQ(full("."), "C:\\work\\sub");
  EXPECT_EQ(full(".."), "C:\\work");
  EXPECT_EQ(full("..\\..\\x"), "C:\\x");
}

TEST(FullPath, an_empty_path_is_the_current_folder) {
  EXPECT_EQ(full(""), "C:\\work\\sub");
  EXPECT_EQ(full("", "C:\\"), "C:\\");
}

TEST(FullPath, a_rooted_path_takes_the_current_root) {
  EXPECT_EQ(full("\\a"), "C:\\a");
  EXPECT_EQ(full("/"), "C:\\");
  EXPECT_EQ(full("\\a", "\\\\srv\\share\\dir"), "\\\\srv\\share\\a");
}

TEST(FullPath, a_path_on_a_drive_begins_at_the_folder_given_for_it) {
  EXPECT_EQ(full("D:x", "D:\\data"), "D:\\data\\x");
  EXPECT_EQ(full("D:", "D:\\data"), "D:\\data");
  EXPECT_EQ(full("D:..", "D:\\data\\"), "D:\\");
}

TEST(FullPath, absolute_paths_stay) {
  EXPECT_EQ(full("C:\\a\\b.txt"), "C:\\a\\b.txt");
  EXPECT_EQ(full("C:\\a\\"), "C:\\a\\");
  EXPECT_EQ(full("\\\\srv\\share\\a"), "\\\\srv\\share\\a");
  EXPECT_EQ(full("\\\\srv\\share"), "\\\\srv\\share");
  EXPECT_EQ(full("\\\\.\\pipe\\x"), "\\\\.\\pipe\\x");
}

TEST(FullPath, a_bare_device_root_gets_its_separator) {
  EXPECT_EQ(full("\\\\."), "\\\\.\\");
  EXPECT_EQ(full("//."), "\\\\.\\");
}

TEST(FullPath, blanks_alone_are_no_path) {
  EXPECT_EQ(full(" "), std::nullopt);
  EXPECT_EQ(full("   "), std::nullopt);
}

TEST(FullPath, slashes_become_backslashes_and_never_double) {
  EXPECT_EQ(full("C:/a//b/"), "C:\\a\\b\\");
  EXPECT_EQ(full("C:\\\\a"), "C:\\a");
  EXPECT_EQ(full("//srv/share/a"), "\\\\srv\\share\\a");
}

TEST(FullPath, dots_never_climb_above_the_root) {
  EXPECT_EQ(full("C:\\..\\..\\a"), "C:\\a");
  EXPECT_EQ(full("\\\\srv\\share\\..\\..\\a"), "\\\\srv\\share\\a");
  EXPECT_EQ(full("C:\\a\\.\\b\\..\\c"), "C:\\a\\c");
}

TEST(FullPath, a_final_separator_stays_only_where_it_was_written) {
  EXPECT_EQ(full("C:\\a\\b\\.."), "C:\\a");
  EXPECT_EQ(full("C:\\a\\b\\..\\"), "C:\\a\\");
  EXPECT_EQ(full("C:\\a\\."), "C:\\a");
  EXPECT_EQ(full("C:\\a\\.\\"), "C:\\a\\");
  EXPECT_EQ(full("C:\\a\\.."), "C:\\");
}

TEST(FullPath, dots_and_blanks_at_the_end_go) {
  EXPECT_EQ(full("C:\\a\\b. ."), "C:\\a\\b");
  EXPECT_EQ(full("C:\\a.\\b"), "C:\\a\\b");
  EXPECT_EQ(full("C:\\.a\\.b"), "C:\\.a\\.b");
}

TEST(FullPath, a_result_that_does_not_fit_is_none) {
  EXPECT_EQ(full("abc", "C:\\", 6), "C:\\abc");
  EXPECT_EQ(full("abc", "C:\\", 5), std::nullopt);
  EXPECT_EQ(full("x\\..\\abc", "C:\\", 6), "C:\\abc") << "only the result has to fit";
  EXPECT_EQ(full(std::string(300, 'x')), std::nullopt);
}

TEST(FullPath, a_character_0_ends_the_path) { EXPECT_EQ(full("C:\\a\0b"sv), "C:\\a"); }

TEST(FullPath, wide_characters) {
  std::u16string out(kMaxPath, u'#');
  out.resize(full_path(u"\u20AC/x"sv, u"C:\\\u0416"sv, std::span<char16_t>(out)).value());
  EXPECT_EQ(out, u"C:\\\u0416\\\u20AC\\x");
}

}  // namespace
}  // namespace qv::native::rtlib
