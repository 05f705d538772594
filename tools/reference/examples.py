"""The examples of the reference: docs/examples/*.vbs, which are tests as well.

A block begins with a line `' == Name, Name` of what it shows: members (`Class.Name` outside the
global class) and classes. `Show value '-> text` prints a value and tells what comes out. Classes,
procedures and event handlers of a block stand behind its other lines. What stands before the first
block makes what an application has around the examples of a file: a form's controls, a printer.
"""

import re

HEAD = re.compile(r"' == (.+)")
RESULT = re.compile(r"'-> ?(.*)$")
DEFINITION = re.compile(r"(?:Class|Sub|Function) \w+")

# What a script host has around the examples: a global object WScript with CreateObject, which
# connects an object's events, and the procedure that prints.
PRELUDE = """\
Dim QvBlock, WScript
Class QvWScript
  Public Function CreateObject(id, prefix)
    Set CreateObject = QvCreate(id)
    Host.Connect CreateObject, Left(prefix, Len(prefix) - 1)
  End Function
End Class
Function QvCreate(id)
  Set QvCreate = CreateObject(id)
End Function
Sub Show(value)
  Host.Echo QvBlock & " " & QvText(value)
End Sub
Function QvText(value)
  If IsNull(value) Then QvText = "Null" : Exit Function
  If IsEmpty(value) Then QvText = "Empty" : Exit Function
  If IsObject(value) Then QvText = "(object)" : Exit Function
  If VarType(value) = vbBoolean Then
    If value Then QvText = "True" Else QvText = "False"
    Exit Function
  End If
  QvText = CStr(value)
End Function
Set WScript = New QvWScript"""


def blocks_of(text):
    """[(members, lines)] of one file."""
    blocks = []
    for line in text.split("\n"):
        head = HEAD.fullmatch(line)
        if head:
            blocks.append(([name.strip() for name in head[1].split(",")], []))
        elif blocks:
            blocks[-1][1].append(line)
    return [(members, "\n".join(lines).strip("\n").split("\n")) for members, lines in blocks]


def preamble_of(text):
    """The lines before the first block."""
    lines = text.split("\n")
    first = next((i for i, line in enumerate(lines) if HEAD.fullmatch(line)), len(lines))
    return lines[:first]


def all_blocks(folder):
    """[(file, members, lines)] of every file of a folder, in order of their names."""
    return [
        (path, members, lines)
        for path in sorted(folder.glob("*.vbs"))
        for members, lines in blocks_of(path.read_text("latin-1"))
    ]


def guide_blocks(text):
    """The tested blocks of a guide (fenced as vbs), which go on from each other, as one."""
    return [line for block in re.findall(r"^```vbs\n(.*?)^```", text, re.M | re.S) for line in block.split("\n")]


def expected_of(lines):
    return [match[1].rstrip() for line in lines if (match := RESULT.search(line))]


def program_of(blocks, preamble=()):
    """A script that runs the blocks, each with variables of its own, and prints every value shown
    behind the number of its block."""
    parts = [PRELUDE, *preamble]
    for number, lines in enumerate(blocks):
        at = next((i for i, line in enumerate(lines) if DEFINITION.match(line)), len(lines))
        parts += [f"Sub QvExample{number}()", *lines[:at], "End Sub", *lines[at:]]
    for number in range(len(blocks)):
        parts += [f"QvBlock = {number}", f"QvExample{number}", "Reset_Error"]
    return "\r\n".join([*"\n".join(parts).split("\n"), 'Host.Echo "done"', ""])
