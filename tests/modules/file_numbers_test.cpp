#include "runtime/file_numbers.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>

#include "automation/run_time_error.h"
#include "server/file_holder.h"
#include "server/temp_folder.h"

namespace qv::file_numbers {
namespace {

using tests::bytes_of_file;
using tests::TempFolder;
using tests::write_file;

// The number of the run-time error that the statement raises, 0 for none.
template <class Statement>
Long error_of(Statement&& statement) {
  try {
    statement();
    return 0;
  } catch (...) {
    return current_run_time_error().number;
  }
}

std::span<const std::uint8_t> bytes(const char* text) {
  return {reinterpret_cast<const std::uint8_t*>(text), std::char_traits<char>::length(text)};
}

std::string read(Long number, std::size_t count) {
  std::string text(count, '\0');
  text.resize(get(number, {reinterpret_cast<std::uint8_t*>(text.data()), count}));
  return text;
}

class FileNumbers : public testing::Test {
 protected:
  ~FileNumbers() override {
    for (Long number = kFirst; number <= kLast; ++number) close(number);
  }
  Long error_of_opening(Long number, const OpenOptions& options) {
    return error_of([&] { open(number, path, options); });
  }

  TempFolder folder;
  const std::wstring path = folder.file(L"file.txt");
};

TEST_F(FileNumbers, the_lowest_free_number_is_given) {
  EXPECT_EQ(free_file(), 1);
  open(1, path, {});
  open(3, path, {});
  EXPECT_EQ(free_file(), 2);
  open(2, path, {});
  EXPECT_EQ(free_file(), 4);
  close(1);
  EXPECT_EQ(free_file(), 1);
}

TEST_F(FileNumbers, there_are_511_numbers) {
  for (Long number = 1; number <= 511; ++number) open(number, path, {});
  EXPECT_EQ(error_of([] { free_file(); }), 67);
  close(511);
  EXPECT_EQ(free_file(), 511);
}

TEST_F(FileNumbers, a_number_that_is_none_or_has_no_file_is_error_52) {
  EXPECT_EQ(error_of_opening(0, {}), 52);
  EXPECT_EQ(error_of_opening(512, {}), 52);
  EXPECT_EQ(error_of_opening(-1, {}), 52);
  EXPECT_EQ(error_of([] { close(0); }), 52);
  EXPECT_EQ(error_of([] { position(7); }), 52);
  EXPECT_EQ(error_of([] { length_bytes(7); }), 52);
  EXPECT_EQ(error_of([] { seek(7, 1); }), 52);
  EXPECT_EQ(error_of([] { read(7, 1); }), 52);
  EXPECT_EQ(error_of([] { put(7, bytes("a")); }), 52);
  EXPECT_EQ(error_of([] { print(7, L"a"); }), 52);
}

TEST_F(FileNumbers, closing_a_number_that_has_no_file_does_nothing) {
  EXPECT_EQ(error_of([] { close(7); }), 0);
  EXPECT_FALSE(is_open(7));
}

TEST_F(FileNumbers, a_number_in_use_is_error_55) {
  open(1, path, {});
  EXPECT_TRUE(is_open(1));
  EXPECT_EQ(error_of_opening(1, {}), 55);
}

TEST_F(FileNumbers, input_of_a_missing_file_is_error_53) {
  EXPECT_EQ(error_of_opening(1, {.mode = Mode::kInput}), 53);
  EXPECT_EQ(error_of_opening(1, {.access = Access::kRead}), 53);
  EXPECT_FALSE(is_open(1));
}

TEST_F(FileNumbers, a_missing_folder_is_error_76) {
  EXPECT_EQ(error_of([&] { open(1, folder.file(L"no\\file"), {}); }), 76);
}

TEST_F(FileNumbers, a_folder_in_place_of_a_file_is_error_75) {
  EXPECT_EQ(error_of([&] { open(1, folder.file(L""), {}); }), 75);
}

TEST_F(FileNumbers, a_name_that_no_file_can_have_is_error_52) {
  EXPECT_EQ(error_of([&] { open(1, folder.file(L"a*b"), {}); }), 52);
}

// Wine keeps such names only under a locale that has their characters.
TEST_F(FileNumbers, names_in_any_script_open_where_the_platform_has_them) {
  const std::wstring name = folder.file(L"\x0416\x4E2D.txt");
  const HANDLE file = CreateFileW(name.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                  FILE_ATTRIBUTE_NORMAL, nullptr);
  const bool platform_has_it = file != INVALID_HANDLE_VALUE;
  if (platform_has_it) CloseHandle(file);
  EXPECT_EQ(error_of([&] { open(1, name, {.access = Access::kWrite}); }) == 0, platform_has_it);
}

TEST_F(FileNumbers, names_longer_than_260_characters_open) {
  const std::wstring long_folder = folder.file(std::wstring(150, L'a').c_str());
  CreateDirectoryW(long_folder.c_str(), nullptr);
  const std::wstring name = long_folder + L"\\" + std::wstring(150, L'b');
  open(1, name, {});
  put(1, bytes("x"));
  EXPECT_EQ(length_bytes(1), 1);
  close(1);
  DeleteFileW((L"\\\\?\\" + name).c_str());
}

TEST_F(FileNumbers, output_makes_the_file_anew) {
  write_file(path, "old content");
  open(1, path, {.mode = Mode::kOutput});
  print(1, L"new");
  close(1);
  EXPECT_EQ(bytes_of_file(path), "new");
}

TEST_F(FileNumbers, append_writes_behind_what_is_there) {
  for (const wchar_t* text : {L"one", L"two"}) {
    open(1, path, {.mode = Mode::kAppend});
    print(1, text);
    close(1);
  }
  EXPECT_EQ(bytes_of_file(path), "onetwo");
}

TEST_F(FileNumbers, printed_text_is_bytes_of_the_code_page) {
  open(1, path, {.mode = Mode::kOutput});
  print(1, std::wstring_view(L"\x00E9\x20AC\0z", 4));
  close(1);
  EXPECT_EQ(bytes_of_file(path), std::string("\xE9\x80\0z", 4));
}

TEST_F(FileNumbers, printed_text_goes_to_the_file_by_the_record_length) {
  open(1, path, {.mode = Mode::kOutput, .record_length_bytes = 4});
  print(1, L"abc");
  EXPECT_EQ(bytes_of_file(path), "");
  EXPECT_EQ(length_bytes(1), 3);
  EXPECT_EQ(position(1), 4);
  print(1, L"d");
  EXPECT_EQ(bytes_of_file(path), "abcd");
  EXPECT_EQ(position(1), 5);
}

TEST_F(FileNumbers, record_lengths_are_1_to_32767) {
  EXPECT_EQ(error_of_opening(1, {.mode = Mode::kAppend, .record_length_bytes = 0}), 59);
  EXPECT_EQ(error_of_opening(1, {.mode = Mode::kAppend, .record_length_bytes = 32768}), 59);
  EXPECT_EQ(error_of_opening(1, {.mode = Mode::kAppend, .record_length_bytes = 32767}), 0);
}

TEST_F(FileNumbers, binary_keeps_what_is_there_and_writes_at_any_position) {
  write_file(path, "abcdef");
  open(1, path, {});
  EXPECT_EQ(position(1), 1);
  seek(1, 3);
  put(1, bytes("XY"));
  EXPECT_EQ(position(1), 5);
  EXPECT_EQ(read(1, 2), "ef");
  seek(1, 9);
  put(1, bytes("z"));
  EXPECT_EQ(length_bytes(1), 9);
  close(1);
  EXPECT_EQ(bytes_of_file(path), std::string("abXYef\0\0z", 9));
}

TEST_F(FileNumbers, a_position_below_1_is_error_63) {
  open(1, path, {});
  EXPECT_EQ(error_of([] { seek(1, 0); }), 63);
  EXPECT_EQ(error_of([] { seek(1, -1); }), 63);
}

TEST_F(FileNumbers, reading_at_the_end_gives_what_is_left) {
  write_file(path, "abc");
  open(1, path, {.mode = Mode::kInput});
  EXPECT_EQ(read(1, 2), "ab");
  EXPECT_EQ(read(1, 2), "c");
  EXPECT_EQ(read(1, 2), "");
  seek(1, 100);
  EXPECT_EQ(read(1, 2), "");
}

TEST_F(FileNumbers, reading_more_than_there_is_at_once_is_error_62) {
  write_file(path, "abc");
  open(1, path, {.access = Access::kRead});
  std::uint8_t four[4];
  EXPECT_EQ(error_of([&] { get_all(1, four); }), 62);
  seek(1, 1);
  EXPECT_EQ(error_of([&] { get_all(1, std::span(four).first(3)); }), 0);
  EXPECT_EQ(four[2], 'c');
}

TEST_F(FileNumbers, using_a_file_against_its_mode_is_error_54) {
  write_file(path, "abc");
  open(1, path, {.mode = Mode::kInput});
  EXPECT_EQ(error_of([] { put(1, bytes("a")); }), 54);
  EXPECT_EQ(error_of([] { print(1, L"a"); }), 54);
  close(1);
  open(1, path, {.mode = Mode::kAppend});
  EXPECT_EQ(error_of([] { read(1, 1); }), 54);
  EXPECT_EQ(error_of([] { put(1, bytes("a")); }), 54);
  close(1);
  open(1, path, {.access = Access::kRead});
  EXPECT_EQ(error_of([] { put(1, bytes("a")); }), 54);
  EXPECT_EQ(error_of([] { print(1, L"a"); }), 54);
  close(1);
  open(1, path, {.access = Access::kWrite});
  EXPECT_EQ(error_of([] { read(1, 1); }), 54);
}

TEST_F(FileNumbers, a_file_opens_for_output_under_one_number_only) {
  open(1, path, {.mode = Mode::kAppend});
  EXPECT_EQ(error_of_opening(2, {.mode = Mode::kAppend}), 55);
  EXPECT_EQ(error_of_opening(2, {.mode = Mode::kOutput}), 55);
  EXPECT_EQ(error_of_opening(2, {.mode = Mode::kInput}), 0);
  close(1);
  EXPECT_EQ(error_of_opening(1, {.mode = Mode::kOutput, .lock = Lock::kShared}), 55);
}

TEST_F(FileNumbers, locks_forbid_others_what_they_say) {
  struct Row {
    Lock lock;
    Long reading;
    Long writing;
  };
  write_file(path, "abc");
  for (const Row row :
       {Row{Lock::kDefault, 0, 0}, Row{Lock::kShared, 0, 0}, Row{Lock::kRead, 70, 0},
        Row{Lock::kWrite, 0, 70}, Row{Lock::kReadWrite, 70, 70}}) {
    open(1, path, {.lock = row.lock});
    EXPECT_EQ(error_of_opening(2, {.access = Access::kRead}), row.reading);
    EXPECT_EQ(error_of_opening(3, {.access = Access::kWrite}), row.writing);
    for (Long number = 1; number <= 3; ++number) close(number);
  }
}

TEST_F(FileNumbers, a_file_that_another_process_holds_is_error_70) {
  const tests::FileHolder holder(path.c_str(), 20000);
  ASSERT_TRUE(holder.is_running());
  EXPECT_EQ(error_of_opening(1, {}), 70);
  EXPECT_EQ(error_of_opening(1, {.mode = Mode::kAppend}), 70);
}

TEST_F(FileNumbers, numbers_belong_to_the_thread) {
  open(1, path, {});
  bool open_there = true;
  std::thread([&] { open_there = is_open(1); }).join();
  EXPECT_FALSE(open_there);
}

TEST_F(FileNumbers, a_thread_that_ends_closes_its_files) {
  std::thread([&] { open(1, path, {.mode = Mode::kBinary, .lock = Lock::kReadWrite}); }).join();
  EXPECT_EQ(error_of_opening(1, {}), 0);
}

}  // namespace
}  // namespace qv::file_numbers
