// Find_Window, Process_SetFocus and SysTray, with real windows.
#include <windows.h>
// shellapi.h needs windows.h before it.
#include <shellapi.h>

#include <algorithm>
#include <string>
#include <vector>

#include "server/client.h"

namespace qv::tests {
namespace {

// A real window of a class, gone at the end.
class TestWindow {
 public:
  explicit TestWindow(const wchar_t* class_name, HWND parent = nullptr,
                      WNDPROC handler = DefWindowProcW) {
    WNDCLASSW window_class{};
    window_class.lpfnWndProc = handler;
    window_class.lpszClassName = class_name;
    RegisterClassW(&window_class);
    const DWORD style = parent == nullptr ? WS_OVERLAPPEDWINDOW | WS_VISIBLE : WS_CHILD;
    window_ = CreateWindowExW(0, class_name, L"", style, 0, 0, 100, 100, parent, nullptr, nullptr,
                              nullptr);
    EXPECT_NE(window_, nullptr);
  }
  TestWindow(const TestWindow&) = delete;
  TestWindow& operator=(const TestWindow&) = delete;
  ~TestWindow() { DestroyWindow(window_); }

  HWND handle() const { return window_; }
  LONG number() const { return static_cast<LONG>(reinterpret_cast<std::intptr_t>(window_)); }

 private:
  HWND window_;
};

class WindowSearch : public testing::Test {
 protected:
  LONG find(LONG parent, const std::wstring& class_name, std::wstring_view excluded = {}) {
    String name(class_name);
    String handles(excluded);
    LONG found = 99;
    EXPECT_EQ(global_->Find_Window(&parent, &name, &handles, &found), S_OK);
    EXPECT_EQ(name.view(), class_name);
    EXPECT_EQ(handles.view(), excluded);
    return found;
  }
  std::wstring entry(const TestWindow& window) {
    LONG number = window.number();
    String text;
    EXPECT_EQ(global_->Long_2_Str(&number, &text), S_OK);
    EXPECT_EQ(text.length(), 4U);
    return std::wstring(text.view());
  }

  Pointer<_KwRtLib> global_ = create_global();
  TestWindow parent_{L"QvFindParent"};
  TestWindow other_{L"QvFindOther", parent_.handle()};
  TestWindow child_{L"QvFindChild", parent_.handle()};
  TestWindow grandchild_{L"QvFindDeep", child_.handle()};
};

TEST_F(WindowSearch, a_child_is_found_by_its_class) {
  EXPECT_EQ(find(parent_.number(), L"QvFindChild"), child_.number());
  EXPECT_EQ(find(parent_.number(), L"QvFindOther"), other_.number());
}

TEST_F(WindowSearch, a_grandchild_is_found_too) {
  EXPECT_EQ(find(parent_.number(), L"QvFindDeep"), grandchild_.number());
}

TEST_F(WindowSearch, the_window_itself_and_windows_elsewhere_are_not_found) {
  EXPECT_EQ(find(parent_.number(), L"QvFindParent"), 0);
  EXPECT_EQ(find(other_.number(), L"QvFindChild"), 0);
  EXPECT_EQ(find(parent_.number(), L"QvNone"), 0);
  EXPECT_EQ(find(parent_.number(), L""), 0);
}

TEST_F(WindowSearch, class_names_are_compared_by_case_and_whole) {
  EXPECT_EQ(find(parent_.number(), L"qvfindchild"), 0);
  EXPECT_EQ(find(parent_.number(), L"QvFindChil"), 0);
  EXPECT_EQ(find(parent_.number(), L"QvFindChild "), 0);
}

BOOL CALLBACK note_child(HWND window, LPARAM list) {
  wchar_t name[32];
  GetClassNameW(window, name, 32);
  if (std::wstring(name) == L"QvFindChild") {
    reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
  }
  return TRUE;
}

TEST_F(WindowSearch, the_first_in_the_systems_order_is_found) {
  const TestWindow second(L"QvFindChild", parent_.handle());
  std::vector<HWND> order;
  EnumChildWindows(parent_.handle(), note_child, reinterpret_cast<LPARAM>(&order));
  ASSERT_EQ(order.size(), 2U);
  const LONG found = find(parent_.number(), L"QvFindChild");
  EXPECT_EQ(found, static_cast<LONG>(reinterpret_cast<std::intptr_t>(order[0])));
  const TestWindow& first = found == second.number() ? second : child_;
  const TestWindow& last = found == second.number() ? child_ : second;
  EXPECT_EQ(find(parent_.number(), L"QvFindChild", entry(first)), last.number());
  EXPECT_EQ(find(parent_.number(), L"QvFindChild", entry(last)), first.number());
  EXPECT_EQ(find(parent_.number(), L"QvFindChild", entry(last) + entry(first)), 0);
}

TEST_F(WindowSearch, the_only_match_is_not_found_when_it_is_excluded) {
  EXPECT_EQ(find(parent_.number(), L"QvFindChild", entry(child_)), 0);
  EXPECT_EQ(find(parent_.number(), L"QvFindChild", entry(other_) + entry(child_)), 0);
  EXPECT_EQ(find(parent_.number(), L"QvFindChild", entry(other_)), child_.number());
}

TEST_F(WindowSearch, a_handle_counts_only_where_an_entry_begins) {
  const std::wstring handle = entry(child_);
  for (std::size_t before = 1; before < 4; ++before) {
    const std::wstring straddling = std::wstring(before, L'x') + handle + L"yyyy";
    EXPECT_EQ(find(parent_.number(), L"QvFindChild", straddling), child_.number()) << before;
    EXPECT_EQ(
        find(parent_.number(), L"QvFindChild", straddling.substr(0, 8) + std::wstring(handle)), 0)
        << before;
  }
  EXPECT_EQ(find(parent_.number(), L"QvFindChild", L"xxxx" + handle), 0);
  EXPECT_EQ(find(parent_.number(), L"QvFindChild", handle.substr(0, 3)), child_.number());
}

TEST_F(WindowSearch, excluded_may_be_left_out) {
  LONG parent = parent_.number();
  String name(L"QvFindChild");
  LONG found = 0;
  EXPECT_EQ(global_->Find_Window(&parent, &name, nullptr, &found), S_OK);
  EXPECT_EQ(found, child_.number());
}

TEST_F(WindowSearch, parent_0_searches_the_desktop) {
  EXPECT_EQ(find(0, L"QvFindParent"), parent_.number());
  EXPECT_EQ(find(0, L"QvFindDeep"), grandchild_.number());
}

TEST_F(WindowSearch, a_parent_that_is_no_window_has_none) {
  EXPECT_EQ(find(123456789, L"QvFindChild"), 0);
}

TEST(ProcessSetFocus, returns_True_for_any_process_and_moves_no_focus) {
  const auto global = create_global();
  const TestWindow first(L"QvFocusFirst");
  const TestWindow second(L"QvFocusSecond");
  SetForegroundWindow(first.handle());
  const HWND before = GetForegroundWindow();
  for (LONG process : {0L, -1L, 123456L, static_cast<LONG>(GetCurrentProcessId())}) {
    const LONG given = process;
    VARIANT_BOOL result = VARIANT_FALSE;
    EXPECT_EQ(global->Process_SetFocus(&process, &result), S_OK);
    EXPECT_EQ(result, VARIANT_TRUE);
    EXPECT_EQ(process, given);
  }
  EXPECT_EQ(GetForegroundWindow(), before);
}

// What reaches the task bar, in the form that the system of the tests passes it on.
struct TaskBar {
  struct IconData {
    LONG window;
    UINT id;
    UINT flags;
    UINT message;
    wchar_t tip[128];
  };
  static inline std::vector<IconData> received;
  static inline std::vector<ULONG_PTR> actions;
  static inline LRESULT answer = TRUE;

  static LRESULT CALLBACK handle(HWND window, UINT message, WPARAM first, LPARAM second) {
    if (message != WM_COPYDATA) return DefWindowProcW(window, message, first, second);
    const auto* data = reinterpret_cast<const COPYDATASTRUCT*>(second);
    EXPECT_GE(data->cbData, sizeof(IconData));
    received.push_back(*static_cast<const IconData*>(data->lpData));
    actions.push_back(data->dwData);
    return answer;
  }
};

class SysTray : public testing::Test {
 protected:
  SysTray() {
    global_->Reset_Error();
    TaskBar::received.clear();
    TaskBar::actions.clear();
    TaskBar::answer = TRUE;
  }
  bool tray(LONG action, Value tip = Value::missing(), Value message = Value::missing()) {
    LONG window = owner_.number();
    LONG icon = static_cast<LONG>(
        reinterpret_cast<std::intptr_t>(LoadIconW(nullptr, reinterpret_cast<LPCWSTR>(IDI_HAND))));
    VARIANT_BOOL failed = 7;
    EXPECT_EQ(global_->SysTray(&window, &action, &icon, &tip, &message, &failed), S_OK);
    return failed != VARIANT_FALSE;
  }
  void expect_error(LONG number, std::wstring_view description) {
    LONG found = 0;
    String text;
    global_->Error_Number(&found);
    EXPECT_EQ(found, number);
    global_->Error_Description(text.receive());
    EXPECT_EQ(text.view(), description);
    global_->Error_Source(text.receive());
    EXPECT_EQ(text, L"KwRtLibMod.SysTray");
    global_->Reset_Error();
  }

  Pointer<_KwRtLib> global_ = create_global();
  TestWindow owner_{L"QvTrayOwner"};
  TestWindow bar_{L"Shell_TrayWnd", nullptr, TaskBar::handle};
};

TEST_F(SysTray, adds_changes_and_removes_the_icon_of_a_window) {
  for (const LONG action : {0L, 1L, 2L}) EXPECT_FALSE(tray(action));
  ASSERT_EQ(TaskBar::received.size(), 3U);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(TaskBar::actions[i], i);
    EXPECT_EQ(TaskBar::received[i].window, owner_.number());
    EXPECT_EQ(TaskBar::received[i].id, 0U);
    EXPECT_EQ(TaskBar::received[i].flags, static_cast<UINT>(NIF_ICON));
  }
}

TEST_F(SysTray, tip_and_message_are_passed_when_they_are_given) {
  EXPECT_FALSE(tray(0, L"a tip"));
  EXPECT_EQ(TaskBar::received.back().flags, static_cast<UINT>(NIF_ICON | NIF_TIP));
  EXPECT_EQ(std::wstring(TaskBar::received.back().tip), L"a tip");
  EXPECT_FALSE(tray(1, Value::missing(), 1234));
  EXPECT_EQ(TaskBar::received.back().flags, static_cast<UINT>(NIF_ICON | NIF_MESSAGE));
  EXPECT_EQ(TaskBar::received.back().message, 1234U);
  EXPECT_FALSE(tray(1, 77, L"1235"));
  EXPECT_EQ(TaskBar::received.back().flags, static_cast<UINT>(NIF_ICON | NIF_TIP | NIF_MESSAGE));
  EXPECT_EQ(std::wstring(TaskBar::received.back().tip), L"77");
  EXPECT_EQ(TaskBar::received.back().message, 1235U);
}

TEST_F(SysTray, a_tip_shows_its_first_63_characters) {
  for (const std::size_t length : {62, 63, 64, 100, 1000}) {
    EXPECT_FALSE(tray(1, std::wstring(length, L'x').c_str()));
    EXPECT_EQ(std::wstring(TaskBar::received.back().tip),
              std::wstring(std::min<std::size_t>(length, 63), L'x'));
  }
}

TEST_F(SysTray, an_icon_that_the_task_bar_refuses_is_a_failure) {
  TaskBar::answer = FALSE;
  EXPECT_TRUE(tray(2));
  expect_error(20000, L"Impossibile eseguire Shell_NotifyIcon");
}

TEST_F(SysTray, a_message_that_is_no_number_is_a_failure) {
  EXPECT_TRUE(tray(0, Value::missing(), L"text"));
  expect_error(13, L"Type mismatch");
  EXPECT_TRUE(TaskBar::received.empty());
}

}  // namespace
}  // namespace qv::tests
