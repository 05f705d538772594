' A printer "Laser", its device context, and a picture box.
Class Device
  Public hDC
End Class
Class PictureBox
  Public ScaleHeight
  Public ScaleWidth
  Public Sub Line(flags, x1, y1, x2, y2, colour)
  End Sub
End Class
Dim Printer, Picture1
Desk.Print_Queue "Laser", "LPT5:"
Set Printer = New Device
Printer.hDC = Desk.Canvas(300, 300)
Set Picture1 = New PictureBox
Picture1.ScaleHeight = 200
Picture1.ScaleWidth = 300

' == DirectPrint
' Two lines and the end of a page, in the printer's own language.
Show DirectPrint("Laser", "one" & vbCrLf & "two" & vbCrLf & vbFormFeed)   '-> False
Show DirectPrint("No such printer", "one")            '-> True
Show Error_Number()                                   '-> 20000
Show Error_LastDLLError()                             '-> 1801

' == DirectPrint2
' The name that the queue shows, and the type of the data.
Show DirectPrint2("Laser", "^XA^FDlabel^XZ", "Labels", "RAW")   '-> False

' == DirectPrint3
' A whole file, in blocks of 4 characters; the last one is left in the variable.
Dim path, buffer, stream
path = Get_TempFile(Null, "prn")
Set stream = CreateObject("Scripting.FileSystemObject").CreateTextFile(path)
stream.Write "0123456789"
stream.Close
Show DirectPrint3("Laser", buffer, "Labels", "RAW", path, 4)   '-> False
Show buffer                                           '-> 89
File_Kill path
Show DirectPrint3("Laser", buffer, "Labels", "RAW", path)   '-> True
Show Error_Number() & " " & Error_Source()            '-> 53 KwRtLibMod.DirectPrint

' == DirectOpenPrinter, DirectStartPage, DirectWritePrinter, DirectEndPage, DirectClosePrinter
' The number of the job is not handed out: it is the one that can be written to.
Dim handle, job
Show DirectOpenPrinter("Laser", handle, "Labels")     '-> False
For job = 1 To 99
  If Not DirectWritePrinter(job, "") Then Exit For
Next
Reset_Error
Show DirectStartPage(job)                             '-> False
Show DirectWritePrinter(job, "one" & vbFormFeed)      '-> False
Show DirectEndPage(job)                               '-> False
Show DirectClosePrinter(job)                          '-> False
Show DirectClosePrinter(job)                          '-> True
Show Error_Number() & " " & Error_Source()            '-> 5 KwRtLib.DirectClosePrinter

' == DirectAbortPrinter, DirectCloseAllPrinters
' What an aborted job leaves is its number, until all are closed.
Dim handle, job
DirectOpenPrinter "Laser", handle
For job = 1 To 99
  If Not DirectWritePrinter(job, "") Then Exit For
Next
Reset_Error
Show DirectAbortPrinter(job)                          '-> False
Show DirectClosePrinter(job)                          '-> True
Show DirectAbortPrinter(job)                          '-> False
Show DirectCloseAllPrinters()                         '-> False
Show DirectAbortPrinter(job)                          '-> True

' == Get_SpoolPath
' A printer without a folder of its own has the one of all.
Dim common, names, folders, parts
names = "Laser" & Chr(0) & "Another"
Show Get_SpoolPath(common, names, folders)            '-> False
parts = Split(folders, Chr(0))
Show parts(1) = common                                '-> True
' All printers: the two lists run in step.
Show Get_SpoolPath(common, names, folders, 1)         '-> False
Show UBound(Split(names, Chr(0))) = UBound(Split(folders, Chr(0)))   '-> True

' == SetDefaultPrinter
Dim ini
Set ini = CreateObject("QvRtLibOle.QVtIniStruct")
ini.IniFile = Get_WinPath() & "win.ini"
Show SetDefaultPrinter("Laser", "winspool", "LPT5:")  '-> False
Show Ini_Get("windows", "Device", "", ini)            '-> Laser,winspool,LPT5:
Ini_DeletePar "windows", "Device", ini

' == GetPrinterParms, QvtPrinter, QvtPrinter.XRes, QvtPrinter.YRes, QvtPrinter.LeftOffset, QvtPrinter.TopOffset, QvtPrinter.RightOffset, QvtPrinter.BottomOffset, QvtPrinter.Width, QvtPrinter.Height, QvtPrinter.ScaleWidth, QvtPrinter.ScaleHeight
Dim page
Set page = CreateObject("QvRtLibOle.QvtPrinter")
Show GetPrinterParms(Printer.hDC, page)               '-> False
Show page.XRes > 0 And page.YRes > 0                  '-> True
' Twips across the sheet: margin, printable part, margin.
Show page.LeftOffset + page.ScaleWidth + page.RightOffset = page.Width    '-> True
Show page.TopOffset + page.ScaleHeight + page.BottomOffset = page.Height  '-> True
' No device context.
Show GetPrinterParms(1, page)                         '-> True
Show Error_Number()                                   '-> 11

' == QvtPrinter.HDC
Dim page
Set page = CreateObject("QvRtLibOle.QvtPrinter")
page.HDC = Printer.hDC
Show page.ScaleHeight > 0                             '-> True
page.HDC = 0
Show page.ScaleHeight                                 '-> 0

' == Text_Extent
' Without a device context: characters.
Show Text_Extent(0, "abc")                            '-> 3
Show Text_Extent(Printer.hDC, "MMM") > Text_Extent(Printer.hDC, "M")   '-> True

' == Text_Justify
' A paragraph in lines of 12 characters, the first one indented by 2.
Dim text, indent
text = "Measured and broken, line by line"
indent = 2
Do While Len(text) > 0
  Show Replace(Text_Justify(text, 0, indent, 12), Chr(160), ".")
  indent = 0
Loop
'-> ..Measured
'-> and broken,
'-> line by line

' == Text_Rotate
' Upwards, from a point of the page.
Show Text_Rotate(Printer.hDC, "Draft", 900, 150, 150) '-> False
Show Text_Rotate(0, "Draft", 900, 150, 150)           '-> True
Show Error_Description()                              '-> GetCurrentObject=NULL

' == Gradient
' From blue at the top to black at the bottom.
Show Gradient(Picture1)                               '-> Empty

' == StdOut
' To the standard output of the program.
Show StdOut("Done." & vbCrLf)                         '-> False
