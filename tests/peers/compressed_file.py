"""Archives of the library, written and read from docs/formats alone, for tests to compare with.

Reading checks everything that the pages tell; a file that breaks a rule raises ValueError.
"""

import struct
import zlib
from dataclasses import dataclass, field

MAGIC = b"KWCF"
NAME_BYTES = 255
BLOCK_BYTES = 32767
DIRECTORY = 16
BINARY, TEXT = 0, 1

LENGTH_CODES = {  # code: (smallest length, extra bits)
    "101": (2, 0), "11": (3, 0), "100": (4, 0), "011": (5, 0), "0101": (6, 0), "0100": (7, 0),
    "0011": (8, 0), "00101": (9, 0), "00100": (10, 1), "00011": (12, 2), "00010": (16, 3),
    "000011": (24, 4), "000010": (40, 5), "000001": (72, 6), "0000001": (136, 7),
    "0000000": (264, 8),
}  # fmt: skip
END_LENGTH = 519
LONGEST = 518


def descending(first, count):
    """Codes that count down from the first."""
    return [format(int(first, 2) - i, f"0{len(first)}b") for i in range(count)]


DISTANCE_CODES = (
    ["11", "1011", "1010"] + descending("10011", 4) + descending("011111", 15)
    + descending("0100001", 26) + descending("00001111", 16)
)  # fmt: skip


def text_codes():
    """The code of each character in text mode."""
    groups = {
        4: " ", 5: "Eaeilnorstu", 6: "-1ACDILNORSTbcdfghmp", 7: "\n\r(),.0234578=BFMPUkw",
        8: "\t\"'*/69:GHW[_vxy", 9: "+>KVXY]", 10: "!$&qz", 11: "\0<?JQZ\\j{|",
    }  # fmt: skip
    of_bits = {bits: sorted(text.encode("latin-1")) for bits, text in groups.items()}
    known = {code for codes in of_bits.values() for code in codes}
    twelve = set(range(0x80)) - known - {0x1A} | set(range(0xB0, 0xE0))
    twelve |= {0xE1, 0xE5, 0xE9, 0xEE, 0xF2, 0xF3, 0xF4}
    of_bits[12] = sorted(twelve)
    of_bits[13] = sorted(set(range(256)) - known - twelve)
    codes, next_code, bits_before = {}, 15, 4
    for bits in sorted(of_bits):
        for _ in range(bits - bits_before):  # on to the next length with a one put behind
            next_code = next_code * 2 + 1
        bits_before = bits
        for character in of_bits[bits]:
            codes[character] = format(next_code, f"0{bits}b")
            next_code -= 1
    return codes


TEXT_CODES = text_codes()
TEXT_CHARACTERS = {code: character for character, code in TEXT_CODES.items()}
DISTANCES = {code: number for number, code in enumerate(DISTANCE_CODES)}


class Bits:
    """The bits of a block, each byte's lowest first."""

    def __init__(self, data):
        self.data, self.at = data, 0

    def bit(self):
        if self.at >= 8 * len(self.data):
            raise ValueError("the block ends before its end mark")
        bit = self.data[self.at // 8] >> self.at % 8 & 1
        self.at += 1
        return bit

    def number(self, bits):
        return sum(self.bit() << place for place in range(bits))

    def code(self, codes):
        code = ""
        while code not in codes:
            if len(code) > 13:
                raise ValueError("no code has these bits")
            code += str(self.bit())
        return codes[code]


def expand(block, size):
    """The original of a compressed block."""
    mode, dictionary = block[0], block[1]
    if dictionary not in (4, 5, 6):
        raise ValueError("unknown dictionary")
    if mode not in (BINARY, TEXT):
        raise ValueError("unknown mode")
    bits, out = Bits(block[2:]), bytearray()
    while True:
        if not bits.bit():
            out.append(bits.code(TEXT_CHARACTERS) if mode == TEXT else bits.number(8))
            continue
        smallest, extra = bits.code(LENGTH_CODES)
        length = smallest + bits.number(extra)
        if length == END_LENGTH:
            break
        high, low_bits = bits.code(DISTANCES), 2 if length == 2 else dictionary
        distance = (high << low_bits) + bits.number(low_bits) + 1
        if distance > len(out):
            raise ValueError("a distance from before the first byte")
        for _ in range(length):
            out.append(out[-distance])
    if len(out) != size:
        raise ValueError("the block has another size than its record")
    return bytes(out)


def compress(data, mode=BINARY, dictionary=6):
    """A block; the first repetition that is found is taken."""
    out = []
    put = out.append
    window = 64 << dictionary
    last = {}  # where three bytes were seen last
    at = 0

    def put_number(number, bits):
        put("".join(str(number >> place & 1) for place in range(bits)))

    def put_length(length):
        code, (smallest, extra) = next(
            item for item in LENGTH_CODES.items()
            if item[1][0] <= length < item[1][0] + (1 << item[1][1])
        )  # fmt: skip
        put(code)
        put_number(length - smallest, extra)

    while at < len(data):
        before = last.get(data[at : at + 3], -window - 1)
        length = 0
        if at - before <= window:
            while length < LONGEST and at + length < len(data) and data[before + length] == data[at + length]:
                length += 1
        if length >= 3:
            put("1")
            put_length(length)
            put(DISTANCE_CODES[(at - before - 1) >> dictionary])
            put_number((at - before - 1) & ((1 << dictionary) - 1), dictionary)
        else:
            length = 1
            put("0")
            if mode == TEXT:
                put(TEXT_CODES[data[at]])
            else:
                put_number(data[at], 8)
        for place in range(at, at + length):
            last[data[place : place + 3]] = place
        at += length
    put("1")
    put_length(END_LENGTH)
    stream = "".join(out)
    stream += "0" * (-len(stream) % 8)
    packed = bytes(int(stream[i : i + 8][::-1], 2) for i in range(0, len(stream), 8))
    return bytes([mode, dictionary]) + packed


def crc_register(data):
    return zlib.crc32(data) ^ 0xFFFFFFFF


@dataclass
class Entry:
    name: bytes
    contents: bytes = b""
    attributes: int = 32
    created: float = 36526.5
    changed: float = 36527.25
    major: int = 0
    minor: int = 0
    # Of each block, "U" or a mode and a dictionary; a shorter list goes on with the default.
    coding: list = field(default_factory=list)
    kinds: str = ""  # as read
    next_position: int = 0


@dataclass
class Archive:
    entries: list
    parent: bytes = b""
    flags: int = 0
    version: int = 256


def blocks_of(contents):
    cut = [contents[i : i + BLOCK_BYTES] for i in range(0, len(contents), BLOCK_BYTES)]
    return cut or [b""]


def name_field(text):
    if len(text) >= NAME_BYTES:
        raise ValueError("the name does not fit")
    return (text + b"\0").ljust(NAME_BYTES, b" ")


def descriptor(count):
    return struct.pack("<iHii", count, 1, count, 1)


def encode(archive):
    """An archive's bytes."""
    size = 279 + sum(309 + 5 * len(blocks_of(entry.contents)) for entry in archive.entries)
    head = MAGIC + struct.pack("<hi", archive.version, archive.flags) + name_field(archive.parent)
    head += descriptor(len(archive.entries))
    data = b""
    for entry in archive.entries:
        records = b""
        for i, original in enumerate(blocks_of(entry.contents)):
            coding = entry.coding[i] if i < len(entry.coding) else (BINARY, 6)
            packed = original if coding == "U" else compress(original, *coding)
            kind = b"C"
            if len(packed) >= len(original):
                packed, kind = original, b"U"
            records += kind + struct.pack("<hh", len(original), len(packed))
            if not entry.attributes & DIRECTORY:
                data += packed
        head += struct.pack("<i", size + len(data) + 1) + name_field(entry.name)
        head += struct.pack("<iii", len(entry.contents), entry.major, entry.minor)
        head += struct.pack("<dd", entry.created, entry.changed)
        head += struct.pack("<iI", entry.attributes, crc_register(entry.contents))
        head += descriptor(len(records) // 5) + records
    return head + data


class Fields:
    def __init__(self, data):
        self.data, self.at = data, 0

    def take(self, size):
        if self.at + size > len(self.data):
            raise ValueError("the archive ends early")
        taken = self.data[self.at : self.at + size]
        self.at += size
        return taken

    def numbers(self, layout):
        return struct.unpack("<" + layout, self.take(struct.calcsize("<" + layout)))

    def name(self):
        text = self.take(NAME_BYTES)
        end = text.index(b"\0")
        if text[end + 1 :].strip(b" "):
            raise ValueError("a name is not followed by blanks")
        return text[:end]

    def count(self):
        count, dimensions, elements, lower = self.numbers("iHii")
        if (dimensions, elements, lower) != (1, count, 1):
            raise ValueError("a count and its descriptor differ")
        return count


def decode(data):
    """The archive in these bytes."""
    fields = Fields(data)
    if fields.take(4) != MAGIC:
        raise ValueError("no archive")
    version, flags = fields.numbers("hi")
    archive = Archive([], fields.name(), flags, version)
    if archive.parent and not archive.parent.endswith(b"\\"):
        raise ValueError("the parent directory has no final separator")
    records = []
    for _ in range(fields.count()):
        entry = Entry(b"")
        (entry.next_position,) = fields.numbers("i")
        entry.name = fields.name()
        size, entry.major, entry.minor = fields.numbers("iii")
        entry.created, entry.changed, entry.attributes, crc = fields.numbers("ddiI")
        blocks = [fields.numbers("chh") for _ in range(fields.count())]
        expected = [len(block) for block in blocks_of(bytes(size))]
        if [original for _, original, _ in blocks] != expected:
            raise ValueError("a file is not divided as it should be")
        records.append((entry, crc, blocks))
    for entry, crc, blocks in records:
        if not entry.attributes & DIRECTORY:
            for kind, original, packed in blocks:
                content = fields.take(packed)
                if kind == b"C":
                    if packed >= original:
                        raise ValueError("a block is compressed to no use")
                    content = expand(content, original)
                elif kind != b"U" or packed != original:
                    raise ValueError("a stored block has another size than its original")
                entry.contents += content
                entry.kinds += kind.decode()
            if crc_register(entry.contents) != crc:
                raise ValueError("a checksum is wrong")
        if entry.next_position != fields.at + 1:
            raise ValueError("a position is wrong")
        archive.entries.append(entry)
    if fields.at != len(data):
        raise ValueError("there is more behind the last block")
    return archive
