// Setup descriptions: INI files that list the files of a setup.
#pragma once

#include "automation/object.h"
#include "automation/text.h"
#include "interfaces.h"

namespace qv::files {

// Adds a QvtFileInfo for each file described, by its name. True = failure: what an operation below
// told stays in the error state, and the Sources grow; of a run-time error in a line only the
// Sources tell.
Boolean SetupInfoLoad(const Text& SetupFile, const Object<_kwCollection>& RetInfo, Long Flags);

}  // namespace qv::files
