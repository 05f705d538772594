// The language's application object, as the library's own code sees it.
#pragma once

#include "automation/text.h"

namespace qv {

// The instance handle of the library's module; its low 32 bits in a 64-bit process.
Long application_instance() noexcept;
// The folder of the running program, without its final backslash.
Text application_path();

}  // namespace qv
