#include "native/cpr/archive_data.h"

#include <gtest/gtest.h>

#include "native/cpr/crc32.h"
#include "tests/native/cpr/memory_streams.h"

namespace qv::native::cpr {
namespace {

using testing::Bytes;
using testing::MemorySink;
using testing::MemorySource;

ArchiveEntry entry_of(const Bytes& contents) {
  ArchiveEntry entry;
  entry.size_bytes = static_cast<std::int32_t>(contents.size());
  entry.blocks = divided_into_blocks(entry.size_bytes);
  return entry;
}

struct Packed {
  ArchiveEntry entry;
  Bytes bytes;
};

Packed packed(const Bytes& contents) {
  Packed result{entry_of(contents), {}};
  MemorySource file(contents);
  MemorySink archive;
  EXPECT_EQ(pack_entry(file, archive, result.entry, DataType::binary, Effort::standard, {}),
            EntryCode::done);
  result.bytes = archive.bytes();
  return result;
}

TEST(ArchiveData, contents_of_every_kind_come_back) {
  for (const std::size_t size : {0u, 1u, 7u, 100u, 32766u, 32767u, 32768u, 100000u}) {
    for (const Bytes& contents : testing::samples(size)) {
      const Packed pack = packed(contents);
      EXPECT_EQ(pack.entry.crc, crc32_update(kCrcStart, contents));
      std::size_t bytes = 0;
      for (const ArchiveBlock& block : pack.entry.blocks) bytes += block.packed_bytes;
      EXPECT_EQ(bytes, pack.bytes.size());
      MemorySource archive(pack.bytes);
      MemorySink file;
      EXPECT_EQ(unpack_entry(archive, file, pack.entry, {}), EntryCode::done);
      EXPECT_TRUE(file.bytes() == contents);
      EXPECT_EQ(archive.left(), 0u);
    }
  }
}

TEST(ArchiveData, empty_file_is_one_stored_block_of_size_0) {
  const Packed pack = packed({});
  ASSERT_EQ(pack.entry.blocks.size(), 1u);
  EXPECT_EQ(pack.entry.blocks[0].kind, BlockKind::stored);
  EXPECT_EQ(pack.entry.blocks[0].packed_bytes, 0);
  EXPECT_EQ(pack.entry.crc, 0xFFFFFFFFu);
}

TEST(ArchiveData, kind_is_chosen_block_by_block) {
  Bytes contents = testing::random_bytes(32767);
  contents.resize(32767 + 500, 'x');
  const Packed pack = packed(contents);
  ASSERT_EQ(pack.entry.blocks.size(), 2u);
  EXPECT_EQ(pack.entry.blocks[0].kind, BlockKind::stored);
  EXPECT_EQ(pack.entry.blocks[0].packed_bytes, 32767);
  EXPECT_EQ(pack.entry.blocks[1].kind, BlockKind::compressed);
  EXPECT_LT(pack.entry.blocks[1].packed_bytes, 20);
}

TEST(ArchiveData, directory_has_no_contents_whatever_its_blocks) {
  ArchiveEntry entry = entry_of(Bytes(5));
  entry.attributes = kDirectoryAttribute;
  MemorySource source({});
  MemorySink sink;
  EXPECT_EQ(pack_entry(source, sink, entry, DataType::binary, Effort::standard, {}),
            EntryCode::done);
  EXPECT_EQ(entry.crc, 0u);
  EXPECT_EQ(unpack_entry(source, sink, entry, {}), EntryCode::done);
  EXPECT_TRUE(sink.bytes().empty());
}

TEST(ArchiveData, file_that_became_shorter_ends_the_packing) {
  const Bytes contents(40000);
  ArchiveEntry entry = entry_of(contents);
  MemorySource file{std::span(contents).first(39999)};
  MemorySink archive;
  EXPECT_EQ(pack_entry(file, archive, entry, DataType::binary, Effort::standard, {}),
            EntryCode::source_ended);
}

TEST(ArchiveData, full_target_is_told) {
  const Bytes contents = testing::wordy_bytes(1000);
  const Packed pack = packed(contents);
  ArchiveEntry entry = entry_of(contents);
  MemorySource file(contents);
  MemorySink small_archive(10);
  EXPECT_EQ(pack_entry(file, small_archive, entry, DataType::binary, Effort::standard, {}),
            EntryCode::sink_failed);
  MemorySource archive(pack.bytes);
  MemorySink small_file(999);
  EXPECT_EQ(unpack_entry(archive, small_file, pack.entry, {}), EntryCode::sink_failed);
}

TEST(ArchiveData, progress_counts_original_bytes_and_cancels) {
  const Bytes contents = testing::wordy_bytes(70000);
  const Packed pack = packed(contents);
  for (const std::size_t cancel_at : {1u, 2u, 99u}) {
    std::vector<std::uint64_t> told;
    const Progress progress = [&](std::uint64_t bytes) {
      told.push_back(bytes);
      return told.size() != cancel_at;
    };
    const std::vector<std::uint64_t> all{32767, 65534, 70000};
    const std::vector<std::uint64_t> expected(
        all.begin(),
        all.begin() + static_cast<std::ptrdiff_t>(std::min<std::size_t>(3, cancel_at)));
    const EntryCode code = cancel_at < 3 ? EntryCode::cancelled : EntryCode::done;
    ArchiveEntry entry = entry_of(contents);
    MemorySource file(contents);
    MemorySink sink;
    EXPECT_EQ(pack_entry(file, sink, entry, DataType::binary, Effort::standard, progress), code);
    EXPECT_EQ(told, expected);
    told.clear();
    MemorySource archive(pack.bytes);
    EXPECT_EQ(unpack_entry(archive, sink, pack.entry, progress), code);
    EXPECT_EQ(told, expected);
  }
}

TEST(ArchiveData, wrong_crc_is_told) {
  Packed pack = packed(testing::wordy_bytes(100));
  pack.entry.crc ^= 1;
  MemorySource archive(pack.bytes);
  MemorySink file;
  EXPECT_EQ(unpack_entry(archive, file, pack.entry, {}), EntryCode::crc_differs);
}

TEST(ArchiveData, archive_that_ends_is_told) {
  const Packed pack = packed(testing::wordy_bytes(40000));
  for (const std::size_t length : {std::size_t{0}, std::size_t{1}, pack.bytes.size() - 1}) {
    MemorySource archive{std::span(pack.bytes).first(length)};
    MemorySink file;
    EXPECT_EQ(unpack_entry(archive, file, pack.entry, {}), EntryCode::source_ended);
  }
}

TEST(ArchiveData, no_flipped_bit_passes) {
  for (const Bytes& contents : testing::samples(300)) {
    Packed pack = packed(contents);
    // The filling of the last byte means nothing.
    const std::size_t bits = (pack.bytes.size() - 1) * 8;
    for (std::size_t bit = 0; bit < bits; ++bit) {
      Bytes bytes = pack.bytes;
      bytes[bit / 8] ^= static_cast<std::uint8_t>(1u << (bit % 8));
      MemorySource archive(bytes);
      MemorySink file;
      const EntryCode code = unpack_entry(archive, file, pack.entry, {});
      if (code == EntryCode::done) {
        EXPECT_TRUE(file.bytes() == contents) << bit;
      } else {
        EXPECT_GE(code, EntryCode::bad_dictionary) << bit;
      }
    }
  }
}

TEST(ArchiveData, the_reason_why_a_block_is_not_expanded_is_told) {
  const Packed pack = packed(testing::wordy_bytes(100));
  const struct {
    std::size_t at;
    EntryCode code;
  } kReasons[] = {{0, EntryCode::bad_mode}, {1, EntryCode::bad_dictionary}};
  for (const auto& reason : kReasons) {
    Bytes bytes = pack.bytes;
    bytes[reason.at] = 9;
    MemorySource archive(bytes);
    MemorySink file;
    EXPECT_EQ(unpack_entry(archive, file, pack.entry, {}), reason.code);
  }
  Packed longer = pack;
  longer.entry.blocks[0].original_bytes = 99;
  MemorySource archive(longer.bytes);
  MemorySink file;
  EXPECT_EQ(unpack_entry(archive, file, longer.entry, {}), EntryCode::damaged);
}

TEST(ArchiveData, unknown_kind_is_read_as_stored) {
  ArchiveEntry entry;
  const Bytes contents = testing::bytes_of("come sta");
  entry.blocks = {{static_cast<BlockKind>('x'), 8, 8}};
  entry.crc = crc32_update(kCrcStart, contents);
  MemorySource archive(contents);
  MemorySink file;
  EXPECT_EQ(unpack_entry(archive, file, entry, {}), EntryCode::done);
  EXPECT_EQ(file.bytes(), contents);
}

TEST(ArchiveData, block_that_ends_early_is_filled_with_zeros) {
  ArchiveEntry entry;
  entry.blocks = {{BlockKind::compressed, 3, 4}};
  entry.crc = crc32_update(kCrcStart, Bytes(3));
  const Bytes nothing{0x00, 0x06, 0x01, 0xFF};
  MemorySource archive(nothing);
  MemorySink file;
  EXPECT_EQ(unpack_entry(archive, file, entry, {}), EntryCode::done);
  EXPECT_EQ(file.bytes(), Bytes(3));
}

}  // namespace
}  // namespace qv::native::cpr
