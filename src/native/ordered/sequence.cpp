#include "native/ordered/sequence.h"

#include <algorithm>
#include <numeric>

namespace qv::native::ordered {
namespace {

// Room for `more` further elements, growing geometrically.
template <class Element>
void reserve_more(std::vector<Element>& elements, std::size_t more) {
  const std::size_t needed = elements.size() + more;
  if (needed > elements.capacity()) elements.reserve(std::max(needed, 2 * elements.capacity()));
}

template <class Row, class Element>
void insert_in_row(Row& row, std::uint32_t count, std::uint32_t at, Element element) noexcept {
  std::copy_backward(row.begin() + at, row.begin() + count, row.begin() + count + 1);
  row[at] = element;
}

template <class Row>
void erase_from_row(Row& row, std::uint32_t count, std::uint32_t at) noexcept {
  std::copy(row.begin() + at + 1, row.begin() + count, row.begin() + at);
}

}  // namespace

Sequence::Sequence() : leaves_(1) {}

Sequence::Place Sequence::place_of(std::size_t position) const noexcept {
  auto left = static_cast<std::uint32_t>(position);
  Node node = root_;
  for (unsigned level = height_; level > 0; --level) {
    const Inner& inner = inners_[node];
    std::uint32_t slot = 0;
    // The last child takes the position behind its last item too, where an insertion may go.
    while (slot + 1 < inner.count && left >= inner.sizes[slot]) left -= inner.sizes[slot++];
    node = inner.children[slot];
  }
  return {node, left};
}

Sequence::Place Sequence::place_of_item(ItemId id) const noexcept {
  const Node node = leaf_of_[id];
  const Leaf& leaf = leaves_[node];
  std::uint32_t index = 0;
  while (leaf.items[index] != id) ++index;
  return {node, index};
}

std::uint32_t Sequence::slot_of(const Inner& parent, Node child) const noexcept {
  // Most calls are about the end of the sequence.
  std::uint32_t slot = parent.count - 1;
  while (parent.children[slot] != child) --slot;
  return slot;
}

std::size_t Sequence::position_of(ItemId id) const noexcept {
  const Place place = place_of_item(id);
  std::size_t position = place.index;
  Node node = place.leaf;
  for (Node parent = leaves_[node].parent; parent != kNone; parent = inners_[node].parent) {
    const Inner& inner = inners_[parent];
    const auto slot = static_cast<std::ptrdiff_t>(slot_of(inner, node));
    position = std::accumulate(inner.sizes.begin(), inner.sizes.begin() + slot, position);
    node = parent;
  }
  return position;
}

Sequence::Node& Sequence::parent_of(unsigned level, Node node) noexcept {
  return level == 0 ? leaves_[node].parent : inners_[node].parent;
}

std::uint32_t Sequence::count_of(unsigned level, Node node) const noexcept {
  return level == 0 ? leaves_[node].count : inners_[node].count;
}

// Adds `step` (which may stand for -1) to the sizes above a leaf.
void Sequence::count_up(Node leaf, std::uint32_t step) noexcept {
  Node node = leaf;
  for (Node parent = leaves_[node].parent; parent != kNone; parent = inners_[node].parent) {
    Inner& inner = inners_[parent];
    inner.sizes[slot_of(inner, node)] += step;
    node = parent;
  }
}

// Every level may have to be split, and the root too.
void Sequence::reserve_for_split() {
  if (free_leaf_ == kNone) reserve_more(leaves_, 1);
  reserve_more(inners_, height_ + 1);
}

Sequence::Node Sequence::new_leaf() noexcept {
  if (free_leaf_ == kNone) {
    leaves_.emplace_back();
    return static_cast<Node>(leaves_.size() - 1);
  }
  const Node leaf = free_leaf_;
  free_leaf_ = leaves_[leaf].parent;
  leaves_[leaf].count = 0;
  return leaf;
}

Sequence::Node Sequence::new_inner() noexcept {
  if (free_inner_ == kNone) {
    inners_.emplace_back();
    return static_cast<Node>(inners_.size() - 1);
  }
  const Node inner = free_inner_;
  free_inner_ = inners_[inner].parent;
  inners_[inner].count = 0;
  return inner;
}

void Sequence::insert(std::size_t position, ItemId id) {
  if (id >= leaf_of_.size()) {
    reserve_more(leaf_of_, id + 1 - leaf_of_.size());
    leaf_of_.resize(id + 1);
  }
  Place place = place_of(position);
  if (leaves_[place.leaf].count == kLeafCapacity) {
    reserve_for_split();
    // What is built by adding at the end gets full leaves.
    const std::uint32_t keep = position == size_ ? kLeafCapacity : kLeafCapacity / 2;
    const Node right = split_leaf(place.leaf, keep);
    if (place.index >= keep) place = {right, place.index - keep};
  }
  Leaf& leaf = leaves_[place.leaf];
  insert_in_row(leaf.items, leaf.count, place.index, id);
  ++leaf.count;
  leaf_of_[id] = place.leaf;
  count_up(place.leaf, 1);
  ++size_;
}

// Moves what lies behind the first `keep` items of a full leaf into a new leaf behind it.
Sequence::Node Sequence::split_leaf(Node left, std::uint32_t keep) noexcept {
  const Node right = new_leaf();
  Leaf& from = leaves_[left];
  Leaf& to = leaves_[right];
  std::copy(from.items.begin() + keep, from.items.begin() + from.count, to.items.begin());
  to.count = from.count - keep;
  from.count = keep;
  for (std::uint32_t i = 0; i < to.count; ++i) leaf_of_[to.items[i]] = right;
  attach(0, left, right, keep, to.count);
  return right;
}

// Puts the new node `right` behind `left`, of which it was split off; their sizes are these now.
void Sequence::attach(unsigned level, Node left, Node right, std::uint32_t left_size,
                      std::uint32_t right_size) noexcept {
  Node parent = parent_of(level, left);
  if (parent == kNone) {
    parent = new_inner();
    inners_[parent].parent = kNone;
    inners_[parent].count = 1;
    inners_[parent].children[0] = left;
    parent_of(level, left) = parent;
    root_ = parent;
    ++height_;
  }
  std::uint32_t slot = slot_of(inners_[parent], left);
  inners_[parent].sizes[slot] = left_size;
  if (inners_[parent].count == kInnerCapacity) {
    const std::uint32_t kept = kInnerCapacity / 2;
    // The sizes must be right before the parent's own are taken.
    inners_[parent].sizes[slot] += right_size;
    const Node second = split_inner(level + 1, parent);
    if (slot >= kept) {
      parent = second;
      slot -= kept;
    }
    inners_[parent].sizes[slot] = left_size;
  }
  Inner& inner = inners_[parent];
  insert_in_row(inner.children, inner.count, slot + 1, right);
  insert_in_row(inner.sizes, inner.count, slot + 1, right_size);
  ++inner.count;
  parent_of(level, right) = parent;
}

Sequence::Node Sequence::split_inner(unsigned level, Node left) noexcept {
  const Node right = new_inner();
  Inner& from = inners_[left];
  Inner& to = inners_[right];
  const std::uint32_t keep = kInnerCapacity / 2;
  std::copy(from.children.begin() + keep, from.children.begin() + from.count, to.children.begin());
  std::copy(from.sizes.begin() + keep, from.sizes.begin() + from.count, to.sizes.begin());
  to.count = from.count - keep;
  from.count = keep;
  for (std::uint32_t i = 0; i < to.count; ++i) parent_of(level - 1, to.children[i]) = right;
  const auto sum = [](const Inner& inner) {
    return std::accumulate(inner.sizes.begin(), inner.sizes.begin() + inner.count, 0U);
  };
  attach(level, left, right, sum(from), sum(to));
  return right;
}

void Sequence::erase(Place place) noexcept {
  Leaf& leaf = leaves_[place.leaf];
  erase_from_row(leaf.items, leaf.count, place.index);
  --leaf.count;
  --size_;
  count_up(place.leaf, static_cast<std::uint32_t>(-1));
  tidy(0, place.leaf);
}

// Keeps the tree low: a node that holds nothing goes, and neighbours that together fill no more
// than half a node become one.
void Sequence::tidy(unsigned level, Node node) noexcept {
  const Node parent = parent_of(level, node);
  if (parent == kNone) return lower_root();
  const std::uint32_t half = (level == 0 ? kLeafCapacity : kInnerCapacity) / 2;
  const std::uint32_t count = count_of(level, node);
  if (count > half) return;
  const Inner& above = inners_[parent];
  const std::uint32_t slot = slot_of(above, node);
  const auto fits = [&](std::uint32_t sibling) {
    return count + count_of(level, above.children[sibling]) <= half;
  };
  if (count == 0) {
    detach(level, parent, slot);
  } else if (slot + 1 < above.count && fits(slot + 1)) {
    merge(level, parent, slot);
  } else if (slot > 0 && fits(slot - 1)) {
    merge(level, parent, slot - 1);
  } else {
    return;
  }
  tidy(level + 1, parent);
}

// Moves all that the node right of that slot holds into the node at it.
void Sequence::merge(unsigned level, Node parent, std::uint32_t left_slot) noexcept {
  Inner& above = inners_[parent];
  const Node left = above.children[left_slot];
  const Node right = above.children[left_slot + 1];
  if (level == 0) {
    Leaf& to = leaves_[left];
    const Leaf& from = leaves_[right];
    for (std::uint32_t i = 0; i < from.count; ++i) leaf_of_[from.items[i]] = left;
    std::copy(from.items.begin(), from.items.begin() + from.count, to.items.begin() + to.count);
    to.count += from.count;
  } else {
    Inner& to = inners_[left];
    const Inner& from = inners_[right];
    for (std::uint32_t i = 0; i < from.count; ++i) parent_of(level - 1, from.children[i]) = left;
    std::copy(from.children.begin(), from.children.begin() + from.count,
              to.children.begin() + to.count);
    std::copy(from.sizes.begin(), from.sizes.begin() + from.count, to.sizes.begin() + to.count);
    to.count += from.count;
  }
  above.sizes[left_slot] += above.sizes[left_slot + 1];
  detach(level, parent, left_slot + 1);
}

void Sequence::detach(unsigned level, Node parent, std::uint32_t slot) noexcept {
  Inner& above = inners_[parent];
  const Node node = above.children[slot];
  erase_from_row(above.children, above.count, slot);
  erase_from_row(above.sizes, above.count, slot);
  --above.count;
  Node& first_free = level == 0 ? free_leaf_ : free_inner_;
  parent_of(level, node) = first_free;
  first_free = node;
}

// A root with one child gives way to it.
void Sequence::lower_root() noexcept {
  while (height_ > 0 && inners_[root_].count == 1) {
    const Node old = root_;
    root_ = inners_[old].children[0];
    --height_;
    parent_of(height_, root_) = kNone;
    inners_[old].parent = free_inner_;
    free_inner_ = old;
  }
}

}  // namespace qv::native::ordered
