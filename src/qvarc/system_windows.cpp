#include <windows.h>

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

}  // namespace qv::qvarc
