#!/usr/bin/env bash
# Windows of other programs, icons of the task bar and waiting for a program, on a display with a
# mouse. Prints a line a check and at last "done". Arguments: the folder of the Windows programs, the
# prefix to start from.
set -u
. "$(dirname "$0")/support/display.sh"

# A stand-in that runs until it is stopped.
cp "$programs/companion.exe" "$work/waiter.exe"
timeout 120 wine "$programs/companion.exe" windows > "$work/others" 2>&1 &
jobs_started+=($!)
timeout 120 wine "$programs/companion.exe" application "Z:${work//\//\\}\\waiter.exe" > "$work/out" 2>&1 &
jobs_started+=($!)

# told LINE: waits until the application has printed a line that matches.
told() {
  for _ in $(seq 600); do
    tr -d '\r' < "$work/out" | grep -qx "$1" && return
    sleep 0.1
  done
  return 1
}
check() {
  local name=$1
  shift
  if "$@"; then echo "ok $name"; else echo "FAILED $name: $(tr '\n' '|' < "$work/out")"; fi
}
window_named() { timeout 30 xdotool search --sync --onlyvisible --name "$1" | head -1; }
# press FIELD: one of the seven of the application, from 0.
press() { xdotool mousemove --window "$application" $(($1 * 40 + 20)) 100 click 1; }

others=$(window_named '^QvParent$')
application=$(window_named '^QvApplication$')
check "both programs have a window" test -n "$others" -a -n "$application"

press 0
check "Find_Window finds another program's window and what is deep in it" told "found 1 1"

press 1
check "Process_SetFocus says that it did, and moves no focus" told "given -1 1"

press 2
check "SysTray shows an icon" told "icon added 0"
icon=$(window_named 'Wine System Tray')
check "which stands on the display" test -n "$icon"
xdotool mousemove --window "$icon" 8 10 click 1
check "and tells the application when it is pressed" told "icon pressed"
press 3
check "SysTray takes the icon away" told "icon removed 0"

press 4
check "Spawn waits for a program" told "waiting"
xdotool windowsize "$application" 420 310
check "while the window goes on painting" told "painted 4[0-9]* by [23][0-9]*"
check "and Spawn has not come back" test "$(grep -c waited "$work/out")" = 0
press 5
check "StopProc, called from an event, is a request" told "stopped -1"
check "which ends the wait without a failure" told "waited 0"
press 6
echo done
