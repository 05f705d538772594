// File names as the system's wide services take them.
#pragma once

#include "automation/text.h"

namespace qv {

// The name itself, or for a name that would be longer than the services' common limit its absolute
// form behind "\\?\", which they take up to 32767 characters. Ends before a character 0, where the
// services would stop reading.
Text system_name(std::wstring_view name);

}  // namespace qv
