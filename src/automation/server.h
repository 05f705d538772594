// What the modules ask of the server that they live in: to stay loaded, and its own type library.
#pragma once

#include <oaidl.h>
#include <windows.h>

namespace qv::server {

// Objects, enumerators, class factories and locks are counted: while there is one, the library
// stays loaded.
void count_object(int step) noexcept;
// The description of an interface, class or record of the library's own type library.
HRESULT type_info_of(const GUID& id, ITypeInfo** info) noexcept;

}  // namespace qv::server
