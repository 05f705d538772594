#include <cstdint>

#include "automation/text.h"
#include "constants.h"
#include "runtime/err.h"
#include "text/primitives.h"

namespace qv::text {
namespace {

// Why the attributes of a file that is there may not be read.
bool is_refusal(DWORD error) noexcept {
  return error == ERROR_ACCESS_DENIED || error == ERROR_NOT_READY ||
         error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION;
}

}  // namespace

Long Access(const Text& Path, Long Mode) {
  const DWORD attributes = GetFileAttributesW(Path.c_str());
  capture_last_dll_error();
  if (attributes == INVALID_FILE_ATTRIBUTES) {
    return is_refusal(GetLastError()) ? Access_Mode::CERR_EACCES : Access_Mode::CERR_ENOENT;
  }
  // A folder's mark says nothing about writing into it.
  const bool is_read_only_file =
      (attributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY)) ==
      FILE_ATTRIBUTE_READONLY;
  return is_read_only_file && (Mode & Access_Mode::CHK_WR) != 0 ? Access_Mode::CERR_EACCES : 0;
}

Long Commit(Long Handle) {
  const auto file = reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(Handle));
  const BOOL flushed = FlushFileBuffers(file);
  capture_last_dll_error();
  return flushed != FALSE ? 0 : -1;
}

}  // namespace qv::text
