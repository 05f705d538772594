// Calls from a thread without an apartment of its own: the platform makes the objects in another
// thread and carries every call there and back, by what the type library says of its arguments.
#include <array>
#include <functional>
#include <thread>

#include "server/client.h"

namespace qv::tests {
namespace {

class Frame_Apartments : public testing::Test {
 protected:
  static void SetUpTestSuite() { ASSERT_TRUE(create_global()); }

  static void in_free_thread(const std::function<void()>& body) {
    std::thread([&] {
      ASSERT_TRUE(SUCCEEDED(CoInitializeEx(nullptr, COINIT_MULTITHREADED)));
      body();
      CoUninitialize();
    }).join();
  }
};

SAFEARRAY* bytes_of(std::initializer_list<BYTE> values) {
  SAFEARRAYBOUND bound{static_cast<ULONG>(values.size()), 0};
  SAFEARRAY* array = SafeArrayCreate(VT_UI1, 1, &bound);
  std::copy(values.begin(), values.end(), static_cast<BYTE*>(array->pvData));
  return array;
}

TEST_F(Frame_Apartments, values_and_texts_come_and_go_by_reference) {
  in_free_thread([] {
    const auto global = create_global();
    ASSERT_TRUE(global);
    LONG number = 0x04030201;
    String image;
    EXPECT_EQ(global->Long_2_Str(&number, &image), S_OK);
    EXPECT_EQ(image, L"\1\2\3\4");
    String buffer;
    LONG offset = 1;
    VARIANT_BOOL prefix = VARIANT_TRUE;
    VARIANT_BOOL failed = VARIANT_TRUE;
    Value text(L"abc");
    EXPECT_EQ(global->Buffer_Put(&buffer, &offset, &text, &prefix, &failed), S_OK);
    EXPECT_EQ(failed, VARIANT_FALSE);
    EXPECT_EQ(offset, 8);
    EXPECT_EQ(buffer.length(), 16384U);
    offset = 1;
    Value read(L"");
    EXPECT_EQ(global->Buffer_Get(&buffer, &offset, &read, &prefix, &failed), S_OK);
    EXPECT_EQ(read.text(), L"abc");
    EXPECT_EQ(offset, 8);
    DOUBLE x = 1.5;
    DOUBLE ceiling = 0;
    EXPECT_EQ(global->Ceil(&x, &ceiling), S_OK);
    EXPECT_EQ(ceiling, 2.0);
    SHORT low = 1;
    SHORT high = -1;
    LONG made = 0;
    EXPECT_EQ(global->Make_Long(&low, &high, &made), S_OK);
    EXPECT_EQ(made, -65535);
  });
}

TEST_F(Frame_Apartments, arrays_come_and_go) {
  in_free_thread([] {
    const auto global = create_global();
    ASSERT_TRUE(global);
    SAFEARRAY* array = bytes_of({65, 0, 255});
    String text;
    EXPECT_EQ(global->Byte_2_Str(&array, &text), S_OK);
    EXPECT_EQ(text.length(), 3U);
    SafeArrayDestroy(array);
    array = nullptr;
    String source(L"xyz");
    EXPECT_EQ(global->Str_2_Byte(&source, &array), S_OK);
    ASSERT_NE(array, nullptr);
    ASSERT_EQ(array->rgsabound[0].cElements, 3U);
    EXPECT_EQ(static_cast<BYTE*>(array->pvData)[2], 'z');
    SafeArrayDestroy(array);
    Value id;
    EXPECT_EQ(global->Guid_Binary(&id), S_OK);
    EXPECT_EQ(id.vt, VT_ARRAY | VT_UI1);
  });
}

TEST_F(Frame_Apartments, objects_records_and_enumerators_come_and_go) {
  in_free_thread([] {
    const auto global = create_global();
    ASSERT_TRUE(global);
    auto arguments = create<_kwCollection>(CLSID_kwCollection);
    Pointer<_kwCollection> none;
    LONG flags = 0;
    VARIANT_BOOL failed = VARIANT_TRUE;
    EXPECT_EQ(global->CommandLineParmsExtr(String(L"/a=1 /b=2"), arguments.variable(), &flags,
                                           none.variable(), &failed),
              S_OK);
    EXPECT_EQ(failed, VARIANT_FALSE);
    LONG count = 0;
    EXPECT_EQ(arguments->Count(&count), S_OK);
    EXPECT_EQ(count, 2);
    Pointer<IUnknown> walk;
    EXPECT_EQ(arguments->NewEnum(walk.receive()), S_OK);
    const auto items = Pointer<IEnumVARIANT>::from(walk.get());
    ASSERT_TRUE(items);
    std::array<Value, 3> taken;
    ULONG fetched = 0;
    EXPECT_EQ(items->Next(3, taken.data(), &fetched), S_FALSE);
    EXPECT_EQ(fetched, 2U);
    ASSERT_EQ(taken[1].vt, VT_DISPATCH);
    const auto argument = Pointer<_QvCmdArg>::from(taken[1].pdispVal);
    ASSERT_TRUE(argument);
    String name;
    EXPECT_EQ(argument->get_Name(&name), S_OK);
    EXPECT_EQ(name, L"B");

    const auto filter = create<_QvtBloomFilter>(CLSID_QvtBloomFilter);
    LONG bits = 100;
    EXPECT_EQ(filter->Init(&bits, &failed), S_OK);
    BFILTER record{};
    EXPECT_EQ(filter->get_Struct(&record), S_OK);
    EXPECT_EQ(record.Bits, 100);
    EXPECT_EQ(record.Words, 4);
  });
}

TEST_F(Frame_Apartments, missing_arguments_stay_missing_and_failures_keep_their_number) {
  in_free_thread([] {
    const auto global = create_global();
    ASSERT_TRUE(global);
    Value number(20007);
    Value missing = Value::missing();
    Value source(L"here");
    VARIANT_BOOL odbc = VARIANT_FALSE;
    EXPECT_EQ(global->Error_Set(&number, &source, &missing, &missing, &missing, &missing, &odbc),
              S_OK);
    Value description(L"old");
    EXPECT_EQ(global->Get_Error(&missing, &source, &description, &missing, &missing, &missing),
              S_OK);
    EXPECT_EQ(source.text(), L"here");
    EXPECT_EQ(description.text(), L"");
    EXPECT_EQ(missing.vt, VT_ERROR);
    LONG held = 0;
    EXPECT_EQ(global->Error_Number(&held), S_OK);
    EXPECT_EQ(held, 20007);
    EXPECT_EQ(global->Raise_Error(), error_result(20007));
    EXPECT_EQ(global->Reset_Error(), S_OK);
    String text(L"abc");
    LONG offset = 3;
    LONG characters = -1;
    String right;
    EXPECT_EQ(global->Buffer_Right(&text, &offset, &characters, &right), error_result(5));
  });
}

TEST_F(Frame_Apartments, late_bound_calls_write_back_too) {
  in_free_thread([] {
    const auto global = create<IDispatch>(CLSID_KwRtLib);
    ASSERT_TRUE(global);
    wchar_t name[] = L"Buffer_Put";
    LPOLESTR names[] = {name};
    DISPID id = 0;
    ASSERT_EQ(global->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id), S_OK);
    Value buffer(L"");
    Value offset(1);
    VARIANT arguments[3]{};  // from the last to the first
    arguments[0] = Value(static_cast<SHORT>(7));
    arguments[1].vt = VT_BYREF | VT_VARIANT;
    arguments[1].pvarVal = &offset;
    arguments[2].vt = VT_BYREF | VT_VARIANT;
    arguments[2].pvarVal = &buffer;
    DISPPARAMS parameters{arguments, nullptr, 3, 0};
    Value failed;
    EXPECT_EQ(global->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters,
                             &failed, nullptr, nullptr),
              S_OK);
    EXPECT_EQ(failed.vt, VT_BOOL);
    EXPECT_EQ(failed.boolVal, VARIANT_FALSE);
    EXPECT_EQ(offset.vt, VT_I4);
    EXPECT_EQ(offset.lVal, 3);
    ASSERT_EQ(buffer.text().size(), 16384U);
    EXPECT_EQ(buffer.text()[0], L'\7');
  });
}

// The ids of earlier releases are registered, so their calls are carried as well.
TEST_F(Frame_Apartments, ids_of_earlier_releases_are_carried) {
  in_free_thread([] {
    const auto global = create_global();
    ASSERT_TRUE(global);
    for (const wchar_t* text :
         {L"{248639F5-F952-4A27-B666-461527677B9A}", L"{AC2CB262-1271-43C9-8221-7B636853E518}"}) {
      IID id;
      ASSERT_EQ(IIDFromString(text, &id), S_OK);
      Pointer<IUnknown> earlier;
      EXPECT_EQ(global->QueryInterface(id, reinterpret_cast<void**>(earlier.receive())), S_OK)
          << std::wstring_view(text).size();
    }
  });
}

}  // namespace
}  // namespace qv::tests
