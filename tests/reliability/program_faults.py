#!/usr/bin/env python3
"""The command-line program on disks that fill, in folders it may not write to, with odd names.

  tests/reliability/program_faults.py [PROGRAM]     default build/linux/exportifc

Whatever goes wrong, the program says so with exit code 4 and leaves the folder as it was, the old
output included. Ends with "N passed, N failed".
"""
import os
import pathlib
import resource
import shutil
import signal
import subprocess
import sys
import tempfile

root = pathlib.Path(__file__).resolve().parents[2]
program = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else root / "build/linux/exportifc").resolve()
model = root / "samples/familias.json"
in_memory = "/dev/shm" if os.access("/dev/shm", os.W_OK) else None
NOT_WRITTEN = 4
COMPLETE = b"END-ISO-10303-21;\r\n"

passed = failed = 0


def check(name, holds, details=""):
    global passed, failed
    if holds:
        passed += 1
    else:
        failed += 1
        print(f"not as it should be: {name} {details}")


def contents(folder):
    return {str(p.relative_to(folder)): "folder" if p.is_dir() else p.read_bytes() for p in folder.rglob("*")}


def export(output, cwd, largest_file=None, prefix=(), binary=program):
    def limit():
        if largest_file is not None:
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            resource.setrlimit(resource.RLIMIT_FSIZE, (largest_file, resource.RLIM_INFINITY))
    return subprocess.run([*prefix, str(binary), "export", str(cwd / "model.json"), "-o", str(output)], cwd=cwd,
                          preexec_fn=limit, stdin=subprocess.DEVNULL, capture_output=True, timeout=120)


class Folder:
    def __enter__(self):
        self.path = pathlib.Path(tempfile.mkdtemp(prefix="exportifc ", dir=in_memory))
        self.path.chmod(0o755)
        shutil.copy(model, self.path / "model.json")
        (self.path / "out.ifc").write_bytes(b"the file of yesterday")
        return self.path

    def __exit__(self, *_):
        shutil.rmtree(self.path)


def refused(name, folder, result, before):
    check(f"{name}: exit code and message", result.returncode == NOT_WRITTEN and result.stderr, result)
    check(f"{name}: nothing is touched", contents(folder) == before, list(contents(folder)))


with Folder() as folder:
    result = export("out.ifc", folder)
    complete = (folder / "out.ifc").read_bytes()
    check("an export", result.returncode == 0 and complete.endswith(COMPLETE), result)
size = len(complete)

# Header, bars, trailer, and the edges of the program's buffers.
buffer = 1 << 16
rooms = sorted({*range(0, size, size // 60), 1, 8, 500, buffer - 1, buffer, buffer + 1, size - 20, size - 2, size - 1})
for room in (r for r in rooms if r < size):
    with Folder() as folder:
        before = contents(folder)
        refused(f"room for {room} bytes", folder, export("out.ifc", folder, largest_file=room), before)

with Folder() as folder:
    before = contents(folder)
    refused("/dev/full", folder, export("/dev/full", folder), before)
    refused("no such folder", folder, export("nowhere/out.ifc", folder), before)
    refused("a folder that is a file", folder, export("out.ifc/out.ifc", folder), before)
    (folder / "taken").mkdir()
    before = contents(folder)
    refused("a folder has the name", folder, export("taken", folder), before)

with Folder() as folder:
    shutil.copy(program, folder / "program")
    closed = folder / "closed"
    closed.mkdir()
    (closed / "out.ifc").write_bytes(b"the file of yesterday")
    closed.chmod(0o555)
    before = contents(folder)
    as_nobody = ["setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"] if os.geteuid() == 0 else []
    refused("a read-only folder", folder,
            export("closed/new.ifc", folder, prefix=as_nobody, binary=folder / "program"), before)
    refused("an old file in a read-only folder", folder,
            export("closed/out.ifc", folder, prefix=as_nobody, binary=folder / "program"), before)

for name in ("açúcar e çã.ifc", "a  b .ifc", "x" * 231 + ".ifc", "x" * 251 + ".ifc"):
    with Folder() as folder:
        before = contents(folder)
        result = export(name, folder)
        after = contents(folder)
        check(f"the name {name[:20]!r}, {len(name)} characters", result.returncode == 0
              and after.get(name, b"").endswith(COMPLETE) and {**before, name: after.get(name)} == after, result)

for length in (259, 1019):
    with Folder() as folder:
        path = folder
        while length - len(str(path)) > 230:
            path = path / ("d" * 200)
        path.mkdir(parents=True, exist_ok=True)
        path = path / ("n" * (length - len(str(path)) - 5) + ".ifc")
        result = export(path, folder)
        check(f"a path of {length} characters", len(str(path)) == length and result.returncode == 0
              and path.read_bytes().endswith(COMPLETE), result)

print(f"{passed} passed, {failed} failed")
sys.exit(failed != 0)
