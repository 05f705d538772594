#!/usr/bin/env bash
# cabinets_test.sh x64|x86: other people's programs read the cabinets that the server makes, and the
# server reads theirs. Needs Debian's cabextract and gcab.
set -uo pipefail
bits=$1
cd "$(dirname "$0")/../../.."
. tools/environment.sh

# Below the repository, which both Wines see; the names in it are relative to that.
work=build/cabinets-$bits
failed=0
rm -rf "$work"
mkdir -p "$work"/{source/sub,made,theirs}
trap 'rm -rf "$work"' EXIT

check() { # name, command...
  local name=$1
  shift
  if "$@" > "$work/said" 2>&1; then
    echo "ok $name"
  else
    echo "FAILED $name: $(tr '\n' ' ' < "$work/said" | tail -c 600)"
    failed=1
  fi
}
server() { # lines of a script on the standard input
  { cat tests/scripts/support/checks.vbs; cat; echo Finish; } > "$work/script.vbs"
  run_wine "$bits" "build/$bits/tests/server/script_host.exe" "$work/script.vbs" > "$work/told" 2>&1
  tr -d '\r' < "$work/told" | grep -E '^(ok|FAILED) '
  tr -d '\r' < "$work/told" | grep -q '^done$' || { echo "FAILED the script did not end"; failed=1; }
}

# What repeats, what does not, what is empty, and one file over several blocks.
seq -f 'riga %g di testo' 20000 > "$work/source/words.txt"
head -c 90000 "build/$bits/QvRtLibOle.dll" > "$work/source/program.bin"
openssl enc -aes-128-ctr -K 00 -iv 00 -in /dev/zero 2>/dev/null | head -c 150000 > "$work/source/noise.bin"
: > "$work/source/empty"
printf 'ciao' > "$work/source/sub/perchè.txt"
touch -d '2001-02-03 04:05:06' "$work/source/words.txt"

script_work=${work//\//\\}
server << EOF
Dim files, count
files = "$script_work\source\words.txt" & Chr(0) & "$script_work\source\program.bin" & Chr(0) & _
  "$script_work\source\noise.bin" & Chr(0) & "$script_work\source\empty"
Check "one cabinet is made", CABFileCreate(files, "$script_work\made", "one.cab", 100000000), False
count = CLng(0)
Check "a set is made", CABFileCreateEx(files, "$script_work\made", "disk1.cab", CLng(60000), count), False
Check "of several cabinets", count > 3, True
files = "$script_work\source\sub\perch" & Chr(232) & ".txt"
Check "a cabinet with folders is made", CABFileCreate(files, "$script_work\made", "folders.cab"), False
EOF

check "cabextract tests the cabinet" cabextract -q -t "$work/made/one.cab"
check "cabextract extracts the cabinet" cabextract -q -d "$work/out1" "$work/made/one.cab"
check "cabextract tests the set" cabextract -q -t "$work/made/disk1.cab"
check "cabextract extracts the set" cabextract -q -d "$work/out2" "$work/made/disk1.cab"
check "cabextract finds one file in the set" cabextract -q -d "$work/out3" -F '*noise.bin' "$work/made/disk1.cab"
check "gcab extracts the cabinet" gcab -x -C "$work/out4" "$work/made/one.cab"
check "cabextract extracts names of other letters" cabextract -q -d "$work/out5" "$work/made/folders.cab"
for out in out1 out2 out3 out4; do
  for file in words.txt program.bin noise.bin empty; do
    [ "$out" = out3 ] && [ $file != noise.bin ] && continue
    found=$(find "$work/$out" -name $file | head -1)
    check "$out $file is the same" cmp "$work/source/$file" "${found:-missing}"
  done
done
check "the letters are the same" cmp "$work/source/sub/perchè.txt" "$(find "$work/out5" -name 'perchè.txt' | head -1)"
found=$(find "$work/out1" -name words.txt | head -1)
check "the date is the same" test "$(date -r "$found" +%FT%T)" = 2001-02-03T04:05:06

(cd "$work/source" && gcab -c ../theirs/stored.cab words.txt program.bin noise.bin empty &&
  gcab -c -z ../theirs/zip.cab words.txt program.bin noise.bin empty &&
  gcab -c -z ../theirs/letters.cab sub/perchè.txt) > /dev/null 2>&1 || { echo "FAILED gcab -c"; failed=1; }
server << EOF
Dim list, kind, text
For Each kind In Array("stored", "zip")
  Set list = CreateObject("QvRtLibOle.kwCollection")
  Check "their " & kind & " cabinet is listed", CABFileInfoExEx("$script_work\theirs\" & kind & ".cab", list), False
  Check "with all files", list.Count, CLng(4)
  Check "it is extracted", CABFileExtract("$script_work\theirs\" & kind & ".cab", "", "$script_work\ours\" & kind, 0), False
Next
Check "theirs with other letters is extracted", CABFileExtract("$script_work\theirs\letters.cab", "", "$script_work\ours\letters", 0), False
EOF
for kind in stored zip; do
  for file in words.txt program.bin noise.bin empty; do
    check "their $kind $file is the same" cmp "$work/source/$file" "$work/ours/$kind/$file"
  done
done
check "their letters are the same" cmp "$work/source/sub/perchè.txt" "$work/ours/letters/perchè.txt"
echo done
exit $failed
