// Restores the files of an archive (docs/formats/compressed-file.md), or lists them.
#pragma once

#include <functional>

#include "automation/object.h"
#include "automation/variant.h"
#include "interfaces.h"

namespace qv::archive {

// Told of the entry, from 1, how much of the archive has been read, and how much of the entry has
// been written; false cancels.
using UnzipReceiver = std::function<bool(Long FileIndex, Long TotPercent, Long Percent)>;

// True = failure, told by the error state: 20000 for what is no archive, and for a stored name that
// leads out of the target folder; 20001 for a later version or a block with a bad dictionary, 20002
// where the checksum differs or a block has a bad data mode, 20003 where the temporary file can't
// be made or a block is damaged; 20004 for FZC_STOREPATH without a stored parent folder; 20010
// where the receiver cancels; otherwise what the file services raise or record. What was restored
// before stays, and nothing else is left behind. After each call of the receiver the application's
// events run.
Boolean unzip_files(const Text& Source, const Text& TargetPath, Long Flags,
                    const Object<_kwCollection>& FileList, const UnzipReceiver& receiver);

Boolean FileUnzipEx(const Text& Source, const Text& TargetPath, Long Flags,
                    const Object<_kwCollection>& FileList);
Boolean FileUnzip(const Text& Source, const Text& TargetPath, Long Flags);

// RetInfo is emptied first, whatever follows. Flags are not read.
Boolean FileUnzipInfo(const Text& Source, const Object<_kwCollection>& RetInfo, Long Flags);

}  // namespace qv::archive
