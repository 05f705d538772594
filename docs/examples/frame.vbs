' == KwRtLib
' The functions of the library need no object. A script host that knows no global members makes one.
Dim library
Set library = CreateObject("QvRtLibOle.KwRtLib")
Show library.Pad_Left("ab", 4) & "|"    '-> ab  |

' == Unique_KeyLong
' Two keys of one thread always differ; the second is the later one.
Dim first
first = Unique_KeyLong()
Show Unique_KeyLong() <> first    '-> True

' == ThreadInfo
Dim instance, previous, thread, again
ThreadInfo instance, previous, thread
Show instance <> 0         '-> True
Show previous              '-> 0
ThreadInfo instance, previous, again
Show again = thread        '-> True

' == SharedVar
' A value that all code of the thread sees; an object stays the object itself.
Dim list
SharedVar = "C:\Data"
Show SharedVar             '-> C:\Data
Set list = CreateObject("QvRtLibOle.kwCollection")
list.Add "one"
SharedVar = list
Show SharedVar.Count       '-> 1
SharedVar = Empty

' == Guid_String, Guid_Binary
Dim text, bytes
text = Guid_String()
Show Len(text)             '-> 38
Show Left(text, 1)         '-> {
Show text <> Guid_String() '-> True
bytes = Guid_Binary()
Show Len(Byte_2_Str(bytes))    '-> 16

' == Get_UserName
Show Get_UserName() <> ""  '-> True

' == StdOut
' Line ends are the caller's own.
Show StdOut("ready" & vbCrLf)    '-> False

' == CEM_OPENFILE, CEM_CREATEFILE
Show TranslMessage(CEM_OPENFILE, "A:\ORDERS.DAT")      '-> Impossibile aprire il file A:\ORDERS.DAT.
Show TranslMessage(CEM_CREATEFILE, "A:\ORDERS.DAT")    '-> Impossibile creare il file A:\ORDERS.DAT.

' == MSG_BLOOMSAVE
Show MSG_BLOOMSAVE    '-> Errore durante il salvataggio del filtro-b.
