#!/usr/bin/env python3
"""Exports models through the DLL and through the exporter of the page: each must give the file of the program,
GlobalIds masked, and the page its problems in both languages. The samples, 300 random models, half of them
unsound, and the fuzzers' models.

    tests/module/same_as_page.py EXPORTER.wasm LINUX_BUILD WINDOWS_BUILD
"""
import re
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

root = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(root / "tests/support"))
import outcome  # noqa: E402
import random_models  # noqa: E402
from model_files import without_global_ids  # noqa: E402

# An angle of 10^18 radians: the sine of the DLL's run-time library has fewer digits there.
OTHER_DIGITS = {"batch_file-found-f6d5a600b0.txt"}

if len(sys.argv) != 4:
    sys.exit(__doc__)
exporter, linux, windows = (Path(argument).resolve() for argument in sys.argv[1:])


def windows_path(path):
    return "Z:" + str(path).replace("/", "\\")


def content(path):
    return without_global_ids(path.read_bytes())


with tempfile.TemporaryDirectory(prefix="same-as-page-") as work:
    models = Path(work) / "models"
    random_models.write(300, models)
    for sample in [*root.glob("samples/*.txt"), *root.glob("samples/*.json")]:
        shutil.copy(sample, models)
    for kind, extension in (("batch_file", ".txt"), ("json_model", ".json")):
        for seed in sorted((root / "fuzz/corpus" / kind).iterdir()):
            shutil.copy(seed, models / f"{kind}-{seed.stem}{extension}")

    page = subprocess.run(["node", root / "page/test/exporter.test.mjs", exporter, linux / "exportifc", *sorted(models.iterdir())],
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
    counts = re.search(r"(\d+) passed, (\d+) failed\s*$", page.stdout)
    outcome.check("the page", counts is not None and counts[2] == "0" and int(counts[1]) > 1000, page.stdout[-3000:])
    outcome.passed += int(counts[1]) if counts else 0

    # The module replaces models by their exports: of each a copy, all exported by one process.
    exports = Path(work) / "exports"
    exports.mkdir()
    wanted = {}
    for model in sorted(models.glob("*.txt")):
        program = Path(work) / "program.ifc"
        program.unlink(missing_ok=True)
        subprocess.run([linux / "exportifc", "export", "-q", model, "-o", program], stderr=subprocess.DEVNULL, check=False)
        if not program.exists() or model.name in OTHER_DIGITS:
            continue  # what the program refuses, the module writes in part
        wanted[model.name] = content(program)
        shutil.copy(model, exports)
    run = subprocess.run([root / "scripts/wine.sh", windows / "tests/reliability/module_probe.exe",
                          windows_path(windows / "exportIFC.dll"), "folder", windows_path(exports)],
                         capture_output=True, text=True, errors="replace", check=False)
    outcome.check("the DLL exports them all", run.returncode == 0 and run.stdout.count("returned 1\n") == len(wanted),
                  run.stdout[-500:] + run.stderr[-500:])
    for name, exchange_file in wanted.items():
        outcome.check(f"{name}: the DLL", content(exports / name) == exchange_file)
    outcome.check("most models are compared", len(wanted) > 300, str(len(wanted)))
outcome.end()
