#!/usr/bin/env python3
"""Prints the coverage in lcov files, one a group of rooms, and each line that no test reaches.

  scripts/coverage_report.py ALLOWED GROUP.lcov... [--record]

ALLOWED holds "file || the line's text || reason" for lines that cannot be reached.
"""
import pathlib
import subprocess
import sys

# Of each group the rooms, and how many of their lines are reached at least.
ROOMS = {"core": ("plugin", "model", "step", "elements", "profiles"), "library": ("library",), "program": ("cli",)}
LEAST = {"core": 0.98, "library": 0.95, "program": 0.95}
root = pathlib.Path(__file__).resolve().parents[1]
allowed_list, *others = sys.argv[1:]
record = "--record" in others
groups = [pathlib.Path(other) for other in others if other != "--record"]

allowed = {}
for line in pathlib.Path(allowed_list).read_text(encoding="utf-8").splitlines():
    if line and not line.startswith("#"):
        # The line's text may hold the mark, too.
        file, rest = line.split(" || ", 1)
        text, reason = rest.rsplit(" || ", 1)
        allowed[file.strip(), text.strip()] = reason.strip()


def counts_of(lcov):
    """How often each line and each branch was reached: by file and line, by file and branch."""
    lines, branches, name, counts = {}, {}, "", False
    for entry in lcov.read_text(encoding="utf-8").splitlines():
        kind, _, value = entry.partition(":")
        if kind == "SF":
            path = pathlib.Path(value).resolve()  # a compiler cache names it from the build folder
            counts = any(path.is_relative_to(root / room) for room in ROOMS[lcov.stem])
            name = str(path.relative_to(root)) if counts else ""
        elif not counts:
            continue
        elif kind == "DA":
            number, count = map(int, value.split(",")[:2])
            lines[name, number] = lines.get((name, number), 0) + count
        elif kind == "BRDA":
            line, block, branch, count = value.split(",")
            key = name, line, block, branch
            branches[key] = branches.get(key, 0) + (0 if count == "-" else int(count))
    return lines, branches


def share(counts):
    reached = sum(count > 0 for count in counts.values())
    return reached, len(counts), 100.0 * reached / len(counts) if counts else 100.0


def show(what, lines, branches):
    print("{:38} {:4}/{:<4} {:6.2f} % {:4}/{:<4} {:6.2f} %".format(what, *share(lines), *share(branches)))


def of_file(counts, name):
    return {key: count for key, count in counts.items() if key[0] == name}


failed, figures, used, without_reason = 0, [], set(), []
print(f"{'file':38} {'lines':>18} {'branches':>18}")
for group in groups:
    lines, branches = counts_of(group)
    for name in sorted({name for name, _ in lines}):
        show(name, of_file(lines, name), of_file(branches, name))
    show(f"all of {group.stem}", lines, branches)
    unexplained = []
    for (name, number), count in sorted(lines.items()):
        if count == 0:
            text = (root / name).read_text(encoding="utf-8").splitlines()[number - 1].strip()
            reason = allowed.get((name, text))
            used.add((name, text))
            if reason:
                print(f"not reached: {name}:{number}: {text}   ({reason})")
            else:
                unexplained.append(f"not reached, and no reason given: {name}:{number}: {text}")
    enough = share(lines)[0] >= LEAST[group.stem] * len(lines)
    if not enough:
        print(f"fewer than {LEAST[group.stem]:.0%} of the lines of {group.stem} are reached")
    failed += (not enough) + bool(unexplained)
    without_reason += unexplained
    for what, counts in (("lines", lines), ("branches", branches)):
        reached, everything, percent = share(counts)
        figures += [f"{group.stem}.{what}_percent {percent:.2f}", f"{group.stem}.{what}_reached {reached}",
                    f"{group.stem}.{what} {everything}"]
# Not a fault: some depend on who runs the tests, and on the moment.
for name, text in sorted(allowed.keys() - used):
    print(f"reached after all, or gone: {name}: {text}")
for line in without_reason:  # last, where a long log is read
    print(line)
if record:
    subprocess.run([root / "scripts/figures.py", "--record", "coverage", "scripts/coverage.sh --record"],
                   input="\n".join(figures), text=True, check=True)
print(f"{2 * len(groups) - failed} passed, {failed} failed")
sys.exit(failed != 0)
