' == Split_Path, SplitPath
Dim drive, folder, name, ext
Split_Path "C:\APP\DATA\SETUP.INI", drive, folder, name, ext
Show drive     '-> C:
Show folder    '-> \APP\DATA\
Show name      '-> SETUP
Show ext       '-> .INI

' == Get_Path, Get_FileName, Get_FileNameNoExt, Get_FileExt, Get_Drive
Show Get_Path("C:\a\b.txt")             '-> \a\
Show Get_FileName("C:\a\b.txt")         '-> b.txt
Show Get_FileNameNoExt("C:\a\b.txt")    '-> b
Show Get_FileExt("C:\a\b.txt")          '-> .txt
Show Get_Drive("C:\a\b.txt")            '-> C:

' == Full_Path
Show Full_Path("C:\a")         '-> C:\a\
Show Full_Path("C:\a\")        '-> C:\a\
Show Full_Path("") = ""        '-> True

' == MakePath, FullPath
Dim path
MakePath path, "C", "\a", "b", "txt"
Show path                              '-> C:\a\b.txt
Show FullPath(path, "C:\a\..\b.txt")   '-> False
Show path                              '-> C:\b.txt

' == Get_TempPath, Get_TempFile
Dim name
name = Get_TempFile(Null, "txt")
Show Left(name, Len(Get_TempPath())) = Get_TempPath()    '-> True
Show Get_FileExt(name)                                   '-> .txt
Show File_Verify(name)                                   '-> 0

' == CompactPath
Show CompactPath("C:\one\two\three\file.txt", 12)         '-> C:\...\...\...\file.txt
Show CompactPath("C:\first\two\three\file.txt", 15)       '-> C:\...\two\three\file.txt

' == CurDrive
Show Len(CurDrive())    '-> 2

' == File_Open32, File_Write32, File_Read32, File_Close32
Const O_RDWR = 4
Const O_CREAT = 16
Const O_TRUNC = 32
Dim name, handle, attributes, number
name = Get_TempPath() & "examples.dat"
attributes = 0
Show File_Open32(name, O_RDWR + O_CREAT + O_TRUNC, 0, attributes, handle)    '-> False
Show File_Write32(handle, CLng(305419896))    '-> 0
Show File_Close32(handle)                     '-> False
Show handle                                   '-> 0
File_Open32 name, O_RDWR, 0, attributes, handle
number = CLng(0)
Show File_Read32(handle, number)              '-> 0
Show number                                   '-> 305419896
Show File_Read32(handle, number)              '-> -1
Show Error_Number()                           '-> 62
File_Close32 handle
Show File_Kill(name)                          '-> 0

' == Path_Create, Path_Verify, Path_Kill
Dim folder
folder = Get_TempPath() & "examples"
Show Path_Create(folder & "/a/b")     '-> 0
Show Path_Verify(folder & "\a")       '-> -1
Show Path_Create(folder)              '-> 75
Show Path_Kill(folder)                '-> 0
Show Path_Verify(folder)              '-> 0

' == File_Copy, File_Verify, File_Kill
Const FCOPY_RECURSE = 1
Dim folder, log
folder = Get_TempPath() & "examples\"
Path_Create folder & "from\below"
Path_Create folder & "to"
Log_Write folder & "from\below\a.txt", "text", 0
Show File_Copy(folder & "from", folder & "to", "*.txt", 0, 0, FCOPY_RECURSE)    '-> False
Show File_Verify(folder & "to\below\a.txt")    '-> -1
Show File_Verify(folder & "to\below")          '-> 0
Show File_Kill(folder & "to\below\*.*")        '-> 0
Show File_Verify(folder & "to\below\a.txt")    '-> 0
Show Path_Kill(folder)                         '-> 0

' == Where_Is, Where_IsEx, Where_Stop
Dim folder, list, records
folder = Get_TempPath() & "examples\"
Path_Create folder & "one\two"
Log_Write folder & "one\a.txt", "text", 0
Log_Write folder & "one\two\b.txt", "text", 0
Show Where_Is(folder, "*.txt", 0, list, -1)        '-> 2
Show UBound(list)                                  '-> 2
Set records = CreateObject("QvRtLibOle.kwCollection")
Show Where_IsEx(folder, "b.txt", 0, records, -1)   '-> 1
Show Get_FileName(records(1).FileName)             '-> b.txt
Show Where_Is(folder, "*.txt", 0, list, 1)         '-> 1
Show Path_Kill(folder)                             '-> 0

' == File_Expand
' A file as the system's Compress tool makes it: a head of 14 bytes, then the packed data.
' The expanded file stays open until the program ends.
Dim name, handle, attributes, text
name = Get_TempPath() & "examples.tx_"
attributes = 0
File_Open32 name, 48, 0, attributes, handle    ' O_CREAT + O_TRUNC
File_Write32 handle, HexToBin("535A444488F027334100040000000F6369616F")
File_Close32 handle
Show File_Expand(name, Get_TempPath() & "expanded.txt")    '-> 0
Show File_Expand(Get_TempPath() & "no such file", Get_TempPath() & "examples.out")    '-> -1
File_Kill name

' == QvtFileInfo.FileAttributes, QvtFileInfo.CreationTime, QvtFileInfo.LastAccessTime, QvtFileInfo.LastWriteTime
Dim info, name
name = Get_TempPath() & "examples.txt"
Log_Write name, "text", 0
Set_FileTime name, , , DateSerial(2001, 2, 3)
Set info = CreateObject("QvRtLibOle.QvtFileInfo")
info.GetFileInfo name
Show info.FileAttributes And vbReadOnly                    '-> 0
Show Year(info.LastWriteTime)                              '-> 2001
Show info.CreationTime > 0 And info.LastAccessTime > 0     '-> True
File_Kill name
Show info.GetFileInfo(name)                                '-> True
Show Error_Number()                                        '-> 53

' == QvtFileInfo.Installed, QvtFileInfo.Updated, QvtFileInfo.IsAppExe, QvtFileInfo.IsShared, QvtFileInfo.RegMode, QvtFileInfo.RegName, QvtFileInfo.CLSID
' What a setup knows of a file, and of the same file on this machine.
Const FIR_DLLSELFREGISTER = 1
Dim offered, installed
Set offered = CreateObject("QvRtLibOle.QvtFileInfo")
Set installed = CreateObject("QvRtLibOle.QvtFileInfo")
offered.FileName = "orders.dll"
offered.IsShared = True
offered.IsAppExe = False
offered.RegMode = FIR_DLLSELFREGISTER
offered.RegName = "Orders"
offered.CLSID = Guid_String()
installed.FileName = "C:\Orders\orders.dll"
Show offered.Installed Is Nothing                          '-> True
Set offered.Installed = installed
offered.Updated = True
Show offered.Installed.FileName                            '-> C:\Orders\orders.dll
Show offered.IsShared & " " & offered.RegMode & " " & offered.RegName    '-> True 1 Orders
Show Len(offered.CLSID)                                    '-> 38
