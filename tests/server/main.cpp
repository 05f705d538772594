// server_tests: a typed client of the registered server. With --watch_allocations every test runs
// twice, and what the second run of one leaves allocated is a failure: the first may fill caches of
// the platform.
#include <windows.h>
// objbase.h needs windows.h before it.
#include <objbase.h>

#include <gtest/gtest.h>

#include <cstring>

#include "server/allocations.h"
#include "server/client.h"

namespace qv::tests {
namespace {

// Error state and shared variable hold texts of the last test.
void empty_thread_state() {
  const auto global = create_global();
  global->Error_Unlock();
  global->Reset_Error();
  global->put_SharedVar(Value());
  // What was raised and not handled is pending until a function that handles its errors is entered.
  String buffer;
  LONG offset = 1;
  Value value(1);
  VARIANT_BOOL failed = VARIANT_TRUE;
  global->Buffer_Put(&buffer, &offset, &value, nullptr, &failed);
  SetErrorInfo(0, nullptr);
}

class Watch final : public testing::EmptyTestEventListener {
 public:
  void OnTestIterationStart(const testing::UnitTest&, int iteration) override {
    is_on_ = iteration == 1;
  }
  void OnTestStart(const testing::TestInfo&) override {
    if (!is_on_) return;
    empty_thread_state();
    allocations::begin();
  }
  void OnTestEnd(const testing::TestInfo& test) override {
    if (!is_on_) return;
    empty_thread_state();
    const std::string left = allocations::end();
    EXPECT_EQ(left, "") << "left by " << test.test_suite_name() << "." << test.name();
  }

 private:
  bool is_on_ = false;
};

}  // namespace
}  // namespace qv::tests

int main(int count, char** arguments) {
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  testing::InitGoogleTest(&count, arguments);
  if (count > 1 && std::strcmp(arguments[1], "--watch_allocations") == 0) {
    testing::GTEST_FLAG(repeat) = 2;
    testing::UnitTest::GetInstance()->listeners().Append(new qv::tests::Watch());
  }
  const int code = RUN_ALL_TESTS();
  CoUninitialize();
  return code;
}
