#include "native/sorting/text_order.h"

#include <algorithm>
#include <vector>

#include "native/sorting/radix_sort.h"

namespace qv::native::sorting {
namespace {

constexpr std::size_t kKeyCharacters = 4;
// Groups below it are compared text by text.
constexpr std::size_t kFewestForKeys = 12;

// The characters from `depth` on as a number in their order; 0 stands for those behind the end.
std::uint64_t key_at(std::u16string_view text, std::size_t depth) {
  std::uint64_t key = 0;
  for (std::size_t i = 0; i < kKeyCharacters; ++i) {
    key = key << 16 | (depth + i < text.size() ? text[depth + i] : 0U);
  }
  return key;
}

// Texts that agree in their first `depth` characters, and are at least so long.
struct Group {
  std::span<KeyedIndex> items;
  std::size_t depth;
};

class TextSorter {
 public:
  explicit TextSorter(std::span<const std::u16string_view> texts) : texts_(texts) {}

  void sort(std::span<KeyedIndex> items) {
    waiting_.push_back({items, 0});
    while (!waiting_.empty()) {
      const Group group = waiting_.back();
      waiting_.pop_back();
      if (group.items.size() < kFewestForKeys) {
        sort_by_comparing(group);
      } else {
        sort_by_key(group);
      }
    }
  }

 private:
  std::u16string_view text_of(const KeyedIndex& item) const { return texts_[item.index]; }

  void sort_by_comparing(const Group& group) const {
    std::ranges::sort(group.items, {},
                      [&](const KeyedIndex& item) { return text_of(item).substr(group.depth); });
  }

  void sort_by_key(const Group& group) {
    for (KeyedIndex& item : group.items) item.key = key_at(text_of(item), group.depth);
    sort_keyed(group.items);
    for (auto begin = group.items.begin(); begin != group.items.end();) {
      const auto end = std::find_if(begin + 1, group.items.end(),
                                    [&](const KeyedIndex& item) { return item.key != begin->key; });
      if (end - begin > 1) sort_equal_keys({begin, end}, group.depth + kKeyCharacters);
      begin = end;
    }
  }

  // Texts that end before `depth` are less than those that go on, the shorter ones first: what the
  // others have in their place is character 0.
  void sort_equal_keys(std::span<KeyedIndex> items, std::size_t depth) {
    const auto going_on = std::partition(items.begin(), items.end(), [&](const KeyedIndex& item) {
      return text_of(item).size() < depth;
    });
    std::sort(items.begin(), going_on, [&](const KeyedIndex& a, const KeyedIndex& b) {
      return text_of(a).size() < text_of(b).size();
    });
    if (items.end() - going_on > 1) waiting_.push_back({{going_on, items.end()}, depth});
  }

  std::span<const std::u16string_view> texts_;
  std::vector<Group> waiting_;
};

}  // namespace

void order_texts(std::span<const std::u16string_view> texts, std::span<std::uint32_t> order) {
  std::vector<KeyedIndex> items(texts.size());
  for (std::uint32_t i = 0; i < items.size(); ++i) items[i].index = i;
  TextSorter(texts).sort(items);
  for (std::size_t k = 0; k < items.size(); ++k) order[k] = items[k].index;
}

}  // namespace qv::native::sorting
