// An archive that is open for reading: its head, and which entries the user means.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "console/file_streams.h"
#include "native/cpr/archive_records.h"
#include "qvarc/options.h"

namespace qv::qvarc {

// One entry and where its contents begin.
struct PlacedEntry {
  const native::cpr::ArchiveEntry* entry;
  std::int64_t position;
};

class OpenedArchive {
 public:
  // Throws Failure for what can't be read, is no archive, is damaged or too new.
  explicit OpenedArchive(const Path& path);

  console::InputFile& file() { return file_; }
  const native::cpr::ArchiveHead& head() const { return head_; }
  // The name below the stored parent folder; the whole one where it does not lie there.
  std::string_view shown_name(const native::cpr::ArchiveEntry& entry) const;
  // Those that the names mean, or all where there are none. Throws Failure for a name that means
  // none.
  std::vector<PlacedEntry> select(const std::vector<std::string>& names) const;

 private:
  console::InputFile file_;
  native::cpr::ArchiveHead head_;
};

}  // namespace qv::qvarc
