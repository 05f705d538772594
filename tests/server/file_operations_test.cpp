// Files and folders copied, deleted, created and tested.
#include <string>
#include <vector>

#include "server/client.h"
#include "server/compress_tool.h"
#include "server/temp_folder.h"

namespace qv::tests {
namespace {

constexpr LONG kReadOnly = FILE_ATTRIBUTE_READONLY;
constexpr LONG kHidden = FILE_ATTRIBUTE_HIDDEN;
constexpr LONG kRecurse = 1;

class FileOperations : public testing::Test {
 protected:
  using OneName = HRESULT (STDMETHODCALLTYPE _KwRtLib::*)(BSTR*, SHORT*);

  FileOperations() { global_->Reset_Error(); }

  SHORT call(OneName member, std::wstring_view name) {
    String argument(name);
    SHORT result = 99;
    EXPECT_EQ((global_.get()->*member)(&argument, &result), S_OK);
    EXPECT_EQ(argument.view(), name);
    return result;
  }
  SHORT file_kill(std::wstring_view name) { return call(&_KwRtLib::File_Kill, name); }
  SHORT path_kill(std::wstring_view name) { return call(&_KwRtLib::Path_Kill, name); }
  SHORT path_create(std::wstring_view name) { return call(&_KwRtLib::Path_Create, name); }
  SHORT file_verify(std::wstring_view name) { return call(&_KwRtLib::File_Verify, name); }
  SHORT path_verify(std::wstring_view name) {
    SHORT result = 99;
    EXPECT_EQ(global_->Path_Verify(String(name), &result), S_OK);
    return result;
  }
  bool copy(const wchar_t* spec, LONG attributes = 0, LONG remove = 0, LONG flags = 0,
            const wchar_t* from = L"from", const wchar_t* to = L"to") {
    String source(folder_.file(from));
    String target(folder_.file(to));
    String pattern(spec);
    VARIANT_BOOL failed = VARIANT_TRUE;
    EXPECT_EQ(global_->File_Copy(&source, &target, &pattern, &attributes, &remove, &flags, &failed),
              S_OK);
    return failed == VARIANT_FALSE;
  }
  SHORT expand(std::wstring_view source, std::wstring_view target) {
    String from(source);
    String to(target);
    SHORT failed = 99;
    EXPECT_EQ(global_->File_Expand(&from, &to, &failed), S_OK);
    return failed;
  }

  void make_folder(std::wstring_view name) {
    EXPECT_TRUE(CreateDirectoryW(folder_.file(name).c_str(), nullptr));
  }
  void set_attributes(std::wstring_view name, DWORD attributes) {
    EXPECT_TRUE(SetFileAttributesW(folder_.file(name).c_str(), attributes));
  }
  DWORD attributes(std::wstring_view name) {
    return GetFileAttributesW(folder_.file(name).c_str());
  }
  void expect_record(LONG number, const wchar_t* source) {
    LONG actual = 0;
    String text;
    EXPECT_EQ(global_->Error_Number(&actual), S_OK);
    EXPECT_EQ(actual, number);
    EXPECT_EQ(global_->Error_Source(&text), S_OK);
    EXPECT_EQ(text.view(), source);
    global_->Reset_Error();
  }
  bool record_is_empty() {
    VARIANT_BOOL filled = VARIANT_TRUE;
    EXPECT_EQ(global_->Check_Error(&filled), S_OK);
    return filled == VARIANT_FALSE;
  }
  // Closes the handle that the process has on a file, if any; a handle can be found by no other
  // way.
  bool close_handle_on(std::wstring_view name) {
    BY_HANDLE_FILE_INFORMATION wanted{};
    HANDLE file =
        CreateFileW(folder_.file(name).c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                    nullptr, OPEN_EXISTING, 0, nullptr);
    GetFileInformationByHandle(file, &wanted);
    CloseHandle(file);
    for (INT_PTR number = 4; number < 0x1000; number += 4) {
      HANDLE candidate = reinterpret_cast<HANDLE>(number);
      BY_HANDLE_FILE_INFORMATION found{};
      if (GetFileType(candidate) != FILE_TYPE_DISK) continue;
      if (!GetFileInformationByHandle(candidate, &found)) continue;
      if (found.nFileIndexLow == wanted.nFileIndexLow &&
          found.nFileIndexHigh == wanted.nFileIndexHigh &&
          found.dwVolumeSerialNumber == wanted.dwVolumeSerialNumber) {
        return CloseHandle(candidate) != FALSE;
      }
    }
    return false;
  }

  Pointer<_KwRtLib> global_ = create_global();
  TempFolder folder_;
};

TEST_F(FileOperations, File_Kill_deletes_a_file) {
  folder_.write(L"a.txt", "x");
  EXPECT_EQ(file_kill(folder_.file(L"a.txt")), 0);
  EXPECT_FALSE(folder_.exists(L"a.txt"));
}

TEST_F(FileOperations, File_Kill_of_a_missing_file_succeeds) {
  EXPECT_EQ(file_kill(folder_.file(L"a.txt")), 0);
  EXPECT_EQ(file_kill(folder_.file(L"none\\a.txt")), 0);
  EXPECT_TRUE(record_is_empty());
}

TEST_F(FileOperations, File_Kill_of_a_name_that_ends_in_a_backslash_does_nothing) {
  folder_.write(L"a.txt", "x");
  EXPECT_EQ(file_kill(folder_.path()), 0);
  EXPECT_EQ(file_kill(folder_.path() + L"  "), 0);
  EXPECT_EQ(file_kill(L""), 0);
  EXPECT_TRUE(folder_.exists(L"a.txt"));
}

TEST_F(FileOperations, File_Kill_deletes_read_only_hidden_and_system_files) {
  for (const DWORD mark : {FILE_ATTRIBUTE_READONLY, FILE_ATTRIBUTE_HIDDEN, FILE_ATTRIBUTE_SYSTEM}) {
    folder_.write(L"a.txt", "x");
    set_attributes(L"a.txt", mark);
    EXPECT_EQ(file_kill(folder_.file(L"a.txt")), 0);
    EXPECT_FALSE(folder_.exists(L"a.txt")) << mark;
  }
}

TEST_F(FileOperations, File_Kill_takes_wildcards_and_leaves_folders) {
  folder_.write(L"a.txt", "x");
  folder_.write(L"b.txt", "x");
  folder_.write(L"c.dat", "x");
  make_folder(L"d.txt");
  EXPECT_EQ(file_kill(folder_.file(L"*.txt")), 0);
  EXPECT_FALSE(folder_.exists(L"a.txt"));
  EXPECT_FALSE(folder_.exists(L"b.txt"));
  EXPECT_TRUE(folder_.exists(L"c.dat"));
  EXPECT_TRUE(folder_.exists(L"d.txt"));
  EXPECT_EQ(file_kill(folder_.file(L"d.txt")), 0);
  EXPECT_TRUE(folder_.exists(L"d.txt"));
}

TEST_F(FileOperations, File_Kill_understands_slashes) {
  folder_.write(L"a.txt", "x");
  auto name = folder_.file(L"a.txt");
  for (auto& character : name) {
    if (character == L'\\') character = L'/';
  }
  EXPECT_EQ(file_kill(name), 0);
  EXPECT_FALSE(folder_.exists(L"a.txt"));
}

TEST_F(FileOperations, File_Kill_of_a_locked_file_is_70) {
  folder_.write(L"a.txt", "x");
  HANDLE lock = CreateFileW(folder_.file(L"a.txt").c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING,
                            0, nullptr);
  EXPECT_EQ(file_kill(folder_.file(L"a.txt")), 70);
  EXPECT_EQ(file_kill(folder_.file(L"*")), 70);
  CloseHandle(lock);
  EXPECT_TRUE(folder_.exists(L"a.txt"));
  EXPECT_TRUE(record_is_empty());
}

TEST_F(FileOperations, File_Kill_on_a_missing_drive_is_68) {
  EXPECT_EQ(file_kill(L"Q:\\a.txt"), 68);
}

TEST_F(FileOperations, Path_Kill_deletes_a_whole_tree) {
  make_folder(L"tree");
  make_folder(L"tree\\deep");
  make_folder(L"tree\\deep\\er");
  folder_.write(L"tree\\a.txt", "x");
  folder_.write(L"tree\\deep\\er\\b.txt", "x");
  set_attributes(L"tree\\deep\\er\\b.txt", kReadOnly);
  set_attributes(L"tree\\deep", kHidden);
  EXPECT_EQ(path_kill(folder_.file(L"tree")), 0);
  EXPECT_FALSE(folder_.exists(L"tree"));
  make_folder(L"tree");
  EXPECT_EQ(path_kill(folder_.file(L"tree\\")), 0);
  EXPECT_FALSE(folder_.exists(L"tree"));
}

TEST_F(FileOperations, Path_Kill_of_a_missing_folder_is_76) {
  EXPECT_EQ(path_kill(folder_.file(L"none")), 76);
  EXPECT_EQ(path_kill(L""), 76);
  EXPECT_TRUE(record_is_empty());
}

TEST_F(FileOperations, Path_Kill_does_not_enter_folders_with_a_leading_dot_and_fails_on_them) {
  make_folder(L"tree");
  make_folder(L"tree\\.kept");
  folder_.write(L"tree\\.kept\\a.txt", "x");
  folder_.write(L"tree\\b.txt", "x");
  EXPECT_EQ(path_kill(folder_.file(L"tree")), 75);
  EXPECT_TRUE(folder_.exists(L"tree\\.kept\\a.txt"));
  EXPECT_FALSE(folder_.exists(L"tree\\b.txt"));
}

TEST_F(FileOperations, Path_Kill_ends_at_a_locked_file) {
  make_folder(L"tree");
  make_folder(L"tree\\deep");
  folder_.write(L"tree\\deep\\a.txt", "x");
  HANDLE lock = CreateFileW(folder_.file(L"tree\\deep\\a.txt").c_str(), GENERIC_READ, 0, nullptr,
                            OPEN_EXISTING, 0, nullptr);
  EXPECT_EQ(path_kill(folder_.file(L"tree")), 70);
  CloseHandle(lock);
  EXPECT_TRUE(folder_.exists(L"tree\\deep\\a.txt"));
}

TEST_F(FileOperations, Path_Kill_of_a_file_fails_and_keeps_it) {
  folder_.write(L"a.txt", "x");
  EXPECT_NE(path_kill(folder_.file(L"a.txt")), 0);
  EXPECT_TRUE(folder_.exists(L"a.txt"));
}

TEST_F(FileOperations, Path_Create_makes_all_folders_and_takes_slashes) {
  EXPECT_EQ(path_create(folder_.file(L"a\\b\\c")), 0);
  EXPECT_TRUE(folder_.exists(L"a\\b\\c"));
  EXPECT_EQ(path_create(folder_.file(L"d/e/f/")), 0);
  EXPECT_TRUE(folder_.exists(L"d\\e\\f"));
  EXPECT_EQ(path_create(folder_.file(L"a\\g\\")), 0);
  EXPECT_TRUE(folder_.exists(L"a\\g"));
}

TEST_F(FileOperations, Path_Create_of_an_existing_folder_is_75) {
  EXPECT_EQ(path_create(folder_.path()), 75);
  folder_.write(L"file", "x");
  EXPECT_EQ(path_create(folder_.file(L"file")), 75);
  EXPECT_TRUE(record_is_empty());
}

TEST_F(FileOperations, Path_Create_tells_the_number_of_the_last_folder) {
  folder_.write(L"file", "x");
  EXPECT_EQ(path_create(folder_.file(L"file\\below")), 76);
  EXPECT_EQ(path_create(folder_.file(L"a*b")), 52);
  EXPECT_EQ(path_create(L"Q:\\a\\b"), 68);
  EXPECT_EQ(path_create(L""), 0);
}

TEST_F(FileOperations, Path_Create_and_Path_Kill_work_beyond_260_characters) {
  std::wstring name = folder_.file(L"long");
  for (int level = 0; level < 6; ++level) name += L"\\" + std::wstring(100, L'x');
  EXPECT_EQ(path_create(name), 0);
  EXPECT_EQ(path_verify(name), -1);
  EXPECT_EQ(path_create(name), 75);
  EXPECT_EQ(path_kill(folder_.file(L"long")), 0);
  EXPECT_FALSE(folder_.exists(L"long"));
}

TEST_F(FileOperations, File_Verify_knows_files_only) {
  folder_.write(L"a.txt", "x");
  EXPECT_EQ(file_verify(folder_.file(L"a.txt")), -1);
  EXPECT_EQ(file_verify(folder_.path()), 0);
  EXPECT_EQ(file_verify(folder_.file(L"b.txt")), 0);
  EXPECT_EQ(file_verify(folder_.file(L"*.txt")), 0);
  EXPECT_EQ(file_verify(L""), 0);
  EXPECT_EQ(file_verify(L"Q:\\a.txt"), 0);
  EXPECT_TRUE(record_is_empty());
}

TEST_F(FileOperations, File_Verify_sees_a_locked_file) {
  folder_.write(L"a.txt", "x");
  HANDLE lock = CreateFileW(folder_.file(L"a.txt").c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING,
                            0, nullptr);
  EXPECT_EQ(file_verify(folder_.file(L"a.txt")), -1);
  CloseHandle(lock);
}

TEST_F(FileOperations, Path_Verify_knows_folders_only) {
  folder_.write(L"a.txt", "x");
  make_folder(L"empty");
  EXPECT_EQ(path_verify(folder_.path()), -1);
  EXPECT_EQ(path_verify(folder_.file(L"empty")), -1);
  EXPECT_EQ(path_verify(L"  " + folder_.file(L"empty") + L"  "), -1);
  EXPECT_EQ(path_verify(folder_.file(L"a.txt")), 0);
  EXPECT_EQ(path_verify(folder_.file(L"none")), 0);
  EXPECT_EQ(path_verify(L""), 0);
  EXPECT_EQ(path_verify(L"   "), 0);
  EXPECT_EQ(path_verify(L"Q:\\"), 0);
  EXPECT_EQ(path_verify(L"C:\\"), -1);
  EXPECT_TRUE(record_is_empty());
}

TEST_F(FileOperations, Path_Verify_finds_a_hidden_folder) {
  make_folder(L"hidden");
  set_attributes(L"hidden", kHidden);
  EXPECT_EQ(path_verify(folder_.file(L"hidden")), -1);
}

class Copying : public FileOperations {
 protected:
  void SetUp() override {
    make_folder(L"from");
    make_folder(L"to");
    folder_.write(L"from\\a.txt", "a");
    folder_.write(L"from\\b.dat", "b");
  }
};

TEST_F(Copying, the_files_that_match_are_copied) {
  EXPECT_TRUE(copy(L"*.txt"));
  EXPECT_EQ(folder_.read(L"to\\a.txt"), "a");
  EXPECT_FALSE(folder_.exists(L"to\\b.dat"));
  EXPECT_TRUE(copy(L"*.*"));
  EXPECT_EQ(folder_.read(L"to\\b.dat"), "b");
}

TEST_F(Copying, optional_arguments_may_be_left_out) {
  String source(folder_.file(L"from"));
  String target(folder_.file(L"to"));
  String pattern(L"*");
  VARIANT_BOOL failed = VARIANT_TRUE;
  EXPECT_EQ(global_->File_Copy(&source, &target, &pattern, nullptr, nullptr, nullptr, &failed),
            S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_TRUE(folder_.exists(L"to\\a.txt"));
}

TEST_F(Copying, nothing_to_copy_is_no_failure) {
  EXPECT_TRUE(copy(L"*.none"));
  EXPECT_TRUE(copy(L"*", 0, 0, 0, L"missing"));
}

TEST_F(Copying, a_read_only_target_is_replaced) {
  folder_.write(L"to\\a.txt", "old");
  set_attributes(L"to\\a.txt", kReadOnly);
  EXPECT_TRUE(copy(L"a.txt"));
  EXPECT_EQ(folder_.read(L"to\\a.txt"), "a");
}

TEST_F(Copying, attributes_0_leave_hidden_files_out_and_attributes_2_copy_those_alone) {
  set_attributes(L"from\\b.dat", kHidden);
  EXPECT_TRUE(copy(L"*"));
  EXPECT_TRUE(folder_.exists(L"to\\a.txt"));
  EXPECT_FALSE(folder_.exists(L"to\\b.dat"));
  EXPECT_EQ(file_kill(folder_.file(L"to\\*")), 0);
  EXPECT_TRUE(copy(L"*", kHidden));
  EXPECT_FALSE(folder_.exists(L"to\\a.txt"));
  EXPECT_TRUE(folder_.exists(L"to\\b.dat"));
}

TEST_F(Copying, attributes_0_copy_read_only_files_too) {
  set_attributes(L"from\\a.txt", kReadOnly);
  EXPECT_TRUE(copy(L"*"));
  EXPECT_NE(attributes(L"to\\a.txt") & kReadOnly, 0U);
}

TEST_F(Copying, attributes_to_remove_go_from_the_copies_alone) {
  set_attributes(L"from\\a.txt", kReadOnly | kHidden);
  EXPECT_TRUE(copy(L"*", kHidden, kReadOnly));
  EXPECT_EQ(attributes(L"to\\a.txt") & kReadOnly, 0U);
  EXPECT_NE(attributes(L"to\\a.txt") & kHidden, 0U);
  EXPECT_NE(attributes(L"from\\a.txt") & kReadOnly, 0U);
}

TEST_F(Copying, folders_below_are_copied_only_on_demand) {
  make_folder(L"from\\sub");
  make_folder(L"from\\sub\\deep");
  make_folder(L"from\\.git");
  folder_.write(L"from\\sub\\deep\\c.txt", "c");
  folder_.write(L"from\\.git\\d.txt", "d");
  EXPECT_TRUE(copy(L"*.txt"));
  EXPECT_FALSE(folder_.exists(L"to\\sub"));
  EXPECT_TRUE(copy(L"*.txt", 0, 0, kRecurse));
  EXPECT_EQ(folder_.read(L"to\\sub\\deep\\c.txt"), "c");
  EXPECT_FALSE(folder_.exists(L"to\\.git"));
}

TEST_F(Copying, a_target_below_its_source_is_not_copied_into_itself) {
  make_folder(L"from\\sub");
  make_folder(L"from\\copy");
  folder_.write(L"from\\sub\\c.txt", "c");
  EXPECT_TRUE(copy(L"*", 0, 0, kRecurse, L"from", L"from\\COPY\\"));
  EXPECT_EQ(folder_.read(L"from\\copy\\sub\\c.txt"), "c");
  EXPECT_FALSE(folder_.exists(L"from\\copy\\copy"));
}

TEST_F(Copying, a_missing_target_folder_is_76) {
  EXPECT_FALSE(copy(L"*", 0, 0, 0, L"from", L"missing"));
  expect_record(76, L"KwRtLibMod.File_Copy");
}

TEST_F(Copying, a_locked_source_is_70_and_what_was_copied_stays) {
  HANDLE lock = CreateFileW(folder_.file(L"from\\b.dat").c_str(), GENERIC_READ, 0, nullptr,
                            OPEN_EXISTING, 0, nullptr);
  EXPECT_FALSE(copy(L"*"));
  CloseHandle(lock);
  expect_record(70, L"KwRtLibMod.File_Copy");
  EXPECT_TRUE(folder_.exists(L"from\\a.txt"));
}

TEST_F(Copying, a_failure_in_a_folder_below_chains_the_Source) {
  make_folder(L"from\\sub");
  folder_.write(L"from\\sub\\c.txt", "c");
  HANDLE lock = CreateFileW(folder_.file(L"from\\sub\\c.txt").c_str(), GENERIC_READ, 0, nullptr,
                            OPEN_EXISTING, 0, nullptr);
  EXPECT_FALSE(copy(L"*", 0, 0, kRecurse));
  CloseHandle(lock);
  expect_record(70, L"KwRtLibMod.File_Copy < KwRtLibMod.File_Copy");
  EXPECT_EQ(folder_.read(L"to\\a.txt"), "a");
}

TEST_F(Copying, a_folder_in_place_of_the_target_file_is_75) {
  make_folder(L"to\\a.txt");
  EXPECT_FALSE(copy(L"a.txt"));
  expect_record(75, L"KwRtLibMod.File_Copy");
}

TEST_F(Copying, a_source_on_a_missing_drive_is_68) {
  String source(L"Q:\\from");
  String target(folder_.file(L"to"));
  String pattern(L"*");
  VARIANT_BOOL failed = VARIANT_FALSE;
  EXPECT_EQ(global_->File_Copy(&source, &target, &pattern, nullptr, nullptr, nullptr, &failed),
            S_OK);
  EXPECT_EQ(failed, VARIANT_TRUE);
  expect_record(68, L"KwRtLibMod.File_Copy");
}

TEST_F(FileOperations, File_Expand_expands_a_compressed_file) {
  std::string text;
  for (int i = 0; i < 600; ++i) {
    text += "line " + std::to_string(i) + " of " + std::to_string(i * i) + "\r\n";
  }
  std::string bytes;
  for (unsigned i = 0, n = 1; i < 10000; ++i, n = n * 69069 + 1) {
    bytes += static_cast<char>(n >> 24);
  }
  for (const std::string& content :
       {std::string("expanded"), std::string(1, 'x'), std::string(9000, '\0'), text, bytes}) {
    const std::string file = compress(content);
    folder_.write(L"a.tx_", file);
    EXPECT_EQ(expand(folder_.file(L"a.tx_"), folder_.file(L"a.txt")), 0);
    EXPECT_TRUE(folder_.read(L"a.txt") == content) << content.size();
    EXPECT_TRUE(close_handle_on(L"a.txt"));
  }
  EXPECT_LT(compress(text).size(), text.size() * 2 / 3);
}

TEST_F(FileOperations, File_Expand_leaves_the_target_open_and_closes_the_source) {
  folder_.write(L"a.tx_", compress("expanded"));
  EXPECT_EQ(expand(folder_.file(L"a.tx_"), folder_.file(L"a.txt")), 0);
  EXPECT_FALSE(DeleteFileW(folder_.file(L"a.txt").c_str()));
  EXPECT_TRUE(DeleteFileW(folder_.file(L"a.tx_").c_str()));
  EXPECT_TRUE(close_handle_on(L"a.txt"));
  EXPECT_TRUE(DeleteFileW(folder_.file(L"a.txt").c_str()));
}

TEST_F(FileOperations, File_Expand_copies_a_file_that_is_not_compressed) {
  folder_.write(L"a.dat", "as it stands");
  folder_.write(L"b.dat", "something longer than that");
  EXPECT_EQ(expand(folder_.file(L"a.dat"), folder_.file(L"b.dat")), 0);
  EXPECT_EQ(folder_.read(L"b.dat"), "as it stands");
  EXPECT_TRUE(close_handle_on(L"b.dat"));
}

TEST_F(FileOperations, File_Expand_of_a_missing_file_is_53_in_the_record) {
  EXPECT_EQ(expand(folder_.file(L"none"), folder_.file(L"a.txt")), -1);
  expect_record(53, L"KwRtLibMod.File_Open32");
  EXPECT_FALSE(folder_.exists(L"a.txt"));
}

TEST_F(FileOperations, File_Expand_to_a_target_that_cannot_be_made_is_20000_in_the_record) {
  folder_.write(L"a.tx_", compress("expanded"));
  EXPECT_EQ(expand(folder_.file(L"a.tx_"), folder_.file(L"none\\a.txt")), -1);
  expect_record(20000, L"KwRtLibMod.File_Open32");
  EXPECT_TRUE(DeleteFileW(folder_.file(L"a.tx_").c_str()));
}

TEST_F(FileOperations, File_Expand_that_fails_itself_leaves_the_record_alone) {
  make_folder(L"folder");
  EXPECT_EQ(expand(folder_.file(L"folder"), folder_.file(L"a.txt")), -1);
  EXPECT_TRUE(record_is_empty());
  EXPECT_TRUE(close_handle_on(L"a.txt"));
}

}  // namespace
}  // namespace qv::tests
