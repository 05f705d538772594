// A second process that holds a file open for itself alone: the test program starts itself again.
#pragma once

#include <windows.h>

#include <cwchar>
#include <string>

namespace qv::tests {

namespace file_holder {

// Not by the platform's name, which the generated constants take away.
inline constexpr DWORD kLongestPath = 260;

inline constexpr const wchar_t* kFileVariable = L"QV_TEST_HELD_FILE";
inline constexpr const wchar_t* kTimeVariable = L"QV_TEST_HELD_MS";

inline std::wstring event_name(DWORD process) {
  return L"qv_test_holder_" + std::to_wstring(process);
}

// The second process ends here, before any test runs.
inline bool hold_when_asked() {
  wchar_t path[kLongestPath];
  wchar_t time_ms[16];
  if (GetEnvironmentVariableW(kFileVariable, path, kLongestPath) == 0) return false;
  GetEnvironmentVariableW(kTimeVariable, time_ms, 16);
  CreateFileW(path, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL,
              nullptr);
  SetEvent(OpenEventW(EVENT_MODIFY_STATE, FALSE, event_name(GetCurrentProcessId()).c_str()));
  Sleep(static_cast<DWORD>(std::wcstoul(time_ms, nullptr, 10)));
  ExitProcess(0);
}
inline const bool kIsHolder = hold_when_asked();

}  // namespace file_holder

// Holds the file from its construction on, at least for the time given unless it ends earlier.
class FileHolder {
 public:
  FileHolder(const wchar_t* path, DWORD time_ms) {
    SetEnvironmentVariableW(file_holder::kFileVariable, path);
    SetEnvironmentVariableW(file_holder::kTimeVariable, std::to_wstring(time_ms).c_str());
    wchar_t program[file_holder::kLongestPath];
    GetModuleFileNameW(nullptr, program, file_holder::kLongestPath);
    STARTUPINFOW start{};
    start.cb = sizeof start;
    CreateProcessW(program, nullptr, nullptr, nullptr, FALSE, CREATE_SUSPENDED, nullptr, nullptr,
                   &start, &process_);
    SetEnvironmentVariableW(file_holder::kFileVariable, nullptr);
    const HANDLE holds =
        CreateEventW(nullptr, TRUE, FALSE, file_holder::event_name(process_.dwProcessId).c_str());
    ResumeThread(process_.hThread);
    const HANDLE ends[] = {holds, process_.hProcess};
    WaitForMultipleObjects(2, ends, FALSE, INFINITE);
    CloseHandle(holds);
  }
  FileHolder(const FileHolder&) = delete;
  FileHolder& operator=(const FileHolder&) = delete;
  ~FileHolder() {
    TerminateProcess(process_.hProcess, 0);
    WaitForSingleObject(process_.hProcess, INFINITE);
    CloseHandle(process_.hProcess);
    CloseHandle(process_.hThread);
  }
  bool is_running() const { return WaitForSingleObject(process_.hProcess, 0) == WAIT_TIMEOUT; }

 private:
  PROCESS_INFORMATION process_{};
};

}  // namespace qv::tests
