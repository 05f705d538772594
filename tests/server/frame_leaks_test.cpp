// Nothing is left behind by objects, calls, and loading and unloading.
#include <thread>
#include <vector>

#include "server/allocations.h"
#include "server/frame_random_calls.h"

// Needs the platform's types before it.
#include <cguid.h>

namespace qv::tests {
namespace {

// What was raised and not handled stays pending on its thread until a function that handles its
// errors is entered.
void drop_pending_error() {
  String buffer;
  LONG offset = 1;
  Value value(1);
  VARIANT_BOOL failed = VARIANT_TRUE;
  EXPECT_EQ(create_global()->Buffer_Put(&buffer, &offset, &value, nullptr, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
}

// Reads each property without arguments, which makes results of every type there is.
void read_properties(IDispatch* object, const std::vector<DISPID>& ids) {
  for (const DISPID id : ids) {
    DISPPARAMS none{};
    Value result;
    object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none, &result, nullptr,
                   nullptr);
  }
}

std::vector<DISPID> properties_of(IDispatch* object) {
  std::vector<DISPID> ids;
  Pointer<ITypeInfo> info;
  EXPECT_EQ(object->GetTypeInfo(0, 0, info.receive()), S_OK);
  for (UINT i = 0; ids.size() < 12; ++i) {
    FUNCDESC* function = nullptr;
    if (FAILED(info->GetFuncDesc(i, &function))) break;
    if (function->invkind == INVOKE_PROPERTYGET && function->cParams == 0) {
      ids.push_back(function->memid);
    }
    info->ReleaseFuncDesc(function);
  }
  return ids;
}

Pointer<IDispatch> created_by(IClassFactory* factory) {
  Pointer<IDispatch> object;
  EXPECT_EQ(
      factory->CreateInstance(nullptr, IID_IDispatch, reinterpret_cast<void**>(object.receive())),
      S_OK);
  return object;
}

TEST(Frame_Leaks, ten_thousand_objects_of_every_class_leave_nothing) {
  const EntryPoints entry_points;
  for (const LibraryClass& description : library_classes()) {
    const auto factory = entry_points.factory(description.class_id);
    const auto ids = properties_of(created_by(factory.get()).get());
    read_properties(created_by(factory.get()).get(), ids);  // what is made once per thread
    drop_pending_error();
    allocations::begin();
    for (int i = 0; i < 10000; ++i) {
      const auto object = created_by(factory.get());
      if (i < 1000) read_properties(object.get(), ids);
    }
    drop_pending_error();
    EXPECT_EQ(allocations::end(), "")
        << std::string(description.name.begin(), description.name.end());
  }
}

TEST(Frame_Leaks, calls_with_every_kind_of_argument_leave_nothing) {
  const auto global = create_global();
  const auto record = create<_QVtError>(CLSID_QVtError);
  const auto calls = [&] {
    String buffer;
    LONG offset = 1;
    Value number(1.5);
    Value text(L"abc");
    VARIANT_BOOL failed = VARIANT_FALSE;
    global->Buffer_Put(&buffer, &offset, &number, nullptr, &failed);
    global->Buffer_Put(&buffer, &offset, &text, nullptr, &failed);
    global->Buffer_Complete(&buffer, &offset);
    SAFEARRAY* bytes = nullptr;
    global->Str_2_Byte(&buffer, &bytes);
    String back;
    global->Byte_2_Str(&bytes, &back);
    SafeArrayDestroy(bytes);
    Value guid;
    global->Guid_Binary(&guid);
    // A failure: error object, record, run-time error.
    LONG wrong = -1;
    String none;
    global->Buffer_Right(&buffer, &offset, &wrong, &none);
    SetErrorInfo(0, nullptr);
    Value error(20000);
    global->Error_Set(&error, &text, &text, nullptr, nullptr, nullptr, nullptr);
    global->Get_Error(&error, &text, &text, nullptr, nullptr, nullptr);
    global->Reset_Error();
    record->put_Description(buffer);
    _QVtError* target = record.get();
    record->CopyTo(&target);
    record->put_Description(nullptr);
    global->put_SharedVar(text);
    global->put_SharedVar(Value());
  };
  calls();
  drop_pending_error();
  allocations::begin();
  for (int i = 0; i < 10000; ++i) calls();
  drop_pending_error();
  EXPECT_EQ(allocations::end(), "");
}

TEST(Frame_Leaks, late_bound_calls_that_convert_and_fail_leave_nothing) {
  const auto global = create_global();
  DISPID id = DISPID_UNKNOWN;
  wchar_t name[] = L"Buffer_Put";
  LPOLESTR names = name;
  ASSERT_EQ(global->GetIDsOfNames(IID_NULL, &names, 1, 0, &id), S_OK);
  const auto calls = [&] {
    Value variables[4] = {Value(L"buffer"), Value(L"7"), Value(L"text"), Value(L"True")};
    VARIANT arguments[4];
    for (int i = 0; i < 4; ++i) {
      arguments[3 - i].vt = VT_BYREF | VT_VARIANT;
      arguments[3 - i].pvarVal = &variables[i];
    }
    for (const wchar_t* offset : {L"3", L"no number"}) {
      variables[1] = Value(offset);
      DISPPARAMS parameters{arguments, nullptr, 4, 0};
      Value result;
      EXCEPINFO exception{};
      UINT bad_argument = 0;
      global->Invoke(id, IID_NULL, 0, DISPATCH_METHOD, &parameters, &result, &exception,
                     &bad_argument);
      SysFreeString(exception.bstrSource);
      SysFreeString(exception.bstrDescription);
    }
  };
  calls();
  drop_pending_error();
  allocations::begin();
  for (int i = 0; i < 10000; ++i) calls();
  drop_pending_error();
  EXPECT_EQ(allocations::end(), "");
}

// What a process has of things that can be left behind.
struct Resources {
  std::size_t blocks = 0;  // of all heaps
  std::size_t bytes = 0;
  DWORD handles = 0;
  DWORD fibre_slot = 0;  // the next free one
  DWORD thread_slot = 0;

  static Resources now() {
    Resources resources;
    resources.count_heaps();
    GetProcessHandleCount(GetCurrentProcess(), &resources.handles);
    resources.fibre_slot = FlsAlloc(nullptr);
    FlsFree(resources.fibre_slot);
    resources.thread_slot = TlsAlloc();
    TlsFree(resources.thread_slot);
    return resources;
  }

 private:
  void count_heaps() {
    HANDLE heaps[64];
    const DWORD count = GetProcessHeaps(std::size(heaps), heaps);
    for (DWORD i = 0; i < count; ++i) {
      PROCESS_HEAP_ENTRY entry{};
      HeapLock(heaps[i]);
      while (HeapWalk(heaps[i], &entry) != FALSE) {
        if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) == 0) continue;
        ++blocks;
        bytes += entry.cbData;
      }
      HeapUnlock(heaps[i]);
    }
  }
};

// A copy, because the registered file stays loaded in this process.
class Frame_Loading : public testing::Test {
 protected:
  void SetUp() override {
    wchar_t temp[MAX_PATH];
    GetTempPathW(MAX_PATH, temp);
    path_ =
        std::wstring(temp) + L"qvrt_loading_" + std::to_wstring(GetCurrentProcessId()) + L".dll";
    ASSERT_NE(CopyFileW(server_path().c_str(), path_.c_str(), FALSE), FALSE);
  }
  void TearDown() override { EXPECT_NE(DeleteFileW(path_.c_str()), FALSE); }

  void load_use_unload() {
    const HMODULE module = LoadLibraryW(path_.c_str());
    ASSERT_NE(module, nullptr);
    const auto get_class_object = reinterpret_cast<decltype(&::DllGetClassObject)>(
        reinterpret_cast<void*>(GetProcAddress(module, "DllGetClassObject")));
    const auto can_unload_now = reinterpret_cast<decltype(&::DllCanUnloadNow)>(
        reinterpret_cast<void*>(GetProcAddress(module, "DllCanUnloadNow")));
    {
      Pointer<IClassFactory> factory;
      ASSERT_EQ(get_class_object(CLSID_KwRtLib, IID_IClassFactory,
                                 reinterpret_cast<void**>(factory.receive())),
                S_OK);
      Pointer<_KwRtLib> global;
      ASSERT_EQ(factory->CreateInstance(nullptr, __uuidof(_KwRtLib),
                                        reinterpret_cast<void**>(global.receive())),
                S_OK);
      use(global.get());
    }
    EXPECT_EQ(can_unload_now(), S_OK);
    FreeLibrary(module);
    EXPECT_EQ(GetModuleHandleW(path_.c_str()), nullptr);
  }
  static void use(_KwRtLib* global) {
    Value number(20000);
    EXPECT_EQ(global->Error_Set(&number, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr),
              S_OK);
    EXPECT_EQ(global->put_SharedVar(Value(L"text")), S_OK);
    String text;
    EXPECT_EQ(global->Long_2_Str(nullptr, &text), error_result(5));
    SetErrorInfo(0, nullptr);
    Pointer<ITypeInfo> info;
    EXPECT_EQ(global->GetTypeInfo(0, 0, info.receive()), S_OK);
  }

  std::wstring path_;
};

TEST_F(Frame_Loading, a_thousand_times_takes_no_memory_handles_or_slots) {
  for (int i = 0; i < 50; ++i) load_use_unload();
  const Resources before = Resources::now();
  for (int i = 0; i < 1000 && !HasFailure(); ++i) load_use_unload();
  const Resources after = Resources::now();
  EXPECT_EQ(after.handles, before.handles);
  EXPECT_EQ(after.fibre_slot, before.fibre_slot);
  EXPECT_EQ(after.thread_slot, before.thread_slot);
  EXPECT_EQ(after.blocks, before.blocks);
  EXPECT_EQ(after.bytes, before.bytes);
}

// Whatever members were called with: nothing of it may outlive the library, in any heap.
TEST_F(Frame_Loading, calls_of_every_member_leave_nothing) {
  const auto use_all = [&] {
    const EntryPoints entry_points(path_);
    call_everything(entry_points, 11, 20);
  };
  // What the system keeps for itself it has after some rounds.
  for (int i = 0; i < 3; ++i) use_all();
  const Resources before = Resources::now();
  for (int i = 0; i < 2; ++i) use_all();
  const Resources after = Resources::now();
  EXPECT_EQ(GetModuleHandleW(path_.c_str()), nullptr);
  EXPECT_EQ(after.handles, before.handles);
  EXPECT_EQ(after.blocks, before.blocks);
  EXPECT_EQ(after.bytes, before.bytes);
}

TEST_F(Frame_Loading, state_of_other_threads_ends_with_the_library) {
  const HMODULE module = LoadLibraryW(path_.c_str());
  ASSERT_NE(module, nullptr);
  const auto get_class_object = reinterpret_cast<decltype(&::DllGetClassObject)>(
      reinterpret_cast<void*>(GetProcAddress(module, "DllGetClassObject")));
  const HANDLE used = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  const HANDLE unloaded = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  std::thread worker([&] {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    {
      Pointer<IClassFactory> factory;
      get_class_object(CLSID_KwRtLib, IID_IClassFactory,
                       reinterpret_cast<void**>(factory.receive()));
      Pointer<_KwRtLib> global;
      factory->CreateInstance(nullptr, __uuidof(_KwRtLib),
                              reinterpret_cast<void**>(global.receive()));
      use(global.get());
    }
    SetEvent(used);
    WaitForSingleObject(unloaded, INFINITE);
    CoUninitialize();
  });
  WaitForSingleObject(used, INFINITE);
  FreeLibrary(module);
  EXPECT_EQ(GetModuleHandleW(path_.c_str()), nullptr);
  SetEvent(unloaded);
  worker.join();  // its end must not call into what is gone
  CloseHandle(used);
  CloseHandle(unloaded);
}

TEST_F(Frame_Loading, several_threads_may_be_its_first_users_at_once) {
  for (int round = 0; round < 20; ++round) {
    const HMODULE module = LoadLibraryW(path_.c_str());
    const auto get_class_object = reinterpret_cast<decltype(&::DllGetClassObject)>(
        reinterpret_cast<void*>(GetProcAddress(module, "DllGetClassObject")));
    const HANDLE start = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    std::vector<std::thread> users;
    for (int i = 0; i < 4; ++i) {
      users.emplace_back([&] {
        CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        WaitForSingleObject(start, INFINITE);
        {
          Pointer<IClassFactory> factory;
          get_class_object(CLSID_KwRtLib, IID_IClassFactory,
                           reinterpret_cast<void**>(factory.receive()));
          Pointer<_KwRtLib> global;
          factory->CreateInstance(nullptr, __uuidof(_KwRtLib),
                                  reinterpret_cast<void**>(global.receive()));
          use(global.get());
        }
        CoUninitialize();
      });
    }
    SetEvent(start);
    for (std::thread& user : users) user.join();
    CloseHandle(start);
    FreeLibrary(module);
    ASSERT_EQ(GetModuleHandleW(path_.c_str()), nullptr);
  }
}

}  // namespace
}  // namespace qv::tests
