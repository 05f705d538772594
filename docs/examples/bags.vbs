' == QvtPropertyBag2, QvtPropertyBag2.WriteProperty, QvtPropertyBag2.ReadProperty, QvtPropertyBag2.Flush, QvtPropertyBag2.Load
' Values of any type in one text, and back. Each is read with the default it was written with.
Dim bag, buffer
Set bag = CreateObject("QvRtLibOle.QvtPropertyBag2")
Show bag.WriteProperty(120, "Left", 0)           '-> False
Show bag.WriteProperty("blue", "Colour", "red")  '-> False
Show bag.WriteProperty("blue", "COLOUR", "red")  '-> True
Show Error_Number()                              '-> 20000
buffer = bag.Flush
Set bag = CreateObject("QvRtLibOle.QvtPropertyBag2")
Show bag.Load(buffer)                            '-> False
Show bag.ReadProperty("Left", 0)                 '-> 120
Show bag.ReadProperty("Colour", "red")           '-> blue
Show bag.ReadProperty("Width", 640)              '-> 640
Show bag.Load("something else")                  '-> True

' == QvtPropertyBag2.PropertyExists, QvtPropertyBag2.EnumProperties
' A value that equals its default is not stored.
Dim bag
Set bag = CreateObject("QvRtLibOle.QvtPropertyBag2")
bag.WriteProperty 120, "Left", 0
bag.WriteProperty "red", "Colour", "red"
Show bag.PropertyExists("left")                  '-> True
Show bag.PropertyExists("colour")                '-> False
Show Replace(bag.EnumProperties(), Chr(0), ";")  '-> LEFT;

' == QvtPropertyBag2.PropertyReplace, QvtPropertyBag2.DeleteProperty
Dim bag
Set bag = CreateObject("QvRtLibOle.QvtPropertyBag2")
bag.WriteProperty "blue", "Colour"
Show bag.PropertyReplace("green", "Colour")      '-> False
Show bag.ReadProperty("Colour", "")              '-> green
Show bag.DeleteProperty("Colour")                '-> False
Show bag.PropertyExists("Colour")                '-> False

' == QvtPropertyBag2.Version, QvtPropertyBag2.DefaultOf
' The number of the data's layout travels along.
Dim bag, buffer
Set bag = CreateObject("QvRtLibOle.QvtPropertyBag2")
bag.Version = 3
buffer = bag.Flush
bag.Version = 0
bag.Load buffer
Show bag.Version                                 '-> 3
Show bag.DefaultOf(CLng(7))                      '-> 0
Show bag.DefaultOf(True)                         '-> False
Show bag.DefaultOf("x") = ""                     '-> True

' == QvtPropertyBag, QvtPropertyBag.WriteProperty, QvtPropertyBag.ReadProperty, QvtPropertyBag.DefaultOf, QvtPropertyBag.Version
Dim bag, behind
Set bag = CreateObject("QvRtLibOle.QvtPropertyBag")
bag.Version = 3
Show bag.WriteProperty(CLng(7), "Count")         '-> False
Show bag.ReadProperty("count", 0, behind)        '-> 7
Show behind                                      '-> 6
Show bag.ReadProperty("missing", 12, behind)     '-> 12
Show behind                                      '-> 0
Show bag.DefaultOf(CLng(7))                      '-> 0

' == QvtPropertyBag.Flush, QvtPropertyBag.Load
' What the first form writes it can't read back: use QvtPropertyBag2.
Dim bag, buffer
Set bag = CreateObject("QvRtLibOle.QvtPropertyBag")
bag.WriteProperty CLng(7), "Count"
buffer = bag.Flush
Show Len(buffer)                                 '-> 26
Show bag.Load(buffer)                            '-> True
Show Error_Number()                              '-> 9
