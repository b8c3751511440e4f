#!/usr/bin/env node
// bench.mjs BUILD_FOLDER [BARS] [RUNS] [OTHER_PAGE [plain]]: how long the page takes with a large structure.
//
// Times are milliseconds since the page was opened; the least of all runs is given first, because what else the machine
// does only adds to it. Another page, built before a change, is measured in turn with this one, so that both
// see the same machine; with "plain" it gets the file as it is, as pages did before they could unpack. The browser
// draws in software here, so frames take far longer than on any graphics card.

import { readFileSync, statSync } from "node:fs";
import { fileURLToPath } from "node:url";
import { building, exported, modelText, needs, openPage, startBrowser, withAssemblies, writePage } from "./test/lib.mjs";

const [buildFolder, bars = "10000", runs = "5", other, packing] = process.argv.slice(2);
if (!buildFolder) {
  console.error("usage: bench.mjs BUILD_FOLDER [BARS] [RUNS] [OTHER_PAGE [plain]]");
  process.exit(2);
}
needs(`${buildFolder}/run_host`, `${buildFolder}/libexportIFC.so`, ...(other ? [other] : []));

const kindOf = ({ section }) => (section.startsWith("W") ? "frame" : section.startsWith("TUBO") ? "truss" : "direct");
const ifc = withAssemblies(exported(modelText("mm", building(Number(bars))), buildFolder), kindOf);
const pages = [{ name: "this page", url: writePage(ifc, `${bars}.ifc`) }];
if (other) {
  const asItIs = packing === "plain" ? { pack: (bytes) => bytes } : {};
  pages.unshift({ name: other, url: writePage(ifc, `${bars}.ifc`, { template: other, file: "other.html", ...asItIs }) });
}
for (const page of pages) {
  const size = statSync(fileURLToPath(page.url)).size;
  console.log(`${bars} bars: file ${(ifc.length / 1e6).toFixed(1)} MB, ${page.name} ${(size / 1e6).toFixed(1)} MB`);
  page.taken = {};
}

/** Most memory that a process of the browser has held, in megabytes. */
async function peaks(browser) {
  const session = await browser.newBrowserCDPSession();
  const { processInfo } = await session.send("SystemInfo.getProcessInfo");
  const peak = (id) => Number(/VmHWM:\s*(\d+) kB/.exec(readFileSync(`/proc/${id}/status`, "utf8"))[1]) / 1000;
  const most = (type) => Math.round(Math.max(0, ...processInfo.filter((info) => info.type === type).map(({ id }) => peak(id))));
  return { pagePeakMB: most("renderer"), graphicsPeakMB: most("GPU") };
}

for (let run = 0; run < Number(runs); run++) {
  for (const { url, name, taken } of pages) {
    const browser = await startBrowser("--enable-precise-memory-info");
    const { page, problems } = await openPage(browser, url, { locale: "en", width: 1280, height: 800 });
    const { times, facts } = await page.evaluate(async () => {
      const { view, model, marks, visible } = exportifcViewer;
      const canvas = document.getElementById("canvas");
      const gl = canvas.getContext("webgl2");
      const drawn = () => {
        view.draw();
        gl.readPixels(0, 0, 1, 1, gl.RGBA, gl.UNSIGNED_BYTE, new Uint8Array(4)); // waits until all is drawn
      };
      const result = { ...marks };
      // When the browser says that the first picture was on the screen.
      const shown = await new Promise((resolve) => {
        new PerformanceObserver((list) => resolve(list.getEntries()[0].renderTime)).observe({ type: "element", buffered: true });
        setTimeout(resolve, 500);
      });
      if (shown) result.onScreen = Math.round(shown);
      while (!view.settled) await new Promise((resolve) => setTimeout(resolve, 20));
      result.settled = Math.round(performance.now());
      const tasks = new Promise((resolve) => {
        new PerformanceObserver((list) => resolve(list.getEntries())).observe({ type: "longtask", buffered: true });
        setTimeout(() => resolve([]), 1000);
      });
      result.longestTask = Math.max(0, ...(await tasks).map((task) => task.duration));
      result.heapMB = Math.round(performance.memory.usedJSHeapSize / 1e6);
      const time = (what, act, times) => {
        const start = performance.now();
        for (let i = 0; i < times; i++) act(i);
        result[what] = Math.round(((performance.now() - start) / times) * 10) / 10;
      };
      drawn();
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
    Object.assign(times, await peaks(browser));
    for (const [what, value] of Object.entries(times)) (taken[what] ??= []).push(value);
    if (run === 0) console.log(name, facts);
    await browser.close();
  }
}
for (const { name, taken } of pages) {
  console.log(name);
  for (const [what, values] of Object.entries(taken)) {
    console.log(`  ${what.padEnd(14)} ${String(Math.min(...values)).padStart(7)}   of ${values.join(" ")}`);
  }
}
