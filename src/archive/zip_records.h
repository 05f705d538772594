// The public classes of an archive's records; docs/formats/compressed-file.md has the records byte
// by byte.
#pragma once

#include "automation/connection_points.h"
#include "interfaces.h"
#include "native/cpr/archive_records.h"

namespace qv::archive {

// Neither has members for applications.
struct ZipBlock {
  native::cpr::ArchiveBlock record;
};
struct ZipHeader {
  native::cpr::ArchiveHead record;
};

// One entry, and the source of the events of packing and unpacking.
class ZipFile {
 public:
  explicit ZipFile(ConnectionPoint& events) noexcept : events_(events) {}

  Text get_FileName() const;
  void put_FileName(const Text& Value) { name_ = Value; }
  Long FileSize = 0;
  Long MajVer = 0;
  Long MinVer = 0;
  Date DateCreated;
  Date DateChanged;
  Long Attributes = 0;

  // As the functions of archive_writer.h and archive_reader.h, with events.
  Boolean FileZip(const Variant& Source, const Text& Target, const Text& ParentDir, Long Flags);
  Boolean FileUnzip(const Text& Source, const Text& TargetPath, Long Flags,
                    const Object<_kwCollection>& FileList);

 private:
  ConnectionPoint& events_;
  Text name_;
};

}  // namespace qv::archive
