' Property bags of both forms, late bound.
Dim bag, other, buffer, value, i, name, offset, list

Set bag = CreateObject("QvRtLibOle.QvtPropertyBag2")
Check "a new bag has Version 0", bag.Version, CLng(0)
Check "and no names", bag.EnumProperties(), ""
Check "Flush of a new bag", bag.Flush, "PB2" & String(8, Chr(0))

bag.Version = 5
Check "WriteProperty of a Long", bag.WriteProperty(CLng(7), "One"), False
Check "WriteProperty of a String", bag.WriteProperty("x", "Two"), False
buffer = "PB2" & Long_2_Str(5) & Long_2_Str(20) & _
  Chr(0) & "ONE" & Chr(1) & Long_2_Str(1) & Chr(0) & _
  Chr(0) & "TWO" & Chr(1) & Long_2_Str(6) & Chr(0) & _
  Chr(3) & Long_2_Str(7) & Chr(255) & Long_2_Str(1) & "x"
Check "Flush is the whole buffer", bag.Flush, buffer
Check "PropertyExists goes by the name in any case", bag.PropertyExists("oNe"), True
Check "PropertyExists of another name", bag.PropertyExists("on"), False
Check "EnumProperties lists in order", bag.EnumProperties(), "ONE" & Chr(0) & "TWO" & Chr(0)

Set other = CreateObject("QvRtLibOle.QvtPropertyBag2")
Check "Load takes what Flush gave", other.Load(buffer), False
Check "Version comes back", other.Version, CLng(5)
Check "a Long comes back", other.ReadProperty("one", 0), CLng(7)
Check "a String comes back", other.ReadProperty("TWO", ""), "x"
Check "an absent name gives the default", other.ReadProperty("three", "d"), "d"
Check "Flush again gives the same", other.Flush, buffer

' Every type of its own.
Set bag = CreateObject("QvRtLibOle.QvtPropertyBag2")
list = Array(CInt(3), CLng(4), CSng(1.5), CDbl(2.5), CCur(1.25), CDate(2.5), True, "text")
For Each value In list
  Check "a value of type " & VarType(value) & " is written", bag.WriteProperty(value, "n" & VarType(value)), False
Next
i = bag.Load(bag.Flush)
list = Array(CInt(3), CLng(4), CSng(1.5), CDbl(2.5), CCur(1.25), CDate(2.5), True, "text")
For Each value In list
  Check "a value of type " & VarType(value) & " comes back", bag.ReadProperty("n" & VarType(value), Empty), value
Next
Check "a Byte is written", bag.WriteProperty(CByte(200), "b"), False
Check "a Byte comes back as an Integer", bag.ReadProperty("b", 0), CInt(200)

' Defaults.
Set bag = CreateObject("QvRtLibOle.QvtPropertyBag2")
Check "a value equal to its default succeeds", bag.WriteProperty(CLng(5), "a", CLng(5)), False
Check "and is not stored", bag.PropertyExists("a"), False
Check "and comes back with the same default", bag.ReadProperty("a", CLng(5)), CLng(5)
Check "the zero of a type is its default", bag.WriteProperty("", "a"), False
Check "and is not stored either", bag.EnumProperties(), ""
Check "a value of its own is stored", bag.WriteProperty(CLng(5), "a", CLng(1)), False
Check "and read whatever the default", bag.ReadProperty("a", CLng(5)), CLng(5)
Check "DefaultOf a Long", bag.DefaultOf(CLng(5)), CLng(0)
Check "DefaultOf a Single", bag.DefaultOf(CSng(5)), CSng(0)
Check "DefaultOf a Currency", bag.DefaultOf(CCur(5)), CCur(0)
Check "DefaultOf a Date", bag.DefaultOf(CDate(5)), CDate(0)
Check "DefaultOf a String", bag.DefaultOf("x"), ""
Check "DefaultOf a Boolean", bag.DefaultOf(True), False
Check "DefaultOf a Byte", bag.DefaultOf(CByte(5)), CByte(0)
Check "DefaultOf a Double is an Integer", bag.DefaultOf(CDbl(5)), CInt(0)
Check "DefaultOf an Integer", bag.DefaultOf(CInt(5)), CInt(0)
Check "DefaultOf Empty", bag.DefaultOf(Empty), CInt(0)
Check "DefaultOf Null", bag.DefaultOf(Null), CInt(0)
Check "DefaultOf an object is Nothing", bag.DefaultOf(bag) Is Nothing, True

' Failures.
Set bag = CreateObject("QvRtLibOle.QvtPropertyBag2")
i = bag.WriteProperty("a", "x")
Check "a name in another case is the same", bag.WriteProperty("A", "X"), True
Check "with this text", Error_Description(), "La propriet" & Chr(224) & " X " & Chr(232) & " gi" & Chr(224) & " stata inserita."
CheckRecord "recorded by the directory", 20000, "QvPropertyBag.DirectoryAdd"
Check "the value stays", bag.ReadProperty("x", ""), "a"
Check "an array does not compare", bag.WriteProperty(Array(1), "y"), True
CheckRecord "and is recorded", 13, "QvPropertyBag.WriteProperty"
Check "Null does not compare", bag.WriteProperty(Null, "y"), True
CheckRecord "and is recorded too", 94, "QvPropertyBag.WriteProperty"
Check "a buffer of another kind is refused", bag.Load("PB1" & String(8, Chr(0))), True
Check "with the text for it", Error_Description(), "Il buffer non contiene dati di PropertyBag2."
CheckRecord "recorded by Load", 20000, "QvPropertyBag.Load"
Check "the bag is empty then", bag.Flush, "PB2" & String(8, Chr(0))
Check "an empty buffer loads", bag.Load(""), False
Check "with Version 512", bag.Version, CLng(512)

' Deleting and replacing.
Set bag = CreateObject("QvRtLibOle.QvtPropertyBag2")
list = Array("a", "b", "c")
For Each name In list
  i = bag.WriteProperty(name & name, name)
Next
Check "deleting an absent name succeeds", bag.DeleteProperty("d"), False
Check "deleting the first", bag.DeleteProperty("A"), False
Check "leaves the others", bag.EnumProperties(), "B" & Chr(0) & "C" & Chr(0)
Check "readable, the second", bag.ReadProperty("b", ""), "bb"
Check "and the third", bag.ReadProperty("c", ""), "cc"
Check "replacing by an equal value", bag.PropertyReplace("bb", "b"), False
Check "changes nothing", bag.EnumProperties(), "B" & Chr(0) & "C" & Chr(0)
Check "replacing by another value", bag.PropertyReplace("new", "b"), False
Check "moves the name to the end", bag.EnumProperties(), "C" & Chr(0) & "B" & Chr(0)
Check "and stores the value", bag.ReadProperty("b", ""), "new"
Check "replacing an absent name adds it", bag.PropertyReplace(CLng(1), "d"), False
Check "with its value", bag.ReadProperty("d", 0), CLng(1)
Check "replacing by the default", bag.PropertyReplace("", "c"), False
Check "deletes", bag.PropertyExists("c"), False

Set bag = CreateObject("QvRtLibOle.QvtPropertyBag2")
i = bag.WriteProperty("0123456789", "a")
i = bag.WriteProperty(CLng(1), "b")
i = bag.WriteProperty(CLng(2), "c")
Check "deleting a later one succeeds", bag.DeleteProperty("b"), False
On Error Resume Next
value = bag.ReadProperty("c", 0)
CheckError "and can leave a wrong position behind", 9, "Subscript out of range"
On Error GoTo 0

' The first form.
Set bag = CreateObject("QvRtLibOle.QvtPropertyBag")
bag.Version = 5
Check "first form: WriteProperty", bag.WriteProperty(CLng(7), "One"), False
buffer = Chr(3) & Long_2_Str(5) & Long_2_Str(10) & _
  Chr(0) & "ONE" & Chr(1) & Long_2_Str(1) & Chr(0) & Chr(3) & Long_2_Str(7)
Check "first form: Flush", bag.Flush, buffer
offset = CLng(99)
Check "first form: ReadProperty", bag.ReadProperty("one", 0, offset), CLng(7)
Check "first form: Offset stands behind the value", offset, CLng(6)
Check "first form: an absent name gives the default", bag.ReadProperty("two", "d", offset), "d"
Check "first form: and Offset 0", offset, CLng(0)
Check "first form: an empty name is absent", bag.ReadProperty("", "d"), "d"
Check "first form: an empty name works once", bag.WriteProperty(CLng(1), ""), False
Check "first form: and no second time", bag.WriteProperty(CLng(1), ""), True
CheckRecord "first form: as a duplicate", 20000, "QvPropertyBag.DirectoryAdd"
Check "first form: DefaultOf", bag.DefaultOf("x"), ""
Check "first form: Load of what Flush gave fails", bag.Load(bag.Flush), True
Check "first form: an error stands", Check_Error(), True
CheckRecord "first form: recorded", 9, "QvPropertyBag.Load"
Check "first form: the bag is empty", bag.Flush, Chr(3) & String(8, Chr(0))
Finish
