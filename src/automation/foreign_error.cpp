#include "automation/foreign_error.h"

namespace qv {
namespace {

bool describes_errors(IUnknown* object, const IID& interface_id) {
  const auto support = Object<ISupportErrorInfo>::from(object);
  return support && support->InterfaceSupportsErrorInfo(interface_id) == S_OK;
}

Object<IErrorInfo> error_info_of(IUnknown* object, const IID& interface_id) {
  Object<IErrorInfo> info;
  if (GetErrorInfo(0, info.receive()) != S_OK) return {};
  GUID described{};
  info->GetGUID(&described);
  if (IsEqualGUID(described, interface_id) || describes_errors(object, interface_id)) return info;
  return {};
}

}  // namespace

void raise_foreign(IUnknown* object, const IID& interface_id, HRESULT result) {
  RunTimeError error{.number = to_error_number(result)};
  if (const auto info = error_info_of(object, interface_id)) {
    BSTR source = nullptr;
    BSTR description = nullptr;
    BSTR help_file = nullptr;
    DWORD help_context = 0;
    info->GetSource(&source);
    info->GetDescription(&description);
    info->GetHelpFile(&help_file);
    info->GetHelpContext(&help_context);
    error.source = Text::adopt(source);
    error.description = Text::adopt(description);
    error.help_file = Text::adopt(help_file);
    error.help_context = static_cast<Long>(help_context);
  }
  raise(std::move(error));
}

void check_invoke(HRESULT result, EXCEPINFO& exception) {
  if (result != DISP_E_EXCEPTION) return check(result);
  if (exception.pfnDeferredFillIn != nullptr) exception.pfnDeferredFillIn(&exception);
  const HRESULT code = exception.scode != 0 ? exception.scode : DISP_E_EXCEPTION;
  raise(
      {.number = exception.wCode != 0 ? static_cast<Long>(exception.wCode) : to_error_number(code),
       .source = Text::adopt(exception.bstrSource),
       .description = Text::adopt(exception.bstrDescription),
       .help_file = Text::adopt(exception.bstrHelpFile),
       .help_context = static_cast<Long>(exception.dwHelpContext)});
}

}  // namespace qv
