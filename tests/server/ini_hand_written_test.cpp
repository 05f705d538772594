// INI files written by hand, and files that other programs write and read: comments, blanks,
// quotes, line ends are as the platform's own services take them.
#include <array>
#include <cstring>
#include <vector>

#include "server/error_record_client.h"
#include "server/temp_folder.h"

namespace qv::tests {
namespace {

class IniByHand : public WithErrorRecord {
 protected:
  void hold(std::string_view content, std::wstring_view folder = L"") {
    name_ = std::wstring(folder) + L"h" + std::to_wstring(++files_) + L".ini";
    folder_.write(name_, content);
    EXPECT_EQ(ini_->put_IniFile(String(path())), S_OK);
  }
  std::wstring path() const { return folder_.file(name_); }
  std::string narrow_path() const {
    const std::wstring wide = path();
    return std::string(wide.begin(), wide.end());
  }
  std::wstring get(const wchar_t* section, const wchar_t* key) {
    Value s(section);
    Value k(key);
    Value fallback(L"none");
    Value result;
    EXPECT_EQ(global_->Ini_Get(&s, &k, &fallback, ini_.variable(), &result), S_OK);
    return std::wstring(result.text());
  }
  void put(const wchar_t* section, const wchar_t* key, const wchar_t* value) {
    String s(section);
    String k(key);
    Value v(value);
    EXPECT_EQ(global_->Ini_Put(&s, &k, &v, ini_.variable()), S_OK);
  }
  std::vector<std::wstring> lines(const wchar_t* section) {
    String s(section);
    SAFEARRAY* array = nullptr;
    EXPECT_EQ(global_->Ini_GetSect(&s, &array, ini_.variable()), S_OK);
    LONG last = -1;
    SafeArrayGetUBound(array, 1, &last);
    std::vector<std::wstring> texts;
    for (LONG i = 1; i <= last; ++i) {
      String text;
      EXPECT_EQ(SafeArrayGetElement(array, &i, &text), S_OK);
      texts.emplace_back(text.view());
    }
    SafeArrayDestroy(array);
    return texts;
  }
  static std::wstring wide(const char* text, std::size_t length) {
    std::wstring result(length, L'\0');
    const int count = static_cast<int>(length);
    result.resize(static_cast<std::size_t>(
        MultiByteToWideChar(CP_ACP, 0, text, count, result.data(), count)));
    return result;
  }
  // What a program that calls the narrow-character services is given.
  std::wstring narrow_get(const char* section, const char* key) {
    std::array<char, 8192> buffer;
    const DWORD length =
        GetPrivateProfileStringA(section, key, "none", buffer.data(),
                                 static_cast<DWORD>(buffer.size()), narrow_path().c_str());
    return wide(buffer.data(), length);
  }
  std::vector<std::wstring> narrow_lines(const char* section) {
    std::array<char, 8192> buffer{};
    GetPrivateProfileSectionA(section, buffer.data(), static_cast<DWORD>(buffer.size()),
                              narrow_path().c_str());
    std::vector<std::wstring> texts;
    for (const char* line = buffer.data(); *line != '\0'; line += std::strlen(line) + 1) {
      texts.push_back(wide(line, std::strlen(line)));
    }
    return texts;
  }

  TempFolder folder_;
  Pointer<_QVtIniStruct> ini_ = create<_QVtIniStruct>(CLSID_QVtIniStruct);

 private:
  std::wstring name_;
  int files_ = 0;
};

constexpr const char* kByHand =
    "stray=before any section\r\n"
    "; a comment\r\n"
    "\r\n"
    "[ Blanks ]\r\n"
    "  key  =  value with blanks  \r\n"
    "\ttab\t=\tvalue\t\r\n"
    "no value=\r\n"
    "no equals sign\r\n"
    "=no key\r\n"
    "twice=first\r\n"
    "twice=second\r\n"
    "sum=1=2=3\r\n"
    "[quotes]\n"
    "a=\"double  \"\n"
    "b='single  '\n"
    "c=\"half\n"
    "d=in \"the\" middle\n"
    "e=\"\"\n"
    "f=\"\"twice\"\"\n"
    ";g=commented out\n"
    "h=text ; no comment\n"
    "#i=hash\n"
    "[mixed]\n"
    "a=1\r\n"
    "b=2\n"
    "c=3\r"
    "d=4\r\n"
    "\r\n\r\n"
    "e=caff\xE8 \x80\r\n"
    "[quotes]\r\n"
    "a=second section of that name\r\n"
    "[no end\r\n"
    "a=1\r\n"
    "[]\r\n"
    "a=nameless\r\n"
    "[last]\r\n"
    "a=without a line end";

TEST_F(IniByHand, values_are_what_the_narrow_services_give) {
  hold(kByHand);
  const char* sections[] = {"Blanks", " Blanks ", "quotes", "QUOTES",    "mixed",
                            "last",   "no end",   "stray",  "no section"};
  const char* keys[] = {"key",   "tab",   "no value", "no equals sign",
                        "twice", "sum",   "a",        "b",
                        "c",     "d",     "e",        "f",
                        "g",     ";g",    "h",        "i",
                        "#i",    " key ", "KEY",      "stray"};
  for (const char* section : sections) {
    const std::wstring wide_section = wide(section, std::strlen(section));
    for (const char* key : keys) {
      EXPECT_EQ(get(wide_section.c_str(), wide(key, std::strlen(key)).c_str()),
                narrow_get(section, key))
          << section << " " << key;
    }
    EXPECT_EQ(get(wide_section.c_str(), L""), narrow_get(section, nullptr)) << section;
    EXPECT_EQ(lines(wide_section.c_str()), narrow_lines(section)) << section;
  }
  EXPECT_EQ(get(L"", L""), narrow_get(nullptr, nullptr));
}

TEST_F(IniByHand, blanks_around_go_and_one_pair_of_quotes_too) {
  hold(kByHand);
  EXPECT_EQ(get(L"Blanks", L"key"), L"value with blanks");
  EXPECT_EQ(get(L"Blanks", L"tab"), L"value");
  EXPECT_EQ(get(L"Blanks", L"no value"), L"");
  EXPECT_EQ(get(L"Blanks", L"twice"), L"first");
  EXPECT_EQ(get(L"Blanks", L"sum"), L"1=2=3");
  EXPECT_EQ(get(L"quotes", L"a"), L"double  ");
  EXPECT_EQ(get(L"quotes", L"b"), L"single  ");
  EXPECT_EQ(get(L"quotes", L"c"), L"\"half");
  EXPECT_EQ(get(L"quotes", L"d"), L"in \"the\" middle");
  EXPECT_EQ(get(L"quotes", L"e"), L"");
  EXPECT_EQ(get(L"quotes", L"g"), L"none");
  EXPECT_EQ(get(L"quotes", L"h"), L"text ; no comment");
}

TEST_F(IniByHand, line_ends_of_both_systems_may_mix) {
  hold(kByHand);
  EXPECT_EQ(get(L"mixed", L"a"), L"1");
  EXPECT_EQ(get(L"mixed", L"b"), L"2");
  EXPECT_EQ(get(L"mixed", L"e"), L"caff\xE8 \x20AC");
  EXPECT_EQ(get(L"last", L"a"), L"without a line end");
}

TEST_F(IniByHand, a_change_keeps_what_else_stands_in_the_file) {
  hold("; head\r\n[one]\r\na=1\r\n; about b\r\nb=2\r\n\r\n[two]\r\nc=3\r\n");
  put(L"one", L"b", L"new");
  put(L"two", L"d", L"4");
  EXPECT_EQ(get(L"one", L"a"), L"1");
  EXPECT_EQ(get(L"one", L"b"), L"new");
  EXPECT_EQ(get(L"two", L"c"), L"3");
  EXPECT_EQ(get(L"two", L"d"), L"4");
  const std::string content = folder_.read(path().substr(folder_.path().size()));
  EXPECT_NE(content.find("; head\r\n"), std::string::npos);
  EXPECT_NE(content.find("; about b\r\n"), std::string::npos);
  EXPECT_NE(content.find("b=new\r\n"), std::string::npos);
}

TEST_F(IniByHand, texts_stand_in_the_file_in_the_code_page) {
  hold("");
  put(L"caff\xE8", L"\x20AC", L"a \x2013 b");
  const std::string content = folder_.read(path().substr(folder_.path().size()));
  EXPECT_NE(content.find("[caff\xE8]"), std::string::npos);
  EXPECT_NE(content.find("\x80=a \x96 b"), std::string::npos);
  EXPECT_EQ(narrow_get("caff\xE8", "\x80"), L"a \x2013 b");
  EXPECT_EQ(get(L"caff\xE8", L"\x20AC"), L"a \x2013 b");
}

TEST_F(IniByHand, a_character_that_the_code_page_lacks_is_replaced) {
  hold("");
  put(L"s", L"k", L"a\x4F60z");
  EXPECT_EQ(get(L"s", L"k"), L"a?z");
  // As the services themselves do, with the nearest letter where there is one.
  put(L"s", L"\x0100", L"\x0100");
  EXPECT_EQ(get(L"s", L"A"), L"A");
  EXPECT_EQ(get(L"s", L"\x0100"), L"A");
}

TEST_F(IniByHand, values_that_are_put_come_back_as_the_services_give_them) {
  hold("");
  put(L"s", L"blanks", L"  x  ");
  put(L"s", L"quoted", L"\"x\"");
  put(L"s", L"comment", L"; x");
  EXPECT_EQ(get(L"s", L"blanks"), narrow_get("s", "blanks"));
  EXPECT_EQ(get(L"s", L"quoted"), L"x");
  EXPECT_EQ(get(L"s", L"comment"), L"; x");
}

TEST_F(IniByHand, what_another_program_writes_is_read_and_the_reverse) {
  hold("");
  EXPECT_TRUE(WritePrivateProfileStringA("theirs", "key", "value", narrow_path().c_str()));
  EXPECT_EQ(get(L"theirs", L"key"), L"value");
  put(L"ours", L"key", L"value");
  EXPECT_EQ(narrow_get("ours", "key"), L"value");
}

TEST_F(IniByHand, names_of_files_are_of_any_script) {
  const std::wstring folder = L"\x4F60\x03A9\\";
  ASSERT_TRUE(CreateDirectoryW(folder_.file(folder).c_str(), nullptr));
  hold("[s]\r\nk=x\r\n", folder);
  EXPECT_EQ(get(L"s", L"k"), L"x");
  put(L"s", L"k", L"y");
  EXPECT_EQ(get(L"s", L"k"), L"y");
}

TEST_F(IniByHand, thousands_of_keys_are_read_one_by_one) {
  std::string content = "[s]\r\n";
  for (int i = 0; i < 5000; ++i) {
    content += "key" + std::to_string(i) + "=value" + std::to_string(i) + "\r\n";
  }
  hold(content);
  for (int i = 0; i < 5000; i += 617) {
    EXPECT_EQ(get(L"s", (L"key" + std::to_wstring(i)).c_str()), L"value" + std::to_wstring(i));
  }
  EXPECT_EQ(get(L"s", L"key5000"), L"none");
}

}  // namespace
}  // namespace qv::tests
