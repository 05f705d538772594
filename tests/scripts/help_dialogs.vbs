' HTML help and the dialog for folders, late bound.
Dim path, name, fso

Set fso = CreateObject("Scripting.FileSystemObject")

Check "HtmlHelpShow of a missing file, whatever the control answers", HtmlHelpShow("C:\no such file.chm", 0), False
Check "tells nothing", Check_Error(), False
Check "HtmlHelpShow of a topic", HtmlHelpShow("C:\no such file.chm", 15, "a\b.htm", "main", 42, 0), False
Check "HtmlHelpShow with Null for data", HtmlHelpShow("C:\no such file.chm", 15, "", "", Null), True
CheckRecord "tells", 94, "KwRtLibMod.HtmlHelpShow"

path = "old"
name = "old"
Host.Press_Button 2
Check "ShowBrowseFolder that is cancelled", ShowBrowseFolder(path, 0, name, "Scegliere"), True
Check "has no path", path, ""
Check "and no name", name, ""
Check "tells so", Error_Description(), "Operazione annullata."
CheckRecord "by the language's number", 32755, "KwRtLibMod.ShowBrowseFolder"
Host.Press_Button 1
Check "ShowBrowseFolder that is left with OK", ShowBrowseFolder(path, 0, name, "Scegliere"), False
Check "has the folder that it shows first", path, Get_SpecialPath(16)
Check "and its name", Len(name) > 0, True
Check "and tells nothing", Check_Error(), False
Finish
