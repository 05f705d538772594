#!/bin/sh
# qvbag_test.sh x64|x86: the command-line program of Windows.
exec python3 -B "$(dirname "$0")/../qvbag_checks.py" "$1"
