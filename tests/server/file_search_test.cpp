// Files searched for in a tree, with events running meanwhile.
#include <algorithm>
#include <filesystem>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "server/client.h"
#include "server/temp_folder.h"

namespace qv::tests {
namespace {

using Names = std::vector<std::wstring>;

// A String array variable of the client.
class StringArray {
 public:
  StringArray() = default;
  StringArray(const StringArray&) = delete;
  StringArray& operator=(const StringArray&) = delete;
  ~StringArray() { SafeArrayDestroy(array_); }
  SAFEARRAY** operator&() { return &array_; }
  void erase() {
    SafeArrayDestroy(array_);
    array_ = nullptr;
  }
  LONG lower() const { return bound(&SafeArrayGetLBound); }
  LONG upper() const { return bound(&SafeArrayGetUBound); }
  Names names() const {
    Names names;
    for (LONG i = lower(); i <= upper(); ++i) {
      String name;
      EXPECT_EQ(SafeArrayGetElement(array_, &i, &name), S_OK);
      names.emplace_back(name.view());
    }
    return names;
  }
  SAFEARRAY* array_ = nullptr;

 private:
  using Bound = HRESULT(STDAPICALLTYPE*)(SAFEARRAY*, UINT, LONG*);
  LONG bound(Bound get) const {
    LONG value = -99;
    if (array_ == nullptr) return value;
    EXPECT_EQ(get(array_, 1, &value), S_OK);
    return value;
  }
};

Names sorted(Names names) {
  std::sort(names.begin(), names.end());
  return names;
}

class FileSearch : public testing::Test {
 protected:
  FileSearch() { global_->Reset_Error(); }

  HRESULT search(std::wstring_view path, const wchar_t* spec, Value mask, SHORT limit = -1) {
    String pattern(spec);
    return global_->Where_Is(String(path), &pattern, &mask, &list_, &limit, &found_);
  }
  // The names found, without the folder of the test.
  Names found(const wchar_t* spec, LONG mask = 0, SHORT limit = -1) {
    EXPECT_EQ(search(folder_.path(), spec, mask, limit), S_OK);
    if (found_ == 0) return {};
    EXPECT_EQ(list_.lower(), 1);
    EXPECT_EQ(list_.upper(), found_);
    Names names = list_.names();
    for (auto& name : names) {
      EXPECT_EQ(name.substr(0, folder_.path().size()), folder_.path());
      name.erase(0, folder_.path().size());
    }
    return sorted(names);
  }
  void make_folder(std::wstring_view name) {
    EXPECT_TRUE(CreateDirectoryW(folder_.file(name).c_str(), nullptr));
  }
  void set_attributes(std::wstring_view name, DWORD attributes) {
    EXPECT_TRUE(SetFileAttributesW(folder_.file(name).c_str(), attributes));
  }
  void make_small_tree() {
    make_folder(L"one");
    make_folder(L"one\\two");
    make_folder(L".hidden");
    for (const auto* name : {L"a.txt", L"one\\b.txt", L"one\\two\\c.txt", L"one\\two\\d.dat",
                             L".hidden\\e.txt", L".f.txt"}) {
      folder_.write(name, "x");
    }
  }
  // `folders` folders of `files` files each, the folders in one another by fives.
  Names make_tree(int folders, int files) {
    Names names;
    std::wstring folder;
    for (int i = 0; i < folders; ++i) {
      if (i % 5 == 0) folder.clear();
      folder += L"folder" + std::to_wstring(i) + L"\\";
      make_folder(folder);
      for (int j = 0; j < files; ++j) {
        names.push_back(folder + L"file" + std::to_wstring(j) + L".txt");
        folder_.write(names.back(), "");
      }
    }
    return sorted(names);
  }
  bool record_is_empty() {
    VARIANT_BOOL filled = VARIANT_TRUE;
    EXPECT_EQ(global_->Check_Error(&filled), S_OK);
    return filled == VARIANT_FALSE;
  }

  Pointer<_KwRtLib> global_ = create_global();
  TempFolder folder_;
  StringArray list_;
  SHORT found_ = 99;
};

TEST_F(FileSearch, files_are_found_in_all_folders_below) {
  make_small_tree();
  EXPECT_EQ(found(L"*.txt"), (Names{L"a.txt", L"one\\b.txt", L"one\\two\\c.txt"}));
  EXPECT_EQ(found(L"*.*"),
            (Names{L"a.txt", L"one\\b.txt", L"one\\two\\c.txt", L"one\\two\\d.dat"}));
  EXPECT_EQ(found(L"*"), (Names{L"a.txt", L"one\\b.txt", L"one\\two\\c.txt", L"one\\two\\d.dat"}));
  EXPECT_EQ(found(L"d.dat"), (Names{L"one\\two\\d.dat"}));
  EXPECT_EQ(found(L"?.txt"), (Names{L"a.txt", L"one\\b.txt", L"one\\two\\c.txt"}));
}

TEST_F(FileSearch, the_folder_may_lack_its_final_backslash) {
  make_small_tree();
  EXPECT_EQ(search(folder_.file(L"one"), L"b.txt", 0), S_OK);
  EXPECT_EQ(list_.names(), (Names{folder_.file(L"one\\b.txt")}));
}

TEST_F(FileSearch, nothing_found_leaves_one_empty_element) {
  EXPECT_EQ(search(folder_.path(), L"*", 0), S_OK);
  EXPECT_EQ(found_, 0);
  EXPECT_EQ(list_.lower(), 1);
  EXPECT_EQ(list_.upper(), 1);
  EXPECT_EQ(list_.names(), (Names{L""}));
}

TEST_F(FileSearch, what_an_array_held_before_is_gone) {
  make_small_tree();
  found(L"*.txt");
  EXPECT_EQ(search(folder_.path(), L"none", 0), S_OK);
  EXPECT_EQ(list_.names(), (Names{L""}));
}

TEST_F(FileSearch, MaxFiles_ends_the_search) {
  make_small_tree();
  EXPECT_EQ(found(L"*.txt", 0, 2).size(), 2U);
  EXPECT_EQ(found(L"*.txt", 0, 3).size(), 3U);
  EXPECT_EQ(found(L"*.txt", 0, 100).size(), 3U);
}

TEST_F(FileSearch, MaxFiles_0_finds_nothing_and_a_negative_one_everything) {
  make_small_tree();
  EXPECT_EQ(found(L"*.txt", 0, 0).size(), 0U);
  EXPECT_EQ(found_, 0);
  EXPECT_EQ(found(L"*.txt", 0, -32768).size(), 3U);
}

TEST_F(FileSearch, all_attributes_of_the_mask_must_be_set) {
  make_small_tree();
  set_attributes(L"a.txt", FILE_ATTRIBUTE_HIDDEN);
  set_attributes(L"one\\b.txt", FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_READONLY);
  EXPECT_EQ(found(L"*.txt", 2), (Names{L"a.txt", L"one\\b.txt"}));
  EXPECT_EQ(found(L"*.txt", 3), (Names{L"one\\b.txt"}));
  EXPECT_EQ(found(L"*.txt", 0).size(), 3U);
}

TEST_F(FileSearch, mask_16_finds_folders) {
  make_small_tree();
  EXPECT_EQ(found(L"*", 16), (Names{L"one", L"one\\two"}));
  EXPECT_EQ(found(L"t*", 16), (Names{L"one\\two"}));
}

TEST_F(FileSearch, names_and_folders_with_a_leading_dot_are_passed_over) {
  make_small_tree();
  EXPECT_EQ(found(L".f.txt").size(), 0U);
  EXPECT_EQ(found(L"e.txt").size(), 0U);
}

TEST_F(FileSearch, a_mask_that_is_no_number_finds_nothing_and_raises_nothing) {
  make_small_tree();
  EXPECT_EQ(search(folder_.path(), L"*", L"many"), S_OK);
  EXPECT_EQ(found_, 0);
  Value null;
  null.vt = VT_NULL;
  EXPECT_EQ(search(folder_.path(), L"*", null), S_OK);
  EXPECT_EQ(found_, 0);
  EXPECT_EQ(search(folder_.path(), L"*.txt", L"0"), S_OK);
  EXPECT_EQ(found_, 3);
  EXPECT_TRUE(record_is_empty());
}

TEST_F(FileSearch, a_folder_that_is_not_there_counts_as_empty) {
  EXPECT_EQ(search(folder_.file(L"none"), L"*", 0), S_OK);
  EXPECT_EQ(found_, 0);
  EXPECT_EQ(search(L"Q:\\", L"*", 0), S_OK);
  EXPECT_EQ(found_, 0);
  folder_.write(L"file", "x");
  EXPECT_EQ(search(folder_.file(L"file"), L"*", 0), S_OK);
  EXPECT_EQ(found_, 0);
  EXPECT_TRUE(record_is_empty());
}

TEST_F(FileSearch, a_relative_folder_gives_relative_names) {
  make_small_tree();
  wchar_t current[MAX_PATH];
  GetCurrentDirectoryW(MAX_PATH, current);
  SetCurrentDirectoryW(folder_.path().c_str());
  EXPECT_EQ(search(L"one", L"c.txt", 0), S_OK);
  EXPECT_EQ(list_.names(), (Names{L"one\\two\\c.txt"}));
  EXPECT_EQ(search(L"", L"c.txt", 0), S_OK);
  EXPECT_EQ(list_.names(), (Names{L"one\\two\\c.txt"}));
  SetCurrentDirectoryW(current);
}

TEST_F(FileSearch, a_tree_beyond_260_characters_is_searched) {
  std::wstring name;
  for (int level = 0; level < 4; ++level) {
    name += std::wstring(100, static_cast<wchar_t>(L'a' + level)) + L"\\";
    ASSERT_TRUE(CreateDirectoryW((L"\\\\?\\" + folder_.file(name)).c_str(), nullptr));
  }
  CloseHandle(CreateFileW((L"\\\\?\\" + folder_.file(name) + L"deep.txt").c_str(), GENERIC_WRITE, 0,
                          nullptr, CREATE_NEW, 0, nullptr));
  EXPECT_EQ(found(L"*.txt"), (Names{name + L"deep.txt"}));
  String tree(folder_.file(std::wstring(100, L'a')));
  SHORT error = 99;
  EXPECT_EQ(global_->Path_Kill(&tree, &error), S_OK);
  EXPECT_EQ(error, 0);
}

TEST_F(FileSearch, thousands_of_files_are_found_exactly) {
  const Names expected = make_tree(30, 100);
  EXPECT_EQ(found(L"*.*"), expected);
  EXPECT_EQ(found(L"*.txt"), expected);
  EXPECT_EQ(found(L"file7*.txt").size(), 30U * 11U);
}

TEST_F(FileSearch, the_systems_own_tree_is_found_as_an_independent_walk_finds_it) {
  for (const auto* extension : {L".dll", L".exe", L".inf"}) {
    Names expected;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(L"C:\\windows")) {
      auto ending = entry.path().extension().wstring();
      std::transform(ending.begin(), ending.end(), ending.begin(), towlower);
      if (ending == extension && !entry.is_directory()) expected.push_back(entry.path().wstring());
    }
    EXPECT_EQ(search(L"C:\\windows", (std::wstring(L"*") + extension).c_str(), 0), S_OK);
    EXPECT_EQ(sorted(list_.names()), sorted(expected)) << extension;
  }
}

// A window with a stop button.
class Window {
 public:
  Window() {
    WNDCLASSW window_class{};
    window_class.lpfnWndProc = &Window::procedure;
    window_class.lpszClassName = L"QvRtFileSearchTest";
    window_class.hInstance = GetModuleHandleW(nullptr);
    RegisterClassW(&window_class);
    handle_ = CreateWindowW(L"QvRtFileSearchTest", L"search", WS_OVERLAPPEDWINDOW, 0, 0, 300, 200,
                            nullptr, nullptr, window_class.hInstance, nullptr);
    SetWindowLongPtrW(handle_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    button_ = CreateWindowW(L"BUTTON", L"Stop", WS_CHILD | WS_VISIBLE, 0, 0, 80, 30, handle_,
                            reinterpret_cast<HMENU>(kStop), window_class.hInstance, nullptr);
  }
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;
  ~Window() { DestroyWindow(handle_); }

  void post_click() { PostMessageW(button_, BM_CLICK, 0, 0); }
  void post_message() { PostMessageW(handle_, kMessage, 0, 0); }

  std::function<void()> on_stop = [] {};
  std::function<void()> on_message = [] {};

 private:
  static constexpr UINT kMessage = WM_APP;
  static constexpr INT_PTR kStop = 100;

  static LRESULT CALLBACK procedure(HWND handle, UINT message, WPARAM wparam, LPARAM lparam) {
    auto* self = reinterpret_cast<Window*>(GetWindowLongPtrW(handle, GWLP_USERDATA));
    if (message == kMessage) self->on_message();
    if (message == WM_COMMAND && LOWORD(wparam) == kStop) self->on_stop();
    return DefWindowProcW(handle, message, wparam, lparam);
  }

  HWND handle_ = nullptr;
  HWND button_ = nullptr;
};

// A mask of 0 that comes from an object: the search asks for its value at each folder that it
// enters, which tells a test when that happens, at any speed of the machine. The clock has moved
// when the search goes on.
class WatchfulMask final : public IDispatch {
 public:
  explicit WatchfulMask(std::function<void(int)> on_folder) : on_folder_(std::move(on_folder)) {}
  Value value() {
    Value value;
    value.vt = VT_DISPATCH;
    value.pdispVal = this;
    return value;
  }
  int folders() const { return folders_; }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    *object = id == IID_IUnknown || id == IID_IDispatch ? this : nullptr;
    return *object != nullptr ? S_OK : E_NOINTERFACE;
  }
  // Lives on the test's stack.
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result,
                                   EXCEPINFO*, UINT*) override {
    if (id != DISPID_VALUE) return DISP_E_MEMBERNOTFOUND;
    on_folder_(++folders_);
    Sleep(20);
    result->vt = VT_I4;
    result->lVal = 0;
    return S_OK;
  }

 private:
  std::function<void(int)> on_folder_;
  int folders_ = 0;
};

TEST_F(FileSearch, a_stop_button_ends_the_search_with_what_was_found_so_far) {
  const Names all = make_tree(10, 50);
  Window window;
  window.on_stop = [&] { EXPECT_EQ(global_->Where_Stop(), S_OK); };
  // The search enters the test's own folder first, where no file is.
  WatchfulMask mask([&](int folder) {
    if (folder == 5) window.post_click();
  });
  EXPECT_EQ(search(folder_.path(), L"*.txt", mask.value()), S_OK);
  EXPECT_EQ(found_, 3 * 50);
  EXPECT_EQ(mask.folders(), 5);
  Names names = list_.names();
  EXPECT_EQ(names.size(), 150U);
  for (auto& name : names) name.erase(0, folder_.path().size());
  names = sorted(names);
  EXPECT_TRUE(std::includes(all.begin(), all.end(), names.begin(), names.end()));
}

TEST_F(FileSearch, a_window_gets_its_messages_meanwhile) {
  make_tree(5, 10);
  Window window;
  int messages = 0;
  window.on_message = [&] { ++messages; };
  WatchfulMask mask([&](int folder) {
    EXPECT_EQ(messages, folder - 1);
    window.post_message();
  });
  EXPECT_EQ(search(folder_.path(), L"*", mask.value()), S_OK);
  EXPECT_EQ(messages, 6);
  EXPECT_EQ(found_, 50);
}

TEST_F(FileSearch, a_click_that_waits_already_stops_the_search_before_its_first_file) {
  make_small_tree();
  Window window;
  window.on_stop = [&] { EXPECT_EQ(global_->Where_Stop(), S_OK); };
  window.post_click();
  EXPECT_EQ(found(L"*.txt").size(), 0U);
  EXPECT_EQ(list_.names(), (Names{L""}));
}

TEST_F(FileSearch, a_stop_before_the_search_has_no_effect) {
  make_small_tree();
  EXPECT_EQ(global_->Where_Stop(), S_OK);
  EXPECT_EQ(found(L"*.txt").size(), 3U);
}

TEST_F(FileSearch, another_object_of_the_thread_stops_the_search) {
  make_tree(5, 20);
  const auto other = create_global();
  WatchfulMask mask([&](int folder) {
    if (folder == 3) other->Where_Stop();
  });
  EXPECT_EQ(search(folder_.path(), L"*.txt", mask.value()), S_OK);
  EXPECT_EQ(found_, 20);
}

TEST_F(FileSearch, events_see_the_list_grow) {
  make_tree(5, 20);
  Window window;
  std::vector<LONG> lengths;
  window.on_message = [&] {
    EXPECT_EQ(list_.lower(), 1);
    lengths.push_back(list_.upper());
  };
  WatchfulMask mask([&](int) { window.post_message(); });
  EXPECT_EQ(search(folder_.path(), L"*.txt", mask.value()), S_OK);
  EXPECT_EQ(lengths, (std::vector<LONG>{1, 1, 20, 40, 60, 80}));
}

TEST_F(FileSearch, events_may_erase_the_list) {
  make_tree(3, 20);
  Window window;
  window.on_message = [&] { list_.erase(); };
  WatchfulMask mask([&](int folder) {
    if (folder == 3) window.post_message();
  });
  EXPECT_EQ(search(folder_.path(), L"*.txt", mask.value()), S_OK);
  EXPECT_EQ(found_, 60);
  EXPECT_EQ(list_.lower(), 1);
  EXPECT_EQ(list_.upper(), 60);
}

TEST_F(FileSearch, a_search_from_an_event_takes_the_count_over_and_does_no_harm) {
  make_tree(3, 20);
  folder_.write(L"x.dat", "x");
  Window window;
  window.on_message = [&] {
    String pattern(L"*.dat");
    Value mask(0);
    SHORT limit = -1;
    SHORT inner = 99;
    EXPECT_EQ(global_->Where_Is(String(folder_.path()), &pattern, &mask, &list_, &limit, &inner),
              S_OK);
    EXPECT_EQ(inner, 1);
  };
  WatchfulMask mask([&](int folder) {
    if (folder == 3) window.post_message();
  });
  EXPECT_EQ(search(folder_.path(), L"*.txt", mask.value()), S_OK);
  EXPECT_EQ(found_, 1 + 40);
  EXPECT_EQ(list_.upper(), 60);
}

}  // namespace
}  // namespace qv::tests
