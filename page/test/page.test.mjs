// page.test.mjs BUILD_FOLDER: tries the reader, opens pages in a browser and uses them as a person does.

import assert from "node:assert/strict";
import { gzipSync } from "node:zlib";
import { barsOf, elementsOf, exported, measured, modelText, openPage, sample, startBrowser, withAssemblies, writePage } from "./lib.mjs";
import { testExporting, testExportingWithoutGraphics } from "./exporting.test.mjs";
import { testReader } from "./reader.test.mjs";

const buildFolder = process.argv[2];
const results = { passed: 0, failed: 0 };

async function check(what, run) {
  try {
    await run();
    results.passed++;
  } catch (error) {
    results.failed++;
    console.log(`FAILED: ${what}\n  ${String(error.message ?? error).replaceAll("\n", "\n  ")}`);
  }
}

// --- helpers in the page -------------------------------------------------------------------------

/** How many pixels of the picture have about one hue, in degrees. */
function pixelsOfHue(page, hue) {
  return page.evaluate((wanted) => {
    const { view } = exportifcViewer;
    const canvas = document.getElementById("canvas");
    const gl = canvas.getContext("webgl2");
    const pixels = new Uint8Array(canvas.width * canvas.height * 4);
    view.draw();
    while (!view.detail.finished) view.render(view.detail.next(), false);
    gl.readPixels(0, 0, canvas.width, canvas.height, gl.RGBA, gl.UNSIGNED_BYTE, pixels);
    let found = 0;
    for (let i = 0; i < pixels.length; i += 4) {
      const [r, g, b, a] = [pixels[i], pixels[i + 1], pixels[i + 2], pixels[i + 3]];
      const most = Math.max(r, g, b);
      const range = most - Math.min(r, g, b);
      if (a < 200 || range < 0.15 * most || most < 40) continue; // the grid is grey
      const sector = most === r ? ((g - b) / range + 6) % 6 : most === g ? (b - r) / range + 2 : (r - g) / range + 4;
      const away = Math.abs(sector * 60 - wanted);
      if (Math.min(away, 360 - away) < 10) found++;
    }
    return found;
  }, hue);
}

const hues = { frame: 208, truss: 165, direct: 261, unknown: 17, selected: 42 };

const field = (page, name) => page.locator(`#details [data-field="${name}"]`).textContent();
const visible = (page) => page.evaluate(() => exportifcViewer.visible());
const shownIn = (page, kind) => page.locator(`[data-group="${kind}"] > .row`);
const sectionRow = (page, section) => page.locator("li[data-section]").filter({ has: page.locator(".row .label", { hasText: new RegExp(`^${escape(section)}$`) }) }).first();
const escape = (text) => text.replace(/[.*+?^${}()|[\]\\<>]/g, "\\$&");

/** Clicks the middle of an element in the picture, or some pixels above it. */
async function clickElement(page, number, above = 0) {
  const place = await page.evaluate((wanted) => {
    const { model, view } = exportifcViewer;
    return view.project(model.elements.find((element) => element.number === wanted));
  }, number);
  const box = await page.locator("#canvas").boundingBox();
  await page.mouse.click(box.x + place.x, box.y + place.y - above);
}

function countBySection(elements) {
  const counts = new Map();
  for (const { section } of elements) counts.set(section, (counts.get(section) ?? 0) + 1);
  return counts;
}

// --- the models ----------------------------------------------------------------------------------

const families = { truss: ["][", "2L", "TUBO", "LX"], direct: ["UENR", "Z", "ZS", "FRED", "RED"] };
const kindOf = ({ section }) => {
  const family = section.split(" ")[0];
  return families.truss.includes(family) ? "truss" : families.direct.includes(family) ? "direct" : "frame";
};
const warehouseText = sample("galpao.txt");
const warehouse = withAssemblies(exported(warehouseText, buildFolder), kindOf);
const warehouseElements = elementsOf(warehouse);
const familiesIfc = exported(sample("familias.txt"), buildFolder);
const simpleBars = [
  { start: [0, 0, 0], end: [0, 0, 3000], section: "W 200 100 8 6" },
  { start: [0, 0, 3000], end: [4000, 0, 3000], section: "TUBO 73 73 4 4" },
  { start: [4000, 0, 3000], end: [4000, 0, 0], section: "W 200 100 8 6" },
  { start: [0, 2000, 3000], end: [4000, 2000, 3000.5], section: "RET 100 0 0 50" },
];
const simple = exported(modelText("mm", simpleBars), buildFolder);

// --- the warehouse, in Portuguese ----------------------------------------------------------------

const browser = await startBrowser();

async function testWarehouse() {
  const { page, problems, close } = await openPage(browser, writePage(warehouse, "galpão.ifc"));

  await check("the title names the file", async () => {
    assert.equal(await page.title(), "galpão.ifc – Visualizador exportIFC");
    assert.equal(await page.locator("h1").textContent(), "galpão.ifc");
  });
  await check("a Portuguese browser gets Portuguese", async () => {
    assert.equal(await page.getAttribute("html", "lang"), "pt-BR");
    assert.deepEqual(await page.locator("[role=tab]:visible").allTextContents(), ["Estrutura", "Quantitativos"]);
    assert.deepEqual((await page.locator("#toolbar button").allTextContents()).slice(0, 5), ["Enquadrar", "Iso", "Frente", "Lado", "Topo"]);
  });
  await check("every element of the file is there, with a solid", async () => {
    const found = await page.evaluate(() => exportifcViewer.model.elements.map((e) => [e.number, e.ifcType, e.name, e.section.text, e.reference]));
    assert.deepEqual(found, warehouseElements.map((e) => [e.number, e.type, e.name, e.section, e.section]));
    assert.equal(await page.evaluate(() => exportifcViewer.geometry.missing.length), 0);
    assert.match(await page.locator("#summary").textContent(), new RegExp(`^${warehouseElements.length} elementos`));
    assert.equal(await page.locator("#notes").isVisible(), false);
  });
  await check("the first picture lies on the page's own ground", async () => {
    const corner = await page.evaluate(() => {
      const gl = document.getElementById("canvas").getContext("webgl2");
      const pixel = new Uint8Array(4);
      gl.readPixels(0, gl.drawingBufferHeight - 1, 1, 1, gl.RGBA, gl.UNSIGNED_BYTE, pixel);
      return [...pixel];
    });
    assert.deepEqual(corner, [0, 0, 0, 0]);
  });
  await check("the whole structure is drawn in fewer than 20 calls", async () => {
    const [calls, triangles] = await page.evaluate(() => {
      const { view } = exportifcViewer;
      view.detail.budget = Infinity;
      view.draw();
      return [view.drawCalls, view.triangles];
    });
    assert.ok(calls > 0 && calls < 20, String(calls));
    assert.ok(triangles > 20000, String(triangles));
  });
  await check("a picture too large for one drawing begins with lines and becomes the same piece by piece", async () => {
    const whole = {};
    for (const kind of ["frame", "truss", "direct"]) whole[kind] = await pixelsOfHue(page, hues[kind]);
    const draw = (budget, linesAtOnce) => page.evaluate(([budget, linesAtOnce]) => {
      const { view } = exportifcViewer;
      Object.assign(view.detail, { budget, linesAtOnce });
      view.draw();
      const triangles = [view.triangles];
      while (!view.detail.finished) {
        view.render(view.detail.next(), false);
        triangles.push(view.triangles);
      }
      return triangles;
    }, [budget, linesAtOnce]);
    const solids = await draw(10000, 1000);
    assert.ok(solids.length > 3 && solids.every((triangles) => triangles > 0 && triangles <= 10000), String(solids));
    const lines = await draw(10, 100); // one solid at a time at least, after all lines
    assert.ok(lines.length > 100 && lines.filter((triangles) => triangles === 0).length > 3, String(lines.length));
    for (const linesAtOnce of [1000, 100]) {
      await page.evaluate((lines) => Object.assign(exportifcViewer.view.detail, { budget: 10000, linesAtOnce: lines }), linesAtOnce);
      for (const kind of ["frame", "truss", "direct"]) {
        const pixels = await pixelsOfHue(page, hues[kind]);
        assert.ok(Math.abs(pixels / whole[kind] - 1) < 0.1, `${kind}: ${pixels} for ${whole[kind]}`);
      }
    }
    await page.evaluate(() => (exportifcViewer.view.detail.budget = Infinity));
  });
  await check("bars thinner than a pixel are lines", async () => {
    const state = (zoom) => page.evaluate((factor) => {
      const { view } = exportifcViewer;
      view.cameras.zoom(factor);
      view.draw();
      return view.triangles;
    }, zoom);
    assert.ok((await state(1)) > 20000);
    assert.equal(await state(0.05), 0);
    assert.ok((await pixelsOfHue(page, hues.frame)) > 50);
    assert.ok((await state(20)) > 20000);
    await page.keyboard.press("f");
  });
  await check("the ends of each bar are those of the model", async () => {
    const found = await page.evaluate(() => exportifcViewer.model.elements.map((e) => [e.start, e.end]));
    const split = new Set(countBuiltUp(warehouseElements));
    const wanted = barsOf(warehouseText).flatMap((bar) => (split.has(bar.section) ? [bar, bar] : [bar]));
    assert.equal(found.length, wanted.length);
    found.forEach(([start, end], i) => {
      // Directions are written with five decimals.
      for (const axis of [0, 1, 2]) {
        assert.ok(Math.abs(start[axis] - wanted[i].start[axis]) < 0.01, `start of element ${i}`);
        assert.ok(Math.abs(end[axis] - wanted[i].end[axis]) < 0.1, `end of element ${i}: ${end} for ${wanted[i].end}`);
      }
    });
  });
  await check("the solids lie along the bars", async () => {
    const off = await page.evaluate(() => {
      const { model, geometry } = exportifcViewer;
      return model.elements.filter((e) => {
        const box = geometry.bounds.values.subarray(e.index * 6, e.index * 6 + 6);
        // No section of the sample reaches 600 mm from its axis.
        return [0, 1, 2].some((axis) => {
          const [least, most] = [Math.min(e.start[axis], e.end[axis]), Math.max(e.start[axis], e.end[axis])];
          const at = geometry.centre[axis];
          return Math.abs(box[axis] + at - least) > 600 || Math.abs(box[3 + axis] + at - most) > 600;
        });
      }).length;
    });
    assert.equal(off, 0);
  });
  await check("the tree has the groups and sections with their counts", async () => {
    for (const [kind, name] of [["frame", "Elementos_de_Portico"], ["truss", "Elementos_de_Trelica"], ["direct", "Pavimento 1 (direto)"]]) {
      const members = warehouseElements.filter((element) => kindOf(element) === kind);
      assert.equal(await shownIn(page, kind).locator(".label").textContent(), name);
      assert.equal(await shownIn(page, kind).locator(".count").textContent(), String(members.length));
      const rows = await page.locator(`[data-group="${kind}"] li[data-section]`).evaluateAll((items) =>
        items.map((item) => [item.dataset.section, Number(item.querySelector(".row .count").textContent)]));
      assert.deepEqual(new Map(rows), new Map([...countBySection(members)].sort(([a], [b]) => (a < b ? -1 : 1))), kind);
    }
  });
  await check("each group has its colour in the picture and in the legend", async () => {
    for (const kind of ["frame", "truss", "direct"]) assert.ok((await pixelsOfHue(page, hues[kind])) > 300, kind);
    assert.equal(await pixelsOfHue(page, hues.selected), 0);
    const legend = await page.locator("#legend li").allTextContents();
    const count = (kind) => warehouseElements.filter((element) => kindOf(element) === kind).length;
    assert.deepEqual(legend, [`Pórtico${count("frame")}`, `Treliça${count("truss")}`, `Direto no pavimento${count("direct")}`, "Selecionado"]);
  });
  await check("the totals agree with the file", async () => {
    await page.getByRole("tab", { name: "Quantitativos" }).click();
    const rows = await page.locator("#totals tbody tr").evaluateAll((items) => items.map((item) => [...item.children].map((cell) => cell.textContent)));
    assert.deepEqual(new Map(rows.map(([name, count]) => [name, Number(count)])), new Map([...countBySection(warehouseElements)].sort(([a], [b]) => (a < b ? -1 : 1))));
    // CS 350 350 16 9.5: two flanges and the web between them.
    const area = 2 * 350 * 16 + (350 - 2 * 16) * 9.5;
    const length = barsOf(warehouseText).filter((bar) => bar.section === "CS 350 350 16 9.5").reduce((sum, bar) => sum + distance(bar), 0);
    const [, , shownLength, shownVolume] = rows.find(([name]) => name === "CS 350 350 16 9.5");
    assert.equal(shownLength, portuguese(length / 1000, 2));
    assert.equal(shownVolume, portuguese((area * length) / 1e9, 4));
    const total = await page.locator("#totals tfoot td").allTextContents();
    const depths = [...warehouse.matchAll(/IFCEXTRUDEDAREASOLID\(.*, ([\d.]+)\);/g)].reduce((sum, [, depth]) => sum + Number(depth), 0);
    assert.equal(total[0], String(warehouseElements.length));
    assert.equal(total[1], portuguese(depths / 1000, 2));
    assert.ok(await page.locator("#totals").evaluate((panel) => panel.scrollWidth <= panel.clientWidth), "the table is cut off");
    await page.getByRole("tab", { name: "Estrutura" }).click();
  });
  await check("the volumes of tubes and rods are those of round ones", async () => {
    const areas = { "TUBO 73 73 4 4": Math.PI * (36.5 ** 2 - 32.5 ** 2), "RED 16": Math.PI * 8 ** 2 };
    for (const [section, area] of Object.entries(areas)) {
      const found = await page.evaluate((wanted) => {
        const { model, geometry } = exportifcViewer;
        return model.elements.filter((e) => e.section.text === wanted).map((e) => (geometry.volumes[e.index] * 1e9) / e.length);
      }, section);
      assert.ok(found.length > 0);
      for (const one of found) assert.ok(Math.abs(one / area - 1) < 1e-4, `${section}: ${one} for ${area} mm²`);
    }
  });

  const column = warehouseElements[0];
  await check("a click on an element shows what it is", async () => {
    await clickElement(page, column.number);
    assert.equal(await page.locator("#details").isVisible(), true);
    assert.equal(await field(page, "number"), `#${column.number}`);
    assert.equal(await field(page, "section"), "CS 350 350 16 9.5");
    assert.equal(await field(page, "name"), "CS");
    assert.equal(await field(page, "ifcType"), "IFCMEMBER");
    assert.equal(await field(page, "group"), "Elementos_de_Portico");
    assert.equal(await field(page, "length"), "3.000 mm");
    assert.equal(await field(page, "start"), "0 ; 6.000 ; 0");
    assert.equal(await field(page, "end"), "0 ; 6.000 ; 3.000");
    assert.equal(await field(page, "volume"), "42,663 dm³");
    assert.match(await page.locator("#spoken").textContent(), /CS 350 350 16 9\.5, IFCMEMBER, 3,00 m/);
  });
  await check("the selected element lights up in the picture and in the list", async () => {
    assert.ok((await pixelsOfHue(page, hues.selected)) > 100);
    assert.equal(await page.locator(".element[aria-current=true]").getAttribute("data-number"), String(column.number));
    const [row, list] = await Promise.all([".element[aria-current=true]", "#structure"].map((place) => page.locator(place).boundingBox()));
    assert.ok(row.y >= list.y && row.y + row.height <= list.y + list.height, JSON.stringify({ row, list }));
  });
  await check("Escape clears the selection", async () => {
    await page.keyboard.press("Escape");
    assert.equal(await page.locator("#details").isVisible(), false);
    assert.equal(await pixelsOfHue(page, hues.selected), 0);
  });
  await check("an element can be chosen in the list", async () => {
    const row = sectionRow(page, "TUBO 73 73 4 4");
    await row.locator(".opener").click();
    await row.locator(".element").nth(2).click();
    const wanted = warehouseElements.filter((element) => element.section === "TUBO 73 73 4 4")[2];
    assert.equal(await field(page, "number"), `#${wanted.number}`);
    await page.locator("#close-details").click();
    assert.equal(await page.locator("#details").isVisible(), false);
  });
  await check("a click beside everything selects nothing; a drag turns and selects nothing", async () => {
    await clickElement(page, column.number);
    const box = await page.locator("#canvas").boundingBox();
    const before = await page.evaluate(() => JSON.stringify(exportifcViewer.view.cameras.axes()));
    await page.mouse.move(box.x + box.width * 0.5, box.y + box.height * 0.5);
    await page.mouse.down();
    await page.mouse.move(box.x + box.width * 0.6, box.y + box.height * 0.45, { steps: 4 });
    await page.mouse.up();
    assert.equal(await page.locator("#details").isVisible(), true);
    assert.notEqual(await page.evaluate(() => (exportifcViewer.view.draw(), JSON.stringify(exportifcViewer.view.cameras.axes()))), before);
    await page.keyboard.press("1");
    await page.mouse.click(box.x + 30, box.y + 80);
    assert.equal(await page.locator("#details").isVisible(), false);
  });

  const all = warehouseElements.length;
  await check("a group is hidden and shown", async () => {
    const frames = warehouseElements.filter((element) => kindOf(element) === "frame").length;
    const before = await pixelsOfHue(page, hues.frame);
    await shownIn(page, "frame").locator("input").uncheck();
    assert.equal(await visible(page), all - frames);
    // A few are left where smoothing mixes the colours of the other two.
    assert.ok((await pixelsOfHue(page, hues.frame)) < before / 10);
    assert.ok((await pixelsOfHue(page, hues.truss)) > 300);
    await clickElement(page, column.number);
    assert.notEqual((await page.locator("#details").isVisible()) && (await field(page, "number")), `#${column.number}`);
    await shownIn(page, "frame").locator("input").check();
    assert.equal(await visible(page), all);
    assert.equal(await pixelsOfHue(page, hues.frame), before);
  });
  await check("a section is hidden, and its group's box shows that something is missing", async () => {
    const members = warehouseElements.filter((element) => element.section === "CS 350 350 16 9.5").length;
    await sectionRow(page, "CS 350 350 16 9.5").locator(".row input").uncheck();
    assert.equal(await visible(page), all - members);
    assert.equal(await shownIn(page, "frame").locator("input").evaluate((box) => box.indeterminate), true);
    await page.getByRole("button", { name: "Mostrar tudo" }).click();
    assert.equal(await visible(page), all);
    assert.equal(await shownIn(page, "frame").locator("input").evaluate((box) => box.indeterminate || !box.checked), false);
  });
  await check("everything can be hidden", async () => {
    await page.getByRole("button", { name: "Ocultar tudo" }).click();
    assert.equal(await visible(page), 0);
    await page.evaluate(() => (exportifcViewer.view.toggleGrid(), exportifcViewer.view.draw()));
    assert.equal(await page.evaluate(() => exportifcViewer.view.triangles), 0);
    await page.evaluate(() => exportifcViewer.view.toggleGrid());
    await page.keyboard.press("a");
    assert.equal(await visible(page), all);
  });
  await check("the selected element's section is isolated and hidden by key and by button", async () => {
    const members = warehouseElements.filter((element) => element.section === column.section).length;
    await page.evaluate((number) => exportifcViewer.select(exportifcViewer.model.elements.find((e) => e.number === number)), column.number);
    await page.keyboard.press("i");
    assert.equal(await visible(page), members);
    await page.keyboard.press("a");
    await page.keyboard.press("h");
    assert.equal(await visible(page), all - members);
    await page.keyboard.press("a");
    await page.getByRole("button", { name: "Só esta seção" }).click();
    assert.equal(await visible(page), members);
    await page.keyboard.press("a");
    await page.keyboard.press("Escape");
  });

  await check("the standard views look along the axes", async () => {
    // Which model axis goes right and which goes up in the picture.
    const wanted = { Frente: [0, 2], Lado: [1, 2], Topo: [0, 1] };
    for (const [name, [right, up]] of Object.entries(wanted)) {
      await page.getByRole("button", { name, exact: true }).click();
      const axes = await page.evaluate(() => (exportifcViewer.view.draw(), exportifcViewer.view.cameras.axes()));
      assert.ok(axes[right].x > 0.999, `${name}: ${JSON.stringify(axes)}`);
      assert.ok(axes[up].y > 0.999, `${name}: ${JSON.stringify(axes)}`);
    }
  });
  await check("each view frames the whole structure, in perspective and without", async () => {
    for (const perspective of [true, false]) {
      for (const key of ["1", "2", "3", "4"]) {
        await page.keyboard.press(key);
        const spread = await page.evaluate(() => {
          const { view, model } = exportifcViewer;
          view.draw();
          const places = model.elements.map((e) => view.project(e));
          const canvas = document.getElementById("canvas");
          const range = (values, size) => [Math.min(...values) / size, Math.max(...values) / size];
          return [range(places.map((p) => p.x), canvas.clientWidth), range(places.map((p) => p.y), canvas.clientHeight)];
        });
        for (const [low, high] of spread) assert.ok(low > 0 && high < 1, `key ${key}: ${spread}`);
        assert.ok(spread.some(([low, high]) => high - low > 0.6), `key ${key} leaves it small: ${spread}`);
      }
      assert.equal(await page.evaluate(() => exportifcViewer.view.cameras.inPerspective), perspective);
      await page.keyboard.press("p");
    }
  });
  await check("zoom to an element and back to all", async () => {
    const place = () => page.evaluate((number) => {
      const { view, model } = exportifcViewer;
      view.draw();
      return view.project(model.elements.find((e) => e.number === number));
    }, column.number);
    await page.keyboard.press("1");
    await page.evaluate((number) => exportifcViewer.select(exportifcViewer.model.elements.find((e) => e.number === number)), column.number);
    const lit = await pixelsOfHue(page, hues.selected);
    await page.getByRole("button", { name: "Aproximar", exact: true }).click();
    const size = await page.locator("#canvas").boundingBox();
    const near = await place();
    assert.ok(Math.abs(near.x / size.width - 0.5) < 0.1 && Math.abs(near.y / size.height - 0.5) < 0.1, JSON.stringify(near));
    assert.ok((await pixelsOfHue(page, hues.selected)) > lit * 5);
    await page.keyboard.press("f");
    assert.ok((await pixelsOfHue(page, hues.selected)) < lit * 2);
    await page.keyboard.press("Escape");
  });
  await check("colours by section and back", async () => {
    const frame = await pixelsOfHue(page, hues.frame);
    await page.getByRole("button", { name: "Cor por seção" }).click();
    assert.ok((await pixelsOfHue(page, hues.frame)) < frame / 2);
    assert.equal(await page.getByRole("button", { name: "Cor por seção" }).getAttribute("aria-pressed"), "true");
    await page.keyboard.press("c");
    assert.equal(await pixelsOfHue(page, hues.frame), frame);
  });
  await check("the picture can be turned and zoomed from the keyboard", async () => {
    await page.locator("#canvas").focus();
    const axes = () => page.evaluate(() => (exportifcViewer.view.draw(), exportifcViewer.view.cameras.axes()));
    const before = await axes();
    await page.keyboard.press("ArrowRight");
    assert.notDeepEqual(await axes(), before);
    await page.keyboard.press("ArrowLeft");
    const frame = await pixelsOfHue(page, hues.frame);
    await page.keyboard.press("+");
    assert.ok((await pixelsOfHue(page, hues.frame)) > frame * 1.1);
    await page.keyboard.press("-");
    await page.keyboard.press("-");
    const small = await pixelsOfHue(page, hues.frame);
    assert.ok(small > 100 && small < frame, `${small} of ${frame}`);
    await page.keyboard.press("f");
  });
  await check("the list of keys opens and closes", async () => {
    await page.keyboard.press("?");
    assert.equal(await page.locator("#help").isVisible(), true);
    assert.match(await page.locator("#help").textContent(), /Enquadrar o que está visível/);
    await page.keyboard.press("Escape");
    assert.equal(await page.locator("#help").isVisible(), false);
  });
  await check("every control has a name, and nothing has two ids", async () => {
    const unnamed = await page.locator("button, input, canvas, nav, aside, [role=tablist]").evaluateAll((nodes) =>
      nodes.filter((node) => !node.hidden && !(node.textContent.trim() || node.getAttribute("aria-label") || node.getAttribute("aria-labelledby"))).map((node) => node.outerHTML));
    assert.deepEqual(unnamed, []);
    const ids = await page.locator("[id]").evaluateAll((nodes) => nodes.map((node) => node.id));
    assert.equal(new Set(ids).size, ids.length);
  });
  await check("no error, no warning, no request", async () => assert.deepEqual(problems, []));
  await close();
}

function countBuiltUp(elements) {
  return elements.filter((element) => /_[12]$/.test(element.name)).map((element) => element.section);
}

const distance = ({ start, end }) => Math.hypot(...start.map((value, axis) => end[axis] - value));
const portuguese = (value, digits) => value.toLocaleString("pt-BR", { minimumFractionDigits: digits, maximumFractionDigits: digits });

// --- English, unknown profiles, small windows ----------------------------------------------------

async function testFamilies() {
  const { page, problems, close } = await openPage(browser, writePage(familiesIfc, "familias.ifc"), { locale: "en-GB" });
  await check("any other browser gets English", async () => {
    assert.equal(await page.getAttribute("html", "lang"), "en");
    assert.equal(await page.title(), "familias.ifc – exportIFC viewer");
    assert.deepEqual(await page.locator("[role=tab]:visible").allTextContents(), ["Structure", "Totals"]);
    assert.match(await page.locator("#summary").textContent(), /^80 elements · Extent [\d.]+ × [\d.]+ × [\d.]+ m$/);
    assert.equal(await shownIn(page, "direct").locator(".label").textContent(), "Pavimento 1 (direct)");
  });
  await check("a file without assemblies starts with a colour for each section", async () => {
    assert.equal(await page.getByRole("button", { name: "Colour by section" }).getAttribute("aria-pressed"), "true");
    assert.ok((await pixelsOfHue(page, 120)) > 100);
  });
  await check("unknown profiles stand out in the notes, the tree, the legend, the totals and the picture", async () => {
    assert.match(await page.locator("#notes").textContent(), /2 elements with an unknown profile/);
    const flagged = await page.locator(".row.unknown .label").allTextContents();
    assert.equal(flagged.length, 1);
    assert.match(flagged[0], /^2L_ASSIMETRICO /);
    assert.ok((await page.locator("#legend li").allTextContents()).includes("Unknown profile2"));
    assert.match(await page.locator("#totals tr.unknown th").textContent(), /^2L_ASSIMETRICO/);
    assert.ok((await pixelsOfHue(page, hues.unknown)) > 30);
  });
  await check("an unknown profile is hit beside its 4 mm and explains itself", async () => {
    const number = elementsOf(familiesIfc).find((element) => element.section.startsWith("2L_ASSIMETRICO")).number;
    await clickElement(page, number, 4);
    assert.match(await field(page, "section"), /^2L_ASSIMETRICO/);
    assert.match(await page.locator("#details .warning").textContent(), /knows no profile/);
    assert.equal(await field(page, "volume"), "0.016 dm³"); // 4 by 4 by 1000
    await page.getByRole("button", { name: "Hide this section" }).click();
    assert.equal(await pixelsOfHue(page, hues.unknown), 0);
    assert.equal(await visible(page), 78);
  });
  await check("both languages have every text", async () => {
    assert.deepEqual(await page.locator("[data-text]").evaluateAll((nodes) => nodes.filter((node) => node.textContent === "").map((node) => node.dataset.text)), []);
  });
  await check("no error, no warning, no request (English)", async () => assert.deepEqual(problems, []));
  await close();

  const small = await openPage(browser, writePage(familiesIfc, "familias.ifc"), { width: 390, height: 800 });
  await check("a narrow window shows picture and list, and nothing sticks out", async () => {
    const [picture, panel] = await Promise.all(["#picture", "#panel"].map((id) => small.page.locator(id).boundingBox()));
    assert.ok(picture.height > 300 && panel.height > 200 && panel.y >= picture.y + picture.height - 1, JSON.stringify({ picture, panel }));
    assert.ok((await small.page.evaluate(() => document.documentElement.scrollWidth)) <= 390);
  });
  await small.close();
}

// --- solids, held against the engine's own meshes of the whole file -----------------------------

/** Volumes and boxes of all elements are the engine's; gives how many shapes the page has made of them. */
async function compareSolids(page, ifc) {
  const [boxes, volumes] = [await measured(ifc, 24), await measured(ifc, 400)]; // the page's circles, and nearly round ones
  const { found, shapes } = await page.evaluate(() => {
    const { model, geometry } = exportifcViewer;
    const { centre, bounds, volumes, shapes } = geometry;
    const found = model.elements.map(({ index, number }) => {
      const box = [...bounds.values.subarray(index * 6, index * 6 + 6)].map((value, i) => value + centre[i % 3]);
      return { number, volume: volumes[index], least: box.slice(0, 3), most: box.slice(3) };
    });
    return { found, shapes: shapes.length };
  });
  assert.ok(found.length > 0);
  for (const { number, volume, least, most } of found) {
    const wanted = boxes.get(number);
    assert.ok(wanted, `element #${number} has no mesh`);
    const exact = volumes.get(number).volume;
    assert.ok(Math.abs(volume / exact - 1) < 1e-3, `volume of #${number}: ${volume} for ${exact}`);
    for (let axis = 0; axis < 3; axis++) {
      const size = wanted.most[axis] - wanted.least[axis];
      const off = Math.max(Math.abs(least[axis] - wanted.least[axis]), Math.abs(most[axis] - wanted.most[axis]));
      assert.ok(off <= size * 1e-3, `box of #${number} along ${"XYZ"[axis]}: ${off} mm off of ${size}`);
    }
  }
  return shapes;
}

/** A file with lines added before its end, and pieces of it replaced. */
function changed(ifc, replacements, lines = []) {
  for (const [piece, by] of replacements) {
    assert.ok(ifc.includes(piece), piece);
    ifc = ifc.replace(piece, by);
  }
  return ifc.replace(/ENDSEC;\s+END-ISO/, (end) => `${lines.join("\r\n")}\r\n${end}`);
}

/** Columns in a row, all alike or each of a width of its own. */
function row(count, widthOf) {
  return Array.from({ length: count }, (_, i) => ({
    start: [i * 400, (i % 7) * 700, 0],
    end: [i * 400, (i % 7) * 700, 3000 + i],
    section: `W 200 ${widthOf(i)} 8 6`,
  }));
}

async function testSolids() {
  await check("volumes and boxes of every family are those of the whole file's mesh", async () => {
    await open(familiesIfc, (page) => compareSolids(page, familiesIfc));
  });
  await check("so are those of a structure, in which each section is meshed once", async () => {
    const sections = new Set(warehouseElements.map(({ name, section }) => `${name}|${section}`));
    await open(warehouse, async (page) => assert.equal(await compareSolids(page, warehouse), sections.size));
  });
  await check("so are those of bars far from the origin that lean every way and turn about themselves", async () => {
    const bars = Array.from({ length: 60 }, (_, i) => {
      const start = [7e6 + 3000 * Math.sin(i), 5e6 + 2000 * Math.cos(3 * i), 100 * i];
      const along = [4000 * Math.cos(i * 1.7), 3000 * Math.sin(i * 2.3), 2500 * Math.sin(i * 0.9)];
      return { start, end: start.map((value, axis) => value + along[axis]), section: ["L 76 0 0 8", "UENR 200 75 20 2.65", "TUBO 168 168 6 6"][i % 3], rotation: i * 12 };
    });
    const ifc = exported(modelText("mm", bars), buildFolder);
    await open(ifc, async (page) => assert.equal(await compareSolids(page, ifc), 3));
  });

  await check("a storey that is moved and turned takes its bars along", async () => {
    const ifc = changed(simple, [["#110 = IFCAXIS2PLACEMENT3D(#6, $, $);", "#110 = IFCAXIS2PLACEMENT3D(#120, #11, #15);"]], ["#120= IFCCARTESIANPOINT((1000., 2000., 5000.));"]);
    await open(ifc, async (page) => {
      assert.equal(await compareSolids(page, ifc), 3);
      const [start, end] = await page.evaluate(() => [exportifcViewer.model.elements[0].start, exportifcViewer.model.elements[0].end]);
      assert.deepEqual([start, end].flat().map(Math.round), [1000, 2000, 5000, 4000, 2000, 5000]);
    });
  });
  await check("a solid that stands aside of its element does so in the picture", async () => {
    const position = /IFCCARTESIANPOINT\(\(0\., 0\., 0\.\)\);(?=\r\n#\d+= IFCAXIS2PLACEMENT3D\(#\d+, \$, \$\);\r\n#\d+= IFCEXTRUDED)/;
    const ifc = simple.replace(position, "IFCCARTESIANPOINT((500., 20., -40.));");
    assert.notEqual(ifc, simple);
    await open(ifc, async (page) => assert.equal(await compareSolids(page, ifc), 3));
  });
  const other = {
    "in metres": changed(simple, [["(*, .LENGTHUNIT., .MILLI., .METRE.)", "(*, .LENGTHUNIT., $, .METRE.)"]]),
    "with an opening in a bar": changed(simple, [], [
      "#90000= IFCRECTANGLEPROFILEDEF(.AREA., 'hole', $, 1000., 1000.);",
      "#90001= IFCEXTRUDEDAREASOLID(#90000, #80, #19, 1200.);",
      "#90002= IFCSHAPEREPRESENTATION(#88, 'Body', 'SweptSolid', (#90001));",
      "#90003= IFCPRODUCTDEFINITIONSHAPE($, $, (#90002));",
      "#90004= IFCOPENINGELEMENT('000000000000000000hole', #5, 'hole', $, $, #111, #90003, $);",
      `#90005= IFCRELVOIDSELEMENT('000000000000000000void', #5, $, $, #${elementsOf(simple)[0].number}, #90004);`,
    ]),
    "with a bar that is cut": changed(simple.replace(/(IFCSHAPEREPRESENTATION\(#88, 'Body', )'SweptSolid', \(#\d+\)/, "$1'Clipping', (#90003)"), [], [
      "#90000= IFCCARTESIANPOINT((0., 0., 1000.));",
      "#90001= IFCAXIS2PLACEMENT3D(#90000, $, $);",
      "#90002= IFCPLANE(#90001);",
      "#90004= IFCHALFSPACESOLID(#90002, .F.);",
      `#90003= IFCBOOLEANCLIPPINGRESULT(.DIFFERENCE., #${/#(\d+)= IFCEXTRUDEDAREASOLID/.exec(simple)[1]}, #90004);`,
    ]),
  };
  for (const [what, ifc] of Object.entries(other)) {
    await check(`a file ${what}, which this exporter does not write, is meshed element by element`, async () => {
      await open(ifc, async (page) => {
        await compareSolids(page, ifc);
        assert.equal(await page.locator("#progress").isVisible(), false);
        assert.equal(await page.evaluate(() => exportifcViewer.geometry.missing.length), 0);
        for (let i = 0; i < 4; i++) {
          await page.evaluate((index) => exportifcViewer.select(exportifcViewer.model.elements[index]), i);
          assert.ok((await pixelsOfHue(page, hues.selected)) > 10, `element ${i}`);
        }
      });
    });
  }
  await check("a bar that is cut is shorter than one that is not", async () => {
    const [whole, cut] = await Promise.all([simple, other["with a bar that is cut"]].map((ifc) => measured(ifc, 24)));
    const { number } = elementsOf(simple)[0];
    assert.ok(Math.abs(cut.get(number).volume / whole.get(number).volume - 1 / 3) < 1e-6 || Math.abs(cut.get(number).volume / whole.get(number).volume - 2 / 3) < 1e-6);
  });

  const looks = {};
  for (const [what, widthOf] of [["alike", () => 100], ["each of its own", (i) => (99.9 + i / 1000).toFixed(3)]]) {
    await check(`many bars, ${what}, are drawn, found and hidden in few calls`, async () => {
      const count = 210;
      const ifc = withAssemblies(exported(modelText("mm", row(count, widthOf)), buildFolder), ({ number }) => (number < 5030 ? "truss" : "frame"));
      await open(ifc, async (page) => {
        const pixels = await pixelsOfHue(page, hues.frame);
        const state = () => page.evaluate(() => {
          const { view, geometry } = exportifcViewer;
          view.detail.budget = Infinity;
          view.draw();
          return [view.drawCalls, view.triangles, geometry.shapes.length];
        });
        const [calls, triangles, shapes] = await state();
        assert.equal(shapes, what === "alike" ? 1 : count);
        assert.ok(calls > 0 && calls < 10, String(calls));
        assert.equal(triangles, count * 44);
        looks[what] = pixels;
        const { number } = elementsOf(ifc)[137];
        await clickElement(page, number);
        assert.equal(await field(page, "number"), `#${number}`);
        const lit = await pixelsOfHue(page, hues.selected);
        assert.ok(lit > 30, String(lit));
        await page.keyboard.press("Escape");
        await page.keyboard.press("c");
        assert.ok((await pixelsOfHue(page, hues.frame)) < pixels / 2);
        await page.keyboard.press("c");
        assert.equal(await pixelsOfHue(page, hues.frame), pixels);
        await shownIn(page, "frame").locator("input").uncheck();
        assert.equal(await pixelsOfHue(page, hues.frame), 0);
        await shownIn(page, "frame").locator("input").check();
        assert.equal(await pixelsOfHue(page, hues.frame), pixels);
      });
    });
  }
  await check("drawn as instances and as one mesh they look the same", () => {
    const [one, other] = Object.values(looks);
    assert.ok(one > 2000 && Math.abs(one / other - 1) < 0.02, `${one} and ${other}`);
  });
}

// --- what the page carries ----------------------------------------------------------------------

async function testPacking() {
  const asItIs = { pack: (bytes) => bytes };
  await check("a page may carry its file as it is", async () => {
    await open(simple, async (page) => assert.equal(await page.evaluate(() => exportifcViewer.geometry.missing.length), 0), "modelo.ifc", asItIs);
  });
  const refused = async (pack, locale, wanted) => {
    const { page, problems, close } = await openPage(browser, writePage(simple, "modelo.ifc", { pack }), { locale });
    assert.match(await page.locator("#progress").textContent(), wanted);
    assert.equal(await page.locator("#progress-bar").isVisible(), false);
    assert.deepEqual(problems, []);
    await close();
  };
  await check("a page whose file cannot be unpacked says so, in both languages", async () => {
    const damaged = (bytes) => gzipSync(bytes).map((byte, i) => (i === 500 ? byte ^ 0xff : byte));
    await refused(damaged, "pt-BR", /está danificado/);
    await refused(damaged, "en", /is damaged/);
    await refused((bytes) => gzipSync(bytes).subarray(0, 2000), "en", /is damaged/);
  });
  await check("a bar tells how much is done, and never goes back", async () => {
    const context = await browser.newContext({ locale: "en" });
    const page = await context.newPage();
    await page.addInitScript(() => {
      window.told = [];
      const look = () => {
        const bar = document.getElementById("progress-bar");
        if (bar && bar.checkVisibility()) window.told.push([bar.value, document.getElementById("progress-text").textContent]);
        requestAnimationFrame(look);
      };
      requestAnimationFrame(look);
    });
    await page.goto(writePage(exported(modelText("mm", row(3000, () => 100)), buildFolder), "modelo.ifc"));
    await page.waitForFunction(() => exportifcViewer.ready);
    const told = await page.evaluate(() => window.told);
    assert.ok(told.length > 1, "it was never seen");
    told.forEach(([value], i) => assert.ok(i === 0 || value >= told[i - 1][0], JSON.stringify(told)));
    assert.ok(told.at(-1)[0] > 0, JSON.stringify(told));
    assert.ok(told.some(([, text]) => text === "Reading the model…"));
    assert.equal(await page.locator("#progress").isVisible(), false);
    await context.close();
  });
}

// --- files that are not as they should be --------------------------------------------------------

async function open(ifc, run, name = "modelo.ifc", options = {}) {
  const { page, problems, close } = await openPage(browser, writePage(ifc, name, options));
  await run(page);
  assert.deepEqual(problems, []);
  await close();
}

async function testFaults() {
  const elements = elementsOf(simple);

  await check("a bar without a solid is counted, the others are drawn", async () => {
    // The tube loses its profile.
    const broken = simple.replace(/^#\d+= IFCCIRCLEHOLLOWPROFILEDEF.*\r\n/m, "");
    assert.notEqual(broken, simple);
    await open(broken, async (page) => {
      assert.match(await page.locator("#notes").textContent(), /1 elemento sem sólido/);
      assert.deepEqual(await page.evaluate(() => exportifcViewer.geometry.missing.map((e) => e.section.text)), ["TUBO 73 73 4 4"]);
      assert.equal(await visible(page), 4);
      const volumes = await page.evaluate(() => [...exportifcViewer.geometry.volumes]);
      assert.ok(volumes[0] > 0 && volumes[1] === 0 && volumes[2] > 0 && volumes[3] > 0, String(volumes));
      await clickElement(page, elements[1].number); // it is still found by its axis
      assert.equal(await field(page, "section"), "TUBO 73 73 4 4");
      assert.equal(await field(page, "volume"), "–");
    });
  });
  await check("a bar of no length is counted", async () => {
    const bars = [...simpleBars, { start: [1, 1, 1], end: [1, 1, 1], section: "W 200 100 8 6" }];
    await open(exported(modelText("mm", bars), buildFolder), async (page) => {
      assert.match(await page.locator("#notes").textContent(), /1 elemento sem sólido/);
      assert.equal(await page.evaluate(() => exportifcViewer.geometry.missing[0].index), 4);
    });
  });
  await check("notes on the model stand in the list, as text", async () => {
    const notes = ["duas barras no mesmo lugar", "a unidade está certa (<b>mm</b>)?"];
    await open(simple, async (page) => {
      assert.deepEqual(await page.locator("#notes li").allTextContents(), notes);
      assert.equal(await page.locator("#notes").isVisible(), true);
    }, "modelo.ifc", { notes });
  });
  await check("a file that ends early is shown as far as it goes", async () => {
    await open(simple.slice(0, simple.indexOf("IFCMEMBER", simple.indexOf("IFCBEAM")) + 20), async (page) => {
      assert.match(await page.locator("#notes").textContent(), /termina antes do fim/);
      assert.equal(await page.evaluate(() => exportifcViewer.model.elements.length), 2);
      assert.equal(await page.locator('[data-group="loose"] > .row .label').textContent(), "Sem grupo");
      assert.ok((await page.evaluate(() => exportifcViewer.view.triangles)) > 0);
    });
  });
  await check("a name with markup is a name", async () => {
    const name = "<b onclick=1>&amp; 100";
    await open(exported(modelText("mm", [{ ...simpleBars[0], section: name }]), buildFolder), async (page) => {
      assert.equal(await page.locator("li[data-section] .row .label").textContent(), name);
      assert.equal(await page.locator("#structure b").count(), 0);
    }, "<i>.ifc");
  });
  await check("a name with an apostrophe spoils no other bar's entry", async () => {
    const bars = [simpleBars[0], { ...simpleBars[1], section: "TUBO 73 73 4 4'" }, simpleBars[2]];
    await open(exported(modelText("mm", bars), buildFolder), async (page) => {
      const found = await page.evaluate(() => exportifcViewer.model.elements.map((e) => [e.section.text, e.length]));
      assert.deepEqual(found[0], ["W 200 100 8 6", 3000]);
      assert.deepEqual(found[2], ["W 200 100 8 6", 3000]);
    });
  });
  await check("a structure far from the origin keeps its shape", async () => {
    const far = simpleBars.map((bar) => ({ ...bar, start: bar.start.map((v) => v + 7e6), end: bar.end.map((v) => v + 7e6) }));
    await open(exported(modelText("mm", far), buildFolder), async (page) => {
      const size = await page.evaluate(() => {
        const { least, greatest } = exportifcViewer.geometry.bounds;
        return greatest.clone().sub(least).toArray();
      });
      const wanted = [4100, 2125, 3050.5]; // the sections reach beyond the axes
      for (const axis of [0, 1, 2]) assert.ok(Math.abs(size[axis] - wanted[axis]) < 110, String(size));
    });
  });
  await check("an empty model gives an empty page", async () => {
    await open(exported(modelText("mm", []), buildFolder), async (page) => {
      assert.match(await page.locator("#summary").textContent(), /^0 elementos/);
      assert.equal(await page.evaluate(() => exportifcViewer.ready), true);
    });
  });
  await check("a page whose model nobody filled in says so", async () => {
    await open(null, async (page) => assert.equal(await page.locator("#progress").textContent(), "Esta página não contém modelo."));
  });
  await check("what is no IFC at all breaks nothing", async () => {
    await open("\x00\x01 nothing that a reader knows \xff", async (page) => {
      assert.equal(await page.evaluate(() => exportifcViewer.model.elements.length), 0);
    });
  });
}

async function testFirstPicture() {
  await check("the first picture shows every bar where the graphics draw it later, and gives way to them", async () => {
    const context = await browser.newContext({ viewport: { width: 1280, height: 800 } });
    const page = await context.newPage();
    await page.addInitScript(() => {
      const keep = () => (globalThis.sketched = document.querySelector(".sketch")?.src || globalThis.sketched);
      new MutationObserver(keep).observe(document, { subtree: true, childList: true, attributes: true });
    });
    await page.goto(writePage(warehouse, "galpao.ifc"));
    await page.waitForFunction(() => exportifcViewer.ready);
    assert.equal(await page.locator(".sketch").count(), 0);
    const { missing, colours } = await page.evaluate(async () => {
      const image = new Image();
      image.src = sketched;
      await image.decode();
      const canvas = document.createElement("canvas");
      [canvas.width, canvas.height] = [image.naturalWidth, image.naturalHeight];
      const context = canvas.getContext("2d");
      context.drawImage(image, 0, 0);
      const { view, model } = exportifcViewer;
      const painted = ({ x, y }) => context.getImageData(x - 2, y - 2, 4, 4).data.some((value, i) => i % 4 === 3 && value === 255);
      const { data } = context.getImageData(0, 0, canvas.width, canvas.height);
      const colours = new Set();
      for (let i = 0; i < data.length; i += 4) if (data[i + 3] > 0) colours.add([...data.subarray(i, i + 3)].join());
      return { missing: model.elements.filter((element) => !painted(view.project(element))).length, colours: [...colours].sort() };
    });
    assert.equal(missing, 0);
    assert.deepEqual(colours, ["138,122,168", "28,156,124", "31,111,181"]); // groups: direct, truss, frame
    await context.close();
  });
}

async function testWithoutGraphics() {
  const blind = await startBrowser("--disable-3d-apis");
  await check("a browser without WebGL still shows lists and totals", async () => {
    const { page, close } = await openPage(blind, writePage(simple, "modelo.ifc"));
    assert.match(await page.locator("#notes").textContent(), /não oferece WebGL/);
    assert.equal(await page.locator(".sketch").count(), 0);
    assert.equal(await page.locator("li[data-section]").count(), 3);
    assert.equal(await page.locator("#totals tbody tr").count(), 3);
    await sectionRow(page, "W 200 100 8 6").locator(".opener").click();
    await sectionRow(page, "W 200 100 8 6").locator(".element").first().click();
    assert.equal(await field(page, "length"), "3.000 mm");
    await close();
  });
  await testExportingWithoutGraphics(check, blind);
  await blind.close();
}

await testReader(check);
await testWarehouse();
await testFamilies();
await testSolids();
await testPacking();
await testFaults();
await testFirstPicture();
await testExporting(check, browser, buildFolder);
await browser.close();
await testWithoutGraphics();

console.log(`${results.passed} passed, ${results.failed} failed`);
process.exit(results.failed === 0 ? 0 : 1);
