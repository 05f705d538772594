// Texts of the system's own error codes.
#pragma once

#include "automation/text.h"

namespace qv {

// On one line: a carriage return becomes a blank, a line feed goes, so that the system's final line
// break leaves one blank at the end. "" for a code that the system does not know.
Text system_text(Long code);

}  // namespace qv
