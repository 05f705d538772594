// Failures of calls through another object's interface.
#pragma once

#include "automation/run_time_error.h"

namespace qv {

// Like check(), with the source, description and help that the object called has left in the
// thread's error object, which is taken.
void check_foreign(HRESULT result);

}  // namespace qv
