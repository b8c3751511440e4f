"""Arrays as the dict of a JSON model."""
from __future__ import annotations

from collections.abc import Iterable, Mapping, Sequence
from typing import Any


def _plain(values: Any) -> Any:
    """Lists and numbers of Python, from numpy as well."""
    return values.tolist() if hasattr(values, "tolist") else values


def _each(name: str, value: Any, count: int) -> Sequence[Any]:
    """One value a bar, from one value for all of them or a sequence."""
    value = _plain(value)
    if isinstance(value, (str, Mapping)) or not isinstance(value, Iterable):
        return [value] * count
    values = list(value)
    if len(values) != count:
        raise ValueError(f"{name}: {len(values)} values for {count} bars; one for all of them, or one a bar")
    return values


def _rows(name: str, values: Any, width: int, meaning: str) -> list[list[Any]]:
    """Rows of numbers, as lists of their own. An array of numpy has them at once."""
    if hasattr(values, "tolist"):
        rows: list[list[Any]] = values.tolist()
    else:
        rows = [list(map(_plain, row)) for row in values]
    for index, row in enumerate(rows):
        if len(row) != width:
            raise ValueError(f"{name}[{index}]: {len(row)} numbers; {meaning}")
    return rows


def frame(
    nodes: Any,
    bars: Any,
    section: Any,
    *,
    unit: str = "m",
    type: Any = None,
    angle: Any = None,
    quarter_turns: Any = None,
    visible: Any = None,
    name: Any = None,
    layer: Any = None,
    materials: Mapping[str, Mapping[str, float]] | None = None,
    sections: Mapping[str, Mapping[str, Any]] | None = None,
    title: str | None = None,
) -> dict[str, Any]:
    """A model from arrays, in the shape of the JSON model (docs/model-format.md).

    nodes: n rows of x, y, z in `unit`, z upwards: lists, or an array of numpy.
    bars: m rows of two node indexes, from 0.
    section: of all bars, or a sequence of m. Each is a section text ("W 200 100 8 6"), a key of
        `sections`, or a dict {"catalogue": "HEB180"}.
    unit: "m", "cm" or "mm".
    type, angle (radians), quarter_turns, visible, name, layer: for all bars, or a sequence of m.
    materials, sections: as in the JSON model, for what a section text cannot say.

    Raises ValueError when a sequence has another length than `bars` or a row another one than it should.
    """
    node_rows = _rows("nodes", nodes, 3, "a node has x, y and z")
    bar_rows = _rows("bars", bars, 2, "a bar has two nodes")
    defined = {key: dict(value) for key, value in (sections or {}).items()}
    keys: list[str] = []
    for wanted in _each("section", section, len(bar_rows)):
        if isinstance(wanted, Mapping):
            key = str(wanted.get("catalogue") or wanted)
            if key not in defined:
                defined[key] = dict(wanted)
        else:
            key = str(wanted)
            if key not in defined:
                defined[key] = {"text": key}
        keys.append(key)
    rows: list[dict[str, Any]] = [{"nodes": ends, "section": key} for ends, key in zip(bar_rows, keys)]
    for key, column in (
        ("type", type),
        ("angle", angle),
        ("quarterTurns", quarter_turns),
        ("visible", visible),
        ("name", name),
        ("layer", layer),
    ):
        if column is not None:
            for row, value in zip(rows, _each(key, column, len(rows))):
                if value is not None:
                    row[key] = _plain(value)
    model: dict[str, Any] = {"unit": unit, "nodes": node_rows, "sections": defined, "bars": rows}
    if materials is not None:
        model["materials"] = {key: dict(value) for key, value in materials.items()}
    if title is not None:
        model["title"] = title
    return model
