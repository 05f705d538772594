// The server as the platform sees it: a loaded module with a type library.
#pragma once

#include <windows.h>

#include "automation/object.h"
#include "automation/text.h"

namespace qv::server {

HMODULE module() noexcept;
// The full name of the library's own file.
Text module_path();
// The type library inside that file.
HRESULT load_type_library(Object<ITypeLib>& library) noexcept;

// Lets an object that only has late-bound members stand in for an interface of the library that
// callers implement (a sort helper); null for any other interface. The object returned has one
// reference.
IUnknown* adapt_object(IDispatch* object, const IID& interface_id) noexcept;

}  // namespace qv::server
