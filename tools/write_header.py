"""Writes the header that C++ clients of the library include: interfaces, identifiers, constants."""

from cpp_types import cpp_type, guid_initializer, guid_macro, method_name, raw_parameters

HEAD = """\
// QvRtLibOle: the interfaces of QvRtLib for C++17, for any compiler with the platform's headers.
// Optional arguments have their default where a pointer is null. Constants stand in a namespace
// under their own name with a k in front: many are macros of the platform.
#pragma once

#include <windows.h>
// ocidl.h needs windows.h before it.
#include <ocidl.h>

#ifdef _MSC_VER
#define QVRT_INTERFACE(name, text) struct __declspec(uuid(text)) name : IDispatch
#else
#define QVRT_INTERFACE(name, text) struct name : IDispatch
#endif
#ifdef __CRT_UUID_DECL
#define QVRT_IDENTIFIER __CRT_UUID_DECL
#else
#define QVRT_IDENTIFIER(...)
#endif
"""


def number_literal(value):
    return "-2147483647 - 1" if value == "-2147483648" else value


def parameters_text(library, operation):
    types = [raw for raw, _ in raw_parameters(library, operation)]
    names = [p.name for p in operation.parameters] + ["Result"]
    return ", ".join(f"{raw} {name}" for raw, name in zip(types, names))


def interface_lines(library, interface):
    lines = [f"/// {interface.doc.summary}", f'QVRT_INTERFACE({interface.name}, "{interface.iid}") {{']
    for operation in interface.operations:
        lines.append(f"  /// {operation.doc.summary}")
        lines += [f"  /// {name}: {text}" for name, text in operation.doc.arguments.items()]
        lines.append(
            f"  virtual HRESULT STDMETHODCALLTYPE {method_name(operation)}"
            f"({parameters_text(library, operation)}) = 0;"
        )
    return [
        *lines,
        "};",
        f"QVRT_IDENTIFIER({interface.name}, {guid_macro(interface.iid)})",
        f"inline constexpr IID IID_{interface.name} = {guid_initializer(interface.iid)};",
        "",
    ]


def event_lines(coclass):
    events = coclass.events
    lines = [f"inline constexpr IID DIID_{events.name} = {guid_initializer(events.iid)};"]
    for event in events.operations:
        lines += [
            f"/// {event.doc.summary}",
            f"inline constexpr DISPID DISPID_{coclass.name}_{event.name} = {event.dispid};",
        ]
    return lines


def enumeration_lines(enumeration):
    lines = [f"/// {enumeration.doc.summary}", f"enum {enumeration.name} : LONG {{"]
    lines += [f"  k{name} = {number_literal(value)},  ///< {text}" for name, value, text in enumeration.values]
    return [*lines, "};", ""]


def client_header(library):
    out = [HEAD]
    for record in library.records:
        out += [f"/// {record.doc.summary}", f"struct {record.name} {{"]
        out += [f"  {cpp_type(library, kind).raw} {name};  ///< {text}" for kind, name, text in record.fields]
        out += ["};", ""]
    out += [f"struct {c.interface.name};" for c in library.classes] + [""]
    for coclass in library.classes:
        out += interface_lines(library, coclass.interface)
    for coclass in library.classes:
        out.append(f"inline constexpr CLSID CLSID_{coclass.name} = {guid_initializer(coclass.clsid)};")
        if coclass.events:
            out += event_lines(coclass)
    out += [
        f"inline constexpr GUID LIBID_{library.name} = {guid_initializer(library.guid)};",
        "",
        "namespace QvRtLib {",
        "",
    ]
    for enumeration in library.enumerations:
        out += enumeration_lines(enumeration)
    return "\n".join([*out, "}  // namespace QvRtLib", ""])
