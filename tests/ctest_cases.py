#!/usr/bin/env python3
"""Prints what CTest shall know, as commands of CMake; ctest_cases.cmake says which names and labels.

    tests/ctest_cases.py [--gtest KIND BINARY]... [--program PROGRAM] [--stages]

--gtest: each case of a GoogleTest binary. --program: each case of tests/cli for that program. Both
may be Windows programs. --stages: each stage of ./test.sh.
"""
import argparse
import pathlib
import subprocess

root = pathlib.Path(__file__).resolve().parents[1]


def output(*command):
    # GoogleTest shows the values of a case, which may be any bytes, behind its name.
    return subprocess.run([str(part) for part in command], check=True, capture_output=True,
                          encoding="utf-8", errors="replace").stdout


def under_wine(program):
    return program.endswith(".exe")


def add(name, command, **properties):
    def bracketed(text):
        """An argument that CMake takes as it stands."""
        equals = "="
        while f"]{equals}]" in text:
            equals += "="
        return f"[{equals}[{text}]{equals}]"

    properties["WORKING_DIRECTORY"] = str(root)
    print("add_test(", *map(bracketed, [name, *map(str, command)]), ")")
    print("set_tests_properties(", bracketed(name), "PROPERTIES",
          *(f"{key} {bracketed(value)}" for key, value in properties.items()), ")")


def cases(binary):
    """The names that --gtest_filter takes."""
    wine = [root / "scripts/wine.sh"] if under_wine(binary) else []
    for line in output(*wine, binary, "--gtest_list_tests").splitlines():
        line = line.split("#")[0].rstrip()
        if line.startswith("  "):
            yield suite + line.strip()
        elif line.endswith("."):
            suite = line


parser = argparse.ArgumentParser()
parser.add_argument("--gtest", nargs=2, action="append", default=[])
parser.add_argument("--program")
parser.add_argument("--stages", action="store_true")
options = parser.parse_args()

# The scripts that ./test.sh runs, for one case each: they know Wine, and that a test which is skipped
# or crashes has not passed.
for kind, binary in options.gtest:
    run = [root / "scripts/run_gtest.sh", binary]
    if pathlib.Path(binary).exists():
        for case in cases(binary):
            add(f"{kind}.{case}", [*run, f"--gtest_filter={case}"], LABELS=kind)
    else:
        add(f"{kind}.NOT_BUILT", run, LABELS=kind)

if options.program:
    run = [root / "tests/cli/run.py", options.program, *(["--wine"] if under_wine(options.program) else [])]
    for case in output(*run, "--list").splitlines():
        add(f"cli.{case}", [*run, "--whole-names", case], LABELS="cli")

if options.stages:
    for row in output(root / "test.sh", "--list").splitlines():
        name, when, *_ = row.split()
        # Two at a time would build in the same folders. test.sh itself ends what takes too long.
        add(f"stage.{name}", [root / "test.sh", name], LABELS=f"stage;{when}", RUN_SERIAL="TRUE", TIMEOUT="3600")
