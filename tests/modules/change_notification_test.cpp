// What a watch makes of each answer of the system.
#include "services/change_notification.h"

#include <gtest/gtest.h>

#include "automation/class_object.h"
#include "class_tables.h"
#include "frame/error_state.h"
#include "modules/stand_in.h"

namespace qv::services {
namespace {

using tests::StandIn;

int steps = 0;  // how far the watch came
DWORD wait_result = 0;
DWORD wait_ms = 0;
DWORD filter = 0;
BOOL subtree = FALSE;
int closed = 0;

const HANDLE kWatch = reinterpret_cast<HANDLE>(std::intptr_t{77});

HANDLE WINAPI starts(LPCWSTR, BOOL with_subtree, DWORD asked) {
  filter = asked;
  subtree = with_subtree;
  return kWatch;
}
HANDLE WINAPI does_not_start(LPCWSTR, BOOL, DWORD) {
  SetLastError(ERROR_ACCESS_DENIED);
  return INVALID_HANDLE_VALUE;
}
// The test framework waits for its threads by the same import.
DWORD WINAPI waits(HANDLE handle, DWORD time_ms) {
  if (handle != kWatch) return WaitForSingleObjectEx(handle, time_ms, FALSE);
  wait_ms = time_ms;
  ++steps;
  SetLastError(ERROR_NOT_ENOUGH_MEMORY);
  return wait_result;
}
BOOL WINAPI does_not_go_on(HANDLE) {
  ++steps;
  SetLastError(ERROR_ACCESS_DENIED);
  return FALSE;
}
BOOL WINAPI closes(HANDLE handle) {
  EXPECT_EQ(handle, kWatch);
  ++closed;
  return TRUE;
}

class ChangeNotification : public testing::Test {
 protected:
  ChangeNotification() {
    frame::Reset_Error();
    steps = 0;
    closed = 0;
    wait_result = WAIT_OBJECT_0;
  }
  Boolean watch(Boolean with_subfolders = False, Long time_out_ms = -1) {
    const auto object = Object<_QvtNotify>::from(Object<IUnknown>(create_QvtNotify()).get());
    return own<QvtNotify>(object, kQvtNotifyInfo)
        ->NotifyFileChange(L"C:\\", with_subfolders, 16, time_out_ms);
  }
  static void expect_error(std::wstring_view description, Long system_error) {
    EXPECT_EQ(frame::Error_Number(), 20000);
    EXPECT_EQ(frame::Error_Description(), description);
    EXPECT_EQ(frame::Error_Source(), L"QvtNotify.NotifyFileChange");
    if (system_error != 0) {
      EXPECT_EQ(frame::Error_LastDLLError(), system_error);
    }
  }

  StandIn start_{"FindFirstChangeNotificationW", starts};
  StandIn wait_{"WaitForSingleObject", waits};
  StandIn next_{"FindNextChangeNotification", does_not_go_on};
  StandIn close_{"FindCloseChangeNotification", closes};
};

TEST_F(ChangeNotification, arguments_reach_the_system) {
  wait_result = WAIT_TIMEOUT;
  EXPECT_TRUE(watch(True, 1234));
  EXPECT_EQ(filter, 16U);
  EXPECT_EQ(subtree, TRUE);
  EXPECT_EQ(wait_ms, 1234U);
  EXPECT_TRUE(watch(False, -1));
  EXPECT_EQ(subtree, FALSE);
  EXPECT_EQ(wait_ms, INFINITE);
}

TEST_F(ChangeNotification, a_watch_that_does_not_start_closes_nothing) {
  const StandIn start("FindFirstChangeNotificationW", does_not_start);
  EXPECT_TRUE(watch());
  expect_error(L"Access denied. ", ERROR_ACCESS_DENIED);
  EXPECT_EQ(steps, 0);
  EXPECT_EQ(closed, 0);
}

TEST_F(ChangeNotification, a_failed_wait_has_the_systems_text) {
  wait_result = WAIT_FAILED;
  EXPECT_TRUE(watch());
  expect_error(L"Not enough memory. ", ERROR_NOT_ENOUGH_MEMORY);
  EXPECT_EQ(steps, 1);
  EXPECT_EQ(closed, 1);
}

TEST_F(ChangeNotification, an_abandoned_wait_has_a_text_of_its_own) {
  wait_result = WAIT_ABANDONED;
  EXPECT_TRUE(watch());
  expect_error(L"L'evento \x00E8 stato terminato.", 0);
  EXPECT_EQ(closed, 1);
}

TEST_F(ChangeNotification, any_other_end_of_the_wait_is_unexpected) {
  for (const DWORD result : {static_cast<DWORD>(WAIT_TIMEOUT), DWORD{1}, DWORD{192}}) {
    wait_result = result;
    EXPECT_TRUE(watch());
    expect_error(L"Unexpected error.", 0);
  }
  EXPECT_EQ(closed, 3);
}

TEST_F(ChangeNotification, a_watch_that_does_not_go_on_has_the_systems_text) {
  EXPECT_TRUE(watch());
  expect_error(L"Access denied. ", ERROR_ACCESS_DENIED);
  EXPECT_EQ(steps, 2);
  EXPECT_EQ(closed, 1);
}

}  // namespace
}  // namespace qv::services
