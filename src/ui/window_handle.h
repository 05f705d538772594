// Windows as the calling language holds them: handles have 32 significant bits in every process.
#pragma once

#include <windows.h>

#include <cstdint>

#include "automation/types.h"

namespace qv::ui {

inline HWND window_handle(Long number) noexcept {
  return reinterpret_cast<HWND>(static_cast<std::intptr_t>(number));
}

}  // namespace qv::ui
