// Memory that runs out for one library of the process, at a point that a test chooses.
#pragma once

#include <windows.h>

#include <vector>

namespace qv::tests {

// While it lives, the library's own calls for memory (the C run time's, Automation's, the system's)
// are counted, by way of its table of imports.
class FailingAllocations {
 public:
  explicit FailingAllocations(HMODULE module);
  FailingAllocations(const FailingAllocations&) = delete;
  FailingAllocations& operator=(const FailingAllocations&) = delete;
  ~FailingAllocations();

  // From now on the call of that number (1: the next) fails on this thread, alone or with all that
  // follow.
  void fail_from(int call, bool and_all_that_follow);
  // Ends that. Has a call failed?
  bool end();

 private:
  struct Import {
    void** place;
    void* function;
  };
  void replace(void** place, void* function);

  std::vector<Import> replaced_;
};

}  // namespace qv::tests
