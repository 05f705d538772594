#include <windows.h>

#include <cstdio>
#include <cwchar>

#include "companion/companion.h"

namespace qv::companion {
namespace {

std::string utf8(std::wstring_view text) {
  std::string bytes(text.size() * 3, '\0');
  bytes.resize(static_cast<std::size_t>(
      WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), bytes.data(),
                          static_cast<int>(bytes.size()), nullptr, nullptr)));
  return bytes;
}

// The command line behind the program's name and one blank, as it stands.
std::wstring raw_arguments() {
  const std::wstring line = GetCommandLineW();
  const std::size_t end = line.starts_with(L'"') ? line.find(L'"', 1) + 1 : line.find(L' ');
  return end < line.size() ? line.substr(end + 1) : L"";
}

void keep_call(const std::wstring& path, const std::wstring& arguments) {
  std::wstring folder(1024, L'\0');
  folder.resize(GetCurrentDirectoryW(static_cast<DWORD>(folder.size()), folder.data()));
  STARTUPINFOW start{};
  GetStartupInfoW(&start);
  const std::string text = "arguments=" + utf8(arguments) + "\nfolder=" + utf8(folder) +
                           "\nshow=" + std::to_string(start.wShowWindow) + "\n";
  const std::wstring log = path.substr(0, path.size() - 4) + L".log";
  const HANDLE file = CreateFileW(log.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                  nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  DWORD count = 0;
  WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &count, nullptr);
  CloseHandle(file);
}

// What follows "name=" in the arguments, up to a blank.
std::wstring word(const std::wstring& arguments, const std::wstring& name) {
  const std::size_t at = arguments.find(name + L"=");
  if (at == std::wstring::npos) return {};
  const std::size_t begin = at + name.size() + 1;
  return arguments.substr(begin, arguments.find(L' ', begin) - begin);
}

// instsrv NAME REMOVE and instsrv NAME "PROGRAM": the service's key with its program. A service
// whose name begins with Deaf is not made, one that begins with Other gets another program, and one
// that begins with Volatile a key that takes no lasting keys below it.
void change_service(const std::wstring& arguments) {
  const std::size_t end = arguments.find(L' ');
  const std::wstring name = arguments.substr(0, end);
  const std::wstring key = L"SYSTEM\\CurrentControlSet\\Services\\" + name;
  std::wstring program = arguments.substr(end + 1);
  if (program == L"REMOVE") {
    RegDeleteTreeW(HKEY_LOCAL_MACHINE, key.c_str());
    return;
  }
  if (name.starts_with(L"Deaf")) return;
  std::erase(program, L'"');
  if (name.starts_with(L"Other")) program = L"C:\\other.exe";
  HKEY handle = nullptr;
  const DWORD options = name.starts_with(L"Volatile") ? REG_OPTION_VOLATILE : 0;
  RegCreateKeyExW(HKEY_LOCAL_MACHINE, key.c_str(), 0, nullptr, options, KEY_WRITE, nullptr, &handle,
                  nullptr);
  RegSetValueExW(handle, L"ImagePath", 0, REG_EXPAND_SZ,
                 reinterpret_cast<const BYTE*>(program.c_str()),
                 static_cast<DWORD>((program.size() + 1) * sizeof(wchar_t)));
  RegCloseKey(handle);
}

}  // namespace

int stand_in(const std::wstring& path) {
  const std::wstring arguments = raw_arguments();
  keep_call(path, arguments);
  if (path.ends_with(L"\\instsrv.exe")) change_service(arguments);
  const std::wstring event = word(arguments, L"until");
  if (!event.empty()) {
    constexpr DWORD kLongest_ms = 30000;
    const HANDLE handle = OpenEventW(SYNCHRONIZE, FALSE, event.c_str());
    WaitForSingleObject(handle, kLongest_ms);
  }
  Sleep(static_cast<DWORD>(std::wcstoul(word(arguments, L"sleep").c_str(), nullptr, 10)));
  return static_cast<int>(std::wcstol(word(arguments, L"exit").c_str(), nullptr, 10));
}

}  // namespace qv::companion
