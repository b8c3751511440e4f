#!/usr/bin/env python3
"""Writes THIRD-PARTY.md: what of others is in the packages, with the licences' own texts.

    scripts/third_party.py            writes it
    scripts/third_party.py --check    fails when it is not current; ends with "N passed, N failed"

The texts come from what a build uses: Debian's copyright files and the page's npm packages.
"""
import json
import pathlib
import re
import subprocess
import sys

root = pathlib.Path(__file__).resolve().parents[1]
target = root / "THIRD-PARTY.md"
modules = root / "page/node_modules"


def upstream_version(package):
    """Of a Debian package, without Debian's own part."""
    version = subprocess.run(["dpkg-query", "-W", "-f=${Version}", package], check=True, capture_output=True, text=True)
    return re.sub(r"([+~](ds|dfsg))?-[^-]*$", "", version.stdout)


def copyright_file(package):
    return pathlib.Path(f"/usr/share/doc/{package}/copyright").read_text(encoding="utf-8")


def stanzas(package):
    """The paragraphs of a machine-readable copyright file, as dictionaries."""
    for paragraph in re.split(r"\n\s*\n", copyright_file(package)):
        fields = {}
        for line in paragraph.split("\n"):
            if match := re.match(r"([A-Za-z-]+):\s?(.*)", line):
                key = match[1]
                fields[key] = match[2]
            elif fields:
                fields[key] += "\n" + line
        yield fields


def licence_text(licence):
    """A licence field without its first line, as the authors wrote it."""
    lines = [re.sub(r"^ ", "", line).rstrip() for line in licence.split("\n")[1:]]
    return "\n".join("" if line == "." else line for line in lines).strip("\n")


def notices(package, *wanted):
    """Copyright and licence of the files whose names begin so; each licence text once."""
    texts, holders = {}, {}
    for fields in stanzas(package):
        name = fields.get("License", "").split("\n")[0].strip()
        if text := licence_text(fields.get("License", "")):
            texts.setdefault(name, text)
        files = fields.get("Files", "").split()
        if name and any(file.startswith(wanted) or file in wanted for file in files):
            for line in fields.get("Copyright", "").split("\n"):
                # Words that say that there is no holder.
                if line.strip() not in ("public-domain", "none", ""):
                    holders.setdefault(name, {})[re.sub(r"\s+", " ", line.strip())] = None
            holders.setdefault(name, {})
    for name, lines in holders.items():
        parts = [part for part in re.split(r" and | or ", name) if part in texts] or [name]
        yield "\n".join(line if line.startswith("Copyright") else f"Copyright {line}" for line in lines), "\n\n".join(texts.get(part, name) for part in parts)


def quoted(text):
    return "```text\n" + text.strip("\n") + "\n```\n"


def section(title, why, *texts):
    return f"## {title}\n\n{why}\n\n" + "\n".join(map(quoted, texts))


def npm(name):
    return json.loads((modules / name / "package.json").read_text(encoding="utf-8"))


def runtime_exception():
    text = copyright_file("gcc-12-base")
    start = text.index("GCC RUNTIME LIBRARY EXCEPTION")
    return text[start:text.index("requirements of the license of GCC.", start) + len("requirements of the license of GCC.")]


def document():
    cli, json_library = upstream_version("libcli11-dev"), upstream_version("nlohmann-json3-dev")
    mingw, gcc = upstream_version("mingw-w64-x86-64-dev"), upstream_version("gcc-12-base")
    three, web_ifc, fflate = npm("three")["version"], npm("web-ifc")["version"], npm("fflate")["version"]
    expat = upstream_version("libexpat1-dev")
    emscripten, zlib = upstream_version("emscripten"), upstream_version("libz-mingw-w64-dev")
    joined = lambda package, *wanted: ["\n\n".join(filter(None, pair)) for pair in notices(package, *wanted)]
    parts = [
        "# What of others is in the packages\n\n"
        "Written by `scripts/third_party.py`; the texts are those that came with the versions named. The\n"
        "module itself uses the standard library and the system, nothing else. A licence for exportIFC\n"
        "itself is its owner's to choose; none is given here.\n\n"
        "| what | version | in | licence |\n|---|---|---|---|\n"
        f"| CLI11 | {cli} | the program `exportifc`, compiled in | BSD, three clauses |\n"
        f"| JSON for Modern C++ | {json_library} | the program, the library and `exportifc.html`, compiled in | MIT |\n"
        f"| zlib | {zlib} | the program, the library and `exportifc.html`, linked statically; in the Debian packages the system's | zlib |\n"
        f"| expat | {expat} | the same, in the same way | MIT |\n"
        f"| three.js | {three} | `viewer.html`, `exportifc.html` | MIT |\n"
        f"| web-ifc | {web_ifc} | `viewer.html`, `exportifc.html` | Mozilla Public License 2.0 |\n"
        f"| fflate | {fflate} | `exportifc.html` | MIT |\n"
        f"| Emscripten's run-time library | {emscripten} | `exportifc.html`, linked statically | MIT, and those below |\n"
        f"| mingw-w64's run-time library and winpthreads | {mingw} | every file for Windows, linked statically |"
        " Zope Public License 2.1 and those below |\n"
        f"| libstdc++ and libgcc | {gcc} | the same, and the program and library of the tar.gz and the Linux wheel, linked statically; their headers everywhere |"
        " GPL 3 or later with the GCC Runtime Library Exception 3.1 |\n",
        section(f"CLI11 {cli}", "Reads the program's command line.",
                *joined("libcli11-dev", "*")),
        section(f"JSON for Modern C++ {json_library}", "Reads and writes JSON models.",
                *joined("nlohmann-json3-dev", "*", "include/nlohmann/")),
        section(f"zlib {zlib}", "Packs what pages carry, and exchange files in a zip; unpacks workbooks.",
                *joined("libz-mingw-w64-dev", "*")),
        section(f"expat {expat}", "Reads the XML of workbooks.",
                *joined("libexpat1-dev", "*", "expat/lib/")),
        section(f"three.js {three}", "Draws the page's picture.",
                (modules / "three/LICENSE").read_text(encoding="utf-8")),
        section(f"web-ifc {web_ifc}",
                "Reads the exchange file in the page. Unchanged but for what the page does not need; its sources\n"
                "are in the npm package web-ifc and at <https://github.com/ThatOpen/engine_web-ifc>. By its build file the\n"
                "engine is compiled with fast_float, tinynurbs, GLM, earcut.hpp, CDT, spdlog, stduuid, unordered_dense and\n"
                "the run-time library of Emscripten; the npm package carries no notices of theirs.",
                (modules / "web-ifc/LICENSE.md").read_text(encoding="utf-8")),
        section(f"fflate {fflate}", "Reads and writes the zip files of the page that exports.",
                (modules / "fflate/LICENSE").read_text(encoding="utf-8")),
        section(f"Emscripten {emscripten}",
                "The C and C++ libraries of the exporter in the page. Parts without a holder are in the public domain.",
                *joined("emscripten", "*", "system/lib/libc/musl/", "system/lib/libcxx/", "system/lib/libcxxabi/",
                        "system/lib/compiler-rt/")),
        section(f"mingw-w64 {mingw}",
                "Start-up code, mathematics, formatting and threads of the Windows files. Parts without a holder are in\n"
                "the public domain.",
                *joined("mingw-w64-x86-64-dev", "*", "mingw-w64-crt/crt/", "mingw-w64-crt/gdtoa/", "mingw-w64-crt/math/",
                        "mingw-w64-crt/misc/", "mingw-w64-crt/stdio/", "mingw-w64-libraries/winpthreads/*",
                        "mingw-w64-libraries/winpthreads/include/", "mingw-w64-libraries/winpthreads/src/")),
        section(f"libstdc++ and libgcc {gcc}",
                "The C++ library and the compiler's helpers: GNU General Public License, version 3 or later\n"
                "(<https://www.gnu.org/licenses/gpl-3.0.html>), with this permission, which covers the packages:",
                runtime_exception()),
    ]
    return "\n".join(part.rstrip("\n") + "\n" for part in parts)


def main():
    new = document()
    if sys.argv[1:] == ["--check"]:
        current = target.is_file() and target.read_text(encoding="utf-8") == new
        if not current:
            print("THIRD-PARTY.md is not current: scripts/third_party.py writes it")
        print("1 passed, 0 failed" if current else "0 passed, 1 failed")
        return not current
    target.write_text(new, encoding="utf-8")
    return 0


sys.exit(main())
