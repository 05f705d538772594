// kwCollection and ItemInCollection through the typed interface.
#include "server/collection_client.h"

namespace qv::tests {
namespace {

constexpr const wchar_t* kKeyTaken =
    L"This key is already associated with an element of this collection";

TEST(Collections, a_new_collection_is_empty) {
  Collection c;
  EXPECT_EQ(c.count(), 0);
  EXPECT_EQ(c.item_error(1), error_result(9));
  EXPECT_EQ(c.item_error(L"a"), error_result(5));
  EXPECT_EQ(c.key_error(1), error_result(9));
  EXPECT_EQ(c.key_error(L"a"), error_result(5));
  EXPECT_EQ(c.remove(1), error_result(9));
  EXPECT_EQ(c.remove(L"a"), error_result(5));
  EXPECT_FALSE(c.exists(1));
}

TEST(Collections, items_are_found_by_position_and_by_key_in_any_case) {
  Collection c;
  c.fill({L"one", L"Two", L"three"});
  EXPECT_EQ(c.count(), 3);
  EXPECT_EQ(c.item(1).text(), L"item one");
  EXPECT_EQ(c.item(L"tWO").text(), L"item Two");
  EXPECT_EQ(c.item(2.5).text(), L"item Two") << "ties round to even";
  EXPECT_EQ(c.item(SHORT{3}).text(), L"item three");
  EXPECT_EQ(c.item(BYTE{3}).text(), L"item three");
}

// A text is a key even where it reads as a number.
TEST(Collections, a_numeral_is_a_key_and_no_position) {
  Collection c;
  c.fill({L"2", L"1"});
  EXPECT_EQ(c.item(L"1").text(), L"item 1");
  EXPECT_EQ(c.item(1).text(), L"item 2");
  EXPECT_EQ(c.item_error(L"3"), error_result(5));
}

TEST(Collections, a_key_that_is_taken_raises_457_and_changes_nothing) {
  Collection c;
  c.fill({L"one"});
  EXPECT_EQ(c.add(2, L"ONE"), error_result(457));
  EXPECT_EQ(error_description(), kKeyTaken);
  EXPECT_EQ(c.count(), 1);
  EXPECT_EQ(c.item(L"one").text(), L"item one");
  EXPECT_EQ(c.keys(), Texts{L"one"});
}

TEST(Collections, an_absent_key_raises_5_and_an_absent_position_9) {
  Collection c;
  c.fill({L"one"});
  for (const LONG position : {2L, 0L, -1L, 2147483647L, -2147483647L - 1}) {
    EXPECT_EQ(c.item_error(position), error_result(9)) << position;
    EXPECT_EQ(c.key_error(position), error_result(9)) << position;
    EXPECT_EQ(c.remove(position), error_result(9)) << position;
  }
  EXPECT_EQ(error_description(), L"Subscript out of range");
  EXPECT_EQ(c.item_error(L"two"), error_result(5));
  EXPECT_EQ(c.key_error(L"two"), error_result(5));
  EXPECT_EQ(c.remove(L"two"), error_result(5));
  EXPECT_EQ(error_description(), L"Invalid procedure call or argument");
  EXPECT_EQ(c.count(), 1);
}

TEST(Collections, what_is_neither_text_nor_number_is_no_index) {
  Collection c;
  c.fill({L"one"});
  Value null;
  null.vt = VT_NULL;
  EXPECT_EQ(c.item_error(null), error_result(13));
  EXPECT_EQ(c.item_error(Value::missing()), error_result(13));
  EXPECT_EQ(c.item_error(Value()), error_result(9)) << "Empty is position 0";
  EXPECT_EQ(c.item_error(true), error_result(9)) << "True is position -1";
  EXPECT_EQ(c.item_error(3e9), error_result(6));
  EXPECT_EQ(c.remove(null), error_result(13));
  EXPECT_FALSE(c.exists(null));
  EXPECT_FALSE(c.exists(3e9));
}

TEST(Collections, a_key_that_is_no_text_raises_13) {
  Collection c;
  Value null;
  null.vt = VT_NULL;
  EXPECT_EQ(c.add(1, 5), error_result(13));
  EXPECT_EQ(c.add(1, null), error_result(13));
  EXPECT_EQ(c.add(1, Value()), error_result(13));
  EXPECT_EQ(c.count(), 0);
}

TEST(Collections, arguments_left_out_may_be_no_variables_at_all) {
  Collection c;
  Value item(L"x");
  EXPECT_EQ(c.object->Add(&item, nullptr, nullptr, nullptr), S_OK);
  EXPECT_EQ(c.items(), Texts{L"x"});
  EXPECT_EQ(c.keys(), Texts{});
}

TEST(Collections, Before_and_After_take_positions_and_keys) {
  Collection c;
  c.fill({L"m"});
  EXPECT_EQ(c.add(L"first", L"a", 1), S_OK);
  EXPECT_EQ(c.add(L"second", L"b", L"M"), S_OK);
  EXPECT_EQ(c.add(L"last", L"z", Value::missing(), L"m"), S_OK);
  EXPECT_EQ(c.add(L"third", L"c", Value::missing(), 2), S_OK);
  EXPECT_EQ(c.items(), (Texts{L"first", L"second", L"third", L"item m", L"last"}));
  EXPECT_EQ(c.keys(), (Texts{L"a", L"b", L"c", L"m", L"z"}));
}

TEST(Collections, a_bad_Before_or_After_changes_nothing) {
  Collection c;
  c.fill({L"m"});
  const Value none = Value::missing();
  EXPECT_EQ(c.add(1, L"a", 2), error_result(9));
  EXPECT_EQ(c.add(1, L"a", 0), error_result(9));
  EXPECT_EQ(c.add(1, L"a", L"absent"), error_result(5));
  EXPECT_EQ(c.add(1, L"a", none, 2), error_result(9));
  EXPECT_EQ(c.add(1, L"a", none, 0), error_result(9));
  EXPECT_EQ(c.add(1, L"a", none, L"absent"), error_result(5));
  EXPECT_EQ(c.add(1, L"a", 1, 1), error_result(5));
  EXPECT_EQ(c.items(), Texts{L"item m"});
  EXPECT_EQ(c.keys(), Texts{L"m"});
}

TEST(Collections, Key_gives_the_text_as_it_was_first_added) {
  Collection c;
  c.fill({L"aBc"});
  EXPECT_EQ(c.key(L"abc"), L"aBc");
  EXPECT_EQ(c.key(L"ABC"), L"aBc");
  EXPECT_EQ(c.key(1), L"aBc");
}

TEST(Collections, Key_1_is_that_of_the_first_item_that_has_one) {
  Collection c;
  EXPECT_EQ(c.add(L"plain"), S_OK);
  EXPECT_EQ(c.add(L"keyed", L"k"), S_OK);
  EXPECT_EQ(c.key(1), L"k");
  EXPECT_EQ(c.key_error(2), error_result(9));
  EXPECT_EQ(c.item(L"k").text(), L"keyed");
}

// The keys have positions of their own, so Before and After can lead elsewhere among them.
TEST(Collections, positions_of_items_and_keys_part_when_only_some_items_have_keys) {
  Collection c;
  EXPECT_EQ(c.add(1, L"a"), S_OK);
  EXPECT_EQ(c.add(2), S_OK);
  EXPECT_EQ(c.add(3, L"c"), S_OK);
  EXPECT_EQ(c.add(4, L"d"), S_OK);
  EXPECT_EQ(c.add(5, L"e", 3), S_OK);
  EXPECT_EQ(c.items(), (Texts{L"1", L"2", L"5", L"3", L"4"}));
  EXPECT_EQ(c.keys(), (Texts{L"a", L"c", L"e", L"d"}));
  // By key the place is the same in both.
  EXPECT_EQ(c.add(6, L"f", L"c"), S_OK);
  EXPECT_EQ(c.items(), (Texts{L"1", L"2", L"5", L"6", L"3", L"4"}));
  EXPECT_EQ(c.keys(), (Texts{L"a", L"f", L"c", L"e", L"d"}));
}

TEST(Collections, an_item_stays_in_when_its_key_finds_no_place_among_the_keys) {
  Collection c;
  EXPECT_EQ(c.add(1), S_OK);
  EXPECT_EQ(c.add(2), S_OK);
  EXPECT_EQ(c.add(3, L"k", Value::missing(), 2), error_result(9));
  EXPECT_EQ(c.items(), (Texts{L"1", L"2", L"3"}));
  EXPECT_EQ(c.keys(), Texts{});
  EXPECT_EQ(shown(c.item(L"k")), L"3");
  EXPECT_EQ(c.key_error(L"k"), error_result(5));
  // The key is taken among the items, though the keys do not have it.
  EXPECT_EQ(c.add(4, L"K"), error_result(457));
  EXPECT_EQ(c.count(), 3);
}

TEST(Collections, Remove_takes_the_item_and_its_key) {
  Collection c;
  c.fill({L"a", L"b", L"c", L"d"});
  EXPECT_EQ(c.remove(1), S_OK);
  EXPECT_EQ(c.keys(), (Texts{L"b", L"c", L"d"}));
  EXPECT_EQ(c.remove(L"C"), S_OK);
  EXPECT_EQ(c.items(), (Texts{L"item b", L"item d"}));
  EXPECT_EQ(c.keys(), (Texts{L"b", L"d"}));
  EXPECT_EQ(c.add(1, L"c"), S_OK) << "the key is free again";
}

TEST(Collections, Remove_of_the_last_key_leaves_no_keys) {
  Collection c;
  c.fill({L"a"});
  EXPECT_EQ(c.remove(L"a"), S_OK);
  EXPECT_EQ(c.count(), 0);
  EXPECT_EQ(c.key_error(1), error_result(9));
  // Items without keys that come later meet no keys.
  EXPECT_EQ(c.add(1), S_OK);
  EXPECT_EQ(c.remove(1), S_OK);
  EXPECT_EQ(c.count(), 0);
}

TEST(Collections, Remove_by_position_from_a_collection_without_keys_touches_the_items_alone) {
  Collection c;
  for (const int number : {1, 2, 3}) EXPECT_EQ(c.add(number), S_OK);
  EXPECT_EQ(c.remove(2), S_OK);
  EXPECT_EQ(c.items(), (Texts{L"1", L"3"}));
}

TEST(Collections, Remove_by_position_can_take_the_key_of_another_item) {
  Collection c;
  EXPECT_EQ(c.add(1), S_OK);
  EXPECT_EQ(c.add(2, L"b"), S_OK);
  EXPECT_EQ(c.add(3, L"c"), S_OK);
  EXPECT_EQ(c.remove(1), S_OK);
  EXPECT_EQ(c.items(), (Texts{L"2", L"3"}));
  EXPECT_EQ(c.keys(), Texts{L"c"});
  EXPECT_EQ(shown(c.item(L"b")), L"2") << "the item still has its key";
  // The keys have no such position any more, but the item has gone.
  EXPECT_EQ(c.remove(2), error_result(9));
  EXPECT_EQ(c.items(), Texts{L"2"});
  EXPECT_EQ(c.keys(), Texts{L"c"});
  // A key that the keys do not have: the same.
  EXPECT_EQ(c.remove(L"b"), error_result(5));
  EXPECT_EQ(c.count(), 0);
  EXPECT_EQ(c.keys(), Texts{L"c"});
}

TEST(Collections, a_key_left_among_the_keys_alone_lets_the_item_in_and_raises_457) {
  Collection c;
  EXPECT_EQ(c.add(1), S_OK);
  EXPECT_EQ(c.add(2, L"b"), S_OK);
  EXPECT_EQ(c.add(3, L"c"), S_OK);
  EXPECT_EQ(c.remove(1), S_OK);  // takes the key "b"
  EXPECT_EQ(c.remove(L"c"), S_OK);
  EXPECT_EQ(c.add(4, L"d"), S_OK);
  EXPECT_EQ(c.remove(1), S_OK);  // takes the key "d" with the item under "b"
  EXPECT_EQ(c.items(), Texts{L"4"});
  EXPECT_EQ(c.keys(), Texts{});
  c.clear();
  EXPECT_EQ(c.add(1, L"a"), S_OK);
  EXPECT_EQ(c.add(2), S_OK);
  EXPECT_EQ(c.add(3, L"c"), S_OK);
  EXPECT_EQ(c.remove(3), error_result(9));  // the item under "c" goes, the key stays
  EXPECT_EQ(c.add(4, L"c"), error_result(457));
  EXPECT_EQ(c.items(), (Texts{L"1", L"2", L"4"}));
  EXPECT_EQ(shown(c.item(L"c")), L"4");
}

TEST(Collections, Clear_empties_and_frees_the_keys) {
  Collection c;
  EXPECT_EQ(c.add(1), S_OK);
  EXPECT_EQ(c.add(2, L"b"), S_OK);
  c.clear();
  EXPECT_EQ(c.count(), 0);
  EXPECT_EQ(c.key_error(1), error_result(9));
  c.clear();
  // Aligned again: nothing of the mixed past is left.
  c.fill({L"b", L"a"});
  EXPECT_EQ(c.remove(1), S_OK);
  EXPECT_EQ(c.keys(), Texts{L"a"});
}

TEST(Collections, ItemAssign_fetches_and_tells_by_True_that_there_is_no_such_item) {
  Collection c;
  c.fill({L"a"});
  Value item(L"untouched");
  EXPECT_TRUE(c.assign(L"absent", item));
  EXPECT_TRUE(c.assign(2, item));
  EXPECT_TRUE(c.assign(3e9, item));
  EXPECT_EQ(item.text(), L"untouched");
  EXPECT_FALSE(c.assign(L"A", item));
  EXPECT_EQ(item.text(), L"item a");
}

TEST(Collections, ItemAssign_stores_a_reference_to_an_object_and_a_copy_of_a_text) {
  Collection c;
  CountedObject object;
  EXPECT_EQ(c.add(object.as_value(), L"object"), S_OK);
  EXPECT_EQ(c.add(L"text", L"text"), S_OK);
  EXPECT_EQ(object.references, 2U);
  {
    Value item;
    EXPECT_FALSE(c.assign(L"object", item));
    ASSERT_EQ(item.vt, VT_DISPATCH);
    EXPECT_EQ(item.pdispVal, &object);
    EXPECT_EQ(object.references, 3U);
    EXPECT_FALSE(c.assign(L"text", item));
    EXPECT_EQ(object.references, 2U) << "what the variable held is let go";
    ASSERT_EQ(item.vt, VT_BSTR);
    item.bstrVal[0] = L'T';
  }
  EXPECT_EQ(c.item(L"text").text(), L"text");
  EXPECT_EQ(object.references, 2U);
  c.clear();
  EXPECT_EQ(object.references, 1U);
}

TEST(Collections, ItemAssign_converts_into_a_typed_variable_and_fails_where_it_cannot) {
  Collection c;
  EXPECT_EQ(c.add(L"12", L"number"), S_OK);
  EXPECT_EQ(c.add(L"twelve", L"text"), S_OK);
  LONG variable = 5;
  Value item;
  item.vt = VT_BYREF | VT_I4;
  item.plVal = &variable;
  EXPECT_TRUE(c.assign(L"text", item));
  EXPECT_EQ(variable, 5);
  EXPECT_EQ(pending_error(create_global()), 13);
  EXPECT_FALSE(c.assign(L"number", item));
  EXPECT_EQ(variable, 12);
}

TEST(Collections, asking_leaves_the_error_state_alone) {
  const auto global = create_global();
  global->Reset_Error();
  Collection c;
  Value item;
  EXPECT_TRUE(c.assign(L"absent", item));
  EXPECT_FALSE(c.exists(L"absent"));
  EXPECT_EQ(c.item_error(L"absent"), error_result(5));
  VARIANT_BOOL failed = VARIANT_TRUE;
  EXPECT_EQ(global->Check_Error(&failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
}

TEST(Collections, ItemAssign_leaves_the_run_time_error_pending_and_ItemExist_none) {
  const auto global = create_global();
  Collection c;
  c.fill({L"a"});
  Value item;
  EXPECT_TRUE(c.assign(L"absent", item));
  EXPECT_EQ(pending_error(global), 5);
  EXPECT_TRUE(c.assign(7, item));
  EXPECT_EQ(pending_error(global), 9);
  EXPECT_FALSE(c.assign(1, item));
  EXPECT_EQ(pending_error(global), 0) << "what was pending before is cleared";
  EXPECT_TRUE(c.assign(7, item));
  EXPECT_FALSE(c.exists(7));
  EXPECT_EQ(pending_error(global), 0);
}

TEST(Collections, values_of_every_kind_are_kept) {
  Collection c;
  Value null;
  null.vt = VT_NULL;
  Value nothing;
  nothing.vt = VT_DISPATCH;
  nothing.pdispVal = nullptr;
  Value currency;
  currency.vt = VT_CY;
  currency.cyVal.int64 = 12345;
  Value array;
  array.vt = VT_ARRAY | VT_I4;
  array.parray = SafeArrayCreateVector(VT_I4, 1, 3);
  for (const Value& value : {Value(), null, nothing, currency, array, Value(true), Value(BYTE{7}),
                             Value(1.5), Value::missing()}) {
    EXPECT_EQ(c.add(value), S_OK);
    EXPECT_EQ(c.item(c.count()).vt, value.vt);
  }
  EXPECT_EQ(c.item(4).cyVal.int64, 12345);
  EXPECT_NE(c.item(5).parray, array.parray) << "an array is copied";
}

TEST(Collections, an_item_by_reference_is_taken_by_value) {
  Collection c;
  LONG variable = 5;
  Value reference;
  reference.vt = VT_BYREF | VT_I4;
  reference.plVal = &variable;
  EXPECT_EQ(c.add(reference), S_OK);
  variable = 6;
  EXPECT_EQ(c.item(1).vt, VT_I4);
  EXPECT_EQ(shown(c.item(1)), L"5");
  // An index and a key by reference as well.
  String key(L"k");
  Value key_reference;
  key_reference.vt = VT_BYREF | VT_BSTR;
  key_reference.pbstrVal = &key;
  EXPECT_EQ(c.add(1, key_reference), S_OK);
  EXPECT_TRUE(c.exists(key_reference));
  EXPECT_EQ(c.key(key_reference), L"k");
}

TEST(Collections, texts_of_any_content_are_keys) {
  Collection c;
  const std::wstring zero(L"a\0b", 3);
  EXPECT_EQ(c.add(1, std::wstring_view(zero)), S_OK);
  EXPECT_EQ(c.add(2, std::wstring_view(L"a\0c", 3)), S_OK);
  EXPECT_EQ(c.add(3, L""), S_OK);
  EXPECT_EQ(c.add(4, L""), error_result(457));
  EXPECT_EQ(c.add(5, L"perch\u00E9"), S_OK);
  EXPECT_EQ(c.add(6, L"\u0416"), S_OK);
  EXPECT_EQ(c.add(7, std::wstring(1000, L'k').c_str()), S_OK);
  Value null_text;  // the language's other empty text
  null_text.vt = VT_BSTR;
  null_text.bstrVal = nullptr;
  EXPECT_EQ(c.key(1), zero);
  EXPECT_EQ(shown(c.item(null_text)), L"3");
  EXPECT_EQ(shown(c.item(L"PERCH\u00C9")), L"5");
  EXPECT_EQ(c.item_error(L"perche"), error_result(5));
  EXPECT_EQ(shown(c.item(L"\u0436")), L"6");
  EXPECT_EQ(shown(c.item(std::wstring(1000, L'K').c_str())), L"7");
}

TEST(Collections, an_object_is_let_go_with_its_item) {
  CountedObject object;
  {
    Collection c;
    EXPECT_EQ(c.add(object.as_value(), L"a"), S_OK);
    EXPECT_EQ(c.add(object.as_value()), S_OK);
    EXPECT_EQ(object.references, 3U);
    EXPECT_EQ(c.remove(L"a"), S_OK);
    EXPECT_EQ(object.references, 2U);
    EXPECT_EQ(c.add(object.as_value(), L"b", L"absent"), error_result(5));
    EXPECT_EQ(object.references, 2U);
  }
  EXPECT_EQ(object.references, 1U);
}

// The end of an item may use the collection that it was in.
TEST(Collections, what_the_end_of_an_item_sets_off_finds_the_collection_whole) {
  class Ending final : public IDispatch {
   public:
    explicit Ending(Collection& owner) : owner_(owner) {}
    LONG count_seen = -1;
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** object) override {
      *object = nullptr;
      return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override {
      if (is_watched) {
        is_watched = false;
        count_seen = owner_.count();
        owner_.clear();
        EXPECT_EQ(owner_.add(L"new", L"k"), S_OK);
      }
      return 1;
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
    bool is_watched = false;

   private:
    Collection& owner_;
  };
  for (const bool by_clear : {false, true}) {
    Collection c;
    Ending ending(c);
    Value item;
    item.vt = VT_DISPATCH;
    item.pdispVal = &ending;
    EXPECT_EQ(c.add(L"other", L"o"), S_OK);
    EXPECT_EQ(c.add(item, L"k"), S_OK);
    ending.is_watched = true;
    if (by_clear) {
      c.clear();
    } else {
      EXPECT_EQ(c.remove(L"k"), S_OK);
    }
    EXPECT_EQ(ending.count_seen, by_clear ? 0 : 1);
    EXPECT_EQ(c.items(), Texts{L"new"});
    item.vt = VT_EMPTY;
  }
}

TEST(Collections, a_million_keyed_items_are_no_event) {
  Collection c;
  constexpr LONG kCount = 1000000;
  for (LONG i = 1; i <= kCount; ++i) {
    Value item(i);
    Value key((L"Key" + std::to_wstring(i)).c_str());
    ASSERT_EQ(c.object->Add(&item, &key, nullptr, nullptr), S_OK);
  }
  EXPECT_EQ(c.count(), kCount);
  for (LONG i = 1; i <= kCount; i += 9973) {
    ASSERT_EQ(c.item((L"KEY" + std::to_wstring(i)).c_str()).lVal, i);
    ASSERT_EQ(c.item(i).lVal, i);
    ASSERT_EQ(c.key(i), L"Key" + std::to_wstring(i));
  }
  EXPECT_EQ(c.add(0, L"front", 1), S_OK);
  EXPECT_EQ(c.item(kCount / 2 + 1).lVal, kCount / 2);
  EXPECT_EQ(c.remove(L"key500000"), S_OK);
  EXPECT_EQ(c.item(kCount).lVal, kCount);
  c.clear();
  EXPECT_EQ(c.count(), 0);
}

TEST(ItemInCollection, counts_objects_alone) {
  const auto global = create_global();
  Collection c;
  CountedObject object;
  Value nothing;
  nothing.vt = VT_DISPATCH;
  nothing.pdispVal = nullptr;
  EXPECT_EQ(c.add(object.as_value(), L"object"), S_OK);
  EXPECT_EQ(c.add(L"text", L"text"), S_OK);
  EXPECT_EQ(c.add(nothing, L"nothing"), S_OK);
  const auto contains = [&](Value key) {
    IDispatch* collection = c.object.get();
    VARIANT_BOOL result = 1;
    EXPECT_EQ(global->ItemInCollection(&collection, &key, &result), S_OK);
    return result;
  };
  EXPECT_EQ(contains(L"OBJECT"), VARIANT_TRUE);
  EXPECT_EQ(contains(1), VARIANT_TRUE);
  EXPECT_EQ(pending_error(global), 0);
  EXPECT_EQ(contains(L"nothing"), VARIANT_TRUE) << "Nothing is an object too";
  EXPECT_EQ(contains(L"text"), VARIANT_FALSE);
  EXPECT_EQ(pending_error(global), 424);
  EXPECT_EQ(contains(L"absent"), VARIANT_FALSE);
  EXPECT_EQ(pending_error(global), 5);
  EXPECT_EQ(contains(4), VARIANT_FALSE);
  EXPECT_EQ(pending_error(global), 9);
  EXPECT_EQ(object.references, 2U) << "the object found is let go";
}

TEST(ItemInCollection, is_False_for_Nothing_and_for_an_object_without_Item) {
  const auto global = create_global();
  IDispatch* nothing = nullptr;
  Value key(1);
  VARIANT_BOOL result = 1;
  EXPECT_EQ(global->ItemInCollection(&nothing, &key, &result), S_OK);
  EXPECT_EQ(result, VARIANT_FALSE);
  EXPECT_EQ(pending_error(global), 91);
  CountedObject other;
  IDispatch* object = &other;
  EXPECT_EQ(global->ItemInCollection(&object, &key, &result), S_OK);
  EXPECT_EQ(result, VARIANT_FALSE);
  EXPECT_EQ(pending_error(global), 438);
  EXPECT_EQ(other.references, 1U);
}

}  // namespace
}  // namespace qv::tests
