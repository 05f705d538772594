// Property bags: named values in one String, which an application keeps in a file or a database
// field. docs/formats/property-bag-1.md and property-bag-2.md tell the bytes. Values equal to their
// default are not stored, so a reader must ask with the default that the writer used.
#pragma once

#include "propbag/property_store.h"

namespace qv::propbag {

// True as the result of a member means failure, told by the error state.
class QvtPropertyBag {
 public:
  Long Version = 0;

  // Refuses every buffer, with run-time error 9: buffers of this form are written and never read
  // back. Leaves the bag empty.
  Boolean Load(const Text& Buffer, Boolean v2);
  // Offset receives the position behind the value, 0 where there is none.
  Variant ReadProperty(const Text& PropertyName, const Variant& DefaultValue, Long& Offset) const;
  static Variant DefaultOf(const Variant& Var) { return PropertyStore::default_of(Var); }
  Boolean WriteProperty(const Variant& Value, const Text& PropertyName, Variant& DefaultValue,
                        Boolean v2);
  Text get_Flush() const;

 private:
  PropertyStore store_;
};

class QvtPropertyBag2 {
 public:
  Long Version = 0;

  Text EnumProperties() const { return store_.names(); }
  // An absent name is no failure.
  Boolean DeleteProperty(const Text& PropertyName);
  // A failure to write the new value is told by the error state alone.
  Boolean PropertyReplace(const Variant& Value, const Text& PropertyName, Variant& DefaultValue);
  Boolean PropertyExists(const Text& PropertyName) const {
    return store_.find(PropertyName).value > 0;
  }
  // An empty buffer is an empty bag with Version 512.
  Boolean Load(const Text& Buffer);
  Variant ReadProperty(const Text& PropertyName, const Variant& DefaultValue) const;
  static Variant DefaultOf(const Variant& Var) { return PropertyStore::default_of(Var); }
  Boolean WriteProperty(const Variant& Value, const Text& PropertyName, Variant& DefaultValue) {
    return store_.write(Value, PropertyName, DefaultValue);
  }
  Text get_Flush() const;

 private:
  PropertyStore store_;
};

}  // namespace qv::propbag
