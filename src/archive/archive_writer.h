// Packs files into an archive of the library's own format (docs/formats/compressed-file.md).
#pragma once

#include <functional>

#include "automation/variant.h"

namespace qv::archive {

// Told of the entry, from 1, and of how much of it has been read; false cancels.
using ZipReceiver = std::function<bool(Long FileIndex, Long Percent)>;

// Source is a name or an array of names. True = failure, told by the error state, and no archive is
// left behind: 20010 where the receiver cancels; 6 for a file or an archive past 2 GB; 20000 for a
// name that can't be stored; otherwise what the file services raise or record. Where a source is
// the target itself nothing is touched.
// After each call of the receiver the application's events run.
Boolean zip_files(const Variant& Source, const Text& Target, const Text& ParentDir, Long Flags,
                  const ZipReceiver& receiver);

Boolean FileZip(const Variant& Source, const Text& Target, const Text& ParentDir, Long Flags);

}  // namespace qv::archive
