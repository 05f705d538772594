// The library's one container, and how its own code makes and uses one.
#pragma once

#include <optional>

#include "automation/variant.h"
#include "collections/collection_persistence.h"
#include "interfaces.h"
#include "runtime/collection.h"

namespace qv::collections {

// Items in order with their keys: the language's collection, and a second one of the same kind that
// holds the key texts. The two are not aligned once only some items have keys; a position among the
// keys then is not the position of the item, and nothing repairs that.
class kwCollection {
 public:
  void Add(const Variant& Item, const Variant& Key, const Variant& Before, const Variant& After);
  Object<IUnknown> NewEnum() { return items_.new_enumerator(); }
  void Remove(const Variant& Index);
  Long Count() const noexcept { return items_.count(); }
  Variant get_Item(const Variant& Index) const { return items_.item(Index); }
  // True = not found; Item is left alone then.
  Boolean ItemAssign(const Variant& Index, Variant& Item) const;
  Boolean ItemExist(const Variant& Index) const;
  void Clear();
  Text get_Key(const Variant& Index) const;

  // Number of entries among the keys.
  Long key_count() const noexcept;

  // Saving and loading.
  HRESULT further_interface(IUnknown& object, REFIID id, void** found) noexcept {
    return query_persistence(*this, object, id, found);
  }
  static constexpr const IID& kFurtherMembersId = kPersistenceId;
  static dispatch::MemberTable further_members() noexcept { return persistence_members(); }

 private:
  void part_keys();

  Collection items_;
  // While every item has a key, or none has, the keys are those of the items and need no collection
  // of their own.
  bool all_keyed_ = false;
  std::optional<Collection> keys_;
};

// For the library's own code. Each works on any object of the interface, at best on one of ours;
// Nothing is run-time error 91.
Object<_kwCollection> make_collection();
void add(const Object<_kwCollection>& collection, const Variant& item);
void add(const Object<_kwCollection>& collection, const Variant& item, const Text& key);
Long count(const Object<_kwCollection>& collection);
// An index is a key or a position from 1.
Variant item(const Object<_kwCollection>& collection, const Variant& index);
bool exists(const Object<_kwCollection>& collection, const Variant& index);
void clear(const Object<_kwCollection>& collection);

// Does any object that has a member Item hold an object under that key or position?
Boolean ItemInCollection(const Object<IDispatch>& Coll, const Variant& Key);

}  // namespace qv::collections
