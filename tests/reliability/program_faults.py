#!/usr/bin/env python3
"""The command-line program on disks that fill, in folders it may not write to, with odd names.

  tests/reliability/program_faults.py [PROGRAM [--every-byte]]

PROGRAM is build/linux/exportifc if not given; an .exe runs under Wine. There a process takes its time,
so that a full disk is tried at some sizes only; --every-byte tries all of a small export, in 15 minutes.

Whatever goes wrong, the program names the file and the reason, ends with exit code 4 and leaves the
folder as it was, the old output included. Ends with "N passed, N failed".
"""
import errno
import os
import pathlib
import shutil
import subprocess
import sys

import faults
from faults import COMPLETE, YESTERDAY, as_nobody, contents, root
from outcome import check, end

program = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else root / "build/linux/exportifc").resolve()
windows = program.suffix == ".exe"
probe = program.parent / "tests/reliability/module_probe.exe"
runner = [str(root / "scripts/wine.sh")] if windows else []
see = faults.windows_path if windows else str
slash = "\\" if windows else "/"

SMALL = (root / "tests/cli/models/one.json").read_bytes()
LARGE = (root / "samples/familias.json").read_bytes()
NOT_READ, NOT_WRITTEN = 3, 4

NO_SPACE = "no space left on the disk"
TOO_BIG = "the file would be larger than allowed"
NO_FOLDER = "the file or its folder does not exist"
NOT_A_FOLDER = "part of the path is not a folder"
A_FOLDER = "it is a folder"
NOT_ALLOWED = "permission denied (read-only, or open in another program?)"
READ_ONLY_DISK = "the disk is read-only"
# Wine has no Windows error for a file that grows beyond the limit of its process.
AT_THE_LIMIT = os.strerror(errno.EIO) if windows else TOO_BIG


def new_folder(model=SMALL):
    return faults.new_folder({"model.json": model, "out.ifc": YESTERDAY})


def export(output, cwd, room=None, prefix=(), binary=program):
    return subprocess.run([*prefix, *runner, str(binary), "export", "model.json", "-o", output], cwd=cwd,
                          preexec_fn=faults.size_limit(room), stdin=subprocess.DEVNULL, capture_output=True,
                          env={**os.environ, "EXPORTIFC_LANG": "C"}, timeout=120)


def refused(name, folder, output, reason, **how):
    before = contents(folder)
    result = export(output, folder, **how)
    # What check finds of the model comes first, one line each.
    *found, said = result.stderr.decode("utf-8").strip().split("\n")
    check(f"{name}: exit code and message", result.returncode == NOT_WRITTEN and not result.stdout
          and said.startswith("exportifc: error: ") and said.endswith(f"cannot write {output}: {reason}")
          and all(line.startswith("model.json:") and ": warning: " in line for line in found), result)
    check(f"{name}: nothing is touched", contents(folder) == before, list(contents(folder)))


def written(name, folder, output, file):
    """An export that goes well and touches nothing but its file."""
    before = contents(folder)
    result = export(output, folder)
    after = contents(folder)
    made = after.get(file, b"")
    check(name, result.returncode == 0 and made.endswith(COMPLETE)
          and {**before, file: made} == after, result)
    return made


# ---- the disk is full

def rooms(size, every):
    """Sizes of the disk: all, or header, bars, trailer and the edges of the program's buffers."""
    if every:
        return range(size)
    buffer = 1 << 16
    edges = {1, 8, 500, buffer - 1, buffer, buffer + 1, size - 20, size - 2, size - 1}
    return sorted(room for room in {*range(0, size, size // 60), *edges} if room < size)


for model, every in ((SMALL, not windows or "--every-byte" in sys.argv[2:]), (LARGE, False)):
    with new_folder(model) as folder:
        size = len(written("an export", folder, "out.ifc", "out.ifc"))
        (folder / "out.ifc").write_bytes(YESTERDAY)
        sizes = rooms(size, every)
        for room in sizes:
            refused(f"room for {room} of {size} bytes", folder, "out.ifc", AT_THE_LIMIT, room=room)
        print(f"{len(sizes)} sizes of the disk, from 0 to {size - 1} bytes")

if not windows:
    with new_folder() as folder:
        refused("/dev/full", folder, "/dev/full", NO_SPACE)

for model, size in ((SMALL, "4k"), (LARGE, "12k"), (LARGE, "100k")):
    with new_folder(model) as folder, faults.disk(folder / "disk", size) as disk:
        if disk:
            refused(f"a disk of {size}", folder, f"disk{slash}out.ifc", NO_SPACE)
            # The old file takes its part.
            (disk / "out.ifc").write_bytes(YESTERDAY)
            refused(f"a disk of {size} with an old file", folder, f"disk{slash}out.ifc", NO_SPACE)

# ---- no file can be created or replaced

with new_folder() as folder:
    refused("no such folder", folder, f"nowhere{slash}out.ifc", "the folder nowhere does not exist")
    refused("a folder that is a file", folder, f"out.ifc{slash}out.ifc", NO_FOLDER if windows else NOT_A_FOLDER)
    (folder / "taken").mkdir()
    refused("a folder has the name", folder, "taken", A_FOLDER)

with new_folder() as folder, faults.disk(folder / "disk", "1m") as disk:
    if disk:
        (disk / "out.ifc").write_bytes(YESTERDAY)
        faults.make_read_only(disk)
        for name in ("new.ifc", "out.ifc"):
            refused(f"a read-only disk, {name}", folder, f"disk{slash}{name}",
                    NOT_ALLOWED if windows or name == "out.ifc" else READ_ONLY_DISK)

def without_rights(folder):
    """How the program runs so that permissions count; Wine has its own read-only files, also for root."""
    if windows:
        return {}
    shutil.copy(program, folder / "program")
    return {"prefix": as_nobody, "binary": folder / "program"}


# Wine's server opens the files, and it is root as well: under Wine the read-only disk stands for this.
if not windows or os.geteuid() != 0:
    with new_folder() as folder:
        how = without_rights(folder)
        closed = folder / "closed"
        closed.mkdir()
        (closed / "out.ifc").write_bytes(YESTERDAY)
        closed.chmod(0o555)
        for name in ("new.ifc", "out.ifc"):
            refused(f"a read-only folder, {name}", folder, f"closed{slash}{name}", NOT_ALLOWED, **how)

with new_folder() as folder:
    folder.chmod(0o777)
    (folder / "out.ifc").chmod(0o444)
    refused("a read-only file", folder, "out.ifc", NOT_ALLOWED, **without_rights(folder))
    check("a read-only file: it stays so", (folder / "out.ifc").stat().st_mode & 0o777 == 0o444)

if windows:
    def held(name, folder):
        """Another process that keeps a file open for itself alone."""
        holder = subprocess.Popen([*runner, str(probe), "-", "hold", name, "120"], cwd=folder,
                                  stdin=subprocess.DEVNULL, stdout=subprocess.PIPE)
        check(f"{name} is held", holder.stdout.readline().strip() == b"held")
        return holder

    def let_go(holder):
        holder.terminate()
        holder.wait()
        holder.stdout.close()

    with new_folder() as folder:
        holder = held("out.ifc", folder)
        refused("another process holds the output", folder, "out.ifc", NOT_ALLOWED)
        let_go(holder)
    with new_folder() as folder:
        holder = held("model.json", folder)
        before = contents(folder)
        result = export("out.ifc", folder)
        check("another process holds the model", result.returncode == NOT_READ and b"model.json" in result.stderr
              and contents(folder) == before, result)
        let_go(holder)

# ---- names

for name in ("açúcar e çã.ifc", "a  b .ifc", "日本 Ω.ifc", "sem extensão", "x" * 231 + ".ifc", "x" * 251 + ".ifc"):
    with new_folder() as folder:
        written(f"the name {name[:20]!r}, {len(name)} characters", folder, name, name)
    with new_folder() as folder:
        refused(f"no room for the name {name[:20]!r}", folder, name, AT_THE_LIMIT, room=1000)

for length in (255, 259, 1019):
    with new_folder() as folder:
        path = faults.path_of_length(folder, length, ".ifc", see)
        written(f"a path of {length} characters", folder, see(path), str(path.relative_to(folder)))
        path.write_bytes(YESTERDAY)
        refused(f"no room for a path of {length} characters", folder, see(path), AT_THE_LIMIT, room=1000)

end()
