' == QvRtLib, QvRtLib.vbQuote
' The constants need no object: vbQuote alone is enough.
Show "Say " & vbQuote & "ciao" & vbQuote    '-> Say "ciao"

' == QvRtLib.vbApplicationNotModal, QvRtLib.vbAsterisk, QvRtLib.vbIconHand, QvRtLib.vbStop
' Names of message-box styles that the language has under another name, or not at all.
Show vbApplicationNotModal          '-> 8192
Show vbAsterisk = vbInformation     '-> True
Show vbIconHand = vbCritical        '-> True
Show vbStop                         '-> 16

' == QvRtLib.vbicons
' The icon of a style, without its buttons.
Show vbicons And (vbYesNo + vbQuestion)    '-> 32
Show vbQuestion                            '-> 32

' == QvRtLib.vbMaxInt, QvRtLib.vbMinInt, QvRtLib.vbMaxLong, QvRtLib.vbMinLong
Show vbMinInt & " to " & vbMaxInt      '-> -32768 to 32767
Show vbMinLong & " to " & vbMaxLong    '-> -2147483648 to 2147483647

' == QvRtLib.vbMaxCurrency, QvRtLib.vbMinCurrency
Show vbMaxCurrency + vbMinCurrency     '-> 0
Show VarType(vbMaxCurrency) = vbCurrency    '-> True
Show Currency_2_Str(vbMaxCurrency) = HexToBin("FFFFFFFFFFFFFF7F")    '-> True

' == QvRtLib.vbMaxDouble, QvRtLib.vbMinDouble, QvRtLib.vbMaxSingle, QvRtLib.vbMinSingle
' Rounded figures: a Double goes a little further than vbMaxDouble.
Show vbMaxDouble            '-> 1.7E+308
Show vbMinDouble            '-> 1.7E-308
Show vbMaxSingle            '-> 3.4E+38
Show vbMinSingle            '-> 3.4E-38

' == QvRtLib.vbTwipsPerInch, QvRtLib.vbTwipsPerCent, QvRtLib.vbTwipsPerMill, QvRtLib.vbCentPerInch
' A column of 3 centimetres.
Show 3 * vbTwipsPerCent     '-> 1701
Show vbTwipsPerMill         '-> 56.7
Show vbTwipsPerInch         '-> 1440
Show vbCentPerInch          '-> 2.54

' == QvRtLib.vbTwipsPerChaX, QvRtLib.vbTwipsPerCharY
' A box of 40 columns and 5 lines in the character scale.
Show 40 * vbTwipsPerChaX    '-> 4800
Show 5 * vbTwipsPerCharY    '-> 1200

' == QvRtLib.vbPointsPerInch, QvRtLib.vbPointsPerCent, QvRtLib.vbPointsPerMill
Show vbPointsPerInch        '-> 72
Show vbPointsPerCent        '-> 28.34
Show vbPointsPerMill        '-> 2.83
