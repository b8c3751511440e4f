#!/usr/bin/env python3
"""What Windows shows of a DLL under Properties, Details, against the source it was compiled from.

  scripts/checks/binary/version_resource.py DLL plugin/version.rc CMakeLists.txt

Prints what differs and ends with 1, or prints nothing and ends with 0.
"""
import pathlib
import re
import struct
import sys

VERSION_RESOURCE = 16  # RT_VERSION
SIGNATURE = 0xFEEF04BD  # of VS_FIXEDFILEINFO
MUST_BE_THERE = ("FileDescription", "FileVersion", "ProductName", "ProductVersion")


def version_resource(image):
    """The bytes of the one version resource of a 64-bit PE image."""
    headers = struct.unpack_from("<I", image, 0x3C)[0]
    sections, optional_size = struct.unpack_from("<2xH12xH", image, headers + 4)
    optional = headers + 24
    if image[headers:headers + 4] != b"PE\0\0" or struct.unpack_from("<H", image, optional)[0] != 0x20B:
        raise ValueError("not a 64-bit PE image")
    resources = struct.unpack_from("<I", image, optional + 112 + 2 * 8)[0]  # the third data directory

    def at(address):
        """Where an address of the loaded image lies in the file."""
        for i in range(sections):
            size, start, raw_size, raw = struct.unpack_from("<8x4I", image, optional + optional_size + 40 * i)
            if start <= address < start + max(size, raw_size):
                return address - start + raw
        raise ValueError(f"no section holds the address {address:#x}")

    def children(folder):
        names, numbers = struct.unpack_from("<12x2H", image, folder)
        return dict(struct.unpack_from("<2I", image, folder + 16 + 8 * i) for i in range(names + numbers))

    if resources == 0:
        raise ValueError("no resources")
    top = at(resources)
    here = children(top).get(VERSION_RESOURCE)
    if here is None:
        raise ValueError("no version resource")
    while here & 0x80000000:  # a folder: type, name, language
        inside = children(top + (here & 0x7FFFFFFF))
        if len(inside) != 1:
            raise ValueError("more than one version resource")
        here, = inside.values()
    address, size = struct.unpack_from("<2I", image, top + here)
    return image[at(address):at(address) + size]


def blocks(data, at, end):
    """Each block from `at` to `end`: its key, its value and where its inner blocks begin and end."""
    while at < end:
        length, value_length, is_text = struct.unpack_from("<3H", data, at)
        key_end = at + 6
        while data[key_end:key_end + 2] != b"\0\0":
            key_end += 2
        key = data[at + 6:key_end].decode("utf-16-le")
        value = (key_end + 2 + 3) & ~3
        value_end = value + value_length * (2 if is_text else 1)
        yield key, data[value:value_end], ((value_end + 3) & ~3, at + length)
        at = (at + length + 3) & ~3


def described(resource):
    """The facts of a version resource, one a name."""
    facts = {}
    for key, fixed, inner in blocks(resource, 0, len(resource)):
        signature, high, low, product_high, product_low = struct.unpack_from("<I4x4I", fixed)
        if key != "VS_VERSION_INFO" or signature != SIGNATURE:
            raise ValueError("not a version resource")
        for name, a, b in (("file", high, low), ("product", product_high, product_low)):
            facts[f"{name} version number"] = f"{a >> 16}.{a & 0xFFFF}.{b >> 16}.{b & 0xFFFF}"
        for kind, _, tables in blocks(resource, *inner):
            for name, value, texts in blocks(resource, *tables):
                if kind == "StringFileInfo":
                    facts["language"] = name
                    for title, text, _ in blocks(resource, *texts):
                        facts[title] = text.decode("utf-16-le").rstrip("\0")
                else:
                    facts["translation"] = "%04X%04X" % struct.unpack("<2H", value)
    return facts


def wanted(source, project):
    version = re.search(r"^project\(\w+ VERSION (\d+\.\d+\.\d+)", project, re.MULTILINE)[1]
    facts = {"file version number": f"{version}.0", "product version number": f"{version}.0",
             "language": "041604B0", "translation": "041604B0"}  # Brazilian Portuguese, Unicode
    for title, text in re.findall(r'^ *VALUE "(\w+)", (VERSION|".*")$', source, re.MULTILINE):
        facts[title] = version if text == "VERSION" else text.strip('"')
    return facts


dll, source, project = map(pathlib.Path, sys.argv[1:])
try:
    found = described(version_resource(dll.read_bytes()))
except (ValueError, struct.error) as failure:
    print(f"{dll}: {failure}")
    sys.exit(1)
expected = wanted(source.read_text("utf-8"), project.read_text("utf-8"))
differences = [f"{dll}: {name} is {found.get(name)!r}, not {expected.get(name)!r}"
               for name in {**expected, **found} if found.get(name) != expected.get(name)]
differences += [f"{dll}: no {name}" for name in MUST_BE_THERE if not found.get(name)]
print(*differences, sep="\n", end="\n" if differences else "")
sys.exit(bool(differences))
