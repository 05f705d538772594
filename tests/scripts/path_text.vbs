' Path names as text, late bound.
Dim drive, folder, name, ext, path, buffer, fso, text, other

Check "Full_Path of nothing", Full_Path(""), ""
Check "Full_Path of a root", Full_Path("C:\"), "C:\"
Check "Full_Path adds the backslash", Full_Path("C:\a"), "C:\a\"
Check "Full_Path takes a slash for no separator", Full_Path("C:/a/"), "C:/a/\"
Check "Get_Path", Get_Path("C:\a\b.txt"), "\a\"
Check "Get_FileName", Get_FileName("C:\a\b.txt"), "b.txt"
Check "Get_FileNameNoExt", Get_FileNameNoExt("C:\a\b.txt"), "b"
Check "Get_FileExt", Get_FileExt("C:\a\b.txt"), ".txt"
Check "Get_Drive", Get_Drive("C:\a\b.txt"), "C:"
Check "Get_Drive of a server's path", Get_Drive("\\server\share\b.txt"), ""
Check "Get_FileExt after several dots", Get_FileExt("a.b.c"), ".c"
Check "Get_FileName of a folder", Get_FileName("C:\a\"), ""
Check "names outside the code page", Get_FileNameNoExt("C:\" & Host.ChrW(20320) & ".txt"), Host.ChrW(20320)

Check "Split_Path gives Empty", Split_Path("C:\APP\DATA\SETUP.INI", drive, folder, name, ext), Empty
Check "its drive", drive, "C:"
Check "its folder", folder, "\APP\DATA\"
Check "its name", name, "SETUP"
Check "its extension", ext, ".INI"
Split_Path "", drive, folder, name, ext
Check "Split_Path of nothing empties the drive", drive, ""
Check "and the folder", folder, ""
Check "and the name", name, ""
Check "and the extension", ext, ""
Split_Path "C:\a\b.txt", , , name
Check "Split_Path with one output", name, "b"
SplitPath "D:\x\y.z", drive, folder, name, ext
Check "SplitPath", drive & "|" & folder & "|" & name & "|" & ext, "D:|\x\|y|.z"
name = "kept"
SplitPath "D:\x\y.z", , , , ext
Check "SplitPath leaves out what is left out", name, "kept"

MakePath path, "C", "\a", "b", "txt"
Check "MakePath supplies what is missing", path, "C:\a\b.txt"
MakePath path, , , "b"
Check "MakePath of a name alone", path, "b"
Check "FullPath", FullPath(buffer, "C:\a\..\b"), False
Check "FullPath resolves", buffer, "C:\b"
Check "FullPath of a long path", FullPath(buffer, "C:\" & String(300, "a")), True
Check "leaves its blanks", buffer, Space(261)

Set fso = CreateObject("Scripting.FileSystemObject")
Check "CurDrive", CurDrive(), Left(fso.GetAbsolutePathName("."), 2)
Check "Get_TempPath", Get_TempPath(), fso.GetSpecialFolder(2) & "\"
text = Get_TempFile(Null, "txt")
Check "Get_TempFile of Null", Left(text, Len(Get_TempPath())), Get_TempPath()
Check "its extension", Right(text, 4), ".txt"
Check "it is not made", fso.FileExists(text), False
other = Get_TempFile(Get_TempPath(), ".txt")
Check "an extension with a dot", InStr(other, "..txt"), CLng(0)
Check "another name", other <> text, True
Check "no extension, no dot", InStr(Get_FileName(Get_TempFile(Get_TempPath(), "")), "."), CLng(0)
Check "Get_TempFile adds no backslash", Left(Get_FileName(Get_TempFile(Get_TempPath() & "prefix", "")), 6), "prefix"
Check "Get_TempFile in a folder that is not there", Get_TempFile("C:\no such folder\", "x"), ""
CheckRecord "tells nothing", 0, ""

Check "CompactPath of what fits", CompactPath("C:\one\two\file.txt", 8), "C:\one\two\file.txt"
Check "CompactPath from the left", CompactPath("C:\one\two\three\file.txt", 12), "C:\...\...\...\file.txt"
Check "CompactPath to 0", CompactPath("C:\one\two\three\file.txt", 0), "C:......\file.txt"
Check "CompactPath to less than nothing", CompactPath("C:\one\two\three\file.txt", -1), "C:......\file.txt"
Check "CompactPath of the root folder to less than nothing", CompactPath("C:\file.txt", -1), "C:...\file.txt"
Check "CompactPath lets a short folder grow", CompactPath("C:\a\b\longer folder\f", 12), "C:\...\...\...\f"
Check "CompactPath joins elided folders", CompactPath("C:\first\second\third\file.txt", 7), "C:...\...\file.txt"
Finish
