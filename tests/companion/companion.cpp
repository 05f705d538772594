#include "companion/companion.h"

#include <windows.h>

#include <cstdio>
#include <iterator>

namespace qv::companion {
namespace {

struct Entry {
  const wchar_t* name;
  Command command;
};
constexpr Entry kCommands[] = {
    {L"raw-client", raw_client}, {L"raw-server", raw_server},   {L"server", library_server},
    {L"client", library_client}, {L"change", change},           {L"dde", dde},
    {L"windows", windows},       {L"application", application},
};

}  // namespace

std::string bytes_of(const std::wstring& text) {
  std::string bytes;
  if (text == L"-") return bytes;
  for (std::size_t at = 0; at < text.size();) {
    std::string piece;
    for (; at + 1 < text.size() && text[at] != L'*' && text[at] != L'+'; at += 2) {
      piece += static_cast<char>(std::stoi(text.substr(at, 2), nullptr, 16));
    }
    std::size_t count = 1;
    if (at < text.size() && text[at] == L'*') {
      std::size_t digits = 0;
      count = std::stoul(text.substr(at + 1), &digits);
      at += 1 + digits;
    }
    while (count-- > 0) bytes += piece;
    ++at;  // "+"
  }
  return bytes;
}

std::string hex_of(const std::string& bytes) {
  std::string text;
  for (const char byte : bytes) {
    constexpr const char* kDigits = "0123456789ABCDEF";
    text += kDigits[static_cast<unsigned char>(byte) >> 4];
    text += kDigits[static_cast<unsigned char>(byte) & 15];
  }
  return text;
}

std::wstring own_path() {
  std::wstring path(1024, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  return path;
}

}  // namespace qv::companion

int wmain(int count, wchar_t** words) {
  using namespace qv::companion;
  std::setvbuf(stdout, nullptr, _IONBF, 0);
  const std::wstring path = own_path();
  if (!path.ends_with(L"\\companion.exe")) return stand_in(path);
  if (count < 2) return 1;
  for (const auto& [name, command] : kCommands) {
    if (std::wstring(name) == words[1]) return command(Arguments(words + 2, words + count));
  }
  std::printf("no command %ls\n", words[1]);
  return 1;
}
