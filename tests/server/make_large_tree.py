#!/usr/bin/env python3
"""Makes the tree that file searches are tested on: 50000 empty files in 120 folders, up to eight
levels deep. Made once with the tests: the platform under test takes a minute for it.

Usage: make_large_tree.py FOLDER
"""

import shutil
import sys
from pathlib import Path

FILES = 50000
FOLDERS = 120
DEPTH = 8


def main():
    root = Path(sys.argv[1])
    shutil.rmtree(root, ignore_errors=True)
    for number in range(FOLDERS):
        folder = (root if number % DEPTH == 0 else folder) / f"folder{number}"
        folder.mkdir(parents=True)
        share = FILES // FOLDERS + (number < FILES % FOLDERS)
        for i in range(share):
            (folder / f"f{i}.txt").touch()


if __name__ == "__main__":
    main()
