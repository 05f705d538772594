#include "collections/dictionary.h"

#include <utility>

#include "collections/lemma.h"
#include "runtime/err.h"

namespace qv::collections {

void kwDictionary::Add(const Variant& Item, const Variant& Key, const Variant& Before,
                       const Variant& After, const Variant& Value) {
  entries_.add(make_lemma(Item, Value), Key, Before, After);
}

Boolean kwDictionary::ItemExist(const Variant& Index) const {
  err().forget_error();
  return Boolean(entries_.contains(Index));
}

void kwDictionary::Clear() {
  // What the entries' ends set off finds the dictionary empty.
  const Collection old = std::exchange(entries_, Collection());
}

}  // namespace qv::collections
