// Character classes, bits, division, check values and file access, called early-bound.
#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <string>
#include <utility>

#include "server/client.h"

namespace qv::tests {
namespace {

constexpr LONG kMinLong = std::numeric_limits<LONG>::min();
constexpr LONG kMaxLong = std::numeric_limits<LONG>::max();

class Primitives : public testing::Test {
 protected:
  SHORT crc(std::wstring_view text, SHORT start = -1) {
    String buffer(text);
    SHORT result = 77;
    EXPECT_EQ(global_->CRC(&buffer, &start, &result), S_OK);
    return result;
  }

  LONG access(std::wstring_view path, LONG mode) {
    String variable(path);
    LONG result = -1;
    EXPECT_EQ(global_->Access(&variable, &mode, &result), S_OK);
    return result;
  }

  Pointer<_KwRtLib> global_ = create_global();
};

struct ClassRow {
  const char* name;
  HRESULT (STDMETHODCALLTYPE _KwRtLib::*method)(SHORT, VARIANT_BOOL*);
  bool (*expected)(int code);
};

bool is_letter(int c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }
bool is_figure(int c) { return c >= '0' && c <= '9'; }

constexpr ClassRow kClasses[] = {
    {"IsAlnum", &_KwRtLib::IsAlnum, [](int c) { return is_letter(c) || is_figure(c); }},
    {"IsAlpha", &_KwRtLib::IsAlpha, is_letter},
    {"IsAscii", &_KwRtLib::IsAscii, [](int c) { return c >= 0 && c <= 0x7F; }},
    {"IsCntrl", &_KwRtLib::IsCntrl, [](int c) { return (c >= 0 && c <= 0x1F) || c == 0x7F; }},
    {"IsCsym", &_KwRtLib::IsCsym, [](int c) { return is_letter(c) || is_figure(c) || c == '_'; }},
    {"IsCsymf", &_KwRtLib::IsCsymf, [](int c) { return is_letter(c) || c == '_'; }},
    {"IsDigit", &_KwRtLib::IsDigit, is_figure},
    {"IsGraph", &_KwRtLib::IsGraph, [](int c) { return c > 0x20 && c <= 0x7E; }},
    {"IsLower", &_KwRtLib::IsLower, [](int c) { return c >= 'a' && c <= 'z'; }},
    {"IsPrint", &_KwRtLib::IsPrint, [](int c) { return c >= 0x20 && c <= 0x7E; }},
    {"IsPunct", &_KwRtLib::IsPunct,
     [](int c) { return c > 0x20 && c <= 0x7E && !is_letter(c) && !is_figure(c); }},
    {"IsSpace", &_KwRtLib::IsSpace, [](int c) { return (c >= 9 && c <= 13) || c == 0x20; }},
    {"IsUpper", &_KwRtLib::IsUpper, [](int c) { return c >= 'A' && c <= 'Z'; }},
    {"IsXdigit", &_KwRtLib::IsXdigit,
     [](int c) { return is_figure(c) || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f'); }},
};

TEST_F(Primitives, character_classes_know_ASCII_alone) {
  for (const ClassRow& row : kClasses) {
    for (int code = -300; code <= 600; ++code) {
      VARIANT_BOOL result = 7;
      ASSERT_EQ((global_.get()->*row.method)(static_cast<SHORT>(code), &result), S_OK);
      ASSERT_EQ(result, row.expected(code) ? VARIANT_TRUE : VARIANT_FALSE) << row.name << code;
    }
  }
  VARIANT_BOOL result = VARIANT_TRUE;
  ASSERT_EQ(global_->IsAlpha(224, &result), S_OK);
  EXPECT_EQ(result, VARIANT_FALSE) << "a with a grave accent";
}

TEST_F(Primitives, Shl_and_Shr_move_16_bits_in_place) {
  const auto shifted = [&](bool left, SHORT value, SHORT count) {
    EXPECT_EQ(left ? global_->Shl(&value, &count) : global_->Shr(&value, &count), S_OK);
    return value;
  };
  EXPECT_EQ(shifted(true, 1, 4), 16);
  EXPECT_EQ(shifted(true, 0x4000, 1), -32768);
  EXPECT_EQ(shifted(true, -32768, 1), 0) << "bits moved out are lost";
  EXPECT_EQ(shifted(false, -1, 1), 32767) << "zeros come in at the left";
  EXPECT_EQ(shifted(false, -32768, 15), 1);
  EXPECT_EQ(shifted(true, 5, 16), 0);
  EXPECT_EQ(shifted(false, 5, 100), 0);
  EXPECT_EQ(shifted(true, 5, 0), 5);
  EXPECT_EQ(shifted(true, 5, -1), 5) << "a negative count shifts nothing";
}

TEST_F(Primitives, Lshl_and_Lshr_move_32_bits_in_place) {
  const auto shifted = [&](bool left, LONG value, LONG count) {
    EXPECT_EQ(left ? global_->Lshl(&value, &count) : global_->Lshr(&value, &count), S_OK);
    return value;
  };
  EXPECT_EQ(shifted(true, kMinLong, 1), 0);
  EXPECT_EQ(shifted(true, 1, 31), kMinLong);
  EXPECT_EQ(shifted(false, -1, 1), kMaxLong);
  EXPECT_EQ(shifted(true, 5, 32), 0);
  EXPECT_EQ(shifted(false, 5, 32), 0);
  EXPECT_EQ(shifted(false, 5, -3), 5);
}

TEST_F(Primitives, rotations_return_the_result_and_leave_the_value_alone) {
  const auto rotated = [&](bool left, SHORT value, SHORT count) {
    const SHORT before = value;
    SHORT result = 0;
    EXPECT_EQ(
        left ? global_->Rotl(&value, &count, &result) : global_->Rotr(&value, &count, &result),
        S_OK);
    EXPECT_EQ(value, before);
    return result;
  };
  EXPECT_EQ(rotated(true, -32768, 1), 1);
  EXPECT_EQ(rotated(false, 1, 1), -32768);
  EXPECT_EQ(rotated(true, 0x1234, 4), 0x2341);
  EXPECT_EQ(rotated(true, 0x1234, 16), 0x1234);
  EXPECT_EQ(rotated(true, 0x1234, 20), 0x2341);
  EXPECT_EQ(rotated(true, 0x1234, -4), 0x4123) << "a negative count turns the other way";
}

TEST_F(Primitives, Lrotl_by_32_returns_the_value_and_leaves_the_argument_alone) {
  LONG value = 0x12345678;
  LONG count = 32;
  LONG result = 0;
  ASSERT_EQ(global_->Lrotl(&value, &count, &result), S_OK);
  EXPECT_EQ(result, 0x12345678);
  EXPECT_EQ(value, 0x12345678);
  count = 4;
  ASSERT_EQ(global_->Lrotl(&value, &count, &result), S_OK);
  EXPECT_EQ(result, 0x23456781);
  ASSERT_EQ(global_->Lrotr(&value, &count, &result), S_OK);
  EXPECT_EQ(result, static_cast<LONG>(0x81234567));
  count = -4;
  ASSERT_EQ(global_->Lrotr(&value, &count, &result), S_OK);
  EXPECT_EQ(result, 0x23456781);
  EXPECT_EQ(value, 0x12345678);
}

TEST_F(Primitives, Div_and_Ldiv_truncate_towards_zero) {
  const auto divided = [&](LONG numer, LONG denom) {
    SHORT quotient = 0, remainder = 0;
    LONG long_quotient = 0, long_remainder = 0;
    EXPECT_EQ(global_->Div(&numer, &denom, &quotient, &remainder), S_OK);
    EXPECT_EQ(global_->Ldiv(&numer, &denom, &long_quotient, &long_remainder), S_OK);
    EXPECT_EQ(quotient, long_quotient);
    EXPECT_EQ(remainder, long_remainder);
    return std::pair<int, int>(quotient, remainder);
  };
  EXPECT_EQ(divided(7, 2), std::pair(3, 1));
  EXPECT_EQ(divided(-7, 2), std::pair(-3, -1));
  EXPECT_EQ(divided(7, -2), std::pair(-3, 1));
  EXPECT_EQ(divided(-7, -2), std::pair(3, -1));
}

TEST_F(Primitives, a_division_by_0_raises_11) {
  LONG numer = 1, denom = 0, long_quotient = 7, long_remainder = 8;
  SHORT quotient = 7, remainder = 8;
  EXPECT_EQ(global_->Div(&numer, &denom, &quotient, &remainder), error_result(11));
  EXPECT_EQ(error_description(), L"Division by zero");
  EXPECT_EQ(global_->Ldiv(&numer, &denom, &long_quotient, &long_remainder), error_result(11));
  EXPECT_EQ(quotient, 7);
  EXPECT_EQ(long_remainder, 8);
}

TEST_F(Primitives, a_result_that_does_not_fit_raises_6_and_stores_nothing) {
  LONG numer = 32768, denom = 1, long_quotient = 7, long_remainder = 8;
  SHORT quotient = 7, remainder = 8;
  EXPECT_EQ(global_->Div(&numer, &denom, &quotient, &remainder), error_result(6));
  EXPECT_EQ(quotient, 7);
  EXPECT_EQ(remainder, 8);
  numer = 100000;
  denom = 200000;
  EXPECT_EQ(global_->Div(&numer, &denom, &quotient, &remainder), error_result(6))
      << "the remainder";
  EXPECT_EQ(quotient, 7);
  numer = kMinLong;
  denom = -1;
  EXPECT_EQ(global_->Ldiv(&numer, &denom, &long_quotient, &long_remainder), error_result(6));
  EXPECT_EQ(long_quotient, 7);
}

TEST_F(Primitives, Floor_and_Ceil_go_to_the_nearest_integer_on_their_side) {
  const auto floor_of = [&](double x) {
    double result = 0;
    EXPECT_EQ(global_->Floor(&x, &result), S_OK);
    return result;
  };
  const auto ceil_of = [&](double x) {
    double result = 0;
    EXPECT_EQ(global_->Ceil(&x, &result), S_OK);
    return result;
  };
  EXPECT_EQ(floor_of(2.8), 2.0);
  EXPECT_EQ(floor_of(-2.8), -3.0);
  EXPECT_EQ(floor_of(-3.0), -3.0);
  EXPECT_EQ(ceil_of(2.2), 3.0);
  EXPECT_EQ(ceil_of(-2.8), -2.0);
  EXPECT_EQ(ceil_of(1e300), 1e300);
}

TEST_F(Primitives, GetPointer_wraps_around_at_32_bits) {
  const auto pointer = [&](LONG base, LONG offset) {
    LONG result = 0;
    EXPECT_EQ(global_->GetPointer(&base, &offset, &result), S_OK);
    return result;
  };
  EXPECT_EQ(pointer(1000, 24), 1024);
  EXPECT_EQ(pointer(1000, -24), 976);
  EXPECT_EQ(pointer(kMaxLong, 1), kMinLong);
}

TEST_F(Primitives, Crypt_twice_restores_the_buffer) {
  std::wstring all;
  for (int code = 0; code < 300; ++code) all += static_cast<wchar_t>(code % 128);
  for (const int code : {0, 1, 255, 256, 0x1234, -1}) {
    String buffer(all);
    auto variable = static_cast<SHORT>(code);
    ASSERT_EQ(global_->Crypt(&buffer, &variable), S_OK);
    EXPECT_NE(buffer.view(), all) << code;
    EXPECT_EQ(buffer.length(), all.size());
    ASSERT_EQ(global_->Crypt(&buffer, &variable), S_OK);
    EXPECT_EQ(buffer.view(), all) << code;
  }
  String empty;
  SHORT code = 0;
  ASSERT_EQ(global_->Crypt(&empty, &code), S_OK);
  EXPECT_EQ(empty.view(), L"");
}

TEST_F(Primitives, Crypt_with_a_code_is_an_exclusive_or) {
  String buffer(L"abcd"), wide(L"abcd");
  SHORT code = 1;
  ASSERT_EQ(global_->Crypt(&buffer, &code), S_OK);
  EXPECT_EQ(buffer.view(), L"`cbe");
  code = 0x0102;
  ASSERT_EQ(global_->Crypt(&wide, &code), S_OK);
  EXPECT_EQ(wide.view(),
            L"cc"
            L"ae")
      << "low and high byte in turn";
}

TEST_F(Primitives, CRC_has_the_known_check_values) {
  EXPECT_EQ(crc(L"123456789"), 0x29B1);
  EXPECT_EQ(crc(L"123456789", 0), 0x31C3);
  EXPECT_EQ(crc(L"6789", crc(L"12345")), 0x29B1) << "a result chains on";
  String buffer(L"123456789");
  SHORT result = 0;
  ASSERT_EQ(global_->CRC(&buffer, nullptr, &result), S_OK);
  EXPECT_EQ(result, 0x29B1) << "left out, StartWith is 65535";
}

TEST_F(Primitives, CRC_of_an_empty_buffer_is_0_whatever_the_start) {
  EXPECT_EQ(crc(L""), 0);
  EXPECT_EQ(crc(L"", 123), 0);
}

TEST_F(Primitives, CRC_covers_of_a_long_buffer_the_length_of_the_last_step_alone) {
  std::wstring text(70000, L'x');
  for (std::size_t i = 0; i < text.size(); ++i) text[i] = static_cast<wchar_t>(i % 100 + 1);
  const auto first = [&](std::size_t count) { return std::wstring_view(text).substr(0, count); };
  EXPECT_EQ(crc(first(32768)), crc(first(1)));
  EXPECT_EQ(crc(first(65534)), crc(first(32767)));
  EXPECT_EQ(crc(first(65535)), crc(first(1)));
  EXPECT_EQ(crc(first(70000)), crc(first(70000 - 2 * 32767)));
}

class TemporaryFile {
 public:
  explicit TemporaryFile(const wchar_t* name) {
    std::array<wchar_t, MAX_PATH> folder;
    GetTempPathW(MAX_PATH, folder.data());
    path_ = std::wstring(folder.data()) + name;
    handle_ = CreateFileW(path_.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0,
                          nullptr);
    EXPECT_NE(handle_, INVALID_HANDLE_VALUE);
  }
  ~TemporaryFile() {
    close();
    SetFileAttributesW(path_.c_str(), FILE_ATTRIBUTE_NORMAL);
    DeleteFileW(path_.c_str());
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  void close() {
    if (handle_ != INVALID_HANDLE_VALUE) CloseHandle(std::exchange(handle_, INVALID_HANDLE_VALUE));
  }
  LONG handle() const { return static_cast<LONG>(reinterpret_cast<INT_PTR>(handle_)); }
  const std::wstring& path() const { return path_; }

 private:
  std::wstring path_;
  HANDLE handle_;
};

TEST_F(Primitives, Access_tells_what_may_be_done_with_a_file) {
  TemporaryFile file(L"qv_access.tmp");
  file.close();
  for (const LONG mode : {0, 2, 4, 6}) EXPECT_EQ(access(file.path(), mode), 0) << mode;
  SetFileAttributesW(file.path().c_str(), FILE_ATTRIBUTE_READONLY);
  EXPECT_EQ(access(file.path(), 0), 0);
  EXPECT_EQ(access(file.path(), 4), 0);
  EXPECT_EQ(access(file.path(), 2), 13);
  EXPECT_EQ(access(file.path(), 6), 13);
}

TEST_F(Primitives, Access_leaves_a_name_outside_the_code_page_as_it_is) {
  String path(L"C:\\\u0416.txt");
  LONG mode = 0, result = 0;
  ASSERT_EQ(global_->Access(&path, &mode, &result), S_OK);
  EXPECT_EQ(result, 2);
  EXPECT_EQ(path.view(), L"C:\\\u0416.txt");
}

TEST_F(Primitives, Access_of_a_file_that_is_missing_is_2) {
  EXPECT_EQ(access(L"C:\\no such folder\\no file", 0), 2);
  EXPECT_EQ(access(L"C:\\no file", 4), 2);
  EXPECT_EQ(access(L"", 0), 2);
}

TEST_F(Primitives, Access_of_a_folder_allows_everything) {
  EXPECT_EQ(access(L"C:\\windows", 0), 0);
  EXPECT_EQ(access(L"C:\\windows", 6), 0);
}

TEST_F(Primitives, Commit_flushes_a_file) {
  TemporaryFile file(L"qv_commit.tmp");
  const auto committed = [&](LONG handle) {
    LONG result = 77;
    EXPECT_EQ(global_->Commit(&handle, &result), S_OK);
    return result;
  };
  EXPECT_EQ(committed(file.handle()), 0);
  const LONG closed = file.handle();
  file.close();
  EXPECT_EQ(committed(closed), -1);
  EXPECT_EQ(committed(0), -1);
  EXPECT_EQ(committed(-1), -1);
}

}  // namespace
}  // namespace qv::tests
