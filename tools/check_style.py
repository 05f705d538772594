#!/usr/bin/env python3
"""Checks the style of the sources: prints a line "ok NAME" a file that passes, "FAILED ..." for every
finding, and at last "done".

clang-format looks at every source, clang-tidy at those of the library: the portable core as it is
compiled for this machine, the rest as it is compiled for 64-bit Windows. (Tests take it a minute
each, which is more than it finds there.) A file that passed is not looked at again until it, what
it includes or the rules change.
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
FORMAT = "clang-format-14"
TIDY = "clang-tidy-14"
WINDOWS_TRIPLET = "x86_64-w64-mingw32"
INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.M)


def output_of(*command):
    return subprocess.run(command, cwd=REPOSITORY, check=True, capture_output=True, text=True).stdout


def sources():
    return output_of("git", "ls-files", "-co", "--exclude-standard", "*.cpp", "*.h").split()


def badly_formatted(paths):
    """The files that are not as clang-format would have them."""
    done = subprocess.run(
        [FORMAT, "--dry-run", *paths], cwd=REPOSITORY, check=False, capture_output=True, text=True
    )
    return set(re.findall(r"^(\S+?):\d+:\d+: warning", done.stderr, re.M))


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
    paths = [path for path in sources() if options.filter in path and Path(path).exists()]
    cache = Path(options.cache)
    cache.mkdir(parents=True, exist_ok=True)

    wrong = badly_formatted(paths) if paths else set()
    for path in paths:
        print(f"FAILED format of {path}" if path in wrong else f"ok format of {path}")

    native = Tidy(Path(options.native).resolve(), [], cache)
    windows = Tidy(Path(options.windows).resolve(), windows_arguments(), cache)
    checked = [path for path in paths if path.startswith("src/") and path.endswith(".cpp")]

    def findings(path):
        full = (REPOSITORY / path).resolve()
        tidy = native if full in native.commands else windows
        return tidy.findings(full) if full in tidy.commands else [f"{path}: in no build"]

    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for path, found in zip(checked, pool.map(findings, checked)):
            for finding in found:
                print(f"FAILED {finding.replace(f'{REPOSITORY}/', '')}")
            if not found:
                print(f"ok clang-tidy of {path}", flush=True)
    print("done")


if __name__ == "__main__":
    sys.exit(main())
