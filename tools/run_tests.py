#!/usr/bin/env python3
"""Runs the suites named, prints every failure and at last one line "N passed, N failed".

Suites: style (clang-format; needs no build), native (the portable core), asan (the same under
sanitizers, and a short run of every fuzzer), docs (the reference pages, the released interface),
x64 and x86 (the server under Wine: the modules from inside, typed clients, scripts on the small
script host and on the platform's own cscript), package (what users download: built twice,
installed, used, removed), tidy (clang-tidy).
"""

import argparse
import os
import re
import subprocess
import sys
import tempfile
import time
from pathlib import Path

from reference import examples

REPOSITORY = Path(__file__).resolve().parent.parent
BUILD = REPOSITORY / "build"
FUZZ_SECONDS = 5
# Beside the one of every other test: a single-byte and a multi-byte ANSI code page.
CODE_PAGE_LOCALES = ("ru_RU.UTF-8", "ja_JP.UTF-8")


class Totals:
    def __init__(self):
        self.passed = self.failed = 0

    def add(self, passed, failed):
        self.passed += passed
        self.failed += failed


def shell(command, **options):
    """A command with the functions of tools/environment.sh at hand."""
    return subprocess.run(
        ["bash", "-c", f". tools/environment.sh; {command}"], cwd=REPOSITORY, check=False, **options
    )


def prepare(command):
    if shell(command).returncode != 0:
        sys.exit(f"error: {command} failed")


def captured(command, timeout_s, environment=None):
    """(exit code, output) of a command; a command that hangs is ended and fails."""
    # A pipe would be waited for as long as any process holds it, and Wine's own live on.
    with tempfile.TemporaryFile() as output:
        try:
            code = shell(
                command, stdout=output, stderr=subprocess.STDOUT, timeout=timeout_s,
                env={**os.environ, **(environment or {})},
            ).returncode
            ending = ""
        except subprocess.TimeoutExpired:
            code = 124
            ending = "\nended: it hung\n"
        output.seek(0)
        return code, output.read().decode("utf-8", "replace").replace("\r", "") + ending


def run_googletest(totals, title, command, timeout_s=900):
    """A GoogleTest program: counts its tests; one that ends early has failed."""
    start = time.monotonic()
    code, output = captured(command, timeout_s)
    # By name: one that is watched runs twice.
    failures = set(re.findall(r"^\[ +FAILED +\] (\S+?)(?:, where .*)? \(\d+ ms\)$", output, re.M))
    passed = len(set(re.findall(r"^\[ +OK \] (\S+) ", output, re.M)) - failures)
    failed = len(failures) or int(code != 0)
    totals.add(passed, failed)
    print(f"{title}: {passed} passed, {failed} failed ({time.monotonic() - start:.0f} s)", flush=True)
    for line in dict.fromkeys(re.findall(r"^\[ +SKIPPED +\] \S+|^.*Skipped\n.*", output, re.M)):
        print(f"  skipped: {line}")
    if failed:
        print(failures_of(output))


def failures_of(output):
    """What a person needs of a failing program's output."""
    blocks = re.split(r"^(?=\[ RUN)", output, flags=re.M)
    failing = [b for b in blocks if "FAILED" in b or b is blocks[-1]]
    return "".join(failing)[-12000:]


def settings_of(script):
    """A script runs once under each locale and time zone that it asks for by a line
    "' Under LOCALE ZONE", such as "' Under it_IT.UTF-8 CET-1"."""
    asked = re.findall(r"^' Under (\S+) (\S+)$", script.read_text("latin-1"), re.M)
    return [{"QVRT_LOCALE": locale, "QVRT_ZONE": zone} for locale, zone in asked] or [{}]


def run_script(totals, title, command, environment=None, timeout_s=300):
    """A script that prints a line "ok NAME" or "FAILED NAME: ..." a check and ends in "done"."""
    code, output = captured(command, timeout_s, environment)
    passed = len(re.findall(r"^ok ", output, re.M))
    failures = re.findall(r"^FAILED .*", output, re.M)
    finished = re.search(r"^done$", output, re.M) is not None
    if not finished or code != 0:
        failures.append(f"FAILED the script did not run to its end (exit code {code})")
    totals.add(passed, len(failures))
    print(f"{title}: {passed} passed, {len(failures)} failed", flush=True)
    for line in re.findall(r"^SKIPPED .*", output, re.M):
        print(f"  {line}")
    if failures:
        print("\n".join(failures))
        if not finished:
            print(output[-4000:])


def run_style(totals, word):
    run_script(totals, "style", f'python3 -B tools/check_style.py --filter "{word}" 2>&1')


def run_tidy(totals, word):
    prepare("build_preset native build.ninja")
    prepare("build_preset x64 qv_generated")
    run_script(
        totals, "tidy",
        f'python3 -B tools/check_tidy.py build/native build/x64 "$cache/tidy" --filter "{word}" 2>&1',
        timeout_s=3600,
    )


def run_native(totals, pattern):
    prepare("build_preset native")
    run_googletest(totals, "native", f"cd build/native && tests/native/native_tests --gtest_filter='{pattern}'")
    for script in sorted((REPOSITORY / "tests/peers").glob("*.sh")):
        run_script(totals, f"peers/{script.name}", f"bash {script} 2>&1")


def run_asan(totals, pattern):
    prepare("build_preset native-asan")
    folder = BUILD / "native-asan/tests"
    run_googletest(totals, "asan", f"cd {BUILD}/native-asan && tests/native/native_tests --gtest_filter='{pattern}'", 1800)
    for checks in sorted((REPOSITORY / "tests/peers").glob("*_checks.py")):
        program = checks.stem.removesuffix("_checks")
        run_script(totals, f"asan {program}", f"python3 -B {checks} native-asan 2>&1")
    (BUILD / "fuzz").mkdir(exist_ok=True)
    prepare("tar xf tests/fuzz/found.tar.xz -C $build/fuzz")
    for fuzzer in sorted((folder / "fuzz").glob("*_fuzz")):
        corpus = REPOSITORY / "tests/fuzz/corpus" / fuzzer.name.removesuffix("_fuzz")
        work = BUILD / "fuzz" / corpus.name
        work.mkdir(exist_ok=True)
        seeds = str(corpus) if corpus.is_dir() else ""
        code, output = captured(
            f"{fuzzer} -max_total_time={FUZZ_SECONDS} -rss_limit_mb=2048 -timeout=20 "
            f"-artifact_prefix={work}- {work} {seeds} 2>&1",
            FUZZ_SECONDS + 60,
        )
        totals.add(int(code == 0), int(code != 0))
        print(f"fuzz {fuzzer.name}: {'passed' if code == 0 else 'FAILED'}", flush=True)
        if code:
            print(output[-4000:])


def scripts_matching(folder, word):
    return sorted(p for p in folder.glob("*.vbs") if word in p.name)


def run_python(totals, title, folder, timeout_s=600):
    """The unit tests of a folder."""
    # The system's own Python: the packages of the tests are installed for that one.
    _, output = captured(
        f"/usr/bin/python3 -B -m unittest discover -s {folder} -p '*_test.py' -v 2>&1", timeout_s
    )
    passed = len(re.findall(r" \.\.\. ok$", output, re.M))
    failed = len(re.findall(r" \.\.\. (?:FAIL|ERROR)$", output, re.M)) or int("\nOK" not in output)
    totals.add(passed, failed)
    print(f"{title}: {passed} passed, {failed} failed", flush=True)
    if failed:
        print(output[-8000:])


def run_reference_examples(totals, bits, path):
    """One file of the reference's examples, or a guide: what each block shows is what it says."""
    text = path.read_text("latin-1")
    blocks = [lines for _, lines in examples.blocks_of(text)]
    preamble = examples.preamble_of(text)
    if path.suffix == ".md":
        blocks = [examples.guide_blocks(text)]
        preamble = ()
    program = BUILD / "examples" / f"{path.stem}.vbs"
    program.parent.mkdir(parents=True, exist_ok=True)
    program.write_text(examples.program_of(blocks, preamble), "latin-1")
    host = f"build/{bits}/tests/server/script_host.exe"
    _, output = captured(f"run_wine {bits} {host} {program.relative_to(REPOSITORY)} 2>&1", 300)
    shown = [[] for _ in blocks]
    for number, value in re.findall(r"^(\d+) (.*)$", output, re.M):
        shown[int(number)].append(value.rstrip())
    wrong = [(lines, got) for lines, got in zip(blocks, shown) if examples.expected_of(lines) != got]
    totals.add(len(blocks) - len(wrong), len(wrong))
    print(f"{bits} {path.relative_to(REPOSITORY)}: {len(blocks) - len(wrong)} passed, {len(wrong)} failed")
    for lines, got in wrong:
        print("\n".join(lines), f"\n  shows: {got}")
    if wrong and not output.endswith("done\n"):
        print(output[-2000:])


def run_windows(totals, bits, pattern, word):
    if bits == "x86":
        prepare("prepare_root32")
    prepare(f"build_preset {bits}")
    prepare(f"prepare_prefix {bits}")
    missing = (BUILD / bits / "src/generated/not_built.txt").read_text("ascii").split()
    print(f"{bits}: members still answering run-time error 445: {len(missing)}")
    program = f"build/{bits}/tests/server"
    # Most of it runs once more, watched for what it leaves allocated: the scripts in both, the typed
    # tests, which take minutes, in one.
    watch = "" if word else "--watch_allocations"
    for name, option in (("module_tests", ""), ("server_tests", watch if bits == "x64" else "")):
        run_googletest(
            totals, f"{bits} {name}",
            f"run_wine {bits} {program}/{name}.exe {option} --gtest_filter='{pattern}' 2>&1",
        )
    for locale in CODE_PAGE_LOCALES if not word or word in "CodePage" else ():
        run_googletest(
            totals, f"{bits} server_tests {locale}",
            f"QVRT_LOCALE={locale} run_wine {bits} {program}/server_tests.exe "
            "--gtest_filter='CodePage*' 2>&1",
        )
    scripts = REPOSITORY / "tests/scripts"
    for script in scripts_matching(scripts, word):
        path = script.relative_to(REPOSITORY)
        for environment in settings_of(script):
            run_script(
                totals, " ".join([bits, script.name, *environment.values()]),
                f"run_wine {bits} {program}/script_host.exe {watch} "
                f"tests/scripts/support/checks.vbs {path} 2>&1",
                environment,
            )
    guides = [p for p in sorted((REPOSITORY / "docs/guide").glob("*.md")) if word in p.name]
    for path in scripts_matching(REPOSITORY / "docs/examples", word) + guides:
        run_reference_examples(totals, bits, path)
    # What users run: the examples, on the platform's own host.
    for script in scripts_matching(REPOSITORY / "examples", word):
        run_script(
            totals,
            f"{bits} cscript {script.name}",
            f"run_wine {bits} cscript //nologo 'examples\\{script.name}' 2>&1 && echo ok {script.stem}",
        )
    for script in sorted((REPOSITORY / "tests/peers/server").glob("*.sh")):
        if not word or word in script.name:
            run_script(totals, f"{bits} peers/{script.name}", f"bash {script} {bits} 2>&1")
    if not word or word in "soak":
        run_googletest(totals, f"{bits} soak", f"run_wine {bits} {program}/soak_tests.exe 2>&1")
        run_script(
            totals, f"{bits} killed writers", f"python3 -B tests/soak/kill_writers.py {bits} 4 2>&1"
        )
    # On a display of this machine; the 32-bit Wine lives in a root of its own.
    for script in sorted((REPOSITORY / "tests/ui").glob("*.sh")) if bits == "x64" else ():
        if not word or word in script.name:
            run_script(totals, f"{bits} ui/{script.name}", f"bash {script} {program} $build/wine-{bits} 2>&1")
    shell(f"end_session {bits}")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("suites", nargs="+")
    parser.add_argument("--filter", default="")
    options = parser.parse_args()
    pattern = f"*{options.filter}*" if options.filter else "*"
    totals = Totals()
    for suite in options.suites:
        if suite == "style":
            run_style(totals, options.filter)
        elif suite == "tidy":
            run_tidy(totals, options.filter)
        elif suite == "native":
            run_native(totals, pattern)
        elif suite == "asan":
            run_asan(totals, pattern)
        elif suite == "docs":
            run_python(totals, "docs", "tests/reference")
        elif suite == "package":
            # It builds the library in both bitnesses first.
            run_python(totals, "package", "tests/package", 7200)
        else:
            run_windows(totals, suite, pattern, options.filter)
    print(f"\n{totals.passed} passed, {totals.failed} failed")
    sys.exit(1 if totals.failed or not totals.passed else 0)


if __name__ == "__main__":
    os.environ.setdefault("ASAN_OPTIONS", "allocator_may_return_null=1")
    main()
