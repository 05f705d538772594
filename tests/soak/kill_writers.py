#!/usr/bin/env python3
"""kill_writers.py x64|x86 ROUNDS: kills a program that writes archives, restored files, filters and
INI files, each time at another moment, and lets another look at what it left. Prints "ok NAME" or
"FAILED NAME: ..." a check, and at last "done".
"""

import os
import random
import shutil
import signal
import subprocess
import sys
import time
from pathlib import Path

REPOSITORY = Path(__file__).resolve().parent.parent.parent
BITS, ROUNDS = sys.argv[1], int(sys.argv[2])
PROGRAM = f"build/{BITS}/tests/server/soak_tests.exe"
# Below the repository, which every Wine sees under the same relative name.
FOLDER = REPOSITORY / "build" / f"killed-{BITS}"
LONGEST_S = 0.6


def command(mode):
    inside = f"build\\\\killed-{BITS}\\\\"
    return ["bash", "-c", f'. tools/environment.sh; run_wine {BITS} {PROGRAM} {mode} "{inside}"']


def writers():
    """The processes of the writer."""
    found = []
    for process in Path("/proc").iterdir():
        try:
            line = (process / "cmdline").read_bytes()
        except OSError:
            continue
        if process.name.isdigit() and b"--write" in line and f"killed-{BITS}".encode() in line:
            found.append(int(process.name))
    return found


def main():
    chance = random.Random()
    seed = chance.randrange(1 << 30)
    chance.seed(seed)
    for number in range(ROUNDS):
        shutil.rmtree(FOLDER, ignore_errors=True)
        FOLDER.mkdir(parents=True)
        with subprocess.Popen(command("--write"), cwd=REPOSITORY, stdout=subprocess.DEVNULL) as writer:
            ready_by = time.monotonic() + 60
            while not (FOLDER / "ready").exists() and time.monotonic() < ready_by:
                time.sleep(0.01)
            time.sleep(chance.random() * LONGEST_S)
            for process in writers():
                os.kill(process, signal.SIGKILL)
            writer.wait()
        done = subprocess.run(
            command("--check"), cwd=REPOSITORY, check=False, capture_output=True, text=True, timeout=120
        )
        output = done.stdout.replace("\r", "")
        sys.stdout.write("".join(line + "\n" for line in output.split("\n") if line[:2] in ("ok", "FA")))
        sys.stdout.flush()
        if "\ndone" not in output or "FAILED" in output:
            print(f"FAILED round {number} of seed {seed}:\n{output}{done.stderr}")
            return
    shutil.rmtree(FOLDER, ignore_errors=True)
    print("done")


main()
