// Whatever exception escapes a member, its caller gets a run-time error.
#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <string>

#include "frame/server/forward.h"
#include "runtime/err.h"

namespace qv {
namespace {

constexpr IID kInterface = {
    0x2f1a9c40, 0x77d1, 0x4c52, {0xa0, 0x3b, 0x19, 0x5e, 0x0d, 0xcb, 0x64, 0xf7}};

template <class Exception>
HRESULT reported(const Exception& exception) {
  SetErrorInfo(0, nullptr);
  try {
    throw exception;
  } catch (...) {
    return report_current_exception(kInterface);
  }
}

std::wstring description() {
  Object<IErrorInfo> info;
  GetErrorInfo(0, info.receive());
  if (!info) return L"(none)";
  Text text;
  info->GetDescription(reinterpret_cast<BSTR*>(&text));
  return std::wstring(text.view());
}

TEST(EscapingException, memory_shortage_is_error_7) {
  EXPECT_EQ(reported(std::bad_alloc()), to_hresult(7));
  EXPECT_EQ(description(), L"Out of memory");
  EXPECT_EQ(reported(std::bad_array_new_length()), to_hresult(7));
}

TEST(EscapingException, a_length_beyond_all_limits_is_error_14) {
  EXPECT_EQ(reported(std::length_error("x")), to_hresult(14));
  EXPECT_EQ(description(), L"Out of string space");
}

TEST(EscapingException, anything_foreign_is_error_440) {
  EXPECT_EQ(reported(std::runtime_error("x")), to_hresult(440));
  EXPECT_EQ(description(), L"Automation error");
  EXPECT_EQ(reported(5), to_hresult(440));
}

TEST(EscapingException, a_run_time_error_keeps_its_fields_and_stays_pending) {
  EXPECT_EQ(reported(RunTimeError{.number = 20000, .source = L"here", .description = L"what"}),
            to_hresult(20000));
  EXPECT_EQ(description(), L"what");
  EXPECT_EQ(err().Number, 20000);
  EXPECT_EQ(err().Source, L"here");
  err().clear();
}

TEST(EscapingException, an_error_without_source_has_the_librarys) {
  EXPECT_EQ(reported(RunTimeError{.number = 13, .description = L"what"}), to_hresult(13));
  EXPECT_EQ(err().Source, L"QvRtLibOle");
  err().clear();
}

TEST(Raising, numbers_out_of_range_become_error_5) {
  for (const Long number : {0, 65536, 1000000}) {
    try {
      raise(RunTimeError{.number = number, .source = L"x", .description = L"y"});
    } catch (const RunTimeError& error) {
      EXPECT_EQ(error.number, 5);
      EXPECT_EQ(error.description, L"Invalid procedure call or argument");
      EXPECT_TRUE(error.source.empty());
    }
  }
}

TEST(Raising, numbers_of_the_language_have_its_texts) {
  EXPECT_EQ(run_time_error_text(13), L"Type mismatch");
  EXPECT_EQ(run_time_error_text(20000), L"Application-defined or object-defined error");
}

TEST(Results, are_the_run_time_errors_that_the_language_makes_of_them) {
  EXPECT_EQ(to_hresult(13), static_cast<HRESULT>(0x800A000D));
  EXPECT_EQ(to_hresult(E_FAIL), E_FAIL);
  EXPECT_EQ(to_error_number(static_cast<HRESULT>(0x800A000D)), 13);
  EXPECT_EQ(to_error_number(DISP_E_TYPEMISMATCH), 13);
  EXPECT_EQ(to_error_number(DISP_E_OVERFLOW), 6);
  EXPECT_EQ(to_error_number(DISP_E_UNKNOWNNAME), 438);
  EXPECT_EQ(to_error_number(DISP_E_PARAMNOTFOUND), 448);
  EXPECT_EQ(to_error_number(DISP_E_PARAMNOTOPTIONAL), 449);
  EXPECT_EQ(to_error_number(DISP_E_BADPARAMCOUNT), 450);
  EXPECT_EQ(to_error_number(E_OUTOFMEMORY), 7);
  EXPECT_EQ(to_error_number(E_FAIL), E_FAIL);
}

}  // namespace
}  // namespace qv
