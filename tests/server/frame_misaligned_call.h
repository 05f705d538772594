// Calls as a 32-bit program makes them whose stack is aligned to 4 bytes and no more.
#pragma once

#ifndef _WIN64

#include <windows.h>

#include <vector>

namespace qv::tests {

// Calls the function in that slot of the object's function table; `words` follow the object itself.
// At the call the stack lies `offset_bytes` behind a multiple of 16 bytes.
ULONG call_misaligned(void* object, std::size_t slot, std::vector<ULONG> words,
                      unsigned offset_bytes);

inline ULONG word(const void* pointer) { return reinterpret_cast<ULONG>(pointer); }

}  // namespace qv::tests

#endif
