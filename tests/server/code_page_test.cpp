// Byte containers on systems of other code pages: the runner runs these tests once for each of a
// few locales. What is expected follows from the code page that the process has.
#include "server/client.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>
#include <utility>

namespace qv::tests {
namespace {

// Where one byte is not one character, byte containers are those of code page 1252.
UINT container_code_page() {
  CPINFO info{};
  GetCPInfo(GetACP(), &info);
  return info.MaxCharSize == 1 ? GetACP() : 1252;
}

class CodePage : public testing::Test {
 protected:
  CodePage() {
    SAFEARRAYBOUND bound{256, 0};
    all_bytes = SafeArrayCreate(VT_UI1, 1, &bound);
    for (int i = 0; i < 256; ++i) bytes()[i] = static_cast<unsigned char>(i);
    EXPECT_EQ(global->Byte_2_Str(&all_bytes, &text), S_OK);
  }
  ~CodePage() override { SafeArrayDestroy(all_bytes); }
  unsigned char* bytes() { return static_cast<unsigned char*>(all_bytes->pvData); }

  Pointer<_KwRtLib> global = create_global();
  SAFEARRAY* all_bytes = nullptr;
  String text;
};

TEST_F(CodePage, the_process_has_the_code_page_of_its_locale) {
  const std::pair<const wchar_t*, UINT> rows[] = {
      {L"C.UTF-8", 1252}, {L"ru_RU.UTF-8", 1251}, {L"ja_JP.UTF-8", 932}};
  std::array<wchar_t, 64> locale{};
  GetEnvironmentVariableW(L"LC_ALL", locale.data(), static_cast<DWORD>(locale.size()));
  const auto* row = std::ranges::find(rows, std::wstring(locale.data()),
                                      [](const auto& known) { return std::wstring(known.first); });
  ASSERT_NE(row, std::end(rows)) << "the runner's locale is not known here";
  EXPECT_EQ(GetACP(), row->second);
}

TEST_F(CodePage, every_byte_is_one_character_of_its_own) {
  ASSERT_EQ(text.length(), 256U);
  for (UINT a = 0; a < 256; ++a) {
    for (UINT b = 0; b < a; ++b) EXPECT_NE(text.view()[a], text.view()[b]) << a << ' ' << b;
  }
}

TEST_F(CodePage, every_byte_comes_back) {
  std::memset(bytes(), 0, 256);
  EXPECT_EQ(global->Str_2_Byte(&text, &all_bytes), S_OK);
  ASSERT_EQ(all_bytes->rgsabound[0].cElements, 256U);
  for (int i = 0; i < 256; ++i) EXPECT_EQ(bytes()[i], i);
}

TEST_F(CodePage, characters_are_those_of_the_code_page) {
  for (UINT byte = 0; byte < 256; ++byte) {
    const char narrow = static_cast<char>(byte);
    wchar_t unit = 0;
    ASSERT_EQ(MultiByteToWideChar(container_code_page(), 0, &narrow, 1, &unit, 1), 1);
    char back = 0;
    WideCharToMultiByte(container_code_page(), 0, &unit, 1, &back, 1, nullptr, nullptr);
    // A byte that the code page leaves undefined is the character of the same code.
    EXPECT_EQ(text.view()[byte], back == narrow ? unit : static_cast<wchar_t>(byte)) << byte;
  }
}

TEST_F(CodePage, values_survive_their_texts) {
  for (const DWORD bits : {0UL, 0xFFFFFFFFUL, 0x818D8F90UL, 0x12345678UL, 0x80FEA1E0UL}) {
    auto value = static_cast<LONG>(bits);
    String image;
    LONG back = 0;
    EXPECT_EQ(global->Long_2_Str(&value, &image), S_OK);
    EXPECT_EQ(image.length(), 4U);
    EXPECT_EQ(global->Str_2_Long(&image, &back), S_OK);
    EXPECT_EQ(back, value);
  }
}

TEST_F(CodePage, a_character_outside_the_code_page_comes_back_as_another_one_of_the_same_count) {
  // Deseret small letter EW: two UTF-16 units that no single-byte code page has.
  String outside(
      L"\xD801\xDC2E"
      L"ab");
  LONG value = 0;
  EXPECT_EQ(global->Str_2_Long(&outside, &value), S_OK);
  EXPECT_EQ(outside, L"??ab");
  EXPECT_EQ(value, 0x62613F3F);
}

}  // namespace
}  // namespace qv::tests
