' Boxes for error_boxes_on_display.sh, one after the other; each tells which button ended it.
Dim styles, number
styles = Array(4, 4, 4, 1, 4, 260)
For number = 0 To UBound(styles)
  Host.Echo "box " & number & " " & Disp_Error("text", styles(number), "", 0, "", "Box " & number)
Next
