#!/bin/sh
# The command-line program of this machine.
exec python3 -B "$(dirname "$0")/qvflt_checks.py" native
