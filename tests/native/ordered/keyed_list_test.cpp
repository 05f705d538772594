#include "native/ordered/keyed_list.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>
#include <vector>

namespace qv::native::ordered {
namespace {

// Latin-1 and a few more, enough to tell folding from comparing.
char16_t fold(char16_t character) noexcept {
  if (character >= 0xE0 && character <= 0xFE && character != 0xF7) {
    return static_cast<char16_t>(character - 0x20);
  }
  return character;
}

using List = KeyedList<std::unique_ptr<int>>;

std::unique_ptr<int> number(int value) { return std::make_unique<int>(value); }

// The naive model: a row of items, searched from the front.
struct ModelItem {
  int value;
  std::optional<std::u16string> key;
};

std::u16string lower(std::u16string_view text) {
  std::u16string result(text);
  for (char16_t& c : result) {
    if (c >= u'A' && c <= u'Z') c = static_cast<char16_t>(c + 0x20);
    if (c >= 0xC0 && c <= 0xDE && c != 0xD7) c = static_cast<char16_t>(c + 0x20);
  }
  return result;
}

class Model {
 public:
  std::vector<ModelItem> items;
  std::vector<std::size_t> cursors;

  std::optional<std::size_t> find(std::u16string_view key) const {
    for (std::size_t i = 0; i < items.size(); ++i) {
      if (items[i].key && lower(*items[i].key) == lower(key)) return i;
    }
    return std::nullopt;
  }
  void insert(std::size_t position, ModelItem item) {
    items.insert(items.begin() + static_cast<std::ptrdiff_t>(position), std::move(item));
    for (std::size_t& cursor : cursors) cursor += position < cursor ? 1 : 0;
  }
  void erase(std::size_t position) {
    items.erase(items.begin() + static_cast<std::ptrdiff_t>(position));
    for (std::size_t& cursor : cursors) cursor -= position < cursor ? 1 : 0;
  }
};

void expect_same(const List& list, const Model& model) {
  ASSERT_EQ(list.size(), model.items.size());
  for (std::size_t i = 0; i < model.items.size(); ++i) {
    const ItemId id = list.at(i);
    ASSERT_EQ(*list.value(id), model.items[i].value) << i;
    ASSERT_EQ(list.position_of(id), i);
    const auto key = list.key(id);
    ASSERT_EQ(key.has_value(), model.items[i].key.has_value());
    if (!key) continue;
    ASSERT_EQ(*key, *model.items[i].key);
    ASSERT_EQ(list.find(*key), id);
  }
}

std::u16string random_key(std::mt19937& random, int variety) {
  static constexpr char16_t kLetters[] = u"abcXYZ019 \u00E9\u00C9\u00D7\u00F7@[`{\0\u4E00";
  std::u16string key(random() % 40, u'k');
  for (char16_t& c : key) {
    if (random() % 4 == 0) c = kLetters[random() % (std::size(kLetters) - 1)];
  }
  return key +
         std::u16string(1, static_cast<char16_t>(u'0' + static_cast<int>(random() % 64) % variety));
}

// Mostly adding, then mostly removing, and so on, so that the tree grows high and low again.
void run_against_model(unsigned seed, std::size_t steps, std::size_t check_every) {
  std::mt19937 random(seed);
  List list(&fold);
  Model model;
  std::vector<std::size_t> cursors(4);
  for (std::size_t& cursor : cursors) list.attach_cursor(cursor);
  model.cursors.resize(cursors.size());
  int next_value = 0;
  for (std::size_t step = 0; step < steps; ++step) {
    const bool growing = step / 700 % 2 == 0;
    const std::size_t size = model.items.size();
    if (random() % 10 < (growing ? 8U : 2U) || size == 0) {
      std::size_t position = size;
      if (random() % 2 == 0) position = random() % (size + 1);
      if (random() % 8 == 0) position = size / 3;
      std::optional<std::u16string> key;
      if (random() % 3 != 0) key = random_key(random, 64);
      const bool taken = key && model.find(*key);
      const ItemId id = list.insert(position, number(next_value), key);
      ASSERT_EQ(id == kNoItem, taken);
      if (!taken) model.insert(position, {next_value, key});
      ++next_value;
    } else {
      std::size_t position = random() % size;
      if (random() % 3 == 0) position = size / 2;
      const auto value =
          random() % 2 == 0 ? list.erase(list.at(position)) : list.erase_at(position);
      ASSERT_EQ(*value, model.items[position].value);
      model.erase(position);
    }
    if (random() % 50 == 0) {
      const std::size_t which = random() % cursors.size();
      cursors[which] = model.cursors[which] = random() % (model.items.size() + 1);
    }
    ASSERT_EQ(cursors, model.cursors);
    if (step % check_every == 0) expect_same(list, model);
  }
  expect_same(list, model);
  for (const std::size_t& cursor : cursors) list.detach_cursor(cursor);
}

TEST(KeyedList, Behaves_as_a_plain_row_under_random_changes) {
  for (unsigned seed = 1; seed <= 6; ++seed) run_against_model(seed, 4200, 97);
}

TEST(KeyedList, Behaves_as_a_plain_row_while_small) {
  for (unsigned seed = 100; seed < 130; ++seed) run_against_model(seed, 60, 1);
}

// Forward, backward and in the middle, past several levels of the tree.
TEST(KeyedList, Empties_from_any_end) {
  for (const int from : {0, 1, 2}) {
    List list(&fold);
    constexpr int kCount = 70000;
    for (int i = 0; i < kCount; ++i) list.insert(list.size(), number(i));
    for (int left = kCount; left > 0; --left) {
      const auto size = static_cast<std::size_t>(left);
      const std::size_t position = from == 0 ? 0 : from == 1 ? size - 1 : size / 2;
      const auto expected_size = size - 1;
      list.erase(list.at(position));
      ASSERT_EQ(list.size(), expected_size);
    }
    list.insert(0, number(5), u"k");
    EXPECT_EQ(*list.value(list.find(u"K")), 5);
  }
}

TEST(KeyedList, Inserting_always_at_the_front_or_in_the_middle_keeps_the_order) {
  for (const bool front : {true, false}) {
    List list(&fold);
    std::vector<int> expected;
    for (int i = 0; i < 5000; ++i) {
      const std::size_t position = front ? 0 : list.size() / 2;
      list.insert(position, number(i));
      expected.insert(expected.begin() + static_cast<std::ptrdiff_t>(position), i);
    }
    for (std::size_t i = 0; i < expected.size(); ++i) {
      ASSERT_EQ(*list.value(list.at(i)), expected[i]);
    }
  }
}

TEST(KeyedList, A_key_is_found_in_any_case_and_read_back_as_it_was_given) {
  List list(&fold);
  const ItemId id = list.insert(0, number(1), u"Caff\u00E8 Nero, una chiave molto lunga");
  EXPECT_EQ(list.find(u"CAFF\u00C8 NERO, UNA CHIAVE MOLTO LUNGA"), id);
  EXPECT_EQ(list.key(id), u"Caff\u00E8 Nero, una chiave molto lunga");
  EXPECT_EQ(list.find(u"CAFFE NERO, UNA CHIAVE MOLTO LUNGA"), kNoItem);
}

TEST(KeyedList, Signs_beside_the_letters_differ) {
  List list(&fold);
  // 20 (hexadecimal) apart as a letter's two cases are, but no letters.
  list.insert(0, number(1), u"@[\\]^_");
  EXPECT_EQ(list.find(u"`{|}~\x7F"), kNoItem);
}

TEST(KeyedList, The_empty_text_and_character_0_are_keys) {
  List list(&fold);
  const ItemId empty = list.insert(0, number(1), u"");
  const ItemId zero = list.insert(1, number(2), std::u16string_view(u"\0", 1));
  const ItemId zeros = list.insert(2, number(3), std::u16string_view(u"\0\0", 2));
  EXPECT_EQ(list.find(u""), empty);
  EXPECT_EQ(list.find(std::u16string_view(u"\0", 1)), zero);
  EXPECT_EQ(list.find(std::u16string_view(u"\0\0", 2)), zeros);
  EXPECT_EQ(list.insert(3, number(4), u""), kNoItem);
  EXPECT_EQ(list.size(), 3U);
}

TEST(KeyedList, A_taken_key_leaves_the_value_with_the_caller) {
  List list(&fold);
  list.insert(0, number(1), u"a");
  auto second = number(2);
  EXPECT_EQ(list.insert(0, std::move(second), u"A"), kNoItem);
  ASSERT_NE(second, nullptr);
  EXPECT_EQ(*second, 2);
}

TEST(KeyedList, Values_stay_in_place_while_others_come_and_go) {
  List list(&fold);
  const ItemId id = list.insert(0, number(7));
  const auto* place = &list.value(id);
  for (int i = 0; i < 3000; ++i) list.insert(0, number(i));
  for (int i = 0; i < 2000; ++i) list.erase(list.at(0));
  EXPECT_EQ(&list.value(id), place);
  EXPECT_EQ(list.position_of(id), list.size() - 1);
}

TEST(KeyedList, Numbers_of_removed_items_are_given_out_again) {
  List list(&fold);
  const ItemId first = list.insert(0, number(1), u"a");
  list.erase(first);
  EXPECT_EQ(list.insert(0, number(2), u"b"), first);
  EXPECT_EQ(list.find(u"a"), kNoItem);
}

TEST(KeyedList, A_million_keys_are_found) {
  List list(&fold);
  constexpr int kCount = 1000000;
  const auto key_of = [](int i) {
    std::u16string key = u"key        ";
    for (std::size_t at = key.size(); i > 0; i /= 10)
      key[--at] = static_cast<char16_t>(u'0' + i % 10);
    return key;
  };
  for (int i = 0; i < kCount; ++i) list.insert(list.size(), number(i), key_of(i));
  for (int i = 0; i < kCount; i += 7) {
    const ItemId id = list.find(key_of(i));
    ASSERT_NE(id, kNoItem);
    ASSERT_EQ(*list.value(id), i);
    ASSERT_EQ(list.position_of(id), static_cast<std::size_t>(i));
  }
}

// What a value's end sets off may use the list that it was in.
TEST(KeyedList, A_value_ends_after_its_removal_is_complete) {
  struct Watcher {
    KeyedList<std::shared_ptr<Watcher>>* list;
    std::size_t* size_seen;
    ~Watcher() { *size_seen = list->size(); }
  };
  KeyedList<std::shared_ptr<Watcher>> list(&fold);
  std::size_t size_seen = 99;
  const ItemId id = list.insert(0, std::shared_ptr<Watcher>(new Watcher{&list, &size_seen}), u"k");
  list.erase(id);
  EXPECT_EQ(size_seen, 0U);
}

}  // namespace
}  // namespace qv::native::ordered
