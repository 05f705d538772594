#include "ui/message_boxes.h"

#include "automation/late_bound.h"
#include "runtime/message_box.h"

namespace qv::ui {
namespace {

// The spelling is the form's own.
constexpr const wchar_t* kForm = L"QvAsycFrm.QvAsyncForm";
// What the form makes of it is its own affair.
constexpr Integer kFormFlags = 2;

Object<IDispatch> create_form() {
  CLSID class_id;
  check(CLSIDFromProgID(kForm, &class_id));
  Object<IDispatch> form;
  check(CoCreateInstance(class_id, nullptr, CLSCTX_SERVER, IID_IDispatch,
                         reinterpret_cast<void**>(form.receive())));
  return form;
}

}  // namespace

Long Show_ErrorBox(const Text& Prompt, Long Buttons, const Text& Title, const Text& HelpFile,
                   const Text& HelpId) {
  try {
    const auto form = create_form();
    late_bound::put(form, L"Buttons", Buttons);
    late_bound::put(form, L"Flags", kFormFlags);
    late_bound::put(form, L"HelpFile", HelpFile);
    late_bound::put(form, L"HelpId", HelpId);
    late_bound::put(form, L"Prompt", Prompt);
    late_bound::put(form, L"Title", Title);
    return late_bound::call(form, L"QvMessageBox").to_long();
  } catch (...) {
    return message_box(Prompt, Buttons, Title);
  }
}

}  // namespace qv::ui
