// Raw printing: the jobs of an object and of one call, by the calls that the spooler gets.
#include <string>

#include "server/client.h"
#include "server/file_holder.h"
#include "server/spooler_stand_in.h"
#include "server/temp_folder.h"

namespace qv::tests {
namespace {

using Calls = std::vector<std::string>;

std::wstring system_text(DWORD code) {
  wchar_t text[512];
  const DWORD length =
      FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, code, 0, text, 512, nullptr);
  std::wstring one_line;
  for (DWORD i = 0; i < length; ++i) {
    if (text[i] == L'\r') one_line += L' ';
    if (text[i] != L'\r' && text[i] != L'\n') one_line += text[i];
  }
  return one_line;
}

class DirectPrinting : public testing::Test {
 protected:
  void SetUp() override { global->Reset_Error(); }

  bool open(const Pointer<_KwRtLib>& object, const wchar_t* name = L"Prn1",
            const wchar_t* document = L"KWDIRDOC") {
    String printer(name);
    String doc(document);
    LONG handle = 4711;
    VARIANT_BOOL failed = 1;
    EXPECT_EQ(object->DirectOpenPrinter(&printer, &handle, &doc, &failed), S_OK);
    EXPECT_EQ(handle, 4711);
    EXPECT_EQ(printer, name);
    return failed == VARIANT_FALSE;
  }
  // True = done.
  using Member = HRESULT (STDMETHODCALLTYPE _KwRtLib::*)(LONG*, VARIANT_BOOL*);
  bool does(const Pointer<_KwRtLib>& object, Member member, LONG job) {
    VARIANT_BOOL failed = 1;
    EXPECT_EQ((object.get()->*member)(&job, &failed), S_OK);
    EXPECT_TRUE(failed == VARIANT_FALSE || failed == VARIANT_TRUE);
    return failed == VARIANT_FALSE;
  }
  bool writes(const Pointer<_KwRtLib>& object, LONG job, std::wstring_view data) {
    String text(data);
    VARIANT_BOOL failed = 1;
    EXPECT_EQ(object->DirectWritePrinter(&job, &text, &failed), S_OK);
    EXPECT_EQ(text, data);
    return failed == VARIANT_FALSE;
  }
  bool closes_all(const Pointer<_KwRtLib>& object) {
    VARIANT_BOOL failed = 1;
    EXPECT_EQ(object->DirectCloseAllPrinters(&failed), S_OK);
    return failed == VARIANT_FALSE;
  }
  bool prints(const wchar_t* file, LONG block_size = 4096) {
    String document(L"KWDIRDOC");
    String type(L"RAW");
    String name(file);
    VARIANT_BOOL failed = 1;
    EXPECT_EQ(global->DirectPrint3(String(L"Prn1"), &buffer, &document, &type, &name, &block_size,
                                   &failed),
              S_OK);
    return failed == VARIANT_FALSE;
  }

  // Takes the record and clears it.
  void expect_record(LONG number, const wchar_t* source, const std::wstring& description) {
    LONG recorded = 0;
    global->Error_Number(&recorded);
    EXPECT_EQ(recorded, number);
    String text;
    global->Error_Source(&text);
    EXPECT_EQ(text, source);
    String recorded_description;
    global->Error_Description(&recorded_description);
    EXPECT_EQ(recorded_description.view(), description);
    global->Reset_Error();
  }
  void expect_refusal(DWORD code, const wchar_t* source) {
    LONG last = 0;
    global->Error_LastDLLError(&last);
    EXPECT_EQ(last, static_cast<LONG>(code));
    expect_record(20000, source, L"\r\n" + system_text(code));
  }
  void expect_no_record() { expect_record(0, L"", L""); }
  void expect_unknown_job(const wchar_t* source) {
    expect_record(5, source, L"Invalid procedure call or argument");
  }

  Pointer<_KwRtLib> global = create_global();
  SpoolerStandIn spooler;
  String buffer;
};

constexpr auto kStartPage = &_KwRtLib::DirectStartPage;
constexpr auto kEndPage = &_KwRtLib::DirectEndPage;
constexpr auto kClose = &_KwRtLib::DirectClosePrinter;
constexpr auto kAbort = &_KwRtLib::DirectAbortPrinter;

TEST_F(DirectPrinting, DirectOpenPrinter_opens_and_starts_a_job_of_the_default_type) {
  EXPECT_TRUE(open(global, L"Prn1", L"My document"));
  EXPECT_EQ(spooler.calls(), (Calls{"OpenPrinter Prn1", "StartDoc 1 1 My document|(none)|(none)"}));
  expect_no_record();
}

TEST_F(DirectPrinting, DirectOpenPrinter_names_the_job_by_default) {
  String printer(L"Prn1");
  LONG handle = 0;
  VARIANT_BOOL failed = 1;
  EXPECT_EQ(global->DirectOpenPrinter(&printer, &handle, nullptr, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_EQ(spooler.calls().back(), "StartDoc 1 1 KWDIRDOC|(none)|(none)");
}

TEST_F(DirectPrinting, DirectOpenPrinter_hands_the_name_over_with_its_blanks) {
  EXPECT_TRUE(open(global, L"  Prn1 "));
  EXPECT_EQ(spooler.calls().front(), "OpenPrinter   Prn1 ");
}

TEST_F(DirectPrinting, The_number_of_a_job_is_the_spoolers_handle) {
  EXPECT_TRUE(open(global));
  EXPECT_TRUE(open(global));
  spooler.calls();
  EXPECT_TRUE(writes(global, 2, L"ab"));
  EXPECT_TRUE(writes(global, 1, L"c"));
  EXPECT_EQ(spooler.calls(), (Calls{"Write 2 2", "Write 1 1"}));
  EXPECT_TRUE(does(global, kClose, 1));
  EXPECT_TRUE(open(global));
  EXPECT_FALSE(writes(global, 1, L"x"));
  EXPECT_TRUE(writes(global, 3, L"x"));
}

TEST_F(DirectPrinting, Jobs_whose_handle_is_wider_than_a_Long_are_counted) {
  SpoolerStandIn wide(SpoolerStandIn::Handles::kWide);
  for (LONG number = 1; number <= 3; ++number) {
    EXPECT_TRUE(open(global));
    EXPECT_TRUE(writes(global, number, L"x"));
  }
  // A number is not given out again.
  EXPECT_TRUE(does(global, kClose, 3));
  EXPECT_TRUE(open(global));
  EXPECT_FALSE(writes(global, 3, L"x"));
  EXPECT_TRUE(writes(global, 4, L"x"));
  EXPECT_TRUE(closes_all(global));
}

TEST_F(DirectPrinting, A_handle_that_comes_again_is_the_number_again) {
  SpoolerStandIn alike(SpoolerStandIn::Handles::kAlike);
  for (int times = 0; times < 2; ++times) {
    EXPECT_TRUE(open(global));
    EXPECT_TRUE(writes(global, 7, L"x"));
    EXPECT_TRUE(does(global, kClose, 7));
    EXPECT_FALSE(writes(global, 7, L"x"));
  }
}

TEST_F(DirectPrinting, A_job_with_the_handle_of_an_aborted_one_has_a_number_of_its_own) {
  SpoolerStandIn alike(SpoolerStandIn::Handles::kAlike);
  EXPECT_TRUE(open(global));
  EXPECT_TRUE(does(global, kAbort, 7));
  EXPECT_TRUE(open(global));
  alike.calls();
  // The stale number does not reach the printer.
  EXPECT_FALSE(does(global, kStartPage, 7));
  EXPECT_FALSE(writes(global, 7, L"x"));
  EXPECT_FALSE(does(global, kClose, 7));
  EXPECT_TRUE(does(global, kAbort, 7));
  EXPECT_EQ(alike.calls(), (Calls{"StartPage 0", "Write 0 1", "EndDoc 0"}));
  EXPECT_TRUE(writes(global, 1, L"x"));
  EXPECT_EQ(alike.calls(), Calls{"Write 2 1"});
  EXPECT_TRUE(closes_all(global));
  EXPECT_EQ(alike.calls(), (Calls{"Abort 2", "Close 2"}));
}

TEST_F(DirectPrinting, DirectOpenPrinter_of_a_printer_that_is_refused_opens_nothing) {
  spooler.fail("OpenPrinter", ERROR_INVALID_PRINTER_NAME);
  EXPECT_FALSE(open(global, L"No printer"));
  EXPECT_EQ(spooler.calls(), Calls{"OpenPrinter No printer"});
  expect_refusal(ERROR_INVALID_PRINTER_NAME, L" < KwRtLibMod.DirectOpenPrinter");
  EXPECT_FALSE(writes(global, 1, L"x"));
  EXPECT_TRUE(spooler.calls().empty());
}

TEST_F(DirectPrinting, DirectOpenPrinter_aborts_a_job_that_does_not_start) {
  spooler.fail("StartDoc", ERROR_INVALID_DATATYPE);
  EXPECT_FALSE(open(global));
  EXPECT_EQ(spooler.calls(), (Calls{"OpenPrinter Prn1", "StartDoc 1 1 KWDIRDOC|(none)|(none)",
                                    "Abort 1", "Close 1"}));
  expect_refusal(ERROR_INVALID_DATATYPE, L" < KwRtLibMod.DirectOpenPrinter");
  EXPECT_EQ(spooler.open_printers(), 0U);
  EXPECT_FALSE(does(global, kAbort, 1));
  expect_unknown_job(L"KwRtLib.DirectAbortPrinter");
  spooler.fail("StartDoc", 0);
  EXPECT_TRUE(open(global));
  EXPECT_TRUE(writes(global, 2, L"x"));
}

TEST_F(DirectPrinting, A_job_of_two_pages) {
  EXPECT_TRUE(open(global));
  EXPECT_TRUE(does(global, kStartPage, 1));
  EXPECT_TRUE(writes(global, 1, L"one"));
  EXPECT_TRUE(does(global, kEndPage, 1));
  EXPECT_TRUE(does(global, kStartPage, 1));
  EXPECT_TRUE(writes(global, 1, L"two"));
  EXPECT_TRUE(writes(global, 1, L""));
  EXPECT_TRUE(does(global, kEndPage, 1));
  spooler.calls();
  EXPECT_TRUE(does(global, kClose, 1));
  EXPECT_EQ(spooler.calls(), (Calls{"EndDoc 1", "Close 1"}));
  EXPECT_EQ(spooler.bytes(), "onetwo");
  EXPECT_EQ(spooler.open_printers(), 0U);
  expect_no_record();
}

TEST_F(DirectPrinting, DirectClosePrinter_ends_an_open_page) {
  EXPECT_TRUE(open(global));
  EXPECT_TRUE(does(global, kStartPage, 1));
  spooler.calls();
  EXPECT_TRUE(does(global, kClose, 1));
  EXPECT_EQ(spooler.calls(), (Calls{"EndPage 1", "EndDoc 1", "Close 1"}));
  EXPECT_FALSE(does(global, kClose, 1));
  expect_unknown_job(L"KwRtLib.DirectClosePrinter");
}

TEST_F(DirectPrinting, The_order_of_calls_is_the_callers) {
  EXPECT_TRUE(open(global));
  spooler.calls();
  EXPECT_TRUE(writes(global, 1, L"before any page"));
  EXPECT_TRUE(does(global, kEndPage, 1));
  EXPECT_TRUE(does(global, kStartPage, 1));
  EXPECT_TRUE(does(global, kStartPage, 1));
  EXPECT_TRUE(does(global, kEndPage, 1));
  EXPECT_TRUE(does(global, kClose, 1));
  EXPECT_EQ(spooler.calls(), (Calls{"Write 1 15", "EndPage 1", "StartPage 1", "StartPage 1",
                                    "EndPage 1", "EndDoc 1", "Close 1"}));
}

TEST_F(DirectPrinting, DirectWritePrinter_sends_one_byte_a_character) {
  std::wstring text;
  std::string expected;
  for (int byte = 0; byte < 256; ++byte) {
    const char narrow = static_cast<char>(byte);
    wchar_t unit = 0;
    MultiByteToWideChar(1252, 0, &narrow, 1, &unit, 1);
    text += unit;
    expected += narrow;
  }
  EXPECT_TRUE(open(global));
  EXPECT_TRUE(writes(global, 1, text));
  EXPECT_EQ(spooler.bytes(), expected);
}

TEST_F(DirectPrinting, Unknown_jobs_are_recorded) {
  EXPECT_TRUE(open(global));
  spooler.calls();
  for (const LONG job : {0, 2, -1}) {
    EXPECT_FALSE(does(global, kStartPage, job));
    expect_unknown_job(L"KwRtLib.DirectStartPage");
    EXPECT_FALSE(writes(global, job, L"x"));
    expect_unknown_job(L"KwRtLib.DirectWritePrinter");
    EXPECT_FALSE(does(global, kEndPage, job));
    expect_unknown_job(L"KwRtLib.DirectEndPage");
    EXPECT_FALSE(does(global, kClose, job));
    expect_unknown_job(L"KwRtLib.DirectClosePrinter");
    EXPECT_FALSE(does(global, kAbort, job));
    expect_unknown_job(L"KwRtLib.DirectAbortPrinter");
  }
  EXPECT_TRUE(spooler.calls().empty());
}

TEST_F(DirectPrinting, A_refused_page_is_recorded) {
  EXPECT_TRUE(open(global));
  spooler.fail("StartPage", ERROR_PRINT_CANCELLED);
  EXPECT_FALSE(does(global, kStartPage, 1));
  expect_refusal(ERROR_PRINT_CANCELLED, L" < KwRtLibMod.DirectStartPage");
  spooler.calls();
  // No page was begun, so none is ended.
  EXPECT_TRUE(does(global, kClose, 1));
  EXPECT_EQ(spooler.calls(), (Calls{"EndDoc 1", "Close 1"}));
}

TEST_F(DirectPrinting, A_page_counts_as_ended_where_the_spooler_refuses) {
  EXPECT_TRUE(open(global));
  EXPECT_TRUE(does(global, kStartPage, 1));
  spooler.fail("EndPage", ERROR_PRINT_CANCELLED);
  EXPECT_FALSE(does(global, kEndPage, 1));
  expect_refusal(ERROR_PRINT_CANCELLED, L" < KwRtLibMod.DirectEndPage");
  spooler.calls();
  EXPECT_TRUE(does(global, kClose, 1));
  EXPECT_EQ(spooler.calls(), (Calls{"EndDoc 1", "Close 1"}));
}

TEST_F(DirectPrinting, A_refused_writing_only_adds_its_place_to_the_record) {
  EXPECT_TRUE(open(global));
  spooler.fail("Write", ERROR_DISK_FULL);
  EXPECT_FALSE(writes(global, 1, L"x"));
  expect_record(0, L" < KwRtLibMod.DirectWritePrinter", L"");
}

TEST_F(DirectPrinting, DirectClosePrinter_that_can_not_end_the_page_leaves_the_job_open) {
  EXPECT_TRUE(open(global));
  EXPECT_TRUE(does(global, kStartPage, 1));
  spooler.fail("EndPage", ERROR_PRINT_CANCELLED);
  spooler.calls();
  EXPECT_FALSE(does(global, kClose, 1));
  EXPECT_EQ(spooler.calls(), Calls{"EndPage 1"});
  expect_refusal(ERROR_PRINT_CANCELLED,
                 L" < KwRtLibMod.DirectEndPage < KwRtLibMod.DirectClosePrinter");
  EXPECT_TRUE(writes(global, 1, L"still open"));
}

TEST_F(DirectPrinting, DirectClosePrinter_that_can_not_end_the_job_leaves_it_open) {
  EXPECT_TRUE(open(global));
  spooler.fail("EndDoc", ERROR_DISK_FULL);
  spooler.calls();
  EXPECT_FALSE(does(global, kClose, 1));
  EXPECT_EQ(spooler.calls(), Calls{"EndDoc 1"});
  expect_refusal(ERROR_DISK_FULL, L" < KwRtLibMod.DirectClosePrinter");
  spooler.fail("EndDoc", 0);
  EXPECT_TRUE(does(global, kClose, 1));
}

TEST_F(DirectPrinting, DirectClosePrinter_does_not_ask_what_closing_gave) {
  EXPECT_TRUE(open(global));
  spooler.fail("Close", ERROR_INVALID_HANDLE);
  EXPECT_TRUE(does(global, kClose, 1));
  expect_no_record();
  EXPECT_FALSE(does(global, kClose, 1));
  expect_unknown_job(L"KwRtLib.DirectClosePrinter");
}

TEST_F(DirectPrinting, DirectAbortPrinter_aborts_and_closes_whatever_the_spooler_answers) {
  EXPECT_TRUE(open(global));
  EXPECT_TRUE(does(global, kStartPage, 1));
  spooler.calls();
  spooler.fail("Abort", ERROR_ACCESS_DENIED);
  EXPECT_TRUE(does(global, kAbort, 1));
  EXPECT_EQ(spooler.calls(), (Calls{"Abort 1", "Close 1"}));
  expect_no_record();
}

TEST_F(DirectPrinting, An_aborted_job_keeps_its_number_and_every_call_but_an_abort_fails) {
  EXPECT_TRUE(open(global));
  EXPECT_TRUE(does(global, kAbort, 1));
  EXPECT_FALSE(does(global, kClose, 1));
  expect_refusal(ERROR_INVALID_HANDLE, L" < KwRtLibMod.DirectClosePrinter");
  EXPECT_FALSE(does(global, kStartPage, 1));
  expect_refusal(ERROR_INVALID_HANDLE, L" < KwRtLibMod.DirectStartPage");
  EXPECT_FALSE(writes(global, 1, L"x"));
  expect_record(0, L" < KwRtLibMod.DirectWritePrinter", L"");
  EXPECT_FALSE(does(global, kEndPage, 1));
  expect_refusal(ERROR_INVALID_HANDLE, L" < KwRtLibMod.DirectEndPage");
  EXPECT_TRUE(does(global, kAbort, 1));
  expect_no_record();
}

TEST_F(DirectPrinting, DirectCloseAllPrinters_drops_the_number_of_an_aborted_job) {
  EXPECT_TRUE(open(global));
  EXPECT_TRUE(does(global, kAbort, 1));
  EXPECT_TRUE(closes_all(global));
  EXPECT_FALSE(does(global, kAbort, 1));
  expect_unknown_job(L"KwRtLib.DirectAbortPrinter");
}

TEST_F(DirectPrinting, An_aborted_job_reaches_no_later_one) {
  EXPECT_TRUE(open(global));
  EXPECT_TRUE(does(global, kAbort, 1));
  EXPECT_TRUE(open(global));
  EXPECT_FALSE(does(global, kClose, 1));
  EXPECT_TRUE(does(global, kAbort, 1));
  EXPECT_TRUE(writes(global, 2, L"x"));
}

TEST_F(DirectPrinting, DirectCloseAllPrinters_aborts_every_job) {
  EXPECT_TRUE(closes_all(global));
  EXPECT_TRUE(open(global));
  EXPECT_TRUE(open(global));
  EXPECT_TRUE(does(global, kStartPage, 2));
  spooler.calls();
  spooler.fail("Abort", ERROR_ACCESS_DENIED);
  EXPECT_TRUE(closes_all(global));
  EXPECT_EQ(spooler.calls(), (Calls{"Abort 1", "Close 1", "Abort 2", "Close 2"}));
  EXPECT_EQ(spooler.open_printers(), 0U);
  expect_no_record();
  EXPECT_FALSE(does(global, kClose, 2));
  expect_unknown_job(L"KwRtLib.DirectClosePrinter");
}

TEST_F(DirectPrinting, Two_objects_do_not_see_each_others_jobs) {
  const auto other = create_global();
  EXPECT_TRUE(open(global));
  EXPECT_FALSE(writes(other, 1, L"x"));
  expect_unknown_job(L"KwRtLib.DirectWritePrinter");
  EXPECT_TRUE(open(other));
  spooler.calls();
  EXPECT_FALSE(writes(global, 2, L"x"));
  expect_unknown_job(L"KwRtLib.DirectWritePrinter");
  EXPECT_TRUE(writes(other, 2, L"x"));
  EXPECT_TRUE(writes(global, 1, L"y"));
  EXPECT_EQ(spooler.calls(), (Calls{"Write 2 1", "Write 1 1"}));
  EXPECT_TRUE(closes_all(other));
  EXPECT_TRUE(writes(global, 1, L"z"));
}

TEST_F(DirectPrinting, The_end_of_an_object_aborts_its_jobs_alone) {
  EXPECT_TRUE(open(global));
  auto other = create_global();
  EXPECT_TRUE(open(other));
  EXPECT_TRUE(open(other));
  EXPECT_TRUE(does(other, kClose, 2));
  spooler.calls();
  other = {};
  EXPECT_EQ(spooler.calls(), (Calls{"Abort 3", "Close 3"}));
  EXPECT_TRUE(writes(global, 1, L"x"));
}

TEST_F(DirectPrinting, DirectPrint_is_one_raw_job_of_one_page) {
  String data(L"data");
  VARIANT_BOOL failed = 1;
  EXPECT_EQ(global->DirectPrint(String(L" Prn1"), &data, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_EQ(spooler.calls(),
            (Calls{"OpenPrinter  Prn1", "StartDoc 1 1 KWDIRDOC|(none)|RAW", "StartPage 1",
                   "Write 1 4", "EndPage 1", "EndDoc 1", "Close 1"}));
  EXPECT_EQ(spooler.bytes(), "data");
  EXPECT_EQ(data, L"data");
  expect_no_record();
}

TEST_F(DirectPrinting, DirectPrint2_gives_the_job_a_name_and_a_type) {
  String data;
  String document(L"Doc");
  String type(L"TEXT");
  VARIANT_BOOL failed = 1;
  EXPECT_EQ(global->DirectPrint2(String(L"Prn1"), &data, &document, &type, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_EQ(spooler.calls(),
            (Calls{"OpenPrinter Prn1", "StartDoc 1 1 Doc|(none)|TEXT", "StartPage 1", "Write 1 0",
                   "EndPage 1", "EndDoc 1", "Close 1"}));
}

TEST_F(DirectPrinting, The_arguments_of_one_call_printing_have_defaults) {
  String data(L"x");
  VARIANT_BOOL failed = 1;
  EXPECT_EQ(global->DirectPrint2(String(L"Prn1"), &data, nullptr, nullptr, &failed), S_OK);
  EXPECT_EQ(spooler.calls()[1], "StartDoc 1 1 KWDIRDOC|(none)|RAW");
  EXPECT_EQ(
      global->DirectPrint3(String(L"Prn1"), &data, nullptr, nullptr, nullptr, nullptr, &failed),
      S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_EQ(spooler.calls(),
            (Calls{"OpenPrinter Prn1", "StartDoc 2 1 KWDIRDOC|(none)|RAW", "StartPage 2",
                   "Write 2 1", "EndPage 2", "EndDoc 2", "Close 2"}));
}

TEST_F(DirectPrinting, One_call_printing_has_no_job_in_the_object) {
  String data(L"x");
  VARIANT_BOOL failed = 1;
  EXPECT_EQ(global->DirectPrint(String(L"Prn1"), &data, &failed), S_OK);
  EXPECT_FALSE(does(global, kClose, 1));
  expect_unknown_job(L"KwRtLib.DirectClosePrinter");
}

TEST_F(DirectPrinting, Each_refused_step_of_one_call_printing_aborts_the_job_and_is_recorded) {
  const Calls whole = {"OpenPrinter Prn1", "StartDoc 1 1 KWDIRDOC|(none)|RAW",
                       "StartPage 1",      "Write 1 1",
                       "EndPage 1",        "EndDoc 1"};
  const struct {
    const char* service;
    const wchar_t* source;
  } steps[] = {
      {"OpenPrinter", L" < KwRtLibMod.DirectOpenPrinter < KwRtLibMod.DirectPrint"},
      {"StartDoc", L" < KwRtLibMod.DirectOpenPrinter < KwRtLibMod.DirectPrint"},
      {"StartPage", L" < KwRtLibMod.DirectStartPage < KwRtLibMod.DirectPrint"},
      {"Write", L" < KwRtLibMod.DirectWritePrinter < KwRtLibMod.DirectPrint"},
      {"EndPage", L" < KwRtLibMod.DirectEndPage < KwRtLibMod.DirectPrint"},
      {"EndDoc", L" < KwRtLibMod.DirectClosePrinter < KwRtLibMod.DirectPrint"},
  };
  std::size_t done = 0;
  for (const auto& [service, source] : steps) {
    SCOPED_TRACE(service);
    SpoolerStandIn fresh;
    fresh.fail(service, ERROR_ACCESS_DENIED);
    fresh.fail("Abort", ERROR_NOT_SUPPORTED);
    String data(L"x");
    VARIANT_BOOL failed = 1;
    EXPECT_EQ(global->DirectPrint(String(L"Prn1"), &data, &failed), S_OK);
    EXPECT_EQ(failed, VARIANT_TRUE);
    ++done;
    Calls expected(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(done));
    if (done > 1) expected.insert(expected.end(), {"Abort 1", "Close 1"});
    EXPECT_EQ(fresh.calls(), expected);
    EXPECT_EQ(fresh.open_printers(), 0U);
    if (std::string(service) == "Write") {
      expect_record(0, source, L"");
    } else {
      expect_refusal(ERROR_ACCESS_DENIED, source);
    }
  }
}

TEST_F(DirectPrinting, A_failure_leaves_the_error_state_unlocked) {
  global->Error_Lock();
  spooler.fail("OpenPrinter", ERROR_INVALID_PRINTER_NAME);
  EXPECT_FALSE(prints(L""));
  // The record was locked while the failure happened, so it tells nothing of it.
  expect_no_record();
  EXPECT_FALSE(prints(L""));
  expect_refusal(ERROR_INVALID_PRINTER_NAME,
                 L" < KwRtLibMod.DirectOpenPrinter < KwRtLibMod.DirectPrint");
}

TEST_F(DirectPrinting, Success_leaves_the_error_state_locked_and_as_it_was) {
  global->Error_Lock();
  EXPECT_TRUE(prints(L""));
  Value number(7);
  Value none = Value::missing();
  global->Error_Replace(&number, &none, &none, &none, &none, &none);
  expect_record(0, L"", L"");
  global->Error_Unlock();
}

class FilePrinting : public DirectPrinting {
 protected:
  std::string file_of(std::size_t size) {
    std::string bytes(size, '\0');
    unsigned state = 12345;
    for (char& byte : bytes) byte = static_cast<char>((state = state * 1103515245 + 12345) >> 16);
    folder.write(L"data.prn", bytes);
    return bytes;
  }
  std::string buffer_bytes() const {
    std::string bytes(buffer.length(), '\0');
    WideCharToMultiByte(1252, 0, buffer, static_cast<int>(buffer.length()), bytes.data(),
                        static_cast<int>(bytes.size()), nullptr, nullptr);
    return bytes;
  }
  std::wstring file() const { return folder.file(L"data.prn"); }

  TempFolder folder;
};

TEST_F(FilePrinting, Prints_a_file_in_blocks_and_leaves_the_last_one_in_Buffer) {
  for (const std::size_t size : {1U, 4095U, 4096U, 4097U, 8192U, 10000U}) {
    SCOPED_TRACE(size);
    SpoolerStandIn fresh;
    const std::string bytes = file_of(size);
    EXPECT_TRUE(prints(file().c_str()));
    EXPECT_EQ(fresh.bytes(), bytes);
    const std::size_t rest = size % 4096 == 0 ? 4096 : size % 4096;
    EXPECT_EQ(buffer_bytes(), bytes.substr(size - rest));
    EXPECT_EQ(fresh.calls().size(), 6 + (size + 4095) / 4096);
  }
  expect_no_record();
}

TEST_F(FilePrinting, A_whole_multiple_of_the_block_has_no_short_block) {
  file_of(8192);
  EXPECT_TRUE(prints(file().c_str()));
  EXPECT_EQ(spooler.calls(),
            (Calls{"OpenPrinter Prn1", "StartDoc 1 1 KWDIRDOC|(none)|RAW", "StartPage 1",
                   "Write 1 4096", "Write 1 4096", "EndPage 1", "EndDoc 1", "Close 1"}));
}

TEST_F(FilePrinting, An_empty_file_is_a_whole_job_without_writing) {
  file_of(0);
  EXPECT_TRUE(prints(file().c_str(), 7));
  EXPECT_EQ(spooler.calls(), (Calls{"OpenPrinter Prn1", "StartDoc 1 1 KWDIRDOC|(none)|RAW",
                                    "StartPage 1", "EndPage 1", "EndDoc 1", "Close 1"}));
  EXPECT_EQ(buffer, L"       ");
}

TEST_F(FilePrinting, A_large_file_goes_out_whole) {
  const std::string bytes = file_of(10'000'000);
  EXPECT_TRUE(prints(file().c_str()));
  EXPECT_TRUE(spooler.bytes() == bytes);
  EXPECT_EQ(buffer_bytes(), bytes.substr(bytes.size() - bytes.size() % 4096));
}

TEST_F(FilePrinting, Blocks_have_the_size_asked_for) {
  const std::string bytes = file_of(20);
  EXPECT_TRUE(prints(file().c_str(), 8));
  const Calls calls = spooler.calls();
  EXPECT_EQ(Calls(calls.begin() + 3, calls.begin() + 6),
            (Calls{"Write 1 8", "Write 1 8", "Write 1 4"}));
  EXPECT_EQ(spooler.bytes(), bytes);
  EXPECT_TRUE(prints(file().c_str(), 100));
  EXPECT_EQ(spooler.bytes(), bytes + bytes);
}

TEST_F(FilePrinting, A_missing_file_is_recorded_before_anything_is_opened) {
  EXPECT_FALSE(prints(folder.file(L"missing").c_str()));
  expect_record(53, L"KwRtLibMod.DirectPrint", L"File not found");
  EXPECT_TRUE(spooler.calls().empty());
}

TEST_F(FilePrinting, A_block_size_of_0_is_recorded_before_anything_is_opened) {
  file_of(20);
  EXPECT_FALSE(prints(file().c_str(), 0));
  expect_record(11, L"KwRtLibMod.DirectPrint", L"Division by zero");
  EXPECT_TRUE(spooler.calls().empty());
  // Without a file it plays no part.
  EXPECT_TRUE(prints(L"", 0));
}

TEST_F(FilePrinting, A_negative_block_size_aborts_the_job) {
  file_of(20);
  EXPECT_FALSE(prints(file().c_str(), -8));
  expect_record(5, L"KwRtLibMod.DirectPrint", L"Invalid procedure call or argument");
  EXPECT_EQ(spooler.calls(), (Calls{"OpenPrinter Prn1", "StartDoc 1 1 KWDIRDOC|(none)|RAW",
                                    "StartPage 1", "Abort 1", "Close 1"}));
}

TEST_F(FilePrinting, A_refused_block_ends_the_job_and_stays_in_Buffer) {
  const std::string bytes = file_of(20);
  spooler.fail("Write", ERROR_DISK_FULL);
  EXPECT_FALSE(prints(file().c_str(), 8));
  expect_record(0, L" < KwRtLibMod.DirectWritePrinter < KwRtLibMod.DirectPrint", L"");
  EXPECT_EQ(spooler.calls(), (Calls{"OpenPrinter Prn1", "StartDoc 1 1 KWDIRDOC|(none)|RAW",
                                    "StartPage 1", "Write 1 8", "Abort 1", "Close 1"}));
  EXPECT_EQ(buffer_bytes(), bytes.substr(0, 8));
}

TEST_F(FilePrinting, The_file_is_closed_after_success_and_failure) {
  file_of(20);
  EXPECT_TRUE(prints(file().c_str()));
  EXPECT_FALSE(prints(file().c_str(), 0));
  spooler.fail("EndDoc", ERROR_DISK_FULL);
  EXPECT_FALSE(prints(file().c_str()));
  const HANDLE alone = CreateFileW(file().c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                   OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  EXPECT_NE(alone, INVALID_HANDLE_VALUE);
  CloseHandle(alone);
  global->Reset_Error();
}

TEST_F(FilePrinting, A_file_that_is_locked_for_a_moment_is_waited_for) {
  const std::string bytes = file_of(20);
  const FileHolder holder(file().c_str(), 700);
  EXPECT_TRUE(prints(file().c_str()));
  EXPECT_FALSE(holder.is_running());
  EXPECT_EQ(spooler.bytes(), bytes);
}

std::wstring printed_file;
DWORD error_while_printing = 0;
BOOL WINAPI look_at_file(HANDLE, LPVOID, DWORD, LPDWORD) {
  const HANDLE file =
      CreateFileW(printed_file.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  error_while_printing = file == INVALID_HANDLE_VALUE ? GetLastError() : 0;
  if (file != INVALID_HANDLE_VALUE) CloseHandle(file);
  return TRUE;
}

TEST_F(FilePrinting, Nobody_else_may_read_the_file_while_it_is_printed) {
  file_of(20);
  printed_file = file();
  const ImportPatch writing("WritePrinter", look_at_file);
  EXPECT_TRUE(prints(file().c_str()));
  EXPECT_EQ(error_while_printing, static_cast<DWORD>(ERROR_SHARING_VIOLATION));
}

}  // namespace
}  // namespace qv::tests
