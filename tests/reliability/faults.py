"""Makes output fail, and sees what that did: for the tests of the module and of the program."""
import contextlib
import os
import pathlib
import resource
import shutil
import signal
import subprocess
import sys
import tempfile

root = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(root / "tests/support"))
COMPLETE = b"END-ISO-10303-21;\r\n"
YESTERDAY = b"the file of yesterday"

# Thousands of small files are written: in memory where the system has such a folder.
in_memory = "/dev/shm" if os.access("/dev/shm", os.W_OK) else None

# Permissions mean nothing to root: then as a user without rights.
as_nobody = ["setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"] if os.geteuid() == 0 else []


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


@contextlib.contextmanager
def new_folder(files):
    """A folder, gone at the end, that holds these files and one that nothing may touch."""
    path = pathlib.Path(tempfile.mkdtemp(prefix="exportifc ", dir=in_memory))
    try:
        path.chmod(0o755)
        for name, content in {"other.ifc": b"not ours", **files}.items():
            (path / name).write_bytes(content)
        yield path
    finally:
        for closed in (p for p in path.rglob("*") if p.is_dir()):
            closed.chmod(0o755)
        shutil.rmtree(path)


def size_limit(largest_file):
    """For `preexec_fn`: a limit on the size of files is a disk that is full at that size."""
    def limit():
        if largest_file is not None:
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            resource.setrlimit(resource.RLIMIT_FSIZE, (largest_file, resource.RLIM_INFINITY))
    return limit


@contextlib.contextmanager
def disk(path, size):
    """A file system of its own on the new folder `path`; None where that needs rights."""
    path.mkdir()
    options = f"size={size},mode=755"
    if subprocess.run(["mount", "-t", "tmpfs", "-o", options, "none", str(path)], capture_output=True).returncode:
        print("not tried: a disk of its own (mounting needs root)")
        yield None
        return
    try:
        yield path
    finally:
        subprocess.run(["umount", str(path)], check=True)


def make_read_only(mounted):
    subprocess.run(["mount", "-o", "remount,ro", str(mounted)], check=True)


def path_of_length(folder, length, ending, seen_as=str):
    """A path of so many characters, as `seen_as` writes it, in folders of 200 characters."""
    path = folder
    missing = length - len(seen_as(path)) - 1
    while missing > 230:
        path = path / ("d" * 200)
        missing -= 201
    path.mkdir(parents=True, exist_ok=True)
    path = path / ("n" * (missing - len(ending)) + ending)
    assert len(seen_as(path)) == length
    return path


def windows_path(path):
    """A path of this system as a program under Wine names it."""
    return "Z:" + str(path).replace("/", "\\")
