' Files by the system's handles, late bound.
Const O_RDONLY = 1
Const O_RDWR = 4
Const O_APPEND = 8
Const O_CREAT = 16
Const O_TRUNC = 32
Const O_EXCL = 64
Const SH_COMPAT = 0
Const SH_DENYRW = 16
Const SH_DENYWR = 32
Const SH_DENYNO = 64
Dim fso, folder, file, handle, other, attributes, value, text

Set fso = CreateObject("Scripting.FileSystemObject")
folder = fso.GetSpecialFolder(2) & "\" & fso.GetTempName
fso.CreateFolder folder
file = folder & "\values"

' Opening
handle = CLng(77)
attributes = CLng(0)
Check "opening a missing file for reading", File_Open32(file, O_RDONLY, SH_COMPAT, attributes, handle), True
Check "leaves Handle alone", handle, CLng(77)
CheckRecord "is 53", 53, "KwRtLibMod.File_Open32"
Check "opening a missing file for writing", File_Open32(file, O_RDWR, SH_COMPAT, attributes, handle), True
Check "gives the handle 0", handle, CLng(0)
CheckRecord "is 20000", 20000, "KwRtLibMod.File_Open32"
attributes = CLng(0)
Check "O_CREAT makes a file", File_Open32(file, O_RDWR + O_CREAT, SH_COMPAT, attributes, handle), False
Check "attributes 0 become 128", attributes, CLng(128)
Check "its handle", handle <> 0, True
Check "a file open without sharing", File_Open32(file, O_RDONLY, SH_COMPAT, attributes, other), True
CheckRecord "is refused", 20000, "KwRtLibMod.File_Open32"
Check "File_Close32", File_Close32(handle), False
Check "zeroes the handle", handle, CLng(0)
Check "closing 0", File_Close32(handle), False
handle = CLng(&H7FFFFF0)
Check "closing what is no handle", File_Close32(handle), True
Check "keeps it", handle, CLng(&H7FFFFF0)
CheckRecord "and tells nothing", 0, ""
Check "O_CREAT refuses an existing file", File_Open32(file, O_RDWR + O_CREAT, SH_COMPAT, attributes, handle), True
CheckRecord "so", 20000, "KwRtLibMod.File_Open32"
Check "O_CREAT with O_EXCL opens it", File_Open32(file, O_RDWR + O_CREAT + O_EXCL, SH_COMPAT, attributes, handle), False
Check "writing to it", File_Write32(handle, "old content"), CInt(0)
File_Close32 handle
Check "O_APPEND has no effect", File_Open32(file, O_RDWR + O_APPEND, SH_COMPAT, attributes, handle), False
File_Write32 handle, "OLD"
File_Close32 handle
Check "the file begins anew", fso.OpenTextFile(file).ReadAll, "OLD content"
Check "O_CREAT with O_TRUNC replaces it", File_Open32(file, O_RDWR + O_CREAT + O_TRUNC, SH_COMPAT, attributes, handle), False
File_Close32 handle
Check "it is empty", CLng(fso.GetFile(file).Size), CLng(0)
attributes = CLng(0)
Check "a folder opens for reading", File_Open32(folder, O_RDONLY, SH_COMPAT, attributes, handle), False
Check "with backup semantics", attributes, CLng(33554432)
File_Close32 handle
attributes = CLng(0)
Check "a folder does not open for writing", File_Open32(folder, O_RDWR, SH_COMPAT, attributes, handle), True
CheckRecord "so", 20000, "KwRtLibMod.File_Open32"

' Values
attributes = CLng(0)
File_Open32 file, O_RDWR + O_TRUNC, SH_COMPAT, attributes, handle
Check "an Integer", File_Write32(handle, CInt(-2)), CInt(0)
Check "a Long", File_Write32(handle, CLng(305419896)), CInt(0)
Check "a Single", File_Write32(handle, CSng(1.5)), CInt(0)
Check "a Double", File_Write32(handle, CDbl(-1.25)), CInt(0)
Check "a Currency", File_Write32(handle, CCur(12.3456)), CInt(0)
Check "a Date", File_Write32(handle, #2000-01-02 18:00:00#), CInt(0)
Check "a Boolean", File_Write32(handle, True), CInt(0)
Check "a Byte", File_Write32(handle, CByte(200)), CInt(0)
Check "a digit", File_Write32(handle, CByte(55)), CInt(0)
Check "a String", File_Write32(handle, "a" & Chr(0) & Chr(255)), CInt(0)
Check "an empty String", File_Write32(handle, ""), CInt(0)
Check "an array", File_Write32(handle, Array(1)), CInt(-1)
CheckRecord "is no value", 13, "KwRtLibMod.File_Write32"
Check "an object", File_Write32(handle, fso), CInt(-1)
CheckRecord "is none either", 13, "KwRtLibMod.File_Write32"
Check "Empty", File_Write32(handle, Empty), CInt(-1)
CheckRecord "nor is Empty", 13, "KwRtLibMod.File_Write32"
File_Close32 handle
Check "they take their bytes", CLng(fso.GetFile(file).Size), CLng(2 + 4 + 4 + 8 + 8 + 8 + 2 + 1 + 1 + 3)
File_Open32 file, O_RDONLY, SH_DENYNO, attributes, handle
value = CInt(0)
Check "reading an Integer", File_Read32(handle, value), CInt(0)
Check "the Integer", value, CInt(-2)
value = CLng(0)
File_Read32 handle, value
Check "the Long", value, CLng(305419896)
value = CSng(0)
File_Read32 handle, value
Check "the Single", value, CSng(1.5)
value = CDbl(0)
File_Read32 handle, value
Check "the Double", value, CDbl(-1.25)
value = CCur(0)
File_Read32 handle, value
Check "the Currency", value, CCur(12.3456)
value = CDate(0)
File_Read32 handle, value
Check "the Date", value, #2000-01-02 18:00:00#
value = False
File_Read32 handle, value
Check "a Boolean comes as an Integer", value, CInt(-1)
value = CByte(0)
Check "a Byte that is no digit", File_Read32(handle, value), CInt(-1)
CheckRecord "fails", 13, "KwRtLibMod.File_Read32"
Check "a Byte that is a digit", File_Read32(handle, value), CInt(0)
Check "is its number", value, CByte(7)
value = "   "
File_Read32 handle, value
Check "the String", value, "a" & Chr(0) & Chr(255)
value = ""
Check "an empty String at the end", File_Read32(handle, value), CInt(0)
value = CInt(5)
Check "an Integer at the end", File_Read32(handle, value), CInt(-1)
Check "keeps the variable", value, CInt(5)
Check "its description", Error_Description(), "Input past end of file"
CheckRecord "is 62", 62, "KwRtLibMod.File_Read32"
value = Array(1)
Check "reading into an array", File_Read32(handle, value), CInt(-1)
CheckRecord "is 13", 13, "KwRtLibMod.File_Read32"
File_Close32 handle
handle = CLng(&H7FFFFF0)
value = CInt(5)
Check "reading from what is no handle", File_Read32(handle, value), CInt(-1)
Check "writing to it", File_Write32(handle, value), CInt(-1)
CheckRecord "tells nothing", 0, ""

fso.DeleteFolder folder
Finish
