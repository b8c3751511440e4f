#!/usr/bin/env python3
"""Generates the sample models in this folder.

galpao    a steel warehouse, in metres
familias  one bar for each section family, in millimetres

Each is written twice: as a batch model file (.txt; five header lines, then twelve lines per bar) and
as a JSON model (.json), which also tells types, visibility and quarter turns.
The output depends on nothing but these scripts, so the files can be checked in and compared.
"""

import argparse
import json
import math
import sys
from collections import Counter
from dataclasses import dataclass, field
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "tests/support"))
import model_files  # noqa: E402

# --- the model -------------------------------------------------------------------------------

# The module takes 3.1415 for half a turn, so this angle is the one it turns into exactly 90 degrees.
QUARTER_TURN = 1.57075

# Bar type codes of the host. Frame types go to one assembly, truss types to another, the rest to the storey.
MEMBER = 0
FRAME_BEAM = 1
FLOOR_BEAM = 2
TRUSS_CHORD = 3
COLUMN = 4
BRACING = 5
CRANE_BEAM = 6
WIND_COLUMN = 7
STAIR = 8
TRUSS_WEB = 9


@dataclass(frozen=True)
class Node:
    x: float  # in the model's unit; Z points up
    y: float
    z: float


@dataclass(frozen=True)
class Section:
    text: str  # family word and dimensions; the dimensions are millimetres whatever the model's unit

    @property
    def family(self):
        return self.text.split()[0]

    @property
    def dims(self):
        return [float(word) for word in self.text.split()[1:]]


@dataclass(frozen=True)
class Bar:
    start: int  # index of a node
    end: int
    section: int  # index of a section
    group: str  # structural system, for people only
    type: int = MEMBER
    angle: float = 0.0  # radians about the bar axis
    quarter_turns: int = 0  # on top of the angle
    visible: bool = True


def index_of(item, items, seen):
    """Index of an item in a list, appended if it is new; `seen` maps items to indexes."""
    if item not in seen:
        seen[item] = len(items)
        items.append(item)
    return seen[item]


@dataclass
class Model:
    title: str
    unit: str
    nodes: list = field(default_factory=list)
    sections: list = field(default_factory=list)
    bars: list = field(default_factory=list)
    seen: dict = field(default_factory=dict, repr=False)

    def line(self, points, section, group, **more):
        """Adds one bar between each two neighbours of a list of points; equal points share a node."""
        # Rounded, so that a point reached by two sums is one node.
        nodes = [index_of(Node(*(round(c, 6) for c in p)), self.nodes, self.seen) for p in points]
        section = index_of(Section(section), self.sections, self.seen)
        for start, end in zip(nodes, nodes[1:]):
            self.bars.append(Bar(start, end, section, group, **more))


# --- the warehouse ---------------------------------------------------------------------------
#
# X runs across, Y along the building, Z up. At angle 0 a section's depth stands upright in a
# horizontal bar and lies along X in an upright one.

SPAN = 20.0
PANEL = 2.5  # truss panel and purlin spacing
BAY = 6.0
BAYS = 5
GIRT, CRANE, BOTTOM, EAVE = 3.0, 5.0, 7.0, 8.0  # levels; BOTTOM is the lower chord
SLOPE = 0.1
CRANE_REACH = 0.75  # from column to crane beam

FRAMES = [BAY * i for i in range(BAYS + 1)]
GABLES = [FRAMES[0], FRAMES[-1]]
BRACED_BAYS = [(FRAMES[0], FRAMES[1]), (FRAMES[-2], FRAMES[-1])]
PURLIN_LINES = [PANEL * i for i in range(int(SPAN / PANEL) + 1)]
SIDES = [0.0, SPAN]
RIDGE = SPAN / 2


def roof(x):
    return EAVE + SLOPE * min(x, SPAN - x)


def cross(model, a, b, c, d, section, group):
    """Two diagonals of the panel a-b-c-d."""
    model.line([a, c], section, group, type=BRACING)
    model.line([b, d], section, group, type=BRACING)


def truss_frames(m):
    for y in FRAMES[1:-1]:
        for x in SIDES:
            m.line([(x, y, z) for z in (0, GIRT, CRANE)], "CS 350 350 16 9.5", "Pilares", type=COLUMN)
            m.line([(x, y, z) for z in (CRANE, BOTTOM, EAVE)], "W 352 171 9.8 6.9", "Pilares", type=COLUMN)

        xs = PURLIN_LINES
        m.line([(x, y, roof(x)) for x in xs], "][ 150 50 4.75 10", "Banzo superior", type=TRUSS_CHORD)
        m.line([(x, y, BOTTOM) for x in xs], "2L 75 75 8 8 10", "Banzo inferior", type=TRUSS_CHORD)
        for x in xs[1:-1]:
            m.line([(x, y, BOTTOM), (x, y, roof(x))], "TUBO 73 73 4 4", "Montantes", type=TRUSS_WEB)
        for left, right in zip(xs, xs[1:]):
            # The diagonals fall towards the middle, so they are in tension under gravity.
            low, high = (right, left) if right <= RIDGE else (left, right)
            section = "2L 64 64 6.3 6.3 10" if high in SIDES else "LX 50 50 5 5 8"
            m.line([(low, y, BOTTOM), (high, y, roof(high))], section, "Diagonais", type=TRUSS_WEB)


def gable_frames(m):
    for y in GABLES:
        for x in SIDES:
            m.line([(x, y, z) for z in (0, GIRT, CRANE, BOTTOM, EAVE)],
                   "HP 254 254 14.2 14.2", "Pilares de oitao", type=COLUMN)
        m.line([(x, y, roof(x)) for x in PURLIN_LINES], "VS 300 150 8 6.3", "Vigas de oitao", type=FRAME_BEAM)

        for x in (5.0, 10.0, 15.0):
            levels = [0, GIRT, CRANE, BOTTOM, roof(x)] if x == RIDGE else [0, GIRT, CRANE, roof(x)]
            if x == RIDGE and y == GABLES[1]:
                levels = levels[2:]  # the gate is below
            m.line([(x, y, z) for z in levels], "W 310 102 10.8 6", "Pilares de vento",
                   type=WIND_COLUMN, quarter_turns=1)


def gate(m):
    y = GABLES[1]
    m.line([(x, y, CRANE) for x in (5, 10, 15)], "IENR 250 85 25 3 8", "Verga do portao", type=FRAME_BEAM)


def purlins(m):
    pitch = math.atan(SLOPE)
    for x in PURLIN_LINES:
        if x == RIDGE:
            section, angle = "IENR 200 75 20 2.65 8", 0.0
        else:
            section = "Z 200 75 70 20 20 2.65" if x in SIDES else "UENR 200 75 20 2.65"
            # The web stands at right angles to the roof.
            angle = -pitch if x < RIDGE else pitch
        ys = [BAY / 2 * i for i in range(2 * BAYS + 1)]  # the sag rods meet them in the middle of a bay
        m.line([(x, y, roof(x)) for y in ys], section, "Tercas", angle=angle)


def sag_rods(m):
    for y in FRAMES[:-1]:
        # Hidden in the host, as people do to keep the picture clear.
        m.line([(x, y + BAY / 2, roof(x)) for x in PURLIN_LINES], "FRED 12.5", "Correntes", visible=False)


def girts(m):
    # A quarter turn lays the depth along the wind.
    front, back = GABLES
    left, right = CRANE_REACH, SPAN - CRANE_REACH  # the crane brackets fill the corners
    lines = [
        [(0, y, GIRT) for y in FRAMES[1:]],  # the office floor stands in the first bay
        [(SPAN, y, GIRT) for y in FRAMES],
        [(0, y, CRANE) for y in FRAMES],
        [(SPAN, y, CRANE) for y in FRAMES],
        [(x, front, GIRT) for x in (10, 15, SPAN)],  # and reaches to the ridge
        [(x, front, CRANE) for x in (left, 5, 10, 15, right)],
        [(x, back, GIRT) for x in (0, 5)],  # the gate stands between the outer panels
        [(x, back, GIRT) for x in (15, SPAN)],
        [(x, back, CRANE) for x in (left, 5)],
        [(x, back, CRANE) for x in (15, right)],
    ]
    for points in lines:
        m.line(points, "ZS 150 60 20 2", "Longarinas", quarter_turns=1)


def struts(m):
    for x in SIDES:
        m.line([(x, y, BOTTOM) for y in FRAMES], "[] 150 50 3 3 100", "Escoras de beiral")
    m.line([(RIDGE, y, BOTTOM) for y in FRAMES], "2LLM 64 64 6.3 6.3 8", "Travamento do banzo inferior")


def bracing(m):
    for y0, y1 in BRACED_BAYS:
        for x0, x1 in zip(PURLIN_LINES[::2], PURLIN_LINES[2::2]):
            cross(m, (x0, y0, roof(x0)), (x1, y0, roof(x1)), (x1, y1, roof(x1)), (x0, y1, roof(x0)),
                  "RED 16", "Contraventamento da cobertura")
        for x in SIDES:
            for z0, z1, section in ((0, CRANE, "LL 75 75 6.3 6.3 85"), (CRANE, BOTTOM, "L 75 75 6.3 6.3")):
                cross(m, (x, y0, z0), (x, y1, z0), (x, y1, z1), (x, y0, z1), section, "Contraventamento vertical")
        z0, z1 = BOTTOM, roof(RIDGE)
        cross(m, (RIDGE, y0, z0), (RIDGE, y1, z0), (RIDGE, y1, z1), (RIDGE, y0, z1),
              "L 50 50 5 5", "Contraventamento da cumeeira")


def crane(m):
    for x, inward in ((0.0, CRANE_REACH), (SPAN, -CRANE_REACH)):
        for y in FRAMES:
            m.line([(x, y, CRANE), (x + inward, y, CRANE)], "PS 300 200 12.5 8", "Consolos", type=FRAME_BEAM)
        m.line([(x + inward, y, CRANE) for y in FRAMES], "PSA 500 250 16 200 12.5 8",
               "Vigas de rolamento", type=CRANE_BEAM)


def mezzanine(m):
    """An office floor in the first bay, from the side wall to the ridge, with a stair."""
    z, y0, y1 = GIRT, FRAMES[0], FRAMES[1]
    xs = [1.25 * i for i in range(9)]
    for y in (y0, y1):
        m.line([(x, y, z) for x in xs], "IPE 300 150 10.7 7.1", "Vigas do mezanino", type=FLOOR_BEAM)
    for x in xs:
        section = "IPE 240 120 9.8 6.2" if x % 5 == 0 else "ILAM 203 102 10.8 6.9"
        m.line([(x, y0, z), (x, y1, z)], section, "Vigas do mezanino", type=FLOOR_BEAM)
    for x in (5, 10):
        m.line([(x, y1, 0), (x, y1, z)], "HE 152 160 9 6", "Pilares do mezanino", type=COLUMN)
    for x in (3.75, 5):
        m.line([(x, y1 + 4.5, 0), (x, y1, z)], "UAP 203 57.4 5.6 9.9", "Escada", type=STAIR)


def canopy(m):
    """A canopy over the doors in one side wall."""
    tip = SPAN + 2
    ys = FRAMES[2:5]
    for y in ys:
        m.line([(SPAN, y, GIRT), (tip, y, GIRT)], "BOX 150 100 4.75 4.75", "Marquise", type=FRAME_BEAM)
        m.line([(tip, y, GIRT), (SPAN, y, CRANE)], "TEE 50 50 6.3 6.3", "Tirantes da marquise", type=BRACING)
    m.line([(tip, y, GIRT) for y in ys], "CART 100 50 20 2", "Marquise")


def warehouse():
    model = Model(f"Galpao industrial {SPAN:g} x {BAY * BAYS:g} m", "m")
    for system in (truss_frames, gable_frames, gate, purlins, sag_rods, girts, struts, bracing,
                   crane, mezzanine, canopy):
        system(model)
    return model


# --- the catalogue of families ---------------------------------------------------------------

# One row of the picture for each kind of writer. A dimension in brackets is not read by the
# module; the host still gives it, since the ones behind it are counted by their place.
CATALOGUE = [
    ("I: depth, width, flange thickness, web thickness", [
        "ILAM 203 102 10.8 6.9",
        "CS 250 250 12.5 8",
        "W 253 146 9.1 6.1",
        "HP 246 256 10.7 10.5",
        "PS 300 200 12.5 8",
        "VS 300 150 8 6.3",
        "VSE 300 180 9.5 6.3",
        "CSE 250 250 16 9.5",
        "CVS 300 220 16 9.5",
        "HE 190 200 10 6.5",
        "IPE 240 120 9.8 6.2",
    ]),
    ("T: depth, width, flange thickness, web thickness", [
        "TW 150 150 9.1 6.1",
        "TS 150 150 12.5 8",
        "WT 155 165 9.7 5.8",
        "TEE 100 100 9.5 9.5",  # depth and width, (width), (flange thickness), thickness
    ]),
    ("U: depth, width and thicknesses", [
        "[ 200 75 4.75 4.75",  # depth, width, (thickness), thickness
        "][ 200 75 4.75 10",  # depth, width, thickness, gap between the backs
        "[] 200 75 4.75 4.75 150",  # depth, width, (thickness), thickness, width over both
        "ULAM 203 57.4 5.6 9.9",  # depth, width, web thickness, flange thickness
        "UAP 200 75 8.5 11.5",  # the same
        "UULM 203 57.4 5.6 9.9 114.8",  # the same, width over both
        "2ULM 203 57.4 5.6 9.9 10",  # the same, gap between the backs
    ]),
    ("C: depth, width, lip, thickness, gap of the pair", [
        "UENR 200 75 20 2.65",
        "UUE 200 75 20 2.65 10",  # lips face to face
        "IENR 200 75 20 2.65 8",  # back to back
        "CA 200 75 20 2.65",  # lips touching
    ]),
    ("L: leg, (leg), (thickness), thickness", [
        "L 100 100 8 8",
        "LLM 102 102 9.5 9.5",
        "LLM_EN 102 102 9.5 9.5",
        "LFF 100 100 4.75 4.75",
        "LLAM 102 102 9.5 9.5",
        "LLAM_EN 102 102 9.5 9.5",
    ]),
    ("pairs of L: leg, (leg), (thickness), thickness, gap", [
        "2L 100 100 8 8 10",
        "LL 100 100 8 8 110",  # distance of the centres
        ">< 100 100 8 8 10",
        "<> 100 100 8 8 141.4",  # width over the corners
        "LX 100 100 8 8 10",
        "LZ 100 100 8 8 10",
        "2LLM 102 102 9.5 9.5 10",
        "LLLM 102 102 9.5 9.5 112",  # distance of the centres
        "VVLM 102 102 9.5 9.5 10",
        "LVLM 102 102 9.5 9.5 144.2",  # width over the corners
        "LXLM 102 102 9.5 9.5 10",
        "LZLM 102 102 9.5 9.5 10",
    ]),
    ("hollow and solid", [
        "BOX 200 100 6.3 6.3",  # depth, width, (thickness), thickness
        "TUBO 168.3 168.3 6.3 6.3",  # diameter, (diameter), (thickness), thickness
        "RED 50",  # diameter
        "FRED 32",  # diameter
        "EC 150 100 100 100",  # depth, (width), (width), width
        "RET 150 25 25 25",  # depth, then the thickness: the last of the three that is not zero
    ]),
    ("outlines", [
        "CART 150 100 40 3",  # height, width over the webs, brim, thickness
        "ICAR 150 75 40 3 10",  # width over the webs and height of a hat, brim, thickness, gap
        "Z 200 80 70 20 25 3",  # height, top and bottom flange, top and bottom lip, thickness
        "ZI 200 80 70 20 25 3 90",  # the same, (angle)
        "ZS 200 75 20 3",  # height, flange, lip, thickness
        "ZSI 200 75 20 3",  # the same
        "PC 300 250 12.5 8 180",  # depth, flange width and thickness, web thickness, width over the webs
        "PSA 300 150 9.5 220 16 8",  # depth, top flange width and thickness, bottom flange, web thickness
    ]),
    ("built up, but without a writer: two warnings, two 4 mm squares", [
        "2L_ASSIMETRICO 100 75 8 8 10",
    ]),
]


def catalogue():
    """The bars lie along Y with their ends in the plane y = 0, so that a view along Y shows each
    section in its true shape, not mirrored, one row above the other."""
    length, pitch = 1000.0, 500.0
    model = Model("Catalogo das familias de perfis", "mm")
    for row, (kind, texts) in enumerate(reversed(CATALOGUE)):
        for column, text in enumerate(texts):
            x, z = pitch * column, pitch * row
            model.line([(x, length, z), (x, 0, z)], text, kind.split(":")[0])
    return model


# --- writing ---------------------------------------------------------------------------------


def number(value):
    """Six decimals at most, no trailing zeros, no negative zero."""
    text = f"{value:.6f}".rstrip("0").rstrip(".")
    return "0" if text == "-0" else text


def batch_text(model):
    """The batch model file. It has no place for a bar's type and visibility, nor for quarter turns,
    which are added to the angle. Lines that the module only skips carry what helps a reader."""
    def place(node):
        node = model.nodes[node]
        return number(node.x), number(node.y), number(node.z)

    bars = [model_files.bar_lines(model.sections[bar.section].text, place(bar.start), place(bar.end),
                                  number(bar.angle + bar.quarter_turns * QUARTER_TURN), f"Barra {i}", i, bar.group)
            for i, bar in enumerate(model.bars, 1)]
    # The host writes on Windows.
    return model_files.batch_text(bars, model.unit, model.title, len(model.nodes), len(model.sections),
                                  line_end="\r\n").encode("ascii")


# Names of the bar types in JSON models, by their number.
TYPE_NAMES = ["member", "frame-beam", "floor-beam", "truss-chord", "column", "bracing", "crane-beam",
              "wind-column", "stair", "truss-web", "not-exported", "other"]


def json_text(model):
    """The JSON model: one line for each node, section and bar; what has its usual value is left out.
    Dimensions are left out too: they are read from the section's text."""
    quoted = json.dumps

    def bar_text(bar):
        words = [f'"nodes": [{bar.start}, {bar.end}]', f'"section": {quoted(model.sections[bar.section].text)}']
        if bar.type != MEMBER:
            words.append(f'"type": {quoted(TYPE_NAMES[bar.type])}')
        if not bar.visible:
            words.append('"visible": false')
        if bar.angle:
            words.append(f'"angle": {number(bar.angle)}')
        if bar.quarter_turns:
            words.append(f'"quarterTurns": {bar.quarter_turns}')
        return "{" + ", ".join(words) + "}"

    def listed(items):
        return ",\n".join("    " + item for item in items)

    nodes = listed(f"[{number(n.x)}, {number(n.y)}, {number(n.z)}]" for n in model.nodes)
    sections = listed(f'{quoted(s.text)}: {{"text": {quoted(s.text)}}}' for s in model.sections)
    bars = listed(bar_text(bar) for bar in model.bars)
    return (f'{{\n  "title": {quoted(model.title)},\n  "unit": {quoted(model.unit)},\n'
            f'  "nodes": [\n{nodes}\n  ],\n  "sections": {{\n{sections}\n  }},\n'
            f'  "bars": [\n{bars}\n  ]\n}}\n').encode("ascii")


SAMPLES = {"galpao": warehouse, "familias": catalogue}
FORMATS = {".txt": batch_text, ".json": json_text}


def families(model):
    return Counter(model.sections[bar.section].family for bar in model.bars)


def main():
    parser = argparse.ArgumentParser(description="Writes the sample models into the folder of this script.")
    parser.add_argument("--check", action="store_true", help="write nothing; fail if a file differs from the output")
    parser.add_argument("--count", action="store_true", help="also print the bars of each family")
    options = parser.parse_args()

    failed = False
    for name, build in SAMPLES.items():
        model = build()
        differing = []
        for suffix, text in FORMATS.items():
            path, content = Path(__file__).parent / (name + suffix), text(model)
            if not options.check:
                path.write_bytes(content)
            if not path.exists() or path.read_bytes() != content:
                differing.append(path.name)
        failed |= bool(differing)
        print(f"{name}: {len(model.bars)} bars, {len(model.nodes)} nodes, {len(model.sections)} sections"
              + (f": {', '.join(differing)} differ, run samples/generate.py" if differing else ""))
        if options.count:
            for family, bars in sorted(families(model).items()):
                print(f"  {family:<16}{bars:>4}")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
