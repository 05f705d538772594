' kwCollection, kwDictionary and ItemInCollection, late bound.
Dim c, d, item, text, held, other, none
none = Host.Missing

Class Thing
  Public Name
End Class

Sub FillWith(target, keys)
  Dim k
  For Each k In keys
    target.Add "item " & k, k
  Next
End Sub

Function Walk(target)
  Dim each_item, seen
  seen = ""
  For Each each_item In target
    seen = seen & each_item & ";"
  Next
  Walk = seen
End Function

Set c = CreateObject("QvRtLibOle.kwCollection")
Check "a new collection is empty", c.Count, CLng(0)
FillWith c, Array("one", "Two", "three")
Check "Count counts the items", c.Count, CLng(3)
Check "an item is found by its key in any case", c("TWO"), "item Two"
Check "an item is found by its position", c.Item(1), "item one"
Check "a position is rounded to the nearest, ties to even", c(2.5), "item Two"
Check "Key reads a key as it was first added, asked for in another case", c.Key("two"), "Two"
Check "Key reads a key by position", c.Key(3), "three"
Check "For Each walks the items in order", Walk(c), "item one;item Two;item three;"

On Error Resume Next
c.Add "again", "TWO"
CheckError "a key that is there raises 457", 457, "This key is already associated with an element of this collection"
Check "a refused key leaves the collection as it was", c.Count, CLng(3)
item = c("four")
CheckError "an absent key raises 5", 5, "Invalid procedure call or argument"
item = c(4)
CheckError "a position beyond the end raises 9", 9, "Subscript out of range"
item = c(0)
CheckError "position 0 raises 9", 9, "Subscript out of range"
item = c(-1)
CheckError "a negative position raises 9", 9, ""
item = c(Null)
CheckError "Null is no index", 13, "Type mismatch"
item = c(Empty)
CheckError "Empty is position 0", 9, ""
item = c(3000000000)
CheckError "a position beyond a Long overflows", 6, ""
item = c(Array(1))
CheckError "an array is no index", 13, ""
c.Add "x", 5
CheckError "a key that is no text raises 13", 13, "Type mismatch"
c.Add "x", none, 1, 2
CheckError "Before and After together raise 5", 5, ""
c.Add "x", none, 9
CheckError "Before an absent position raises 9", 9, ""
c.Add "x", none, none, "absent"
CheckError "After an absent key raises 5", 5, ""
c.Remove "absent"
CheckError "Remove of an absent key raises 5", 5, ""
c.Remove 4
CheckError "Remove of an absent position raises 9", 9, ""
item = c.Key("absent")
CheckError "Key of an absent key raises 5", 5, ""
item = c.Key(4)
CheckError "Key of an absent position raises 9", 9, ""
On Error GoTo 0
Check "what was refused changed nothing", Walk(c), "item one;item Two;item three;"

c.Add "first", "a", 1
c.Add "second", "b", "one"
c.Add "last", "z", none, "three"
c.Add "third", "c", none, 2
Check "Before and After take positions and keys", Walk(c), "first;second;third;item one;item Two;item three;last;"
Check "the keys have gone to the same places", c.Key(3), "c"
c.Remove "ONE"
c.Remove 1
Check "Remove takes keys and positions", Walk(c), "second;third;item Two;item three;last;"
Check "Remove(1) took the first entry of the keys too", c.Key(1), "b"

item = "untouched"
Check "ItemAssign tells by True that an item is not there", c.ItemAssign("absent", item), True
Check "ItemAssign leaves the variable alone then", item, "untouched"
Check "ItemAssign tells by False that it fetched", c.ItemAssign("B", item), False
Check "ItemAssign fetches", item, "second"
Check "ItemAssign of an index of the wrong type is not found", c.ItemAssign(Null, item), True
Check "ItemExist is True for a key that is there", c.ItemExist("Z"), True
Check "ItemExist is True for a position that is there", c.ItemExist(5), True
Check "ItemExist is False past the end", c.ItemExist(6), False
Check "ItemExist is False for an absent key", c.ItemExist("y"), False
Check "ItemExist is False for an index of the wrong type", c.ItemExist(Null), False

c.Clear
Check "Clear empties", c.Count, CLng(0)
Check "a key is free again after Clear", c.ItemExist("b"), False

' Keys on some items only.
c.Add "plain"
c.Add "keyed", "k"
Check "Key(1) is that of the first keyed item, at whatever position it is", c.Key(1), "k"
On Error Resume Next
item = c.Key(2)
CheckError "there are as many keys as keyed items", 9, ""
c.Add "before", "m", 2
CheckError "a place among the items that the keys do not have fails", 9, ""
On Error GoTo 0
Check "but the item is in already", Walk(c), "plain;before;keyed;"
Check "under its key", c("m"), "before"
On Error Resume Next
item = c.Key("m")
CheckError "which the keys do not know", 5, ""
c.Remove 3
CheckError "Remove by a position that the keys do not have fails", 9, ""
On Error GoTo 0
Check "after the item has gone", Walk(c), "plain;before;"
Check "the key of the item that has gone stays", c.Key(1), "k"
c.Remove 1
Check "Remove by position takes the key of another item", c.Count, CLng(1)
c.Remove "m"
Check "a keyed item goes while there are no keys", c.Count, CLng(0)

c.Clear
c.Add 1
c.Add 2
c.Remove 1
Check "an item without a key goes by position", c(1), 2
c.Clear
c.Add 1, "only"
c.Remove "only"
On Error Resume Next
item = c.Key(1)
CheckError "Remove of the last key leaves no keys", 9, ""
On Error GoTo 0

' A Clear during For Each leaves the enumerator walking the old items.
FillWith c, Array("1", "2", "3")
text = ""
For Each item In c
  text = text & item & ";"
  If item = "item 1" Then
    c.Clear
    c.Add "new"
  End If
Next
Check "a walk goes on through the old items after Clear", text, "item 1;item 2;item 3;"
Check "the collection holds the new ones", Walk(c), "new;"

c.Clear
FillWith c, Array("1", "2", "3")
text = ""
For Each item In c
  text = text & item & ";"
  If c.Count < 6 Then c.Add "more " & c.Count
Next
Check "a walk reaches what is added at the end", text, "item 1;item 2;item 3;more 3;more 4;more 5;"
text = ""
For Each item In c
  text = text & item & ";"
  c.Remove 1
Next
Check "a walk that removes what it is given skips nothing", text, "item 1;item 2;item 3;more 3;more 4;more 5;"
Check "and leaves nothing", c.Count, CLng(0)

' Values of every kind.
Set held = New Thing
held.Name = "held"
c.Add held, "object"
c.Add Nothing, "nothing"
c.Add Null, "null"
c.Add Empty, "empty"
c.Add Array(1, 2), "array"
c.Add CByte(3), "byte"
c.Add CDate(2), "date"
c.Add True, ""
held.Name = "changed"
Check "an object is kept by reference", c("object").Name, "changed"
Check "Nothing is an object", c("nothing") Is Nothing, True
Check "Null is kept", c("null"), Null
Check "Empty is kept", c("empty"), Empty
Check "an array is kept", UBound(c("array")), CLng(1)
Check "a Byte stays a Byte", c("byte"), CByte(3)
Check "a Date stays a Date", c("date"), CDate(2)
Check "the empty text is a key", c(""), True
Set item = Nothing
Check "ItemAssign fetches an object", c.ItemAssign("object", item), False
Check "by reference", item Is held, True
text = "t"
c.Add text, "text"
text = "u"
Check "a text is kept as a copy", c("text"), "t"

Check "ItemInCollection finds an object", ItemInCollection(c, "object"), True
Check "ItemInCollection takes Nothing for an object", ItemInCollection(c, "nothing"), True
Check "ItemInCollection is False for a text that is there", ItemInCollection(c, "text"), False
Check "ItemInCollection is False for an absent key", ItemInCollection(c, "absent"), False
Check "ItemInCollection is False for an object without Item", ItemInCollection(held, "x"), False
Error_Set
CheckRecord "and leaves the error of a member that is not there pending", 438, "QvRtLibOle"
Check "ItemInCollection is False for Nothing", ItemInCollection(Nothing, "x"), False

c.Clear
c.Add 1, "Caff" & Host.ChrW(232)
Check "accented letters differ in case alone too", c.ItemExist("CAFF" & Host.ChrW(200)), True
c.Add 2, Host.ChrW(1078)
Check "and those of other scripts", c(Host.ChrW(1046)), 2
c.Add 3, "a" & Chr(0) & "b"
Check "character 0 is a character like any other", c.ItemExist("a" & Chr(0) & "c"), False
Check "in a key that is found", c("A" & Chr(0) & "B"), 3

' Saved to a bag of the script's own, and loaded from it.
Class Bag
  Public Held
  Sub WriteProperty(name, value, fallback)
    If Not IsObject(value) And VarType(fallback) <> vbError Then
      If value = fallback Then Exit Sub
    End If
    Held.Add name, value
  End Sub
  Function ReadProperty(name, fallback)
    If Held.Exists(name) Then
      If IsObject(Held(name)) Then Set ReadProperty = Held(name) Else ReadProperty = Held(name)
      Exit Function
    End If
    ReadProperty = fallback
  End Function
  Function Names()
    Dim name
    Names = ""
    For Each name In Held
      Names = Names & name & ";"
    Next
  End Function
  Private Sub Class_Initialize()
    Set Held = CreateObject("Scripting.Dictionary")
  End Sub
End Class

Dim saved, loaded
c.Clear
c.Add "x", "b"
c.Add held, "A"
c.Add 3, "c", 1
Set saved = New Bag
c.WriteProperties saved
Check "a collection writes its count, and keys and items by position", saved.Names, "Items;Key1;Item1;Key2;Item2;Key3;Item3;"
Set loaded = CreateObject("QvRtLibOle.kwCollection")
loaded.Add "old"
loaded.ReadProperties saved
Check "a saved and loaded collection has its count", loaded.Count, CLng(3)
Check "and the order of its items", loaded(1), 3
Check "an object comes back by reference", loaded(3) Is held, True
Check "under its key", loaded.Key("a"), "A"
c.Clear
Set saved = New Bag
c.WriteProperties saved
Check "an empty collection writes nothing", saved.Names, ""
loaded.ReadProperties saved
Check "and loads as empty", loaded.Count, CLng(0)
c.Add 1
c.Add 2
c.WriteProperties saved
Check "no keys are written where there are none", saved.Names, "Items;Item1;Item2;"
loaded.ReadProperties saved
Check "items without keys come back", Walk(loaded), "1;2;"
c.Add 3, "k"
Set saved = New Bag
On Error Resume Next
c.WriteProperties saved
CheckError "saving fails past the keys where only some items have one", 9, "Subscript out of range"
On Error GoTo 0
Check "with the key beside a wrong item", saved.Names, "Items;Key1;Item1;"
On Error Resume Next
c.WriteProperties Nothing
CheckError "Nothing is no bag", 91, ""
c.WriteProperties held
CheckError "an object without WriteProperty is no bag", 438, ""
On Error GoTo 0

' The run-time error that asking leaves pending shows in a record that is filled from it.
item = c.ItemAssign("absent", text)
Error_Set
CheckRecord "ItemAssign leaves the error of an absent key pending", 5, "QvRtLibOle"
item = c.ItemAssign(1, text)
Error_Set
CheckRecord "ItemAssign clears what was pending before", 0, ""
item = c.ItemAssign(9, text)
item = c.ItemExist(9)
Error_Set
CheckRecord "ItemExist leaves no error pending", 0, ""
item = ItemInCollection(c, 1)
Error_Set
CheckRecord "ItemInCollection leaves the error of an item that is no object pending", 424, "QvRtLibOle"
item = c.ItemAssign("absent", text)
Check "asking never touches the error state", Check_Error(), False

' kwDictionary
Set d = CreateObject("QvRtLibOle.kwDictionary")
Check "a new dictionary is empty", d.Count, CLng(0)
d.Add "item", "key", none, none, "value"
d.Add held, "object", none, none, held
d.Add "bare", "bare"
d.Add "zero", "zero", 1
d.Add "half", "half", none, "key"
Check "Count counts the entries", d.Count, CLng(5)
Check "an entry gives its item", d("key").Item, "item"
Check "an entry gives its value", d("KEY").Value, "value"
Check "an entry keeps an object item by reference", d("object").Item Is held, True
Check "an entry keeps an object value by reference", d("object").Value Is held, True
Check "a value left out reads back as a missing argument", VarType(d("bare").Value), vbError
Check "Before places an entry", d(1).Item, "zero"
Check "After places an entry", d(3).Item, "half"
Set other = d("key")
other.Value = 5
other.Item = "new item"
Check "a value can be changed in the entry", d("key").Value, 5
Check "an item can be changed in the entry", d(2).Item, "new item"
Set other.Value = held
Check "an entry takes an object", d("key").Value Is held, True
text = ""
For Each item In d
  If Not IsObject(item.Item) Then text = text & item.Item & ";"
Next
Check "For Each walks the entries", text, "zero;new item;half;bare;"
Check "ItemExist of an entry", d.ItemExist("HALF"), True
Check "ItemExist of an absent entry", d.ItemExist("none"), False
On Error Resume Next
d.Add 1, "KEY"
CheckError "a key that is there raises 457 in a dictionary", 457, ""
item = d("none")
CheckError "an absent key raises 5 in a dictionary", 5, ""
item = d(9)
CheckError "an absent position raises 9 in a dictionary", 9, ""
d.Remove 9
CheckError "Remove of an absent entry raises 9", 9, ""
On Error GoTo 0
d.Remove "half"
d.Remove 1
Check "Remove takes entries out", d.Count, CLng(3)
text = ""
For Each item In d
  text = text & "."
  If d.Count > 0 Then d.Clear
Next
Check "a walk goes on through the old entries after Clear", text, "..."
Check "Clear empties the dictionary", d.Count, CLng(0)
Check "an entry lives on for who holds it", other.Item, "new item"
Finish
