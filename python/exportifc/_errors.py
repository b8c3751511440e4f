"""What can be wrong with a model, and how it is raised."""
from __future__ import annotations

import dataclasses
from typing import Any


@dataclasses.dataclass(frozen=True)
class Problem:
    """One thing that is wrong, or unusual, with a model; docs/checks.md lists the codes.

    The place is a JSON pointer (of a dict too), a cell, or a line and column, as the model has them.
    """

    code: str  #: "unknown-section"
    severity: str  #: "error", "warning" or "note"
    message: str
    file: str = ""
    line: int | None = None  #: from 1
    column: int | None = None  #: from 1
    cell: str = ""  #: "StructuralCurveMember!C12"
    pointer: str = ""  #: "/bars/6/section"
    value: str = ""  #: what stands there
    allowed: str = ""  #: what may stand there
    suggestion: str = ""  #: what was probably meant
    bars: int | None = None  #: how many bars it concerns
    first_bar: int | None = None  #: the first of them, from 1
    section: str = ""
    dimension: int | None = None  #: its index behind the family word, from 0

    @property
    def place(self) -> str:
        """The place in the words of the program: "bars!C12", "13:49" or "/bars/0/type"."""
        if self.cell:
            return self.cell
        if self.line:
            return f"{self.line}:{self.column}" if self.column else str(self.line)
        return self.pointer

    def __str__(self) -> str:
        words = [word for word in (self.file, self.place) if word]
        return ": ".join([":".join(words), f"{self.severity}", self.message] if words else [self.severity, self.message])

    @classmethod
    def _of(cls, facts: dict[str, Any], is_dict: bool) -> Problem:
        if is_dict:  # nobody has seen the text that was made of it
            facts = {key: value for key, value in facts.items() if key not in ("file", "line", "column")}
        facts = {{"firstBar": "first_bar"}.get(key, key): value for key, value in facts.items()}
        known = {field.name for field in dataclasses.fields(cls)}
        return cls(**{key: value for key, value in facts.items() if key in known})


class Error(Exception):
    """The base of all that this package raises by itself."""


class ModelError(Error, ValueError):
    """A model cannot be read, or has a problem with which no file is written."""

    def __init__(self, message: str, problems: list[Problem] | None = None) -> None:
        super().__init__(message)
        #: what is wrong, with its place
        self.problems = problems or []


class NotWritten(Error, OSError):
    """The system took no more bytes, or the output is the model itself. A file that was there stays."""


class Cancelled(Error):
    """The progress function gave False. Nothing is left behind."""


class ModelWarning(UserWarning):
    """A problem with which the file is written all the same."""
