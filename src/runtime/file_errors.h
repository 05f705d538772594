// Failures of the system's file services as run-time errors of the calling language.
#pragma once

#include "automation/run_time_error.h"

namespace qv {

inline constexpr Long kBadFileNameOrNumber = 52;
inline constexpr Long kFileNotFound = 53;
inline constexpr Long kFileAlreadyOpen = 55;
inline constexpr Long kDeviceError = 57;
inline constexpr Long kFileAlreadyExists = 58;
inline constexpr Long kDiskFull = 61;
inline constexpr Long kInputPastEnd = 62;
inline constexpr Long kTooManyFiles = 67;
inline constexpr Long kDeviceUnavailable = 68;
inline constexpr Long kPermissionDenied = 70;
inline constexpr Long kDiskNotReady = 71;
inline constexpr Long kDifferentDrive = 74;
inline constexpr Long kPathFileAccess = 75;
inline constexpr Long kPathNotFound = 76;

// The run-time error that the system's last error means for the file or folder of that name: the
// name tells a drive that is not there (68) from a folder that is not (76). To be called at once
// after the service that failed; the system's code also goes to LastDllError.
Long last_file_error(const wchar_t* name = L"") noexcept;
[[noreturn]] void raise_file_error(const wchar_t* name = L"");

}  // namespace qv
