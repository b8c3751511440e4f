#!/usr/bin/env python3
"""Tests of the command-line program.

    tests/cli/run.py PROGRAM [--wine] [--native PROGRAM] [--data] [--large BARS] [--whole-names] [NAME...]
    tests/cli/run.py PROGRAM [--wine] --list

PROGRAM lies in its build folder, beside the module, run_host and tests/cli/callback_host.
--wine runs it (and them) under Wine; with --native, what the native program writes is compared too.
--data: only the cases that are data, which need the program alone.
--large: bars of a model whose export takes seconds, 400000 unless told.
NAME: only the tests whose name contains it, or with --whole-names those of that name. --list prints
the names. The cases that are data stand in cases/, one file a subject.
Ends with "N passed, N failed".
"""

import argparse
import base64
import collections
import contextlib
import difflib
import functools
import gzip
import io
import json
import os
import pty
import random
import re
import resource
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import tomllib
import traceback
import zipfile
from pathlib import Path

HERE = Path(__file__).resolve().parent
ROOT = HERE.parent.parent
sys.path[:0] = [str(ROOT / "tests/support"), str(ROOT / "tests/saf")]
from model_files import without_global_ids  # noqa: E402
from two_storey import write_workbook  # noqa: E402

MODELS = HERE / "models"
SAMPLES = ["galpao", "familias"]
# A file of the program's own, which it replaces without being told its name: what every one begins with.
OLD_EXCHANGE = (b"ISO-10303-21;\r\nHEADER;\r\n"
                b"FILE_DESCRIPTION(('ViewDefinition [CoordinationView]'), '2;1');\r\n"
                b"FILE_NAME('', '2012-05-22T12:54:15', (''), (''), 'v1', 'Prototipo_vq5_ifc 0.1', '');\r\n"
                b"FILE_SCHEMA(('IFC2X3'));\r\nENDSEC;\r\n\r\nDATA;\r\n\r\nold")

options = None
build = None
tests = []


def test(function):
    tests.append((function.__name__.replace("_", " "), function))
    return function


def native_only(function):
    function.native_only = True
    return test(function)


def check(condition, message):
    if not condition:
        raise AssertionError(message)


def equal(found, wanted, what):
    if isinstance(found, str) and isinstance(wanted, str) and found != wanted:
        lines = difflib.unified_diff(wanted.splitlines(), found.splitlines(), "wanted", "found", lineterm="")
        raise AssertionError("\n".join([what, *list(lines)[:40]]))
    check(found == wanted, f"{what}\n--- wanted\n{wanted}\n--- found\n{found}")


# ---- running programs

def command(program, *arguments):
    if options.wine:
        return [str(ROOT / "scripts/wine.sh"), str(program), *map(str, arguments)]
    return [str(program), *map(str, arguments)]


def helper(name):
    return build / (name + (".exe" if options.wine else ""))


def module():
    return build / ("exportIFC.dll" if options.wine else "libexportIFC.so")


def environment(language="C"):
    env = {k: v for k, v in os.environ.items() if not k.startswith("LC_") and k != "LANG"}
    env["EXPORTIFC_LANG"] = language  # Wine hides the system's own variables
    return env


def run(*arguments, cwd=None, stdin=None, language="C", program=None, **more):
    return subprocess.run(command(program or options.program, *arguments), cwd=cwd,
                          stdin=stdin or subprocess.DEVNULL, capture_output=True,
                          env=environment(language), timeout=600, **more)


def slashed(said):
    return said.replace("\\", "/") if options.wine else said


def text(data):
    """Output as it must read on every system and release: one kind of slash and line end, no times."""
    plain = slashed(data.decode("utf-8").replace("\r\n", "\n") if options.wine else data.decode("utf-8"))
    plain = re.sub(r'"exportifc": "[\d.]+"', '"exportifc": "VERSION"', plain)
    plain = re.sub(r"(time|tempo)( +)\d+[.,]\d+ s", r"\1\2TIME", plain)
    return plain


@contextlib.contextmanager
def folder():
    with tempfile.TemporaryDirectory(prefix="exportifc-cli-") as name:
        for model in MODELS.iterdir():
            shutil.copy(model, name)
        yield Path(name)


def written(path):
    """What a test finds besides the models."""
    models = {m.name for m in MODELS.iterdir()}
    return {str(p.relative_to(path)): p for p in path.rglob("*")
            if p.is_file() and str(p.relative_to(path)) not in models}


def is_exchange(data, elements=None):
    lines = data.split(b"\r\n")
    found = len(re.findall(rb"= IFC(BEAM|COLUMN|MEMBER)\(", data))
    return (lines[0] == b"ISO-10303-21;" and lines[-2:] == [b"END-ISO-10303-21;", b""]
            and (elements is None or found == elements))


def masked(path):
    return without_global_ids(Path(path).read_bytes())


# ---- what programs read

@functools.cache
def report_schema():
    import jsonschema
    schema = json.loads((ROOT / "docs/exportifc.schema.json").read_text())
    jsonschema.Draft202012Validator.check_schema(schema)
    return jsonschema.Draft202012Validator(schema)


def reported(result, what):
    """The object of a call with --json: one, alone on its stream, as the schema has it."""
    check(result.stdout.endswith(b"}\n") and result.stdout.startswith(b'{\n  "exportifc": "'), f"{what}: {result.stdout[:99]}")
    equal(result.stderr, b"", f"{what}: standard error")
    report = json.loads(result.stdout.decode("utf-8"))
    faults = [f"{'/'.join(map(str, error.absolute_path))}: {error.message[:300]}" for error in report_schema().iter_errors(report)]
    equal(faults, [], f"{what}: {json.dumps(report)[:2000]}")
    equal((report["exitCode"], report["ok"]), (result.returncode, result.returncode == 0), f"{what}: the exit code")
    return report


# ---- the cases of cases/

def expected(value):
    return value.removeprefix("\n")


def content_bytes(content):
    """What a case puts into a file: a text, {hex = "..."} where it is none, {copy = "tests/..."} of a file that
    is there, {sheets = {name = [[cell, ...], ...]}} for a workbook, or {zip = {name = text}}, in whose directory bytes
    may then be others."""
    if isinstance(content, str):
        return content.encode()
    if "hex" in content:
        return bytes.fromhex(content["hex"])
    if "copy" in content:
        return (ROOT / content["copy"]).read_bytes()
    packed = io.BytesIO()
    if "sheets" in content:
        write_workbook(packed, content["sheets"])
        return packed.getvalue()
    with zipfile.ZipFile(packed, "w", zipfile.ZIP_DEFLATED) as archive:
        for name, member in content["zip"].items():
            archive.writestr(zipfile.ZipInfo(name), member, zipfile.ZIP_DEFLATED)
    data = bytearray(packed.getvalue())
    for place, digits in content.get("directory", {}).items():
        start, other = data.index(b"PK\1\2") + int(place), bytes.fromhex(digits)
        data[start:start + len(other)] = other
    return bytes(data)


def unzipped(path):
    """The exchange file in a zip of the program's, by another reader."""
    with zipfile.ZipFile(path) as archive:
        equal([(m.filename, m.date_time) for m in archive.infolist()], [(path.stem + ".ifc", (1980, 1, 1, 0, 0, 0))],
              f"what is in {path.name}")
        return archive.read(path.stem + ".ifc")


def run_case(case):
    with folder() as path:
        for name, content in case.get("before", {}).items():
            (path / name).parent.mkdir(parents=True, exist_ok=True)
            (path / name).write_bytes(content_bytes(content))
        for name, target in case.get("links", {}).items():
            (path / name).symlink_to(target)
        for name, target in case.get("hard_links", {}).items():
            os.link(path / target, path / name)
        stdin = open(path / case["stdin"], "rb") if "stdin" in case else None
        result = run(*case["args"], cwd=path, stdin=stdin, language=case.get("lang", "C"))
        if stdin:
            stdin.close()
        said = f"\n--- stdout\n{result.stdout[:3000]!r}\n--- stderr\n{text(result.stderr)}"
        equal(result.returncode, case.get("code", 0), "exit code" + said)
        if "--json" in case["args"]:
            reported(result, case["args"])
        if "stdout_exchange" in case:
            check(is_exchange(result.stdout, case["stdout_exchange"]), "no exchange file on standard output")
        if "out" in case:
            equal(text(result.stdout), slashed(expected(case["out"])), "standard output")
        if "err" in case:
            equal(text(result.stderr), slashed(expected(case["err"])), "standard error")
        for part in case.get("has", []):
            check(slashed(part) in text(result.stdout) + text(result.stderr), f"not said: {part}{said}")
        found = written(path)
        files = case.get("files", {})
        if "files" in case or case.get("code", 0) != 0:
            there = {k for key in ("before", "links", "hard_links") for k in case.get(key, {})}
            left = {n for n in found if n not in there} | set(files)
            for name, content in case.get("before", {}).items():
                if name not in files:
                    equal(found[name].read_bytes(), content_bytes(content), name)
            equal(sorted(left), sorted(files), "files")
        for name, wanted in files.items():
            data = found[name].read_bytes()
            if wanted.startswith("exchange "):
                check(is_exchange(data, int(wanted.split()[1])), f"{name} is not an {wanted} elements")
            elif wanted.startswith("zipped "):
                check(is_exchange(unzipped(found[name]), int(wanted.split()[1])), f"{name} is not {wanted} elements")
            elif wanted != "any":
                equal(data.decode(), expected(wanted), name)
        for name, parts in case.get("contains", {}).items():
            for part in parts:
                check(part.encode() in found[name].read_bytes(), f"{name} has no {part}")
        for model in MODELS.iterdir():
            equal((path / model.name).read_bytes(), model.read_bytes(), f"the model {model.name}")


CALLS = {"export": ["export", "-q", "-o", "out"], "strict": ["export", "-q", "--strict", "-o", "out"],
         "check": ["check"], "convert": ["convert", "-o", "out"],
         "view": ["view", "--template", "page.html", "-o", "out"]}


def run_fault(fault):
    def files_before(path):
        (path / "page.html").write_text("<a>@EXPORTIFC_NAME@</a><b>@EXPORTIFC_MODEL@</b>")
        for name, content in fault.get("before", {}).items():
            (path / name).parent.mkdir(parents=True, exist_ok=True)
            (path / name).write_text(content)

    found = {}
    for name in fault["codes"]:
        with folder() as path:
            files_before(path)
            words = [fault.get("output", "out") if word == "out" else word for word in CALLS[name]]
            result = run(*words, fault["model"], *fault.get("more", []), cwd=path)
            found[name] = result.returncode
            check(result.returncode == 0 or result.stderr + result.stdout, f"{name} says nothing and ends with {result.returncode}")
    equal(found, fault["codes"], "exit codes")
    if "output" in fault or "more" in fault:
        return
    for jobs in ([], ["--jobs", "2"]):
        with folder() as path:
            files_before(path)
            (path / "sub").mkdir()
            result = run("export", "-q", fault["model"], "one.json", "--out-dir", "sub", *jobs, cwd=path)
            equal(result.returncode, fault["codes"]["export"], f"exit code with a sound model {jobs}")
            check(is_exchange((path / "sub/one.ifc").read_bytes(), 1), "the sound model was not exported")
    with folder() as path:
        files_before(path)
        result = run("check", fault["model"], "one.json", cwd=path)
        equal(result.returncode, fault["codes"]["check"], "exit code with a sound model")
        check("one.json: 1 bar, no problems" in text(result.stdout), "the sound model was not checked")


# ---- same bytes

@test
def program_and_module_write_the_same_bytes():
    with folder() as path:
        for sample in SAMPLES:
            source = ROOT / "samples" / sample
            mine, theirs = path / "mine.ifc", path / "theirs.ifc"
            theirs.unlink(missing_ok=True)
            equal(run("export", f"{source}.txt", "-o", mine, "-q").returncode, 0, "batch, program")
            result = run(module(), f"{source}.txt", theirs, program=helper("run_host"))
            equal(result.returncode, 0, f"batch, module {result.stdout} {result.stderr}")
            check(masked(mine) == masked(theirs), f"{sample}.txt: program and module differ")
            compare_native(path, f"{source}.txt", [], mine)
    callback_bytes([ROOT / "samples" / f"{sample}.json" for sample in SAMPLES])


@test
def program_and_callback_write_the_same_bytes():
    callback_bytes([MODELS / name for name in ("kinds.json", "dims.json", "unknown.json", "plain.txt")])


def callback_bytes(models):
    with folder() as path:
        for model in models:
            for visible in ([], ["visible"]):
                mine, theirs = path / "mine.ifc", path / "theirs.ifc"
                theirs.unlink(missing_ok=True)
                flags = ["--visible-only"] if visible else []
                equal(run("export", model, "-o", mine, "-q", *flags).returncode, 0, "program")
                target = str(theirs) if not options.wine else "Z:" + str(theirs).replace("/", "\\")
                result = run(module(), model, target, *visible, program=helper("tests/cli/callback_host"))
                equal(result.returncode, 0, f"{model.name}: module {result.stdout} {result.stderr}")
                check(masked(mine) == masked(theirs), f"{model.name} {flags}: program and module differ")
                compare_native(path, model, flags, mine)


def compare_native(path, model, flags, mine):
    if options.native:
        subprocess.run([options.native, "export", model, "-o", path / "native.ifc", "-q", *flags], check=True)
        check(masked(path / "native.ifc") == masked(mine), f"{model}: native program and this one differ")


# ---- models

def json_model(bars):
    """A random model that a batch text file can carry whole."""
    dice = random.Random(bars)
    nodes = [[round(dice.uniform(-99, 99), 3) for _ in range(3)] for _ in range(bars + 1)]
    texts = ["W 200 100 8 6", "2L 75 75 8 8 10", "TUBO 100 100 5 5", "RET 150 25"]
    used = [dice.choice(texts) for _ in range(bars)]
    number = lambda v: f"{v:g}" if v == int(v) else repr(v)
    lines = [f'    {{"nodes": [{i}, {i + 1}], "section": "{used[i]}"'
             + (f', "angle": {number(0.25 * (i % 7))}' if i % 7 else "") + "}" for i in range(bars)]
    order = list(dict.fromkeys(used))
    return ('{\n  "title": "random",\n  "unit": "m",\n  "nodes": [\n'
            + ",\n".join(f"    [{', '.join(number(c) for c in n)}]" for n in nodes)
            + '\n  ],\n  "sections": {\n' + ",\n".join(f'    "{t}": {{"text": "{t}"}}' for t in order)
            + '\n  },\n  "bars": [\n' + ",\n".join(lines) + "\n  ]\n}\n")


@test
def round_trip_from_json_to_batch_to_json():
    with folder() as path:
        first, batch, second, again = (path / n for n in ("1.json", "2.txt", "3.json", "4.txt"))
        first.write_text(json_model(300))
        for source, target in ((first, batch), (batch, second), (second, again)):
            result = run("convert", source, "-o", target)
            equal((result.returncode, text(result.stderr)), (0, ""), f"convert to {target.name}")
        equal(second.read_text(), first.read_text(), "the model after both ways")
        check(batch.read_bytes() == again.read_bytes(), "the batch files differ")
        for model in (first, batch):
            equal(run("export", model, "-o", model.with_suffix(".ifc"), "-q").returncode, 0, "export")
        check(masked(path / "1.ifc") == masked(path / "2.ifc"), "the exported files differ")


@test
def sample_conversion_keeps_what_batch_can_carry():
    with folder() as path:
        run("convert", ROOT / "samples/galpao.json", "-o", path / "g.txt")
        for name, source in (("a", path / "g.txt"), ("b", ROOT / "samples/galpao.txt")):
            run("export", source, "-o", path / f"{name}.ifc", "-q")
        check(masked(path / "a.ifc") == masked(path / "b.ifc"), "converted and generated batch file differ")


@test
def two_hundred_thousand_bars():
    bars = 200000
    with folder() as path:
        model = path / "large.json"
        with open(model, "w") as file:
            file.write('{"unit":"m","nodes":[' + ",".join(f"[{i % 500},{i // 500},{i % 13}.5]" for i in range(bars + 1)))
            file.write('],"sections":{"a":{"text":"W 200 100 8 6"}},"bars":['
                       + ",".join(f'{{"nodes":[{i},{i + 1}],"section":"a","type":{i % 10}}}' for i in range(bars)) + "]}")
        result = run("export", model)
        equal(result.returncode, 0, "export")
        check("bars written          200,000 of 200,000" in text(result.stdout), "the summary differs")
        with open(path / "large.ifc", "rb") as file:
            elements = sum(1 for line in file if re.match(rb"#\d+= IFC(BEAM|COLUMN|MEMBER)\(", line))
            file.seek(-20, os.SEEK_END)
            check(file.read().endswith(b"END-ISO-10303-21;\r\n"), "no end")
        equal(elements, bars, "elements")


# ---- failures

def large_model(path, bars=None):
    bars = bars or options.large
    model = path / "large.json"
    model.write_text('{"unit":"m","nodes":[[0,0,0],[5,0,3]],"sections":{"a":{"text":"W 200 100 8 6"}},"bars":['
                     + ",".join(['{"nodes":[0,1],"section":"a"}'] * bars) + "]}")
    return model


@native_only
def interrupts_leave_the_old_file():
    for number in (signal.SIGINT, signal.SIGTERM):
        with folder() as path:
            large_model(path)
            (path / "large.ifc").write_bytes(OLD_EXCHANGE)
            before = set(written(path))
            process = subprocess.Popen(command(options.program, "export", "large.json"), cwd=path,
                                       stdout=subprocess.PIPE, stderr=subprocess.PIPE, env=environment())
            wait_for_partial_file(path, process)
            process.send_signal(number)
            _, err = process.communicate(timeout=60)
            equal(process.returncode, 4, "exit code")
            check(b"interrupted by the user; nothing was written" in err, err)
            equal((path / "large.ifc").read_bytes(), OLD_EXCHANGE, "the old file")
            equal(set(written(path)), before, "files")


@native_only
def interrupted_jobs_leave_nothing():
    with folder() as path:
        model = large_model(path)
        for i in range(3):
            shutil.copy(model, path / f"m{i}.json")
        before = set(written(path))
        process = subprocess.Popen(
            command(options.program, "export", "m0.json", "m1.json", "m2.json", "--jobs", "2"), cwd=path,
            stdout=subprocess.PIPE, stderr=subprocess.PIPE, env=environment())
        wait_for_partial_file(path, process)
        process.terminate()
        out, err = process.communicate(timeout=60)
        equal((process.returncode, text(out), text(err)),
              (4, "", "exportifc: error: interrupted by the user after 0 of 3 models\n"), "exit code, what is said")
        equal(set(written(path)), before, "files")


@native_only
def an_interrupt_between_models_keeps_those_that_are_done():
    with folder() as path:
        large_model(path)
        process = subprocess.Popen(
            command(options.program, "export", "one.json", "large.json", "kinds.json", "-q"), cwd=path,
            stdout=subprocess.PIPE, stderr=subprocess.PIPE, env=environment("pt"))
        wait_for_partial_file(path, process)
        process.terminate()
        _, err = process.communicate(timeout=60)
        equal((process.returncode, text(err)),
              (4, "exportifc: erro: interrompido pelo usuário depois de 1 de 3 modelos\n"), "exit code, what is said")
        equal(set(written(path)), {"large.json", "one.ifc"}, "files")


def wait_for_partial_file(path, process):
    for _ in range(3000):
        if any(p.stat().st_size > 100000 for p in path.glob("*.part")):
            return
        check(process.poll() is None, "the export ended before it could be interrupted")
        time.sleep(0.01)
    check(False, "no partial file appeared")


@native_only
def a_full_disk_leaves_the_old_file():
    with folder() as path:
        large_model(path, 2000)
        (path / "large.ifc").write_bytes(OLD_EXCHANGE)
        before = set(written(path))
        limit = lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (300000, 300000))
        result = run("export", "large.json", cwd=path, preexec_fn=limit)
        equal(result.returncode, 4, "exit code")
        check(re.search(r"stopped at bar [\d,]+ of 2,000: cannot write large.ifc: the file would be larger than allowed",
                        text(result.stderr)), text(result.stderr))
        equal((path / "large.ifc").read_bytes(), OLD_EXCHANGE, "the old file")
        equal(set(written(path)), before, "files")


@native_only
def a_full_device():
    result = run("export", MODELS / "one.json", "-o", "/dev/full")
    equal((result.returncode, text(result.stderr)),
          (4, "exportifc: error: cannot write /dev/full: no space left on the disk\n"), "/dev/full")
    said = "exportifc: error: cannot write standard output: no space left on the disk\n"
    for arguments, lines in ((["profiles"], 1), (["export", "one.json", "kinds.json", "--jobs", "2"], 2)):
        with folder() as path, open("/dev/full", "wb") as full:
            result = subprocess.run(command(options.program, *arguments), cwd=path, stdout=full, stderr=subprocess.PIPE,
                                    env=environment(), timeout=60)
        equal((result.returncode, text(result.stderr)), (4, said * lines), f"{arguments} on standard output")


@native_only
def a_closed_pipe():
    with folder() as path:
        large_model(path, 20000)
        reader, writer = os.pipe()
        process = subprocess.Popen(command(options.program, "export", "large.json", "-o", "-"), cwd=path, stdout=writer,
                                   stderr=subprocess.PIPE, env=environment())
        os.close(writer)
        os.read(reader, 10)
        os.close(reader)
        _, err = process.communicate(timeout=60)
        equal(process.returncode, 4, "exit code")
        check("cannot write standard output: the reader closed the pipe" in text(err), text(err))


@native_only
def read_only_places():
    if os.geteuid() != 0:
        user = {}
    else:
        user = {"user": "nobody"}  # root may write anywhere
    with folder() as path:
        path.chmod(0o755)
        (path / "one.ifc").write_bytes(OLD_EXCHANGE)
        result = run("export", "one.json", "-o", "new.ifc", cwd=path, **user)
        if user:
            equal((result.returncode, text(result.stderr)), (4, "exportifc: error: cannot write new.ifc: permission "
                  "denied (read-only, or open in another program?)\n"), "read-only folder")
        (path / "one.ifc").chmod(0o444)
        path.chmod(0o777)
        result = run("export", "one.json", cwd=path, **user)
        equal((result.returncode, text(result.stderr)), (4, "exportifc: error: cannot write one.ifc: permission denied "
              "(read-only, or open in another program?)\n"), "read-only file")
        equal((path / "one.ifc").read_bytes(), OLD_EXCHANGE, "the old file")
        equal(sorted(p for p in written(path)), ["one.ifc"], "files")


@native_only
def links_and_modes_are_kept():
    with folder() as path:
        (path / "real.ifc").write_text("old")
        (path / "real.ifc").chmod(0o640)
        (path / "link.ifc").symlink_to("real.ifc")
        equal(run("export", "one.json", "-o", "link.ifc", "-q", cwd=path).returncode, 0, "export")
        check((path / "link.ifc").is_symlink(), "the link is gone")
        check(is_exchange((path / "real.ifc").read_bytes(), 1), "the file behind the link is not the new one")
        equal((path / "real.ifc").stat().st_mode & 0o777, 0o640, "mode")


# ---- terminal

def on_terminal(path, *arguments, language="C", code=0):
    main, side = pty.openpty()
    process = subprocess.Popen(command(options.program, *arguments), cwd=path, stdout=subprocess.PIPE, stderr=side,
                               env=environment(language) | {"COLUMNS": "100"})
    os.close(side)
    seen = b""
    with contextlib.suppress(OSError):
        while chunk := os.read(main, 65536):
            seen += chunk
    os.close(main)
    out, _ = process.communicate(timeout=60)
    equal(process.returncode, code, "exit code")
    return seen, out


@native_only
def progress_on_a_terminal_only():
    with folder() as path:
        large_model(path)
        seen, _ = on_terminal(path, "export", "large.json")
        check(re.search(rb"\[#*-*\] \d+ %  [\d,]+ of 400,000 bars  [\d,]+/s  \d+ s left", seen), seen[:500])
        check(seen.endswith(b"\r\x1b[K"), "the progress line is still there")
        seen, _ = on_terminal(path, "export", "large.json", "--quiet")
        equal(seen, b"", "quiet")
        equal(run("export", "large.json", cwd=path).stderr, b"", "in a pipe")
        seen, _ = on_terminal(path, "export", "large.json", language="pt")
        check(re.search(r"\[#*-*\] \d+ %  [\d.]+ de 400.000 barras  [\d.]+/s  faltam? \d+ s".encode(), seen), seen[:500])


@native_only
def progress_counts_models_side_by_side():
    with folder() as path:
        for language, said in (("en", b"of 3 models"), ("pt", b"de 3 modelos")):
            arguments = ["export", "one.json", "kinds.json", "edges.json", "--jobs", "2"]
            seen, out = on_terminal(path, *arguments, language=language)
            counted = [int(line.split()[0]) for line in seen.split(b"\r\x1b[K") if line.endswith(said)]
            equal(counted, [0, 1, 2, 3], f"the counts of {seen}")
            check(seen.endswith(b"\r\x1b[K"), "the line is still there")
            equal(text(out), text(run(*arguments, cwd=path, language=language).stdout), "what is said in a pipe")
            check(b"models" not in on_terminal(path, *arguments, "-q", language=language)[0], "quiet")
        for language, said in (("en", b"of 3 models, 1 failed"), ("pt", b"de 3 modelos, 1 falhou")):
            seen, _ = on_terminal(path, "export", "one.json", "nothing.json", "edges.json", "-j", "2", language=language, code=3)
            counted = [line for line in seen.split(b"\r\x1b[K") if line.endswith(said)]
            check(counted and counted[-1].startswith(b"3 "), f"one has failed, but: {seen}")
            check(seen.count(b"\n") == seen.count(b"\r\n") == 1, f"more than the line of the failure: {seen}")


@test
def models_side_by_side_say_what_they_say_in_turn():
    names = ["one.json", "unknown.json", "nothing.json", "faults.json", "bad-ends.json", "kinds.json", "accents.txt"]
    with folder() as path:
        said, files = [], []
        for jobs in ("1", "2", "8"):
            result = run("export", *names, "--jobs", jobs, cwd=path)
            equal(result.returncode, 3, "exit code")
            said.append((text(result.stdout), text(result.stderr)))
            files.append({name: masked(file) for name, file in written(path).items()})
        equal(said[1:], said[:1] * 2, "what is said")
        check(files[1:] == files[:1] * 2, "the files differ")


# ---- what programs read

# The calls of each command, and how they end.
PROGRAM_CALLS = {
    "export": [(["export", "one.json", "unknown.json", "faults.json", "--out-dir", "out"], 0),
               (["export", "unknown.json", "nothing.json", "bad-type.json", "references.json", "--jobs", "2"], 3),
               (["export", "kinds.json", "--html", "--template", "page.html", "-q"], 0),
               (["export", "references.json", "-o", "r.ifczip"], 1), (["export", "one.json", "-o", "-"], 2),
               (["export", "-"], 2), (["export", "one.json", "-o", "no/a.ifc"], 4), (["export"], 2),
               (["export", "one.json", "--jobs", "many"], 2), (["export", "one.json", "--html", "--template", "no.html"], 3)],
    "check": [(["check", "one.json", "faults.json", "nothing.json", "bad-type.json"], 3), (["check", "unknown.json"], 1),
              (["check", "half.json", "tables/"], 3), (["check", "hall.xlsx"], 3), (["check", "--json=yes", "one.json"], 2),
              (["check", "--jsn", "one.json"], 2)],
    "profiles": [(["profiles"], 0), (["profiles", "W"], 0), (["profiles", "W 200 100 oito 6.1"], 1),
                 (["profiles", "RET 150 25"], 0), (["profiles", "WW 1"], 1), (["profiles", "WW"], 2),
                 (["profiles", "--svg", "svg"], 0), (["profiles", "--markdown"], 2)],
    "sections": [(["sections"], 0), (["sections", "HEB180"], 0), (["sections", "HE", "--depth", "300"], 0),
                 (["sections", "--mass", "9999"], 0), (["sections", "XYZ"], 2), (["sections", "--mass", "heavy"], 2)],
    "convert": [(["convert", "one.json", "-o", "a.txt"], 0), (["convert", "one.json", "-o", "tables-of-it/"], 0),
                (["convert", "one.json", "-o", "b.txt", "--strict"], 1), (["convert", "references.json", "-o", "c.txt"], 1),
                (["convert", "nothing.json", "-o", "d.txt"], 3), (["convert", "one.json"], 2),
                (["convert", "one.json", "-o", "e.csv"], 2)],
    "view": [(["view", "one.json", "-o", "v.html", "--template", "page.html"], 0),
             (["view", "old.ifc", "--template", "page.html"], 0), (["view", "one.json", "--template", "none.html"], 3),
             (["view", "nothing.json"], 3), (["view"], 2)],
    "takeoff": [(["takeoff", "made.json", "--cuts"], 0), (["takeoff", "unknown.json", "-o", "t.csv"], 1),
                (["takeoff", "one.json", "-o", "-"], 2), (["takeoff", "one.json", "--density", "1"], 2),
                (["takeoff", "references.json"], 1), (["takeoff", "nothing.json"], 3)],
    "template": [(["template", "t.xlsx"], 0), (["template", "t/"], 0), (["template", "t.doc"], 2), (["template", "-"], 2),
                 (["template", "no/t.xlsx"], 4)],
    "help": [(["--help"], 0), (["export", "-h"], 0), (["help"], 0)],
    "version": [(["--version"], 0)],
    None: [(["chek"], 2), (["--json"], 2), (["--man"], 2), (["one.json"], 2)],
}
MADE_MODEL = {"unit": "m", "nodes": [[0, 0, 0], [0, 0, 3]], "materials": {"A36": {"density": 7850}},
              "sections": {"a": {"text": "W 200 100 8 6", "material": "A36"}},
              "bars": [{"nodes": [0, 1], "section": "a", "name": "P1", "layer": "floor"}]}


def keys_in(value):
    """The names of all members at any depth."""
    inner = value.values() if isinstance(value, dict) else value if isinstance(value, list) else []
    return set(value if isinstance(value, dict) else ()).union(*map(keys_in, inner))


def keys_of(schema):
    """The names of all members that a schema knows, but not those of problems."""
    if isinstance(schema, list):
        return set().union(*map(keys_of, schema))
    if not isinstance(schema, dict):
        return set()
    if schema.get("$ref", "#/$defs/problem") != "#/$defs/problem":
        return keys_of(report_schema().schema["$defs"][schema["$ref"].rsplit("/", 1)[1]])
    return set(schema.get("properties", ())).union(
        *(keys_of(inner) for key, inner in schema.items() if key != "properties"),
        *map(keys_of, schema.get("properties", {}).values()))


@test
def programs_read_one_object_of_every_command():
    listed = re.findall(r"^  (\w+) ", text(run("--help").stdout).split("Commands:")[1], re.MULTILINE)
    equal(set(PROGRAM_CALLS) - {"help", "version", None}, set(listed), "the commands")
    equal(set(report_schema().schema["properties"]["command"]["enum"]), set(PROGRAM_CALLS), "the commands of the schema")
    problem_keys = set()
    for name, calls in PROGRAM_CALLS.items():
        keys = set()
        for number, (arguments, code) in enumerate(calls):
            for language in ("en", "pt")[number % 2:][:1] if options.wine else ("en", "pt"):
                with folder() as path:
                    (path / "page.html").write_text("<title>exportIFC</title>@EXPORTIFC_NAME@@EXPORTIFC_MODEL@@EXPORTIFC_NOTES@")
                    (path / "old.ifc").write_bytes(OLD_EXCHANGE)
                    (path / "made.json").write_text(json.dumps(MADE_MODEL))
                    (path / "half.json").write_text('{"unit": "m", "nodes": [[0, 0, .5]]}')
                    (path / "tables").mkdir()
                    (path / "tables/nodes.csv").write_text("node;x [mm];y [mm];z [mm]\nA;1;2;x\n")
                    write_workbook(path / "hall.xlsx", {"nodes": [["node", "x [mm]"]], "sections": [], "bars": []})
                    kept = set(written(path))
                    result = run(*arguments, *([] if "--json" in "".join(arguments) else ["--json"]), cwd=path, language=language)
                    report = reported(result, arguments)
                    equal((report["command"], report["exitCode"]), (name, code), f"{arguments}: {report['problems']}")
                    files = report.get("files", []) + [file for model in report.get("models", []) for file in model.get("files", [])]
                    equal(sorted(map(slashed, files)), sorted(map(slashed, set(written(path)) - kept)), f"{arguments}: the files")
                    problems = report["problems"] + [problem for model in report.get("models", []) for problem in model["problems"]]
                    check(problems or code == 0, f"{arguments}: it is not said why")
                    problem_keys |= keys_in(problems)
                    keys |= keys_in({key: value for key, value in report.items() if key != "problems"})
        own = report_schema().schema["$defs"].get("text" if "text" in keys and name != "profiles" else name, {})
        equal(sorted(keys_of(own) - keys), [], f"{name}: members of the schema that nobody has seen")
    known = set(report_schema().schema["$defs"]["problem"]["properties"])
    equal(sorted(known - problem_keys), [], "members of a problem that nobody has seen")


@native_only
def programs_read_the_same_of_a_model_as_people():
    with folder() as path:
        report = reported(run("check", "--json", "faults.json", "unknown.json", cwd=path), "check")
        lines = text(run("check", "faults.json", "unknown.json", cwd=path).stdout).splitlines()
        said = [f"{p['file']}:{p['line']}:{p['column']}: {p['severity']}: " for m in report["models"] for p in m["problems"]]
        equal([line[:len(start)] for line, start in zip([line for line in lines if ": error: " in line or ": warning: " in line
                                                         or ": note: " in line], said)], said, "the places")
        exported = reported(run("export", "--json", "faults.json", "unknown.json", "--jobs", "2", cwd=path), "export")
        problems = [[p for p in m["problems"] if p["severity"] != "note"] for m in report["models"]]
        equal([[p for p in m["problems"] if p["code"] != "module-message"] for m in exported["models"]], problems, "export")
        equal([m["model"] for m in exported["models"]], ["faults.json", "unknown.json"], "the order")


@native_only
def names_that_are_not_utf_8_are_marked_for_programs():
    with folder() as path:
        shutil.copy(path / "one.json", os.fsencode(path) + b"/caf\xe9.json")
        result = subprocess.run([os.fsencode(options.program), b"export", b"caf\xe9.json", b"--json"], cwd=path,
                                capture_output=True, env=environment(), timeout=60)
        report = reported(result, "a name in Latin-1")
        equal([(m["model"], m["files"]) for m in report["models"]], [("caf\ufffd.json", ["caf\ufffd.ifc"])], "the names")


@native_only
def programs_are_told_of_an_interrupt_and_of_a_language_that_is_none():
    with folder() as path:
        large_model(path)
        process = subprocess.Popen(command(options.program, "export", "one.json", "large.json", "--json"), cwd=path,
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE, env=environment())
        wait_for_partial_file(path, process)
        process.send_signal(signal.SIGINT)
        out, err = process.communicate(timeout=60)
        report = reported(subprocess.CompletedProcess([], process.returncode, out, err), "interrupted")
        equal([p["code"] for p in report["problems"]], ["interrupted"], "the problems")
        check("one.json" in [m["model"] for m in report["models"]], "what was done before is not said")
        report = reported(run("check", "one.json", "--json", cwd=path, language="xx"), "language")
        equal([(p["code"], report["exitCode"]) for p in report["problems"]], [("bad-use", 2)], "language")
        seen, out = on_terminal(path, "export", "large.json", "--json")
        check(re.search(rb" of [\d,]+ bars ", seen), "no progress on the terminal")
        reported(subprocess.CompletedProcess([], 0, out, b""), "on a terminal")


@native_only
def every_code_of_a_problem_is_in_the_schema():
    codes = report_schema().schema["$defs"]["problem"]["properties"]["code"]["enum"]
    equal(codes, sorted(documented_codes()), "the codes of docs/exportifc.schema.json and of docs/checks.md")


# ---- the viewer's page

@test
def a_page_from_a_model_and_from_a_file():
    with folder() as path:
        (path / "page.html").write_text("<title>exportIFC</title><a>@EXPORTIFC_NAME@</a><b>@EXPORTIFC_MODEL@</b>")

        def content(name):
            match = re.fullmatch(r"<title>exportIFC</title><a>(.*)</a><b>(.*)</b>", (path / name).read_text())
            check(match, f"{name} is not the page")
            packed = base64.b64decode(match[2], validate=True)
            equal(packed[:10], b"\x1f\x8b\x08" + bytes(6) + b"\xff", "the head of the packed file: no name, time or system")
            return base64.b64decode(match[1], validate=True).decode(), gzip.decompress(packed)

        def no_ids(data):
            (path / "x.ifc").write_bytes(data)
            return masked(path / "x.ifc")

        equal(run("export", "kinds.json", "--html", "--template", "page.html", "-q", cwd=path).returncode, 0, "--html")
        name, data = content("kinds.html")
        equal((name, data == (path / "kinds.ifc").read_bytes()), ("kinds.ifc", True), "--html")
        equal(run("view", "kinds.ifc", "-o", "v.html", "--template", "page.html", cwd=path).returncode, 0, "view")
        check(content("v.html") == (name, data), "the page of the IFC file differs")
        equal(run("view", "kinds.json", "-o", "m.html", "--template", "page.html", cwd=path).returncode, 0, "view")
        check(no_ids(content("m.html")[1]) == no_ids(data), "the page of the model differs")
        (path / "notes.html").write_text("<title>exportIFC</title><a>@EXPORTIFC_NOTES@</a><b>@EXPORTIFC_MODEL@</b>@EXPORTIFC_NAME@")
        notes = {}
        for flags in ((), ("--no-notes",)):
            equal(run("view", "far.json", "-o", "n.html", "--template", "notes.html", *flags, cwd=path).returncode, 0, "view")
            notes[flags] = base64.b64decode(re.search("<a>(.*)</a>", (path / "n.html").read_text())[1]).decode()
        equal(list(notes.values()), ["/unit: the whole model measures 12.0 km; is the unit right (m)?", ""], "the notes of the page")
        (path / "not.html").write_text("<html>")
        equal(run("view", "kinds.json", "--template", "not.html", cwd=path).returncode, 3, "another page")
        equal(run("view", "accents.json", "--template", "page.html", cwd=path).returncode, 1, "accents")


@test
def a_zip_holds_the_file_that_is_written_without_it():
    with folder() as path:
        (path / "page.html").write_text("@EXPORTIFC_NAME@ @EXPORTIFC_MODEL@")
        for model in (ROOT / "samples/galpao.json", path / "kinds.json"):
            equal(run("export", model, "-o", "g.ifc", "-q", cwd=path).returncode, 0, "export")
            equal(run("export", model, "-o", "g.ifczip", "-q", cwd=path).returncode, 0, "export into a zip")
            data = unzipped(path / "g.ifczip")
            (path / "unzipped.ifc").write_bytes(data)
            equal(masked(path / "unzipped.ifc"), masked(path / "g.ifc"), "the file in the zip")
            equal(run("view", "g.ifczip", "-o", "g.html", "--template", "page.html", cwd=path).returncode, 0, "view")
            name, shown = (base64.b64decode(part) for part in (path / "g.html").read_text().split())
            equal((name, gzip.decompress(shown)), (b"g.ifc", data), "the file in the page")


@native_only
def a_page_holds_no_file_that_it_could_not_show():
    def sparse(size):
        with open(path / "large.ifc", "wb") as file:
            file.write(b"ISO-10303-21;")
            file.truncate(size)

    def view(name, code):
        result = run("view", name, "--template", "page.html", cwd=path)
        equal(result.returncode, code, text(result.stderr))
        equal((path / "large.html").is_file(), code == 0, "the page")
        (path / "large.html").unlink(missing_ok=True)
        return text(result.stderr)

    most = 2**30
    with folder() as path:
        (path / "page.html").write_text("@EXPORTIFC_NAME@@EXPORTIFC_MODEL@")
        sparse(most)
        view("large.ifc", 0)
        sparse(most + 1)
        said = "exportifc: error: large.ifc has more than 1 GiB, the most that a page can show: look at it in another program\n"
        equal(view("large.ifc", 4), said, "of a file")
        with zipfile.ZipFile(path / "large.ifczip", "w", zipfile.ZIP_DEFLATED, compresslevel=1) as archive:
            archive.write(path / "large.ifc", "a.ifc")
        check((path / "large.ifczip").stat().st_size < most // 100, "the zip is large itself")
        equal(view("large.ifczip", 4), said, "of a small zip with a large file in it")


# ---- the files of a call

@test
def names_that_differ_by_case_or_trailing_dots():
    # One file on Windows, several here.
    calls = [["convert", "one.json", "-o", "ONE.JSON"], ["convert", "one.json", "-o", "one.json."],
             ["export", "one.json", "kinds.json", "sub/ONE.json", "--out-dir", "new"],
             ["export", "one.json", "-o", "X.HTML ", "--html", "--template", "t.html"],
             ["view", "one.json", "-o", "T.html", "--template", "t.html"]]
    for arguments in calls:
        with folder() as path:
            (path / "sub").mkdir()
            shutil.copy(path / "one.json", path / "sub/ONE.json")
            (path / "t.html").write_text("@EXPORTIFC_NAME@@EXPORTIFC_MODEL@")
            before = set(written(path))
            result = run(*arguments, cwd=path)
            if options.wine:
                equal(result.returncode, 2, f"{arguments}")
                check(b"are the same file" in result.stderr, result.stderr)
                equal(set(written(path)), before, "files")
            else:
                check(b"are the same file" not in result.stderr, result.stderr)


@test
def names_of_devices_are_kept_where_the_system_has_them():
    said = {"en": "exportifc: error: CON.ifc: Windows keeps the name CON for a device; choose another\n",
            "pt": "exportifc: erro: CON.ifc: o Windows reserva o nome CON para um dispositivo; escolha outro\n"}
    for language, error in said.items():
        with folder() as path:
            result = run("export", "one.json", "-q", "-o", "CON.ifc", cwd=path, language=language)
            equal((result.returncode, text(result.stderr)), (2, error) if options.wine else (0, ""), "CON.ifc")
            equal(set(written(path)), set() if options.wine else {"CON.ifc"}, "files")


@native_only
def redirected_streams_are_files_of_the_call():
    with folder() as path:
        model = (path / "one.json").read_bytes()
        with open(path / "one.json", "rb") as source:
            result = run("convert", "-", "-o", "one.json", cwd=path, stdin=source)
        equal(result.returncode, 2, "input")
        check("one.json (output) and standard input (input) are the same file" in text(result.stderr), result.stderr)
        with open(path / "one.json", "ab") as target:
            result = subprocess.run(command(options.program, "export", "one.json", "-o", "-"), cwd=path, stdout=target,
                                    stderr=subprocess.PIPE, env=environment(), timeout=60)
        equal(result.returncode, 2, "output")
        equal((path / "one.json").read_bytes(), model, "the model")


@test
def a_folder_that_stays_empty_is_removed_again():
    with folder() as path:
        (path / "kept").mkdir()
        for directory in ("kept", "kept/new", "other/deep"):
            equal(run("export", "nothing.json", "--out-dir", directory, cwd=path).returncode, 3, directory)
            equal(sorted(p.name for p in path.iterdir() if p.is_dir()), ["kept"], directory)
            equal(list((path / "kept").iterdir()), [], directory)


@native_only
def a_page_named_by_the_variable_is_said_to_be():
    with folder() as path:
        (path / "bad.html").write_text("x")
        for page, said in (("no.html", "cannot read no.html: the file does not exist"),
                           ("bad.html", "bad.html is not the viewer's page")):
            result = subprocess.run(command(options.program, "view", "one.json"), cwd=path, capture_output=True,
                                    timeout=60, env=environment() | {"EXPORTIFC_VIEWER": page})
            equal((result.returncode, text(result.stderr)),
                  (3, f"exportifc: error: {said} (named by the variable EXPORTIFC_VIEWER)\n"), page)


@native_only
def a_page_that_is_missing_is_told_with_the_way_to_it():
    with folder() as path:
        (path / "bin").mkdir()
        shutil.copy(options.program, path / "bin/exportifc")
        for arguments in (["view", "one.json"], ["export", "one.json", "--html"]):
            for language, said in (("en", "the viewer's page is missing: "), ("pt", "falta a página do visualizador: ")):
                result = run(*arguments, cwd=path, language=language, program=path / "bin/exportifc")
                equal(result.returncode, 3, f"{arguments}")
                for part in (said, "bin/viewer.html", "./build.sh", "--template", "EXPORTIFC_VIEWER"):
                    check(part in text(result.stderr), f"{arguments}: not said: {part}\n{text(result.stderr)}")
                equal(set(written(path)), {"bin/exportifc"}, "files")


@native_only
def the_programs_own_files_are_no_outputs():
    with folder() as path:
        (path / "bin").mkdir()
        shutil.copy(options.program, path / "bin/exportifc")
        (path / "bin/viewer.html").write_text("<title>exportIFC</title>@EXPORTIFC_NAME@@EXPORTIFC_MODEL@")
        before = {name: file.read_bytes() for name, file in written(path).items()}
        for output in ("bin/exportifc", "bin/viewer.html"):
            result = run("convert", "one.json", "-o", output, cwd=path, program=path / "bin/exportifc")
            equal(result.returncode, 2, output)
            check("(part of the program) are the same file" in text(result.stderr), result.stderr)
        named = subprocess.run(command(options.program, "view", "one.json", "-o", "bin/viewer.html"), cwd=path,
                               capture_output=True, timeout=60,
                               env=environment() | {"EXPORTIFC_VIEWER": str(path / "bin/viewer.html")})
        equal(named.returncode, 2, "the page of EXPORTIFC_VIEWER")
        equal({name: file.read_bytes() for name, file in written(path).items()}, before, "files")


# ---- documents

def documented_codes():
    rows = [line.split("|")[1] for line in (ROOT / "docs/checks.md").read_text().splitlines() if line.startswith("| `")]
    return set(re.findall("`([^`]+)`", " ".join(rows)))


@native_only
def every_code_of_a_problem_is_documented():
    sources = "".join(p.read_text() for room in ("library", "cli") for p in (ROOT / room).rglob("*.*"))
    codes = set(re.findall(r'(?:\.code|Code) = "([a-z0-9-]+)"', sources))
    codes |= set(re.findall(r'\bGroup \w+\{"([a-z-]+)"', sources))
    codes |= set(re.findall(r'\b(?:add|warn|fail|refuse)\(\s*"([a-z]+(?:-[a-z0-9]+)+)"', sources))
    codes |= set(re.findall('"([a-z]+(?:-[a-z]+)+)"', (ROOT / "library/frame/plausibility.cpp").read_text()))
    equal(sorted(documented_codes()), sorted(codes), "the codes of docs/checks.md")


@native_only
def bash_completes_families():
    script = f"source {ROOT}/docs/exportifc.bash; _exportifc; printf '%s\\n' \"${{COMPREPLY[@]}}\""

    def completed(*words):
        line = " ".join(f"'{word}'" for word in words)
        said = subprocess.run(["bash", "-c", f"COMP_WORDS=({line}); COMP_CWORD={len(words) - 1}; {script}"],
                              capture_output=True, timeout=60, cwd=ROOT)
        return text(said.stdout).split()

    equal(completed("exportifc", "profiles", "["), ["[", "[]"], "brackets")
    equal(completed("exportifc", "profiles", "UU"), ["UUE", "UULM"], "letters")
    listed = [line.split()[0] for line in text(run("profiles").stdout).splitlines() if line[0] != " "]
    equal([word for word in completed("exportifc", "profiles", "") if not word.startswith("-")], listed, "all")
    equal(completed("exportifc", "sections", "HE"), ["HEA", "HEB", "HEM"], "series")
    equal(sorted(completed("exportifc", "export", "samples/ga")), ["samples/galpao.json", "samples/galpao.txt"], "files")


@native_only
def pages_of_the_manual_are_current():
    for file, arguments in (("profiles.md", ["profiles", "--markdown"]), ("sections.md", ["sections", "--markdown"]),
                            ("exportifc.1", ["--man"]),
                            ("exportifc.bash", ["--completion"])):
        check(run(*arguments).stdout == (ROOT / "docs" / file).read_bytes(),
              f"docs/{file} is not current: exportifc {' '.join(arguments)} > docs/{file}")


@native_only
def drawings_are_current_and_complete():
    with folder() as path:
        equal(run("profiles", "--svg", path / "svg").returncode, 0, "drawings")
        drawn = {p.name: p.read_text() for p in (path / "svg").iterdir()}
        kept = {p.name: p.read_text() for p in (ROOT / "docs/profiles").iterdir()}
        check(drawn == kept, "docs/profiles is not current: exportifc profiles --svg docs/profiles")
        for name, drawing in drawn.items():
            legend = re.findall(r">(d\d)  ", drawing)
            check(legend, f"{name} has no dimensions")
            for dimension in legend:
                check(f">{dimension}</text>" in drawing, f"{name}: {dimension} is not found in the shape")


@native_only
def every_family_of_the_samples_has_its_dimensions():
    listed = {}
    for line in text(run("profiles").stdout).splitlines():
        if not line.startswith("  "):
            word = line.split()[0]
        elif match := re.match(r"  d(\d)  (.*)", line):
            listed.setdefault(word, {})[int(match[1])] = match[2]
    sections = json.loads((ROOT / "samples/familias.json").read_text())["sections"]
    for section in sections.values():
        word, *dims = section["text"].split()
        if word != "2L_ASSIMETRICO":
            check(max(listed[word]) < len(dims) or word == "RET", f"{word}: d{max(listed[word])} of {dims}")


@native_only
def schema_and_program_agree():
    import jsonschema
    schema = json.loads((ROOT / "docs/model.schema.json").read_text())
    jsonschema.Draft202012Validator.check_schema(schema)
    validator = jsonschema.Draft202012Validator(schema)
    base = json.loads((MODELS / "kinds.json").read_text())
    base["materials"] = {"S355": {"density": 7850}}

    def changed(path, value):
        model = json.loads(json.dumps(base))
        at = model
        for key in path[:-1]:
            at = at[key]
        at[path[-1]] = value
        return model

    values = [None, True, 0, 1, -1, 12, 1.5, 1e39, "", "W", "column", "mm", [], [0], [0, 1], [0, 1, 2], [0] * 11, {},
              {"text": "W"}, {"text": 1}, {"text": "W", "dims": [1]}, {"text": "W", "x": 1},
              {"catalogue": "HEB 180"}, {"catalogue": 180}, {"catalogue": "HEB 180", "text": "W"},
              {"catalogue": "HEB 180", "dims": [1]}, {"catalogue": "HEB 180", "material": "S355"}]
    places = [["unit"], ["title"], ["$schema"], ["nodes"], ["nodes", 0], ["nodes", 0, 1], ["sections"],
              ["sections", "a"], ["sections", "a", "text"], ["sections", "a", "dims"], ["bars"], ["bars", 0],
              ["bars", 0, "nodes"], ["bars", 0, "section"], ["bars", 0, "type"], ["bars", 0, "visible"],
              ["bars", 0, "angle"], ["bars", 0, "quarterTurns"], ["bars", 0, "name"],
              ["bars", 0, "layer"], ["materials"], ["materials", "S355"], ["materials", "S355", "density"],
              ["materials", "S355", "extra"], ["sections", "a", "material"], ["extra"], ["bars", 0, "extra"]]
    models = [base] + [changed(place, value) for place in places for value in values]
    with folder() as path:
        names = []
        for i, model in enumerate(models):
            names.append(f"s{i}.json")
            (path / names[-1]).write_text(json.dumps(model))
        reports = json.loads(run("check", "--json", *names, cwd=path).stdout)["models"]
        for model, report in zip(models, reports):
            unreadable = any(p["code"] in ("unreadable", "not-json") for p in report["problems"])
            # The program takes an index below 0 in and reports it with those that are too large.
            if valid := validator.is_valid(model):
                check(not unreadable, f"the schema accepts what the program does not: {report}")
            elif not any(p["code"] == "node-index" for p in report["problems"]):
                check(unreadable, f"the program accepts what the schema does not: {model}")
        for sample in SAMPLES:
            validator.validate(json.loads((ROOT / f"samples/{sample}.json").read_text()))


@native_only
def faults_are_placed_however_long_the_model_is():
    # The program reads 16 KiB at a time; characters of two bytes and line ends lie across that, too.
    with folder() as path:
        for size in [*range(16378, 16390), *range(32764, 32772), 60000]:
            lines = (" " * 40 + "\n") * (size // 41)
            for before in ["{" + lines + " " * (size % 41), "{" + "\n" * size,
                           " " * (size % 2) + '{"title": "' + "ç" * (size // 2) + '"']:
                (path / "long.json").write_text(before + "!", encoding="utf-8")
                place = f"long.json:{before.count(chr(10)) + 1}:{len(before) - before.rfind(chr(10))}: "
                result = run("check", "long.json", cwd=path)
                said = text(result.stdout + result.stderr)
                check(place in said, f"{place} is not in: {said}")


@native_only
def the_model_of_the_documentation_is_exported():
    page = (ROOT / "docs/model-format.md").read_text()
    with folder() as path:
        (path / "portal.json").write_text(re.search(r"```json\n(.*?)```", page, re.S)[1])
        equal(run("export", "portal.json", "--strict", cwd=path).returncode, 0, "export")
        check(is_exchange((path / "portal.ifc").read_bytes(), 2), "not two elements")
        page = text((ROOT / "docs/json-output.md").read_bytes())
        objects = re.findall(r"^    exportifc (.*--json.*)\n+```json\n((?:.|\n)*?)```", page, re.MULTILINE)
        check(objects, "no object in docs/json-output.md")
        for arguments, wanted in objects:
            said = re.sub(r'"seconds": [\d.e-]+', '"seconds": 0.01', text(run(*arguments.split(), cwd=path).stdout))
            equal(said, wanted, arguments)
        lists = re.search(r"```text\n(.*?)```", (ROOT / "docs/takeoff.md").read_text(), re.S)[1]
        equal(text(run("takeoff", "portal.json", cwd=path).stdout), lists, "take-off")


@native_only
def variables_of_the_system_choose_the_language():
    for variables, said in (({}, "command"), ({"LANG": "pt_BR.UTF-8"}, "comando"), ({"LANG": "de_DE.UTF-8"}, "command"),
                            ({"LC_ALL": "en_US", "LANG": "pt_BR"}, "command"),
                            ({"LC_MESSAGES": "pt", "LANG": "en_US"}, "comando"),
                            ({"LC_ALL": "", "LANG": "pt"}, "comando")):
        env = {name: value for name, value in environment().items() if name != "EXPORTIFC_LANG"} | variables
        result = subprocess.run(command(options.program, "x"), capture_output=True, env=env, timeout=60)
        check(f' {said}' in text(result.stderr), f"{variables}: {text(result.stderr)}")


@native_only
def help_and_manual_speak_one_language():
    commands = ["export", "check", "profiles", "sections", "convert", "view", "takeoff", "template"]
    calls = [["--help"], ["--man"], *([name, "--help"] for name in commands)]
    english = r"\b(the|with|when|write|without|file|folder|FILE|FOLDER|MODEL|OPTIONS|COMMAND|Usage|Options|Excludes|REQUIRED|NAME)\b"
    portuguese = r"\b(sem|com|não|arquivo|pasta|ARQUIVO|PASTA|MODELO|OPÇÕES|COMANDO|Uso|Opções|Exclui|REQUERIDO|NOME)\b"
    for arguments in calls:
        for language, other in (("pt", english), ("en", portuguese)):
            said = text(run(*arguments, language=language).stdout)
            foreign = re.findall(other, re.sub(r"[\w.-]*-[\w-]+", "", said))
            equal(foreign, [], f"{arguments} in {language}")


@native_only
def texts_that_differ_do_not_compile():
    for wanted, source in ((True, 'Text t{"{0} {0:bar|bars} {1}", "{1}: {0} {…}"}; std::string s = say(t, {"1", "x"});'),
                           (False, 'Text t{"{0}", "{1}"};'), (False, 'Text t{"{0}", "none"};'),
                           (False, 'Text t{"{1}", "{1}"};'), (False, 'Text t{"{0:bar}", "{0:barra}"};'),
                           (False, 'Text t{"{0", "{0"};'), (False, 'Text t{"{0}", "{0}"}; std::string s = say(t, {"1", "x"});')):
        source = ('#include "library/text/text.h"\nusing namespace exportifc;\nnamespace { inline constexpr '
                  + source + " }\n")
        result = subprocess.run(["g++", "-std=c++20", "-fsyntax-only", "-I", str(ROOT), "-x", "c++", "-"],
                                input=source, capture_output=True, text=True)
        equal(result.returncode == 0, wanted, source + result.stderr)


# ---- all of them

def main():
    global options, build
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("program", type=Path)
    parser.add_argument("names", nargs="*")
    parser.add_argument("--wine", action="store_true")
    parser.add_argument("--native", type=Path)
    parser.add_argument("--data", action="store_true")
    parser.add_argument("--large", type=int, default=400000)
    parser.add_argument("--whole-names", action="store_true")
    parser.add_argument("--list", action="store_true")
    options = parser.parse_intermixed_args()
    options.program = options.program.resolve()
    options.native = options.native and options.native.resolve()
    build = options.program.parent
    if options.wine and not options.list and "EXPORTIFC_CLI_SESSION" not in os.environ:
        # One Wine session for all calls: each then starts at once.
        os.environ["EXPORTIFC_CLI_SESSION"] = "1"
        os.execv(str(ROOT / "scripts/wine.sh"), ["wine.sh", "--session", sys.executable, *sys.argv])
    files = sorted((HERE / "cases").glob("*.toml"))
    cases = [case for file in files for case in tomllib.loads(file.read_text())["case"]]
    cases += [case | {"name": case["name"] + ", in Portuguese", "lang": "pt", "err": case["err_pt"]}
              for case in cases if "err_pt" in case]
    faults = [fault for file in files for fault in tomllib.loads(file.read_text()).get("fault", [])]
    everything = [(case["name"], lambda case=case: run_case(case)) for case in cases] + \
        [("codes: " + fault["name"], lambda fault=fault: run_fault(fault)) for fault in faults] + \
        ([] if options.data else tests)
    if options.wine:
        everything = [(name, function) for name, function in everything if not getattr(function, "native_only", False)]
    twice = [name for name, count in collections.Counter(name for name, _ in everything).items() if count > 1]
    if twice:
        sys.exit(f"two tests have one name: {', '.join(twice)}")
    if options.list:
        print(*(name for name, _ in everything), sep="\n")
        return 0
    passed = failed = 0
    for name, function in everything:
        chosen = name in options.names if options.whole_names else any(part in name for part in options.names)
        if options.names and not chosen:
            continue
        try:
            function()
            passed += 1
        except Exception as failure:  # pylint: disable=broad-except
            failed += 1
            details = str(failure) if isinstance(failure, AssertionError) else traceback.format_exc()
            print(f"failed: {name}: {details}", flush=True)
    print(f"{passed} passed, {failed} failed")
    return 1 if failed or not passed else 0


if __name__ == "__main__":
    sys.exit(main())
