#!/usr/bin/env node
// bench.mjs BUILD_FOLDER [BARS] [RUNS]: how long the page takes with a large structure.
//
// Times are milliseconds since the page was opened, the middle of all runs. The browser draws in software here,
// so frames take far longer than on any graphics card.

import { statSync } from "node:fs";
import { fileURLToPath } from "node:url";
import { exported, modelText, needs, openPage, startBrowser, withAssemblies, writePage } from "./test/lib.mjs";

const [buildFolder, bars = "10000", runs = "5"] = process.argv.slice(2);
if (!buildFolder) {
  console.error("usage: bench.mjs BUILD_FOLDER [BARS] [RUNS]");
  process.exit(2);
}
needs(`${buildFolder}/run_host`, `${buildFolder}/libexportIFC.so`);

/** A building of 20 by 20 bays: columns, beams across, beams along and a tube in every fourth line. */
function building(count) {
  const list = [];
  for (let z = 0; ; z += 3000) {
    for (let i = 0; i <= 20; i++) {
      for (let j = 0; j <= 20; j++) {
        const [x, y] = [i * 6000, j * 6000];
        const top = [x, y, z + 3000];
        list.push({ start: [x, y, z], end: top, section: "W 250 146 9.1 6.1" });
        if (i < 20) list.push({ start: top, end: [x + 6000, y, z + 3000], section: "W 310 165 9.7 5.8" });
        if (j < 20) list.push({ start: top, end: [x, y + 6000, z + 3000], section: j % 4 === 0 ? "TUBO 168 168 6 6" : "UENR 200 75 20 2.65" });
        if (list.length >= count) return list.slice(0, count);
      }
    }
  }
}

const kindOf = ({ section }) => (section.startsWith("W") ? "frame" : section.startsWith("TUBO") ? "truss" : "direct");
const ifc = withAssemblies(exported(modelText("mm", building(Number(bars))), buildFolder), kindOf);
const url = writePage(ifc, `${bars}.ifc`);
console.log(`${bars} bars: file ${(ifc.length / 1e6).toFixed(1)} MB, page ${(statSync(fileURLToPath(url)).size / 1e6).toFixed(1)} MB`);

const middle = (values) => values.sort((a, b) => a - b)[Math.floor(values.length / 2)];
const taken = {};
let facts = {};
for (let run = 0; run < Number(runs); run++) {
  const browser = await startBrowser();
  const { page, problems } = await openPage(browser, url, { locale: "en", width: 1280, height: 800 });
  const times = await page.evaluate(async () => {
    const { view, model, marks, visible } = exportifcViewer;
    const canvas = document.getElementById("canvas");
    const gl = canvas.getContext("webgl2");
    const drawn = () => {
      view.draw();
      gl.readPixels(0, 0, 1, 1, gl.RGBA, gl.UNSIGNED_BYTE, new Uint8Array(4)); // waits until all is drawn
    };
    drawn();
    const result = { ...marks, pixelsThere: Math.round(performance.now()) };
    const time = (name, run, times) => {
      const start = performance.now();
      for (let i = 0; i < times; i++) run(i);
      result[name] = Math.round(((performance.now() - start) / times) * 10) / 10;
    };
    time("frame", () => (view.cameras.turn(0.05, 0), drawn()), 20);
    time("frameInside", (i) => (i === 0 && view.cameras.zoom(8), view.cameras.turn(0.05, 0), drawn()), 20);
    view.fit();
    time("pick", (i) => view.pick(300 + 20 * i, 300), 20);
    const box = document.querySelector(".row.group input");
    time("hideOrShow", () => box.click(), 6);
    time("select", (i) => exportifcViewer.select(model.elements[i * 100]), 20);
    return { times: result, facts: { elements: visible(), drawCalls: view.drawCalls, triangles: view.triangles } };
  });
  for (const problem of problems.slice(0, 5)) console.log(problem);
  facts = times.facts;
  for (const [name, value] of Object.entries(times.times)) (taken[name] ??= []).push(value);
  await browser.close();
}
console.log(facts);
for (const [name, values] of Object.entries(taken)) console.log(`${name.padEnd(14)} ${String(middle(values)).padStart(7)} ms   of ${values.join(" ")}`);
