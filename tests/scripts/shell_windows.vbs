' Find_Window, Process_SetFocus and SysTray, late bound; another process has the windows.
Dim peer, parent, child, deep, other, second, tries

peer = Host.Start("companion.exe windows")
For tries = 1 To 1000
  parent = Find_Window(CLng(0), "QvParent")
  ' The last of its windows stands when the second child does.
  If parent <> 0 Then
    child = Find_Window(parent, "QvChild")
    second = Find_Window(parent, "QvChild", Long_2_Str(child))
    If child <> 0 And second <> 0 Then Exit For
  End If
  Host.Sleep 10
Next
Check "the desktop's windows are searched", parent <> 0, True
Check "a handle is a Long", VarType(parent), 3
other = Find_Window(parent, "QvOther")
deep = Find_Window(parent, "QvGrandchild")
Check "children are found", child <> 0 And other <> 0, True
Check "and grandchildren", deep <> 0, True
Check "in whatever window they are", Find_Window(other, "QvGrandchild"), deep
Check "but not elsewhere", Find_Window(child, "QvGrandchild"), CLng(0)
Check "not the window itself", Find_Window(parent, "QvParent"), CLng(0)
Check "by the whole name", Find_Window(parent, "QvChil"), CLng(0)
Check "by its case", Find_Window(parent, "QVCHILD"), CLng(0)
Check "an excluded window is passed over", second <> child, True
Check "with all excluded there is none", _
  Find_Window(parent, "QvChild", Long_2_Str(second) & Long_2_Str(child)), CLng(0)
Check "the only match excluded is none", Find_Window(parent, "QvOther", Long_2_Str(other)), CLng(0)
Check "between two entries nothing counts", _
  Find_Window(parent, "QvOther", "xx" & Long_2_Str(other) & "yy"), other
Check "on the boundary it does", Find_Window(parent, "QvOther", "xxxx" & Long_2_Str(other)), CLng(0)

Check "Process_SetFocus is always True", Process_SetFocus(CLng(0)), True
Check "for any process", Process_SetFocus(CLng(123456)), True

' No task bar runs here.
Check "an icon without a task bar fails", SysTray(parent, CLng(0), CLng(0), "tip", CLng(1234)), True
Check "with the text of the failure", Error_Description(), "Impossibile eseguire Shell_NotifyIcon"
CheckRecord "as error 20000", 20000, "KwRtLibMod.SysTray"
Check "a message that is no number fails", SysTray(parent, CLng(0), CLng(0), , "text"), True
CheckRecord "by a type mismatch", 13, "KwRtLibMod.SysTray"
Host.End peer
Finish
