#!/usr/bin/env python3
"""make_reference.py OUTPUT_FOLDER: writes the reference pages, which need no server."""

import shutil
import sys
import tomllib
from pathlib import Path

import interface_model
from reference.examples import all_blocks
from reference.pages import Site

REPOSITORY = Path(__file__).resolve().parent.parent
DOCS = REPOSITORY / "docs"


def articles(folder):
    return {p.stem: p.read_text("utf-8") for p in sorted((DOCS / folder).glob("*.md"))}


def site():
    families = tomllib.loads((DOCS / "reference/families.toml").read_text("utf-8"))["family"]
    library = interface_model.read(REPOSITORY / "idl/QvRtLibOle.idl")
    kinds = {kind: articles(kind) for kind in ("guide", "formats")}
    errors = (REPOSITORY / "src/automation/run_time_error.cpp").read_text("ascii")
    return Site(library, families, all_blocks(DOCS / "examples"), kinds, errors)


def main(output):
    output = Path(output)
    shutil.rmtree(output, ignore_errors=True)
    for path, text in site().make().items():
        (output / path).parent.mkdir(parents=True, exist_ok=True)
        (output / path).write_text(text, "utf-8")
    for name in ("style.css", "search.js"):
        shutil.copy(DOCS / "reference" / name, output / name)


if __name__ == "__main__":
    main(*sys.argv[1:])
