#!/usr/bin/env python3
"""Batch exports through the built module where the disk, the folder or the name makes trouble.

  tests/reliability/module_faults.py BUILD      a folder with the module and its tests, such as
                                                build/linux or build/windows (then under Wine)

Each case compares the whole folder before and after. Ends with "N passed, N failed".
"""
import os
import pathlib
import re
import resource
import shutil
import signal
import subprocess
import sys
import tempfile

root = pathlib.Path(__file__).resolve().parents[2]
build = pathlib.Path(sys.argv[1]).resolve()
windows = (build / "exportIFC.dll").exists()
module = build / ("exportIFC.dll" if windows else "libexportIFC.so")
probe = build / "tests/reliability" / ("module_probe.exe" if windows else "module_probe")

MODEL = b"1\n2\nmodel\nmm\n2\n" + b"".join(
    b"bar\n0\n0\n0\n1000\n0\n%d\n0\n%s\nA36\n1\nnote\n" % (z, name)
    for z, name in ((0, b"RED 20"), (3000, b"2L 50 50 5 5 8")))
COMPLETE = b"END-ISO-10303-21;\r\n"

# Thousands of small files are written: in memory where the system has such a folder.
in_memory = "/dev/shm" if os.access("/dev/shm", os.W_OK) else None

passed = failed = 0


def check(name, holds, details=""):
    global passed, failed
    if holds:
        passed += 1
    else:
        failed += 1
        print(f"not as it should be: {name} {details}")


def command(*arguments):
    runner = [str(root / "scripts/wine.sh")] if windows else []
    return [*runner, str(probe), str(module), *map(str, arguments)]


def run(*arguments, cwd, largest_file=None, prefix=(), environment=None):
    """What the probe says. A limit on the size of files is a disk that is full at that size."""
    def limit():
        if largest_file is not None:
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            resource.setrlimit(resource.RLIMIT_FSIZE, (largest_file, resource.RLIM_INFINITY))
    result = subprocess.run([*prefix, *command(*arguments)], cwd=cwd, preexec_fn=limit, timeout=600,
                            stdin=subprocess.DEVNULL, capture_output=True, env=environment)
    lines = result.stdout.decode("utf-8", "replace").replace("\r", "").strip().splitlines()
    return lines[-1] if lines else f"nothing, exit code {result.returncode}: {result.stderr[-300:]!r}"


def contents(folder):
    """Every name below a folder, with its content."""
    found = {}
    for path in sorted(pathlib.Path(folder).rglob("*")):
        name = str(path.relative_to(folder))
        if path.is_symlink():
            found[name] = "-> " + os.readlink(path)
        elif path.is_dir():
            found[name] = "folder"
        else:
            found[name] = path.read_bytes()
    return found


class Folder:
    """A folder with a model and something that no export may touch."""

    def __enter__(self):
        self.path = pathlib.Path(tempfile.mkdtemp(prefix="exportifc ", dir=in_memory))
        self.path.chmod(0o755)
        (self.path / "m.txt").write_bytes(MODEL)
        (self.path / "other.ifc").write_bytes(b"not ours")
        return self

    def __exit__(self, *_):
        shutil.rmtree(self.path)

    def export(self, name="m.txt", **how):
        """Exports and returns what the probe said, and the folder before and after."""
        before = contents(self.path)
        said = run("export", name, cwd=how.pop("cwd", self.path), **how)
        return said, before, contents(self.path)


def host_path(path):
    return "Z:" + str(path).replace("/", "\\") if windows else str(path)


def unchanged(name, said, before, after):
    check(f"{name}: the text is thrown", said == "threw", said)
    check(f"{name}: nothing is touched", before == after, f"{before.keys()} {after.keys()}")


# ---- what must go well

with Folder() as folder:
    said, before, after = folder.export()
    complete = after["m.txt"]
    check("an export", said == "returned 1" and complete.endswith(COMPLETE), said)
    check("an export: only the model is replaced", {**before, "m.txt": complete} == after)

for name in ("açúcar e çã.txt", "with  blanks .a b.txt", "sem extensão", "x.temp"):
    with Folder() as folder:
        (folder.path / name).write_bytes(MODEL)
        said, before, after = folder.export(name)
        check(f"the name {name!r}", said == "returned 1" and after.get(name, b"").endswith(COMPLETE)
              and {**before, name: after[name]} == after, said)


def long_path(folder, length):
    """A path of so many characters, as the module sees it, in folders of up to 200 characters."""
    path = folder
    missing = length - len(host_path(path)) - 1
    while missing > 230:
        path = path / ("d" * 200)
        missing -= 201
    path.mkdir(parents=True, exist_ok=True)
    path = path / ("n" * (missing - 4) + ".txt")
    assert len(host_path(path)) == length
    return path


for length in (255, 259, 1019, 1020):
    with Folder() as folder:
        path = long_path(folder.path, length)
        path.write_bytes(MODEL)
        said, before, after = folder.export(host_path(path))
        name = str(path.relative_to(folder.path))
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

with Folder() as folder:
    (folder.path / "m.txttemp").mkdir()
    unchanged("a folder has the output's name", *folder.export())

with Folder() as folder:
    unchanged("the folder is a file", *folder.export("other.ifc/m.txt" if not windows else "other.ifc\\m.txt"))

with Folder() as folder:
    unchanged("there is no such folder", *folder.export("nowhere/m.txt"))

if not windows:
    with Folder() as folder:
        # Not as root, to whom permissions mean nothing.
        tools = folder.path / "tools"
        tools.mkdir()
        for file in (module, probe):
            shutil.copy(file, tools)
        closed = folder.path / "closed"
        closed.mkdir()
        (closed / "m.txt").write_bytes(MODEL)
        closed.chmod(0o555)
        before = contents(folder.path)
        as_nobody = ["setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"] if os.geteuid() == 0 else []
        result = subprocess.run([*as_nobody, str(tools / "module_probe"), str(tools / "libexportIFC.so"),
                                 "export", str(closed / "m.txt")], capture_output=True, timeout=60)
        unchanged("a read-only folder", result.stdout.decode().strip(), before, contents(folder.path))

if windows:
    with Folder() as folder:
        holder = subprocess.Popen(command("hold", "m.txttemp", 20), cwd=folder.path, stdout=subprocess.PIPE)
        holder.stdout.readline()
        unchanged("another process holds the output", *folder.export())
        holder.kill()
        holder.wait()
        run("export", "nothing-here.txt", cwd=tempfile.gettempdir())  # until the holder is gone
        pathlib.Path(tempfile.gettempdir(), "nothing-here.txt").unlink()
    with Folder() as folder:
        holder = subprocess.Popen(command("hold", "m.txt", 8), cwd=folder.path, stdout=subprocess.PIPE)
        holder.stdout.readline()
        said, before, after = folder.export()
        check("another process holds the model: the export counts as done", said == "returned 1", said)
        extra = after.pop("m.txttemp", b"")
        check("another process holds the model: it stays, the output beside it",
              before == after and extra.endswith(COMPLETE) and b"IFCBEAM" not in extra)
        holder.wait()

# ---- the model is not there

with Folder() as folder:
    said, before, after = folder.export("none.txt")
    created = after.pop("none.txt", b"")
    check("no model: a file without bars", said == "returned 1" and created.endswith(COMPLETE)
          and b"IFCBEAM" not in created and before == after, said)

# ---- the disk is full

size = len(complete)
if windows:
    # A process a position: the whole header, then a sample of bars and trailer, and both ends.
    header = complete.index(b"DATA;")
    for room in sorted({*range(0, header, 25), *range(header, size, 211), size - 20, size - 1, size}):
        with Folder() as folder:
            said, before, after = folder.export(largest_file=room)
            check(f"room for {room} bytes", said == "returned 1" and len(after["m.txt"]) == room
                  and after["m.txt"][:min(room, 4000)] == complete[:min(room, 4000)]
                  and {**before, "m.txt": after["m.txt"]} == after, said)
else:
    with Folder() as folder:
        before = contents(folder.path)
        said = run("sizes", "m.txt", size, cwd=folder.path)
        check("room for every number of bytes", said == f"{size} sizes", said)
        check("nothing but the model is touched", before == contents(folder.path))
        if said == f"{size} sizes":
            print(f"{size} sizes of the disk, from 0 to {size - 1} bytes")
    with Folder() as folder:
        (folder.path / "m.txttemp").symlink_to("/dev/full")
        said, before, after = folder.export()
        del before["m.txttemp"]
        check("/dev/full: counts as done, the model is gone",
              said == "returned 1" and after == {**before, "m.txt": "-> /dev/full"}, said)

with Folder() as folder:
    disk = folder.path / "disk"
    disk.mkdir()
    if subprocess.run(["mount", "-t", "tmpfs", "-o", "size=12k", "none", str(disk)], capture_output=True).returncode:
        print("not tried: a small disk (mounting needs root)")
    else:
        try:
            (disk / "m.txt").write_bytes(MODEL)
            said = run("export", "m.txt", cwd=disk)
            after = contents(disk)
            room = len(after["m.txt"])
            check("a disk of 12 KiB", said == "returned 1" and list(after) == ["m.txt"]
                  and room == min(8192, size) and after["m.txt"][:4000] == complete[:4000], f"{said} {room}")
        finally:
            subprocess.run(["umount", str(disk)], check=True)

# ---- memory

said = run("loads", 1000, cwd=root)
gained = int(re.sub(r"\D", "", said) or -1) if said.endswith("bytes") else -1
limit = 300_000 if windows else 20_000
check("1,000 loads keep nothing", 0 <= gained < limit or said.startswith("-"), said)
print(f"1,000 loads and unloads: {said}")
with Folder() as folder:
    said = run("exports", 1000, "m.txt", cwd=folder.path)
    # By design each export keeps its narrow path: here 10 bytes, a block of 32 and a pointer.
    limit = 400_000 if windows else 100_000
    gained = int(said.split()[0]) if said.endswith("bytes") else limit
    check("1,000 exports keep only their paths", gained < limit, said)
    print(f"1,000 exports: {said}")

print(f"{passed} passed, {failed} failed")
sys.exit(failed != 0)
