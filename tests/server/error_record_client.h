// What the thread's error record holds, as a typed client sees it.
#pragma once

#include <string>

#include "server/client.h"

namespace qv::tests {

// A fixture whose tests begin with an empty record.
class WithErrorRecord : public testing::Test {
 protected:
  WithErrorRecord() { EXPECT_EQ(global_->Reset_Error(), S_OK); }
  ~WithErrorRecord() override { EXPECT_EQ(global_->Reset_Error(), S_OK); }

  LONG error_number() {
    LONG number = -1;
    EXPECT_EQ(global_->Error_Number(&number), S_OK);
    return number;
  }
  std::wstring error_source() {
    String source;
    EXPECT_EQ(global_->Error_Source(&source), S_OK);
    return std::wstring(source.view());
  }
  std::wstring recorded_description() {
    String description;
    EXPECT_EQ(global_->Error_Description(&description), S_OK);
    return std::wstring(description.view());
  }
  LONG last_dll_error() {
    LONG code = -1;
    EXPECT_EQ(global_->Error_LastDLLError(&code), S_OK);
    return code;
  }
  // Number and Source; clears the record.
  void expect_error(LONG number, std::wstring_view source) {
    EXPECT_EQ(error_number(), number);
    EXPECT_EQ(error_source(), source);
    EXPECT_EQ(global_->Reset_Error(), S_OK);
  }
  void expect_no_error() { expect_error(0, L""); }

  const Pointer<_KwRtLib> global_ = create_global();
};

}  // namespace qv::tests
