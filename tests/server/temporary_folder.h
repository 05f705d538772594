// A folder of a test's own, gone with all its files at the end of the test.
#pragma once

#include <windows.h>

#include <cstdio>
#include <filesystem>
#include <string>

namespace qv::tests {

// Not by the platform's name, which the generated constants take away.
inline constexpr DWORD kLongestPath = 260;

class TemporaryFolder {
 public:
  TemporaryFolder() {
    wchar_t root[kLongestPath];
    wchar_t name[kLongestPath];
    GetTempPathW(kLongestPath, root);
    GetTempFileNameW(root, L"qvt", 0, name);
    DeleteFileW(name);
    CreateDirectoryW(name, nullptr);
    path_ = name;
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  std::wstring file(const wchar_t* name) const { return path_ + L"\\" + name; }

 private:
  std::wstring path_;
};

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

inline void write_file(const std::wstring& path, const std::string& bytes) {
  std::FILE* file = _wfopen(path.c_str(), L"wb");
  std::fwrite(bytes.data(), 1, bytes.size(), file);
  std::fclose(file);
}

}  // namespace qv::tests
