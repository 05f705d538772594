// The record of a file: attributes, dates, size, version.
#include "server/error_record_client.h"
#include "server/temp_folder.h"
#include "server/version_resource.h"

namespace qv::tests {
namespace {

constexpr const wchar_t* kSource = L"QvtFileInfo.GetFileInfo";
constexpr DATE kTenthOfASecond = 0.1 / 86400;

// A local date as the system's own services make it of a file's time.
DATE local_date(const FILETIME& time) {
  FILETIME local;
  SYSTEMTIME fields;
  DATE date = 0;
  FileTimeToLocalFileTime(&time, &local);
  FileTimeToSystemTime(&local, &fields);
  fields.wMilliseconds = 0;
  SystemTimeToVariantTime(&fields, &date);
  return date;
}

class FileInfo : public WithErrorRecord {
 protected:
  bool read(const std::wstring& name) {
    String file(name);
    VARIANT_BOOL failed = VARIANT_FALSE;
    EXPECT_EQ(info_->GetFileInfo(&file, &failed), S_OK);
    return failed == VARIANT_FALSE;
  }
  LONG attributes() { return get(&_QvtFileInfo::get_FileAttributes, LONG{-9}); }
  LONG size() { return get(&_QvtFileInfo::get_FileSize, LONG{-9}); }
  std::wstring name() {
    String text;
    EXPECT_EQ(info_->get_FileName(&text), S_OK);
    return std::wstring(text.view());
  }
  std::wstring version() {
    String text;
    EXPECT_EQ(info_->get_VersionString(&text), S_OK);
    return std::wstring(text.view());
  }
  template <class Call, class T>
  T get(Call call, T value) {
    EXPECT_EQ((info_.get()->*call)(&value), S_OK);
    return value;
  }

  TempFolder folder_;
  Pointer<_QvtFileInfo> info_ = create<_QvtFileInfo>(CLSID_QvtFileInfo);
};

TEST_F(FileInfo, a_fresh_record_is_empty) {
  EXPECT_EQ(attributes(), 0);
  EXPECT_EQ(size(), 0);
  EXPECT_EQ(name(), L"");
  EXPECT_EQ(version(), L"0.0.0.0");
  EXPECT_EQ(get(&_QvtFileInfo::get_CreationTime, DATE{9}), 0);
  EXPECT_EQ(get(&_QvtFileInfo::get_LastAccessTime, DATE{9}), 0);
  EXPECT_EQ(get(&_QvtFileInfo::get_LastWriteTime, DATE{9}), 0);
  EXPECT_EQ(get(&_QvtFileInfo::get_IsAppExe, VARIANT_TRUE), VARIANT_FALSE);
  EXPECT_EQ(get(&_QvtFileInfo::get_IsShared, VARIANT_TRUE), VARIANT_FALSE);
  EXPECT_EQ(get(&_QvtFileInfo::get_Updated, VARIANT_TRUE), VARIANT_FALSE);
  Pointer<_QvtFileInfo> installed;
  EXPECT_EQ(info_->get_Installed(installed.receive()), S_OK);
  EXPECT_FALSE(installed);
}

TEST_F(FileInfo, every_property_keeps_what_it_is_given) {
  EXPECT_EQ(info_->put_FileAttributes(33), S_OK);
  EXPECT_EQ(info_->put_CreationTime(1.5), S_OK);
  EXPECT_EQ(info_->put_LastAccessTime(2.5), S_OK);
  EXPECT_EQ(info_->put_LastWriteTime(3.5), S_OK);
  EXPECT_EQ(info_->put_FileSize(-7), S_OK);
  EXPECT_EQ(info_->put_FileName(String(L"n")), S_OK);
  EXPECT_EQ(info_->put_MajVer(0x10002), S_OK);
  EXPECT_EQ(info_->put_MinVer(0x30004), S_OK);
  EXPECT_EQ(info_->put_CLSID(String(L"{c}")), S_OK);
  EXPECT_EQ(info_->put_IsAppExe(VARIANT_TRUE), S_OK);
  EXPECT_EQ(info_->put_IsShared(VARIANT_TRUE), S_OK);
  EXPECT_EQ(info_->put_RegMode(2), S_OK);
  EXPECT_EQ(info_->put_RegName(String(L"r")), S_OK);
  EXPECT_EQ(info_->put_Updated(VARIANT_TRUE), S_OK);
  EXPECT_EQ(attributes(), 33);
  EXPECT_EQ(get(&_QvtFileInfo::get_CreationTime, DATE{0}), 1.5);
  EXPECT_EQ(get(&_QvtFileInfo::get_LastAccessTime, DATE{0}), 2.5);
  EXPECT_EQ(get(&_QvtFileInfo::get_LastWriteTime, DATE{0}), 3.5);
  EXPECT_EQ(size(), -7);
  EXPECT_EQ(name(), L"n");
  EXPECT_EQ(get(&_QvtFileInfo::get_MajVer, LONG{0}), 0x10002);
  EXPECT_EQ(get(&_QvtFileInfo::get_MinVer, LONG{0}), 0x30004);
  EXPECT_EQ(version(), L"1.2.3.4");
  String class_id;
  EXPECT_EQ(info_->get_CLSID(&class_id), S_OK);
  EXPECT_EQ(class_id, L"{c}");
  EXPECT_EQ(get(&_QvtFileInfo::get_IsAppExe, VARIANT_FALSE), VARIANT_TRUE);
  EXPECT_EQ(get(&_QvtFileInfo::get_IsShared, VARIANT_FALSE), VARIANT_TRUE);
  EXPECT_EQ(get(&_QvtFileInfo::get_RegMode, LONG{0}), 2);
  String library;
  EXPECT_EQ(info_->get_RegName(&library), S_OK);
  EXPECT_EQ(library, L"r");
  EXPECT_EQ(get(&_QvtFileInfo::get_Updated, VARIANT_FALSE), VARIANT_TRUE);
}

TEST_F(FileInfo, Installed_holds_another_record) {
  auto installed = create<_QvtFileInfo>(CLSID_QvtFileInfo);
  EXPECT_EQ(info_->putref_Installed(installed.get()), S_OK);
  EXPECT_EQ(installed->put_FileSize(42), S_OK);
  Pointer<_QvtFileInfo> found;
  EXPECT_EQ(info_->get_Installed(found.receive()), S_OK);
  LONG size = 0;
  EXPECT_EQ(found->get_FileSize(&size), S_OK);
  EXPECT_EQ(size, 42);
  EXPECT_EQ(info_->putref_Installed(nullptr), S_OK);
  EXPECT_EQ(info_->get_Installed(found.receive()), S_OK);
  EXPECT_FALSE(found);
}

TEST_F(FileInfo, words_above_32767_read_negative_in_VersionString) {
  EXPECT_EQ(info_->put_MajVer(static_cast<LONG>(0x80007FFF)), S_OK);
  EXPECT_EQ(info_->put_MinVer(-1), S_OK);
  EXPECT_EQ(version(), L"-32768.32767.-1.-1");
}

TEST_F(FileInfo, GetFileInfo_tells_everything_of_a_program) {
  const std::wstring file = folder_.file(L"a.dll");
  ASSERT_TRUE(CopyFileW(version_sample(L"languages").c_str(), file.c_str(), TRUE));
  SYSTEMTIME moment{2001, 2, 0, 3, 4, 5, 6, 789};
  FILETIME access;
  SystemTimeToFileTime(&moment, &access);
  moment.wYear = 2002;
  moment.wMonth = 8;
  FILETIME write;
  SystemTimeToFileTime(&moment, &write);
  HANDLE handle =
      CreateFileW(file.c_str(), FILE_WRITE_ATTRIBUTES, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_TRUE(SetFileTime(handle, nullptr, &access, &write));
  CloseHandle(handle);
  WIN32_FILE_ATTRIBUTE_DATA facts;
  ASSERT_TRUE(GetFileAttributesExW(file.c_str(), GetFileExInfoStandard, &facts));

  EXPECT_TRUE(read(file));
  EXPECT_EQ(name(), file);
  EXPECT_EQ(attributes(), static_cast<LONG>(facts.dwFileAttributes));
  EXPECT_EQ(size(), static_cast<LONG>(facts.nFileSizeLow));
  EXPECT_NEAR(get(&_QvtFileInfo::get_CreationTime, DATE{0}), local_date(facts.ftCreationTime),
              kTenthOfASecond);
  EXPECT_NEAR(get(&_QvtFileInfo::get_LastAccessTime, DATE{0}), local_date(access), kTenthOfASecond);
  EXPECT_NEAR(get(&_QvtFileInfo::get_LastWriteTime, DATE{0}), local_date(write), kTenthOfASecond);
  EXPECT_EQ(version(), L"1.2.3.4");
  expect_no_error();
}

TEST_F(FileInfo, a_file_without_a_version_succeeds_and_leaves_an_error) {
  folder_.write(L"a.txt", "12345");
  EXPECT_EQ(info_->put_MajVer(0x10002), S_OK);
  EXPECT_EQ(info_->put_MinVer(0x30004), S_OK);
  EXPECT_TRUE(read(folder_.file(L"a.txt")));
  EXPECT_EQ(size(), 5);
  EXPECT_EQ(version(), L"0.0.0.0");
  expect_error(20000, L"KwRtLibMod.GetFileVersion");
}

TEST_F(FileInfo, an_empty_name_reads_the_named_file_again) {
  folder_.write(L"a.txt", "12345");
  EXPECT_TRUE(read(folder_.file(L"a.txt")));
  folder_.write(L"a.txt", "1234567");
  EXPECT_TRUE(read(L""));
  EXPECT_EQ(size(), 7);
  EXPECT_EQ(name(), folder_.file(L"a.txt"));
  VARIANT_BOOL failed = VARIANT_TRUE;
  folder_.write(L"a.txt", "");
  EXPECT_EQ(info_->GetFileInfo(nullptr, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_EQ(size(), 0);
}

TEST_F(FileInfo, a_missing_file_fails_with_53_and_keeps_the_rest) {
  folder_.write(L"a.txt", "12345");
  EXPECT_TRUE(read(folder_.file(L"a.txt")));
  EXPECT_EQ(global_->Reset_Error(), S_OK);
  EXPECT_FALSE(read(folder_.file(L"missing.txt")));
  EXPECT_EQ(recorded_description(), L"File not found");
  expect_error(53, kSource);
  EXPECT_EQ(name(), folder_.file(L"missing.txt"));
  EXPECT_EQ(size(), 5);
}

TEST_F(FileInfo, a_size_past_a_Long_is_error_6_with_the_dates_read) {
  HANDLE handle =
      CreateFileW(folder_.file(L"big").c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr);
  LARGE_INTEGER size;
  size.QuadPart = 0x8000'0000;
  SetFilePointerEx(handle, size, nullptr, FILE_BEGIN);
  ASSERT_TRUE(SetEndOfFile(handle));
  CloseHandle(handle);
  EXPECT_FALSE(read(folder_.file(L"big")));
  EXPECT_EQ(recorded_description(), L"Overflow");
  expect_error(6, kSource);
  EXPECT_NE(get(&_QvtFileInfo::get_LastWriteTime, DATE{0}), 0);
  EXPECT_EQ(this->size(), 0);
}

TEST_F(FileInfo, a_fresh_record_with_no_name_fails) {
  EXPECT_FALSE(read(L""));
  EXPECT_EQ(error_source(), kSource);
  EXPECT_NE(error_number(), 0);
}

TEST_F(FileInfo, a_file_whose_dates_can_not_be_read_fails_without_an_error_of_its_own) {
  folder_.write(L"locked.txt", "12345");
  const std::wstring file = folder_.file(L"locked.txt");
  HANDLE locked = CreateFileW(file.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(locked, INVALID_HANDLE_VALUE);
  EXPECT_FALSE(read(file));
  CloseHandle(locked);
  EXPECT_EQ(error_source(), L"KwRtLibMod.File_Open32");
  EXPECT_EQ(error_number(), 20000);
  EXPECT_NE(attributes(), 0);
  EXPECT_EQ(size(), 0);
}

TEST_F(FileInfo, a_folder_has_attributes_and_dates) {
  EXPECT_TRUE(read(folder_.path().substr(0, folder_.path().size() - 1)));
  EXPECT_NE(attributes() & FILE_ATTRIBUTE_DIRECTORY, 0U);
  EXPECT_GT(get(&_QvtFileInfo::get_LastWriteTime, DATE{0}), 45000);
  EXPECT_EQ(size(), 0);
}

}  // namespace
}  // namespace qv::tests
