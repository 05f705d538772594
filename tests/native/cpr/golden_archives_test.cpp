// The archives in tests/golden/archives, which another writer made (make.py there).
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>

#include "native/cpr/archive_data.h"
#include "tests/native/cpr/memory_streams.h"

namespace qv::native::cpr {
namespace {

using testing::Bytes;
using testing::MemorySink;
using testing::MemorySource;

Bytes golden(const std::string& name) {
  const auto tests = std::filesystem::path(__FILE__).parent_path().parent_path().parent_path();
  std::ifstream file(tests / "golden" / "archives" / (name + ".kwc"), std::ios::binary);
  EXPECT_TRUE(file.is_open()) << name;
  return Bytes(std::istreambuf_iterator<char>(file), {});
}

Bytes words(std::size_t size) {
  std::string text;
  for (int i = 0; text.size() < size; ++i) text += "riga " + std::to_string(i) + " di testo\r\n";
  return testing::bytes_of(text.substr(0, size));
}

Bytes noise(std::size_t size) {
  Bytes bytes;
  std::uint32_t state = 12345;
  while (bytes.size() < size) {
    state = state * 1664525 + 1013904223;
    bytes.push_back(static_cast<std::uint8_t>(state >> 24));
  }
  return bytes;
}

Bytes joined(Bytes first, const Bytes& second, const Bytes& third) {
  first.insert(first.end(), second.begin(), second.end());
  first.insert(first.end(), third.begin(), third.end());
  return first;
}

std::string kinds_of(const ArchiveEntry& entry) {
  std::string kinds;
  for (const ArchiveBlock& block : entry.blocks) kinds += static_cast<char>(block.kind);
  return kinds;
}

// All of an archive's files, by what their names have behind "C:\Dati\".
std::map<std::string, Bytes> contents_of(const std::string& name) {
  const Bytes bytes = golden(name);
  MemorySource source(bytes);
  const DecodedHead decoded = decode_head(source);
  EXPECT_EQ(decoded.code, HeadCode::done) << name;
  EXPECT_EQ(bytes.size() - source.left() + 1, first_data_position(decoded.head));
  std::map<std::string, Bytes> contents;
  for (const ArchiveEntry& entry : decoded.head.entries) {
    MemorySink file;
    EXPECT_EQ(unpack_entry(source, file, entry, {}), EntryCode::done) << entry.name;
    EXPECT_EQ(bytes.size() - source.left() + 1, static_cast<std::size_t>(entry.next_position));
    EXPECT_EQ(entry.name.substr(0, 8), "C:\\Dati\\");
    contents[entry.name.substr(8)] = file.bytes();
  }
  EXPECT_EQ(source.left(), 0u) << name;
  return contents;
}

TEST(GoldenArchives, files_of_every_division_are_read) {
  const std::map<std::string, Bytes> expected{{"empty", {}},
                                              {"one", {'x'}},
                                              {"full", words(32767)},
                                              {"full and one", words(32768)},
                                              {"two full", words(65534)}};
  EXPECT_EQ(contents_of("sizes"), expected);
}

TEST(GoldenArchives, blocks_of_every_kind_are_read) {
  const std::map<std::string, Bytes> expected{
      {"sub", {}},
      {"sub\\binary and text", words(std::size_t{6} * 32767)},
      {"sub\\stored", noise(40000)},
      {"sub\\by turns", joined(noise(32767), words(32767), noise(9))},
      {"sub\\deeper", {}},
      {"sub\\deeper\\perch\xE8.txt", testing::bytes_of("ciao ciao ciao ciao ciao")}};
  EXPECT_EQ(contents_of("codings"), expected);
}

TEST(GoldenArchives, records_are_read) {
  const Bytes bytes = golden("codings");
  MemorySource source(bytes);
  const ArchiveHead head = decode_head(source).head;
  EXPECT_EQ(head.version, 256);
  EXPECT_EQ(head.flags, 3);
  EXPECT_EQ(head.parent_directory, "C:\\Dati\\");
  ASSERT_EQ(head.entries.size(), 6u);
  EXPECT_TRUE(head.entries[0].is_directory());
  EXPECT_EQ(kinds_of(head.entries[1]), "CCCCCC");
  EXPECT_EQ(kinds_of(head.entries[2]), "UU");
  EXPECT_EQ(head.entries[2].major_version, 0x00050001);
  EXPECT_EQ(head.entries[2].minor_version, 0x00020003);
  EXPECT_EQ(kinds_of(head.entries[3]), "UCU");
  EXPECT_EQ(head.entries[3].attributes, 33);
  EXPECT_EQ(head.entries[5].created, 36526.5);
  EXPECT_EQ(head.entries[5].changed, 36527.25);
}

TEST(GoldenArchives, heads_are_written_again_byte_for_byte) {
  for (const char* name : {"sizes", "codings", "no_parent", "version_255"}) {
    const Bytes bytes = golden(name);
    MemorySource source(bytes);
    const auto again = encode_head(decode_head(source).head);
    ASSERT_TRUE(again) << name;
    EXPECT_TRUE(std::equal(again->begin(), again->end(), bytes.begin())) << name;
  }
}

TEST(GoldenArchives, later_version_is_refused) {
  const Bytes bytes = golden("version_257");
  MemorySource source(bytes);
  EXPECT_EQ(decode_head(source).code, HeadCode::later_version);
}

// Whatever bit of the head is wrong, what comes of it is an error, or names and contents that are
// read in bounded time and space.
TEST(GoldenArchives, every_flipped_bit_of_the_head_ends) {
  const Bytes good = golden("sizes");
  MemorySource good_source(good);
  const std::size_t head_bytes =
      static_cast<std::size_t>(first_data_position(decode_head(good_source).head)) - 1;
  for (std::size_t bit = 0; bit < 8 * head_bytes; ++bit) {
    // The blanks behind a name mean nothing.
    if (good[bit / 8] == ' ') continue;
    Bytes bytes = good;
    bytes[bit / 8] ^= static_cast<std::uint8_t>(1u << bit % 8);
    MemorySource source(bytes);
    const DecodedHead decoded = decode_head(source);
    if (decoded.code != HeadCode::done) continue;
    ASSERT_LE(decoded.head.entries.size(), 5u);
    for (const ArchiveEntry& entry : decoded.head.entries) {
      ASSERT_LE(entry.blocks.size(), 3u);
      MemorySink file(4u * kArchiveBlockBytes);
      if (unpack_entry(source, file, entry, {}) != EntryCode::done) break;
    }
  }
}

}  // namespace
}  // namespace qv::native::cpr
