#!/usr/bin/env python3
"""Random calls of the command-line program over a folder of models, pages and IFC files: a file that was
read, and every other that no option named as output, has its bytes afterwards.

    tests/cli/random_files.py PROGRAM [--wine] [--calls N] [--seed N]

The calls are the same for one seed. A call that fails prints its arguments; --seed and the number of the
call repeat it. Ends with "N passed, N failed".
"""

import argparse
import os
import random
import subprocess
import sys
import tempfile
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent
MODELS = Path(__file__).resolve().parent / "models"

PAGE = "<title>exportIFC</title>@EXPORTIFC_NAME@@EXPORTIFC_MODEL@"
FOREIGN = "ISO-10303-21;\r\nHEADER;\r\nFILE_NAME('of another program');\r\n"
NAMES = ["a.json", "B.JSON", "c.txt", "d.ifc", "a.ifc", "n.html", "a.html", "t.html", "W.svg", "sub/a.json", "sub/A.ifc",
         "sub/c.html", "bad.json"]
NEW = ["new.ifc", "NEW.ifc", "new.html", "sub/new.json", "x/new.ifc"]


def fill(folder):
    """The folder of one call, and what every name in it holds."""
    (folder / "sub").mkdir()
    one, batch = (MODELS / "one.json").read_text(), (MODELS / "plain.txt").read_bytes()
    contents = {"t.html": PAGE, "n.html": "<p>notes", "a.html": "<p>mine", "a.ifc": FOREIGN, "d.ifc": FOREIGN,
                "sub/A.ifc": FOREIGN, "W.svg": "<svg mine>", "sub/c.html": PAGE, "bad.json": "{", "a.json": one,
                "B.JSON": one, "sub/a.json": one}
    for name, content in contents.items():
        (folder / name).write_text(content)
    (folder / "c.txt").write_bytes(batch)
    (folder / "link.json").symlink_to("a.json")
    (folder / "link.ifc").symlink_to("sub/a.json")
    (folder / "open.ifc").symlink_to("sub/later.ifc")
    (folder / "here").symlink_to(".")
    os.link(folder / "a.json", folder / "hard.ifc")
    os.link(folder / "c.txt", folder / "hard.html")


def spelled(dice, name, wine):
    """Another way to say the name."""
    ways = [name, name, name, "./" + name, "sub/../" + name, "here/" + name]
    if wine:
        ways += [name.upper(), name.lower(), name + ".", name + " ", name.replace("/", "\\")]
    return dice.choice(ways)


def some_call(dice, wine):
    """Arguments, the inputs and the outputs that they name."""
    names = [*NAMES, "link.json", "link.ifc", "open.ifc", "hard.ifc", "hard.html"]
    used = []

    def any_name():
        used.append(dice.choice(names))
        return spelled(dice, used[-1], wine)

    def output():  # an input by the same or another of its names, often
        return spelled(dice, dice.choice(used if dice.random() < 0.4 else names + NEW), wine)

    command = dice.choice(["export", "export", "export", "view", "view", "convert", "profiles", "check"])
    inputs, outputs = [], []
    arguments = [command]
    if command == "profiles":
        arguments += ["W", "--svg", dice.choice([".", "sub", "here", "W.svg", "new"])]
        return arguments, inputs, outputs
    count = dice.choice([1, 1, 2, 3]) if command in ("export", "check") else 1
    inputs = [any_name() for _ in range(count)]
    arguments += inputs
    if command == "convert" or (command in ("export", "view") and dice.random() < 0.6):
        outputs.append(output())
        arguments += ["-o", outputs[0]]
    elif command == "export" and dice.random() < 0.5:
        arguments += ["--out-dir", dice.choice([".", "sub", "here", "new", "here/sub"])]
    if command == "export":
        arguments += dice.choice([[], ["--html"], ["--html"]]) + dice.choice([[], ["--jobs", "2"]])
        arguments += dice.choice([[], ["--strict"], ["-q"]])
    if command in ("export", "view") and dice.random() < 0.8:
        inputs = [*inputs, dice.choice(["t.html", "t.html", any_name()])]
        arguments += ["--template", inputs[-1]]
    return arguments, inputs, outputs


def state(folder):
    """The bytes behind every name, links followed."""
    return {str(p.relative_to(folder)): p.read_bytes() for p in folder.rglob("*") if p.is_file()}


def behind(folder, path, wine):
    """The file that a path leads to, there or not; by the test's own reading of it."""
    at = str(folder)
    for part in (path.replace("\\", "/") if wine else path).split("/"):
        if wine and part not in (".", ".."):
            part = part.rstrip(". ")
            there = os.listdir(at) if os.path.isdir(at) else []
            part = next((name for name in there if name.lower() == part.lower()), part)
        at = os.path.realpath(os.path.join(at, part))
    return at


def is_one_of(file, paths):
    return any(file == path or (os.path.exists(file) and os.path.exists(path) and os.path.samefile(file, path))
               for path in paths)


def lost(folder, before, inputs, outputs):
    """The files that have changed, of those that were read and of all others that no option named."""
    after = state(folder)
    return ([name for name, content in before.items()
             if after.get(name) != content and not is_one_of(os.path.realpath(folder / name), outputs)]
            + [path for path, content in inputs.items() if Path(path).read_bytes() != content])


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("program", type=Path)
    parser.add_argument("--wine", action="store_true")
    parser.add_argument("--calls", type=int, default=400)
    parser.add_argument("--seed", type=int, default=1)
    options = parser.parse_args()
    if options.wine and "EXPORTIFC_CLI_SESSION" not in os.environ:
        os.environ["EXPORTIFC_CLI_SESSION"] = "1"  # one Wine session for all calls
        os.execv(str(ROOT / "scripts/wine.sh"), ["wine.sh", "--session", sys.executable, *sys.argv])
    before_it = [str(ROOT / "scripts/wine.sh")] if options.wine else []
    codes = {}
    passed = failed = 0
    for number in range(options.calls):
        dice = random.Random(f"{options.seed}/{number}")
        arguments, inputs, outputs = some_call(dice, options.wine)
        with tempfile.TemporaryDirectory(prefix="exportifc-files-") as name:
            folder = Path(name)
            fill(folder)
            before = state(folder)
            read, named = ([os.path.realpath(behind(folder, p, options.wine)) for p in paths]
                           for paths in (inputs, outputs))
            kept = {path: open(path, "rb").read() for path in read if os.path.isfile(path)}
            result = subprocess.run([*before_it, str(options.program.resolve()), *arguments], cwd=folder,
                                    stdin=subprocess.DEVNULL, capture_output=True, timeout=600,
                                    env=os.environ | {"EXPORTIFC_LANG": "C"})
            codes[result.returncode] = codes.get(result.returncode, 0) + 1
            gone = lost(folder, before, kept, named)
        if gone or result.returncode not in range(5):
            failed += 1
            print(f"failed: call {number}: {arguments}: code {result.returncode}, lost {gone}\n{result.stderr.decode()}",
                  flush=True)
        else:
            passed += 1
    # A run in which every call is refused, or none, would show nothing.
    for wanted in (0, 2, 3):
        if codes.get(wanted, 0) < options.calls / 20:
            failed += 1
            print(f"failed: only {codes.get(wanted, 0)} of {options.calls} calls end with {wanted}")
    print("exit codes:", dict(sorted(codes.items())))
    print(f"{passed} passed, {failed} failed")
    return failed != 0


if __name__ == "__main__":
    sys.exit(main())
