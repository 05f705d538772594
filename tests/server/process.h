// Another process of a test: a program that lies beside this one, with its standard output kept.
#pragma once

#include <windows.h>

#include <string>

#include "server/temp_folder.h"

namespace qv::tests {

// The folder of the test programs, with its final backslash.
inline std::wstring program_folder() {
  wchar_t path[1024];
  const DWORD length = GetModuleFileNameW(nullptr, path, 1024);
  const std::wstring whole(path, length);
  return whole.substr(0, whole.rfind(L'\\') + 1);
}

class Process {
 public:
  // `command` begins with the program's name: "companion.exe server ..."
  explicit Process(const std::wstring& command) {
    SECURITY_ATTRIBUTES inheritable{sizeof inheritable, nullptr, TRUE};
    const HANDLE output =
        CreateFileW(folder_.file(L"output").c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inheritable,
                    CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdOutput = output;
    start.hStdError = output;
    std::wstring line = L"\"" + program_folder() + command.substr(0, command.find(L' ')) + L"\"" +
                        command.substr(std::min(command.find(L' '), command.size()));
    CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start,
                   &process_);
    CloseHandle(output);
  }
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;
  ~Process() {
    TerminateProcess(process_.hProcess, 99);
    WaitForSingleObject(process_.hProcess, INFINITE);
    CloseHandle(process_.hProcess);
    CloseHandle(process_.hThread);
  }

  // Waits until it has printed something, half a minute at most.
  void wait_for_output() const {
    for (int tries = 0; tries < 3000 && folder_.read(L"output").empty(); ++tries) Sleep(10);
  }
  // Waits for its end, a minute at most, and gives what it has printed, without carriage returns.
  std::string output() {
    WaitForSingleObject(process_.hProcess, 60000);
    std::string text = folder_.read(L"output");
    std::erase(text, '\r');
    return text;
  }
  DWORD exit_code() {
    DWORD code = 0;
    WaitForSingleObject(process_.hProcess, 60000);
    GetExitCodeProcess(process_.hProcess, &code);
    return code;
  }
  bool is_running() const { return WaitForSingleObject(process_.hProcess, 0) == WAIT_TIMEOUT; }
  HANDLE handle() const { return process_.hProcess; }

 private:
  TempFolder folder_;
  PROCESS_INFORMATION process_{};
};

// Runs a script on the test host, the checks in front; the path begins at the root of the sources.
inline std::wstring script_command(const std::wstring& script) {
  return L"script_host.exe tests\\scripts\\support\\checks.vbs tests\\scripts\\" + script;
}

}  // namespace qv::tests
