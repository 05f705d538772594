' The constants that the language lacks, late bound: value and subtype.

Check "vbQuote", vbQuote, Chr(34)
Check "vbApplicationNotModal", vbApplicationNotModal, CLng(8192)
Check "vbAsterisk", vbAsterisk, CLng(64)
Check "vbAsterisk is the information style", vbAsterisk, CLng(vbInformation)
Check "vbIconHand", vbIconHand, CLng(16)
Check "vbStop", vbStop, CLng(16)
Check "vbStop and vbIconHand are the same", vbStop, vbIconHand
' By their bytes: the platform's own arithmetic of such Currencies is not exact everywhere.
Check "vbMaxCurrency is a Currency", VarType(vbMaxCurrency), CInt(vbCurrency)
Check "vbMaxCurrency", Currency_2_Str(vbMaxCurrency), String(7, Chr(255)) & Chr(127)
Check "vbMinCurrency is a Currency", VarType(vbMinCurrency), CInt(vbCurrency)
Check "vbMinCurrency", Currency_2_Str(vbMinCurrency), Chr(1) & String(6, Chr(0)) & Chr(128)
Check "vbMaxDouble", vbMaxDouble, 1.7E+308
' Not every host reads so small a number exactly: its bytes are those of 1.7E-308.
Check "vbMinDouble is a Double", VarType(vbMinDouble), CInt(vbDouble)
Check "vbMinDouble", Double_2_Str(vbMinDouble), _
  Chr(&H99) & Chr(&HD8) & Chr(&HF8) & Chr(&H98) & Chr(&H6C) & Chr(&H39) & Chr(&HC) & Chr(0)
Check "vbMaxSingle", vbMaxSingle, CSng(3.4E+38)
Check "vbMinSingle", vbMinSingle, CSng(3.4E-38)
Check "vbMaxLong", vbMaxLong, CLng(2147483647)
Check "vbMinLong", vbMinLong, CLng(-2147483647) - 1
Check "vbMinInt", vbMinInt, CInt(-32768)
Check "vbMaxInt", vbMaxInt, CInt(32767)
Check "vbTwipsPerInch", vbTwipsPerInch, CLng(1440)
Check "vbTwipsPerCent", vbTwipsPerCent, CLng(567)
Check "vbTwipsPerMill", vbTwipsPerMill, CSng(56.7)
Check "vbTwipsPerChaX", vbTwipsPerChaX, CLng(120)
Check "vbTwipsPerCharY", vbTwipsPerCharY, CLng(240)
Check "vbPointsPerInch", vbPointsPerInch, CLng(72)
Check "vbPointsPerCent", vbPointsPerCent, CSng(28.34)
Check "vbPointsPerMill", vbPointsPerMill, CSng(2.83)
Check "vbCentPerInch", vbCentPerInch, CSng(2.54)
Check "vbicons", vbicons, CLng(112)

Check "CEM_CREATEFILE", CEM_CREATEFILE, "Impossibile creare il file %%."
Check "CEM_OPENFILE", CEM_OPENFILE, "Impossibile aprire il file %%."
Check "MSG_BLOOMSAVE", MSG_BLOOMSAVE, "Errore durante il salvataggio del filtro-b."

Dim constants
Set constants = CreateObject("QvRtLibOle.QvRtLib")
Check "the constants are properties of an object too", constants.vbPointsPerMill, CSng(2.83)
On Error Resume Next
constants.vbMaxInt = CInt(1)
CheckError "a constant can't be assigned to", 438, ""
On Error GoTo 0
Finish
