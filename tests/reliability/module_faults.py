#!/usr/bin/env python3
"""Batch exports through the built module where the disk, the folder or the name makes trouble.

  tests/reliability/module_faults.py BUILD      a folder with the module and its tests, such as
                                                build/linux or build/windows (then under Wine)

Each case compares the whole folder before and after. Ends with "N passed, N failed".
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

import faults
from faults import COMPLETE, as_nobody, contents, root
from model_files import bar_lines, batch_text
from outcome import check, end

build = pathlib.Path(sys.argv[1]).resolve()
windows = (build / "exportIFC.dll").exists()
module = build / ("exportIFC.dll" if windows else "libexportIFC.so")
probe = build / "tests/reliability" / ("module_probe.exe" if windows else "module_probe")
host_path = faults.windows_path if windows else str

MODEL = batch_text([bar_lines("RED 20", end=(1000, 0, 0)),
                    bar_lines("2L 50 50 5 5 8", end=(1000, 0, 3000))]).encode()


def command(*arguments):
    runner = [str(root / "scripts/wine.sh")] if windows else []
    return [*runner, str(probe), str(module), *map(str, arguments)]


def run(*arguments, cwd, largest_file=None):
    """What the probe says."""
    result = subprocess.run(command(*arguments), cwd=cwd, preexec_fn=faults.size_limit(largest_file), timeout=600,
                            stdin=subprocess.DEVNULL, capture_output=True)
    lines = result.stdout.decode("utf-8", "replace").replace("\r", "").strip().splitlines()
    return lines[-1] if lines else f"nothing, exit code {result.returncode}: {result.stderr[-300:]!r}"


def new_folder():
    return faults.new_folder({"m.txt": MODEL})


def export(folder, name="m.txt", **how):
    """Exports and returns what the probe said, and the folder before and after."""
    before = contents(folder)
    said = run("export", name, cwd=folder, **how)
    return said, before, contents(folder)


def unchanged(name, said, before, after):
    check(f"{name}: the text is thrown", said == "threw", said)
    check(f"{name}: nothing is touched", before == after, f"{before.keys()} {after.keys()}")


# ---- what must go well

with new_folder() as folder:
    said, before, after = export(folder)
    complete = after["m.txt"]
    check("an export", said == "returned 1" and complete.endswith(COMPLETE), said)
    check("an export: only the model is replaced", {**before, "m.txt": complete} == after)

for name in ("açúcar e çã.txt", "with  blanks .a b.txt", "sem extensão", "x.temp"):
    with new_folder() as folder:
        (folder / name).write_bytes(MODEL)
        said, before, after = export(folder, name)
        check(f"the name {name!r}", said == "returned 1" and after.get(name, b"").endswith(COMPLETE)
              and {**before, name: after[name]} == after, said)


for length in (255, 259, 1019, 1020):
    with new_folder() as folder:
        path = faults.path_of_length(folder, length, ".txt", host_path)
        path.write_bytes(MODEL)
        said, before, after = export(folder, host_path(path))
        name = str(path.relative_to(folder))
        if length == 1020:  # no room for "temp" within 1,024 characters
            unchanged(f"a path of {length} characters", said, before, after)
        elif windows and length > 255:
            # Beyond 259 characters Windows opens no file; where it does (Wine), the runtime still
            # renames none: the whole output stays beside the model's place.
            after.pop(name, None)
            before.pop(name)
            output = after.pop(name + "temp", b"")
            check(f"a path of {length} characters", before == after and
                  (said == "threw" or (said == "returned 1" and output.endswith(COMPLETE))), said)
        else:
            check(f"a path of {length} characters", said == "returned 1"
                  and after.get(name, b"").endswith(COMPLETE) and {**before, name: after[name]} == after, said)

# ---- no file can be created

with new_folder() as folder:
    (folder / "m.txttemp").mkdir()
    unchanged("a folder has the output's name", *export(folder))

with new_folder() as folder:
    unchanged("the folder is a file", *export(folder, "other.ifc/m.txt" if not windows else "other.ifc\\m.txt"))

with new_folder() as folder:
    unchanged("there is no such folder", *export(folder, "nowhere/m.txt"))

with new_folder() as folder, faults.disk(folder / "disk", "1m") as disk:
    if disk:
        (disk / "m.txt").write_bytes(MODEL)
        faults.make_read_only(disk)
        before = contents(folder)
        said = run("export", "m.txt", cwd=disk)
        unchanged("a read-only disk", said, before, contents(folder))

# Wine's server opens the files, and it is root as well: under Wine the read-only disk stands for this.
if not windows or os.geteuid() != 0:
    with new_folder() as folder:
        tools = [shutil.copy(file, folder) for file in (probe, module)]
        closed = folder / "closed"
        closed.mkdir()
        (closed / "m.txt").write_bytes(MODEL)
        closed.chmod(0o555)
        before = contents(folder)
        runner = command()[:-2] if windows else as_nobody
        result = subprocess.run([*runner, *tools, "export", "m.txt"], cwd=closed, capture_output=True, timeout=60)
        unchanged("a read-only folder", result.stdout.decode().strip(), before, contents(folder))

if windows:
    with new_folder() as folder:
        holder = subprocess.Popen(command("hold", "m.txttemp", 20), cwd=folder, stdout=subprocess.PIPE)
        holder.stdout.readline()
        unchanged("another process holds the output", *export(folder))
        holder.kill()
        holder.wait()
        run("export", "nothing-here.txt", cwd=tempfile.gettempdir())  # until the holder is gone
        pathlib.Path(tempfile.gettempdir(), "nothing-here.txt").unlink()
    with new_folder() as folder:
        holder = subprocess.Popen(command("hold", "m.txt", 8), cwd=folder, stdout=subprocess.PIPE)
        holder.stdout.readline()
        said, before, after = export(folder)
        check("another process holds the model: the export counts as done", said == "returned 1", said)
        extra = after.pop("m.txttemp", b"")
        check("another process holds the model: it stays, the output beside it",
              before == after and extra.endswith(COMPLETE) and b"IFCBEAM" not in extra)
        holder.wait()

# ---- the model is not there

with new_folder() as folder:
    said, before, after = export(folder, "none.txt")
    created = after.pop("none.txt", b"")
    check("no model: a file without bars", said == "returned 1" and created.endswith(COMPLETE)
          and b"IFCBEAM" not in created and before == after, said)

# ---- the disk is full

size = len(complete)
if windows:
    # A process a position: the whole header, then a sample of bars and trailer, and both ends.
    header = complete.index(b"DATA;")
    for room in sorted({*range(0, header, 25), *range(header, size, 211), size - 20, size - 1, size}):
        with new_folder() as folder:
            said, before, after = export(folder, largest_file=room)
            check(f"room for {room} bytes", said == "returned 1" and len(after["m.txt"]) == room
                  and after["m.txt"][:min(room, 4000)] == complete[:min(room, 4000)]
                  and {**before, "m.txt": after["m.txt"]} == after, said)
else:
    with new_folder() as folder:
        before = contents(folder)
        said = run("sizes", "m.txt", size, cwd=folder)
        check("room for every number of bytes", said == f"{size} sizes", said)
        check("nothing but the model is touched", before == contents(folder))
        if said == f"{size} sizes":
            print(f"{size} sizes of the disk, from 0 to {size - 1} bytes")
    with new_folder() as folder:
        (folder / "m.txttemp").symlink_to("/dev/full")
        said, before, after = export(folder)
        del before["m.txttemp"]
        check("/dev/full: counts as done, the model is gone",
              said == "returned 1" and after == {**before, "m.txt": "-> /dev/full"}, said)

with new_folder() as folder, faults.disk(folder / "disk", "12k") as disk:
    if disk:
        (disk / "m.txt").write_bytes(MODEL)
        said = run("export", "m.txt", cwd=disk)
        after = contents(disk)
        room = len(after["m.txt"])
        check("a disk of 12 KiB", said == "returned 1" and list(after) == ["m.txt"]
              and room == min(8192, size) and after["m.txt"][:4000] == complete[:4000], f"{said} {room}")

# ---- memory

said = run("loads", 1000, cwd=root)
gained = int(re.sub(r"\D", "", said) or -1) if said.endswith("bytes") else -1
limit = 300_000 if windows else 20_000
check("1,000 loads keep nothing", 0 <= gained < limit or said.startswith("-"), said)
print(f"1,000 loads and unloads: {said}")
with new_folder() as folder:
    said = run("exports", 1000, "m.txt", cwd=folder)
    # By design each export keeps its narrow path: here 10 bytes, a block of 32 and a pointer.
    limit = 400_000 if windows else 100_000
    gained = int(said.split()[0]) if said.endswith("bytes") else limit
    check("1,000 exports keep only their paths", gained < limit, said)
    print(f"1,000 exports: {said}")

end()
