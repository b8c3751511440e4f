"""Models opened, checked, exported and weighed by the library."""
from __future__ import annotations

import contextlib
import ctypes
import dataclasses
import json
import os
import pathlib
import warnings
from collections.abc import Callable, Iterator, Mapping
from typing import Any, Union

from . import _library as c
from ._errors import Cancelled, Error, ModelError, ModelWarning, NotWritten, Problem

#: a path of any format that the program reads, the bytes of such a file, or a dict as docs/model-format.md has it
Model = Union[str, "os.PathLike[str]", bytes, Mapping[str, Any]]
#: takes how many bars are done, and how many there are; False ends the export
ProgressFunction = Callable[[int, int], Any]


def _json_bytes(model: Mapping[str, Any]) -> bytes:
    def other(value: Any) -> Any:
        if hasattr(value, "tolist"):
            return value.tolist()
        if isinstance(value, Mapping):
            return dict(value)
        raise TypeError(f"a model cannot hold a {type(value).__name__}: {value!r}")

    return json.dumps(model, default=other, separators=(",", ":")).encode()


@dataclasses.dataclass
class _Opened:
    """A model that is open, readable or not."""

    handle: ctypes.c_void_p
    result: int  #: OK or UNREADABLE
    language: str
    is_dict: bool

    def problems(self) -> list[Problem]:
        return [Problem._of(facts, self.is_dict) for facts in json.loads(c.native.exportIfcProblemsJson(self.handle))]

    def demand(self, result: int) -> None:
        """Raises what a result means."""
        if result == c.OK:
            return
        if result == c.NO_MEMORY:
            raise MemoryError
        message = c.native.exportIfcErrorText(self.handle).decode() or _text(result, self.language)
        if result in (c.PROBLEMS, c.UNREADABLE):
            problems = self.problems()
            raise ModelError("\n".join(map(str, problems)) if self.is_dict and problems else message, problems)
        raise (Cancelled if result == c.CANCELLED else NotWritten)(message)

    def prepare(self, visible_only: bool, transliterate: bool) -> None:
        """Raises what forbids the file, and warns of what does not."""
        self.demand(self.result)
        if transliterate:
            self.demand(c.native.exportIfcTransliterate(self.handle))
        self.demand(c.native.exportIfcCheck(self.handle, _flags(visible_only)))
        for problem in self.problems():
            if problem.severity != "note":
                warnings.warn(str(problem), ModelWarning, stacklevel=3)


@contextlib.contextmanager
def _opened(model: Model, language: str, name: str | None) -> Iterator[_Opened]:
    handle, spoken = ctypes.c_void_p(), language.encode()
    if isinstance(model, (str, os.PathLike)):
        path = pathlib.Path(model)
        os.stat(path)  # says in Python's way that there is none
        result = c.native.exportIfcOpenFile(os.fspath(path).encode(), spoken, ctypes.byref(handle))
    else:
        if isinstance(model, (bytes, bytearray, memoryview)):
            data = bytes(model)
        elif isinstance(model, Mapping):
            data, name = _json_bytes(model), "model.json"
        else:
            raise TypeError(f"a model is a path, bytes or a dict, not a {type(model).__name__}")
        result = c.native.exportIfcOpen(data, len(data), name.encode() if name else None, spoken, ctypes.byref(handle))
    try:
        if result == c.NO_MEMORY:
            raise MemoryError
        if result not in (c.OK, c.UNREADABLE):
            raise Error(_text(result, language))
        yield _Opened(handle, result, language, isinstance(model, Mapping))
    finally:
        c.native.exportIfcClose(handle)


def _text(result: int, language: str) -> str:
    text: bytes = c.native.exportIfcResultText(result, language.encode())
    return text.decode()


class _Callbacks:
    """Functions of Python for the library: what they raise ends the call and is raised behind it."""

    def __init__(self, write: Callable[[bytes], Any] | None = None, progress: ProgressFunction | None = None) -> None:
        self.raised: BaseException | None = None
        # A null function is none; each lives as long as this object, that is longer than the call.
        self.write = ctypes.cast(ctypes.c_void_p(), c.Write)
        self.progress = ctypes.cast(ctypes.c_void_p(), c.Progress)
        if write is not None:
            taken = write
            self.write = c.Write(self._guarded(lambda _, data, size: taken(ctypes.string_at(data, size))))
        if progress is not None:
            asked = progress
            self.progress = c.Progress(self._guarded(lambda _, done, total: asked(done, total)))

    def _guarded(self, function: Callable[..., Any]) -> Callable[..., int]:
        def call(*arguments: Any) -> int:
            try:
                return 0 if function(*arguments) is False else 1
            except BaseException as exception:  # Ctrl+C, too
                self.raised = exception
                return 0

        return call

    def finish(self) -> None:
        if self.raised is not None:
            raise self.raised


def _flags(visible_only: bool, notes: bool = False) -> int:
    return (c.VISIBLE_ONLY if visible_only else 0) | (c.NOTES if notes else 0)


def export(
    model: Model,
    output: str | os.PathLike[str],
    *,
    visible_only: bool = False,
    transliterate: bool = False,
    progress: ProgressFunction | None = None,
    language: str = "en",
) -> None:
    """Writes the IFC2X3 file of a model; zipped when `output` ends with ".ifczip".

    model: a path, the bytes of a model file, or a dict (`frame` makes one from arrays).
    visible_only: leaves out bars that are not visible.
    transliterate: writes accented letters of section texts as plain ones.
    progress: called now and then with the bars done and their number; False ends the export.
    language: of messages, "en" or "pt".

    The file appears whole or not at all. Raises ModelError (with `problems`, each with its place),
    NotWritten, Cancelled, or OSError for a model file that is not there; warns with ModelWarning of
    what is written, but probably not as meant.
    """
    with _opened(model, language, None) as opened:
        opened.prepare(visible_only, transliterate)
        calls = _Callbacks(progress=progress)
        result = c.native.exportIfcExportFile(
            opened.handle, _flags(visible_only), os.fspath(output).encode(), calls.progress, None
        )
        calls.finish()
        opened.demand(result)


def to_bytes(
    model: Model,
    *,
    visible_only: bool = False,
    transliterate: bool = False,
    progress: ProgressFunction | None = None,
    language: str = "en",
    name: str | None = None,
) -> bytes:
    """The IFC2X3 file of a model, in memory; otherwise as `export`.

    name: the file name of a model given as bytes, of which the extension counts.
    """
    pieces: list[bytes] = []
    with _opened(model, language, name) as opened:
        opened.prepare(visible_only, transliterate)
        calls = _Callbacks(pieces.append, progress)
        result = c.native.exportIfcExport(opened.handle, _flags(visible_only), calls.write, calls.progress, None)
        calls.finish()
        opened.demand(result)
    return b"".join(pieces)


def check(
    model: Model, *, visible_only: bool = False, notes: bool = False, language: str = "en", name: str | None = None
) -> list[Problem]:
    """All that is wrong with a model, also when it cannot be read; empty when nothing is.

    notes: also what is only unusual. The other arguments are those of `export` and `to_bytes`.
    """
    with _opened(model, language, name) as opened:
        if opened.result == c.OK:
            result = c.native.exportIfcCheck(opened.handle, _flags(visible_only, notes))
            if result not in (c.OK, c.PROBLEMS):
                opened.demand(result)
        return opened.problems()


@dataclasses.dataclass(frozen=True)
class Takeoff:
    """What a structure is made of. Rows are dicts with the keys of docs/takeoff.md: lengths in m,
    masses in kg, surfaces in m²; totals are the sums of what the rows say. Iterating gives `sections`."""

    sections: list[dict[str, Any]]
    groups: list[dict[str, Any]]
    layers: list[dict[str, Any]]
    cuts: list[dict[str, Any]]  #: bars of one section and one length
    total: dict[str, Any]

    def __iter__(self) -> Iterator[dict[str, Any]]:
        return iter(self.sections)

    def __len__(self) -> int:
        return len(self.sections)


def takeoff(
    model: Model, *, density: float = 0.0, visible_only: bool = False, language: str = "en", name: str | None = None
) -> Takeoff:
    """Lengths, masses and paint surfaces of the bars that an export writes.

    density: kg/m³ of all bars; 0 takes that of their material, or of steel, 7850.
    """
    pieces: list[bytes] = []
    with _opened(model, language, name) as opened:
        opened.demand(opened.result)
        calls = _Callbacks(pieces.append)
        result = c.native.exportIfcTakeoff(opened.handle, _flags(visible_only), density, c.JSON, calls.write, None)
        calls.finish()
        opened.demand(result)
    lists = json.loads(b"".join(pieces))
    return Takeoff(**{key: lists.get(key, {} if key == "total" else []) for key in Takeoff.__dataclass_fields__})


def _listed(call: Callable[..., int], word: str | None) -> list[dict[str, Any]]:
    pieces: list[bytes] = []
    calls = _Callbacks(pieces.append)
    result = call(None if word is None else word.encode(), calls.write, None)
    calls.finish()
    if result == c.NO_MEMORY:
        raise MemoryError
    if result != c.OK:
        raise Error(_text(result, "en"))
    rows: list[dict[str, Any]] = json.loads(b"".join(pieces))
    return rows


@dataclasses.dataclass(frozen=True)
class Family:
    """A section family: its word, its IFC entity, and the numbers behind the word in their order,
    each with its index, what it measures, and whether it may be 0."""

    word: str
    entity: str
    dimensions: list[dict[str, Any]]


def families(language: str = "en") -> list[Family]:
    """The section families that are drawn."""
    return [Family(**row) for row in _listed(c.native.exportIfcFamilies, language)]


@dataclasses.dataclass(frozen=True)
class Section:
    """A rolled section of the catalogue; lengths in mm."""

    name: str
    series: str
    standard: str
    depth: float
    width: float
    flange: float  #: thickness
    web: float  #: thickness
    mass: float  #: published, kg/m
    area: float  #: published, cm²
    text: str  #: the section text, for a model


def sections(name: str | None = None) -> list[Section]:
    """The rolled section of this name, however it is spelt ("HEB180", "he 180 b"); without such a one
    all whose names begin so; all of them when no name is given."""
    keys = {"depthMm": "depth", "widthMm": "width", "flangeMm": "flange", "webMm": "web",
            "massPerMetreKg": "mass", "areaCm2": "area"}
    return [
        Section(**{keys.get(key, key): value for key, value in row.items()})
        for row in _listed(c.native.exportIfcSections, name)
    ]
