// kwDictionary and its entries through the typed interface; an entry has late-bound members only.
#include "server/collection_client.h"

namespace qv::tests {
namespace {

// A late-bound call of an entry's property.
HRESULT invoke(const Value& entry, const wchar_t* name, WORD kind, Value* argument, Value* result) {
  EXPECT_EQ(entry.vt, VT_DISPATCH);
  auto* text = const_cast<wchar_t*>(name);
  DISPID id = 0;
  const HRESULT found = entry.pdispVal->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_USER_DEFAULT, &id);
  if (FAILED(found)) return found;
  DISPID put = DISPID_PROPERTYPUT;
  const bool has_argument = argument != nullptr;
  DISPPARAMS parameters{argument, has_argument ? &put : nullptr, has_argument ? 1U : 0U,
                        has_argument ? 1U : 0U};
  return entry.pdispVal->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, kind, &parameters, result,
                                nullptr, nullptr);
}

Value get(const Value& entry, const wchar_t* name) {
  Value result;
  EXPECT_EQ(invoke(entry, name, DISPATCH_PROPERTYGET, nullptr, &result), S_OK);
  return result;
}

HRESULT put(const Value& entry, const wchar_t* name, Value value,
            WORD kind = DISPATCH_PROPERTYPUT) {
  return invoke(entry, name, kind, &value, nullptr);
}

const Value kNone = Value::missing();

TEST(Dictionaries, a_new_dictionary_is_empty) {
  Dictionary d;
  EXPECT_EQ(d.count(), 0);
  EXPECT_EQ(d.item_error(1), error_result(9));
  EXPECT_EQ(d.item_error(L"a"), error_result(5));
}

TEST(Dictionaries, an_entry_has_its_item_and_its_value) {
  Dictionary d;
  EXPECT_EQ(d.add(L"item", L"Key", kNone, kNone, 7), S_OK);
  EXPECT_EQ(d.count(), 1);
  const Value entry = d.item(L"kEY");
  EXPECT_EQ(get(entry, L"Item").text(), L"item");
  EXPECT_EQ(get(entry, L"Value").vt, VT_I4);
  EXPECT_EQ(get(entry, L"VALUE").lVal, 7);
  EXPECT_EQ(d.item(1).pdispVal, entry.pdispVal) << "the same entry every time";
}

TEST(Dictionaries, a_value_left_out_is_a_missing_argument) {
  Dictionary d;
  EXPECT_EQ(d.add(L"item"), S_OK);
  const Value value = get(d.item(1), L"Value");
  EXPECT_EQ(value.vt, VT_ERROR);
  EXPECT_EQ(value.scode, DISP_E_PARAMNOTFOUND);
}

TEST(Dictionaries, arguments_left_out_may_be_no_variables_at_all) {
  Dictionary d;
  Value item(L"x");
  EXPECT_EQ(d.object->Add(&item, nullptr, nullptr, nullptr, nullptr), S_OK);
  EXPECT_EQ(get(d.item(1), L"Value").vt, VT_ERROR);
}

TEST(Dictionaries, an_entry_keeps_objects_by_reference_and_the_rest_as_copies) {
  Dictionary d;
  CountedObject object;
  EXPECT_EQ(d.add(object.as_value(), L"o", kNone, kNone, object.as_value()), S_OK);
  EXPECT_EQ(object.references, 3U);
  EXPECT_EQ(get(d.item(L"o"), L"Item").pdispVal, &object);
  EXPECT_EQ(get(d.item(L"o"), L"Value").pdispVal, &object);
  LONG variable = 5;
  Value reference;
  reference.vt = VT_BYREF | VT_I4;
  reference.plVal = &variable;
  EXPECT_EQ(d.add(reference, L"n", kNone, kNone, reference), S_OK);
  variable = 6;
  EXPECT_EQ(get(d.item(L"n"), L"Item").lVal, 5);
  EXPECT_EQ(get(d.item(L"n"), L"Value").lVal, 5);
  d.clear();
  EXPECT_EQ(object.references, 1U);
}

TEST(Dictionaries, an_entry_can_be_changed_by_whoever_holds_it) {
  Dictionary d;
  CountedObject object;
  EXPECT_EQ(d.add(L"item", L"k", kNone, kNone, L"value"), S_OK);
  const Value entry = d.item(L"k");
  EXPECT_EQ(put(entry, L"Item", 1), S_OK);
  EXPECT_EQ(put(entry, L"Value", object.as_value(), DISPATCH_PROPERTYPUTREF), S_OK);
  EXPECT_EQ(get(d.item(1), L"Item").lVal, 1);
  EXPECT_EQ(get(d.item(1), L"Value").pdispVal, &object);
  // An object given by an assignment without Set is stored as the object too.
  EXPECT_EQ(put(entry, L"Item", object.as_value()), S_OK);
  EXPECT_EQ(get(d.item(1), L"Item").pdispVal, &object);
  EXPECT_EQ(put(entry, L"Value", L"text"), S_OK);
  EXPECT_EQ(put(entry, L"Item", L"text"), S_OK);
  EXPECT_EQ(object.references, 1U);
  d.clear();
  EXPECT_EQ(get(entry, L"Value").text(), L"text") << "it lives on for who holds it";
}

TEST(Dictionaries, an_entry_has_no_other_members) {
  Dictionary d;
  EXPECT_EQ(d.add(1), S_OK);
  Value result;
  EXPECT_EQ(invoke(d.item(1), L"Key", DISPATCH_PROPERTYGET, nullptr, &result), DISP_E_UNKNOWNNAME);
  DISPPARAMS none{};
  EXPECT_EQ(d.item(1).pdispVal->Invoke(DISPID_VALUE, IID_NULL, LOCALE_USER_DEFAULT,
                                       DISPATCH_PROPERTYGET, &none, &result, nullptr, nullptr),
            DISP_E_MEMBERNOTFOUND);
}

TEST(Dictionaries, Before_and_After_place_an_entry) {
  Dictionary d;
  EXPECT_EQ(d.add(L"m", L"m"), S_OK);
  EXPECT_EQ(d.add(L"a", L"a", 1), S_OK);
  EXPECT_EQ(d.add(L"z", L"z", kNone, L"M"), S_OK);
  EXPECT_EQ(d.add(L"b", kNone, kNone, 1), S_OK);
  std::wstring order;
  for (LONG i = 1; i <= d.count(); ++i) order += get(d.item(i), L"Item").text();
  EXPECT_EQ(order, L"abmz");
}

TEST(Dictionaries, errors_are_those_of_a_collection_and_change_nothing) {
  Dictionary d;
  EXPECT_EQ(d.add(1, L"k"), S_OK);
  EXPECT_EQ(d.add(2, L"K"), error_result(457));
  EXPECT_EQ(d.add(2, 5), error_result(13));
  EXPECT_EQ(d.add(2, L"a", 1, 1), error_result(5));
  EXPECT_EQ(d.add(2, L"a", 2), error_result(9));
  EXPECT_EQ(d.add(2, L"a", kNone, L"absent"), error_result(5));
  EXPECT_EQ(d.remove(2), error_result(9));
  EXPECT_EQ(d.remove(L"absent"), error_result(5));
  EXPECT_EQ(d.item_error(2), error_result(9));
  EXPECT_EQ(d.item_error(L"absent"), error_result(5));
  EXPECT_EQ(d.count(), 1);
}

TEST(Dictionaries, Remove_and_Clear_take_entries_out) {
  Dictionary d;
  for (const wchar_t* key : {L"a", L"b", L"c"}) EXPECT_EQ(d.add(key, key), S_OK);
  EXPECT_EQ(d.remove(L"B"), S_OK);
  EXPECT_EQ(d.remove(1), S_OK);
  EXPECT_EQ(d.count(), 1);
  EXPECT_TRUE(d.exists(L"c"));
  d.clear();
  EXPECT_EQ(d.count(), 0);
  EXPECT_FALSE(d.exists(L"c"));
}

TEST(Dictionaries, ItemExist_never_raises) {
  Dictionary d;
  EXPECT_EQ(d.add(1, L"k"), S_OK);
  Value null;
  null.vt = VT_NULL;
  EXPECT_TRUE(d.exists(L"K"));
  EXPECT_TRUE(d.exists(1));
  EXPECT_FALSE(d.exists(2));
  EXPECT_FALSE(d.exists(0));
  EXPECT_FALSE(d.exists(L"absent"));
  EXPECT_FALSE(d.exists(null));
  EXPECT_EQ(pending_error(create_global()), 0);
}

}  // namespace
}  // namespace qv::tests
