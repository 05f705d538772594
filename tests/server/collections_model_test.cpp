// kwCollection beside a naive model over random operations: two plain collections, one of the items
// and one of the key texts, each a row searched from its front.
#include <optional>
#include <random>
#include <variant>

#include "server/collection_client.h"

namespace qv::tests {
namespace {

constexpr LONG kBadCall = 5;
constexpr LONG kOutOfRange = 9;
constexpr LONG kKeyTaken = 457;

// An index is a position from 1 or a key.
using Index = std::variant<LONG, std::wstring>;

// One collection of the platform. Members give the number of a run-time error, 0 for none.
class PlainCollection {
 public:
  struct Row {
    std::wstring item;
    std::optional<std::wstring> key;
  };
  std::vector<Row> rows;

  LONG locate(const Index& index, std::size_t& place) const {
    if (const LONG* position = std::get_if<LONG>(&index)) {
      if (*position < 1 || *position > static_cast<LONG>(rows.size())) return kOutOfRange;
      place = static_cast<std::size_t>(*position - 1);
      return 0;
    }
    for (place = 0; place < rows.size(); ++place) {
      const auto& key = rows[place].key;
      if (key && _wcsicmp(key->c_str(), std::get<std::wstring>(index).c_str()) == 0) return 0;
    }
    return kBadCall;
  }
  LONG add(const std::wstring& item, const std::optional<std::wstring>& key,
           const std::optional<Index>& before, const std::optional<Index>& after) {
    std::size_t place = rows.size();
    if (before && after) return kBadCall;
    if (before || after) {
      const LONG error = locate(before ? *before : *after, place);
      if (error != 0) return error;
      if (after) ++place;
    }
    std::size_t taken = 0;
    if (key && locate(*key, taken) == 0) return kKeyTaken;
    rows.insert(rows.begin() + static_cast<std::ptrdiff_t>(place), {item, key});
    return 0;
  }
  LONG remove(const Index& index) {
    std::size_t place = 0;
    const LONG error = locate(index, place);
    if (error == 0) rows.erase(rows.begin() + static_cast<std::ptrdiff_t>(place));
    return error;
  }
};

class Model {
 public:
  PlainCollection items;
  PlainCollection keys;

  LONG add(const std::wstring& item, const std::optional<std::wstring>& key,
           const std::optional<Index>& before, const std::optional<Index>& after) {
    const LONG error = items.add(item, key, before, after);
    if (error != 0 || !key) return error;
    return keys.add(*key, key, before, after);
  }
  LONG remove(const Index& index) {
    const LONG error = items.remove(index);
    if (error != 0 || keys.rows.empty()) return error;
    return keys.remove(index);
  }
};

Value value_of(const Index& index) {
  if (const LONG* position = std::get_if<LONG>(&index)) return Value(*position);
  return Value(std::get<std::wstring>(index).c_str());
}

Value value_of(const std::optional<Index>& index) {
  return index ? value_of(*index) : Value::missing();
}

HRESULT result_of(LONG error) { return error == 0 ? S_OK : error_result(error); }

class RandomCalls {
 public:
  RandomCalls(unsigned seed, unsigned keyed_percent)
      : random_(seed), keyed_percent_(keyed_percent) {}

  void run(int steps) {
    for (int step = 0; step < steps && !testing::Test::HasFailure(); ++step) {
      const unsigned choice = random_() % 100;
      if (choice < 45) {
        add(std::to_wstring(step));
      } else if (choice < 75) {
        remove();
      } else if (choice < 99) {
        ask();
      } else {
        real_.clear();
        model_ = Model();
      }
      compare();
    }
  }

 private:
  bool chance(unsigned percent) { return random_() % 100 < percent; }
  std::wstring key() {
    std::wstring text = L"Key" + std::to_wstring(random_() % 12);
    if (chance(50)) text[0] = L'k';
    return text;
  }
  Index index() {
    if (chance(40)) return key();
    return static_cast<LONG>(random_() % (model_.items.rows.size() + 3)) - 1;
  }
  std::optional<Index> maybe_index(unsigned percent) {
    if (!chance(percent)) return std::nullopt;
    return index();
  }

  void add(const std::wstring& item) {
    std::optional<std::wstring> key;
    if (chance(keyed_percent_)) key = this->key();
    const auto before = maybe_index(25);
    const auto after = maybe_index(before ? 5 : 25);
    EXPECT_EQ(real_.add(item.c_str(), key ? Value(key->c_str()) : Value::missing(),
                        value_of(before), value_of(after)),
              result_of(model_.add(item, key, before, after)));
  }
  void remove() {
    const Index which = index();
    EXPECT_EQ(real_.remove(value_of(which)), result_of(model_.remove(which)));
  }
  void ask() {
    const Index which = index();
    std::size_t place = 0;
    const LONG error = model_.items.locate(which, place);
    EXPECT_EQ(real_.exists(value_of(which)), error == 0);
    Value item(L"untouched");
    EXPECT_EQ(real_.assign(value_of(which), item), error != 0);
    EXPECT_EQ(item.text(), error == 0 ? model_.items.rows[place].item : L"untouched");
    const LONG key_error = model_.keys.locate(which, place);
    String key;
    EXPECT_EQ(real_.key(value_of(which), key), result_of(key_error));
    if (key_error == 0) {
      EXPECT_EQ(key, model_.keys.rows[place].item);
    }
  }
  void compare() {
    Texts items;
    Texts keys;
    for (const auto& row : model_.items.rows) items.push_back(row.item);
    for (const auto& row : model_.keys.rows) keys.push_back(row.item);
    EXPECT_EQ(real_.items(), items);
    EXPECT_EQ(real_.keys(), keys);
  }

  std::mt19937 random_;
  unsigned keyed_percent_;
  Collection real_;
  Model model_;
};

TEST(CollectionsModel, all_items_keyed) { RandomCalls(1, 100).run(4000); }

TEST(CollectionsModel, no_item_keyed) { RandomCalls(2, 0).run(2000); }

TEST(CollectionsModel, some_items_keyed) {
  for (unsigned seed = 3; seed < 9; ++seed) {
    RandomCalls(seed, 60).run(1500);
    RandomCalls(seed + 100, 95).run(1500);
  }
}

}  // namespace
}  // namespace qv::tests
