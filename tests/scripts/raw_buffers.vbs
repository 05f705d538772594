' Raw buffers and value codecs, late bound.
Dim buffer, offset, value

buffer = "": offset = 1
Check "Buffer_Put of an Integer succeeds", Buffer_Put(buffer, offset, CInt(7)), False
Check "a first put makes the buffer 16384 long", Len(buffer), CLng(16384)
Check "Offset moves by the width", offset, CLng(3)
Finish
