#!/usr/bin/env bash
# full_disk_test.sh x64|x86: what is left of archives and cabinets when the disk fills up: a disk of
# 200 KB, which only root can make.
set -uo pipefail
bits=$1
cd "$(dirname "$0")/../../.."
. tools/environment.sh

work=build/full-$bits
rm -rf "$work"
mkdir -p "$work/disk"
seen=$repository
[ "$bits" = x64 ] || seen=$root32$inside32 # what is mounted here does not show there
if ! mount -t tmpfs -o size=200k tmpfs "$seen/$work/disk" 2> "$work/said"; then
  echo "SKIPPED $(cat "$work/said")"
  echo done
  exit 0
fi
trap 'umount "$seen/$work/disk"; rm -rf "$work"' EXIT

openssl enc -aes-128-ctr -K 00 -iv 00 -in /dev/zero 2>/dev/null | head -c 400000 > "$work/large"
printf 'ciao' > "$work/small"
{ cat tests/scripts/support/checks.vbs; cat << EOF; } > "$work/script.vbs"
Dim fso, root, text
root = "${work//\//\\}\\"
Set fso = CreateObject("Scripting.FileSystemObject")

Function OnDisk()
  Dim file
  OnDisk = ""
  For Each file In fso.GetFolder(root & "disk").Files
    OnDisk = OnDisk & file.Name & ":" & file.Size & " "
  Next
End Function

Check "an archive fits elsewhere", FileZip(Array(root & "small", root & "large"), root & "a.kwc"), False
Check "FileZip onto the full disk", FileZip(root & "large", root & "disk\a.kwc"), True
Check "tells it", Error_Description(), "Disk full"
CheckRecord "FileZip onto a full disk is 61", 61, "Module.FileZip"
Check "the archive is deleted", OnDisk(), ""

fso.CreateTextFile(root & "disk\large").Write "what was there"
Check "FileUnzip onto the full disk", FileUnzip(root & "a.kwc", root & "disk"), True
Check "tells it too", Error_Description(), "Disk full"
CheckRecord "FileUnzip onto a full disk is 61", 61, "Module.FileUnzip"
Check "what was restored stays, and what was there", OnDisk(), "large:14 small:4 "
fso.DeleteFile root & "disk\*"

text = root & "small" & Chr(0) & root & "large"
Check "a cabinet fits elsewhere", CABFileCreate(text, root, "a.cab"), False
Check "CABFileCreate onto the full disk", CABFileCreate(text, root & "disk", "a.cab"), True
CheckRecord "CABFileCreate onto a full disk is 20006", 20006, "KwRtLibMod.CABFileCreate"
Check "CABFileCreate of a set onto the full disk", CABFileCreate(text, root & "disk", "a.cab", CLng(90000)), True
CheckRecord "a set is 20006 too", 20006, "KwRtLibMod.CABFileCreate"
Check "no cabinet is left", OnDisk(), ""
fso.CreateTextFile(root & "disk\large").Write "what was there"
Check "CABFileExtract onto the full disk", CABFileExtract(root & "a.cab", "", root & "disk", 0), True
CheckRecord "CABFileExtract onto a full disk is 20008", 20008, "KwRtLibMod.CABFileExtract"
Check "what was extracted stays, and what was there", OnDisk(), "large:14 small:4 "
Finish
EOF
run_wine "$bits" "build/$bits/tests/server/script_host.exe" "$work/script.vbs" > "$work/told" 2>&1
tr -d '\r' < "$work/told" | grep -E '^(ok|FAILED|done)'
! grep -q '^FAILED' "$work/told"
