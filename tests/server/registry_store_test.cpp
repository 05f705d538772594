#include <numeric>
#include <optional>
#include <vector>

#include "server/error_record_client.h"

namespace qv::tests {
namespace {

constexpr LONG kCurrentUser = -2147483647;
constexpr LONG kLocalMachine = -2147483646;

using Bytes = std::vector<BYTE>;

Bytes wide(std::wstring_view text) {
  const auto* start = reinterpret_cast<const BYTE*>(text.data());
  return Bytes(start, start + text.size() * sizeof(wchar_t));
}

class RegistryStore : public WithErrorRecord {
 protected:
  RegistryStore() {
    RegDeleteTreeW(HKEY_CURRENT_USER, kPath);
    RegCreateKeyExW(HKEY_CURRENT_USER, kPath, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key_,
                    nullptr);
  }
  ~RegistryStore() override {
    RegCloseKey(key_);
    RegDeleteTreeW(HKEY_CURRENT_USER, kPath);
  }

  // By the system's own services.
  void store(const wchar_t* name, DWORD type, const Bytes& data) {
    ASSERT_EQ(RegSetValueExW(key_, name, 0, type, data.data(), static_cast<DWORD>(data.size())), 0);
  }
  Bytes stored(const wchar_t* name, DWORD* type = nullptr) {
    DWORD size = 0;
    EXPECT_EQ(RegQueryValueExW(key_, name, nullptr, type, nullptr, &size), 0);
    Bytes data(size);
    EXPECT_EQ(RegQueryValueExW(key_, name, nullptr, type, data.data(), &size), 0);
    return data;
  }

  bool read(const wchar_t* name, VARIANT& value, const wchar_t* path = kPath) {
    VARIANT_BOOL failed = VARIANT_FALSE;
    LONG root = kCurrentUser;
    EXPECT_EQ(global_->RegistryRead(String(path), String(name), &value, &root, &failed), S_OK);
    return failed == VARIANT_FALSE;
  }
  Value value_of(const wchar_t* name) {
    Value value;
    EXPECT_TRUE(read(name, value));
    return value;
  }
  bool write(const wchar_t* name, const Value& value, LONG type = REG_SZ,
             const wchar_t* path = kPath) {
    VARIANT_BOOL failed = VARIANT_FALSE;
    LONG root = kCurrentUser;
    Value given(value);
    EXPECT_EQ(global_->RegistryWrite(String(path), String(name), &given, &root, &type, &failed),
              S_OK);
    return failed == VARIANT_FALSE;
  }
  void expect_refusal(LONG code, std::wstring_view source) {
    const std::wstring ending = L" (DLL#" + std::to_wstring(code) + L")";
    EXPECT_TRUE(recorded_description().ends_with(ending)) << code;
    EXPECT_GT(recorded_description().size(), ending.size());
    expect_error(20000, source);
  }
  static Bytes bytes_of(const Value& value) {
    EXPECT_EQ(value.vt, VT_ARRAY | VT_UI1);
    LONG first = 0;
    LONG last = 0;
    SafeArrayGetLBound(value.parray, 1, &first);
    SafeArrayGetUBound(value.parray, 1, &last);
    EXPECT_EQ(first, 0);
    const auto* start = static_cast<const BYTE*>(value.parray->pvData);
    return Bytes(start, start + last + 1);
  }
  static std::vector<std::wstring> texts_of(SAFEARRAY* array, LONG lower_bound) {
    LONG first = 0;
    LONG last = 0;
    SafeArrayGetLBound(array, 1, &first);
    SafeArrayGetUBound(array, 1, &last);
    EXPECT_EQ(first, lower_bound);
    std::vector<std::wstring> texts;
    for (LONG i = first; i <= last; ++i) {
      String text;
      EXPECT_EQ(SafeArrayGetElement(array, &i, &text), S_OK);
      texts.emplace_back(text.view());
    }
    return texts;
  }
  static Value list(VARTYPE type, LONG lower_bound, const std::vector<const wchar_t*>& items) {
    Value value;
    value.vt = VT_ARRAY | type;
    value.parray = SafeArrayCreateVector(type, lower_bound, static_cast<ULONG>(items.size()));
    for (LONG i = lower_bound; const auto* item : items) {
      if (type == VT_VARIANT) {
        Value element(item);
        SafeArrayPutElement(value.parray, &i, &element);
      } else {
        SafeArrayPutElement(value.parray, &i, static_cast<BSTR>(String(item)));
      }
      ++i;
    }
    return value;
  }

  static constexpr const wchar_t* kPath = L"Software\\QvRtLib tests";
  HKEY key_ = nullptr;
};

using Texts = std::vector<std::wstring>;

TEST_F(RegistryStore, a_text_comes_back_without_its_end) {
  store(L"text", REG_SZ, wide(std::wstring_view(L"one two\0", 8)));
  EXPECT_EQ(value_of(L"text").text(), L"one two");
  store(L"expand", REG_EXPAND_SZ, wide(std::wstring_view(L"%PATH%\0", 7)));
  EXPECT_EQ(value_of(L"expand").text(), L"%PATH%");
}

TEST_F(RegistryStore, a_text_without_an_end_loses_its_last_character) {
  store(L"text", REG_SZ, wide(L"one"));
  const bool is_completed = stored(L"text").size() == 8;
  EXPECT_EQ(value_of(L"text").text(), is_completed ? L"one" : L"on");
  store(L"empty", REG_SZ, {});
  EXPECT_EQ(value_of(L"empty").text(), L"");
  store(L"half", REG_SZ, {'a', 0, 'b', 0, 'c'});
  EXPECT_EQ(value_of(L"half").text(), L"a");
  store(L"zeros", REG_SZ, wide(std::wstring_view(L"a\0b\0", 4)));
  EXPECT_EQ(value_of(L"zeros").text(), std::wstring_view(L"a\0b", 3));
}

TEST_F(RegistryStore, texts_and_names_of_any_script_survive) {
  EXPECT_TRUE(write(L"\x4F60", Value(L"\x03A9 caff\xE8 \x4F60")));
  EXPECT_EQ(stored(L"\x4F60"), wide(std::wstring_view(L"\x03A9 caff\xE8 \x4F60\0", 10)));
  EXPECT_EQ(value_of(L"\x4F60").text(), L"\x03A9 caff\xE8 \x4F60");
  EXPECT_TRUE(write(L"v", Value(L"1"), REG_SZ, L"Software\\QvRtLib tests\\\x03A9"));
  Value value;
  EXPECT_TRUE(read(L"v", value, L"Software\\QvRtLib tests\\\x03A9"));
}

TEST_F(RegistryStore, numbers_of_both_byte_orders_are_Longs) {
  store(L"little", REG_DWORD, {4, 3, 2, 1});
  store(L"big", REG_DWORD_BIG_ENDIAN, {1, 2, 3, 4});
  for (const auto* name : {L"little", L"big"}) {
    const Value value = value_of(name);
    EXPECT_EQ(value.vt, VT_I4);
    EXPECT_EQ(value.lVal, 0x01020304);
  }
  store(L"negative", REG_DWORD, {0xFF, 0xFF, 0xFF, 0xFF});
  EXPECT_EQ(value_of(L"negative").lVal, -1);
}

TEST_F(RegistryStore, a_number_of_an_odd_size_takes_what_is_there) {
  store(L"none", REG_DWORD, {});
  EXPECT_EQ(value_of(L"none").lVal, 0);
  store(L"two", REG_DWORD, {1, 2});
  EXPECT_EQ(value_of(L"two").lVal, 0);
  // The blank behind the value counts as its fourth byte.
  store(L"three", REG_DWORD, {1, 2, 3});
  EXPECT_EQ(value_of(L"three").lVal, 0x20030201);
  store(L"three big", REG_DWORD_BIG_ENDIAN, {1, 2, 3});
  EXPECT_EQ(value_of(L"three big").lVal, 0x01020320);
  store(L"eight", REG_DWORD, {1, 0, 0, 0, 9, 9, 9, 9});
  EXPECT_EQ(value_of(L"eight").lVal, 1);
}

TEST_F(RegistryStore, bytes_are_an_array_of_Byte_from_0) {
  Bytes all(256);
  std::iota(all.begin(), all.end(), BYTE{0});
  store(L"all", REG_BINARY, all);
  EXPECT_EQ(bytes_of(value_of(L"all")), all);
  store(L"none", REG_BINARY, {});
  EXPECT_EQ(bytes_of(value_of(L"none")), Bytes{0});
}

TEST_F(RegistryStore, a_list_is_an_array_of_String_from_1) {
  store(L"list", REG_MULTI_SZ, wide(std::wstring_view(L"one\0two\0\0", 9)));
  Value value = value_of(L"list");
  EXPECT_EQ(value.vt, VT_ARRAY | VT_BSTR);
  EXPECT_EQ(texts_of(value.parray, 1), (Texts{L"one", L"two"}));
  store(L"gap", REG_MULTI_SZ, wide(std::wstring_view(L"one\0\0two\0\0", 10)));
  EXPECT_EQ(texts_of(value_of(L"gap").parray, 1), (Texts{L"one", L"", L"two"}));
  store(L"open", REG_MULTI_SZ, wide(L"one"));
  EXPECT_EQ(texts_of(value_of(L"open").parray, 1).size(), 1U);
}

TEST_F(RegistryStore, an_empty_list_is_an_array_without_elements) {
  for (const auto& data : {Bytes{}, Bytes{0, 0}}) {
    store(L"list", REG_MULTI_SZ, data);
    const Value value = value_of(L"list");
    EXPECT_EQ(value.vt, VT_ARRAY | VT_BSTR);
    EXPECT_TRUE(texts_of(value.parray, 1).empty());
  }
}

TEST_F(RegistryStore, data_without_a_type_and_of_other_types) {
  store(L"none", REG_NONE, {0, 'a', 0xFF});
  EXPECT_EQ(value_of(L"none").text(), std::wstring_view(L"\0a\xFF", 3));
  store(L"empty", REG_NONE, {});
  EXPECT_EQ(value_of(L"empty").text(), L"");
  store(L"link", REG_LINK, {'a', 'b', 'c'});
  EXPECT_EQ(value_of(L"link").text(), L"ab");
  store(L"resources", REG_RESOURCE_LIST, {'a', 'b', 'c'});
  EXPECT_EQ(value_of(L"resources").text(), L"ab");
  store(L"long", REG_QWORD, {1, 0, 0, 0, 0, 0, 0, 0});
  EXPECT_EQ(value_of(L"long").vt, VT_EMPTY);
  store(L"unknown", 4711, {1});
  EXPECT_EQ(value_of(L"unknown").vt, VT_EMPTY);
}

TEST_F(RegistryStore, a_typed_variable_gets_the_value_in_its_own_type) {
  store(L"number", REG_DWORD, {0x39, 0x30, 0, 0});
  SHORT number = 0;
  VARIANT reference;
  reference.vt = VT_BYREF | VT_I2;
  reference.piVal = &number;
  EXPECT_TRUE(read(L"number", reference));
  EXPECT_EQ(number, 12345);
  store(L"number", REG_DWORD, {0, 0, 1, 0});
  EXPECT_FALSE(read(L"number", reference));
  expect_error(6, L"KwRtLibMod.RegistryRead");
  EXPECT_EQ(number, 12345);
  store(L"bytes", REG_BINARY, {1});
  EXPECT_FALSE(read(L"bytes", reference));
  expect_error(13, L"KwRtLibMod.RegistryRead");
}

TEST_F(RegistryStore, one_leading_backslash_is_dropped_and_no_more) {
  store(L"text", REG_SZ, wide(std::wstring_view(L"x\0", 2)));
  Value value;
  EXPECT_TRUE(read(L"text", value, L"\\Software\\QvRtLib tests"));
  EXPECT_EQ(value.text(), L"x");
  EXPECT_FALSE(read(L"text", value, L"\\\\Software\\QvRtLib tests"));
  EXPECT_EQ(error_number(), 20000);
}

TEST_F(RegistryStore, what_is_missing_fails_with_the_systems_code_and_leaves_the_variable_alone) {
  Value value(7);
  EXPECT_FALSE(read(L"no such value", value));
  expect_refusal(ERROR_FILE_NOT_FOUND, L"KwRtLibMod.RegistryRead");
  EXPECT_FALSE(read(L"", value));
  expect_refusal(ERROR_FILE_NOT_FOUND, L"KwRtLibMod.RegistryRead");
  EXPECT_FALSE(read(L"x", value, L"Software\\QvRtLib tests\\no such key"));
  expect_refusal(ERROR_FILE_NOT_FOUND, L"KwRtLibMod.RegistryRead");
  EXPECT_EQ(value.lVal, 7);
  LONG root = 0;
  VARIANT_BOOL failed = VARIANT_FALSE;
  EXPECT_EQ(global_->RegistryRead(String(L"x"), String(L"x"), &value, &root, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_TRUE);
  expect_refusal(ERROR_INVALID_HANDLE, L"KwRtLibMod.RegistryRead");
}

TEST_F(RegistryStore, a_name_that_is_too_long_fails) {
  const std::wstring name(20000, L'n');
  EXPECT_FALSE(write(name.c_str(), Value(L"x")));
  EXPECT_EQ(error_number(), 20000);
  Value value;
  EXPECT_FALSE(read(name.c_str(), value));
  EXPECT_EQ(error_source(), L"KwRtLibMod.RegistryRead");
  const std::wstring key = L"Software\\QvRtLib tests\\" + std::wstring(300, L'k');
  EXPECT_FALSE(write(L"x", Value(L"x"), REG_SZ, key.c_str()));
  EXPECT_EQ(error_source(), L"KwRtLibMod.RegistryWrite");
}

TEST_F(RegistryStore, paths_and_names_beyond_260_characters_work) {
  std::wstring path = kPath;
  for (wchar_t level = L'a'; level < L'e'; ++level) path += L"\\" + std::wstring(200, level);
  const std::wstring name(1000, L'n');
  EXPECT_TRUE(write(name.c_str(), Value(L"deep"), REG_SZ, path.c_str()));
  Value value;
  EXPECT_TRUE(read(name.c_str(), value, path.c_str()));
  EXPECT_EQ(value.text(), L"deep");
  LONG root = kCurrentUser;
  VARIANT_BOOL failed = VARIANT_TRUE;
  EXPECT_EQ(global_->RegistryDeleteKey(String(path), &root, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_FALSE(read(name.c_str(), value, path.c_str()));
}

TEST_F(RegistryStore, a_success_leaves_the_error_state_alone) {
  Value value;
  EXPECT_FALSE(read(L"no such value", value));
  EXPECT_TRUE(write(L"text", Value(L"x")));
  EXPECT_TRUE(read(L"text", value));
  expect_error(20000, L"KwRtLibMod.RegistryRead");
}

TEST_F(RegistryStore, written_texts_get_their_end_and_come_back_whole) {
  DWORD type = 0;
  EXPECT_TRUE(write(L"text", Value(L"one")));
  EXPECT_EQ(stored(L"text", &type), wide(std::wstring_view(L"one\0", 4)));
  EXPECT_EQ(type, static_cast<DWORD>(REG_SZ));
  EXPECT_EQ(value_of(L"text").text(), L"one");
  EXPECT_TRUE(write(L"expand", Value(L"%x%"), REG_EXPAND_SZ));
  EXPECT_EQ(value_of(L"expand").text(), L"%x%");
  EXPECT_TRUE(write(L"empty", Value(L"")));
  EXPECT_EQ(value_of(L"empty").text(), L"");
  EXPECT_TRUE(write(L"number", Value(12.5)));
  EXPECT_EQ(value_of(L"number").text(), L"12.5");
  EXPECT_TRUE(write(L"truth", Value(true)));
  EXPECT_EQ(value_of(L"truth").text(), L"True");
  const std::wstring longest(100000, L'x');
  EXPECT_TRUE(write(L"long", Value(longest)));
  EXPECT_EQ(value_of(L"long").text(), longest);
}

TEST_F(RegistryStore, REG_NONE_stores_four_zero_bytes_whatever_the_value) {
  EXPECT_TRUE(write(L"none", Value(L"text"), REG_NONE));
  DWORD type = 9;
  EXPECT_EQ(stored(L"none", &type), Bytes(4));
  EXPECT_EQ(type, static_cast<DWORD>(REG_NONE));
}

TEST_F(RegistryStore, other_types_store_their_bytes) {
  EXPECT_TRUE(write(L"bytes", Value(std::wstring_view(L"a\0\xFF\x20AC", 4)), REG_BINARY));
  EXPECT_EQ(stored(L"bytes"), (Bytes{'a', 0, 0xFF, 0x80}));
  EXPECT_TRUE(write(L"link", Value(L"ab"), REG_LINK));
  EXPECT_EQ(stored(L"link"), (Bytes{'a', 'b'}));
  EXPECT_TRUE(write(L"resources", Value(L"ab"), REG_RESOURCE_LIST));
  EXPECT_EQ(stored(L"resources"), (Bytes{'a', 'b'}));
  EXPECT_TRUE(write(L"number", Value(L"16909060"), REG_DWORD));
  EXPECT_EQ(stored(L"number"), (Bytes{4, 3, 2, 1}));
  EXPECT_TRUE(write(L"big", Value(16909060), REG_DWORD_BIG_ENDIAN));
  EXPECT_EQ(stored(L"big"), (Bytes{1, 2, 3, 4}));
  EXPECT_TRUE(write(L"rounded", Value(2.5), REG_DWORD));
  EXPECT_EQ(stored(L"rounded"), (Bytes{2, 0, 0, 0}));
  DWORD type = 0;
  EXPECT_TRUE(write(L"other", Value(L"text"), 4711));
  EXPECT_EQ(stored(L"other", &type), Bytes{});
  EXPECT_EQ(type, 4711U);
}

TEST_F(RegistryStore, a_list_is_stored_with_one_end_an_item_and_comes_back) {
  for (const auto type : {VT_BSTR, VT_VARIANT}) {
    for (const LONG lower_bound : {0L, 1L, -3L}) {
      EXPECT_TRUE(write(L"list", list(type, lower_bound, {L"one", L"two"}), REG_MULTI_SZ));
      EXPECT_EQ(stored(L"list"), wide(std::wstring_view(L"one\0two\0", 8)));
      EXPECT_EQ(texts_of(value_of(L"list").parray, 1), (Texts{L"one", L"two"}));
    }
  }
  Value numbers;
  numbers.vt = VT_ARRAY | VT_I2;
  numbers.parray = SafeArrayCreateVector(VT_I2, 0, 2);
  EXPECT_TRUE(write(L"list", numbers, REG_MULTI_SZ));
  EXPECT_EQ(texts_of(value_of(L"list").parray, 1), (Texts{L"0", L"0"}));
  EXPECT_TRUE(write(L"list", list(VT_BSTR, 0, {}), REG_MULTI_SZ));
  EXPECT_EQ(stored(L"list"), Bytes{});
}

TEST_F(RegistryStore, a_value_that_does_not_convert_fails_with_its_run_time_error) {
  Value null;
  null.vt = VT_NULL;
  const struct {
    Value value;
    LONG type;
    LONG number;
  } bad[] = {{null, REG_SZ, 94},
             {Value(L"x"), REG_DWORD, 13},
             {Value(1e10), REG_DWORD, 6},
             {Value(L"x"), REG_MULTI_SZ, 13},
             {list(VT_BSTR, 0, {L"x"}), REG_SZ, 13},
             {list(VT_BSTR, 0, {L"x"}), REG_BINARY, 13}};
  for (const auto& row : bad) {
    EXPECT_FALSE(write(L"bad", row.value, row.type));
    expect_error(row.number, L"KwRtLibMod.RegistryWrite");
  }
  EXPECT_EQ(RegQueryValueExW(key_, L"bad", nullptr, nullptr, nullptr, nullptr),
            ERROR_FILE_NOT_FOUND);
}

TEST_F(RegistryStore, an_empty_name_with_an_empty_value_only_makes_the_key) {
  EXPECT_TRUE(write(L"", Value(L""), REG_SZ, L"Software\\QvRtLib tests\\made"));
  HKEY made = nullptr;
  EXPECT_EQ(RegOpenKeyExW(key_, L"made", 0, KEY_READ, &made), 0);
  EXPECT_EQ(RegQueryValueExW(made, L"", nullptr, nullptr, nullptr, nullptr), ERROR_FILE_NOT_FOUND);
  RegCloseKey(made);
  EXPECT_TRUE(write(L"", Value(L"x"), REG_SZ, L"\\Software\\QvRtLib tests\\made"));
  Value value;
  EXPECT_TRUE(read(L"", value, L"Software\\QvRtLib tests\\made"));
  EXPECT_EQ(value.text(), L"x");
}

TEST_F(RegistryStore, an_empty_name_with_an_array_fails) {
  EXPECT_FALSE(write(L"", list(VT_BSTR, 0, {L"x"}), REG_MULTI_SZ));
  expect_error(13, L"KwRtLibMod.RegistryWrite");
}

class RegistryLists : public RegistryStore {
 protected:
  bool list_keys(const wchar_t* path) {
    VARIANT_BOOL failed = VARIANT_FALSE;
    LONG root = kCurrentUser;
    EXPECT_EQ(global_->RegistryListKeys(String(path), &names_, &root, &failed), S_OK);
    return failed == VARIANT_FALSE;
  }
  bool list_values(const wchar_t* path) {
    VARIANT_BOOL failed = VARIANT_FALSE;
    LONG root = kCurrentUser;
    EXPECT_EQ(global_->RegistryListValues(String(path), &names_, &values_, &types_, &root, &failed),
              S_OK);
    return failed == VARIANT_FALSE;
  }
  ~RegistryLists() override {
    SafeArrayDestroy(names_);
    SafeArrayDestroy(values_);
    SafeArrayDestroy(types_);
  }
  Texts names() {
    Texts texts = texts_of(names_, 0);
    EXPECT_EQ(texts.at(0), L"");
    texts.erase(texts.begin());
    return texts;
  }

  SAFEARRAY* names_ = nullptr;
  SAFEARRAY* values_ = nullptr;
  SAFEARRAY* types_ = nullptr;
};

TEST_F(RegistryLists, keys_stand_from_index_1) {
  EXPECT_TRUE(list_keys(kPath));
  EXPECT_TRUE(names().empty());
  for (const auto* name : {L"a", L"b", L"\x4F60"}) {
    EXPECT_TRUE(write(L"", Value(L""), REG_SZ, (std::wstring(kPath) + L"\\" + name).c_str()));
  }
  EXPECT_TRUE(list_keys(L"\\Software\\QvRtLib tests"));
  EXPECT_EQ(names(), (Texts{L"a", L"b", L"\x4F60"}));
  const std::wstring longest(255, L'k');
  EXPECT_TRUE(write(L"", Value(L""), REG_SZ, (std::wstring(kPath) + L"\\" + longest).c_str()));
  EXPECT_TRUE(list_keys(kPath));
  EXPECT_EQ(names().size(), 4U);
}

TEST_F(RegistryLists, a_missing_key_leaves_the_arrays_alone) {
  names_ = SafeArrayCreateVector(VT_BSTR, 5, 2);
  EXPECT_FALSE(list_keys(L"Software\\QvRtLib tests\\none"));
  expect_refusal(ERROR_FILE_NOT_FOUND, L"KwRtLibMod.RegistryListKeys");
  EXPECT_FALSE(list_values(L"Software\\QvRtLib tests\\none"));
  expect_refusal(ERROR_FILE_NOT_FOUND, L"KwRtLibMod.RegistryListValues");
  EXPECT_EQ(texts_of(names_, 5).size(), 2U);
}

TEST_F(RegistryLists, values_names_and_types_run_in_parallel) {
  EXPECT_TRUE(list_values(kPath));
  EXPECT_TRUE(names().empty());
  store(L"text", REG_SZ, wide(std::wstring_view(L"one\0", 4)));
  store(L"number", REG_DWORD, {7, 0, 0, 0});
  store(L"", REG_BINARY, {1, 2});
  store(L"three", REG_DWORD, {1, 2, 3});
  store(L"long", REG_BINARY, Bytes(5000, 1));
  EXPECT_TRUE(list_values(kPath));
  const Texts found = names();
  ASSERT_EQ(found.size(), 5U);
  for (LONG i = 1; i <= 5; ++i) {
    Value value;
    LONG type = 0;
    EXPECT_EQ(SafeArrayGetElement(values_, &i, &value), S_OK);
    EXPECT_EQ(SafeArrayGetElement(types_, &i, &type), S_OK);
    const std::wstring& name = found.at(static_cast<std::size_t>(i - 1));
    Value expected = value_of(name.c_str());
    DWORD expected_type = 0;
    stored(name.c_str(), &expected_type);
    EXPECT_EQ(type, static_cast<LONG>(expected_type));
    EXPECT_EQ(value.vt, expected.vt);
    if (value.vt == VT_I4) {
      EXPECT_EQ(value.lVal, expected.lVal);
    }
    if (value.vt == VT_BSTR) {
      EXPECT_EQ(value.text(), expected.text());
    }
    if (value.vt == (VT_ARRAY | VT_UI1)) {
      EXPECT_EQ(bytes_of(value), bytes_of(expected));
    }
  }
}

TEST_F(RegistryLists, a_locked_array_fails_and_stays) {
  names_ = SafeArrayCreateVector(VT_BSTR, 5, 2);
  SafeArrayLock(names_);
  EXPECT_FALSE(list_keys(kPath));
  expect_error(10, L"KwRtLibMod.RegistryListKeys");
  EXPECT_FALSE(list_values(kPath));
  expect_error(10, L"KwRtLibMod.RegistryListValues");
  SafeArrayUnlock(names_);
  EXPECT_EQ(texts_of(names_, 5).size(), 2U);
}

class RegistryDeletes : public RegistryStore {
 protected:
  template <class Call>
  bool remove(Call call, const wchar_t* path) {
    VARIANT_BOOL failed = VARIANT_FALSE;
    auto root = static_cast<LONG>(kCurrentUser);
    EXPECT_EQ((global_.get()->*call)(String(path), &root, &failed), S_OK);
    return failed == VARIANT_FALSE;
  }
  void make(const wchar_t* name) {
    HKEY made = nullptr;
    RegCreateKeyExW(key_, name, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &made, nullptr);
    RegCloseKey(made);
  }
  bool exists(const wchar_t* name) {
    HKEY found = nullptr;
    const bool there = RegOpenKeyExW(key_, name, 0, KEY_READ, &found) == 0;
    RegCloseKey(found);
    return there;
  }
};

TEST_F(RegistryDeletes, RegistryDeleteValue_deletes_one_value) {
  store(L"text", REG_SZ, wide(L"x"));
  LONG root = kCurrentUser;
  VARIANT_BOOL failed = VARIANT_TRUE;
  String name(L"text");
  EXPECT_EQ(global_->RegistryDeleteValue(String(kPath), &name, &root, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_EQ(RegQueryValueExW(key_, L"text", nullptr, nullptr, nullptr, nullptr),
            ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(global_->RegistryDeleteValue(String(kPath), &name, &root, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_TRUE);
  expect_refusal(ERROR_FILE_NOT_FOUND, L"KwRtLibMod.RegistryDeleteValue");
}

TEST_F(RegistryDeletes, RegistryDeleteKey_deletes_the_last_key_of_a_path) {
  make(L"a");
  make(L"b");
  EXPECT_TRUE(remove(&_KwRtLib::RegistryDeleteKey, L"Software\\QvRtLib tests\\a"));
  EXPECT_FALSE(exists(L"a"));
  EXPECT_TRUE(remove(&_KwRtLib::RegistryDeleteKey, L"\\Software\\QvRtLib tests\\b"));
  EXPECT_FALSE(exists(L"b"));
  EXPECT_FALSE(remove(&_KwRtLib::RegistryDeleteKey, L"Software\\QvRtLib tests\\b"));
  expect_refusal(ERROR_FILE_NOT_FOUND, L"KwRtLibMod.RegistryDeleteKey");
  make(L"c\\d");
  EXPECT_FALSE(remove(&_KwRtLib::RegistryDeleteKey, L"Software\\QvRtLib tests\\c"));
  EXPECT_EQ(error_number(), 20000);
  EXPECT_TRUE(exists(L"c\\d"));
}

TEST_F(RegistryDeletes, RegistryDeleteKey_of_a_path_without_a_backslash_fails_and_tells_nothing) {
  EXPECT_FALSE(remove(&_KwRtLib::RegistryDeleteKey, L"QvRtLib tests"));
  EXPECT_FALSE(remove(&_KwRtLib::RegistryDeleteKey, L""));
  expect_no_error();
}

TEST_F(RegistryDeletes, RegistryDelete_deletes_the_key_of_the_same_path_below_the_key) {
  EXPECT_FALSE(remove(&_KwRtLib::RegistryDelete, kPath));
  expect_refusal(ERROR_FILE_NOT_FOUND, L"KwRtLibMod.RegistryDelete");
  make(L"");
  make(kPath);
  EXPECT_TRUE(exists(kPath));
  EXPECT_TRUE(remove(&_KwRtLib::RegistryDelete, kPath));
  EXPECT_FALSE(exists(kPath));
  make(kPath);
  EXPECT_TRUE(remove(&_KwRtLib::RegistryDelete, L"\\Software\\QvRtLib tests"));
  EXPECT_FALSE(exists(kPath));
  EXPECT_TRUE(exists(L""));
}

TEST_F(RegistryStore, an_application_has_its_own_key_of_the_machine) {
  String application(L"QvRtLib tests");
  String key;
  EXPECT_EQ(global_->GetRegistryAppKey(&application, &key), S_OK);
  EXPECT_EQ(key.view(), L"Software\\Corvane\\QvRtLib tests");

  String section(L"Path");
  String value(L"C:\\App");
  VARIANT_BOOL failed = VARIANT_TRUE;
  EXPECT_EQ(global_->RegistryApp_Write(&application, &section, &value, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  String found;
  EXPECT_EQ(global_->RegistryApp_Read(&application, &section, &found, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_EQ(found.view(), L"C:\\App");
  Value read_value;
  LONG root = kLocalMachine;
  EXPECT_EQ(global_->RegistryRead(key, section, &read_value, &root, &failed), S_OK);
  EXPECT_EQ(read_value.text(), L"C:\\App");
  String path;
  EXPECT_EQ(global_->GetApplicationPath(&application, &path), S_OK);
  EXPECT_EQ(path.view(), L"C:\\App\\");

  // HKEY_LOCAL_MACHINE is the default root, and REG_SZ the default type.
  Value bytes(std::wstring_view(L"o\0k\0", 4));
  LONG type = REG_BINARY;
  EXPECT_EQ(global_->RegistryWrite(key, section, &bytes, nullptr, &type, &failed), S_OK);
  EXPECT_EQ(global_->RegistryApp_Read(&application, &section, &found, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_EQ(found.view(), L"ok");
  expect_no_error();

  Value items = list(VT_BSTR, 0, {L"x"});
  type = REG_MULTI_SZ;
  EXPECT_EQ(global_->RegistryWrite(key, section, &items, nullptr, &type, &failed), S_OK);
  EXPECT_EQ(global_->RegistryApp_Read(&application, &section, &found, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_TRUE);
  EXPECT_EQ(found.view(), L"ok");
  expect_error(13, L"KwRtLibMod.RegistryRead");

  EXPECT_EQ(global_->RegistryDeleteKey(key, nullptr, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_EQ(global_->RegistryApp_Read(&application, &section, &found, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_TRUE);
  EXPECT_EQ(found.view(), L"ok");
  expect_refusal(ERROR_FILE_NOT_FOUND, L"KwRtLibMod.RegistryRead");
  String unknown;
  EXPECT_EQ(global_->GetApplicationPath(&application, &unknown), S_OK);
  EXPECT_EQ(unknown, L"");
  expect_refusal(ERROR_FILE_NOT_FOUND, L"KwRtLibMod.RegistryRead");
  RegDeleteKeyW(HKEY_LOCAL_MACHINE, L"Software\\Corvane");
}

}  // namespace
}  // namespace qv::tests
