#!/usr/bin/env python3
"""Arrays to a file by the Python package, against the program with the JSON of the same model.

    EXPORTIFC_LIBRARY=… PYTHONPATH=python bench/python_arrays.py PROGRAM BARS ROUNDS FOLDER

Prints lines "name value". Both in turn, each first every other time, and the median of the ratios; the
program with its start, the package within a Python that runs, as a script or a notebook has it.
"""
import json
import pathlib
import statistics
import subprocess
import sys
import time

import numpy

import exportifc

program, bars, rounds, folder = sys.argv[1], int(sys.argv[2]), int(sys.argv[3]), pathlib.Path(sys.argv[4])
# The sample over and over, as the other benchmarks have it: each round moved, by a number that leaves coordinates uneven.
sample = json.loads((pathlib.Path(__file__).parents[1] / "samples/galpao.json").read_text(encoding="utf-8"))
rounds_of_it = -(-bars // len(sample["bars"]))
nodes, ends, names = [], [], []
for turn in range(rounds_of_it):
    nodes.append(numpy.array(sample["nodes"]) + [31.257 * turn, 0.0, 0.0])
    ends.append(numpy.array([bar["nodes"] for bar in sample["bars"]]) + turn * len(sample["nodes"]))
    names += [sample["sections"][bar["section"]]["text"] for bar in sample["bars"]]
nodes, ends, names = numpy.concatenate(nodes), numpy.concatenate(ends)[:bars], names[:bars]

model_file, by_package, by_program = folder / "arrays.json", folder / "arrays_package.ifc", folder / "arrays_program.ifc"
model_file.write_text(json.dumps(exportifc.frame(nodes, ends, names)), encoding="utf-8")


def package():
    exportifc.export(exportifc.frame(nodes, ends, names), by_package)


def command():
    subprocess.run([program, "export", "-q", model_file, "-o", by_program], check=True)


def seconds(what):
    start = time.perf_counter()
    what()
    return time.perf_counter() - start


package(), command()
assert by_package.stat().st_size == by_program.stat().st_size, "the two wrote different models"
found = {package: [], command: []}
for turn in range(rounds):
    for what in (package, command) if turn % 2 else (command, package):
        found[what].append(seconds(what))
print("python_ratio", statistics.median(map(float.__truediv__, found[package], found[command])))
print("python_ms", 1000 * statistics.median(found[package]))
print("python_program_ms", 1000 * statistics.median(found[command]))
for file in (model_file, by_package, by_program):
    file.unlink()
