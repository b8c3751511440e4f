#!/usr/bin/env python3
"""The commands of the documents, as they stand, in a fresh clone of what is committed.

    scripts/checks/documented_commands.py [--list]

Runs the lines of every ```sh block, page by page in the order of `pages`; --list only shows them.
What a machine cannot run, or what other stages run, stands in `left_out` with its reason. At the
end no tracked file has changed and nothing new lies outside of the ignored folders. Ends with
"N passed, N failed".
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

root = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(root / "tests/support"))
from outcome import check, end  # noqa: E402

limit = 900  # seconds for one command

# Page and the folder in which its commands are meant; the order is that of a newcomer.
pages = [
    ("README.md", "."),
    ("CONTRIBUTING.md", "."),
    ("docs/*.md", "."),
    ("samples/README.md", "."),
    ("page/README.md", "page"),
    ("bench/README.md", "."),
    ("fuzz/README.md", "."),
    ("tests/readers/README.md", "tests/readers"),
]

# The command without its comment, and why it is not run here.
left_out = {
    "./test.sh": "this is a stage of it",
    "./test.sh --quick": "the whole run, of which this is a stage",
    'WINE_DISPLAY=:0 scripts/wine.sh build/windows/minimal_host.exe build/windows/exportIFC.dll': "a person answers",
    "build/linux/minimal_host build/linux/libexportIFC.so": "a person answers",
    "scripts/wine.sh build/windows/tests/module/module_tests.exe --gtest_filter='Interactive.*'": "stage module-windows",
    "scripts/wine.sh --session ctest --test-dir build/windows -L unit": "stage unit-windows",
    "ctest --test-dir build/linux -L cli -j2": "stage cli-linux; minutes",
    "./test.sh ../build/linux": "stage viewer",
    "test/firefox.sh ../build/linux": "stage firefox",
    "./pictures.mjs ../build/linux/exportifc": "draws tracked pictures anew, in which each browser differs by a pixel",
    "node bench.mjs ../build/linux": "minutes; measures",
    "node bench-export.mjs": "minutes; measures",
}

# A name that no test has is no failure to the programs that look for it.
nothing_ran = re.compile(r"\b0 tests from 0 test suites ran|No tests were found|^0 passed, 0 failed$", re.MULTILINE)


def commands_of(text):
    """The commands of the ```sh blocks, each with the number of its line."""
    inside, started, command = False, 0, ""
    for number, line in enumerate(text.split("\n"), 1):
        fence = re.match(r"\s*```(\w*)\s*$", line)
        if fence:
            inside = not inside and fence[1] == "sh"
            continue
        if not inside or not line.strip() or line.lstrip().startswith("#"):
            continue
        started = started or number
        command += re.sub(r"\s+#\s.*$", "", line).strip()
        if command.endswith("\\"):
            command = command[:-1]
            continue
        yield started, command
        started, command = 0, ""


def documented():
    """(page, line, folder, command) of everything."""
    for pattern, folder in pages:
        for page in sorted(root.glob(pattern)):
            for line, command in commands_of(page.read_text(encoding="utf-8")):
                yield page.relative_to(root), line, folder, command


def run(command, folder):
    """Exit code and the end of what it says."""
    done = subprocess.run(["bash", "-c", command], cwd=folder, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, timeout=limit)
    return done.returncode, "\n".join(done.stdout.decode("utf-8", "replace").split("\n")[-25:])


found = list(documented())
if sys.argv[1:] == ["--list"]:
    for page, line, _, command in found:
        print(f"{page}:{line}: {command}" + (f"   [left out: {left_out[command]}]" if command in left_out else ""))
    sys.exit(0)

for command in left_out.keys() - {command for *_, command in found}:
    check(f"left out, but in no document: {command}", False)

with tempfile.TemporaryDirectory(prefix="documented-") as work:
    clone = pathlib.Path(work) / "clone"
    subprocess.run(["git", "clone", "-q", "--no-hardlinks", str(root), str(clone)], check=True)
    os.environ["CCACHE_BASEDIR"] = str(clone)  # a compiler cache, if there is one, knows its files there
    # Prepared once a machine, and no part of the sources: a Wine prefix and packages of npm.
    for ready in ("build/wine/prefix", "page/node_modules", "tests/readers/node_modules"):
        if (root / ready).is_dir():
            (clone / ready).parent.mkdir(parents=True, exist_ok=True)
            shutil.copytree(root / ready, clone / ready, symlinks=True)
    for stamp in root.glob("build/wine/prefix.ready.*"):
        shutil.copy2(stamp, clone / "build/wine")
    for page, line, folder, command in found:
        if command in left_out:
            continue
        code, said = run(command, clone / folder)
        check(f"{page}:{line}: {command}: exit code {code}", code == 0, said)
        check(f"{page}:{line}: {command}: runs something", not nothing_ran.search(said), said)
    status = subprocess.run(["git", "status", "--porcelain"], cwd=clone, check=True, capture_output=True, text=True)
    check("the folder is as git knows it", status.stdout == "", status.stdout)

check("the documents have commands", len(found) > len(left_out))
end()
