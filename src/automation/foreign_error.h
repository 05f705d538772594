// Failures of calls to another object.
#pragma once

#include <oaidl.h>
#include <windows.h>

#include "automation/run_time_error.h"

namespace qv {

// Like check(), with the source, description and help that the object called has left in the
// thread's error object, which is taken.
void check_foreign(HRESULT result);

// The same for late-bound calls, which tell what was raised by an EXCEPINFO; its texts are taken.
void check_invoke(HRESULT result, EXCEPINFO& exception);

}  // namespace qv
