// Entries of the system's event log.
#pragma once

#include "automation/text.h"

namespace qv::services {

// True = failure, told by the error state. Readers of the log find the text as the entry's one
// replacement string; the raw data are as long, and begin with an address.
Boolean LogEvent(const Text& SourceName, const Text& msg, Long LogType, Long EventID,
                 Integer Category);

}  // namespace qv::services
