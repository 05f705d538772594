#include "archive/cabinet_files.h"

#include <fcntl.h>

#include "automation/bytes.h"
#include "automation/run_time_error.h"
#include "frame/error_state.h"
#include "runtime/err.h"
#include "runtime/system_name.h"

namespace qv::archive {

std::string utf8_of(std::wstring_view text) {
  const auto length = static_cast<int>(text.size());
  const int size =
      WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
  std::string bytes(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.data(), length, bytes.data(), size, nullptr, nullptr);
  return bytes;
}

Text text_of_utf8(std::string_view bytes) {
  if (bytes.empty()) return {};
  const auto length = static_cast<int>(bytes.size());
  const int size =
      MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, bytes.data(), length, nullptr, 0);
  if (size == 0) {
    return text_of_bytes({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
  }
  Text text = Text::uninitialized(static_cast<std::size_t>(size));
  MultiByteToWideChar(CP_UTF8, 0, bytes.data(), length, text.data(), size);
  return text;
}

namespace cabinet_files {
namespace {

DWORD access_of(int flags) noexcept {
  if ((flags & _O_RDWR) != 0) return GENERIC_READ | GENERIC_WRITE;
  return (flags & _O_WRONLY) != 0 ? GENERIC_WRITE : GENERIC_READ;
}

DWORD disposition_of(int flags) noexcept {
  if ((flags & _O_CREAT) == 0) return OPEN_EXISTING;
  if ((flags & _O_EXCL) != 0) return CREATE_NEW;
  return (flags & _O_TRUNC) != 0 ? CREATE_ALWAYS : OPEN_ALWAYS;
}

}  // namespace

INT_PTR open(const char* name, int flags) noexcept {
  try {
    const HANDLE file =
        CreateFileW(system_name(text_of_utf8(name)).c_str(), access_of(flags), FILE_SHARE_READ,
                    nullptr, disposition_of(flags), FILE_ATTRIBUTE_NORMAL, nullptr);
    capture_last_dll_error();
    return reinterpret_cast<INT_PTR>(file);
  } catch (...) {
    return kNoFile;
  }
}

UINT read(INT_PTR file, void* bytes, UINT count) noexcept {
  constexpr auto kFailure = static_cast<UINT>(-1);
  DWORD done = 0;
  const BOOL ok = ReadFile(handle_of(file), bytes, count, &done, nullptr);
  capture_last_dll_error();
  return ok != FALSE ? done : kFailure;
}

UINT write(INT_PTR file, const void* bytes, UINT count) noexcept {
  constexpr auto kFailure = static_cast<UINT>(-1);
  DWORD done = 0;
  const BOOL ok = WriteFile(handle_of(file), bytes, count, &done, nullptr);
  capture_last_dll_error();
  return ok != FALSE && done == count ? count : kFailure;
}

int close(INT_PTR file) noexcept {
  const BOOL ok = CloseHandle(handle_of(file));
  capture_last_dll_error();
  return ok != FALSE ? 0 : -1;
}

LONG seek(INT_PTR file, LONG distance, int origin) noexcept {
  // The C run time's origins are the system's.
  const DWORD position =
      SetFilePointer(handle_of(file), distance, nullptr, static_cast<DWORD>(origin));
  capture_last_dll_error();
  return static_cast<LONG>(position);
}

void* allocate(ULONG bytes) noexcept { return HeapAlloc(GetProcessHeap(), 0, bytes); }
void release(void* block) noexcept { HeapFree(GetProcessHeap(), 0, block); }

}  // namespace cabinet_files

void raise_cabinet_error(Long code, const Text& description) {
  raise({.number = frame::kFirstApplicationError + code, .description = description});
}

}  // namespace qv::archive
