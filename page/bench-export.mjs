#!/usr/bin/env node
// bench-export.mjs [BARS] [RUNS]: how long the page that exports takes with a batch text file, and how long it freezes.
//
// Times are milliseconds since the file was given; the longest task is the longest time for which the page answered
// nobody, as Chromium counts it; drawing in software is part of that here.

import { fileURLToPath, pathToFileURL } from "node:url";
import { building, modelText, needs, openPage, startBrowser } from "./test/lib.mjs";

const [bars = "10000", runs = "5"] = process.argv.slice(2);
const buffer = Buffer.from(modelText("mm", building(Number(bars))), "latin1");
const exportingPage = fileURLToPath(new URL("dist/exportifc.html", import.meta.url));
needs(exportingPage);
const url = pathToFileURL(exportingPage).href;
const taken = {};

for (let run = 0; run < Number(runs); run++) {
  const browser = await startBrowser();
  const { page, problems } = await openPage(browser, url, { locale: "en" });
  await page.evaluate(() => {
    window.told = { tasks: [] };
    new PerformanceObserver((list) => window.told.tasks.push(...list.getEntries())).observe({ type: "longtask" });
    document.getElementById("chooser").addEventListener("change", () => (window.told.start = performance.now()), { capture: true });
    const since = (name) => (window.told[name] ??= performance.now() - window.told.start);
    new MutationObserver(() => {
      if (!document.getElementById("problems").hidden) since("problems");
      if (document.getElementById("save-ifc")) since("picture");
    }).observe(document.body, { childList: true, subtree: true, attributes: true });
  });
  await page.waitForTimeout(1000); // a person takes longer to find a file than the graphics to start
  await page.setInputFiles("#chooser", { name: "building.txt", mimeType: "text/plain", buffer });
  await page.waitForFunction(() => exportifcViewer.ready, null, { timeout: 300000 });
  await page.waitForFunction(() => exportifcViewer.view.settled, null, { timeout: 300000 });
  const loading = await page.evaluate(async () => {
    await new Promise((resolve) => setTimeout(resolve, 300)); // the observer is told later
    const { told } = window;
    // What hands the file over belongs to this measurement, not to the page.
    const tasks = told.tasks.splice(0).filter(({ startTime }) => startTime > told.start).map(({ duration }) => duration);
    return { problems: told.problems, picture: told.picture, longestTask: Math.max(0, ...tasks) };
  });
  const saving = {};
  for (const [what, button] of [["saveZip", "#save-ifczip"], ["savePage", "#save-html"]]) {
    const start = performance.now();
    await Promise.all([page.waitForEvent("download"), page.click(button)]);
    saving[what] = performance.now() - start;
  }
  saving.longestTaskSaving = await page.evaluate(async () => {
    await new Promise((resolve) => setTimeout(resolve, 300));
    return Math.max(0, ...window.told.tasks.map(({ duration }) => duration));
  });
  for (const [what, value] of Object.entries({ ...loading, ...saving })) (taken[what] ??= []).push(Math.round(value));
  for (const problem of problems) console.log(problem);
  await browser.close();
}
for (const [what, values] of Object.entries(taken)) console.log(`${what.padEnd(18)} ${String(Math.min(...values)).padStart(7)}   of ${values.join(" ")}`);
