// The global object: what is shared on a thread, and the frame's own services.
#include "server/client.h"

#include <array>
#include <cstring>
#include <thread>

namespace qv::tests {
namespace {

// Runs on a thread and in an apartment of its own.
template <class Body>
void on_another_thread(Body body) {
  std::thread([&] {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    body();
    CoUninitialize();
  }).join();
}

class GlobalObject : public testing::Test {
 protected:
  ~GlobalObject() override { global->put_SharedVar(Value()); }

  Value shared(const Pointer<_KwRtLib>& object) {
    Value value;
    EXPECT_EQ(object->get_SharedVar(&value), S_OK);
    return value;
  }

  Pointer<_KwRtLib> global = create_global();
};

// An object that can be counted. Its default property must never be asked for.
class Counted final : public IDispatch {
 public:
  ULONG references = 1;
  int invocations = 0;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    const bool known = IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IDispatch);
    *object = known ? static_cast<IDispatch*>(this) : nullptr;
    if (known) AddRef();
    return known ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
  ULONG STDMETHODCALLTYPE Release() override { return --references; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                   UINT*) override {
    ++invocations;
    return E_NOTIMPL;
  }
};

VARIANT object_value(IDispatch* object) {
  VARIANT value;
  value.vt = VT_DISPATCH;
  value.pdispVal = object;
  return value;
}

TEST_F(GlobalObject, SharedVar_begins_Empty_on_every_thread) {
  EXPECT_EQ(global->put_SharedVar(Value(L"mine")), S_OK);
  on_another_thread([this] {
    const auto other = create_global();
    EXPECT_EQ(shared(other).vt, VT_EMPTY);
    EXPECT_EQ(other->put_SharedVar(Value(7)), S_OK);
    EXPECT_EQ(shared(other).lVal, 7);
  });
  EXPECT_EQ(shared(global).text(), L"mine");
}

TEST_F(GlobalObject, SharedVar_is_shared_by_two_objects_of_a_thread) {
  const auto second = create_global();
  EXPECT_EQ(global->put_SharedVar(Value(L"text")), S_OK);
  EXPECT_EQ(shared(second).text(), L"text");
  EXPECT_EQ(second->put_SharedVar(Value(1.5)), S_OK);
  EXPECT_EQ(shared(global).vt, VT_R8);
  EXPECT_EQ(shared(global).dblVal, 1.5);
}

TEST_F(GlobalObject, SharedVar_outlives_the_object_that_stored_it) {
  create_global()->put_SharedVar(Value(L"text"));
  EXPECT_EQ(shared(global).text(), L"text");
}

TEST_F(GlobalObject, SharedVar_keeps_a_copy_and_gives_a_copy) {
  Value text(L"text");
  EXPECT_EQ(global->put_SharedVar(text), S_OK);
  text.bstrVal[0] = L'T';
  const Value first = shared(global);
  EXPECT_EQ(first.text(), L"text");
  first.bstrVal[0] = L'T';
  EXPECT_EQ(shared(global).text(), L"text");
}

TEST_F(GlobalObject, SharedVar_keeps_what_a_reference_refers_to) {
  LONG number = 7;
  Value reference;
  reference.vt = VT_BYREF | VT_I4;
  reference.plVal = &number;
  EXPECT_EQ(global->put_SharedVar(reference), S_OK);
  number = 8;
  EXPECT_EQ(shared(global).vt, VT_I4);
  EXPECT_EQ(shared(global).lVal, 7);
}

TEST_F(GlobalObject, SharedVar_keeps_every_kind_of_value) {
  for (const VARTYPE type : {VT_EMPTY, VT_NULL, VT_I2, VT_I4, VT_R4, VT_R8, VT_CY, VT_DATE, VT_BOOL,
                             VT_UI1, VT_ERROR, VT_DECIMAL}) {
    Value value;
    value.vt = type;
    EXPECT_EQ(global->put_SharedVar(value), S_OK);
    EXPECT_EQ(shared(global).vt, type);
  }
}

TEST_F(GlobalObject, SharedVar_keeps_an_object_by_reference_and_asks_it_nothing) {
  Counted object;
  EXPECT_EQ(global->put_SharedVar(object_value(&object)), S_OK);
  EXPECT_EQ(object.references, 2U);
  {
    const Value value = shared(global);
    EXPECT_EQ(value.vt, VT_DISPATCH);
    EXPECT_EQ(value.pdispVal, &object);
    EXPECT_EQ(object.references, 3U);
  }
  EXPECT_EQ(global->put_SharedVar(Value(1)), S_OK);
  EXPECT_EQ(object.references, 1U);
  EXPECT_EQ(object.invocations, 0);
}

TEST_F(GlobalObject, SharedVar_lets_its_object_go_when_the_thread_leaves_its_apartment) {
  Counted object;
  on_another_thread([&] {
    create_global()->put_SharedVar(object_value(&object));
    EXPECT_EQ(object.references, 2U);
  });
  EXPECT_EQ(object.references, 1U);
}

TEST_F(GlobalObject, SharedVar_lets_an_array_of_objects_go_when_the_thread_leaves_its_apartment) {
  Counted object;
  on_another_thread([&] {
    SAFEARRAYBOUND bound{1, 0};
    Value array;
    array.vt = VT_ARRAY | VT_VARIANT;
    array.parray = SafeArrayCreate(VT_VARIANT, 1, &bound);
    LONG index = 0;
    VARIANT element = object_value(&object);
    SafeArrayPutElement(array.parray, &index, &element);
    create_global()->put_SharedVar(array);
    EXPECT_EQ(object.references, 3U);
  });
  EXPECT_EQ(object.references, 1U);
}

TEST_F(GlobalObject, ThreadInfo_tells_module_and_thread) {
  LONG instance = -1;
  LONG previous = -1;
  LONG thread = -1;
  EXPECT_EQ(global->ThreadInfo(&instance, &previous, &thread), S_OK);
  const auto module = reinterpret_cast<ULONG_PTR>(GetModuleHandleW(L"QvRtLibOle.dll"));
  EXPECT_EQ(instance, static_cast<LONG>(module));
  EXPECT_EQ(previous, 0);
  EXPECT_EQ(thread, static_cast<LONG>(GetCurrentThreadId()));
}

TEST_F(GlobalObject, Unique_KeyLong_is_a_tick_count_that_never_comes_twice) {
  DWORD last = 0;
  for (int i = 0; i < 5; ++i) {
    const DWORD before = GetTickCount();
    LONG key = 0;
    EXPECT_EQ(global->Unique_KeyLong(&key), S_OK);
    const DWORD after = GetTickCount();
    const auto tick = static_cast<DWORD>(key);
    EXPECT_LE(tick - before, after - before);
    EXPECT_NE(tick, last);
    last = tick;
  }
}

TEST_F(GlobalObject, Unique_KeyLong_is_unique_across_the_objects_of_a_thread) {
  const auto second = create_global();
  LONG a = 0;
  LONG b = 0;
  global->Unique_KeyLong(&a);
  second->Unique_KeyLong(&b);
  EXPECT_NE(a, b);
}

TEST_F(GlobalObject, Guid_String_is_a_new_identifier_in_braces) {
  String first;
  String second;
  EXPECT_EQ(global->Guid_String(&first), S_OK);
  EXPECT_EQ(global->Guid_String(&second), S_OK);
  EXPECT_EQ(first.length(), 38U);
  EXPECT_FALSE(first == second.view());
  GUID id{};
  EXPECT_EQ(CLSIDFromString(first, &id), S_OK);
  std::array<wchar_t, 40> again{};
  StringFromGUID2(id, again.data(), static_cast<int>(again.size()));
  EXPECT_EQ(first, std::wstring(again.data()));
}

TEST_F(GlobalObject, Guid_Binary_is_16_new_bytes_from_index_0) {
  Value first;
  Value second;
  EXPECT_EQ(global->Guid_Binary(&first), S_OK);
  EXPECT_EQ(global->Guid_Binary(&second), S_OK);
  ASSERT_EQ(first.vt, VT_ARRAY | VT_UI1);
  ASSERT_EQ(second.vt, VT_ARRAY | VT_UI1);
  LONG lower = -1;
  LONG upper = -1;
  EXPECT_EQ(SafeArrayGetDim(first.parray), 1U);
  EXPECT_EQ(SafeArrayGetLBound(first.parray, 1, &lower), S_OK);
  EXPECT_EQ(SafeArrayGetUBound(first.parray, 1, &upper), S_OK);
  EXPECT_EQ(lower, 0);
  EXPECT_EQ(upper, 15);
  EXPECT_NE(std::memcmp(first.parray->pvData, second.parray->pvData, sizeof(GUID)), 0);
}

TEST_F(GlobalObject, Get_UserName_is_the_user_of_the_thread) {
  std::array<wchar_t, 1024> name{};
  DWORD length = name.size();
  ASSERT_NE(GetUserNameW(name.data(), &length), FALSE);
  String answer;
  EXPECT_EQ(global->Get_UserName(&answer), S_OK);
  EXPECT_EQ(answer, std::wstring(name.data()));
  EXPECT_GT(answer.length(), 0U);
}

// The standard output is another one while this lives.
class RedirectedOutput {
 public:
  explicit RedirectedOutput(HANDLE output) : before_(GetStdHandle(STD_OUTPUT_HANDLE)) {
    SetStdHandle(STD_OUTPUT_HANDLE, output);
  }
  RedirectedOutput(const RedirectedOutput&) = delete;
  RedirectedOutput& operator=(const RedirectedOutput&) = delete;
  ~RedirectedOutput() { SetStdHandle(STD_OUTPUT_HANDLE, before_); }

 private:
  HANDLE before_;
};

TEST_F(GlobalObject, StdOut_writes_each_character_as_one_byte_and_adds_nothing) {
  HANDLE reader = nullptr;
  HANDLE writer = nullptr;
  ASSERT_NE(CreatePipe(&reader, &writer, nullptr, 0), FALSE);
  VARIANT_BOOL failed = VARIANT_TRUE;
  String text(std::wstring_view(L"a\0\xE8\x20AC\n", 5));
  {
    const RedirectedOutput output(writer);
    EXPECT_EQ(global->StdOut(&text, &failed), S_OK);
  }
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_EQ(text.length(), 5U);
  CloseHandle(writer);
  std::array<char, 16> bytes{};
  DWORD count = 0;
  ReadFile(reader, bytes.data(), bytes.size(), &count, nullptr);
  CloseHandle(reader);
  EXPECT_EQ(std::string(bytes.data(), count), std::string("a\0\xE8\x80\n", 5));
}

TEST_F(GlobalObject, StdOut_drops_the_result_of_a_failing_write) {
  for (HANDLE nowhere : {static_cast<HANDLE>(nullptr), INVALID_HANDLE_VALUE}) {
    VARIANT_BOOL failed = VARIANT_TRUE;
    String text(L"lost");
    const RedirectedOutput output(nowhere);
    EXPECT_EQ(global->StdOut(&text, &failed), S_OK);
    EXPECT_EQ(failed, VARIANT_FALSE);
  }
  VARIANT_BOOL recorded = VARIANT_TRUE;
  EXPECT_EQ(global->Check_Error(&recorded), S_OK);
  EXPECT_EQ(recorded, VARIANT_FALSE);
}

TEST_F(GlobalObject, message_constants_have_their_texts) {
  String create_file;
  String open_file;
  String bloom_save;
  EXPECT_EQ(global->get_CEM_CREATEFILE(&create_file), S_OK);
  EXPECT_EQ(global->get_CEM_OPENFILE(&open_file), S_OK);
  EXPECT_EQ(global->get_MSG_BLOOMSAVE(&bloom_save), S_OK);
  EXPECT_EQ(create_file, L"Impossibile creare il file %%.");
  EXPECT_EQ(open_file, L"Impossibile aprire il file %%.");
  EXPECT_EQ(bloom_save, L"Errore durante il salvataggio del filtro-b.");
}

}  // namespace
}  // namespace qv::tests
