"""Writes the forwarders: for each class the object behind its interface, whose every method holds
a reference, converts, calls the module function, and turns what escapes into an HRESULT.

A member is built when the header that its group names declares its function. One that is not yet
answers run-time error 445 and is listed.
"""

import re
from pathlib import Path

from cpp_types import cpp_type, method_name, raw_parameters, wide


class Sources:
    """The module headers, read once each."""

    def __init__(self, folder):
        self.folder = Path(folder)
        self.texts = {}

    def text(self, header):
        if header not in self.texts:
            path = self.folder / header
            text = path.read_text("utf-8") if header and path.exists() else ""
            self.texts[header] = re.sub(r"//[^\n]*", "", text)
        return self.texts[header]

    def declares(self, header, name):
        return re.search(rf"\b{name}\b", self.text(header)) is not None

    def class_body(self, header, implementation):
        """The text between the braces of the implementation's class."""
        name = implementation.split("::")[-1]
        text = self.text(header)
        start = re.search(rf"\b(?:class|struct)\s+{name}\b[^;{{]*\{{", text)
        if not start:
            return ""
        depth, position = 1, start.end()
        while depth and position < len(text):
            depth += {"{": 1, "}": -1}.get(text[position], 0)
            position += 1
        return text[start.end() : position]


def is_built(sources, interface, operation):
    if operation.header:
        return sources.declares(operation.header, operation.implementation_name())
    body = sources.class_body(interface.header, interface.implementation)
    name = operation.name if operation.is_field else operation.implementation_name()
    return re.search(rf"\b{name}\b", body) is not None


def default_value(library, parameter):
    module = cpp_type(library, parameter.type).module
    text = parameter.default
    if text is None:
        return "Variant::missing()" if module == "Variant" else f"{module}{{}}"
    if text.startswith('"'):
        value = text[1:-1].replace("\\0", "\0")
        literal = f"std::wstring_view({wide(value)}, {len(value)})"
        return f"{module}({literal})"
    if module == "Boolean":
        return "False" if text == "0" else "True"
    if module.startswith("Object"):
        return f"{module}{{}}"
    return f"{module}{{{text}}}"


def argument_text(library, parameter, raw_name):
    module = cpp_type(library, parameter.type).module
    if not parameter.by_reference:
        return f"by_value<{module}>({raw_name})"
    if parameter.optional:
        default = default_value(library, parameter)
        return f"OptionalReference<{module}>({raw_name}, [] {{ return {default}; }})"
    return f"by_reference<{module}>({raw_name})"


def body_text(library, interface, operation):
    raw_names = [name for _, name in raw_parameters(library, operation)]
    arguments = [
        argument_text(library, p, raw_names[i]) for i, p in enumerate(operation.parameters)
    ]
    if operation.is_field:
        if operation.kind == "propget":
            return f"store(result, implementation_.{operation.name})"
        return f"implementation_.{operation.name} = {arguments[0]}"
    if operation.header:
        callee = f"{operation.namespace}::{operation.implementation_name()}"
        if operation.on_instance:
            arguments.insert(0, "implementation_")
    else:
        callee = f"implementation_.{operation.implementation_name()}"
    call = f"{callee}({', '.join(arguments)})"
    return f"store(result, {call})" if operation.result else call


def method_text(library, coclass, operation, built):
    parameters = raw_parameters(library, operation)
    if not built:
        arguments = ", ".join(t for t, _ in parameters)
        body = "  return not_built();"
    else:
        arguments = ", ".join(f"{t} {name}" for t, name in parameters)
        check = "require(result); " if operation.result else ""
        body = f"  return forward([&] {{ {check}{body_text(library, coclass.interface, operation)}; }});"
    return (
        f"HRESULT STDMETHODCALLTYPE {coclass.name}Object::{method_name(operation)}({arguments}) "
        f"{{\n{body}\n}}\n"
    )


def object_header(library, coclass, sources):
    interface = coclass.interface
    has_implementation = bool(sources.class_body(interface.header, interface.implementation))
    implementation = interface.implementation if has_implementation else "Unbuilt"
    include = f'#include "{interface.header}"\n' if has_implementation else ""
    out = [
        "// Generated from the interface description: do not edit.",
        "#pragma once",
        "",
        '#include "class_tables.h"',
        include + '#include "frame/server/forward.h"',
        "",
        "namespace qv {",
        "",
        f"class {coclass.name}Object final",
        f"    : public ForwardingObject<{interface.name}, {implementation}> {{",
        " public:",
        f"  {coclass.name}Object() : ForwardingObject(k{coclass.name}Info) {{}}",
    ]
    for operation in interface.operations:
        arguments = ", ".join(t for t, _ in raw_parameters(library, operation))
        out.append(
            f"  HRESULT STDMETHODCALLTYPE {method_name(operation)}({arguments}) override;"
        )
    return "\n".join(out + ["};", "", "}  // namespace qv", ""])


def forwarder_sources(library, sources):
    """The generated files as {name: text}, and the members that are not built."""
    files, missing = {}, []
    for coclass in library.classes:
        interface = coclass.interface
        files[f"{coclass.name}_object.h"] = object_header(library, coclass, sources)
        groups = {}
        for operation in interface.operations:
            groups.setdefault(operation.header, []).append(operation)
        groups.setdefault("", [])
        for header, operations in groups.items():
            built = {id(o): is_built(sources, interface, o) for o in operations}
            lines = ["// Generated from the interface description: do not edit."]
            lines.append(f'#include "{coclass.name}_object.h"')
            if header and any(built.values()):
                lines.append(f'#include "{header}"')
            lines += ["", "namespace qv {", ""]
            if not header:
                lines.append(
                    f"IUnknown* create_{coclass.name}() {{ return create_object<{coclass.name}"
                    "Object>(); }\n"
                )
            for operation in operations:
                if not built[id(operation)]:
                    missing.append(f"{coclass.name}.{operation.implementation_name()}")
                lines.append(method_text(library, coclass, operation, built[id(operation)]))
            topic = re.sub(r"\W", "_", header.removesuffix(".h")) or "object"
            name = f"{coclass.name}_{topic}.cpp"
            files[name] = "\n".join(lines + ["}  // namespace qv", ""])
    return files, missing
