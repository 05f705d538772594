// Device contexts as an application names them.
#pragma once

#include <windows.h>

#include "automation/types.h"

namespace qv::printing {

// Handles have 32 significant bits, extended by their sign.
inline HDC device_context(Long handle) noexcept {
  return reinterpret_cast<HDC>(static_cast<LONG_PTR>(handle));
}

}  // namespace qv::printing
