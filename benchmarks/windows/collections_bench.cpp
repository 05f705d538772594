// kwCollection by vtable beside std::unordered_map, the platform's Scripting.Dictionary, a ranked
// Boost.MultiIndex and std::vector.
//
// Each line tells our time for one operation, the peer's, and ours over the peer's: the median of
// the ratios of interleaved rounds in one process. Keys have 11 characters and are looked up in
// another case than they were added in, in random order.

#if __has_include(<boost/multi_index_container.hpp>)
#include <boost/multi_index/hashed_index.hpp>
#include <boost/multi_index/member.hpp>
#include <boost/multi_index/ranked_index.hpp>
#include <boost/multi_index_container.hpp>
#define QV_HAS_BOOST 1
#else
#define QV_HAS_BOOST 0
#endif

#include <array>
#include <cstdint>
#include <cwchar>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <unordered_map>

#include "server/client.h"
#include "windows/bench.h"

// The platform's dictionary, as far as it is used here. Not in an unnamed namespace: the compiler
// would know that nothing implements it.
struct IDictionary : IDispatch {
  virtual HRESULT STDMETHODCALLTYPE putref_Item(VARIANT* key, VARIANT* item) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_Item(VARIANT* key, VARIANT* item) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Item(VARIANT* key, VARIANT* item) = 0;
  virtual HRESULT STDMETHODCALLTYPE Add(VARIANT* key, VARIANT* item) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Count(LONG* count) = 0;
  virtual HRESULT STDMETHODCALLTYPE Exists(VARIANT* key, VARIANT_BOOL* exists) = 0;
  virtual HRESULT STDMETHODCALLTYPE Items(VARIANT* items) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_Key(VARIANT* key, VARIANT* fresh) = 0;
  virtual HRESULT STDMETHODCALLTYPE Keys(VARIANT* keys) = 0;
  virtual HRESULT STDMETHODCALLTYPE Remove(VARIANT* key) = 0;
  virtual HRESULT STDMETHODCALLTYPE RemoveAll() = 0;
  virtual HRESULT STDMETHODCALLTYPE put_CompareMode(int mode) = 0;
};

namespace {

using namespace qv::bench;
using qv::tests::Pointer;
using qv::tests::Value;

constexpr LONG kThousand = 1000;
constexpr LONG kMillion = 1000000;

void require(bool holds, const char* what) {
  if (holds) return;
  std::printf("failed: %s\n", what);
  std::exit(1);
}

std::wstring key_text(LONG number, const wchar_t* form) {
  std::array<wchar_t, 16> text{};
  std::swprintf(text.data(), text.size(), form, number);
  return text.data();
}

// The keys of 0 to count - 1, in the forms in which they are added, asked for, and not there.
struct Keys {
  explicit Keys(LONG count) {
    std::mt19937 random(1);
    for (LONG i = 0; i < count; ++i) added.emplace_back(key_text(i, L"Key%08ld"));
    for (LONG i = 0; i < count; ++i) hits.emplace_back(key_text(i, L"KEY%08ld"));
    for (LONG i = 0; i < count; ++i) misses.emplace_back(key_text(i, L"KEZ%08ld"));
    std::shuffle(hits.begin(), hits.end(), random);
    std::shuffle(misses.begin(), misses.end(), random);
  }
  std::vector<Value> added;
  std::vector<Value> hits;
  std::vector<Value> misses;
};

std::wstring_view view(const Value& key) { return {key.bstrVal, SysStringLen(key.bstrVal)}; }

Value number_value(LONG number) { return Value(number); }

Pointer<_kwCollection> new_collection() {
  Pointer<_kwCollection> object;
  require(SUCCEEDED(CoCreateInstance(CLSID_kwCollection, nullptr, CLSCTX_INPROC_SERVER,
                                     __uuidof(_kwCollection),
                                     reinterpret_cast<void**>(object.receive()))),
          "the server is not registered");
  return object;
}

void add_all(const Pointer<_kwCollection>& collection, Keys& keys) {
  Value item = number_value(0);
  for (Value& key : keys.added) {
    ++item.lVal;
    collection->Add(&item, &key, nullptr, nullptr);
  }
}

LONG find_all(const Pointer<_kwCollection>& collection, std::vector<Value>& keys) {
  LONG sum = 0;
  for (Value& key : keys) {
    VARIANT item;
    item.vt = VT_EMPTY;
    collection->get_Item(&key, &item);
    sum += item.lVal & 1;
  }
  return sum;
}

LONG count_present(const Pointer<_kwCollection>& collection, std::vector<Value>& keys) {
  LONG present = 0;
  for (Value& key : keys) {
    VARIANT_BOOL exists = VARIANT_FALSE;
    collection->ItemExist(&key, &exists);
    present += exists != VARIANT_FALSE ? 1 : 0;
  }
  return present;
}

// std::unordered_map with keys of any case.
wchar_t folded(wchar_t c) {
  if (c < 0x80) return c >= L'a' && c <= L'z' ? static_cast<wchar_t>(c - 0x20) : c;
  return static_cast<wchar_t>(std::towupper(c));
}
struct FoldedHash {
  using is_transparent = void;
  std::size_t operator()(std::wstring_view text) const {
    std::uint64_t hash = 14695981039346656037U;  // FNV-1a
    for (const wchar_t c : text) hash = (hash ^ folded(c)) * 1099511628211U;
    return static_cast<std::size_t>(hash);
  }
};
struct FoldedEqual {
  using is_transparent = void;
  bool operator()(std::wstring_view a, std::wstring_view b) const {
    return a.size() == b.size() &&
           std::equal(a.begin(), a.end(), b.begin(),
                      [](wchar_t x, wchar_t y) { return folded(x) == folded(y); });
  }
};
using Map = std::unordered_map<std::wstring, VARIANT, FoldedHash, FoldedEqual>;

void add_all(Map& map, Keys& keys) {
  VARIANT item{};
  item.vt = VT_I4;
  for (const Value& key : keys.added) {
    ++item.lVal;
    map.emplace(view(key), item);
  }
}

LONG find_all(const Map& map, const std::vector<Value>& keys) {
  LONG sum = 0;
  for (const Value& key : keys) {
    const VARIANT item = map.find(view(key))->second;
    sum += item.lVal & 1;
  }
  return sum;
}

LONG count_present(const Map& map, const std::vector<Value>& keys) {
  LONG present = 0;
  for (const Value& key : keys) present += map.contains(view(key)) ? 1 : 0;
  return present;
}

void keyed(LONG count, int rounds) {
  Keys keys(count);
  Times adds, hits, misses, ends;
  for (int round = 0; round < rounds; ++round) {
    auto collection = new_collection();
    auto map = std::make_unique<Map>();
    adds.add(seconds([&] { add_all(collection, keys); }), seconds([&] { add_all(*map, keys); }));
    LONG ours = 0;
    LONG peers = 0;
    hits.add(seconds([&] { ours = find_all(collection, keys.hits); }),
             seconds([&] { peers = find_all(*map, keys.hits); }));
    require(ours == peers && ours == count / 2, "every key is found");
    misses.add(seconds([&] { ours = count_present(collection, keys.misses); }),
               seconds([&] { peers = count_present(*map, keys.misses); }));
    require(ours == 0 && peers == 0, "no other key is found");
    ends.add(seconds([&] { collection = {}; }), seconds([&] { map.reset(); }));
  }
  print_heading((std::to_string(count) + " keyed items").c_str(), "std::unordered_map");
  const auto size = static_cast<std::size_t>(count);
  adds.print("add", size, at_most(1.2));
  hits.print("hit", size, at_most(1));
  misses.print("miss", size, at_most(0.7));
  ends.print("end of the whole", size);
}

// The same calls late bound, by ids found once.
void late_bound() {
  constexpr LONG kCount = 100 * kThousand;
  Keys keys(kCount);
  const auto collection = new_collection();
  add_all(collection, keys);
  const auto id_of = [&](const wchar_t* name) {
    auto* text = const_cast<wchar_t*>(name);
    DISPID id = 0;
    collection->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_USER_DEFAULT, &id);
    return id;
  };
  const DISPID exists = id_of(L"ItemExist");
  const auto invoke = [&](DISPID id, std::vector<Value>& all_keys) {
    for (Value& key : all_keys) {
      DISPPARAMS parameters{&key, nullptr, 1, 0};
      VARIANT result;
      result.vt = VT_EMPTY;
      collection->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD | DISPATCH_PROPERTYGET,
                         &parameters, &result, nullptr, nullptr);
    }
  };
  Times hits, misses;
  for (int round = 0; round < 7; ++round) {
    hits.add(seconds([&] { invoke(DISPID_VALUE, keys.hits); }),
             seconds([&] { find_all(collection, keys.hits); }));
    misses.add(seconds([&] { invoke(exists, keys.misses); }),
               seconds([&] { count_present(collection, keys.misses); }));
  }
  print_heading((std::to_string(kCount) + " keyed items, late bound").c_str(),
                "the same early bound");
  hits.print("Item", kCount, at_most(1, 150));
  misses.print("ItemExist", kCount, at_most(1, 150));
}

constexpr IID kDictionaryId = {
    0x42C642C1, 0x97E1, 0x11CF, {0x97, 0x8F, 0x00, 0xA0, 0x24, 0x63, 0xE0, 0x6F}};
constexpr int kTextCompare = 1;

std::unique_ptr<IDictionary, void (*)(IDictionary*)> new_dictionary() {
  CLSID id{};
  IDictionary* dictionary = nullptr;
  if (SUCCEEDED(CLSIDFromProgID(L"Scripting.Dictionary", &id))) {
    CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, kDictionaryId,
                     reinterpret_cast<void**>(&dictionary));
  }
  require(dictionary != nullptr, "the platform has no Scripting.Dictionary");
  require(SUCCEEDED(dictionary->put_CompareMode(kTextCompare)), "text comparison");
  return {dictionary, [](IDictionary* object) { object->Release(); }};
}

void against_dictionary(LONG count, int rounds) {
  ::Keys keys(count);
  Times adds, hits, misses, ends;
  for (int round = 0; round < rounds; ++round) {
    auto collection = new_collection();
    auto dictionary = new_dictionary();
    adds.add(seconds([&] { add_all(collection, keys); }), seconds([&] {
               Value item = number_value(0);
               for (Value& key : keys.added) {
                 ++item.lVal;
                 dictionary->Add(&key, &item);
               }
             }));
    LONG ours = 0;
    LONG peers = 0;
    hits.add(seconds([&] { ours = find_all(collection, keys.hits); }), seconds([&] {
               for (Value& key : keys.hits) {
                 VARIANT item;
                 item.vt = VT_EMPTY;
                 dictionary->get_Item(&key, &item);
                 peers += item.lVal & 1;
               }
             }));
    require(ours == peers, "every key is found");
    misses.add(seconds([&] { ours = count_present(collection, keys.misses); }), seconds([&] {
                 for (Value& key : keys.misses) {
                   VARIANT_BOOL exists = VARIANT_FALSE;
                   dictionary->Exists(&key, &exists);
                   require(exists == VARIANT_FALSE, "no other key is found");
                 }
               }));
    ends.add(seconds([&] { collection = {}; }), seconds([&] { dictionary.reset(); }));
  }
  print_heading((std::to_string(count) + " keyed items").c_str(),
                "Scripting.Dictionary, text comparison");
  const auto size = static_cast<std::size_t>(count);
  const Goal goal = at_most(count > kThousand ? 0.5 : 1);
  adds.print("add", size, goal);
  hits.print("hit", size, goal);
  misses.print("miss", size, goal);
  ends.print("end of the whole", size, goal);
}

std::vector<LONG> random_positions(LONG below, std::size_t count) {
  std::mt19937 random(2);
  std::vector<LONG> positions(count);
  for (LONG& position : positions) {
    position = static_cast<LONG>(random() % static_cast<unsigned long>(below));
  }
  return positions;
}

constexpr std::size_t kPositions = 200000;

void walk() {
  Keys keys(kMillion);
  const auto collection = new_collection();
  add_all(collection, keys);
  Times walks;
  for (int round = 0; round < 5; ++round) {
    LONG by_walk = 0;
    LONG by_position = 0;
    walks.add(seconds([&] {
                Pointer<IUnknown> unknown;
                collection->NewEnum(unknown.receive());
                const auto enumerator = Pointer<IEnumVARIANT>::from(unknown.get());
                VARIANT item;
                ULONG fetched = 0;
                while (enumerator->Next(1, &item, &fetched) == S_OK) by_walk += item.lVal & 1;
              }),
              seconds([&] {
                for (Value index(1); index.lVal <= kMillion; ++index.lVal) {
                  VARIANT item;
                  item.vt = VT_EMPTY;
                  collection->get_Item(&index, &item);
                  by_position += item.lVal & 1;
                }
              }));
    require(by_walk == by_position, "the walk meets every item");
  }
  print_heading((std::to_string(kMillion) + " items, one after the other").c_str(), "by position");
  walks.print("For Each", kMillion);
}

#if QV_HAS_BOOST
struct Row {
  double place;  // orders the rows: a row between two others gets a number between theirs
  std::wstring key;
  VARIANT item;
};
namespace mi = boost::multi_index;
using Table = mi::multi_index_container<
    Row, mi::indexed_by<
             mi::ranked_non_unique<mi::member<Row, double, &Row::place>>,
             mi::hashed_unique<mi::member<Row, std::wstring, &Row::key>, FoldedHash, FoldedEqual>>>;

void add_all(Table& table, Keys& keys) {
  VARIANT item{};
  item.vt = VT_I4;
  for (const Value& key : keys.added) {
    ++item.lVal;
    table.emplace(Row{static_cast<double>(item.lVal), std::wstring(view(key)), item});
  }
}

void by_position() {
  Keys keys(kMillion);
  std::vector<Value> fresh_keys;
  for (std::size_t i = 0; i < kPositions; ++i) {
    fresh_keys.emplace_back(key_text(static_cast<LONG>(i), L"New%08ld"));
  }
  const auto positions = random_positions(kMillion, kPositions);
  const auto collection = new_collection();
  add_all(collection, keys);
  Table table;
  add_all(table, keys);
  Times reads, inserts, removals;
  for (int round = 0; round < 3; ++round) {
    LONG ours = 0;
    LONG peers = 0;
    reads.add(seconds([&] {
                Value index(0);
                for (const LONG position : positions) {
                  index.lVal = position + 1;
                  VARIANT item;
                  item.vt = VT_EMPTY;
                  collection->get_Item(&index, &item);
                  ours += item.lVal & 1;
                }
              }),
              seconds([&] {
                for (const LONG position : positions) {
                  const VARIANT item = table.nth(static_cast<std::size_t>(position))->item;
                  peers += item.lVal & 1;
                }
              }));
    require(ours == peers, "the same items stand at the positions");
    inserts.add(
        seconds([&] {
          Value item(0);
          Value before(0);
          for (std::size_t i = 0; i < positions.size(); ++i) {
            before.lVal = positions[i] + 1;
            collection->Add(&item, &fresh_keys[i], &before, nullptr);
          }
        }),
        seconds([&] {
          VARIANT item{};
          item.vt = VT_I4;
          for (std::size_t i = 0; i < positions.size(); ++i) {
            const auto at = table.nth(static_cast<std::size_t>(positions[i]));
            const double left = at == table.begin() ? 0 : std::prev(at)->place;
            table.emplace(Row{(left + at->place) / 2, std::wstring(view(fresh_keys[i])), item});
          }
        }));
    removals.add(seconds([&] {
                   Value index(0);
                   for (const LONG position : positions) {
                     index.lVal = position + 1;
                     collection->Remove(&index);
                   }
                 }),
                 seconds([&] {
                   for (const LONG position : positions) {
                     table.erase(table.nth(static_cast<std::size_t>(position)));
                   }
                 }));
    LONG count = 0;
    collection->Count(&count);
    require(count == kMillion && table.size() == kMillion, "as many come as go");
    // The same keys are added again in the next round.
    for (Value& key : fresh_keys) collection->Remove(&key);
    for (const Value& key : fresh_keys) table.get<1>().erase(std::wstring(view(key)));
    collection->Count(&count);
    for (LONG missing = kMillion - count; missing > 0; --missing) {
      Value item(0);
      Value key(key_text(static_cast<LONG>(round * kMillion + missing), L"Ref%08ld"));
      collection->Add(&item, &key, nullptr, nullptr);
      VARIANT number{};
      number.vt = VT_I4;
      table.emplace(Row{std::prev(table.end())->place + 1, std::wstring(view(key)), number});
    }
  }
  print_heading((std::to_string(kMillion) + " keyed items, random positions").c_str(),
                "ranked Boost.MultiIndex");
  reads.print("read", kPositions, at_most(0.3));
  inserts.print("insert", kPositions, at_most(0.3));
  removals.print("remove", kPositions, at_most(0.3));
}
#endif

void against_vector() {
  constexpr std::size_t kInserts = 300;
  const auto positions = random_positions(kMillion, kInserts);
  const auto collection = new_collection();
  std::vector<VARIANT> vector;
  Value item(0);
  VARIANT number{};
  number.vt = VT_I4;
  for (LONG i = 0; i < kMillion; ++i) {
    collection->Add(&item, nullptr, nullptr, nullptr);
    vector.push_back(number);
  }
  vector.reserve(kMillion + 10 * kInserts);
  Times inserts;
  for (int round = 0; round < 3; ++round) {
    inserts.add(seconds([&] {
                  Value before(0);
                  for (const LONG position : positions) {
                    before.lVal = position + 1;
                    collection->Add(&item, nullptr, &before, nullptr);
                  }
                }),
                seconds([&] {
                  for (const LONG position : positions) {
                    vector.insert(vector.begin() + position, number);
                  }
                }));
  }
  print_heading((std::to_string(kMillion) + " items, random positions").c_str(), "std::vector");
  inserts.print("insert", kInserts, at_most(0.01));
}

struct Section {
  const char* name;
  void (*run)();
};
constexpr Section kSections[] = {
    {"keyed",
     [] {
       keyed(100 * kThousand, 9);
       keyed(kMillion, 3);
     }},
    {"late", &late_bound},
    {"dictionary",
     [] {
       against_dictionary(kThousand, 21);
       against_dictionary(10 * kThousand, 3);
     }},
    {"walk", &walk},
#if QV_HAS_BOOST
    {"position", &by_position},
#endif
    {"vector", &against_vector},
};

}  // namespace

// collections_bench [section]...: all where none is named.
int main(int count, char** names) {
  CoInitialize(nullptr);
  std::printf("%u-bit build\n", static_cast<unsigned>(sizeof(void*) * 8));
  const auto asked_for = [&](std::string_view name) {
    return count == 1 || std::find(names + 1, names + count, name) != names + count;
  };
  for (const Section& section : kSections) {
    if (asked_for(section.name)) section.run();
  }
  CoUninitialize();
}
