#include "services/change_notification.h"

#include <windows.h>

#include "frame/error_state.h"
#include "interfaces.h"
#include "runtime/system_name.h"
#include "runtime/system_text.h"

namespace qv::services {
namespace {

[[noreturn]] void fail(Text description) {
  raise({.number = frame::kFirstApplicationError, .description = std::move(description)});
}

// To be called at once after the system's service.
void require(bool succeeded) {
  capture_last_dll_error();
  if (!succeeded) fail(system_text(err().LastDllError));
}

class Watch {
 public:
  Watch(const Text& folder, bool with_subfolders, Long filter)
      : handle_(FindFirstChangeNotificationW(system_name(folder).c_str(), with_subfolders,
                                             static_cast<DWORD>(filter))) {
    require(handle_ != INVALID_HANDLE_VALUE);
  }
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;
  ~Watch() { FindCloseChangeNotification(handle_); }

  void wait(Long time_out_ms) const {
    const DWORD result = WaitForSingleObject(handle_, static_cast<DWORD>(time_out_ms));
    require(result != WAIT_FAILED);
    if (result == WAIT_ABANDONED) fail(L"L'evento è stato terminato.");
    if (result != WAIT_OBJECT_0) fail(L"Unexpected error.");
  }
  void go_on() const { require(FindNextChangeNotification(handle_) != FALSE); }

 private:
  HANDLE handle_;
};

}  // namespace

Boolean QvtNotify::NotifyFileChange(const Text& Path, Boolean WatchSubTree, Long Filter,
                                    Long TimeOut_ms) {
  return frame::handled(L"QvtNotify.NotifyFileChange", frame::kTakeError, True, [&] {
    const Watch watch(Path, WatchSubTree, Filter);
    watch.wait(TimeOut_ms);
    while (!is_cancelled_by_event(Path, Filter)) {
      watch.go_on();
      watch.wait(TimeOut_ms);
    }
    return False;
  });
}

bool QvtNotify::is_cancelled_by_event(const Text& path, Long filter) {
  const Variant path_value(path);
  const Variant filter_value(filter);
  VARIANT_BOOL cancel = VARIANT_FALSE;
  VARIANT cancel_reference;
  VariantInit(&cancel_reference);
  cancel_reference.vt = VT_BYREF | VT_BOOL;
  cancel_reference.pboolVal = &cancel;
  events_.raise_failing_event(DISPID_QvtNotify_FileChangeEvent,
                              {*path_value.raw(), *filter_value.raw(), cancel_reference});
  return cancel != VARIANT_FALSE;
}

}  // namespace qv::services
