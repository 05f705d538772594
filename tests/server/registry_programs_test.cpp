// The registry shared with other programs: what the system's own tools write is read, and what is
// written here they find.
#include <algorithm>
#include <set>
#include <vector>

#include "server/error_record_client.h"
#include "server/other_program.h"
#include "server/temp_folder.h"

namespace qv::tests {
namespace {

constexpr const wchar_t* kPath = L"Software\\QvRtLib programs";
constexpr const wchar_t* kWholePath = L"\"HKCU\\Software\\QvRtLib programs\"";

using Texts = std::vector<std::wstring>;

class RegistryPrograms : public WithErrorRecord {
 protected:
  RegistryPrograms() { RegDeleteTreeW(HKEY_CURRENT_USER, kPath); }
  ~RegistryPrograms() override { RegDeleteTreeW(HKEY_CURRENT_USER, kPath); }

  void add(std::wstring_view options) {
    EXPECT_EQ(run_program(L"reg add " + std::wstring(kWholePath) + L" /f " + std::wstring(options)),
              0)
        << options.size();
  }
  Value read(const wchar_t* name, const wchar_t* path = kPath) {
    Value value;
    VARIANT_BOOL failed = VARIANT_FALSE;
    EXPECT_EQ(global_->RegistryRead(String(path), String(name), &value, &root_, &failed), S_OK);
    EXPECT_EQ(failed, VARIANT_FALSE) << name;
    return value;
  }
  void write(const wchar_t* name, const Value& value, LONG type = REG_SZ,
             const std::wstring& path = kPath) {
    Value given(value);
    VARIANT_BOOL failed = VARIANT_FALSE;
    EXPECT_EQ(global_->RegistryWrite(String(path), String(name), &given, &root_, &type, &failed),
              S_OK);
    EXPECT_EQ(failed, VARIANT_FALSE);
  }
  static std::string bytes_of(const Value& value) {
    EXPECT_EQ(value.vt, VT_ARRAY | VT_UI1);
    LONG last = -1;
    SafeArrayGetUBound(value.parray, 1, &last);
    return std::string(static_cast<const char*>(value.parray->pvData),
                       static_cast<std::size_t>(last + 1));
  }
  static Texts texts_of(SAFEARRAY* array) {
    LONG first = 0;
    LONG last = 0;
    SafeArrayGetLBound(array, 1, &first);
    SafeArrayGetUBound(array, 1, &last);
    Texts texts;
    for (LONG i = first; i <= last; ++i) {
      String text;
      EXPECT_EQ(SafeArrayGetElement(array, &i, &text), S_OK);
      texts.emplace_back(text.view());
    }
    return texts;
  }
  // What the registry's editor writes of the key, without line ends: UTF-16 lines behind a mark.
  std::wstring exported() {
    const std::wstring file = folder_.file(L"out.reg");
    EXPECT_EQ(run_program(L"regedit /e \"" + file +
                          L"\" \"HKEY_CURRENT_USER\\Software\\QvRtLib programs\""),
              0);
    const std::string bytes = folder_.read(L"out.reg");
    std::wstring text(reinterpret_cast<const wchar_t*>(bytes.data()),
                      bytes.size() / sizeof(wchar_t));
    // A long value goes on in a further line behind a backslash.
    for (auto cut = text.find(L"\\\r\n  "); cut != std::wstring::npos;
         cut = text.find(L"\\\r\n  ")) {
      text.erase(cut, 5);
    }
    return text;
  }
  void import(const std::string& content) {
    folder_.write(L"in.reg", content);
    EXPECT_EQ(run_program(L"regedit /s \"" + folder_.file(L"in.reg") + L"\""), 0);
  }
  static std::string utf16(std::wstring_view text) {
    return std::string(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(wchar_t));
  }

  TempFolder folder_;
  LONG root_ = -2147483647;
};

TEST_F(RegistryPrograms, values_that_reg_adds_are_read) {
  add(L"/v text /t REG_SZ /d \"two words\"");
  add(L"/v empty /t REG_SZ /d \"\"");
  add(L"/v expand /t REG_EXPAND_SZ /d %no_such_variable%\\x");
  add(L"/v list /t REG_MULTI_SZ /d one\\0two\\0three");
  add(L"/v number /t REG_DWORD /d 0x12345678");
  add(L"/v bytes /t REG_BINARY /d 0041ff80");
  add(L"/ve /d default");
  add(L"/v \x03A9\x4F60 /t REG_SZ /d \x4F60\x03A9");
  EXPECT_EQ(read(L"text").text(), L"two words");
  EXPECT_EQ(read(L"empty").text(), L"");
  EXPECT_EQ(read(L"expand").text(), L"%no_such_variable%\\x");
  const Value list = read(L"list");
  ASSERT_EQ(list.vt, VT_ARRAY | VT_BSTR);
  EXPECT_EQ(texts_of(list.parray), (Texts{L"one", L"two", L"three"}));
  const Value number = read(L"number");
  EXPECT_EQ(number.vt, VT_I4);
  EXPECT_EQ(number.lVal, 0x12345678);
  EXPECT_EQ(bytes_of(read(L"bytes")), std::string("\x00\x41\xFF\x80", 4));
  EXPECT_EQ(read(L"").text(), L"default");
  EXPECT_EQ(read(L"\x03A9\x4F60").text(), L"\x4F60\x03A9");
}

TEST_F(RegistryPrograms, what_is_written_stands_in_the_editors_export) {
  write(L"text", L"say \"two\" \\ words");
  write(L"bytes", Value(std::wstring_view(L"A\0\xFF", 3)), REG_BINARY);
  write(L"number", 0x12AB, REG_DWORD);
  write(L"big", 0x12AB, REG_DWORD_BIG_ENDIAN);
  write(L"expand", L"%a%", REG_EXPAND_SZ);
  write(L"none", L"whatever", REG_NONE);
  write(L"other", L"whatever", 4711);
  write(L"", L"default");
  write(L"\x4F60", L"\x03A9");
  Value list;
  list.vt = VT_ARRAY | VT_BSTR;
  list.parray = SafeArrayCreateVector(VT_BSTR, 0, 2);
  for (LONG i = 0; i < 2; ++i) {
    SafeArrayPutElement(list.parray, &i, static_cast<BSTR>(String(i == 0 ? L"a" : L"b")));
  }
  write(L"list", list, REG_MULTI_SZ);
  write(L"", L"", REG_SZ, std::wstring(kPath) + L"\\below");
  const std::wstring text = exported();
  for (const wchar_t* line :
       {L"[HKEY_CURRENT_USER\\Software\\QvRtLib programs]",
        L"\"text\"=\"say \\\"two\\\" \\\\ words\"", L"\"bytes\"=hex:41,00,ff",
        L"\"number\"=dword:000012ab", L"\"big\"=hex(5):00,00,12,ab",
        L"\"expand\"=hex(2):25,00,61,00,25,00,00,00", L"\"none\"=hex(0):00,00,00,00",
        L"\"other\"=hex(1267):", L"@=\"default\"", L"\"\x4F60\"=\"\x03A9\"",
        // One end an item and none of the list.
        L"\"list\"=hex(7):61,00,00,00,62,00,00,00",
        L"[HKEY_CURRENT_USER\\Software\\QvRtLib programs\\below]"}) {
    EXPECT_NE(text.find(L"\n" + std::wstring(line) + L"\r\n"), std::wstring::npos)
        << Value(line).text().size() << testing::PrintToString(std::wstring(line));
  }
}

TEST_F(RegistryPrograms, files_that_the_editor_imports_are_read) {
  import(
      "REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\Software\\QvRtLib programs]\r\n"
      "\"text\"=\"caff\xE8\"\r\n\"number\"=dword:ffffffff\r\n\"bytes\"=hex:01,02\r\n"
      "\"big\"=hex(5):12,34,56,78\r\n\"none\"=hex(0):61,00,ff\r\n");
  EXPECT_EQ(read(L"text").text(), L"caff\xE8");
  EXPECT_EQ(read(L"number").lVal, -1);
  EXPECT_EQ(bytes_of(read(L"bytes")), "\1\2");
  EXPECT_EQ(read(L"big").lVal, 0x12345678);
  EXPECT_EQ(read(L"none").text(), std::wstring_view(L"a\0\xFF", 3));
  import("\xFF\xFE" + utf16(L"Windows Registry Editor Version 5.00\r\n\r\n"
                            L"[HKEY_CURRENT_USER\\Software\\QvRtLib programs\\\x4F60]\r\n"
                            L"@=\"\x4F60\x597D\"\r\n\"expand\"=hex(2):25,00,61,00,25,00,00,00\r\n"
                            L"\"list\"=hex(7):61,00,00,00,62,00,00,00,00,00\r\n"
                            L"\"cut\"=hex(1):61,00,62,00\r\n"));
  const wchar_t* below = L"Software\\QvRtLib programs\\\x4F60";
  EXPECT_EQ(read(L"", below).text(), L"\x4F60\x597D");
  EXPECT_EQ(read(L"expand", below).text(), L"%a%");
  const Value list = read(L"list", below);
  ASSERT_EQ(list.vt, VT_ARRAY | VT_BSTR);
  EXPECT_EQ(texts_of(list.parray), (Texts{L"a", L"b"}));
}

TEST_F(RegistryPrograms, what_is_deleted_here_has_gone_for_the_tools_and_the_reverse) {
  add(L"/v a /d 1");
  add(L"/v b /d 2");
  VARIANT_BOOL failed = VARIANT_TRUE;
  String name(L"a");
  EXPECT_EQ(global_->RegistryDeleteValue(String(kPath), &name, &root_, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_NE(run_program(L"reg query " + std::wstring(kWholePath) + L" /v a"), 0);
  EXPECT_EQ(run_program(L"reg query " + std::wstring(kWholePath) + L" /v b"), 0);
  EXPECT_EQ(run_program(L"reg delete " + std::wstring(kWholePath) + L" /v b /f"), 0);
  Value value;
  EXPECT_EQ(global_->RegistryRead(String(kPath), String(L"b"), &value, &root_, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_TRUE);
  expect_error(20000, L"KwRtLibMod.RegistryRead");
  EXPECT_EQ(global_->RegistryDeleteKey(String(kPath), &root_, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_NE(run_program(L"reg query " + std::wstring(kWholePath)), 0);
}

TEST_F(RegistryPrograms, keys_of_the_system_list_as_an_independent_walk_finds_them) {
  const wchar_t* path = L"Software\\Microsoft\\Windows NT\\CurrentVersion";
  HKEY key = nullptr;
  ASSERT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, path, 0, KEY_READ, &key), 0);
  std::set<std::wstring> keys;
  wchar_t name[256];
  for (DWORD i = 0;; ++i) {
    DWORD length = 256;
    if (RegEnumKeyExW(key, i, name, &length, nullptr, nullptr, nullptr, nullptr) != 0) break;
    keys.insert(name);
  }
  std::set<std::wstring> values;
  for (DWORD i = 0;; ++i) {
    DWORD length = 256;
    if (RegEnumValueW(key, i, name, &length, nullptr, nullptr, nullptr, nullptr) != 0) break;
    values.insert(name);
  }
  RegCloseKey(key);
  SAFEARRAY* names = nullptr;
  SAFEARRAY* data = nullptr;
  SAFEARRAY* types = nullptr;
  VARIANT_BOOL failed = VARIANT_TRUE;
  // HKEY_LOCAL_MACHINE is the default root.
  EXPECT_EQ(global_->RegistryListKeys(String(path), &names, nullptr, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  Texts found = texts_of(names);
  EXPECT_EQ(found.at(0), L"");
  EXPECT_GT(keys.size(), 3U);
  EXPECT_EQ(std::set<std::wstring>(found.begin() + 1, found.end()), keys);
  EXPECT_EQ(global_->RegistryListValues(String(path), &names, &data, &types, nullptr, &failed),
            S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  found = texts_of(names);
  EXPECT_EQ(found.at(0), L"");
  EXPECT_GT(values.size(), 3U);
  EXPECT_EQ(std::set<std::wstring>(found.begin() + 1, found.end()), values);
  SafeArrayDestroy(names);
  SafeArrayDestroy(data);
  SafeArrayDestroy(types);
}

TEST_F(RegistryPrograms, a_thousand_keys_and_values_are_listed) {
  HKEY key = nullptr;
  ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, kPath, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key,
                            nullptr),
            0);
  for (DWORD i = 0; i < 1000; ++i) {
    const std::wstring name = L"n" + std::to_wstring(i);
    HKEY below = nullptr;
    RegCreateKeyExW(key, name.c_str(), 0, nullptr, 0, KEY_READ, nullptr, &below, nullptr);
    RegCloseKey(below);
    RegSetValueExW(key, name.c_str(), 0, REG_DWORD, reinterpret_cast<const BYTE*>(&i), sizeof i);
  }
  RegCloseKey(key);
  SAFEARRAY* names = nullptr;
  SAFEARRAY* data = nullptr;
  SAFEARRAY* types = nullptr;
  VARIANT_BOOL failed = VARIANT_TRUE;
  EXPECT_EQ(global_->RegistryListKeys(String(kPath), &names, &root_, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  const Texts keys = texts_of(names);
  EXPECT_EQ(std::set<std::wstring>(keys.begin(), keys.end()).size(), 1001U);
  EXPECT_EQ(global_->RegistryListValues(String(kPath), &names, &data, &types, &root_, &failed),
            S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  const Texts values = texts_of(names);
  ASSERT_EQ(values.size(), 1001U);
  for (LONG i = 1; i <= 1000; ++i) {
    Value value;
    EXPECT_EQ(SafeArrayGetElement(data, &i, &value), S_OK);
    EXPECT_EQ(L"n" + std::to_wstring(value.lVal), values[static_cast<std::size_t>(i)]);
  }
  SafeArrayDestroy(names);
  SafeArrayDestroy(data);
  SafeArrayDestroy(types);
}

}  // namespace
}  // namespace qv::tests
