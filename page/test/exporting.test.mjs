// The page that exports, used as a person does: files are dropped, read, looked at, saved.

import assert from "node:assert/strict";
import { spawnSync } from "node:child_process";
import { readdirSync, readFileSync, writeFileSync } from "node:fs";
import { join } from "node:path";
import { fileURLToPath, pathToFileURL } from "node:url";
import { gunzipSync } from "node:zlib";
import { unzipSync, zipSync } from "fflate";
import { build } from "esbuild";
import { embed } from "../embed.mjs";
import { exported, exportedByProgram, modelText, needs, openPage, sample, scratch } from "./lib.mjs";

const root = fileURLToPath(new URL("../../", import.meta.url));
const built = fileURLToPath(new URL("../dist/exportifc.html", import.meta.url));
needs(built);
const url = pathToFileURL(built).href;

/** GlobalIds are drawn anew by each export. */
const withoutIds = (file) => Buffer.from(file).toString("latin1").replace(/\('[0-9A-Za-z_$]{22}'/g, "('*'");

const section = (text) => ({ unit: "mm", nodes: [[0, 0, 0], [0, 0, 3000]], sections: { a: { text } }, bars: [{ nodes: [0, 1], section: "a" }] });
const modelOf = (texts) => ({
  unit: "mm",
  nodes: texts.flatMap((_, i) => [[i * 500, 0, 0], [i * 500, 0, 3000]]),
  sections: Object.fromEntries(texts.map((text, i) => [`s${i}`, { text }])),
  bars: texts.map((_, i) => ({ nodes: [2 * i, 2 * i + 1], section: `s${i}` })),
});
const json = (model) => Buffer.from(JSON.stringify(model));

const failedNow = (page) => page.evaluate(() => exportifcViewer.failed);
const settle = (page) => page.waitForFunction(() => exportifcViewer.ready, null, { timeout: 60000 });

async function choose(page, name, bytes) {
  await page.setInputFiles("#chooser", { name, mimeType: "application/octet-stream", buffer: Buffer.from(bytes) });
  await settle(page);
}

/** As from a folder of the desktop. */
async function drop(page, files) {
  await page.evaluate((all) => {
    const data = new DataTransfer();
    for (const [name, letters] of all) data.items.add(new File([Uint8Array.from(atob(letters), (c) => c.charCodeAt(0))], name));
    for (const kind of ["dragover", "drop"]) {
      document.body.dispatchEvent(new DragEvent(kind, { bubbles: true, cancelable: true, dataTransfer: data }));
    }
  }, files.map(([name, bytes]) => [name, Buffer.from(bytes).toString("base64")]));
  await settle(page);
}

async function saved(page, button) {
  const [download] = await Promise.all([page.waitForEvent("download"), page.click(button)]);
  return { name: download.suggestedFilename(), bytes: readFileSync(await download.path()) };
}

export async function testExporting(check, browser, buildFolder) {
  await testExporter(check, buildFolder);
  await testOneFile(check, browser, buildFolder);
  await testProblems(check, browser);
  await testFaults(check, browser, buildFolder);
  await testWithoutWebAssembly(check, browser, buildFolder);
}

// --- the exporter alone --------------------------------------------------------------------------

/** The one in the page, run here. */
async function carriedExporter() {
  const script = join(scratch, "exporter.mjs");
  await build({ entryPoints: [join(root, "page/src/exporter.ts")], outfile: script, bundle: true, format: "esm", logLevel: "error" });
  const { Exporter } = await import(script);
  const packed = /<script id="exporter"[^>]*>([^<]*)</.exec(readFileSync(built, "latin1"))[1];
  return Exporter.start(gunzipSync(Buffer.from(packed, "base64")));
}

async function testExporter(check, buildFolder) {
  const exporter = await carriedExporter();
  const program = join(buildFolder, "exportifc");
  const models = ["galpao.json", "galpao.txt", "familias.json", "familias.txt"].map((name) => join(root, "samples", name));
  const odd = { "accents.json": json(section("CAÇÃO 10")), "cut.txt": sample("galpao.txt").slice(0, 900), "none.json": "{", "text.json": json(section("W 200x100x8")) };
  for (const [name, content] of Object.entries(odd)) writeFileSync(join(scratch, name), content, "latin1");
  for (const model of [...models, ...Object.keys(odd).map((name) => join(scratch, name))]) {
    for (const language of ["en", "pt"]) {
      await check(`the exporter finds in ${model} what the program finds, in ${language}`, () => {
        const said = spawnSync(program, ["check", "--json", model], { env: { ...process.env, EXPORTIFC_LANG: language }, encoding: "utf8" });
        const open = exporter.open(readFileSync(model), model, language);
        if (open.result === 0) open.check(2);
        const facts = (problems) => problems.map(({ file, ...rest }) => rest);
        assert.deepEqual(facts(open.problems()), facts(JSON.parse(said.stdout).models[0].problems));
        open.close();
      });
    }
  }
  await check("it is of the program's version", () => {
    assert.equal(`exportifc ${exporter.version()}`, spawnSync(program, ["--version"], { encoding: "utf8" }).stdout.trim());
  });
}

// --- a model becomes its files -------------------------------------------------------------------

async function testOneFile(check, browser, buildFolder) {
  const { page, problems, close } = await openPage(browser, url);

  await check("an empty page explains itself, in Portuguese", async () => {
    assert.equal(await page.getAttribute("html", "lang"), "pt-BR");
    assert.match(await page.locator("#start .purpose").textContent(), /^Esta página lê .* gera o arquivo IFC; nada sai deste computador\.$/);
    assert.deepEqual(await page.locator("[data-sample]").allTextContents(), ["Galpão", "Todas as famílias de seções"]);
    assert.equal(await page.locator("#panel").isVisible(), false);
    assert.equal(await page.locator("#toolbar").isVisible(), false);
    assert.equal(await page.locator("#progress").isVisible(), false);
  });
  await check("the keyboard reaches the file, the samples and the language, in this order or its own", async () => {
    const reached = new Set();
    for (let i = 0; i < 6; i++) {
      await page.keyboard.press("Tab");
      reached.add(await page.evaluate(() => document.activeElement.id || document.activeElement.dataset.sample));
    }
    for (const wanted of ["choose", "galpao.json", "familias.json", "speak-en"]) assert.ok(reached.has(wanted), [...reached].join());
  });
  await check("a sample is shown", async () => {
    await page.click("[data-sample='galpao.json']");
    await settle(page);
    assert.equal(await failedNow(page), "");
    assert.equal(await page.title(), "galpao.json – Visualizador exportIFC");
    assert.match(await page.locator("#summary").textContent(), /^608 elementos · Dimensões 22,22/);
    assert.equal(await page.locator("#problems h2").textContent(), "Nenhum problema");
    assert.equal(await page.locator("#start").isVisible(), false);
    assert.equal(await page.evaluate(() => exportifcViewer.geometry.missing.length), 0);
    const triangles = await page.evaluate(() => {
      const { view } = exportifcViewer;
      view.detail.budget = Infinity;
      view.draw();
      return view.triangles;
    });
    assert.ok(triangles > 20000, String(triangles));
  });
  const text = sample("familias.txt");
  const wanted = exported(text, buildFolder);
  let ifc;
  await check("a batch text file that is dropped becomes the module's IFC file", async () => {
    await drop(page, [["familias.txt", Buffer.from(text, "latin1")]]);
    assert.match(await page.locator("#told").textContent(), /^1 problema/);
    assert.equal(await page.evaluate(() => exportifcViewer.model.elements.length), 80);
    ifc = await saved(page, "#save-ifc");
    assert.equal(ifc.name, "familias.ifc");
    assert.equal(withoutIds(ifc.bytes), withoutIds(Buffer.from(wanted, "latin1")));
  });
  await check("the IFCzip holds the same file", async () => {
    const zip = await saved(page, "#save-ifczip");
    assert.equal(zip.name, "familias.ifczip");
    const members = unzipSync(zip.bytes);
    assert.deepEqual(Object.keys(members), ["familias.ifc"]);
    assert.ok(Buffer.from(members["familias.ifc"]).equals(ifc.bytes));
    await choose(page, "familias.ifczip", zip.bytes);
    assert.equal(await page.evaluate(() => exportifcViewer.model.elements.length), 80);
    assert.equal(await page.locator("#notes li", { hasText: "outro programa" }).count(), 0);
    assert.equal(await page.locator("#tab-takeoff").isVisible(), false, "an IFC file is no model");
  });
  const frame = (name) => readFileSync(join(root, "tests/saf", name));
  const tables = ["bars.csv", "nodes.csv", "sections.csv"].map((name) => [name, frame(`two_storey_tables/${name}`)]);
  const frameFile = exportedByProgram(join(root, "tests/saf/two_storey.json"), buildFolder);
  const workbooks = {
    "frame.xlsx": frame("two_storey_tables.xlsx"),
    "saf.xlsx": frame("two_storey.xlsx"),
    "libreoffice.xlsx": frame("two_storey_saved_by_libreoffice.xlsx"),
    "renamed.json": frame("two_storey_tables.xlsx"),
    "zip.zip": zipSync(Object.fromEntries(tables)),
  };
  const isFrame = async (name) => {
    assert.equal(await failedNow(page), "");
    const { bytes, name: saveName } = await saved(page, "#save-ifc");
    assert.equal(saveName, name);
    assert.ok(withoutIds(bytes) === withoutIds(frameFile), "not the bytes of the program");
    assert.equal(await page.locator("#tab-takeoff").isVisible(), true);
  };
  for (const [name, bytes] of Object.entries(workbooks)) {
    await check(`${name} becomes the program's IFC file`, async () => {
      await choose(page, name, bytes);
      await isFrame(name.replace(/\.\w+$/, ".ifc"));
    });
  }
  await check("tables that are dropped together are one model", async () => {
    await drop(page, tables);
    await isFrame("tabelas.ifc");
  });
  await check("a fault in one of them names its place", async () => {
    await drop(page, tables.map(([name, bytes]) => [name, name === "bars.csv" ? Buffer.concat([bytes, Buffer.from("x;nowhere;nowhere;nothing\r\n")]) : bytes]));
    assert.match(await failedNow(page), /^Não foi possível ler tabelas\.zip/);
    assert.match(await page.locator("#problems li").first().textContent(), /nowhere.*bars\.csv · linha 25/);
  });
  await check("the page is the viewer's own, filled in", async () => {
    await choose(page, "galpão.txt", Buffer.from(text, "latin1"));
    const { bytes } = await saved(page, "#save-ifc");
    const file = await saved(page, "#save-html");
    assert.equal(file.name, "galpão.html");
    const html = file.bytes.toString("latin1");
    const blockOf = (id) => Buffer.from(new RegExp(`<script id="${id}"[^>]*>([^<]*)<`).exec(html)[1], "base64");
    const packed = blockOf("model");
    assert.ok(gunzipSync(packed).equals(bytes));
    const notes = blockOf("model-notes").toString("utf8").split("\n");
    assert.equal(notes.length, 2);
    assert.match(notes[0], /^barra 5: seção "ZI /);
    assert.ok(html === embed(bytes, "galpão.ifc", { notes, pack: () => packed }));
  });
  await check("the take-off is listed, and saved for a spreadsheet of the page's language", async () => {
    await page.click("#tab-takeoff");
    const total = await page.locator("#takeoff section").first().locator("tfoot").textContent();
    assert.equal(total, "Total5959,0001.663,28751,061");
    assert.deepEqual(await page.locator("#takeoff caption").allTextContents(), ["Seções", "Grupos", "Lista de corte"]);
    const file = await saved(page, "#save-csv");
    assert.equal(file.name, "galpão.csv");
    const lines = file.bytes.toString("utf8").split("\r\n");
    assert.equal(lines[0], "\ufeffSeções");
    assert.ok(lines.includes("L 100 100 8 8;1;1;1,000;15,36;12,058;12,058;0,400;0,400;1000;1000"));
    await page.keyboard.press("Shift+Tab"); // from the button back to its tab
    await page.keyboard.press("ArrowRight");
    assert.equal(await page.locator("#structure").isVisible(), true);
    assert.equal(await page.locator("#takeoff").isVisible(), false);
  });
  await check("what is said changes its language with the page", async () => {
    const before = await page.locator("#problems li").first().textContent();
    await page.click("#speak-en");
    await page.waitForFunction((old) => document.querySelector("#problems li").textContent !== old && /no profile/.test(document.querySelector("#problems li").textContent), before);
    assert.equal(await page.getAttribute("html", "lang"), "en");
    assert.equal(await page.locator("#problems h2").textContent(), "1 problem, 2 notes");
    assert.deepEqual(await page.locator("[role=tab]:visible").allTextContents(), ["Structure", "Totals", "Take-off"]);
    assert.match(await page.locator("#summary").textContent(), /^80 elements/);
    assert.equal(await page.locator("#toolbar button").count(), 9);
    assert.equal(await page.locator(".tree").count(), 1);
  });
  await check("nothing on the way broke a rule of the page", () => assert.deepEqual(problems, []));
  await close();
}

// --- what is wrong with a model ------------------------------------------------------------------

async function testProblems(check, browser) {
  const { page, problems, close } = await openPage(browser, url, { locale: "en" });

  await check("a problem leads to its bar, also behind bars of two halves", async () => {
    await choose(page, "frame.json", json(modelOf(["2L 50 50 5 5 8", "2L 50 50 5 5 8", "W 200 100 8 6", "NADA 1 2"])));
    const row = page.locator("#problems li", { hasText: "NADA" });
    assert.match(await row.textContent(), /^errorfamily word "NADA" is not known.*bar 4$/);
    await row.locator("button").click();
    assert.equal(await page.locator('#details [data-field="section"]').textContent(), "NADA 1 2");
  });
  await check("where bars were left out, a problem leads nowhere rather than to another bar", async () => {
    const model = modelOf(["W 200 100 8 6", "NADA 1 2"]);
    model.bars[0].type = "not-exported";
    await choose(page, "frame.json", json(model));
    assert.equal(await page.evaluate(() => exportifcViewer.model.elements.length), 1);
    assert.equal(await page.locator("#problems li").count(), 1);
    assert.equal(await page.locator("#problems li button").count(), 0);
  });
  await check("accents are refused, with the offer to write plain letters", async () => {
    await choose(page, "frame.json", json(modelOf(["W 200 100 8 6", "CAÇÃO 10"])));
    assert.match(await failedNow(page), /^frame\.json: no IFC file can be made/);
    assert.equal(await page.locator("#save-ifc").count(), 0);
    assert.match(await page.locator("#problems li").first().textContent(), /^error.*CAÇÃO/);
    assert.equal(await page.evaluate(() => document.activeElement.id), "transliterate");
    await page.keyboard.press("Enter");
    await settle(page);
    assert.equal(await failedNow(page), "");
    assert.match(await page.locator("#told").textContent(), /^The section texts are written in plain letters\. \d/);
    assert.ok((await saved(page, "#save-ifc")).bytes.toString("latin1").includes("'CACAO 10'"));
  });
  await check("what cannot be read is said to be so, and where", async () => {
    await choose(page, "frame.json", '{\n  "unit": "mm",,\n}');
    assert.equal(await failedNow(page), "frame.json cannot be read.");
    assert.match(await page.locator("#problems li").first().textContent(), /^error.*line 2$/);
    assert.equal(await page.locator("#refusal").getAttribute("role"), "alert");
  });
  await check("a name with markup is a name", async () => {
    await choose(page, "<i>x</i>.json", json(modelOf(["<b onclick=1>&amp; 100"])));
    assert.equal(await page.locator("#problems i, #problems li b:not(.severity), h1 i").count(), 0);
    assert.equal(await page.locator("h1").textContent(), "<i>x</i>.json");
  });
  await check("nothing on the way broke a rule of the page", () => assert.deepEqual(problems, []));
  await close();
}

// --- files that are not as they should be --------------------------------------------------------

async function testFaults(check, browser, buildFolder) {
  const { page, problems, close } = await openPage(browser, url, { locale: "en", width: 360, height: 640 });
  const good = json(section("W 200 100 8 6"));
  const stillWorks = async () => {
    await choose(page, "good.json", good);
    assert.equal(await failedNow(page), "");
    assert.equal(await page.evaluate(() => exportifcViewer.model.elements.length), 1);
  };

  await check("an IFC file is shown, also one of another program", async () => {
    const ifc = exported(modelText("mm", [{ start: [0, 0, 0], end: [0, 0, 3000], section: "W 200 100 8 6" }]), buildFolder);
    await choose(page, "own.ifc", Buffer.from(ifc, "latin1"));
    assert.equal(await page.locator("#notes").isVisible(), false);
    assert.equal(await page.locator("#problems").isVisible(), false);
    await choose(page, "foreign.ifc", Buffer.from(ifc.replace(/Prototipo_korvane_ifc/g, "Something else"), "latin1"));
    assert.equal(await page.evaluate(() => exportifcViewer.model.elements.length), 1);
    assert.match(await page.locator("#notes").textContent(), /another program/);
  });
  const said = {
    "empty.json": ["", /^empty\.json is empty/],
    "broken.ifczip": [Buffer.from("PK\x03\x04 and no more"), /^broken\.ifczip holds no IFC file/],
    "without.ifczip": [zipSync({ "readme.txt": new Uint8Array(9) }), /^without\.ifczip holds no IFC file/],
    "damaged.xlsx": [readFileSync(join(root, "tests/saf/two_storey.xlsx")).subarray(0, 3000), /^damaged\.xlsx cannot be read/],
    "without.zip": [zipSync({ "readme.txt": new Uint8Array(9) }), /^without\.zip cannot be read/],
    "deep.json": ["[".repeat(200000), /^deep\.json cannot be read/],
    "picture.png": [Buffer.from([0x89, 0x50, 0x4e, 0x47, 0, 0, 0]), /^picture\.png cannot be read/],
  };
  for (const [name, [bytes, wanted]] of Object.entries(said)) {
    await check(`${name} gives words, and the page lives on`, async () => {
      await choose(page, name, bytes);
      assert.match(await failedNow(page), wanted);
      assert.match(await page.locator("#refusal").textContent(), wanted);
      assert.equal(await page.locator("#choose").isVisible(), true);
      await stillWorks();
    });
  }
  await check("broken models never leave a dead page", async () => {
    for (const [folder, extension] of [["json_model", "json"], ["batch_file", "txt"]]) {
      const seeds = readdirSync(join(root, "fuzz/corpus", folder)).sort();
      for (const seed of seeds.filter((_, i) => i % 8 === 0)) {
        await choose(page, `seed.${extension}`, readFileSync(join(root, "fuzz/corpus", folder, seed)));
        const isShown = (await failedNow(page)) === "";
        assert.equal(await page.locator(isShown ? "#save-ifc" : "#refusal").count(), 1, seed);
        assert.doesNotMatch(await failedNow(page), /unexpectedly/, seed);
      }
    }
    await stillWorks();
  });
  await check("damaged workbooks never do either", async () => {
    const whole = readFileSync(join(root, "tests/saf/two_storey_saved_by_libreoffice.xlsx"));
    for (let i = 1; i <= 24; i++) {
      const bytes = Buffer.from(whole);
      const at = Math.floor((whole.length * i) / 25);
      bytes.fill(i % 3 === 0 ? 0xff : 0, at, at + 40);
      await choose(page, "damaged.xlsx", i % 2 ? whole.subarray(0, at) : bytes);
      const isShown = (await failedNow(page)) === "";
      assert.equal(await page.locator(isShown ? "#save-ifc" : "#refusal").count(), 1, String(i));
      assert.doesNotMatch(await failedNow(page), /unexpectedly/, String(i));
    }
    await stillWorks();
  });
  await check("bars at places that are no numbers are listed and not drawn", async () => {
    const bar = { start: [0, 0, 0], end: [0, 0, 3000], section: "W 200 100 8 6" };
    await choose(page, "far.txt", Buffer.from(modelText("mm", [bar, { ...bar, start: ["1e38", 0, 0] }, { ...bar, end: ["1e39", 0, 0] }, { ...bar, end: ["-nan", 0, 0] }]), "latin1"));
    assert.equal(await failedNow(page), "");
    assert.equal(await page.evaluate(() => exportifcViewer.model.elements.length), 4);
    const sizes = await page.evaluate(() => exportifcViewer.geometry.bounds.greatest.clone().sub(exportifcViewer.geometry.bounds.least).toArray());
    assert.ok(sizes.every((size) => size < 4000), String(sizes));
    await page.locator("#problems li button").first().click();
  });
  await check("of several files that are dropped the first is opened, and this is said", async () => {
    await drop(page, [["one.json", good], ["two.json", good]]);
    assert.equal(await page.locator("h1").textContent(), "one.json");
    assert.equal(await page.locator("#told").textContent(), "Only the first of the files was opened. No problems");
  });
  await check("work can be stopped, and what comes next is not disturbed", async () => {
    await page.setInputFiles("#chooser", { name: "long.txt", mimeType: "text/plain", buffer: Buffer.from(modelText("mm", Array(20000).fill({ start: [0, 0, 0], end: [0, 0, 3000], section: "W 200 100 8 6" })), "latin1") });
    await page.click("#stop");
    assert.equal(await page.locator("#told").textContent(), "Stopped.");
    assert.equal(await page.locator("#progress").isVisible(), false);
    assert.equal(await page.locator("#choose").isVisible(), true);
    await stillWorks();
  });
  await check("another language while work is under way changes what is said, not what is made", async () => {
    const bars = Array.from({ length: 5000 }, (_, i) => ({ start: [i * 500, 0, 0], end: [i * 500, 0, 3000], section: "NADA 1" }));
    await page.evaluate((content) => {
      const dataTransfer = new DataTransfer();
      dataTransfer.items.add(new File([content], "long.txt"));
      document.body.dispatchEvent(new DragEvent("drop", { bubbles: true, cancelable: true, dataTransfer }));
      document.getElementById("speak-pt-BR").click(); // before anything is said of the model
    }, modelText("mm", bars));
    await settle(page);
    assert.equal(await failedNow(page), "");
    assert.equal(await page.evaluate(() => exportifcViewer.model.elements.length), 5000);
    await page.locator("#problems li", { hasText: "a palavra de família" }).waitFor();
    await page.click("#speak-en");
    await page.locator("#problems li", { hasText: "family word" }).waitFor();
    await stillWorks();
  });
  await check("both packings may be under way at once", async () => {
    const names = [];
    page.on("download", (download) => names.push(download.suggestedFilename()));
    await page.click("#save-ifczip");
    await page.click("#save-html");
    for (let i = 0; i < 100 && names.length < 2; i++) await page.waitForTimeout(50);
    assert.deepEqual(names.sort(), ["good.html", "good.ifczip"]);
  });
  await check("nothing is cut off in a narrow window", async () => {
    assert.ok(await page.evaluate(() => document.documentElement.scrollWidth <= innerWidth));
    const box = await page.locator("#save-html").boundingBox();
    assert.ok(box.x >= 0 && box.x + box.width <= 360, JSON.stringify(box));
    const row = page.locator(".tree .row.section .opener").first();
    await row.click(); // scrolls to it
    await page.locator(".element").first().click();
    const card = await page.locator("#details").boundingBox();
    assert.ok(card.height > 100 && card.y + card.height <= 641, JSON.stringify(card));
  });
  await check("nothing on the way broke a rule of the page", () => assert.deepEqual(problems, []));
  await close();
}

async function testWithoutWebAssembly(check, browser, buildFolder) {
  await check("without WebAssembly a model is refused in words, and an IFC file still has lists", async () => {
    // The policy forbids it, as the rules of some offices do.
    const file = join(scratch, "forbidden.html");
    writeFileSync(file, readFileSync(built, "latin1").replace(" 'wasm-unsafe-eval'", ""), "latin1");
    const { page, close } = await openPage(browser, pathToFileURL(file).href, { locale: "en" });
    await choose(page, "good.json", json(section("W 200 100 8 6")));
    assert.match(await failedNow(page), /^This browser runs no WebAssembly/);
    await choose(page, "own.ifc", Buffer.from(exported(sample("familias.txt"), buildFolder), "latin1"));
    assert.equal(await failedNow(page), "");
    assert.match(await page.locator("#summary").textContent(), /^80 elements/);
    await close();
  });
}

export async function testExportingWithoutGraphics(check, browser) {
  await check("without WebGL the page that exports has lists, totals and files", async () => {
    const { page, close } = await openPage(browser, url, { locale: "en" });
    await page.click("[data-sample='familias.json']");
    await settle(page);
    assert.match(await page.locator("#notes").textContent(), /gives no WebGL/);
    assert.equal(await page.locator("#totals tbody tr").count() > 10, true);
    assert.ok((await saved(page, "#save-ifc")).bytes.length > 50000);
    await close();
  });
}
