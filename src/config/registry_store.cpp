#include "config/registry_store.h"

#include <algorithm>
#include <array>
#include <vector>

#include "config/registry_data.h"
#include "constants.h"
#include "files/path_text.h"
#include "frame/error_state.h"
#include "runtime/err.h"
#include "runtime/system_text.h"

namespace qv::config {
namespace {

using frame::handled;
using frame::kTakeError;

constexpr Long kApplicationsRoot = Registry_Keys::HKEY_LOCAL_MACHINE;
constexpr DWORD kLongestKeyName = 260;

HKEY root_key(Long key) noexcept {
  // The system's root keys are negative numbers in 64-bit processes too.
  return reinterpret_cast<HKEY>(static_cast<INT_PTR>(key));
}

void succeed(LSTATUS status) {
  capture_last_dll_error();
  if (status == ERROR_SUCCESS) return;
  const auto code = static_cast<Long>(status);
  raise({.number = frame::kFirstApplicationError,
         .description = concat({system_text(code), L" (DLL#", decimal(code), L")"})});
}

Text without_backslash(std::wstring_view path) {
  if (path.starts_with(L'\\')) path.remove_prefix(1);
  return Text(path);
}

// One open key.
class RegistryKey {
 public:
  RegistryKey(Long root, std::wstring_view path, REGSAM access) {
    succeed(RegOpenKeyExW(root_key(root), without_backslash(path).c_str(), 0, access, &handle_));
  }
  RegistryKey(const RegistryKey&) = delete;
  RegistryKey& operator=(const RegistryKey&) = delete;
  ~RegistryKey() { RegCloseKey(handle_); }

  // Makes the key where it is missing.
  static RegistryKey created(Long root, std::wstring_view path) {
    HKEY handle = nullptr;
    succeed(RegCreateKeyExW(root_key(root), without_backslash(path).c_str(), 0, nullptr, 0,
                            KEY_ALL_ACCESS, nullptr, &handle, nullptr));
    return RegistryKey(handle);
  }

  HKEY get() const noexcept { return handle_; }

 private:
  explicit RegistryKey(HKEY handle) noexcept : handle_(handle) {}

  HKEY handle_ = nullptr;
};

bool is_unnamed_and_empty(const Text& name, const Variant& value) {
  return name.empty() && value.to_text().empty();
}

// Element 0 stays empty.
template <class Element>
void put_list(Array<Element>& array, std::vector<Element>& items) {
  array.redimension(0, items.size() + 1);
  std::ranges::move(items, array.lock().begin() + 1);
}

// Keys below a key until there are no more; the status that ended the list.
LSTATUS collect_keys(HKEY key, std::vector<Text>& names) {
  std::array<wchar_t, kLongestKeyName> name;
  for (DWORD index = 0;; ++index) {
    DWORD length = kLongestKeyName;
    const LSTATUS status =
        RegEnumKeyExW(key, index, name.data(), &length, nullptr, nullptr, nullptr, nullptr);
    if (status != ERROR_SUCCESS) return status;
    names.emplace_back(name.data());
  }
}

struct ValueList {
  std::vector<Text> names;
  std::vector<Variant> values;
  std::vector<Long> types;
};

LSTATUS collect_values(HKEY key, DWORD longest_name, DWORD most_bytes, ValueList& list) {
  std::vector<wchar_t> name(longest_name + 1);
  std::vector<std::uint8_t> data(most_bytes + 1);
  for (DWORD index = 0;; ++index) {
    auto length = static_cast<DWORD>(name.size());
    auto size_bytes = static_cast<DWORD>(data.size());
    DWORD type = 0;
    const LSTATUS status =
        RegEnumValueW(key, index, name.data(), &length, nullptr, &type, data.data(), &size_bytes);
    if (status != ERROR_SUCCESS) return status;
    list.names.emplace_back(name.data());
    list.types.push_back(static_cast<Long>(type));
    list.values.push_back(RegData_2_Var(type, {data.data(), size_bytes}));
  }
}

void succeed_list(LSTATUS status) {
  if (status != ERROR_NO_MORE_ITEMS) succeed(status);
}

}  // namespace

Boolean RegistryRead(const Text& lpSubKey, const Text& lpValueName, Variant& RetVal, Long Key) {
  return handled(L"KwRtLibMod.RegistryRead", kTakeError, True, [&] {
    const RegistryKey key(Key, lpSubKey, KEY_READ);
    DWORD type = 0;
    DWORD size_bytes = 0;
    succeed(RegQueryValueExW(key.get(), lpValueName.c_str(), nullptr, &type, nullptr, &size_bytes));
    std::vector<std::uint8_t> data(size_bytes + 1);
    size_bytes = static_cast<DWORD>(data.size());
    succeed(
        RegQueryValueExW(key.get(), lpValueName.c_str(), nullptr, &type, data.data(), &size_bytes));
    RetVal.assign(RegData_2_Var(type, {data.data(), size_bytes}));
    return False;
  });
}

Boolean RegistryWrite(const Text& lpSubKey, const Text& lpValueName, const Variant& Value, Long Key,
                      Long ValueType) {
  return handled(L"KwRtLibMod.RegistryWrite", kTakeError, True, [&] {
    const RegistryKey key = RegistryKey::created(Key, lpSubKey);
    if (is_unnamed_and_empty(lpValueName, Value)) return False;
    const auto type = static_cast<DWORD>(ValueType);
    const RegistryData data = Var_2_RegData(type, Value);
    succeed(
        RegSetValueExW(key.get(), lpValueName.c_str(), 0, type, data.data(), data.size_bytes()));
    return False;
  });
}

Boolean RegistryListKeys(const Text& lpSubKey, Array<Text>& RetVal, Long Key) {
  return handled(L"KwRtLibMod.RegistryListKeys", kTakeError, True, [&] {
    const RegistryKey key(Key, lpSubKey, KEY_READ);
    std::vector<Text> names;
    const LSTATUS status = collect_keys(key.get(), names);
    put_list(RetVal, names);
    succeed_list(status);
    return False;
  });
}

Boolean RegistryListValues(const Text& lpSubKey, Array<Text>& RetValName, Array<Variant>& RetVal,
                           Array<Long>& RetValType, Long Key) {
  return handled(L"KwRtLibMod.RegistryListValues", kTakeError, True, [&] {
    const RegistryKey key(Key, lpSubKey, KEY_READ);
    DWORD longest_name = 0;
    DWORD most_bytes = 0;
    succeed(RegQueryInfoKeyW(key.get(), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                             nullptr, &longest_name, &most_bytes, nullptr, nullptr));
    ValueList list;
    const LSTATUS status = collect_values(key.get(), longest_name, most_bytes, list);
    put_list(RetValName, list.names);
    put_list(RetVal, list.values);
    put_list(RetValType, list.types);
    succeed_list(status);
    return False;
  });
}

Boolean RegistryDeleteValue(const Text& lpSubKey, const Text& lpValueName, Long Key) {
  return handled(L"KwRtLibMod.RegistryDeleteValue", kTakeError, True, [&] {
    const RegistryKey key(Key, lpSubKey, KEY_ALL_ACCESS);
    succeed(RegDeleteValueW(key.get(), lpValueName.c_str()));
    return False;
  });
}

Boolean RegistryDelete(const Text& lpSubKey, Long Key) {
  return handled(L"KwRtLibMod.RegistryDelete", kTakeError, True, [&] {
    const RegistryKey key(Key, lpSubKey, KEY_ALL_ACCESS);
    succeed(RegDeleteKeyW(key.get(), without_backslash(lpSubKey).c_str()));
    return False;
  });
}

Boolean RegistryDeleteKey(const Text& lpSubKey, Long Key) {
  return handled(L"KwRtLibMod.RegistryDeleteKey", kTakeError, True, [&] {
    const std::size_t last = lpSubKey.view().rfind(L'\\');
    if (last == std::wstring_view::npos) return True;
    const Text name(lpSubKey.view().substr(last + 1));
    const RegistryKey parent(Key, lpSubKey.view().substr(0, last), KEY_ALL_ACCESS);
    succeed(RegDeleteKeyW(parent.get(), name.c_str()));
    return False;
  });
}

Text GetRegistryAppKey(const Text& AppName) { return concat({L"Software\\Corvane\\", AppName}); }

Boolean RegistryApp_Write(const Text& AppName, const Text& Section, const Text& Value) {
  return RegistryWrite(GetRegistryAppKey(AppName), Section, Value, kApplicationsRoot,
                       Registry_DataType::REG_SZ);
}

Boolean RegistryApp_Read(const Text& AppName, const Text& Section, Text& RetValue) {
  // The caller's own String, so that the value is converted to it or refused.
  VARIANT variable;
  VariantInit(&variable);
  variable.vt = VT_BYREF | VT_BSTR;
  variable.pbstrVal = reinterpret_cast<BSTR*>(&RetValue);
  Variant reference = Variant::adopt(variable);
  return RegistryRead(GetRegistryAppKey(AppName), Section, reference, kApplicationsRoot);
}

Text GetApplicationPath(const Text& AppName) {
  Text path;
  if (RegistryApp_Read(AppName, L"Path", path)) return {};
  return files::Full_Path(path);
}

}  // namespace qv::config
