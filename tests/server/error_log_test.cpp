// Lines of a log file, byte by byte.
#include <cstdio>
#include <regex>
#include <string>

#include "server/error_display_client.h"
#include "server/file_holder.h"

namespace qv::tests {
namespace {

using ErrorLog = ErrorDisplay;

TEST_F(ErrorLog, the_text_is_logged_on_one_line) {
  set(5, L"S", L"D");
  String buffer;
  display_ex(kNoShow, buffer, Value(L"m"), L"", L"", path.c_str());
  set(0, L"", L"D");
  SysReAllocStringLen(&buffer, L"", 0);
  display_ex(kNoShow, buffer, Value::missing(), L"", L"", path.c_str());
  EXPECT_EQ(bytes_of_file(path), "P>m - D - [#5 - S]\r\nP>D - \r\n");
}

TEST_F(ErrorLog, an_empty_log_name_logs_nothing) {
  String buffer;
  EXPECT_EQ(display_ex(kNoShow, buffer, Value(L"m"), L"", L"", L""), 1);
  EXPECT_EQ(buffer, L"m\r\n\r\n");
}

TEST_F(ErrorLog, a_log_line_is_the_message_and_a_line_end) {
  log(path, L"first", 0);
  log(path, L"", 0);
  log(path, L"\x20AC", 0);
  EXPECT_EQ(bytes_of_file(path), "first\r\n\r\n\x80\r\n");
}

TEST_F(ErrorLog, a_prefix_begins_the_line) {
  log(path, L"text", 0, Value(L"A"));
  log(path, L"text", 0, Value(L""));
  log(path, L"text", 0, Value(7));
  EXPECT_EQ(bytes_of_file(path), "A>text\r\n>text\r\n7>text\r\n");
}

// The digits 1 to 9 are the check value's usual sample: 29B1 from a start of FFFF.
TEST_F(ErrorLog, the_check_value_covers_the_message_alone_without_a_time) {
  log(path, L"123456789", kCrc, Value(L"A"));
  EXPECT_EQ(bytes_of_file(path), "A>123456789 [29B1]\r\n");
}

TEST_F(ErrorLog, the_check_value_of_no_text_is_the_start) {
  log(path, L"", kCrc);
  EXPECT_EQ(bytes_of_file(path), " [FFFF]\r\n");
}

TEST_F(ErrorLog, date_and_time_stand_in_front_of_the_message) {
  log(path, L"text", kTime, Value(L"A"));
  const std::string line = bytes_of_file(path);
  EXPECT_TRUE(
      std::regex_match(line, std::regex("A>\\d\\d-\\d\\d-\\d\\d\\d\\d \\d\\d:\\d\\d text\r\n")))
      << line;
}

std::uint16_t slow_crc(const std::string& text) {
  unsigned crc = 0xFFFF;
  for (const char c : text) {
    crc ^= static_cast<unsigned>(static_cast<unsigned char>(c)) << 8;
    for (int bit = 0; bit < 8; ++bit)
      crc = (crc << 1 ^ ((crc & 0x8000) != 0 ? 0x1021 : 0)) & 0xFFFF;
  }
  return static_cast<std::uint16_t>(crc);
}

TEST_F(ErrorLog, the_check_value_covers_date_time_and_message_and_not_the_prefix) {
  log(path, L"text", kTime | kCrc, Value(L"A"));
  const std::string line = bytes_of_file(path);
  ASSERT_EQ(line.size(), std::string("A>05-03-2001 14:07 text [3F0A]\r\n").size());
  char expected[8];
  std::snprintf(expected, sizeof expected, "[%04X]", slow_crc(line.substr(2, 21)));
  EXPECT_EQ(line.substr(24, 6), expected);
}

TEST_F(ErrorLog, other_flags_do_not_matter_to_the_log) {
  log(path, L"text", ~(kTime | kCrc));
  EXPECT_EQ(bytes_of_file(path), "text\r\n");
}

TEST_F(ErrorLog, a_log_that_cant_be_opened_is_passed_over) {
  log(folder.file(L"no\\folder.log"), L"text", 0);
  log(L"", L"text", 0);
  log(folder.file(L""), L"text", 0);
  LONG number = -1;
  global->Error_Number(&number);
  EXPECT_EQ(number, 0);
}

TEST_F(ErrorLog, a_log_that_another_process_holds_is_waited_for) {
  write_file(path, "old\r\n");
  const FileHolder holder(path.c_str(), 700);
  log(path, L"text", 0);
  EXPECT_EQ(bytes_of_file(path), "old\r\ntext\r\n");
}

TEST_F(ErrorLog, a_log_that_stays_held_is_given_up_after_31_pauses) {
  write_file(path, "old\r\n");
  const DWORD start_ms = GetTickCount();
  {
    const FileHolder holder(path.c_str(), 60000);
    log(path, L"text", 0);
    EXPECT_TRUE(holder.is_running());
  }
  EXPECT_GE(GetTickCount() - start_ms, 31U * 250);
  EXPECT_EQ(bytes_of_file(path), "old\r\n");
}

std::string local_minute() {
  SYSTEMTIME now;
  GetLocalTime(&now);
  char text[20];
  std::snprintf(text, sizeof text, "%02u-%02u-%04u %02u:%02u", now.wDay, now.wMonth, now.wYear,
                now.wHour, now.wMinute);
  return text;
}

TEST_F(ErrorLog, the_time_is_the_local_time_of_the_moment) {
  const std::string before = local_minute();
  log(path, L"text", kTime);
  const std::string line = bytes_of_file(path);
  EXPECT_TRUE(line == before + " text\r\n" || line == local_minute() + " text\r\n") << line;
}

// The same flags and prefix go on from the display to the log.
TEST_F(ErrorLog, a_displayed_error_is_logged_with_time_and_check_value) {
  set(20000, L"Here", L"Descr");
  String buffer;
  display_ex(kNoShow | kTime | kCrc, buffer, Value(L"m"), L"", L"", path.c_str());
  const std::string line = bytes_of_file(path);
  const std::string message = "m - Descr - [#20000 - Here]";
  ASSERT_EQ(line.size(), 2 + 17 + message.size() + 7 + 2);
  EXPECT_EQ(line.substr(0, 2), "P>");
  EXPECT_EQ(line.substr(2 + 17, message.size()), message);
  char expected[16];
  std::snprintf(expected, sizeof expected, " [%04X]\r\n",
                slow_crc(line.substr(2, 17 + message.size())));
  EXPECT_EQ(line.substr(2 + 17 + message.size()), expected);
}

TEST_F(ErrorLog, a_display_without_prefix_logs_without_one) {
  set(5, L"S", L"D");
  Value missing = Value::missing();
  Value file(path.c_str());
  LONG flags = kNoShow;
  String title;
  LONG result = 0;
  EXPECT_EQ(global->Disp_Error(&missing, &missing, &file, &flags, &missing, &title, &result), S_OK);
  EXPECT_EQ(result, 1);
  EXPECT_EQ(flags, kNoShow);
  EXPECT_EQ(bytes_of_file(path), "D - [#5 - S]\r\n");
}

TEST_F(ErrorLog, a_message_is_written_byte_for_byte) {
  const std::wstring text(L"a\0b\r\nc\x4E00", 7);
  String name(path);
  String message{std::wstring_view(text)};
  Value prefix = Value::missing();
  LONG flags = kCrc;
  EXPECT_EQ(global->Log_Write(&name, message, &flags, &prefix), S_OK);
  // What the code page lacks is a question mark.
  const std::string bytes("a\0b\r\nc?", 7);
  char mark[16];
  std::snprintf(mark, sizeof mark, " [%04X]\r\n", slow_crc(bytes));
  EXPECT_EQ(bytes_of_file(path), bytes + mark);
}

TEST_F(ErrorLog, a_prefix_without_a_text_is_an_empty_one) {
  Value null;
  null.vt = VT_NULL;
  log(path, L"text", 0, null);
  log(path, L"text", 0, Value());
  EXPECT_EQ(bytes_of_file(path), ">text\r\n>text\r\n");
}

TEST_F(ErrorLog, a_line_goes_behind_whatever_the_file_holds) {
  write_file(path, "no line end\x1A");
  log(path, L"text", 0);
  EXPECT_EQ(bytes_of_file(path), "no line end\x1Atext\r\n");
}

TEST_F(ErrorLog, readers_do_not_hold_the_log_up) {
  write_file(path, "old\r\n");
  const HANDLE reader = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                    nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  ASSERT_NE(reader, INVALID_HANDLE_VALUE);
  log(path, L"text", 0);
  CloseHandle(reader);
  EXPECT_EQ(bytes_of_file(path), "old\r\ntext\r\n");
}

TEST_F(ErrorLog, writing_leaves_the_record_and_what_is_pending_alone) {
  set(5, L"S", L"D", 2);
  global->Error_Lock();
  log(path, L"text", kTime | kCrc, Value(L"A"));
  log(folder.file(L"no\\folder.log"), L"text", 0);
  EXPECT_TRUE(is_locked());
  global->Error_Unlock();
  EXPECT_EQ(message(), L"D\r\n[#5 - S]\r\n[DLL:" + system_error(2) + L"]");
}

}  // namespace
}  // namespace qv::tests
