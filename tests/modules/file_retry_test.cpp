#include "frame/file_retry.h"

#include <gtest/gtest.h>

#include "constants.h"
#include "runtime/file_numbers.h"
#include "server/file_holder.h"
#include "server/temp_folder.h"

namespace qv::frame {
namespace {

using namespace File_Open_Const;
using tests::bytes_of_file;
using tests::FileHolder;
using tests::write_file;

class FileRetry : public testing::Test {
 protected:
  ~FileRetry() override { File_CloseRetry(number); }
  Long open(Long flags, Long sharing = SH_DENYNO, Long most = 2) {
    File_CloseRetry(number);
    return File_OpenRetry(path.c_str(), flags, sharing, record_length, number, 70, most);
  }

  tests::TempFolder folder;
  const std::wstring path = folder.file(L"file.dat");
  Long number = 0;
  Long record_length = 0;
};

TEST_F(FileRetry, flags_without_creation_need_a_file) {
  EXPECT_EQ(open(O_RDWR | O_BINARY), 53);
  EXPECT_EQ(number, 0);
  write_file(path, "abc");
  EXPECT_EQ(open(O_RDWR | O_BINARY), 0);
  EXPECT_GT(number, 0);
}

TEST_F(FileRetry, contradicting_flags_are_error_5) {
  for (const Long flags :
       {O_RDWR | O_BINARY | O_TRUNC, O_RDWR | O_BINARY | O_EXCL, O_RDONLY | O_BINARY | O_CREAT,
        O_RDONLY | O_TEXT | O_CREAT, O_RDWR | O_BINARY | O_CREAT | O_EXCL | O_TRUNC,
        O_RDWR | O_BINARY | O_CREAT | O_TRUNC | O_APPEND, O_RDWR | O_CREAT, O_BINARY | O_CREAT,
        O_TEXT | O_CREAT}) {
    EXPECT_EQ(open(flags), 5) << flags;
    EXPECT_EQ(number, 0);
  }
}

TEST_F(FileRetry, an_unknown_sharing_mode_is_error_5) {
  for (const Long sharing : {0, 16, 32, 48, 64}) {
    EXPECT_EQ(open(O_RDWR | O_BINARY | O_CREAT, sharing), 0);
  }
  for (const Long sharing : {1, 8, 33, 80, -1}) {
    EXPECT_EQ(open(O_RDWR | O_BINARY | O_CREAT, sharing), 5);
  }
}

TEST_F(FileRetry, exclusive_creation_of_a_file_that_exists_is_error_58) {
  EXPECT_EQ(open(O_RDWR | O_BINARY | O_CREAT | O_EXCL), 0);
  EXPECT_EQ(open(O_RDWR | O_BINARY | O_CREAT | O_EXCL), 58);
}

TEST_F(FileRetry, truncation_makes_the_file_anew) {
  write_file(path, "abc");
  EXPECT_EQ(open(O_RDWR | O_BINARY | O_CREAT | O_TRUNC), 0);
  EXPECT_EQ(file_numbers::length_bytes(number), 0);
}

TEST_F(FileRetry, creation_alone_keeps_what_is_there) {
  write_file(path, "abc");
  EXPECT_EQ(open(O_RDWR | O_BINARY | O_CREAT), 0);
  EXPECT_EQ(file_numbers::length_bytes(number), 3);
  EXPECT_EQ(file_numbers::position(number), 1);
}

TEST_F(FileRetry, append_begins_behind_the_end) {
  write_file(path, "abc");
  EXPECT_EQ(open(O_RDWR | O_BINARY | O_APPEND), 0);
  EXPECT_EQ(file_numbers::position(number), 4);
}

TEST_F(FileRetry, text_opens_for_input_or_for_append_and_its_record_length_becomes_512) {
  write_file(path, "abc");
  EXPECT_EQ(open(O_RDONLY | O_TEXT), 0);
  EXPECT_EQ(record_length, 512);
  std::uint8_t byte = 0;
  EXPECT_EQ(file_numbers::get(number, {&byte, 1}), 1U);
  for (const Long access : {O_WRONLY, O_RDWR}) {
    EXPECT_EQ(open(access | O_TEXT), 0);
    file_numbers::print(number, L"d");
  }
  File_CloseRetry(number);
  EXPECT_EQ(bytes_of_file(path), "abcdd");
}

TEST_F(FileRetry, a_missing_folder_is_error_76) {
  Long opened = 9;
  EXPECT_EQ(File_OpenRetry(folder.file(L"no\\file").c_str(), O_RDWR | O_BINARY | O_CREAT, SH_DENYNO,
                           record_length, opened, 70),
            76);
  EXPECT_EQ(opened, 0);
}

TEST_F(FileRetry, a_lock_that_stays_is_given_up) {
  const FileHolder holder(path.c_str(), 20000);
  const DWORD start_ms = GetTickCount();
  EXPECT_EQ(open(O_RDWR | O_BINARY | O_CREAT, SH_DENYNO, 3), 70);
  EXPECT_GE(GetTickCount() - start_ms, 2U * 250);
  EXPECT_EQ(number, 0);
}

TEST_F(FileRetry, one_attempt_does_not_wait) {
  const FileHolder holder(path.c_str(), 20000);
  EXPECT_EQ(open(O_RDWR | O_BINARY | O_CREAT, SH_DENYNO, 1), 70);
  EXPECT_TRUE(holder.is_running());
}

TEST_F(FileRetry, another_error_than_the_lock_is_not_tried_again) {
  const FileHolder holder(path.c_str(), 20000);
  Long opened = 0;
  EXPECT_EQ(File_OpenRetry(path.c_str(), O_RDWR | O_BINARY | O_CREAT, SH_DENYNO, record_length,
                           opened, 55),
            70);
  EXPECT_TRUE(holder.is_running());
}

TEST_F(FileRetry, a_lock_that_ends_is_waited_for) {
  const FileHolder holder(path.c_str(), 700);
  EXPECT_EQ(open(O_RDWR | O_BINARY | O_CREAT | O_TRUNC, SH_DENYNO, 32), 0);
  EXPECT_FALSE(holder.is_running());
}

LRESULT CALLBACK count_messages(HWND window, UINT message, WPARAM wide, LPARAM narrow) {
  if (message == WM_APP) *reinterpret_cast<int*>(narrow) += 1;
  return DefWindowProcW(window, message, wide, narrow);
}

TEST_F(FileRetry, events_run_while_a_lock_is_waited_for) {
  WNDCLASSW row{};
  row.lpfnWndProc = count_messages;
  row.lpszClassName = L"QvCounter";
  RegisterClassW(&row);
  const HWND window = CreateWindowExW(0, row.lpszClassName, L"", 0, 0, 0, 0, 0, HWND_MESSAGE,
                                      nullptr, nullptr, nullptr);
  int count = 0;
  PostMessageW(window, WM_APP, 0, reinterpret_cast<LPARAM>(&count));
  const FileHolder holder(path.c_str(), 20000);
  EXPECT_EQ(open(O_RDWR | O_BINARY | O_CREAT, SH_DENYNO, 2), 70);
  EXPECT_EQ(count, 1);
  DestroyWindow(window);
}

TEST_F(FileRetry, closing_forgets_the_number_whatever_it_was) {
  for (const Long given : {0, -1, 7, 1000}) {
    Long closing = given;
    File_CloseRetry(closing);
    EXPECT_EQ(closing, 0);
  }
}

}  // namespace
}  // namespace qv::frame
