// A job of the system's spooler: bytes in a printer's own language, which no driver touches.
#pragma once

#include <windows.h>

#include <cstdint>

#include "automation/text.h"

namespace qv::printing {

// Operations give True on failure, which the error state then tells in two steps: number 20000 with
// the system's text, then the Source. The order of the operations is the caller's: the spooler
// refuses what does not suit it. A job that is not closed is aborted when this ends.
class PrintJob {
 public:
  PrintJob() = default;
  PrintJob(const PrintJob&) = delete;
  PrintJob& operator=(const PrintJob&) = delete;
  ~PrintJob() { abort(); }

  // An empty data type is the spooler's default. A job that can't be started is aborted.
  Boolean open(const Text& printer, const Text& document, const Text& data_type);
  // The spooler's; 0 where nothing is open.
  std::intptr_t handle() const noexcept { return reinterpret_cast<std::intptr_t>(printer_); }
  Boolean start_page();
  // The page counts as ended even where the spooler refuses.
  Boolean end_page();
  // One character a byte. How much of it the spooler took is not examined. A failure only adds to
  // the Source of the error that stands.
  Boolean write(const Text& data);
  // Ends an open page too. After a failure the job is open still.
  Boolean close();
  // What comes after it fails as the spooler has it for a handle that is none.
  void abort() noexcept;

 private:
  HANDLE printer_ = nullptr;
  bool has_open_page_ = false;
};

}  // namespace qv::printing
