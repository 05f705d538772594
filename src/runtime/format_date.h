// Dates as text, in the pictures that the library writes.
#pragma once

#include <windows.h>

#include "automation/text.h"

namespace qv {

// The picture "dd-mm-yyyy hh:nn": 16 characters, with a 24-hour clock. The separators stand as they
// are, so that a log reads alike on every system.
Text day_and_minute(const SYSTEMTIME& time);

}  // namespace qv
