#include "runtime/err.h"

#include <atomic>
#include <utility>

#include "automation/late_bound.h"
#include "automation/thread_state.h"

namespace qv {
namespace {

// The language's run-time libraries, by age; each hands out its error object by the same name.
constexpr const wchar_t* kHostRunTimes[] = {L"vbe7.dll", L"vbe6.dll", L"msvbvm60.dll",
                                            L"msvbvm50.dll"};
constexpr const char* kGetErrorObject = "rtcErrObj";

using GetErrorObject = IUnknown*(__stdcall*)();

GetErrorObject find_in_host() noexcept {
  for (const wchar_t* name : kHostRunTimes) {
    const HMODULE module = GetModuleHandleW(name);
    if (module == nullptr) continue;
    // By way of void*: the platform's type for any function has no arguments.
    const auto found = reinterpret_cast<GetErrorObject>(
        reinterpret_cast<void*>(GetProcAddress(module, kGetErrorObject)));
    if (found != nullptr) return found;
  }
  return nullptr;
}

// The host's function for its error object. Asking for a module that is not loaded can take a
// system milliseconds, so it is asked again only when a module has come or gone since.
class HostRunTime {
 public:
  HostRunTime() noexcept {
    if (const auto start = loader_function<Register>("LdrRegisterDllNotification")) {
      start(0, &HostRunTime::notified, this, &cookie_);
    }
  }
  HostRunTime(const HostRunTime&) = delete;
  HostRunTime& operator=(const HostRunTime&) = delete;
  ~HostRunTime() {
    if (cookie_ == nullptr) return;
    if (const auto stop = loader_function<Unregister>("LdrUnregisterDllNotification")) {
      stop(cookie_);
    }
  }

  GetErrorObject get_error_object() noexcept {
    const unsigned changes = changes_;
    if (changes != seen_ || cookie_ == nullptr) {
      found_ = find_in_host();
      seen_ = changes;
    }
    return found_;
  }

 private:
  using Notified = void(CALLBACK*)(ULONG, const void*, void*);
  using Register = LONG(NTAPI*)(ULONG, Notified, void*, void**);
  using Unregister = LONG(NTAPI*)(void*);

  static void CALLBACK notified(ULONG, const void*, void* self) noexcept {
    ++static_cast<HostRunTime*>(self)->changes_;
  }
  template <class Function>
  static Function loader_function(const char* name) noexcept {
    return reinterpret_cast<Function>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), name)));
  }

  void* cookie_ = nullptr;
  std::atomic<unsigned> changes_{1};
  std::atomic<unsigned> seen_{0};
  std::atomic<GetErrorObject> found_{nullptr};
};

// The host's error object; Nothing where the process has none.
Object<IDispatch> host_error() noexcept {
  static HostRunTime host;
  const GetErrorObject get = host.get_error_object();
  if (get == nullptr) return nullptr;
  IUnknown* object = get();
  auto dispatch = Object<IDispatch>::from(object);
  if (object != nullptr) object->Release();
  return dispatch;
}

// Where memory is too short for the name, the rest of the error is still worth having.
Text library_name() noexcept {
  try {
    return kLibraryName;
  } catch (...) {
    return {};
  }
}

Err read(const Object<IDispatch>& host) {
  using late_bound::get;
  return {.Number = get(host, L"Number").to_long(),
          .Description = get(host, L"Description").to_text(),
          .Source = get(host, L"Source").to_text(),
          .HelpFile = get(host, L"HelpFile").to_text(),
          .HelpContext = get(host, L"HelpContext").to_long(),
          .LastDllError = get(host, L"LastDllError").to_long()};
}

}  // namespace

void Err::forget_error() noexcept {
  Number = 0;
  Description = Text();
  Source = Text();
  HelpFile = Text();
  HelpContext = 0;
}

void Err::set(RunTimeError error) noexcept {
  Number = error.number;
  Description = std::move(error.description);
  Source = error.source.empty() ? library_name() : std::move(error.source);
  HelpFile = std::move(error.help_file);
  HelpContext = error.help_context;
}

Err& err() { return per_thread<Err>(); }

Err application_error() {
  const auto host = host_error();
  if (!host) return err();
  Err pending = read(host);
  // The library's own calls to the system are calls like any others of the thread.
  if (pending.LastDllError == 0) pending.LastDllError = err().LastDllError;
  return pending;
}

void clear_errors() noexcept {
  err().clear();
  try {
    if (const auto host = host_error()) late_bound::call(host, L"Clear");
  } catch (...) {
    return;  // a host whose error object can't be cleared keeps its error
  }
}

void capture_last_dll_error() noexcept {
  const DWORD last = GetLastError();
  err().LastDllError = static_cast<Long>(last);
  SetLastError(last);
}

}  // namespace qv
