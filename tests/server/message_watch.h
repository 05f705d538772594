// Stands between a window and the messages of one number, as long as it lives.
#pragma once

#include <windows.h>

#include <functional>
#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace qv::tests {

struct WatchedMessage {
  WPARAM word;
  LPARAM value;
};

class MessageWatch {
 public:
  // `answer` answers in the window's place; without it the window gets the message as ever.
  using Answer = std::function<LRESULT(WPARAM, LPARAM)>;
  MessageWatch(HWND window, UINT message, Answer answer = nullptr)
      : window_(window), message_(message), answer_(std::move(answer)), outer_(watches()[window]) {
    watches()[window] = this;
    procedure_ = exchange_procedure(&MessageWatch::handle);
  }
  MessageWatch(const MessageWatch&) = delete;
  MessageWatch& operator=(const MessageWatch&) = delete;
  ~MessageWatch() {
    exchange_procedure(procedure_);
    watches()[window_] = outer_;
  }

  const std::vector<WatchedMessage>& seen() const { return seen_; }

 private:
  static std::map<HWND, MessageWatch*>& watches() {
    static std::map<HWND, MessageWatch*> all;
    return all;
  }

  // The window stays as wide or narrow as it is.
  WNDPROC exchange_procedure(WNDPROC fresh) const {
    const auto value = reinterpret_cast<LONG_PTR>(fresh);
    return reinterpret_cast<WNDPROC>(IsWindowUnicode(window_) != FALSE
                                         ? SetWindowLongPtrW(window_, GWLP_WNDPROC, value)
                                         : SetWindowLongPtrA(window_, GWLP_WNDPROC, value));
  }
  static LRESULT CALLBACK handle(HWND window, UINT message, WPARAM word, LPARAM value) {
    MessageWatch* watch = watches()[window];
    while (watch->message_ != message && watch->outer_ != nullptr) watch = watch->outer_;
    if (watch->message_ == message) {
      watch->seen_.push_back({word, value});
      if (watch->answer_) return watch->answer_(word, value);
    }
    while (watch->outer_ != nullptr) watch = watch->outer_;
    return IsWindowUnicode(window) != FALSE
               ? CallWindowProcW(watch->procedure_, window, message, word, value)
               : CallWindowProcA(watch->procedure_, window, message, word, value);
  }

  HWND window_;
  UINT message_;
  Answer answer_;
  MessageWatch* outer_;  // the one before on the same window
  WNDPROC procedure_ = nullptr;
  std::vector<WatchedMessage> seen_;
};

}  // namespace qv::tests
