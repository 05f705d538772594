// Changes of texts, code pages, exchanges, called early-bound.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <utility>

#include "server/client.h"

namespace qv::tests {
namespace {

class TextTools : public testing::Test {
 protected:
  std::wstring replace(std::wstring_view text, std::wstring_view wanted, std::wstring_view by) {
    String variable(text), wanted_text(wanted), replacement(by);
    EXPECT_EQ(global_->Replace_Str(&variable, &wanted_text, &replacement), S_OK);
    return std::wstring(variable.view());
  }

  Pointer<_KwRtLib> global_ = create_global();
};

TEST_F(TextTools, Replace_Str_replaces_every_occurrence) {
  EXPECT_EQ(replace(L"abcabc", L"b", L"xx"), L"axxcaxxc");
  EXPECT_EQ(replace(L"abcabc", L"bc", L""), L"aa");
  EXPECT_EQ(replace(L"abcabc", L"a", L"z"), L"zbczbc");
  EXPECT_EQ(replace(L"abc", L"B", L"x"), L"abc") << "case counts";
  EXPECT_EQ(replace(L"abc", L"x", L"y"), L"abc");
  EXPECT_EQ(replace(L"", L"x", L"y"), L"");
}

TEST_F(TextTools, Replace_Str_does_not_look_into_what_it_put_in) {
  EXPECT_EQ(replace(L"aaa", L"a", L"aa"), L"aaaaaa");
  EXPECT_EQ(replace(L"aaa", L"aa", L"a"), L"aa");
  EXPECT_EQ(replace(L"aab", L"ab", L"b"), L"ab");
}

TEST_F(TextTools, Replace_Str_of_an_empty_text_changes_nothing) {
  EXPECT_EQ(replace(L"abc", L"", L"x"), L"abc");
}

TEST_F(TextTools, Replace_Str_reads_past_characters_0) {
  EXPECT_EQ(replace(std::wstring_view(L"a\0b\0", 4), std::wstring_view(L"\0", 1), L", "),
            L"a, b, ");
}

TEST_F(TextTools, Replace_Str_takes_one_variable_for_all_arguments) {
  String text(L"aba"), replacement(L"xy");
  ASSERT_EQ(global_->Replace_Str(&text, &text, &text), S_OK);
  EXPECT_EQ(text.view(), L"aba");
  ASSERT_EQ(global_->Replace_Str(&text, &text, &replacement), S_OK);
  EXPECT_EQ(text.view(), L"xy");
}

TEST_F(TextTools, Replace_Str_of_the_same_length_works_in_place) {
  String text(std::wstring(100000, L'a')), wanted(L"a"), replacement(L"b");
  const BSTR before = text;
  ASSERT_EQ(global_->Replace_Str(&text, &wanted, &replacement), S_OK);
  EXPECT_EQ(static_cast<BSTR>(text), before);
  EXPECT_EQ(text.view(), std::wstring(100000, L'b'));
}

TEST_F(TextTools, Replace_Str_agrees_with_plain_search) {
  std::mt19937 random(5);
  for (int round = 0; round < 2000; ++round) {
    std::wstring text(random() % 80, L' '), wanted(1 + random() % 3, L' ');
    std::wstring by(random() % 4, L' ');
    for (wchar_t& c : text) c = L"ab"[random() % 2];
    for (wchar_t& c : wanted) c = L"ab"[random() % 2];
    for (wchar_t& c : by) c = L"abc"[random() % 3];
    std::wstring expected = text;
    for (std::size_t at = 0; (at = expected.find(wanted, at)) != std::wstring::npos;) {
      expected.replace(at, wanted.size(), by);
      at += by.size();
    }
    ASSERT_EQ(replace(text, wanted, by), expected);
  }
}

TEST_F(TextTools, Trunc_Last_removes_the_last_character) {
  String text(L"ab");
  ASSERT_EQ(global_->Trunc_Last(&text), S_OK);
  EXPECT_EQ(text.view(), L"a");
  ASSERT_EQ(global_->Trunc_Last(&text), S_OK);
  EXPECT_EQ(text.view(), L"");
  ASSERT_EQ(global_->Trunc_Last(&text), S_OK);
  EXPECT_EQ(text.view(), L"");
}

TEST_F(TextTools, Trunc_Last_and_Trunc_IfLast_work_in_place) {
  String text(std::wstring(100000, L'a')), tail(L"aa");
  const BSTR before = text;
  ASSERT_EQ(global_->Trunc_Last(&text), S_OK);
  ASSERT_EQ(global_->Trunc_IfLast(&text, &tail), S_OK);
  EXPECT_EQ(static_cast<BSTR>(text), before);
  EXPECT_EQ(text.length(), 99997U);
  EXPECT_EQ(before[99997], L'\0') << "and it stays terminated";
}

TEST_F(TextTools, Trunc_IfLast_removes_a_tail_that_stands_there) {
  const auto truncated = [&](std::wstring_view text, std::wstring_view tail) {
    String variable(text), tail_text(tail);
    EXPECT_EQ(global_->Trunc_IfLast(&variable, &tail_text), S_OK);
    return std::wstring(variable.view());
  };
  EXPECT_EQ(truncated(L"C:\\a\\", L"\\"), L"C:\\a");
  EXPECT_EQ(truncated(L"C:\\a", L"\\"), L"C:\\a");
  EXPECT_EQ(truncated(L"abab", L"ab"), L"ab") << "once only";
  EXPECT_EQ(truncated(L"ab", L"AB"), L"ab");
  EXPECT_EQ(truncated(L"ab", L""), L"ab");
  EXPECT_EQ(truncated(L"b", L"ab"), L"b");
  EXPECT_EQ(truncated(L"", L"a"), L"");
}

TEST_F(TextTools, Trunc_IfLast_of_a_text_by_itself_leaves_nothing) {
  String text(L"abc");
  ASSERT_EQ(global_->Trunc_IfLast(&text, &text), S_OK);
  EXPECT_EQ(text.view(), L"");
}

TEST_F(TextTools, Label_Filter_doubles_and_Label_Strip_removes_every_ampersand) {
  String plain(L"a&b"), doubled(L"a&&b"), result, stripped;
  ASSERT_EQ(global_->Label_Filter(plain, &result), S_OK);
  EXPECT_EQ(result.view(), L"a&&b");
  ASSERT_EQ(global_->Label_Strip(doubled, &stripped), S_OK);
  EXPECT_EQ(stripped.view(), L"ab");
  EXPECT_EQ(doubled.view(), L"a&&b") << "what is by value stays the caller's";
}

TEST_F(TextTools, C_2_Str_ends_before_the_first_character_0) {
  String text(std::wstring_view(L"ab\0c\0", 5)), whole(L"abc"), result, unchanged;
  ASSERT_EQ(global_->C_2_Str(&text, &result), S_OK);
  EXPECT_EQ(result.view(), L"ab");
  ASSERT_EQ(global_->C_2_Str(&whole, &unchanged), S_OK);
  EXPECT_EQ(unchanged.view(), L"abc");
}

TEST_F(TextTools, IsAlphaString_and_IsAlNumString_know_the_letters_of_the_code_page) {
  const auto is = [&](bool digits, std::wstring_view text, bool strict) {
    String variable(text);
    VARIANT_BOOL strict_flag = strict ? VARIANT_TRUE : VARIANT_FALSE;
    VARIANT_BOOL result = 7;
    EXPECT_EQ(digits ? global_->IsAlNumString(&variable, &strict_flag, &result)
                     : global_->IsAlphaString(&variable, &strict_flag, &result),
              S_OK);
    EXPECT_TRUE(result == VARIANT_TRUE || result == VARIANT_FALSE);
    return result == VARIANT_TRUE;
  };
  EXPECT_TRUE(is(false, L"perch\u00E9", false));
  EXPECT_FALSE(is(false, L"perch\u00E9", true)) << "codes above 127 are no letters";
  EXPECT_TRUE(is(false, L"perche", true));
  EXPECT_FALSE(is(false, L"a1", false));
  EXPECT_FALSE(is(false, L"a b", false));
  EXPECT_TRUE(is(true, L"perch\u00E91", false));
  EXPECT_FALSE(is(true, L"perch\u00E91", true));
  EXPECT_TRUE(is(true, L"a1", true));
  EXPECT_FALSE(is(true, L"a_1", false));
  EXPECT_FALSE(is(false, std::wstring_view(L"a\0", 2), false)) << "character 0 is no letter";
  EXPECT_TRUE(is(false, L"", false));
  EXPECT_TRUE(is(true, L"", true));
}

TEST_F(TextTools, IsAlphaString_takes_False_where_Strict_is_left_out) {
  String text(L"\u00E0");
  VARIANT_BOOL result = VARIANT_FALSE;
  ASSERT_EQ(global_->IsAlphaString(&text, nullptr, &result), S_OK);
  EXPECT_EQ(result, VARIANT_TRUE);
}

TEST_F(TextTools, Ansi_2_Oem_gives_the_bytes_of_the_console_code_page) {
  String text(L"perch\u00E9"), oem, back;
  ASSERT_EQ(global_->Ansi_2_Oem(text, &oem), S_OK);
  if (GetOEMCP() == 437 || GetOEMCP() == 850) {
    EXPECT_EQ(oem.view(), L"perch\u201A") << "82 hexadecimal, as code page 1252 shows it";
  }
  ASSERT_EQ(global_->Oem_2_Ansi(oem, &back), S_OK);
  EXPECT_EQ(back.view(), L"perch\u00E9");
}

TEST_F(TextTools, Ansi_2_Oem_ends_before_the_first_character_0) {
  String text(std::wstring_view(L"ab\0c", 4)), empty, result, back, nothing;
  ASSERT_EQ(global_->Ansi_2_Oem(text, &result), S_OK);
  EXPECT_EQ(result.view(), L"ab");
  ASSERT_EQ(global_->Oem_2_Ansi(text, &back), S_OK);
  EXPECT_EQ(back.view(), L"ab");
  ASSERT_EQ(global_->Ansi_2_Oem(empty, &nothing), S_OK);
  EXPECT_EQ(nothing.view(), L"");
}

TEST_F(TextTools, Swap_exchanges_values_of_any_type) {
  Value first(L"abc"), second(7);
  ASSERT_EQ(global_->Swap(&first, &second), S_OK);
  EXPECT_EQ(first.vt, VT_I4);
  EXPECT_EQ(first.lVal, 7);
  EXPECT_EQ(second.text(), L"abc");
}

TEST_F(TextTools, Swap_exchanges_objects_by_reference) {
  const auto error = create<_QVtError>(CLSID_QVtError);
  Value first, second;
  first.vt = VT_DISPATCH;
  first.pdispVal = error.get();
  first.pdispVal->AddRef();
  ASSERT_EQ(global_->Swap(&first, &second), S_OK);
  EXPECT_EQ(first.vt, VT_EMPTY);
  ASSERT_EQ(second.vt, VT_DISPATCH);
  EXPECT_EQ(second.pdispVal, error.get());
}

TEST_F(TextTools, Swap_of_references_to_typed_variables_exchanges_the_variables) {
  LONG number = 5;
  String text(L"12");
  VARIANT first, second;
  first.vt = VT_BYREF | VT_I4;
  first.plVal = &number;
  second.vt = VT_BYREF | VT_BSTR;
  second.pbstrVal = &text;
  ASSERT_EQ(global_->Swap(&first, &second), S_OK);
  EXPECT_EQ(number, 12);
  EXPECT_EQ(text.view(), L"5");
}

TEST_F(TextTools, Swap_of_a_variable_with_itself_changes_nothing) {
  Value value(L"abc");
  ASSERT_EQ(global_->Swap(&value, &value), S_OK);
  EXPECT_EQ(value.text(), L"abc");
}

TEST_F(TextTools, SwapZ_puts_the_smaller_number_above_0_first) {
  const auto swapped = [&](LONG i, LONG j) {
    EXPECT_EQ(global_->SwapZ(&i, &j), S_OK);
    return std::pair(i, j);
  };
  EXPECT_EQ(swapped(0, 5), std::pair(5L, 0L));
  EXPECT_EQ(swapped(7, 0), std::pair(7L, 0L));
  EXPECT_EQ(swapped(7, 3), std::pair(3L, 7L));
  EXPECT_EQ(swapped(3, 7), std::pair(3L, 7L));
  EXPECT_EQ(swapped(0, 0), std::pair(0L, 0L));
  EXPECT_EQ(swapped(3, -1), std::pair(3L, -1L));
  EXPECT_EQ(swapped(0, -1), std::pair(-1L, 0L));
}

}  // namespace
}  // namespace qv::tests
