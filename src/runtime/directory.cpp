#include "runtime/directory.h"

#include "runtime/err.h"
#include "runtime/file_errors.h"
#include "runtime/system_name.h"

namespace qv {
namespace {

constexpr std::wstring_view kNameless = L"\\/:";

bool has_wildcards(std::wstring_view name) {
  if (name.starts_with(L"\\\\?\\")) name.remove_prefix(4);
  return name.find_first_of(L"*?") != std::wstring_view::npos;
}

// For the services that take no pattern: some systems answer to one as to a missing file. What has
// no name is missing like any other file or folder.
Text plain_name(std::wstring_view name, Long missing) {
  if (name.empty()) raise(missing);
  if (has_wildcards(name)) raise(kBadFileNameOrNumber);
  return system_name(name);
}
Text file_name(std::wstring_view name) { return plain_name(name, kFileNotFound); }
Text folder_name(std::wstring_view name) { return plain_name(name, kPathNotFound); }

Text search_pattern(std::wstring_view pattern) {
  pattern = pattern.substr(0, pattern.find(L'\0'));
  const bool is_nameless =
      pattern.empty() || kNameless.find(pattern.back()) != std::wstring_view::npos;
  return is_nameless ? system_name(concat({pattern, L"*"})) : system_name(pattern);
}

void succeed(BOOL result, const Text& name) {
  if (!result) raise_file_error(name.c_str());
  capture_last_dll_error();
}

// The folder services tell a missing folder by the code of a missing file.
void succeed_in_folder(BOOL result, const Text& name) {
  if (!result && GetLastError() == ERROR_FILE_NOT_FOUND) SetLastError(ERROR_PATH_NOT_FOUND);
  succeed(result, name);
}

}  // namespace

DirectorySearch::DirectorySearch(std::wstring_view pattern, Long attributes)
    : left_out_((kHidden | kSystem | kDirectory) & ~attributes) {
  const Text name = search_pattern(pattern);
  handle_ = FindFirstFileW(name.c_str(), &entry_);
  if (handle_ != INVALID_HANDLE_VALUE) {
    capture_last_dll_error();
    return;
  }
  const Long error = last_file_error(name.c_str());
  if (error != kFileNotFound && error != kPathNotFound) raise(error);
}

DirectorySearch::~DirectorySearch() {
  if (handle_ != INVALID_HANDLE_VALUE) FindClose(handle_);
}

bool DirectorySearch::next() {
  if (handle_ == INVALID_HANDLE_VALUE) return false;
  if (std::exchange(is_first_, false) && is_wanted()) return true;
  while (FindNextFileW(handle_, &entry_)) {
    if (is_wanted()) return true;
  }
  capture_last_dll_error();
  return false;
}

bool DirectorySearch::is_wanted() const noexcept { return (attributes() & left_out_) == 0; }

bool path_exists(std::wstring_view name) {
  if (has_wildcards(name)) return false;
  const DWORD attributes = GetFileAttributesW(system_name(name).c_str());
  capture_last_dll_error();
  return attributes != INVALID_FILE_ATTRIBUTES;
}

Long get_attr(std::wstring_view name) {
  const Text plain = file_name(name);
  const DWORD attributes = GetFileAttributesW(plain.c_str());
  succeed(attributes != INVALID_FILE_ATTRIBUTES, plain);
  return static_cast<Long>(attributes);
}

void set_attr(std::wstring_view name, Long attributes) {
  const Text plain = file_name(name);
  // A file without any attribute is given to the system as a normal one.
  const auto marks = attributes == 0 ? FILE_ATTRIBUTE_NORMAL : static_cast<DWORD>(attributes);
  succeed(SetFileAttributesW(plain.c_str(), marks), plain);
}

void file_copy(std::wstring_view source, std::wstring_view target) {
  const Text from = file_name(source);
  const Text to = file_name(target);
  succeed(CopyFileW(from.c_str(), to.c_str(), FALSE), from);
}

void kill(std::wstring_view name) {
  const Text plain = file_name(name);
  succeed(DeleteFileW(plain.c_str()), plain);
}

void mk_dir(std::wstring_view name) {
  const Text plain = folder_name(name);
  succeed_in_folder(CreateDirectoryW(plain.c_str(), nullptr), plain);
}

void rm_dir(std::wstring_view name) {
  const Text plain = folder_name(name);
  succeed_in_folder(RemoveDirectoryW(plain.c_str()), plain);
}

Text cur_dir(std::wstring_view drive) {
  // The current folder of a drive is what its letter and colon alone complete to.
  const Text start = drive.empty() ? Text(L".") : concat({drive.substr(0, 1), L":"});
  const DWORD size = GetFullPathNameW(start.c_str(), 0, nullptr, nullptr);
  capture_last_dll_error();
  Text folder = Text::uninitialized(size == 0 ? 0 : size - 1);
  const DWORD length = GetFullPathNameW(start.c_str(), size, folder.data(), nullptr);
  capture_last_dll_error();
  if (length >= size) raise(kDeviceUnavailable);
  folder.cut(length);
  return folder;
}

}  // namespace qv
