"""Property bags as the format's description has them, made by other means than the library's."""

import struct

CODES = {"Integer": 2, "Long": 3, "Single": 4, "Double": 5, "Currency": 6, "Date": 7, "Boolean": 11, "Byte": 17}
IMAGES = {"Integer": "<h", "Long": "<i", "Single": "<f", "Double": "<d", "Currency": "<q", "Date": "<d",
          "Boolean": "<h", "Byte": "<B"}  # fmt: skip


def scalar(kind, value):
    return bytes([CODES[kind]]) + struct.pack(IMAGES[kind], value)


def text(contents):
    return b"\xff" + struct.pack("<i", len(contents)) + contents


def short_text(contents):
    return b"\x08" + struct.pack("<h", len(contents)) + contents


def array(kind, bounds, elements, data_bytes=None):
    data = b"".join(struct.pack(IMAGES[kind], element) for element in elements)
    shape = b"".join(struct.pack("<ii", *pair) for pair in bounds)
    size = len(data) if data_bytes is None else data_bytes
    return bytes([32, CODES[kind]]) + struct.pack("<h", len(bounds)) + shape + struct.pack("<i", size) + data


def entry(name, position):
    return b"\0" + name + b"\1" + struct.pack("<i", position) + b"\0"


def directory_and_values(properties):
    directory = values = b""
    for name, value in properties:
        directory += entry(name, len(values) + 1)
        values += value
    return directory, values


def second_form(properties, version=0):
    return joined_2(*directory_and_values(properties), version)


def joined_2(directory, values, version=0):
    return b"PB2" + struct.pack("<ii", version, len(directory)) + directory + values


def first_form(properties, version=0):
    directory, values = directory_and_values(properties)
    return scalar("Long", version) + struct.pack("<i", len(directory)) + directory + values
