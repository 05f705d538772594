#include "runtime/system_name.h"

#include "runtime/characters.h"

namespace qv {
namespace {

// A folder must leave room for a name of 12 characters behind it, so its limit is the lower one.
constexpr std::size_t kShortFolder = MAX_PATH - 12;

constexpr std::wstring_view kPrefix = L"\\\\?\\";
constexpr std::wstring_view kServerPrefix = L"\\\\?\\UNC\\";
constexpr std::wstring_view kDevicePrefix = L"\\\\.\\";

bool starts_with_separators(std::wstring_view name) {
  return name.starts_with(L"\\\\") || name.starts_with(L"//");
}

bool is_absolute(std::wstring_view name) {
  return name.substr(1).starts_with(L":\\") || starts_with_separators(name);
}

bool is_short(std::wstring_view name) {
  if (name.size() >= kShortFolder) return false;
  return (!name.empty() && is_absolute(name)) ||
         name.size() + GetCurrentDirectoryW(0, nullptr) < kShortFolder;
}

}  // namespace

Text absolute_name(std::wstring_view name) {
  const Text given = before_character_0(name);
  const DWORD size = GetFullPathNameW(given.c_str(), 0, nullptr, nullptr);
  if (size == 0) return given;
  Text full = Text::uninitialized(size - 1);
  const DWORD length = GetFullPathNameW(given.c_str(), size, full.data(), nullptr);
  if (length >= size) return given;
  full.cut(length);
  return full;
}

Text system_name(std::wstring_view name) {
  Text given = before_character_0(name);
  if (is_short(given)) return given;
  const Text full = absolute_name(given);
  const auto path = full.view();
  if (path.size() < kShortFolder) return given;
  if (path.starts_with(kPrefix) || path.starts_with(kDevicePrefix)) return full;
  if (path.starts_with(L"\\\\")) return concat({kServerPrefix, path.substr(2)});
  return concat({kPrefix, path});
}

Text common_name(std::wstring_view name) {
  if (name.starts_with(kServerPrefix)) {
    return concat({L"\\\\", name.substr(kServerPrefix.size())});
  }
  return Text(name.starts_with(kPrefix) ? name.substr(kPrefix.size()) : name);
}

}  // namespace qv
