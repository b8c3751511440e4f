"""The C library: where it is, its functions with their types, its results."""
from __future__ import annotations

import ctypes
import os
import pathlib
import sys

ABI = 1  # of include/exportifc/library.h

OK, PROBLEMS, BAD_USE, UNREADABLE, NOT_WRITTEN, NO_MEMORY, CANCELLED = range(7)
VISIBLE_ONLY, NOTES = 1, 2
JSON = 1  # a form of the take-off

Write = ctypes.CFUNCTYPE(ctypes.c_int32, ctypes.c_void_p, ctypes.c_void_p, ctypes.c_size_t)
Progress = ctypes.CFUNCTYPE(ctypes.c_int32, ctypes.c_void_p, ctypes.c_int64, ctypes.c_int64)

_text, _model, _result = ctypes.c_char_p, ctypes.c_void_p, ctypes.c_int32
_flags, _context = ctypes.c_uint32, ctypes.c_void_p

# name: what it gives, what it takes
_CALLS: dict[str, tuple[object, list[object]]] = {
    "exportIfcAbi": (ctypes.c_int32, []),
    "exportIfcVersion": (_text, []),
    "exportIfcFormats": (_text, []),
    "exportIfcResultText": (_text, [_result, _text]),
    "exportIfcOpen": (_result, [_text, ctypes.c_size_t, _text, _text, ctypes.POINTER(_model)]),
    "exportIfcOpenFile": (_result, [_text, _text, ctypes.POINTER(_model)]),
    "exportIfcClose": (None, [_model]),
    "exportIfcErrorText": (_text, [_model]),
    "exportIfcBarCount": (ctypes.c_int64, [_model]),
    "exportIfcTransliterate": (_result, [_model]),
    "exportIfcCheck": (_result, [_model, _flags]),
    "exportIfcProblemsJson": (_text, [_model]),
    "exportIfcExport": (_result, [_model, _flags, Write, Progress, _context]),
    "exportIfcExportFile": (_result, [_model, _flags, _text, Progress, _context]),
    "exportIfcTakeoff": (_result, [_model, _flags, ctypes.c_double, _result, Write, _context]),
    "exportIfcFamilies": (_result, [_text, Write, _context]),
    "exportIfcSections": (_result, [_text, Write, _context]),
}

PACKAGE = pathlib.Path(__file__).resolve().parent
_NAME = f"exportifc-{ABI}.dll" if sys.platform == "win32" else f"libexportifc.so.{ABI}"


def _load() -> ctypes.CDLL:
    """The library of this package; a source folder names another by EXPORTIFC_LIBRARY."""
    own = PACKAGE / _NAME
    library = ctypes.CDLL(os.environ.get("EXPORTIFC_LIBRARY") or (str(own) if own.exists() else _NAME))
    for name, (result, arguments) in _CALLS.items():
        function = getattr(library, name)
        function.restype, function.argtypes = result, arguments
    if library.exportIfcAbi() != ABI:
        raise ImportError(f"{library._name} has the interface {library.exportIfcAbi()}, not {ABI}")
    return library


native = _load()
