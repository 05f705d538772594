// Scanning in the manner of C, called early-bound.
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <thread>
#include <utility>

#include "server/client.h"

namespace qv::tests {
namespace {

constexpr LONG kMinLong = std::numeric_limits<LONG>::min();
constexpr LONG kMaxLong = std::numeric_limits<LONG>::max();

class CStrings : public testing::Test {
 protected:
  using ScanMethod = HRESULT (STDMETHODCALLTYPE _KwRtLib::*)(BSTR*, BSTR*, LONG*);
  LONG scanned(ScanMethod method, std::wstring_view text, std::wstring_view set) {
    String text_variable(text), set_variable(set);
    LONG result = -1;
    EXPECT_EQ((global_.get()->*method)(&text_variable, &set_variable, &result), S_OK);
    EXPECT_EQ(text_variable.view(), text);
    return result;
  }
  LONG str_tok(std::wstring_view text, std::wstring_view set) {
    return scanned(&_KwRtLib::StrTok, text, set);
  }

  LONG compared(bool with_case, std::wstring_view text1, std::wstring_view text2, LONG count) {
    String variable1(text1), variable2(text2);
    LONG result = 77;
    EXPECT_EQ(with_case ? global_->StrnCmp(&variable1, &variable2, &count, &result)
                        : global_->StrniCmp(&variable1, &variable2, &count, &result),
              S_OK);
    return result;
  }

  LONG last_of(std::wstring_view text, SHORT code) {
    String variable(text);
    LONG result = -1;
    EXPECT_EQ(global_->StrrChr(&variable, code, &result), S_OK);
    return result;
  }

  Pointer<_KwRtLib> global_ = create_global();
};

TEST_F(CStrings, StrSpn_and_StrcSpn_give_positions_from_1) {
  EXPECT_EQ(scanned(&_KwRtLib::StrSpn, L"aab", L"a"), 3);
  EXPECT_EQ(scanned(&_KwRtLib::StrSpn, L"aaa", L"a"), 0);
  EXPECT_EQ(scanned(&_KwRtLib::StrSpn, L"", L"a"), 0);
  EXPECT_EQ(scanned(&_KwRtLib::StrSpn, L"ab", L""), 1);
  EXPECT_EQ(scanned(&_KwRtLib::StrcSpn, L"abc", L"xc"), 3);
  EXPECT_EQ(scanned(&_KwRtLib::StrcSpn, L"abc", L"x"), 0);
  EXPECT_EQ(scanned(&_KwRtLib::StrcSpn, L"abc", L""), 0);
  EXPECT_EQ(scanned(&_KwRtLib::StrcSpn, L"a\u0161\u0416", L"\u0416"), 3)
      << "characters outside the code page count as themselves";
}

TEST_F(CStrings, a_scan_ends_before_the_first_character_0) {
  EXPECT_EQ(scanned(&_KwRtLib::StrcSpn, std::wstring_view(L"a\0b", 3), L"b"), 0);
  EXPECT_EQ(scanned(&_KwRtLib::StrSpn, std::wstring_view(L"a\0b", 3), L"a"), 0);
  EXPECT_EQ(scanned(&_KwRtLib::StrcSpn, L"ab", std::wstring_view(L"x\0b", 3)), 0);
}

TEST_F(CStrings, StrnCmp_compares_by_code_and_StrniCmp_without_case) {
  EXPECT_EQ(compared(true, L"abc", L"abd", 2), 0);
  EXPECT_LT(compared(true, L"abc", L"abd", 3), 0);
  EXPECT_GT(compared(true, L"abd", L"abc", 3), 0);
  EXPECT_LT(compared(true, L"ab", L"abc", 10), 0) << "a shorter text is less";
  EXPECT_EQ(compared(true, L"ab", L"ab", 10), 0);
  EXPECT_GT(compared(true, L"a", L"A", 1), 0);
  EXPECT_EQ(compared(false, L"aBc", L"AbC", 3), 0);
  EXPECT_LT(compared(false, L"a", L"B", 1), 0);
  EXPECT_NE(compared(false, L"\u00E0", L"\u00C0", 1), 0) << "only ASCII letters have case";
  EXPECT_EQ(compared(true, L"a", L"b", 0), 0);
  EXPECT_EQ(compared(true, L"a", L"b", -1), 0) << "a Count below 1 compares nothing";
  EXPECT_EQ(compared(true, std::wstring_view(L"a\0b", 3), std::wstring_view(L"a\0c", 3), 3), 0);
}

TEST_F(CStrings, StrrChr_finds_the_last_occurrence) {
  EXPECT_EQ(last_of(L"abca", L'a'), 4);
  EXPECT_EQ(last_of(L"abca", L'x'), 0);
  EXPECT_EQ(last_of(L"", L'x'), 0);
  EXPECT_EQ(last_of(L"a\u20ACb", 0x80), 2) << "the code is that of the code page";
  EXPECT_EQ(last_of(std::wstring_view(L"a\0a", 3), L'a'), 1);
  EXPECT_EQ(last_of(L"ab", 0), 0);
}

TEST_F(CStrings, StrRev_reverses_in_place) {
  const auto reversed = [&](std::wstring_view text) {
    String variable(text);
    EXPECT_EQ(global_->StrRev(&variable), S_OK);
    return std::wstring(variable.view());
  };
  EXPECT_EQ(reversed(L"abc"), L"cba");
  EXPECT_EQ(reversed(L""), L"");
  EXPECT_EQ(reversed(L"a\u20AC"),
            L"\u20AC"
            L"a");
  EXPECT_EQ(reversed(std::wstring_view(L"ab\0cd", 5)), std::wstring_view(L"ba\0cd", 5));
}

TEST_F(CStrings, texts_that_travel_narrow_come_back_as_the_code_page_has_them) {
  LONG number = 0;
  SHORT start = 0, check = 0;
  String text(L"a\u0100"), reversed(L"a\u0100"), checked(L"\u0100");
  ASSERT_EQ(global_->StrrChr(&text, L'x', &number), S_OK);
  EXPECT_EQ(text.view(), L"aA");
  ASSERT_EQ(global_->StrRev(&reversed), S_OK);
  EXPECT_EQ(reversed.view(), L"Aa");
  ASSERT_EQ(global_->CRC(&checked, &start, &check), S_OK);
  EXPECT_EQ(checked.view(), L"A");
}

TEST_F(CStrings, StrTok_goes_on_with_the_last_text) {
  EXPECT_EQ(str_tok(L"  ab,c ", L" ,"), 3);
  EXPECT_EQ(str_tok(L"", L" ,"), 6);
  EXPECT_EQ(str_tok(L"", L" ,"), 0);
  EXPECT_EQ(str_tok(L"", L" ,"), 0) << "and so it stays";
  EXPECT_EQ(str_tok(L"x-y z", L"-"), 1);
  EXPECT_EQ(str_tok(L"", L" "), 3) << "the set may change from call to call";
  EXPECT_EQ(str_tok(L"", L" "), 5);
}

TEST_F(CStrings, StrTok_has_its_place_once_per_thread) {
  ASSERT_EQ(str_tok(L"a b c", L" "), 1);
  std::thread other([] {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    {
      const auto global = create_global();
      String none, text(L"  x y"), set(L" ");
      LONG position = -1;
      EXPECT_EQ(global->StrTok(&none, &set, &position), S_OK);
      EXPECT_EQ(position, 0) << "this thread has begun no text";
      EXPECT_EQ(global->StrTok(&text, &set, &position), S_OK);
      EXPECT_EQ(position, 3);
    }
    CoUninitialize();
  });
  other.join();
  EXPECT_EQ(str_tok(L"", L" "), 3);
  const auto second = create_global();
  String none, set(L" ");
  LONG position = -1;
  ASSERT_EQ(second->StrTok(&none, &set, &position), S_OK);
  EXPECT_EQ(position, 5) << "and not once per object";
}

TEST_F(CStrings, StrTod_stops_at_the_first_character_that_can_not_belong_to_a_number) {
  const auto read = [&](std::wstring_view text) {
    String variable(text);
    LONG end = -1;
    double value = 77;
    EXPECT_EQ(global_->StrTod(&variable, &end, &value), S_OK);
    return std::pair(value, end);
  };
  EXPECT_EQ(read(L"3.25abc"), std::pair(3.25, 5L));
  EXPECT_EQ(read(L" -1.5E2x"), std::pair(-150.0, 8L));
  EXPECT_EQ(read(L"1d2"), std::pair(100.0, 4L));
  EXPECT_EQ(read(L"1e"), std::pair(1.0, 2L)) << "an exponent needs digits";
  EXPECT_EQ(read(L"1,5"), std::pair(1.0, 2L)) << "a point in every locale";
  EXPECT_EQ(read(L"abc"), std::pair(0.0, 1L));
  EXPECT_EQ(read(L""), std::pair(0.0, 1L));
  EXPECT_EQ(read(L"1e999"), std::pair(std::numeric_limits<double>::infinity(), 6L));
}

TEST_F(CStrings, StrTol_and_StrToul_keep_to_the_nearest_limit) {
  const auto read = [&](bool is_signed, std::wstring_view text) {
    String variable(text);
    LONG end = -1, value = 77;
    EXPECT_EQ(is_signed ? global_->StrTol(&variable, &end, &value)
                        : global_->StrToul(&variable, &end, &value),
              S_OK);
    return std::pair(value, end);
  };
  EXPECT_EQ(read(true, L" 12 34"), std::pair(12L, 4L));
  EXPECT_EQ(read(true, L"-12x"), std::pair(-12L, 4L));
  EXPECT_EQ(read(true, L"x"), std::pair(0L, 1L));
  EXPECT_EQ(read(true, L"-"), std::pair(0L, 1L));
  EXPECT_EQ(read(true, L"99999999999"), std::pair(kMaxLong, 12L));
  EXPECT_EQ(read(true, L"-99999999999"), std::pair(kMinLong, 13L));
  EXPECT_EQ(read(false, L"4294967295"), std::pair(-1L, 11L));
  EXPECT_EQ(read(false, L"2147483648"), std::pair(kMinLong, 11L));
  EXPECT_EQ(read(false, L"99999999999"), std::pair(-1L, 12L));
  EXPECT_EQ(read(false, L"-1"), std::pair(-1L, 3L));
  EXPECT_EQ(read(false, L"x"), std::pair(0L, 1L));
}

}  // namespace
}  // namespace qv::tests
