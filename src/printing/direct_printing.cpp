#include "printing/direct_printing.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <vector>

#include "automation/bytes.h"
#include "constants.h"
#include "frame/error_state.h"
#include "frame/file_retry.h"
#include "printing/print_job.h"
#include "runtime/file_errors.h"
#include "runtime/file_numbers.h"

namespace qv::printing {
namespace {

using frame::handled;
using frame::kTakeError;

constexpr const wchar_t* kPrintSource = L"KwRtLibMod.DirectPrint";

// The open jobs of one object in the order of their opening; those that are left are aborted when
// it ends.
class PrintJobs final : public frame::InstanceState {
 public:
  ~PrintJobs() override { abort_all(); }

  void add(std::unique_ptr<PrintJob> job) {
    const Long number = number_for(*job);
    jobs_.push_back({number, std::move(job)});
  }
  PrintJob& job(Long number) const {
    const auto found = std::ranges::find(jobs_, number, &Entry::number);
    if (found == jobs_.end()) raise(kInvalidProcedureCall);
    return *found->job;
  }
  void remove(Long number) {
    std::erase_if(jobs_, [number](const Entry& entry) { return entry.number == number; });
  }
  void abort_all() noexcept {
    for (const Entry& entry : jobs_) entry.job->abort();
    jobs_.clear();
  }

 private:
  struct Entry {
    Long number;
    std::unique_ptr<PrintJob> job;
  };

  bool is_taken(Long number) const {
    return std::ranges::find(jobs_, number, &Entry::number) != jobs_.end();
  }
  Long number_for(const PrintJob& job) {
    const auto number = static_cast<Long>(job.handle());
    if (number == job.handle() && !is_taken(number)) return number;
    do {
      ++last_number_;
    } while (is_taken(last_number_));
    return last_number_;
  }

  std::vector<Entry> jobs_;
  Long last_number_ = 0;  // of those that have not the spooler's
};

// Finding the job is the member's own work, so its failure bears the member's own Source.
template <class Operation>
Boolean on_job(frame::KwRtLib& object, Long number, const wchar_t* source, Operation&& operation) {
  return handled(source, kTakeError, True,
                 [&]() -> Boolean { return operation(object.state<PrintJobs>().job(number)); });
}

// A file to be printed, open as long as this lives; none where the name is empty.
class SourceFile {
 public:
  explicit SourceFile(const Text& name) {
    using namespace File_Open_Const;
    if (name.empty()) return;
    Long record_length_bytes = 0;
    const Long error = frame::File_OpenRetry(name, O_RDONLY | O_BINARY, SH_DENYRW,
                                             record_length_bytes, number_, kPermissionDenied);
    if (error != 0) raise(error);
  }
  SourceFile(const SourceFile&) = delete;
  SourceFile& operator=(const SourceFile&) = delete;
  ~SourceFile() { frame::File_CloseRetry(number_); }

  bool is_open() const { return number_ > 0; }
  std::int64_t length_bytes() const { return file_numbers::length_bytes(number_); }
  void read(std::span<std::uint8_t> block) const { file_numbers::get_all(number_, block); }

 private:
  Long number_ = 0;
};

// Whole blocks of the size of Buffer, and what is left.
struct Blocks {
  std::int64_t count = 0;
  std::int64_t rest_bytes = 0;
};

Text blanks(std::int64_t count) {
  if (count < 0) raise(kInvalidProcedureCall);
  return Text::filled(static_cast<std::size_t>(count), L' ');
}

Boolean print_block(PrintJob& job, const SourceFile& file, Text& Buffer) {
  std::vector<std::uint8_t> bytes(Buffer.size());
  file.read(bytes);
  put_bytes(bytes, Buffer.data());
  return job.write(Buffer);
}

Boolean print_file(PrintJob& job, const SourceFile& file, const Blocks& blocks, Text& Buffer,
                   Long BufferSize) {
  Buffer = blanks(BufferSize);
  for (std::int64_t block = 0; block < blocks.count; ++block) {
    if (print_block(job, file, Buffer)) return True;
  }
  if (blocks.rest_bytes == 0) return False;
  Buffer = blanks(blocks.rest_bytes);
  return print_block(job, file, Buffer);
}

}  // namespace

Boolean DirectCloseAllPrinters(frame::KwRtLib& object) {
  object.state<PrintJobs>().abort_all();
  return False;
}

Boolean DirectOpenPrinter(frame::KwRtLib& object, const Text& PrinterName, Long&,
                          const Text& DocName) {
  return handled(L"KwRtLib.DirectOpenPrinter", kTakeError, True, [&] {
    auto job = std::make_unique<PrintJob>();
    if (job->open(PrinterName, DocName, Text())) return True;
    object.state<PrintJobs>().add(std::move(job));
    return False;
  });
}

Boolean DirectWritePrinter(frame::KwRtLib& object, Long Handle, const Text& Buffer) {
  return on_job(object, Handle, L"KwRtLib.DirectWritePrinter",
                [&](PrintJob& job) { return job.write(Buffer); });
}

Boolean DirectStartPage(frame::KwRtLib& object, Long Handle) {
  return on_job(object, Handle, L"KwRtLib.DirectStartPage",
                [](PrintJob& job) { return job.start_page(); });
}

Boolean DirectEndPage(frame::KwRtLib& object, Long Handle) {
  return on_job(object, Handle, L"KwRtLib.DirectEndPage",
                [](PrintJob& job) { return job.end_page(); });
}

Boolean DirectClosePrinter(frame::KwRtLib& object, Long Handle) {
  return on_job(object, Handle, L"KwRtLib.DirectClosePrinter", [&](PrintJob& job) {
    if (job.close()) return True;
    object.state<PrintJobs>().remove(Handle);
    return False;
  });
}

Boolean DirectAbortPrinter(frame::KwRtLib& object, Long Handle) {
  return on_job(object, Handle, L"KwRtLib.DirectAbortPrinter", [](PrintJob& job) {
    job.abort();
    return False;
  });
}

Boolean DirectPrint3(const Text& PrinterName, Text& Buffer, const Text& DocName,
                     const Text& DataType, const Text& FileName, Long BufferSize) {
  const Boolean failed = handled(kPrintSource, kTakeError, True, [&] {
    const SourceFile file(FileName);
    Blocks blocks;
    if (file.is_open()) {
      if (BufferSize == 0) raise(kDivisionByZero);
      blocks = {file.length_bytes() / BufferSize, file.length_bytes() % BufferSize};
    }
    PrintJob job;
    if (!job.open(PrinterName, DocName, DataType) && !job.start_page() &&
        !(file.is_open() ? print_file(job, file, blocks, Buffer, BufferSize) : job.write(Buffer)) &&
        !job.end_page() && !job.close()) {
      return False;
    }
    frame::Set_Error({.Source = kPrintSource}, frame::kChain);
    return True;
  });
  // Even where the application had locked the error state, a failure ends with it unlocked.
  if (failed) frame::Error_Unlock();
  return failed;
}

Boolean DirectPrint2(const Text& PrinterName, Text& Buffer, const Text& DocName,
                     const Text& DataType) {
  constexpr Long kBufferSize_bytes = 4096;
  return DirectPrint3(PrinterName, Buffer, DocName, DataType, Text(), kBufferSize_bytes);
}

Boolean DirectPrint(const Text& PrinterName, Text& Buffer) {
  return DirectPrint2(PrinterName, Buffer, L"KWDIRDOC", L"RAW");
}

}  // namespace qv::printing
