// Files and folders copied, deleted, created and tested, without a run-time error reaching the
// caller: most answer by a code.
#pragma once

#include "automation/text.h"

namespace qv::files {

// True = failure, told by the error state; what was copied before stays.
Boolean File_Copy(const Text& SourcePath, const Text& TargetPath, const Text& FileSpec, Long Attrib,
                  Long RemoveAttr, Long Flags);

// The next three give 0 or a run-time error number, and leave the error state alone.
// Deletes files, read-only ones too; the name may hold wildcards.
Integer File_Kill(const Text& FileName);
// Deletes a folder with all that is in it, except folders whose names begin with a dot.
Integer Path_Kill(const Text& PathName);
// Makes a folder and those above it; 75 for one that exists.
Integer Path_Create(const Text& PathName);

// True (-1) where there is such a file, such a folder.
Integer File_Verify(const Text& FileName);
Integer Path_Verify(const Text& PathName);

// True (-1) = failure; the error state tells of a file that does not open. DestFile stays open in
// the process.
Integer File_Expand(const Text& SrcFile, const Text& DestFile);

}  // namespace qv::files
