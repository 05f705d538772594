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
from write_installer import Package

REPOSITORY = Path(__file__).resolve().parent.parent
BUILD, DIST = REPOSITORY / "build", REPOSITORY / "dist"
TRIPLETS = {"x86": "i686-w64-mingw32", "x64": "x86_64-w64-mingw32"}
FIXED_TIME = (2026, 1, 1, 0, 0, 0)
FIXED_TIME_S = calendar.timegm(FIXED_TIME)
# For tools that write the time into what they make.
FIXED_CLOCK = ("env", "TZ=UTC0", "faketime", "-f", "2026-01-01 00:00:00")
IDL_INCLUDES = ("/usr/include/wine/wine/windows", "/usr/include/wine/windows")


def run(*command, **options):
    subprocess.run([str(word) for word in command], check=True, **options)


def split_library(bits, library, symbols):
    """The library without its debug symbols, and these in a file of their own beside it."""
    tool = f"{TRIPLETS[bits]}-objcopy"
    built = BUILD / bits / "QvRtLibOle.dll"
    run(*FIXED_CLOCK, tool, "--only-keep-debug", built, symbols)
    run(*FIXED_CLOCK, tool, "--strip-debug", f"--add-gnu-debuglink={symbols}", built, library)


def copy_documents(folder):
    for name in ("README.md", "LICENSE", "CHANGELOG.md"):
        shutil.copy(REPOSITORY / name, folder)
    shutil.copytree(REPOSITORY / "examples", folder / "examples")
    make_reference.main(folder / "reference")


def write_header(folder):
    """The interfaces for C++ clients."""
    includes = [f"-I{path}" for path in IDL_INCLUDES if Path(path).is_dir()]
    generated = BUILD / "x64/src/generated/QvRtLibOle.idl"
    run(f"{TRIPLETS['x64']}-widl", "-m64", *includes, "-h", "-o", folder / "QvRtLibOle.h", generated,
        stderr=subprocess.DEVNULL)


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


def fix_package_code(installer, code):
    """wixl makes up the package code, whatever its source says; it is plain text in the file."""
    listed = subprocess.run(["msiinfo", "suminfo", installer], check=True, capture_output=True, text=True)
    made_up = re.search(r"\{[-0-9A-F]{36}\}", listed.stdout)[0]
    installer.write_bytes(installer.read_bytes().replace(made_up.encode(), code.encode()))


def make_installers(library, version, portable, work):
    for bits in TRIPLETS:
        files = work / bits
        shutil.copytree(portable / bits, files)
        copy_documents(files)
        fix_times(files)
        for scope in ("user", "machine"):
            source = work / f"{bits}-{scope}.wxs"
            package = Package(library, version, bits, scope)
            source.write_text(package.text(files), "utf-8")
            target = DIST / f"QvRtLib-{version}-{bits}-{scope}.msi"
            run(*FIXED_CLOCK, "wixl", "--arch", bits, "-o", target, source)
            fix_package_code(target, package.code())


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
        shutil.copy(BUILD / bits / "QvRtLib.manifest", portable / bits)
    shutil.copy(BUILD / "x64/src/QvRtLibOle.tlb", portable)
    (portable / "include").mkdir()
    write_header(portable / "include")
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
