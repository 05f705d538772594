#include "services/event_log.h"

#include <windows.h>

#include <cstring>
#include <vector>

#include "automation/variant.h"
#include "frame/error_state.h"

namespace qv::services {
namespace {

// The log of this machine, opened in the name of a source. A source that can't be opened is found
// out when it is to write.
class EventSource {
 public:
  explicit EventSource(const Text& name) : handle_(RegisterEventSourceW(L"", name.c_str())) {
    capture_last_dll_error();
  }
  EventSource(const EventSource&) = delete;
  EventSource& operator=(const EventSource&) = delete;
  ~EventSource() {
    if (handle_ != nullptr) DeregisterEventSource(handle_);
  }
  HANDLE get() const noexcept { return handle_; }

 private:
  HANDLE handle_;
};

// In the system's code page, with its end.
std::vector<char> narrow(const Text& text) {
  const int length = text.length();
  const int bytes =
      WideCharToMultiByte(CP_ACP, 0, text.c_str(), length, nullptr, 0, nullptr, nullptr);
  std::vector<char> out(static_cast<std::size_t>(bytes) + 1);
  WideCharToMultiByte(CP_ACP, 0, text.c_str(), length, out.data(), bytes, nullptr, nullptr);
  return out;
}

}  // namespace

Boolean LogEvent(const Text& SourceName, const Text& msg, Long LogType, Long EventID,
                 Integer Category) {
  return frame::handled(L"QvRtLibOle.KwRtLibMod.LogEvent, 0", frame::kTakeError, True, [&] {
    const auto type = static_cast<WORD>(Variant(LogType).to_integer());
    const EventSource source(SourceName);
    const std::vector<char> text = narrow(msg);
    // The list of strings, of which there is one, is at the same time the raw data: the string's
    // address and what lies behind it, which are zeros of ours.
    const std::size_t raw_bytes = msg.size() + 1;
    const char* const string = text.data();
    std::vector<Byte> data(sizeof string + raw_bytes);
    std::memcpy(data.data(), &string, sizeof string);
    const BOOL is_done = ReportEventA(
        source.get(), type, static_cast<WORD>(Category), static_cast<DWORD>(EventID), nullptr, 1,
        static_cast<DWORD>(raw_bytes), reinterpret_cast<LPCSTR*>(data.data()), data.data());
    capture_last_dll_error();
    if (!is_done) {
      raise({.number = frame::kFirstApplicationError, .description = L"Chiamata a ReportEvent: "});
    }
    return False;
  });
}

}  // namespace qv::services
