#include "runtime/system_name.h"

#include "runtime/characters.h"
#include "runtime/err.h"

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
  Text given = before_character_0(name);
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
  Text full = absolute_name(given);
  const auto path = full.view();
  if (path.size() < kShortFolder) return given;
  if (path.starts_with(kPrefix) || path.starts_with(kDevicePrefix)) return full;
  if (path.starts_with(L"\\\\")) return concat({kServerPrefix, path.substr(2)});
  return concat({kPrefix, path});
}

std::optional<Text> short_name(std::wstring_view name) {
  const Text full = system_name(name);
  const DWORD size = GetShortPathNameW(full.c_str(), nullptr, 0);
  capture_last_dll_error();
  if (size == 0) return std::nullopt;
  Text path = Text::uninitialized(size - 1);
  path.cut(GetShortPathNameW(full.c_str(), path.data(), size));
  return common_name(path);
}

std::optional<Text> limited_name(std::wstring_view name) {
  const Text full = system_name(name);
  const bool has_folder = name.find_first_of(L"\\/") != std::wstring_view::npos;
  const bool is_long = full.view().starts_with(kPrefix) && full.size() >= MAX_PATH;
  if (!has_folder || !is_long) return Text(name);
  // What is yet to be made has no short name, but its folder has.
  auto path = short_name(full);
  if (!path) {
    const std::size_t length = full.view().rfind(L'\\') + 1;
    path = short_name(full.view().substr(0, length));
    if (path) *path = concat({*path, full.view().substr(length)});
  }
  return path && path->size() < MAX_PATH ? path : std::nullopt;
}

Text common_name(std::wstring_view name) {
  if (name.starts_with(kServerPrefix)) {
    return concat({L"\\\\", name.substr(kServerPrefix.size())});
  }
  return Text(name.starts_with(kPrefix) ? name.substr(kPrefix.size()) : name);
}

}  // namespace qv
