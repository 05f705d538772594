// Collections saved to property bags and loaded from them: the platform's, by IPersistPropertyBag,
// and late-bound ones.
#include <map>

#include "server/collection_client.h"

namespace qv::tests {
namespace {

struct ByName {
  bool operator()(const std::wstring& a, const std::wstring& b) const {
    return _wcsicmp(a.c_str(), b.c_str()) < 0;
  }
};
using Properties = std::map<std::wstring, Value, ByName>;

std::wstring shown(const Properties& properties) {
  std::wstring text;
  for (const auto& [name, value] : properties) text += name + L"=" + tests::shown(value) + L";";
  return text;
}

// A client's bag; a property that it lacks is E_INVALIDARG, which is how a bag says so.
class ClientBag final : public IPropertyBag {
 public:
  Properties properties;
  int reads = 0;
  int fails_at_read = 0;
  IErrorLog* log_seen = nullptr;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    const bool known = IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IPropertyBag);
    *object = known ? this : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE Read(LPCOLESTR name, VARIANT* value, IErrorLog* log) override {
    EXPECT_EQ(value->vt, VT_EMPTY) << "no wish for a type";
    log_seen = log;
    if (++reads == fails_at_read) return STG_E_ACCESSDENIED;
    const auto found = properties.find(name);
    return found == properties.end() ? E_INVALIDARG : VariantCopy(value, &found->second);
  }
  HRESULT STDMETHODCALLTYPE Write(LPCOLESTR name, VARIANT* value) override {
    if (is_full) return STG_E_MEDIUMFULL;
    return VariantCopy(&properties[name], value);
  }
  bool is_full = false;
};

Pointer<IPersistPropertyBag> persistence(const Collection& c) {
  return Pointer<IPersistPropertyBag>::from(c.object.get());
}

HRESULT save(const Collection& c, IPropertyBag& bag) {
  return persistence(c)->Save(&bag, TRUE, TRUE);
}
HRESULT load(const Collection& c, IPropertyBag& bag) { return persistence(c)->Load(&bag, nullptr); }

TEST(CollectionPersistence, a_collection_is_one_object_with_its_persistence) {
  Collection c;
  const auto persist = persistence(c);
  ASSERT_TRUE(persist);
  CLSID id{};
  EXPECT_EQ(persist->GetClassID(&id), S_OK);
  EXPECT_TRUE(IsEqualCLSID(id, CLSID_kwCollection));
  EXPECT_EQ(persist->GetClassID(nullptr), E_POINTER);
  EXPECT_EQ(persist->InitNew(), S_OK);
  EXPECT_EQ(Pointer<IUnknown>::from(persist.get()).get(),
            Pointer<IUnknown>::from(c.object.get()).get());
  EXPECT_EQ(Pointer<_kwCollection>::from(persist.get()).get(), c.object.get());
  EXPECT_TRUE(Pointer<IPersist>::from(c.object.get()));
  EXPECT_FALSE(Pointer<IPersistStream>::from(c.object.get()));
  EXPECT_FALSE(Pointer<IPersistPropertyBag>::from(Dictionary().object.get()));
}

TEST(CollectionPersistence, keeps_the_collection_alive) {
  CountedObject object;
  {
    Pointer<IPersistPropertyBag> persist;
    {
      Collection c;
      EXPECT_EQ(c.add(object.as_value()), S_OK);
      persist = persistence(c);
    }
    EXPECT_EQ(object.references, 2U);
  }
  EXPECT_EQ(object.references, 1U);
}

TEST(CollectionPersistence, items_and_keys_are_written_under_their_positions) {
  Collection c;
  c.fill({L"b", L"A"});
  ClientBag bag;
  EXPECT_EQ(save(c, bag), S_OK);
  EXPECT_EQ(shown(bag.properties), L"Item1=item b;Item2=item A;Items=2;Key1=b;Key2=A;");
  EXPECT_EQ(bag.properties[L"Items"].vt, VT_I4);
  EXPECT_EQ(bag.properties[L"Key1"].vt, VT_BSTR);
}

TEST(CollectionPersistence, no_keys_are_written_where_there_are_none) {
  Collection c;
  EXPECT_EQ(c.add(5), S_OK);
  EXPECT_EQ(c.add(Value()), S_OK);
  ClientBag bag;
  EXPECT_EQ(save(c, bag), S_OK);
  EXPECT_EQ(shown(bag.properties), L"Item1=5;Item2=;Items=2;");
}

TEST(CollectionPersistence, an_empty_collection_writes_nothing_and_loads_as_empty) {
  Collection c;
  ClientBag bag;
  EXPECT_EQ(save(c, bag), S_OK);
  EXPECT_EQ(bag.properties.size(), 0U);
  c.fill({L"gone"});
  EXPECT_EQ(load(c, bag), S_OK);
  EXPECT_EQ(c.count(), 0);
}

TEST(CollectionPersistence, what_is_loaded_is_what_was_saved) {
  Collection c;
  CountedObject object;
  c.fill({L"b", L"A", L"c"});
  EXPECT_EQ(c.add(object.as_value(), L"object", 2), S_OK);
  EXPECT_EQ(c.add(1.5, L"number"), S_OK);
  ClientBag bag;
  EXPECT_EQ(save(c, bag), S_OK);
  Collection d;
  EXPECT_EQ(d.add(L"old"), S_OK);
  EXPECT_EQ(load(d, bag), S_OK);
  EXPECT_EQ(d.count(), 5);
  EXPECT_EQ(d.items(), c.items());
  EXPECT_EQ(d.keys(), c.keys());
  EXPECT_EQ(d.item(2).pdispVal, &object);
  EXPECT_EQ(d.item(L"number").vt, VT_R8);
}

TEST(CollectionPersistence, a_collection_without_keys_loads_in_order) {
  Collection c;
  for (const int number : {3, 1, 2}) EXPECT_EQ(c.add(number), S_OK);
  ClientBag bag;
  EXPECT_EQ(save(c, bag), S_OK);
  Collection d;
  EXPECT_EQ(load(d, bag), S_OK);
  EXPECT_EQ(d.items(), (Texts{L"3", L"1", L"2"}));
  EXPECT_EQ(d.keys(), Texts{});
}

// The known limit: keys go by their own positions.
TEST(CollectionPersistence, saving_fails_past_the_keys_where_only_some_items_have_one) {
  Collection c;
  EXPECT_EQ(c.add(L"plain"), S_OK);
  EXPECT_EQ(c.add(L"keyed", L"k"), S_OK);
  ClientBag bag;
  EXPECT_EQ(save(c, bag), error_result(9));
  EXPECT_EQ(error_description(), L"Subscript out of range");
  EXPECT_EQ(shown(bag.properties), L"Item1=plain;Items=2;Key1=k;") << "the key beside a wrong item";
}

TEST(CollectionPersistence, an_empty_key_does_not_come_back) {
  Collection c;
  EXPECT_EQ(c.add(1, L""), S_OK);
  ClientBag bag;
  EXPECT_EQ(save(c, bag), S_OK);
  EXPECT_EQ(shown(bag.properties), L"Item1=1;Items=1;Key1=;");
  EXPECT_EQ(load(c, bag), S_OK);
  EXPECT_EQ(c.keys(), Texts{});
  EXPECT_EQ(c.items(), Texts{L"1"});
}

TEST(CollectionPersistence, properties_are_converted_as_they_are_read) {
  Collection c;
  ClientBag bag;
  bag.properties[L"items"] = L"2";
  bag.properties[L"key1"] = 7;
  bag.properties[L"item1"] = L"a";
  bag.properties[L"item2"] = L"b";
  EXPECT_EQ(load(c, bag), S_OK);
  EXPECT_EQ(c.items(), (Texts{L"a", L"b"}));
  EXPECT_EQ(c.keys(), Texts{L"7"});
}

TEST(CollectionPersistence, loading_stops_at_what_is_wrong_in_the_bag) {
  Collection c;
  ClientBag bag;
  bag.properties[L"Items"] = 2147483647;
  bag.properties[L"Item1"] = L"a";
  EXPECT_EQ(load(c, bag), error_result(5)) << "an item that is not there";
  EXPECT_EQ(c.items(), Texts{L"a"});
  bag.properties[L"Items"] = L"many";
  EXPECT_EQ(load(c, bag), error_result(13));
  EXPECT_EQ(c.count(), 0);
  bag.properties[L"Items"] = -1;
  EXPECT_EQ(load(c, bag), S_OK);
  EXPECT_EQ(c.count(), 0);
  bag.properties[L"Items"] = 2;
  bag.properties[L"Key1"] = L"k";
  bag.properties[L"Key2"] = L"K";
  bag.properties[L"Item2"] = L"b";
  EXPECT_EQ(load(c, bag), error_result(457));
  EXPECT_EQ(c.items(), Texts{L"a"});
}

TEST(CollectionPersistence, failures_of_the_bag_are_raised) {
  Collection c;
  c.fill({L"a"});
  ClientBag bag;
  bag.is_full = true;
  EXPECT_EQ(save(c, bag), error_result(61));
  bag.is_full = false;
  EXPECT_EQ(save(c, bag), S_OK);
  for (const int read : {1, 2, 3}) {
    bag.reads = 0;
    bag.fails_at_read = read;
    EXPECT_EQ(load(c, bag), error_result(70)) << read;
    EXPECT_EQ(c.count(), 0);
  }
  EXPECT_EQ(persistence(c)->Load(nullptr, nullptr), E_POINTER);
  EXPECT_EQ(persistence(c)->Save(nullptr, TRUE, TRUE), E_POINTER);
}

TEST(CollectionPersistence, the_error_log_goes_to_the_bag) {
  class Log final : public IErrorLog {
   public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE AddError(LPCOLESTR, EXCEPINFO*) override { return S_OK; }
  } log;
  Collection c;
  ClientBag bag;
  EXPECT_EQ(persistence(c)->Load(&bag, &log), S_OK);
  EXPECT_EQ(bag.log_seen, &log);
}

// A bag with the language's members, late bound.
class LateBag final : public IDispatch {
 public:
  Properties properties;
  bool has_platform_interface = false;
  ClientBag platform;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    *object = nullptr;
    if (IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IDispatch)) *object = this;
    if (IsEqualIID(id, IID_IPropertyBag) && has_platform_interface) *object = &platform;
    return *object != nullptr ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID,
                                          DISPID* ids) override {
    *ids = _wcsicmp(names[0], L"WriteProperty") == 0  ? 1
           : _wcsicmp(names[0], L"ReadProperty") == 0 ? 2
                                                      : DISPID_UNKNOWN;
    return *ids == DISPID_UNKNOWN ? DISP_E_UNKNOWNNAME : S_OK;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO* exception, UINT*) override {
    const auto argument = [&](UINT number) -> VARIANT& {
      return parameters->rgvarg[parameters->cArgs - number];
    };
    EXPECT_EQ(argument(1).vt, VT_BSTR);
    const std::wstring name = argument(1).bstrVal;
    VARIANT& default_value = argument(id == 1 ? 3 : 2);
    const bool has_default = default_value.vt != VT_ERROR;
    if (id == 1) {
      EXPECT_EQ(parameters->cArgs, 3U);
      EXPECT_EQ(has_default, name == L"Items");
      if (has_default && tests::shown(argument(2)) == tests::shown(default_value)) return S_OK;
      return VariantCopy(&properties[name], &argument(2));
    }
    EXPECT_EQ(parameters->cArgs, 2U);
    const auto found = properties.find(name);
    if (found != properties.end()) return VariantCopy(result, &found->second);
    if (has_default) return VariantCopy(result, &default_value);
    exception->scode = error_result(327);
    exception->bstrSource = SysAllocString(L"LateBag");
    exception->bstrDescription = SysAllocString(L"Data value named '' not found");
    return DISP_E_EXCEPTION;
  }
};

HRESULT call(const Collection& c, const wchar_t* name, IDispatch* bag, EXCEPINFO* exception = {}) {
  auto* text = const_cast<wchar_t*>(name);
  DISPID id = 0;
  const HRESULT found = c.object->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_USER_DEFAULT, &id);
  if (FAILED(found)) return found;
  VARIANT argument;
  argument.vt = VT_DISPATCH;
  argument.pdispVal = bag;
  DISPPARAMS parameters{&argument, nullptr, 1, 0};
  return c.object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, nullptr,
                          exception, nullptr);
}

TEST(CollectionPersistence, a_late_bound_bag_takes_and_gives_the_same_properties) {
  Collection c;
  c.fill({L"b", L"A"});
  LateBag bag;
  EXPECT_EQ(call(c, L"WriteProperties", &bag), S_OK);
  EXPECT_EQ(shown(bag.properties), L"Item1=item b;Item2=item A;Items=2;Key1=b;Key2=A;");
  Collection d;
  EXPECT_EQ(call(d, L"readproperties", &bag), S_OK);
  EXPECT_EQ(d.items(), c.items());
  EXPECT_EQ(d.keys(), c.keys());
}

TEST(CollectionPersistence, an_empty_collection_leaves_a_late_bound_bag_empty) {
  Collection c;
  LateBag bag;
  EXPECT_EQ(call(c, L"WriteProperties", &bag), S_OK);
  EXPECT_EQ(bag.properties.size(), 0U);
  EXPECT_EQ(call(c, L"ReadProperties", &bag), S_OK);
  EXPECT_EQ(c.count(), 0);
}

TEST(CollectionPersistence, a_late_bound_bag_that_is_one_of_the_platform_is_used_as_such) {
  Collection c;
  c.fill({L"a"});
  LateBag bag;
  bag.has_platform_interface = true;
  EXPECT_EQ(call(c, L"WriteProperties", &bag), S_OK);
  EXPECT_EQ(shown(bag.platform.properties), L"Item1=item a;Items=1;Key1=a;");
  EXPECT_EQ(call(c, L"ReadProperties", &bag), S_OK);
  EXPECT_EQ(c.count(), 1);
}

TEST(CollectionPersistence, errors_of_a_late_bound_bag_keep_number_source_and_text) {
  Collection c;
  LateBag bag;
  bag.properties[L"Items"] = 1;
  EXCEPINFO exception{};
  EXPECT_EQ(call(c, L"ReadProperties", &bag, &exception), DISP_E_EXCEPTION);
  EXPECT_EQ(exception.scode, error_result(327));
  EXPECT_STREQ(exception.bstrSource, L"LateBag");
  EXPECT_STREQ(exception.bstrDescription, L"Data value named '' not found");
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrDescription);
  SysFreeString(exception.bstrHelpFile);
}

TEST(CollectionPersistence, Nothing_and_objects_that_are_no_bags_are_refused) {
  Collection c;
  c.fill({L"a"});
  EXCEPINFO exception{};
  EXPECT_EQ(call(c, L"WriteProperties", nullptr, &exception), DISP_E_EXCEPTION);
  EXPECT_EQ(exception.scode, error_result(91));
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrDescription);
  SysFreeString(exception.bstrHelpFile);
  exception = {};
  CountedObject other;
  EXPECT_EQ(call(c, L"WriteProperties", &other, &exception), DISP_E_EXCEPTION);
  EXPECT_EQ(exception.scode, error_result(438));
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrDescription);
  SysFreeString(exception.bstrHelpFile);
  EXPECT_EQ(other.references, 1U);
}

TEST(CollectionPersistence, other_names_stay_unknown) {
  Collection c;
  EXPECT_EQ(call(c, L"InitProperties", nullptr), DISP_E_UNKNOWNNAME);
  Dictionary d;
  auto* name = const_cast<wchar_t*>(L"WriteProperties");
  DISPID id = 0;
  EXPECT_EQ(d.object->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id),
            DISP_E_UNKNOWNNAME);
}

}  // namespace
}  // namespace qv::tests
