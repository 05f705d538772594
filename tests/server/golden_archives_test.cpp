// Archives that another writer made (tests/golden/archives/make.py), and the one of the format's
// page, through the public members. The tests run in the repository's folder.
#include "server/archive_fixture.h"

namespace qv::tests {
namespace {

using Names = std::vector<std::wstring>;

constexpr LONG kStorePath = 1;

class GoldenArchives : public ArchiveTest {
 protected:
  bool unzip_golden(const wchar_t* name, LONG flags) {
    CopyFileW((std::wstring(L"tests\\golden\\archives\\") + name + L".kwc").c_str(),
              path(L"a.kwc").c_str(), FALSE);
    return unzip(flags);
  }
};

TEST_F(GoldenArchives, files_of_every_division_are_restored) {
  ASSERT_FALSE(unzip_golden(L"sizes", kStorePath));
  EXPECT_EQ(names_in(L"out"), (Names{L"empty", L"full", L"full and one", L"one", L"two full"}));
  EXPECT_EQ(contents(L"out\\empty"), "");
  EXPECT_EQ(contents(L"out\\one"), "x");
  EXPECT_EQ(contents(L"out\\full"), wordy_bytes(32767));
  EXPECT_EQ(contents(L"out\\full and one"), wordy_bytes(32768));
  EXPECT_EQ(contents(L"out\\two full"), wordy_bytes(65534));
}

TEST_F(GoldenArchives, blocks_of_every_kind_are_restored) {
  ASSERT_FALSE(unzip_golden(L"codings", kStorePath));
  EXPECT_EQ(contents(L"out\\sub\\binary and text"), wordy_bytes(6 * 32767));
  EXPECT_EQ(contents(L"out\\sub\\stored"), noise_bytes(40000));
  EXPECT_EQ(contents(L"out\\sub\\by turns"),
            noise_bytes(32767) + wordy_bytes(32767) + noise_bytes(9));
  EXPECT_EQ(contents(L"out\\sub\\deeper\\perch\xE8.txt"), "ciao ciao ciao ciao ciao");
}

TEST_F(GoldenArchives, versions_are_told_apart) {
  EXPECT_FALSE(unzip_golden(L"version_255", 0));
  EXPECT_EQ(contents(L"out\\a.txt"), "ciao");
  EXPECT_TRUE(unzip_golden(L"version_257", 0));
  expect_record(20001, L"Module.FileUnzip",
                L"Il file " + path(L"a.kwc") +
                    L" è stato realizzato con una versione posteriore del programma.");
}

TEST_F(GoldenArchives, archive_without_a_parent_has_no_structure) {
  EXPECT_TRUE(unzip_golden(L"no_parent", kStorePath));
  expect_record(20004, L"Module.FileUnzip",
                L"Impossibile ripristinare la struttura originaria della directory.");
  EXPECT_FALSE(unzip_golden(L"no_parent", 0));
  EXPECT_EQ(contents(L"out\\a.txt"), "ciao");
}

TEST_F(GoldenArchives, example_of_the_format_page_is_restored) {
  make_file(L"a.kwc", format_example("compressed-file.md"));
  ASSERT_FALSE(unzip(kStorePath));
  EXPECT_EQ(contents(L"out\\Sub\\a.txt"), "ciao ciao ciao ciao ciao");
}

}  // namespace
}  // namespace qv::tests
