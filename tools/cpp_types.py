"""How the types of the interface description look in C++: in the interfaces, in the module
functions, and as kinds of late-bound arguments."""

import re
from dataclasses import dataclass

# type: (in the interfaces, in module functions, Automation's mark)
SCALARS = {
    "BSTR": ("BSTR", "Text", "VT_BSTR"),
    "long": ("LONG", "Long", "VT_I4"),
    "short": ("SHORT", "Integer", "VT_I2"),
    "VARIANT_BOOL": ("VARIANT_BOOL", "Boolean", "VT_BOOL"),
    "unsigned char": ("BYTE", "Byte", "VT_UI1"),
    "float": ("FLOAT", "Single", "VT_R4"),
    "double": ("DOUBLE", "Double", "VT_R8"),
    "DATE": ("DATE", "Date", "VT_DATE"),
    "CURRENCY": ("CY", "Currency", "VT_CY"),
}


@dataclass
class CppType:
    raw: str  # in the interfaces, by value
    module: str  # in module functions
    by_value: str  # kind of late-bound argument
    by_reference: str
    as_result: str


def cpp_type(library, name):
    if name in {e.name for e in library.enumerations}:
        name = "long"
    if name in SCALARS:
        raw, module, mark = SCALARS[name]
        return CppType(raw, module, f"In<{mark}>", f"Ref<{mark}>", f"Out<{mark}>")
    if name == "VARIANT":
        return CppType("VARIANT", "Variant", "InVariant", "RefVariant", "OutVariant")
    if name == "IUnknown*":
        return CppType("IUnknown*", "Object<IUnknown>", "", "", "Out<VT_UNKNOWN>")
    array = re.fullmatch(r"SAFEARRAY\((.+)\)", name)
    if array:
        element = cpp_type(library, array[1])
        mark = "VT_VARIANT" if array[1] == "VARIANT" else SCALARS[array[1]][2]
        return CppType("SAFEARRAY*", f"Array<{element.module}>", "", f"RefArray<{mark}>", "")
    if name.endswith("*"):
        interface = name[:-1]
        return CppType(
            name,
            f"Object<{interface}>",
            f"InObject<{interface}>",
            f"RefObject<{interface}>",
            f"OutObject<{interface}>",
        )
    if name in {r.name for r in library.records}:
        return CppType(name, name, "", f"RefRecord<{name}>", f"OutRecord<{name}>")
    raise ValueError(f"no C++ form for the type {name}")


def method_name(operation):
    """The name of the operation in the C++ interface."""
    return operation.implementation_name()


def raw_parameters(library, operation):
    """The C++ parameters of the operation in the interface, as (type, name)."""
    out = []
    for number, parameter in enumerate(operation.parameters, 1):
        raw = cpp_type(library, parameter.type).raw
        out.append((raw + ("*" if parameter.by_reference else ""), f"a{number}"))
    if operation.result:
        out.append((cpp_type(library, operation.result.type).raw + "*", "result"))
    return out


def guid_initializer(guid):
    a, b, c, d, e = guid.split("-")
    tail = ", ".join(f"0x{(d + e)[i:i + 2]}" for i in range(0, 16, 2))
    return f"{{0x{a}, 0x{b}, 0x{c}, {{{tail}}}}}"


def guid_macro(guid):
    a, b, c, d, e = guid.split("-")
    tail = ", ".join(f"0x{(d + e)[i:i + 2]}" for i in range(0, 16, 2))
    return f"0x{a}, 0x{b}, 0x{c}, {tail}"


def wide(text):
    escaped = text.replace("\\", "\\\\").replace('"', '\\"').replace("\0", "\\0")
    return f'L"{escaped}"'
