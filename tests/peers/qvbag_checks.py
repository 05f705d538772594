#!/usr/bin/env python3
"""qvbag_checks.py native|native-asan|x64|x86: the command-line program, of this machine or under Wine, on bags
that the tests make themselves and, under Wine, on those of the library. Prints a line a check, and "done"."""

import json
import random
import re
import shutil
import struct
import subprocess
import sys
import tempfile
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent))
import property_bag as bags

REPOSITORY = Path(__file__).resolve().parents[2]
BITS = sys.argv[1]
IS_WINDOWS = BITS in ("x64", "x86")
PROGRAM = f"build/{BITS}/qvbag" + (".exe" if IS_WINDOWS else "")
# Below the repository, which every suite sees; names in it are given relative to that.
WORK = REPOSITORY / "build" / f"qvbag-{BITS}"
INSIDE = WORK.relative_to(REPOSITORY)
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


def hold(contents):
    (WORK / "a.bag").write_bytes(contents)


def properties_of(contents, *names):
    hold(contents)
    code, said, error = run("--json", "@a.bag", *names)
    found = json.loads(said)
    return code, found["properties"], error


def shown(value):
    """The line of a bag's one property, without its name."""
    hold(bags.second_form([(b"X", value)]))
    code, said, error = run("@a.bag")
    check("all is well", (code, error), (0, ""))
    return said.splitlines()[1].removeprefix("X  ")


def member(value):
    code, properties, error = properties_of(bags.second_form([(b"X", value)]))
    check("all is well in JSON", (code, error), (0, ""))
    assert properties[0].pop("name") == "X"
    return properties[0]


EVERY_TYPE = [
    (b"AN INTEGER", bags.scalar("Integer", -2)),
    (b"LONG", bags.scalar("Long", 2147483647)),
    (b"SINGLE", bags.scalar("Single", 0.1)),
    (b"DOUBLE", bags.scalar("Double", -2.5e300)),
    (b"CURRENCY", bags.scalar("Currency", -12500)),
    (b"DATE", bags.scalar("Date", 2.5)),
    (b"BOOLEAN", bags.scalar("Boolean", -1)),
    (b"BYTE", bags.scalar("Byte", 200)),
    (b"STRING", bags.text(b'say "x"\r\n')),
    (b"OLD", bags.short_text(b"perch\xe8")),
    (b"ARRAY", bags.array("Long", [(1, 2), (0, 1)], [5, 6, 7, 8])),
    (b"", bags.text(b"")),
]
EVERY_LINE = """second form, version -7, 12 properties
AN INTEGER  Integer   -2
LONG        Long      2147483647
SINGLE      Single    0.1
DOUBLE      Double    -2.5e+300
CURRENCY    Currency  -1.25
DATE        Date      1900-01-01 12:00:00
BOOLEAN     Boolean   True
BYTE        Byte      200
STRING      String    "say ""x""??"
OLD         String    "perchè"
ARRAY       Long(1 To 2, 0 To 1)  5, 6, 7, 8
            String    ""
"""
EVERY_MEMBER = [
    {"name": "AN INTEGER", "type": "Integer", "value": -2},
    {"name": "LONG", "type": "Long", "value": 2147483647},
    {"name": "SINGLE", "type": "Single", "value": 0.1},
    {"name": "DOUBLE", "type": "Double", "value": -2.5e300},
    {"name": "CURRENCY", "type": "Currency", "value": -1.25},
    {"name": "DATE", "type": "Date", "value": "1900-01-01T12:00:00"},
    {"name": "BOOLEAN", "type": "Boolean", "value": True},
    {"name": "BYTE", "type": "Byte", "value": 200},
    {"name": "STRING", "type": "String", "value": 'say "x"\r\n'},
    {"name": "OLD", "type": "String", "value": "perchè"},
    {"name": "ARRAY", "type": "Long()", "bounds": [[1, 2], [0, 1]], "value": [5, 6, 7, 8]},
    {"name": "", "type": "String", "value": ""},
]


def every_type():
    hold(bags.second_form(EVERY_TYPE, -7))
    check("every type", run("@a.bag"), (0, EVERY_LINE, ""))
    code, said, error = run("-j", "@a.bag")
    check("every type in JSON", (code, json.loads(said), error), (0, {"form": 2, "version": -7, "properties": EVERY_MEMBER}, ""))
    check("JSON is ASCII", said.isascii())
    hold(bags.first_form(EVERY_TYPE, -7))
    check("first form", run("@a.bag"), (0, EVERY_LINE.replace("second", "first"), ""))
    code, said, _ = run("@a.bag", "--json")
    check("first form in JSON", (code, json.loads(said)), (0, {"form": 1, "version": -7, "properties": EVERY_MEMBER}))


def documented_examples():
    for form, name in ((1, "property-bag-1.md"), (2, "property-bag-2.md")):
        page = (REPOSITORY / "docs/formats" / name).read_text("utf-8")
        hold(bytes.fromhex(re.search(r"```hex\n(.*?)```", page, re.S)[1].replace("\n", " ")))
        code, said, error = run("-j", "@a.bag")
        expected = [{"name": "ONE", "type": "Long", "value": 7}, {"name": "TWO", "type": "String", "value": "x"}]
        check(f"the example of {name}", (code, json.loads(said), error), (0, {"form": form, "version": 5, "properties": expected[:form]}, ""))


def empty_bags():
    hold(b"")
    check("an empty file", run("@a.bag"), (0, "second form, version 512, 0 properties\n", ""))
    check("an empty file in JSON", json.loads(run("-j", "@a.bag")[1]), {"form": 2, "version": 512, "properties": []})
    hold(b"PB2" + bytes(8))
    check("an empty bag", run("@a.bag"), (0, "second form, version 0, 0 properties\n", ""))


def values():
    check("False", shown(bags.scalar("Boolean", 0)), "Boolean   False")
    check("any other truth", member(bags.scalar("Boolean", 5)), {"type": "Boolean", "value": True})
    check("the least Currency", shown(bags.scalar("Currency", -(2**63))), "Currency  -922337203685477.5808")
    check("a tenth of a thousandth", member(bags.scalar("Currency", 1)), {"type": "Currency", "value": 0.0001})
    check("a small negative Currency", shown(bags.scalar("Currency", -100)), "Currency  -0.01")
    check("the first date", shown(bags.scalar("Date", -657434.0)), "Date      0100-01-01 00:00:00")
    check("before the day 0 the time counts forward", shown(bags.scalar("Date", -1.25)), "Date      1899-12-29 06:00:00")
    check("the last second", shown(bags.scalar("Date", 2958465 + 86399 / 86400)), "Date      9999-12-31 23:59:59")
    check("no date", shown(bags.scalar("Date", 2958466.0)), "Date      2958466")
    check("no date in JSON", member(bags.scalar("Date", 1e300)), {"type": "Date", "value": 1e300})
    check("no number", member(bags.scalar("Double", float("nan"))), {"type": "Double", "value": "NaN"})
    check("no date and no number", shown(bags.scalar("Date", float("-inf"))), "Date      -Infinity")
    check("no finite number", member(bags.scalar("Single", float("inf"))), {"type": "Single", "value": "Infinity"})
    check("a long text is cut", shown(bags.text(b"x" * 61)), 'String    "' + "x" * 60 + '" ... (61 characters)')
    check("60 characters are not", shown(bags.text(b"x" * 60)), 'String    "' + "x" * 60 + '"')
    check("in JSON it is whole", member(bags.text(b"x" * 5000))["value"], "x" * 5000)
    check("control characters can't steer a terminal", shown(bags.text(b"\x1b[31m\x9d")), 'String    "?[31m?"')
    every = bytes(range(256))
    characters = [every[i : i + 1].decode("cp1252", "replace") for i in range(256)]
    characters = [chr(i) if character == "\ufffd" else character for i, character in enumerate(characters)]
    check("every byte is a character", member(bags.text(every))["value"], "".join(characters))
    check("a long array is cut", shown(bags.array("Byte", [(0, 12)], range(13))), "Byte(0 To 12)  0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11 ... (13 elements)")
    check("an array without elements", member(bags.array("Long", [(1, 0)], [])), {"type": "Long()", "bounds": [[1, 0]], "value": []})
    check("dates of an array", member(bags.array("Date", [(-1, 0)], [0.0, 1.5])), {"type": "Date()", "bounds": [[-1, 0]], "value": ["1899-12-30T00:00:00", "1899-12-31T12:00:00"]})
    name = b"N" * 40
    hold(bags.second_form([(name, bags.scalar("Byte", 1)), (b"B", bags.scalar("Byte", 2))]))
    check("a long name", run("@a.bag")[1].splitlines()[1:], ["N" * 40 + "  Byte      1", "B".ljust(32) + "  Byte      2"])


def selection():
    bag = bags.second_form([(b"ONE", bags.scalar("Long", 1)), (b"PERCH\xc8", bags.scalar("Long", 2)), (b"TWO", bags.scalar("Long", 3))])
    for names, found in ((["one"], ["ONE"]), (["TWO", "One", "two"], ["ONE", "TWO"]), (["Perchè"], ["PERCHÈ"])):
        code, properties, _ = properties_of(bag, *names)
        check(f"select {names}", (code, [p["name"] for p in properties]), (0, found))
    check("the count is of those", run("@a.bag", "one")[1], "second form, version 0, 1 property\nONE  Long      1\n")
    for name in ("ON", "none", "日本"):
        check(f"no property {name}", run("@a.bag", "one", name), (1, "", f'qvbag: "{INSIDE}/a.bag": the bag has no property "{name}"\n'))
    (WORK / "-j").write_bytes(bag)
    check("an unusual name of a file", run("--", f"{INSIDE}/-j", "one")[0], 0)


def refusals():
    for contents in (b"PB", b"PB1" + bytes(8), b"\x02\0\0", b"\x03\0\0", b"PK\3\4 and more", b"\xef\xbb\xbfPB2"):
        hold(contents)
        check(f"{contents} is no bag", run("@a.bag"), (1, "", f'qvbag: "{INSIDE}/a.bag": the file holds no property bag\n'))
    check("a missing file", run("@missing"), (1, "", f'qvbag: "{INSIDE}/missing": there is no such file\n'))
    check("a folder", run("@")[0], 1)
    for arguments in ([], ["--bogus", "a"], ["-x"], ["--json=1", "a"], ["-j"]):
        check(f"wrong command line {arguments}", run(*arguments)[0], 2)
    for word in ("-h", "--help"):
        code, said, error = run("a", word)
        check(word, (code, "qvbag [option...] FILE [NAME...]" in said, error), (0, True, ""))
        check("no line is wider than a terminal", max(map(len, said.splitlines())) <= 80)
    check("version", run("-V")[:2], (0, run("--version")[1]))


def damage():
    whole = bags.second_form([(b"A", bags.scalar("Long", 1)), (b"B", bags.text(b"xyz"))], 3)
    hold(whole[:-1])
    check("a cut value", run("@a.bag"), (1, "second form, version 3, 2 properties\nA  Long      1\nB  (the bag ends within its value)\n", "qvbag: B: the bag ends within its value\n"))
    code, properties, error = properties_of(whole[:-1])
    check("a cut value in JSON", (code, properties[1]), (1, {"name": "B", "error": "the bag ends within its value"}))
    check("what is not asked for does not fail", run("@a.bag", "a")[0], 0)
    cut_directory = {"error": "the file ends within the directory of the bag"}
    for length in range(3, len(whole)):
        hold(whole[:length])
        code, said, error = run("-j", "@a.bag") if length % 4 == 3 or not IS_WINDOWS else (1, '{"properties": [], "error": ""}', "x")
        check(f"cut after {length} bytes", (code, error != "", "properties" in json.loads(said)), (1, True, True))
    hold(whole[:20])
    found = json.loads(run("-j", "@a.bag")[1])
    check("a cut directory", {"error": found.get("error")}, cut_directory)
    hold(whole[:9])
    check("a cut head", run("@a.bag"), (1, "second form, version 3, 0 properties\n", "qvbag: the file ends within the head of the bag\n"))
    hold(b"PB2" + struct.pack("<ii", 1, -1))
    check("a negative directory", run("@a.bag"), (1, "second form, version 1, 0 properties\n", "qvbag: the size of the directory is negative\n"))
    for position in (0, -1, 6, 2147483647, -2147483648):
        code, properties, _ = properties_of(bags.joined_2(bags.entry(b"A", position), bags.scalar("Long", 1)))
        check(f"a value at {position}", (code, properties), (1, [{"name": "A", "error": f"no value lies at its position {position}"}]))
    for reason, value in {
        "its value is of an unknown type": b"\x63\0\0\0\0",
        "the length of its value is negative": b"\xff\xff\xff\xff\xff",
        "the bag ends within its value": b"\xff\xff\xff\xff\x7f",
        "the bounds of its array don't fit the elements": bags.array("Long", [(1, 3)], [1, 2]),
    }.items():
        code, properties, _ = properties_of(bags.second_form([(b"A", value), (b"B", bags.scalar("Long", 1))]))
        check(reason, (code, properties), (1, [{"name": "A", "error": reason}, {"name": "B", "type": "Long", "value": 1}]))
    for value in (bags.array("Long", [(5, 1)], []), bags.array("Long", [(-(2**31), 2**31 - 1)], []), b"\x20\xff" + bags.array("Long", [(1, 1)], [1])[2:]):
        check("an array that there can't be", properties_of(bags.second_form([(b"A", value)]))[0], 1)


def hostile():
    """A small file must not make much of anything."""
    big = bags.text(b"\0" * 200000)
    hold(bags.joined_2(bags.entry(b"A", 1) * 20000, big))
    code, said, error = run("-j", "@a.bag")
    check("many names of one value", (code, len(said) < 10000000, "too many that overlap" in error), (1, True, True))
    deep = bytes([32, 17]) + struct.pack("<h", 32767) + struct.pack("<ii", 0, 0) * 32767 + struct.pack("<i", 1) + b"\7"
    hold(bags.joined_2(bags.entry(b"A", 1) * 20000, deep))
    code, said, error = run("@a.bag")
    check("many names of one array of many dimensions", (code, len(said) < 10000000), (1, True))
    hold(bags.second_form([(b"A\r\n\x1b[2J", bags.scalar("Long", 1))]))
    check("a name can't steer a terminal", run("@a.bag")[1].splitlines()[1], "A???[2J  Long      1")
    if IS_WINDOWS:
        return
    source = random.Random(1)
    good = [bags.second_form(EVERY_TYPE), bags.first_form(EVERY_TYPE)]
    wrong = []
    for i in range(300):
        contents = bytearray(good[i % 2])
        for _ in range(source.randint(1, 6)):
            contents[source.randrange(len(contents))] = source.choice((0, 1, 8, 32, 127, 128, 255, source.randrange(256)))
        hold(contents)
        code, said, _ = run("-j", "@a.bag")
        if code not in (0, 1) or (said and "properties" not in json.loads(said)) or run("@a.bag")[0] != code:
            wrong.append(bytes(contents).hex())
    check("changed at random", wrong, [])


MAKE_BAGS = r"""
Dim bag, kind, file, number, stored, attributes, handle
For Each kind In Array("QvtPropertyBag2", "QvtPropertyBag")
  Set bag = CreateObject("QvRtLibOle." & kind)
  bag.Version = 9
  Check kind & " takes a text", bag.WriteProperty("perch" & Chr(232) & Chr(0), "colour", ""), False
  Check kind & " takes a Long", bag.WriteProperty(CLng(120), "Left", CLng(0)), False
  Check kind & " takes a Date", bag.WriteProperty(DateSerial(2024, 2, 29), "Day"), False
  Check kind & " takes a Currency", bag.WriteProperty(CCur(1.5), "Price"), False
  attributes = 0
  Check kind & " has a file", File_Open32("FOLDER\" & kind & ".bag", 2 + 16 + 32, 0, attributes, handle), False
  stored = bag.Flush
  Check kind & " is written", File_Write32(handle, stored), CInt(0)
  Check kind & " is closed", File_Close32(handle), False
Next
Finish
"""


def bags_of_the_library():
    if not IS_WINDOWS:
        return
    (WORK / "make.vbs").write_text(MAKE_BAGS.replace("FOLDER", str(INSIDE).replace("/", "\\")), "latin-1")
    host = f"build/{BITS}/tests/server/script_host.exe"
    code, said, _ = start(host, "tests/scripts/support/checks.vbs", f"{INSIDE}/make.vbs")
    check("the library makes bags", (code, re.findall(r"^(?!ok ).+$", said, re.M)), (0, ["done"]))
    expected = [
        {"name": "COLOUR", "type": "String", "value": "perchè\0"},
        {"name": "LEFT", "type": "Long", "value": 120},
        {"name": "DAY", "type": "Date", "value": "2024-02-29T00:00:00"},
        {"name": "PRICE", "type": "Currency", "value": 1.5},
    ]
    for form, kind in ((2, "QvtPropertyBag2"), (1, "QvtPropertyBag")):
        code, said, error = run("-j", f"@{kind}.bag")
        check(f"a bag of {kind}", (code, json.loads(said or "{}"), error), (0, {"form": form, "version": 9, "properties": expected}, ""))


def main():
    shutil.rmtree(WORK, ignore_errors=True)
    WORK.mkdir(parents=True)
    if IS_WINDOWS:  # else every run would start a server of its own
        subprocess.run(["bash", "-c", f". tools/environment.sh; in_prefix {BITS} wineserver -p20"], cwd=REPOSITORY, check=False)
    for part in (every_type, documented_examples, empty_bags, values, selection, refusals, damage, hostile,
                 bags_of_the_library):  # fmt: skip
        part()
    shutil.rmtree(WORK, ignore_errors=True)
    print("done")
    sys.exit(1 if failures else 0)


main()
