#!/usr/bin/env python3
"""Prints the coverage in an lcov file, and each line that no test reaches.

  scripts/coverage_report.py LCOV ALLOWED [--record]

ALLOWED holds "file || the line's text || reason" for lines that cannot be reached.
"""
import pathlib
import subprocess
import sys

LEAST = 0.98
root = pathlib.Path(__file__).resolve().parents[1]
lcov, allowed_list, *options = sys.argv[1:]

allowed = {}
for line in pathlib.Path(allowed_list).read_text(encoding="utf-8").splitlines():
    if line and not line.startswith("#"):
        file, text, reason = (part.strip() for part in line.split(" || "))
        allowed[file, text] = reason

lines, branches, name = {}, {}, ""
for entry in pathlib.Path(lcov).read_text(encoding="utf-8").splitlines():
    kind, _, value = entry.partition(":")
    if kind == "SF":
        name = str(pathlib.Path(value).resolve().relative_to(root))
        lines.setdefault(name, {})
        branches.setdefault(name, {})
    elif kind == "DA":
        number, count = map(int, value.split(",")[:2])
        lines[name][number] = lines[name].get(number, 0) + count
    elif kind == "BRDA":
        line, block, branch, count = value.split(",")
        key = line, block, branch
        branches[name][key] = branches[name].get(key, 0) + (0 if count == "-" else int(count))


def share(counts):
    reached = sum(count > 0 for count in counts.values())
    return reached, len(counts), 100.0 * reached / len(counts) if counts else 100.0


print(f"{'file':38} {'lines':>18} {'branches':>18}")
for name in sorted(lines):
    print("{:38} {:4}/{:<4} {:6.2f} % {:4}/{:<4} {:6.2f} %".format(name, *share(lines[name]), *share(branches[name])))
all_lines = {(name, number): count for name in lines for number, count in lines[name].items()}
all_branches = {(name, *key): count for name in branches for key, count in branches[name].items()}
print("{:38} {:4}/{:<4} {:6.2f} % {:4}/{:<4} {:6.2f} %".format("all", *share(all_lines), *share(all_branches)))

unexplained = 0
for (name, number), count in sorted(all_lines.items()):
    if count == 0:
        text = (root / name).read_text(encoding="utf-8").splitlines()[number - 1].strip()
        reason = allowed.get((name, text))
        unexplained += reason is None
        print(f"not reached: {name}:{number}: {text}" + (f"   ({reason})" if reason else "   NO REASON GIVEN"))
enough = share(all_lines)[0] >= LEAST * len(all_lines)
if not enough:
    print(f"fewer than {LEAST:.0%} of the lines are reached")
if "--record" in options:
    figures = []
    for what, counts in (("lines", all_lines), ("branches", all_branches)):
        reached, everything, percent = share(counts)
        figures += [f"{what}_percent {percent:.2f}", f"{what}_reached {reached}", f"{what} {everything}"]
    subprocess.run([root / "scripts/figures.py", "--record", "coverage", "scripts/coverage.sh --record"],
                   input="\n".join(figures), text=True, check=True)
failed = (not enough) + (unexplained > 0)
print(f"{2 - failed} passed, {failed} failed")
sys.exit(failed != 0)
