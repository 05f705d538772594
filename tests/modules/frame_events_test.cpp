// Events on their way to sinks, fired from inside as a long operation does.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "automation/connection_points.h"

namespace qv {
namespace {

constexpr IID kEvents = {
    0x0a7c53d1, 0x2e64, 0x4b0e, {0x8d, 0x90, 0x6f, 0x12, 0x77, 0x34, 0xc5, 0x0b}};

// Owns a connection point as an object of the library does; lives on the stack.
struct Source final : IUnknown {
  ULONG references = 1;
  ConnectionPoint point{this, kEvents};

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** object) override {
    *object = nullptr;
    return E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
  ULONG STDMETHODCALLTYPE Release() override { return --references; }
};

// A typed sink answers to the event interface, a late-bound one to IDispatch alone.
struct Sink final : IDispatch {
  explicit Sink(bool is_typed) : typed(is_typed) {}
  bool typed;
  ULONG references = 1;
  std::function<HRESULT(DISPID, DISPPARAMS&)> on_event;
  int calls = 0;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    const bool known = IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IDispatch) ||
                       (typed && IsEqualIID(id, kEvents));
    *object = known ? this : nullptr;
    if (known) ++references;
    return known ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
  ULONG STDMETHODCALLTYPE Release() override { return --references; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO*, UINT*) override {
    EXPECT_EQ(flags, DISPATCH_METHOD);
    EXPECT_EQ(result, nullptr);
    ++calls;
    return on_event ? on_event(id, *parameters) : S_OK;
  }
};

VARIANT reference_to(LONG& number) {
  VARIANT reference{};
  reference.vt = VT_BYREF | VT_I4;
  reference.plVal = &number;
  return reference;
}

VARIANT reference_to(VARIANT_BOOL& truth) {
  VARIANT reference{};
  reference.vt = VT_BYREF | VT_BOOL;
  reference.pboolVal = &truth;
  return reference;
}

class Events : public testing::TestWithParam<bool> {};

TEST_P(Events, reach_the_sink_with_arguments_in_automation_order) {
  Source source;
  Sink sink(GetParam());
  DWORD cookie = 0;
  ASSERT_EQ(source.point.Advise(&sink, &cookie), S_OK);
  LONG index = 3;
  LONG percent = 50;
  VARIANT_BOOL cancel = VARIANT_FALSE;
  sink.on_event = [](DISPID id, DISPPARAMS& parameters) {
    EXPECT_EQ(id, 2);
    EXPECT_EQ(parameters.cArgs, 3U);
    EXPECT_EQ(parameters.cNamedArgs, 0U);
    EXPECT_EQ(*parameters.rgvarg[2].plVal, 3);
    EXPECT_EQ(*parameters.rgvarg[1].plVal, 50);
    *parameters.rgvarg[0].pboolVal = VARIANT_TRUE;
    return S_OK;
  };
  source.point.raise_event(2, {reference_to(index), reference_to(percent), reference_to(cancel)});
  EXPECT_EQ(sink.calls, 1);
  EXPECT_EQ(cancel, VARIANT_TRUE);
  EXPECT_EQ(source.point.Unadvise(cookie), S_OK);
  source.point.raise_event(2, {});
  EXPECT_EQ(sink.calls, 1);
}

INSTANTIATE_TEST_SUITE_P(Sinks, Events, testing::Bool(),
                         [](const auto& test) { return test.param ? "typed" : "late_bound"; });

TEST(Events, reach_every_sink_though_one_fails) {
  Source source;
  Sink failing(true);
  Sink other(false);
  failing.on_event = [](DISPID, DISPPARAMS&) { return DISP_E_EXCEPTION; };
  DWORD cookie = 0;
  source.point.Advise(&failing, &cookie);
  source.point.Advise(&other, &cookie);
  source.point.raise_event(1, {});
  EXPECT_EQ(failing.calls, 1);
  EXPECT_EQ(other.calls, 1);
}

TEST(Events, a_sink_may_disconnect_itself_and_others_meanwhile) {
  Source source;
  Sink first(true);
  Sink second(true);
  DWORD cookies[2] = {};
  source.point.Advise(&first, &cookies[0]);
  source.point.Advise(&second, &cookies[1]);
  first.on_event = [&](DISPID, DISPPARAMS&) {
    EXPECT_EQ(source.point.Unadvise(cookies[0]), S_OK);
    EXPECT_EQ(source.point.Unadvise(cookies[1]), S_OK);
    return S_OK;
  };
  source.point.raise_event(1, {});
  EXPECT_EQ(first.calls, 1);
  EXPECT_EQ(second.calls, 1);  // it was connected when the event happened
  source.point.raise_event(1, {});
  EXPECT_EQ(first.calls, 1);
  EXPECT_EQ(first.references, 1U);
  EXPECT_EQ(second.references, 1U);
}

TEST(Events, the_source_outlives_its_event) {
  Source source;
  Sink sink(true);
  DWORD cookie = 0;
  source.point.Advise(&sink, &cookie);
  ULONG during = 0;
  sink.on_event = [&](DISPID, DISPPARAMS&) {
    during = source.references;
    return S_OK;
  };
  source.point.raise_event(1, {});
  EXPECT_EQ(during, 2U);
  EXPECT_EQ(source.references, 1U);
}

}  // namespace
}  // namespace qv
