#include <gtest/gtest.h>

#include "native/cpr/archive_data.h"
#include "native/cpr/archive_names.h"
#include "native/cpr/explode.h"
#include "tests/native/cpr/memory_streams.h"
#include "tests/native/zlog/format_example.h"

// The worked examples of the pages in docs/formats are what the code reads and writes.
namespace qv::native::cpr {
namespace {

using testing::Bytes;
using zlog::format_example;

const Bytes kText = testing::bytes_of("ciao ciao ciao ciao ciao");

TEST(FormatPages, compressed_block_expands_and_is_made_again) {
  const Bytes packed = format_example("compressed-block.md");
  Bytes original(kText.size());
  const CoderResult result = explode(packed, original);
  EXPECT_EQ(result.code, CoderCode::done);
  EXPECT_EQ(result.bytes_written, kText.size());
  EXPECT_EQ(original, kText);
  Bytes again(kText.size());
  again.resize(implode(kText, again, DataType::text).bytes_written);
  EXPECT_EQ(again, packed);
}

TEST(FormatPages, compressed_file_is_read) {
  const Bytes bytes = format_example("compressed-file.md");
  ASSERT_EQ(bytes.size(), 605u);
  testing::MemorySource source(bytes);
  const DecodedHead decoded = decode_head(source);
  ASSERT_EQ(decoded.code, HeadCode::done);
  EXPECT_EQ(decoded.head.version, 256);
  EXPECT_EQ(decoded.head.flags, 1);
  EXPECT_EQ(decoded.head.parent_directory, "C:\\Dati\\");
  ASSERT_EQ(decoded.head.entries.size(), 1u);
  const ArchiveEntry& entry = decoded.head.entries[0];
  EXPECT_EQ(entry.next_position, 606);
  EXPECT_EQ(entry.name, "C:\\Dati\\Sub\\a.txt");
  EXPECT_TRUE(stays_in_folder(entry.name.substr(decoded.head.parent_directory.size())));
  EXPECT_EQ(entry.size_bytes, 24);
  EXPECT_EQ(entry.major_version, 0);
  EXPECT_EQ(entry.minor_version, 0);
  EXPECT_EQ(entry.created, 36526.5);
  EXPECT_EQ(entry.changed, 36527.25);
  EXPECT_EQ(entry.attributes, 32);
  ASSERT_EQ(entry.blocks.size(), 1u);
  EXPECT_EQ(entry.blocks[0].kind, BlockKind::compressed);
  EXPECT_EQ(entry.blocks[0].original_bytes, 24);
  EXPECT_EQ(entry.blocks[0].packed_bytes, 12);
  testing::MemorySink file;
  EXPECT_EQ(unpack_entry(source, file, entry, {}), EntryCode::done);
  EXPECT_EQ(file.bytes(), kText);
  EXPECT_EQ(source.left(), 0u);
}

TEST(FormatPages, compressed_file_is_written_again) {
  const Bytes bytes = format_example("compressed-file.md");
  testing::MemorySource source(bytes);
  ArchiveHead head = decode_head(source).head;
  ArchiveEntry& entry = head.entries.at(0);
  entry.blocks = divided_into_blocks(entry.size_bytes);
  entry.crc = 0;
  testing::MemorySource file(kText);
  testing::MemorySink contents;
  EXPECT_EQ(pack_entry(file, contents, entry, DataType::binary, Effort::standard, {}),
            EntryCode::done);
  entry.next_position =
      static_cast<std::int32_t>(first_data_position(head) + contents.bytes().size());
  Bytes again = encode_head(head).value();
  again.insert(again.end(), contents.bytes().begin(), contents.bytes().end());
  EXPECT_EQ(again, bytes);
}

}  // namespace
}  // namespace qv::native::cpr
