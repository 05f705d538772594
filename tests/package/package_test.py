"""The package as a new user meets it: two builds are the same, an installer needs nothing else, an
example runs, a member's page is found, and nothing is left when it is gone. Each bitness has a fresh
Wine prefix."""

import hashlib
import json
import os
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import time
import unittest
import zipfile
from pathlib import Path

from selenium import webdriver
from selenium.webdriver.common.by import By

REPOSITORY = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(REPOSITORY / "tools"))

import interface_model  # noqa: E402
import make_package  # noqa: E402
from write_installer import Package as InstallerSource  # noqa: E402
from patch_typelib import KIND_DISPATCH, KIND_INTERFACE, TypeLibraryFile  # noqa: E402

BUILD, DIST = REPOSITORY / "build", REPOSITORY / "dist"
PREFIX = "package"
BUILD_TIMEOUT_S = 3600
TRIPLETS = {"x86": "i686-w64-mingw32", "x64": "x86_64-w64-mingw32"}
# Whoever has no rights: the tests themselves may run as root.
ORDINARY_USER = 65534
PROGRAM_MANIFEST = """<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<assembly xmlns="urn:schemas-microsoft-com:asm.v1" manifestVersion="1.0">
  <assemblyIdentity type="win32" name="Program" version="1.0.0.0" processorArchitecture="amd64"/>
  <dependency><dependentAssembly>
    <assemblyIdentity type="win32" name="QvRtLib" version="5.0.0.267" processorArchitecture="amd64"/>
  </dependentAssembly></dependency>
</assembly>
"""
CLIENT = """
#include <QvRtLibOle.h>
#include <cstdio>
int main() {
  CoInitialize(nullptr);
  _KwRtLib* library = nullptr;
  if (FAILED(CoCreateInstance(CLSID_KwRtLib, nullptr, CLSCTX_INPROC_SERVER, __uuidof(_KwRtLib),
                              reinterpret_cast<void**>(&library)))) return 1;
  short month = 11, day = 21, year = 2026, packed = 0;
  if (FAILED(library->Date_Set(&day, &month, &year, &packed))) return 2;
  LONG number = 20001, flags = 8, buttons = 0;
  VARIANT given{};
  V_VT(&given) = VT_I4;
  V_I4(&given) = QvRtLib::kERR_BLOOMLOAD;
  if (FAILED(library->Error_SetEx(&given, nullptr, nullptr, nullptr, nullptr, nullptr, &flags, nullptr,
                                  &buttons))) return 3;
  VARIANT_BOOL own = VARIANT_FALSE;
  if (FAILED(library->Is_UserError(&own)) || FAILED(library->Error_Number(&number))) return 4;
  std::printf("%d %d %ld\\n", packed, own, static_cast<long>(number));
  library->Release();
  return 0;
}
"""


def run(words, timeout_s=300):
    done = subprocess.run(words, cwd=REPOSITORY, capture_output=True, timeout=timeout_s, check=False)
    return done.returncode, (done.stdout + done.stderr).decode("utf-8", "replace").replace("\r", "")


def shell(command, prefix=PREFIX, user=()):
    return run([*user, "bash", "-c", f"export QVRT_PREFIX={prefix}; . tools/environment.sh; {command}"])


def build_package():
    code, output = run(["./package"], BUILD_TIMEOUT_S)
    assert code == 0, output
    return (DIST / "SHA256SUMS").read_text("ascii")


class unpacked:
    """The folder that a zip of the package holds: `with unpacked("-symbols") as folder`."""

    def __init__(self, kind):
        self.archive = next(p for p in DIST.glob("*.zip") if ("symbols" in p.name) == bool(kind))

    def __enter__(self):
        self.folder = tempfile.TemporaryDirectory()
        with zipfile.ZipFile(self.archive) as archive:
            archive.extractall(self.folder.name)
        return next(Path(self.folder.name).iterdir())

    def __exit__(self, *_):
        self.folder.cleanup()


def help_contexts(data):
    """{help context: name} of the members with a context of their own in a compiled type library."""
    file = TypeLibraryFile(data)
    contexts = {}
    for _, base in file.types(KIND_INTERFACE, KIND_DISPATCH):
        functions = file.word(base + 0x18) & 0xFFFF
        record = start = file.word(base + 4) + 4
        table = start + file.word(start - 4)
        for i in range(functions):
            # Behind six words of a record stand those that are optional: the help context first.
            context = struct.unpack_from("<i", file.data, record + 24)[0]
            if context % 1000 not in (0, 900):
                contexts[context] = file.name(file.word(table + 4 * (functions + i)))
            record += file.word(record) & 0xFFFF
    return contexts


class Package(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.sums = build_package()
        for bits in ("x64", "x86"):
            code, output = shell(f"prepare_root32; fresh_prefix {bits}")
            assert code == 0, output
            # The script host writes keys of its own at its first use.
            (BUILD / "first.vbs").write_text('WScript.Echo CreateObject("Scripting.Dictionary").Count')
            shell(f"run_wine {bits} cscript //nologo build\\\\first.vbs")

    def installer(self, bits, scope):
        return next(DIST.glob(f"*-{bits}-{scope}.msi")).relative_to(REPOSITORY)

    def wine(self, bits, command):
        return shell(f"run_wine {bits} {command}")

    def install(self, bits, scope, action):
        path = str(self.installer(bits, scope)).replace("/", "\\\\\\\\")
        code, output = self.wine(bits, f"msiexec {action} {path} /qn")
        self.assertEqual(code, 0, output)

    def snapshot(self, bits):
        """What an installation may leave behind: keys of the registry, and files."""
        # A registry is on disk when its server has ended.
        shell(f"in_prefix {bits} wineserver -k; in_prefix {bits} wineserver -w")
        prefix = BUILD / f"{PREFIX}-{bits}"
        keys = {
            f"{root}\\{key}"
            for root, file in (("HKCU", "user.reg"), ("HKLM", "system.reg"))
            for key in re.findall(r"^\[(.*)\] \d+$", (prefix / file).read_text("latin-1"), re.M)
        }
        # The installer service's own bookkeeping.
        keys = {key.replace("\\\\", "\\") for key in keys if "\\Installer" not in key}
        folder = prefix / "drive_c"
        return keys, {str(p.relative_to(folder)) for p in folder.rglob("*") if "QvRtLib" in str(p)}

    def assert_nothing_left(self, before, after):
        for old, new in zip(before, after):
            self.assertEqual(sorted(new - old), [])

    def test_two_builds_are_the_same(self):
        self.assertEqual(build_package(), self.sums)

    def test_the_zip_holds_everything(self):
        with zipfile.ZipFile(next(p for p in DIST.glob("*.zip") if "symbols" not in p.name)) as archive:
            names = {name.split("/", 1)[1] for name in archive.namelist()}
        for name in (
            "x86/qvarc.exe", "x86/qvbag.exe", "x86/qvflt.exe", "x64/qvarc.exe", "x64/qvbag.exe", "x64/qvflt.exe",
            "x86/QvRtLibOle.dll", "x86/QvRtLibOle.tlb", "x86/QvRtLib.manifest",
            "x64/QvRtLibOle.dll", "x64/QvRtLibOle.tlb", "x64/QvRtLib.manifest", "include/QvRtLibOle.h", "register-user.cmd", "unregister-user.cmd",
            "register-machine.cmd", "unregister-machine.cmd", "README.md", "LICENSE", "CHANGELOG.md", "docs/benchmarks.md",
            "reference/index.html", "reference/KwRtLib/Buffer_Put.html", "examples/packed_records.vbs",
        ):
            self.assertIn(name, names)

    def test_checksums_cover_every_download(self):
        sums = dict(reversed(line.split("  ")) for line in self.sums.splitlines())
        self.assertEqual(sorted(sums), sorted(p.name for p in DIST.iterdir() if p.name != "SHA256SUMS"))
        for name, told in sums.items():
            self.assertEqual(hashlib.sha256((DIST / name).read_bytes()).hexdigest(), told, name)

    def test_help_contexts_of_the_type_library_lead_to_the_pages(self):
        with unpacked("") as folder:
            pages = json.loads(re.search(r"pages = (\{.*?\});", (folder / "reference/context.html").read_text())[1])
            for bits in TRIPLETS:
                found = help_contexts((folder / bits / "QvRtLibOle.tlb").read_bytes())
                self.assertGreater(len(found), 550)
                for context, name in found.items():
                    page = folder / "reference" / pages[str(context)]
                    self.assertIn(f"<h1>{name}</h1>", page.read_text("utf-8"))

    def test_the_header_serves_a_client_in_cpp(self):
        with unpacked("") as folder:
            for bits, triplet in TRIPLETS.items():
                source = BUILD / "client.cpp"
                source.write_text(CLIENT)
                flags = "-std=c++17 -Wall -Wextra -Wpedantic -Werror -static".split()
                code, output = run(
                    [f"{triplet}-g++", *flags, "-I", str(folder / "include"), str(source),
                     "-o", f"build/client-{bits}.exe", "-lole32", "-luuid"]
                )
                self.assertEqual(code, 0, f"{bits}: {output}")
        self.install("x64", "machine", "/i")
        code, output = self.wine("x64", "build/client-x64.exe")
        self.install("x64", "machine", "/x")
        self.assertEqual((code, output.strip()), (0, "23925 -1 20001"))

    def test_the_command_line_programs_run(self):
        with unpacked("") as folder:
            for program in ("qvarc", "qvbag", "qvflt"):
                code, output = self.wine("x64", f"{folder}/x64/{program}.exe --version")
                self.assertEqual(code, 0, output)
                self.assertRegex(output, rf"^{program} \d")

    def test_debug_symbols_stand_apart_and_tell_lines(self):
        with unpacked("") as folder, unpacked("-symbols") as symbols:
            for bits, triplet in TRIPLETS.items():
                library = folder / bits / "QvRtLibOle.dll"
                _, headers = run([f"{triplet}-objdump", "-h", str(library)])
                self.assertIn(".gnu_debuglink", headers)
                self.assertNotIn(".debug_line", headers)
                self.assertIn("no symbols", run([f"{triplet}-nm", str(library)])[1])
                _, exports = run([f"{triplet}-objdump", "-p", str(library)])
                base = int(re.search(r"^ImageBase\s+(\w+)", exports, re.M)[1], 16)
                ordinal = re.search(r"\[ *(\d+)\].* DllGetClassObject$", exports, re.M)[1]
                offset = re.search(rf"\[ *{ordinal}\] \+base\[ *\d+\] +(\w+) Export RVA", exports)[1]
                _, place = run(
                    [f"{triplet}-addr2line", "-e", str(symbols / bits / "QvRtLibOle.debug"),
                     hex(base + int(offset, 16))]
                )
                self.assertRegex(place, r"^\./.*src/frame/server/server\.cpp:\d+", bits)
                # Lines alone: whole descriptions of types and variables would be ten times as much.
                self.assertLess((symbols / bits / "QvRtLibOle.debug").stat().st_size, 20_000_000)

    def check_machine_wide(self, bits):
        before = self.snapshot(bits)
        self.install(bits, "machine", "/i")
        code, output = self.wine(bits, "cscript //nologo examples\\\\packed_records.vbs")
        self.assertEqual((code, output.splitlines()[-1:]), (0, ["done"]), output)
        self.install(bits, "machine", "/x")
        self.assert_nothing_left(before, self.snapshot(bits))

    def test_for_the_machine_in_64_bits(self):
        self.check_machine_wide("x64")

    def test_for_the_machine_in_32_bits(self):
        self.check_machine_wide("x86")

    def test_an_ordinary_user_installs_runs_looks_up_and_removes(self):
        user = ("setpriv", f"--reuid={ORDINARY_USER}", f"--regid={ORDINARY_USER}", "--clear-groups")
        user = user if os.getuid() == 0 else ()
        home = BUILD / "ordinary"
        shutil.rmtree(home, ignore_errors=True)
        home.mkdir()
        if user:
            os.chown(home, ORDINARY_USER, ORDINARY_USER)

        def as_user(command):
            code, output = shell(command, "ordinary/wine", user)
            self.assertEqual(code, 0, output)
            return output

        def classes():
            as_user("in_prefix x64 wineserver -k; in_prefix x64 wineserver -w")
            text = "".join((home / "wine-x64" / f).read_text("latin-1") for f in ("user.reg", "system.reg"))
            return set(re.findall(r"^\[(.*)\] \d+$", text, re.M))

        as_user("mkdir build/ordinary/wine-x64; in_prefix x64 wineboot -i")
        before = {key for key in classes() if "\\Installer" not in key}
        installer = str(self.installer("x64", "user")).replace("/", "\\\\")
        as_user(f"run_wine x64 msiexec /i {installer} /qn")
        folder = next((home / "wine-x64").rglob("QvRtLibOle.dll")).parent

        # Wine does not look at the classes of one user: the example runs by the manifest.
        program = folder / "cscript.exe"
        as_user(f"cp 'build/ordinary/wine-x64/drive_c/windows/system32/cscript.exe' '{program}'")
        manifest = home / "program.manifest"
        manifest.write_text(PROGRAM_MANIFEST)
        as_user(f"cp {manifest} '{program}.manifest'")
        output = as_user(f"cd '{folder}'; run_wine x64 '{program}' //nologo 'examples\\packed_records.vbs'")
        self.assertEqual(output.splitlines()[-1:], ["done"], output)
        as_user(f"rm '{program}' '{program}.manifest'")

        self.look_up(folder / "reference/index.html", "Buffer_Put")
        as_user(f"run_wine x64 msiexec /x {installer} /qn")
        after = {key for key in classes() if "\\Installer" not in key}
        self.assertEqual(sorted(k for k in after - before if "QvRtLib" in k or "61628F54" in k.upper()), [])
        self.assertEqual([str(p) for p in (home / "wine-x64/drive_c").rglob("*QvRtLib*")], [])

    def look_up(self, index, name):
        options = webdriver.ChromeOptions()
        for argument in ("--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage"):
            options.add_argument(argument)
        browser = webdriver.Chrome(options=options)
        try:
            begin = time.monotonic()
            browser.get(index.as_uri())
            browser.find_element(By.ID, "search").send_keys(name.lower() + "\n")
            self.assertEqual(browser.find_element(By.TAG_NAME, "h1").text, name)
            self.assertLess(time.monotonic() - begin, 60)
        finally:
            browser.quit()

    def test_a_later_version_takes_the_place_of_an_earlier_one(self):
        before = self.snapshot("x64")
        self.install("x64", "machine", "/i")
        library = interface_model.read(REPOSITORY / "idl/QvRtLibOle.idl")
        with unpacked("") as folder:
            later = InstallerSource(library, "99.0.0", "x64", "machine")
            installer = make_package.make_installer(later, folder / "x64", BUILD)
        for action in ("/i", "/x"):
            code, output = self.wine("x64", f"msiexec {action} build\\\\{installer.name} /qn")
            self.assertEqual(code, 0, output)
            homes = list((BUILD / f"{PREFIX}-x64").rglob("QvRtLibOle.dll"))
            self.assertEqual(len(homes), 1 if action == "/i" else 0)
        # The files of the earlier version that the later one does not have are gone with it.
        self.assert_nothing_left(before, self.snapshot("x64"))

    # Wine makes objects from the machine's classes alone: here it can only be seen that the
    # installer writes what the library itself would write for one user.
    def check_for_one_user(self, bits):
        before = self.snapshot(bits)
        self.install(bits, "user", "/i")
        installed = self.snapshot(bits)
        dll = next((BUILD / f"{PREFIX}-{bits}").rglob("QvRtLibOle.dll"))
        self.assertIn("AppData", str(dll))
        self.install(bits, "user", "/x")
        self.assert_nothing_left(before, self.snapshot(bits))
        regsvr32 = "regsvr32 /s {}/n /i:user build\\\\" + bits + "\\\\QvRtLibOle.dll"
        self.wine(bits, regsvr32.format(""))
        registered = self.snapshot(bits)
        self.wine(bits, regsvr32.format("/u "))
        classes = {key for key in installed[0] - before[0] if "\\Software\\Classes\\" in key}
        self.assertGreater(len(classes), 200)
        self.assertEqual(classes, registered[0] - before[0])

    def test_for_one_user_in_64_bits(self):
        self.check_for_one_user("x64")

    def test_for_one_user_in_32_bits(self):
        self.check_for_one_user("x86")


if __name__ == "__main__":
    unittest.main()
