// Failures of calls to another object.
#pragma once

#include <oaidl.h>
#include <windows.h>

#include "automation/object.h"

namespace qv {

// Raises what a failed HRESULT of an object's method means, with the source, description and help
// in the thread's error object, which is taken: where it is about that interface, or the object
// says that it describes its errors (ISupportErrorInfo). Else it is of an earlier failure.
[[noreturn]] void raise_foreign(IUnknown* object, const IID& interface_id, HRESULT result);

template <class Interface>
void check_foreign(const Object<Interface>& object, HRESULT result) {
  if (FAILED(result)) raise_foreign(object.get(), __uuidof(Interface), result);
}

// The same for late-bound calls, which tell what was raised by an EXCEPINFO; its texts are taken.
void check_invoke(HRESULT result, EXCEPINFO& exception);

}  // namespace qv
