' Files and folders copied, deleted, created and tested, late bound.
Const FCOPY_RECURSE = 1
Dim fso, folder, file

Set fso = CreateObject("Scripting.FileSystemObject")
folder = fso.GetSpecialFolder(2) & "\" & fso.GetTempName
fso.CreateFolder folder
Sub Write_File(name, content)
  Set file = fso.CreateTextFile(folder & "\" & name, True)
  file.Write content
  file.Close
End Sub
Function Content(name)
  Content = fso.OpenTextFile(folder & "\" & name).ReadAll
End Function

' Folders
Check "Path_Create takes slashes", Path_Create(folder & "/from/sub/below"), CInt(0)
Check "all are made", fso.FolderExists(folder & "\from\sub\below"), True
Check "Path_Create of an existing folder", Path_Create(folder & "\from"), CInt(75)
Check "Path_Create on a missing drive", Path_Create("Q:\a") <> 0, True
Check "Path_Verify", Path_Verify(folder & "\from"), CInt(-1)
Check "Path_Verify trims", Path_Verify("  " & folder & "\from\  "), CInt(-1)
Check "Path_Verify of an empty folder", Path_Verify(folder & "\from\sub\below"), CInt(-1)
Check "Path_Verify of nothing", Path_Verify("  "), CInt(0)
Check "Path_Verify of a missing folder", Path_Verify(folder & "\none"), CInt(0)
Write_File "from\a.txt", "a"
Check "Path_Verify of a file", Path_Verify(folder & "\from\a.txt"), CInt(0)
Check "File_Verify", File_Verify(folder & "\from\a.txt"), CInt(-1)
Check "File_Verify of a folder", File_Verify(folder & "\from"), CInt(0)
Check "File_Verify of a missing file", File_Verify(folder & "\none"), CInt(0)

' Copying
Write_File "from\b.dat", "b"
Write_File "from\hidden.txt", "h"
Write_File "from\sub\c.txt", "c"
fso.GetFile(folder & "\from\hidden.txt").Attributes = 2
Path_Create folder & "\to"
Check "File_Copy", File_Copy(folder & "\from", folder & "\to", "*.txt"), False
Check "copies what matches", Content("to\a.txt"), "a"
Check "and nothing else", fso.FileExists(folder & "\to\b.dat"), False
Check "no hidden file", fso.FileExists(folder & "\to\hidden.txt"), False
Check "and no folder", fso.FolderExists(folder & "\to\sub"), False
Write_File "from\a.txt", "new"
fso.GetFile(folder & "\to\a.txt").Attributes = 1
Check "File_Copy over a read-only file", File_Copy(folder & "\from", folder & "\to", "a.txt"), False
Check "replaces it", Content("to\a.txt"), "new"
Check "File_Copy of hidden files", File_Copy(folder & "\from", folder & "\to", "*", 2, 2), False
Check "copies them", fso.FileExists(folder & "\to\hidden.txt"), True
Check "without the attribute to remove", fso.GetFile(folder & "\to\hidden.txt").Attributes And 2, CLng(0)
Check "and them alone", fso.FileExists(folder & "\to\b.dat"), False
Check "File_Copy with folders", File_Copy(folder & "\from", folder & "\to", "*.txt", 0, 0, FCOPY_RECURSE), False
Check "copies files below", Content("to\sub\c.txt"), "c"
Check "and empty folders", fso.FolderExists(folder & "\to\sub\below"), True
Check "File_Copy to a missing folder", File_Copy(folder & "\from", folder & "\none", "*.txt"), True
CheckRecord "is 76", 76, "KwRtLibMod.File_Copy"
Check "File_Copy of nothing", File_Copy(folder & "\from", folder & "\to", "*.none"), False
fso.DeleteFile folder & "\to\sub\c.txt"
fso.CreateFolder folder & "\to\sub\c.txt"
Check "File_Copy with a failure below", File_Copy(folder & "\from", folder & "\to", "*.txt", 0, 0, FCOPY_RECURSE), True
CheckRecord "chains the Source", 75, "KwRtLibMod.File_Copy < KwRtLibMod.File_Copy"

' Deleting
Check "File_Kill of a name that ends in a backslash", File_Kill(folder & "\to\"), CInt(0)
Check "does nothing", fso.FileExists(folder & "\to\a.txt"), True
fso.GetFile(folder & "\to\a.txt").Attributes = 1
Check "File_Kill of a read-only file", File_Kill(folder & "\to\a.txt"), CInt(0)
Check "deletes it", fso.FileExists(folder & "\to\a.txt"), False
Check "File_Kill of a missing file", File_Kill(folder & "\to\a.txt"), CInt(0)
Check "File_Kill with wildcards", File_Kill(folder & "\to\*.*"), CInt(0)
Check "deletes hidden files too", fso.FileExists(folder & "\to\hidden.txt"), False
Check "but no folders", fso.FolderExists(folder & "\to\sub"), True
Check "Path_Kill", Path_Kill(folder & "\to"), CInt(0)
Check "deletes the whole tree", fso.FolderExists(folder & "\to"), False
Check "Path_Kill of a missing folder", Path_Kill(folder & "\to"), CInt(76)

' Expanding: a head, a control byte for eight bytes as they are, and those. The target stays open
' until the script's end, so it has a name that the next run replaces.
Dim target
target = Get_TempPath() & "qvrt_expanded.txt"
Write_File "a.tx_", "SZDD" & Chr(136) & Chr(240) & Chr(39) & Chr(51) & "A" & Chr(0) & Chr(8) & String(3, Chr(0)) & Chr(255) & "expanded"
Check "File_Expand", File_Expand(folder & "\a.tx_", target), CInt(0)
Check "its size", CLng(fso.GetFile(target).Size), CLng(8)
Check "File_Expand of a missing file", File_Expand(folder & "\none", folder & "\b.txt"), CInt(-1)
CheckRecord "is 53", 53, "KwRtLibMod.File_Open32"
Check "the other operations tell nothing", Check_Error(), False
Check "the target is still open", File_Kill(target), CInt(70)

Check "Path_Kill of it all", Path_Kill(folder), CInt(0)
Finish
