"""How the interface looks to a Visual Basic developer."""

import re

TYPES = {
    "BSTR": "String",
    "long": "Long",
    "short": "Integer",
    "VARIANT_BOOL": "Boolean",
    "unsigned char": "Byte",
    "float": "Single",
    "double": "Double",
    "DATE": "Date",
    "CURRENCY": "Currency",
    "VARIANT": "Variant",
    "IDispatch*": "Object",
    "IUnknown*": "Object",
}

# The language's own texts of the run-time errors that the library raises or records.
RUN_TIME_ERRORS = {
    5: "Invalid procedure call or argument",
    6: "Overflow",
    7: "Out of memory",
    9: "Subscript out of range",
    11: "Division by zero",
    13: "Type mismatch",
    52: "Bad file name or number",
    53: "File not found",
    55: "File already open",
    57: "Device I/O error",
    58: "File already exists",
    61: "Disk full",
    62: "Input past end of file",
    67: "Too many files",
    68: "Device unavailable",
    70: "Permission denied",
    71: "Disk not ready",
    74: "Can't rename with different drive",
    75: "Path/File access error",
    76: "Path not found",
    91: "Object variable or With block variable not set",
    94: "Invalid use of Null",
    429: "ActiveX component can't create object",
    438: "Object doesn't support this property or method",
    445: "Object doesn't support this action",
    449: "Argument not optional",
    450: "Wrong number of arguments or invalid property assignment",
    457: "This key is already associated with an element of this collection",
    20000: "General error of the library, or the system's text",
    20001: "The file is of a later version, or the filter could not be loaded",
    20002: "The check value does not agree",
    20003: "The temporary file can't be made",
    20004: "The folder structure can't be made",
    20005: "The data can't be compressed",
    20010: "Cancelled by the user",
}


def type_name(name):
    """(name of the type, True for an array)."""
    array = re.fullmatch(r"SAFEARRAY\((.+)\)", name)
    if array:
        return type_name(array[1])[0], True
    if name in TYPES:
        return TYPES[name], False
    return name.removesuffix("*").removeprefix("_"), False


def default_text(library, parameter):
    value = parameter.default
    if parameter.type == "VARIANT_BOOL":
        return "False" if value == "0" else "True"
    if parameter.type.endswith("*"):
        return "Nothing"
    for enumeration in library.enumerations:
        if enumeration.name == parameter.type:
            names = [name for name, number, _ in enumeration.values if number == value]
            return names[0] if names else value
    return value


def argument_text(library, parameter):
    name, is_array = type_name(parameter.type)
    text = f"{parameter.name}{'()' if is_array else ''} As {name}"
    if not parameter.by_reference and not is_array:
        text = f"ByVal {text}"
    if parameter.optional:
        default = f" = {default_text(library, parameter)}" if parameter.default is not None else ""
        text = f"[{text}{default}]"
    return text


def signature(library, operation):
    words = {
        "propget": "Property Get",
        "propput": "Property Let",
        "propputref": "Property Set",
        "event": "Event",
        "method": "Function" if operation.result else "Sub",
    }
    arguments = ", ".join(argument_text(library, p) for p in operation.parameters)
    text = f"{words[operation.kind]} {operation.name}({arguments})"
    if operation.result:
        text += f" As {type_name(operation.result.type)[0]}"
    return text


def errors_of(doc):
    """The run-time errors ([(number, text)]) and Sources that a documentation text names."""
    text = doc.text()
    numbers = set()
    for sentence in re.split(r"(?<=[.;]) ", text):
        if re.search(r"\berrors?\b|raises?\b|\bholds\b", sentence):
            numbers |= {int(n) for n in re.findall(r"(?<![\w.-])\d+\b(?!\.\d)", sentence)}
    known = [(n, RUN_TIME_ERRORS[n]) for n in sorted(numbers) if n in RUN_TIME_ERRORS]
    sources = re.findall(r'(?:Source|Source grow by|added) "([^"]+)"', text)
    sources += re.findall(r'"(\.\w+|KwRtLibMod\.?\w+)"', text)
    return known, sorted(set(sources))
