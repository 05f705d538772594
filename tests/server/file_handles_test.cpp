// Files by the system's own handles.
#include <windows.h>
// winioctl.h needs windows.h before it.
#include <winioctl.h>

#include <algorithm>
#include <string>

#include "server/client.h"
#include "server/temp_folder.h"

namespace qv::tests {
namespace {

// Open flags and sharing modes.
constexpr LONG kRdonly = 1;
constexpr LONG kWronly = 2;
constexpr LONG kRdwr = 4;
constexpr LONG kAppend = 8;
constexpr LONG kCreat = 16;
constexpr LONG kTrunc = 32;
constexpr LONG kExcl = 64;
constexpr LONG kCompat = 0;
constexpr LONG kDenyrw = 16;
constexpr LONG kDenywr = 32;
constexpr LONG kDenyrd = 48;
constexpr LONG kDenyno = 64;
constexpr LONG kNormalFile = 128;
constexpr LONG kBackupSemantics = 33554432;
constexpr const wchar_t* kOpenSource = L"KwRtLibMod.File_Open32";
constexpr const wchar_t* kReadSource = L"KwRtLibMod.File_Read32";
constexpr const wchar_t* kWriteSource = L"KwRtLibMod.File_Write32";

// The system's text on one line: its line break at the end leaves a blank.
std::wstring system_text(DWORD code) {
  std::wstring text(512, L' ');
  text.resize(
      FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, code, 0, text.data(), 512, nullptr));
  std::replace(text.begin(), text.end(), L'\r', L' ');
  text.erase(std::remove(text.begin(), text.end(), L'\n'), text.end());
  return text;
}

class FileHandles : public testing::Test {
 protected:
  FileHandles() { global_->Reset_Error(); }

  bool open(std::wstring_view name, LONG flags, LONG mode = kCompat) {
    String file(name);
    VARIANT_BOOL failed = VARIANT_FALSE;
    EXPECT_EQ(global_->File_Open32(&file, &flags, &mode, &attributes_, &handle_, &failed), S_OK);
    return failed == VARIANT_FALSE;
  }
  bool close() {
    VARIANT_BOOL failed = VARIANT_FALSE;
    EXPECT_EQ(global_->File_Close32(&handle_, &failed), S_OK);
    return failed == VARIANT_FALSE;
  }
  SHORT read(VARIANT* value) {
    SHORT failed = 99;
    EXPECT_EQ(global_->File_Read32(&handle_, value, &failed), S_OK);
    return failed;
  }
  SHORT write(Value value) {
    SHORT failed = 99;
    EXPECT_EQ(global_->File_Write32(&handle_, &value, &failed), S_OK);
    return failed;
  }
  HANDLE system_handle() { return reinterpret_cast<HANDLE>(static_cast<INT_PTR>(handle_)); }
  void seek(LONGLONG position) {
    LARGE_INTEGER to;
    to.QuadPart = position;
    EXPECT_TRUE(SetFilePointerEx(system_handle(), to, nullptr, FILE_BEGIN));
  }

  void expect_record(LONG number, const wchar_t* source, const wchar_t* description) {
    LONG actual = 0;
    String actual_source;
    String actual_description;
    EXPECT_EQ(global_->Error_Number(&actual), S_OK);
    EXPECT_EQ(actual, number);
    EXPECT_EQ(global_->Error_Source(&actual_source), S_OK);
    EXPECT_EQ(actual_source.view(), source);
    EXPECT_EQ(global_->Error_Description(&actual_description), S_OK);
    EXPECT_EQ(actual_description.view(), description);
    global_->Reset_Error();
  }
  LONG last_dll_error() {
    LONG code = 0;
    EXPECT_EQ(global_->Error_LastDLLError(&code), S_OK);
    return code;
  }
  bool record_is_empty() {
    VARIANT_BOOL filled = VARIANT_TRUE;
    EXPECT_EQ(global_->Check_Error(&filled), S_OK);
    return filled == VARIANT_FALSE;
  }
  // What a second opener may do while the file is open in this mode.
  std::string others_may(LONG mode) {
    folder_.write(L"shared", "x");
    EXPECT_TRUE(open(folder_.file(L"shared"), kRdwr, mode));
    std::string allowed;
    const auto opens = [&](DWORD access) {
      HANDLE file =
          CreateFileW(folder_.file(L"shared").c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE,
                      nullptr, OPEN_EXISTING, 0, nullptr);
      if (file == INVALID_HANDLE_VALUE) return false;
      CloseHandle(file);
      return true;
    };
    if (opens(GENERIC_READ)) allowed += "r";
    if (opens(GENERIC_WRITE)) allowed += "w";
    close();
    return allowed;
  }

  void TearDown() override {
    if (handle_ != 0 && handle_ != kUntouched) close();
  }

  static constexpr LONG kUntouched = 4711;
  Pointer<_KwRtLib> global_ = create_global();
  TempFolder folder_;
  LONG attributes_ = 0;
  LONG handle_ = kUntouched;
};

TEST_F(FileHandles, opening_a_missing_file_for_reading_is_53_and_leaves_Handle_alone) {
  EXPECT_FALSE(open(folder_.file(L"missing"), kRdonly));
  EXPECT_EQ(handle_, kUntouched);
  EXPECT_EQ(attributes_, 0);
  EXPECT_EQ(last_dll_error(), ERROR_FILE_NOT_FOUND);
  expect_record(53, kOpenSource,
                (L"File not found\r\n" + system_text(ERROR_FILE_NOT_FOUND)).c_str());
}

TEST_F(FileHandles, opening_in_a_missing_folder_is_76_and_on_a_missing_drive_68) {
  EXPECT_FALSE(open(folder_.file(L"none\\missing"), kRdonly));
  expect_record(76, kOpenSource,
                (L"Path not found\r\n" + system_text(ERROR_PATH_NOT_FOUND)).c_str());
  EXPECT_FALSE(open(L"Q:\\missing", kRdonly));
  LONG number = 0;
  EXPECT_EQ(global_->Error_Number(&number), S_OK);
  EXPECT_EQ(number, 68);
  EXPECT_EQ(handle_, kUntouched);
}

TEST_F(FileHandles, opening_a_missing_file_for_writing_is_refused_by_the_system) {
  EXPECT_FALSE(open(folder_.file(L"missing"), kRdwr));
  EXPECT_EQ(handle_, 0);
  EXPECT_EQ(attributes_, kNormalFile);
  EXPECT_EQ(last_dll_error(), ERROR_FILE_NOT_FOUND);
  expect_record(20000, kOpenSource, (L"\r\n" + system_text(ERROR_FILE_NOT_FOUND)).c_str());
}

TEST_F(FileHandles, a_folder_opens_for_reading_with_backup_semantics) {
  EXPECT_TRUE(open(folder_.path(), kRdonly));
  EXPECT_EQ(attributes_, kBackupSemantics);
  FILETIME written{};
  EXPECT_TRUE(GetFileTime(system_handle(), nullptr, nullptr, &written));
  EXPECT_TRUE(close());
}

TEST_F(FileHandles, a_folder_overwrites_the_attributes_that_were_given) {
  attributes_ = 2;
  EXPECT_TRUE(open(folder_.path(), kRdonly));
  EXPECT_EQ(attributes_, kBackupSemantics);
}

TEST_F(FileHandles, a_folder_does_not_open_for_writing) {
  EXPECT_FALSE(open(folder_.path(), kRdwr));
  EXPECT_EQ(handle_, 0);
  LONG number = 0;
  global_->Error_Number(&number);
  EXPECT_EQ(number, 20000);
}

TEST_F(FileHandles, O_CREAT_alone_refuses_an_existing_file) {
  folder_.write(L"there", "old");
  EXPECT_FALSE(open(folder_.file(L"there"), kRdwr | kCreat));
  EXPECT_EQ(last_dll_error(), ERROR_FILE_EXISTS);
  expect_record(20000, kOpenSource, (L"\r\n" + system_text(ERROR_FILE_EXISTS)).c_str());
  EXPECT_EQ(folder_.read(L"there"), "old");
  EXPECT_TRUE(open(folder_.file(L"new"), kRdwr | kCreat));
  EXPECT_TRUE(folder_.exists(L"new"));
}

TEST_F(FileHandles, O_TRUNC_replaces_the_file_with_and_without_O_CREAT) {
  folder_.write(L"there", "old");
  EXPECT_TRUE(open(folder_.file(L"there"), kRdwr | kCreat | kTrunc));
  EXPECT_TRUE(close());
  EXPECT_EQ(folder_.read(L"there"), "");
  EXPECT_TRUE(open(folder_.file(L"new"), kRdwr | kTrunc));
  EXPECT_TRUE(close());
  EXPECT_EQ(folder_.read(L"new"), "");
}

TEST_F(FileHandles, O_EXCL_opens_only_an_existing_file_whatever_else_is_asked) {
  folder_.write(L"there", "old");
  EXPECT_TRUE(open(folder_.file(L"there"), kRdwr | kCreat | kTrunc | kExcl));
  EXPECT_TRUE(close());
  EXPECT_EQ(folder_.read(L"there"), "old");
  EXPECT_FALSE(open(folder_.file(L"new"), kRdwr | kCreat | kExcl));
  EXPECT_FALSE(folder_.exists(L"new"));
}

TEST_F(FileHandles, O_WRONLY_and_no_access_flag_open_for_reading_too) {
  folder_.write(L"there", "ab");
  for (const LONG flags : {kWronly, LONG{0}}) {
    EXPECT_TRUE(open(folder_.file(L"there"), flags));
    Value two(L"  ");
    EXPECT_EQ(read(&two), 0);
    EXPECT_EQ(two.text(), L"ab");
    EXPECT_TRUE(close());
  }
}

TEST_F(FileHandles, O_RDONLY_does_not_write) {
  folder_.write(L"there", "ab");
  EXPECT_TRUE(open(folder_.file(L"there"), kRdonly | kWronly));
  EXPECT_EQ(write(L"x"), -1);
  EXPECT_TRUE(record_is_empty());
}

TEST_F(FileHandles, O_APPEND_has_no_effect) {
  folder_.write(L"there", "abcd");
  EXPECT_TRUE(open(folder_.file(L"there"), kRdwr | kAppend));
  EXPECT_EQ(write(L"X"), 0);
  EXPECT_TRUE(close());
  EXPECT_EQ(folder_.read(L"there"), "Xbcd");
}

TEST_F(FileHandles, sharing_follows_the_modes_as_they_are_numbered) {
  EXPECT_EQ(others_may(kCompat), "");
  EXPECT_EQ(others_may(kDenyrd), "");
  EXPECT_EQ(others_may(kDenywr), "r");
  EXPECT_EQ(others_may(kDenyrw), "rw");
  EXPECT_EQ(others_may(kDenyno), "rw");
}

TEST_F(FileHandles, a_locked_file_is_refused_with_20000) {
  folder_.write(L"there", "ab");
  HANDLE lock = CreateFileW(folder_.file(L"there").c_str(), GENERIC_READ | GENERIC_WRITE, 0,
                            nullptr, OPEN_EXISTING, 0, nullptr);
  EXPECT_FALSE(open(folder_.file(L"there"), kRdonly));
  CloseHandle(lock);
  EXPECT_EQ(handle_, 0);
  EXPECT_EQ(last_dll_error(), ERROR_SHARING_VIOLATION);
  expect_record(20000, kOpenSource, (L"\r\n" + system_text(ERROR_SHARING_VIOLATION)).c_str());
}

TEST_F(FileHandles, attributes_given_are_kept_and_go_to_a_new_file) {
  attributes_ = FILE_ATTRIBUTE_HIDDEN;
  EXPECT_TRUE(open(folder_.file(L"hidden"), kRdwr | kCreat));
  EXPECT_EQ(attributes_, LONG{FILE_ATTRIBUTE_HIDDEN});
  EXPECT_TRUE(close());
  EXPECT_NE(GetFileAttributesW(folder_.file(L"hidden").c_str()) & FILE_ATTRIBUTE_HIDDEN, 0U);
}

TEST_F(FileHandles, attributes_0_become_128) {
  EXPECT_TRUE(open(folder_.file(L"new"), kRdwr | kCreat));
  EXPECT_EQ(attributes_, kNormalFile);
}

TEST_F(FileHandles, bad_names_fail_with_the_languages_numbers) {
  const struct {
    std::wstring name;
    LONG number;
  } kCases[] = {{L"", 53}, {folder_.file(L"*.txt"), 52}, {folder_.file(L"a?"), 52}};
  for (const auto& [name, number] : kCases) {
    EXPECT_FALSE(open(name, kRdonly));
    LONG actual = 0;
    global_->Error_Number(&actual);
    EXPECT_EQ(actual, number) << testing::PrintToString(name);
    EXPECT_EQ(handle_, kUntouched);
    EXPECT_FALSE(open(name, kRdwr | kCreat));
    EXPECT_EQ(handle_, 0);
    handle_ = kUntouched;
  }
}

TEST_F(FileHandles, blanks_and_dots_behind_a_name_go_as_the_system_drops_them) {
  EXPECT_TRUE(open(folder_.file(L"name. "), kRdwr | kCreat));
  EXPECT_TRUE(close());
  EXPECT_TRUE(folder_.exists(L"name"));
}

TEST_F(FileHandles, a_slash_separates_folders_too) {
  folder_.write(L"there", "ab");
  auto name = folder_.file(L"there");
  for (auto& character : name) {
    if (character == L'\\') character = L'/';
  }
  EXPECT_TRUE(open(name, kRdonly));
}

TEST_F(FileHandles, the_null_device_takes_everything_and_gives_nothing) {
  ASSERT_TRUE(open(L"NUL", kRdwr));
  EXPECT_EQ(write(7), 0);
  Value number(1);
  EXPECT_EQ(read(&number), -1);
  expect_record(62, kReadSource, L"Input past end of file");
}

TEST_F(FileHandles, names_beyond_260_characters_open) {
  std::wstring name = folder_.path();
  for (int level = 0; level < 3; ++level) {
    name += std::wstring(100, static_cast<wchar_t>(L'a' + level)) + L"\\";
    ASSERT_TRUE(CreateDirectoryW((L"\\\\?\\" + name).c_str(), nullptr));
  }
  const auto file = name + L"file.txt";
  EXPECT_TRUE(open(file, kRdwr | kCreat));
  EXPECT_EQ(write(L"deep"), 0);
  EXPECT_TRUE(close());
  EXPECT_TRUE(open(file, kRdonly));
  EXPECT_TRUE(close());
  EXPECT_TRUE(open(name, kRdonly));
  EXPECT_EQ(attributes_, kBackupSemantics);
  EXPECT_TRUE(close());
  EXPECT_TRUE(DeleteFileW((L"\\\\?\\" + file).c_str()));
  for (int level = 0; level < 3; ++level) {
    name.resize(name.rfind(L'\\'));
    EXPECT_TRUE(RemoveDirectoryW((L"\\\\?\\" + name).c_str()));
  }
}

TEST_F(FileHandles, names_outside_the_code_page_open) {
  const auto name = folder_.file(L"\x4E2D\x0416\x03A9.txt");
  HANDLE made = CreateFileW(name.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr);
  if (made == INVALID_HANDLE_VALUE) GTEST_SKIP() << "the locale gives files names of ASCII only";
  CloseHandle(made);
  EXPECT_TRUE(open(name, kRdonly));
  EXPECT_TRUE(close());
  EXPECT_TRUE(open(folder_.file(L"\x0430.txt"), kRdwr | kCreat));
  EXPECT_TRUE(folder_.exists(L"\x0430.txt"));
}

TEST_F(FileHandles, closing_0_succeeds) {
  handle_ = 0;
  EXPECT_TRUE(close());
  EXPECT_EQ(handle_, 0);
}

TEST_F(FileHandles, closing_zeroes_the_handle_so_that_a_second_close_does_no_harm) {
  EXPECT_TRUE(open(folder_.file(L"new"), kRdwr | kCreat));
  EXPECT_NE(handle_, 0);
  EXPECT_TRUE(close());
  EXPECT_EQ(handle_, 0);
  EXPECT_TRUE(close());
}

TEST_F(FileHandles, a_close_that_fails_keeps_the_handle_and_records_nothing) {
  handle_ = 0x7FFFFF0;
  EXPECT_FALSE(close());
  EXPECT_EQ(handle_, 0x7FFFFF0);
  EXPECT_TRUE(record_is_empty());
  handle_ = 0;
}

class Roundtrip : public FileHandles {
 protected:
  void SetUp() override { ASSERT_TRUE(open(folder_.file(L"values"), kRdwr | kCreat)); }
  LONGLONG position() {
    LARGE_INTEGER at;
    LARGE_INTEGER none{};
    SetFilePointerEx(system_handle(), none, &at, FILE_CURRENT);
    return at.QuadPart;
  }
  // Writes, reads back into a variable of the same type, and gives the bytes that moved.
  LONGLONG moved(const Value& value, Value* back) {
    seek(0);
    EXPECT_EQ(write(value), 0);
    const LONGLONG written = position();
    seek(0);
    EXPECT_EQ(read(back), 0);
    EXPECT_EQ(position(), written);
    return written;
  }
};

TEST_F(Roundtrip, every_type_has_its_width_and_comes_back) {
  Value integer(static_cast<SHORT>(0));
  EXPECT_EQ(moved(static_cast<SHORT>(-2), &integer), 2);
  EXPECT_EQ(integer.vt, VT_I2);
  EXPECT_EQ(integer.iVal, -2);
  Value number(0);
  EXPECT_EQ(moved(0x12345678, &number), 4);
  EXPECT_EQ(number.vt, VT_I4);
  EXPECT_EQ(number.lVal, 0x12345678);
  Value single(0.0F);
  EXPECT_EQ(moved(1.5F, &single), 4);
  EXPECT_EQ(single.vt, VT_R4);
  EXPECT_EQ(single.fltVal, 1.5F);
  Value twice(0.0);
  EXPECT_EQ(moved(-1.25e300, &twice), 8);
  EXPECT_EQ(twice.vt, VT_R8);
  EXPECT_EQ(twice.dblVal, -1.25e300);
  Value money;
  money.vt = VT_CY;
  money.cyVal.int64 = -12345678;
  Value money_back = money;
  money_back.cyVal.int64 = 0;
  EXPECT_EQ(moved(money, &money_back), 8);
  EXPECT_EQ(money_back.vt, VT_CY);
  EXPECT_EQ(money_back.cyVal.int64, -12345678);
  Value date;
  date.vt = VT_DATE;
  date.date = 36526.75;
  Value date_back = date;
  date_back.date = 0;
  EXPECT_EQ(moved(date, &date_back), 8);
  EXPECT_EQ(date_back.vt, VT_DATE);
  EXPECT_EQ(date_back.date, 36526.75);
  Value text(L"    ");
  EXPECT_EQ(moved(L"abcd", &text), 4);
  EXPECT_EQ(text.text(), L"abcd");
}

TEST_F(Roundtrip, values_are_little_endian) {
  EXPECT_EQ(write(0x04030201), 0);
  EXPECT_EQ(write(static_cast<SHORT>(0x0605)), 0);
  EXPECT_EQ(write(true), 0);
  EXPECT_EQ(write(static_cast<BYTE>(200)), 0);
  EXPECT_TRUE(close());
  EXPECT_EQ(folder_.read(L"values"), "\x01\x02\x03\x04\x05\x06\xFF\xFF\xC8");
}

TEST_F(Roundtrip, a_Boolean_comes_back_as_an_Integer_or_in_the_type_of_its_variable) {
  EXPECT_EQ(write(true), 0);
  seek(0);
  Value truth(false);
  EXPECT_EQ(read(&truth), 0);
  EXPECT_EQ(truth.vt, VT_I2);
  EXPECT_EQ(truth.iVal, -1);
  seek(0);
  VARIANT_BOOL variable = VARIANT_FALSE;
  Value reference;
  reference.vt = VT_BYREF | VT_BOOL;
  reference.pboolVal = &variable;
  EXPECT_EQ(read(&reference), 0);
  EXPECT_EQ(variable, VARIANT_TRUE);
}

TEST_F(Roundtrip, a_text_of_10_blanks_takes_10_bytes) {
  EXPECT_EQ(write(L"0123456789abc"), 0);
  seek(0);
  Value ten(L"          ");
  EXPECT_EQ(read(&ten), 0);
  EXPECT_EQ(ten.text(), L"0123456789");
  EXPECT_EQ(position(), 10);
}

TEST_F(Roundtrip, a_typed_String_variable_is_filled) {
  EXPECT_EQ(write(L"abc"), 0);
  seek(0);
  String text(L"   ");
  Value reference;
  reference.vt = VT_BYREF | VT_BSTR;
  reference.pbstrVal = &text;
  EXPECT_EQ(read(&reference), 0);
  EXPECT_EQ(text.view(), L"abc");
}

TEST_F(Roundtrip, all_256_bytes_survive_a_text) {
  std::string bytes;
  for (int code = 0; code < 256; ++code) bytes += static_cast<char>(code);
  EXPECT_TRUE(close());
  folder_.write(L"values", bytes);
  EXPECT_TRUE(open(folder_.file(L"values"), kRdwr));
  Value text(std::wstring(256, L' '));
  EXPECT_EQ(read(&text), 0);
  EXPECT_EQ(text.text().size(), 256U);
  seek(0);
  EXPECT_EQ(write(text), 0);
  EXPECT_TRUE(close());
  EXPECT_EQ(folder_.read(L"values"), bytes);
}

TEST_F(Roundtrip, an_empty_text_moves_nothing) {
  EXPECT_EQ(write(L""), 0);
  EXPECT_EQ(position(), 0);
  Value nothing(L"");
  EXPECT_EQ(read(&nothing), 0);
  EXPECT_EQ(nothing.text(), L"");
}

TEST_F(Roundtrip, an_empty_text_succeeds_even_with_a_bad_handle) {
  EXPECT_TRUE(close());
  handle_ = 0x7FFFFF0;
  EXPECT_EQ(write(L""), 0);
  Value nothing(L"");
  EXPECT_EQ(read(&nothing), 0);
  handle_ = 0;
}

TEST_F(Roundtrip, reading_at_the_end_is_62_with_0_bytes_or_1_left) {
  Value number(static_cast<SHORT>(5));
  EXPECT_EQ(read(&number), -1);
  EXPECT_EQ(number.iVal, 5);
  expect_record(62, kReadSource, L"Input past end of file");
  EXPECT_EQ(write(static_cast<BYTE>(1)), 0);
  seek(0);
  EXPECT_EQ(read(&number), -1);
  EXPECT_EQ(number.iVal, 5);
  expect_record(62, kReadSource, L"Input past end of file");
}

TEST_F(Roundtrip, types_without_an_image_are_13) {
  Value empty;
  EXPECT_EQ(read(&empty), -1);
  expect_record(13, kReadSource, L"Type mismatch");
  EXPECT_EQ(write(empty), -1);
  expect_record(13, kWriteSource, L"Type mismatch");
  Value null;
  null.vt = VT_NULL;
  EXPECT_EQ(read(&null), -1);
  expect_record(13, kReadSource, L"Type mismatch");
  Value array;
  array.vt = VT_ARRAY | VT_UI1;
  array.parray = SafeArrayCreateVector(VT_UI1, 0, 4);
  EXPECT_EQ(read(&array), -1);
  expect_record(13, kReadSource, L"Type mismatch");
  EXPECT_EQ(write(array), -1);
  expect_record(13, kWriteSource, L"Type mismatch");
  Value object;
  object.vt = VT_DISPATCH;
  object.pdispVal = global_.get();
  object.pdispVal->AddRef();
  EXPECT_EQ(read(&object), -1);
  expect_record(13, kReadSource, L"Type mismatch");
  EXPECT_EQ(write(object), -1);
  expect_record(13, kWriteSource, L"Type mismatch");
}

TEST_F(Roundtrip, a_Byte_writes_its_byte_and_reads_only_digits) {
  EXPECT_EQ(write(static_cast<BYTE>(200)), 0);
  EXPECT_EQ(position(), 1);
  seek(0);
  Value byte(static_cast<BYTE>(0));
  EXPECT_EQ(read(&byte), -1);
  expect_record(13, kReadSource, L"Type mismatch");
  EXPECT_EQ(write(static_cast<BYTE>('7')), 0);
  seek(1);
  EXPECT_EQ(read(&byte), 0);
  EXPECT_EQ(byte.vt, VT_UI1);
  EXPECT_EQ(byte.bVal, 7);
}

TEST_F(Roundtrip, what_the_system_refuses_leaves_the_record_alone) {
  EXPECT_TRUE(close());
  handle_ = 0x7FFFFF0;
  Value number(5);
  EXPECT_EQ(read(&number), -1);
  EXPECT_EQ(number.lVal, 5);
  EXPECT_EQ(write(5), -1);
  EXPECT_TRUE(record_is_empty());
  handle_ = 0;
}

TEST_F(Roundtrip, positions_beyond_4_GB_read_and_write) {
  DWORD done = 0;
  DeviceIoControl(system_handle(), FSCTL_SET_SPARSE, nullptr, 0, nullptr, 0, &done, nullptr);
  constexpr LONGLONG kFar = 5LL << 30;
  seek(kFar);
  EXPECT_EQ(write(0x01020304), 0);
  seek(kFar);
  Value number(0);
  EXPECT_EQ(read(&number), 0);
  EXPECT_EQ(number.lVal, 0x01020304);
  EXPECT_EQ(position(), kFar + 4);
  EXPECT_TRUE(close());
  EXPECT_TRUE(open(folder_.file(L"values"), kRdonly));
}

}  // namespace
}  // namespace qv::tests
