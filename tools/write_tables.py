"""Writes the tables of late binding: for each class its members, their operations and arguments."""

from cpp_types import cpp_type, guid_initializer, wide

FIRST_SLOT = 7  # behind IUnknown's three and IDispatch's four methods
KINDS = {
    "method": "DISPATCH_METHOD",
    "propget": "DISPATCH_PROPERTYGET",
    "propput": "DISPATCH_PROPERTYPUT",
    "propputref": "DISPATCH_PROPERTYPUTREF",
}


def hash_name(name):
    value = 2166136261
    for character in name.lower():
        value = (value ^ ord(character)) * 16777619 & 0xFFFFFFFF
    return value


def buckets(names):
    size = 4
    while size < 2 * len(names):
        size *= 2
    table = [0] * size
    for index, name in enumerate(names, 1):
        place = hash_name(name) & size - 1
        while table[place]:
            place = place + 1 & size - 1
        table[place] = index
    return table


def default_text(parameter):
    text = parameter.default
    if text is None:
        return "{}"
    if text.startswith('"'):
        value = text[1:-1].replace("\\0", "\0")
        return f"{{Default::Kind::text, 0, {{{wide(value)}, {len(value)}}}}}"
    if text == "-2147483648":
        text = "-2147483647 - 1"
    return f"{{Default::Kind::number, {text}, {{}}}}"


def invoker(library, operation):
    kinds = []
    for parameter in operation.parameters:
        cpp = cpp_type(library, parameter.type)
        kinds.append(cpp.by_reference if parameter.by_reference else cpp.by_value)
    if operation.result:
        kinds.append(cpp_type(library, operation.result.type).as_result)
    return f"&invoke_slot<{', '.join(kinds)}>"


def class_tables(library, coclass):
    interface = coclass.interface
    out = [f"namespace {coclass.name}_tables {{"]
    members = {}
    for slot, operation in enumerate(interface.operations, FIRST_SLOT):
        rows = "kNone"
        if operation.parameters:
            rows = f"kParameters{slot}"
            out.append(f"constexpr ParameterRow {rows}[] = {{")
            for parameter in operation.parameters:
                optional = "true" if parameter.optional else "false"
                out.append(f"    {{{wide(parameter.name)}, {optional}, {default_text(parameter)}}},")
            out.append("};")
        row = f"{{{KINDS[operation.kind]}, {slot}, {invoker(library, operation)}, {rows}}}"
        members.setdefault(operation.name.lower(), (operation, []))[1].append(row)
    for key, (operation, rows) in members.items():
        out.append(f"constexpr Operation kOperations_{operation.name}[] = {{{', '.join(rows)}}};")
    if members:
        out.append("constexpr Member kMembers[] = {")
        for operation, _ in members.values():
            name = operation.name
            out.append(f"    {{{wide(name)}, {operation.dispid}, kOperations_{name}}},")
        out.append("};")
    table = buckets([operation.name for operation, _ in members.values()])
    out.append(f"constexpr std::uint16_t kBuckets[] = {{{', '.join(map(str, table))}}};")
    aliases = [a.iid for a in library.aliases if a.interface == interface.name]
    if aliases:
        out.append(f"constexpr IID kAliases[] = {{{', '.join(map(guid_initializer, aliases))}}};")
    out += [f"}}  // namespace {coclass.name}_tables", ""]
    events = f"&DIID_{coclass.events.name}" if coclass.events else "nullptr"
    out += [
        f"const ClassInfo k{coclass.name}Info{{",
        f"    {wide(coclass.name)},",
        f"    CLSID_{coclass.name},",
        f"    __uuidof({interface.name}),",
        f"    {coclass.name + '_tables::kAliases' if aliases else '{}'},",
        f"    {events},",
        f"    {{{coclass.name + '_tables::kMembers' if members else '{}'}, "
        f"{coclass.name}_tables::kBuckets}},",
        "};",
        "",
    ]
    return out


def tables_source(library, classes):
    out = [
        "// Generated from the interface description: do not edit.",
        '#include "class_tables.h"',
        "",
        '#include "automation/arguments.h"',
        "",
        "namespace qv {",
        "using namespace dispatch;",
        "namespace {",
        "constexpr std::span<const ParameterRow> kNone;",
        "}  // namespace",
        "",
    ]
    for coclass in classes:
        out += class_tables(library, coclass)
    return "\n".join(out + ["}  // namespace qv", ""])


def tables_header(library):
    out = [
        "// Generated from the interface description: do not edit.",
        "#pragma once",
        "",
        '#include "automation/class_object.h"',
        '#include "interfaces.h"',
        "",
        "namespace qv {",
        "",
    ]
    for coclass in library.classes:
        out.append(f"extern const ClassInfo k{coclass.name}Info;")
        out.append(f"IUnknown* create_{coclass.name}();")
    out += ["", "}  // namespace qv", ""]
    return "\n".join(out)


def catalogue_source(library):
    """The classes in the order of the library, for class factories and registration."""
    out = [
        "// Generated from the interface description: do not edit.",
        '#include "class_tables.h"',
        '#include "frame/server/catalogue.h"',
        "",
        "namespace qv {",
        "namespace {",
        "constexpr ClassEntry kEntries[] = {",
    ]
    out += [f"    {{&k{c.name}Info, &create_{c.name}}}," for c in library.classes]
    out += ["};"]
    out += ["constexpr AliasEntry kAliases[] = {"]
    out += [
        f"    {{{wide(a.name)}, {guid_initializer(a.iid)}}}," for a in library.aliases
    ]
    out += [
        "};",
        "}  // namespace",
        "",
        "std::span<const ClassEntry> class_catalogue() noexcept { return kEntries; }",
        "std::span<const AliasEntry> alias_catalogue() noexcept { return kAliases; }",
        "",
        "}  // namespace qv",
        "",
    ]
    return "\n".join(out)
