// Raw printing through a print queue of the system, whose port leads to a file.
#include "server/print_queue.h"

#include "server/client.h"

namespace qv::tests {
namespace {

class PrintQueues : public testing::Test {
 protected:
  void SetUp() override {
    global->Reset_Error();
    ASSERT_TRUE(queue.is_ready()) << GetLastError();
  }
  bool prints(const wchar_t* printer, String& data, const wchar_t* file = L"") {
    String document(L"KWDIRDOC");
    String type(L"RAW");
    String name(file);
    LONG block_size = 4096;
    VARIANT_BOOL failed = 1;
    EXPECT_EQ(
        global->DirectPrint3(String(printer), &data, &document, &type, &name, &block_size, &failed),
        S_OK);
    return failed == VARIANT_FALSE;
  }

  // The handle that the system gives to the next printer that is opened.
  static LONG next_handle() {
    wchar_t name[] = L"QvTest1";
    HANDLE printer = nullptr;
    EXPECT_TRUE(OpenPrinterW(name, &printer, nullptr));
    ClosePrinter(printer);
    return static_cast<LONG>(reinterpret_cast<LONG_PTR>(printer));
  }
  // A job of an object; its number.
  LONG open(const Pointer<_KwRtLib>& object) {
    const LONG number = next_handle();
    String printer(L"QvTest1");
    LONG handle = 4711;
    VARIANT_BOOL failed = 1;
    EXPECT_EQ(object->DirectOpenPrinter(&printer, &handle, nullptr, &failed), S_OK);
    EXPECT_EQ(failed, VARIANT_FALSE);
    EXPECT_EQ(handle, 4711);
    return number;
  }
  bool writes(const Pointer<_KwRtLib>& object, LONG job, const wchar_t* text) {
    String data(text);
    VARIANT_BOOL failed = 1;
    EXPECT_EQ(object->DirectWritePrinter(&job, &data, &failed), S_OK);
    return failed == VARIANT_FALSE;
  }
  using Member = HRESULT (STDMETHODCALLTYPE _KwRtLib::*)(LONG*, VARIANT_BOOL*);
  static bool does(const Pointer<_KwRtLib>& object, Member member, LONG job) {
    VARIANT_BOOL failed = 1;
    EXPECT_EQ((object.get()->*member)(&job, &failed), S_OK);
    return failed == VARIANT_FALSE;
  }
  LONG last_code() {
    LONG code = 0;
    global->Error_LastDLLError(&code);
    return code;
  }

  Pointer<_KwRtLib> global = create_global();
  PrintQueue queue{L"QvTest1", L"LPT1:"};
};

// Every byte there is, many times over.
std::wstring all_characters(std::size_t times, std::string& bytes) {
  std::wstring text;
  bytes.clear();
  for (std::size_t i = 0; i < times * 256; ++i) {
    const char narrow = static_cast<char>(i);
    wchar_t unit = 0;
    MultiByteToWideChar(1252, 0, &narrow, 1, &unit, 1);
    text += unit;
    bytes += narrow;
  }
  return text;
}

TEST_F(PrintQueues, A_text_reaches_the_port_byte_for_byte) {
  std::string expected;
  String data(all_characters(40, expected));
  EXPECT_TRUE(prints(L"QvTest1", data));
  EXPECT_TRUE(queue.output() == expected);
}

TEST_F(PrintQueues, Files_of_all_sizes_reach_the_port_byte_for_byte) {
  const TempFolder folder;
  for (const std::size_t size : {0U, 1U, 4096U, 4097U, 10'000'000U}) {
    SCOPED_TRACE(size);
    std::string expected;
    all_characters(size / 256 + 1, expected);
    expected.resize(size);
    folder.write(L"data.prn", expected);
    queue.forget();
    String data;
    EXPECT_TRUE(prints(L"QvTest1", data, folder.file(L"data.prn").c_str()));
    EXPECT_TRUE(queue.has_printed());
    EXPECT_TRUE(queue.output() == expected);
  }
}

TEST_F(PrintQueues, A_job_of_several_pages_reaches_the_port_when_it_is_closed) {
  const LONG job = open(global);
  for (const wchar_t* page : {L"page one\f", L"page two\f"}) {
    EXPECT_TRUE(does(global, &_KwRtLib::DirectStartPage, job));
    EXPECT_TRUE(writes(global, job, page));
    EXPECT_TRUE(does(global, &_KwRtLib::DirectEndPage, job));
  }
  EXPECT_FALSE(queue.has_printed());
  EXPECT_TRUE(does(global, &_KwRtLib::DirectClosePrinter, job));
  EXPECT_EQ(queue.output(), "page one\fpage two\f");
}

TEST_F(PrintQueues, Two_objects_have_jobs_on_one_printer_and_do_not_see_each_others) {
  auto other = create_global();
  const LONG mine = open(global);
  const LONG theirs = open(other);
  EXPECT_NE(mine, theirs);
  EXPECT_FALSE(writes(global, theirs, L"x"));
  EXPECT_FALSE(writes(other, mine, L"x"));
  EXPECT_TRUE(writes(other, theirs, L"theirs"));
  EXPECT_TRUE(writes(global, mine, L"mine"));
  EXPECT_TRUE(does(other, &_KwRtLib::DirectClosePrinter, theirs));
  EXPECT_EQ(queue.output(), "theirs");
  EXPECT_TRUE(does(global, &_KwRtLib::DirectClosePrinter, mine));
  EXPECT_EQ(queue.output(), "mine");
}

TEST_F(PrintQueues, The_end_of_an_object_closes_the_printers_of_its_jobs) {
  auto other = create_global();
  const LONG job = open(other);
  EXPECT_TRUE(writes(other, job, L"never printed"));
  other = {};
  EXPECT_EQ(next_handle(), job);
}

TEST_F(PrintQueues, DirectClosePrinter_gives_the_printer_back_and_ends_an_open_page) {
  const LONG job = open(global);
  EXPECT_TRUE(does(global, &_KwRtLib::DirectStartPage, job));
  EXPECT_TRUE(writes(global, job, L"page"));
  EXPECT_TRUE(does(global, &_KwRtLib::DirectClosePrinter, job));
  EXPECT_EQ(queue.output(), "page");
  EXPECT_EQ(next_handle(), job);
  EXPECT_EQ(open(global), job);
  EXPECT_TRUE(does(global, &_KwRtLib::DirectClosePrinter, job));
}

TEST_F(PrintQueues, A_job_without_a_page_reaches_the_port) {
  const LONG job = open(global);
  EXPECT_TRUE(writes(global, job, L"no page"));
  EXPECT_TRUE(does(global, &_KwRtLib::DirectClosePrinter, job));
  EXPECT_EQ(queue.output(), "no page");
}

TEST_F(PrintQueues, Two_queues_print_what_is_theirs) {
  const PrintQueue other(L"QvTest2", L"LPT2:");
  ASSERT_TRUE(other.is_ready());
  String one(L"one");
  String two(L"two");
  EXPECT_TRUE(prints(L"QvTest1", one));
  EXPECT_TRUE(prints(L"QvTest2", two));
  EXPECT_EQ(queue.output(), "one");
  EXPECT_EQ(other.output(), "two");
}

TEST_F(PrintQueues, A_printer_that_does_not_exist_is_recorded) {
  String data(L"data");
  EXPECT_FALSE(prints(L"No such printer", data));
  LONG number = 0;
  String source;
  LONG code = 0;
  global->Error_Number(&number);
  global->Error_Source(&source);
  global->Error_LastDLLError(&code);
  EXPECT_EQ(number, 20000);
  EXPECT_EQ(source, L" < KwRtLibMod.DirectOpenPrinter < KwRtLibMod.DirectPrint");
  EXPECT_EQ(code, ERROR_INVALID_PRINTER_NAME);
  global->Reset_Error();
}

TEST_F(PrintQueues, An_aborted_job_is_closed_only_once) {
  const LONG job = open(global);
  EXPECT_TRUE(does(global, &_KwRtLib::DirectAbortPrinter, job));
  EXPECT_FALSE(does(global, &_KwRtLib::DirectClosePrinter, job));
  EXPECT_EQ(last_code(), ERROR_INVALID_HANDLE);
  EXPECT_TRUE(does(global, &_KwRtLib::DirectAbortPrinter, job));
  VARIANT_BOOL failed = 1;
  EXPECT_EQ(global->DirectCloseAllPrinters(&failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_FALSE(does(global, &_KwRtLib::DirectAbortPrinter, job));
  global->Reset_Error();
}

TEST_F(PrintQueues, The_number_of_an_aborted_job_does_not_reach_the_next_that_has_its_handle) {
  const LONG stale = open(global);
  EXPECT_TRUE(does(global, &_KwRtLib::DirectAbortPrinter, stale));
  EXPECT_EQ(open(global), stale);
  EXPECT_FALSE(writes(global, stale, L"x"));
  EXPECT_FALSE(does(global, &_KwRtLib::DirectClosePrinter, stale));
  // The object has counted it.
  const LONG job = stale == 1 ? 2 : 1;
  EXPECT_TRUE(writes(global, job, L"the next"));
  EXPECT_TRUE(does(global, &_KwRtLib::DirectClosePrinter, job));
  EXPECT_EQ(queue.output(), "the next");
  global->Reset_Error();
}

}  // namespace
}  // namespace qv::tests
