#!/usr/bin/env python3
"""Breaks the code on purpose, one place at a time, and reports what no test notices.

  scripts/mutate.py [--sample N] [--seed N] [--jobs N] [--minutes N] [--build DIR] [--list] [--record] [FILE...]

Constants, signs, comparisons and conditions of the profile, axes, reader, number and bar loop code, and of what
the library and the program decide, are changed one by one; the unit tests or those of the library are linked with
each and run. The tree itself is left alone. A mutant that no test notices is either listed with its reason in
scripts/mutants_allowed.txt or a gap in the tests.

  --sample N   only N mutants of each file, chosen by --seed (default: all)
  --jobs N     mutants side by side (default 2)
  --minutes N  starts no more mutants after that (default: no limit)
  --build DIR  a build with up-to-date tests, by Clang (default build/clang)
  --list       prints the mutants and stops
  --record     keeps the counts in docs/figures and puts them into the documents: of all mutants only

Ends with "N passed, N failed": mutants killed or allowed, mutants that survive.
"""
import argparse
import concurrent.futures
import pathlib
import random
import re
import shutil
import subprocess
import sys
import tempfile
import time

root = pathlib.Path(__file__).resolve().parents[1]
UNIT, LIBRARY = "tests/unit/unit_tests", "tests/library/library_tests"
# The tests that must notice, and the files that are changed.
FILES = {UNIT: [
    "profiles/section_name.cpp", "profiles/profile_dispatch.cpp", "profiles/parametric.cpp",
    "profiles/outlines.cpp", "elements/bar_axes.cpp", "elements/bar_element.cpp", "elements/polyline.cpp",
    "model/bar.cpp", "model/batch_source.cpp", "model/host_number.cpp", "model/host_source.cpp",
    "model/line_reader.cpp", "step/number_format.cpp", "step/line_pieces.cpp", "step/entity_registry.cpp",
    "step/global_id.cpp", "plugin/known_sections.cpp", "plugin/bar_export.cpp",
], LIBRARY: [
    "library/api/catalogue_api.cpp", "library/api/export_api.cpp", "library/api/files_api.cpp",
    "library/api/model_api.cpp", "library/api/model_handle.cpp",
    "library/formats/batch_lines.cpp", "library/formats/batch_model.cpp", "library/formats/format.cpp",
    "library/formats/json_places.cpp", "library/formats/saf/saf_axes.cpp", "library/formats/saf/saf_bars.cpp",
    "library/formats/saf/saf_member_rows.cpp", "library/formats/saf/saf_members.cpp",
    "library/formats/saf/saf_model.cpp", "library/formats/saf/saf_project.cpp", "library/formats/saf/saf_ribs.cpp",
    "library/formats/saf/saf_sections.cpp", "library/formats/saf/saf_shapes.cpp",
    "library/formats/saf/saf_table.cpp", "library/formats/saf/saf_varying.cpp",
    "library/formats/tables/columns.cpp", "library/formats/tables/table_files.cpp",
    "library/formats/tables/table_reader.cpp", "library/formats/tables/table_template.cpp",
    "library/formats/tables/table_writer.cpp", "library/frame/model_check.cpp", "library/frame/plausibility.cpp",
    "library/frame/pointer.cpp", "library/frame/problem_text.cpp", "library/frame/section_check.cpp",
    "library/sections/catalogue_json.cpp", "library/sections/rolled_sections.cpp",
    "library/sections/section_catalogue.cpp", "library/sections/section_figures.cpp",
    "library/sections/section_shape.cpp", "library/sections/section_text.cpp",
    "library/takeoff/takeoff.cpp", "library/takeoff/takeoff_tables.cpp", "library/text/nearest.cpp",
    "library/text/text.cpp", "library/text/text_encoding.cpp", "cli/file_plan.cpp", "cli/output_format.cpp",
    "cli/progress.cpp",
]}
# The tests most likely to notice, tried before all of them.
NEAR = {
    "section_name": "*SectionName*:*Profile*", "profile_dispatch": "*Dispatch*:*Profile*", "parametric": "*Parametric*",
    "outlines": "*Outline*", "bar_axes": "*Axes*", "bar_element": "*BarElement*:*WriteBar*", "polyline": "*Poly*:*Point*",
    "bar": "*Bar*", "batch_source": "*Batch*", "host_number": "*Number*:*Integer*", "host_source": "*HostSource*",
    "line_reader": "*Line*", "number_format": "Put*:Reals*:ReadyInteger*", "entity_registry": "*Registry*",
    "global_id": "*GlobalId*", "bar_export": "*BarExport*:*ExportBars*",
    "batch_lines": "BatchLines*", "batch_model": "*Batch*", "json_places": "PlacesOf*", "plausibility": "*Notes*:*Plausib*",
    "section_check": "*SectionCheck*:*CheckSection*", "section_text": "*Text*", "text_encoding": "*Utf8*:*Transl*",
    "nearest": "*Nearest*", "file_plan": "*FilePlan*", "format": "*Format*",
    **dict.fromkeys(["saf_axes", "saf_bars", "saf_member_rows", "saf_members", "saf_model", "saf_project", "saf_ribs",
                     "saf_sections", "saf_shapes", "saf_table", "saf_varying"],
                    "Saf*:UndrawnSections*:StandingOf*"),
    **dict.fromkeys(["columns", "table_files", "table_reader", "table_template", "table_writer"], "Table*:Csv*"),
    **dict.fromkeys(["catalogue_api", "export_api", "files_api", "model_api", "model_handle"], "Api*"),
    "takeoff": "Takeoff*", "takeoff_tables": "Takeoff*", "section_figures": "SectionFigures*:Takeoff*",
    "rolled_sections": "*Rolled*:SectionTextOf*", "catalogue_json": "Api*",
}
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
    """Reasons by file, line and mutated line, "*" for any."""
    reasons = {}
    if ALLOWED.exists():
        for line in ALLOWED.read_text(encoding="utf-8").splitlines():
            if line and not line.startswith("#"):
                file, *lines, reason = (part.strip() for part in line.split(" || "))
                half = len(lines) - 1 if lines[-1] == "*" else len(lines) // 2  # lines may hold the mark, too
                old, new = " || ".join(lines[:half]), " || ".join(lines[half:])
                reasons[file, old, new] = reason
    return reasons


class Builder:
    """Links some tests of a build with one source file exchanged, without touching the tree.

    The object of the mutant stands before the libraries on the command line, so that their own
    object of that file is not taken.
    """

    def __init__(self, build, tests, scratch):
        self.build = build
        self.tests = tests
        self.scratch = scratch
        scratch.mkdir()
        commands = subprocess.run(["ninja", "-C", str(build), "-t", "commands", pathlib.Path(tests).name], check=True,
                                  capture_output=True, text=True).stdout.splitlines()
        self.link = next(c for c in reversed(commands) if f" -o {tests}" in c)
        self.compile = {}
        for command in commands:
            match = re.search(r" -c (\S+)$", command)
            if match and pathlib.Path(match[1]).is_relative_to(root):
                # Unoptimised, it builds fastest; what the tests see is the same.
                command = re.sub(r" -MD -MT \S+ -MF \S+", "", command[:match.start()])
                command = re.sub(r" -o \S+$", " -w -O0 -g0", command)
                # Headers that were compiled with other options are of no use here.
                command = re.sub(r" -Winvalid-pch| -Xclang -include(-pch)? -Xclang \S+", "", command)
                self.compile[str(pathlib.Path(match[1]).relative_to(root))] = command
        if shutil.which("ld.lld"):
            self.link += " -fuse-ld=lld"  # in a fifth of the time
        self.precompile()

    def precompile(self):
        """Compiles the headers of the standard library once: most of the time of a small file."""
        headers = {line for name in FILES[self.tests] for file in (root / name, (root / name).with_suffix(".h"))
                   if file.exists()  # entry points have the header of the whole library
                   for line in file.read_text(encoding="utf-8").splitlines() if line.startswith("#include <")}
        source, self.headers = self.scratch / "standard.h", self.scratch / "standard.pch"
        source.write_text("\n".join(sorted(headers)) + "\n", encoding="utf-8")
        if not self.run(f"{self.compile[FILES[self.tests][0]]} -x c++-header -o {self.headers} -c {source}", 300):
            sys.exit("the headers do not compile")

    def run(self, command, timeout):
        return subprocess.run(command, shell=isinstance(command, str), cwd=self.build, capture_output=True,
                              stdin=subprocess.DEVNULL, timeout=timeout).returncode == 0

    def passes(self, tests, chosen="*"):
        try:
            return self.run([str(tests), "--gtest_brief=1", "--gtest_fail_fast", f"--gtest_filter={chosen}"], 30)
        except subprocess.TimeoutExpired:
            return False  # a mutant that never ends is noticed

    def fate(self, mutant, index):
        name, number, old, new = mutant
        source, thing, tests = (self.scratch / f"{index}{suffix}" for suffix in (".cpp", ".o", ".tests"))
        lines = (root / name).read_text(encoding="utf-8").splitlines()
        lines[number] = new
        source.write_text("\n".join(lines) + "\n", encoding="utf-8")
        compile_it = f"{self.compile[name]} -include-pch {self.headers} -o {thing} -c {source}"
        link_it = self.link.replace(f" -o {self.tests}", f" -o {tests} {thing}", 1)
        try:
            if not self.run(compile_it, 300) or not self.run(link_it, 300):
                return "does not build"
            near = NEAR.get(pathlib.Path(name).stem)
            if near and not self.passes(tests, near):
                return "killed"
            return "survived" if self.passes(tests) else "killed"
        finally:
            for file in (source, thing, tests):
                file.unlink(missing_ok=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--sample", type=int)
    parser.add_argument("--jobs", type=int, default=2)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--minutes", type=float, default=1e9)
    parser.add_argument("--build", type=pathlib.Path, default=root / "build/clang")
    parser.add_argument("--list", action="store_true")
    parser.add_argument("--record", action="store_true")
    parser.add_argument("files", nargs="*")
    options = parser.parse_args()
    if options.record and (options.files or options.sample or options.list):
        parser.error("--record: only the whole list gives figures to quote")

    mutants = []
    tests_of = {name: tests for tests, names in FILES.items() for name in names}
    for name in options.files or tests_of:
        of_file = mutants_of(name)
        if options.sample and len(of_file) > options.sample:
            of_file = sorted(random.Random(options.seed).sample(of_file, options.sample), key=lambda m: m[1])
        mutants += of_file
    # Files in turn, so that a run that is cut short has seen all of them.
    random.Random(options.seed).shuffle(mutants)
    if options.list:
        for name, number, old, new in mutants:
            print(f"{name}:{number + 1}: {normal(old)}  ->  {normal(new)}")
        print(len(mutants), "mutants")
        return 0

    reasons = allowed()
    counts = {"killed": 0, "does not build": 0, "survived": 0, "allowed": 0, "not tried": 0}
    by_file = {}
    with tempfile.TemporaryDirectory(prefix="mutants-") as scratch:
        builders = {}
        for tests in dict.fromkeys(tests_of[name] for name, *_ in mutants):
            builder = Builder(options.build.resolve(), tests, pathlib.Path(scratch) / pathlib.Path(tests).name)
            if not builder.passes(builder.build / tests):
                sys.exit("the tests fail without any mutant")
            builders[tests] = builder
        deadline = time.monotonic() + options.minutes * 60

        def try_out(numbered):
            index, mutant = numbered
            return mutant, builders[tests_of[mutant[0]]].fate(mutant, index) if time.monotonic() < deadline else "not tried"

        with concurrent.futures.ThreadPoolExecutor(options.jobs) as workers:
            for mutant, fate in workers.map(try_out, enumerate(mutants)):
                name, number, old, new = mutant
                if fate == "survived" and {(name, normal(old), normal(new)), (name, normal(old), "*")} & reasons.keys():
                    fate = "allowed"
                counts[fate] += 1
                row = by_file.setdefault(name, dict.fromkeys(counts, 0))
                row[fate] += 1
                if fate == "survived":
                    print(f"survived: {name} || {normal(old)} || {normal(new)}   (line {number + 1})", flush=True)
    for name, row in by_file.items():
        print(f"{name}: {row['killed']} killed, {row['allowed']} allowed, {row['survived']} survived, "
              f"{row['does not build']} do not build, {row['not tried']} not tried")
    if options.record and not counts["not tried"]:
        figures = [f"places {len(mutants)}", *(f"{fate.replace(' ', '_')} {count}" for fate, count in counts.items())]
        subprocess.run([root / "scripts/figures.py", "--record", "mutants", "scripts/mutate.py --record"],
                       input="\n".join(figures), text=True, check=True)
    print(f"{counts['killed'] + counts['allowed']} passed, {counts['survived']} failed")
    return counts["survived"] != 0


if __name__ == "__main__":
    sys.exit(main())
