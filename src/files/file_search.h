// Files searched for in a folder and all folders below it, on the caller's thread and with the
// application's events running meanwhile. One search at a time and thread: a second one from an
// event takes over the first one's count and limit.
#pragma once

#include "automation/variant.h"
#include "interfaces.h"

namespace qv::files {

// A failure inside a folder ends the search of that folder alone and is told nowhere.
// MaxFiles: negative means no limit.

// More than 32767 files are run-time error 6, with FileList filled.
Integer Where_Is(const Text& Path, const Text& FileSpec, const Variant& AttrMask,
                 Array<Text>& FileList, Integer MaxFiles);
// Run-time error 91 without a collection.
Long Where_IsEx(const Text& Path, const Text& FileSpec, const Variant& AttrMask,
                const Object<_kwCollection>& FileList, Long MaxFiles);
// Ends the running search at its next look.
void Where_Stop();

}  // namespace qv::files
