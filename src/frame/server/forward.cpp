#include "frame/server/forward.h"

#include "runtime/err.h"

namespace qv {
namespace {

Object<ICreateErrorInfo> make_error_info(const RunTimeError& error, const IID& interface_id) {
  Object<ICreateErrorInfo> info;
  check(CreateErrorInfo(info.receive()));
  const wchar_t* source = error.source.empty() ? kLibraryName : error.source.c_str();
  info->SetGUID(interface_id);
  info->SetSource(const_cast<wchar_t*>(source));
  info->SetDescription(const_cast<wchar_t*>(error.description.c_str()));
  info->SetHelpFile(const_cast<wchar_t*>(error.help_file.c_str()));
  info->SetHelpContext(static_cast<DWORD>(error.help_context));
  return info;
}

HRESULT report(const RunTimeError& error, const IID& interface_id) noexcept {
  try {
    err().set(error);
    const auto info = make_error_info(error, interface_id);
    SetErrorInfo(0, Object<IErrorInfo>::from(info.get()).get());
  } catch (...) {
    // Without memory for the texts, the number still reaches the caller.
    SetErrorInfo(0, nullptr);
  }
  return to_hresult(error.number);
}

}  // namespace

HRESULT report_current_exception(const IID& interface_id) noexcept {
  return report(current_run_time_error(), interface_id);
}

HRESULT report_not_built(const IID& interface_id) noexcept {
  try {
    raise(kObjectDoesNotSupportAction);
  } catch (...) {
    return report_current_exception(interface_id);
  }
}

}  // namespace qv
