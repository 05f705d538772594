#include "native/cpr/archive_data.h"

#include <vector>

#include "native/cpr/crc32.h"
#include "native/cpr/explode.h"

namespace qv::native::cpr {
namespace {

EntryCode refusal_of(CoderCode code) {
  switch (code) {
    case CoderCode::bad_dictionary:
      return EntryCode::bad_dictionary;
    case CoderCode::bad_mode:
      return EntryCode::bad_mode;
    default:
      return EntryCode::damaged;
  }
}

}  // namespace

PackedBlock pack_block(std::span<const std::uint8_t> original, std::span<std::uint8_t> room,
                       DataType type, Effort effort) {
  const CoderResult result = implode(original, room, type, effort);
  if (result.code != CoderCode::done) return {BlockKind::stored, original};
  return {BlockKind::compressed, room.first(result.bytes_written)};
}

UnpackedBlock unpack_block(const ArchiveBlock& block, std::span<const std::uint8_t> packed,
                           std::span<std::uint8_t> room) {
  if (block.kind != BlockKind::compressed) return {CoderCode::done, packed};
  const std::span<std::uint8_t> original = room.first(block.original_bytes);
  return {explode(packed, original).code, original};
}

EntryCode pack_entry(ByteSource& file, ByteSink& archive, ArchiveEntry& entry, DataType type,
                     Effort effort, const Progress& progress) {
  if (entry.is_directory()) return EntryCode::done;
  entry.crc = kCrcStart;
  std::vector<std::uint8_t> original(kArchiveBlockBytes);
  std::vector<std::uint8_t> room(kArchiveBlockBytes);
  std::uint64_t done_bytes = 0;
  for (ArchiveBlock& block : entry.blocks) {
    const auto bytes = std::span(original).first(block.original_bytes);
    if (file.read(bytes) != bytes.size()) return EntryCode::source_ended;
    entry.crc = crc32_update(entry.crc, bytes);
    const PackedBlock packed = pack_block(bytes, room, type, effort);
    block.kind = packed.kind;
    block.packed_bytes = static_cast<std::uint16_t>(packed.bytes.size());
    if (!archive.write(packed.bytes)) return EntryCode::sink_failed;
    done_bytes += bytes.size();
    if (progress && !progress(done_bytes)) return EntryCode::cancelled;
  }
  return EntryCode::done;
}

EntryCode unpack_entry(ByteSource& archive, ByteSink& file, const ArchiveEntry& entry,
                       const Progress& progress) {
  if (entry.is_directory()) return EntryCode::done;
  std::vector<std::uint8_t> packed(kArchiveBlockBytes);
  std::vector<std::uint8_t> room(kArchiveBlockBytes);
  std::uint32_t crc = kCrcStart;
  std::uint64_t done_bytes = 0;
  for (const ArchiveBlock& block : entry.blocks) {
    const auto bytes = std::span(packed).first(block.packed_bytes);
    if (archive.read(bytes) != bytes.size()) return EntryCode::source_ended;
    const auto [code, original] = unpack_block(block, bytes, room);
    if (code != CoderCode::done) return refusal_of(code);
    crc = crc32_update(crc, original);
    if (!file.write(original)) return EntryCode::sink_failed;
    done_bytes += original.size();
    if (progress && !progress(done_bytes)) return EntryCode::cancelled;
  }
  return crc == entry.crc ? EntryCode::done : EntryCode::crc_differs;
}

}  // namespace qv::native::cpr
