"""Puts into a compiled type library what the IDL compiler can't: the defaults of by-reference
arguments, and the help strings of constants and of record fields. It also blots out the compiler's
time stamp, so that equal sources give equal bytes.

The file (little-endian) is a head, the offsets of the type descriptions, a directory of segments,
then the segments. A function's record ends in one word a parameter for its default, if any
parameter has one, and three words a parameter (type, name, flags). A default word holds a small
value itself (bit 31 set, variant type in bits 26 to 30, value below) or the place of a value in the
custom data segment: variant type (2 bytes), the value, padding to 4 bytes.

Behind the segments stand the members of each type in a block: the size of the records, the records,
then one word a member each for its id, its name and the place of its record. A constant's record
has five words (size and index, type, flags, kind, value), and two more if it has a help string: the
help context and the place of the text in the string segment, where it follows its length (2 bytes),
padded to 4 bytes.
"""

import re
import struct

HEAD_BYTES = 0x54
SEGMENTS, SEGMENT_ENTRY_BYTES = 15, 16
# Indices of segments in the directory.
TYPES, NAMES, STRINGS, CUSTOM_DATA = 0, 7, 8, 11
KIND_ENUMERATION, KIND_RECORD, KIND_INTERFACE, KIND_DISPATCH = 0, 1, 3, 4
# Bytes of a constant's record, without and with a help string.
PLAIN_RECORD, HELPED_RECORD = 0x14, 0x1C
VT_I2, VT_I4, VT_BSTR, VT_BOOL = 2, 3, 8, 11
VARIANT_TYPES = {"short": VT_I2, "VARIANT_BOOL": VT_BOOL, "BSTR": VT_BSTR}
HAS_DEFAULTS = 0x1000


class TypeLibraryFile:
    def __init__(self, data):
        self.data = bytearray(data)
        count = self.word(0x20)
        has_help_dll = self.word(0x14) & 0x100
        offsets = HEAD_BYTES + (4 if has_help_dll else 0)
        self.type_offsets = [self.word(offsets + 4 * i) for i in range(count)]
        self.directory = offsets + 4 * count
        self.types_start = self.segment(TYPES)[0]
        self.names_start = self.segment(NAMES)[0]
        self.custom = self.content(CUSTOM_DATA)
        self.strings = self.content(STRINGS)
        self.new_blocks = {}  # by the place of the type's description

    def segment(self, index):
        """(place, length) of a segment; place -1: there is none."""
        entry = self.directory + SEGMENT_ENTRY_BYTES * index
        return self.word(entry), self.word(entry + 4)

    def content(self, index):
        start, length = self.segment(index)
        return bytearray(self.data[start : start + length]) if start >= 0 else bytearray()

    def word(self, offset):
        return struct.unpack_from("<i", self.data, offset)[0]

    def name(self, offset):
        length = self.data[self.names_start + offset + 8]
        start = self.names_start + offset + 12
        return self.data[start : start + length].decode("ascii")

    def types(self, *kinds):
        """Yields (name, place of the description) of the types of some kinds."""
        for offset in self.type_offsets:
            place = self.types_start + offset
            if self.word(place) & 0xF in kinds:
                yield self.name(self.word(place + 0x34)), place

    def functions(self):
        """Yields (type name, function record offset, record length, parameter count)."""
        for type_name, base in self.types(KIND_INTERFACE, KIND_DISPATCH):
            elements = self.word(base + 0x18)
            record = self.word(base + 4) + 4
            end = record + self.word(record - 4)
            for _ in range(elements & 0xFFFF):
                length = self.word(record) & 0xFFFF
                parameters = self.word(record + 20) & 0xFFFF
                yield type_name, record, length, parameters
                record += length
                if record > end:
                    raise ValueError("function records overrun their type")

    def default_word(self, variant_type, value):
        if variant_type != VT_BSTR and 0 <= (value & 0xFFFFFFFF) < 0x4000000:
            return struct.pack("<I", 0x80000000 | variant_type << 26 | value)
        if variant_type in (VT_I2, VT_BOOL):
            return struct.pack("<I", 0x80000000 | variant_type << 26 | value & 0xFFFF)
        if variant_type == VT_BSTR:
            body = struct.pack("<HI", VT_BSTR, len(value)) + value.encode("cp1252")
        else:
            body = struct.pack("<Hi", variant_type, value)
        place = len(self.custom)
        self.custom += body + b"W" * (-len(body) % 4)
        return struct.pack("<I", place)

    def string_place(self, text):
        place = len(self.strings)
        body = struct.pack("<H", len(text)) + text.encode("cp1252")
        self.strings += body + b"W" * (-len(body) % 4)
        return place

    def add_help_strings(self, base, texts):
        """Gives every constant or field of a type a help string: texts by name."""
        count = self.word(base + 0x18) >> 16
        start = self.word(base + 4)
        if self.word(start) != PLAIN_RECORD * count:
            raise ValueError("a constant's record has an unknown form")
        table = start + 4 + PLAIN_RECORD * count
        records = bytearray()
        for i in range(count):
            record = self.data[start + 4 + PLAIN_RECORD * i :][:PLAIN_RECORD]
            text = texts[self.name(self.word(table + 4 * (count + i)))]
            records += struct.pack("<I", HELPED_RECORD | i << 16) + record[4:]
            records += struct.pack("<ii", 0, self.string_place(text))
        self.new_blocks[base] = (
            struct.pack("<i", len(records))
            + records
            + self.data[table : table + 8 * count]
            + struct.pack(f"<{count}i", *(HELPED_RECORD * i for i in range(count)))
        )

    def finished(self):
        """The file with the segments and blocks that have grown."""
        segments = sorted(
            (self.segment(i)[0], i) for i in range(SEGMENTS) if self.segment(i)[0] >= 0
        )
        blocks = sorted(
            (self.word(self.types_start + offset + 4), self.types_start + offset)
            for offset in self.type_offsets
        )
        grown = {STRINGS: self.strings, CUSTOM_DATA: self.custom}
        out = bytearray(self.data[: segments[0][0]])
        for _, index in segments:
            content = grown.get(index) or self.content(index)
            entry = self.directory + SEGMENT_ENTRY_BYTES * index
            struct.pack_into("<ii", out, entry, len(out), len(content))
            out += content
        if self.segment(segments[-1][1])[0] + self.segment(segments[-1][1])[1] != blocks[0][0]:
            raise ValueError("something unknown stands between segments and members")
        types_start = struct.unpack_from("<i", out, self.directory)[0]
        for (start, base), (end, _) in zip(blocks, [*blocks[1:], (len(self.data), 0)]):
            struct.pack_into("<i", out, types_start + base - self.types_start + 4, len(out))
            out += self.new_blocks.get(base, self.data[start:end])
        return bytes(out)


def default_value(parameter):
    """The variant type and value of a default as the description writes it."""
    text = parameter.default
    if text.startswith('"'):
        return VT_BSTR, text[1:-1].replace("\\0", "\0")
    return VARIANT_TYPES.get(parameter.type, VT_I4), int(text, 0)


def patched(data, library):
    file = TypeLibraryFile(data)
    position = {}
    for type_name, record, length, count in file.functions():
        index = position[type_name] = position.get(type_name, -1) + 1
        if type_name not in library.interfaces:
            continue
        operation = library.interfaces[type_name].operations[index]
        if not any(p.default is not None and p.by_reference for p in operation.parameters):
            continue
        if not file.word(record + 16) & HAS_DEFAULTS:
            raise ValueError(f"{operation.name}: the compiler left no room for defaults")
        defaults = record + length - 16 * count
        for i, parameter in enumerate(operation.parameters):
            if parameter.default is None or not parameter.by_reference:
                continue
            word = file.default_word(*default_value(parameter))
            file.data[defaults + 4 * i : defaults + 4 * i + 4] = word
    texts = {e.name: {name: text for name, _, text in e.values} for e in library.enumerations}
    texts |= {r.name: {name: text for _, name, text in r.fields} for r in library.records}
    for type_name, base in file.types(KIND_ENUMERATION, KIND_RECORD):
        file.add_help_strings(base, texts[type_name])
    stamp = re.search(rb"Created by WIDL version [^\0]*? at [\w: ]+", bytes(file.custom))
    if stamp:
        file.custom[stamp.start() : stamp.end()] = b" " * (stamp.end() - stamp.start())
    return file.finished()
