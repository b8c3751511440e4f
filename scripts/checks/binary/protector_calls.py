#!/usr/bin/env python3
"""Counts the calls of the stack protector's alarm in a DLL's own code, run-time libraries left out.

  scripts/checks/binary/protector_calls.py DLL MAP      MAP: what the linker says lies where
"""
import re
import subprocess
import sys

dll, map_file = sys.argv[1:]
with open(map_file, encoding="utf-8", errors="replace") as file:
    placed = file.read().partition("Linker script and memory map")[2]
alarm = re.search(r"^ +0x([0-9a-f]+) +__stack_chk_fail$", placed, re.MULTILINE)
if alarm is None:
    print(0)
    sys.exit()
own = [(int(start, 16), int(size, 16)) for start, size in re.findall(
    r"^ \.text\S*\s+0x([0-9a-f]+) +0x([0-9a-f]+) (?:libexportifc_core\.a|CMakeFiles/exportIFC\.dir/plugin)", placed,
    re.MULTILINE)]

code = subprocess.run(["x86_64-w64-mingw32-objdump", "-d", "--no-show-raw-insn", dll], check=True,
                      capture_output=True, encoding="ascii").stdout
calls = [int(at, 16) for at in re.findall(rf"^ *([0-9a-f]+):\s+call +0x{int(alarm[1], 16):x}$", code, re.MULTILINE)]
print(sum(any(start <= call < start + size for start, size in own) for call in calls))
