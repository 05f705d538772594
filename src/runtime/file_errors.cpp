#include "runtime/file_errors.h"

#include <algorithm>
#include <cwctype>
#include <iterator>

#include "runtime/err.h"

namespace qv {
namespace {

struct Meaning {
  DWORD system_error;
  Long number;
};

// What has no row is an access error of its path, 75.
constexpr Meaning kMeanings[] = {
    {ERROR_FILE_NOT_FOUND, kFileNotFound},
    {ERROR_PATH_NOT_FOUND, kPathNotFound},
    {ERROR_TOO_MANY_OPEN_FILES, kTooManyFiles},
    {ERROR_INVALID_HANDLE, kBadFileNameOrNumber},
    {ERROR_NOT_ENOUGH_MEMORY, 7},
    {ERROR_OUTOFMEMORY, 7},
    {ERROR_INVALID_DRIVE, kDeviceUnavailable},
    {ERROR_NOT_SAME_DEVICE, kDifferentDrive},
    {ERROR_WRITE_PROTECT, kPermissionDenied},
    {ERROR_BAD_UNIT, kDeviceUnavailable},
    {ERROR_NOT_READY, kDiskNotReady},
    {ERROR_CRC, kDeviceError},
    {ERROR_SEEK, kDeviceError},
    {ERROR_SECTOR_NOT_FOUND, kDeviceError},
    {ERROR_WRITE_FAULT, kDeviceError},
    {ERROR_READ_FAULT, kDeviceError},
    {ERROR_GEN_FAILURE, kDeviceError},
    {ERROR_SHARING_VIOLATION, kPermissionDenied},
    {ERROR_LOCK_VIOLATION, kPermissionDenied},
    {ERROR_HANDLE_EOF, kInputPastEnd},
    {ERROR_HANDLE_DISK_FULL, kDiskFull},
    {ERROR_BAD_NETPATH, kBadFileNameOrNumber},
    {ERROR_BAD_NET_NAME, kBadFileNameOrNumber},
    {ERROR_FILE_EXISTS, kFileAlreadyExists},
    {ERROR_DISK_FULL, kDiskFull},
    {ERROR_INVALID_NAME, kBadFileNameOrNumber},
    {ERROR_BAD_PATHNAME, kBadFileNameOrNumber},
    {ERROR_BUSY, kPermissionDenied},
    {ERROR_FILENAME_EXCED_RANGE, kBadFileNameOrNumber},
    {ERROR_DIRECTORY, kPathNotFound},
    {ERROR_IO_DEVICE, kDeviceError},
    {ERROR_USER_MAPPED_FILE, kPermissionDenied},
};

bool names_a_missing_drive(const wchar_t* name) noexcept {
  if (std::iswalpha(name[0]) == 0 || name[1] != L':') return false;
  const wchar_t root[] = {name[0], L':', L'\\', L'\0'};
  return GetDriveTypeW(root) == DRIVE_NO_ROOT_DIR;
}

}  // namespace

Long last_file_error(const wchar_t* name) noexcept {
  const DWORD code = GetLastError();
  capture_last_dll_error();
  const bool is_missing = code == ERROR_FILE_NOT_FOUND || code == ERROR_PATH_NOT_FOUND;
  if (is_missing && names_a_missing_drive(name)) return kDeviceUnavailable;
  const auto* found = std::ranges::find(kMeanings, code, &Meaning::system_error);
  return found != std::end(kMeanings) ? found->number : kPathFileAccess;
}

void raise_file_error(const wchar_t* name) { raise(last_file_error(name)); }

}  // namespace qv
