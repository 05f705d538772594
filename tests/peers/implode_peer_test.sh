#!/bin/sh
# implode_peer_test.sh [build folder]: Debian's dynamite expands the blocks that our coder makes, in
# both modes and both efforts. Skips, and says so, where the program is missing.
set -eu
root=$(cd "$(dirname "$0")/../.." && pwd)
library=${1:-$root/build/native}/src/native/libqv_native.a

if ! command -v dynamite >/dev/null; then
  echo "SKIPPED implode_peer_test: dynamite is not installed (apt-get install dynamite)"
  exit 0
fi
if [ ! -f "$library" ]; then
  echo "implode_peer_test: $library is missing; build the preset native first" >&2
  exit 1
fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
${CXX:-c++} -std=c++20 -O1 -I"$root/src" "$root/tests/peers/implode_block.cpp" "$library" \
  -o "$work/implode_block"

mkdir "$work/samples"
head -c 32767 /bin/sh >"$work/samples/program"
head -c 32767 /dev/zero >"$work/samples/zeros"
head -c 200000 "$library" >"$work/samples/long"
head -c 600 "$root/docs/formats/compressed-block.md" >"$work/samples/short"
cp "$root/idl/QvRtLibOle.idl" "$work/samples/interface"
cp "$root/docs/formats/compressed-file.md" "$work/samples/page"

expanded=0
failed=0
for sample in "$work"/samples/*; do
  for mode in binary text; do
    for effort in standard smallest; do
      if ! "$work/implode_block" $mode $effort <"$sample" >"$work/block"; then
        echo "FAILED $(basename "$sample") $mode $effort: not compressed"
        failed=1
      elif ! dynamite "$work/block" "$work/back" >"$work/said" 2>&1 ||
        ! cmp -s "$sample" "$work/back"; then
        echo "FAILED $(basename "$sample") $mode $effort: expands to something else"
        failed=1
      else
        expanded=$((expanded + 1))
      fi
      rm -f "$work/back"
    done
  done
done
echo "implode_peer_test: $expanded blocks expanded by dynamite"
exit $failed
