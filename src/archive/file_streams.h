// Open files of the calling language's numbers as the streams that the portable archive code reads
// and writes.
#pragma once

#include <optional>

#include "automation/run_time_error.h"
#include "native/cpr/byte_stream.h"

namespace qv::archive {

// Streams don't throw: a run-time error counts as the end, and is kept for raise_failure().
class FileStream {
 public:
  explicit FileStream(Long number) noexcept : number_(number) {}

  // Not so at the end of the file.
  bool has_failed() const noexcept { return failure_.has_value(); }
  // Raises what the stream failed with; 62, "Input past end of file", where it ended without.
  [[noreturn]] void raise_failure() const;

 protected:
  Long number() const noexcept { return number_; }
  void keep_failure() noexcept { failure_ = current_run_time_error(); }

 private:
  Long number_;
  std::optional<RunTimeError> failure_;
};

class FileSource final : public FileStream, public native::cpr::ByteSource {
 public:
  using FileStream::FileStream;
  std::size_t read(std::span<std::uint8_t> bytes) override;
};

class FileSink final : public FileStream, public native::cpr::ByteSink {
 public:
  using FileStream::FileStream;
  bool write(std::span<const std::uint8_t> bytes) override;
};

// part of whole as a percentage: rounded to nearest, ties to even; at most 100, and 100 of nothing.
Long percentage(std::uint64_t part, std::uint64_t whole) noexcept;

}  // namespace qv::archive
