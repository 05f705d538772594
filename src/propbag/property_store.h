// What both forms of property bag have: a directory of names, and the values behind it. The bytes
// are told in docs/formats/property-bag-2.md.
#pragma once

#include "automation/variant.h"

namespace qv::propbag {

// Failures are recorded under the name "QvPropertyBag" and the operation, whichever the form.
class PropertyStore {
 public:
  // Where a name stands. Its position among the values counts from 1; it is 0 for a name that is
  // not there, and negative after a failure that the error state tells of.
  struct Place {
    std::size_t entry = 0;  // in the directory, from 0
    Long value = 0;
  };
  Place find(const Text& name) const;

  // Every name as it is stored, in upper case, followed by character 0.
  Text names() const;
  // Moves the position behind the value. Raises what BufferTyped_Get raises.
  Variant read(Long& position) const;
  // True = failure. A value equal to its default is not stored; a missing default becomes the zero
  // of the value's type. A value that has no form leaves its name behind, at a position that holds
  // nothing.
  Boolean write(const Variant& value, const Text& name, Variant& default_value);
  // Takes a value out, and its name. Positions of the values behind it are corrected rightly for
  // the first value alone: the place where correcting begins is that of the value, not of its name.
  void remove(const Text& name, const Place& place);

  // Size of the directory, directory, values.
  Text contents() const;
  // Taken over as they are: what is wrong in them shows when a value is read.
  void assign(Text directory, Text values);

  // The zero of a value's type; an Integer 0 for types that have none of their own.
  static Variant default_of(const Variant& value);

 private:
  Boolean add_name(const Text& name);
  void shift_positions(std::size_t start, Long distance);

  // Both are texts whose characters stand for bytes, but a name keeps characters that no byte
  // string holds.
  Text directory_;
  Text values_;
};

}  // namespace qv::propbag
