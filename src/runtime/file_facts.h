// Facts of a file by its name, as the calling language tells them. Run-time errors as in
// directory.h.
#pragma once

#include "automation/text.h"

namespace qv {

// Bytes; run-time error 6 for more than a Long holds.
Long file_len(std::wstring_view name);
// The last change, in local time.
Date file_date_time(std::wstring_view name);

}  // namespace qv
