"""The examples of the reference: docs/examples/*.vbs, which are tests as well.

A block begins with a line `' == Name, Name` of the members that it shows (`Class.Name` outside the
global class). `Show value '-> text` prints a value and tells what comes out.
"""

import re

HEAD = re.compile(r"' == (.+)")
RESULT = re.compile(r"'-> ?(.*)$")


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


def program_of(blocks):
    """A script that runs the blocks, each with variables of its own, and prints every value shown
    behind the number of its block."""
    parts = [
        "Dim QvBlock",
        "Sub Show(value)",
        '  Host.Echo QvBlock & " " & QvText(value)',
        "End Sub",
        "Function QvText(value)",
        '  If IsNull(value) Then QvText = "Null" : Exit Function',
        '  If IsEmpty(value) Then QvText = "Empty" : Exit Function',
        '  If IsObject(value) Then QvText = "(object)" : Exit Function',
        '  If VarType(value) = vbBoolean Then',
        '    If value Then QvText = "True" Else QvText = "False"',
        "    Exit Function",
        "  End If",
        "  QvText = CStr(value)",
        "End Function",
    ]
    for number, lines in enumerate(blocks):
        parts += [f"Sub QvExample{number}()", *lines, "End Sub"]
    for number in range(len(blocks)):
        parts += [f"QvBlock = {number}", f"QvExample{number}", "Reset_Error"]
    return "\r\n".join([*parts, 'Host.Echo "done"', ""])
