// Collections as the library's own code uses them.
#include "automation/class_object.h"
#include "automation/foreign_error.h"
#include "class_tables.h"
#include "collections/keyed_collection.h"

namespace qv::collections {
namespace {

kwCollection* own_collection(const Object<_kwCollection>& collection) noexcept {
  return own<kwCollection>(collection, kkwCollectionInfo);
}

void add_item(const Object<_kwCollection>& collection, const Variant& item, const Variant& key) {
  const Variant none = Variant::missing();
  if (kwCollection* own = own_collection(collection)) return own->Add(item, key, none, none);
  Variant before = none;
  Variant after = none;
  check_foreign(collection, collection->Add(item.raw(), key.raw(), before.raw(), after.raw()));
}

}  // namespace

Object<_kwCollection> make_collection() {
  const Object<IUnknown> created(create_kwCollection());
  return Object<_kwCollection>::from(created.get());
}

void add(const Object<_kwCollection>& collection, const Variant& item) {
  add_item(collection, item, Variant::missing());
}

void add(const Object<_kwCollection>& collection, const Variant& item, const Text& key) {
  add_item(collection, item, key);
}

Long count(const Object<_kwCollection>& collection) {
  if (const kwCollection* own = own_collection(collection)) return own->Count();
  LONG counted = 0;
  check_foreign(collection, collection->Count(&counted));
  return counted;
}

Variant item(const Object<_kwCollection>& collection, const Variant& index) {
  if (const kwCollection* own = own_collection(collection)) return own->get_Item(index);
  Variant result;
  check_foreign(collection, collection->get_Item(index.raw(), result.raw()));
  return result;
}

bool exists(const Object<_kwCollection>& collection, const Variant& index) {
  if (const kwCollection* own = own_collection(collection)) return own->ItemExist(index);
  VARIANT_BOOL there = VARIANT_FALSE;
  check_foreign(collection, collection->ItemExist(index.raw(), &there));
  return there != VARIANT_FALSE;
}

void clear(const Object<_kwCollection>& collection) {
  if (kwCollection* own = own_collection(collection)) return own->Clear();
  check_foreign(collection, collection->Clear());
}

}  // namespace qv::collections
