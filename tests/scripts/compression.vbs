' PkZip, PkUnzip and PkCRC, late bound.
Dim i, text, packed, restored, crc, before

text = ""
For i = 1 To 200: text = text & "ciao ": Next

Check "customary CRC-32 is the complement", Hex(Not PkCRC("123456789")), "CBF43926"
Check "PkCRC gives a Long", VarType(PkCRC("")), 3
Check "PkCRC of two halves chains", PkCRC(Mid(text, 301), PkCRC(Left(text, 300))), PkCRC(text)
before = CLng(-1)
PkCRC text, before
Check "PkCRC leaves PrevCRC", before, CLng(-1)

packed = "": restored = "": crc = CLng(-1)
Check "PkZip succeeds", PkZip(text, packed, 0, crc), False
Check "PkZip reduces", Len(packed) < 100, True
Check "PkZip gives the checksum of the original", crc, PkCRC(text)
crc = CLng(-1)
Check "PkUnzip succeeds", PkUnzip(packed, restored, Len(text), crc), False
Check "PkUnzip gives the original", restored, text
Check "PkUnzip gives the checksum of the original", crc, PkCRC(text)

packed = "": restored = ""
Check "PkZip of text succeeds without a checksum", PkZip(text, packed, 1), False
Check "the block tells its data type", Asc(packed), 1
Check "PkUnzip tells it too", PkUnzip(packed, restored, CLng(1000)), False
Check "text comes back", restored, text

packed = ""
Check "PkZip of 3 characters fails", PkZip("abc", packed), True
CheckRecord "not reducible is 20005", 20005, "KwRtLibMod.PkZip"
Check "PkZip of an empty buffer fails", PkZip("", packed), True
Check "the text of the coder's failures", Error_Description(), "Errore nella libreria di compressione."
Check "an empty buffer has room for 16", Len(packed), CLng(16)
Reset_Error
Check "PkZip refuses data type 2", PkZip(text, packed, 2), True
CheckRecord "data type 2 is 20002", 20002, "KwRtLibMod.PkZip"

Check "PkUnzip of damaged data fails", PkUnzip(Chr(2) & Chr(4) & "abc", restored, CLng(20)), True
CheckRecord "a bad data type in the block is 20002", 20002, "KwRtLibMod.PkUnzip"
Check "the result has the size told, also after a failure", Len(restored), CLng(20)
Check "PkUnzip of a bad dictionary fails", PkUnzip(Chr(0) & Chr(9) & "abc", restored, CLng(20)), True
CheckRecord "a bad dictionary is 20001", 20001, "KwRtLibMod.PkUnzip"
Check "PkUnzip of a cut block fails", PkUnzip(Chr(0) & Chr(6), restored, CLng(20)), True
CheckRecord "damaged data is 20003", 20003, "KwRtLibMod.PkUnzip"
Check "an empty original is expanded", PkUnzip(Chr(0) & Chr(6) & Chr(1) & Chr(255), restored, CLng(0)), False
Check "to an empty buffer", restored, ""
Finish
