// Version resources: numbers, and texts in the user's language where the file has it.
#pragma once

#include "automation/text.h"

namespace qv::files {

// Of a version a.b.c.d, Major is a and Minor b as signed 16-bit numbers, dwFileVersionMS both;
// Revision and dwFileVersionLS are c and d together. True = failure, told by the error state: 20000
// for a file without a version resource, 20001 for one that can't be read, 20002 for one without
// numbers.
Boolean GetFileVersion(const Text& FileName, Long& Major, Long& Minor, Long& Revision,
                       Long& dwFileVersionMS, Long& dwFileVersionLS);
Boolean GetProductVersion(const Text& FileName, Long& Major, Long& Minor, Long& Revision,
                          Long& dwFileVersionMS, Long& dwFileVersionLS);

// "" = failure, told by the error state: 20000 as above, 20001 for a resource that can't be read or
// lacks the text.
Text GetInfoProductVersion(const Text& sFile);
Text GetInfoProductName(const Text& sFile);
Text GetInfoLegalCopyright(const Text& sFile);
Text GetInfoInternalName(const Text& sFile);
Text GetInfoFileVersion(const Text& sFile);
Text GetInfoFileDescription(const Text& sFile);
Text GetInfoCompanyName(const Text& sFile);

}  // namespace qv::files
