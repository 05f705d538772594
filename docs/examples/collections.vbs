' == kwCollection, kwCollection.Add, kwCollection.Item, kwCollection.Count, kwCollection.NewEnum
Dim towns, town, missing
Set towns = CreateObject("QvRtLibOle.kwCollection")
towns.Add "Turin", "TO"
towns.Add "Bari", "BA"
towns.Add "Rome", "RM", 2         ' before the second
towns.Add "Pisa", "PI", , "to"    ' behind the one of that key
Show towns.Count     '-> 4
Show towns("rm")     '-> Rome
Show towns(2)        '-> Pisa
For Each town In towns
  Show town
Next
'-> Turin
'-> Pisa
'-> Rome
'-> Bari
On Error Resume Next
towns.Add "Taranto", "to"
Show Err.Number      '-> 457
Err.Clear
missing = towns("MI")
Show Err.Number      '-> 5
Err.Clear
missing = towns(5)
Show Err.Number      '-> 9

' == kwCollection.Key
Dim c
Set c = CreateObject("QvRtLibOle.kwCollection")
c.Add "plain"
c.Add "keyed", "aBc"
Show c.Key("ABC")   '-> aBc
Show c.Key(1)       '-> aBc

' == kwCollection.Remove, kwCollection.Clear
Dim c
Set c = CreateObject("QvRtLibOle.kwCollection")
c.Add 1, "a"
c.Add 2, "b"
c.Add 3, "c"
c.Remove "B"
c.Remove 1
Show c.Count    '-> 1
Show c.Key(1)   '-> c
c.Clear
Show c.Count    '-> 0

' == kwCollection.ItemAssign, kwCollection.ItemExist
Dim c, value
Set c = CreateObject("QvRtLibOle.kwCollection")
c.Add 10, "ten"
value = "nothing yet"
Show c.ItemExist("TEN")            '-> True
Show c.ItemExist(2)                '-> False
Show c.ItemAssign("two", value)    '-> True
Show value                         '-> nothing yet
Show c.ItemAssign("ten", value)    '-> False
Show value                         '-> 10

' == kwDictionary, kwDictionary.Add, kwDictionary.Item, kwDictionary.NewEnum, kwDictionary.Count, kwDictionary.ItemExist
Dim prices, entry
Set prices = CreateObject("QvRtLibOle.kwDictionary")
prices.Add "Espresso", "E", , , 1.5
prices.Add "Water", "W"
prices("e").Value = 2
Show prices.Count             '-> 2
Show prices.ItemExist("T")    '-> False
For Each entry In prices
  Show entry.Item
Next
'-> Espresso
'-> Water
Show prices(1).Value                      '-> 2
Show VarType(prices("W").Value) = vbError '-> True

' == kwDictionary.Remove, kwDictionary.Clear
Dim d
Set d = CreateObject("QvRtLibOle.kwDictionary")
d.Add "x", "a"
d.Add "y", "b"
d.Remove "A"
Show d(1).Item   '-> y
d.Clear
Show d.Count     '-> 0

' == ItemInCollection
Dim c
Set c = CreateObject("QvRtLibOle.kwCollection")
c.Add CreateObject("QvRtLibOle.QvtRect"), "rect"
c.Add "text", "text"
Show ItemInCollection(c, "Rect")   '-> True
Show ItemInCollection(c, "text")   '-> False
Show c.ItemExist("text")           '-> True
