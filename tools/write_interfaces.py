"""Writes the C++ header of the interfaces, for the library itself and for typed clients."""

from cpp_types import cpp_type, guid_initializer, guid_macro, method_name, raw_parameters

HEAD = """// Generated from the interface description: do not edit.
// NOLINTBEGIN: names are those of the interface
#pragma once

#include <windows.h>
// ocidl.h needs windows.h before it.
#include <ocidl.h>

// Names of the interfaces that some headers of the platform define as macros.
#undef SetDefaultPrinter
"""


def interfaces_header(library):
    out = [HEAD]
    for record in library.records:
        out.append(f"struct {record.name} {{")
        out += [f"  {cpp_type(library, t).raw} {name};" for t, name, _ in record.fields]
        guid = guid_initializer(record.guid)
        out += ["};", f"inline constexpr GUID GUID_{record.name} = {guid};", ""]
    out += [f"struct {c.interface.name};" for c in library.classes] + [""]
    for coclass in library.classes:
        interface = coclass.interface
        out.append(f"struct {interface.name} : IDispatch {{")
        for operation in interface.operations:
            arguments = ", ".join(t for t, _ in raw_parameters(library, operation))
            out.append(
                f"  virtual HRESULT STDMETHODCALLTYPE {method_name(operation)}({arguments}) = 0;"
            )
        out += ["};", f"__CRT_UUID_DECL({interface.name}, {guid_macro(interface.iid)})", ""]
    for coclass in library.classes:
        out.append(
            f"inline constexpr CLSID CLSID_{coclass.name} = {guid_initializer(coclass.clsid)};"
        )
        if coclass.events:
            name, iid = coclass.events.name, coclass.events.iid
            out.append(f"inline constexpr IID DIID_{name} = {guid_initializer(iid)};")
            for event in coclass.events.operations:
                out.append(
                    f"inline constexpr DISPID DISPID_{coclass.name}_{event.name} = {event.dispid};"
                )
    for alias in library.aliases:
        out.append(f"inline constexpr IID IID_{alias.name} = {guid_initializer(alias.iid)};")
    out.append(f"inline constexpr GUID LIBID_{library.name} = {guid_initializer(library.guid)};")
    major, minor = library.version.split(".")
    out.append(f"inline constexpr WORD k{library.name}Major = {major};")
    out.append(f"inline constexpr WORD k{library.name}Minor = {minor};")
    out.append("// NOLINTEND")
    return "\n".join(out) + "\n"


def constants_header(library):
    """Enumerations as plain numbers, one namespace each; platform macros of the same names give
    way."""
    out = ["// Generated from the interface description: do not edit.", "#pragma once", ""]
    out += ["// NOLINTBEGIN: names are those of the interface"]
    out += ['#include "automation/types.h"', ""]
    for enumeration in library.enumerations:
        out.append(f"#undef {enumeration.name}")
        out += [f"#undef {name}" for name, _, _ in enumeration.values]
        out.append(f"namespace qv::{enumeration.name} {{")
        for name, value, _ in enumeration.values:
            literal = "-2147483647 - 1" if value == "-2147483648" else value
            out.append(f"inline constexpr Long {name} = {literal};")
        out += [f"}}  // namespace qv::{enumeration.name}", ""]
    return "\n".join(out + ["// NOLINTEND", ""])
