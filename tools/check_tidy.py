#!/usr/bin/env python3
"""Asks clang-tidy about the library's sources: prints a line "ok NAME" a file that passes, "FAILED
..." for every finding, and at last "done".

The portable core is seen as it is compiled for this machine, the rest as it is compiled for 64-bit
Windows. (Tests take a minute each, which is more than it finds there.) A file that passed is not
looked at again until it, what it includes or the rules change.
"""

import argparse
import concurrent.futures
import hashlib
import json
import os
import re
import shlex
import subprocess
import sys
from pathlib import Path

REPOSITORY = Path(__file__).resolve().parent.parent
TIDY = "clang-tidy-14"
WINDOWS_TRIPLET = "x86_64-w64-mingw32"
INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.M)


def output_of(*command):
    return subprocess.run(command, cwd=REPOSITORY, check=True, capture_output=True, text=True).stdout


def sources(word):
    """The library's sources whose path contains the word."""
    paths = sorted((REPOSITORY / "src").rglob("*.cpp"))
    return [path for path in paths if word in str(path.relative_to(REPOSITORY))]


def include_folders(command):
    words = shlex.split(command)
    return [Path(word[2:]) for word in words if word.startswith("-I")]


def all_includes(path, folders, known):
    """The file and all of the repository and the build that it includes, directly or not."""
    if path in known:
        return
    known.add(path)
    for name in INCLUDE.findall(path.read_text("utf-8", "replace")):
        for folder in [path.parent, *folders]:
            candidate = (folder / name).resolve()
            if candidate.is_file():
                all_includes(candidate, folders, known)
                break


class Tidy:
    """clang-tidy over a build's sources."""

    def __init__(self, build, extra_arguments, cache):
        self.build = build
        self.extra = [f"--extra-arg={argument}" for argument in extra_arguments]
        self.cache = cache
        entries = json.loads((build / "compile_commands.json").read_text("utf-8"))
        self.commands = {Path(entry["file"]).resolve(): entry["command"] for entry in entries}
        self.rules = hashlib.sha256(
            output_of(TIDY, "--version").encode() + (REPOSITORY / ".clang-tidy").read_bytes()
        ).digest()

    def mark(self, path):
        """Where it is noted that the file passed as it is."""
        command = self.commands[path]
        known = set()
        all_includes(path, include_folders(command), known)
        key = hashlib.sha256(self.rules)
        # Wherever the checkout lies.
        key.update(command.replace(str(REPOSITORY), "").encode() + repr(self.extra).encode())
        for part in sorted(known):
            key.update(part.read_bytes())
        return self.cache / key.hexdigest()

    def findings(self, path):
        """What it finds, a line each."""
        mark = self.mark(path)
        if mark.exists():
            return []
        done = subprocess.run(
            [TIDY, "-p", str(self.build), "--quiet", *self.extra, str(path)],
            cwd=REPOSITORY, check=False, capture_output=True, text=True,
        )
        if done.returncode == 0:
            mark.touch()
            return []
        found = re.findall(r"^.*: error: .*$", done.stdout + done.stderr, re.M)
        return sorted(set(found)) or [f"{path}: exit code {done.returncode}"]


def windows_arguments():
    """The libraries' headers of the compiler that builds for Windows."""
    library = Path(
        output_of(f"{WINDOWS_TRIPLET}-g++-posix", "-print-file-name=include").strip()
    ) / "c++"
    folders = [library, library / WINDOWS_TRIPLET, library / "backward"]
    return [f"--target={WINDOWS_TRIPLET}", *(f"-isystem{folder}" for folder in folders)]


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("native", help="folder of the build for this machine, configured")
    parser.add_argument("windows", help="folder of the 64-bit build, its headers generated")
    parser.add_argument("cache", help="folder where it is noted what passed")
    parser.add_argument("--filter", default="", help="only files whose path contains it")
    options = parser.parse_args()
    paths = sources(options.filter)
    cache = Path(options.cache)
    cache.mkdir(parents=True, exist_ok=True)

    native = Tidy(Path(options.native).resolve(), [], cache)
    windows = Tidy(Path(options.windows).resolve(), windows_arguments(), cache)

    def findings(path):
        tidy = native if path in native.commands else windows
        return tidy.findings(path) if path in tidy.commands else [f"{path}: in no build"]

    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for path, found in zip(paths, pool.map(findings, paths)):
            for finding in found:
                print(f"FAILED {finding.replace(f'{REPOSITORY}/', '')}")
            if not found:
                print(f"ok {path.relative_to(REPOSITORY)}", flush=True)
    print("done")


if __name__ == "__main__":
    sys.exit(main())
