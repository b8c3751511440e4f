#!/usr/bin/env python3
"""Breaks the code on purpose, one place at a time, and reports what no test notices.

  scripts/mutate.py [--sample N] [--jobs N] [--seed N] [--list] [FILE...]

Constants, signs, comparisons and conditions of the profile, axes and reader code are changed one by
one in a copy of the tree; the unit tests are rebuilt and run for each. A mutant that every test
survives is either listed with its reason in scripts/mutants_allowed.txt or a gap in the tests.

  --sample N   only N mutants of each file, chosen by --seed (default: all)
  --jobs N     copies that work side by side (default 2)
  --list       prints the mutants and stops

Ends with "N passed, N failed": mutants killed or allowed, mutants that survive.
"""
import argparse
import concurrent.futures
import os
import pathlib
import queue
import random
import re
import shutil
import subprocess
import sys
import tempfile

root = pathlib.Path(__file__).resolve().parents[1]
FILES = [
    "profiles/section_name.cpp", "profiles/profile_dispatch.cpp", "profiles/parametric.cpp",
    "profiles/outlines.cpp", "elements/bar_axes.cpp", "elements/bar_element.cpp", "elements/polyline.cpp",
    "model/bar.cpp", "model/bar.h", "model/batch_source.cpp", "model/host_number.cpp", "model/host_source.cpp",
    "model/line_reader.cpp",
]
ALLOWED = root / "scripts/mutants_allowed.txt"

# what | replacements; each match of a pattern gives one mutant for each replacement
RULES = [
    (r"(?<![<>=!\w])<=(?!>)", ["<", ">"]),
    (r"(?<![<>=!\w])>=", [">", "<"]),
    (r"(?<=[\w)\]] )<(?= [\w(.\-])", ["<=", ">"]),
    (r"(?<=[\w)\]] )>(?= [\w(.\-])", [">=", "<"]),
    (r"==", ["!="]),
    (r"!=", ["=="]),
    (r"&&", ["||"]),
    (r"\|\|", ["&&"]),
    (r"(?<=[\w)\]] )\+(?= [\w(])", ["-"]),
    (r"(?<=[\w)\]] )-(?= [\w(])", ["+"]),
    (r"(?<=[\w)\]] )\*(?= [\w(])", ["+"]),
    (r"(?<=[\w)\]] )/(?= [\w(])", ["*"]),
    (r"\+=", ["-="]),
    (r"-=", ["+="]),
    (r"(?<=[(,{=] )-(?=[\w.(])|(?<=[({])-(?=[\w.(])|(?<=return )-(?=[\w.(])", [""]),
    (r"\bcos\b", ["sin"]),
    (r"\bsin\b", ["cos"]),
    (r"\btrue\b", ["false"]),
    (r"\bfalse\b", ["true"]),
    (r"(?<![\w.#\"'])\d+\.\d*F?(?![\w.])", ["<number>"]),
    (r"(?<![\w.#\"'])\d+(?![\w.'])", ["<number>"]),
    (r"\ba\[(\d)\]", ["<index>"]),
    (r"\bd([0-6])\b", ["<dimension>"]),
    (r"\b(return;|continue;|break;)", [";"]),
]

def other_number(text):
    """0 becomes 1 and 1 becomes 0; other reals double, other integers grow by one."""
    if "." in text:
        digits = text.rstrip("F")
        value = float(digits)
        return repr({0.0: 1.0, 1.0: 0.0}.get(value, value * 2)) + text[len(digits):]
    return str(int(text) + 1)


def mutants_of(name):
    """(line number, old line, new line) for each mutant of a file."""
    lines = (root / name).read_text(encoding="utf-8").splitlines()
    found = []
    for number, line in enumerate(lines):
        code = line
        stripped = code.strip()
        if stripped.startswith(("//", "#", "namespace", "using", "template", "static_assert", "/*", "*")):
            continue
        comment = code.find("//")
        if comment >= 0:
            code = code[:comment]
        # Texts are changed as a whole, below.
        blanked = re.sub(r'"(?:[^"\\]|\\.)*"|\'(?:[^\'\\]|\\.)*\'', lambda m: "\x01" * len(m[0]), code)
        for pattern, replacements in RULES:
            for match in re.finditer(pattern, blanked):
                for new in replacements:
                    if new == "<number>":
                        new = other_number(match[0])
                    elif new == "<index>":
                        new = f"a[{int(match[1]) % 7 + 1}]" if match[1] != "0" else "a[1]"
                    elif new == "<dimension>":
                        new = f"d{(int(match[1]) + 1) % 7}"
                    found.append((number, line, line[: match.start()] + new + line[match.end():]))
        if name.startswith(("profiles/", "elements/")):
            for match in re.finditer(r'"((?:[^"\\\n]|\\.)+)"', code):
                if not re.search(r"\\.$", match[1]):
                    last = "%" if match[1][-1] == "#" else "#"
                    found.append((number, line, line[: match.end(1) - 1] + last + line[match.end(1):]))
    return [(name, *m) for m in dict.fromkeys(found) if m[1] != m[2]]


def normal(text):
    return " ".join(text.split())


def allowed():
    """Reasons by file and changed line; the list says: file | line | mutated line | reason."""
    reasons = {}
    if ALLOWED.exists():
        for line in ALLOWED.read_text(encoding="utf-8").splitlines():
            if line and not line.startswith("#"):
                file, old, new, reason = (part.strip() for part in line.split(" || "))
                reasons[file, old, new] = reason
    return reasons


class Copy:
    """A copy of the tree with its own build, in which one mutant at a time lives."""

    def __init__(self, folder):
        self.tree = folder / "tree"
        self.build = folder / "build"
        shutil.copytree(root, self.tree, ignore=shutil.ignore_patterns(
            ".git", "build", "out", "node_modules", "viewer", "dist"))
        # Unoptimised: it builds fastest, and the tests are the same.
        self.run(["cmake", "-S", str(self.tree), "-B", str(self.build), "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Debug",
                  "-DCMAKE_CXX_FLAGS=-O0 -g0", "-DEXPORTIFC_PROGRAM=OFF"], check=True)
        self.run(["cmake", "--build", str(self.build), "-j2", "--target", "unit_tests"], check=True)
        self.tests = self.build / "tests/unit/unit_tests"
        if not self.passes():
            sys.exit("the tests fail without any mutant")

    def run(self, command, check=False, timeout=900):
        result = subprocess.run(command, capture_output=True, stdin=subprocess.DEVNULL, timeout=timeout)
        if check and result.returncode:
            sys.exit(result.stdout.decode()[-3000:] + result.stderr.decode()[-3000:])
        return result.returncode == 0

    def passes(self):
        try:
            return self.run([str(self.tests), "--gtest_brief=1", "--gtest_fail_fast"], timeout=60)
        except subprocess.TimeoutExpired:
            return False  # a mutant that never ends is noticed

    def fate(self, mutant):
        name, number, old, new = mutant
        path = self.tree / name
        original = path.read_text(encoding="utf-8")
        lines = original.splitlines(keepends=True)
        lines[number] = new + "\n"
        path.write_text("".join(lines), encoding="utf-8")
        try:
            if not self.run(["cmake", "--build", str(self.build), "-j1", "--target", "unit_tests"]):
                return "does not build"
            return "survived" if self.passes() else "killed"
        finally:
            path.write_text(original, encoding="utf-8")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--sample", type=int)
    parser.add_argument("--jobs", type=int, default=2)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--list", action="store_true")
    parser.add_argument("files", nargs="*")
    options = parser.parse_args()

    mutants = []
    for name in options.files or FILES:
        of_file = mutants_of(name)
        if options.sample and len(of_file) > options.sample:
            of_file = sorted(random.Random(options.seed).sample(of_file, options.sample), key=lambda m: m[1])
        mutants += of_file
    if options.list:
        for name, number, old, new in mutants:
            print(f"{name}:{number + 1}: {normal(old)}  ->  {normal(new)}")
        print(len(mutants), "mutants")
        return 0

    reasons = allowed()
    counts = {"killed": 0, "does not build": 0, "survived": 0, "allowed": 0}
    by_file = {}
    with tempfile.TemporaryDirectory(prefix="mutants-") as scratch:
        copies = queue.Queue()
        for i in range(options.jobs):
            copies.put(Copy(pathlib.Path(scratch) / str(i)))

        def try_out(mutant):
            copy = copies.get()
            try:
                return mutant, copy.fate(mutant)
            finally:
                copies.put(copy)

        with concurrent.futures.ThreadPoolExecutor(options.jobs) as workers:
            for mutant, fate in workers.map(try_out, mutants):
                name, number, old, new = mutant
                if fate == "survived" and (name, normal(old), normal(new)) in reasons:
                    fate = "allowed"
                counts[fate] += 1
                row = by_file.setdefault(name, dict.fromkeys(counts, 0))
                row[fate] += 1
                if fate == "survived":
                    print(f"survived: {name} || {normal(old)} || {normal(new)}   (line {number + 1})", flush=True)
    for name, row in by_file.items():
        print(f"{name}: {row['killed']} killed, {row['allowed']} allowed, {row['survived']} survived, "
              f"{row['does not build']} do not build")
    print(f"{counts['killed'] + counts['allowed']} passed, {counts['survived']} failed")
    return counts["survived"] != 0


if __name__ == "__main__":
    sys.exit(main())
