// FileZip, of the global class and of ZipFile: what it writes, what it tells, what a failure
// leaves.
#include <optional>

#include "server/archive_fixture.h"
#include "server/file_holder.h"
#include "server/zip_events.h"

namespace qv::tests {
namespace {

using namespace std::string_literals;

constexpr std::size_t kEntries = 279;  // offset of the first entry
constexpr const wchar_t* kSource = L"Module.FileZip";

class FileZip : public ArchiveTest {
 protected:
  // The file's entry from its offset; entries follow each other.
  struct Entry {
    std::size_t offset;
    std::string name;
    std::int32_t next_position, size, major, minor, attributes;
    double created, changed;
    std::uint32_t crc;
    std::string kinds;
    std::vector<int> original_sizes, packed_sizes;
  };
  static std::vector<Entry> entries_of(const std::string& archive) {
    std::vector<Entry> entries;
    std::size_t at = kEntries;
    for (int i = number_at<std::int32_t>(archive, 265); i > 0; --i) {
      Entry entry{};
      entry.offset = at;
      entry.next_position = number_at<std::int32_t>(archive, at);
      const std::string field = archive.substr(at + 4, 255);
      entry.name = field.substr(0, field.find('\0'));
      EXPECT_EQ(field, HandMade::field(entry.name));
      entry.size = number_at<std::int32_t>(archive, at + 259);
      entry.major = number_at<std::int32_t>(archive, at + 263);
      entry.minor = number_at<std::int32_t>(archive, at + 267);
      entry.created = number_at<double>(archive, at + 271);
      entry.changed = number_at<double>(archive, at + 279);
      entry.attributes = number_at<std::int32_t>(archive, at + 287);
      entry.crc = number_at<std::uint32_t>(archive, at + 291);
      const auto blocks = number_at<std::int32_t>(archive, at + 295);
      EXPECT_EQ(archive.substr(at + 295, 14), HandMade::array(static_cast<std::size_t>(blocks)));
      at += 309;
      for (int block = 0; block < blocks; ++block, at += 5) {
        entry.kinds += archive.at(at);
        entry.original_sizes.push_back(number_at<std::int16_t>(archive, at + 1));
        entry.packed_sizes.push_back(number_at<std::int16_t>(archive, at + 3));
      }
      entries.push_back(entry);
    }
    return entries;
  }
  Entry only_entry() {
    const auto entries = entries_of(contents(L"a.kwc"));
    EXPECT_EQ(entries.size(), 1U);
    return entries.empty() ? Entry{} : entries[0];
  }
  std::string narrow(const std::wstring& name) const {
    const auto wide = path(name);
    return std::string(wide.begin(), wide.end());
  }
};

TEST_F(FileZip, head_tells_magic_version_flags_and_parent_folder) {
  make_file(L"a.txt", "ciao");
  ASSERT_FALSE(zip(path(L"a.txt").c_str(), L"a.kwc", path(L""), 3));
  const std::string archive = contents(L"a.kwc");
  EXPECT_EQ(archive.substr(0, 4), "KWCF");
  EXPECT_EQ(number_at<std::int16_t>(archive, 4), 256);
  EXPECT_EQ(number_at<std::int32_t>(archive, 6), 3);
  EXPECT_EQ(archive.substr(10, 255), HandMade::field(narrow(L"")));
  EXPECT_EQ(archive.substr(265, 14), HandMade::array(1));
}

TEST_F(FileZip, parent_folder_is_made_absolute_and_gets_its_backslash) {
  make_file(L"a.txt", "ciao");
  make_folder(L"sub");
  ASSERT_FALSE(zip(path(L"a.txt").c_str(), L"a.kwc", path(L"sub\\..\\.")));
  const std::string parent = narrow(L"");
  EXPECT_EQ(contents(L"a.kwc").substr(10, 255), HandMade::field(parent));
}

TEST_F(FileZip, no_parent_folder_is_a_terminator_alone) {
  make_file(L"a.txt", "ciao");
  ASSERT_FALSE(zip(path(L"a.txt").c_str()));
  EXPECT_EQ(contents(L"a.kwc").substr(10, 255), HandMade::field(""));
}

TEST_F(FileZip, entry_tells_the_facts_of_its_file) {
  make_file(L"a.txt", "ciao ciao ciao ciao ciao");
  SetFileAttributesW(path(L"a.txt").c_str(), FILE_ATTRIBUTE_ARCHIVE);
  ASSERT_FALSE(zip(path(L"a.txt").c_str()));
  const Entry entry = only_entry();
  EXPECT_EQ(entry.name, narrow(L"a.txt"));
  EXPECT_EQ(entry.size, 24);
  EXPECT_EQ(entry.major, 0);
  EXPECT_EQ(entry.minor, 0);
  EXPECT_EQ(entry.attributes, FILE_ATTRIBUTE_ARCHIVE);
  EXPECT_EQ(entry.crc, HandMade::crc_of("ciao ciao ciao ciao ciao"));
  EXPECT_EQ(entry.kinds, "C");
  EXPECT_EQ(entry.next_position, static_cast<std::int32_t>(contents(L"a.kwc").size()) + 1);
  SYSTEMTIME now;
  double today = 0;
  GetLocalTime(&now);
  SystemTimeToVariantTime(&now, &today);
  EXPECT_NEAR(entry.changed, today, 0.01);
  EXPECT_NEAR(entry.created, today, 0.01);
}

// What GetFileVersion says of a file without a version is recorded, and the work goes on.
TEST_F(FileZip, file_without_a_version_leaves_that_in_the_record) {
  make_file(L"a.txt", "ciao");
  ASSERT_FALSE(zip(path(L"a.txt").c_str()));
  LONG number = 0;
  String source;
  global_->Error_Number(&number);
  global_->Error_Source(&source);
  EXPECT_EQ(number, 20000);
  EXPECT_EQ(source.view(), L"KwRtLibMod.GetFileVersion");
}

TEST_F(FileZip, version_of_a_program_is_stored) {
  wchar_t system[kLongestPath];
  GetSystemDirectoryW(system, kLongestPath);
  const std::wstring program = system + L"\\kernel32.dll"s;
  CopyFileW(program.c_str(), path(L"k.dll").c_str(), FALSE);
  ASSERT_FALSE(zip(path(L"k.dll").c_str()));
  EXPECT_NE(only_entry().major, 0);
}

TEST_F(FileZip, blocks_are_divided_at_32767_bytes) {
  const struct {
    std::size_t size;
    std::vector<int> blocks;
  } kDivisions[] = {{0, {0}},
                    {1, {1}},
                    {32766, {32766}},
                    {32767, {32767}},
                    {32768, {32767, 1}},
                    {65534, {32767, 32767}},
                    {65535, {32767, 32767, 1}}};
  for (const auto& division : kDivisions) {
    make_file(L"a.txt", wordy_bytes(division.size));
    ASSERT_FALSE(zip(path(L"a.txt").c_str()));
    EXPECT_EQ(only_entry().original_sizes, division.blocks) << division.size;
  }
}

TEST_F(FileZip, empty_file_has_one_stored_block_of_size_0) {
  make_file(L"a.txt", "");
  ASSERT_FALSE(zip(path(L"a.txt").c_str()));
  const Entry entry = only_entry();
  EXPECT_EQ(entry.kinds, "U");
  EXPECT_EQ(entry.packed_sizes, std::vector<int>{0});
  EXPECT_EQ(entry.crc, 0xFFFFFFFF);
}

TEST_F(FileZip, what_cannot_be_reduced_is_stored_block_by_block) {
  const std::string bytes = noise_bytes(32767) + wordy_bytes(32767) + noise_bytes(100);
  make_file(L"a.bin", bytes);
  ASSERT_FALSE(zip(path(L"a.bin").c_str()));
  const Entry entry = only_entry();
  EXPECT_EQ(entry.kinds, "UCU");
  EXPECT_EQ(entry.packed_sizes[0], 32767);
  EXPECT_LT(entry.packed_sizes[1], 32767);
  EXPECT_EQ(entry.packed_sizes[2], 100);
  const std::string archive = contents(L"a.kwc");
  EXPECT_EQ(archive.substr(archive.size() - 100), noise_bytes(100));
}

TEST_F(FileZip, array_of_any_lower_bound_gives_entries_from_1_in_order) {
  for (const wchar_t* name : {L"c.txt", L"a.txt", L"b.txt"}) make_file(name, wordy_bytes(50));
  const auto zipper = create<_ZipFile>(CLSID_ZipFile);
  const ZipEvents events(zipper.get());
  ASSERT_FALSE(zip_with(zipper, sources({L"c.txt", L"a.txt", L"b.txt"}, 5)));
  const auto entries = entries_of(contents(L"a.kwc"));
  ASSERT_EQ(entries.size(), 3U);
  EXPECT_EQ(entries[0].name, narrow(L"c.txt"));
  EXPECT_EQ(entries[1].name, narrow(L"a.txt"));
  EXPECT_EQ(entries[2].name, narrow(L"b.txt"));
  EXPECT_EQ(events.told().front(), (ZipEvent{1, {1, 0}}));
  EXPECT_EQ(events.told().back(), (ZipEvent{1, {3, 100}}));
}

TEST_F(FileZip, array_of_Variant_is_taken_too) {
  make_file(L"a.txt", "ciao");
  SAFEARRAYBOUND bound{1, 0};
  Value names;
  names.vt = VT_ARRAY | VT_VARIANT;
  names.parray = SafeArrayCreate(VT_VARIANT, 1, &bound);
  LONG index = 0;
  Value name(path(L"a.txt").c_str());
  SafeArrayPutElement(names.parray, &index, &name);
  ASSERT_FALSE(zip(names));
  EXPECT_EQ(only_entry().name, narrow(L"a.txt"));
}

TEST_F(FileZip, sources_that_are_no_names_are_refused_and_the_target_stays) {
  make_file(L"a.kwc", "what was there");
  SAFEARRAYBOUND bound{1, 0};
  Value numbers;
  numbers.vt = VT_ARRAY | VT_I4;
  numbers.parray = SafeArrayCreate(VT_I4, 1, &bound);
  EXPECT_TRUE(zip(numbers));
  expect_record(13, kSource, L"Type mismatch");
  Value nothing;
  nothing.vt = VT_ARRAY | VT_BSTR;
  EXPECT_TRUE(zip(nothing));
  expect_record(9, kSource, L"Subscript out of range");
  EXPECT_EQ(contents(L"a.kwc"), "what was there");
}

TEST_F(FileZip, folder_makes_an_entry_without_data) {
  make_folder(L"sub");
  make_file(L"a.txt", "abc");
  const auto zipper = create<_ZipFile>(CLSID_ZipFile);
  const ZipEvents events(zipper.get());
  ASSERT_FALSE(zip_with(zipper, sources({L"sub", L"a.txt"})));
  const std::string archive = contents(L"a.kwc");
  const auto entries = entries_of(archive);
  ASSERT_EQ(entries.size(), 2U);
  EXPECT_EQ(entries[0].attributes & 16, 16);
  EXPECT_EQ(entries[0].next_position, static_cast<std::int32_t>(archive.size()) - 3 + 1);
  EXPECT_EQ(archive.substr(archive.size() - 3), "abc");
  const std::vector<ZipEvent> expected{{1, {1, 0}}, {1, {2, 0}}, {1, {2, 100}}};
  EXPECT_EQ(events.told(), expected);
}

TEST_F(FileZip, events_come_before_each_entry_and_after_each_block) {
  make_file(L"a.txt", wordy_bytes(65534));
  make_file(L"b.txt", "");
  const auto zipper = create<_ZipFile>(CLSID_ZipFile);
  const ZipEvents events(zipper.get());
  ASSERT_FALSE(zip_with(zipper, sources({L"a.txt", L"b.txt"})));
  const std::vector<ZipEvent> expected{
      {1, {1, 0}}, {1, {1, 50}}, {1, {1, 100}}, {1, {2, 0}}, {1, {2, 100}}};
  EXPECT_EQ(events.told(), expected);
}

TEST_F(FileZip, cancel_at_any_event_deletes_the_archive) {
  make_file(L"a.txt", wordy_bytes(65534));
  const auto zipper = create<_ZipFile>(CLSID_ZipFile);
  for (std::size_t at = 1; at <= 3; ++at) {
    make_file(L"a.kwc", "what was there");
    std::size_t count = 0;
    const ZipEvents events(zipper.get(), [&](const ZipEvent&) { return ++count == at; });
    EXPECT_TRUE(zip_with(zipper, path(L"a.txt").c_str()));
    EXPECT_EQ(count, at);
    EXPECT_FALSE(exists(L"a.kwc"));
    EXPECT_EQ(contents(L"a.txt").size(), 65534U);
    expect_record(20010, kSource, L"Procedura interrotta dall'utente.");
  }
}

TEST_F(FileZip, source_that_vanishes_before_its_turn_is_told_by_name) {
  make_file(L"a.txt", "ciao");
  make_file(L"b.txt", "ciao");
  const auto zipper = create<_ZipFile>(CLSID_ZipFile);
  const ZipEvents events(zipper.get(), [&](const ZipEvent& event) {
    if (event.arguments[0] == 2) DeleteFileW(path(L"b.txt").c_str());
    return false;
  });
  EXPECT_TRUE(zip_with(zipper, sources({L"a.txt", L"b.txt"})));
  EXPECT_FALSE(exists(L"a.kwc"));
  expect_record(53, kSource, L"Errore di accesso al file " + path(L"b.txt"));
}

TEST_F(FileZip, source_that_shrinks_before_its_turn_ends_the_call) {
  make_file(L"a.txt", wordy_bytes(1000));
  const auto zipper = create<_ZipFile>(CLSID_ZipFile);
  const ZipEvents events(zipper.get(), [&](const ZipEvent&) {
    make_file(L"a.txt", "x");
    return false;
  });
  EXPECT_TRUE(zip_with(zipper, path(L"a.txt").c_str()));
  EXPECT_FALSE(exists(L"a.kwc"));
  expect_record(62, kSource, L"Input past end of file");
}

TEST_F(FileZip, source_that_is_locked_for_a_moment_is_waited_for) {
  make_file(L"a.txt", "ciao");
  const auto zipper = create<_ZipFile>(CLSID_ZipFile);
  std::optional<FileHolder> holder;
  const ZipEvents events(zipper.get(), [&](const ZipEvent& event) {
    if (event.arguments[1] == 0) holder.emplace(path(L"a.txt").c_str(), 400);
    return false;
  });
  EXPECT_FALSE(zip_with(zipper, path(L"a.txt").c_str()));
  EXPECT_EQ(events.told().size(), 2U);
}

TEST_F(FileZip, source_that_stays_locked_is_told_by_name_and_the_archive_deleted) {
  make_file(L"a.txt", "ciao");
  const auto zipper = create<_ZipFile>(CLSID_ZipFile);
  std::optional<FileHolder> holder;
  const ZipEvents events(zipper.get(), [&](const ZipEvent& event) {
    if (event.arguments[1] == 0) holder.emplace(path(L"a.txt").c_str(), 20000);
    return false;
  });
  EXPECT_TRUE(zip_with(zipper, path(L"a.txt").c_str()));
  EXPECT_FALSE(exists(L"a.kwc"));
  expect_record(70, kSource, L"Errore di accesso al file " + path(L"a.txt"));
}

TEST_F(FileZip, target_that_is_locked_stays_as_it_was) {
  make_file(L"a.txt", "ciao");
  make_file(L"a.kwc", "what was there");
  {
    const FileHolder holder(path(L"a.kwc").c_str(), 20000);
    EXPECT_TRUE(zip(path(L"a.txt").c_str()));
  }
  EXPECT_EQ(contents(L"a.kwc"), "what was there");
  expect_record(70, kSource, L"Impossibile creare il file " + path(L"a.kwc"));
}

TEST_F(FileZip, folder_in_the_place_of_the_target_is_kept) {
  make_file(L"a.txt", "ciao");
  make_folder(L"a.kwc");
  make_file(L"a.kwc\\kept.txt", "kept");
  EXPECT_TRUE(zip(path(L"a.txt").c_str()));
  EXPECT_EQ(contents(L"a.kwc\\kept.txt"), "kept");
  LONG number = 0;
  String description;
  global_->Error_Number(&number);
  global_->Error_Description(&description);
  EXPECT_EQ(number, 75);
  EXPECT_EQ(description.view(), L"Impossibile creare il file " + path(L"a.kwc"));
}

TEST_F(FileZip, missing_parent_folder_is_stored_all_the_same) {
  make_file(L"a.txt", "ciao");
  ASSERT_FALSE(zip(path(L"a.txt").c_str(), L"a.kwc", path(L"missing")));
  EXPECT_EQ(contents(L"a.kwc").substr(10, 255), HandMade::field(narrow(L"missing") + "\\"));
}

TEST_F(FileZip, missing_source_is_told_by_the_opener_and_the_archive_deleted) {
  make_file(L"a.txt", "ciao");
  make_file(L"a.kwc", "what was there");
  EXPECT_TRUE(zip(sources({L"a.txt", L"missing.txt"})));
  EXPECT_FALSE(exists(L"a.kwc"));
  LONG number = 0;
  String source;
  global_->Error_Number(&number);
  global_->Error_Source(&source);
  EXPECT_EQ(number, 53);
  EXPECT_EQ(source.view(), L"KwRtLibMod.File_Open32");
}

TEST_F(FileZip, target_that_cannot_be_made_is_told_by_name) {
  make_file(L"a.txt", "ciao");
  EXPECT_TRUE(zip(path(L"a.txt").c_str(), L"missing\\a.kwc"));
  expect_record(76, kSource, L"Impossibile creare il file " + path(L"missing\\a.kwc"));
}

TEST_F(FileZip, target_with_wildcards_is_refused_and_deletes_nothing) {
  make_file(L"a.txt", "ciao");
  EXPECT_TRUE(zip(path(L"a.txt").c_str(), L"*.*"));
  EXPECT_EQ(contents(L"a.txt"), "ciao");
}

TEST_F(FileZip, source_that_is_the_target_is_refused_and_kept) {
  make_file(L"a.kwc", "ciao");
  make_file(L"b.txt", "ciao");
  EXPECT_TRUE(zip(sources({L"b.txt", L"A.KWC"})));
  EXPECT_EQ(contents(L"a.kwc"), "ciao");
  expect_record(70, kSource, L"Errore di accesso al file " + path(L"A.KWC"));
}

TEST_F(FileZip, name_of_253_characters_is_stored_and_a_longer_one_refused) {
  for (const std::size_t length : {253U, 254U}) {
    const std::wstring name(length - path(L"").size(), L'n');
    make_file(name, "ciao");
    make_file(L"a.kwc", "what was there");
    EXPECT_EQ(zip(path(name).c_str()), length > 253);
    if (length > 253) {
      EXPECT_FALSE(exists(L"a.kwc"));
      expect_record(20000, kSource, L"Il nome " + path(name) + L" non può stare in un archivio.");
    } else {
      EXPECT_EQ(only_entry().name.size(), length);
    }
  }
}

TEST_F(FileZip, name_of_300_characters_is_refused) {
  const std::wstring name = L"C:\\" + std::wstring(297, L'n');
  EXPECT_TRUE(zip(name.c_str()));
  EXPECT_FALSE(exists(L"a.kwc"));
  expect_record(20000, kSource, L"Il nome " + name + L" non può stare in un archivio.");
}

TEST_F(FileZip, name_outside_the_code_page_is_refused) {
  make_file(L"\x4E2D.txt", "ciao");
  EXPECT_TRUE(zip(path(L"\x4E2D.txt").c_str()));
  EXPECT_FALSE(exists(L"a.kwc"));
  expect_record(20000, kSource,
                L"Il nome " + path(L"\x4E2D.txt") + L" non può stare in un archivio.");
}

TEST_F(FileZip, file_past_2_GB_is_refused) {
  const HANDLE file = CreateFileW(path(L"big").c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                  FILE_ATTRIBUTE_NORMAL, nullptr);
  LARGE_INTEGER size;
  size.QuadPart = 0x80000000;
  const bool is_sparse = SetFilePointerEx(file, size, nullptr, FILE_BEGIN) && SetEndOfFile(file);
  CloseHandle(file);
  ASSERT_TRUE(is_sparse);
  EXPECT_TRUE(zip(path(L"big").c_str()));
  EXPECT_FALSE(exists(L"a.kwc"));
  expect_record(6, kSource, L"Il file " + path(L"big") + L" supera i 2 GB.");
}

TEST_F(FileZip, existing_target_is_replaced) {
  make_file(L"a.txt", "ciao");
  make_file(L"a.kwc", noise_bytes(5000));
  ASSERT_FALSE(zip(path(L"a.txt").c_str()));
  EXPECT_EQ(contents(L"a.kwc").size(), kEntries + 309 + 5 + 4);
}

TEST_F(FileZip, a_second_archive_may_be_made_from_inside_an_event) {
  make_file(L"a.txt", "ciao");
  const auto zipper = create<_ZipFile>(CLSID_ZipFile);
  bool inner_failed = true;
  const ZipEvents events(zipper.get(), [&](const ZipEvent& event) {
    if (event.arguments[1] == 0) inner_failed = zip(path(L"a.txt").c_str(), L"b.kwc");
    return false;
  });
  EXPECT_FALSE(zip_with(zipper, path(L"a.txt").c_str()));
  EXPECT_FALSE(inner_failed);
  EXPECT_EQ(contents(L"a.kwc"), contents(L"b.kwc"));
}

TEST(ZipFile, fields_hold_what_they_are_given) {
  const auto file = create<_ZipFile>(CLSID_ZipFile);
  String no_name;
  String name;
  LONG number = -1;
  DATE date = 0;
  EXPECT_EQ(file->get_FileName(&no_name), S_OK);
  EXPECT_EQ(no_name.view(), L"");
  EXPECT_EQ(file->get_FileSize(&number), S_OK);
  EXPECT_EQ(number, 0);
  EXPECT_EQ(file->put_FileName(String(std::wstring_view(L"a.txt\0rest", 10))), S_OK);
  EXPECT_EQ(file->get_FileName(&name), S_OK);
  EXPECT_EQ(name.view(), L"a.txt");
  EXPECT_EQ(file->put_FileSize(1), S_OK);
  EXPECT_EQ(file->put_MajVer(2), S_OK);
  EXPECT_EQ(file->put_MinVer(3), S_OK);
  EXPECT_EQ(file->put_Attributes(32), S_OK);
  EXPECT_EQ(file->put_DateCreated(36526.5), S_OK);
  EXPECT_EQ(file->put_DateChanged(36527.25), S_OK);
  EXPECT_EQ(file->get_FileSize(&number), S_OK);
  EXPECT_EQ(number, 1);
  EXPECT_EQ(file->get_MajVer(&number), S_OK);
  EXPECT_EQ(number, 2);
  EXPECT_EQ(file->get_MinVer(&number), S_OK);
  EXPECT_EQ(number, 3);
  EXPECT_EQ(file->get_Attributes(&number), S_OK);
  EXPECT_EQ(number, 32);
  EXPECT_EQ(file->get_DateCreated(&date), S_OK);
  EXPECT_EQ(date, 36526.5);
  EXPECT_EQ(file->get_DateChanged(&date), S_OK);
  EXPECT_EQ(date, 36527.25);
}

TEST(ZipRecords, head_and_block_are_objects_without_members) {
  EXPECT_TRUE(create<IDispatch>(CLSID_ZipHeader));
  EXPECT_TRUE(create<IDispatch>(CLSID_ZipBlock));
}

}  // namespace
}  // namespace qv::tests
