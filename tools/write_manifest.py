"""Writes the manifest that lets programs use the library without registration.

It describes an assembly of its own name beside the library: a program names that assembly in its
own manifest and ships both files in its folder. The assembly must not bear the file name of the
library, because the system would then look for the manifest inside the library.
"""

from xml.sax.saxutils import quoteattr

ASSEMBLY = "QvRtLib"
TYPE_LIBRARY_MARSHALER = "{00020424-0000-0000-C000-000000000046}"
DISPATCH_MARSHALER = "{00020420-0000-0000-C000-000000000046}"
DISPATCH = "{00020400-0000-0000-C000-000000000046}"


def braces(guid):
    return "{" + guid + "}"


def element(name, attributes):
    text = " ".join(f"{key}={quoteattr(value)}" for key, value in attributes.items())
    return f"<{name} {text}"


def class_lines(library, coclass):
    program_name = f"{library.name}.{coclass.name}"
    attributes = {
        "description": program_name,
        "clsid": braces(coclass.clsid),
        "threadingModel": "Apartment",
        "tlbid": braces(library.guid),
        "progid": program_name,
    }
    return [
        "    " + element("comClass", attributes) + ">",
        f"      <progid>{program_name}.1</progid>",
        "    </comClass>",
    ]


def interface_line(library, name, iid, marshaler):
    attributes = {
        "iid": braces(iid),
        "name": name,
        "proxyStubClsid32": marshaler,
        "baseInterface": DISPATCH,
        "tlbid": braces(library.guid),
    }
    return "  " + element("comInterfaceExternalProxyStub", attributes) + "/>"


def manifest_text(library, version, architecture):
    identity = {
        "type": "win32",
        "name": ASSEMBLY,
        "version": version,
        "processorArchitecture": architecture,
    }
    type_library = {"tlbid": braces(library.guid), "version": library.version, "helpdir": ""}
    lines = [
        '<?xml version="1.0" encoding="UTF-8" standalone="yes"?>',
        '<assembly xmlns="urn:schemas-microsoft-com:asm.v1" manifestVersion="1.0">',
        "  " + element("assemblyIdentity", identity) + "/>",
        f'  <file name="{library.name}.dll">',
    ]
    for coclass in library.classes:
        lines += class_lines(library, coclass)
    lines += ["    " + element("typelib", type_library) + "/>", "  </file>"]
    for coclass in library.classes:
        interface = coclass.interface
        lines.append(
            interface_line(library, interface.name, interface.iid, TYPE_LIBRARY_MARSHALER)
        )
        if coclass.events:
            lines.append(
                interface_line(
                    library, coclass.events.name, coclass.events.iid, DISPATCH_MARSHALER
                )
            )
    for alias in library.aliases:
        lines.append(interface_line(library, alias.name, alias.iid, TYPE_LIBRARY_MARSHALER))
    return "\n".join(lines + ["</assembly>", ""])
