#!/usr/bin/env python3
"""Holds the interface against the released one: applications are bound to it by position.

  released_interface.py check     fails on anything but additions at the ends
  released_interface.py release   takes the interface as it stands for the released one
"""

import json
import sys
from pathlib import Path

import interface_model

REPOSITORY = Path(__file__).resolve().parent.parent
IDL = REPOSITORY / "idl/QvRtLibOle.idl"
RELEASED = REPOSITORY / "idl/released_interface.json"


def parameter_text(parameter):
    way = "in out" if parameter.by_reference else "in"
    optional = " optional" if parameter.optional else ""
    default = "" if parameter.default is None else f" = {parameter.default}"
    return f"{way}{optional} {parameter.type} {parameter.name}{default}"


def operation_text(operation):
    arguments = ", ".join(parameter_text(p) for p in operation.parameters)
    result = f" -> {operation.result.type}" if operation.result else ""
    return f"{operation.dispid} {operation.kind} {operation.name}({arguments}){result}"


def interface_facts(library):
    """{what: [facts in order]}; a released list must be the beginning of the present one."""
    facts = {"library": [f"{library.name} {library.guid} {library.version}"]}
    for interface in library.interfaces.values():
        key = f"interface {interface.name} {interface.iid}"
        facts[key] = [operation_text(operation) for operation in interface.operations]
    for coclass in library.classes:
        events = f" events {coclass.events.name}" if coclass.events else ""
        scope = " global" if coclass.is_global else ""
        facts[f"class {coclass.name} {coclass.clsid}"] = [coclass.interface.name + events + scope]
    for enumeration in library.enumerations:
        facts[f"enumeration {enumeration.name}"] = [f"{n} = {v}" for n, v, _ in enumeration.values]
    for record in library.records:
        fields = "; ".join(f"{type_name} {name}" for type_name, name, _ in record.fields)
        facts[f"record {record.name} {record.guid}"] = [fields]
    for alias in library.aliases:
        facts[f"alias {alias.name} {alias.iid}"] = [alias.interface]
    return facts


def breaches(released, present):
    """What a bound application would trip over."""
    found = []
    for key, facts in released.items():
        if key not in present:
            found.append(f"gone: {key}")
            continue
        for position, fact in enumerate(facts):
            now = present[key][position] if position < len(present[key]) else "nothing"
            if now != fact:
                found.append(f"{key}, place {position + 1}: {fact}\n  is now: {now}")
    return found


def main(command):
    present = interface_facts(interface_model.read(IDL))
    if command == "release":
        RELEASED.write_text(json.dumps(present, indent=1) + "\n", "ascii")
        return
    found = breaches(json.loads(RELEASED.read_text("ascii")), present)
    print("\n".join(found))
    sys.exit(1 if found else 0)


if __name__ == "__main__":
    main(*sys.argv[1:])
