// Programs of the system, run by a test.
#pragma once

#include <windows.h>

#include <string>

namespace qv::tests {

// Waits for the end of a program; its exit code, or -1 where it can't be run or hangs.
inline int run_program(std::wstring command_line) {
  STARTUPINFOW start{};
  start.cb = sizeof start;
  PROCESS_INFORMATION process;
  if (!CreateProcessW(nullptr, command_line.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW,
                      nullptr, nullptr, &start, &process)) {
    return -1;
  }
  DWORD code = static_cast<DWORD>(-1);
  if (WaitForSingleObject(process.hProcess, 60000) == WAIT_OBJECT_0) {
    GetExitCodeProcess(process.hProcess, &code);
  } else {
    TerminateProcess(process.hProcess, 1);
  }
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return static_cast<int>(code);
}

}  // namespace qv::tests
