#!/usr/bin/env python3
"""Batch model files and exchange files, for tests, the fuzzer's seeds and the samples.

    tests/support/model_files.py FILE      prints an exchange file without its random identifiers
"""
import re
import sys
from pathlib import Path


def bar_lines(section, start=(0, 0, 0), end=(1000, 0, 0), angle=0, name="bar", number=1, group="note"):
    """The twelve lines of a bar. Name, material, number and group are for people."""
    return [name, *map(str, start), *map(str, end), str(angle), section, "A36", str(number), group]


def batch_text(bars, unit="mm", title="model", nodes=1, sections=2, count=None, line_end="\n"):
    """The file of bars, each a list of lines. `count` is said instead of how many there are."""
    header = [nodes, sections, title, unit, len(bars) if count is None else count]
    lines = [*map(str, header), *(line for bar in bars for line in bar)]
    return "".join(line + line_end for line in lines)


def without_global_ids(data):
    """The bytes of an exchange file without the identifiers of generated lines; those of the preamble, whose
    lines have a blank before the equals sign, are constants."""
    return re.sub(rb"(?m)^(#\d+= [A-Z]+\()'[0-3][0-9A-Za-z_$]{21}'", rb"\1'GlobalId'", data)


if __name__ == "__main__":
    sys.stdout.buffer.write(without_global_ids(Path(sys.argv[1]).read_bytes()))
