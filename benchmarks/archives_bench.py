#!/usr/bin/env python3
"""archives_bench.py [FOLDER]: archives of thousands of files, qvarc beside Debian's zip and unzip.

Each line tells our figure, the peer's, and ours over the peer's: of bytes, and of processor time, the
system's included. Both programs run in turn, warm; the figures are medians.
Without a folder: 2000 files of 200 to 20000 bytes, cut from the sources of this repository. Build
the preset native first. The peer codes with trees of its own for every block, ours with the fixed
ones of the format, so that the peer's archives are smaller and slower to make.
"""

import os
import random
import resource
import shutil
import statistics
import subprocess
import sys
import tempfile
from pathlib import Path

REPOSITORY = Path(__file__).resolve().parent.parent
QVARC = REPOSITORY / "build/native/qvarc"
ROUNDS = 3
FILES = 2000


def make_tree(folder):
    text = b"".join(path.read_bytes() for path in sorted((REPOSITORY / "src").rglob("*.cpp")))
    chance = random.Random(1)
    for number in range(FILES):
        path = folder / f"{number // 100:02}" / f"{number:04}.txt"
        path.parent.mkdir(exist_ok=True)
        start = chance.randrange(len(text) - 20000)
        path.write_bytes(text[start : start + chance.randrange(200, 20000)])


def children_s():
    used = resource.getrusage(resource.RUSAGE_CHILDREN)
    return used.ru_utime + used.ru_stime


def seconds(*command, folder):
    start = children_s()
    subprocess.run(command, cwd=folder, check=True, stdout=subprocess.DEVNULL)
    return children_s() - start


def print_row(what, ours, peers, unit, ratio):
    print(f"  {what:46} {ours:12.2f} {peers:12.2f} {unit:6} x {ratio:7.4f}", flush=True)


def race(name, ours, peers, folder, before=lambda: None):
    """Both in turn; prints the medians and the median of the paired ratios."""
    pairs = []
    for _ in range(ROUNDS):
        before()
        own = seconds(*ours, folder=folder)
        before()
        pairs.append((own, seconds(*peers, folder=folder)))
    own, peer = (statistics.median(times) for times in zip(*pairs))
    ratio = statistics.median(own / peer for own, peer in pairs)
    print_row(name, own, peer, "s", ratio)


def main():
    work = Path(tempfile.mkdtemp())
    try:
        if len(sys.argv) > 1:
            tree = Path(sys.argv[1]).resolve()
        else:
            tree = work / "tree"
            tree.mkdir()
            make_tree(tree)
        size = sum(path.stat().st_size for path in tree.rglob("*") if path.is_file())
        count = sum(1 for path in tree.rglob("*") if path.is_file())
        print(f"Archives, {size / 1e6:.1f} MB in {count} files; peer: zip and unzip", flush=True)

        def fresh():
            for name in ("q.zip", "out"):
                path = work / name
                shutil.rmtree(path, ignore_errors=True) if path.is_dir() else path.unlink(missing_ok=True)

        create = (QVARC, "create", "-q", work / "q.kwc")
        pack = ("zip", "-q", "-r", work / "q.zip", ".")
        race("create, zip at its default", (*create, tree), pack, tree, fresh)
        own, peer = ((work / name).stat().st_size for name in ("q.kwc", "q.zip"))
        print_row("create, zip at its default", own, peer, "bytes", own / peer)
        race("create, zip -1", (*create, tree), (*pack, "-1"), tree, fresh)
        race("create --smallest, zip -9", (*create, "-s", tree), (*pack, "-9"), tree, fresh)
        own, peer = ((work / name).stat().st_size for name in ("q.kwc", "q.zip"))
        print_row("create --smallest, zip -9", own, peer, "bytes", own / peer)
        race("test, unzip -t", (QVARC, "test", "-q", "q.kwc"), ("unzip", "-q", "-t", "q.zip"), work)
        race(
            "extract, unzip", (QVARC, "extract", "-q", "-t", "out", "q.kwc"),
            ("unzip", "-q", "-d", "out", "q.zip"), work,
            lambda: shutil.rmtree(work / "out", ignore_errors=True),
        )  # fmt: skip
    finally:
        shutil.rmtree(work, ignore_errors=True)


main()
