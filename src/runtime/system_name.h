// File names as the system's wide services take them.
#pragma once

#include "automation/text.h"

namespace qv {

// The absolute form of a name, whatever its length; the name itself where the system finds none.
Text absolute_name(std::wstring_view name);

// The name itself, or for a name that would be longer than the services' common limit its absolute
// form behind "\\?\", which they take up to 32767 characters. Both end before a character 0,
// where the services would stop reading.
Text system_name(std::wstring_view name);

// A name that a service gave back for one of those, as people write it: without the prefix.
Text common_name(std::wstring_view name);

}  // namespace qv
