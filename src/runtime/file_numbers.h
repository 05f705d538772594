// The calling language's own file input and output: files known by a number of 1 to 511. The
// numbers belong to the thread, and what a thread leaves open is closed when it ends.
//
// Each operation raises the language's run-time error. Beside those of the system's file services
// (53, 57, 61, 67, 70, 71, 75, 76, see file_errors.h):
//   52  a number that no open file has, or that is none
//   54  reading a file that is open for writing, or the reverse
//   55  the number is in use; opening for output or append what is open under another number
//   59  a record length outside 1 to 32767
//   63  a position below 1
#pragma once

#include <cstdint>
#include <span>

#include "automation/text.h"

namespace qv::file_numbers {

inline constexpr Long kFirst = 1;
inline constexpr Long kLast = 511;
inline constexpr Long kMostRecordLength_bytes = 32767;

enum class Mode {
  kInput,   // text, to be read; the file must exist
  kOutput,  // text, to be written into a file made anew
  kAppend,  // text, to be written behind what the file holds; a missing file is made
  kBinary,  // bytes at any position; a missing file is made unless the access is kRead
};

// What a file open as kBinary may be used for; the other modes tell it themselves.
enum class Access { kRead, kWrite, kReadWrite };

// What others, further numbers of this thread among them, may not do meanwhile. kDefault: nothing
// is forbidden to them, but for a file open as kOutput or kAppend writing is.
enum class Lock { kDefault, kShared, kRead, kWrite, kReadWrite };

struct OpenOptions {
  Mode mode = Mode::kBinary;
  Access access = Access::kReadWrite;
  Lock lock = Lock::kDefault;
  // How much printed text is gathered before it goes to the file. kBinary has no use for it.
  Long record_length_bytes = 512;
};

// The lowest number that is free; 67 when all are in use.
Long free_file();

// A name of any length, in any script.
void open(Long number, std::wstring_view name, const OpenOptions& options);
bool is_open(Long number);
// A number that no file has is passed over. What can't be written any more raises, with the file
// closed all the same.
void close(Long number);

// Bytes of the file, gathered text included.
std::int64_t length_bytes(Long number);
// Of the next byte, from 1. It may be set beyond the end: what is written there makes the file
// longer.
std::int64_t position(Long number);
void seek(Long number, std::int64_t position);

// Reads at the position as many bytes as there are, and moves it. Fewer than asked for only at the
// end of the file.
std::size_t get(Long number, std::span<std::uint8_t> out);
// All of them or run-time error 62.
void get_all(Long number, std::span<std::uint8_t> out);
// Writes at the position and moves it. Only for kBinary.
void put(Long number, std::span<const std::uint8_t> bytes);
// Writes text, one byte a character, without a line end. Only for kOutput and kAppend.
void print(Long number, std::wstring_view text);

}  // namespace qv::file_numbers
