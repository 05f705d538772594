#pragma once

#include <cstdint>
#include <functional>
#include <span>

#include "native/cpr/archive_records.h"
#include "native/cpr/implode.h"

// The contents of an archive: blocks, and whole entries of them.
namespace qv::native::cpr {

struct PackedBlock {
  BlockKind kind;
  std::span<const std::uint8_t> bytes;  // in the room given, or the original ones
};

// What stands in the archive for a block of at most kArchiveBlockBytes: its compressed form, or the
// block itself where that is no smaller. `room` has as many bytes as the block or more.
PackedBlock pack_block(std::span<const std::uint8_t> original, std::span<std::uint8_t> room,
                       DataType type, Effort effort);

struct UnpackedBlock {
  CoderCode code;
  std::span<const std::uint8_t> original;  // good only where the code is `done`
};

// The original bytes of a block from those in the archive: in `room`, of kArchiveBlockBytes or
// more, or the packed ones as they stand. A compressed block that ends early is filled with zeros
// up to its size, for the entry's CRC to judge.
UnpackedBlock unpack_block(const ArchiveBlock& block, std::span<const std::uint8_t> packed,
                           std::span<std::uint8_t> room);

enum class EntryCode {
  done,
  source_ended,  // before all the bytes that the entry tells
  sink_failed,
  cancelled,
  bad_dictionary,  // the first of the three reasons for which a block can't be expanded
  bad_mode,
  damaged,
  crc_differs,  // all blocks were expanded, to something else
};

// Told after each block how many bytes of the original are done; false cancels.
using Progress = std::function<bool(std::uint64_t original_bytes)>;

// Packs the contents of an entry whose blocks are divided already, from the file to the archive,
// and notes kinds, packed sizes and the CRC in it; a directory has no contents. Never a code behind
// `cancelled`.
EntryCode pack_entry(ByteSource& file, ByteSink& archive, ArchiveEntry& entry, DataType type,
                     Effort effort, const Progress& progress);

// Unpacks the contents of an entry from the archive, which stands at its first block. The file is
// good only where the result is `done`.
EntryCode unpack_entry(ByteSource& archive, ByteSink& file, const ArchiveEntry& entry,
                       const Progress& progress);

}  // namespace qv::native::cpr
