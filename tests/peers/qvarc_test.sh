#!/bin/sh
# The command-line program of this machine.
exec python3 -B "$(dirname "$0")/qvarc_checks.py" native
