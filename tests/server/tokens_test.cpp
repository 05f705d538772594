// Tokens, templates and words, called early-bound.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

#include "server/client.h"

namespace qv::tests {
namespace {

class Tokens : public testing::Test {
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

  Pointer<_KwRtLib> global_ = create_global();
};

TEST_F(Tokens, Get_Token_counts_from_1_and_tokens_may_be_empty) {
  EXPECT_EQ(get_token(L"a$$b", L"$", 1), L"a");
  EXPECT_EQ(get_token(L"a$$b", L"$", 2), L"");
  EXPECT_EQ(get_token(L"a$$b", L"$", 3), L"b");
}

TEST_F(Tokens, Get_Token_past_last_token_is_empty) {
  EXPECT_EQ(get_token(L"a$$b", L"$", 4), L"");
  EXPECT_EQ(get_token(L"a$$b", L"$", 2147483647), L"");
}

TEST_F(Tokens, Get_Token_below_1_is_empty) {
  EXPECT_EQ(get_token(L"a$b", L"$", 0), L"");
  EXPECT_EQ(get_token(L"a$b", L"$", -1), L"");
}

TEST_F(Tokens, Get_Token_of_an_empty_text_is_empty_for_every_number) {
  EXPECT_EQ(get_token(L"", L"$", 1), L"");
  EXPECT_EQ(get_token(L"", L"$", 2), L"");
}

TEST_F(Tokens, Get_Token_takes_its_separator_as_one_text_and_minds_case) {
  EXPECT_EQ(get_token(L"1xX2X3", L"xX", 1), L"1");
  EXPECT_EQ(get_token(L"1xX2X3", L"xX", 2), L"2X3");
  EXPECT_EQ(get_token(L"1xX2", L"x", 2), L"X2");
}

TEST_F(Tokens, Get_Token_with_an_empty_separator_gives_the_whole_text_as_token_1) {
  EXPECT_EQ(get_token(L"abc", L"", 1), L"abc");
  EXPECT_EQ(get_token(L"abc", L"", 2), L"");
}

TEST_F(Tokens, Get_Token_reads_past_characters_0) {
  String source(std::wstring_view(L"a\0b;c", 5)), separator(L";"), token;
  LONG number = 1;
  ASSERT_EQ(global_->Get_Token(&source, &separator, &number, &token), S_OK);
  EXPECT_EQ(token.view(), std::wstring_view(L"a\0b", 3));
}

TEST_F(Tokens, Get_Token_walks_through_a_long_text) {
  std::wstring text;
  for (int i = 1; i <= 20000; ++i) text += std::to_wstring(i) + L";";
  String source(text), separator(L";");
  for (LONG number = 1; number <= 20000; number += 371) {
    String token;
    ASSERT_EQ(global_->Get_Token(&source, &separator, &number, &token), S_OK);
    ASSERT_EQ(token.view(), std::to_wstring(number));
  }
}

TEST_F(Tokens, Str_Format_replaces_each_mark_by_the_next_text) {
  EXPECT_EQ(str_format(L"x$y$", L"1$2"), L"x1y2");
  EXPECT_EQ(str_format(L"x$y$", L"1"), L"x1y$");
  EXPECT_EQ(str_format(L"x$y", L"1$2$3"), L"x1y");
  EXPECT_EQ(str_format(L"xy", L"1"), L"xy");
}

TEST_F(Tokens, Str_Format_stops_at_an_empty_text) {
  EXPECT_EQ(str_format(L"x$y$z$", L"1$$3"), L"x1y$z$");
  EXPECT_EQ(str_format(L"x$", L""), L"x$");
  EXPECT_EQ(str_format(L"", L"1"), L"");
}

TEST_F(Tokens, TranslMessage_replaces_each_pair_of_percent_signs) {
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

TEST_F(Tokens, templates_are_filled_as_if_step_by_step_from_the_beginning) {
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

TEST_F(Tokens, Word_Delimiter_is_the_first_character_that_is_no_letter_or_digit) {
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

TEST_F(Tokens, Word_Strip_takes_the_first_word) {
  String text(L"  ab cd"), word;
  ASSERT_EQ(global_->Word_Strip(&text, &word), S_OK);
  EXPECT_EQ(word.view(), L"ab");
  EXPECT_EQ(text.view(), L"cd");
}

TEST_F(Tokens, Word_Strip_walks_through_all_separators_and_ends_empty) {
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

TEST_F(Tokens, Word_Strip_of_one_word_leaves_nothing) {
  String text(L"uno"), word;
  ASSERT_EQ(global_->Word_Strip(&text, &word), S_OK);
  EXPECT_EQ(word.view(), L"uno");
  EXPECT_EQ(text.view(), L"");
}

TEST_F(Tokens, WordBlk_Strip_separates_by_blanks_alone) {
  String text(L" a-b   c'd"), word;
  ASSERT_EQ(global_->WordBlk_Strip(&text, &word), S_OK);
  EXPECT_EQ(word.view(), L"a-b");
  EXPECT_EQ(text.view(), L"c'd");
  String empty, nothing;
  ASSERT_EQ(global_->WordBlk_Strip(&empty, &nothing), S_OK);
  EXPECT_EQ(nothing.view(), L"");
}

TEST_F(Tokens, WordText_Strip_separates_by_blank_and_apostrophe_unless_told) {
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

TEST_F(Tokens, WordText_Strip_with_an_empty_set_takes_everything) {
  String text(L" a b "), word;
  Value separators(L"");
  ASSERT_EQ(global_->WordText_Strip(&text, &separators, &word), S_OK);
  EXPECT_EQ(word.view(), L" a b ");
  EXPECT_EQ(text.view(), L"");
}

TEST_F(Tokens, WordText_Strip_with_a_set_that_is_no_text_raises) {
  String text(L"a"), word;
  Value separators;
  separators.vt = VT_NULL;
  EXPECT_EQ(global_->WordText_Strip(&text, &separators, &word), error_result(94));
}

}  // namespace
}  // namespace qv::tests
