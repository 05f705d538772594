#include "automation/foreign_error.h"

#include "automation/object.h"

namespace qv {

void check_foreign(HRESULT result) {
  if (SUCCEEDED(result)) return;
  RunTimeError error{.number = to_error_number(result)};
  Object<IErrorInfo> info;
  if (GetErrorInfo(0, info.receive()) == S_OK) {
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
