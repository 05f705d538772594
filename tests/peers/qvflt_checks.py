#!/usr/bin/env python3
"""qvflt_checks.py native|native-asan|x64|x86: the command-line program, of this machine or under Wine, on
filter files that the tests make themselves and, under Wine, on those of the library. Prints a line a
check, and "done"."""

import json
import random
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import zlib
from pathlib import Path

REPOSITORY = Path(__file__).resolve().parents[2]
BITS = sys.argv[1]
IS_WINDOWS = BITS in ("x64", "x86")
PROGRAM = f"build/{BITS}/qvflt" + (".exe" if IS_WINDOWS else "")
# Below the repository, which every suite sees; names in it are given relative to that.
WORK = REPOSITORY / "build" / f"qvflt-{BITS}"
INSIDE = WORK.relative_to(REPOSITORY)
MOST_BITS = 2**31 - 1
failures = 0


def check(name, actual, expected=True):
    global failures
    if actual == expected:
        print(f"ok {name}")
    else:
        failures += 1
        print(f"FAILED {name}: {actual!r:.600} instead of {expected!r:.600}")


def start(*command):
    """(exit code, standard output, error output) of a program of the suite."""
    if IS_WINDOWS:
        command = ["bash", "-c", '. tools/environment.sh; run_wine "$@"', "bash", BITS, *command]
    # Into files: what Wine starts beside the program would hold pipes open for seconds.
    with tempfile.TemporaryFile() as output, tempfile.TemporaryFile() as error:
        code = subprocess.run(
            command, cwd=REPOSITORY, stdout=output, stderr=error, timeout=120, check=False
        ).returncode
        texts = []
        for file in (output, error):
            file.seek(0)
            texts.append(file.read().decode("utf-8").replace("\r\n", "\n"))
    return code, *texts


def run(*arguments):
    """"@" before an argument means a file's name."""
    words = [f"{INSIDE}/{word[1:]}" if word.startswith("@") else word for word in arguments]
    return start(PROGRAM, *words)


def hold(contents, name="a.flt"):
    (WORK / name).write_bytes(contents)


def held(name="b.flt"):
    return (WORK / name).read_bytes()


# The three kinds as the format pages have them; a filter is its number of bits and the set of those set.


def raw(bits, members):
    image = bytearray((bits + 7) // 8)
    for bit in members:
        image[bit // 8] |= 1 << bit % 8
    return bytes(image)


def older(bits, members):
    return struct.pack("<i", bits) + raw(bits, members)


def head_of(kind, bits, body):
    head = b"QVBF" + struct.pack("<HHiII", 1, kind, bits, len(body), zlib.crc32(body))
    return head + struct.pack("<I", zlib.crc32(head))


def words(bits, members):
    body = raw(bits, members).ljust((bits + 31) // 32 * 4, b"\0")
    return head_of(0, bits, body) + body


def numbers(bits, members):
    body = b"".join(struct.pack("<I", bit) for bit in sorted(members))
    return head_of(1, bits, body) + body


def saved(bits, members):
    return numbers(bits, members) if len(members) < (bits + 31) // 32 else words(bits, members)


SPARSE = (100, {0, 70})
DENSE = (70, set(range(0, 70, 2)) | {69})
EMPTY = (0, set())
CLEAR = (33, set())
ALL = (SPARSE, DENSE, EMPTY, CLEAR)


def info():
    hold(b"".join(saved(*each) for each in ALL))
    check("info", run("info", "@a.flt"), (0, """\
 image  kind   body           bits     records       bytes
     1  saved  numbers         100           2          32
     2  saved  words            70          36          36
     3  saved  words             0           0          24
     4  saved  numbers          33           0          24
""", ""))  # fmt: skip
    expected = [
        {"image": 1, "kind": "saved", "body": "numbers", "offset": 0, "bytes": 32, "bits": 100, "records": 2},
        {"image": 2, "kind": "saved", "body": "words", "offset": 32, "bytes": 36, "bits": 70, "records": 36},
        {"image": 3, "kind": "saved", "body": "words", "offset": 68, "bytes": 24, "bits": 0, "records": 0},
        {"image": 4, "kind": "saved", "body": "numbers", "offset": 92, "bytes": 24, "bits": 33, "records": 0},
    ]
    for word in ("-j", "--json"):
        code, said, error = run("info", word, "@a.flt")
        check(f"info {word}", (code, json.loads(said), error), (0, {"images": expected}, ""))
    hold(b"".join(older(*each) for each in ALL))
    code, said, error = run("info", "-j", "@a.flt")
    expected = [
        {"image": 1, "kind": "older", "offset": 0, "bytes": 17, "bits": 100, "records": 2},
        {"image": 2, "kind": "older", "offset": 17, "bytes": 13, "bits": 70, "records": 36},
        {"image": 3, "kind": "older", "offset": 30, "bytes": 4, "bits": 0, "records": 0},
        {"image": 4, "kind": "older", "offset": 34, "bytes": 9, "bits": 33, "records": 0},
    ]
    check("older images are known by their lengths", (code, json.loads(said), error), (0, {"images": expected}, ""))
    hold(raw(*SPARSE))
    code, said, error = run("info", "-j", "-f", "raw", "@a.flt")
    check("a raw image", (code, json.loads(said)["images"], error), (0, [{"image": 1, "kind": "raw", "offset": 0, "bytes": 13, "bits": 104, "records": 2}], ""))
    check("a raw image of fewer bits", json.loads(run("info", "--from=raw", "--bits", "97", "-j", "@a.flt")[1])["images"][0]["bits"], 97)
    hold(b"")
    check("a raw image of no bits", run("info", "-f", "raw", "@a.flt")[0], 0)


def documented_examples():
    for name, kind, bits, records in (("filter-image", "saved", 100, "1\n71\n"), ("filter-image-older", "older", 12, "1\n4\n9\n12\n"),
                                      ("filter-raw-image", "raw", 16, "1\n4\n9\n")):  # fmt: skip
        page = (REPOSITORY / "docs/formats" / f"{name}.md").read_text("utf-8")
        hold(bytes.fromhex(re.search(r"```hex\n(.*?)```", page, re.S)[1].replace("\n", " ")))
        found = json.loads(run("info", "-j", "-f", kind, "@a.flt")[1])["images"][0]
        check(f"the example of {name}", (found["bits"], run("list", "-f", kind, "@a.flt")), (bits, (0, records, "")))


def listing():
    hold(b"".join(saved(*each) for each in ALL))
    check("list", run("list", "@a.flt"), (0, "1\n71\n", ""))
    check("list another", run("list", "-i", "2", "@a.flt")[1].split(), [str(bit + 1) for bit in sorted(DENSE[1])])
    check("list nothing", run("list", "--image=3", "@a.flt"), (0, "", ""))
    check("list in JSON", json.loads(run("list", "-j", "@a.flt")[1]), {"image": 1, "bits": 100, "records": [1, 71]})
    check("list nothing in JSON", json.loads(run("list", "-j", "-i", "4", "@a.flt")[1]), {"image": 4, "bits": 33, "records": []})
    check("an image that is not there", run("list", "-i", "5", "@a.flt"), (1, "", f'qvflt: "{INSIDE}/a.flt" has no image 5\n'))
    every = set(range(0, 200000, 3))
    hold(saved(200000, every))
    check("a long list", run("list", "@a.flt")[1], "".join(f"{bit + 1}\n" for bit in sorted(every)))


def conversions():
    makers = {"saved": saved, "older": older}
    for source, read in makers.items():
        hold(b"".join(read(*each) for each in ALL))
        for target, write in makers.items():
            expected = b"".join(write(*each) for each in ALL)
            made = run("convert", "-t", target, "@a.flt", "@b.flt")
            check(f"{source} to {target}", (made, held()), ((0, f"4 images, {len(expected)} bytes\n", ""), expected))
        for number, each in enumerate(ALL, 1):
            made = run("convert", "-q", "-t", "raw", "-i", str(number), "@a.flt", "@b.flt")
            check(f"image {number} of {source} to raw", (made, held()), ((0, "", ""), raw(*each)))
            for target, write in makers.items():
                run("convert", "-f", "raw", "-n", str(each[0]), "-t", target, "@b.flt", "@c.flt")
                check(f"raw to {target}", held("c.flt"), write(*each))
    hold(saved(*SPARSE) * 2)
    check("dense", (run("convert", "-b", "words", "@a.flt", "@b.flt")[1], held()), ("2 images, 80 bytes\n", words(*SPARSE) * 2))
    check("sparse", (run("convert", "-b", "numbers", "@b.flt", "@c.flt")[1], held("c.flt")), ("2 images, 64 bytes\n", numbers(*SPARSE) * 2))
    check("one image", (run("convert", "@a.flt", "@b.flt", "--image", "2")[1], held()), ("1 image, 32 bytes\n", numbers(*SPARSE)))
    check("in place", (run("convert", "-q", "-t", "older", "@a.flt", "@a.flt"), held("a.flt")), ((0, "", ""), older(*SPARSE) * 2))
    hold(older(12, {0, 3})[:-1] + b"\xf0")
    run("convert", "-q", "@a.flt", "@b.flt")
    check("bits past the last are passed over", held(), saved(12, {0, 3}))
    big = set(random.Random(2).sample(range(3000000), 90000))
    for name, read in makers.items():
        hold(read(3000000, big))
        for target, write in makers.items():
            run("convert", "-q", "-t", target, "@a.flt", "@b.flt")
            check(f"a large one, {name} to {target}", held() == write(3000000, big))
    hold(numbers(MOST_BITS, {0, MOST_BITS - 1}))
    check("the largest", run("list", "@a.flt"), (0, f"1\n{MOST_BITS}\n", ""))


def refusals():
    hold(b"kept", "b.flt")
    before = sorted(path.name for path in WORK.iterdir())

    def refused(name, words, reason):
        made = run(*words)
        left = sorted(path.name for path in WORK.iterdir()) if "convert" in words else before
        check(name, (made[0], made[1], reason in made[2], held(), left), (1, "", True, b"kept", before))

    hold(saved(*SPARSE) * 2)
    before = sorted(path.name for path in WORK.iterdir())
    refused("several images as raw", ["convert", "-t", "raw", "@a.flt", "@b.flt"], "has more than one image")
    refused("an image that is not there", ["convert", "-i", "3", "@a.flt", "@b.flt"], "has no image 3")
    refused("a missing file", ["convert", "@missing", "@b.flt"], "there is no such file")
    refused("a folder", ["convert", "@", "@b.flt"], "there is no such file")
    refused("a target in no folder", ["convert", "@a.flt", "@none/b.flt"], "no file can be made beside")
    refused("a raw image of another size", ["convert", "-f", "raw", "-n", "7", "@a.flt", "@b.flt"], "a raw image of 7 bits has 1 bytes, and the file 64")
    refused("the wrong kind", ["convert", "-f", "older", "@a.flt", "@b.flt"], "image 1: the file ends within it")
    hold(saved(*DENSE))
    refused("numbers that are no shorter", ["convert", "-b", "numbers", "@a.flt", "@b.flt"], "the numbers of 36 records of 70 bits are no shorter than the words")
    for contents in (b"", b"QVB", b"\1\0\0", b"PK\3\4 and more", older(*DENSE)[:-1], older(*DENSE) + b"\0", b"\xff" * 9):
        hold(contents)
        refused(f"{contents[:8]} is neither", ["info", "@a.flt"], "holds neither saved nor older images")
    for arguments in ([], ["bogus"], ["info"], ["info", "a", "b"], ["convert", "a"], ["list", "a", "-i", "0"], ["list", "a", "-i", "x"],
                      ["list", "a", "-i"], ["info", "-i", "1", "a"], ["info", "-q", "a"], ["convert", "-j", "a", "b"], ["info", "-n", "5", "a"],
                      ["info", "-f", "raw", "-n", "-1", "a"], ["info", "-f", "raw", "-n", "2147483648", "a"], ["info", "-f", "odd", "a"],
                      ["convert", "-t", "raw", "-b", "words", "a", "b"], ["convert", "-b", "odd", "a", "b"], ["info", "--json=1", "a"]):  # fmt: skip
        check(f"wrong command line {arguments}", run(*arguments)[0], 2)
    for word in ("-h", "--help"):
        code, said, error = run("info", word)
        check(word, (code, "qvflt convert [option...] FILE TARGET" in said, error), (0, True, ""))
        check("no line is wider than a terminal", max(map(len, said.splitlines())) <= 80)
    check("version", run("-V")[:2], (0, run("--version")[1]))


def damage():
    good = saved(*SPARSE) + saved(*DENSE)
    for length in range(25, len(good)) if not IS_WINDOWS else (25, 31, 33, 60):
        hold(good[:length])
        code, said, error = run("info", "-j", "@a.flt")
        found = json.loads(said)
        whole = length >= 32
        told = f'"{INSIDE}/a.flt": image {whole + 1}: the file ends within it'
        expected = (0, 1, None, "") if length == 32 else (1, int(whole), told, f"qvflt: {told}\n")
        check(f"cut after {length} bytes", (code, len(found["images"]), found.get("error"), error), expected)
    source = random.Random(1)
    wrong = []
    for at in range(len(good)) if not IS_WINDOWS else (8, 25, 40):
        contents = bytearray(good)
        contents[at] ^= 1 << source.randrange(8)
        hold(contents)
        code, said, _ = run("info", "-f", "saved", "-j", "@a.flt")
        if code != 1 or len(json.loads(said)["images"]) != (at >= 32):
            wrong.append(at)
    check("one bit wrong anywhere", wrong, [])
    hold(saved(*SPARSE) + b"QVBF and more than a head has")
    check("what was read before is told", run("info", "@a.flt")[:2], (1, """\
 image  kind   body           bits     records       bytes
     1  saved  numbers         100           2          32
"""))  # fmt: skip


def hostile():
    """Heads whose checksums are right and that promise what is not there."""
    body = bytes(8)
    for name, contents in {
        "a length past the file": head_of(0, MOST_BITS, b"")[:12] + struct.pack("<II", 2**28, 0),
        "a negative number of bits": b"QVBF" + struct.pack("<HHiII", 1, 0, -1, 0, 0),
        "another layout": b"QVBF" + struct.pack("<HHiII", 2, 0, 0, 0, 0),
        "another kind of body": b"QVBF" + struct.pack("<HHiII", 1, 2, 0, 0, 0),
        "more numbers than words": b"QVBF" + struct.pack("<HHiII", 1, 1, 32, 8, zlib.crc32(body)),
    }.items():
        hold(contents + struct.pack("<I", zlib.crc32(contents)) + body)
        check(name, run("info", "@a.flt")[0], 1)
    for name, members in {"numbers that fall": (5, 3), "numbers twice": (5, 5), "a number past the end": (5, 400)}.items():
        numbers_of = b"".join(struct.pack("<I", bit) for bit in members)
        hold(head_of(1, 400, numbers_of) + numbers_of)
        check(name, run("info", "@a.flt")[0], 1)
    hold(head_of(0, 31, b"\xff" * 4) + b"\xff" * 4)
    check("bits past the last word's end", run("info", "@a.flt")[0], 1)
    hold(struct.pack("<i", MOST_BITS) + b"x")
    check("an older head that promises more", run("info", "-f", "older", "@a.flt")[0], 1)
    many = 2000 if BITS == "native" else 50  # a sanitizer keeps books about every page of them
    hold(numbers(MOST_BITS, {5}) * many)
    code, said, _ = run("info", "@a.flt")
    check("many images of a few bytes that stand for large maps", (code, said.count("2147483647")), (0, many))


MAKE_FILTERS = r"""
Dim f, g, h
Set f = CreateObject("QvRtLibOle.QvtBloomFilter")
f.Init 100
f.BitSet 0, 1
f.BitSet 70, 1
Set g = CreateObject("QvRtLibOle.QvtBloomFilter")
g.Init 70
g.BoolNot
Check "one filter", f.Save("FOLDER\one.flt"), False
Check "a pair", BloomSaveExt("FOLDER\pair.flt", f, g), False
Finish
"""
TAKE_FILTERS = r"""
Dim f, h
Set f = CreateObject("QvRtLibOle.QvtBloomFilter")
Check "a dense image", f.Load("FOLDER\dense.flt"), False
Check "has its bits", f.Bits & " " & f.Count & " " & f.NextBit(0), "100 2 70"
h = Bloom_Open("FOLDER\older.flt", False)
Check "the first older image", Bloom_LoadOld(f, h), 0
Check "the second older image", Bloom_LoadOld(f, h), 0
Check "have their bits", f.Bits & " " & f.Count, "70 70"
Bloom_Close h
Finish
"""


def run_script(name, text):
    (WORK / name).write_text(text.replace("FOLDER", str(INSIDE).replace("/", "\\")), "latin-1")
    host = f"build/{BITS}/tests/server/script_host.exe"
    code, said, _ = start(host, "tests/scripts/support/checks.vbs", f"{INSIDE}/{name}")
    return code, re.findall(r"^(?!ok ).+$", said, re.M)


def filters_of_the_library():
    if not IS_WINDOWS:
        return
    check("the library makes filters", run_script("make.vbs", MAKE_FILTERS), (0, ["done"]))
    check("one", held("one.flt"), saved(*SPARSE))
    full = (70, set(range(70)))
    check("a pair", held("pair.flt"), saved(*SPARSE) + saved(*full))
    run("convert", "-q", "-b", "words", "@one.flt", "@dense.flt")
    run("convert", "-q", "-t", "older", "@pair.flt", "@older.flt")
    check("the library takes them", run_script("take.vbs", TAKE_FILTERS), (0, ["done"]))


def main():
    shutil.rmtree(WORK, ignore_errors=True)
    WORK.mkdir(parents=True)
    if IS_WINDOWS:  # else every run would start a server of its own
        subprocess.run(["bash", "-c", f". tools/environment.sh; in_prefix {BITS} wineserver -p20"], cwd=REPOSITORY, check=False)
    for part in (info, documented_examples, listing, conversions, refusals, damage, hostile, filters_of_the_library):
        part()
    shutil.rmtree(WORK, ignore_errors=True)
    print("done")
    sys.exit(1 if failures else 0)


main()
