// Values and their bytes, through the typed interface, on a system of code page 1252.
#include "server/client.h"

#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <span>
#include <utility>
#include <vector>

namespace qv::tests {
namespace {

// The characters of bytes in code page 1252; a byte that it leaves undefined is the character of
// the same code.
std::wstring characters(std::string_view bytes) {
  std::wstring text(bytes.size(), L'\0');
  MultiByteToWideChar(1252, 0, bytes.data(), static_cast<int>(bytes.size()), text.data(),
                      static_cast<int>(text.size()));
  return text;
}

std::string all_bytes() {
  std::string bytes(256, '\0');
  for (std::size_t i = 0; i < 256; ++i) bytes[i] = static_cast<char>(i);
  return bytes;
}

// A Byte array variable of the client.
class ByteArray {
 public:
  ByteArray() = default;
  ByteArray(std::string_view bytes, LONG lower_bound) {
    SAFEARRAYBOUND bound{static_cast<ULONG>(bytes.size()), lower_bound};
    array_ = SafeArrayCreate(VT_UI1, 1, &bound);
    std::memcpy(array_->pvData, bytes.data(), bytes.size());
  }
  ByteArray(const ByteArray&) = delete;
  ByteArray& operator=(const ByteArray&) = delete;
  ~ByteArray() { SafeArrayDestroy(array_); }

  SAFEARRAY** operator&() { return &array_; }
  std::string bytes() const {
    return {static_cast<const char*>(array_->pvData), array_->rgsabound[0].cElements};
  }
  LONG lower_bound() const { return array_->rgsabound[0].lLbound; }

 private:
  SAFEARRAY* array_ = nullptr;
};

template <class Type>
using Encode = HRESULT (STDMETHODCALLTYPE _KwRtLib::*)(Type*, BSTR*);
template <class Type>
using Decode = HRESULT (STDMETHODCALLTYPE _KwRtLib::*)(BSTR*, Type*);

class Codecs : public testing::Test {
 protected:
  template <class Type>
  std::wstring encoded(Encode<Type> encode, Type value) {
    String text;
    EXPECT_EQ((global.get()->*encode)(&value, &text), S_OK);
    return std::wstring(text.view());
  }
  template <class Type>
  Type decoded(Decode<Type> decode, std::wstring_view characters_of_value) {
    String text(characters_of_value);
    Type value;
    std::memset(&value, 0xAA, sizeof value);
    EXPECT_EQ((global.get()->*decode)(&text, &value), S_OK);
    return value;
  }
  // There and back; NaNs compare by their bytes.
  template <class Type>
  void expect_codec(Encode<Type> encode, Decode<Type> decode, Type value, std::string_view bytes) {
    EXPECT_EQ(bytes.size(), sizeof value);
    const std::wstring text = encoded(encode, value);
    EXPECT_EQ(text, characters(bytes));
    const Type back = decoded(decode, text);
    EXPECT_EQ(std::memcmp(&back, &value, sizeof value), 0);
    // Extra characters are passed over, a text too short gives 0.
    const Type longer = decoded(decode, text + L"xyz");
    EXPECT_EQ(std::memcmp(&longer, &value, sizeof value), 0);
    const Type zero{};
    for (std::size_t length = 0; length < text.size(); ++length) {
      const Type shorter = decoded(decode, text.substr(0, length));
      EXPECT_EQ(std::memcmp(&shorter, &zero, sizeof zero), 0) << length;
    }
  }

  SHORT make_int(SHORT low, SHORT high) {
    SHORT result = 0;
    EXPECT_EQ(global->Make_Int(&low, &high, &result), S_OK);
    return result;
  }
  LONG make_long(SHORT low, SHORT high) {
    LONG result = 0;
    EXPECT_EQ(global->Make_Long(&low, &high, &result), S_OK);
    return result;
  }

  Pointer<_KwRtLib> global = create_global();
};

using std::string_view;

TEST_F(Codecs, Integers_are_two_bytes_little_endian) {
  const std::pair<SHORT, string_view> rows[] = {{0, {"\0\0", 2}},        {1, {"\1\0", 2}},
                                                {-1, "\xFF\xFF"},        {0x1234, "\x34\x12"},
                                                {-32768, {"\0\x80", 2}}, {32767, "\xFF\x7F"}};
  for (const auto& [value, bytes] : rows) {
    expect_codec<SHORT>(&_KwRtLib::Int_2_Str, &_KwRtLib::Str_2_Int, value, bytes);
  }
}

TEST_F(Codecs, Longs_are_four_bytes_little_endian) {
  const std::pair<LONG, string_view> rows[] = {{0, {"\0\0\0\0", 4}},
                                               {-1, "\xFF\xFF\xFF\xFF"},
                                               {0x12345678, "\x78\x56\x34\x12"},
                                               {2147483647, "\xFF\xFF\xFF\x7F"},
                                               {-2147483647 - 1, {"\0\0\0\x80", 4}}};
  for (const auto& [value, bytes] : rows) {
    expect_codec<LONG>(&_KwRtLib::Long_2_Str, &_KwRtLib::Str_2_Long, value, bytes);
  }
}

TEST_F(Codecs, Long_2_Str_of_minus_1_is_four_characters_255) {
  EXPECT_EQ(encoded<LONG>(&_KwRtLib::Long_2_Str, -1), L"\xFF\xFF\xFF\xFF");
}

TEST_F(Codecs, Singles_are_their_four_bytes) {
  const std::pair<FLOAT, string_view> rows[] = {
      {0.0F, {"\0\0\0\0", 4}},
      {1.5F, {"\0\0\xC0\x3F", 4}},
      {-2.0F, {"\0\0\0\xC0", 4}},
      {std::numeric_limits<FLOAT>::infinity(), {"\0\0\x80\x7F", 4}},
      {std::numeric_limits<FLOAT>::quiet_NaN(), {"\0\0\xC0\x7F", 4}}};
  for (const auto& [value, bytes] : rows) {
    expect_codec<FLOAT>(&_KwRtLib::Single_2_Str, &_KwRtLib::Str_2_Single, value, bytes);
  }
}

TEST_F(Codecs, Doubles_and_Dates_are_the_same_eight_bytes) {
  const std::pair<DOUBLE, string_view> rows[] = {
      {0.0, {"\0\0\0\0\0\0\0\0", 8}},
      {1.0, {"\0\0\0\0\0\0\xF0\x3F", 8}},
      {-0.1, "\x9A\x99\x99\x99\x99\x99\xB9\xBF"},
      {36526.75, {"\0\0\0\0\xD8\xD5\xE1\x40", 8}},  // 1 January 2000, 18:00
      {std::numeric_limits<DOUBLE>::infinity(), {"\0\0\0\0\0\0\xF0\x7F", 8}}};
  for (const auto& [value, bytes] : rows) {
    expect_codec<DOUBLE>(&_KwRtLib::Double_2_Str, &_KwRtLib::Str_2_Double, value, bytes);
    expect_codec<DATE>(&_KwRtLib::Date_2_Str, &_KwRtLib::Str_2_Date, value, bytes);
  }
}

TEST_F(Codecs, Currencies_are_eight_bytes_of_ten_thousandths) {
  const std::pair<LONGLONG, string_view> rows[] = {
      {0, {"\0\0\0\0\0\0\0\0", 8}},
      {10000, {"\x10\x27\0\0\0\0\0\0", 8}},      // 1
      {-1, "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"},  // -0.0001
      {9223372036854775807, "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\x7F"}};
  for (const auto& [value, bytes] : rows) {
    CY currency{};
    currency.int64 = value;
    expect_codec<CY>(&_KwRtLib::Currency_2_Str, &_KwRtLib::Str_2_Currency, currency, bytes);
  }
}

TEST_F(Codecs, a_text_of_any_type_s_bytes_keeps_its_value_through_every_byte) {
  for (int byte = 0; byte < 256; ++byte) {
    const auto value = static_cast<SHORT>(byte << 8 | (255 - byte));
    EXPECT_EQ(decoded<SHORT>(&_KwRtLib::Str_2_Int, encoded<SHORT>(&_KwRtLib::Int_2_Str, value)),
              value);
  }
}

TEST_F(Codecs, decoding_writes_the_round_trip_of_the_whole_text_back) {
  // U+0100 has a best fit, U+4E2D has none, U+20AC is byte 80 hexadecimal.
  const std::wstring outside =
      L"\x0100\x4E2D\x20AC\xFF"
      L"5678\x0100";
  const std::wstring back =
      L"A?\x20AC\xFF"
      L"5678A";
  String text(outside);
  LONG value = 0;
  EXPECT_EQ(global->Str_2_Long(&text, &value), S_OK);
  EXPECT_EQ(value, static_cast<LONG>(0xFF803F41));
  EXPECT_EQ(text, back);
}

TEST_F(Codecs, decoding_leaves_a_text_of_bytes_as_it_is) {
  const std::wstring bytes = characters(all_bytes());
  String text(bytes);
  BSTR before = text;
  LONG value = 0;
  EXPECT_EQ(global->Str_2_Long(&text, &value), S_OK);
  EXPECT_EQ(value, 0x03020100);
  EXPECT_EQ(text, bytes);
  EXPECT_EQ(static_cast<BSTR>(text), before);
}

TEST_F(Codecs, every_decoder_writes_back_a_text_too_short_as_well) {
  const auto expect_written_back = [](auto call) {
    String text(L"\x0100\x4E2D");
    EXPECT_EQ(call(&text), S_OK);
    EXPECT_EQ(text, L"A?");
  };
  LONG number = 0;
  FLOAT single = 0;
  DOUBLE real = 0;
  CY currency{};
  expect_written_back([&](BSTR* text) { return global->Str_2_Long(text, &number); });
  expect_written_back([&](BSTR* text) { return global->Str_2_Single(text, &single); });
  expect_written_back([&](BSTR* text) { return global->Str_2_Double(text, &real); });
  expect_written_back([&](BSTR* text) { return global->Str_2_Date(text, &real); });
  expect_written_back([&](BSTR* text) { return global->Str_2_Currency(text, &currency); });
  SHORT integer = 0;
  expect_written_back([&](BSTR* text) { return global->Str_2_Int(text, &integer); });
  EXPECT_EQ(integer, 0x3F41);
  ByteArray array;
  expect_written_back([&](BSTR* text) { return global->Str_2_Byte(text, &array); });
  EXPECT_EQ(array.bytes(), "A?");
}

TEST_F(Codecs, Str_2_ZStr_adds_one_character_0_unless_there_is_one) {
  const std::pair<std::wstring, std::wstring> rows[] = {{L"", {L"\0", 1}},
                                                        {L"abc", {L"abc\0", 4}},
                                                        {{L"abc\0", 4}, {L"abc\0", 4}},
                                                        {{L"a\0bc", 4}, {L"a\0bc", 4}},
                                                        {{L"\0\0", 2}, {L"\0\0", 2}},
                                                        {L"\x4E2D", {L"\x4E2D\0", 2}}};
  for (const auto& [given, expected] : rows) {
    String text(given);
    String result;
    EXPECT_EQ(global->Str_2_ZStr(&text, &result), S_OK);
    EXPECT_EQ(result, expected);
    EXPECT_EQ(text, given);
  }
}

TEST_F(Codecs, Str_2_Byte_gives_the_bytes_from_index_0) {
  String text(characters(all_bytes()));
  ByteArray array("old content", 5);
  EXPECT_EQ(global->Str_2_Byte(&text, &array), S_OK);
  EXPECT_EQ(array.lower_bound(), 0);
  EXPECT_EQ(array.bytes(), all_bytes());
}

TEST_F(Codecs, Str_2_Byte_of_an_empty_text_is_one_byte_0) {
  String text;
  ByteArray array;
  EXPECT_EQ(global->Str_2_Byte(&text, &array), S_OK);
  EXPECT_EQ(array.lower_bound(), 0);
  EXPECT_EQ(array.bytes(), std::string(1, '\0'));
}

TEST_F(Codecs, Str_2_Byte_raises_10_for_a_locked_array_and_keeps_it) {
  String text(L"abc");
  ByteArray array("old", 0);
  SafeArrayLock(*&array);
  EXPECT_EQ(global->Str_2_Byte(&text, &array), error_result(10));
  SafeArrayUnlock(*&array);
  EXPECT_EQ(array.bytes(), "old");
}

TEST_F(Codecs, Byte_2_Str_takes_the_bytes_of_any_lower_bound) {
  for (const LONG lower_bound : {0, 1, -7}) {
    ByteArray array(all_bytes(), lower_bound);
    String text;
    EXPECT_EQ(global->Byte_2_Str(&array, &text), S_OK);
    EXPECT_EQ(text, characters(all_bytes()));
  }
}

TEST_F(Codecs, Byte_2_Str_of_an_array_without_elements_is_empty) {
  ByteArray array("", 0);
  String text;
  EXPECT_EQ(global->Byte_2_Str(&array, &text), S_OK);
  EXPECT_EQ(text.length(), 0U);
}

TEST_F(Codecs, Byte_2_Str_of_an_array_that_is_not_allocated_raises_9) {
  ByteArray array;
  String text;
  EXPECT_EQ(global->Byte_2_Str(&array, &text), error_result(9));
}

TEST_F(Codecs, Hi_Byte_divides_and_Lo_Byte_masks) {
  struct Row {
    SHORT value, high, low;
  };
  const Row rows[] = {{0, 0, 0},         {255, 0, 255},    {256, 1, 0},  {0x1234, 0x12, 0x34},
                      {32767, 127, 255}, {-1, 0, 255},     {-255, 0, 1}, {-256, -1, 0},
                      {-257, -1, 255},   {-32768, -128, 0}};
  for (const Row& row : rows) {
    SHORT value = row.value;
    SHORT high = 0;
    SHORT low = 0;
    EXPECT_EQ(global->Hi_Byte(&value, &high), S_OK);
    EXPECT_EQ(global->Lo_Byte(&value, &low), S_OK);
    EXPECT_EQ(high, row.high) << row.value;
    EXPECT_EQ(low, row.low) << row.value;
  }
}

TEST_F(Codecs, Hi_Word_and_Lo_Word_are_signed_halves) {
  struct Row {
    LONG value;
    SHORT high, low;
  };
  const Row rows[] = {
      {0, 0, 0},       {0x12345678, 0x1234, 0x5678}, {0x0000FFFF, 0, -1},         {-1, -1, -1},
      {-65536, -1, 0}, {2147483647, 32767, -1},      {-2147483647 - 1, -32768, 0}};
  for (const Row& row : rows) {
    LONG value = row.value;
    SHORT high = 7;
    SHORT low = 7;
    EXPECT_EQ(global->Hi_Word(&value, &high), S_OK);
    EXPECT_EQ(global->Lo_Word(&value, &low), S_OK);
    EXPECT_EQ(high, row.high) << row.value;
    EXPECT_EQ(low, row.low) << row.value;
    EXPECT_EQ(make_long(low, high), row.value);
  }
}

TEST_F(Codecs, Make_Int_takes_the_low_bytes) {
  EXPECT_EQ(make_int(0x34, 0x12), 0x1234);
  EXPECT_EQ(make_int(0x7734, 0x7712), 0x1234);
  EXPECT_EQ(make_int(-1, -1), -1);
  EXPECT_EQ(make_int(0, 0x80), -32768);
  EXPECT_EQ(make_int(255, 127), 32767);
  for (SHORT byte = 0; byte < 256; ++byte) {
    EXPECT_EQ(make_int(byte, 0), byte);
    EXPECT_EQ(make_int(0, byte), static_cast<SHORT>(byte << 8));
  }
}

}  // namespace
}  // namespace qv::tests
