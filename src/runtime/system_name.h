// File names as the system's wide services take them.
#pragma once

#include <optional>

#include "automation/text.h"

namespace qv {

// The absolute form of a name, whatever its length; the name itself where the system finds none.
Text absolute_name(std::wstring_view name);

// The name itself, or for a name that would be longer than the services' common limit its absolute
// form behind "\\?\", which they take up to 32767 characters. Both end before a character 0,
// where the services would stop reading.
Text system_name(std::wstring_view name);

// What exists under the short names of 8.3 characters of its parts, as people write it; nothing
// where the system refuses, which LastDLLError then tells.
std::optional<Text> short_name(std::wstring_view name);

// For services that take no more than the common limit and no prefix: the name itself, or one past
// the limit with short names in it. Nothing where that is too long as well, or its folder is not
// there. A name without a folder stays: what folder that means the service knows.
std::optional<Text> limited_name(std::wstring_view name);

// A name that a service gave back for one of those, as people write it: without the prefix.
Text common_name(std::wstring_view name);

}  // namespace qv
