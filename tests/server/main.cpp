// server_tests: a typed client of the registered server. With --watch_allocations most tests run
// twice, and what the second run of one leaves allocated is a failure: the first may fill caches of
// the platform.
#include <windows.h>
// objbase.h needs windows.h before it.
#include <objbase.h>

#include <gtest/gtest.h>

#include <cstring>

#include "server/allocations.h"
#include "server/client.h"
#include "server/thread_state.h"

namespace qv::tests {
namespace {

// Tests that load or register the library anew, watch the allocations themselves, or call
// everything with whatever comes (an error record keeps its Caption when it is reset); those of
// calls between apartments, for which the platform keeps objects and type libraries; and those
// that, after these, would wait in vain for all objects to be gone: Frame_Unloading, EntryPoints
// and Threads.
constexpr const char* kNotWatched =
    "Frame_Loading*:Frame_Leaks*:Frame_Concurrency*:Frame_Registration*:Frame_SideBySide*:"
    "*Frame_RandomCalls*:*Frame_ShortMemory*:*Frame_MisalignedCalls*:Frame_Apartments*:"
    "Frame_Unloading*:Frame_EntryPoints*:Frame_Threads*";

class Watch final : public testing::EmptyTestEventListener {
 public:
  void OnTestStart(const testing::TestInfo&) override {
    empty_thread_state(create_global().get());
    allocations::begin();
  }
  void OnTestEnd(const testing::TestInfo& test) override {
    empty_thread_state(create_global().get());
    const std::string left = allocations::end();
    EXPECT_EQ(left, "") << "left by " << test.test_suite_name() << "." << test.name();
  }
};

}  // namespace
}  // namespace qv::tests

int main(int count, char** arguments) {
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  testing::InitGoogleTest(&count, arguments);
  int code = RUN_ALL_TESTS();
  if (code == 0 && count > 1 && std::strcmp(arguments[1], "--watch_allocations") == 0) {
    std::string& filter = testing::GTEST_FLAG(filter);
    filter +=
        (filter.find('-') == std::string::npos ? "-" : ":") + std::string(qv::tests::kNotWatched);
    testing::UnitTest::GetInstance()->listeners().Append(new qv::tests::Watch());
    code = RUN_ALL_TESTS();
  }
  CoUninitialize();
  return code;
}
