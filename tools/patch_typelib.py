"""Puts into a compiled type library what the IDL compiler can't: the defaults of by-reference
arguments. It also blots out the compiler's time stamp, so that equal sources give equal bytes.

The file (little-endian) is a head, the offsets of the type descriptions, a directory of segments,
then the segments. A function's record ends in one word a parameter for its default, if any
parameter has one, and three words a parameter (type, name, flags). A default word holds a small
value itself (bit 31 set, variant type in bits 26 to 30, value below) or the place of a value in the
custom data segment: variant type (2 bytes), the value, padding to 4 bytes.
"""

import re
import struct

HEAD_BYTES = 0x54
SEGMENT_NAMES = 11  # index of the custom data segment in the directory
KIND_INTERFACE, KIND_DISPATCH = 3, 4
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
        self.types_start = self.word(self.directory)
        self.names_start = self.word(self.directory + 16 * 7)
        custom = self.directory + 16 * SEGMENT_NAMES
        start, length = self.word(custom), self.word(custom + 4)
        self.custom = bytearray(self.data[start : start + length]) if length else bytearray()

    def word(self, offset):
        return struct.unpack_from("<i", self.data, offset)[0]

    def name(self, offset):
        length = self.data[self.names_start + offset + 8]
        start = self.names_start + offset + 12
        return self.data[start : start + length].decode("ascii")

    def functions(self):
        """Yields (type name, function record offset, record length, parameter count)."""
        for offset in self.type_offsets:
            base = self.types_start + offset
            if self.word(base) & 0xF not in (KIND_INTERFACE, KIND_DISPATCH):
                continue
            type_name = self.name(self.word(base + 0x34))
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

    def finished(self):
        """The file with the custom data, longer now, moved to its end."""
        custom = self.directory + 16 * SEGMENT_NAMES
        struct.pack_into("<ii", self.data, custom, len(self.data), len(self.custom))
        return bytes(self.data + self.custom)


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
    stamp = re.search(rb"Created by WIDL version [^\0]*? at [\w: ]+", bytes(file.custom))
    if stamp:
        file.custom[stamp.start() : stamp.end()] = b" " * (stamp.end() - stamp.start())
    return file.finished()
