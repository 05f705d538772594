# Sourced by the tests of this folder: a display of their own and a prefix that uses it. Arguments of
# the sourcing script: the folder of the Windows programs, the prefix to start from.
programs=$1
prefix=$2
work=$(mktemp -d)
jobs_started=()
trap 'wineserver -k; kill "${jobs_started[@]}" 2> /dev/null; rm -rf "$work"' EXIT

export WINEPREFIX=$work/prefix WINEDEBUG=-all WINEDLLOVERRIDES=mscoree,mshtml= HOME=/tmp
cp -a "$prefix" "$WINEPREFIX"
mkfifo "$work/display"
Xvfb -displayfd 5 -screen 0 800x600x24 -nolisten tcp 5> "$work/display" > /dev/null 2>&1 &
jobs_started+=($!)
read -r display < "$work/display"
export DISPLAY=:$display
# The prefix of the other tests has no display.
wine reg delete 'HKCU\Software\Wine\Drivers' /v Graphics /f > /dev/null 2>&1
wineserver -k
wineserver -w
