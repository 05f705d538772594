// FileUnzip, FileUnzipEx and FileUnzipInfo: what they restore, what they tell, what a failure
// leaves.
#include <filesystem>

#include "server/archive_fixture.h"
#include "server/file_holder.h"
#include "server/zip_events.h"

namespace qv::tests {
namespace {

using Names = std::vector<std::wstring>;

constexpr LONG kStorePath = 1;
constexpr LONG kKeepAttributes = 2;
constexpr const wchar_t* kSource = L"Module.FileUnzip";

class FileUnzip : public ArchiveTest {
 protected:
  // An archive with the names "C:\Dati\..." and their contents.
  void make_archive(const std::vector<HandMade::Entry>& entries, std::int16_t version = 256) {
    HandMade archive;
    archive.version = version;
    archive.parent = "C:\\Dati\\";
    archive.entries = entries;
    make_file(L"a.kwc", archive.bytes());
  }
  // Bytes in place of others.
  void change_archive(std::size_t offset, const std::string& bytes) {
    std::string archive = contents(L"a.kwc");
    archive.replace(offset, bytes.size(), bytes);
    make_file(L"a.kwc", archive);
  }
  DWORD attributes(const std::wstring& name) const {
    return GetFileAttributesW(path(name).c_str());
  }
  double write_date(const std::wstring& name) const {
    WIN32_FILE_ATTRIBUTE_DATA facts;
    GetFileAttributesExW(path(name).c_str(), GetFileExInfoStandard, &facts);
    FILETIME local;
    SYSTEMTIME time;
    double date = 0;
    FileTimeToLocalFileTime(&facts.ftLastWriteTime, &local);
    FileTimeToSystemTime(&local, &time);
    SystemTimeToVariantTime(&time, &date);
    return date;
  }
  bool unzip_ex(_kwCollection* list, LONG flags = kKeepAttributes) {
    String source(path(L"a.kwc"));
    String target(path(L"out"));
    VARIANT_BOOL failed = VARIANT_FALSE;
    EXPECT_EQ(global_->FileUnzipEx(&source, &target, &flags, &list, &failed), S_OK);
    return failed != VARIANT_FALSE;
  }
  static Pointer<_kwCollection> list_of(
      const std::vector<std::pair<const wchar_t*, const wchar_t*>>& items) {
    const auto list = create<_kwCollection>(CLSID_kwCollection);
    for (const auto& [key, item] : items) {
      Value item_value(item);
      Value key_value(key);
      Value missing = Value::missing();
      EXPECT_EQ(list->Add(&item_value, &key_value, &missing, &missing), S_OK);
    }
    return list;
  }
};

TEST_F(FileUnzip, files_come_back_byte_for_byte) {
  const std::vector<std::pair<std::wstring, std::string>> kFiles = {
      {L"empty", ""},
      {L"one", "x"},
      {L"words", wordy_bytes(100000)},
      {L"noise", noise_bytes(70000)},
      {L"full", wordy_bytes(32767)},
      {L"full and one", wordy_bytes(32768)},
      {L"two full", wordy_bytes(65534)},
  };
  std::vector<std::wstring> names;
  for (const auto& [name, bytes] : kFiles) {
    make_file(name, bytes);
    names.push_back(name);
  }
  ASSERT_FALSE(zip(sources(names)));
  ASSERT_FALSE(unzip());
  for (const auto& [name, bytes] : kFiles) EXPECT_EQ(contents(L"out\\" + name), bytes);
  EXPECT_EQ(names_in(L"out").size(), kFiles.size());
}

TEST_F(FileUnzip, default_flags_put_all_files_directly_into_the_target) {
  make_archive({{"C:\\Dati\\uno\\a.txt", "primo"}, {"C:\\Dati\\due\\tre\\b.txt", "secondo"}});
  String source(path(L"a.kwc"));
  String target(path(L"out"));
  VARIANT_BOOL failed = VARIANT_TRUE;
  ASSERT_EQ(global_->FileUnzip(&source, &target, nullptr, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_EQ(names_in(L"out"), (Names{L"a.txt", L"b.txt"}));
  EXPECT_EQ(contents(L"out\\b.txt"), "secondo");
}

TEST_F(FileUnzip, stored_folders_are_restored_below_the_target) {
  make_archive({{"C:\\Dati\\a.txt", "primo"}, {"C:\\Dati\\due\\tre\\b.txt", "secondo"}});
  ASSERT_FALSE(unzip(kStorePath));
  EXPECT_EQ(contents(L"out\\a.txt"), "primo");
  EXPECT_EQ(contents(L"out\\due\\tre\\b.txt"), "secondo");
  EXPECT_EQ(names_in(L"out"), (Names{L"a.txt", L"due"}));
}

TEST_F(FileUnzip, a_tree_of_folders_comes_back) {
  make_folder(L"tree");
  make_folder(L"tree\\sub");
  make_folder(L"tree\\sub\\empty");
  make_file(L"tree\\a.txt", "primo");
  make_file(L"tree\\sub\\b.txt", wordy_bytes(40000));
  ASSERT_FALSE(zip(
      sources({L"tree", L"tree\\a.txt", L"tree\\sub", L"tree\\sub\\b.txt", L"tree\\sub\\empty"}),
      L"a.kwc", path(L"tree")));
  ASSERT_FALSE(unzip(kStorePath | kKeepAttributes));
  EXPECT_EQ(names_in(L"out"), (Names{L"a.txt", L"sub"}));
  EXPECT_EQ(names_in(L"out\\sub"), (Names{L"b.txt", L"empty"}));
  EXPECT_EQ(contents(L"out\\sub\\b.txt"), wordy_bytes(40000));
  EXPECT_NE(attributes(L"out\\sub\\empty") & FILE_ATTRIBUTE_DIRECTORY, 0U);
}

TEST_F(FileUnzip, folder_without_its_path_is_made_in_the_target) {
  make_archive({{"C:\\Dati\\uno\\due", "", 16}});
  ASSERT_FALSE(unzip());
  EXPECT_EQ(names_in(L"out"), Names{L"due"});
}

TEST_F(FileUnzip, folder_has_no_data_whatever_blocks_it_lists) {
  make_archive({{"C:\\Dati\\sub", "not there", 16}, {"C:\\Dati\\a.txt", "ciao"}});
  ASSERT_FALSE(unzip());
  EXPECT_EQ(contents(L"out\\a.txt"), "ciao");
}

TEST_F(FileUnzip, stored_folders_need_a_stored_parent) {
  make_file(L"a.txt", "ciao");
  ASSERT_FALSE(zip(path(L"a.txt").c_str()));
  EXPECT_TRUE(unzip(kStorePath));
  EXPECT_FALSE(exists(L"out"));
  expect_record(20004, kSource,
                L"Impossibile ripristinare la struttura originaria della directory.");
}

TEST_F(FileUnzip, target_of_several_levels_is_created) {
  make_archive({{"C:\\Dati\\a.txt", "ciao"}});
  ASSERT_FALSE(unzip(kKeepAttributes, L"a.kwc", L"x\\y\\z"));
  EXPECT_EQ(contents(L"x\\y\\z\\a.txt"), "ciao");
}

TEST_F(FileUnzip, dates_are_restored) {
  make_archive({{"C:\\Dati\\a.txt", "ciao", 32, 36526.5, 36527.25}});
  ASSERT_FALSE(unzip());
  EXPECT_NEAR(write_date(L"out\\a.txt"), 36527.25, 1e-5);
}

TEST_F(FileUnzip, attributes_are_restored_only_when_asked) {
  make_archive({{"C:\\Dati\\a.txt", "ciao", 32 | 1}});
  ASSERT_FALSE(unzip(0));
  EXPECT_EQ(attributes(L"out\\a.txt") & FILE_ATTRIBUTE_READONLY, 0U);
  ASSERT_FALSE(unzip(kKeepAttributes));
  EXPECT_NE(attributes(L"out\\a.txt") & FILE_ATTRIBUTE_READONLY, 0U);
  EXPECT_NEAR(write_date(L"out\\a.txt"), 36527.25, 1e-5);
  // A read-only file is replaced too.
  ASSERT_FALSE(unzip(0));
  EXPECT_EQ(attributes(L"out\\a.txt") & FILE_ATTRIBUTE_READONLY, 0U);
}

TEST_F(FileUnzip, attributes_that_no_file_can_be_given_are_left_out) {
  make_archive({{"C:\\Dati\\a.txt", "ciao", 0x7FFFFFEF & ~1}});
  ASSERT_FALSE(unzip());
  EXPECT_EQ(contents(L"out\\a.txt"), "ciao");
}

TEST_F(FileUnzip, lower_version_is_read_and_a_later_one_refused) {
  make_archive({{"C:\\Dati\\a.txt", "ciao"}}, 255);
  EXPECT_FALSE(unzip());
  make_archive({{"C:\\Dati\\a.txt", "ciao"}}, 257);
  EXPECT_TRUE(unzip());
  expect_record(20001, kSource,
                L"Il file " + path(L"a.kwc") +
                    L" è stato realizzato con una versione posteriore del programma.");
}

TEST_F(FileUnzip, what_is_no_archive_is_refused) {
  for (const char* bytes : {"", "KW", "KWCG and more", "PK\3\4"}) {
    make_file(L"a.kwc", bytes);
    EXPECT_TRUE(unzip());
    expect_record(20000, kSource,
                  L"Il file " + path(L"a.kwc") + L" non è un file compresso o è corrotto.");
  }
  EXPECT_FALSE(exists(L"out"));
}

TEST_F(FileUnzip, missing_archive_is_told_by_name) {
  EXPECT_TRUE(unzip());
  expect_record(53, kSource, L"Impossibile aprire il file " + path(L"a.kwc"));
}

TEST_F(FileUnzip, temporary_file_that_cannot_be_made_is_told) {
  make_archive({{"C:\\Dati\\a.txt", "ciao"}});
  make_file(L"out", "a file where a folder should be");
  EXPECT_TRUE(unzip());
  // No name is free in what is no folder.
  expect_record(20003, kSource, L"Impossibile creare il file temporaneo ");
}

TEST_F(FileUnzip, damage_in_any_block_leaves_what_has_the_final_name) {
  const std::string original = noise_bytes(32767) + wordy_bytes(32767) + noise_bytes(10);
  make_file(L"a.bin", original);
  ASSERT_FALSE(zip(path(L"a.bin").c_str()));
  const std::string good = contents(L"a.kwc");
  make_folder(L"out");
  make_file(L"out\\a.bin", "what was there");
  for (const std::size_t offset :
       {good.size() - 1, good.size() - 12, std::size_t{279 + 309 + 15}}) {
    make_file(L"a.kwc", good);
    change_archive(offset, std::string(1, static_cast<char>(good[offset] ^ 0x10)));
    EXPECT_TRUE(unzip()) << offset;
    EXPECT_EQ(contents(L"out\\a.bin"), "what was there");
    EXPECT_EQ(names_in(L"out"), Names{L"a.bin"});
    global_->Reset_Error();
  }
}

TEST_F(FileUnzip, wrong_checksum_is_told_by_the_stored_name) {
  make_archive({{"C:\\Dati\\a.txt", "ciao"}});
  change_archive(279 + 291, "....");
  EXPECT_TRUE(unzip());
  EXPECT_EQ(names_in(L"out"), Names{});
  expect_record(20002, kSource, L"Errore di CRC nel file C:\\Dati\\a.txt");
}

TEST_F(FileUnzip, damaged_compressed_block_is_told_as_PkUnzip_does) {
  const struct {
    std::string packed;
    LONG number;
  } kDamages[] = {
      {std::string("\0\7\x82\x24", 4), 20001},
      {std::string("\2\4\x82\x24", 4), 20002},
      {std::string("\0\4\x82\x24", 4), 20003},
  };
  for (const auto& damage : kDamages) {
    make_archive({{"C:\\Dati\\a.txt", "AIAIAIAIAIAIA", 32, 1, 1, "C", damage.packed}});
    EXPECT_TRUE(unzip());
    EXPECT_EQ(names_in(L"out"), Names{});
    expect_record(damage.number, L"KwRtLibMod.PkUnzip", L"Errore nella libreria di compressione.");
  }
}

TEST_F(FileUnzip, block_of_a_smaller_dictionary_is_read) {
  make_archive({{"C:\\Dati\\a.txt", "AIAIAIAIAIAIA", 32, 36526, 36526, "C",
                 std::string("\x00\x04\x82\x24\x25\x8F\x80\x7F", 8)}});
  ASSERT_FALSE(unzip());
  EXPECT_EQ(contents(L"out\\a.txt"), "AIAIAIAIAIAIA");
}

TEST_F(FileUnzip, archive_that_ends_early_is_refused_at_every_length) {
  make_archive({{"C:\\Dati\\a.txt", "ciao"}, {"C:\\Dati\\b.txt", "salve"}});
  const std::string good = contents(L"a.kwc");
  const std::size_t head = good.size() - 9;
  for (std::size_t length = 0; length < good.size(); length += length < head - 3 ? 13 : 1) {
    make_file(L"a.kwc", good.substr(0, length));
    EXPECT_TRUE(unzip()) << length;
    LONG number = 0;
    global_->Error_Number(&number);
    EXPECT_EQ(number, length < head ? 20000 : 20002) << length;
    EXPECT_FALSE(exists(L"out\\b.txt"));
    global_->Reset_Error();
  }
  EXPECT_EQ(contents(L"out\\a.txt"), "ciao");
}

TEST_F(FileUnzip, events_come_before_each_entry_and_after_each_block) {
  make_archive({{"C:\\Dati\\a.bin", noise_bytes(65534)},
                {"C:\\Dati\\sub", "", 16},
                {"C:\\Dati\\b.txt", ""}});
  const auto zipper = create<_ZipFile>(CLSID_ZipFile);
  const ZipEvents events(zipper.get());
  ASSERT_FALSE(unzip_with(zipper));
  const std::vector<ZipEvent> expected{{2, {1, 2, 0}},   {2, {1, 51, 50}}, {2, {1, 100, 100}},
                                       {2, {2, 100, 0}}, {2, {3, 100, 0}}, {2, {3, 100, 100}}};
  EXPECT_EQ(events.told(), expected);
}

TEST_F(FileUnzip, cancel_at_any_event_keeps_what_was_restored) {
  make_archive({{"C:\\Dati\\a.txt", "primo"}, {"C:\\Dati\\b.txt", "secondo"}});
  const auto zipper = create<_ZipFile>(CLSID_ZipFile);
  for (std::size_t at = 1; at <= 4; ++at) {
    std::filesystem::remove_all(path(L"out"));
    std::size_t count = 0;
    const ZipEvents events(zipper.get(), [&](const ZipEvent&) { return ++count == at; });
    EXPECT_TRUE(unzip_with(zipper));
    EXPECT_EQ(count, at);
    EXPECT_EQ(names_in(L"out"), at < 3 ? Names{} : Names{L"a.txt"});
    expect_record(20010, kSource, L"Procedura interrotta dall'utente.");
  }
}

TEST_F(FileUnzip, target_that_is_locked_stays_and_the_temporary_file_goes) {
  make_archive({{"C:\\Dati\\a.txt", "ciao"}});
  make_folder(L"out");
  make_file(L"out\\a.txt", "what was there");
  {
    const FileHolder holder(path(L"out\\a.txt").c_str(), 20000);
    EXPECT_TRUE(unzip());
  }
  EXPECT_EQ(contents(L"out\\a.txt"), "what was there");
  EXPECT_EQ(names_in(L"out"), Names{L"a.txt"});
  LONG number = 0;
  global_->Error_Number(&number);
  EXPECT_EQ(number, 58);
}

TEST_F(FileUnzip, archive_that_is_locked_is_told_by_name) {
  make_archive({{"C:\\Dati\\a.txt", "ciao"}});
  {
    const FileHolder holder(path(L"a.kwc").c_str(), 20000);
    EXPECT_TRUE(unzip());
  }
  EXPECT_FALSE(exists(L"out"));
  expect_record(70, kSource, L"Impossibile aprire il file " + path(L"a.kwc"));
}

TEST_F(FileUnzip, longest_stored_name_comes_back_below_a_long_folder) {
  const std::string name(253 - 8, 'n');
  make_archive({{"C:\\Dati\\" + name, "ciao"}});
  const std::wstring folder = std::wstring(100, L'f') + L"\\" + std::wstring(100, L'g');
  ASSERT_FALSE(unzip(kStorePath, L"a.kwc", folder));
  const std::wstring restored = folder + L"\\" + std::wstring(name.begin(), name.end());
  EXPECT_EQ(bytes_of_file(L"\\\\?\\" + path(restored)), "ciao");
  std::error_code ignored;
  std::filesystem::remove_all(L"\\\\?\\" + path(std::wstring(100, L'f')), ignored);
}

TEST_F(FileUnzip, name_too_long_for_the_file_system_leaves_nothing) {
  // Behind the target's own name there is room for 255 characters a component, but not for more.
  make_archive({{"C:\\Dati\\a.txt", "ciao"}});
  const std::wstring renamed = path(L"out\\" + std::wstring(300, L'n'));
  const auto list = list_of({{L"C:\\Dati\\a.txt", renamed.c_str()}});
  EXPECT_TRUE(unzip_ex(list.get()));
  EXPECT_EQ(names_in(L"out"), Names{});
  global_->Reset_Error();
}

TEST_F(FileUnzip, folder_in_the_place_of_a_file_is_kept) {
  make_archive({{"C:\\Dati\\a.txt", "ciao"}});
  make_folder(L"out");
  make_folder(L"out\\a.txt");
  EXPECT_TRUE(unzip());
  EXPECT_EQ(names_in(L"out"), Names{L"a.txt"});
  EXPECT_NE(attributes(L"out\\a.txt") & FILE_ATTRIBUTE_DIRECTORY, 0U);
}

TEST_F(FileUnzip, list_selects_in_any_case_and_renames) {
  make_archive(
      {{"C:\\Dati\\a.txt", "primo"}, {"C:\\Dati\\b.txt", "secondo"}, {"C:\\Dati\\c.txt", "terzo"}});
  const std::wstring renamed = path(L"elsewhere\\new.txt");
  const auto list = list_of({{L"c:\\DATI\\A.TXT", L""}, {L"C:\\Dati\\c.txt", renamed.c_str()}});
  ASSERT_FALSE(unzip_ex(list.get()));
  EXPECT_EQ(names_in(L"out"), Names{L"a.txt"});
  EXPECT_EQ(contents(L"elsewhere\\new.txt"), "terzo");
}

TEST_F(FileUnzip, stored_folders_override_the_names_of_a_list) {
  make_archive({{"C:\\Dati\\sub\\a.txt", "primo"}});
  const std::wstring renamed = path(L"new.txt");
  const auto list = list_of({{L"C:\\Dati\\sub\\a.txt", renamed.c_str()}});
  ASSERT_FALSE(unzip_ex(list.get(), kStorePath));
  EXPECT_EQ(contents(L"out\\sub\\a.txt"), "primo");
  EXPECT_FALSE(exists(L"new.txt"));
}

TEST_F(FileUnzip, empty_list_restores_nothing) {
  make_archive({{"C:\\Dati\\a.txt", "primo"}});
  ASSERT_FALSE(unzip_ex(list_of({}).get()));
  EXPECT_EQ(names_in(L"out"), Names{});
}

TEST_F(FileUnzip, data_of_a_file_that_is_not_selected_is_not_read) {
  make_archive(
      {{"C:\\Dati\\a.txt", "primo", 32, 36526, 36526, "C"}, {"C:\\Dati\\b.txt", "secondo"}});
  const auto list = list_of({{L"C:\\Dati\\b.txt", L""}});
  ASSERT_FALSE(unzip_ex(list.get()));
  EXPECT_EQ(contents(L"out\\b.txt"), "secondo");
  EXPECT_TRUE(unzip_ex(nullptr));
}

TEST_F(FileUnzip, events_are_told_for_entries_that_are_not_selected_too) {
  make_archive({{"C:\\Dati\\a.txt", "primo"}, {"C:\\Dati\\b.txt", "secondo"}});
  const auto zipper = create<_ZipFile>(CLSID_ZipFile);
  const ZipEvents events(zipper.get());
  const auto list = list_of({{L"C:\\Dati\\b.txt", L""}});
  ASSERT_FALSE(unzip_with(zipper, kKeepAttributes, list.get()));
  ASSERT_EQ(events.told().size(), 3U);
  EXPECT_EQ(events.told()[0].arguments[0], 1);
  EXPECT_EQ(events.told()[1].arguments[0], 2);
}

class FileUnzipInfo : public FileUnzip {
 protected:
  bool info(_kwCollection* list) {
    String source(path(L"a.kwc"));
    VARIANT_BOOL failed = VARIANT_FALSE;
    EXPECT_EQ(global_->FileUnzipInfo(&source, &list, nullptr, &failed), S_OK);
    return failed != VARIANT_FALSE;
  }
  static LONG count(const Pointer<_kwCollection>& list) {
    LONG result = -1;
    EXPECT_EQ(list->Count(&result), S_OK);
    return result;
  }
};

TEST_F(FileUnzipInfo, every_entry_is_told_and_nothing_is_extracted) {
  make_archive({{"C:\\Dati\\a.txt", "primo", 33, 36526.5, 36527.25}, {"C:\\Dati\\sub", "", 16}});
  const auto list = list_of({{L"old", L"what was there"}});
  ASSERT_FALSE(info(list.get()));
  ASSERT_EQ(count(list), 2);
  Value index(1);
  Value item;
  ASSERT_EQ(list->get_Item(&index, &item), S_OK);
  ASSERT_EQ(item.vt, VT_DISPATCH);
  const auto first = Pointer<_QvtFileInfo>::from(item.pdispVal);
  String name;
  LONG number = 0;
  DATE date = 0;
  first->get_FileName(&name);
  EXPECT_EQ(name.view(), L"C:\\Dati\\a.txt");
  first->get_FileSize(&number);
  EXPECT_EQ(number, 5);
  first->get_FileAttributes(&number);
  EXPECT_EQ(number, 33);
  first->get_MajVer(&number);
  EXPECT_EQ(number, 0x00020001);
  first->get_MinVer(&number);
  EXPECT_EQ(number, 0x00040003);
  first->get_CreationTime(&date);
  EXPECT_EQ(date, 36526.5);
  first->get_LastWriteTime(&date);
  EXPECT_EQ(date, 36527.25);
  first->get_LastAccessTime(&date);
  EXPECT_EQ(date, 36527.25);
  EXPECT_EQ(names_in(L""), Names{L"a.kwc"});
}

TEST_F(FileUnzipInfo, list_is_emptied_also_where_the_archive_is_missing) {
  const auto list = list_of({{L"old", L"what was there"}});
  EXPECT_TRUE(info(list.get()));
  EXPECT_EQ(count(list), 0);
  expect_record(53, L"Module.FileUnzipInfo", L"Impossibile aprire il file " + path(L"a.kwc"));
}

TEST_F(FileUnzipInfo, what_is_no_archive_or_a_later_one_is_refused) {
  const auto list = list_of({});
  make_file(L"a.kwc", "no archive");
  EXPECT_TRUE(info(list.get()));
  expect_record(20000, L"Module.FileUnzipInfo",
                L"Il file " + path(L"a.kwc") + L" non è un file compresso o è corrotto.");
  make_archive({}, 257);
  EXPECT_TRUE(info(list.get()));
  expect_record(20001, L"Module.FileUnzipInfo",
                L"Il file " + path(L"a.kwc") +
                    L" è stato realizzato con una versione posteriore del programma.");
}

TEST_F(FileUnzipInfo, Nothing_in_place_of_a_list_is_refused) {
  make_archive({});
  EXPECT_TRUE(info(nullptr));
  expect_record(91, L"Module.FileUnzipInfo", L"Object variable or With block variable not set");
}

}  // namespace
}  // namespace qv::tests
