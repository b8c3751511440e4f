#!/usr/bin/env python3
"""Checks that the rooms of docs/architecture.md use one another downwards only, and that none holds too much.

    scripts/checks/rooms.py [--sizes]     --sizes prints the lines of each

Ends with "N passed, N failed".
"""
import pathlib
import re
import sys

root = pathlib.Path(__file__).resolve().parents[2]
# From the top; a room may include from those below it. What puts the program together stands above all.
ROOMS = ["cli/main.cpp", "cli/commands", "cli", "library", "library/takeoff", "library/formats", "library/formats/saf",
         "library/formats/tables", "library/workbook", "library/frame", "library/sections", "library/packing",
         "library/files", "library/text", "plugin", "profiles", "elements", "model", "step", "platform", "include"]
MOST = 0.2  # of all lines in rooms


def room_of(path):
    """The longest name of a room that the path begins with."""
    if path.startswith("exportifc/"):
        path = "include/" + path
    return max((room for room in ROOMS if path == room or path.startswith(room + "/")), key=len, default=None)


lines, faults, arrows = dict.fromkeys(ROOMS, 0), [], 0
for folder in dict.fromkeys(room.split("/")[0] for room in ROOMS):
    for file in sorted((root / folder).rglob("*")):
        if file.suffix not in (".h", ".cpp", ".c"):
            continue
        name, text = str(file.relative_to(root)), file.read_text(encoding="utf-8")
        room = room_of(name)
        if room is None:
            faults.append(f"{name} is in no room")
            continue
        lines[room] += text.count("\n")
        for included in re.findall(r'^#include ["<]([\w/.]+)[">]', text, re.MULTILINE):
            below = room_of(included)
            if below is not None:
                arrows += 1
                if ROOMS.index(below) < ROOMS.index(room):
                    faults.append(f"{name} includes {included}: {room} stands below {below}")

for room, count in lines.items():
    if count == 0:
        faults.append(f"{room} holds nothing")
    elif count > MOST * sum(lines.values()):
        faults.append(f"{room} holds {count} of {sum(lines.values())} lines, more than {MOST:.0%}")
    if "--sizes" in sys.argv:
        print(f"{room:22} {count:6} {count / sum(lines.values()):6.1%}")
print(*faults, sep="\n", end="\n" if faults else "")
print(f"{arrows + len(lines) - len(faults)} passed, {len(faults)} failed")
sys.exit(bool(faults))
