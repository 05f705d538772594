// A collection whose items carry a value each.
#pragma once

#include "automation/object.h"
#include "automation/variant.h"
#include "runtime/collection.h"

namespace qv::collections {

// The entry objects are the library's own and have no place in the type library: a caller uses
// their members Item and Value late bound.
class kwDictionary {
 public:
  // A Value left out is kept as the missing argument that it is.
  void Add(const Variant& Item, const Variant& Key, const Variant& Before, const Variant& After,
           const Variant& Value);
  Object<IUnknown> NewEnum() { return entries_.new_enumerator(); }
  void Remove(const Variant& Index) { entries_.remove(Index); }
  Long Count() const noexcept { return entries_.count(); }
  Variant get_Item(const Variant& Index) const { return entries_.item(Index); }
  Boolean ItemExist(const Variant& Index) const;
  void Clear();

 private:
  Collection entries_;
};

}  // namespace qv::collections
