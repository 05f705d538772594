// A client that speaks the raw pipe, on a thread of its own: connects as soon as a server waits,
// sends one message, and keeps the answers until it is disconnected.
#pragma once

#include <windows.h>

#include <string>
#include <thread>

namespace qv::tests {

class RawPipeClient {
 public:
  enum class Then { waits_for_answer, leaves };

  RawPipeClient(std::wstring name, std::string message, Then then = Then::waits_for_answer)
      : name_(std::move(name)),
        message_(std::move(message)),
        then_(then),
        thread_([this] { run(); }) {}
  RawPipeClient(const RawPipeClient&) = delete;
  RawPipeClient& operator=(const RawPipeClient&) = delete;
  ~RawPipeClient() { finish(); }
  // To be called before anything is asked.
  void finish() {
    if (thread_.joinable()) thread_.join();
  }

  // The one message that came back.
  const std::string& answer() const { return answer_; }
  bool has_answer() const { return has_answer_; }
  // Why no message came: 109 (the pipe has been ended) or 233 (no process is on the other end).
  DWORD error() const { return error_; }

  static HANDLE connect(const std::wstring& name) {
    HANDLE pipe = INVALID_HANDLE_VALUE;
    for (int tries = 0; tries < 2000 && pipe == INVALID_HANDLE_VALUE; ++tries) {
      pipe = CreateFileW(name.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0,
                         nullptr);
      if (pipe == INVALID_HANDLE_VALUE) Sleep(5);
    }
    DWORD mode = PIPE_READMODE_MESSAGE;
    SetNamedPipeHandleState(pipe, &mode, nullptr, nullptr);
    return pipe;
  }

 private:
  void run() {
    const HANDLE pipe = connect(name_);
    DWORD count = 0;
    WriteFile(pipe, message_.data(), static_cast<DWORD>(message_.size()), &count, nullptr);
    if (then_ == Then::waits_for_answer) {
      answer_.resize(200000);
      has_answer_ = ReadFile(pipe, answer_.data(), static_cast<DWORD>(answer_.size()), &count,
                             nullptr) != FALSE;
      error_ = has_answer_ ? 0 : GetLastError();
      answer_.resize(has_answer_ ? count : 0);
    }
    CloseHandle(pipe);
  }

  std::wstring name_;
  std::string message_;
  Then then_;
  std::string answer_;
  bool has_answer_ = false;
  DWORD error_ = 0;
  std::thread thread_;
};

}  // namespace qv::tests
