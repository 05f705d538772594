#include "frame/file_retry.h"

#include <windows.h>
// In angle brackets: this folder has a header of that name.
#include <constants.h>

#include <optional>

#include "frame/error_state.h"
#include "frame/global_object.h"
#include "runtime/do_events.h"
#include "runtime/file_errors.h"
#include "runtime/file_numbers.h"
#include "runtime/system_name.h"

namespace qv::frame {
namespace {

using namespace File_Open_Const;
using file_numbers::Access;
using file_numbers::Lock;
using file_numbers::Mode;

constexpr Long kRetryPause_ms = 250;
constexpr Long kTextRecordLength_bytes = 512;

constexpr bool has(Long flags, Long flag) { return (flags & flag) != 0; }

std::optional<Lock> lock_of(Long sharing_mode) {
  switch (sharing_mode) {
    case SH_COMPAT:
      return Lock::kDefault;
    case SH_DENYRW:
      return Lock::kReadWrite;
    case SH_DENYWR:
      return Lock::kWrite;
    case SH_DENYRD:
      return Lock::kRead;
    case SH_DENYNO:
      return Lock::kShared;
    default:
      return std::nullopt;
  }
}

// Contradictions among the flags, and what they ask of the file that is there or not. 0 = none.
Long refusal(Long flags, const Text& name) {
  const bool exists = GetFileAttributesW(system_name(name).c_str()) != INVALID_FILE_ATTRIBUTES;
  if (!has(flags, O_CREAT)) {
    if (has(flags, O_TRUNC | O_EXCL)) return kInvalidProcedureCall;
    return exists ? 0 : kFileNotFound;
  }
  if (has(flags, O_RDONLY)) return kInvalidProcedureCall;
  if (has(flags, O_EXCL)) {
    if (has(flags, O_TRUNC)) return kInvalidProcedureCall;
    return exists ? kFileAlreadyExists : 0;
  }
  return has(flags, O_TRUNC) && has(flags, O_APPEND) ? kInvalidProcedureCall : 0;
}

// None where the flags give no way to open the file.
std::optional<file_numbers::OpenOptions> options_for(Long flags, Long sharing_mode, Long& RecLen) {
  const auto lock = lock_of(sharing_mode);
  if (!lock || !has(flags, O_RDONLY | O_WRONLY | O_RDWR)) return std::nullopt;
  file_numbers::OpenOptions options{.lock = *lock};
  if (has(flags, O_BINARY)) {
    options.access = has(flags, O_RDONLY)   ? Access::kRead
                     : has(flags, O_WRONLY) ? Access::kWrite
                                            : Access::kReadWrite;
    return options;
  }
  if (!has(flags, O_TEXT)) return std::nullopt;
  if (RecLen < 1) RecLen = kTextRecordLength_bytes;
  options.record_length_bytes = RecLen;
  options.mode = has(flags, O_RDONLY) ? Mode::kInput : Mode::kAppend;
  return options;
}

void pause() {
  const Long start_ms = Unique_KeyLong();
  do {
    do_events();
  } while (Unique_KeyLong() - start_ms < kRetryPause_ms);
}

// Counts over all statements of one opening.
class Patience {
 public:
  Patience(Long retry_error, Long most) : retry_error_(retry_error), most_(most) {}

  // 0, or the number of the error that the statement ended with.
  template <class Statement>
  Long run(Statement&& statement) {
    while (!attempt(statement)) {
      const Long number = err().Number;
      err().forget_error();
      if (number != retry_error_ || ++count_ >= most_) return number;
      pause();
    }
    return 0;
  }

 private:
  Long retry_error_;
  Long most_;
  Long count_ = 0;
};

}  // namespace

Long File_OpenRetry(const Text& FileName, Long OFlag, Long SMode, Long& RecLen, Long& FileNum,
                    Long RetryError, Long MaxRetry) {
  FileNum = 0;
  if (const Long number = refusal(OFlag, FileName); number != 0) return number;
  const auto options = options_for(OFlag, SMode, RecLen);
  if (!options) return kInvalidProcedureCall;

  Patience patience(RetryError, MaxRetry);
  Long file = 0;
  // A number that is free before a pause may be taken after it.
  const auto open_as = [&](const file_numbers::OpenOptions& how) {
    file = 0;
    file = file_numbers::free_file();
    file_numbers::open(file, FileName, how);
  };
  Long number = 0;
  if (has(OFlag, O_TRUNC)) {
    number = patience.run([&] {
      open_as({.mode = Mode::kOutput});
      file_numbers::close(file);
    });
  }
  if (number == 0) number = patience.run([&] { open_as(*options); });
  if (number == 0 && has(OFlag, O_APPEND)) {
    number = patience.run([&] { file_numbers::seek(file, file_numbers::length_bytes(file) + 1); });
  }
  if (number == 0) {
    FileNum = file;
  } else {
    File_CloseRetry(file);
  }
  return number;
}

void File_CloseRetry(Long& FileNum) {
  if (FileNum > 0) {
    attempt([&] { file_numbers::close(FileNum); });
  }
  FileNum = 0;
}

}  // namespace qv::frame
