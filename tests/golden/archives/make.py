#!/usr/bin/env python3
"""make.py [FOLDER]: writes the archives that lie here (golden_archives_test.cpp tells what is in
them) with the tests' own writer."""

import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "peers"))
import compressed_file as kwcf


def words(size):
    text = b"".join(b"riga %d di testo\r\n" % i for i in range(size // 17 + 1))
    return text[:size]


def noise(size):
    state, out = 12345, bytearray()
    for _ in range(size):
        state = (state * 1664525 + 1013904223) & 0xFFFFFFFF
        out.append(state >> 24)
    return bytes(out)


def entry(name, contents=b"", **fields):
    return kwcf.Entry(b"C:\\Dati\\" + name, contents, **fields)


def sizes():
    """Every way a file is divided, one file each."""
    return kwcf.Archive(
        [
            entry(b"empty"),
            entry(b"one", b"x"),
            entry(b"full", words(32767)),
            entry(b"full and one", words(32768)),
            entry(b"two full", words(65534)),
        ],
        b"C:\\Dati\\",
    )


def codings():
    """Every kind of block, and folders among them."""
    every = [(mode, size) for mode in (kwcf.BINARY, kwcf.TEXT) for size in (4, 5, 6)]
    return kwcf.Archive(
        [
            entry(b"sub", attributes=16),
            entry(b"sub\\binary and text", words(6 * 32767), coding=every),
            entry(b"sub\\stored", noise(40000), major=0x00050001, minor=0x00020003),
            entry(b"sub\\by turns", noise(32767) + words(32767) + noise(9), attributes=33),
            entry(b"sub\\deeper", attributes=16),
            entry(b"sub\\deeper\\perch\xe8.txt", b"ciao ciao ciao ciao ciao", coding=[(kwcf.TEXT, 6)]),
        ],
        b"C:\\Dati\\",
        flags=3,
    )


def main():
    folder = Path(sys.argv[1] if len(sys.argv) > 1 else Path(__file__).parent)
    small = [entry(b"a.txt", b"ciao")]
    archives = {
        "sizes": sizes(),
        "codings": codings(),
        "no_parent": kwcf.Archive(small),
        "version_255": kwcf.Archive(small, version=255),
        "version_257": kwcf.Archive(small, version=257),
    }
    for name, archive in archives.items():
        (folder / f"{name}.kwc").write_bytes(kwcf.encode(archive))


if __name__ == "__main__":
    main()
