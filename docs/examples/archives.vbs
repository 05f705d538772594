' == PkZip, PkUnzip, PkCRC
' A buffer made smaller, and back. Whoever keeps the block keeps the original's length too.
Dim text, packed, restored, i
text = ""
For i = 1 To 100
  text = text & "riga " & i & vbCrLf
Next
packed = ""
Show PkZip(text, packed)                       '-> False
Show Len(packed) < Len(text) \ 2               '-> True
restored = ""
Show PkUnzip(packed, restored, Len(text))      '-> False
Show PkCRC(restored) = PkCRC(text)             '-> True
Show Hex(Not PkCRC("123456789"))               '-> CBF43926
Show PkZip("abc", packed)                      '-> True
Show Error_Number()                            '-> 20005

' == FileZip, FileUnzip, FileUnzipEx, FileUnzipInfo, ZipFile.FileZip, ZipFile.FileUnzip
' A folder becomes an archive, and its files come back elsewhere: all of them, then one under a new name.
Dim fso, root, stream, names, list, entry, zipper
Set fso = CreateObject("Scripting.FileSystemObject")
root = fso.GetSpecialFolder(2) & "\" & fso.GetTempName()
fso.CreateFolder root
fso.CreateFolder root & "\sub"
Set stream = fso.CreateTextFile(root & "\a.txt")
stream.Write String(1000, "a")
stream.Close
Set stream = fso.CreateTextFile(root & "\sub\b.txt")
stream.Write "ciao"
stream.Close
names = Array(root & "\a.txt", root & "\sub", root & "\sub\b.txt")
Show FileZip(names, root & "\all.kwc", root)   '-> False

Set list = CreateObject("QvRtLibOle.kwCollection")
Show FileUnzipInfo(root & "\all.kwc", list)    '-> False
For Each entry In list
  Show Get_FileName(entry.FileName) & " " & entry.FileSize
Next
'-> a.txt 1000
'-> sub 0
'-> b.txt 4

Show FileUnzip(root & "\all.kwc", root & "\flat")                 '-> False
Show fso.FileExists(root & "\flat\b.txt")                         '-> True
Show FileUnzip(root & "\all.kwc", root & "\tree", 1)              '-> False
Show fso.FileExists(root & "\tree\sub\b.txt")                     '-> True

list.Clear
list.Add root & "\new.txt", root & "\sub\b.txt"
Show FileUnzipEx(root & "\all.kwc", root & "\one", 2, list)       '-> False
Show fso.OpenTextFile(root & "\new.txt").ReadAll                  '-> ciao
Show fso.GetFolder(root & "\one").Files.Count                     '-> 0

' The methods of ZipFile do the same, with events for progress that may cancel.
Set zipper = CreateObject("QvRtLibOle.ZipFile")
Show zipper.FileZip(root & "\a.txt", root & "\a.kwc")             '-> False
Show zipper.FileUnzip(root & "\a.kwc", root & "\again")           '-> False
Show FileUnzip(root & "\a.kwc", root & "\tree", 1)                '-> True
Show Error_Description()
'-> Impossibile ripristinare la struttura originaria della directory.
fso.DeleteFolder root, True

' == CABFileCreate, CABFileCreateEx, CABFileInfo, CABFileInfoEx, CABFileInfoExEx, CABFileExtract
' Two files in a cabinet, listed and extracted.
Dim fso, root, stream, files, count, text, list, entry
Set fso = CreateObject("Scripting.FileSystemObject")
root = fso.GetSpecialFolder(2) & "\" & fso.GetTempName()
fso.CreateFolder root
Set stream = fso.CreateTextFile(root & "\a.txt")
stream.Write String(1000, "a")
stream.Close
Set stream = fso.CreateTextFile(root & "\b.txt")
stream.Write "ciao"
stream.Close
files = root & "\a.txt" & Chr(0) & root & "\b.txt"
count = CLng(0)
Show CABFileCreateEx(files, root, "both.cab", 100000, count)      '-> False
Show count                                                        '-> 1

text = ""
Show CABFileInfo(root & "\both.cab", text)                        '-> False
Show Left(text, InStr(text, Chr(0)) - 1)                          '-> a.txt
Show Str_2_Long(Mid(text, 7, 4))                                  '-> 1000
Set list = CreateObject("QvRtLibOle.kwCollection")
Show CABFileInfoExEx(root & "\both.cab", list)                    '-> False
For Each entry In list
  Show entry.FileName & " " & entry.FileSize
Next
'-> a.txt 1000
'-> b.txt 4

Show CABFileExtract(root & "\both.cab", "b.txt", root & "\out", 0)  '-> False
Show fso.GetFolder(root & "\out").Files.Count                       '-> 1
fso.DeleteFolder root, True

' == ZipFile, ZipFile.ZipStatus, ZipFile.UnzipStatus
' Events tell how far the work is, and can end it: here after one half.
Dim zipper, name, handle, attributes
name = Get_TempPath() & "examples.dat"
attributes = 0
File_Open32 name, 48, 0, attributes, handle    ' O_CREAT + O_TRUNC
File_Write32 handle, String(100000, "a")
File_Close32 handle
Set zipper = WScript.CreateObject("QvRtLibOle.ZipFile", "packer_")
Show zipper.FileZip(name, Get_TempPath() & "examples.kwc")
'-> file 1: 0 percent
'-> file 1: 100 percent
'-> False
Show zipper.FileUnzip(Get_TempPath() & "examples.kwc", Get_TempPath() & "examples")
'-> True
Show Error_Number()                            '-> 20010
File_Kill name
File_Kill Get_TempPath() & "examples.kwc"
Path_Kill Get_TempPath() & "examples"
Sub packer_ZipStatus(index, percent, cancel)
  If percent = 0 Or percent = 100 Then Show "file " & index & ": " & percent & " percent"
End Sub
Sub packer_UnzipStatus(index, total, percent, cancel)
  If percent >= 50 Then cancel = True
End Sub

' == ZipFile.FileName, ZipFile.FileSize, ZipFile.Attributes, ZipFile.DateCreated, ZipFile.DateChanged, ZipFile.MajVer, ZipFile.MinVer
' The object can describe one file of an archive, too.
Dim entry
Set entry = CreateObject("QvRtLibOle.ZipFile")
entry.FileName = "C:\orders\a.txt" & Chr(0) & "rest of a fixed field"
entry.FileSize = 1000
entry.Attributes = 32
entry.DateCreated = DateSerial(2026, 11, 21)
entry.DateChanged = DateSerial(2026, 11, 22)
entry.MajVer = 65536 + 2
entry.MinVer = 3
Show entry.FileName                                   '-> C:\orders\a.txt
Show entry.FileSize & " " & entry.Attributes          '-> 1000 32
Show entry.DateChanged - entry.DateCreated            '-> 1
Show entry.MajVer \ 65536 & "." & entry.MajVer Mod 65536 & "." & entry.MinVer    '-> 1.2.3

' == ZipBlock, ZipHeader
' Records of the archive's inside: they can be made, and have no members.
Show TypeName(CreateObject("QvRtLibOle.ZipBlock"))    '-> _ZipBlock
Show TypeName(CreateObject("QvRtLibOle.ZipHeader"))   '-> _ZipHeader
