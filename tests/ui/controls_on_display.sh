#!/usr/bin/env bash
# The helpers for controls and the drawing of text on a display. What they have done is kept in
# build/pictures for a person to look at. Prints a line a check and at last "done". Arguments: the
# folder of the Windows programs, the prefix to start from.
set -u
. "$(dirname "$0")/support/display.sh"

pictures=build/pictures
mkdir -p "$pictures"
rm -f "$pictures"/*.png
QVRT_PICTURES="Z:$(realpath "$pictures" | tr / '\\')"
export QVRT_PICTURES

# picture NAME COLOURS: takes it as soon as it has that many colours at least; 1: nothing shows.
picture() {
  local name=$1 least=$2 colours= result="FAILED picture $1"
  for _ in $(seq 50); do
    import -display "$DISPLAY" -window root "$work/$name.png"
    colours=$(identify -format %k "$work/$name.png")
    if [ "$least" = 1 ] && [ "$colours" = 1 ] || [ "$least" != 1 ] && [ "$colours" -ge "$least" ]; then
      result="ok picture $name"
      break
    fi
    sleep 0.2
  done
  echo "$result"
  # The script waits for it.
  mv "$work/$name.png" "$pictures/"
}

timeout 200 wine "$programs/script_host.exe" tests/scripts/support/checks.vbs tests/ui/controls.vbs \
  2>&1 | sed -u 's/\r$//' | while read -r word name least; do
  if [ "$word" = picture ]; then
    picture "$name" "$least"
  else
    echo "$word${name:+ $name}${least:+ $least}"
  fi
done
