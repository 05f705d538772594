// What exists once per thread, and how it ends with the thread.
#include <atomic>
#include <thread>

#include "server/frame_classes.h"

namespace qv::tests {
namespace {

// An object of the client whose references can be counted.
class Counted final : public IDispatch {
 public:
  std::atomic<ULONG> references{1};

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    const bool known = IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IDispatch);
    *object = known ? this : nullptr;
    if (known) ++references;
    return known ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
  ULONG STDMETHODCALLTYPE Release() override { return --references; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return DISP_E_UNKNOWNNAME;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                   UINT*) override {
    return DISP_E_MEMBERNOTFOUND;
  }
};

Value object_value(IDispatch* object) {
  Value value;
  value.vt = VT_DISPATCH;
  value.pdispVal = object;
  object->AddRef();
  return value;
}

// Runs the body in an apartment of its own.
template <class Body>
void in_apartment(Body body) {
  std::thread([&] {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    body();
    CoUninitialize();
  }).join();
}

LONG error_number(_KwRtLib* global) {
  LONG number = -1;
  EXPECT_EQ(global->Error_Number(&number), S_OK);
  return number;
}

void set_error(_KwRtLib* global, LONG number) {
  Value value(number);
  EXPECT_EQ(global->Error_Replace(&value, nullptr, nullptr, nullptr, nullptr, nullptr), S_OK);
}

TEST(Frame_Threads, have_an_error_record_and_a_shared_variable_each) {
  const auto global = create_global();
  set_error(global.get(), 20001);
  ASSERT_EQ(global->put_SharedVar(Value(L"mine")), S_OK);
  in_apartment([] {
    const auto other = create_global();
    EXPECT_EQ(error_number(other.get()), 0);
    Value shared;
    EXPECT_EQ(other->get_SharedVar(&shared), S_OK);
    EXPECT_EQ(shared.vt, VT_EMPTY);
    set_error(other.get(), 20002);
    EXPECT_EQ(other->put_SharedVar(Value(7)), S_OK);
  });
  EXPECT_EQ(error_number(global.get()), 20001);
  Value shared;
  EXPECT_EQ(global->get_SharedVar(&shared), S_OK);
  EXPECT_EQ(shared.text(), L"mine");
  EXPECT_EQ(global->Reset_Error(), S_OK);
  EXPECT_EQ(global->put_SharedVar(Value()), S_OK);
}

TEST(Frame_Threads, two_global_objects_of_one_thread_share_them) {
  const auto first = create_global();
  const auto second = create_global();
  set_error(first.get(), 20003);
  EXPECT_EQ(error_number(second.get()), 20003);
  EXPECT_EQ(first->put_SharedVar(Value(5)), S_OK);
  Value shared;
  EXPECT_EQ(second->get_SharedVar(&shared), S_OK);
  EXPECT_EQ(shared.vt, VT_I4);
  EXPECT_EQ(shared.lVal, 5);
  EXPECT_EQ(first->Reset_Error(), S_OK);
  EXPECT_EQ(first->put_SharedVar(Value()), S_OK);
}

TEST(Frame_Threads, pending_errors_belong_to_their_thread) {
  const auto global = create_global();
  EXPECT_EQ(global->Long_2_Str(nullptr, nullptr), error_result(5));
  in_apartment([] {
    // Full mode takes what is pending, and here that is nothing.
    const auto other = create_global();
    EXPECT_EQ(other->Error_Set(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr),
              S_OK);
    EXPECT_EQ(error_number(other.get()), 0);
  });
}

TEST(Frame_Threads, unique_keys_differ_within_a_thread) {
  const auto unique_keys = [] {
    const auto global = create_global();
    LONG last = 0;
    for (int i = 0; i < 5; ++i) {
      LONG key = 0;
      EXPECT_EQ(global->Unique_KeyLong(&key), S_OK);
      EXPECT_GT(static_cast<DWORD>(key) - static_cast<DWORD>(last), 0U);
      EXPECT_NE(key, last);
      last = key;
    }
  };
  unique_keys();
  in_apartment(unique_keys);
}

TEST(Frame_Threads, an_object_in_the_shared_variable_is_let_go_before_the_apartment_ends) {
  const EntryPoints entry_points;
  Counted counted;
  ULONG in_the_apartment = 0;
  std::thread([&] {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    EXPECT_EQ(create_global()->put_SharedVar(object_value(&counted)), S_OK);
    EXPECT_EQ(counted.references, 2U);
    CoUninitialize();  // the apartment stays: this was the second use of it
    in_the_apartment = counted.references;
    CoUninitialize();
    EXPECT_EQ(counted.references, 1U);
  }).join();
  EXPECT_EQ(in_the_apartment, 2U);
  EXPECT_EQ(entry_points.can_unload_now(), S_OK);
}

TEST(Frame_Threads,
     an_object_of_the_library_in_the_shared_variable_does_not_outlive_its_apartment) {
  const EntryPoints entry_points;
  in_apartment([] {
    const auto list = create<_kwCollection>(CLSID_kwCollection);
    EXPECT_EQ(create_global()->put_SharedVar(object_value(list.get())), S_OK);
  });
  EXPECT_EQ(entry_points.can_unload_now(), S_OK);
}

TEST(Frame_Threads, a_shared_object_keeps_the_library_and_a_value_does_not) {
  const EntryPoints entry_points;
  Counted counted;
  EXPECT_EQ(create_global()->put_SharedVar(object_value(&counted)), S_OK);
  EXPECT_EQ(entry_points.can_unload_now(), S_FALSE);
  EXPECT_EQ(create_global()->put_SharedVar(Value(1)), S_OK);
  EXPECT_EQ(counted.references, 1U);
  EXPECT_EQ(entry_points.can_unload_now(), S_OK);
  EXPECT_EQ(create_global()->put_SharedVar(Value()), S_OK);
}

TEST(Frame_Threads, a_thread_that_ends_without_leaving_its_apartment_lets_go_too) {
  const EntryPoints entry_points;
  Counted counted;
  std::thread([&] {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    EXPECT_EQ(create_global()->put_SharedVar(object_value(&counted)), S_OK);
    EXPECT_EQ(counted.references, 2U);
  }).join();
  EXPECT_EQ(counted.references, 1U);
  EXPECT_EQ(entry_points.can_unload_now(), S_OK);
}

TEST(Frame_Threads, state_begins_anew_with_every_thread) {
  for (int i = 0; i < 50; ++i) {
    in_apartment([] {
      const auto global = create_global();
      EXPECT_EQ(error_number(global.get()), 0);
      set_error(global.get(), 20000);
    });
  }
}

}  // namespace
}  // namespace qv::tests
