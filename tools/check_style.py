#!/usr/bin/env python3
"""Checks the layout of every source against clang-format: prints a line "ok NAME" a file that is as
it would have it, "FAILED NAME: where it first is not" for every other, and at last "done".
"""

import argparse
import re
import subprocess
import sys
from pathlib import Path

REPOSITORY = Path(__file__).resolve().parent.parent
FORMAT = "clang-format-14"
MADE = (".git", "build", "dist")


def sources():
    """What is written by hand."""
    folders = [path for path in REPOSITORY.iterdir() if path.is_dir() and path.name not in MADE]
    found = [path for folder in folders for path in folder.rglob("*") if path.suffix in (".cpp", ".h")]
    return sorted(str(path.relative_to(REPOSITORY)) for path in found)


def first_places(paths):
    """The line of the first place in each file that clang-format would change."""
    done = subprocess.run(
        [FORMAT, "--dry-run", *paths], cwd=REPOSITORY, check=True, capture_output=True, text=True
    )
    places = re.findall(r"^(\S+?):(\d+):\d+: warning", done.stderr, re.M)
    return dict(reversed(places))


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--filter", default="", help="only files whose path contains it")
    options = parser.parse_args()
    paths = [path for path in sources() if options.filter in path]
    wrong = first_places(paths) if paths else {}
    for path in paths:
        print(f"FAILED format of {path}: line {wrong[path]}" if path in wrong else f"ok {path}")
    print("done")


if __name__ == "__main__":
    sys.exit(main())
