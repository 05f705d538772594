// Late-bound calls of every member of every class with arguments of every kind, for tests that look
// at what comes of it. Some members are left out; the table says which and why.
#pragma once

#include <functional>

#include "server/frame_members.h"
#include "server/frame_random_arguments.h"

namespace qv::tests {

// Why a member may not be called with whatever comes.
bool is_left_out(std::wstring_view member);

using Invoke =
    std::function<HRESULT(IDispatch*, DISPID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*)>;
// As any caller does.
HRESULT invoke_plainly(IDispatch* object, DISPID id, WORD flags, DISPPARAMS* parameters,
                       VARIANT* result, EXCEPINFO* exception, UINT* bad_argument);

struct RandomCall {
  HRESULT status = S_OK;
  HRESULT scode = 0;
};
// One call. Failures of the call are no failures of the test; unsound results are.
RandomCall call_at_random(RandomArguments& random, IDispatch* object, const MemberOf& member,
                          const Invoke& invoke);

struct RandomCalls {
  int succeeded = 0;
  int failed = 0;
};
// Each member that is not left out, so often, by objects of that library. A crash names the member.
RandomCalls call_everything(const EntryPoints& entry_points, unsigned seed, int calls_per_member,
                            const Invoke& invoke = invoke_plainly);

// The thread's state as a program finds it: no error, nothing shared.
void empty_thread_state(const EntryPoints& entry_points);

// While it lives, a crash of the process tells the name that was set last.
class CrashReporter {
 public:
  CrashReporter();
  CrashReporter(const CrashReporter&) = delete;
  CrashReporter& operator=(const CrashReporter&) = delete;
  ~CrashReporter();
  static void set(const std::wstring& name);

 private:
  LPTOP_LEVEL_EXCEPTION_FILTER filter_before_;
  void (*abort_before_)(int);
};

}  // namespace qv::tests
