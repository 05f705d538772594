// A collection saved to and loaded from a property bag: "Items", the number of items, and for each
// position n "Key"n and "Item"n.
#pragma once

#include <windows.h>
// ocidl.h needs windows.h before it.
#include <ocidl.h>

#include "automation/variant.h"

namespace qv::collections {

class kwCollection;

// A place for named values.
class PropertyStore {
 public:
  PropertyStore() = default;
  PropertyStore(const PropertyStore&) = delete;
  PropertyStore& operator=(const PropertyStore&) = delete;
  virtual ~PropertyStore() = default;

  // Without a default (missing), a value is always stored; an equal one is not. What is absent
  // reads as the default, and is an error without one.
  virtual void write(const Text& name, const Variant& value, const Variant& default_value) = 0;
  virtual Variant read(const Text& name, const Variant& default_value) = 0;
};

// Keys are written by position among the keys, items by position among the items: sound where every
// item has a key or none has. Where only some have, the store's or the collection's error is
// raised.
void write_properties(const kwCollection& collection, PropertyStore& store);
void read_properties(kwCollection& collection, PropertyStore& store);

// The same with a bag: one with the platform's IPropertyBag, or any object with the late-bound
// members WriteProperty and ReadProperty. 430 for an object that is neither.
void save_collection(const kwCollection& collection, IUnknown* bag);
// `log` may be null.
void load_collection(kwCollection& collection, IUnknown* bag, IErrorLog* log);

// Answers for IPersist and IPersistPropertyBag of the object whose implementation that is;
// E_NOINTERFACE for any other.
HRESULT property_bag_persistence(kwCollection& collection, IUnknown& object, REFIID id,
                                 void** found) noexcept;

}  // namespace qv::collections
