' A folder's tree becomes one archive with FileZip; the archive is listed, restored elsewhere with
' FileUnzip, and what came back is compared with what was packed, file by file.
'
'   cscript pack_tree.vbs [folder]        without a folder: the sources beside this script
'
' Progress comes by the events of ZipFile. Script hosts that can't connect events pack without.

Option Explicit
Const FZC_STOREPATH = 1, FZC_KEEPATTRIBUTES = 2, FOLDER = 16
Dim rt, fso, root, work, archive, zipper, names, count, bytes, shown

Set rt = CreateObject("QvRtLibOle.KwRtLib")
Set fso = CreateObject("Scripting.FileSystemObject")
If WScript.Arguments.Count > 0 Then
  root = fso.GetAbsolutePathName(WScript.Arguments(0))
Else
  root = fso.GetParentFolderName(fso.GetParentFolderName(WScript.ScriptFullName)) & "\src"
End If
work = fso.GetSpecialFolder(2) & "\" & fso.GetTempName()
fso.CreateFolder work
archive = work & "\tree.kwc"

ReDim names(99)
count = 0
bytes = 0
Gather fso.GetFolder(root)
ReDim Preserve names(count - 1)
WScript.Echo root & ": " & count & " files and folders, " & bytes & " bytes"

Set zipper = ZipFileWithEvents()
shown = -1
If zipper.FileZip(names, archive, root, FZC_STOREPATH + FZC_KEEPATTRIBUTES) Then Fail "FileZip"
WScript.Echo "packed into " & fso.GetFile(archive).Size & " bytes, " & _
  Round(100 * fso.GetFile(archive).Size / bytes) & " %"

ListArchive
shown = -1
If zipper.FileUnzip(archive, work & "\restored", FZC_STOREPATH + FZC_KEEPATTRIBUTES) Then Fail "FileUnzip"
WScript.Echo Compare(fso.GetFolder(root), work & "\restored") & " files came back as they were"
fso.DeleteFolder work, True
WScript.Echo "done"

' Folders are entries too, so that empty ones come back. Names are taken in an array that grows by
' doubling.
Sub Gather(from)
  Dim item
  For Each item In from.Files
    Take item.Path
    bytes = bytes + item.Size
  Next
  For Each item In from.SubFolders
    Take item.Path
    Gather item
  Next
End Sub

Sub Take(path)
  If count > UBound(names) Then ReDim Preserve names(2 * count)
  names(count) = path
  count = count + 1
End Sub

Function ZipFileWithEvents()
  On Error Resume Next
  Set ZipFileWithEvents = WScript.CreateObject("QvRtLibOle.ZipFile", "Zip_")
  If Err.Number <> 0 Then
    Err.Clear
    Set ZipFileWithEvents = CreateObject("QvRtLibOle.ZipFile")
    WScript.Echo "this host connects no events: no progress is shown"
  End If
End Function

' Before each entry and after each block of 32767 bytes. Setting Cancel to True would end the call.
Sub Zip_ZipStatus(FileIndex, Percent, Cancel)
  ShowProgress 100 * (FileIndex - 1 + Percent / 100) / count
End Sub

Sub Zip_UnzipStatus(FileIndex, TotPercent, Percent, Cancel)
  ShowProgress TotPercent
End Sub

Sub ShowProgress(percent)
  If percent \ 10 = shown Then Exit Sub
  shown = percent \ 10
  WScript.Echo "  [" & String(shown, "#") & String(10 - shown, ".") & "]"
End Sub

' The largest files, and how many there are of which kind.
Sub ListArchive
  Dim list, i, info, largest, folders
  Set list = CreateObject("QvRtLibOle.kwCollection")
  If rt.FileUnzipInfo(archive, list) Then Fail "FileUnzipInfo"
  Set largest = list.Item(1)
  folders = 0
  For i = 1 To list.Count
    Set info = list.Item(i)
    If info.FileAttributes And FOLDER Then
      folders = folders + 1
    ElseIf info.FileSize > largest.FileSize Then
      Set largest = info
    End If
  Next
  WScript.Echo "the archive holds " & list.Count - folders & " files and " & folders & " folders; the largest is " & _
    rt.Get_FileName(largest.FileName) & " with " & largest.FileSize & " bytes of " & largest.LastWriteTime
End Sub

' Contents are compared by length and checksum.
Function Compare(original, restored)
  Dim item
  Compare = 0
  For Each item In original.Files
    If Not fso.FileExists(restored & "\" & item.Name) Then Differ item.Path
    If Checksum(item.Path) <> Checksum(restored & "\" & item.Name) Then Differ item.Path
    Compare = Compare + 1
  Next
  For Each item In original.SubFolders
    If Not fso.FolderExists(restored & "\" & item.Name) Then Differ item.Path
    Compare = Compare + Compare(item, restored & "\" & item.Name)
  Next
End Function

Function Checksum(path)
  Dim stream, text
  text = ""
  If fso.GetFile(path).Size > 0 Then
    Set stream = fso.OpenTextFile(path)
    text = stream.ReadAll
    stream.Close
  End If
  Checksum = Len(text) & ":" & rt.PkCRC(text)
End Function

Sub Differ(path)
  WScript.Echo path & " did not come back as it was"
  WScript.Quit 1
End Sub

Sub Fail(what)
  WScript.Echo what & " failed: " & rt.Error_Number & " " & rt.Error_Description & " (" & rt.Error_Source & ")"
  WScript.Quit 1
End Sub
