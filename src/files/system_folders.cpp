#include "files/system_folders.h"

#include <algorithm>
#include <array>
#include <vector>

#include "config/registry_store.h"
#include "constants.h"
#include "files/path_text.h"
#include "frame/error_state.h"
#include "runtime/err.h"
#include "runtime/item_id_list.h"
#include "runtime/system_name.h"
#include "runtime/system_text.h"

namespace qv::files {
namespace {

constexpr std::size_t kPathRoom = 1024;
constexpr std::size_t kVolumeNameRoom = 261;

// What one of the services for folders writes, complete with its final backslash.
template <class Service>
Text folder_from(Service service) {
  std::array<wchar_t, kPathRoom> buffer{};
  service(buffer.data(), static_cast<UINT>(buffer.size()));
  capture_last_dll_error();
  return Full_Path(buffer.data());
}

// For a service that failed just now and whose error has been captured.
[[noreturn]] void raise_system_error() {
  raise({.number = frame::kFirstApplicationError, .description = system_text(err().LastDllError)});
}

// While it lives the system shows no box for a drive without a disk.
class QuietErrors {
 public:
  QuietErrors() noexcept : before_(SetErrorMode(SEM_FAILCRITICALERRORS)) {}
  QuietErrors(const QuietErrors&) = delete;
  QuietErrors& operator=(const QuietErrors&) = delete;
  ~QuietErrors() { SetErrorMode(before_); }

 private:
  UINT before_;
};

bool is_searched(Long drive_type) noexcept {
  return drive_type != DriveTypes::DRIVE_REMOTE && drive_type != DriveTypes::DRIVE_CDROM &&
         drive_type != DriveTypes::DRIVE_RAMDISK;
}

}  // namespace

Text Get_SpecialPath(Long Id) {
  return frame::handled(L"KwRtLibMod.Get_SpecialPath", frame::kTakeError, Text(), [&] {
    // As a Long the flag that creates the folder has all bits above it set.
    constexpr Long kNumberAndFlags = 0xFFFF;
    return ItemIdList::special_folder(nullptr, Id & kNumberAndFlags).path();
  });
}

Text Get_WinPath() { return folder_from(&GetWindowsDirectoryW); }
Text Get_SysPath() { return folder_from(&GetSystemDirectoryW); }

Text Get_ShortPathName(const Text& Path) {
  constexpr const wchar_t* kSource = L"KwRtLibMod.Get_ShortPathName";
  return frame::handled(kSource, frame::kAppendSystemText, Text(), [&] {
    if (auto path = short_name(Path)) return *std::move(path);
    frame::Set_Error({.Number = frame::kFirstApplicationError, .Source = kSource},
                     frame::kAppendSystemText);
    return Text();
  });
}

std::optional<Text> machine_text(const Text& key, const wchar_t* name) {
  Text text;
  VARIANT reference{};
  reference.vt = VT_BYREF | VT_BSTR;
  reference.pbstrVal = reinterpret_cast<BSTR*>(&text);
  Variant value = Variant::adopt(reference);
  if (config::RegistryRead(key, name, value, Registry_Keys::HKEY_LOCAL_MACHINE)) return {};
  return text;
}

std::optional<Text> registered_program_path(std::wstring_view program) {
  return machine_text(concat({kCurrentVersionKey, L"\\App Paths\\", program}), L"Path");
}

Text Get_AppPaths(const Text& ExeName) { return registered_program_path(ExeName).value_or(Text()); }

Text Get_ProgramFilesPath() {
  return machine_text(kCurrentVersionKey, L"ProgramFilesDir").value_or(Text());
}

Boolean GetDriveStrings(Array<Text>& Roots) {
  return frame::handled(L"KwRtLibMod.GetDriveStrings", frame::kTakeError, True, [&] {
    std::vector<wchar_t> buffer(2048);
    DWORD length = 0;
    for (;;) {
      length = GetLogicalDriveStringsW(static_cast<DWORD>(buffer.size()), buffer.data());
      capture_last_dll_error();
      if (length == 0) raise_system_error();
      if (length < buffer.size()) break;
      buffer.resize(length + 1);
    }
    std::vector<Text> roots;
    for (const wchar_t* root = buffer.data(); *root != L'\0'; root += roots.back().size() + 1) {
      roots.emplace_back(root);
    }
    if (roots.empty()) return False;
    Roots.redimension(1, roots.size());
    std::move(roots.begin(), roots.end(), Roots.lock().begin());
    return False;
  });
}

Boolean GetVolumeInfo(const Text& RootPath, Text& VolumeName, Long& SerialNumber, Long& MaxFileLen,
                      Long& FileSysFlags, Text& FileSysName, Long& DriveType) {
  return frame::handled(L"KwRtLibMod.GetVolumeInfo", frame::kTakeError, True, [&] {
    const auto type = static_cast<Long>(GetDriveTypeW(RootPath.c_str()));
    capture_last_dll_error();
    std::array<wchar_t, kVolumeNameRoom> name{};
    std::array<wchar_t, kVolumeNameRoom> system{};
    DWORD serial = 0;
    DWORD longest = 0;
    DWORD flags = 0;
    BOOL success = FALSE;
    {
      const QuietErrors quiet;
      success = GetVolumeInformationW(RootPath.c_str(), name.data(), name.size(), &serial, &longest,
                                      &flags, system.data(), system.size());
      capture_last_dll_error();
    }
    if (!success) raise_system_error();
    VolumeName = name.data();
    SerialNumber = static_cast<Long>(serial);
    MaxFileLen = static_cast<Long>(longest);
    FileSysFlags = static_cast<Long>(flags);
    FileSysName = system.data();
    DriveType = type;
    return False;
  });
}

Double Get_DiskSpace(const Text& RootPath) {
  DWORD sectors = 0;
  DWORD sector_bytes = 0;
  DWORD free_clusters = 0;
  DWORD clusters = 0;
  const BOOL success =
      GetDiskFreeSpaceW(RootPath.c_str(), &sectors, &sector_bytes, &free_clusters, &clusters);
  capture_last_dll_error();
  return success ? Double{1} * sectors * sector_bytes * free_clusters : -1;
}

namespace {

// "" where no drive has it. A machine may have no drive at all.
Text first_with_space(const Array<Text>& roots, Double space_bytes) {
  if (roots.dimensions() == 0) return {};
  for (const Text& root : roots.lock()) {
    Text text;
    Long number = 0;
    Long type = 0;
    if (GetVolumeInfo(root, text, number, number, number, text, type)) continue;
    if (is_searched(type) && Get_DiskSpace(root) >= space_bytes) return root;
  }
  return {};
}

}  // namespace

Boolean Get_DiskFree(Double MinSpace, Text& RetRoot) {
  constexpr const wchar_t* kSource = L"KwRtLibMod.Get_DiskFree";
  return frame::handled(kSource, frame::kChain, True, [&]() -> Boolean {
    Array<Text> roots;
    if (GetDriveStrings(roots)) {
      frame::Set_Error({.Source = kSource}, frame::kChain);
      return True;
    }
    RetRoot = first_with_space(roots, MinSpace);
    return False;
  });
}

}  // namespace qv::files
