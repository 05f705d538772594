// Objects of the library, for commands that are typed clients.
#pragma once

#include <windows.h>
// objbase.h needs windows.h before it.
#include <objbase.h>

#include "interfaces.h"

namespace qv::companion {

// Null where it can't be made. The thread must have entered an apartment.
template <class Interface>
Interface* create(const CLSID& class_id) {
  void* object = nullptr;
  CoCreateInstance(class_id, nullptr, CLSCTX_INPROC_SERVER, __uuidof(Interface), &object);
  return static_cast<Interface*>(object);
}

}  // namespace qv::companion
