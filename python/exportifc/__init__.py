"""Structural frame models as IFC2X3 files.

    import exportifc
    model = exportifc.frame([[0, 0, 0], [0, 0, 3], [5, 0, 3]], [[0, 1], [1, 2]], {"catalogue": "HEB180"})
    exportifc.export(model, "portal.ifc")
"""
from ._calls import Family, Section, Takeoff, check, export, families, sections, takeoff, to_bytes
from ._errors import Cancelled, Error, ModelError, ModelWarning, NotWritten, Problem
from ._frame import frame
from ._library import native as _native
from ._view import View, view

#: of the library, "1.0.0"
__version__: str = _native.exportIfcVersion().decode()
#: extensions of the files that models are read from
formats: list[str] = _native.exportIfcFormats().decode().split(";")

__all__ = [
    "Cancelled", "Error", "Family", "ModelError", "ModelWarning", "NotWritten", "Problem", "Section", "Takeoff", "View",
    "check", "export", "families", "formats", "frame", "sections", "takeoff", "to_bytes", "view",
]
