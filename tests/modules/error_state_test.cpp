// The error state from inside: what no client can reach (Set_Error, the per-user records, the title
// and style kept for the message box).
#include "frame/error_state.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <thread>

#include "host_run_time/host_run_time.h"
#include "runtime/system_text.h"

namespace qv::frame {
namespace {

using tests::HostRunTime;

const Variant kNotGiven = Variant::missing();

std::wstring shown(const Text& text) { return std::wstring(text.view()); }

Err pending_overflow() {
  return {.Number = 6,
          .Description = L"Overflow",
          .Source = L"Project",
          .HelpFile = L"vb.hlp",
          .HelpContext = 77,
          .LastDllError = 2};
}

struct Expected {
  Long number;
  std::wstring source;
  std::wstring description;
  std::wstring help_file;
  Long help_context;
  std::wstring help_id;
  Long last_dll_error;
};

void expect_fields(const QVtError& record, const Expected& expected) {
  EXPECT_EQ(record.Number, expected.number);
  EXPECT_EQ(shown(record.Source), expected.source);
  EXPECT_EQ(shown(record.Description), expected.description);
  EXPECT_EQ(shown(record.HelpFile), expected.help_file);
  EXPECT_EQ(record.HelpContext, expected.help_context);
  EXPECT_EQ(shown(record.HelpId), expected.help_id);
  EXPECT_EQ(record.LastDLLError, expected.last_dll_error);
}

class SetError : public testing::Test {
 protected:
  SetError() {
    error_state() = QVtError();
    err().clear();
  }
  ~SetError() override {
    error_state() = QVtError();
    err().clear();
  }
};

using ErrorSetEx = SetError;
using ErrorSet = SetError;
using UserErrors = SetError;
using ResetError = SetError;
using Handled = SetError;
using HostError = SetError;

TEST_F(SetError, flags_0_takes_and_clears_the_pending_error) {
  err() = pending_overflow();
  Set_Error({});
  expect_fields(error_state(), {6, L"Project", L"Overflow", L"vb.hlp", 0, L"77", 2});
  EXPECT_EQ(err().Number, 0);
  EXPECT_EQ(err().Description, L"");
  EXPECT_EQ(err().LastDllError, 0);
}

TEST_F(SetError, each_field_given_replaces_what_was_pending) {
  err() = pending_overflow();
  Set_Error({.Number = Long{20010},
             .Source = L"KwRtLibMod.X",
             .Description = L"mine",
             .HelpFile = L"my.hlp",
             .HelpContext = Long{5},
             .LastDLLError = Long{3}});
  expect_fields(error_state(), {20010, L"KwRtLibMod.X", L"mine", L"my.hlp", 0, L"5", 3});
}

TEST_F(SetError, a_description_given_drops_the_pending_text_whatever_the_number) {
  err() = pending_overflow();
  Set_Error({.Description = L"mine"});
  EXPECT_EQ(error_state().Number, 6);
  EXPECT_EQ(error_state().Description, L"mine");
}

TEST_F(SetError, help_context_ends_in_HelpId_as_text_0_where_there_is_none) {
  error_state().HelpContext = 9;
  Set_Error({.Number = Long{20000}});
  expect_fields(error_state(), {20000, L"", L"", L"", 0, L"0", 0});
  Set_Error({.HelpContext = L"topic"});
  EXPECT_EQ(error_state().HelpId, L"topic");
  EXPECT_EQ(error_state().HelpContext, 0);
}

TEST_F(SetError, pending_number_65535_is_no_error) {
  err() = {.Number = 65535, .Description = L"none"};
  Set_Error({});
  EXPECT_EQ(error_state().Number, 0);
  EXPECT_EQ(error_state().Description, L"none");
  EXPECT_FALSE(Check_Error());
}

TEST_F(SetError, number_65535_given_stays) {
  err() = pending_overflow();
  Set_Error({.Number = Long{65535}});
  EXPECT_EQ(error_state().Number, 65535);
}

TEST_F(SetError, flags_2_appends_the_system_text_on_a_line_of_its_own) {
  err() = pending_overflow();
  Set_Error({}, kAppendSystemText);
  EXPECT_EQ(shown(error_state().Description), L"Overflow\r\n" + shown(system_text(2)));
  EXPECT_FALSE(system_text(2).empty());
}

TEST_F(SetError, flags_2_without_any_description_begins_with_the_line_break) {
  err().LastDllError = 2;
  Set_Error({.Number = Long{20000}, .Source = L"KwRtLibMod.File_Open32"}, kAppendSystemText);
  expect_fields(error_state(), {20000, L"KwRtLibMod.File_Open32", L"\r\n" + shown(system_text(2)),
                                L"", 0, L"0", 2});
}

TEST_F(SetError, flags_2_uses_the_system_error_given) {
  err().LastDllError = 2;
  Set_Error({.Description = L"mine", .LastDLLError = Long{5}}, kAppendSystemText);
  EXPECT_EQ(shown(error_state().Description), L"mine\r\n" + shown(system_text(5)));
}

TEST_F(SetError, flags_4_chains_and_leaves_the_pending_error_alone) {
  for (const Long flags : {4, 6, 12, 14}) {
    error_state() = QVtError();
    error_state().Number = 9;
    error_state().Source = L"inner";
    error_state().Description = L"old";
    error_state().Caption = L"title";
    error_state().Buttons = 48;
    err() = pending_overflow();
    Set_Error({.Number = Long{20000},
               .Source = L"outer",
               .Description = L"new ",
               .HelpFile = L"my.hlp",
               .HelpContext = Long{5},
               .LastDLLError = Long{3}},
              flags, L"other title", 16);
    expect_fields(error_state(), {9, L"inner < outer", L"new old", L"", 0, L"", 0});
    EXPECT_EQ(error_state().Caption, L"title");
    EXPECT_EQ(error_state().Buttons, 48);
    EXPECT_EQ(err().Number, 6);
    EXPECT_EQ(err().Description, L"Overflow");
    EXPECT_EQ(err().LastDllError, 2);
  }
}

TEST_F(SetError, a_chain_on_no_error_begins_with_the_separator_and_is_no_error) {
  Set_Error({.Source = L"here"}, kChain);
  expect_fields(error_state(), {0, L" < here", L"", L"", 0, L"", 0});
  EXPECT_FALSE(Check_Error());
}

TEST_F(SetError, a_chain_with_nothing_given_changes_nothing) {
  error_state().Source = L"inner";
  error_state().Description = L"old";
  Set_Error({}, kChain);
  expect_fields(error_state(), {0, L"inner", L"old", L"", 0, L"", 0});
}

TEST_F(SetError, flags_8_stores_the_fields_given_and_leaves_the_pending_error_alone) {
  for (const Long flags : {8, 10}) {
    error_state() = QVtError();
    error_state().HelpId = L"kept";
    error_state().Source = L"kept";
    error_state().Buttons = 48;
    err() = pending_overflow();
    Set_Error({.Number = Long{5}, .Description = L"mine", .HelpContext = Long{12}}, flags, L"title",
              16);
    expect_fields(error_state(), {5, L"kept", L"mine", L"", 12, L"kept", 0});
    EXPECT_EQ(error_state().Caption, L"title");
    EXPECT_EQ(error_state().Buttons, 16);
    EXPECT_EQ(err().Number, 6);
  }
}

TEST_F(SetError, flags_8_tells_help_context_text_from_number) {
  error_state().HelpContext = 3;
  Set_Error({.HelpContext = L"12"}, kExplicit);
  EXPECT_EQ(error_state().HelpId, L"12");
  EXPECT_EQ(error_state().HelpContext, 3);
}

TEST_F(SetError, full_mode_keeps_the_caption_unless_one_is_given_and_overwrites_the_buttons) {
  Set_Error({.Number = Long{20000}}, kTakeError, L"title", 48);
  EXPECT_EQ(error_state().Caption, L"title");
  EXPECT_EQ(error_state().Buttons, 48);
  Set_Error({.Number = Long{20001}});
  EXPECT_EQ(error_state().Caption, L"title");
  EXPECT_EQ(error_state().Buttons, 0);
}

TEST_F(SetError, an_argument_that_can_not_be_converted_leaves_what_was_pending) {
  err() = pending_overflow();
  Set_Error({.Number = L"no number",
             .Source = L"KwRtLibMod.X",
             .Description = Variant::null(),
             .HelpFile = Variant::null(),
             .HelpContext = Variant::null(),
             .LastDLLError = L"no number"});
  expect_fields(error_state(), {6, L"KwRtLibMod.X", L"Overflow", L"vb.hlp", 0, L"77", 2});
  EXPECT_EQ(err().Number, 0);
}

TEST_F(SetError, a_failed_conversion_ends_a_chain_without_an_error) {
  error_state().Source = L"inner";
  Set_Error({.Source = Variant::null(), .Description = L"unseen"}, kChain);
  expect_fields(error_state(), {0, L"inner", L"", L"", 0, L"", 0});
}

TEST_F(SetError, a_failed_conversion_in_explicit_mode_keeps_what_came_before_it) {
  Set_Error({.Number = Long{5}, .Source = Variant::null(), .Description = L"unseen"}, kExplicit);
  expect_fields(error_state(), {5, L"", L"", L"", 0, L"", 0});
}

TEST_F(SetError, a_locked_record_refuses_every_mode) {
  error_state().Number = 9;
  error_state().Source = L"inner";
  error_state().Caption = L"title";
  error_state().Buttons = 48;
  error_state().Locked = True;
  for (const Long flags : {0, 2, 4, 6, 8, 10, 12, 14}) {
    err() = pending_overflow();
    Set_Error({.Number = Long{20000}, .Source = L"outer", .Description = L"new"}, flags, L"other",
              16);
    expect_fields(error_state(), {9, L"inner", L"", L"", 0, L"", 0});
    EXPECT_EQ(error_state().Caption, L"title");
    EXPECT_EQ(error_state().Buttons, 48);
  }
}

TEST_F(SetError, full_mode_clears_the_pending_error_even_where_the_record_is_locked) {
  error_state().Locked = True;
  err() = pending_overflow();
  Set_Error({});
  EXPECT_EQ(err().Number, 0);
}

TEST_F(ErrorSetEx, takes_the_pending_error_and_does_not_clear_it) {
  err() = pending_overflow();
  Error_SetEx_for(L"", {}, kTakeError, kNotGiven, 0);
  expect_fields(error_state(), {6, L"Project", L"Overflow", L"vb.hlp", 77, L"", 2});
  EXPECT_EQ(err().Number, 6);
}

TEST_F(ErrorSetEx, flags_2_is_full_mode_without_the_system_text) {
  err() = pending_overflow();
  Error_SetEx_for(L"", {}, kAppendSystemText, kNotGiven, 16);
  expect_fields(error_state(), {6, L"Project", L"Overflow", L"vb.hlp", 77, L"", 2});
  EXPECT_EQ(error_state().Buttons, 16);
}

TEST_F(ErrorSetEx, pending_number_65535_stays_without_Set_Error) {
  err().Number = 65535;
  Error_SetEx_for(L"", {}, kTakeError, kNotGiven, 0);
  EXPECT_EQ(error_state().Number, 65535);
}

TEST_F(ErrorSetEx, description_replaces_the_pending_text_only_for_application_numbers) {
  const std::pair<Long, const wchar_t*> rows[] = {{19999, L"mine\r\nOverflow"},
                                                  {20000, L"mine"},
                                                  {29999, L"mine"},
                                                  {30000, L"mine\r\nOverflow"}};
  for (const auto& [number, description] : rows) {
    err() = pending_overflow();
    Error_SetEx_for(L"", {.Number = number, .Description = L"mine"}, kTakeError, kNotGiven, 0);
    EXPECT_EQ(shown(error_state().Description), description) << number;
  }
}

TEST_F(ErrorSetEx, description_stands_alone_where_no_text_was_pending) {
  Error_SetEx_for(L"", {.Number = Long{5}, .Description = L"mine"}, kTakeError, kNotGiven, 0);
  EXPECT_EQ(error_state().Description, L"mine");
}

TEST_F(ErrorSetEx, the_number_that_decides_on_the_description_is_the_one_given) {
  err() = pending_overflow();
  err().Number = 20000;
  Error_SetEx_for(L"", {.Number = Long{5}, .Description = L"mine"}, kTakeError, kNotGiven, 0);
  EXPECT_EQ(error_state().Description, L"mine\r\nOverflow");
  err().Number = 20000;
  Error_SetEx_for(L"", {.Description = L"mine"}, kTakeError, kNotGiven, 0);
  EXPECT_EQ(error_state().Description, L"mine");
}

TEST_F(ErrorSetEx, a_caption_that_is_no_text_raises_after_the_pending_error_was_taken) {
  err() = pending_overflow();
  EXPECT_THROW(Error_SetEx_for(L"", {.Source = L"unseen"}, kTakeError, Variant::null(), 16),
               RunTimeError);
  expect_fields(error_state(), {6, L"Project", L"Overflow", L"vb.hlp", 77, L"", 2});
  EXPECT_EQ(error_state().Buttons, 16);
}

TEST_F(ErrorSetEx, full_mode_leaves_HelpId_to_a_help_context_of_text) {
  error_state().HelpId = L"kept";
  err() = pending_overflow();
  Error_SetEx_for(L"", {.HelpContext = Long{12}}, kTakeError, kNotGiven, 0);
  EXPECT_EQ(error_state().HelpContext, 12);
  EXPECT_EQ(error_state().HelpId, L"kept");
  Error_SetEx_for(L"", {.HelpContext = L"12"}, kTakeError, kNotGiven, 0);
  EXPECT_EQ(error_state().HelpContext, 77);
  EXPECT_EQ(error_state().HelpId, L"12");
}

TEST_F(ErrorSet, leaves_caption_and_buttons) {
  error_state().Caption = L"title";
  error_state().Buttons = 48;
  err() = pending_overflow();
  Error_Set_for(L"", {.Number = Long{20000}, .Description = L"mine"});
  expect_fields(error_state(), {20000, L"Project", L"mine", L"vb.hlp", 77, L"", 2});
  EXPECT_EQ(error_state().Caption, L"title");
  EXPECT_EQ(error_state().Buttons, 48);
  EXPECT_EQ(err().Number, 6);
}

TEST_F(ErrorSet, number_5_puts_the_text_given_before_the_pending_one) {
  err() = pending_overflow();
  Error_Set_for(L"", {.Number = Long{5}, .Description = L"mine"});
  EXPECT_EQ(error_state().Description, L"mine\r\nOverflow");
}

TEST_F(ErrorSet, a_failed_conversion_leaves_its_field_and_goes_on) {
  err() = pending_overflow();
  Error_Set_for(L"", {.Number = L"no number", .Source = L"here", .HelpContext = Variant::null()});
  expect_fields(error_state(), {6, L"here", L"Overflow", L"vb.hlp", 77, L"", 2});
}

TEST_F(UserErrors, a_record_is_made_when_an_error_is_set_for_its_user) {
  EXPECT_EQ(user_error(L"anna"), nullptr);
  Error_SetEx_for(L"anna", {.Number = Long{20000}, .Source = L"here"}, kExplicit, kNotGiven, 0);
  ASSERT_NE(user_error(L"anna"), nullptr);
  expect_fields(*user_error(L"anna"), {20000, L"here", L"", L"", 0, L"", 0});
  EXPECT_EQ(user_error(L"anna")->UserId, L"anna");
  expect_fields(error_state(), {0, L"", L"", L"", 0, L"", 0});
  Error_Set_for(L"ANNA", {.Number = Long{7}});  // keys are compared without regard to case
  EXPECT_EQ(user_error(L"anna")->Number, 7);
  Reset_Error_for(L"anna", False);
  EXPECT_EQ(user_error(L"anna"), nullptr);
}

TEST_F(UserErrors, a_locked_record_is_removed_by_force_only) {
  Error_Set_for(L"anna", {.Number = Long{7}});
  user_error(L"anna")->Locked = True;
  Error_Set_for(L"anna", {.Number = Long{8}});
  Error_SetEx_for(L"anna", {.Source = L"unseen"}, kChain, kNotGiven, 0);
  Reset_Error_for(L"anna", False);
  ASSERT_NE(user_error(L"anna"), nullptr);
  EXPECT_EQ(user_error(L"anna")->Number, 7);
  EXPECT_EQ(user_error(L"anna")->Source, L"");
  Reset_Error_for(L"anna", True);
  EXPECT_EQ(user_error(L"anna"), nullptr);
}

TEST_F(UserErrors, resetting_an_unknown_user_does_nothing) {
  error_state().Number = 9;
  Reset_Error_for(L"nobody", True);
  EXPECT_EQ(error_state().Number, 9);
}

TEST_F(UserErrors, Error_New_fails_for_a_key_that_stands) {
  QVtError* first = nullptr;
  EXPECT_FALSE(Error_New(first, L"anna"));
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(first->UserId, L"anna");
  QVtError* second = nullptr;
  EXPECT_TRUE(Error_New(second, L"Anna"));
  EXPECT_EQ(user_error(L"anna"), first);
  expect_fields(error_state(), {0, L" < QvRtLibOle.KwRtLibMod.Error_New, 0", L"", L"", 0, L"", 0});
  EXPECT_EQ(err().Number, 0);
  Reset_Error_for(L"anna", True);
}

std::wstring user(int number) { return L"user" + std::to_wstring(number); }

TEST_F(UserErrors, the_oldest_of_more_than_1000_goes_before_the_next_comes) {
  const auto add = [](int number) {
    QVtError* made = nullptr;
    EXPECT_FALSE(Error_New(made, Text(user(number)))) << number;
  };
  const auto stands = [](int number) { return user_error(Text(user(number))) != nullptr; };
  for (int i = 1; i <= 1001; ++i) add(i);
  EXPECT_TRUE(stands(1));
  add(1002);
  EXPECT_FALSE(stands(1));
  EXPECT_TRUE(stands(2));
  add(1003);
  EXPECT_FALSE(stands(2));
  EXPECT_TRUE(stands(3));
  EXPECT_TRUE(stands(1003));
  for (int i = 3; i <= 1003; ++i) Reset_Error_for(Text(user(i)), True);
  EXPECT_FALSE(stands(1003));
}

TEST_F(UserErrors, a_thread_has_records_of_its_own) {
  Error_Set_for(L"anna", {.Number = Long{7}});
  std::thread([] {
    EXPECT_EQ(user_error(L"anna"), nullptr);
    EXPECT_EQ(error_state().Number, 0);
    Error_Set_for(L"berta", {.Number = Long{8}});
  }).join();
  EXPECT_EQ(user_error(L"berta"), nullptr);
  Reset_Error_for(L"anna", True);
}

TEST_F(ResetError, clears_all_but_caption_buttons_user_and_lock) {
  QVtError& record = error_state();
  record = {L"text", 12, L"my.hlp", L"id", 2, 9, L"here", False, L"title", 48, L"key"};
  Reset_Error();
  expect_fields(record, {0, L"", L"", L"", 0, L"", 0});
  EXPECT_EQ(record.Caption, L"title");
  EXPECT_EQ(record.Buttons, 48);
  EXPECT_EQ(record.UserId, L"key");
}

TEST_F(ResetError, a_locked_record_is_cleared_by_force_only_and_stays_locked) {
  error_state().Number = 9;
  error_state().Locked = True;
  Reset_Error_for(L"", False);
  EXPECT_EQ(error_state().Number, 9);
  Reset_Error_for(L"", True);
  EXPECT_EQ(error_state().Number, 0);
  EXPECT_TRUE(error_state().Locked);
}

TEST_F(Handled, gives_the_result_of_a_body_that_ends_well_and_records_nothing) {
  EXPECT_EQ(handled(L"KwRtLibMod.X", kTakeError, Long{-1}, [] { return Long{5}; }), 5);
  EXPECT_FALSE(Check_Error());
}

TEST_F(Handled, records_the_error_raised_and_gives_the_failure_value) {
  EXPECT_EQ(handled(L"KwRtLibMod.X", kTakeError, Long{-1}, []() -> Long { raise(9); }), -1);
  expect_fields(error_state(), {9, L"KwRtLibMod.X", L"Subscript out of range", L"", 0, L"0", 0});
  EXPECT_EQ(err().Number, 0);
}

TEST_F(Handled, outer_levels_chain_their_sources) {
  const auto inner = [] {
    return handled(L"Inner", kTakeError, True, []() -> Boolean { raise(9); });
  };
  const auto outer = handled(L"Outer", kChain, True, [&]() -> Boolean {
    if (inner()) raise(5);
    return False;
  });
  EXPECT_TRUE(outer);
  EXPECT_EQ(error_state().Number, 9);
  EXPECT_EQ(error_state().Source, L"Inner < Outer");
}

TEST_F(Handled, forgets_an_error_that_was_pending_before_but_not_the_system_error) {
  err() = pending_overflow();
  handled(L"KwRtLibMod.X", kTakeError, True, [] {
    Set_Error({.Number = Long{20000}, .Source = L"KwRtLibMod.X"});
    return True;
  });
  expect_fields(error_state(), {20000, L"KwRtLibMod.X", L"", L"", 0, L"0", 2});
}

TEST_F(Handled, a_step_that_fails_stays_pending_and_what_comes_after_goes_on) {
  EXPECT_FALSE(attempt([] { raise(11); }));
  EXPECT_EQ(err().Number, 11);
  EXPECT_EQ(err().Description, L"Division by zero");
  EXPECT_EQ(err().Source, L"QvRtLibOle");
  EXPECT_TRUE(attempt([] {}));
  EXPECT_EQ(err().Number, 11);
}

TEST_F(HostError, what_fails_in_the_library_is_recorded_and_not_what_the_host_has_pending) {
  HostRunTime host;
  ASSERT_TRUE(host);
  host.raise(58, L"of the host", L"HostProject", L"host.hlp", 7, 1400);
  handled(L"KwRtLibMod.X", kTakeError, True, []() -> Boolean { raise(9); });
  expect_fields(error_state(), {9, L"KwRtLibMod.X", L"Subscript out of range", L"", 0, L"0", 0});
  EXPECT_EQ(host.number(), 0);  // the host's object is the one that is cleared
  EXPECT_EQ(host.kept_references(), 0U);
}

TEST_F(HostError, a_failed_system_call_has_its_own_last_error_and_not_the_hosts) {
  HostRunTime host;
  ASSERT_TRUE(host);
  host.raise(58, L"of the host", L"HostProject", L"host.hlp", 7, 1400);
  handled(L"KwRtLibMod.X", kTakeError, True, [] {
    SetLastError(2);
    capture_last_dll_error();
    EXPECT_EQ(GetLastError(), 2U);
    Set_Error({.Number = Long{20000}, .Source = L"KwRtLibMod.X"}, kAppendSystemText);
    return True;
  });
  expect_fields(error_state(),
                {20000, L"KwRtLibMod.X", L"\r\n" + shown(system_text(2)), L"", 0, L"0", 2});
}

TEST_F(HostError, chain_and_explicit_leave_the_hosts_object_alone) {
  HostRunTime host;
  ASSERT_TRUE(host);
  host.raise(58, L"of the host", L"HostProject", L"host.hlp", 7, 1400);
  Set_Error({.Source = L"here"}, kChain);
  Set_Error({.Source = L"there"}, kExplicit);
  EXPECT_EQ(host.number(), 58);
}

}  // namespace
}  // namespace qv::frame
