"""The package as a new user meets it: two builds are the same, an installer needs nothing else, an
example runs, and nothing is left when it is gone. Each bitness has a fresh Wine prefix."""

import re
import subprocess
import unittest
import zipfile
from pathlib import Path

REPOSITORY = Path(__file__).resolve().parents[2]
BUILD, DIST = REPOSITORY / "build", REPOSITORY / "dist"
PREFIX = "package"
LIBRARY_ID = "61628F54-2F04-11D2-B91D-00A024ED9C9B"


def shell(command):
    done = subprocess.run(
        ["bash", "-c", f"export QVRT_PREFIX={PREFIX}; . tools/environment.sh; {command}"],
        cwd=REPOSITORY, capture_output=True, timeout=300, check=False,
    )
    return done.returncode, (done.stdout + done.stderr).decode("utf-8", "replace").replace("\r", "")


def build_package():
    code, output = shell("./package")
    assert code == 0, output
    return (DIST / "SHA256SUMS").read_text("ascii")


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
            "x86/QvRtLibOle.dll", "x86/QvRtLib.manifest", "x64/QvRtLibOle.dll", "x64/QvRtLib.manifest",
            "QvRtLibOle.tlb", "include/QvRtLibOle.h", "register-user.cmd", "unregister-user.cmd",
            "register-machine.cmd", "unregister-machine.cmd", "README.md", "LICENSE", "CHANGELOG.md",
            "reference/index.html", "reference/KwRtLib/Buffer_Put.html", "examples/packed_records.vbs",
        ):
            self.assertIn(name, names)

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
