#!/usr/bin/env python3
"""Makes from the interface description everything that repeats it.

  generate.py sources IDL SOURCE_FOLDER OUTPUT_FOLDER   C++ files, widl's input, list of members
  generate.py typelib IDL COMPILED_TLB OUTPUT_TLB       what the IDL compiler can't store
  generate.py manifest IDL VERSION ARCHITECTURE OUTPUT  for use without registration
  generate.py outputs IDL                               names of the C++ sources, a line each

Files are written only when their content changes, so that a build redoes no more than it must.
"""

import sys
from pathlib import Path

import interface_model
from patch_typelib import patched
from write_forwarders import Sources, forwarder_sources
from write_interfaces import constants_header, interfaces_header
from write_manifest import manifest_text
from write_tables import catalogue_source, tables_header, tables_source
from write_widl import widl_text

TABLE_FILES = 4  # the tables are many templates: several files let a build use several cores


def table_groups(library):
    """The classes with the global one, by far the largest, in a file of its own."""
    large = [c for c in library.classes if len(c.interface.operations) > 100]
    small = [c for c in library.classes if c not in large]
    step = -(-len(small) // TABLE_FILES)
    return [large] + [small[i : i + step] for i in range(0, len(small), step)]


def write_if_changed(path, text):
    if not path.exists() or path.read_text("utf-8") != text:
        path.write_text(text, "utf-8")


def all_files(library, source_folder):
    files, missing = forwarder_sources(library, Sources(source_folder))
    files["interfaces.h"] = interfaces_header(library)
    files["constants.h"] = constants_header(library)
    files["class_tables.h"] = tables_header(library)
    files["catalogue.cpp"] = catalogue_source(library)
    for number, classes in enumerate(table_groups(library)):
        files[f"class_tables_{number}.cpp"] = tables_source(library, classes)
    files[f"{library.name}.idl"] = widl_text(library)
    files["not_built.txt"] = "".join(name + "\n" for name in missing)
    return files


def main(arguments):
    command, idl, *rest = arguments
    library = interface_model.read(idl)
    if command == "sources":
        source_folder, output = rest
        output = Path(output)
        output.mkdir(parents=True, exist_ok=True)
        for name, text in all_files(library, source_folder).items():
            write_if_changed(output / name, text)
    elif command == "typelib":
        compiled, output = map(Path, rest)
        output.write_bytes(patched(compiled.read_bytes(), library))
    elif command == "manifest":
        version, architecture, output = rest
        write_if_changed(Path(output), manifest_text(library, version, architecture))
    elif command == "outputs":
        print("\n".join(sorted(n for n in all_files(library, "") if n.endswith(".cpp"))))
    else:
        sys.exit(__doc__)


if __name__ == "__main__":
    main(sys.argv[1:])
