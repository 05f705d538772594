// A collection saved to and loaded from a property bag: "Items", the number of items, and for each
// position n "Key"n and "Item"n. "Items" is left out where it is 0, the keys where there are none.
//
// Keys are written by position among the keys, items by position among the items: sound where every
// item has a key or none has. Where only some have, keys go to wrong items, and the error of a
// position that the keys do not have is raised.
#pragma once

#include <windows.h>
// ocidl.h needs windows.h before it.
#include <ocidl.h>

#include "automation/dispatch.h"

namespace qv::collections {

class kwCollection;

// What hosts use is IPersistPropertyBag. A client without it (a script) calls the same late bound:
// WriteProperties and ReadProperties, with the platform's bag or any object that has WriteProperty
// and ReadProperty. Both are called with all their arguments, since a script's own class knows no
// optional ones.
struct _Persistence : IPersistPropertyBag {
  virtual HRESULT STDMETHODCALLTYPE WriteProperties(IDispatch* bag) = 0;
  virtual HRESULT STDMETHODCALLTYPE ReadProperties(IDispatch* bag) = 0;
};
inline constexpr IID kPersistenceId = {
    0xb1d0a2c7, 0x64de, 0x4a35, {0x9e, 0x0c, 0x57, 0x3f, 0x18, 0xd2, 0x6b, 0x90}};
dispatch::MemberTable persistence_members() noexcept;

// Answers for all three interfaces of the object whose implementation the collection is;
// E_NOINTERFACE for any other.
HRESULT query_persistence(kwCollection& collection, IUnknown& object, REFIID id,
                          void** found) noexcept;

}  // namespace qv::collections
