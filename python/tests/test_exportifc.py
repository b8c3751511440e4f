"""The package as its users call it; the program is the reference for what is written."""
import json
import os
import pathlib
import re
import subprocess
import threading
import warnings

import numpy
import pytest

import exportifc

ROOT = pathlib.Path(__file__).resolve().parents[2]
PROGRAM = pathlib.Path(os.environ["EXPORTIFC_PROGRAM"])
PORTAL = {
    "unit": "m",
    "nodes": [[0, 0, 0], [0, 0, 3], [5, 0, 3]],
    "sections": {"pillar": {"text": "W 200 100 8 6"}, "beam": {"catalogue": "HEB180"}},
    "bars": [
        {"nodes": [0, 1], "section": "pillar", "type": "column"},
        {"nodes": [1, 2], "section": "beam", "type": "frame-beam"},
    ],
}


def masked(exchange: bytes) -> bytes:
    """Without GlobalIds, which are new in every file."""
    return re.sub(rb"\('[0-9A-Za-z_$]{22}'", b"('", exchange)


def by_program(model: pathlib.Path, folder: pathlib.Path) -> bytes:
    output = folder / "program.ifc"
    subprocess.run([PROGRAM, "export", "-q", model, "-o", output], check=True)
    return masked(output.read_bytes())


# ---- models


@pytest.mark.parametrize("name", ["galpao.json", "familias.json", "galpao.txt"])
def test_a_path_gives_the_files_of_the_program(name, tmp_path):
    model = ROOT / "samples" / name
    exportifc.export(model, tmp_path / "own.ifc")
    assert masked((tmp_path / "own.ifc").read_bytes()) == by_program(model, tmp_path)


def test_a_dict_its_bytes_and_its_file_are_one_model(tmp_path):
    text = json.dumps(PORTAL).encode()
    (tmp_path / "portal.json").write_bytes(text)
    wanted = by_program(tmp_path / "portal.json", tmp_path)
    for model in (PORTAL, text, bytearray(text), tmp_path / "portal.json", str(tmp_path / "portal.json")):
        assert masked(exportifc.to_bytes(model)) == wanted


def test_tables_of_a_folder(tmp_path):
    subprocess.run([PROGRAM, "template", f"{tmp_path}/tables/"], check=True)
    subprocess.run([PROGRAM, "template", tmp_path / "tables.xlsx"], check=True)
    assert masked(exportifc.to_bytes(tmp_path / "tables")) == masked(exportifc.to_bytes(tmp_path / "tables.xlsx"))
    assert exportifc.check((tmp_path / "tables.xlsx").read_bytes(), name="tables.xlsx") == []


@pytest.mark.parametrize("of", [list, numpy.array])
def test_arrays(of):
    model = exportifc.frame(
        of([[0.0, 0, 0], [0, 0, 3], [5, 0, 3]]),
        of([[0, 1], [1, 2]]),
        ["W 200 100 8 6", {"catalogue": "HEB180"}],
        type=of([4, 1]),
    )
    assert masked(exportifc.to_bytes(model)) == masked(exportifc.to_bytes(PORTAL))


def test_values_of_all_bars_or_of_each():
    model = exportifc.frame(
        [[0, 0, 0], [0, 0, 3], [5, 0, 3]], [[0, 1], [1, 2]], "pillar",
        sections={"pillar": {"text": "W 200 100 8 6", "material": "S355"}}, materials={"S355": {"density": 7850}},
        type="column", angle=[0.5, None], visible=numpy.array([True, False]), name=["P1", "V1"], layer="Level 1",
        quarter_turns=1, title="Portal", unit="mm",
    )
    assert model == {
        "unit": "mm", "nodes": [[0, 0, 0], [0, 0, 3], [5, 0, 3]], "title": "Portal",
        "materials": {"S355": {"density": 7850}}, "sections": {"pillar": {"text": "W 200 100 8 6", "material": "S355"}},
        "bars": [
            {"nodes": [0, 1], "section": "pillar", "type": "column", "angle": 0.5, "quarterTurns": 1, "visible": True,
             "name": "P1", "layer": "Level 1"},
            {"nodes": [1, 2], "section": "pillar", "type": "column", "quarterTurns": 1, "visible": False, "name": "V1",
             "layer": "Level 1"},
        ],
    }
    assert b"IFCCOLUMN" in exportifc.to_bytes(model)


@pytest.mark.parametrize(
    "arguments, said",
    [
        (([[0, 0]], [[0, 0]], "W"), r"nodes\[0\]: 2 numbers"),
        (([[0, 0, 0]], [[0, 0, 1]], "W"), r"bars\[0\]: 3 numbers"),
        (([[0, 0, 0]], [[0, 0]], ["W", "W"]), "section: 2 values for 1 bars"),
    ],
)
def test_arrays_of_another_shape(arguments, said):
    with pytest.raises(ValueError, match=said):
        exportifc.frame(*arguments)


def test_no_model_at_all(tmp_path):
    with pytest.raises(TypeError, match="not a int"):
        exportifc.check(3)
    with pytest.raises(TypeError, match="cannot hold a set"):
        exportifc.check({"nodes": {1}})
    with pytest.raises(FileNotFoundError, match="no.json"):
        exportifc.export(tmp_path / "no.json", tmp_path / "no.ifc")


# ---- problems


def test_a_dict_has_pointers():
    with pytest.raises(exportifc.ModelError) as raised:
        exportifc.to_bytes(PORTAL | {"bars": [{"nodes": [0, 9], "section": "beams"}]})
    problems = raised.value.problems
    assert [(p.code, p.place, p.value) for p in problems] == [
        ("node-index", "/bars/0/nodes/1", "9"), ("unknown-section", "/bars/0/section", "beams")]
    assert problems[1].suggestion == "beam"
    assert "/bars/0/nodes/1" in str(raised.value)


def test_a_file_has_lines_and_a_workbook_cells(tmp_path):
    (tmp_path / "portal.json").write_text('{\n "unit": "km"}')
    with pytest.raises(exportifc.ModelError, match="portal.json:2:10: error"):
        exportifc.takeoff(tmp_path / "portal.json")
    (problem,) = exportifc.check(tmp_path / "portal.json", language="pt")
    assert (problem.line, problem.column, problem.severity, problem.file) == (2, 10, "error", str(tmp_path / "portal.json"))
    assert "permitido" in problem.message
    saf = exportifc.check(ROOT / "tests/saf/two_storey.xlsx", notes=True)
    assert any(problem.cell for problem in saf)


def test_what_is_written_all_the_same_is_warned_of(tmp_path):
    odd = PORTAL | {"sections": {"pillar": {"text": "QQ 1"}, "beam": {"text": "W 200 100 8 6"}}}
    with pytest.warns(exportifc.ModelWarning, match="QQ") as caught:
        exportifc.export(odd, tmp_path / "odd.ifc")
    assert caught[0].filename == __file__
    assert (tmp_path / "odd.ifc").exists()
    with warnings.catch_warnings():
        warnings.simplefilter("error")
        exportifc.export(PORTAL, tmp_path / "sound.ifc")


def test_accents_are_refused_or_made_plain(tmp_path):
    model = PORTAL | {"sections": {"pillar": {"text": "W 200 100 8 6"}, "beam": {"text": "RET 100 200 aço"}}}
    with pytest.raises(exportifc.ModelError) as raised:
        exportifc.export(model, tmp_path / "no.ifc")
    assert raised.value.problems[0].code == "unwritable-character"
    assert not (tmp_path / "no.ifc").exists()
    with pytest.warns(exportifc.ModelWarning):
        assert b"aco" in exportifc.to_bytes(model, transliterate=True)


# ---- outputs


def test_no_output_is_an_input(tmp_path):
    model = tmp_path / "portal.json"
    model.write_text(json.dumps(PORTAL))
    with pytest.raises(exportifc.NotWritten, match="the model itself"):
        exportifc.export(model, model)
    with pytest.raises(OSError):
        exportifc.export(model, tmp_path / "missing" / "portal.ifc")
    assert json.loads(model.read_text()) == PORTAL
    assert os.listdir(tmp_path) == ["portal.json"]


def test_progress_cancels_and_raises(tmp_path):
    calls = []
    exportifc.export(PORTAL, tmp_path / "a.ifc", progress=lambda done, total: calls.append((done, total)))
    assert calls and calls[-1][1] == 2
    with pytest.raises(exportifc.Cancelled):
        exportifc.export(PORTAL, tmp_path / "b.ifc", progress=lambda done, total: False)

    def interrupted(done, total):
        raise KeyboardInterrupt

    with pytest.raises(KeyboardInterrupt):
        exportifc.export(PORTAL, tmp_path / "b.ifc", progress=interrupted)
    assert os.listdir(tmp_path) == ["a.ifc"]


def test_names_in_any_letters(tmp_path):
    output = tmp_path / "galpão ção.ifczip"
    exportifc.export(PORTAL, output, visible_only=True)
    assert output.read_bytes().startswith(b"PK")


def test_invisible_bars():
    hidden = PORTAL | {"bars": [PORTAL["bars"][0], PORTAL["bars"][1] | {"visible": False}]}
    assert exportifc.to_bytes(hidden).count(b"=IFCBEAM(") + exportifc.to_bytes(hidden).count(b"= IFCBEAM(") == 1
    assert b"IFCBEAM(" not in exportifc.to_bytes(hidden, visible_only=True)


# ---- figures


def test_takeoff_is_that_of_the_program():
    model = ROOT / "samples/galpao.json"
    said = json.loads(subprocess.run([PROGRAM, "takeoff", "--json", model], check=True, stdout=subprocess.PIPE).stdout)
    rows = exportifc.takeoff(model)
    assert list(rows) == rows.sections == said["sections"] and rows.total == said["total"]
    assert rows.groups == said["groups"] and rows.cuts == said["cuts"] and rows.layers == []
    assert len(rows) == len(said["sections"])
    twice = exportifc.takeoff(model, density=2 * 7850)
    assert twice.total["massKg"] == pytest.approx(2 * rows.total["massKg"], rel=1e-4)


def test_lists():
    (heb,) = exportifc.sections("he 180 b")
    assert (heb.name, heb.depth, heb.mass, heb.text) == ("HEB 180", 180, 51.2, "HE 180 180 14 8.5")
    assert exportifc.sections("nothing of the kind") == [] and len(exportifc.sections()) > 700
    words = {family.word: family for family in exportifc.families("pt")}
    assert words["W"].dimensions[0]["measures"] == "altura"
    assert exportifc.__version__ in subprocess.run([PROGRAM, "--version"], stdout=subprocess.PIPE, text=True).stdout
    assert ".xlsx" in exportifc.formats


# ---- pages and threads


def test_a_page_holds_the_model(tmp_path, monkeypatch):
    page = tmp_path / "viewer.html"
    page.write_text("<p>@EXPORTIFC_MODEL@ @EXPORTIFC_NAME@ @EXPORTIFC_NOTES@</p>")
    monkeypatch.setenv("EXPORTIFC_VIEWER", str(page))
    shown = exportifc.view(PORTAL, height=300)
    assert "@" not in shown.page and "H4sI" in shown.page
    assert "srcdoc" in shown._repr_html_() and "height: 300px" in shown._repr_html_()
    shown.save(tmp_path / "page.html")
    assert (tmp_path / "page.html").read_text() == shown.page


def test_threads_do_not_meet():
    wanted, found = masked(exportifc.to_bytes(ROOT / "samples/galpao.json")), []

    def work():
        for _ in range(5):
            found.append(masked(exportifc.to_bytes(ROOT / "samples/galpao.json")) == wanted)

    threads = [threading.Thread(target=work) for _ in range(8)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert found == [True] * 40
