// Version resources: of files made with the tests, of the system's own, of damaged ones.
#include <algorithm>
#include <filesystem>
#include <random>

#include "server/error_record_client.h"
#include "server/temp_folder.h"
#include "server/version_resource.h"

namespace qv::tests {
namespace {

constexpr const wchar_t* kFileSource = L"KwRtLibMod.GetFileVersion";
constexpr const wchar_t* kProductSource = L"KwRtLibMod.GetProductVersion";
constexpr const wchar_t* kApplicationDefined = L"Application-defined or object-defined error";

using NumbersCall = decltype(&_KwRtLib::GetFileVersion);
using TextCall = decltype(&_KwRtLib::GetInfoCompanyName);

struct Numbers {
  LONG major = -9;
  LONG minor = -9;
  LONG revision = -9;
  LONG high = -9;
  LONG low = -9;
  bool operator==(const Numbers&) const = default;
};

class FileVersions : public WithErrorRecord {
 protected:
  bool read(NumbersCall call, const std::wstring& file, Numbers& numbers) {
    String name(file);
    VARIANT_BOOL failed = VARIANT_FALSE;
    EXPECT_EQ((global_.get()->*call)(&name, &numbers.major, &numbers.minor, &numbers.revision,
                                     &numbers.high, &numbers.low, &failed),
              S_OK);
    return failed == VARIANT_FALSE;
  }
  Numbers file_version(const std::wstring& file) {
    Numbers numbers;
    EXPECT_TRUE(read(&_KwRtLib::GetFileVersion, file, numbers));
    return numbers;
  }
  Numbers product_version(const std::wstring& file) {
    Numbers numbers;
    EXPECT_TRUE(read(&_KwRtLib::GetProductVersion, file, numbers));
    return numbers;
  }
  std::wstring text(TextCall call, const std::wstring& file) {
    String name(file);
    String result;
    EXPECT_EQ((global_.get()->*call)(&name, &result), S_OK);
    return std::wstring(result.view());
  }
  std::wstring company(const std::wstring& file) {
    return text(&_KwRtLib::GetInfoCompanyName, file);
  }
  // A program file with this resource.
  std::wstring file_with(const VersionNode& root) { return file_with(root.bytes()); }
  std::wstring file_with(const std::string& resource) {
    const std::wstring path = folder_.file(L"v" + std::to_wstring(++files_) + L".dll");
    EXPECT_TRUE(CopyFileW(version_sample(L"numbers_alone").c_str(), path.c_str(), TRUE));
    EXPECT_TRUE(put_version(path, resource));
    return path;
  }

  TempFolder folder_;

 private:
  int files_ = 0;
};

TEST_F(FileVersions, the_numbers_of_file_and_product_are_told_in_three_ways) {
  const std::wstring file = version_sample(L"numbers_alone");
  EXPECT_EQ(file_version(file), (Numbers{4, 3, 0x20001, 0x40003, 0x20001}));
  EXPECT_EQ(product_version(file), (Numbers{1, 2, 0x30004, 0x10002, 0x30004}));
  expect_no_error();
}

TEST_F(FileVersions, words_above_32767_are_negative) {
  const std::wstring file = version_sample(L"languages");
  EXPECT_EQ(file_version(file), (Numbers{1, 2, 0x30004, 0x10002, 0x30004}));
  const Numbers product = product_version(file);
  EXPECT_EQ(product.major, 40000 - 65536);
  EXPECT_EQ(product.minor, 5);
  EXPECT_EQ(product.revision, static_cast<LONG>(0xFFFF0001));
  EXPECT_EQ(product.high, static_cast<LONG>(0x9C400005));
  EXPECT_EQ(product.low, static_cast<LONG>(0xFFFF0001));
  EXPECT_EQ(file_version(version_sample(L"user_languages")), (Numbers{-1, -1, -1, -1, -1}));
}

TEST_F(FileVersions, outputs_may_be_left_out) {
  String name(version_sample(L"numbers_alone"));
  VARIANT_BOOL failed = VARIANT_TRUE;
  EXPECT_EQ(global_->GetFileVersion(&name, nullptr, nullptr, nullptr, nullptr, nullptr, &failed),
            S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  LONG low = 0;
  EXPECT_EQ(global_->GetProductVersion(&name, nullptr, nullptr, nullptr, nullptr, &low, &failed),
            S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_EQ(low, 0x30004);
}

TEST_F(FileVersions, a_file_without_a_version_fails_with_20000_and_leaves_the_numbers_alone) {
  folder_.write(L"plain.txt", "no program");
  folder_.write(L"short.exe", "MZ");
  folder_.write(L"empty.dll", "");
  for (const std::wstring& file :
       {folder_.file(L"plain.txt"), folder_.file(L"short.exe"), folder_.file(L"empty.dll"),
        folder_.file(L"missing.dll"), folder_.file(L"no\\folder.dll"), folder_.path(),
        std::wstring()}) {
    Numbers numbers;
    EXPECT_FALSE(read(&_KwRtLib::GetFileVersion, file, numbers));
    EXPECT_EQ(recorded_description(), kApplicationDefined);
    expect_error(20000, kFileSource);
    EXPECT_FALSE(read(&_KwRtLib::GetProductVersion, file, numbers));
    EXPECT_EQ(recorded_description(), kApplicationDefined);
    expect_error(20000, kProductSource);
    EXPECT_EQ(numbers, Numbers());
  }
}

TEST_F(FileVersions, a_missing_file_leaves_the_systems_code) {
  Numbers numbers;
  EXPECT_FALSE(read(&_KwRtLib::GetFileVersion, folder_.file(L"missing.dll"), numbers));
  EXPECT_EQ(last_dll_error(), ERROR_FILE_NOT_FOUND);
}

TEST_F(FileVersions, a_resource_without_numbers_fails_with_20002) {
  const std::wstring file = file_with(VersionNode(L"VS_VERSION_INFO", kBinary, "", 0));
  Numbers numbers;
  EXPECT_FALSE(read(&_KwRtLib::GetFileVersion, file, numbers));
  EXPECT_EQ(recorded_description(), kApplicationDefined);
  expect_error(20002, kFileSource);
  EXPECT_FALSE(read(&_KwRtLib::GetProductVersion, file, numbers));
  expect_error(20002, kProductSource);
  EXPECT_EQ(numbers, Numbers());
}

TEST_F(FileVersions, each_text_has_its_operation) {
  const std::wstring file = version_sample(L"languages");
  EXPECT_EQ(text(&_KwRtLib::GetInfoCompanyName, file), L"Firma");
  EXPECT_EQ(text(&_KwRtLib::GetInfoFileDescription, file),
            L"Gr\xF6\xDF"
            L"e, \x4F60\x597D");
  EXPECT_EQ(text(&_KwRtLib::GetInfoFileVersion, file), L"1.2 (drei)");
  EXPECT_EQ(text(&_KwRtLib::GetInfoProductName, file), L"Produkt");
  EXPECT_EQ(text(&_KwRtLib::GetInfoProductVersion, file), L"40000.5");
  expect_no_error();
}

TEST_F(FileVersions, an_empty_text_is_no_failure_and_a_text_ends_at_its_first_character_0) {
  const std::wstring file = version_sample(L"languages");
  EXPECT_EQ(text(&_KwRtLib::GetInfoInternalName, file), L"");
  EXPECT_EQ(text(&_KwRtLib::GetInfoLegalCopyright, file), L"vor");
  expect_no_error();
}

TEST_F(FileVersions, a_missing_text_fails_with_20001) {
  EXPECT_EQ(text(&_KwRtLib::GetInfoLegalCopyright, version_sample(L"no_table")), L"");
  EXPECT_EQ(recorded_description(), L"");
  expect_error(20001, L"");
  EXPECT_EQ(company(version_sample(L"numbers_alone")), L"");
  expect_error(20001, L"");
}

TEST_F(FileVersions, texts_of_a_file_without_a_version_fail_with_20000) {
  folder_.write(L"plain.txt", "no program");
  for (const TextCall call : {&_KwRtLib::GetInfoCompanyName, &_KwRtLib::GetInfoFileDescription,
                              &_KwRtLib::GetInfoFileVersion, &_KwRtLib::GetInfoInternalName,
                              &_KwRtLib::GetInfoLegalCopyright, &_KwRtLib::GetInfoProductName,
                              &_KwRtLib::GetInfoProductVersion}) {
    EXPECT_EQ(text(call, folder_.file(L"plain.txt")), L"");
    EXPECT_EQ(recorded_description(), L"");
    expect_error(20000, L"");
    EXPECT_EQ(text(call, folder_.file(L"missing")), L"");
    expect_error(20000, L"");
  }
}

TEST_F(FileVersions, the_first_entry_of_the_table_that_has_a_block_is_the_language) {
  EXPECT_EQ(company(version_sample(L"languages")), L"Firma");
}

// The tests run under American English, whose code page is 437.
TEST_F(FileVersions, the_users_own_code_with_its_decimal_code_page_goes_first) {
  EXPECT_EQ(company(version_sample(L"user_languages")), L"company");
  EXPECT_EQ(text(&_KwRtLib::GetInfoProductName, version_sample(L"user_languages")), L"");
  expect_error(20001, L"");
}

TEST_F(FileVersions, without_a_table_or_a_block_of_it_the_fixed_code_is_the_language) {
  EXPECT_EQ(company(version_sample(L"no_table")), L"of the fixed code");
  EXPECT_EQ(company(version_sample(L"foreign_table")), L"of the fixed code");
}

TEST_F(FileVersions, an_entry_is_written_in_8_digits) {
  const std::string table("\x04\x00\x0C\x00", 4);
  const std::wstring file = file_with(
      VersionNode(L"VS_VERSION_INFO", kBinary, fixed_info(), 52,
                  {VersionNode(L"StringFileInfo",
                               {VersionNode(L"0004000C", {VersionNode(L"CompanyName", L"short")})}),
                   VersionNode(L"VarFileInfo", {VersionNode(L"Translation", kBinary, table, 4)})}));
  EXPECT_EQ(company(file), L"short");
}

TEST_F(FileVersions, half_an_entry_at_the_end_of_the_table_is_none) {
  const std::string table("\x09\x04", 2);
  const std::wstring file = file_with(
      VersionNode(L"VS_VERSION_INFO", kBinary, fixed_info(), 52,
                  {VersionNode(L"StringFileInfo",
                               {VersionNode(L"04090000", {VersionNode(L"CompanyName", L"wrong")}),
                                VersionNode(L"040904E4", {VersionNode(L"CompanyName", L"right")})}),
                   VersionNode(L"VarFileInfo", {VersionNode(L"Translation", kBinary, table, 2)})}));
  EXPECT_EQ(company(file), L"right");
}

TEST_F(FileVersions, a_long_text_comes_whole) {
  const std::wstring longest(20000, L'x');
  const std::wstring file = file_with(VersionNode(
      L"VS_VERSION_INFO", kBinary, fixed_info(), 52,
      {VersionNode(L"StringFileInfo",
                   {VersionNode(L"040904E4", {VersionNode(L"CompanyName", longest)})})}));
  EXPECT_EQ(company(file), longest);
  EXPECT_EQ(file_version(file), (Numbers{1, 2, 0x30004, 0x10002, 0x30004}));
  EXPECT_EQ(product_version(file), (Numbers{5, 6, 0x70008, 0x50006, 0x70008}));
}

TEST_F(FileVersions, a_text_that_claims_more_than_there_is_ends_with_the_resource) {
  const std::string text = bytes_of(L"abc");
  const std::wstring file = file_with(VersionNode(
      L"VS_VERSION_INFO", kBinary, fixed_info(), 52,
      {VersionNode(L"StringFileInfo", {VersionNode(L"040904E4", {VersionNode(L"CompanyName", kText,
                                                                             text, 30000)})})}));
  const std::wstring found = company(file);
  EXPECT_TRUE(found.empty() || found.starts_with(L"abc"));
  EXPECT_LT(found.size(), 1000U);
}

// Whatever is wrong with a resource, it is a failure or some text, and no harm is done.
TEST_F(FileVersions, damaged_resources_do_no_harm) {
  const std::string table("\x09\x04\xE4\x04", 4);
  const std::string whole =
      VersionNode(L"VS_VERSION_INFO", kBinary, fixed_info(), 52,
                  {VersionNode(L"StringFileInfo",
                               {VersionNode(L"040904E4", {VersionNode(L"CompanyName", L"one"),
                                                          VersionNode(L"ProductName", L"two")})}),
                   VersionNode(L"VarFileInfo", {VersionNode(L"Translation", kBinary, table, 4)})})
          .bytes();
  EXPECT_EQ(company(file_with(whole)), L"one");
  std::mt19937 random(7);
  const auto below = [&](std::size_t limit) { return random() % limit; };
  for (int i = 0; i < 60; ++i) {
    std::string damaged = whole.substr(0, i % 5 == 0 ? 2 + below(whole.size()) : whole.size());
    for (std::size_t n = below(4); n > 0; --n) {
      damaged[below(damaged.size())] = static_cast<char>(below(2) == 0 ? 0xFF : random());
    }
    const std::wstring file = file_with(damaged);
    Numbers numbers;
    read(&_KwRtLib::GetFileVersion, file, numbers);
    EXPECT_LT(company(file).size(), damaged.size());
    EXPECT_LT(text(&_KwRtLib::GetInfoProductName, file).size(), damaged.size());
  }
}

TEST_F(FileVersions, names_of_any_script_and_any_length) {
  std::wstring folder = folder_.path() + L"\x4F60\x03A9";
  ASSERT_TRUE(CreateDirectoryW(folder.c_str(), nullptr));
  EXPECT_TRUE(CopyFileW(version_sample(L"languages").c_str(), (folder + L"\\\xE8.dll").c_str(), 0));
  EXPECT_EQ(company(folder + L"\\\xE8.dll"), L"Firma");
  while (folder.size() < 300) {
    folder += L"\\" + std::wstring(100, L'f');
    ASSERT_TRUE(CreateDirectoryW((L"\\\\?\\" + folder).c_str(), nullptr));
  }
  const std::wstring file = folder + L"\\a.dll";
  EXPECT_TRUE(CopyFileW(version_sample(L"languages").c_str(), (L"\\\\?\\" + file).c_str(), TRUE));
  EXPECT_EQ(company(file), L"Firma");
  EXPECT_EQ(file_version(file).high, 0x10002);
  DeleteFileW((L"\\\\?\\" + file).c_str());
  while (folder.size() > folder_.path().size() + 2) {
    RemoveDirectoryW((L"\\\\?\\" + folder).c_str());
    folder.resize(folder.rfind(L'\\'));
  }
}

// The numbers and one text of every program and library of the system, type libraries and drivers
// among them, against the services asked here.
TEST_F(FileVersions, the_systems_own_files_tell_what_the_services_tell) {
  wchar_t system[260];
  GetSystemDirectoryW(system, 260);
  const std::wstring folder = std::wstring(system) + L"\\";
  int with_version = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.is_directory()) continue;
    const std::wstring file = entry.path().wstring();
    DWORD ignored = 0;
    const DWORD size = GetFileVersionInfoSizeW(file.c_str(), &ignored);
    Numbers numbers;
    EXPECT_EQ(read(&_KwRtLib::GetFileVersion, file, numbers), size != 0) << size;
    if (size == 0) continue;
    ++with_version;
    std::string block(size, '\0');
    GetFileVersionInfoW(file.c_str(), 0, size, block.data());
    VS_FIXEDFILEINFO* info = nullptr;
    UINT length = 0;
    ASSERT_TRUE(VerQueryValueW(block.data(), L"\\", reinterpret_cast<void**>(&info), &length));
    EXPECT_EQ(numbers.high, static_cast<LONG>(info->dwFileVersionMS));
    EXPECT_EQ(numbers.low, static_cast<LONG>(info->dwFileVersionLS));
    WORD* table = nullptr;
    if (!VerQueryValueW(block.data(), L"\\VarFileInfo\\Translation",
                        reinterpret_cast<void**>(&table), &length) ||
        length != 4) {
      continue;
    }
    wchar_t path[100];
    wsprintfW(path, L"\\StringFileInfo\\%04x%04x\\FileDescription", table[0], table[1]);
    wchar_t* description = nullptr;
    if (VerQueryValueW(block.data(), path, reinterpret_cast<void**>(&description), &length)) {
      EXPECT_EQ(text(&_KwRtLib::GetInfoFileDescription, file), description);
    }
  }
  EXPECT_GT(with_version, 100);
}

}  // namespace
}  // namespace qv::tests
