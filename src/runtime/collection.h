// The language's own Collection: items in order, each under a key text or without one.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

#include "automation/variant.h"

namespace qv {

// Positions count from 1. Keys are told apart without regard to case. Where an index is asked for,
// a text is a key and anything else a position, rounded to a whole number.
//
// Errors of an index: 5 for an absent key, 9 for an absent position, 13 for what is neither text
// nor number, 6 for a number beyond a Long. When a member raises, nothing has changed.
//
// A Collection that is assigned or destroyed leaves its items to the enumerators that still walk
// them.
class Collection {
 public:
  Collection() noexcept;
  Collection(Collection&&) noexcept;
  Collection& operator=(Collection&&) noexcept;
  ~Collection();

  Long count() const noexcept;
  // Each of the last three may be missing. 13 for a key that is no text, 457 for one that is there
  // already, 5 for `before` and `after` together.
  void add(const Variant& item, const Variant& key, const Variant& before, const Variant& after);
  void remove(const Variant& index);
  // Valid until the item goes.
  const Variant& item(const Variant& index) const;
  // What item() raises, as a number; null for none. It raises nothing itself.
  const Variant* find(const Variant& index, Long& error) const noexcept;
  bool contains(const Variant& index) const noexcept;
  // The key of an item, as it was given; nullopt for an item without one.
  std::optional<std::wstring_view> key(const Variant& index) const;

  // Walks the items in order. It follows the collection's changes: what is added behind the item
  // last given out is given out too, what is removed ahead is not, and a removal behind it skips
  // nothing.
  Object<IUnknown> new_enumerator();

 private:
  class Items;
  class Enumerator;

  Items& items();
  // kNoItem of the container where there is none, with the error number of that.
  std::uint32_t locate(const Variant& index, Long& error) const;

  std::shared_ptr<Items> items_;  // made on first use
};

}  // namespace qv
