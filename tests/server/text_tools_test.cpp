// Tokens, words, templates, padding and changes of texts, called early-bound.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "server/client.h"

namespace qv::tests {
namespace {

class TextTools : public testing::Test {
 protected:
  std::wstring get_token(const wchar_t* source, const wchar_t* separator, LONG number) {
    String source_text(source), separator_text(separator), token;
    EXPECT_EQ(global_->Get_Token(&source_text, &separator_text, &number, &token), S_OK);
    EXPECT_EQ(source_text.view(), source);
    return std::wstring(token.view());
  }

  std::wstring str_format(std::wstring_view form, std::wstring_view inserts) {
    String form_text(form), insert_text(inserts), result;
    EXPECT_EQ(global_->Str_Format(form_text, &insert_text, &result), S_OK);
    return std::wstring(result.view());
  }

  std::wstring transl_message(std::wstring_view form, std::wstring_view inserts) {
    String form_text(form), insert_text(inserts), result;
    EXPECT_EQ(global_->TranslMessage(form_text, &insert_text, &result), S_OK);
    return std::wstring(result.view());
  }

  std::wstring replace(std::wstring_view text, std::wstring_view wanted, std::wstring_view by) {
    String variable(text), wanted_text(wanted), replacement(by);
    EXPECT_EQ(global_->Replace_Str(&variable, &wanted_text, &replacement), S_OK);
    return std::wstring(variable.view());
  }

  std::wstring round_num(Value number, SHORT size) {
    String result;
    EXPECT_EQ(global_->Round_Num(number, &size, &result), S_OK);
    return std::wstring(result.view());
  }

  std::wstring pad_hex(Value number, SHORT length) {
    String result;
    EXPECT_EQ(global_->Pad_HexLeft(&number, &length, &result), S_OK);
    return std::wstring(result.view());
  }

  std::wstring pad_number(Value number, SHORT length, const wchar_t* fill) {
    String result, fill_text(fill);
    EXPECT_EQ(global_->Pad_NumLeft(&number, &length, &fill_text, &result), S_OK);
    return std::wstring(result.view());
  }

  Pointer<_KwRtLib> global_ = create_global();
};

TEST_F(TextTools, Get_Token_counts_from_1_and_tokens_may_be_empty) {
  EXPECT_EQ(get_token(L"a$$b", L"$", 1), L"a");
  EXPECT_EQ(get_token(L"a$$b", L"$", 2), L"");
  EXPECT_EQ(get_token(L"a$$b", L"$", 3), L"b");
}

TEST_F(TextTools, Get_Token_past_last_token_is_empty) {
  EXPECT_EQ(get_token(L"a$$b", L"$", 4), L"");
  EXPECT_EQ(get_token(L"a$$b", L"$", 2147483647), L"");
}

TEST_F(TextTools, Get_Token_below_1_is_empty) {
  EXPECT_EQ(get_token(L"a$b", L"$", 0), L"");
  EXPECT_EQ(get_token(L"a$b", L"$", -1), L"");
}

TEST_F(TextTools, Get_Token_of_an_empty_text_is_empty_for_every_number) {
  EXPECT_EQ(get_token(L"", L"$", 1), L"");
  EXPECT_EQ(get_token(L"", L"$", 2), L"");
}

TEST_F(TextTools, Get_Token_takes_its_separator_as_one_text_and_minds_case) {
  EXPECT_EQ(get_token(L"1xX2X3", L"xX", 1), L"1");
  EXPECT_EQ(get_token(L"1xX2X3", L"xX", 2), L"2X3");
  EXPECT_EQ(get_token(L"1xX2", L"x", 2), L"X2");
}

TEST_F(TextTools, Get_Token_with_an_empty_separator_gives_the_whole_text_as_token_1) {
  EXPECT_EQ(get_token(L"abc", L"", 1), L"abc");
  EXPECT_EQ(get_token(L"abc", L"", 2), L"");
}

TEST_F(TextTools, Get_Token_reads_past_characters_0) {
  String source(std::wstring_view(L"a\0b;c", 5)), separator(L";"), token;
  LONG number = 1;
  ASSERT_EQ(global_->Get_Token(&source, &separator, &number, &token), S_OK);
  EXPECT_EQ(token.view(), std::wstring_view(L"a\0b", 3));
}

TEST_F(TextTools, Get_Token_walks_through_a_long_text) {
  std::wstring text;
  for (int i = 1; i <= 20000; ++i) text += std::to_wstring(i) + L";";
  String source(text), separator(L";");
  for (LONG number = 1; number <= 20000; number += 371) {
    String token;
    ASSERT_EQ(global_->Get_Token(&source, &separator, &number, &token), S_OK);
    ASSERT_EQ(token.view(), std::to_wstring(number));
  }
}

TEST_F(TextTools, Str_Format_replaces_each_mark_by_the_next_text) {
  EXPECT_EQ(str_format(L"x$y$", L"1$2"), L"x1y2");
  EXPECT_EQ(str_format(L"x$y$", L"1"), L"x1y$");
  EXPECT_EQ(str_format(L"x$y", L"1$2$3"), L"x1y");
  EXPECT_EQ(str_format(L"xy", L"1"), L"xy");
}

TEST_F(TextTools, Str_Format_stops_at_an_empty_text) {
  EXPECT_EQ(str_format(L"x$y$z$", L"1$$3"), L"x1y$z$");
  EXPECT_EQ(str_format(L"x$", L""), L"x$");
  EXPECT_EQ(str_format(L"", L"1"), L"");
}

TEST_F(TextTools, TranslMessage_replaces_each_pair_of_percent_signs) {
  EXPECT_EQ(transl_message(L"Impossibile aprire il file %%.", L"a.txt"),
            L"Impossibile aprire il file a.txt.");
  EXPECT_EQ(transl_message(L"%% di %%", L"1%%2"), L"1 di 2");
  EXPECT_EQ(transl_message(L"5% %%", L"x"), L"5% x");
}

// As the members are told: the first mark of the template, again and again from the beginning.
std::wstring formatted_step_by_step(std::wstring form, const std::wstring& inserts,
                                    const std::wstring& mark) {
  std::size_t start = 0;
  while (start <= inserts.size()) {
    const std::size_t end = std::min(inserts.find(mark, start), inserts.size());
    const std::wstring text = inserts.substr(start, end - start);
    const std::size_t place = form.find(mark);
    if (text.empty() || place == std::wstring::npos) break;
    form.replace(place, mark.size(), text);
    start = end + mark.size();
  }
  return form;
}

TEST_F(TextTools, templates_are_filled_as_if_step_by_step_from_the_beginning) {
  std::mt19937 random(3);
  for (int round = 0; round < 3000; ++round) {
    std::wstring form(random() % 14, L' ');
    std::wstring inserts(random() % 14, L' ');
    for (wchar_t& c : form) c = L"%%%a$"[random() % 5];
    for (wchar_t& c : inserts) c = L"%%%bc$"[random() % 6];
    ASSERT_EQ(transl_message(form, inserts), formatted_step_by_step(form, inserts, L"%%"));
    ASSERT_EQ(str_format(form, inserts), formatted_step_by_step(form, inserts, L"$"));
  }
}

TEST_F(TextTools, Word_Delimiter_is_the_first_character_that_is_no_letter_or_digit) {
  const auto delimiter = [&](std::wstring_view text) {
    String variable(text);
    LONG position = 0;
    EXPECT_EQ(global_->Word_Delimiter(&variable, &position), S_OK);
    return position;
  };
  EXPECT_EQ(delimiter(L"ab1-c"), 4);
  EXPECT_EQ(delimiter(L"-"), 1);
  EXPECT_EQ(delimiter(L"abc"), 4);
  EXPECT_EQ(delimiter(L""), 1);
  EXPECT_EQ(delimiter(L"perch\u00E9 no"), 7) << "accented letters are letters";
  EXPECT_EQ(delimiter(std::wstring(1000, L'a') + L"_"), 1001);
}

TEST_F(TextTools, Word_Strip_takes_the_first_word) {
  String text(L"  ab cd"), word;
  ASSERT_EQ(global_->Word_Strip(&text, &word), S_OK);
  EXPECT_EQ(word.view(), L"ab");
  EXPECT_EQ(text.view(), L"cd");
}

TEST_F(TextTools, Word_Strip_walks_through_all_separators_and_ends_empty) {
  String text(L"-- uno, (due)tre -;");
  std::wstring words;
  for (int i = 0; i < 5; ++i) {
    String word;
    ASSERT_EQ(global_->Word_Strip(&text, &word), S_OK);
    words += std::wstring(word.view()) + L"|";
  }
  EXPECT_EQ(words, L"uno|due|tre|||");
  EXPECT_EQ(text.view(), L"");
}

TEST_F(TextTools, Word_Strip_of_one_word_leaves_nothing) {
  String text(L"uno"), word;
  ASSERT_EQ(global_->Word_Strip(&text, &word), S_OK);
  EXPECT_EQ(word.view(), L"uno");
  EXPECT_EQ(text.view(), L"");
}

TEST_F(TextTools, WordBlk_Strip_separates_by_blanks_alone) {
  String text(L" a-b   c'd"), word;
  ASSERT_EQ(global_->WordBlk_Strip(&text, &word), S_OK);
  EXPECT_EQ(word.view(), L"a-b");
  EXPECT_EQ(text.view(), L"c'd");
  String empty, nothing;
  ASSERT_EQ(global_->WordBlk_Strip(&empty, &nothing), S_OK);
  EXPECT_EQ(nothing.view(), L"");
}

TEST_F(TextTools, WordText_Strip_separates_by_blank_and_apostrophe_unless_told) {
  String text(L"l'uomo e"), word;
  ASSERT_EQ(global_->WordText_Strip(&text, nullptr, &word), S_OK);
  EXPECT_EQ(word.view(), L"l");
  EXPECT_EQ(text.view(), L"uomo e");

  String list(L"a,; b"), first;
  Value separators(L",;");
  ASSERT_EQ(global_->WordText_Strip(&list, &separators, &first), S_OK);
  EXPECT_EQ(first.view(), L"a");
  EXPECT_EQ(list.view(), L"; b");
  String second;
  ASSERT_EQ(global_->WordText_Strip(&list, &separators, &second), S_OK);
  EXPECT_EQ(second.view(), L"b");
  EXPECT_EQ(list.view(), L"");
}

TEST_F(TextTools, WordText_Strip_with_an_empty_set_takes_everything) {
  String text(L" a b "), word;
  Value separators(L"");
  ASSERT_EQ(global_->WordText_Strip(&text, &separators, &word), S_OK);
  EXPECT_EQ(word.view(), L" a b ");
  EXPECT_EQ(text.view(), L"");
}

TEST_F(TextTools, WordText_Strip_with_a_set_that_is_no_text_raises) {
  String text(L"a"), word;
  Value separators;
  separators.vt = VT_NULL;
  EXPECT_EQ(global_->WordText_Strip(&text, &separators, &word), error_result(94));
}

TEST_F(TextTools, Pad_Left_and_Pad_Right_give_exactly_that_length) {
  const auto padded = [&](bool left, std::wstring_view text, SHORT length) {
    String variable(text), result;
    EXPECT_EQ(left ? global_->Pad_Left(&variable, &length, &result)
                   : global_->Pad_Right(&variable, &length, &result),
              S_OK);
    return std::wstring(result.view());
  };
  EXPECT_EQ(padded(true, L"abc", 2), L"ab");
  EXPECT_EQ(padded(true, L"abc", 5), L"abc  ");
  EXPECT_EQ(padded(true, L"abc", 0), L"");
  EXPECT_EQ(padded(false, L"abc", 5), L"  abc");
  EXPECT_EQ(padded(false, L"abc", 2), L"ab") << "the first characters stay, not the last";
}

TEST_F(TextTools, a_length_below_0_raises_5) {
  SHORT length = -1;
  String text(L"a"), fill(L"0"), result;
  Value number(1);
  EXPECT_EQ(global_->Pad_Left(&text, &length, &result), error_result(5));
  EXPECT_EQ(error_description(), L"Invalid procedure call or argument");
  EXPECT_EQ(global_->Pad_Right(&text, &length, &result), error_result(5));
  EXPECT_EQ(global_->Pad_HexLeft(&number, &length, &result), error_result(5));
  EXPECT_EQ(global_->Pad_NumLeft(&number, &length, &fill, &result), error_result(5));
  EXPECT_EQ(global_->Pad_NumRight(&number, &length, &fill, &result), error_result(5));
  EXPECT_EQ(global_->Round_Num(number, &length, &result), error_result(5));
}

TEST_F(TextTools, Pad_HexLeft_keeps_the_last_digits) {
  EXPECT_EQ(pad_hex(255, 4), L"00FF");
  EXPECT_EQ(pad_hex(0x12345, 3), L"345");
  EXPECT_EQ(pad_hex(0, 2), L"00");
  EXPECT_EQ(pad_hex(10, 0), L"");
}

TEST_F(TextTools, Pad_HexLeft_of_a_negative_Integer_has_4_digits_and_of_a_Long_8) {
  EXPECT_EQ(pad_hex(static_cast<SHORT>(-1), 8), L"0000FFFF");
  EXPECT_EQ(pad_hex(-1, 8), L"FFFFFFFF");
  EXPECT_EQ(pad_hex(-1.0, 8), L"FFFFFFFF");
  EXPECT_EQ(pad_hex(2.5, 2), L"02") << "rounded, ties to even";
  EXPECT_EQ(pad_hex(L"255", 4), L"00FF");
}

TEST_F(TextTools, what_is_no_number_raises_13) {
  SHORT length = 4;
  String fill(L"0"), result;
  Value text(L"abc");
  EXPECT_EQ(global_->Pad_HexLeft(&text, &length, &result), error_result(13));
  EXPECT_EQ(error_description(), L"Type mismatch");
  EXPECT_EQ(global_->Pad_NumLeft(&text, &length, &fill, &result), error_result(13));
  EXPECT_EQ(global_->Pad_NumRight(&text, &length, &fill, &result), error_result(13));
  EXPECT_EQ(global_->Round_Num(text, &length, &result), error_result(13));
  Value null;
  null.vt = VT_NULL;
  EXPECT_EQ(global_->Pad_NumLeft(&null, &length, &fill, &result), error_result(94));
}

TEST_F(TextTools, Pad_HexLeft_past_a_Long_raises_6) {
  SHORT length = 4;
  String result;
  Value number(3e9);
  EXPECT_EQ(global_->Pad_HexLeft(&number, &length, &result), error_result(6));
}

TEST_F(TextTools, Pad_NumLeft_fills_in_front_and_keeps_the_first_characters) {
  EXPECT_EQ(pad_number(12, 5, L"0"), L"00012");
  EXPECT_EQ(pad_number(12345, 3, L"0"), L"123");
  EXPECT_EQ(pad_number(-7, 4, L"*+"), L"**-7") << "only the first character fills";
  EXPECT_EQ(pad_number(0.5, 4, L" "), L"  .5") << "no 0 before the point";
  EXPECT_EQ(pad_number(1234.5, 8, L"_"), L"__1234.5") << "a point in every locale";
  EXPECT_EQ(pad_number(L"17", 3, L"0"), L"017");
  EXPECT_EQ(pad_number(Value(), 3, L"0"), L"000") << "Empty is 0";
}

TEST_F(TextTools, Pad_NumRight_fills_behind) {
  Value number(12);
  SHORT length = 5;
  String fill(L"0"), result;
  ASSERT_EQ(global_->Pad_NumRight(&number, &length, &fill, &result), S_OK);
  EXPECT_EQ(result.view(), L"12000");
}

TEST_F(TextTools, a_fill_that_is_needed_and_empty_raises_5) {
  Value number(12);
  SHORT length = 5;
  String fill, result;
  EXPECT_EQ(global_->Pad_NumLeft(&number, &length, &fill, &result), error_result(5));
  EXPECT_EQ(global_->Pad_NumRight(&number, &length, &fill, &result), error_result(5));
  EXPECT_EQ(pad_number(12, 2, L""), L"12");
}

TEST_F(TextTools, Round_Num_looks_at_the_first_decimal_digit_alone) {
  EXPECT_EQ(round_num(3.47, 1), L"3.0");
  EXPECT_EQ(round_num(3.57, 1), L"3.5");
  EXPECT_EQ(round_num(3.47, 2), L"3.40");
  EXPECT_EQ(round_num(3.0, 2), L"3.00");
  EXPECT_EQ(round_num(3.99, 1), L"3.9");
  EXPECT_EQ(round_num(0.5, 1), L"0.5");
  EXPECT_EQ(round_num(7, 1), L"7.0");
}

TEST_F(TextTools, Round_Num_takes_the_fraction_of_a_negative_number_from_the_wrong_side) {
  EXPECT_EQ(round_num(-3.2, 1), L"-3.6");
  EXPECT_EQ(round_num(-3.2, 2), L"-3.62");
  EXPECT_EQ(round_num(-0.3, 1), L"-0.0");
}

TEST_F(TextTools, Round_Num_reads_the_digit_that_the_number_is_written_with) {
  EXPECT_EQ(round_num(9.7, 1), L"9.7");
  EXPECT_EQ(round_num(2.3, 2), L"2.30");
  for (int tenths = 0; tenths < 327670; ++tenths) {
    const std::wstring expected =
        std::to_wstring(tenths / 10) + L"." + std::to_wstring(tenths % 10) + L"0";
    ASSERT_EQ(round_num(tenths / 10.0, 2), expected);
  }
}

TEST_F(TextTools, Round_Num_with_another_Size_shows_zeros) {
  EXPECT_EQ(round_num(3.57, 3), L"3.000");
  EXPECT_EQ(round_num(3.57, 0), L"3.");
}

TEST_F(TextTools, Round_Num_past_an_Integer_raises_6) {
  SHORT size = 1;
  String result;
  EXPECT_EQ(round_num(32767.5, 1), L"32767.5");
  EXPECT_EQ(global_->Round_Num(Value(32768.0), &size, &result), error_result(6));
  EXPECT_EQ(error_description(), L"Overflow");
  EXPECT_EQ(global_->Round_Num(Value(-32768.0), &size, &result), error_result(6));
}

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
