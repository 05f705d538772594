#!/bin/sh
# qvarc_test.sh x64|x86: the command-line program of Windows.
exec python3 -B "$(dirname "$0")/../qvarc_checks.py" "$1"
