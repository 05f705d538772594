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
  String printer(L"QvTest1");
  LONG handle = 0;
  String document(L"Pages");
  VARIANT_BOOL failed = 1;
  EXPECT_EQ(global->DirectOpenPrinter(&printer, &handle, &document, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  LONG job = 1;
  for (const wchar_t* page : {L"page one\f", L"page two\f"}) {
    String data(page);
    EXPECT_EQ(global->DirectStartPage(&job, &failed), S_OK);
    EXPECT_EQ(failed, VARIANT_FALSE);
    EXPECT_EQ(global->DirectWritePrinter(&job, &data, &failed), S_OK);
    EXPECT_EQ(failed, VARIANT_FALSE);
    EXPECT_EQ(global->DirectEndPage(&job, &failed), S_OK);
    EXPECT_EQ(failed, VARIANT_FALSE);
  }
  EXPECT_FALSE(queue.has_printed());
  EXPECT_EQ(global->DirectClosePrinter(&job, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_EQ(queue.output(), "page one\fpage two\f");
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
  String printer(L"QvTest1");
  LONG handle = 0;
  VARIANT_BOOL failed = 1;
  EXPECT_EQ(global->DirectOpenPrinter(&printer, &handle, nullptr, &failed), S_OK);
  LONG job = 1;
  EXPECT_EQ(global->DirectAbortPrinter(&job, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_EQ(global->DirectClosePrinter(&job, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_TRUE);
  LONG code = 0;
  global->Error_LastDLLError(&code);
  EXPECT_EQ(code, ERROR_INVALID_HANDLE);
  EXPECT_EQ(global->DirectCloseAllPrinters(&failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  global->Reset_Error();
}

}  // namespace
}  // namespace qv::tests
