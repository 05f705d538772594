"""How the interface looks to a Visual Basic developer."""

import html
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

# Words that stand for numbers in the descriptions of failures.
NUMBER_WORDS = {
    "any": ("any", "the run-time error's own text"),
    "opener's": ("the opener's", ""),
    "20000+code": ("20000 and the service's code", ""),
    "-1": ("-1", "Application-defined or object-defined error"),
}


def run_time_errors(table):
    """{number: text} of the language's run-time errors, from the server's own table."""
    return {n: text for n, text in re.findall(r'^ +\{(\d+), L"([^"]*)"\},$', table, re.M)}


def failure_texts(failure, run_time_texts):
    """(number, description) of a failure as the page shows them."""
    number, text = NUMBER_WORDS.get(failure.number, (failure.number, ""))
    own = html.unescape(failure.text)
    return number, own or text or run_time_texts.get(number, "Application-defined or object-defined error")


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
