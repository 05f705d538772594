#include "config/registry_data.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

#include "automation/bytes.h"
#include "constants.h"

namespace qv::config {
namespace {

using Bytes = std::span<const std::uint8_t>;
using LongBytes = std::array<std::uint8_t, sizeof(Long)>;

// An odd byte at the end is half a character and no text.
std::wstring wide_text(Bytes data) {
  std::wstring text(data.size() / sizeof(wchar_t), L'\0');
  if (!text.empty()) std::memcpy(text.data(), data.data(), text.size() * sizeof(wchar_t));
  return text;
}

template <class View>
View without_last(View view) {
  return view.empty() ? view : View(view.data(), view.size() - 1);
}

Long long_value(Bytes data, bool big_endian) {
  // The buffer of a value is one blank longer than the value, and that blank counts.
  LongBytes bytes;
  if (data.size() + 1 < bytes.size()) return 0;
  bytes.fill(' ');
  std::copy_n(data.begin(), std::min(data.size(), bytes.size()), bytes.begin());
  if (big_endian) std::ranges::reverse(bytes);
  Long value;
  std::memcpy(&value, bytes.data(), sizeof value);
  return value;
}

RegistryData long_data(const Variant& value, bool big_endian) {
  const Long number = value.to_long();
  LongBytes bytes;
  std::memcpy(bytes.data(), &number, sizeof number);
  if (big_endian) std::ranges::reverse(bytes);
  return RegistryData(Bytes(bytes));
}

Variant byte_array(Bytes data) {
  Array<Byte> array(0, std::max<std::size_t>(data.size(), 1));
  std::ranges::copy(data, array.lock().begin());
  return array;
}

Variant text_list(std::wstring_view text) {
  std::vector<std::wstring_view> items;
  while (!text.empty()) {
    const std::size_t length = std::min(text.find(L'\0'), text.size());
    items.push_back(text.substr(0, length));
    text.remove_prefix(std::min(length + 1, text.size()));
  }
  Array<Text> array(1, items.size());
  std::ranges::copy(items, array.lock().begin());
  return array;
}

// Each element of an array of any type as text, each with a character 0 behind it.
std::wstring joined_list(const Variant& value) {
  if (!value.is_array()) raise(kTypeMismatch);
  SAFEARRAY* array = value.array();
  if (array == nullptr || SafeArrayGetDim(array) != 1) raise(kSubscriptOutOfRange);
  const auto type = static_cast<VARTYPE>(value.type() & ~VT_ARRAY);
  LONG first = 0;
  LONG last = 0;
  check(SafeArrayGetLBound(array, 1, &first));
  check(SafeArrayGetUBound(array, 1, &last));
  std::wstring joined;
  for (LONG i = first; i <= last; ++i) {
    VARIANT element;
    VariantInit(&element);
    if (type == VT_VARIANT) {
      check(SafeArrayGetElement(array, &i, &element));
    } else {
      check(SafeArrayGetElement(array, &i, &element.llVal));
      element.vt = type;
    }
    joined += Variant::adopt(element).to_text();
    joined += L'\0';
  }
  return joined;
}

}  // namespace

RegistryData::RegistryData(Bytes bytes) : bytes_(bytes.begin(), bytes.end()) {
  bytes_.append(sizeof(wchar_t), '\0');
}

RegistryData::RegistryData(std::wstring_view text)
    : RegistryData(Bytes(reinterpret_cast<const std::uint8_t*>(text.data()),
                         text.size() * sizeof(wchar_t))) {}

Variant RegData_2_Var(DWORD type, Bytes data) {
  switch (type) {
    case Registry_DataType::REG_NONE:
      return text_of_bytes(data);
    case Registry_DataType::REG_SZ:
    case Registry_DataType::REG_EXPAND_SZ:
      return without_last(std::wstring_view(wide_text(data)));
    case Registry_DataType::REG_LINK:
    case Registry_DataType::REG_RESOURCE_LIST:
      return text_of_bytes(without_last(data));
    case Registry_DataType::REG_BINARY:
      return byte_array(data);
    case Registry_DataType::REG_DWORD:
      return long_value(data, false);
    case Registry_DataType::REG_DWORD_BIG_ENDIAN:
      return long_value(data, true);
    case Registry_DataType::REG_MULTI_SZ:
      return text_list(without_last(std::wstring_view(wide_text(data))));
    default:
      return {};
  }
}

RegistryData Var_2_RegData(DWORD type, const Variant& value) {
  switch (type) {
    case Registry_DataType::REG_NONE:
      return RegistryData(Bytes(LongBytes{}));
    case Registry_DataType::REG_SZ:
    case Registry_DataType::REG_EXPAND_SZ:
      return RegistryData(value.to_text().view());
    case Registry_DataType::REG_BINARY:
    case Registry_DataType::REG_LINK:
    case Registry_DataType::REG_RESOURCE_LIST:
      return RegistryData(Bytes(bytes_of_text(value.to_text())));
    case Registry_DataType::REG_DWORD:
      return long_data(value, false);
    case Registry_DataType::REG_DWORD_BIG_ENDIAN:
      return long_data(value, true);
    case Registry_DataType::REG_MULTI_SZ:
      return RegistryData(joined_list(value));
    default:
      return RegistryData();
  }
}

}  // namespace qv::config
