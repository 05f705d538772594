#!/usr/bin/env bash
# Error boxes as a person meets them: on a display, with keys and a mouse. Prints a line a check and
# at last "done". Arguments: the folder of the Windows programs, the prefix to start from.
set -u
. "$(dirname "$0")/support/display.sh"

timeout 120 wine "$programs/script_host.exe" tests/ui/error_boxes.vbs > "$work/out" 2>&1 &
jobs_started+=($!)

# expect NAME NUMBER BUTTON ACTION...: box NUMBER meets the action and ends with that button.
expect() {
  local name=$1 number=$2 button=$3 window= answer=
  shift 3
  window=$(timeout 30 xdotool search --sync --onlyvisible --name "^Box $number\$" | head -1)
  if [ -z "$window" ]; then
    echo "FAILED $name: no box"
    return
  fi
  # There is no window manager to do it.
  xdotool windowfocus "$window"
  sleep 0.3
  "$@" "$window"
  for _ in $(seq 100); do
    answer=$(tr -d '\r' < "$work/out" | sed -n "s/^box $number //p")
    [ -n "$answer" ] && break
    sleep 0.1
  done
  if [ "$answer" = "$button" ]; then
    echo "ok $name"
  else
    echo "FAILED $name: button '$answer' instead of $button"
  fi
}
enter() { xdotool key Return; }
letter() { xdotool key n; }
next_then_enter() { xdotool key --delay 100 Tab Return; }
escape() { xdotool key Escape; }
# "No" stands right of the middle, in the lower part.
click_no() {
  local X=0 Y=0 WIDTH=0 HEIGHT=0
  eval "$(xdotool getwindowgeometry --shell "$1" | grep -E '^(X|Y|WIDTH|HEIGHT)=')"
  xdotool mousemove $((X + WIDTH * 72 / 100)) $((Y + HEIGHT * 75 / 100)) click 1
}

expect "Enter presses the first button" 0 6 enter
expect "an underlined letter presses its button" 1 7 letter
expect "Tab and Enter press the next button" 2 7 next_then_enter
expect "Escape cancels" 3 2 escape
expect "a click presses the button under it" 4 7 click_no
expect "Enter presses the button that the style makes the default" 5 7 enter
echo done
