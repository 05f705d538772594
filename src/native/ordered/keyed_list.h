// An ordered list of values, each with a key or without: look-up by key and addition in constant
// time, access, insertion and removal by position in logarithmic time.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "native/ordered/folded_text.h"
#include "native/ordered/key_index.h"
#include "native/ordered/sequence.h"

namespace qv::native::ordered {

// Keys are told apart without regard to case and kept as they were given. Positions count from 0.
// At most 2^32 - 9 items. Value must be movable without throwing. A value is destroyed only after
// the list is whole again; what its end sets off may use the list.
template <class Value>
class KeyedList {
 public:
  explicit KeyedList(FoldCharacter fold) : fold_(fold) {}
  KeyedList(const KeyedList&) = delete;
  KeyedList& operator=(const KeyedList&) = delete;
  ~KeyedList() {
    order_.for_each([this](ItemId id) { end_node(node(id)); });
    for (std::size_t chunk = 0; chunk < chunks_.size(); ++chunk) release(chunks_[chunk]);
  }

  std::size_t size() const noexcept { return order_.size(); }
  // kNoItem where there is none.
  ItemId find(std::u16string_view key) const noexcept {
    return find_hashed(key, folded_hash(key, fold_));
  }
  // position < size(); the item must be in.
  ItemId at(std::size_t position) const noexcept { return order_.at(position); }
  std::size_t position_of(ItemId id) const noexcept { return order_.position_of(id); }
  // The value stays where it is for as long as it is in.
  Value& value(ItemId id) noexcept { return *node(id).value(); }
  const Value& value(ItemId id) const noexcept { return *node(id).value(); }
  std::optional<std::u16string_view> key(ItemId id) const noexcept {
    const Node& found = node(id);
    if (found.key_length == kNoKey) return std::nullopt;
    return std::u16string_view(found.key_characters(), found.key_length);
  }

  // position <= size(). The new item, or kNoItem where the key is taken: then, and when memory is
  // short and it throws, nothing has changed and the value is still the caller's.
  ItemId insert(std::size_t position, Value&& value,
                std::optional<std::u16string_view> key = std::nullopt) {
    const std::uint32_t hash = key ? folded_hash(*key, fold_) : 0;
    if (key && find_hashed(*key, hash) != kNoItem) return kNoItem;
    if (key) index_.reserve_one();
    const ItemId id = next_id();
    Node& fresh = node(id);
    const ItemId next_free = first_free_ == id ? fresh.next_free() : first_free_;
    KeyRoom room(key);
    order_.insert(position, id);

    std::construct_at(fresh.value(), std::move(value));
    fresh.take_key(key, hash, room);
    if (key) index_.insert(hash, id);
    if (first_free_ == id) {
      first_free_ = next_free;
    } else {
      ++used_ids_;
    }
    for (std::size_t* cursor : cursors_) {
      if (position < *cursor) ++*cursor;
    }
    return id;
  }

  // The item must be in; its value is the caller's now.
  Value erase(ItemId id) noexcept {
    const std::size_t position = cursors_.empty() ? 0 : order_.position_of(id);
    return take_out(id, order_.place_of_item(id), position);
  }
  // position < size().
  Value erase_at(std::size_t position) noexcept {
    const Sequence::Place place = order_.place_of(position);
    return take_out(order_.item_at(place), place, position);
  }

  // A cursor is a number of items passed. While it is attached it follows its place: items that go
  // from or come to the stretch passed move it.
  void attach_cursor(std::size_t& cursor) { cursors_.push_back(&cursor); }
  void detach_cursor(const std::size_t& cursor) noexcept { std::erase(cursors_, &cursor); }

 private:
  static constexpr std::uint32_t kNoKey = 0xFFFFFFFF;
  // A node fills one line of the cache, with the key in what the value and the numbers leave.
  static constexpr std::size_t kNode_bytes = 64;
  static constexpr std::size_t kInlineKey_bytes =
      kNode_bytes - 2 * sizeof(std::uint32_t) - (sizeof(Value) + 7) / 8 * 8;
  static constexpr std::size_t kInlineKey_characters = kInlineKey_bytes / sizeof(char16_t);
  static_assert(sizeof(Value) <= 40);
  static_assert(alignof(Value) <= 8);

  // Room for a key that does not fit into its node, until a node takes it.
  struct KeyRoom {
    explicit KeyRoom(const std::optional<std::u16string_view>& key) {
      if (key && key->size() > kInlineKey_characters) {
        characters = std::make_unique_for_overwrite<char16_t[]>(key->size());
      }
    }
    std::unique_ptr<char16_t[]> characters;
  };

  struct alignas(kNode_bytes) Node {
    alignas(8) std::byte value_bytes[sizeof(Value)];
    alignas(8) std::uint32_t hash;
    std::uint32_t key_length;  // kNoKey: no key
    std::byte key_bytes[kInlineKey_bytes];

    Value* value() noexcept { return std::launder(reinterpret_cast<Value*>(value_bytes)); }
    const Value* value() const noexcept {
      return std::launder(reinterpret_cast<const Value*>(value_bytes));
    }
    char16_t* key_elsewhere() const noexcept {
      char16_t* characters = nullptr;
      std::memcpy(&characters, key_bytes, sizeof(characters));
      return characters;
    }
    const char16_t* key_characters() const noexcept {
      if (key_length > kInlineKey_characters) return key_elsewhere();
      return reinterpret_cast<const char16_t*>(key_bytes);
    }
    void take_key(const std::optional<std::u16string_view>& key, std::uint32_t key_hash,
                  KeyRoom& room) noexcept {
      hash = key_hash;
      key_length = key ? static_cast<std::uint32_t>(key->size()) : kNoKey;
      if (!key || key->empty()) return;
      void* target = key_bytes;
      if (room.characters != nullptr) {
        char16_t* characters = room.characters.release();
        std::memcpy(key_bytes, &characters, sizeof(characters));
        target = characters;
      }
      std::memcpy(target, key->data(), key->size() * sizeof(char16_t));
    }
    // In a node that is not in use, the hash is the number of the next such one.
    ItemId next_free() const noexcept { return hash; }
    void set_next_free(ItemId id) noexcept { hash = id; }
  };
  static_assert(sizeof(Node) == kNode_bytes);

  // Nodes never move. They lie in chunks of 8, 8, 16, 32...: item `id` is in the chunk that the
  // highest bit of id / 8 names.
  static constexpr std::size_t kFirstChunk_nodes = 8;

  static std::size_t chunk_of(ItemId id) noexcept {
    return static_cast<std::size_t>(std::bit_width(id / kFirstChunk_nodes));
  }
  static std::size_t chunk_start(std::size_t chunk) noexcept {
    return chunk == 0 ? 0 : kFirstChunk_nodes << (chunk - 1);
  }
  static std::size_t chunk_nodes(std::size_t chunk) noexcept {
    return std::max(kFirstChunk_nodes, chunk_start(chunk));
  }

  Node& node(ItemId id) const noexcept {
    const std::size_t chunk = chunk_of(id);
    return chunks_[chunk][id - chunk_start(chunk)];
  }
  static void release(Node* chunk) noexcept {
    ::operator delete(chunk, std::align_val_t(alignof(Node)));
  }

  ItemId find_hashed(std::u16string_view key, std::uint32_t hash) const noexcept {
    return index_.find(hash, [&](ItemId id) {
      const Node& candidate = node(id);
      return folded_equal(key, {candidate.key_characters(), candidate.key_length}, fold_);
    });
  }

  // A number whose node exists and is not in use.
  ItemId next_id() {
    if (first_free_ != kNoItem) return first_free_;
    const std::size_t chunk = chunk_of(used_ids_);
    if (chunks_[chunk] == nullptr) {
      chunks_[chunk] = static_cast<Node*>(
          ::operator new(chunk_nodes(chunk) * sizeof(Node), std::align_val_t(alignof(Node))));
    }
    return used_ids_;
  }

  // The position matters only to cursors.
  Value take_out(ItemId id, Sequence::Place place, std::size_t position) noexcept {
    Node& gone = node(id);
    __builtin_prefetch(&gone);
    for (std::size_t* cursor : cursors_) {
      if (position < *cursor) --*cursor;
    }
    order_.erase(place);
    if (gone.key_length != kNoKey) index_.erase(gone.hash, id);
    Value value = std::move(*gone.value());
    end_node(gone);
    gone.set_next_free(first_free_);
    first_free_ = id;
    return value;
  }

  static void end_node(Node& gone) noexcept {
    if (gone.key_length != kNoKey && gone.key_length > kInlineKey_characters) {
      delete[] gone.key_elsewhere();
    }
    std::destroy_at(gone.value());
  }

  FoldCharacter fold_;
  std::array<Node*, 30> chunks_{};
  ItemId first_free_ = kNoItem;
  ItemId used_ids_ = 0;  // numbers given out so far, the free ones included
  KeyIndex index_;
  Sequence order_;
  std::vector<std::size_t*> cursors_;
};

}  // namespace qv::native::ordered
