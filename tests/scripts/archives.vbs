' FileZip, FileUnzip and their family, late bound, with events and Cancel.
Const FZC_STOREPATH = 1, FZC_KEEPATTRIBUTES = 2
Dim fso, root, archive, zipper, told, cancelAt, list, info, i, names, big, whole

Set fso = CreateObject("Scripting.FileSystemObject")
root = fso.GetSpecialFolder(2) & "\" & fso.GetTempName()
fso.CreateFolder root
fso.CreateFolder root & "\dati"
fso.CreateFolder root & "\dati\sub"
archive = root & "\a.kwc"

Sub MakeFile(name, text)
  Dim stream
  Set stream = fso.CreateTextFile(root & "\" & name, True)
  stream.Write text
  stream.Close
End Sub

Function TextOf(name)
  Dim stream
  TextOf = ""
  If fso.GetFile(root & "\" & name).Size = 0 Then Exit Function
  Set stream = fso.OpenTextFile(root & "\" & name)
  TextOf = stream.ReadAll
  stream.Close
End Function

Function FilesIn(name)
  Dim file
  FilesIn = ""
  For Each file In fso.GetFolder(root & "\" & name).Files
    FilesIn = FilesIn & file.Name & " "
  Next
End Function

Sub Zip_ZipStatus(FileIndex, Percent, Cancel)
  told = told & FileIndex & ":" & Percent & " "
  If cancelAt > 0 Then
    cancelAt = cancelAt - 1
    If cancelAt = 0 Then Cancel = True
  End If
End Sub

Sub Zip_UnzipStatus(FileIndex, TotPercent, Percent, Cancel)
  told = told & FileIndex & ":" & Percent & " "
  If cancelAt > 0 Then
    cancelAt = cancelAt - 1
    If cancelAt = 0 Then Cancel = True
  End If
End Sub

big = ""
For i = 1 To 3000: big = big & "riga " & i & " di testo" & vbCrLf: Next
MakeFile "dati\a.txt", big
MakeFile "dati\sub\b.txt", "ciao"
MakeFile "dati\empty", ""
names = Array(root & "\dati\a.txt", root & "\dati\sub\b.txt", root & "\dati\empty", root & "\dati\sub")
cancelAt = 0

' The global functions.
Check "FileZip of one name", FileZip(root & "\dati\a.txt", archive), False
Check "is smaller than the file", fso.GetFile(archive).Size < Len(big) \ 2, True
Check "FileZip of an array, with a parent and flags", FileZip(names, archive, root & "\dati", FZC_STOREPATH), False
Set list = CreateObject("QvRtLibOle.kwCollection")
list.Add "what was there"
Check "FileUnzipInfo", FileUnzipInfo(archive, list), False
Check "lists the entries alone", list.Count, CLng(4)
Set info = list.Item(1)
Check "FileName is the full one", info.FileName, root & "\dati\a.txt"
Check "FileSize", info.FileSize, CLng(Len(big))
Check "FileAttributes", info.FileAttributes, CLng(32)
Check "MajVer of a text", info.MajVer, CLng(0)
Check "both dates are of the last change", info.LastAccessTime, info.LastWriteTime
Check "a folder's mark", list.Item(4).FileAttributes And 16, CLng(16)

Check "FileUnzip with default flags", FileUnzip(archive, root & "\flat"), False
Check "puts all files in one folder", FilesIn("flat"), "a.txt b.txt empty "
Check "and the folder of its name", fso.FolderExists(root & "\flat\sub"), True
Check "FileUnzip with stored folders", FileUnzip(archive, root & "\x\y", FZC_STOREPATH + FZC_KEEPATTRIBUTES), False
Check "restores them", FilesIn("x\y\sub"), "b.txt "
Check "and the contents", Host.Same(TextOf("x\y\a.txt"), big), True
Check "an empty file too", fso.GetFile(root & "\x\y\empty").Size = 0, True

' A list selects and renames.
Set list = CreateObject("QvRtLibOle.kwCollection")
list.Add "", UCase(root & "\dati\a.txt")
list.Add root & "\given.txt", root & "\dati\sub\b.txt"
Check "FileUnzipEx with a list", FileUnzipEx(archive, root & "\some", 0, list), False
Check "restores what is listed", FilesIn("some"), "a.txt "
Check "under the name given", TextOf("given.txt"), "ciao"
Check "FileUnzipEx without a list", FileUnzipEx(archive, root & "\all"), False
Check "restores everything", FilesIn("all"), "a.txt b.txt empty "

' Events.
Set zipper = CreateObject("QvRtLibOle.ZipFile")
Check "events can be connected", Host.Connect(zipper, "Zip"), True
told = ""
Check "ZipFile.FileZip", zipper.FileZip(names, archive, root & "\dati"), False
Check "ZipStatus comes before each entry and after each block", told, _
  "1:0 1:56 1:100 2:0 2:100 3:0 3:100 4:0 "
told = ""
Check "ZipFile.FileUnzip", zipper.FileUnzip(archive, root & "\events"), False
Check "UnzipStatus too", told, "1:0 1:56 1:100 2:0 2:100 3:0 3:100 4:0 "
told = ""
Check "the global functions raise none", FileZip(names, root & "\b.kwc"), False
Check "so nothing is told", told, ""

For i = 1 To 8
  cancelAt = i
  Check "Cancel at event " & i & " of FileZip", zipper.FileZip(names, root & "\c.kwc"), True
  Check "cancelled at event " & i, Error_Description(), "Procedura interrotta dall'utente."
  CheckRecord "FileZip cancelled is 20010", 20010, "Module.FileZip"
  Check "no archive is left", fso.FileExists(root & "\c.kwc"), False
Next
whole = Array(0, 0, 0, 0, 6, 6, 12, 12, 18)
For i = 1 To 8
  If fso.FolderExists(root & "\cut") Then fso.DeleteFolder root & "\cut"
  cancelAt = i
  Check "Cancel at event " & i & " of FileUnzip", zipper.FileUnzip(archive, root & "\cut"), True
  CheckRecord "FileUnzip cancelled is 20010", 20010, "Module.FileUnzip"
  Check "whole files stay, and nothing else", FilesIn("cut"), _
    Left("a.txt b.txt empty ", whole(i))
Next
cancelAt = 0
Host.Disconnect zipper

' Failures.
Check "FileZip of a missing file", FileZip(root & "\missing", root & "\c.kwc"), True
Check "has the opener's number", Error_Number(), CLng(53)
Reset_Error
Check "FileZip into a missing folder", FileZip(root & "\dati\empty", root & "\none\c.kwc"), True
Check "tells the target", Error_Description(), "Impossibile creare il file " & root & "\none\c.kwc"
CheckRecord "FileZip into a missing folder is 76", 76, "Module.FileZip"
Check "FileUnzip of a missing archive", FileUnzip(root & "\missing", root & "\out"), True
Check "tells the archive", Error_Description(), "Impossibile aprire il file " & root & "\missing"
CheckRecord "FileUnzip of a missing archive is 53", 53, "Module.FileUnzip"
MakeFile "none.kwc", "PK and more"
Check "FileUnzip of what is no archive", FileUnzip(root & "\none.kwc", root & "\out"), True
Check "tells that", Error_Description(), "Il file " & root & "\none.kwc non " & Chr(232) & _
  " un file compresso o " & Chr(232) & " corrotto."
CheckRecord "FileUnzip of what is no archive is 20000", 20000, "Module.FileUnzip"
Check "FileUnzipInfo of what is no archive", FileUnzipInfo(root & "\none.kwc", list), True
CheckRecord "FileUnzipInfo has its own Source", 20000, "Module.FileUnzipInfo"
Check "and has emptied the list", list.Count, CLng(0)
Check "FileUnzip with folders of an archive without a parent", FileUnzip(root & "\b.kwc", root & "\out", FZC_STOREPATH), True
Check "tells that too", Error_Description(), "Impossibile ripristinare la struttura originaria della directory."
CheckRecord "no parent is 20004", 20004, "Module.FileUnzip"
Check "nothing is made", fso.FolderExists(root & "\out"), False

' The record of one entry.
Set zipper = CreateObject("QvRtLibOle.ZipFile")
zipper.FileName = "a.txt" & Chr(0) & "rest"
zipper.FileSize = 5
zipper.DateCreated = DateSerial(2000, 1, 2)
Check "FileName ends at Chr(0)", zipper.FileName, "a.txt"
Check "FileSize comes back", zipper.FileSize, CLng(5)
Check "DateCreated comes back", zipper.DateCreated, DateSerial(2000, 1, 2)

fso.DeleteFolder root, True
Finish
