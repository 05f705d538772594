// Files of tests: a folder of a test's own, and what is in a file.
#pragma once

#include <windows.h>

#include <cstdio>
#include <string>
#include <string_view>

namespace qv::tests {

// Not by the platform's name, which the generated constants take away.
inline constexpr DWORD kLongestPath = 260;

// The bytes of a file; empty where there is none.
inline std::string bytes_of_file(const std::wstring& path) {
  std::string bytes;
  std::FILE* file = _wfopen(path.c_str(), L"rb");
  if (file == nullptr) return bytes;
  for (int byte = std::fgetc(file); byte != EOF; byte = std::fgetc(file)) {
    bytes += static_cast<char>(byte);
  }
  std::fclose(file);
  return bytes;
}

inline void write_file(const std::wstring& path, std::string_view bytes) {
  std::FILE* file = _wfopen(path.c_str(), L"wb");
  std::fwrite(bytes.data(), 1, bytes.size(), file);
  std::fclose(file);
}

// Removed with all that is in it, whatever its attributes, when the test ends.
class TempFolder {
 public:
  TempFolder() {
    wchar_t base[kLongestPath];
    GetTempPathW(kLongestPath, base);
    static int number = 0;
    path_ = std::wstring(base) + L"qvrt" + std::to_wstring(GetCurrentProcessId()) + L"_" +
            std::to_wstring(++number) + L"\\";
    CreateDirectoryW(path_.c_str(), nullptr);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  ~TempFolder() { remove_tree(L"\\\\?\\" + path_); }  // so that no path is too long

  // With its final backslash.
  const std::wstring& path() const { return path_; }
  std::wstring file(std::wstring_view name) const { return path_ + std::wstring(name); }
  void write(std::wstring_view name, std::string_view bytes) const {
    write_file(file(name), bytes);
  }
  std::string read(std::wstring_view name) const {
    return exists(name) ? bytes_of_file(file(name)) : "(no such file)";
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
        SetFileAttributesW(full.c_str(), FILE_ATTRIBUTE_NORMAL);
        if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
          remove_tree(full + L"\\");
        } else {
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
