#!/bin/sh
# qvflt_test.sh x64|x86: the command-line program of Windows.
exec python3 -B "$(dirname "$0")/../qvflt_checks.py" "$1"
