// Files searched for as records in a collection, and both searches on a large tree.
#include <algorithm>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "server/error_record_client.h"
#include "server/process.h"
#include "server/temp_folder.h"

namespace qv::tests {
namespace {

using Names = std::vector<std::wstring>;
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

class FileSearchRecords : public WithErrorRecord {
 protected:
  LONG search(const wchar_t* spec, Value mask = 0, LONG limit = -1) {
    String pattern(spec);
    LONG found = -1;
    EXPECT_EQ(global_->Where_IsEx(String(root_), &pattern, &mask, list_.variable(), &limit, &found),
              S_OK);
    LONG count = -1;
    EXPECT_EQ(list_->Count(&count), S_OK);
    EXPECT_EQ(count, found);
    return found;
  }
  Pointer<_QvtFileInfo> record(LONG index) {
    Value number(index);
    Value item;
    EXPECT_EQ(list_->get_Item(&number, &item), S_OK);
    EXPECT_EQ(item.vt, VT_DISPATCH);
    return Pointer<_QvtFileInfo>::from(item.vt == VT_DISPATCH ? item.pdispVal : nullptr);
  }
  std::wstring name(LONG index) {
    String text;
    EXPECT_EQ(record(index)->get_FileName(&text), S_OK);
    return std::wstring(text.view());
  }
  // Of all records, below the folder that was searched.
  std::multiset<std::wstring> names() {
    std::multiset<std::wstring> all;
    LONG count = -1;
    EXPECT_EQ(list_->Count(&count), S_OK);
    for (LONG i = 1; i <= count; ++i) {
      const std::wstring whole = name(i);
      EXPECT_TRUE(whole.starts_with(root_));
      all.insert(whole.substr(root_.size()));
    }
    return all;
  }
  void make_small_tree() {
    CreateDirectoryW(folder_.file(L"one").c_str(), nullptr);
    CreateDirectoryW(folder_.file(L"one\\two").c_str(), nullptr);
    CreateDirectoryW(folder_.file(L".dot").c_str(), nullptr);
    for (const auto* file :
         {L"a.txt", L"one\\b.txt", L"one\\two\\c.txt", L"one\\d.dat", L".dot\\e.txt", L".f.txt"}) {
      folder_.write(file, "12345");
    }
  }

  TempFolder folder_;
  std::wstring root_ = folder_.path();
  Pointer<_kwCollection> list_ = create<_kwCollection>(CLSID_kwCollection);
};

TEST_F(FileSearchRecords, a_record_holds_name_attributes_dates_and_size) {
  folder_.write(L"a.txt", "1234567");
  SYSTEMTIME moment{2001, 2, 0, 3, 4, 5, 6, 789};
  FILETIME access;
  SystemTimeToFileTime(&moment, &access);
  moment.wMonth = 8;
  FILETIME write;
  SystemTimeToFileTime(&moment, &write);
  HANDLE handle = CreateFileW(folder_.file(L"a.txt").c_str(), FILE_WRITE_ATTRIBUTES, 0, nullptr,
                              OPEN_EXISTING, 0, nullptr);
  ASSERT_TRUE(SetFileTime(handle, nullptr, &access, &write));
  CloseHandle(handle);
  SetFileAttributesW(folder_.file(L"a.txt").c_str(),
                     FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN);
  WIN32_FILE_ATTRIBUTE_DATA facts;
  ASSERT_TRUE(GetFileAttributesExW(folder_.file(L"a.txt").c_str(), GetFileExInfoStandard, &facts));
  EXPECT_EQ(search(L"*.txt"), 1);
  const auto info = record(1);
  String text;
  EXPECT_EQ(info->get_FileName(&text), S_OK);
  EXPECT_EQ(text, folder_.file(L"a.txt"));
  LONG number = 0;
  EXPECT_EQ(info->get_FileAttributes(&number), S_OK);
  EXPECT_EQ(number, static_cast<LONG>(facts.dwFileAttributes));
  EXPECT_EQ(info->get_FileSize(&number), S_OK);
  EXPECT_EQ(number, 7);
  DATE date = 0;
  EXPECT_EQ(info->get_CreationTime(&date), S_OK);
  EXPECT_NEAR(date, local_date(facts.ftCreationTime), kTenthOfASecond);
  EXPECT_EQ(info->get_LastAccessTime(&date), S_OK);
  EXPECT_NEAR(date, local_date(access), kTenthOfASecond);
  EXPECT_EQ(info->get_LastWriteTime(&date), S_OK);
  EXPECT_NEAR(date, local_date(write), kTenthOfASecond);
  // A search reads no versions.
  EXPECT_EQ(info->get_MajVer(&number), S_OK);
  EXPECT_EQ(number, 0);
  expect_no_error();
}

TEST_F(FileSearchRecords, the_collection_is_cleared_first_and_records_have_no_keys) {
  make_small_tree();
  Value old(L"old");
  EXPECT_EQ(list_->Add(&old, &old, nullptr, nullptr), S_OK);
  EXPECT_EQ(search(L"*.txt"), 3);
  EXPECT_EQ(names(), (std::multiset<std::wstring>{L"a.txt", L"one\\b.txt", L"one\\two\\c.txt"}));
  Value index(1);
  String key;
  EXPECT_EQ(list_->get_Key(&index, &key), error_result(9));
  EXPECT_EQ(search(L"none"), 0);
}

// Where_Is finds files alone with this mask; applications rely on the difference.
TEST_F(FileSearchRecords, mask_0_finds_folders_too) {
  make_small_tree();
  EXPECT_EQ(search(L"*"), 6);
  EXPECT_EQ(names(), (std::multiset<std::wstring>{L"a.txt", L"one", L"one\\b.txt", L"one\\d.dat",
                                                  L"one\\two", L"one\\two\\c.txt"}));
  EXPECT_EQ(search(L"*", 16), 2);
  EXPECT_EQ(names(), (std::multiset<std::wstring>{L"one", L"one\\two"}));
  EXPECT_EQ(search(L"t*"), 1);
  EXPECT_EQ(names(), (std::multiset<std::wstring>{L"one\\two"}));
}

TEST_F(FileSearchRecords, all_attributes_of_the_mask_must_be_set) {
  make_small_tree();
  SetFileAttributesW(folder_.file(L"a.txt").c_str(), FILE_ATTRIBUTE_HIDDEN);
  SetFileAttributesW(folder_.file(L"one\\b.txt").c_str(),
                     FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_READONLY);
  EXPECT_EQ(search(L"*", 2), 2);
  EXPECT_EQ(search(L"*", L"3"), 1);
  EXPECT_EQ(names(), (std::multiset<std::wstring>{L"one\\b.txt"}));
}

TEST_F(FileSearchRecords, MaxFiles_0_finds_nothing_and_a_negative_one_everything) {
  make_small_tree();
  EXPECT_EQ(search(L"*.txt", 0, 0), 0);
  EXPECT_EQ(search(L"*.txt", 0, 2), 2);
  EXPECT_EQ(search(L"*.txt", 0, 3), 3);
  EXPECT_EQ(search(L"*.txt", 0, -2147483647 - 1), 3);
}

TEST_F(FileSearchRecords, a_failure_is_told_nowhere) {
  make_small_tree();
  EXPECT_EQ(search(L"*", L"many"), 0);
  Value null;
  null.vt = VT_NULL;
  EXPECT_EQ(search(L"*", null), 0);
  String pattern(L"*");
  Value mask(0);
  LONG limit = -1;
  LONG found = -1;
  EXPECT_EQ(global_->Where_IsEx(String(folder_.file(L"none")), &pattern, &mask, list_.variable(),
                                &limit, &found),
            S_OK);
  EXPECT_EQ(found, 0);
  expect_no_error();
}

TEST_F(FileSearchRecords, Nothing_in_place_of_a_collection_is_error_91) {
  list_ = {};
  String pattern(L"*");
  Value mask(0);
  LONG limit = -1;
  LONG found = -1;
  EXPECT_EQ(global_->Where_IsEx(String(root_), &pattern, &mask, list_.variable(), &limit, &found),
            error_result(91));
  expect_no_error();
}

TEST_F(FileSearchRecords, a_size_beyond_a_Long_keeps_its_low_32_bits) {
  HANDLE handle =
      CreateFileW(folder_.file(L"big").c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr);
  LARGE_INTEGER size;
  size.QuadPart = 0x1'8000'0005;
  SetFilePointerEx(handle, size, nullptr, FILE_BEGIN);
  ASSERT_TRUE(SetEndOfFile(handle));
  CloseHandle(handle);
  EXPECT_EQ(search(L"big"), 1);
  LONG number = 0;
  EXPECT_EQ(record(1)->get_FileSize(&number), S_OK);
  EXPECT_EQ(number, static_cast<LONG>(0x80000005));
}

// Counts a message, and posts it again, until it has come often enough; then it clicks the stop
// button, whose handler stops the search.
class StopWindow {
 public:
  StopWindow(_KwRtLib* global, int messages) : global_(global), messages_(messages) {
    WNDCLASSW window_class{};
    window_class.lpfnWndProc = &StopWindow::procedure;
    window_class.lpszClassName = L"QvRtStopWindow";
    window_class.hInstance = GetModuleHandleW(nullptr);
    RegisterClassW(&window_class);
    handle_ = CreateWindowW(L"QvRtStopWindow", L"search", WS_OVERLAPPEDWINDOW, 0, 0, 300, 200,
                            nullptr, nullptr, window_class.hInstance, nullptr);
    SetWindowLongPtrW(handle_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    button_ = CreateWindowW(L"BUTTON", L"Stop", WS_CHILD | WS_VISIBLE, 0, 0, 80, 30, handle_,
                            reinterpret_cast<HMENU>(kStop), window_class.hInstance, nullptr);
    PostMessageW(handle_, kMessage, 0, 0);
  }
  StopWindow(const StopWindow&) = delete;
  StopWindow& operator=(const StopWindow&) = delete;
  ~StopWindow() { DestroyWindow(handle_); }
  bool is_stopped() const { return is_stopped_; }

 private:
  static constexpr UINT kMessage = WM_APP;
  static constexpr INT_PTR kStop = 100;

  static LRESULT CALLBACK procedure(HWND handle, UINT message, WPARAM wparam, LPARAM lparam) {
    auto* self = reinterpret_cast<StopWindow*>(GetWindowLongPtrW(handle, GWLP_USERDATA));
    if (message == kMessage) {
      // From another moment of the search: a message posted here at once would be taken in the
      // same look at the queue.
      if (--self->messages_ > 0) {
        SetTimer(handle, 1, USER_TIMER_MINIMUM, nullptr);
      } else {
        PostMessageW(self->button_, BM_CLICK, 0, 0);
      }
    }
    if (message == WM_TIMER) {
      KillTimer(handle, 1);
      PostMessageW(handle, kMessage, 0, 0);
    }
    if (message == WM_COMMAND && LOWORD(wparam) == kStop) {
      self->is_stopped_ = true;
      EXPECT_EQ(self->global_->Where_Stop(), S_OK);
    }
    return DefWindowProcW(handle, message, wparam, lparam);
  }

  _KwRtLib* global_;
  int messages_;
  bool is_stopped_ = false;
  HWND handle_ = nullptr;
  HWND button_ = nullptr;
};

// The tree made with the tests.
class LargeTree : public FileSearchRecords {
 protected:
  LargeTree() { root_ = folder(); }

  static std::wstring folder() { return program_folder() + L"large_tree\\"; }
  // The names of its files below its folder, as the standard library walks it; once, since that
  // takes seconds.
  static std::set<std::wstring> walk() {
    std::set<std::wstring> names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder())) {
      if (!entry.is_directory()) names.insert(entry.path().wstring().substr(folder().size()));
    }
    return names;
  }
  static const std::set<std::wstring>& walked() {
    static const std::set<std::wstring> names = walk();
    return names;
  }
};

TEST_F(LargeTree, records_are_those_that_an_independent_walk_finds) {
  ASSERT_EQ(walked().size(), 50000U);
  EXPECT_EQ(search(L"*.txt"), 50000);
  const auto records = names();
  EXPECT_TRUE(std::equal(records.begin(), records.end(), walked().begin(), walked().end()));
}

TEST_F(LargeTree, an_array_holds_more_files_than_its_count_can_tell) {
  SAFEARRAY* array = nullptr;
  String pattern(L"*.txt");
  Value mask(0);
  SHORT limit = -1;
  SHORT found = -1;
  EXPECT_EQ(global_->Where_Is(String(root_), &pattern, &mask, &array, &limit, &found),
            error_result(6));
  LONG last = 0;
  SafeArrayGetUBound(array, 1, &last);
  ASSERT_EQ(last, 50000);
  BSTR* elements = nullptr;
  SafeArrayAccessData(array, reinterpret_cast<void**>(&elements));
  std::set<std::wstring> listed;
  for (LONG i = 0; i < last; ++i) listed.insert(elements[i] + root_.size());
  SafeArrayUnaccessData(array);
  EXPECT_EQ(listed, walked());
  limit = 30000;
  EXPECT_EQ(global_->Where_Is(String(root_), &pattern, &mask, &array, &limit, &found), S_OK);
  EXPECT_EQ(found, 30000);
  SafeArrayDestroy(array);
}

TEST_F(LargeTree, a_stop_button_ends_the_search_with_what_was_found_so_far) {
  StopWindow window(global_.get(), 2);
  const LONG before_stop = search(L"*.txt");
  EXPECT_TRUE(window.is_stopped());
  EXPECT_LT(before_stop, 50000);
  for (const auto& found : names()) EXPECT_TRUE(walked().contains(found));
}

}  // namespace
}  // namespace qv::tests
