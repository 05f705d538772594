' Files searched for, late bound.
Dim fso, folder, list, records, found, i, names, info, file

Set fso = CreateObject("Scripting.FileSystemObject")
folder = fso.GetSpecialFolder(2) & "\" & fso.GetTempName
fso.CreateFolder folder
fso.CreateFolder folder & "\one"
fso.CreateFolder folder & "\one\two"
fso.CreateFolder folder & "\.dot"
Sub Write_File(name)
  Set file = fso.CreateTextFile(folder & "\" & name)
  file.Write "12345"
  file.Close
End Sub
Write_File "a.txt"
Write_File "one\b.txt"
Write_File "one\two\c.txt"
Write_File "one\two\d.dat"
Write_File ".dot\e.txt"
Write_File ".f.txt"
Function Has(name)
  Has = False
  For i = 1 To UBound(list)
    If list(i) = folder & "\" & name Then Has = True
  Next
End Function

Check "Where_Is", Where_Is(folder, "*.txt", 0, list, -1), CInt(3)
Check "lower bound", LBound(list), CLng(1)
Check "upper bound", UBound(list), CLng(3)
Check "finds a file", Has("a.txt"), True
Check "a file below", Has("one\b.txt"), True
Check "a file below that", Has("one\two\c.txt"), True
Check "nothing found", Where_Is(folder & "\", "none", 0, list, -1), CInt(0)
Check "leaves one element", UBound(list), CLng(1)
Check "which is empty", list(1), ""
Check "MaxFiles 0", Where_Is(folder, "*.txt", 0, list, 0), CInt(0)
Check "MaxFiles 2", Where_Is(folder, "*.txt", 0, list, 2), CInt(2)
Check "its upper bound", UBound(list), CLng(2)
Check "mask 0 finds files alone", Where_Is(folder, "*", 0, list, -1), CInt(4)
Check "mask 16 finds folders", Where_Is(folder, "*", 16, list, -1), CInt(2)
Check "no folder with a dot", Has(".dot"), False
Check "but the others", Has("one\two"), True
fso.GetFile(folder & "\a.txt").Attributes = 2
Check "mask 2 finds hidden files", Where_Is(folder, "*", 2, list, -1), CInt(1)
Check "and them alone", Has("a.txt"), True
Check "mask 0 finds them too", Where_Is(folder, "*.txt", 0, list, -1), CInt(3)
Check "a mask that is no number", Where_Is(folder, "*", "many", list, -1), CInt(0)
Check "a folder that is not there", Where_Is(folder & "\none", "*", 0, list, -1), CInt(0)
CheckRecord "nothing is told", 0, ""

Set records = CreateObject("QvRtLibOle.kwCollection")
records.Add "old", "old"
Check "Where_IsEx", Where_IsEx(folder, "*.txt", 0, records, -1), CLng(3)
Check "clears the collection first", records.Count, CLng(3)
names = ""
For Each info In records
  If info.FileName = folder & "\one\b.txt" Then names = names & "b"
  Check "a record's size", info.FileSize, CLng(5)
  Check "a record's class", TypeName(info), "_QvtFileInfo"
Next
Check "the records' names", names, "b"
Check "mask 0 finds folders too", Where_IsEx(folder, "*", 0, records, -1), CLng(6)
Check "MaxFiles of records", Where_IsEx(folder, "*", 0, records, 4), CLng(4)
Check "a mask that is no number", Where_IsEx(folder, "*", Null, records, -1), CLng(0)
On Error Resume Next
Set records = Nothing
Where_IsEx folder, "*", 0, records, -1
CheckError "Where_IsEx of Nothing", 91, "Object variable or With block variable not set"
On Error GoTo 0

' The mask's value is asked for at each folder that the search enters.
Class Stopping_Mask
  Public folders
  Public Default Property Get Value()
    folders = folders + 1
    If folders = 2 Then Where_Stop
    Value = 0
  End Property
End Class
Dim mask
Set mask = New Stopping_Mask
mask.folders = 0
Check "Where_Stop ends the search", Where_Is(folder, "*.txt", mask, list, -1), CInt(1)
Check "at its next look", mask.folders, 2
Check "and keeps what was found", Has("a.txt"), True
Check "a stop before a search has no effect", Where_Is(folder, "*.txt", 0, list, -1), CInt(3)

fso.DeleteFolder folder, True
Finish
