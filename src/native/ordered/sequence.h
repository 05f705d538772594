// The order of items: a tree of the B+ kind whose inner nodes count the items below them, so that
// an item is found by its position, and a position by its item, in logarithmic time.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "native/ordered/key_index.h"

namespace qv::native::ordered {

// Items are numbers that the owner chooses, best without gaps: the sequence keeps one word for each
// number up to the greatest. Positions count from 0. At most 2^32 - 2 items.
class Sequence {
  using Node = std::uint32_t;  // index of a leaf or of an inner node, by the level it stands at

 public:
  // Where an item lies; good until the sequence changes.
  struct Place {
    Node leaf;
    std::uint32_t index;
  };

  Sequence();

  std::size_t size() const noexcept { return size_; }
  // position < size(); for insertion also position == size().
  Place place_of(std::size_t position) const noexcept;
  // The item must be in.
  Place place_of_item(ItemId id) const noexcept;
  ItemId item_at(Place place) const noexcept { return leaves_[place.leaf].items[place.index]; }
  // position < size().
  ItemId at(std::size_t position) const noexcept { return item_at(place_of(position)); }
  // The item must be in.
  std::size_t position_of(ItemId id) const noexcept;
  // position <= size(); the item must not be in. Without memory it throws and nothing has changed.
  void insert(std::size_t position, ItemId id);
  void erase(Place place) noexcept;

  // Calls visit(id) for every item in order.
  template <class Visit>
  void for_each(Visit&& visit) const {
    visit_below(height_, root_, visit);
  }

 private:
  static constexpr Node kNone = 0xFFFFFFFF;
  static constexpr std::uint32_t kLeafCapacity = 62;
  static constexpr std::uint32_t kInnerCapacity = 31;

  struct Leaf {
    std::uint32_t count = 0;
    Node parent = kNone;  // the next free one, in a leaf that is not in use
    std::array<ItemId, kLeafCapacity> items;
  };
  struct Inner {
    std::uint32_t count = 0;
    Node parent = kNone;
    std::array<Node, kInnerCapacity> children;
    std::array<std::uint32_t, kInnerCapacity> sizes;  // items below each child
  };

  template <class Visit>
  void visit_below(unsigned level, Node node, Visit& visit) const {
    if (level == 0) {
      const Leaf& leaf = leaves_[node];
      for (std::uint32_t i = 0; i < leaf.count; ++i) visit(leaf.items[i]);
      return;
    }
    const Inner& inner = inners_[node];
    for (std::uint32_t i = 0; i < inner.count; ++i) {
      visit_below(level - 1, inner.children[i], visit);
    }
  }

  std::uint32_t slot_of(const Inner& parent, Node child) const noexcept;
  Node& parent_of(unsigned level, Node node) noexcept;
  std::uint32_t count_of(unsigned level, Node node) const noexcept;
  void count_up(Node leaf, std::uint32_t step) noexcept;

  void reserve_for_split();
  Node new_leaf() noexcept;
  Node new_inner() noexcept;
  Node split_leaf(Node left, std::uint32_t keep) noexcept;
  void attach(unsigned level, Node left, Node right, std::uint32_t left_size,
              std::uint32_t right_size) noexcept;
  Node split_inner(unsigned level, Node left) noexcept;
  void tidy(unsigned level, Node node) noexcept;
  void merge(unsigned level, Node parent, std::uint32_t left_slot) noexcept;
  void detach(unsigned level, Node parent, std::uint32_t slot) noexcept;
  void lower_root() noexcept;

  std::vector<Leaf> leaves_;
  std::vector<Inner> inners_;
  std::vector<Node> leaf_of_;  // by item
  Node free_leaf_ = kNone;
  Node free_inner_ = kNone;
  Node root_ = 0;
  unsigned height_ = 0;  // levels of inner nodes above the leaves
  std::size_t size_ = 0;
};

}  // namespace qv::native::ordered
