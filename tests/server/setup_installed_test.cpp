// What a setup description finds installed, and files that it names twice.
#include <string>

#include "server/collection_client.h"
#include "server/setup_client.h"
#include "server/temp_folder.h"
#include "server/type_library_reader.h"

namespace qv::tests {
namespace {

constexpr const wchar_t* kBothSources =
    L" < QvRtLibOle.KwRtLibMod.SetupIniRead < QvRtLibOle.KwRtLibMod.SetupInfoLoad";

// Of the library itself, which is installed in a folder of the test's.
constexpr const char* kVersion = "5.0.0.267";
constexpr LONG kReadOnly = 1;
constexpr LONG kArchive = 32;

class SetupInstalled : public SetupClient {
 protected:
  SetupInstalled() {
    wchar_t library[260];
    GetModuleFileNameW(GetModuleHandleW(L"QvRtLibOle.dll"), library, 260);
    EXPECT_TRUE(CopyFileW(library, folder_.file(L"a.dll").c_str(), TRUE));
    written_at(30);
  }

  // The installed file's last change: 6 August 1998, 17 hours local time and so many minutes.
  void written_at(WORD minute, WORD second = 0) {
    const SYSTEMTIME local{1998, 8, 0, 6, 17, minute, second, 0};
    SYSTEMTIME universal;
    FILETIME time;
    TzSpecificLocalTimeToSystemTime(nullptr, &local, &universal);
    SystemTimeToFileTime(&universal, &time);
    const HANDLE file = CreateFileW(folder_.file(L"a.dll").c_str(), GENERIC_WRITE, 0, nullptr,
                                    OPEN_EXISTING, 0, nullptr);
    EXPECT_TRUE(SetFileTime(file, nullptr, &time, &time));
    CloseHandle(file);
  }
  std::string line(const std::string& version, const std::string& moment = "8/6/98 5:30:00 PM",
                   const std::string& name = "@a.dll") {
    const auto path = folder_.path();
    return name + "," + std::string(path.begin(), path.end()) + ",,," + moment + ",17," + version;
  }
  bool load(LONG flags = 0) { return SetupClient::load(folder_.file(L"setup.lst"), flags); }
  bool load_lines(const std::string& first, const std::string& second = {}) {
    files_ = create<_kwCollection>(CLSID_kwCollection);
    folder_.write(L"setup.lst",
                  "[Setup1 Files]\r\nFile1=" + first + "\r\nFile2=" + second + "\r\n");
    return load();
  }
  bool updated_by(const std::string& version, const std::string& moment = "8/6/98 5:30:00 PM") {
    EXPECT_FALSE(load_lines(line(version, moment)));
    const auto described = record(1);
    EXPECT_EQ(described.installed().is_updated(), described.is_updated());
    return described.is_updated();
  }

  const TempFolder folder_;
};

TEST_F(SetupInstalled, file_is_described) {
  SetFileAttributesW(folder_.file(L"a.dll").c_str(), FILE_ATTRIBUTE_READONLY);
  ASSERT_FALSE(load_lines(line("5.0.0.267")));
  const auto described = record(1);
  const auto installed = described.installed();
  EXPECT_EQ(installed.name(), folder_.file(L"a.dll"));
  EXPECT_EQ(installed.version(), L"5.0.0.267");
  EXPECT_EQ(installed.major(), 5 << 16);
  EXPECT_EQ(installed.minor(), 267);
  EXPECT_EQ(installed.last_write(), L"1998-08-06 17:30:00");
  EXPECT_EQ(installed.attributes() & ~kArchive, kReadOnly);
  WIN32_FILE_ATTRIBUTE_DATA facts;
  ASSERT_TRUE(GetFileAttributesExW(folder_.file(L"a.dll").c_str(), GetFileExInfoStandard, &facts));
  EXPECT_EQ(installed.size(), static_cast<LONG>(facts.nFileSizeLow));
  EXPECT_EQ(installed.reg_mode(), 0);
  EXPECT_FALSE(installed.is_program());
  // The other record is the description's alone.
  EXPECT_EQ(described.size(), 17);
  EXPECT_EQ(described.attributes(), 0);
  expect_no_error();
}

TEST_F(SetupInstalled, file_that_is_missing_leaves_its_record_empty) {
  ASSERT_FALSE(load_lines(line(kVersion, "8/6/98", "@b.dll")));
  const auto described = record(1);
  const auto installed = described.installed();
  EXPECT_EQ(installed.name(), folder_.file(L"b.dll"));
  EXPECT_EQ(installed.major(), 0);
  EXPECT_EQ(installed.minor(), 0);
  EXPECT_EQ(installed.last_write_days(), 0);
  EXPECT_EQ(installed.size(), 0);
  EXPECT_EQ(installed.attributes(), 0);
  EXPECT_FALSE(described.is_updated());
  EXPECT_FALSE(installed.is_updated());
  expect_no_error();
}

TEST_F(SetupInstalled, file_without_a_version_counts_as_missing) {
  folder_.write(L"b.dll", "no program");
  ASSERT_FALSE(load_lines(line("0.0.0.0", "8/6/98", "@b.dll")));
  EXPECT_EQ(record(1).installed().size(), 0);
  EXPECT_FALSE(record(1).is_updated());
  expect_no_error();
}

TEST_F(SetupInstalled, file_of_a_higher_version_is_updated) {
  EXPECT_TRUE(updated_by("4.9.9.999"));
  EXPECT_TRUE(updated_by("4.32767.32767.32767"));
  EXPECT_TRUE(updated_by("5.0.0.266"));
  EXPECT_TRUE(updated_by("5.-1.0.267"));
  EXPECT_FALSE(updated_by("5.0.0.268"));
  EXPECT_FALSE(updated_by("5.0.1.0"));
  EXPECT_FALSE(updated_by("5.1.0.0"));
  EXPECT_FALSE(updated_by("6.0.0.0"));
  expect_no_error();
}

TEST_F(SetupInstalled, file_of_the_same_version_is_updated_by_a_later_minute) {
  EXPECT_FALSE(updated_by(kVersion, "8/6/98 5:30:00 PM"));
  EXPECT_TRUE(updated_by(kVersion, "8/6/98 5:29:59 PM"));
  EXPECT_FALSE(updated_by(kVersion, "8/6/98 5:30:59 PM"));
  EXPECT_FALSE(updated_by(kVersion, "8/6/98 5:31:00 PM"));
  written_at(30, 58);
  EXPECT_FALSE(updated_by(kVersion, "8/6/98 5:30:00 PM"));
  EXPECT_TRUE(updated_by(kVersion, "8/5/98 11:59:00 PM"));
  EXPECT_FALSE(updated_by(kVersion, "8/6/18 5:30:00 PM"));
}

TEST_F(SetupInstalled, versions_too_far_apart_are_a_failure) {
  EXPECT_TRUE(load_lines(line("-32768.0.0.0")));
  EXPECT_EQ(count(), 0);
  expect_error(6, std::wstring(L"QvRtLibOle.KwRtLibMod.VersionCompare") + kBothSources);
  EXPECT_TRUE(load_lines("@b,,,,8/6/98,0,32767.0.0.0", "@b,,,,8/6/98,0,-1.0.0.0"));
  EXPECT_EQ(count(), 1);
  expect_error(6, std::wstring(L"QvRtLibOle.KwRtLibMod.VersionCompare") + kBothSources);
}

TEST_F(SetupInstalled, second_line_of_a_file_is_dropped_where_it_is_alike_or_newer) {
  for (const auto* version : {"5.0.0.267", "5.0.0.268", "6.0.0.0"}) {
    EXPECT_FALSE(load_lines(line(kVersion), line(version, "8/6/98 5:30:00 PM", "@A.DLL")));
    ASSERT_EQ(count(), 1);
    EXPECT_EQ(record(1).name(), L"a.dll");
    EXPECT_EQ(record(1).version(), L"5.0.0.267");
    expect_no_error();
  }
  EXPECT_FALSE(load_lines(line(kVersion), line(kVersion, "8/6/98 5:31:00 PM")));
  EXPECT_EQ(count(), 1);
}

TEST_F(SetupInstalled, second_line_of_a_file_is_a_failure_where_it_is_older) {
  EXPECT_TRUE(load_lines(line(kVersion), line("5.0.0.266")));
  EXPECT_EQ(count(), 1);
  EXPECT_EQ(record(1).version(), L"5.0.0.267");
  EXPECT_EQ(error_source().substr(0, 3), L" < ");
  expect_error(0, kBothSources);
  EXPECT_TRUE(load_lines(line(kVersion), line(kVersion, "8/6/98 5:29:00 PM")));
}

TEST_F(SetupInstalled, file_of_both_sections_is_there_once) {
  folder_.write(L"setup.lst", "[Bootstrap Files]\r\nFile1=" + line("5.0.0.1") +
                                  "\r\n[Setup1 Files]\r\nFile1=" + line("5.0.0.2") + "\r\n");
  EXPECT_FALSE(load());
  ASSERT_EQ(count(), 1);
  EXPECT_EQ(record(1).minor(), 1);
}

TEST_F(SetupInstalled, item_of_another_class_under_a_file_s_key_is_a_failure) {
  CountedObject other;
  Value item = other.as_value();
  Value key(L"a.dll");
  Value nowhere = Value::missing();
  folder_.write(L"setup.lst", "[Setup1 Files]\r\nFile1=" + line(kVersion) + "\r\n");
  ASSERT_EQ(files_->Add(&item, &key, &nowhere, &nowhere), S_OK);
  EXPECT_TRUE(load());
  EXPECT_EQ(count(), 1);
  expect_error(0, kBothSources);
  EXPECT_EQ(files_->Clear(), S_OK);
}

TEST_F(SetupInstalled, file_s_type_library_is_unknown_without_a_reader) {
  ASSERT_FALSE(load_lines(line(kVersion)));
  EXPECT_EQ(record(1).installed().type_library(), L"");
  EXPECT_EQ(record(1).installed().type_library_id(), L"");
}

TEST_F(SetupInstalled, file_s_type_library_is_described_by_the_reader) {
  TypeLibraryReader reader;
  reader.library.name = L"Prova";
  reader.library.guid = L"{12345678-1234-1234-1234-123456789ABC}";
  ASSERT_FALSE(load_lines(line(kVersion), line(kVersion, "8/6/98", "@b.dll")));
  const auto described = record(1);
  EXPECT_EQ(described.installed().type_library(), L"Prova");
  EXPECT_EQ(described.installed().type_library_id(), L"{12345678-1234-1234-1234-123456789ABC}");
  EXPECT_EQ(described.type_library(), L"");
  EXPECT_EQ(described.type_library_id(), L"");
  EXPECT_EQ(reader.files, Texts{folder_.file(L"a.dll")});
  EXPECT_EQ(record(2).installed().type_library(), L"");
}

TEST_F(SetupInstalled, files_of_a_section_share_one_reader) {
  ASSERT_TRUE(CopyFileW(folder_.file(L"a.dll").c_str(), folder_.file(L"b.dll").c_str(), TRUE));
  TypeLibraryReader reader;
  reader.library.name = L"Prova";
  ASSERT_FALSE(load_lines(line(kVersion), line(kVersion, "8/6/98", "@b.dll")));
  EXPECT_EQ(reader.times_made, 1);
  EXPECT_EQ(reader.files.size(), 2u);
  EXPECT_EQ(record(2).installed().type_library(), L"Prova");
}

TEST_F(SetupInstalled, files_are_not_shown_to_the_reader_in_a_simple_load) {
  TypeLibraryReader reader;
  reader.library.name = L"Prova";
  folder_.write(L"setup.lst", "[Setup1 Files]\r\nFile1=" + line(kVersion) + "\r\n");
  ASSERT_FALSE(load(kSimple));
  EXPECT_EQ(reader.times_made, 0);
  EXPECT_EQ(record(1).installed().type_library(), L"");
  EXPECT_EQ(record(1).installed().minor(), 267);
}

TEST_F(SetupInstalled, file_without_a_type_library_is_no_failure) {
  TypeLibraryReader reader;
  reader.fails = true;
  ASSERT_FALSE(load_lines(line(kVersion)));
  EXPECT_EQ(reader.files.size(), 1u);
  EXPECT_EQ(record(1).installed().type_library(), L"");
  expect_no_error();
}

TEST_F(SetupInstalled, what_the_reader_can_t_tell_stays_empty) {
  TypeLibraryReader reader;
  reader.library.guid = L"{12345678-1234-1234-1234-123456789ABC}";
  ASSERT_FALSE(load_lines(line(kVersion)));
  EXPECT_EQ(record(1).installed().type_library(), L"");
  EXPECT_EQ(record(1).installed().type_library_id(), L"{12345678-1234-1234-1234-123456789ABC}");
  expect_no_error();
}

}  // namespace
}  // namespace qv::tests
