// Collections as the library's own code uses them: its own, a client's, and Nothing.
#include <gtest/gtest.h>

#include "automation/foreign_error.h"
#include "collections/keyed_collection.h"

namespace qv::collections {
namespace {

// A client's own implementation of the interface, which passes on to one of ours. It stands on the
// stack.
class ForeignCollection final : public _kwCollection, public ISupportErrorInfo {
 public:
  // Answers every call with this, where it is a failure.
  HRESULT failure = S_OK;
  bool supports_error_info = false;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    *object = nullptr;
    if (IsEqualIID(id, IID_ISupportErrorInfo) && supports_error_info) {
      *object = static_cast<ISupportErrorInfo*>(this);
    } else if (IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IDispatch) ||
               IsEqualIID(id, __uuidof(_kwCollection))) {
      *object = static_cast<_kwCollection*>(this);
    }
    return *object != nullptr ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID id) override {
    return IsEqualIID(id, __uuidof(_kwCollection)) ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                   UINT*) override {
    return E_NOTIMPL;
  }

  HRESULT STDMETHODCALLTYPE Add(VARIANT* item, VARIANT* key, VARIANT* before,
                                VARIANT* after) override {
    return FAILED(failure) ? failure : inner_->Add(item, key, before, after);
  }
  HRESULT STDMETHODCALLTYPE NewEnum(IUnknown** result) override { return inner_->NewEnum(result); }
  HRESULT STDMETHODCALLTYPE Remove(VARIANT* index) override {
    return FAILED(failure) ? failure : inner_->Remove(index);
  }
  HRESULT STDMETHODCALLTYPE Count(LONG* result) override {
    return FAILED(failure) ? failure : inner_->Count(result);
  }
  HRESULT STDMETHODCALLTYPE get_Item(VARIANT* index, VARIANT* result) override {
    return FAILED(failure) ? failure : inner_->get_Item(index, result);
  }
  HRESULT STDMETHODCALLTYPE ItemAssign(VARIANT* index, VARIANT* item,
                                       VARIANT_BOOL* result) override {
    return FAILED(failure) ? failure : inner_->ItemAssign(index, item, result);
  }
  HRESULT STDMETHODCALLTYPE ItemExist(VARIANT* index, VARIANT_BOOL* result) override {
    return FAILED(failure) ? failure : inner_->ItemExist(index, result);
  }
  HRESULT STDMETHODCALLTYPE Clear() override { return FAILED(failure) ? failure : inner_->Clear(); }
  HRESULT STDMETHODCALLTYPE get_Key(VARIANT* index, BSTR* result) override {
    return FAILED(failure) ? failure : inner_->get_Key(index, result);
  }

 private:
  const Object<_kwCollection> inner_ = make_collection();
};

// The run-time error that a call ends with.
template <class Call>
RunTimeError error_of(Call&& call) {
  try {
    call();
  } catch (const RunTimeError& error) {
    return error;
  }
  return {};
}

template <class Call>
Long number_of(Call&& call) {
  return error_of(call).number;
}

void use_all(const Object<_kwCollection>& list) {
  add(list, Long{1});
  add(list, L"two", L"b");
  EXPECT_EQ(count(list), 2);
  EXPECT_EQ(item(list, Long{1}).to_long(), 1);
  EXPECT_EQ(item(list, L"B").to_text(), L"two");
  EXPECT_TRUE(exists(list, L"B"));
  EXPECT_FALSE(exists(list, L"c"));
  EXPECT_EQ(number_of([&] { add(list, Long{1}, L"B"); }), 457);
  EXPECT_EQ(number_of([&] { item(list, L"c"); }), 5);
  EXPECT_EQ(count(list), 2);
  clear(list);
  EXPECT_EQ(count(list), 0);
}

TEST(CollectionUse, works_on_collections_of_our_own) { use_all(make_collection()); }

TEST(CollectionUse, works_on_any_object_of_the_interface) {
  ForeignCollection foreign;
  use_all(Object<_kwCollection>(&foreign));
}

template <class Check>
void expect_of_every_call(const Object<_kwCollection>& list, Check&& check) {
  check([&] { add(list, Long{1}); });
  check([&] { add(list, Long{1}, L"k"); });
  check([&] { count(list); });
  check([&] { item(list, Long{1}); });
  check([&] { exists(list, Long{1}); });
  check([&] { clear(list); });
}

TEST(CollectionUse, Nothing_is_run_time_error_91) {
  expect_of_every_call({}, [](auto&& call) { EXPECT_EQ(number_of(call), 91); });
}

TEST(CollectionUse, failures_of_a_foreign_collection_are_raised) {
  ForeignCollection foreign;
  foreign.failure = to_hresult(70);
  expect_of_every_call(Object<_kwCollection>(&foreign),
                       [](auto&& call) { EXPECT_EQ(number_of(call), 70); });
}

void leave_error_info(const wchar_t* source, const wchar_t* description,
                      const GUID& about = IID_IDispatch) {
  Object<ICreateErrorInfo> info;
  CreateErrorInfo(info.receive());
  info->SetGUID(about);
  info->SetSource(const_cast<wchar_t*>(source));
  info->SetDescription(const_cast<wchar_t*>(description));
  info->SetHelpFile(const_cast<wchar_t*>(L"theirs.hlp"));
  info->SetHelpContext(12);
  SetErrorInfo(0, Object<IErrorInfo>::from(info.get()).get());
}

TEST(ForeignErrors, keep_what_the_object_says_of_them) {
  ForeignCollection foreign;
  foreign.failure = to_hresult(1000);
  foreign.supports_error_info = true;
  leave_error_info(L"Theirs", L"their text");
  const auto error = error_of([&] { count(Object<_kwCollection>(&foreign)); });
  EXPECT_EQ(error.number, 1000);
  EXPECT_EQ(error.source, L"Theirs");
  EXPECT_EQ(error.description, L"their text");
  EXPECT_EQ(error.help_file, L"theirs.hlp");
  EXPECT_EQ(error.help_context, 12);
  Object<IErrorInfo> left;
  EXPECT_EQ(GetErrorInfo(0, left.receive()), S_FALSE) << "it is taken";
}

TEST(ForeignErrors, keep_what_is_said_about_the_interface) {
  ForeignCollection foreign;
  foreign.failure = to_hresult(1000);
  leave_error_info(L"Theirs", L"their text", __uuidof(_kwCollection));
  const auto error = error_of([&] { count(Object<_kwCollection>(&foreign)); });
  EXPECT_EQ(error.number, 1000);
  EXPECT_EQ(error.description, L"their text");
}

TEST(ForeignErrors, of_an_object_without_descriptions_do_not_take_an_earlier_one) {
  ForeignCollection foreign;
  foreign.failure = E_INVALIDARG;
  leave_error_info(L"Earlier", L"earlier text");
  const auto error = error_of([&] { count(Object<_kwCollection>(&foreign)); });
  EXPECT_EQ(error.number, 5);
  EXPECT_EQ(error.source, L"");
  EXPECT_EQ(error.description, L"Invalid procedure call or argument");
  SetErrorInfo(0, nullptr);
}

}  // namespace
}  // namespace qv::collections
