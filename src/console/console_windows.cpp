#include <windows.h>

#include <cstdio>

#include "console/console.h"
#include "console/text.h"

namespace qv::console {
namespace {

HANDLE handle_of(Stream stream) {
  return GetStdHandle(stream == Stream::output ? STD_OUTPUT_HANDLE : STD_ERROR_HANDLE);
}

native::rtlib::ForwardTable system_characters() {
  CPINFO info;
  if (GetCPInfo(CP_ACP, &info) == FALSE || info.MaxCharSize != 1) {
    return native::rtlib::kWindows1252;
  }
  native::rtlib::ForwardTable table;
  for (std::size_t byte = 0; byte < table.size(); ++byte) {
    const char narrow = static_cast<char>(byte);
    wchar_t wide = 0;
    const int count = MultiByteToWideChar(CP_ACP, MB_ERR_INVALID_CHARS, &narrow, 1, &wide, 1);
    table[byte] = static_cast<char16_t>(count == 1 ? wide : byte);
  }
  return table;
}

}  // namespace

void write(Stream stream, std::string_view text) {
  if (is_terminal(stream)) {
    const std::wstring wide = path_of_text(text).wstring();
    DWORD written = 0;
    WriteConsoleW(handle_of(stream), wide.data(), static_cast<DWORD>(wide.size()), &written,
                  nullptr);
  } else {
    std::fwrite(text.data(), 1, text.size(), stream == Stream::output ? stdout : stderr);
  }
}

bool is_terminal(Stream stream) {
  DWORD mode;
  return GetConsoleMode(handle_of(stream), &mode) != FALSE;
}

std::size_t terminal_width(Stream stream) {
  constexpr std::size_t kUsual = 80;
  CONSOLE_SCREEN_BUFFER_INFO info;
  if (GetConsoleScreenBufferInfo(handle_of(stream), &info) == FALSE) return kUsual;
  return static_cast<std::size_t>(info.srWindow.Right) - info.srWindow.Left + 1;
}

const native::rtlib::ForwardTable& characters() {
  static const native::rtlib::ForwardTable table = system_characters();
  return table;
}

}  // namespace qv::console
