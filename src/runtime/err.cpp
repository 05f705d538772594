#include "runtime/err.h"

#include "automation/late_bound.h"
#include "automation/thread_state.h"

namespace qv {
namespace {

// The language's run-time libraries, by age; each hands out its error object by the same name.
constexpr const wchar_t* kHostRunTimes[] = {L"vbe7.dll", L"vbe6.dll", L"msvbvm60.dll",
                                            L"msvbvm50.dll"};
constexpr const char* kGetErrorObject = "rtcErrObj";

// The host's error object; Nothing where the process has none.
Object<IDispatch> host_error() noexcept {
  using GetErrorObject = IUnknown*(__stdcall*)();
  for (const wchar_t* name : kHostRunTimes) {
    const HMODULE module = GetModuleHandleW(name);
    if (module == nullptr) continue;
    // By way of void*: the platform's type for any function has no arguments.
    const auto get = reinterpret_cast<GetErrorObject>(
        reinterpret_cast<void*>(GetProcAddress(module, kGetErrorObject)));
    if (get == nullptr) continue;
    IUnknown* object = get();
    auto dispatch = Object<IDispatch>::from(object);
    if (object != nullptr) object->Release();
    if (dispatch) return dispatch;
  }
  return nullptr;
}

}  // namespace

void Err::forget_error() noexcept {
  Number = 0;
  Description = Text();
  Source = Text();
  HelpFile = Text();
  HelpContext = 0;
}

void Err::set(const RunTimeError& error) {
  Number = error.number;
  Description = error.description;
  Source = error.source.empty() ? Text(kLibraryName) : error.source;
  HelpFile = error.help_file;
  HelpContext = error.help_context;
}

Err& err() { return per_thread<Err>(); }

Err pending_error() {
  Err& own = err();
  if (own.Number != 0) return own;
  const auto host = host_error();
  if (!host) return own;
  using late_bound::get;
  Err pending;
  pending.Number = get(host, L"Number").to_long();
  pending.Description = get(host, L"Description").to_text();
  pending.Source = get(host, L"Source").to_text();
  pending.HelpFile = get(host, L"HelpFile").to_text();
  pending.HelpContext = get(host, L"HelpContext").to_long();
  // A call that the host itself made to the system is the later one, if it left anything.
  const Long last = get(host, L"LastDllError").to_long();
  pending.LastDllError = last != 0 ? last : own.LastDllError;
  return pending;
}

void clear_pending_error() noexcept {
  try {
    err().clear();
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
