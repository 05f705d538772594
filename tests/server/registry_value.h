// A value of the registry that a test changes, back as it was at the end.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace qv::tests {

class RegistryValue {
 public:
  // Makes the key where it is missing, and takes it away again.
  RegistryValue(HKEY root, std::wstring key, std::wstring name)
      : root_(root), key_(std::move(key)), name_(std::move(name)) {
    DWORD disposition = 0;
    RegCreateKeyExW(root_, key_.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &handle_,
                    &disposition);
    is_own_key_ = disposition == REG_CREATED_NEW_KEY;
    DWORD size_bytes = 0;
    if (RegQueryValueExW(handle_, name_.c_str(), nullptr, nullptr, nullptr, &size_bytes) != 0) {
      return;
    }
    existed_ = true;
    before_.resize(size_bytes);
    RegQueryValueExW(handle_, name_.c_str(), nullptr, &type_before_, before_.data(), &size_bytes);
  }
  RegistryValue(const RegistryValue&) = delete;
  RegistryValue& operator=(const RegistryValue&) = delete;
  ~RegistryValue() {
    remove();
    if (existed_) {
      RegSetValueExW(handle_, name_.c_str(), 0, type_before_, before_.data(),
                     static_cast<DWORD>(before_.size()));
    }
    RegCloseKey(handle_);
    if (is_own_key_) RegDeleteKeyW(root_, key_.c_str());
  }

  void set(const std::wstring& text, DWORD type = REG_SZ) const {
    RegSetValueExW(handle_, name_.c_str(), 0, type, reinterpret_cast<const BYTE*>(text.c_str()),
                   static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
  }
  void set_number(DWORD number) const {
    RegSetValueExW(handle_, name_.c_str(), 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number),
                   sizeof number);
  }
  void remove() const { RegDeleteValueW(handle_, name_.c_str()); }

 private:
  HKEY root_;
  std::wstring key_;
  std::wstring name_;
  HKEY handle_ = nullptr;
  bool is_own_key_ = false;
  bool existed_ = false;
  DWORD type_before_ = REG_NONE;
  std::vector<BYTE> before_;
};

}  // namespace qv::tests
