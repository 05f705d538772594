#!/usr/bin/env python3
"""make_package.py VERSION: puts dist/ together from what build/x86 and build/x64 hold.

Equal sources give equal bytes: every file of an archive bears the same fixed time.
"""

import calendar
import hashlib
import os
import re
import shutil
import subprocess
import sys
import zipfile
from pathlib import Path

import interface_model
import make_reference
from write_header import client_header
from write_installer import Package, stable_guid
from write_manifest import braces

REPOSITORY = Path(__file__).resolve().parent.parent
BUILD, DIST = REPOSITORY / "build", REPOSITORY / "dist"
TRIPLETS = {"x86": "i686-w64-mingw32", "x64": "x86_64-w64-mingw32"}
FIXED_TIME = (2026, 1, 1, 0, 0, 0)
FIXED_TIME_S = calendar.timegm(FIXED_TIME)
PROGRAMS = ("qvarc", "qvbag", "qvflt")
# For tools that write the time into what they make.
FIXED_CLOCK = ("env", "TZ=UTC0", "faketime", "-f", "2026-01-01 00:00:00")


def run(*command, **options):
    subprocess.run([str(word) for word in command], check=True, **options)


def split_library(bits, library, symbols):
    """The library without its debug symbols, and these in a file of their own beside it."""
    tool = f"{TRIPLETS[bits]}-objcopy"
    built = BUILD / bits / "QvRtLibOle.dll"
    run(*FIXED_CLOCK, tool, "--only-keep-debug", built, symbols)
    run(*FIXED_CLOCK, tool, "--strip-all", f"--add-gnu-debuglink={symbols}", built, library)


def copy_programs(bits, folder):
    """The command-line programs, which have no debug symbols of their own to keep."""
    for program in PROGRAMS:
        built = BUILD / bits / f"{program}.exe"
        run(*FIXED_CLOCK, f"{TRIPLETS[bits]}-objcopy", "--strip-all", built, folder / built.name)


def copy_documents(folder):
    (folder / "docs").mkdir()
    for name in ("README.md", "LICENSE", "CHANGELOG.md", "docs/benchmarks.md", "docs/benchmarks.svg"):
        shutil.copy(REPOSITORY / name, folder / name)
    shutil.copytree(REPOSITORY / "examples", folder / "examples")
    make_reference.main(folder / "reference")


def zip_folder(folder, archive):
    with zipfile.ZipFile(archive, "w", zipfile.ZIP_DEFLATED) as out:
        for path in sorted(p for p in folder.rglob("*") if p.is_file()):
            entry = zipfile.ZipInfo(str(path.relative_to(folder.parent)), FIXED_TIME)
            entry.compress_type = zipfile.ZIP_DEFLATED
            entry.external_attr = 0o644 << 16
            out.writestr(entry, path.read_bytes())


def fix_times(folder):
    for path in folder.rglob("*"):
        os.utime(path, (FIXED_TIME_S, FIXED_TIME_S))


def fix_package_code(installer):
    """wixl makes up the package code, which is plain text in the file; equal contents shall have an
    equal one, and others another."""
    listed = subprocess.run(["msiinfo", "suminfo", installer], check=True, capture_output=True, text=True)
    made_up = re.search(r"\{[-0-9A-F]{36}\}", listed.stdout)[0].encode()
    data = installer.read_bytes()
    contents = hashlib.sha256(data.replace(made_up, b"")).hexdigest()
    code = braces(stable_guid("package", installer.name, contents))
    installer.write_bytes(data.replace(made_up, code.encode()))


def make_installer(package, files, folder):
    """Makes the installer of what a folder holds; gives its path."""
    target = folder / f"QvRtLib-{package.version}-{package.bits}-{package.scope}.msi"
    source = files.parent / f"{target.stem}.wxs"
    source.write_text(package.text(files), "utf-8")
    run(*FIXED_CLOCK, "wixl", "--arch", package.bits, "-o", target, source)
    fix_package_code(target)
    return target


def make_installers(library, version, portable, work):
    for bits in TRIPLETS:
        files = work / bits
        shutil.copytree(portable / bits, files)
        copy_documents(files)
        fix_times(files)
        for scope in ("user", "machine"):
            make_installer(Package(library, version, bits, scope), files, DIST)


def main(version):
    library = interface_model.read(REPOSITORY / "idl/QvRtLibOle.idl")
    shutil.rmtree(DIST, ignore_errors=True)
    portable = DIST / f"QvRtLib-{version}"
    symbols = DIST / f"QvRtLib-{version}-symbols"
    work = DIST / "work"
    for bits in TRIPLETS:
        for folder in (portable / bits, symbols / bits):
            folder.mkdir(parents=True)
        split_library(bits, portable / bits / "QvRtLibOle.dll", symbols / bits / "QvRtLibOle.debug")
        copy_programs(bits, portable / bits)
        shutil.copy(BUILD / bits / "QvRtLib.manifest", portable / bits)
        # The layout of records differs, so each bitness has a type library of its own.
        shutil.copy(BUILD / bits / "src/QvRtLibOle.tlb", portable / bits)
    (portable / "include").mkdir()
    (portable / "include/QvRtLibOle.h").write_text(client_header(library), "ascii")
    copy_documents(portable)
    for script in (REPOSITORY / "packaging").glob("*.cmd"):
        shutil.copy(script, portable)
    zip_folder(portable, DIST / f"{portable.name}.zip")
    zip_folder(symbols, DIST / f"{symbols.name}.zip")
    make_installers(library, version, portable, work)
    for folder in (portable, symbols, work):
        shutil.rmtree(folder)
    sums = [f"{hashlib.sha256(p.read_bytes()).hexdigest()}  {p.name}\n" for p in sorted(DIST.iterdir())]
    (DIST / "SHA256SUMS").write_text("".join(sums), "ascii")


if __name__ == "__main__":
    main(*sys.argv[1:])
