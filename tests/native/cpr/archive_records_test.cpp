#include "native/cpr/archive_records.h"

#include <gtest/gtest.h>

#include "tests/native/cpr/memory_streams.h"

namespace qv::native::cpr {
namespace {

using testing::Bytes;
using testing::MemorySource;

ArchiveHead sample_head() {
  ArchiveHead head;
  head.flags = 3;
  head.parent_directory = "C:\\Dati\\";
  ArchiveEntry file;
  file.next_position = 0x01020304;
  file.name = "C:\\Dati\\Citt\xE0.txt";
  file.size_bytes = 32768;
  file.major_version = 0x00050001;
  file.minor_version = -2;
  file.created = 36526.5;
  file.changed = -1.25;
  file.attributes = 33;
  file.crc = 0xCBF43926;
  file.blocks = {{BlockKind::compressed, 32767, 600}, {BlockKind::stored, 1, 1}};
  ArchiveEntry folder;
  folder.name = "C:\\Dati\\Sub";
  folder.attributes = kDirectoryAttribute;
  folder.blocks = {{}};
  head.entries = {file, folder};
  return head;
}

void expect_equal(const ArchiveHead& a, const ArchiveHead& b) {
  EXPECT_EQ(a.version, b.version);
  EXPECT_EQ(a.flags, b.flags);
  EXPECT_EQ(a.parent_directory, b.parent_directory);
  ASSERT_EQ(a.entries.size(), b.entries.size());
  for (std::size_t i = 0; i < a.entries.size(); ++i) {
    const ArchiveEntry& x = a.entries[i];
    const ArchiveEntry& y = b.entries[i];
    EXPECT_EQ(x.next_position, y.next_position);
    EXPECT_EQ(x.name, y.name);
    EXPECT_EQ(x.size_bytes, y.size_bytes);
    EXPECT_EQ(x.major_version, y.major_version);
    EXPECT_EQ(x.minor_version, y.minor_version);
    EXPECT_EQ(x.created, y.created);
    EXPECT_EQ(x.changed, y.changed);
    EXPECT_EQ(x.attributes, y.attributes);
    EXPECT_EQ(x.crc, y.crc);
    ASSERT_EQ(x.blocks.size(), y.blocks.size());
    for (std::size_t j = 0; j < x.blocks.size(); ++j) {
      EXPECT_EQ(x.blocks[j].kind, y.blocks[j].kind);
      EXPECT_EQ(x.blocks[j].original_bytes, y.blocks[j].original_bytes);
      EXPECT_EQ(x.blocks[j].packed_bytes, y.blocks[j].packed_bytes);
    }
  }
}

DecodedHead decoded(const Bytes& bytes) {
  MemorySource source(bytes);
  return decode_head(source);
}

Bytes part(const Bytes& bytes, std::size_t at, std::size_t count) {
  const auto from = bytes.begin() + static_cast<std::ptrdiff_t>(at);
  return {from, from + static_cast<std::ptrdiff_t>(count)};
}

TEST(ArchiveRecords, head_comes_back_and_data_follow_at_once) {
  const ArchiveHead head = sample_head();
  Bytes bytes = encode_head(head).value();
  EXPECT_EQ(bytes.size() + 1, first_data_position(head));
  bytes.insert(bytes.end(), {'d', 'a', 't', 'a'});
  MemorySource source(bytes);
  const DecodedHead back = decode_head(source);
  EXPECT_EQ(back.code, HeadCode::done);
  EXPECT_EQ(source.left(), 4u);
  expect_equal(back.head, head);
}

TEST(ArchiveRecords, every_field_lies_at_its_offset) {
  const Bytes bytes = encode_head(sample_head()).value();
  ASSERT_EQ(bytes.size(), 279u + 309 + 2 * 5 + 309 + 5);
  EXPECT_EQ(part(bytes, 0, 10), (Bytes{'K', 'W', 'C', 'F', 0, 1, 3, 0, 0, 0}));
  EXPECT_EQ(part(bytes, 10, 11), testing::bytes_of(std::string_view("C:\\Dati\\\0  ", 11)));
  EXPECT_EQ(bytes[264], ' ');
  EXPECT_EQ(part(bytes, 265, 14), (Bytes{2, 0, 0, 0, 1, 0, 2, 0, 0, 0, 1, 0, 0, 0}));
  EXPECT_EQ(part(bytes, 279, 4), (Bytes{4, 3, 2, 1}));
  EXPECT_EQ(part(bytes, 283, 18),
            testing::bytes_of(std::string_view("C:\\Dati\\Citt\xE0.txt\0", 18)));
  EXPECT_EQ(bytes[279 + 258], ' ');
  EXPECT_EQ(part(bytes, 279 + 259, 4), (Bytes{0, 0x80, 0, 0}));
  EXPECT_EQ(part(bytes, 279 + 263, 4), (Bytes{1, 0, 5, 0}));
  EXPECT_EQ(part(bytes, 279 + 267, 4), (Bytes{0xFE, 0xFF, 0xFF, 0xFF}));
  EXPECT_EQ(part(bytes, 279 + 271, 8), (Bytes{0, 0, 0, 0, 0xD0, 0xD5, 0xE1, 0x40}));
  EXPECT_EQ(part(bytes, 279 + 279, 8), (Bytes{0, 0, 0, 0, 0, 0, 0xF4, 0xBF}));
  EXPECT_EQ(part(bytes, 279 + 287, 4), (Bytes{33, 0, 0, 0}));
  EXPECT_EQ(part(bytes, 279 + 291, 4), (Bytes{0x26, 0x39, 0xF4, 0xCB}));
  EXPECT_EQ(part(bytes, 279 + 295, 14), (Bytes{2, 0, 0, 0, 1, 0, 2, 0, 0, 0, 1, 0, 0, 0}));
  EXPECT_EQ(part(bytes, 279 + 309, 10), (Bytes{'C', 0xFF, 0x7F, 0x58, 0x02, 'U', 1, 0, 1, 0}));
}

TEST(ArchiveRecords, empty_parent_directory_is_a_terminator_alone) {
  const ArchiveHead head;
  const Bytes bytes = encode_head(head).value();
  EXPECT_EQ(bytes.size(), 279u);
  EXPECT_EQ(bytes[10], 0);
  EXPECT_EQ(bytes[11], ' ');
  EXPECT_EQ(decoded(bytes).code, HeadCode::done);
  EXPECT_EQ(decoded(bytes).head.parent_directory, "");
}

TEST(ArchiveRecords, field_without_terminator_is_taken_whole) {
  Bytes bytes = encode_head(ArchiveHead{}).value();
  std::fill(bytes.begin() + 10, bytes.begin() + 265, std::uint8_t{'p'});
  EXPECT_EQ(decoded(bytes).head.parent_directory, std::string(255, 'p'));
}

TEST(ArchiveRecords, longest_name_comes_back_and_a_longer_one_is_refused) {
  ArchiveHead head;
  head.entries.resize(1);
  head.entries[0].name = std::string(253, 'n');
  EXPECT_EQ(decoded(encode_head(head).value()).head.entries[0].name, head.entries[0].name);
  head.entries[0].name += 'n';
  EXPECT_FALSE(encode_head(head));
  head.entries.clear();
  head.parent_directory = std::string(254, 'p');
  EXPECT_EQ(decoded(encode_head(head).value()).head.parent_directory, head.parent_directory);
  head.parent_directory += 'p';
  EXPECT_FALSE(encode_head(head));
}

TEST(ArchiveRecords, file_is_divided_into_full_blocks_and_a_rest) {
  const auto sizes = [](std::int32_t size) {
    std::vector<int> result;
    for (const ArchiveBlock& block : divided_into_blocks(size)) {
      result.push_back(block.original_bytes);
      EXPECT_EQ(static_cast<int>(block.kind), 0);
      EXPECT_EQ(block.packed_bytes, 0);
    }
    return result;
  };
  EXPECT_EQ(sizes(0), std::vector<int>{0});
  EXPECT_EQ(sizes(1), std::vector<int>{1});
  EXPECT_EQ(sizes(32766), std::vector<int>{32766});
  EXPECT_EQ(sizes(32767), std::vector<int>{32767});
  EXPECT_EQ(sizes(32768), (std::vector<int>{32767, 1}));
  EXPECT_EQ(sizes(65534), (std::vector<int>{32767, 32767}));
  EXPECT_EQ(sizes(0x7FFFFFFF).size(), 65539u);
  EXPECT_TRUE(sizes(-1).empty());
}

TEST(ArchiveRecords, wrong_magic_is_no_archive) {
  Bytes bytes = encode_head(sample_head()).value();
  for (std::size_t i = 0; i < 4; ++i) {
    Bytes other = bytes;
    other[i] ^= 0x20;
    EXPECT_EQ(decoded(other).code, HeadCode::no_archive);
  }
  EXPECT_EQ(decoded({}).code, HeadCode::no_archive);
  EXPECT_EQ(decoded({'K', 'W', 'C'}).code, HeadCode::no_archive);
}

TEST(ArchiveRecords, version_up_to_256_is_read_and_a_later_one_is_not) {
  ArchiveHead head = sample_head();
  for (const unsigned version : {0u, 1u, 255u, 256u, 0x8000u, 0xFFFFu}) {
    head.version = static_cast<std::uint16_t>(version);
    EXPECT_EQ(decoded(encode_head(head).value()).code, HeadCode::done) << version;
  }
  for (const unsigned version : {257u, 512u, 0x7FFFu}) {
    head.version = static_cast<std::uint16_t>(version);
    EXPECT_EQ(decoded(encode_head(head).value()).code, HeadCode::later_version) << version;
  }
}

TEST(ArchiveRecords, every_truncation_is_told) {
  const Bytes bytes = encode_head(sample_head()).value();
  for (std::size_t length = 0; length < bytes.size(); ++length) {
    EXPECT_EQ(decoded(part(bytes, 0, length)).code,
              length < 4 ? HeadCode::no_archive : HeadCode::damaged)
        << length;
  }
}

TEST(ArchiveRecords, descriptor_that_contradicts_is_damaged) {
  const Bytes bytes = encode_head(sample_head()).value();
  // Both arrays: count, dimensions, elements, lower bound, each changed in its lowest and highest
  // byte.
  for (const std::size_t array : {265u, 279u + 295}) {
    for (const std::size_t byte : {0u, 3u, 4u, 5u, 6u, 9u, 10u, 13u}) {
      Bytes other = bytes;
      other[array + byte] ^= 0x80;
      EXPECT_EQ(decoded(other).code, HeadCode::damaged) << array << '+' << byte;
    }
  }
}

TEST(ArchiveRecords, counts_without_bytes_behind_them_take_no_memory) {
  for (const std::size_t array : {265u, 279u + 295}) {
    Bytes bytes = encode_head(sample_head()).value();
    for (const std::size_t count : {array, array + 6}) {
      bytes[count] = bytes[count + 1] = bytes[count + 2] = 0xFF;
      bytes[count + 3] = 0x7F;
    }
    const DecodedHead back = decoded(bytes);
    EXPECT_EQ(back.code, HeadCode::damaged);
    EXPECT_LE(back.head.entries.capacity(), 16u);
  }
}

TEST(ArchiveRecords, negative_sizes_of_a_block_are_damaged) {
  const Bytes bytes = encode_head(sample_head()).value();
  for (const std::size_t field : {279u + 309 + 2, 279u + 309 + 4}) {
    Bytes other = bytes;
    other[field] |= 0x80;
    EXPECT_EQ(decoded(other).code, HeadCode::damaged);
  }
}

TEST(ArchiveRecords, unknown_kind_of_block_is_kept) {
  Bytes bytes = encode_head(sample_head()).value();
  bytes[279 + 309] = 'x';
  const DecodedHead back = decoded(bytes);
  EXPECT_EQ(back.code, HeadCode::done);
  EXPECT_EQ(static_cast<char>(back.head.entries[0].blocks[0].kind), 'x');
}

TEST(ArchiveRecords, many_blocks_come_back) {
  ArchiveHead head;
  head.entries.resize(1);
  for (unsigned i = 0; i < 5000; ++i) {
    head.entries[0].blocks.push_back({BlockKind::compressed, 32767, static_cast<std::uint16_t>(i)});
  }
  expect_equal(decoded(encode_head(head).value()).head, head);
}

}  // namespace
}  // namespace qv::native::cpr
