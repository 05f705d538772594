// A folder of a test's own, removed with what is in it.
#pragma once

#include <windows.h>

#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace qv::tests {

class TempFolder {
 public:
  TempFolder() {
    wchar_t base[MAX_PATH];
    GetTempPathW(MAX_PATH, base);
    static int number = 0;
    path_ = std::wstring(base) + L"qvrt" + std::to_wstring(GetCurrentProcessId()) + L"_" +
            std::to_wstring(++number) + L"\\";
    CreateDirectoryW(path_.c_str(), nullptr);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  ~TempFolder() { remove_tree(path_); }

  // With its final backslash.
  const std::wstring& path() const { return path_; }
  std::wstring file(std::wstring_view name) const { return path_ + std::wstring(name); }
  void write(std::wstring_view name, std::string_view bytes) const {
    HANDLE file_handle = CreateFileW(file(name).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                     FILE_ATTRIBUTE_NORMAL, nullptr);
    DWORD written = 0;
    WriteFile(file_handle, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
    CloseHandle(file_handle);
  }
  std::string read(std::wstring_view name) const {
    HANDLE file_handle =
        CreateFileW(file(name).c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file_handle == INVALID_HANDLE_VALUE) return "(no such file)";
    std::string bytes(GetFileSize(file_handle, nullptr), '\0');
    DWORD read_bytes = 0;
    ReadFile(file_handle, bytes.data(), static_cast<DWORD>(bytes.size()), &read_bytes, nullptr);
    CloseHandle(file_handle);
    return bytes;
  }
  bool exists(std::wstring_view name) const {
    return GetFileAttributesW(file(name).c_str()) != INVALID_FILE_ATTRIBUTES;
  }

 private:
  static void remove_tree(const std::wstring& folder) {
    WIN32_FIND_DATAW found;
    HANDLE search = FindFirstFileW((folder + L"*").c_str(), &found);
    if (search != INVALID_HANDLE_VALUE) {
      do {
        const std::wstring name = found.cFileName;
        if (name == L"." || name == L"..") continue;
        const std::wstring full = folder + name;
        if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
          remove_tree(full + L"\\");
        } else {
          SetFileAttributesW(full.c_str(), FILE_ATTRIBUTE_NORMAL);
          DeleteFileW(full.c_str());
        }
      } while (FindNextFileW(search, &found) != FALSE);
      FindClose(search);
    }
    RemoveDirectoryW(folder.c_str());
  }

  std::wstring path_;
};

}  // namespace qv::tests
