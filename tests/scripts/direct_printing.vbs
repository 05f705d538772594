' Raw printing through a print queue whose port leads to a file.
Dim n, s, handle, other, path, number

Desk.Print_Queue "QvScript", "LPT3:"
Check "DirectPrint", DirectPrint("QvScript", "one" & vbCrLf), False
Check "its bytes", Desk.Printed(), "one" & vbCrLf
Check "DirectPrint2", DirectPrint2("QvScript", "two", "My document", "RAW"), False
Check "its bytes", Desk.Printed(), "two"
Check "DirectPrint3", DirectPrint3("QvScript", "three"), False
Check "its bytes", Desk.Printed(), "three"
s = ""
Check "DirectPrint of nothing", DirectPrint("QvScript", s), False
Check "is a job all the same", Desk.Printed(), ""

' --- files
path = Get_TempPath() & "qvrt_direct.prn"
Sub Store(text)
  Dim fso, file
  Set fso = CreateObject("Scripting.FileSystemObject")
  Set file = fso.CreateTextFile(path, True)
  file.Write text
  file.Close
End Sub
Store String(4, "a") & String(4, "b") & "c"
s = "kept"
Check "DirectPrint3 of a file", DirectPrint3("QvScript", s, "doc", "RAW", path, 4), False
Check "its bytes", Desk.Printed(), "aaaabbbbc"
Check "Buffer holds the last block", s, "c"
Store String(4, "a") & String(4, "b")
Check "DirectPrint3 of whole blocks", DirectPrint3("QvScript", s, "doc", "RAW", path, 4), False
Check "its bytes", Desk.Printed(), "aaaabbbb"
Check "Buffer holds the last of them", s, "bbbb"
Store ""
Check "DirectPrint3 of an empty file", DirectPrint3("QvScript", s, "doc", "RAW", path, 4), False
Check "its bytes", Desk.Printed(), ""
Check "Buffer holds blanks", s, "    "
s = "kept"
Check "DirectPrint3 with blocks of nothing", DirectPrint3("QvScript", s, "doc", "RAW", path, 0), True
CheckRecord "is recorded", 11, "KwRtLibMod.DirectPrint"
Check "DirectPrint3 with negative blocks", DirectPrint3("QvScript", s, "doc", "RAW", path, -1), True
CheckRecord "is recorded", 5, "KwRtLibMod.DirectPrint"
Check "DirectPrint3 of a missing file", DirectPrint3("QvScript", s, "doc", "RAW", path & "x"), True
CheckRecord "is recorded", 53, "KwRtLibMod.DirectPrint"
Check "Buffer is as it was", s, "kept"
CreateObject("Scripting.FileSystemObject").DeleteFile path

' --- jobs by number, which is the spooler's: the one that takes what is written
Function Job_Of(library)
  For Job_Of = 1 To 99
    If Not library.DirectWritePrinter(Job_Of, "") Then Exit For
  Next
  Reset_Error
End Function
Dim job, own, library
Set library = CreateObject("QvRtLibOle.KwRtLib")
handle = 4711
Check "DirectOpenPrinter", library.DirectOpenPrinter("QvScript", handle, "Pages"), False
Check "does not write its handle", handle, CInt(4711)
job = Job_Of(library)
Check "a job of one object is none of another", DirectWritePrinter(job, "x"), True
CheckRecord "is recorded", 5, "KwRtLib.DirectWritePrinter"
Check "DirectStartPage", library.DirectStartPage(job), False
Check "DirectWritePrinter", library.DirectWritePrinter(job, "page one" & vbFormFeed), False
Check "DirectEndPage", library.DirectEndPage(job), False
Check "DirectStartPage again", library.DirectStartPage(job), False
Check "DirectWritePrinter again", library.DirectWritePrinter(job, "page two" & vbFormFeed), False
Desk.Printed
Check "DirectClosePrinter", library.DirectClosePrinter(job), False
Check "its bytes", Desk.Printed(), "page one" & vbFormFeed & "page two" & vbFormFeed
Check "DirectClosePrinter of a closed job", library.DirectClosePrinter(job), True
CheckRecord "is recorded", 5, "KwRtLib.DirectClosePrinter"
Check "DirectStartPage of no job", DirectStartPage(9), True
CheckRecord "is recorded", 5, "KwRtLib.DirectStartPage"
Check "DirectWritePrinter to no job", DirectWritePrinter(9, "x"), True
CheckRecord "is recorded", 5, "KwRtLib.DirectWritePrinter"
Check "DirectEndPage of no job", DirectEndPage(9), True
CheckRecord "is recorded", 5, "KwRtLib.DirectEndPage"
Check "DirectAbortPrinter of no job", DirectAbortPrinter(9), True
CheckRecord "is recorded", 5, "KwRtLib.DirectAbortPrinter"
Check "DirectOpenPrinter with its defaults", library.DirectOpenPrinter("QvScript", handle), False
job = Job_Of(library)
Check "DirectAbortPrinter", library.DirectAbortPrinter(job), False
Check "DirectAbortPrinter again", library.DirectAbortPrinter(job), False
Check "DirectClosePrinter of an aborted job", library.DirectClosePrinter(job), True
CheckRecord "is recorded", 20000, " < KwRtLibMod.DirectClosePrinter"
Check "DirectWritePrinter to an aborted job", library.DirectWritePrinter(job, "x"), True
CheckRecord "only adds its place", 0, " < KwRtLibMod.DirectWritePrinter"
Check "DirectOpenPrinter while its number is known", library.DirectOpenPrinter("QvScript", handle), False
own = Job_Of(library)
Check "has another number", own <> job, True
Check "under which it is closed", library.DirectClosePrinter(own), False
Check "DirectCloseAllPrinters", library.DirectCloseAllPrinters(), False
Check "DirectAbortPrinter after that", library.DirectAbortPrinter(job), True
CheckRecord "is recorded", 5, "KwRtLib.DirectAbortPrinter"

' --- another object
Set other = CreateObject("QvRtLibOle.KwRtLib")
Check "DirectOpenPrinter", library.DirectOpenPrinter("QvScript", handle), False
Check "DirectOpenPrinter of another object", other.DirectOpenPrinter("QvScript", handle), False
job = Job_Of(library)
own = Job_Of(other)
Check "two jobs have two numbers", job <> own, True
Check "one is of the one alone", library.DirectWritePrinter(own, "x"), True
Check "the other of the other", other.DirectWritePrinter(job, "x"), True
Check "DirectCloseAllPrinters of one", library.DirectCloseAllPrinters(), False
Check "leaves the other alone", other.DirectWritePrinter(own, "y"), False
Desk.Printed
Check "DirectClosePrinter of its job", other.DirectClosePrinter(own), False
Check "its bytes", Desk.Printed(), "y"
other.DirectOpenPrinter "QvScript", handle
Set other = Nothing
Reset_Error

' --- printers that do not exist
Check "DirectOpenPrinter of no printer", DirectOpenPrinter("No such printer", handle), True
Check "tells the system's code", Error_LastDLLError(), CLng(1801)
CheckRecord "is recorded", 20000, " < KwRtLibMod.DirectOpenPrinter"
Check "DirectPrint to no printer", DirectPrint("No such printer", "x"), True
CheckRecord "is recorded", 20000, " < KwRtLibMod.DirectOpenPrinter < KwRtLibMod.DirectPrint"
Error_Lock
Check "a failure under a lock", DirectPrint("No such printer", "x"), True
CheckRecord "is not recorded", 0, ""
Check "ends the lock", DirectPrint("No such printer", "x"), True
CheckRecord "so that the next is", 20000, " < KwRtLibMod.DirectOpenPrinter < KwRtLibMod.DirectPrint"
Finish
