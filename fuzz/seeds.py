#!/usr/bin/env python3
"""Writes the seeds and dictionaries of the fuzz targets: fuzz/seeds.py

The families come from the sample that holds one bar of each; the rest are the edges of the formats.
Inputs that the fuzzer found later stand beside the seeds in fuzz/corpus and are left alone.
"""
import pathlib
import struct
import sys
import tempfile
import zipfile

here = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(here.parent / "tests/support"))
from model_files import bar_lines as bar, batch_text as batch  # noqa: E402

sample = (here.parent / "samples/familias.txt").read_text(encoding="latin-1").splitlines()
bars = [sample[5 + 12 * i : 17 + 12 * i] for i in range(int(sample[4]))]


def write(target, name, data):
    folder = here / "corpus" / target
    folder.mkdir(parents=True, exist_ok=True)
    (folder / f"seed-{name}").write_bytes(data if isinstance(data, bytes) else data.encode("latin-1"))


# ---- batch text files

for i in range(0, len(bars), 4):
    write("batch_file", f"families-{i}", batch(bars[i : i + 4]))
for name, text in {
    "empty": "",
    "header-only": "1\n2\nx\nmm\n0\n",
    "crlf": batch([bar("W 200 100 5 8")], "cm", line_end="\r\n"),
    "metres": batch([bar("L 50 50 5 5", ("0,5", "1.5", "2"), ("-1e1", "+3", ".5"), "1,5708")], "m"),
    "unit-unknown": batch([bar("RED 20")], "MM"),
    "count-negative": batch([bar("RED 20")], count=-1),
    "count-huge": batch([bar("RED 20")], count=99999999999),
    "short-bar": "1\n2\nx\nm\n2\nbar\n1\n2\n",
    "crosses": batch([bar("I 200x100x5x8"), bar("CART 1 x 2 x 3x4x"), bar("W " + "1x" * 20)]),
    "many-dims": batch([bar("PSA 1 2 3 4 5 6 7 8 9 10 11 12 13")]),
    "name-47": batch([bar("W" + "9" * 46)]),
    "name-48": batch([bar("W" + "9" * 47)]),
    "high-byte": batch([bar("RED 20"), bar("A\xe7o 3"), bar("RED 20")]),
    "quotes": batch([bar("RED '20'"), bar("W */ /* \\X2\\")]),
    "control-z": batch([bar("RED 20")]) + "\x1a" + batch([bar("RED 20")]),
    "nul": batch([bar("RED 2\x000 5")]),
    "numbers": batch([bar("RET 1e400 -1e400 1e-400 0x10",
                          ("1e39", "-1e39", "1e-46"), ("inf", "nan", "0x1p3"), "9" * 60)]),
    "blank-a0": batch([bar("RED 20", ("\xa05", "\t\xa0 -7,5", "8\xa09"), angle="\xa0\xa01.5")],
                      count="\xa01"),
    "vertical": batch([bar("LX 50 50 5 5 8", (0, 0, 0), (0, 0, 3000))]),
    "reversed": batch([bar("ZS", (0, 0, 0), (0, 5, 3000)), bar("LX_1", (1, 2, 3), (1, 2, 3))]),
}.items():
    write("batch_file", name, text)


# ---- models behind the callback; the order is that of hostOf in host_model.cpp

families = [lines[8].split()[0] for lines in bars]


def small(value):
    return bytes([int(value * 8) + 0x78])


def real(value):
    return b"\xff" + struct.pack("<f", value)


def host_bar(family, dims=(), bits=0, start=(0, 0, 0), end=(1, 0, 0), angle=0, tail=b""):
    points = b"".join(small(c) for c in (*start, *end))
    return (bytes([bits]) + small(angle) + points + bytes([family, len(dims)]) +
            b"".join(real(d) for d in dims) + tail)


def rest(kind, visible=1, tail=b""):
    """Type, visibility and what follows them in a model that is not for the batch format."""
    return small(kind) + struct.pack("<i", visible) + tail


hat = (100, 50, 20, 2, 10, 3, 4)
for first in range(0, 108, 12):  # every word of the list in host_model.cpp
    write("host_model", f"batch-{first}",
          bytes([1, first // 12 % 3, 12]) + b"".join(host_bar(f, hat[:5]) for f in range(first, first + 12)))
for kind in range(12):
    write("host_model", f"type-{kind}",
          bytes([kind % 2 * 2, kind % 4, 2]) +
          host_bar(42, hat, tail=rest(kind)) +
          host_bar(0, hat, bits=1, end=(0, 0, 3), tail=rest(kind)))
nan, infinity = float("nan"), float("inf")
for name, data in {
    "empty": b"",
    "none": bytes([0, 2, 0]),
    "negative": bytes([4, 2, 0]) + struct.pack("<i", -5),
    "unit": bytes([0, 0xFF]) + struct.pack("<i", -2147483648) + bytes([1]) + host_bar(42, tail=rest(1)),
    "no-record": bytes([0, 2, 1]) + host_bar(42, bits=4, tail=rest(1)),
    "turns": bytes([0, 2, 1]) + host_bar(42, bits=2, tail=rest(1, tail=struct.pack("<i", -2147483648))),
    "raw-name": bytes([0, 2, 1, 0]) + small(0) * 7 + bytes([200]) + b"W'\\*/\n\r\t" + b"x" * 40 +
                bytes([0]) + rest(1),
    "not-numbers": bytes([0, 1, 1, 0]) + real(nan) + real(infinity) + real(-infinity) + real(1e30) +
                   real(-1e30) + real(1e-45) + real(-0.0) + bytes([21, 7]) +
                   b"".join(real(v) for v in (nan, -1, infinity, 3e38, 1e-45, -0.0, 5)) + real(nan) +
                   struct.pack("<i", 1),
    "careless": bytes([4, 2, 3]) + b"".join(host_bar(f, hat, bits=0x80, tail=rest(3, tail=b"\xff"))
                                            for f in (42, 21, 0)),
    "throws": bytes([8, 1, 30, 2, 3]) + host_bar(42, hat, tail=rest(1)) * 3,
    "throws-file": bytes([8, 3, 0, 2, 1]) + host_bar(42, hat, tail=rest(1)),
    "throws-int": bytes([8, 4, 9, 2, 1]) + host_bar(42, hat, tail=rest(1)),
}.items():
    write("host_model", name, data)


# ---- section names; the order is that of LLVMFuzzerTestOneInput in section_name.cpp

for i, family in enumerate(sorted(set(families + ["", " ", "W'", "A\xe7o", "2L_2", "x", "W\n9"]))):
    name = family.encode("latin-1") + b" 100 50x5,5"[: i % 12]
    write("section_name", str(i),
          bytes([len(name)]) + name + b"".join(real(d) for d in hat) + small(1) * 10 + bytes([3]) +
          struct.pack("<8d", 0.015625, -0.0, 1e300, 999999.5, nan, infinity, 123456789.123456, 5e-324))


# ---- JSON models

def json_model(bars, sections='{"A": {"text": "W 200 100 5 8"}}', unit="mm", nodes="[[0,0,0],[1,0,0.5],[0,0,1e3]]"):
    return f'{{"unit":"{unit}","nodes":{nodes},"sections":{sections},"bars":[{bars}]}}'


plain = '{"nodes":[0,1],"section":"A"}'
for name, text in {
    "empty": "",
    "smallest": json_model(""),
    "plain": json_model(plain, unit="m"),
    "all-keys": json_model('{"nodes":[1,2],"section":"A","type":"column","visible":false,"angle":-0.5,'
                           '"quarterTurns":-1},{"type":9,"section":"A","nodes":[0,0]}', unit="cm"),
    "names": json_model('{"nodes":[0,1],"section":"A","name":"P1"},{"nodes":[1,2],"section":"A","layer":"L"}',
                        '{"A":{"text":"RED 20","material":"S"}},"materials":{"S":{"density":7.85e3},"T":{}}'),
    "catalogue": json_model(plain, '{"A":{"catalogue":"W310 x 38,7"},"B":{"catalogue":"L 75x8","material":"S"}},'
                                   '"materials":{"S":{}}'),
    "catalogue-unknown": json_model(plain, '{"A":{"catalogue":"HEB 185"}}'),
    "catalogue-text": json_model(plain, '{"A":{"catalogue":"HEB180","text":"W"}}'),
    "material-unknown": json_model(plain, '{"A":{"text":"RED 20","material":"S"}},"materials":{"T":{}}'),
    "first-bars": '{"bars":[' + plain + '],"sections":{"A":{"dims":[1,2,3],"text":"PSA"}},'
                  '"nodes":[[0,0,0],[0,0,1]],"unit":"mm","title":"t"}',
    "dims": json_model(plain, '{"A":{"text":"2L 5","dims":[50,50,5,5,8,1,2,3,4,5]}}'),
    "unicode": json_model(plain, '{"A":{"text":"Perfil \xc3\xa7 \\u00e7\\ud83d\\ude00"}}'),
    "escapes": json_model(plain, '{"A":{"text":"a\\n\\\"\\/\\u0000b"}}'),
    "long-name": json_model(plain, '{"A":{"text":"' + "W" * 48 + '"}}'),
    "bad-node": json_model('{"nodes":[0,7],"section":"B"}'),
    "numbers": json_model(plain, nodes="[[1e400,0,0],[1,2,3]]"),
    "rounding": json_model(plain, nodes="[[3.4028235e38,-3.4028236e38,1e-46],[0.1,-0.0,16777217]]"),
    "twice": json_model('{"nodes":[0,1],"nodes":[0,1],"section":"A"}'),
    "unknown-key": json_model('{"nodes":[0,1],"section":"A","color":1}'),
    "bom": "\xef\xbb\xbf" + json_model(plain),
    "broken": json_model(plain)[:-9],
    "nested": "[" * 200,
}.items():
    write("json_model", name, text)


# ---- sheets of workbooks, as CSV behind their names; a two-storey frame and what is odd

sys.path.insert(0, str(here.parent / "tests/saf"))
import two_storey  # noqa: E402


def as_text(content):
    """The sheets as the target "tables" takes them, in UTF-8."""
    return "".join(f"@{name}\n" + "".join(";".join(quoted(value) for value in row) + "\n" for row in rows)
                   for name, rows in content.items())


def quoted(value):
    text = str(value)
    return f'"{text}"' if ";" in text else text


frame = two_storey.two_storey()
saf, tables = two_storey.sheets(frame), two_storey.tables(frame)
few = {name: rows[:7] for name, rows in saf.items()}
for name, text in {
    "saf": "n" + as_text(saf | {"StructuralCurveMember": saf["StructuralCurveMember"][:9]}),
    "saf-few": "n" + as_text(few),
    "saf-texts": as_text(few),
    "saf-no-nodes": "n" + as_text({key: few[key] for key in few if key != "StructuralPointConnection"}),
    "saf-shapes": "n" + as_text(few | {"StructuralCrossSection": [saf["StructuralCrossSection"][0]] + [
        ["Pilar", "S355", "Parametric", shape, sizes, "", "", ""] for shape, sizes in (
            ("Rectangle", "100; 200"), ("I section", "300; 10; 150; 7"), ("T section", "100; 50; 8; 6"),
            ("Pipe", "60; 4"), ("L section", "50; 5; 50; 5"), ("Box", "1; 2; 3; 4"))]}),
    "tables": "n" + as_text({name: rows[:7] for name, rows in tables.items()}),
    "files": "f" + as_text({name: rows[:7] for name, rows in tables.items()}).replace(".", ","),
    "tables-faults": "@nodes\nnode;x [km];y;z;w\n1;0;0;a\n@sections\nsection;text;family\nA;RED 20;L\n"
                     "@bars\nstart;end;section;angle\n1;2;B;3\n",
    "quotes": '@nodes\nnode,"x [mm]",y,z\n"a ""b""",1,2,3\n@sections\nsection,text\nA,"L 50\n@bars\n',
}.items():
    write("tables", name, text.encode())


# ---- workbooks: their parts behind their names, and whole ones

with tempfile.TemporaryDirectory() as folder:
    for name, content in {"saf": {name: rows[:3] for name, rows in saf.items()}, "tables": {name: rows[:4] for name, rows in tables.items()}}.items():
        path = pathlib.Path(folder) / f"{name}.xlsx"
        two_storey.write_workbook(path, content)
        write("workbook", f"{name}-packed", path.read_bytes())
        with zipfile.ZipFile(path) as archive:
            parts = {part: archive.read(part).decode() for part in archive.namelist()}
        write("workbook", name, "".join(f"@{part}\n{text}\n" for part, text in parts.items()).encode())
shared = ('@[Content_Types].xml\n<Types/>\n@_rels/.rels\n<Relationships><Relationship Id="a" Type="x/officeDocument" '
          'Target="xl/workbook.xml"/></Relationships>\n@xl/workbook.xml\n<workbook><sheets><sheet name="bars" r:id="b"/>'
          '</sheets></workbook>\n@xl/_rels/workbook.xml.rels\n<Relationships><Relationship Id="b" Type="x/worksheet" '
          'Target="s.xml"/><Relationship Id="c" Type="x/sharedStrings" Target="t.xml"/></Relationships>\n@xl/t.xml\n'
          '<sst><si><t>start</t></si><si><r><t>e</t></r><r><t>nd</t></r></si></sst>\n@xl/s.xml\n<worksheet><sheetData>'
          '<row r="1"><c r="A1" t="s"><v>0</v></c><c t="s"><v>1</v></c><c r="D1" t="str"><f>1</f><v>x</v></c></row>'
          '<row><c t="b"><v>1</v></c><c t="e"><v>#N/A</v></c><c><v>1e3</v></c></row></sheetData></worksheet>\n')
write("workbook", "shared", shared.encode())
write("workbook", "entities", shared.replace("<workbook>", '<!DOCTYPE w [<!ENTITY a "b">]><workbook>').encode())
write("workbook", "cut", shared[:900].encode())


# ---- dictionaries

def dictionary(name, words):
    lines = ['"' + "".join(c if (c.isalnum() and c < "\x7f") or c in " _.,'<>[]-+*/" else f"\\x{ord(c):02x}" for c in word) + '"'
             for word in words]
    folder = here / "dictionaries"
    folder.mkdir(exist_ok=True)
    (folder / f"{name}.dict").write_text("\n".join(lines) + "\n", encoding="ascii")


words = sorted(set(families)) + ["_1", "_2", "_EN", "2L_ASSIMETRICO"]
numbers = ["0", "-0", "1,5", "1.5", "1e5", "e+", ",", ".", "-", "+", "1e39", "1e-46", "0x1p3", "inf", "nan",
           "2147483648", "-2147483649", "99999999999999999999"]
dictionary("batch_file", words + numbers + ["m\n", "cm\n", "mm\n", "x", " x ", "\r\n", "\x1a", "\xe7", "'", "*/"])
dictionary("section_name", words + numbers + [" ", "x", "'", "\xe7", "*/", "\n"])
dictionary("host_model", words + ["'", "*/", "\xe7", "\n", "\xff\x00\x00\xc0\x7f", "\xff\x00\x00\x80\x7f",
                                  "\xff\xca\xf2\x49\x71", "\xff\x01\x00\x00\x00", "\xff\x00\x00\x00\xcf"])
dictionary("json_model", [f'"{key}"' for key in ("unit", "nodes", "sections", "bars", "title", "$schema", "text",
                                                 "dims", "section", "type", "visible", "angle", "quarterTurns",
                                                 "name", "layer", "materials", "material", "density",
                                                 "catalogue", "HEB180", "W310x38,7", "L 75x8",
                                                 "column", "frame-beam", "truss-web", "not-exported", "A")] +
           ["{", "}", "[", "]", ":", ",", "true", "false", "null", "1e400", "-0.0", "3.4028235e38",
            "2147483648", "\\u00e7", "\xc3\xa7", "\xef\xbb\xbf", "W 200", "2L 50", "PSA 1 2"])
dictionary("tables", list(dict.fromkeys([name + "\n" for name in ("@nodes", "@sections", "@bars", *(f"@{sheet}" for sheet in saf))] +
           [str(word) for rows in (*saf.values(), *tables.values()) for word in rows[0]] +
           ["W 200 100 8 6", "HEB 180", "yes", "não", "[deg]", "[mm]", "[in]", ";", ",", "\t", '"', "\n", "1,5", "1e400"])))
dictionary("workbook", [f"<{tag}" for tag in ("row", "c", "v", "is", "t", "si", "r", "f", "sheet", "Relationship", "sst")] +
           ["/>", "</", ' r="', ' t="s"', ' t="inlineStr"', ' t="str"', ' t="b"', ' t="e"', ' Target="', "<!DOCTYPE",
            "<![CDATA[", "&amp;", "&#x10FFFF;", "XFD1048576", "_x000D_", "\n@xl/", 'encoding="UTF-16"'])
