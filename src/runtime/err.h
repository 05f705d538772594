// The run-time error object of the calling language: the error that was last raised on this thread
// and not cleared since.
#pragma once

#include "automation/run_time_error.h"

namespace qv {

struct Err {
  Long Number = 0;
  Text Description{};
  Text Source{};
  Text HelpFile{};
  Long HelpContext = 0;
  // The system's last error after a platform call that the library made.
  Long LastDllError = 0;

  // The language's Clear.
  void clear() noexcept { *this = Err(); }
  // What entering and leaving a procedure with a handler does: LastDllError belongs to the last
  // platform call and not to an error, so it stays.
  void forget_error() noexcept;
  void set(RunTimeError error) noexcept;
};

// This thread's own.
Err& err();

// What is pending in the application on this thread: its language run time's error object, where
// the process has one that can be reached, or else the library's own. What failed inside the
// library is in the library's own.
Err application_error();
// Clears both.
void clear_errors() noexcept;

// Takes the system's last error for LastDllError. To be called at once after a platform call.
void capture_last_dll_error() noexcept;

}  // namespace qv
