' CABFileCreate, CABFileInfo, CABFileExtract and their family, late bound.
Dim fso, root, cabinet, files, count, text, list, info, names, i

Set fso = CreateObject("Scripting.FileSystemObject")
root = fso.GetSpecialFolder(2) & "\" & fso.GetTempName()
fso.CreateFolder root
fso.CreateFolder root & "\cabs"
cabinet = root & "\cabs\set.cab"

Sub MakeFile(name, length)
  Dim stream, i, line
  Set stream = fso.CreateTextFile(root & "\" & name, True)
  For i = 1 To length \ 20
    ' Digits that repeat late, so that the cabinet is no small one.
    stream.Write Right("0000000000" & (CDbl(i) * 7919 * 104729 - Int(CDbl(i) * 7919 * 104729 / 1E10) * 1E10), 10) & "0123456789"
  Next
  stream.Write String(length Mod 20, "x")
  stream.Close
End Sub

' The record of the first file in a list, which is taken off.
Function NextName(text)
  Dim length
  length = InStr(text, Chr(0))
  NextName = Left(text, length - 1)
  text = Mid(text, length + 11)
End Function

MakeFile "a.txt", 50000
MakeFile "b.txt", 30
files = root & "\a.txt" & Chr(0) & root & "\b.txt"
Check "CABFileCreate", CABFileCreate(files, root & "\cabs", "set.cab"), False
Check "adds the terminators that the list lacks", Host.Same(Right(files, 7), "b.txt" & Chr(0) & Chr(0)), True
text = "": count = CLng(0)
Check "CABFileInfoEx", CABFileInfoEx(cabinet, text, count), False
Check "counts one cabinet", count, CLng(1)
Check "tells the size", Str_2_Long(Mid(text, 7, 4)), CLng(50000)
Check "tells the year", (Str_2_Int(Mid(text, 11, 2)) And &H7FFF) \ 512 + 1980, Year(Date)
Check "tells the attributes", Str_2_Int(Mid(text, 15, 2)), 32
Check "first name", NextName(text), "a.txt"
Check "second name", NextName(text), "b.txt"
Check "and no more", text, ""
text = ""
Check "CABFileInfo", CABFileInfo(cabinet, text), False
Check "tells the same", Len(text), CLng(32)
Set list = CreateObject("QvRtLibOle.kwCollection")
count = CLng(0)
Check "CABFileInfoExEx", CABFileInfoExEx(cabinet, list, count), False
Check "counts too", count, CLng(1)
Check "fills the list", list.Count, CLng(2)
Set info = list.Item(1)
Check "FileName", info.FileName, "a.txt"
Check "FileSize", info.FileSize, CLng(50000)
Check "FileAttributes", info.FileAttributes, CLng(32)
Check "LastWriteTime is now", Abs(info.LastWriteTime - Now) < 0.01, True
Check "CreationTime repeats it", info.CreationTime, info.LastWriteTime
Check "CABFileInfoExEx adds", CABFileInfoExEx(cabinet, list), False
Check "to what is in the list", list.Count, CLng(4)

Check "CABFileExtract of all", CABFileExtract(cabinet, "", root & "\out", 0), False
Check "restores sizes", fso.GetFile(root & "\out\a.txt").Size & " " & fso.GetFile(root & "\out\b.txt").Size, "50000 30"
Check "CABFileExtract of one", CABFileExtract(cabinet, "B.TXT", root & "\one\", CLng(1)), False
Check "restores that one", fso.FileExists(root & "\one\b.txt") And Not fso.FileExists(root & "\one\a.txt"), True

' A set of several cabinets.
names = ""
For i = 1 To 5
  MakeFile "n" & i, 30000
  names = names & root & "\n" & i & Chr(0)
Next
count = CLng(0)
Check "CABFileCreateEx of a set", CABFileCreateEx(names, root & "\cabs\", "disk1.cab", CLng(20000), count), False
Check "makes several", count > 2, True
Check "disk" & count & ".cab", fso.FileExists(root & "\cabs\disk" & count & ".cab"), True
i = count
count = CLng(0): text = ""
Check "CABFileInfoEx of a set", CABFileInfoEx(root & "\cabs\disk1.cab", text, count), False
Check "counts all", count, CLng(i)
Check "CABFileExtract of a set", CABFileExtract(root & "\cabs\disk1.cab", "", root & "\set", 0), False
Check "restores all", fso.GetFolder(root & "\set").Files.Count = 5, True
Check "of their sizes", fso.GetFile(root & "\set\n5").Size = 30000, True

' Failures.
text = "stays": count = CLng(7)
Check "CABFileInfoEx of a missing cabinet", CABFileInfoEx(root & "\missing.cab", text, count), True
Check "leaves the text", text, "stays"
Check "and the count", count, CLng(7)
Check "tells the name", Error_Description(), "Cabinet non trovato: " & root & "\missing.cab"
CheckRecord "missing is 20001", 20001, "KwRtLibMod.CABFileInfo"
Check "CABFileExtract of a file that is not there", CABFileExtract(cabinet, "z.txt", root & "\out", 0), True
CheckRecord "no such file is 20053", 20053, "KwRtLibMod.CABFileExtract"
files = ""
Check "CABFileCreate of nothing", CABFileCreate(files, root & "\cabs", "none.cab"), True
Check "makes the list two terminators", Host.Same(files, Chr(0) & Chr(0)), True
CheckRecord "nothing is 20001", 20001, "KwRtLibMod.CABFileCreate"
files = root & "\missing"
Check "CABFileCreate of a missing file", CABFileCreate(files, root & "\cabs", "none.cab"), True
Check "tells which", Error_Description(), "Impossibile aprire il file " & root & "\missing"
CheckRecord "missing source is 20001", 20001, "KwRtLibMod.CABFileCreate"
Check "leaves no cabinet", fso.FileExists(root & "\cabs\none.cab"), False

fso.DeleteFolder root, True
Finish
