// Files by the system's own handles: opened with flags in the manner of the C library, read and
// written sequentially, a value at a time; the value's type decides how many bytes move. 0 is no
// file. The handles serve the system's services too, and any thread.
#pragma once

#include <windows.h>

#include "automation/variant.h"

namespace qv::files {

// The system's handle behind a Long. Handles have 32 significant bits in 64-bit processes too.
inline HANDLE system_handle(Long Handle) noexcept {
  return reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(Handle));
}

// True = failure, told by the error state: 20000 with Handle 0 where the system refused; a run-time
// error that came first (53 for a missing file) leaves Handle alone. FlagsAndAttributes 0 becomes
// 128, and 33554432 for a folder that is opened with O_RDONLY.
Boolean File_Open32(const Text& FileName, Long OFlag, Long SMode, Long& FlagsAndAttributes,
                    Long& Handle);
// True = failure, told nowhere. Sets Handle to 0; 0 itself is closed already.
Boolean File_Close32(Long& Handle);
// True = failure: the error state tells 13 for a type that has no image, 62 for a file that ends
// too early, and nothing where the system refused. An empty String moves nothing.
Integer File_Read32(Long Handle, Variant& Buffer);
Integer File_Write32(Long Handle, const Variant& Buffer);

}  // namespace qv::files
