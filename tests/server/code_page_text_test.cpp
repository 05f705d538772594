// Letters, words and sort keys on systems of other code pages: the runner runs these tests once for
// each of a few locales.
#include <gtest/gtest.h>

#include <string>

#include "server/client.h"

namespace qv::tests {
namespace {

class CodePageText : public testing::Test {
 protected:
  std::wstring key_sort(std::wstring_view key, SHORT flags) {
    String variable(key), table;
    EXPECT_EQ(global_->Key_Sort(&variable, &flags, &table), S_OK);
    return std::wstring(variable.view());
  }

  VARIANT_BOOL is_alpha(std::wstring_view text) {
    String variable(text);
    VARIANT_BOOL result = 7;
    EXPECT_EQ(global_->IsAlphaString(&variable, nullptr, &result), S_OK);
    return result;
  }

  static constexpr SHORT kUpperCase = 1;
  static constexpr SHORT kPrimary = 128;
  static constexpr UINT kCyrillic = 1251;

  Pointer<_KwRtLib> global_ = create_global();
};

TEST_F(CodePageText, letters_are_those_of_the_code_page) {
  EXPECT_EQ(is_alpha(L"abc"), VARIANT_TRUE);
  if (GetACP() != kCyrillic) {
    EXPECT_EQ(is_alpha(L"perch\u00E9"), VARIANT_TRUE);
    return;
  }
  EXPECT_EQ(is_alpha(L"\u0441\u043B\u043E\u0432\u043E"), VARIANT_TRUE);
  String text(L"\u0430\u0431, \u0432"), word;
  ASSERT_EQ(global_->Word_Strip(&text, &word), S_OK);
  EXPECT_EQ(word.view(), L"\u0430\u0431");
  EXPECT_EQ(text.view(), L"\u0432");
}

TEST_F(CodePageText, sort_keys_fold_the_letters_of_the_code_page) {
  EXPECT_EQ(key_sort(L"abc1", kUpperCase), L"ABC1");
  if (GetACP() != kCyrillic) {
    EXPECT_EQ(key_sort(L"\u00E0\u00FF\u00DF", kUpperCase), L"\u00C0\u0178\u00DF");
    EXPECT_EQ(key_sort(L"\u00E0\u00D8", kPrimary), L"aO");
    return;
  }
  EXPECT_EQ(key_sort(L"\u0430\u0447\u044F\u0451", kUpperCase), L"\u0410\u0427\u042F\u0401");
  EXPECT_EQ(key_sort(L"\u0439\u0451a", kPrimary), L"\u0439\u0451a")
      << "in Cyrillic a mark makes another letter";
}

TEST_F(CodePageText, the_console_code_page_and_back_leaves_a_text_alone) {
  const std::wstring_view word =
      GetACP() == kCyrillic ? L"\u0441\u043B\u043E\u0432\u043E" : L"parola";
  String text(word), oem, back;
  ASSERT_EQ(global_->Ansi_2_Oem(text, &oem), S_OK);
  EXPECT_EQ(oem.length(), word.size());
  ASSERT_EQ(global_->Oem_2_Ansi(oem, &back), S_OK);
  EXPECT_EQ(back.view(), word);
}

}  // namespace
}  // namespace qv::tests
