// Where the system's folders are, and what the machine's drives look like.
#pragma once

#include <optional>

#include "automation/array.h"
#include "automation/text.h"

namespace qv::files {

// "" = the shell has no folder for the number, as for the printers.
Text Get_SpecialPath(Long Id);
// Both with a final backslash.
Text Get_WinPath();
Text Get_SysPath();
// "" = failure, told by the error state: 20000 with the system's text.
Text Get_ShortPathName(const Text& Path);
// As the registry has them; "" = failure, told by the error state.
Text Get_AppPaths(const Text& ExeName);
Text Get_ProgramFilesPath();

// The next three: True = failure, told by the error state.
Boolean GetDriveStrings(Array<Text>& Roots);
Boolean GetVolumeInfo(const Text& RootPath, Text& VolumeName, Long& SerialNumber, Long& MaxFileLen,
                      Long& FileSysFlags, Text& FileSysName, Long& DriveType);
// RetRoot is "" where no drive has the space, which is no failure.
Boolean Get_DiskFree(Double MinSpace, Text& RetRoot);
// Free bytes; -1 = failure.
Double Get_DiskSpace(const Text& RootPath);

// For the library's own code: a text of the machine's part of the registry; none = failure, told by
// the error state.
std::optional<Text> machine_text(const Text& key, const wchar_t* name);
inline constexpr const wchar_t* kCurrentVersionKey =
    L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion";
// What Get_AppPaths gives, told apart from a failure.
std::optional<Text> registered_program_path(std::wstring_view program);

}  // namespace qv::files
