// Opening and closing files of the calling language's numbers, with patience for a file that
// somebody else has locked for a moment.
#pragma once

#include "automation/text.h"

namespace qv::frame {

inline constexpr Long kMaxLockRetry = 32;

// Opens a file by the flags and sharing modes of File_Open_Const and fills in its number. The
// result is 0, or the number of a run-time error, with FileNum 0:
//   5   flags that contradict each other or say nothing: neither O_TEXT nor O_BINARY, no access,
//       O_TRUNC or O_EXCL without O_CREAT, O_CREAT with O_RDONLY, O_EXCL with O_TRUNC, O_TRUNC with
//       O_APPEND; an unknown sharing mode
//   53  the file is missing and O_CREAT not given; 58 it is there and O_CREAT + O_EXCL given
// and those of runtime/file_numbers.h.
// A run-time error RetryError means a lock: the statement is tried again every 250 ms, with the
// application's events running, up to MaxRetry times in all. A text file (O_TEXT) opens for input
// with O_RDONLY, else for append. RecLen below 1 becomes 512 for a text file.
Long File_OpenRetry(const Text& FileName, Long OFlag, Long SMode, Long& RecLen, Long& FileNum,
                    Long RetryError, Long MaxRetry = kMaxLockRetry);

// Closes what number FileNum above 0 has, whatever happens, and sets FileNum to 0.
void File_CloseRetry(Long& FileNum);

}  // namespace qv::frame
