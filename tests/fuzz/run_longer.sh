#!/usr/bin/env bash
# tests/fuzz/run_longer.sh SECONDS: every fuzzer for so long, then the least inputs that reach all
# that has been reached go to found.tar.xz, from which ./test asan starts.
set -euo pipefail
cd "$(dirname "$0")/../.."
. tools/environment.sh
seconds=$1
build_preset native-asan

work=$build/fuzz
least=$build/fuzz-least
mkdir -p "$work"
rm -rf "$least"
tar xf tests/fuzz/found.tar.xz -C "$work"
for fuzzer in "$build"/native-asan/tests/fuzz/*_fuzz; do
  name=$(basename "$fuzzer" _fuzz)
  folders=("$work/$name")
  [ ! -d "tests/fuzz/corpus/$name" ] || folders+=("tests/fuzz/corpus/$name")
  mkdir -p "$work/$name" "$least/$name"
  say "$name"
  "$fuzzer" -max_total_time="$seconds" -rss_limit_mb=2048 -timeout=20 -verbosity=0 \
    -artifact_prefix="$work/$name-" "${folders[@]}"
  "$fuzzer" -merge=1 -verbosity=0 "$least/$name" "${folders[@]}"
done
# The same bytes from the same inputs.
tar -C "$least" --sort=name --mtime=@0 --owner=0 --group=0 --numeric-owner -cJf tests/fuzz/found.tar.xz .
