"""Writes the interface description as the IDL compiler takes it.

The compiler can't store the default of a by-reference argument: such defaults are written as 0
here and put into the compiled type library afterwards (patch_typelib.py).
"""


def quoted(text):
    return '"' + text.replace("\\", "\\\\").replace('"', '\\"') + '"'


def parameter_text(parameter):
    attributes = ["in", "out"] if parameter.by_reference else ["in"]
    if parameter.is_result:
        attributes = ["out", "retval"]
    if parameter.optional:
        attributes.append("optional")
    if parameter.default is not None:
        value = "0" if parameter.by_reference else parameter.default
        attributes.append(f"defaultvalue({value})")
    star = "*" if parameter.by_reference else ""
    return f"[{', '.join(attributes)}] {parameter.type}{star} {parameter.name}"


def operation_text(operation, context):
    parameters = list(operation.parameters)
    if operation.result:
        parameters.append(operation.result)
    attributes = [f"id({operation.dispid})"]
    if operation.kind.startswith("prop"):
        attributes.append(operation.kind)
    if operation.dispid < 0:
        attributes.append("restricted")
    attributes.append(f"helpstring({quoted(operation.doc.text())})")
    attributes.append(f"helpcontext({context + max(operation.dispid, 0)})")
    result = "void" if operation.kind == "event" else "HRESULT"
    arguments = ", ".join(parameter_text(p) for p in parameters)
    return f"    [{', '.join(attributes)}] {result} {operation.name}({arguments});"


def interface_text(interface, context):
    common = f"uuid({interface.iid}), hidden, helpstring({quoted(interface.doc.text())})"
    if interface.is_events:
        lines = [f"  [{common}]", f"  dispinterface {interface.name} {{", "  properties:", "  methods:"]
    else:
        lines = [
            f"  [odl, {common}, dual, oleautomation, nonextensible]",
            f"  interface {interface.name} : IDispatch {{",
        ]
    lines += [operation_text(o, context) for o in interface.operations]
    return "\n".join(lines + ["  };"])


def widl_text(library):
    out = [
        'import "oaidl.idl";',
        'import "ocidl.idl";',
        f"[uuid({library.guid}), version({library.version}), lcid(0x409), "
        f"helpstring({quoted(library.doc.text())})]",
        f"library {library.name} {{",
        '  importlib("stdole2.tlb");',
    ]
    for enumeration in library.enumerations:
        values = ", ".join(f"{name} = {value}" for name, value, _ in enumeration.values)
        out.append(
            f"  typedef [v1_enum, helpstring({quoted(enumeration.doc.text())})] "
            f"enum {enumeration.name} {{ {values} }} {enumeration.name};"
        )
    for record in library.records:
        fields = " ".join(f"{type_name} {name};" for type_name, name, _ in record.fields)
        out.append(
            f"  typedef [uuid({record.guid}), helpstring({quoted(record.doc.text())})] "
            f"struct {record.name} {{ {fields} }} {record.name};"
        )
    out += [f"  interface {c.interface.name};" for c in library.classes]
    for number, coclass in enumerate(library.classes, 1):
        context = number * 1000
        if coclass.events:
            out.append(interface_text(coclass.events, context + 900))
        out.append(interface_text(coclass.interface, context))
        attributes = [f"uuid({coclass.clsid})"] + (["appobject"] if coclass.is_global else [])
        attributes.append(f"helpstring({quoted(coclass.interface.doc.text())})")
        attributes.append(f"helpcontext({context})")
        source = f" [default, source] dispinterface {coclass.events.name};" if coclass.events else ""
        out.append(
            f"  [{', '.join(attributes)}] coclass {coclass.name} "
            f"{{ [default] interface {coclass.interface.name};{source} }};"
        )
    for alias in library.aliases:
        out.append(f"  typedef [uuid({alias.iid}), public, hidden] {alias.interface} {alias.name};")
    return "\n".join(out + ["};", ""])
