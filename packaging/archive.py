#!/usr/bin/env python3
"""Packs a folder into a zip whose bytes depend on what lies in the folder and on nothing else.

    packaging/archive.py zip FOLDER OUT.zip
    packaging/archive.py wheel FOLDER FOLDER_FOR_IT VERSION TAG README

SOURCE_DATE_EPOCH is the date of every file in it. The zip holds the folder itself, the wheel what is in it;
the wheel gets its name and metadata here and is printed. A wheel is a zip with three small files more: what
setuptools would do for it is to build, and there is nothing to be built; its platform tag it would have to be
talked into.
"""
import base64
import hashlib
import os
import pathlib
import sys
import time
import zipfile

METADATA = """\
Metadata-Version: 2.1
Name: exportifc
Version: {version}
Summary: Structural frame models as IFC2X3 files
Requires-Python: >=3.9
Classifier: Programming Language :: Python :: 3
Classifier: Typing :: Typed
Classifier: Topic :: Scientific/Engineering
Description-Content-Type: text/markdown

{readme}"""

WHEEL = """\
Wheel-Version: 1.0
Generator: exportifc packaging
Root-Is-Purelib: false
Tag: py3-none-{tag}
"""


def pack(folder, files, target):
    date = time.gmtime(int(os.environ["SOURCE_DATE_EPOCH"]))[:6]
    target.unlink(missing_ok=True)
    with zipfile.ZipFile(target, "w") as archive:
        for file in files:
            entry = zipfile.ZipInfo(file.relative_to(folder).as_posix(), date)
            entry.create_system = 3  # Unix: the rights of files are kept
            entry.external_attr = (0o100755 if file.stat().st_mode & 0o100 else 0o100644) << 16
            entry.compress_type = zipfile.ZIP_DEFLATED
            archive.writestr(entry, file.read_bytes(), compresslevel=9)


def files_of(folder):
    return sorted(file for file in folder.rglob("*") if file.is_file())


def recorded(folder, file):
    digest = base64.urlsafe_b64encode(hashlib.sha256(file.read_bytes()).digest()).rstrip(b"=").decode()
    return f"{file.relative_to(folder).as_posix()},sha256={digest},{file.stat().st_size}\n"


def wheel(folder, target, version, tag, readme):
    info = folder / f"exportifc-{version}.dist-info"
    info.mkdir(exist_ok=True)
    text = readme.read_text(encoding="utf-8")
    (info / "METADATA").write_text(METADATA.format(version=version, readme=text), encoding="utf-8")
    (info / "WHEEL").write_text(WHEEL.format(tag=tag), encoding="ascii")
    record = info / "RECORD"
    record.unlink(missing_ok=True)
    files = files_of(folder)
    lines = "".join(recorded(folder, file) for file in files)
    record.write_text(f"{lines}{record.relative_to(folder).as_posix()},,\n", encoding="utf-8")
    # The metadata last, as the form of wheels recommends.
    files = [file for file in files if info not in file.parents] + files_of(info)
    out = target / f"exportifc-{version}-py3-none-{tag}.whl"
    pack(folder, files, out)
    print(out)


def main():
    match sys.argv[1:]:
        case ["zip", folder, out]:
            folder = pathlib.Path(folder)
            pack(folder.parent, files_of(folder), pathlib.Path(out))
        case ["wheel", folder, target, version, tag, readme]:
            wheel(pathlib.Path(folder), pathlib.Path(target), version, tag, pathlib.Path(readme))
        case _:
            sys.exit(__doc__)


main()
