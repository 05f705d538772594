#include "services/processes.h"

#include <windows.h>
// shellapi.h needs windows.h before it.
#include <shellapi.h>

#include <optional>

#include "automation/late_bound.h"
#include "automation/thread_state.h"
#include "frame/error_state.h"
#include "runtime/comparison.h"
#include "runtime/do_events.h"
#include "services/shell_launch.h"

namespace qv::services {
namespace {

constexpr Integer kMinimized = 1;
constexpr Long kShowNormal = 1;

// True while a call waits; it is cleared to end the wait. Calls within one another share it.
struct SpawnState {
  bool is_waiting = false;
};

[[noreturn]] void fail(Text description) {
  raise({.number = frame::kFirstApplicationError, .description = std::move(description)});
}

// The caller's form: out of the way during the call, and back again at its end.
class HeldForm {
 public:
  void hold(Object<IDispatch> form) {
    form_ = std::move(form);
    window_state_ = late_bound::get(form_, L"WindowState");
    is_enabled_ = late_bound::get(form_, L"Enabled");
    late_bound::put(form_, L"Enabled", False);
    late_bound::put(form_, L"WindowState", kMinimized);
  }
  // What the form raises is passed over, and leaves no mark in the error record.
  void restore() const {
    frame::Error_Lock();
    if (window_state_) put_back(L"WindowState", *window_state_);
    if (is_enabled_) put_back(L"Enabled", *is_enabled_);
    if (form_) frame::attempt([&] { late_bound::call(form_, L"SetFocus"); });
    frame::Error_Unlock();
  }

 private:
  void put_back(const wchar_t* property, const Variant& value) const {
    frame::attempt([&] { late_bound::put(form_, property, value); });
  }

  Object<IDispatch> form_;
  std::optional<Variant> window_state_;
  std::optional<Variant> is_enabled_;
};

class ProcessHandle {
 public:
  explicit ProcessHandle(HANDLE handle) noexcept : handle_(handle) {}
  ProcessHandle(const ProcessHandle&) = delete;
  ProcessHandle& operator=(const ProcessHandle&) = delete;
  ~ProcessHandle() {
    if (handle_ != nullptr) CloseHandle(handle_);
  }

  bool is_known() const noexcept { return handle_ != nullptr; }
  // A process of which the system tells nothing has ended with 0.
  DWORD exit_code() const noexcept {
    DWORD code = 0;
    GetExitCodeProcess(handle_, &code);
    capture_last_dll_error();
    return code;
  }

 private:
  HANDLE handle_;
};

Text text_of_optional(const Variant& given, const wchar_t* missing) {
  return given.is_missing() ? Text(missing) : given.to_text();
}

const wchar_t* null_if_empty(const Text& text) { return text.empty() ? nullptr : text.c_str(); }

void keep_exit_code(DWORD code) {
  const Variant missing = Variant::missing();
  frame::Error_Replace(missing, missing, missing, missing, missing, static_cast<Long>(code));
}

// Busy, with nothing but the application's events between two looks at the process. A program that
// ends with 259, the system's mark of a running one, is waited for until the wait is ended.
void wait_for_end(const ProcessHandle& process) {
  bool& is_waiting = per_thread<SpawnState>().is_waiting;
  is_waiting = true;
  while (true) {
    do_events();
    if (!is_waiting) return;
    const DWORD code = process.exit_code();
    if (code != STILL_ACTIVE) return keep_exit_code(code);
  }
}

}  // namespace

Boolean Spawn(const Text& AppName, const Variant& CmdLine, const Variant& Path,
              const Variant& WindowState, const Variant& NoLock, const Variant& frm,
              const Variant& /*Message*/, const Variant& /*AviFile*/, const Variant& /*QVPrgObj*/,
              const Variant& Action, const Variant& StopProc) {
  err().forget_error();
  bool asks_to_stop = false;
  HeldForm form;
  const bool is_done = frame::attempt([&] {
    asks_to_stop = !StopProc.is_missing() && StopProc.to_boolean();
    if (asks_to_stop) {
      per_thread<SpawnState>().is_waiting = false;
      return;
    }
    if (!frm.is_missing()) form.hold(frm.to_object());
    const Long show_command = WindowState.is_missing() ? kShowNormal : WindowState.to_long();
    const LaunchedCommand command = split_command(AppName, text_of_optional(CmdLine, L""));
    const Text folder = text_of_optional(Path, L"");
    const Text verb = text_of_optional(Action, L"open");
    const bool waits = NoLock.is_missing() || compare(NoLock, False) == 0;

    SHELLEXECUTEINFOW info{};
    info.cbSize = sizeof info;
    info.fMask = SEE_MASK_FLAG_NO_UI | SEE_MASK_DOENVSUBST;
    if (waits) info.fMask |= SEE_MASK_NOCLOSEPROCESS;
    info.hwnd = GetDesktopWindow();
    info.lpVerb = verb.c_str();
    info.lpFile = command.program.c_str();
    info.lpParameters = null_if_empty(command.parameters);
    info.lpDirectory = null_if_empty(folder);
    info.nShow = show_command;
    const BOOL has_started = ShellExecuteExW(&info);
    capture_last_dll_error();
    if (!has_started) {
      const auto code = reinterpret_cast<std::intptr_t>(info.hInstApp);
      fail(shell_failure_text(static_cast<Long>(code)));
    }
    if (!waits) return;
    const ProcessHandle process(info.hProcess);
    // The shell has handed the work to a process that ran already.
    if (!process.is_known()) fail(L"Il processo è terminato prima di idle.");
    wait_for_end(process);
  });
  if (asks_to_stop) return True;
  if (!is_done) {
    const Text reason = err().Description;
    frame::Set_Error(
        {.Source = L"KwRtLibMod.Spawn",
         .Description = concat({L"Impossibile eseguire il processo ", AppName, L".\r\n", reason})});
  }
  form.restore();
  err().forget_error();
  return Boolean(!is_done);
}

Boolean Process_SetFocus(Long /*ProcessId*/) { return True; }

}  // namespace qv::services
