"""Writes the source of a Windows Installer package: files, and registration as data.

The registry entries are those that the library writes when it registers itself; the package never
calls the library. A package for one user needs no rights.
"""

import uuid
from xml.sax.saxutils import quoteattr

from write_manifest import DISPATCH_MARSHALER, TYPE_LIBRARY_MARSHALER, braces

# Names of everything that an installer knows again at the next version.
FAMILY = uuid.UUID("61628f54-2f04-11d2-b91d-00a024ed9c9b")


def stable_guid(*names):
    return str(uuid.uuid5(FAMILY, "/".join(names))).upper()


def interface_entries(library, name, iid, marshaler):
    tree = f"Interface\\{braces(iid)}"
    return [
        (tree, "", name),
        (tree + "\\ProxyStubClsid32", "", marshaler),
        (tree + "\\TypeLib", "", braces(library.guid)),
        (tree + "\\TypeLib", "Version", version_key(library)),
    ]


def version_key(library):
    major, minor = library.version.split(".")
    return f"{int(major):x}.{int(minor):x}"


def class_entries(library, coclass):
    name = f"{library.name}.{coclass.name}"
    class_id = braces(coclass.clsid)
    tree = f"CLSID\\{class_id}"
    return [
        (name, "", name),
        (name + "\\CLSID", "", class_id),
        (name + "\\CurVer", "", name + ".1"),
        (name + ".1", "", name),
        (name + ".1\\CLSID", "", class_id),
        (tree, "", name),
        (tree + "\\InprocServer32", "", "[#Library]"),
        (tree + "\\InprocServer32", "ThreadingModel", "Apartment"),
        (tree + "\\ProgID", "", name + ".1"),
        (tree + "\\VersionIndependentProgID", "", name),
        (tree + "\\TypeLib", "", braces(library.guid)),
        (tree + "\\Version", "", version_key(library)),
        (tree + "\\Programmable", "", ""),
    ]


def registry_entries(library, bits):
    """[(key below Software\\Classes, value name, value)]; [#Library] is the installed file."""
    system = "win64" if bits == "x64" else "win32"
    tree = f"TypeLib\\{braces(library.guid)}\\{version_key(library)}"
    entries = [
        (tree, "", library.name),
        (tree + "\\FLAGS", "", "0"),
        (tree + "\\HELPDIR", "", "[INSTALLDIR]"),
        (tree + f"\\409\\{system}", "", "[#Library]"),
        (tree + f"\\0\\{system}", "", "[#Library]"),
    ]
    for coclass in library.classes:
        entries += class_entries(library, coclass)
        interface = coclass.interface
        entries += interface_entries(library, interface.name, interface.iid, TYPE_LIBRARY_MARSHALER)
        if coclass.events:
            entries += interface_entries(
                library, coclass.events.name, coclass.events.iid, DISPATCH_MARSHALER
            )
    for alias in library.aliases:
        entries += interface_entries(library, alias.name, alias.iid, TYPE_LIBRARY_MARSHALER)
    return entries


def registry_xml(root, entries):
    lines = []
    for key, name, value in entries:
        named = f" Name={quoteattr(name)}" if name else ""
        place = quoteattr("Software\\Classes\\" + key)
        lines.append(
            f'<RegistryValue Root="{root}" Key={place}{named} '
            f'Type="string" Value={quoteattr(value)}/>'
        )
    return "\n".join(lines)


class Package:
    def __init__(self, library, version, bits, scope):
        """bits: x86 or x64; scope: user or machine."""
        self.library, self.version, self.bits, self.scope = library, version, bits, scope
        self.win64 = "yes" if bits == "x64" else "no"
        self.root = "HKCU" if scope == "user" else "HKLM"
        self.base = None  # sources are told relative to it

    def guid(self, *names):
        return stable_guid(self.bits, self.scope, *names)

    def component(self, identifier, content):
        """Files of one user are counted by a registry value, since several users may have them."""
        mark = (
            f'<RegistryValue Root="HKCU" Key="Software\\QvRtLib\\{self.bits}" Name="{identifier}" '
            'Type="integer" Value="1" KeyPath="yes"/>'
            if self.scope == "user"
            else ""
        )
        return (
            f'<Component Id="{identifier}" Guid="{self.guid("component", identifier)}" '
            f'Win64="{self.win64}">{content}{mark}</Component>'
        )

    def files_xml(self, folder, prefix, components):
        """Folders and files below a folder; notes the component of every folder."""
        key_path = ' KeyPath="yes"' if self.scope == "machine" else ""
        files, parts = [], []
        for path in sorted(folder.iterdir()):
            identifier = stable_guid(prefix, path.name).replace("-", "")
            if path.is_dir():
                inside = self.files_xml(path, f"{prefix}/{path.name}", components)
                parts.append(f'<Directory Id="D{identifier}" Name={quoteattr(path.name)}>{inside}</Directory>')
                continue
            is_library = path.suffix == ".dll"
            file_id = "Library" if is_library else f"F{identifier}"
            mark = "" if files else key_path
            files.append(
                f'<File Id="{file_id}" Name={quoteattr(path.name)} Source={quoteattr(str(path.relative_to(self.base)))}{mark}/>'
            )
        if files:
            identifier = "C" + stable_guid("folder", prefix).replace("-", "")
            content = "\n".join(files)
            if not prefix:
                content += registry_xml(self.root, registry_entries(self.library, self.bits))
            if self.scope == "user":
                content += f'<RemoveFolder Id="R{identifier}" On="uninstall"/>'
            parts.insert(0, self.component(identifier, content))
            components.append(identifier)
        return "\n".join(parts)

    def text(self, folder):
        """The whole source, for the files of a folder."""
        self.base, components = folder.parent, []
        files = self.files_xml(folder, "", components)
        references = "".join(f'<ComponentRef Id="{c}"/>' for c in components)
        if self.scope == "machine":
            home = "ProgramFiles64Folder" if self.bits == "x64" else "ProgramFilesFolder"
            open_folders, close_folders = f'<Directory Id="{home}">', "</Directory>"
        else:
            open_folders = '<Directory Id="LocalAppDataFolder"><Directory Id="UserPrograms" Name="Programs">'
            close_folders = "</Directory></Directory>"
        scope = "perUser" if self.scope == "user" else "perMachine"
        return f"""<?xml version="1.0" encoding="utf-8"?>
<Wix xmlns="http://schemas.microsoft.com/wix/2006/wi">
<Product Id="{self.guid("product", self.version)}" UpgradeCode="{self.guid("upgrade")}"
 Name="QvRtLib ({self.bits})" Version="{self.version}" Language="1033" Manufacturer="QvRtLib">
<Package InstallerVersion="500" Compressed="yes"
 InstallScope="{scope}" Description="QvRtLib {self.version}"/>
<MajorUpgrade DowngradeErrorMessage="A later version of QvRtLib is installed."/>
<Media Id="1" Cabinet="files.cab" EmbedCab="yes"/>
<Directory Id="TARGETDIR" Name="SourceDir">{open_folders}
<Directory Id="INSTALLDIR" Name="QvRtLib {self.bits}">
{files}
</Directory>{close_folders}</Directory>
<Feature Id="Everything" Level="1">{references}</Feature>
</Product></Wix>
"""
