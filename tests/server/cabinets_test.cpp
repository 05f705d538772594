// The CAB... members, through the platform's cabinet services.
#include <filesystem>
#include <random>

#include "server/archive_fixture.h"

namespace qv::tests {
namespace {

using namespace std::string_literals;
using Names = std::vector<std::wstring>;

constexpr LONG kDiskette = 1457664;

class Cabinets : public ArchiveTest {
 protected:
  std::wstring list_of(const Names& names) const {
    std::wstring list;
    for (const auto& name : names) list += path(name) + L'\0';
    return list;
  }
  bool create_set(String& files, LONG size = kDiskette, LONG* count = nullptr,
                  const wchar_t* name = L"set.cab") {
    String folder(path(L"cabs"));
    String cabinet(name);
    VARIANT_BOOL failed = VARIANT_FALSE;
    EXPECT_EQ(global_->CABFileCreateEx(&files, &folder, &cabinet, &size, count, &failed), S_OK);
    return failed != VARIANT_FALSE;
  }
  bool extract(const std::wstring& list, LONG flags = 0, const wchar_t* name = L"cabs\\set.cab") {
    String cabinet(path(name));
    String target(path(L"out"));
    VARIANT_BOOL failed = VARIANT_FALSE;
    EXPECT_EQ(global_->CABFileExtract(&cabinet, String(list), &target, &flags, &failed), S_OK);
    return failed != VARIANT_FALSE;
  }
  bool info(String& list, LONG& count, const wchar_t* name = L"cabs\\set.cab") {
    String cabinet(path(name));
    VARIANT_BOOL failed = VARIANT_FALSE;
    EXPECT_EQ(global_->CABFileInfoEx(&cabinet, &list, &count, &failed), S_OK);
    return failed != VARIANT_FALSE;
  }
  static Names names_of(const String& list) {
    Names names;
    for (auto rest = list.view(); !rest.empty();) {
      const auto length = rest.find(L'\0');
      names.emplace_back(rest.substr(0, length));
      rest.remove_prefix(length + 11);
    }
    return names;
  }
  void SetUp() override {
    ArchiveTest::SetUp();
    make_folder(L"cabs");
    make_file(L"a.txt", wordy_bytes(50000));
    make_file(L"b.bin", noise_bytes(40000));
    make_file(L"empty", "");
  }
};

TEST_F(Cabinets, files_come_back_byte_for_byte) {
  String files(list_of({L"a.txt", L"b.bin", L"empty"}));
  LONG count = 0;
  ASSERT_FALSE(create_set(files, kDiskette, &count));
  EXPECT_EQ(count, 1);
  ASSERT_FALSE(extract(L""));
  EXPECT_EQ(names_in(L"out"), (Names{L"a.txt", L"b.bin", L"empty"}));
  EXPECT_EQ(contents(L"out\\a.txt"), wordy_bytes(50000));
  EXPECT_EQ(contents(L"out\\b.bin"), noise_bytes(40000));
}

TEST_F(Cabinets, list_gets_the_terminators_that_it_lacks) {
  const std::wstring name = path(L"a.txt");
  const std::wstring complete = name + std::wstring(2, L'\0');
  for (const std::size_t given : {0U, 1U, 2U}) {
    String files(name + std::wstring(given, L'\0'));
    EXPECT_FALSE(create_set(files));
    EXPECT_EQ(files.view(), complete) << given;
  }
  String none;
  EXPECT_TRUE(create_set(none));
  EXPECT_EQ(none.view(), std::wstring(2, L'\0'));
  expect_record(20001, L"KwRtLibMod.CABFileCreate", L"Nessun file da comprimere.");
}

TEST_F(Cabinets, info_tells_names_sizes_dates_and_attributes) {
  SetFileAttributesW(path(L"a.txt").c_str(), FILE_ATTRIBUTE_ARCHIVE);
  String files(list_of({L"a.txt", L"empty"}));
  ASSERT_FALSE(create_set(files));
  String list;
  LONG count = 0;
  ASSERT_FALSE(info(list, count));
  EXPECT_EQ(count, 1);
  EXPECT_EQ(names_of(list), (Names{L"a.txt", L"empty"}));
  ASSERT_EQ(list.length(), 5U + 11 + 5 + 11);
  String size(list.view().substr(6, 4));
  LONG bytes = 0;
  global_->Str_2_Long(&size, &bytes);
  EXPECT_EQ(bytes, 50000);
  SYSTEMTIME now;
  GetLocalTime(&now);
  String date(list.view().substr(10, 2));
  SHORT packed = 0;
  global_->Str_2_Int(&date, &packed);
  EXPECT_EQ((packed >> 9 & 0x7F) + 1980, now.wYear);
  String attributes(list.view().substr(14, 2));
  global_->Str_2_Int(&attributes, &packed);
  EXPECT_EQ(packed, FILE_ATTRIBUTE_ARCHIVE);
}

TEST_F(Cabinets, list_of_the_format_page_is_told) {
  make_file(L"a.txt", "salve");
  const SYSTEMTIME fields{2001, 2, 6, 3, 4, 5, 6, 0};
  FILETIME time;
  SystemTimeToFileTime(&fields, &time);
  LocalFileTimeToFileTime(&time, &time);
  const HANDLE file = CreateFileW(path(L"a.txt").c_str(), FILE_WRITE_ATTRIBUTES, 0, nullptr,
                                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  SetFileTime(file, nullptr, nullptr, &time);
  CloseHandle(file);
  String files(list_of({L"a.txt"}));
  ASSERT_FALSE(create_set(files));
  String list;
  LONG count = 0;
  ASSERT_FALSE(info(list, count));
  // Characters that code page 1252 has at their own codes.
  std::wstring expected;
  for (const unsigned char byte : format_example("cabinet-list.md")) expected += byte;
  EXPECT_EQ(list.view(), expected);
}

TEST_F(Cabinets, short_forms_do_the_same_without_a_count) {
  String files(list_of({L"a.txt"}));
  String folder(path(L"cabs\\"));
  String name(L"set.cab");
  VARIANT_BOOL failed = VARIANT_TRUE;
  ASSERT_EQ(global_->CABFileCreate(&files, &folder, &name, nullptr, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  String cabinet(path(L"cabs\\set.cab"));
  String list;
  ASSERT_EQ(global_->CABFileInfo(&cabinet, &list, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_EQ(names_of(list), Names{L"a.txt"});
}

TEST_F(Cabinets, objects_tell_what_the_text_does) {
  String files(list_of({L"a.txt", L"empty"}));
  ASSERT_FALSE(create_set(files));
  String cabinet(path(L"cabs\\set.cab"));
  const auto list = create<_kwCollection>(CLSID_kwCollection);
  _kwCollection* variable = list.get();
  LONG count = 0;
  VARIANT_BOOL failed = VARIANT_TRUE;
  ASSERT_EQ(global_->CABFileInfoExEx(&cabinet, &variable, &count, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_EQ(count, 1);
  ASSERT_EQ(list->Count(&count), S_OK);
  ASSERT_EQ(count, 2);
  Value index(1);
  Value item;
  ASSERT_EQ(list->get_Item(&index, &item), S_OK);
  const auto first = Pointer<_QvtFileInfo>::from(item.pdispVal);
  String name;
  LONG size = 0;
  DATE written = 0;
  DATE created = 0;
  first->get_FileName(&name);
  first->get_FileSize(&size);
  first->get_LastWriteTime(&written);
  first->get_CreationTime(&created);
  EXPECT_EQ(name.view(), L"a.txt");
  EXPECT_EQ(size, 50000);
  EXPECT_EQ(written, created);
  SYSTEMTIME now;
  double today = 0;
  GetLocalTime(&now);
  SystemTimeToVariantTime(&now, &today);
  // Seconds are told halved.
  EXPECT_NEAR(written, today, 0.01);
}

TEST_F(Cabinets, empty_cabinet_gives_an_empty_list) {
  // A head of 36 bytes: signature, size, place of the files, version 1.3, no folders, no files.
  make_file(L"cabs\\set.cab", "MSCF" + image<std::int32_t>(0) + image<std::int32_t>(36) +
                                  image<std::int32_t>(0) + image<std::int32_t>(36) +
                                  image<std::int32_t>(0) + "\3\1" + std::string(10, '\0'));
  String list(L"what was there");
  LONG count = 0;
  ASSERT_FALSE(info(list, count));
  EXPECT_EQ(list.view(), L"");
  EXPECT_EQ(count, 1);
}

TEST_F(Cabinets, a_set_goes_on_in_further_cabinets) {
  Names names;
  for (int i = 0; i < 6; ++i) {
    names.push_back(L"n" + std::to_wstring(i));
    make_file(names.back(), noise_bytes(static_cast<std::size_t>(30000 + i)));
  }
  for (const auto& [first, second] :
       {std::pair{L"set.cab", L"set2.cab"}, {L"disk1.cab", L"disk2.cab"}}) {
    String files(list_of(names));
    LONG count = 0;
    ASSERT_FALSE(create_set(files, 50000, &count, first));
    EXPECT_GE(count, 4);
    EXPECT_TRUE(exists(L"cabs\\"s + second));
    for (const auto& entry : std::filesystem::directory_iterator(path(L"cabs"))) {
      EXPECT_LE(entry.file_size(), 50000U) << entry.path();
    }
    const std::wstring cabinet = L"cabs\\"s + first;
    String list;
    LONG told = 0;
    ASSERT_FALSE(info(list, told, cabinet.c_str()));
    EXPECT_EQ(told, count);
    EXPECT_EQ(names_of(list), names);
    std::filesystem::remove_all(path(L"out"));
    ASSERT_FALSE(extract(L"", 0, cabinet.c_str()));
    for (int i = 0; i < 6; ++i) {
      EXPECT_EQ(contents(L"out\\n" + std::to_wstring(i)),
                noise_bytes(static_cast<std::size_t>(30000 + i)));
    }
    std::filesystem::remove_all(path(L"out"));
    ASSERT_FALSE(extract(L"N4\0"s, 0, cabinet.c_str()));
    EXPECT_EQ(names_in(L"out"), Names{L"n4"});
  }
}

TEST_F(Cabinets, empty_files_may_end_a_set) {
  make_file(L"big", noise_bytes(120000));
  make_file(L"empty too", "");
  String files(list_of({L"big", L"empty", L"empty too"}));
  LONG count = 0;
  ASSERT_FALSE(create_set(files, 50000, &count));
  EXPECT_EQ(count, 3);
  ASSERT_FALSE(extract(L""));
  EXPECT_EQ(names_in(L"out"), (Names{L"big", L"empty", L"empty too"}));
  EXPECT_EQ(contents(L"out\\big"), noise_bytes(120000));
  EXPECT_EQ(contents(L"out\\empty"), "");
}

TEST_F(Cabinets, sets_of_any_files_and_sizes_come_back) {
  std::mt19937 random(1);
  const auto below = [&](std::uint32_t limit) {
    return static_cast<std::size_t>(random() % limit);
  };
  for (int round = 0; round < 40; ++round) {
    Names names;
    std::vector<std::string> all;
    const std::size_t files = 1 + below(5);
    for (std::size_t i = 0; i < files; ++i) {
      const std::size_t size = below(4) == 0 ? below(3) * 32768 : below(100000);
      all.push_back(below(2) == 0 ? wordy_bytes(size) : noise_bytes(size));
      names.push_back(L"f" + std::to_wstring(i));
      make_file(names.back(), all.back());
    }
    const auto limit = static_cast<LONG>(8000 + below(150000));
    String list(list_of(names));
    LONG count = 0;
    LONG told = 0;
    ASSERT_FALSE(create_set(list, limit, &count)) << round;
    String records;
    ASSERT_FALSE(info(records, told)) << round;
    EXPECT_EQ(told, count) << round;
    EXPECT_EQ(names_of(records), names) << round;
    ASSERT_FALSE(extract(L"")) << round;
    for (std::size_t i = 0; i < files; ++i)
      EXPECT_EQ(contents(L"out\\" + names[i]), all[i]) << round;
    const std::size_t one = below(static_cast<std::uint32_t>(files));
    std::filesystem::remove_all(path(L"out"));
    ASSERT_FALSE(extract(names[one])) << round;
    EXPECT_EQ(names_in(L"out"), Names{names[one]}) << round;
    EXPECT_EQ(contents(L"out\\" + names[one]), all[one]) << round;
    std::filesystem::remove_all(path(L"cabs"));
    make_folder(L"cabs");
  }
}

TEST_F(Cabinets, small_cabinets_make_long_sets) {
  make_file(L"c", noise_bytes(3000));
  String files(list_of({L"c"}));
  LONG count = 0;
  ASSERT_FALSE(create_set(files, 150, &count));
  EXPECT_GT(count, 30);
  ASSERT_FALSE(extract(L""));
  EXPECT_EQ(contents(L"out\\c"), noise_bytes(3000));
}

TEST_F(Cabinets, cabinets_too_small_for_any_data_are_refused_and_none_is_left) {
  make_file(L"c", noise_bytes(3000));
  for (const Names& names : {Names{L"c"}, Names{L"c", L"a.txt", L"empty"}}) {
    for (const LONG size : {1, 36, 60, 91, 93}) {
      String files(list_of(names));
      LONG count = 77;
      EXPECT_TRUE(create_set(files, size, &count)) << size;
      EXPECT_EQ(count, 77);
      EXPECT_EQ(names_in(L"cabs"), Names{}) << size;
      expect_record(20009, L"KwRtLibMod.CABFileCreate", L"Il cabinet supera i limiti del formato.");
    }
  }
}

TEST_F(Cabinets, missing_cabinet_of_a_set_is_told) {
  make_file(L"big", noise_bytes(120000));
  String files(list_of({L"big"}));
  ASSERT_FALSE(create_set(files, 50000));
  DeleteFileW(path(L"cabs\\set2.cab").c_str());
  EXPECT_TRUE(extract(L""));
  EXPECT_EQ(names_in(L"out"), Names{});
  expect_record(20001, L"KwRtLibMod.CABFileExtract",
                L"Cabinet non trovato: " + path(L"cabs\\set2.cab"));
  // What there is can still be listed.
  String list;
  LONG count = 0;
  EXPECT_FALSE(info(list, count));
  EXPECT_EQ(names_of(list), Names{L"big"});
  EXPECT_EQ(count, 1);
}

TEST_F(Cabinets, stored_folders_are_restored_when_asked) {
  wchar_t before[kLongestPath];
  GetCurrentDirectoryW(kLongestPath, before);
  make_folder(L"sub");
  make_file(L"sub\\c.txt", "ciao");
  SetCurrentDirectoryW(path(L"").c_str());
  String files(L"sub\\c.txt");
  const bool failed = create_set(files);
  SetCurrentDirectoryW(before);
  ASSERT_FALSE(failed);
  String list;
  LONG count = 0;
  ASSERT_FALSE(info(list, count));
  EXPECT_EQ(names_of(list), Names{L"sub\\c.txt"});
  ASSERT_FALSE(extract(L"", 1));
  EXPECT_EQ(contents(L"out\\sub\\c.txt"), "ciao");
  std::filesystem::remove_all(path(L"out"));
  ASSERT_FALSE(extract(L"SUB\\C.TXT"));
  EXPECT_EQ(names_in(L"out"), Names{L"c.txt"});
}

TEST_F(Cabinets, names_of_any_script_come_back) {
  make_file(L"\x4E2D\xE8.txt", "ciao");
  String files(list_of({L"\x4E2D\xE8.txt"}));
  ASSERT_FALSE(create_set(files));
  ASSERT_FALSE(extract(L""));
  EXPECT_EQ(contents(L"out\\\x4E2D\xE8.txt"), "ciao");
}

TEST_F(Cabinets, dates_and_attributes_come_back) {
  SetFileAttributesW(path(L"a.txt").c_str(), FILE_ATTRIBUTE_READONLY);
  String files(list_of({L"a.txt"}));
  ASSERT_FALSE(create_set(files));
  ASSERT_FALSE(extract(L""));
  ASSERT_FALSE(extract(L""));  // replaces a read-only file
  WIN32_FILE_ATTRIBUTE_DATA before;
  WIN32_FILE_ATTRIBUTE_DATA after;
  GetFileAttributesExW(path(L"a.txt").c_str(), GetFileExInfoStandard, &before);
  GetFileAttributesExW(path(L"out\\a.txt").c_str(), GetFileExInfoStandard, &after);
  EXPECT_NE(after.dwFileAttributes & FILE_ATTRIBUTE_READONLY, 0U);
  const auto seconds = [](const FILETIME& time) {
    return (static_cast<std::uint64_t>(time.dwHighDateTime) << 32 | time.dwLowDateTime) / 10000000;
  };
  EXPECT_NEAR(static_cast<double>(seconds(after.ftLastWriteTime)),
              static_cast<double>(seconds(before.ftLastWriteTime)), 2.0);
  SetFileAttributesW(path(L"a.txt").c_str(), FILE_ATTRIBUTE_NORMAL);
  SetFileAttributesW(path(L"out\\a.txt").c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST_F(Cabinets, missing_source_is_told_by_name_and_leaves_no_cabinet) {
  String files(list_of({L"a.txt", L"missing"}));
  EXPECT_TRUE(create_set(files));
  EXPECT_EQ(names_in(L"cabs"), Names{});
  expect_record(20001, L"KwRtLibMod.CABFileCreate",
                L"Impossibile aprire il file " + path(L"missing"));
}

TEST_F(Cabinets, folder_that_is_missing_is_a_failure) {
  String files(list_of({L"a.txt"}));
  String folder(path(L"missing"));
  String name(L"set.cab");
  VARIANT_BOOL failed = VARIANT_FALSE;
  ASSERT_EQ(global_->CABFileCreate(&files, &folder, &name, nullptr, &failed), S_OK);
  EXPECT_NE(failed, VARIANT_FALSE);
  expect_record(20006, L"KwRtLibMod.CABFileCreate", L"Impossibile scrivere il cabinet.");
}

TEST_F(Cabinets, missing_cabinet_and_what_is_none_are_told) {
  String list(L"stays");
  LONG count = 77;
  EXPECT_TRUE(info(list, count));
  expect_record(20001, L"KwRtLibMod.CABFileInfo",
                L"Cabinet non trovato: " + path(L"cabs\\set.cab"));
  make_file(L"cabs\\set.cab", "no cabinet at all, but long enough for a head of one");
  EXPECT_TRUE(info(list, count));
  expect_record(20002, L"KwRtLibMod.CABFileInfo",
                L"Il file non è un cabinet: " + path(L"cabs\\set.cab"));
  EXPECT_TRUE(extract(L""));
  expect_record(20002, L"KwRtLibMod.CABFileExtract",
                L"Il file non è un cabinet: " + path(L"cabs\\set.cab"));
  EXPECT_EQ(list.view(), L"stays");
  EXPECT_EQ(count, 77);
}

TEST_F(Cabinets, file_that_the_cabinet_lacks_is_told) {
  String files(list_of({L"a.txt"}));
  ASSERT_FALSE(create_set(files));
  EXPECT_TRUE(extract(L"a.txt\0other.txt"s));
  expect_record(20053, L"KwRtLibMod.CABFileExtract", L"Il cabinet non contiene il file other.txt");
  EXPECT_EQ(names_in(L"out"), Names{L"a.txt"});
}

TEST_F(Cabinets, damaged_cabinet_leaves_what_was_there) {
  String files(list_of({L"b.bin"}));
  ASSERT_FALSE(create_set(files));
  const std::string good = contents(L"cabs\\set.cab");
  // In the first block of 32768 bytes and in the second.
  for (const std::size_t damage : {good.size() / 2, good.size() - 100}) {
    std::string bytes = good;
    for (std::size_t i = damage; i < damage + 50; ++i) bytes[i] ^= 0x55;
    make_file(L"cabs\\set.cab", bytes);
    std::filesystem::remove_all(path(L"out"));
    EXPECT_TRUE(extract(L""));
    EXPECT_EQ(names_in(L"out"), Names{});
    make_file(L"out\\b.bin", "what was there");
    EXPECT_TRUE(extract(L""));
    EXPECT_EQ(names_in(L"out"), Names{L"b.bin"});
    EXPECT_EQ(contents(L"out\\b.bin"), "what was there");
  }
  global_->Reset_Error();
}

TEST_F(Cabinets, cabinet_that_ends_early_is_refused_at_every_length) {
  String files(list_of({L"b.bin", L"a.txt"}));
  ASSERT_FALSE(create_set(files));
  const std::string good = contents(L"cabs\\set.cab");
  for (std::size_t length = 0; length < good.size(); length += length < 200 ? 7 : 2111) {
    make_file(L"cabs\\set.cab", good.substr(0, length));
    EXPECT_TRUE(extract(L"")) << length;
    EXPECT_FALSE(exists(L"out\\a.txt")) << length;
    global_->Reset_Error();
  }
}

TEST_F(Cabinets, stored_name_that_climbs_is_refused) {
  make_file(L"victim", "evil");
  String files(list_of({L"victim"}));
  ASSERT_FALSE(create_set(files));
  std::string bytes = contents(L"cabs\\set.cab");
  const std::size_t at = bytes.find("victim");
  ASSERT_NE(at, bytes.npos);
  for (const char* name : {"..\\vic", "../vic", "\\victi", "C:\\vic", "C:vict", "x\\..\\y"}) {
    bytes.replace(at, 6, name);
    make_file(L"cabs\\set.cab", bytes);
    EXPECT_TRUE(extract(L"", 1)) << name;
    const std::wstring wide(name, name + 6);
    expect_record(20008, L"KwRtLibMod.CABFileExtract",
                  L"Il nome " + wide + L" conduce fuori dalla cartella di destinazione.");
    EXPECT_EQ(names_in(L"out"), Names{});
  }
}

TEST_F(Cabinets, target_that_cannot_be_written_is_told_by_name) {
  String files(list_of({L"a.txt"}));
  ASSERT_FALSE(create_set(files));
  make_folder(L"out");
  make_folder(L"out\\a.txt");
  EXPECT_TRUE(extract(L""));
  expect_record(20008, L"KwRtLibMod.CABFileExtract",
                L"Impossibile scrivere il file " + path(L"out\\a.txt"));
}

}  // namespace
}  // namespace qv::tests
