// Members that hand on to the system, beside the same calls of the system made directly: an INI
// file, the registry, a file read, a search of many files. Ours may take 1.05 of the direct calls
// and a microsecond more, the search 1.1 of a bare one.
#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "constants.h"
#include "server/client.h"
#include "windows/bench.h"

namespace {

using namespace qv;
using namespace qv::bench;
using qv::tests::create;
using qv::tests::create_global;
using qv::tests::Pointer;
using qv::tests::String;
using qv::tests::Value;
namespace fs = std::filesystem;

constexpr int kRounds = 15;
constexpr Goal kCallGoal = at_most(1.05, 1000);

void require(bool holds, const char* what) {
  if (holds) return;
  std::printf("failed: %s\n", what);
  std::exit(1);
}

template <class Ours, class Peers>
void compare(const char* what, const Goal& goal, int count, Ours&& ours, Peers&& peers) {
  Times times;
  for (int round = 0; round < kRounds; ++round) {
    const double ours_s = seconds([&] {
      for (int i = 0; i < count; ++i) ours();
    });
    times.add(ours_s, seconds([&] {
                for (int i = 0; i < count; ++i) peers();
              }));
  }
  times.print(what, static_cast<std::size_t>(count), goal);
}

// Removed at the end.
class ScratchFolder {
 public:
  ScratchFolder() : path_(fs::temp_directory_path() / L"qvrt_platform_bench") {
    fs::remove_all(path_);
    fs::create_directories(path_);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  ~ScratchFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  const fs::path& path() const { return path_; }

 private:
  fs::path path_;
};

void ini_file(_KwRtLib* global, const fs::path& folder) {
  const fs::path path = folder / L"bench.ini";
  std::ofstream file(path);
  for (int section = 0; section < 10; ++section) {
    file << "[Section" << section << "]\n";
    for (int key = 0; key < 49; ++key) file << "Key" << key << "=value " << key << "\n";
  }
  file.close();
  auto ini = create<_QVtIniStruct>(CLSID_QVtIniStruct);
  ini->put_IniFile(String(path.wstring()));
  compare(
      "INI file of 500 lines, a value read", kCallGoal, 20,
      [&] {
        Value section(L"Section7");
        Value key(L"Key30");
        Value fallback(L"");
        Value result;
        require(global->Ini_Get(&section, &key, &fallback, ini.variable(), &result) == S_OK &&
                    std::wstring_view(result.bstrVal) == L"value 30",
                "Ini_Get");
      },
      [&] {
        std::array<wchar_t, 8192> value;
        const DWORD length =
            GetPrivateProfileStringW(L"Section7", L"Key30", L"", value.data(),
                                     static_cast<DWORD>(value.size()), path.c_str());
        require(length == 8, "GetPrivateProfileString");
      });
}

void registry(_KwRtLib* global) {
  constexpr const wchar_t* kKey = L"Software\\QvRtPlatformBench";
  constexpr wchar_t kText[] = L"value";
  const auto user = reinterpret_cast<HKEY>(static_cast<LONG_PTR>(Registry_Keys::HKEY_CURRENT_USER));
  RegSetKeyValueW(user, kKey, L"Name", Registry_DataType::REG_SZ, kText, sizeof(kText));
  String key(kKey);
  String name(L"Name");
  compare(
      "registry, a text read", kCallGoal, 200,
      [&] {
        Value result;
        LONG root = Registry_Keys::HKEY_CURRENT_USER;
        VARIANT_BOOL failed = VARIANT_TRUE;
        global->RegistryRead(key, name, &result, &root, &failed);
        require(failed == VARIANT_FALSE, "RegistryRead");
      },
      [&] {
        HKEY handle = nullptr;
        std::array<wchar_t, 64> value;
        DWORD type = 0;
        DWORD size_bytes = sizeof(value);
        RegOpenKeyExW(user, kKey, 0, KEY_QUERY_VALUE, &handle);
        RegQueryValueExW(handle, L"Name", nullptr, &type, nullptr, &size_bytes);
        RegQueryValueExW(handle, L"Name", nullptr, &type, reinterpret_cast<BYTE*>(value.data()),
                         &size_bytes);
        RegCloseKey(handle);
        require(size_bytes == sizeof(kText), "RegQueryValueEx");
      });
  RegDeleteKeyW(user, kKey);
}

void file_read(_KwRtLib* global, const fs::path& folder) {
  constexpr int kBytes = 4096;
  const fs::path path = folder / L"bench.bin";
  std::ofstream(path, std::ios::binary) << std::string(kBytes, 'x');
  String name(path.wstring());
  compare(
      "file opened, 4096 bytes read, closed", kCallGoal, 50,
      [&] {
        LONG flags = File_Open_Const::O_RDONLY;
        LONG sharing = File_Open_Const::SH_DENYNO;
        LONG attributes = 0;
        LONG handle = 0;
        VARIANT_BOOL failed = VARIANT_TRUE;
        SHORT result = -1;
        Value buffer(std::wstring(kBytes, L' '));
        global->File_Open32(&name, &flags, &sharing, &attributes, &handle, &failed);
        global->File_Read32(&handle, &buffer, &result);
        global->File_Close32(&handle, &failed);
        require(result == 0 && buffer.bstrVal[kBytes - 1] == L'x', "File_Read32");
      },
      [&] {
        std::array<char, kBytes> buffer;
        DWORD count = 0;
        require(GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES, "GetFileAttributes");
        const HANDLE file =
            CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                        OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
        ReadFile(file, buffer.data(), kBytes, &count, nullptr);
        CloseHandle(file);
        require(count == kBytes, "ReadFile");
      });
}

LONG files_below(const std::wstring& folder) {
  WIN32_FIND_DATAW entry;
  LONG count = 0;
  const HANDLE search = FindFirstFileW((folder + L"\\*").c_str(), &entry);
  if (search == INVALID_HANDLE_VALUE) return 0;
  do {
    if (entry.cFileName[0] == L'.') continue;
    const bool is_folder = (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    count += is_folder ? files_below(folder + L"\\" + entry.cFileName) : 1;
  } while (FindNextFileW(search, &entry) != FALSE);
  FindClose(search);
  return count;
}

// As many as a search by name can list, 32767 at most.
void search(_KwRtLib* global, const fs::path& folder) {
  constexpr int kFolders = 100;
  constexpr int kFilesEach = 320;
  constexpr int kFiles = kFolders * kFilesEach;
  const fs::path tree = folder / L"tree";
  for (int i = 0; i < kFolders; ++i) {
    const fs::path part = tree / std::to_wstring(i);
    fs::create_directories(part);
    for (int j = 0; j < kFilesEach; ++j) std::ofstream(part / (std::to_wstring(j) + L".txt"));
  }
  String path(tree.wstring());
  String any(L"*.*");
  Value mask(0);
  Times names;
  Times descriptions;
  for (int round = 0; round < 5; ++round) {
    SAFEARRAY* list = nullptr;
    SHORT no_limit = -1;
    SHORT named = 0;
    LONG peers = 0;
    const double names_s =
        seconds([&] { global->Where_Is(path, &any, &mask, &list, &no_limit, &named); });
    names.add(names_s, seconds([&] { peers = files_below(tree.wstring()); }));
    SafeArrayDestroy(list);
    require(named == kFiles && peers == kFiles, "every file is found");

    auto found = create<_kwCollection>(CLSID_kwCollection);
    LONG unlimited = -1;
    LONG described = 0;
    const double descriptions_s = seconds(
        [&] { global->Where_IsEx(path, &any, &mask, found.variable(), &unlimited, &described); });
    descriptions.add(descriptions_s, seconds([&] { peers = files_below(tree.wstring()); }));
    require(described == kFiles + kFolders && peers == kFiles, "every file and folder is found");
  }
  names.print("search of 32000 files, names", kFiles, at_most(1.1));
  descriptions.print("search of 32000 files, dates and sizes", kFiles);
}

}  // namespace

int main() {
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  {
    const auto global = create_global();
    require(static_cast<bool>(global), "the server is registered");
    const ScratchFolder scratch;
    print_heading("Members that hand on to the system", "the same calls made directly");
    ini_file(global.get(), scratch.path());
    registry(global.get());
    file_read(global.get(), scratch.path());
    search(global.get(), scratch.path());
  }
  CoUninitialize();
  return 0;
}
