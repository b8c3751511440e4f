#!/usr/bin/env python3
"""Random batch model files, sound and unsound: the same ones in every run.

    tests/support/random_models.py COUNT FOLDER
"""
import random
import sys
from pathlib import Path

from model_files import bar_lines, batch_text

FAMILIES = """I W CS VS CVS HP L 2L_ASSIMETRICO CART ICAR Z ZI ZS ZSI PC PSA LLAM LLAM_EN UENR UUE IENR CA [ ][ []
ULAM UAP UULM UIULM EC RET BM TRC TQ TB TC LX LZLM 2L XPTO HEB""".split()
NUMBERS = ["abc", "", "1,5", "1e3", "-0", " 7", "1e999", "0x10", "1.2.3", "nan", "-1e-320"]
LINE_ENDS = ["\n", "\r\n"]


def number(chance, unsound, low=-20000, high=20000):
    if unsound and chance.random() < 0.03:
        return chance.choice(NUMBERS)
    return f"{chance.uniform(low, high):.{chance.randrange(6)}f}"


def section(chance, unsound):
    dimensions = [number(chance, unsound, 0.5, 400) for _ in range(chance.randrange(0 if unsound else 4, 8))]
    text = " ".join([chance.choice(FAMILIES), *dimensions])
    return text[:47] if not unsound or chance.random() < 0.9 else text


def model(seed):
    """Every second one is unsound."""
    chance = random.Random(seed)
    unsound = seed % 2 == 1
    sections = [section(chance, unsound) for _ in range(chance.randrange(1, 9))]
    ends = lambda: [number(chance, unsound) for _ in range(3)]  # noqa: E731
    bars = []
    for _ in range(chance.randrange(40)):
        start = ends()
        end = [*start[:2], number(chance, unsound)] if chance.random() < 0.3 else ends()
        bars.append(bar_lines(chance.choice(sections), start, end, number(chance, unsound, -7, 7)))
    text = batch_text(bars, chance.choice(["mm", "cm", "m"]), f"model {seed}", line_end=chance.choice(LINE_ENDS),
                      count=len(bars) + chance.choice([-1, 0, 1]) if unsound else None)
    if unsound and chance.random() < 0.3:  # cut, or a line lost
        lines = text.split("\n")
        at = chance.randrange(5, len(lines) + 1)
        del lines[at : at + chance.randrange(1, 40)]
        text = "\n".join(lines)
    return text


def write(count, folder):
    """random0.txt, random1.txt and so on."""
    folder.mkdir(parents=True, exist_ok=True)
    for seed in range(count):
        (folder / f"random{seed}.txt").write_text(model(seed), encoding="ascii", newline="")


if __name__ == "__main__":
    write(int(sys.argv[1]), Path(sys.argv[2]))
