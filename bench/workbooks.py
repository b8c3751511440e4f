#!/usr/bin/env python3
"""Writes large workbooks to read: bench/workbooks.py BARS FOLDER makes saf.xlsx and tables.xlsx, a hall of
so many members in rows of ten, each with its name, layer and turn."""
import pathlib
import sys

root = pathlib.Path(__file__).resolve().parents[1]
sys.path.insert(0, str(root / "tests/saf"))
import two_storey  # noqa: E402  pylint: disable=wrong-import-position

ROW = 10


def frame(bars):
    """Members end to end along X, row by row; nodes by their places, since looking each up takes forever."""
    made = two_storey.Frame()
    for index in range(bars):
        row, place = divmod(index, ROW)
        for x in (place, place + 1):
            made.nodes.setdefault(f"N{row}_{x}", (x * 1.25, row * 0.5, row % 7 * 3.0))
        made.members.append({"name": f"B{index}", "kind": "Beam", "section": list(two_storey.SECTIONS)[index % 4],
                             "nodes": (f"N{row}_{place}", f"N{row}_{place + 1}"),
                             "lcs": ("z by vector", index % 360, (0, 0, 1)), "line": "Top" if index % 3 else "Centre",
                             "layer": f"Level {row % 7}", "type": "frame-beam", "shift": (0, 0, 0), "turns": index % 4})
    return made


def main():
    bars, folder = int(sys.argv[1]), pathlib.Path(sys.argv[2])
    folder.mkdir(parents=True, exist_ok=True)
    made = frame(bars)
    two_storey.write_workbook(folder / "saf.xlsx", saf_sheets(made))
    two_storey.write_workbook(folder / "tables.xlsx", two_storey.tables(made))


def saf_sheets(made):
    """Without supports, which name the corners of another frame."""
    corners, two_storey.CORNERS = two_storey.CORNERS, ()
    try:
        return two_storey.sheets(made)
    finally:
        two_storey.CORNERS = corners


if __name__ == "__main__":
    main()
