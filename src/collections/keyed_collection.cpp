#include "collections/keyed_collection.h"

#include <utility>

#include "automation/late_bound.h"
#include "frame/error_state.h"

namespace qv::collections {
namespace {

// The error of an item that is not there becomes the pending one, as ignored errors do.
void leave_pending(Long error) {
  err().set({.number = error, .description = Text(run_time_error_text(error))});
}

}  // namespace

void kwCollection::Add(const Variant& Item, const Variant& Key, const Variant& Before,
                       const Variant& After) {
  const bool keyed = !Key.is_missing();
  const bool parts = !keys_ && items_.count() > 0 && keyed != all_keyed_;
  const bool first = items_.count() == 0;
  items_.add(Item, Key, Before, After);
  if (parts) part_keys();
  if (!keys_) {
    if (first) all_keyed_ = keyed;
    return;
  }
  if (keyed) keys_->add(Key, Key, Before, After);
}

void kwCollection::Remove(const Variant& Index) {
  items_.remove(Index);
  if (keys_ && keys_->count() > 0) keys_->remove(Index);
}

Boolean kwCollection::ItemAssign(const Variant& Index, Variant& Item) const {
  err().forget_error();
  Long error = 0;
  const Variant* found = items_.find(Index, error);
  if (found == nullptr) {
    leave_pending(error);
    return True;
  }
  return Boolean(!frame::attempt([&] { Item.assign(*found); }));
}

Boolean kwCollection::ItemExist(const Variant& Index) const {
  err().forget_error();
  return Boolean(items_.contains(Index));
}

void kwCollection::Clear() {
  // What the items' ends set off finds the collection empty.
  const Collection old_items = std::exchange(items_, Collection());
  const auto old_keys = std::exchange(keys_, std::nullopt);
}

Text kwCollection::get_Key(const Variant& Index) const {
  if (keys_) return keys_->item(Index).to_text();
  if (!all_keyed_) return Collection().item(Index).to_text();  // no keys: raises
  return items_.key(Index).value();
}

Long kwCollection::key_count() const noexcept {
  if (keys_) return keys_->count();
  return all_keyed_ ? items_.count() : 0;
}

// Gives the keys a collection of their own, with those of all items in order.
void kwCollection::part_keys() {
  Collection keys;
  for (Long position = 1; position <= items_.count(); ++position) {
    const auto text = items_.key(position);
    if (all_keyed_ && text) {
      const Variant key(*text);
      keys.add(key, key, Variant::missing(), Variant::missing());
    }
  }
  keys_ = std::move(keys);
}

Boolean ItemInCollection(const Object<IDispatch>& Coll, const Variant& Key) {
  err().forget_error();
  return Boolean(frame::attempt(
      [&] { static_cast<void>(late_bound::get(Coll, L"Item", {Key}).to_object()); }));
}

}  // namespace qv::collections
