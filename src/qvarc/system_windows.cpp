#include <io.h>
#include <windows.h>

#include <cstdio>
#include <vector>

#include "qvarc/dates.h"
#include "qvarc/system.h"

namespace qv::qvarc {
namespace {

constexpr std::int64_t kTicksPerSecond = 10'000'000;
constexpr std::int64_t kSecondsTo1970 = 11'644'473'600;  // from 1601, where file times begin
constexpr DWORD kRestorable = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN |
                              FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE;

double local_date(const FILETIME& time) {
  FILETIME local;
  if (FileTimeToLocalFileTime(&time, &local) == FALSE) return 0;
  const auto ticks =
      static_cast<std::int64_t>(std::uint64_t{local.dwHighDateTime} << 32 | local.dwLowDateTime);
  return date_of(ticks / kTicksPerSecond - kSecondsTo1970);
}

std::optional<FILETIME> time_of(double date) {
  const auto seconds = local_seconds_of(date);
  if (!seconds) return std::nullopt;
  const auto ticks = static_cast<std::uint64_t>((*seconds + kSecondsTo1970) * kTicksPerSecond);
  const FILETIME local{static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
  FILETIME time;
  if (LocalFileTimeToFileTime(&local, &time) == FALSE) return std::nullopt;
  return time;
}

void read_version(const Path& path, FileFacts& facts) {
  const DWORD size = GetFileVersionInfoSizeW(path.c_str(), nullptr);
  if (size == 0) return;
  std::vector<std::uint8_t> block(size);
  void* fixed = nullptr;
  UINT fixed_bytes = 0;
  if (GetFileVersionInfoW(path.c_str(), 0, size, block.data()) == FALSE ||
      VerQueryValueW(block.data(), L"\\", &fixed, &fixed_bytes) == FALSE ||
      fixed_bytes < sizeof(VS_FIXEDFILEINFO)) {
    return;
  }
  const auto& info = *static_cast<const VS_FIXEDFILEINFO*>(fixed);
  facts.major_version = static_cast<std::int32_t>(info.dwFileVersionMS);
  facts.minor_version = static_cast<std::int32_t>(info.dwFileVersionLS);
}

HANDLE handle_of(Stream stream) {
  return GetStdHandle(stream == Stream::output ? STD_OUTPUT_HANDLE : STD_ERROR_HANDLE);
}

}  // namespace

std::optional<FileFacts> facts_of(const Path& path) {
  WIN32_FILE_ATTRIBUTE_DATA found;
  if (GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &found) == FALSE ||
      (found.dwFileAttributes & FILE_ATTRIBUTE_DEVICE) != 0) {
    return std::nullopt;
  }
  FileFacts facts;
  facts.size_bytes = std::uint64_t{found.nFileSizeHigh} << 32 | found.nFileSizeLow;
  facts.created = local_date(found.ftCreationTime);
  facts.changed = local_date(found.ftLastWriteTime);
  facts.attributes = static_cast<std::int32_t>(found.dwFileAttributes);
  if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0) read_version(path, facts);
  return facts;
}

bool set_dates(const Path& path, double created, double changed) {
  const auto created_time = time_of(created);
  const auto changed_time = time_of(changed);
  if (!created_time || !changed_time) return false;
  const HANDLE file =
      CreateFileW(path.c_str(), FILE_WRITE_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                  OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  const BOOL done = SetFileTime(file, &*created_time, nullptr, &*changed_time);
  CloseHandle(file);
  return done != FALSE;
}

bool set_attributes(const Path& path, std::int32_t attributes) {
  const DWORD wanted = static_cast<DWORD>(attributes) & kRestorable;
  return SetFileAttributesW(path.c_str(), wanted == 0 ? FILE_ATTRIBUTE_NORMAL : wanted) != FALSE;
}

native::rtlib::ForwardTable name_table() {
  CPINFO info;
  if (GetCPInfo(CP_ACP, &info) == FALSE || info.MaxCharSize != 1) {
    return native::rtlib::kWindows1252;
  }
  native::rtlib::ForwardTable table;
  for (std::size_t byte = 0; byte < table.size(); ++byte) {
    const char narrow = static_cast<char>(byte);
    wchar_t wide = 0;
    const int count = MultiByteToWideChar(CP_ACP, MB_ERR_INVALID_CHARS, &narrow, 1, &wide, 1);
    table[byte] = static_cast<char16_t>(count == 1 ? wide : byte);
  }
  return table;
}

void write(Stream stream, std::string_view text) {
  if (is_terminal(stream)) {
    const std::wstring wide = Path(std::u8string(text.begin(), text.end())).wstring();
    DWORD written = 0;
    WriteConsoleW(handle_of(stream), wide.data(), static_cast<DWORD>(wide.size()), &written,
                  nullptr);
  } else {
    std::fwrite(text.data(), 1, text.size(), stream == Stream::output ? stdout : stderr);
  }
}

bool is_terminal(Stream stream) {
  DWORD mode;
  return GetConsoleMode(handle_of(stream), &mode) != FALSE;
}

std::size_t terminal_width(Stream stream) {
  constexpr std::size_t kUsual = 80;
  CONSOLE_SCREEN_BUFFER_INFO info;
  if (GetConsoleScreenBufferInfo(handle_of(stream), &info) == FALSE) return kUsual;
  return static_cast<std::size_t>(info.srWindow.Right - info.srWindow.Left + 1);
}

}  // namespace qv::qvarc
