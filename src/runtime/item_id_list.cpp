#include "runtime/item_id_list.h"

// shlobj.h needs windows.h before it.
#include <shlobj.h>

#include <array>
#include <string_view>

#include "runtime/err.h"

namespace qv {
namespace {

constexpr std::size_t kPathRoom = 1024;

// The shell tells things of its own by names too, such as "::{...}": no program can open those.
bool is_in_file_system(std::wstring_view path) {
  return path.starts_with(L"\\\\") || (path.size() > 2 && path.substr(1, 2) == L":\\");
}

// Some folders come with their final backslash from the shell; of a root it is part of the name.
std::wstring_view without_final_backslash(std::wstring_view path) {
  constexpr std::size_t kRoot = 3;
  if (path.size() > kRoot && path.ends_with(L'\\')) path.remove_suffix(1);
  return path;
}

}  // namespace

ItemIdList ItemIdList::special_folder(HWND owner, int id) {
  PIDLIST_ABSOLUTE list = nullptr;
  const HRESULT found = SHGetSpecialFolderLocation(owner, id, &list);
  capture_last_dll_error();
  return ItemIdList(found == S_OK ? list : nullptr);
}

Text ItemIdList::path() const {
  if (list_ == nullptr) return {};
  std::array<wchar_t, kPathRoom> buffer{};
  const BOOL has_path = SHGetPathFromIDListW(list_, buffer.data());
  capture_last_dll_error();
  const std::wstring_view path = buffer.data();
  return has_path && is_in_file_system(path) ? Text(without_final_backslash(path)) : Text();
}

}  // namespace qv
