// Whatever arguments come, nothing crashes and every variable stays sound: for callers of every
// kind, whatever their stack, and when memory is short at whatever point.
#include "server/frame_random_calls.h"
#include "server/frame_failing_allocations.h"
#include "server/frame_misaligned_call.h"

// Needs the platform's types before it.
#include <cguid.h>

namespace qv::tests {
namespace {

class Frame_RandomCalls : public testing::TestWithParam<unsigned> {
 protected:
  const EntryPoints entry_points_;
};

TEST_P(Frame_RandomCalls, survive) {
  const RandomCalls calls = call_everything(entry_points_, GetParam(), 60);
  EXPECT_GT(calls.succeeded, 1000);
  EXPECT_GT(calls.failed, 1000);
}

INSTANTIATE_TEST_SUITE_P(Seeds, Frame_RandomCalls, testing::Values(1U, 2U, 3U));

// Memory that is short at one point, or from there on: a member fails with "Out of memory" or "Out
// of string space", or by its own failure value, and works again afterwards.
class Frame_ShortMemory : public testing::TestWithParam<bool> {};

TEST_P(Frame_ShortMemory, is_survived_by_every_member) {
  constexpr int kLastCall = 25;
  const bool and_all_that_follow = GetParam();
  const EntryPoints entry_points;
  const CrashReporter reporter;
  FailingAllocations allocations(entry_points.module());
  int failures = 0;
  for (const LibraryClass& description : library_classes()) {
    const auto object = entry_points.create<IDispatch>(description.class_id);
    for (const MemberOf& member : members_of(object.get())) {
      if (is_left_out(member.name)) continue;
      const std::wstring name = description.name + L"." + member.name;
      SCOPED_TRACE(std::string(name.begin(), name.end()));
      CrashReporter::set(name);
      for (unsigned seed = 1; seed <= 10; ++seed) {
        bool has_failed = true;
        for (int failing = 1; failing <= kLastCall && has_failed; ++failing) {
          RandomArguments random(seed, entry_points);
          const auto invoke = [&](IDispatch* target, DISPID id, WORD flags, DISPPARAMS* parameters,
                                  VARIANT* result, EXCEPINFO* exception, UINT* bad_argument) {
            allocations.fail_from(failing, and_all_that_follow);
            const HRESULT status =
                invoke_plainly(target, id, flags, parameters, result, exception, bad_argument);
            has_failed = allocations.end();
            return status;
          };
          call_at_random(random, object.get(), member, invoke);
          failures += has_failed ? 1 : 0;
        }
        ASSERT_FALSE(HasFailure());
      }
    }
  }
  EXPECT_GT(failures, 1000);
  empty_thread_state(entry_points);
}

INSTANTIATE_TEST_SUITE_P(OnceAndFromThereOn, Frame_ShortMemory, testing::Bool());

TEST(Frame_Failure, memory_that_is_short_is_error_7_or_14) {
  const EntryPoints entry_points;
  const auto global = entry_points.create<_KwRtLib>(CLSID_KwRtLib);
  FailingAllocations allocations(entry_points.module());
  LONG number = 0x41424344;
  String text;
  for (const bool and_all_that_follow : {false, true}) {
    allocations.fail_from(1, and_all_that_follow);
    const HRESULT status = global->Long_2_Str(&number, &text);
    EXPECT_TRUE(allocations.end());
    EXPECT_TRUE(status == error_result(7) || status == error_result(14)) << std::hex << status;
    EXPECT_EQ(text.view(), L"");
    SetErrorInfo(0, nullptr);
  }
  EXPECT_EQ(global->Long_2_Str(&number, &text), S_OK);
  EXPECT_EQ(text.view(), L"DCBA");
  // A function that records its failures needs memory for the record.
  String buffer(L"abc");
  LONG offset = 4;
  Value value(L"value");
  VARIANT_BOOL failed = VARIANT_FALSE;
  allocations.fail_from(1, true);
  EXPECT_EQ(global->Buffer_Put(&buffer, &offset, &value, nullptr, &failed), error_result(7));
  EXPECT_TRUE(allocations.end());
  EXPECT_EQ(buffer.view(), L"abc");
  empty_thread_state(entry_points);
}

// The language promises a stack aligned to 4 bytes and no more.
#ifndef _WIN64
class Frame_MisalignedCalls : public testing::TestWithParam<unsigned> {};

TEST_P(Frame_MisalignedCalls, reach_every_member_late_bound) {
  constexpr std::size_t kInvokeSlot = 6;
  const EntryPoints entry_points;
  const auto invoke = [&](IDispatch* object, DISPID id, WORD flags, DISPPARAMS* parameters,
                          VARIANT* result, EXCEPINFO* exception, UINT* bad_argument) {
    return static_cast<HRESULT>(
        call_misaligned(object, kInvokeSlot,
                        {static_cast<ULONG>(id), word(&GUID_NULL), LOCALE_USER_DEFAULT, flags,
                         word(parameters), word(result), word(exception), word(bad_argument)},
                        GetParam()));
  };
  const RandomCalls calls = call_everything(entry_points, 4, 30, invoke);
  EXPECT_GT(calls.succeeded, 1000);
}

TEST_P(Frame_MisalignedCalls, create_objects_compute_and_raise_errors_early_bound) {
  constexpr std::size_t kCreateInstanceSlot = 3;
  const EntryPoints entry_points;
  Pointer<_KwRtLib> global;
  EXPECT_EQ(call_misaligned(entry_points.factory(CLSID_KwRtLib).get(), kCreateInstanceSlot,
                            {0, word(&__uuidof(_KwRtLib)), word(global.receive())}, GetParam()),
            0U);
  const auto slot_of = [&](const wchar_t* name) {
    for (const MemberOf& member : members_of(global.get())) {
      if (member.name == name) return member.offset_bytes / sizeof(void*);
    }
    return std::size_t{0};
  };
  double number = 1.5;
  String text;
  EXPECT_EQ(call_misaligned(global.get(), slot_of(L"Double_2_Str"), {word(&number), word(&text)},
                            GetParam()),
            0U);
  EXPECT_EQ(text.view().substr(6), L"\xf8?");
  double back = 0;
  EXPECT_EQ(call_misaligned(global.get(), slot_of(L"Str_2_Double"), {word(&text), word(&back)},
                            GetParam()),
            0U);
  EXPECT_EQ(back, 1.5);
  EXPECT_EQ(call_misaligned(global.get(), slot_of(L"Str_2_Double"), {0, word(&back)}, GetParam()),
            static_cast<ULONG>(error_result(5)));
  EXPECT_EQ(error_description(), L"Invalid procedure call or argument");
}

INSTANTIATE_TEST_SUITE_P(Offsets, Frame_MisalignedCalls, testing::Values(4U, 8U, 12U));
#endif

}  // namespace
}  // namespace qv::tests
