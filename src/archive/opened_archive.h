// An archive file that is open for reading, with its head.
#pragma once

#include <string_view>

#include "automation/text.h"
#include "native/cpr/archive_records.h"

namespace qv::archive {

class OpenedArchive {
 public:
  // Raises the opener's error; 20000 for what is no archive or is damaged, 20001 for a later
  // version. Stands behind the head then.
  explicit OpenedArchive(Text source);
  OpenedArchive(const OpenedArchive&) = delete;
  OpenedArchive& operator=(const OpenedArchive&) = delete;
  ~OpenedArchive();

  // Raises 20000: no archive, or a damaged one.
  [[noreturn]] void refuse() const;

  // Among the language's file numbers.
  Long number() const noexcept { return number_; }
  std::uint64_t length_bytes() const noexcept { return length_bytes_; }
  const native::cpr::ArchiveHead& head() const noexcept { return head_; }

 private:
  void open();
  void read_head();

  Text source_;
  Long number_ = 0;
  std::uint64_t length_bytes_ = 0;
  native::cpr::ArchiveHead head_;
};

// A text of the head, which has one byte a character.
Text text_of_stored(std::string_view stored);

}  // namespace qv::archive
