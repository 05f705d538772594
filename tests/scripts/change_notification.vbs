' NotifyFileChange with a script's handler; another process changes the folder.
Const FILE_NOTIFY_CHANGE_FILE_NAME = 1, FILE_NOTIFY_CHANGE_LAST_WRITE = 16
Dim notify, folder, files, peer, events, lastPath, lastFilter, wanted

Set notify = CreateObject("QvRtLibOle.QvtNotify")
Set files = CreateObject("Scripting.FileSystemObject")
folder = Get_TempPath() & files.GetTempName & "\"
files.CreateFolder folder
files.CreateTextFile(folder & "there", True).Close
Check "events are connected", Host.Connect(notify, "watch"), True

Check "a missing folder fails", notify.NotifyFileChange(folder & "missing"), True
Check "with the system's text", Error_Description(), SystemError(CLng(2))
Check "and its number", Error_LastDLLError(), CLng(2)
CheckRecord "as error 20000", 20000, "QvtNotify.NotifyFileChange"
Check "without an event", events, Empty

Check "time-out 0 ends at once", notify.NotifyFileChange(folder, False, CLng(16), CLng(0)), True
Check "as unexpected", Error_Description(), "Unexpected error."
CheckRecord "which is error 20000", 20000, "QvtNotify.NotifyFileChange"

peer = Host.Start("companion.exe change " & folder & " write")
wanted = 1
events = 0
Check "Cancel ends the watch", notify.NotifyFileChange(folder), False
Check "after one event", events, 1
Check "which tells the folder", lastPath, folder
Check "and the filter", lastFilter, CLng(FILE_NOTIFY_CHANGE_LAST_WRITE)
wanted = 3
events = 0
Check "the watch goes on until then", notify.NotifyFileChange(folder, True), False
Check "for three events", events, 3
Check "another kind of change is none", notify.NotifyFileChange(folder, False, FILE_NOTIFY_CHANGE_FILE_NAME, 100), True
Check "so that the time passes", Error_Description(), "Unexpected error."
Check "without an event more", events, 3
Check "and no error stands but that", Error_Number(), CLng(20000)
Reset_Error

Host.Disconnect
Host.End peer
Check "other kinds in named arguments", notify.NotifyFileChange(folder, , , 0), True
CheckRecord "fail as well", 20000, "QvtNotify.NotifyFileChange"
files.DeleteFolder Left(folder, Len(folder) - 1), True
Finish

Sub watch_FileChangeEvent(path, filter, cancel)
  events = events + 1
  lastPath = path
  lastFilter = filter
  If events >= wanted Then cancel = True
End Sub
