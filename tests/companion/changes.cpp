#include <windows.h>

#include <cstdio>

#include "companion/companion.h"

namespace qv::companion {
namespace {

// The file "there" must be there; the others are made.
using Change = void (*)(const std::wstring& folder, int round);

void write(const std::wstring& folder, int) {
  const HANDLE file =
      CreateFileW((folder + L"there").c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE,
                  nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  DWORD count = 0;
  WriteFile(file, "x", 1, &count, nullptr);
  CloseHandle(file);
}

void create(const std::wstring& folder, int round) {
  CloseHandle(CreateFileW((folder + L"file" + std::to_wstring(round)).c_str(), GENERIC_WRITE, 0,
                          nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
}

void make_folder(const std::wstring& folder, int round) {
  CreateDirectoryW((folder + L"folder" + std::to_wstring(round)).c_str(), nullptr);
}

void change_attributes(const std::wstring& folder, int round) {
  SetFileAttributesW((folder + L"there").c_str(),
                     round % 2 == 0 ? FILE_ATTRIBUTE_READONLY : FILE_ATTRIBUTE_NORMAL);
}

void write_below(const std::wstring& folder, int round) {
  make_folder(folder, round);
  Sleep(20);
  const std::wstring below = folder + L"folder" + std::to_wstring(round) + L"\\";
  CopyFileW((folder + L"there").c_str(), (below + L"there").c_str(), FALSE);
  write(below, round);
}

struct Kind {
  const wchar_t* name;
  Change change;
};
constexpr Kind kKinds[] = {
    {L"write", write},        {L"create", create},
    {L"folder", make_folder}, {L"attributes", change_attributes},
    {L"below", write_below},
};

}  // namespace

int change(const Arguments& arguments) {
  constexpr int kRounds = 1500;
  constexpr DWORD kPause_ms = 20;
  for (const auto& [name, change_once] : kKinds) {
    if (arguments[1] != name) continue;
    for (int round = 0; round < kRounds; ++round) {
      change_once(arguments[0], round);
      if (round == 0) std::printf("changing\n");
      Sleep(kPause_ms);
    }
    return 0;
  }
  std::printf("no kind %ls\n", arguments[1].c_str());
  return 1;
}

}  // namespace qv::companion
