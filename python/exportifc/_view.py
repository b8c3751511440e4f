"""The page that shows a model, in a notebook or as a file."""
from __future__ import annotations

import base64
import gzip
import html
import os
import pathlib

from ._calls import Model, to_bytes
from ._library import PACKAGE

# In the page, each once; what takes their place is base 64.
_MODEL, _NAME, _NOTES = "@EXPORTIFC_MODEL@", "@EXPORTIFC_NAME@", "@EXPORTIFC_NOTES@"


class View:
    """A page with a model in it. A notebook shows it in the cell; `save` writes it as a file."""

    def __init__(self, page: str, height: int) -> None:
        self.page = page
        self.height = height

    def save(self, path: str | os.PathLike[str]) -> None:
        """Writes the page; it opens in any browser, without a network."""
        pathlib.Path(path).write_text(self.page, encoding="utf-8")

    def _repr_html_(self) -> str:
        # A frame of its own: the page's styles and scripts are not the notebook's.
        return (
            f'<iframe srcdoc="{html.escape(self.page)}" style="width: 100%; height: {self.height}px; border: 0" '
            'sandbox="allow-scripts allow-downloads"></iframe>'
        )


def view(model: Model, *, visible_only: bool = False, transliterate: bool = False, height: int = 600,
         name: str = "model.ifc") -> View:
    """The model as a page, to be turned, picked and measured.

    height: of the cell, in pixels. name: the IFC file's, for the page's title and its button.
    The other arguments, and what is raised, are those of `export`.
    """
    exchange = to_bytes(model, visible_only=visible_only, transliterate=transliterate)
    template = pathlib.Path(os.environ.get("EXPORTIFC_VIEWER") or PACKAGE / "viewer.html")
    page = template.read_text(encoding="utf-8")
    for mark, content in ((_MODEL, gzip.compress(exchange, mtime=0)), (_NAME, name.encode()), (_NOTES, b"")):
        page = page.replace(mark, base64.b64encode(content).decode())
    return View(page, height)
