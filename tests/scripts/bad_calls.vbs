' Calls that go wrong before a member is reached, and what a script is told. Nothing crashes, and a
' variable handed over keeps its value.
Dim global, record, items, text, values(2), list, offset, buffer, value

Set global = CreateObject("QvRtLibOle.KwRtLib")
Set record = CreateObject("QvRtLibOle.QVtError")
Set items = CreateObject("QvRtLibOle.kwCollection")
items.Add "x", "k"

On Error Resume Next

' Names
global.Hi_Bite 1
CheckError "an unknown method", 438, ""
value = global.Hi_Bite
CheckError "an unknown property read", 438, ""
global.Hi_Bite = 1
CheckError "an unknown property assigned", 438, ""
Set value = CreateObject("QvRtLibOle.KwRtLib2")
CheckError "an unknown class", 429, ""
value = global.hI_bYTE(256)
CheckError "a name in other letters", 0, ""
Check "is the same name", value, CInt(1)

' Counts
value = global.Hi_Byte()
CheckError "no argument where one is needed", 449, ""
value = global.Hi_Byte(1, 2)
CheckError "one argument too many", 450, ""
global.Reset_Error 1
CheckError "an argument for a method without any", 450, ""
value = global.SharedVar(1)
CheckError "an argument for a property without any", 450, ""
buffer = "abc": offset = CLng(1)
value = global.Buffer_Put(buffer, offset)
CheckError "the last argument left out", 449, ""
value = global.Buffer_Put(, offset, CInt(1))
CheckError "the first argument left out", 449, ""
value = global.Buffer_Put(buffer, offset, , True)
CheckError "a Variant left out", 449, ""
items.Add , "other"
CheckError "an item left out", 449, ""
Check "no item was added", items.Count, CLng(1)
Check "the buffer is as it was", buffer, "abc"
Check "the offset is as it was", offset, CLng(1)
Check "the record is as it was", Check_Error(), False
value = items
CheckError "a default member without its argument", 449, ""

' Types
list = Array("no number", "", Array(1), items)
For Each value In list
  global.Hi_Byte value
  CheckError "a " & TypeName(value) & " in place of a number", 13, ""
Next
value = global.Hi_Byte(Nothing)
CheckError "Nothing in place of a number", 13, ""
value = global.Hi_Byte(Null)
CheckError "Null in place of a number", 94, ""
value = global.Hi_Byte(40000)
CheckError "a number too large", 6, ""
value = global.Get_Path(values)
CheckError "an array in place of a text", 13, ""
value = global.Get_Path(Nothing)
CheckError "Nothing in place of a text", 13, ""
value = global.Byte_2_Str("abc")
CheckError "a text in place of an array", 13, ""
value = global.Byte_2_Str(Array(1, "x"))
CheckError "an element that can't be converted", 13, ""
value = global.Byte_2_Str(Array(1, 300))
CheckError "an element too large", 6, ""
value = global.Bloom_CopyBufferSize(1)
CheckError "a number in place of an object", 13, ""
value = global.Bloom_CopyBufferSize(items)
CheckError "an object of another class", 13, ""
value = global.Bloom_CopyBufferSize(Nothing)
CheckError "Nothing in place of an object", 91, ""
record.CopyTo
CheckError "CopyTo without a target", 449, ""
record.CopyTo items
CheckError "CopyTo an object of another class", 13, ""

' A variable of the wrong kind, by reference
text = "no number"
value = global.Buffer_Right("abc", text, 1)
CheckError "a variable with a text in place of a number", 13, ""
Check "keeps its text", text, "no number"
text = Array(1, 2)
global.Buffer_RTrim "abc", text
CheckError "a variable with an array in place of a number", 13, ""
Check "keeps its array", UBound(text), CLng(1)
text = CLng(7)
global.Str_2_Byte "ab", text
CheckError "a variable with a number in place of an array", 13, ""
Check "keeps its number", text, CLng(7)
global.Str_2_Byte "abcd", values
CheckError "an array of fixed size", 10, ""
Host.Unfix values
text = "12"
global.SwapZ text, 5
CheckError "a variable with the text of a number", 0, ""
Check "takes the number", text, CLng(5)

' Properties
record.Number = "no number"
CheckError "a property of a number that gets a text", 13, ""
record.Number = Null
CheckError "a property of a number that gets Null", 94, ""
record.Number = "12"
CheckError "the text of a number", 0, ""
Check "is converted", record.Number, CLng(12)
Set record.Number = items
CheckError "a property of a number that gets an object", 13, ""
Check "which keeps its value", record.Number, CLng(12)
record.Locked = "True"
Check "the text of a Boolean is converted", record.Locked, True
CEM_OPENFILE = "text"
CheckError "a property that is read only", 438, ""
global.CEM_OPENFILE = "text"
CheckError "a property of an object that is read only", 438, ""
global.Hi_Byte = 1
CheckError "a method that is assigned to", 438, ""
items("k") = "y"
CheckError "a default member that is read only", 438, ""
Check "and keeps its value", items("k"), "x"
value = global.Error_Lock()
CheckError "a method without a result", 0, ""
Check "gives Empty", value, Empty
Error_Unlock
On Error GoTo 0
Finish
