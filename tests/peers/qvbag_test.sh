#!/bin/sh
# The command-line program of this machine.
exec python3 -B "$(dirname "$0")/qvbag_checks.py" native
