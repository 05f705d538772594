// What a thread's last calls leave behind in the library: texts and objects that are no leak.
#pragma once

#include <windows.h>
// oleauto.h needs windows.h before it.
#include <oleauto.h>

#include "interfaces.h"

namespace qv::tests {

// Error state and shared variable are emptied, and what was raised and not handled, which is
// pending until a function that handles its errors is entered.
inline void empty_thread_state(_KwRtLib* global) {
  global->Error_Unlock();
  global->Reset_Error();
  VARIANT value{};
  global->put_SharedVar(value);
  BSTR buffer = nullptr;
  LONG offset = 1;
  value.vt = VT_I4;
  VARIANT_BOOL failed = VARIANT_TRUE;
  global->Buffer_Put(&buffer, &offset, &value, nullptr, &failed);
  SysFreeString(buffer);
  SetErrorInfo(0, nullptr);
}

}  // namespace qv::tests
