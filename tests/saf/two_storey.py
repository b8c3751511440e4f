#!/usr/bin/env python3
"""Writes a two-storey frame as a SAF workbook, as the JSON model that it must become, and as plain tables.

    tests/saf/two_storey.py [FOLDER]     two_storey.xlsx, two_storey.json, two_storey_tables.xlsx and
                                         two_storey_tables/*.csv, beside this file

The JSON model is worked out here from the frame itself, not by the program: ends of bars in
metres, section texts, turns about the axis. The tables say the same; their sections stand there in
the other ways that tables know, and the CSV files are as spreadsheets save them in Brazil.
"""
import csv
import json
import math
import pathlib
import sys
import zipfile
from xml.sax.saxutils import escape

LEVELS = (0, 3, 6)
CORNERS = ((0, 0), (6, 0), (6, 5), (0, 5))


class Frame:
    """Nodes by name, and members as both files need them."""

    def __init__(self):
        self.nodes = {}
        self.members = []

    def node(self, *point):
        for name, known in self.nodes.items():
            if known == point:
                return name
        name = f"N{len(self.nodes) + 1}"
        self.nodes[name] = point
        return name

    def member(self, kind, section, start, end, lcs, line="Centre", layer="", bar_type="", shift=(0, 0, 0), turns=0):
        """`shift`: how far the bar of the JSON model lies from the line between the nodes, in metres."""
        self.members.append({"name": f"{kind[0]}{len(self.members) + 1}", "kind": kind, "section": section,
                             "nodes": (self.node(*start), self.node(*end)), "lcs": lcs, "line": line,
                             "layer": layer, "type": bar_type, "shift": shift, "turns": turns})


# Of the lipped channel 200 x 75 x 20 x 2: web, flanges, lips as (area, distance from the back).
LIPPED = ((200 * 2, 1), (2 * 73 * 2, 2 + 36.5), (2 * 18 * 2, 74))
LIPPED_CENTROID = sum(a * x for a, x in LIPPED) / sum(a for a, _ in LIPPED)

SECTIONS = {  # name: cells of the workbook, text of the model
    "Pilar": (("Manufactured", "", "", "HEB180", 1, 0.00653), "HE 180 180 14 8.5"),
    "Viga": (("Manufactured", "", "", "IPE300", 1, 0.00538), "IPE 300 150 10.7 7.1"),
    "Contraventamento": (("Compound", "Double Angle BtB", "10", "L75x75x8", "", 0.00229), "2LLM 75 0 0 8 10"),
    "Terça": (("Parametric", "Cold formed Channel with lips", "200; 75; 2; 3; 20", "", "", ""), "UENR 200 75 20 2"),
}


def two_storey():
    frame = Frame()
    upright = ("y by vector", 0, (0, 1, 0))
    level = ("z by vector", 0, (0, 0, 1))
    for below, above in zip(LEVELS, LEVELS[1:]):
        storey = f"Pavimento {LEVELS.index(above)}"
        for x, y in CORNERS:
            frame.member("Column", "Pilar", (x, y, below), (x, y, above), upright, layer=storey, bar_type="column")
        for (x0, y0), (x1, y1) in zip(CORNERS, CORNERS[1:] + CORNERS[:1]):
            # The top of the beam on the line: half of 300 mm lower. With z up, y is -Y where a beam runs
            # along -X; a bar that is not turned has its first axis along +Y there.
            frame.member("Beam", "Viga", (x0, y0, above), (x1, y1, above), level, "Top", storey, "frame-beam",
                         shift=(0, 0, -0.15), turns=2 if x1 < x0 else 0)
        # In the plane of X = 0; z leads up there, so y is -X for a bar that runs along +Y. The angles
        # stand on their flat legs, which turns them half round from how the family is drawn.
        frame.member("WallBracing", "Contraventamento", (0, 0, below), (0, 5, above), level, layer=storey,
                     bar_type="bracing", turns=-1)
        frame.member("WallBracing", "Contraventamento", (6, 0, below), (6, 5, above), level, layer=storey,
                     bar_type="bracing", turns=-1)
    for x in (1.5, 3, 4.5):
        # On the beams: 100 mm higher. The bar runs along the back of the channel, which opens to the
        # right, that is towards +X; the centroid is on the line.
        frame.member("Purlin", "Terça", (x, 0, 6), (x, 5, 6), level, "Bottom", "Cobertura", "other",
                     shift=(-LIPPED_CENTROID / 1000, 0, 0.1))
    return frame


def json_model(frame):
    nodes, indexes = [], {}

    def index(name, shift):
        # A bar that lies on its line shares the node; moved ends that fall together are one.
        key = name if shift == (0, 0, 0) else tuple(a + b for a, b in zip(frame.nodes[name], shift))
        if key not in indexes:
            indexes[key] = len(nodes)
            nodes.append([a + b for a, b in zip(frame.nodes[name], shift)])
        return indexes[key]

    bars = []
    for member in frame.members:
        bar = {"nodes": [index(node, member["shift"]) for node in member["nodes"]], "section": member["section"],
               "type": member["type"], "name": member["name"], "layer": member["layer"]}
        if member["turns"]:
            bar["quarterTurns"] = member["turns"]
        bars.append(bar)
    return {"title": "Sobrado", "unit": "m", "nodes": nodes,
            "materials": {"S355": {"density": 7850}},
            "sections": {name: {"text": text, "material": "S355"} for name, (_, text) in SECTIONS.items()},
            "bars": bars}


TABLE_SECTIONS = {  # name: catalogue, text, family, dimensions
    "Pilar": ("HEB 180", "", "", ()),
    "Viga": ("ipe300", "", "", ()),
    "Contraventamento": ("", "", "2LLM", (75, 0, 0, 8, 10)),
    "Terça": ("", "UENR 200 75 20 2", "", ()),
}


def tables(frame):
    """The rows of the three tables, by the names of their sheets."""
    model = json_model(frame)
    dimensions = [f"d{i}" for i in range(5)]
    return {
        "nodes": [["node", "x [m]", "y", "z"]]
        + [[i + 1, *point] for i, point in enumerate(model["nodes"])],
        "sections": [["section", "catalogue", "text", "family", *dimensions, "material", "density [kg/m³]"]]
        + [[name, *ways, *dims, *[""] * (len(dimensions) - len(dims)), "S355", 7850]
           for name, (*ways, dims) in TABLE_SECTIONS.items()],
        "bars": [["bar", "start", "end", "section", "type", "quarter turns", "layer"]]
        + [[bar["name"], *(node + 1 for node in bar["nodes"]), bar["section"], bar["type"],
            bar.get("quarterTurns", ""), bar["layer"]] for bar in model["bars"]],
    }


PORTUGUESE = {"nodes": "nós", "sections": "seções", "bars": "barras", "node": "nó", "section": "seção",
              "catalogue": "catálogo", "text": "texto", "family": "família", "density [kg/m³]": "densidade [kg/m³]",
              "bar": "barra", "start": "início", "end": "fim", "type": "tipo", "quarter turns": "quartos",
              "layer": "camada"}


def write_csv_files(folder, content):
    """Windows-1252, semicolons, decimal commas, Portuguese headers."""
    folder.mkdir(exist_ok=True)
    for name, (header, *rows) in content.items():
        with open(folder / f"{name}.csv", "w", encoding="cp1252", newline="") as file:
            lines = csv.writer(file, delimiter=";")
            lines.writerow([PORTUGUESE.get(word, word) for word in header])
            lines.writerows([str(value).replace(".", ",") if isinstance(value, float) else value for value in row]
                            for row in rows)


def sheets(frame):
    members = [["Name", "Type", "Cross section", "Nodes", "Segments", "LCS", "LCS Rotation [deg]",
                "Coordinate X [m]", "Coordinate Y [m]", "Coordinate Z [m]", "System line", "Layer"]]
    for member in frame.members:
        rule, rotation, vector = member["lcs"]
        members.append([member["name"], member["kind"], member["section"], "; ".join(member["nodes"]), "Line", rule,
                        rotation, *vector, member["line"], member["layer"]])
    return {
        "Project": [["Name", "Sobrado"]],
        "Model": [["Name", "Sobrado"], ["SAF Version", "2.2.0"], ["Global coordinate system", "Z vertical"],
                  ["LCS of cross-section", "ZYX"], ["System of units", "Metric"]],
        "StructuralMaterial": [["Name", "Type", "Quality", "Unit mass [kg/m3]"], ["S355", "Steel", "S355", 7850]],
        "StructuralCrossSection": [["Name", "Material", "Cross-section type", "Shape", "Parameters [mm]", "Profile",
                                    "Form code", "A [m2]"]]
        + [[name, "S355", *cells] for name, (cells, _) in SECTIONS.items()],
        "StructuralPointConnection": [["Name", "Coordinate X [m]", "Coordinate Y [m]", "Coordinate Z [m]"]]
        + [[name, *point] for name, point in frame.nodes.items()],
        "StructuralCurveMember": members,
        "StructuralPointSupport": [["Name", "Node", "ux", "uy", "uz"]]
        + [[f"Sn{i + 1}", frame.node(x, y, 0), "Rigid", "Rigid", "Rigid"] for i, (x, y) in enumerate(CORNERS)],
    }


def column_name(column):
    return chr(ord("A") + column)


def sheet_xml(rows):
    lines = []
    for number, row in enumerate(rows, 1):
        cells = []
        for column, value in enumerate(row):
            place = f'r="{column_name(column)}{number}"'
            if isinstance(value, (int, float)):
                cells.append(f"<c {place}><v>{value!r}</v></c>")
            elif value:
                cells.append(f'<c {place} t="inlineStr"><is><t xml:space="preserve">{escape(value)}</t></is></c>')
        lines.append(f'<row r="{number}">{"".join(cells)}</row>')
    return ('<?xml version="1.0" encoding="UTF-8" standalone="yes"?>\n'
            '<worksheet xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main"><sheetData>'
            + "".join(lines) + "</sheetData></worksheet>")


def write_workbook(path, content):
    """The least that programs take for a workbook; the same bytes each time."""
    main = "http://schemas.openxmlformats.org/spreadsheetml/2006/main"
    office = "http://schemas.openxmlformats.org/officeDocument/2006/relationships"
    package = "http://schemas.openxmlformats.org/package/2006"
    sheet_type = "application/vnd.openxmlformats-officedocument.spreadsheetml"
    head = '<?xml version="1.0" encoding="UTF-8" standalone="yes"?>\n'
    numbers = range(1, len(content) + 1)
    parts = {
        "[Content_Types].xml": head + f'<Types xmlns="{package}/content-types">'
        '<Default Extension="rels" ContentType="application/vnd.openxmlformats-package.relationships+xml"/>'
        f'<Override PartName="/xl/workbook.xml" ContentType="{sheet_type}.sheet.main+xml"/>'
        + "".join(f'<Override PartName="/xl/worksheets/sheet{i}.xml" ContentType="{sheet_type}.worksheet+xml"/>'
                  for i in numbers) + "</Types>",
        "_rels/.rels": head + f'<Relationships xmlns="{package}/relationships"><Relationship Id="rId1" '
        f'Type="{office}/officeDocument" Target="xl/workbook.xml"/></Relationships>',
        "xl/workbook.xml": head + f'<workbook xmlns="{main}" xmlns:r="{office}"><sheets>'
        + "".join(f'<sheet name="{name}" sheetId="{i}" r:id="rId{i}"/>' for i, name in zip(numbers, content))
        + "</sheets></workbook>",
        "xl/_rels/workbook.xml.rels": head + f'<Relationships xmlns="{package}/relationships">'
        + "".join(f'<Relationship Id="rId{i}" Type="{office}/worksheet" Target="worksheets/sheet{i}.xml"/>'
                  for i in numbers) + "</Relationships>",
    }
    for i, rows in zip(numbers, content.values()):
        parts[f"xl/worksheets/sheet{i}.xml"] = sheet_xml(rows)
    with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED) as archive:
        for name, text in parts.items():
            archive.writestr(zipfile.ZipInfo(name, (1980, 1, 1, 0, 0, 0)), text, zipfile.ZIP_DEFLATED)


def main():
    folder = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else pathlib.Path(__file__).parent)
    frame = two_storey()
    assert math.isclose(LIPPED_CENTROID, 22.2120, abs_tol=1e-3)
    write_workbook(folder / "two_storey.xlsx", sheets(frame))
    (folder / "two_storey.json").write_text(json.dumps(json_model(frame), indent=1, ensure_ascii=False) + "\n",
                                            encoding="utf-8")
    write_workbook(folder / "two_storey_tables.xlsx", tables(frame))
    write_csv_files(folder / "two_storey_tables", tables(frame))


if __name__ == "__main__":
    main()
