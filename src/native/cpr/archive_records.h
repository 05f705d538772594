#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "native/cpr/byte_stream.h"

// The records at the head of an archive; docs/formats/compressed-file.md has them byte by byte.
namespace qv::native::cpr {

inline constexpr std::uint16_t kArchiveVersion = 256;
inline constexpr std::size_t kArchiveBlockBytes = 32767;  // of the original, in a full block
inline constexpr std::int32_t kDirectoryAttribute = 16;
inline constexpr std::uint32_t kCrcStart = 0xFFFFFFFF;

enum class BlockKind : std::uint8_t { compressed = 'C', stored = 'U' };

struct ArchiveBlock {
  BlockKind kind{};  // any other value is read as stored
  std::uint16_t original_bytes = 0;
  std::uint16_t packed_bytes = 0;
};

struct ArchiveEntry {
  std::int32_t next_position = 0;  // of what follows this entry's data, the first byte being 1
  std::string name;                // full path, one byte a character, without terminator
  std::int32_t size_bytes = 0;
  std::int32_t major_version = 0;
  std::int32_t minor_version = 0;
  double created = 0;  // days since the end of 1899, local time
  double changed = 0;
  std::int32_t attributes = 0;  // of the file system; has no data where kDirectoryAttribute is set
  std::uint32_t crc = 0;        // register over the original bytes, from kCrcStart on
  std::vector<ArchiveBlock> blocks;

  bool is_directory() const { return (attributes & kDirectoryAttribute) != 0; }
};

struct ArchiveHead {
  std::uint16_t version = kArchiveVersion;
  std::int32_t flags = 0;
  std::string parent_directory;  // with its final separator, or empty
  std::vector<ArchiveEntry> entries;
};

// How a file of this size is divided: full blocks and a shorter last one; an empty file has one
// empty block. Kinds and packed sizes are still zero. None for a negative size.
std::vector<ArchiveBlock> divided_into_blocks(std::int32_t size_bytes);

// Position behind the head as it will be written, the first byte being 1; it depends on the numbers
// of entries and blocks alone.
std::uint64_t first_data_position(const ArchiveHead& head);

// The head's bytes. Nothing where a name does not fit into its field (archive_names.h) or there are
// more entries or blocks than a count can tell.
std::optional<std::vector<std::uint8_t>> encode_head(const ArchiveHead& head);

enum class HeadCode { done, no_archive, later_version, damaged };

struct DecodedHead {
  HeadCode code = HeadCode::damaged;
  ArchiveHead head;  // as far as it was read
};

// Reads a head and leaves the source right behind it. `no_archive`: the first four bytes are not
// the magic, or not there; `later_version`: above kArchiveVersion; `damaged`: the head ends early,
// or its counts contradict each other. No memory is taken for what a count promises, only for bytes
// that came.
DecodedHead decode_head(ByteSource& source);

}  // namespace qv::native::cpr
