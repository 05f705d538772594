// What the event log is given, and what becomes of its refusal.
#include "services/event_log.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "frame/error_state.h"
#include "modules/stand_in.h"

namespace qv::services {
namespace {

using tests::StandIn;

struct Entry {
  std::wstring server;
  std::wstring source;
  WORD type = 0;
  WORD category = 0;
  DWORD id = 0;
  bool has_user = true;
  WORD strings = 0;
  std::string text;
  std::string data;
  bool is_data_the_list = false;
  const char* text_address = nullptr;
};
Entry entry;
bool takes_entries = true;
int deregistered = 0;
const HANDLE kSource = reinterpret_cast<HANDLE>(std::intptr_t{77});

HANDLE WINAPI opens(LPCWSTR server, LPCWSTR source) {
  entry.server = server;
  entry.source = source;
  return kSource;
}
HANDLE WINAPI does_not_open(LPCWSTR, LPCWSTR) {
  SetLastError(ERROR_ACCESS_DENIED);
  return nullptr;
}
BOOL WINAPI reports(HANDLE source, WORD type, WORD category, DWORD id, PSID user, WORD strings,
                    DWORD data_bytes, LPCSTR* list, LPVOID data) {
  EXPECT_TRUE(source == kSource || source == nullptr);
  entry.type = type;
  entry.category = category;
  entry.id = id;
  entry.has_user = user != nullptr;
  entry.strings = strings;
  entry.text = list[0];
  entry.text_address = list[0];
  entry.data.assign(static_cast<const char*>(data), data_bytes);
  entry.is_data_the_list = data == list;
  if (!takes_entries || source == nullptr) SetLastError(ERROR_INVALID_HANDLE);
  return takes_entries && source != nullptr;
}
BOOL WINAPI closes(HANDLE source) {
  EXPECT_EQ(source, kSource);
  ++deregistered;
  return TRUE;
}

class EventLogModule : public testing::Test {
 protected:
  EventLogModule() {
    frame::Reset_Error();
    entry = {};
    takes_entries = true;
    deregistered = 0;
  }
  StandIn open_{"RegisterEventSourceW", opens};
  StandIn report_{"ReportEventA", reports};
  StandIn close_{"DeregisterEventSource", closes};
};

TEST_F(EventLogModule, the_entry_has_the_arguments_and_one_string) {
  EXPECT_FALSE(LogEvent(L"Source", L"text \x20AC", 2, -5, 7));
  EXPECT_EQ(entry.server, L"");
  EXPECT_EQ(entry.source, L"Source");
  EXPECT_EQ(entry.type, 2);
  EXPECT_EQ(entry.category, 7);
  EXPECT_EQ(entry.id, static_cast<DWORD>(-5));
  EXPECT_FALSE(entry.has_user);
  EXPECT_EQ(entry.strings, 1);
  EXPECT_EQ(entry.text, "text \x80");
  EXPECT_EQ(deregistered, 1);
  EXPECT_EQ(frame::Error_Number(), 0);
}

TEST_F(EventLogModule, the_raw_data_begin_with_the_strings_address_and_run_on) {
  for (const std::size_t length : {0, 1, 3, 7, 8, 100}) {
    EXPECT_FALSE(LogEvent(L"Source", Text(std::wstring(length, L'x')), 4, 1, 0));
    EXPECT_TRUE(entry.is_data_the_list);
    EXPECT_EQ(entry.data.size(), length + 1);
    const char* address = entry.text_address;
    std::string expected(reinterpret_cast<const char*>(&address), sizeof address);
    expected.resize(length + 1);
    EXPECT_EQ(entry.data, expected);
    EXPECT_EQ(entry.text, std::string(length, 'x'));
  }
}

TEST_F(EventLogModule, the_string_ends_at_a_character_0) {
  EXPECT_FALSE(LogEvent(L"Source", Text(std::wstring_view(L"ab\0cd", 5)), 4, 1, 0));
  EXPECT_EQ(entry.text, "ab");
  EXPECT_EQ(entry.data.size(), 6U);
}

TEST_F(EventLogModule, an_entry_that_is_refused_is_a_failure_and_closes_the_source) {
  takes_entries = false;
  EXPECT_TRUE(LogEvent(L"Source", L"text", 1, 1, 0));
  EXPECT_EQ(frame::Error_Number(), 20000);
  EXPECT_EQ(frame::Error_Description(), L"Chiamata a ReportEvent: ");
  EXPECT_EQ(frame::Error_Source(), L"QvRtLibOle.KwRtLibMod.LogEvent, 0");
  EXPECT_EQ(frame::Error_LastDLLError(), ERROR_INVALID_HANDLE);
  EXPECT_EQ(deregistered, 1);
}

TEST_F(EventLogModule, a_source_that_does_not_open_is_found_out_by_the_entry) {
  const StandIn open("RegisterEventSourceW", does_not_open);
  EXPECT_TRUE(LogEvent(L"Source", L"text", 1, 1, 0));
  EXPECT_EQ(entry.text, "text");
  EXPECT_EQ(frame::Error_Number(), 20000);
  EXPECT_EQ(deregistered, 0);
}

}  // namespace
}  // namespace qv::services
