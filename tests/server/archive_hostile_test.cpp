// Archives made to do harm: nothing is written outside the target folder, and every one ends.
#include "server/archive_fixture.h"

namespace qv::tests {
namespace {

using Names = std::vector<std::wstring>;

constexpr LONG kStorePath = 1;
constexpr const wchar_t* kSource = L"Module.FileUnzip";

class HostileArchive : public ArchiveTest {
 protected:
  void SetUp() override {
    ArchiveTest::SetUp();
    make_folder(L"out");
    make_file(L"out\\kept.txt", "kept");
    make_file(L"victim.txt", "untouched");
  }
  void make_archive(const std::string& name, std::int32_t attributes = 32) {
    HandMade archive;
    archive.parent = "C:\\Dati\\";
    archive.entries = {{name, "evil", attributes}};
    make_file(L"a.kwc", archive.bytes());
  }
  void expect_refused(const std::string& name, LONG flags, std::int32_t attributes = 32) {
    make_archive(name, attributes);
    EXPECT_TRUE(unzip(flags)) << name;
    const std::wstring wide(name.begin(), name.end());
    expect_record(20000, kSource,
                  L"Il nome " + wide + L" conduce fuori dalla cartella di destinazione.");
    EXPECT_EQ(names_in(L"out"), Names{L"kept.txt"}) << name;
    EXPECT_EQ(contents(L"victim.txt"), "untouched");
    EXPECT_EQ(names_in(L""), (Names{L"a.kwc", L"out", L"victim.txt"})) << name;
  }
};

TEST_F(HostileArchive, stored_folder_that_climbs_is_refused) {
  for (const char* part :
       {"..\\victim.txt", "sub\\..\\..\\victim.txt", "../victim.txt", "sub/../../victim.txt", "..",
        "\\victim.txt", "/victim.txt", "C:\\victim.txt", "C:victim.txt", "x.txt:stream",
        ".. \\victim.txt", "...\\victim.txt", ". .\\victim.txt", "*", "kept.*", "k?pt.txt", ""}) {
    expect_refused(std::string("C:\\Dati\\") + part, kStorePath);
  }
}

TEST_F(HostileArchive, name_shorter_than_the_parent_is_refused) {
  expect_refused("C:\\Da", kStorePath);
  expect_refused("", kStorePath);
}

TEST_F(HostileArchive, folder_that_climbs_is_refused) {
  expect_refused("C:\\Dati\\..\\new", kStorePath, 16);
  expect_refused("C:\\Dati\\..", 0, 16);
}

TEST_F(HostileArchive, bare_name_that_is_none_is_refused) {
  for (const char* name : {"C:\\Dati\\..", "C:\\Dati\\", "C:\\Dati\\*", "C:\\Dati\\kept.*", "",
                           "C:", "..", "C:\\Dati\\x.txt:stream", "C:\\Dati\\?ept.txt"}) {
    expect_refused(name, 0);
  }
}

TEST_F(HostileArchive, bare_name_drops_whatever_folders_it_has) {
  make_archive("\\\\server\\share\\..\\..\\a.txt");
  ASSERT_FALSE(unzip(0));
  EXPECT_EQ(names_in(L"out"), (Names{L"a.txt", L"kept.txt"}));
}

TEST_F(HostileArchive, position_before_the_file_is_refused) {
  for (const std::int32_t position : {0, -1, INT32_MIN}) {
    HandMade archive;
    archive.entries = {{"a.txt", "uno"}, {"b.txt", "due"}};
    std::string bytes = archive.bytes();
    bytes.replace(279, 4, image(position));
    make_file(L"a.kwc", bytes);
    EXPECT_TRUE(unzip(0));
    expect_record(20000, kSource,
                  L"Il file " + path(L"a.kwc") + L" non è un file compresso o è corrotto.");
    EXPECT_EQ(names_in(L"out"), (Names{L"a.txt", L"kept.txt"}));
  }
}

TEST_F(HostileArchive, position_behind_the_file_is_refused) {
  HandMade archive;
  archive.entries = {{"a.txt", "uno"}, {"b.txt", "due"}};
  std::string bytes = archive.bytes();
  bytes.replace(279, 4, image<std::int32_t>(INT32_MAX));
  make_file(L"a.kwc", bytes);
  EXPECT_TRUE(unzip(0));
  expect_record(20002, kSource, L"Errore di CRC nel file b.txt");
}

TEST_F(HostileArchive, counts_beyond_the_file_take_no_memory_and_are_refused) {
  HandMade archive;
  archive.entries = {{"a.txt", "uno"}};
  const std::string good = archive.bytes();
  // The number of entries, then of blocks, each with its descriptor.
  for (const std::size_t at : {265U, 279U + 295U}) {
    std::string bytes = good;
    bytes.replace(at, 4, image<std::int32_t>(INT32_MAX));
    bytes.replace(at + 6, 4, image<std::int32_t>(INT32_MAX));
    make_file(L"a.kwc", bytes);
    EXPECT_TRUE(unzip(0));
    expect_record(20000, kSource,
                  L"Il file " + path(L"a.kwc") + L" non è un file compresso o è corrotto.");
  }
}

// The system keeps these names for devices, in every folder.
TEST_F(HostileArchive, names_of_devices_are_no_files) {
  for (const char* name : {"NUL", "con.txt", "sub\\COM1", "aux", "LPT1.log"}) {
    for (const LONG flags : {0L, kStorePath}) {
      make_archive(std::string("C:\\Dati\\") + name);
      EXPECT_TRUE(unzip(flags)) << name;
      EXPECT_EQ(contents(L"out\\kept.txt"), "kept");
      for (const auto& left : names_in(L"out")) {
        EXPECT_TRUE(left == L"kept.txt" || left == L"sub") << name;
      }
      global_->Reset_Error();
    }
  }
}

// The portable reader meets every bit of the head; here it is one bit of each byte that means
// something.
TEST_F(HostileArchive, flipped_bits_of_the_head_end_in_bounded_time_and_inside_the_target) {
  HandMade archive;
  archive.parent = "C:\\Dati\\";
  archive.entries = {{"C:\\Dati\\sub\\a.txt", "uno"}};
  const std::string good = archive.bytes();
  for (std::size_t byte = 0; byte < good.size(); ++byte) {
    if (good[byte] == ' ') continue;
    std::string bytes = good;
    bytes[byte] = static_cast<char>(bytes[byte] ^ 1 << byte % 8);
    make_file(L"a.kwc", bytes);
    unzip(kStorePath);
    ASSERT_EQ(names_in(L""), (Names{L"a.kwc", L"out", L"victim.txt"})) << byte;
  }
  global_->Reset_Error();
  EXPECT_EQ(contents(L"victim.txt"), "untouched");
  EXPECT_EQ(contents(L"out\\kept.txt"), "kept");
}

}  // namespace
}  // namespace qv::tests
