// A drive of a test's own, of any kind, gone at its end. Made through Wine's mount manager, as its
// own configuration program does: a link to a folder among the prefix's devices, and the kind in
// the registry.
#pragma once

#include <windows.h>
// winioctl.h needs windows.h before it.
#include <winioctl.h>

#include <cstring>
#include <string>
#include <vector>

namespace qv::tests {

class TestDrive {
 public:
  // Kinds as GetDriveType tells them.
  TestDrive(char letter, DWORD kind, const std::wstring& folder) : letter_(letter) {
    made_ = define(kind, unix_name(folder));
  }
  TestDrive(const TestDrive&) = delete;
  TestDrive& operator=(const TestDrive&) = delete;
  ~TestDrive() { define(DRIVE_NO_ROOT_DIR, {}); }

  // The manager is a service like others: in the first moments of a session it is not up yet, and a
  // request that comes before it knows the drives that are there ends it.
  static bool wait_for_manager() {
    constexpr int kAttempts = 600;
    for (int i = 0; i < kAttempts; ++i) {
      wchar_t volume[64];
      if (GetVolumeNameForVolumeMountPointW(L"C:\\", volume, 64)) return true;
      Sleep(50);
    }
    return false;
  }

  bool is_made() const { return made_; }
  std::wstring root() const { return {static_cast<wchar_t>(letter_), L':', L'\\'}; }

 private:
  struct UnixDrive {
    ULONG size_bytes;
    ULONG kind;
    ULONG file_system;
    DWORD serial;
    ULONGLONG device;
    WCHAR letter;
    USHORT mount_point_offset;
    USHORT device_offset;
    USHORT label_offset;
  };
  static constexpr DWORD kDefineUnixDrive =
      CTL_CODE('m', 32, METHOD_BUFFERED, FILE_READ_ACCESS | FILE_WRITE_ACCESS);

  static std::string unix_name(const std::wstring& path) {
    using Service = char*(__cdecl*)(const wchar_t*);
    const auto service = reinterpret_cast<Service>(reinterpret_cast<void*>(
        GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "wine_get_unix_file_name")));
    if (service == nullptr) return {};
    char* name = service(path.c_str());
    if (name == nullptr) return {};
    const std::string result(name);
    HeapFree(GetProcessHeap(), 0, name);
    return result;
  }

  // Without a mount point the letter becomes free.
  bool define(DWORD kind, const std::string& mount_point) const {
    UnixDrive drive{};
    std::vector<char> request(sizeof drive + mount_point.size() + 1);
    drive.size_bytes = static_cast<ULONG>(request.size());
    drive.kind = kind;
    drive.letter = static_cast<WCHAR>(letter_ | 0x20);
    if (!mount_point.empty()) drive.mount_point_offset = sizeof drive;
    std::memcpy(request.data(), &drive, sizeof drive);
    std::memcpy(request.data() + sizeof drive, mount_point.c_str(), mount_point.size() + 1);
    const HANDLE manager =
        CreateFileW(L"\\\\.\\MountPointManager", GENERIC_READ | GENERIC_WRITE,
                    FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
    if (manager == INVALID_HANDLE_VALUE) return false;
    const BOOL done = DeviceIoControl(manager, kDefineUnixDrive, request.data(), drive.size_bytes,
                                      nullptr, 0, nullptr, nullptr);
    CloseHandle(manager);
    return done != FALSE;
  }

  char letter_;
  bool made_;
};

// A drive without a disk: a letter for a folder that is not there.
class EmptyDrive {
 public:
  explicit EmptyDrive(const wchar_t* name) : name_(name) {
    DefineDosDeviceW(0, name_, L"C:\\no such folder");
  }
  EmptyDrive(const EmptyDrive&) = delete;
  EmptyDrive& operator=(const EmptyDrive&) = delete;
  ~EmptyDrive() { DefineDosDeviceW(DDD_REMOVE_DEFINITION, name_, nullptr); }

 private:
  const wchar_t* name_;
};

}  // namespace qv::tests
