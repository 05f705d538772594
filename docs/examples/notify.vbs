' == QvtNotify, QvtNotify.FileChangeEvent
' The event comes inside the call, here because another program writes a file; Cancel ends the watch.
Const FILE_NOTIFY_CHANGE_LAST_WRITE = 16
Dim folder, watcher
folder = Get_TempPath() & "examples"
Path_Create folder
Spawn "cmd.exe", "/c for /L %i in (1,1,30) do @(ping -n 1 127.0.0.1 & echo %i)> """ & folder & "\orders.txt""", , , True
Set watcher = WScript.CreateObject("QvRtLibOle.QvtNotify", "watcher_")
Show watcher.NotifyFileChange(folder, False, FILE_NOTIFY_CHANGE_LAST_WRITE, 20000)
'-> examples has changed (16)
'-> False
Sub watcher_FileChangeEvent(path, filter, cancel)
  Show Get_FileName(path) & " has changed (" & filter & ")"
  cancel = True
End Sub
