#!/bin/sh
# implode_peer_test.sh [build folder]: other people's programs expand the blocks that our coder makes,
# and ours expands theirs. Each peer that is missing is skipped, and told.
#
# dynamite reads binary blocks alone: of text blocks, whoever made them, it makes nothing.
set -eu
root=$(cd "$(dirname "$0")/../.." && pwd)
library=${1:-$root/build/native}/src/native/libqv_native.a

if [ ! -f "$library" ]; then
  echo "implode_peer_test: $library is missing; build the preset native first" >&2
  exit 1
fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
compile() { # source, further libraries
  source=$1
  shift
  ${CXX:-c++} -std=c++20 -O1 -I"$root/src" "$root/tests/peers/$source.cpp" "$library" "$@" -o "$work/$source"
}

mkdir "$work/samples"
head -c 32767 /bin/sh >"$work/samples/program"
head -c 32767 /dev/zero >"$work/samples/zeros"
head -c 200000 "$library" >"$work/samples/long"
head -c 600 "$root/docs/formats/compressed-block.md" >"$work/samples/short"
cp "$root/docs/formats/compressed-file.md" "$work/samples/page"
failed=0

if command -v dynamite >/dev/null; then
  compile implode_block
  for sample in "$work"/samples/*; do
    for effort in standard smallest; do
      rm -f "$work/back"
      if "$work/implode_block" binary $effort <"$sample" >"$work/block" &&
        dynamite "$work/block" "$work/back" >"$work/said" 2>&1 && cmp -s "$sample" "$work/back"; then
        echo "ok dynamite expands our $effort block of $(basename "$sample")"
      else
        echo "FAILED $(basename "$sample"): dynamite expands our $effort block"
        failed=1
      fi
    done
  done
else
  echo "SKIPPED dynamite: not installed (apt-get install dynamite)"
fi

if compile implode_storm -lstorm 2>"$work/said"; then
  if "$work/implode_storm" "$work"/samples/*; then
    echo "ok libstorm and our coder expand each other's blocks"
  else
    failed=1
  fi
elif grep -q 'cannot find -lstorm\|unable to find library -lstorm' "$work/said"; then
  echo "SKIPPED libstorm: not installed (apt-get install libstorm-dev)"
else
  cat "$work/said" >&2
  failed=1
fi
echo done
exit $failed
