#!/usr/bin/env python3
"""A warehouse of any size as an IFC file: frames of columns and rafters, purlins, bracing.

    examples/warehouse.py warehouse.ifc [SPAN LENGTH HEIGHT]     in metres; 20 42 6 if left out
"""
import sys

import exportifc

SECTIONS = {
    "column": {"catalogue": "HEA 240"},
    "rafter": {"catalogue": "IPE 300"},
    "purlin": {"text": "UENR 150 60 20 2"},
    "brace": {"text": "2L 50 50 5 5 8"},
}
SLOPE = 0.1  # rise of the roof over its run
BAY, PURLIN = 6.0, 2.0  # distances in m, at most


def warehouse(span, length, height):
    """The model of a hall with a duopitch roof, its first frame in the plane y = 0."""
    bays, halves = max(1, round(length / BAY)), max(1, round(span / 2 / PURLIN))
    profile = [(0.0, 0.0)]  # x and z of a frame's nodes, from one foot to the other
    for i in range(2 * halves + 1):
        x = span * i / (2 * halves)
        profile.append((x, height + SLOPE * min(x, span - x)))
    profile.append((span, 0.0))

    nodes = [(x, length * frame / bays, z) for frame in range(bays + 1) for x, z in profile]
    bars, sections, types = [], [], []

    def add(first, second, section, type):
        bars.append((first, second))
        sections.append(section)
        types.append(type)

    count = len(profile)
    for frame in range(bays + 1):
        start = frame * count
        for i in range(count - 1):
            is_column = i in (0, count - 2)
            add(start + i, start + i + 1, "column" if is_column else "rafter", "column" if is_column else "frame-beam")
    for frame in range(bays):
        for i in range(1, count - 1):
            add(frame * count + i, (frame + 1) * count + i, "purlin", "member")
    for frame in (0, bays - 1):  # walls of the end bays
        for foot, eaves in ((0, 1), (count - 1, count - 2)):
            add(frame * count + foot, (frame + 1) * count + eaves, "brace", "bracing")
            add((frame + 1) * count + foot, frame * count + eaves, "brace", "bracing")
    return exportifc.frame(nodes, bars, sections, type=types, sections=SECTIONS, title="Warehouse")


if __name__ == "__main__":
    if len(sys.argv) not in (2, 5):
        sys.exit(__doc__)
    model = warehouse(*map(float, sys.argv[2:] or (20, 42, 6)))
    exportifc.export(model, sys.argv[1])
    print(f"{sys.argv[1]}: {len(model['bars'])} bars, {exportifc.takeoff(model).total['massKg'] / 1000:.1f} t")
