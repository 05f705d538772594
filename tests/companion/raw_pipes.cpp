#include <windows.h>

#include <cstdio>

#include "companion/companion.h"

namespace qv::companion {
namespace {

constexpr DWORD kBufferBytes = 200000;

int tell_error() {
  std::printf("error %lu\n", GetLastError());
  return 1;
}

// A whole message.
bool read_message(HANDLE pipe, std::string& message) {
  message.resize(kBufferBytes);
  DWORD count = 0;
  if (ReadFile(pipe, message.data(), kBufferBytes, &count, nullptr) == FALSE) return false;
  message.resize(count);
  return true;
}

bool write_message(HANDLE pipe, const std::string& message) {
  DWORD count = 0;
  return WriteFile(pipe, message.data(), static_cast<DWORD>(message.size()), &count, nullptr) !=
         FALSE;
}

// Once there is one to connect to.
HANDLE connect_to(const wchar_t* name) {
  HANDLE pipe = INVALID_HANDLE_VALUE;
  for (int tries = 0; tries < 1000 && pipe == INVALID_HANDLE_VALUE; ++tries) {
    pipe = CreateFileW(name, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    if (pipe == INVALID_HANDLE_VALUE) Sleep(10);
  }
  DWORD mode = PIPE_READMODE_MESSAGE;
  SetNamedPipeHandleState(pipe, &mode, nullptr, nullptr);
  return pipe;
}

}  // namespace

int raw_client(const Arguments& arguments) {
  const HANDLE pipe = connect_to(arguments[0].c_str());
  std::string answer;
  if (!write_message(pipe, bytes_of(arguments[1])) || !read_message(pipe, answer)) {
    return tell_error();
  }
  std::printf("%s\n", hex_of(answer).c_str());
  return 0;
}

int raw_server(const Arguments& arguments) {
  const HANDLE pipe = CreateNamedPipeW(arguments[0].c_str(), PIPE_ACCESS_DUPLEX,
                                       PIPE_TYPE_MESSAGE | PIPE_READMODE_MESSAGE, 1, kBufferBytes,
                                       kBufferBytes, 0, nullptr);
  const bool connected =
      ConnectNamedPipe(pipe, nullptr) != FALSE || GetLastError() == ERROR_PIPE_CONNECTED;
  std::string request;
  if (!connected || !read_message(pipe, request)) return tell_error();
  std::printf("%s\n", hex_of(request).c_str());
  if (!write_message(pipe, bytes_of(arguments[1]))) return tell_error();
  FlushFileBuffers(pipe);
  return 0;
}

}  // namespace qv::companion
