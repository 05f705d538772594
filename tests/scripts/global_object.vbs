' The global object: what its objects share, and the frame's own services.
Dim second, value, item, instance, previous, thread, first, bytes, other, i, hyphens

Set second = CreateObject("QvRtLibOle.KwRtLib")

Check "SharedVar begins Empty", SharedVar, Empty
SharedVar = "text"
Check "SharedVar is the same for every object of the thread", second.SharedVar, "text"
second.SharedVar = CSng(1.5)
Check "SharedVar keeps the subtype", SharedVar, CSng(1.5)
SharedVar = Null
Check "SharedVar keeps Null", SharedVar, Null
SharedVar = Array(CInt(1), "two")
value = SharedVar
Check "SharedVar keeps an array", value(1), "two"
value(1) = "changed"
value = SharedVar
Check "SharedVar gives a copy of the array", value(1), "two"
Set item = CreateObject("QvRtLibOle.QVtError")
item.Number = 7
Set SharedVar = item
Check "SharedVar keeps an object", IsObject(SharedVar), True
item.Number = 8
Check "SharedVar keeps the object itself", second.SharedVar.Number, CLng(8)
SharedVar = Empty
Check "SharedVar lets the object go", IsObject(SharedVar), False

Error_Set 20000, "here"
Check "the error record is the same for every object of the thread", second.Error_Number(), CLng(20000)
second.Reset_Error
Check "and is cleared for all", Check_Error(), False

ThreadInfo instance, previous, thread
Check "ThreadInfo gives the instance handle as a Long", VarType(instance), CInt(vbLong)
Check "ThreadInfo gives an instance handle", instance <> 0, True
Check "ThreadInfo knows no previous instance", previous, CLng(0)
Check "ThreadInfo gives the thread", VarType(thread) = vbLong And thread <> 0, True

first = Unique_KeyLong()
Check "Unique_KeyLong is a Long", VarType(first), CInt(vbLong)
Check "Unique_KeyLong gives another number each time", Unique_KeyLong() <> first, True
Check "also through another object", second.Unique_KeyLong() <> Unique_KeyLong(), True

first = Guid_String()
Check "Guid_String has 38 characters", Len(first), CLng(38)
Check "Guid_String is in braces", Left(first, 1) & Right(first, 1), "{}"
hyphens = Mid(first, 10, 1) & Mid(first, 15, 1) & Mid(first, 20, 1) & Mid(first, 25, 1)
Check "Guid_String has its hyphens", hyphens, "----"
Check "Guid_String is in upper case", first, UCase(first)
Check "Guid_String is new each time", first <> Guid_String(), True

bytes = Guid_Binary()
Check "Guid_Binary is an array of Byte", Host.VarType(bytes), CLng(8192 + vbByte)
Check "Guid_Binary has 16 bytes", Len(Byte_2_Str(bytes)), CLng(16)
other = Guid_Binary()
Check "Guid_Binary is new each time", Host.Same(Byte_2_Str(bytes), Byte_2_Str(other)), False

Check "Get_UserName is a text", VarType(Get_UserName()), CInt(vbString)
Check "Get_UserName is not empty", Len(Get_UserName()) > 0, True

Check "StdOut gives False", StdOut("ok StdOut writes to the standard output" & vbLf), False
Check "StdOut of nothing gives False", StdOut(""), False
Finish
