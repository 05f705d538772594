// Registry data and Automation values: what each stored type becomes, and what is stored for it.
#pragma once

#include <windows.h>

#include <cstdint>
#include <span>
#include <string>

#include "automation/variant.h"

namespace qv::config {

// `data` is what the registry holds, texts in UTF-16.
Variant RegData_2_Var(DWORD type, std::span<const std::uint8_t> data);

// What to store: the bytes, and behind them, not counted, two bytes 0. The registry looks there
// when it is given a text without an end, and then adds the end itself.
class RegistryData {
 public:
  explicit RegistryData(std::span<const std::uint8_t> bytes = {});
  explicit RegistryData(std::wstring_view text);

  const BYTE* data() const noexcept { return reinterpret_cast<const BYTE*>(bytes_.data()); }
  DWORD size_bytes() const noexcept { return static_cast<DWORD>(bytes_.size() - sizeof(wchar_t)); }

 private:
  std::string bytes_;
};
RegistryData Var_2_RegData(DWORD type, const Variant& value);

}  // namespace qv::config
