#!/usr/bin/env python3
"""Puts the figures of the last measurements into the documents.

    scripts/figures.py                    writes them
    scripts/figures.py --check            says which documents show others; ends with "N passed, N failed"
    scripts/figures.py --record NAME COMMAND [--append] <LINES
                                          keeps new ones, then writes them

docs/figures/NAME.json holds what one command measured, with date, machine and commit; the commands
write it when called with --record, from lines "key value" on standard input. With --append earlier
runs stay; otherwise there is one. A document marks the places, in any Markdown file:

    <!-- figure: coverage.core.lines_percent -->98.94<!-- /figure -->
    <!-- figure: benchmarks.goals -->
    a whole table (see TABLES below)
    <!-- /figure -->

NAME.key is a value of the newest column, or of each of its runs; NAME.date, NAME.commit and
NAME.machine are known too. Runs are of one column when they have one label, or without labels one
commit and machine. A label is given by hand in the file, and so are columns taken out.
"""

import datetime
import itertools
import json
import os
import pathlib
import platform
import re
import subprocess
import sys

root = pathlib.Path(__file__).resolve().parents[1]
folder = root / "docs/figures"
sys.path.insert(0, str(root / "bench"))
import table as bench_table  # noqa: E402  pylint: disable=wrong-import-position

MARK = re.compile(r"(<!-- figure: (\S+) -->)(.*?)(<!-- /figure -->)", re.DOTALL)


def shown(value):
    """A value as documents have it."""
    if isinstance(value, str) and re.fullmatch(r"\d{4}-\d\d-\d\d", value):
        day = datetime.date.fromisoformat(value)
        return f"{day.day} {day:%B %Y}"
    if isinstance(value, float):
        return f"{value:.2f}" if value == round(value, 2) and abs(value) < 10 else f"{value:g}"
    return f"{value:,}" if isinstance(value, int) else value


def markdown(rows):
    return "\n" + "\n".join("| " + " | ".join(row) + " |" if row else "|" + "---|" * len(rows[0]) for row in rows) + "\n"


class Results:
    """What one file of docs/figures holds."""

    def __init__(self, name):
        path = folder / f"{name}.json"
        if not path.is_file():
            raise KeyError(f"there is no {path.relative_to(root)}")
        self.name, self.runs = name, json.loads(path.read_text(encoding="utf-8"))["runs"]

    def columns(self):
        """Lists of runs that belong together, in the file's order."""
        return [list(runs) for _, runs in
                itertools.groupby(self.runs, lambda run: run.get("label") or (run["commit"], run["machine"]))]

    def title(self, column):
        return column[0].get("label") or f"{shown(column[0]['date'])}, {column[0]['commit']}"

    @staticmethod
    def values(column, key):
        return [run["values"][key] for run in column if key in run["values"]]

    def keys(self):
        return dict.fromkeys(key for run in self.runs for key in run["values"])

    def text(self, key):
        newest = self.columns()[-1]
        if key in ("date", "commit", "machine"):
            return shown(newest[-1][key])
        found = self.values(newest, key)
        if not found:
            raise KeyError(f"{self.name} has no {key}")
        return ", ".join(map(shown, found))


def goals(results):
    """The table of goals: a row each that was measured, a column each of runs."""
    measured = [goal for goal in bench_table.GOALS if goal[1] in results.keys()]
    columns = [column for column in results.columns() if any(results.values(column, goal[1]) for goal in measured)]
    rows = [["what", "goal", *map(results.title, columns)], None]
    for what, key, limit, unit in measured:
        cells = []
        for column in columns:
            found = results.values(column, key)
            missed = sum(bench_table.verdict(value, limit) == "MISSED" for value in found)
            cells.append(", ".join(map(shown, found)) + (
                "" if not missed else ": missed" if missed == len(found) else f": missed in {missed} of {len(found)}"))
        rows.append([what.strip(), bench_table.goal(limit, unit), *cells])
    return markdown(rows)


def instructions(results):
    keys = {"instructions_all": "mixed", "instructions_simple": "simple", "instructions_built_up": "built-up"}
    rows = [["instructions a bar, reading included", *keys.values()], None]
    for column in results.columns():
        cells = [", ".join(map(shown, results.values(column, key))) for key in keys]
        if any(cells):
            rows.append([results.title(column), *cells])
    return markdown(rows)


def writers(results):
    rows = [["entities per second", "kept in memory", "one write", "flushed line by line"], None]
    newest = results.columns()[-1]
    for key, name in {"ours": "ours", "ifcplusplus": "IfcPlusPlus", "webifc": "web-ifc"}.items():
        rows.append([name, *(", ".join(map(shown, results.values(newest, f"{key}_{way}_per_s"))) or "-"
                             for way in ("kept", "written", "flushed"))])
    return markdown(rows)


def fuzzing(results):
    rows = [["target", "run", "minutes", "executions", "edges reached", "findings"], None]
    for target in dict.fromkeys(key.split(".")[0] for key in results.keys() if "." in key):
        for run in results.runs:
            cells = [run["values"].get(f"{target}.{what}") for what in ("executions", "edges", "findings")]
            if cells[0] is not None:
                rows.append([f"`{target}`", shown(run["date"]) + ", " + run["commit"], shown(run["values"]["minutes"]),
                             *("-" if cell is None else shown(cell) for cell in cells)])
    return markdown(rows)


def coverage(results):
    groups = {"core": "the core", "library": "`library/`", "program": "`cli/`"}
    rows = [["date", "what", "lines", "branches"], None]
    for key, name in groups.items():
        cells = [f"{results.text(f'{key}.{what}_reached')} of {results.text(f'{key}.{what}')}: "
                 f"{results.text(f'{key}.{what}_percent')} %" for what in ("lines", "branches")]
        rows.append([results.text("date"), name, *cells])
    return markdown(rows)


def mutants(results):
    columns = {"date": "date", "places": "places", "killed": "noticed by the tests", "does_not_build": "do not compile",
               "allowed": "cannot be seen", "survived": "survive"}
    return markdown([[*columns.values()], None, [results.text(key) for key in columns]])


TABLES = {
    "benchmarks.goals": goals, "benchmarks.instructions": instructions, "benchmarks.writers": writers,
    "coverage.table": coverage, "fuzzing.runs": fuzzing, "mutants.table": mutants,
}


def figure(mark):
    name, _, key = mark.partition(".")
    results = Results(name)
    return TABLES[mark](results) if mark in TABLES else results.text(key)


def documents():
    names = subprocess.run(["git", "ls-files", "-co", "--exclude-standard", "*.md"], cwd=root, check=True,
                           capture_output=True, text=True).stdout.split("\n")
    return [root / name for name in names if name and "<!-- figure:" in (root / name).read_text(encoding="utf-8")]


def with_figures(text):
    if text.count("<!-- figure:") != len(MARK.findall(text)) or any("<!-- figure:" in m[3] for m in MARK.finditer(text)):
        raise KeyError("a place that begins does not end")
    return MARK.sub(lambda match: match[1] + figure(match[2]) + match[4], text)


def write():
    failed = False
    for document in documents():
        text, name = document.read_text(encoding="utf-8"), document.relative_to(root)
        try:
            if (new := with_figures(text)) != text:
                document.write_text(new, encoding="utf-8")
                print(f"{name}: written")
        except KeyError as fault:
            failed = True
            print(f"{name}: not written: {fault.args[0]}", file=sys.stderr)
    return failed


def check():
    passed = failed = 0
    for document in documents():
        text, name = document.read_text(encoding="utf-8"), document.relative_to(root)
        faults = []
        try:
            with_figures(text)
            for match in MARK.finditer(text):
                if match[3] != figure(match[2]):
                    faults.append(f"{name}:{text.count(chr(10), 0, match.start()) + 1}: {match[2]} is "
                                  f"{figure(match[2]).strip()}\n  not {match[3].strip()}")
        except KeyError as fault:
            faults.append(f"{name}: {fault.args[0]}")
        passed, failed = passed + (not faults), failed + bool(faults)
        for fault in faults:
            print(fault)
    if failed:
        print("scripts/figures.py writes them")
    print(f"{passed} passed, {failed} failed")
    return failed > 0 or passed == 0


def output(*command):
    return subprocess.run(command, cwd=root, check=True, capture_output=True, text=True).stdout.strip()


def machine():
    """What the figures depend on, without the name of the machine."""
    lines = pathlib.Path("/proc/cpuinfo").read_text(encoding="utf-8").splitlines()
    processor = next((line.split(":")[1].strip() for line in lines if line.startswith("model name")), platform.machine())
    release = dict(line.split("=", 1) for line in pathlib.Path("/etc/os-release").read_text(encoding="utf-8").splitlines() if "=" in line)
    return (f"{os.cpu_count()} cores, {' '.join(processor.split())}, Linux {platform.release().split('-')[0]}, "
            f"{release.get('PRETTY_NAME', 'unknown system').strip(chr(34))}")


def number(text):
    return int(text) if re.fullmatch(r"-?\d+", text) else float(text)


def record(name, command, append):
    values = {key: number(value) for key, value in map(str.split, filter(str.strip, sys.stdin))}
    if not values:
        sys.exit(f"figures.py: no values for {name}")
    commit = output("git", "rev-parse", "--short=7", "HEAD")
    # Figures of an edited tree belong to no commit; the figures themselves do not count.
    if output("git", "status", "--porcelain", "--", ".", ":!docs", ":!*.md"):
        commit += " and edits"
    run = {"date": datetime.date.today().isoformat(), "commit": commit, "machine": machine(), "values": values}
    path = folder / f"{name}.json"
    runs = Results(name).runs if append and path.is_file() else []
    folder.mkdir(exist_ok=True)
    path.write_text(json.dumps({"command": command, "runs": [*runs, run]}, indent=2) + "\n", encoding="utf-8")
    print(f"recorded in {path.relative_to(root)}")


def main(arguments):
    append = "--append" in arguments
    arguments = [argument for argument in arguments if argument != "--append"]
    if arguments == ["--check"]:
        return check()
    if arguments[:1] == ["--record"] and len(arguments) == 3:
        record(*arguments[1:], append)
    elif arguments:
        print(__doc__)
        return 2
    return write()


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
