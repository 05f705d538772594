' Version resources and file information, late bound, for users of two languages.
' Under en_US.UTF-8 UTC0
' Under it_IT.UTF-8 CET-1
Dim fso, folder, file, info, other, major, minor, revision, high, low, samples, text, italian

samples = Host.Folder & "version_"
italian = (MonthName(3) = "marzo")
Set fso = CreateObject("Scripting.FileSystemObject")
folder = fso.GetSpecialFolder(2) & "\" & fso.GetTempName
fso.CreateFolder folder
Set file = fso.CreateTextFile(folder & "\plain.txt")
file.Write "12345"
file.Close

' Numbers
Check "GetFileVersion", GetFileVersion(samples & "numbers_alone.dll", major, minor, revision, high, low), False
Check "Major", major, CLng(4)
Check "Minor", minor, CLng(3)
Check "Revision", revision, CLng(131073)
Check "dwFileVersionMS", high, CLng(262147)
Check "dwFileVersionLS", low, CLng(131073)
Check "GetFileVersion without outputs", GetFileVersion(samples & "numbers_alone.dll"), False
Check "GetProductVersion", GetProductVersion(samples & "languages.dll", major, minor, , high), False
Check "a word above 32767 is negative", major, CLng(-25536)
Check "Minor of the product", minor, CLng(5)
Check "its two words", high, CLng(-1673527291)
Check "GetFileVersion of a file without one", GetFileVersion(folder & "\plain.txt", major), True
Check "leaves the outputs alone", major, CLng(-25536)
Check "its description", Error_Description(), "Application-defined or object-defined error"
CheckRecord "its record", 20000, "KwRtLibMod.GetFileVersion"
Check "GetProductVersion of a missing file", GetProductVersion(folder & "\missing.dll"), True
CheckRecord "its record", 20000, "KwRtLibMod.GetProductVersion"

' Texts
Check "GetInfoFileDescription", GetInfoFileDescription(samples & "languages.dll"), _
  "Gr" & Chr(246) & Chr(223) & "e, " & Host.ChrW(20320) & Host.ChrW(22909)
Check "GetInfoFileVersion", GetInfoFileVersion(samples & "languages.dll"), "1.2 (drei)"
Check "GetInfoProductName", GetInfoProductName(samples & "languages.dll"), "Produkt"
Check "GetInfoProductVersion", GetInfoProductVersion(samples & "languages.dll"), "40000.5"
Check "GetInfoInternalName", GetInfoInternalName(samples & "languages.dll"), ""
Check "GetInfoLegalCopyright", GetInfoLegalCopyright(samples & "languages.dll"), "vor"
CheckRecord "an empty text is no failure", 0, ""
Check "the first language of the table that is there", GetInfoCompanyName(samples & "languages.dll"), "Firma"
If italian Then text = "ditta" Else text = "company"
Check "the user's own language goes first", GetInfoCompanyName(samples & "user_languages.dll"), text
Check "a text that it lacks", GetInfoProductName(samples & "user_languages.dll"), ""
CheckRecord "is missing", 20001, ""
Check "no table of languages", GetInfoCompanyName(samples & "no_table.dll"), "of the fixed code"
Check "a table of languages that are not there", GetInfoCompanyName(samples & "foreign_table.dll"), "of the fixed code"
Check "no texts at all", GetInfoCompanyName(samples & "numbers_alone.dll"), ""
CheckRecord "is a missing text", 20001, ""
Check "a file without a version", GetInfoCompanyName(folder & "\plain.txt"), ""
CheckRecord "has no texts", 20000, ""


' The record of a file
Set info = CreateObject("QvRtLibOle.QvtFileInfo")
Check "a fresh record's version", info.VersionString, "0.0.0.0"
Check "GetFileInfo", info.GetFileInfo(samples & "languages.dll"), False
Check "FileName", info.FileName, samples & "languages.dll"
Check "MajVer", info.MajVer, CLng(65538)
Check "MinVer", info.MinVer, CLng(196612)
Check "VersionString", info.VersionString, "1.2.3.4"
Check "FileSize", info.FileSize, CLng(fso.GetFile(samples & "languages.dll").Size)
Check "LastWriteTime", CStr(info.LastWriteTime), CStr(fso.GetFile(samples & "languages.dll").DateLastModified)
CheckRecord "nothing is told", 0, ""
info.GetFileInfo samples & "user_languages.dll"
Check "words above 32767 read negative", info.VersionString, "-1.-1.-1.-1"
Check "GetFileInfo without a version", info.GetFileInfo(folder & "\plain.txt"), False
Check "VersionString without a version", info.VersionString, "0.0.0.0"
CheckRecord "tells so", 20000, "KwRtLibMod.GetFileVersion"
Check "FileSize of it", info.FileSize, CLng(5)
Set file = fso.CreateTextFile(folder & "\plain.txt")
file.Write "1234567"
file.Close
Check "GetFileInfo of the file named already", info.GetFileInfo(), False
Check "reads it again", info.FileSize, CLng(7)
Reset_Error
Check "GetFileInfo of a missing file", info.GetFileInfo(folder & "\missing"), True
Check "its description", Error_Description(), "File not found"
CheckRecord "its record", 53, "QvtFileInfo.GetFileInfo"
Set other = CreateObject("QvRtLibOle.QvtFileInfo")
Check "Installed of a fresh record", info.Installed Is Nothing, True
Set info.Installed = other
other.IsShared = True
Check "Installed", info.Installed.IsShared, True

fso.DeleteFolder folder
Finish
