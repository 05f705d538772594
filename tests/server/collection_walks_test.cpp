// Enumerators of kwCollection and kwDictionary: what For Each uses.
#include <array>
#include <random>

#include "server/collection_client.h"

namespace qv::tests {
namespace {

// The items that are left, one a call.
Texts walk(const Pointer<IEnumVARIANT>& enumerator) {
  Texts texts;
  for (;;) {
    Value item;
    ULONG fetched = 99;
    const HRESULT status = enumerator->Next(1, &item, &fetched);
    EXPECT_EQ(status == S_OK, fetched == 1);
    if (fetched != 1) {
      EXPECT_EQ(status, S_FALSE);
      EXPECT_EQ(fetched, 0U);
      return texts;
    }
    texts.push_back(shown(item));
  }
}

std::wstring next(const Pointer<IEnumVARIANT>& enumerator) {
  Value item;
  return enumerator->Next(1, &item, nullptr) == S_OK ? shown(item) : L"end";
}

TEST(CollectionWalks, go_through_the_items_in_order_and_do_not_show_the_keys) {
  Collection c;
  c.fill({L"b", L"a"});
  EXPECT_EQ(c.add(L"plain", Value::missing(), 1), S_OK);
  EXPECT_EQ(walk(c.enumerator()), (Texts{L"plain", L"item b", L"item a"}));
}

TEST(CollectionWalks, of_an_empty_collection_end_at_once) {
  Collection c;
  EXPECT_EQ(walk(c.enumerator()), Texts{});
}

TEST(CollectionWalks, are_the_enumeration_member_of_the_class) {
  Collection c;
  c.fill({L"a"});
  DISPPARAMS none{};
  Value result;
  EXPECT_EQ(
      c.object->Invoke(DISPID_NEWENUM, IID_NULL, LOCALE_USER_DEFAULT,
                       DISPATCH_METHOD | DISPATCH_PROPERTYGET, &none, &result, nullptr, nullptr),
      S_OK);
  EXPECT_EQ(result.vt, VT_UNKNOWN);
  EXPECT_EQ(walk(Pointer<IEnumVARIANT>::from(result.punkVal)), Texts{L"item a"});
}

TEST(CollectionWalks, Next_tells_how_many_it_gives) {
  Collection c;
  c.fill({L"a", L"b", L"c", L"d", L"e"});
  const auto enumerator = c.enumerator();
  std::array<Value, 4> items;
  ULONG fetched = 99;
  EXPECT_EQ(enumerator->Next(0, nullptr, &fetched), S_OK);
  EXPECT_EQ(fetched, 0U);
  EXPECT_EQ(enumerator->Next(3, items.data(), &fetched), S_OK);
  EXPECT_EQ(fetched, 3U);
  EXPECT_EQ(items[2].text(), L"item c");
  for (Value& item : items) item = Value();
  EXPECT_EQ(enumerator->Next(4, items.data(), &fetched), S_FALSE);
  EXPECT_EQ(fetched, 2U);
  EXPECT_EQ(items[1].text(), L"item e");
  EXPECT_EQ(items[2].vt, VT_EMPTY);
  EXPECT_EQ(enumerator->Next(1, items.data() + 2, &fetched), S_FALSE);
  EXPECT_EQ(fetched, 0U);
  EXPECT_EQ(enumerator->Next(1, nullptr, &fetched), E_POINTER);
}

TEST(CollectionWalks, Skip_Reset_and_Clone_keep_their_places) {
  Collection c;
  c.fill({L"a", L"b", L"c"});
  const auto enumerator = c.enumerator();
  EXPECT_EQ(enumerator->Skip(1), S_OK);
  EXPECT_EQ(next(enumerator), L"item b");
  Pointer<IEnumVARIANT> clone;
  EXPECT_EQ(enumerator->Clone(clone.receive()), S_OK);
  EXPECT_EQ(enumerator->Skip(2), S_FALSE);
  EXPECT_EQ(next(enumerator), L"end");
  EXPECT_EQ(next(clone), L"item c");
  EXPECT_EQ(enumerator->Reset(), S_OK);
  EXPECT_EQ(next(enumerator), L"item a");
  EXPECT_EQ(next(clone), L"end");
  EXPECT_EQ(enumerator->Clone(nullptr), E_POINTER);
}

TEST(CollectionWalks, give_objects_by_reference_and_texts_as_copies) {
  Collection c;
  CountedObject object;
  EXPECT_EQ(c.add(object.as_value()), S_OK);
  EXPECT_EQ(c.add(L"text"), S_OK);
  std::array<Value, 2> items;
  EXPECT_EQ(c.enumerator()->Next(2, items.data(), nullptr), S_OK);
  EXPECT_EQ(items[0].pdispVal, &object);
  EXPECT_EQ(object.references, 3U);
  items[0] = Value();
  items[1].bstrVal[0] = L'T';
  EXPECT_EQ(c.item(2).text(), L"text");
}

TEST(CollectionWalks, go_on_through_the_old_items_after_Clear) {
  CountedObject object;
  {
    Collection c;
    c.fill({L"a", L"b"});
    EXPECT_EQ(c.add(object.as_value()), S_OK);
    const auto enumerator = c.enumerator();
    EXPECT_EQ(next(enumerator), L"item a");
    c.clear();
    c.fill({L"new"});
    EXPECT_EQ(object.references, 2U) << "the walk holds the old items";
    EXPECT_EQ(next(enumerator), L"item b");
    EXPECT_EQ(next(enumerator), L"?");
    EXPECT_EQ(next(enumerator), L"end");
    EXPECT_EQ(enumerator->Reset(), S_OK);
    EXPECT_EQ(next(enumerator), L"item a");
    EXPECT_EQ(walk(c.enumerator()), Texts{L"item new"});
  }
  EXPECT_EQ(object.references, 1U);
}

TEST(CollectionWalks, outlive_the_collection) {
  CountedObject object;
  {
    Pointer<IEnumVARIANT> enumerator;
    {
      Collection c;
      EXPECT_EQ(c.add(object.as_value()), S_OK);
      enumerator = c.enumerator();
    }
    EXPECT_EQ(object.references, 2U);
    EXPECT_EQ(walk(enumerator), Texts{L"?"});
  }
  EXPECT_EQ(object.references, 1U);
}

TEST(CollectionWalks, follow_what_comes_and_goes) {
  Collection c;
  c.fill({L"1", L"2", L"3", L"4"});
  const auto enumerator = c.enumerator();
  EXPECT_EQ(next(enumerator), L"item 1");
  EXPECT_EQ(next(enumerator), L"item 2");
  EXPECT_EQ(c.remove(L"2"), S_OK);                        // the one given last
  EXPECT_EQ(c.remove(L"3"), S_OK);                        // one ahead
  EXPECT_EQ(c.add(L"front", Value::missing(), 1), S_OK);  // behind the walk
  EXPECT_EQ(c.add(L"ahead", Value::missing(), L"4"), S_OK);
  EXPECT_EQ(c.add(L"end"), S_OK);
  EXPECT_EQ(walk(enumerator), (Texts{L"ahead", L"item 4", L"end"}));
}

// Several walks at once, and a collection that changes under them, against a plain row.
TEST(CollectionWalks, behave_as_positions_in_a_plain_row) {
  std::mt19937 random(7);
  Collection c;
  std::vector<std::wstring> model;
  struct Walk {
    Pointer<IEnumVARIANT> enumerator;
    std::size_t passed = 0;
  };
  std::vector<Walk> walks;
  for (int step = 0; step < 4000; ++step) {
    switch (random() % 8) {
      case 0:
      case 1:
      case 2: {
        const std::size_t place = random() % (model.size() + 1);
        const std::wstring text = std::to_wstring(step);
        const bool at_end = place == model.size();
        EXPECT_EQ(c.add(text.c_str(), (L"k" + text).c_str(),
                        at_end ? Value::missing() : Value(static_cast<LONG>(place + 1))),
                  S_OK);
        model.insert(model.begin() + static_cast<std::ptrdiff_t>(place), text);
        for (Walk& walk : walks) walk.passed += place < walk.passed ? 1 : 0;
        break;
      }
      case 3:
      case 4: {
        if (model.empty()) break;
        const std::size_t place = random() % model.size();
        EXPECT_EQ(c.remove(random() % 2 == 0 ? Value(static_cast<LONG>(place + 1))
                                             : Value((L"K" + model[place]).c_str())),
                  S_OK);
        model.erase(model.begin() + static_cast<std::ptrdiff_t>(place));
        for (Walk& walk : walks) walk.passed -= place < walk.passed ? 1 : 0;
        break;
      }
      case 5:
        if (walks.size() < 5) {
          walks.push_back({c.enumerator()});
        } else {
          walks.erase(walks.begin() + static_cast<std::ptrdiff_t>(random() % walks.size()));
        }
        break;
      default:
        for (Walk& walk : walks) {
          const bool ended = walk.passed == model.size();
          ASSERT_EQ(next(walk.enumerator), ended ? L"end" : model[walk.passed]) << step;
          if (!ended) ++walk.passed;
        }
    }
  }
}

TEST(CollectionWalks, of_a_dictionary_give_its_entries) {
  Dictionary d;
  EXPECT_EQ(d.add(L"x", L"a"), S_OK);
  EXPECT_EQ(d.add(L"y", L"b"), S_OK);
  const auto enumerator = d.enumerator();
  Value entry;
  ULONG fetched = 0;
  EXPECT_EQ(enumerator->Next(1, &entry, &fetched), S_OK);
  EXPECT_EQ(fetched, 1U);
  ASSERT_EQ(entry.vt, VT_DISPATCH);
  EXPECT_EQ(entry.pdispVal, d.item(L"a").pdispVal);
  d.clear();
  entry = Value();
  EXPECT_EQ(enumerator->Next(1, &entry, &fetched), S_OK);
  EXPECT_EQ(entry.vt, VT_DISPATCH);
  entry = Value();
  EXPECT_EQ(enumerator->Next(1, &entry, &fetched), S_FALSE);
  EXPECT_EQ(d.count(), 0);
}

}  // namespace
}  // namespace qv::tests
