#!/usr/bin/env python3
"""qvarc_checks.py native|native-asan|x64|x86: the command-line program, of this machine or under Wine, beside
the tests' own reader and writer of the format. Prints a line a check, and "done"."""

import os
import shutil
import stat
import subprocess
import sys
import tempfile
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent))
import compressed_file as kwcf

REPOSITORY = Path(__file__).resolve().parents[2]
BITS = sys.argv[1]
IS_WINDOWS = BITS in ("x64", "x86")
PROGRAM = f"build/{BITS}/qvarc" + (".exe" if IS_WINDOWS else "")
# Below the repository, which every suite sees; names in it are given relative to that.
WORK = REPOSITORY / "build" / f"qvarc-{BITS}"
INSIDE = WORK.relative_to(REPOSITORY)
failures = 0


def check(name, actual, expected=True):
    global failures
    if actual == expected:
        print(f"ok {name}")
    else:
        failures += 1
        print(f"FAILED {name}: {actual!r:.600} instead of {expected!r:.600}")


def run(*arguments):
    """(exit code, standard output, error output); "@" before an argument means a file's name."""
    words = [f"{INSIDE}/{word[1:]}" if word.startswith("@") else word for word in arguments]
    if IS_WINDOWS:
        command = ["bash", "-c", '. tools/environment.sh; run_wine "$@"', "bash", BITS, PROGRAM, *words]
    else:
        command = [PROGRAM, *words]
    # Into files: what Wine starts beside the program would hold pipes open for seconds.
    with tempfile.TemporaryFile() as output, tempfile.TemporaryFile() as error:
        code = subprocess.run(
            command, cwd=REPOSITORY, stdout=output, stderr=error, timeout=120, check=False
        ).returncode
        texts = []
        for file in (output, error):
            file.seek(0)
            texts.append(file.read().decode("utf-8", "replace").replace("\r\n", "\n"))
    return code, *texts


def words(size):
    return b"".join(b"riga %d di testo\r\n" % i for i in range(size // 17 + 1))[:size]


def noise(size):
    state, out = 12345, bytearray()
    for _ in range(size):
        state = (state * 1664525 + 1013904223) & 0xFFFFFFFF
        out.append(state >> 24)
    return bytes(out)


TREE = {
    "empty": b"",
    "one": b"x",
    "full": words(32767),
    "full and one": words(32768),
    "two full": noise(65534),
    "sub/perchè.txt": b"ciao ciao ciao ciao ciao",
    "sub/deeper/by turns": noise(32767) + words(32767) + noise(9),
}


def make_tree(folder, files):
    for name, contents in files.items():
        path = folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(contents)


def tree_in(folder):
    return {
        str(path.relative_to(folder)): path.read_bytes()
        for path in sorted(folder.rglob("*")) if path.is_file()
    }  # fmt: skip


def fresh(name):
    shutil.rmtree(WORK / name, ignore_errors=True)
    return WORK / name


def archive_of(*entries, **fields):
    (WORK / "made.kwc").write_bytes(kwcf.encode(kwcf.Archive(list(entries), **fields)))


def create_and_extract():
    make_tree(WORK / "tree", TREE)
    (WORK / "tree/sub/hollow").mkdir()
    made = run("create", "@a.kwc", "@tree")
    whole = sum(map(len, TREE.values()))
    check("create", made, (0, f"11 entries, {whole} bytes in {size('a.kwc')}\n", ""))
    archive = kwcf.decode((WORK / "a.kwc").read_bytes())
    check("the parent is where the packed folder lies", archive.parent.endswith(f"\\qvarc-{BITS}\\".encode()))
    stored = {
        entry.name[len(archive.parent) + len("tree\\") :].decode("cp1252").replace("\\", "/"): entry.contents
        for entry in archive.entries if not entry.attributes & kwcf.DIRECTORY
    }  # fmt: skip
    check("another reader finds what was packed", stored, TREE)
    folders = sorted(entry.name[len(archive.parent) :] for entry in archive.entries if entry.attributes & kwcf.DIRECTORY)
    check("folders are entries", folders, [b"tree", b"tree\\sub", b"tree\\sub\\deeper", b"tree\\sub\\hollow"])
    check("test", run("test", "@a.kwc"), (0, "11 entries are right\n", ""))
    check("extract", run("extract", "--to", "@out", "@a.kwc"), (0, "11 entries restored\n", ""))
    check("a tree comes back", tree_in(WORK / "out/tree"), TREE)
    check("an empty folder comes back", (WORK / "out/tree/sub/hollow").is_dir())
    dates = [(WORK / folder / "one").stat().st_mtime for folder in ("tree", "out/tree")]
    check("dates come back", abs(dates[0] - dates[1]) <= 1)
    check("nothing else is left", sorted(os.listdir(WORK)), ["a.kwc", "out", "tree"])


def size(name):
    path = WORK / name
    return path.stat().st_size if path.exists() else 0


def options():
    check("quiet", run("extract", "-q", f"--to={INSIDE}/quiet", "@a.kwc"), (0, "", ""))
    code, _, bar = run("test", "-P", "@a.kwc")
    check("the bar ends at the whole", (code, "[########################] 100 %" in bar), (0, True))
    check("the bar is taken away", bar.endswith("\r"))
    run("create", "-q", "@small.kwc", "@tree", "-s")
    check("smallest is no larger", size("small.kwc") <= size("a.kwc"))
    run("create", "-q", "-x", "@text.kwc", "@tree/full")
    entry = kwcf.decode((WORK / "text.kwc").read_bytes()).entries[0]
    check("text mode", entry.contents, TREE["full"])
    run("extract", "-q", "-f", "-t", "@flat", "@a.kwc")
    check("flat", sorted(os.listdir(WORK / "flat")), sorted(Path(name).name for name in TREE))
    run("create", "-q", "-p", "@tree", "@p.kwc", "@tree/sub")
    run("extract", "-q", "-t", "@p", "@p.kwc")
    check("parent", tree_in(WORK / "p"), {name: TREE[name] for name in TREE if name.startswith("sub/")})
    code, _, said = run("create", "@p.kwc", "@tree/one", "--parent", "@out")
    check("a parent that is none", (code, "does not lie in" in said), (1, True))


def selection():
    for name in ("tree/sub", "TREE\\SUB\\", "tree\\sub"):
        fresh("some")
        run("extract", "-q", "-t", "@some", "@a.kwc", name)
        check(f"select {name}", sorted(tree_in(WORK / "some")), ["tree/sub/deeper/by turns", "tree/sub/perchè.txt"])
    code, said, _ = run("test", "@a.kwc", "tree/full", "tree/one")
    check("a name is no beginning of a name", (code, said), (0, "2 entries are right\n"))
    code, said, error = run("extract", "-t", "@none", "@a.kwc", "tree/missing")
    check("a name that is not there", (code, error), (1, 'qvarc: the archive has no entry "tree/missing"\n'))
    check("nothing is restored then", (WORK / "none").exists(), False)


def listing():
    archive_of(
        kwcf.Entry(b"C:\\Dati\\sub", attributes=16),
        kwcf.Entry(b"C:\\Dati\\sub\\a\x1b[31m.txt", words(40000)),
        kwcf.Entry(b"C:\\other.txt", b"ciao"),
        parent=b"C:\\Dati\\",
    )
    packed = sum(map(len, (kwcf.compress(words(32767)), kwcf.compress(words(40000)[32767:]))))
    code, said, _ = run("list", "@made.kwc")
    check("list", (code, said), (0, f"""below C:\\Dati\\
       size      packed  changed           name
          0           0  2000-01-02 06:00  sub\\
      40000 {packed:11}  2000-01-02 06:00  sub\\a?[31m.txt
          4           4  2000-01-02 06:00  C:\\other.txt
      40004 {packed + 4:11}                    3 entries
"""))  # fmt: skip


def refusals():
    for name, contents in {"none.kwc": b"PK\3\4 and more", "nothing.kwc": b""}.items():
        (WORK / name).write_bytes(contents)
        check(f"{name} is no archive", run("list", f"@{name}"), (1, "", f'qvarc: "{INSIDE}/{name}" is no archive\n'))
    archive_of(kwcf.Entry(b"a.txt", b"ciao"), version=257)
    check("later version", run("test", "@made.kwc")[2], f'qvarc: "{INSIDE}/made.kwc" was made by a later version of the library\n')
    code, _, said = run("extract", "@missing.kwc")
    check("missing archive", (code, said), (1, f'qvarc: "{INSIDE}/missing.kwc" can\'t be opened\n'))
    before = (WORK / "a.kwc").read_bytes()
    code, _, said = run("create", "@a.kwc", "@tree/one", "@tree/missing")
    check("missing source", (code, "missing\" is not there" in said), (1, True))
    check("an archive is replaced only by a whole one", (WORK / "a.kwc").read_bytes() == before)
    for arguments in ([], ["bogus"], ["list"], ["create", "a.kwc"], ["list", "a", "b"], ["test", "--bogus", "a"],
                      ["test", "-s", "a"], ["extract", "a", "--to"], ["list", "-q=1", "a"]):  # fmt: skip
        check(f"wrong command line {arguments}", run(*arguments)[0], 2)
    for word in ("-h", "--help"):
        code, said, _ = run("create", word)
        check(word, (code, "qvarc create [option...] ARCHIVE" in said), (0, True))
    check("version", run("-V")[:2], (0, run("--version")[1]))


def damage():
    archive_of(kwcf.Entry(b"C:\\D\\a", words(40000)), kwcf.Entry(b"C:\\D\\b", noise(100)), parent=b"C:\\D\\")
    good = (WORK / "made.kwc").read_bytes()
    make_tree(fresh("kept"), {"a": b"what was there"})
    bad = bytearray(good)
    bad[-200] ^= 1  # in a's second block
    (WORK / "bad.kwc").write_bytes(bad)
    code, said, error = run("extract", "-t", "@kept", "@bad.kwc")
    check("damage is told by name, and the rest restored", (code, said, error.startswith("qvarc: a: ")), (1, "1 entries restored, 1 failed\n", True))
    check("what was there stays", tree_in(WORK / "kept"), {"a": b"what was there", "b": noise(100)})
    (WORK / "bad.kwc").write_bytes(good[:-1])
    check("an archive that ends early", run("test", "@bad.kwc"), (1, "1 entries are right, 1 failed\n", "qvarc: b: the archive ends before it does\n"))
    (WORK / "bad.kwc").write_bytes(good[:600])
    check("a head that ends early", run("test", "@bad.kwc")[2].endswith("is damaged: its head can't be read\n"))
    bad = bytearray(good)
    bad[265:269] = bad[271:275] = b"\xff\xff\xff\x7f"
    (WORK / "bad.kwc").write_bytes(bad)
    check("more entries than there are", run("test", "@bad.kwc")[0], 1)


def hostile():
    names = ["..\\x", "sub\\..\\..\\x", "../x", "/x", "\\x", "C:\\x", "x:y", "..", "", " .. \\x"]
    archive_of(*(kwcf.Entry(b"C:\\Dati\\" + name.encode(), b"evil") for name in names), parent=b"C:\\Dati\\")
    fresh("target").mkdir()
    (WORK / "target/inner").mkdir()
    before = sorted(os.listdir(WORK))
    code, said, error = run("extract", "-t", "@target/inner", "@made.kwc")
    check("names that lead out are refused", (code, said), (1, f"0 entries restored, {len(names)} failed\n"))
    check("for that reason", error.count("leads out of the target folder"), len(names))
    check("nothing is written outside", (sorted(os.listdir(WORK)), tree_in(WORK / "target")), (before, {}))
    archive_of(kwcf.Entry(b"D:\\x", b"evil"), parent=b"C:\\Dati\\")
    check("a name elsewhere than the parent", run("extract", "-t", "@target", "@made.kwc")[2], "qvarc: D:\\x: it does not lie below the stored parent folder\n")


def attributes():
    path = WORK / "tree/one"
    if IS_WINDOWS:
        return
    path.chmod(0o444)
    run("create", "-q", "@ro.kwc", "@tree/one")
    check("read-only is stored", kwcf.decode((WORK / "ro.kwc").read_bytes()).entries[0].attributes, 33)
    run("extract", "-q", "-t", "@ro", "@ro.kwc")
    run("extract", "-q", "-t", "@ro", "@ro.kwc")
    check("read-only comes back, over a read-only file too", (WORK / "ro/one").stat().st_mode & stat.S_IWUSR, 0)
    run("extract", "-q", "-n", "-t", "@ro", "@ro.kwc")
    check("no-attributes", (WORK / "ro/one").stat().st_mode & stat.S_IWUSR, stat.S_IWUSR)
    path.chmod(0o644)


def names_of_this_system():
    """What only a system with other rules for names can bring."""
    if IS_WINDOWS:
        return
    for name, reason in {
        "back\\slash": "has characters that an archive has not",
        "中": "has characters that an archive has not",
        "col:on": "could not be restored from an archive",
        "n" * 250: "is too long for an archive",
    }.items():
        make_tree(fresh("odd"), {name: b"x"})
        code, _, said = run("create", "@odd.kwc", "@odd")
        check(f"name {name:.12}", (code, reason in said, (WORK / "odd.kwc").exists()), (1, True, False))
    make_tree(fresh("odd"), {"a": b"x"})
    os.symlink("..", WORK / "odd/up")
    os.mkfifo(WORK / "odd/pipe")
    code, said, error = run("create", "@odd.kwc", "@odd")
    check("links to folders and pipes are left out", (code, said[:9], error.count("left out")), (0, "2 entries", 2))
    os.truncate(WORK / "odd/a", 1 << 31)
    code, _, said = run("create", "@big.kwc", "@odd/a")
    check("a file past 2 GB", (code, "has more than 2 GB" in said, (WORK / "big.kwc").exists()), (1, True, False))
    make_tree(fresh("inside"), {"a": b"x"})
    run("create", "-q", "@inside/a.kwc", "@inside")
    run("create", "-q", "@inside/a.kwc", "@inside")
    check("an archive is no part of itself", len(kwcf.decode((WORK / "inside/a.kwc").read_bytes()).entries), 2)


def golden():
    folder = REPOSITORY / "tests/golden/archives"
    fresh("golden").mkdir()
    subprocess.run([sys.executable, "-B", folder / "make.py", WORK / "golden"], check=True)
    for path in sorted(folder.glob("*.kwc")):
        check(f"golden {path.name} is what make.py makes", path.read_bytes() == (WORK / "golden" / path.name).read_bytes())
    for name in ("sizes", "codings", "no_parent", "version_255"):
        check(f"golden {name}", run("test", "-q", f"tests/golden/archives/{name}.kwc"), (0, "", ""))


def main():
    fresh(".").mkdir(parents=True)
    if IS_WINDOWS:  # else every run would start a server of its own
        subprocess.run(["bash", "-c", f". tools/environment.sh; in_prefix {BITS} wineserver -p20"], cwd=REPOSITORY, check=False)
    for part in (create_and_extract, options, selection, listing, refusals, damage, hostile, attributes,
                 names_of_this_system, golden):  # fmt: skip
        part()
    shutil.rmtree(WORK, ignore_errors=True)
    print("done")
    sys.exit(1 if failures else 0)


main()
