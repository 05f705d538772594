"""Reads the interface description (idl/QvRtLibOle.idl) into plain objects.

The description is MIDL with two additions in comments: `///` lines document what follows (a line
`Name: text` documents an argument or the result), and `// @key value` lines tell where a member is
implemented and how it fails. This reader knows the subset of MIDL that the description uses and refuses the rest.
"""

import re
from dataclasses import dataclass, field

DISPID_DEFAULT = 0
DISPID_ENUMERATOR = -4


@dataclass
class Doc:
    summary: str = ""
    arguments: dict = field(default_factory=dict)

    def text(self):
        """All of it as one help string."""
        parts = [self.summary] + [f"{name}: {text}" for name, text in self.arguments.items()]
        return " ".join(part for part in parts if part)


@dataclass
class Failure:
    number: str  # a number, or a word such as "any" for any run-time error
    text: str  # the description where it is the library's own, else empty
    way: str  # raised, recorded (in the error state) or returned
    cause: str


@dataclass
class Parameter:
    name: str
    type: str  # as written, without its last star where by_reference
    by_reference: bool
    optional: bool
    default: str | None
    is_result: bool


@dataclass
class Operation:
    kind: str  # method, propget, propput, propputref, event
    name: str
    parameters: list
    result: Parameter | None
    doc: Doc
    dispid: int = 0
    header: str = ""
    namespace: str = ""
    is_field: bool = False
    on_instance: bool = False
    failures: list = field(default_factory=list)
    sources: list = field(default_factory=list)  # what failures leave in the error record

    def implementation_name(self):
        """The name of the C++ function behind the operation."""
        prefix = {"propget": "get_", "propput": "put_", "propputref": "putref_"}
        return prefix.get(self.kind, "") + self.name


@dataclass
class Interface:
    name: str
    iid: str
    operations: list
    doc: Doc
    header: str = ""
    implementation: str = ""
    events: str = ""
    is_events: bool = False


@dataclass
class Enumeration:
    name: str
    values: list  # of (name, value as written, doc)
    doc: Doc


@dataclass
class Record:
    name: str
    guid: str
    fields: list  # of (type, name, doc)
    doc: Doc


@dataclass
class CoClass:
    name: str
    clsid: str
    is_global: bool
    interface: Interface
    events: Interface | None


@dataclass
class Alias:
    name: str
    iid: str
    interface: str


@dataclass
class Library:
    name: str
    guid: str
    version: str
    doc: Doc
    enumerations: list
    records: list
    interfaces: dict
    classes: list
    aliases: list


class DescriptionError(Exception):
    pass


def split_outside_brackets(text, separator=","):
    """Splits at separators that stand outside brackets and quotes."""
    parts, depth, quoted, current = [], 0, False, ""
    for character in text:
        if character == '"':
            quoted = not quoted
        if not quoted:
            depth += character in "(["
            depth -= character in ")]"
        if character == separator and depth == 0 and not quoted:
            parts.append(current.strip())
            current = ""
        else:
            current += character
    if current.strip():
        parts.append(current.strip())
    return parts


def parse_attributes(text):
    """`id(0), propget` as a dictionary of name to argument (None where there is none)."""
    attributes = {}
    for part in split_outside_brackets(text):
        match = re.fullmatch(r"(\w+)(?:\((.*)\))?", part, re.S)
        if not match:
            raise DescriptionError(f"attribute not understood: {part}")
        attributes[match[1]] = match[2]
    return attributes


def parse_parameter(text):
    match = re.fullmatch(r"\[([^\[\]]*)\]\s*(.+?)\s*(\**)\s*(\w+)", text, re.S)
    if not match:
        raise DescriptionError(f"parameter not understood: {text}")
    attributes = parse_attributes(match[1])
    type_name, stars, name = re.sub(r"\s+", " ", match[2]), match[3], match[4]
    is_result = "retval" in attributes
    by_reference = "out" in attributes
    if by_reference:
        if not stars:
            raise DescriptionError(f"an argument by reference needs a star: {text}")
        stars = stars[1:]
    return Parameter(
        name,
        type_name + stars,
        by_reference,
        "optional" in attributes,
        attributes.get("defaultvalue"),
        is_result,
    )


def parse_operation(statement, doc, is_event):
    match = re.fullmatch(
        r"(?:\[([^\[\]]*)\]\s*)?(HRESULT|void)\s+(\w+)\s*\((.*)\)\s*;", statement, re.S
    )
    if not match:
        raise DescriptionError(f"operation not understood: {statement}")
    attributes = parse_attributes(match[1] or "")
    kinds = [k for k in ("propget", "propputref", "propput") if k in attributes]
    parameters = [parse_parameter(part) for part in split_outside_brackets(match[4])]
    result = next((p for p in parameters if p.is_result), None)
    operation = Operation(
        "event" if is_event else (kinds or ["method"])[0],
        match[3],
        [p for p in parameters if not p.is_result],
        result,
        doc,
    )
    operation.dispid = int(attributes["id"]) if "id" in attributes else None
    return operation


def assign_dispids(operations):
    """Ids count members in the order of the interface; get and let of a property share one."""
    by_name, position = {}, 0
    for operation in operations:
        key = operation.name.lower()
        if key not in by_name:
            position += 1
            by_name[key] = operation.dispid if operation.dispid is not None else position
        operation.dispid = by_name[key]


def parse_failure(text):
    match = re.fullmatch(r'(\S+)(?: "(.*)")? (raised|recorded|returned): (.+)', text)
    if not match:
        raise DescriptionError(f"failure not understood: {text}")
    return Failure(match[1], match[2] or "", match[3], match[4])


class Reader:
    """Statements of the description, each with the comments before it."""

    def __init__(self, text):
        self.lines = text.split("\n")
        self.position = 0
        self.doc = Doc()
        self.marks = {}
        self.failures = []

    def take_doc(self):
        doc, self.doc = self.doc, Doc()
        return doc

    def note_comment(self, line):
        if line.startswith("///"):
            text = line[3:].strip()
            argument = re.match(r"(\w+): (.*)", text)
            if argument:
                self.doc.arguments[argument[1]] = argument[2]
            elif self.doc.arguments:
                raise DescriptionError(f"text behind the arguments: {line}")
            else:
                self.doc.summary = f"{self.doc.summary} {text}".strip()
        else:
            mark = re.match(r"// @(\w+)\s*(.*)", line)
            if mark and mark[1] == "error":
                self.failures.append(parse_failure(mark[2]))
            elif mark:
                self.marks[mark[1]] = mark[2].strip()

    def statements(self):
        """Yields each statement: up to `;`, `{` or `}` outside brackets, comments noted."""
        statement = ""
        while self.position < len(self.lines):
            line = self.lines[self.position].strip()
            self.position += 1
            if line.startswith("//"):
                self.note_comment(line)
                continue
            if not line:
                continue
            statement = f"{statement} {line}".strip()
            complete = statement.count("(") == statement.count(")")
            if complete and statement[-1] in ";{}:":
                yield statement
                statement = ""


def parse_enumeration(reader, name, doc):
    values = []
    while True:
        line = reader.lines[reader.position].strip()
        reader.position += 1
        if line.startswith("}"):
            return Enumeration(name, values, doc)
        match = re.match(r"(\w+)\s*=\s*([-\w]+),?\s*(?:///\s*(.*))?$", line)
        if match:
            values.append((match[1], match[2], match[3] or ""))
        elif line and not line.startswith("//"):
            raise DescriptionError(f"constant not understood: {line}")


def parse_record(reader, name, guid, doc):
    fields, field_doc = [], ""
    while True:
        line = reader.lines[reader.position].strip()
        reader.position += 1
        if line.startswith("}"):
            return Record(name, guid, fields, doc)
        match = re.match(r"(\w+)\s+(\w+);\s*(?:///\s*(.*))?$", line)
        if match:
            fields.append((match[1], match[2], match[3] or field_doc))
            field_doc = ""
        elif line.startswith("///"):
            field_doc = line[3:].strip()


def parse_interface(reader, name, iid, doc, is_events):
    interface = Interface(name, iid, [], doc, is_events=is_events)
    if "class" in reader.marks:
        interface.header, interface.implementation = reader.marks.pop("class").split()
    interface.events = reader.marks.pop("events", "")
    module = ("", "")
    field_name = None
    for statement in reader.statements():
        if statement.startswith("}"):
            break
        if statement in ("properties:", "methods:"):
            continue
        operation = parse_operation(statement, reader.take_doc(), is_events)
        if "module" in reader.marks:
            module = tuple(reader.marks.pop("module").split())
        if "field" in reader.marks:
            reader.marks.pop("field")
            field_name = operation.name
        operation.header, operation.namespace = module
        operation.is_field = operation.name == field_name
        operation.on_instance = reader.marks.pop("instance", None) is not None
        operation.failures, reader.failures = reader.failures, []
        operation.sources = [s for s in reader.marks.pop("source", "").split(" | ") if s]
        interface.operations.append(operation)
    assign_dispids(interface.operations)
    return interface


def read(path):
    with open(path, encoding="ascii") as file:
        reader = Reader(file.read())
    library = Library("", "", "", Doc(), [], [], {}, [], [])
    for statement in reader.statements():
        enumeration = re.match(r"typedef enum (\w+) \{", statement)
        record = re.match(r"typedef \[uuid\(([-\w]+)\)\] struct (\w+) \{", statement)
        alias = re.match(
            r"typedef \[uuid\(([-\w]+)\), public, hidden\] (\w+) (\w+);", statement
        )
        head = re.match(
            r"(?:\[([^\[\]]*)\]\s*)?(interface|dispinterface) (\w+)(?: : IDispatch)? \{", statement
        )
        coclass = re.match(r"\[([^\[\]]*)\]\s*coclass (\w+) \{", statement)
        lib = re.match(r"\[([^\[\]]*)\]\s*library (\w+) \{", statement)
        if enumeration:
            library.enumerations.append(
                parse_enumeration(reader, enumeration[1], reader.take_doc())
            )
        elif record:
            library.records.append(parse_record(reader, record[2], record[1], reader.take_doc()))
        elif alias:
            library.aliases.append(Alias(alias[3], alias[1], alias[2]))
        elif head:
            iid = parse_attributes(head[1])["uuid"]
            interface = parse_interface(
                reader, head[3], iid, reader.take_doc(), head[2] == "dispinterface"
            )
            library.interfaces[interface.name] = interface
        elif coclass:
            attributes = parse_attributes(coclass[1])
            members = []
            for member in reader.statements():
                if member.startswith("}"):
                    break
                members.append(re.search(r"(\w+);$", member)[1])
            library.classes.append(
                CoClass(
                    coclass[2],
                    attributes["uuid"],
                    "appobject" in attributes,
                    library.interfaces[members[0]],
                    library.interfaces[members[1]] if len(members) > 1 else None,
                )
            )
        elif lib:
            attributes = parse_attributes(lib[1])
            library.name, library.guid = lib[2], attributes["uuid"]
            library.version, library.doc = attributes["version"], reader.take_doc()
    return library
