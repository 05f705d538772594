// PasswordCrypt, PasswordCryptEx and PasswordDecrypt through the function table.
#include <set>
#include <string>

#include "server/client.h"

namespace qv::tests {
namespace {

class PasswordText : public testing::Test {
 protected:
  bool crypt(String& password) {
    VARIANT_BOOL failed = VARIANT_FALSE;
    EXPECT_EQ(global_->PasswordCrypt(&password, &failed), S_OK);
    return failed != VARIANT_FALSE;
  }
  bool crypt_ex(String& password, LONG code) {
    VARIANT_BOOL failed = VARIANT_FALSE;
    EXPECT_EQ(global_->PasswordCryptEx(&password, &code, &failed), S_OK);
    return failed != VARIANT_FALSE;
  }
  bool decrypt(String& password) {
    VARIANT_BOOL failed = VARIANT_FALSE;
    EXPECT_EQ(global_->PasswordDecrypt(&password, &failed), S_OK);
    return failed != VARIANT_FALSE;
  }
  void expect_record(LONG number, std::wstring_view function, std::wstring_view description) {
    LONG found_number = 0;
    String found_source;
    String found_description;
    global_->Error_Number(&found_number);
    global_->Error_Source(&found_source);
    global_->Error_Description(&found_description);
    EXPECT_EQ(found_number, number);
    EXPECT_EQ(found_source.view(), L"QvRtLibOle.KwRtLibMod" + std::wstring(function));
    EXPECT_EQ(found_description.view(), description);
    global_->Reset_Error();
  }

  Pointer<_KwRtLib> global_ = create_global();
};

TEST_F(PasswordText, short_text_is_the_hexadecimal_text_of_the_scrambled_password) {
  String password(L"abc");
  ASSERT_FALSE(crypt(password));
  EXPECT_EQ(password.view(), L"FF5EB9");
  ASSERT_FALSE(decrypt(password));
  EXPECT_EQ(password.view(), L"abc");
}

TEST_F(PasswordText, full_text_holds_password_code_and_check_value) {
  const struct {
    const wchar_t* password;
    LONG code;
    const wchar_t* text;
  } kTexts[] = {
      {L"abc", 0, L"FF5EB9-AE-B30AE94C218166C4BA"},
      {L"abc", 5, L"646766-AB-AC0CE34E258562C1B718"},
      {L"abc", 4660, L"557057-AA0AEC48-B30DE94A248C61C5B916FB"},
      {L"", 7, L"-A9-B30DE84A218D63C8BF1DFE"},
  };
  for (const auto& golden : kTexts) {
    String password(golden.password);
    ASSERT_FALSE(crypt_ex(password, golden.code));
    EXPECT_EQ(password.view(), golden.text);
    ASSERT_FALSE(decrypt(password));
    EXPECT_EQ(password.view(), golden.password);
  }
}

TEST_F(PasswordText, start_code_defaults_to_0) {
  String password(L"abc");
  String same(L"abc");
  VARIANT_BOOL failed = VARIANT_TRUE;
  ASSERT_EQ(global_->PasswordCryptEx(&password, nullptr, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  ASSERT_FALSE(crypt_ex(same, 0));
  EXPECT_EQ(password.view(), same.view());
}

TEST_F(PasswordText, empty_password_stays_empty) {
  String password;
  EXPECT_FALSE(crypt(password));
  EXPECT_EQ(password.view(), L"");
  EXPECT_FALSE(decrypt(password));
  EXPECT_EQ(password.view(), L"");
}

TEST_F(PasswordText, negative_start_code_gives_different_texts_that_all_come_back) {
  std::set<std::wstring> texts;
  for (int i = 0; i < 40; ++i) {
    String password(L"Rosso & Nero");
    ASSERT_FALSE(crypt_ex(password, -1));
    texts.insert(std::wstring(password.view()));
    ASSERT_FALSE(decrypt(password));
    EXPECT_EQ(password.view(), L"Rosso & Nero");
  }
  EXPECT_GT(texts.size(), 10U);
}

TEST_F(PasswordText, every_changed_digit_of_a_full_text_is_refused) {
  String stored(L"abc");
  ASSERT_FALSE(crypt_ex(stored, 200));
  for (std::size_t i = 0; i < stored.length(); ++i) {
    std::wstring text(stored.view());
    if (text[i] == L'-') continue;
    text[i] = text[i] == L'7' ? L'8' : L'7';
    String changed(text);
    EXPECT_TRUE(decrypt(changed)) << i;
    EXPECT_EQ(changed.view(), text);
    expect_record(20000, L"PasswordDecrypt", L"cryptcode");
  }
}

TEST_F(PasswordText, every_code_and_every_character_comes_back) {
  std::wstring characters;
  for (int byte = 0; byte < 256; ++byte) {
    const char narrow = static_cast<char>(byte);
    wchar_t character = 0;
    MultiByteToWideChar(1252, 0, &narrow, 1, &character, 1);
    characters += character;
  }
  for (LONG code = 0; code <= 32767; code += code < 260 ? 1 : 997) {
    String password(characters);
    ASSERT_FALSE(crypt_ex(password, code));
    ASSERT_EQ(password.view().find(L'-'), 512U) << code;
    ASSERT_FALSE(decrypt(password));
    ASSERT_EQ(password.view(), characters) << code;
  }
}

TEST_F(PasswordText, every_other_digit_at_every_place_of_a_full_text_is_refused) {
  String stored(L"abc");
  ASSERT_FALSE(crypt_ex(stored, 7));
  const std::wstring whole(stored.view());
  for (std::size_t i = 0; i < whole.size(); ++i) {
    if (whole[i] == L'-') continue;
    for (const wchar_t digit : std::wstring(L"0123456789ABCDEF")) {
      if (digit == whole[i]) continue;
      std::wstring text = whole;
      text[i] = digit;
      String changed(text);
      EXPECT_TRUE(decrypt(changed)) << i << static_cast<char>(digit);
      EXPECT_EQ(changed.view(), text);
    }
  }
}

TEST_F(PasswordText, a_full_text_is_checked_as_it_is_written) {
  String lower(L"ff5eb9-AE-B30AE94C218166C4BA");
  EXPECT_TRUE(decrypt(lower)) << "the check value is of the digits, not of what they say";
  expect_record(20000, L"PasswordDecrypt", L"cryptcode");
  String further(L"FF5EB9-AE-B30AE94C218166C4BA-further");
  EXPECT_FALSE(decrypt(further)) << "a fourth field is passed over";
  EXPECT_EQ(further.view(), L"abc");
}

TEST_F(PasswordText, digits_of_either_case_are_read) {
  String text(L"ff5eb9");
  ASSERT_FALSE(decrypt(text));
  EXPECT_EQ(text.view(), L"abc");
}

TEST_F(PasswordText, text_that_is_not_hexadecimal_is_refused) {
  String text(L"GG");
  EXPECT_TRUE(decrypt(text));
  EXPECT_EQ(text.view(), L"GG");
  expect_record(13, L"PasswordDecrypt", L"Type mismatch");
}

TEST_F(PasswordText, two_fields_alone_are_refused) {
  String text(L"FF5EB9-AE");
  EXPECT_TRUE(decrypt(text));
  EXPECT_EQ(text.view(), L"FF5EB9-AE");
  expect_record(9, L"PasswordDecrypt", L"Subscript out of range");
}

TEST_F(PasswordText, damaged_fields_are_refused_each_for_its_reason) {
  const struct {
    const wchar_t* text;
    LONG number;
    const wchar_t* description;
  } kDamaged[] = {
      {L"-", 9, L"Subscript out of range"},
      {L"FF5EB9-", 9, L"Subscript out of range"},
      {L"-AE", 9, L"Subscript out of range"},
      {L"--", 20000, L"cryptcode"},
      {L"FF5EB9-AE-", 20000, L"cryptcode"},
      {L"FF5EB9--B30AE94C218166C4BA", 20000, L"cryptcode"},
      {L"-AE-B30AE94C218166C4BA", 20000, L"cryptcode"},
      {L"-FF5EB9-AE-B30AE94C218166C4BA", 20000, L"cryptcode"},
      {L"FF5EB9-AE-B30AE94C218166C4", 20000, L"cryptcode"},
      {L"FF5EB9-AE-0000000000000000", 20000, L"cryptcode"},
      {L"FF5EB9-AE-GG", 13, L"Type mismatch"},
      {L"GG5EB9-AE-B30AE94C218166C4BA", 20000, L"cryptcode"},
  };
  for (const auto& damaged : kDamaged) {
    String text(damaged.text);
    EXPECT_TRUE(decrypt(text)) << damaged.text;
    EXPECT_EQ(text.view(), damaged.text);
    expect_record(damaged.number, L"PasswordDecrypt", damaged.description);
  }
}

// The check value is a number: what follows its digits does not count.
TEST_F(PasswordText, further_characters_of_the_check_value_that_are_no_digits_are_passed_over) {
  String plain(L"abc");
  ASSERT_FALSE(crypt_ex(plain, 7));
  String text(std::wstring(plain.view()) + L"00");
  EXPECT_FALSE(decrypt(text));
  EXPECT_EQ(text.view(), L"abc");
}

TEST_F(PasswordText, least_start_code_is_a_random_one) {
  String password(L"abc");
  LONG code = -2147483647L - 1;
  VARIANT_BOOL failed = VARIANT_TRUE;
  EXPECT_EQ(global_->PasswordCryptEx(&password, &code, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_EQ(code, -2147483647L - 1) << "the variable stays";
  EXPECT_FALSE(decrypt(password));
  EXPECT_EQ(password.view(), L"abc");
}

TEST_F(PasswordText, a_long_password_of_any_bytes_comes_back) {
  std::wstring bytes;
  for (int i = 0; i < 100000; ++i) bytes += static_cast<wchar_t>(i % 128);
  for (const LONG code : {0, 45, 300}) {
    String password(bytes);
    ASSERT_FALSE(crypt_ex(password, code));
    EXPECT_EQ(password.view().find(L'-'), 200000U);
    ASSERT_FALSE(decrypt(password));
    EXPECT_EQ(password.view(), bytes);
  }
}

TEST_F(PasswordText, start_code_above_32767_fails_and_empties_the_password) {
  String password(L"abc");
  EXPECT_TRUE(crypt_ex(password, 32768));
  EXPECT_EQ(password.view(), L"");
  expect_record(6, L"PasswordCryptEx", L"Overflow");
}

}  // namespace
}  // namespace qv::tests
