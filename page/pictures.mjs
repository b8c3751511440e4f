#!/usr/bin/env node
// pictures.mjs PROGRAM: draws the sample models into docs/pictures, as the page shows them, and the page that exports.

import { execFileSync } from "node:child_process";
import { mkdirSync, readFileSync } from "node:fs";
import { join } from "node:path";
import { fileURLToPath, pathToFileURL } from "node:url";
import { needs, openPage, scratch, startBrowser, writePage } from "./test/lib.mjs";

const root = fileURLToPath(new URL("../", import.meta.url));
const program = process.argv[2] ?? join(root, "build/linux/exportifc");
needs(program);
const pictures = join(root, "docs/pictures");
mkdirSync(pictures, { recursive: true });

// What is done before the picture is taken.
const samples = {
  galpao: (page) => page.evaluate(() => {
    const { model, select, view } = exportifcViewer;
    view.look("iso");
    select(model.elements.find((element) => element.ifcType === "IFCCOLUMN" && element.section.text.startsWith("HP ")));
  }),
  // The catalogue's bars turn their ends to somebody who looks along Y; a parallel view shows all alike.
  familias: (page) => page.evaluate(() => {
    exportifcViewer.view.look("front");
    exportifcViewer.view.cameras.turn(-0.35, 0.3);
    document.querySelector("[data-command=perspective]").click();
  }),
};

const browser = await startBrowser();
for (const [name, prepare] of Object.entries(samples)) {
  const file = join(scratch, `${name}.ifc`);
  execFileSync(program, ["export", join(root, "samples", `${name}.json`), "-o", file], { stdio: "ignore" });
  const { page, problems, close } = await openPage(browser, writePage(readFileSync(file, "latin1"), `${name}.ifc`), { width: 1280, height: 800 });
  await prepare(page);
  await page.keyboard.press("f");
  await page.waitForFunction(() => exportifcViewer.view.settled);
  await page.screenshot({ path: join(pictures, `${name}.png`) });
  for (const problem of problems) console.error(problem);
  await close();
}

// The page that exports, with a model that has something wrong: a thickness is missing, a family word is not known.
const model = JSON.parse(readFileSync(join(root, "samples/galpao.json"), "utf8"));
const faults = { "HP 254 254 14.2 14.2": "HP 254 254 14.2", "CART 100 50 20 2": "CARTOLA 100 50 20 2" };
for (const section of Object.values(model.sections)) section.text = faults[section.text] ?? section.text;
const exporting = join(root, "page/dist/exportifc.html");
const { page } = await openPage(browser, pathToFileURL(exporting).href, { locale: "en", width: 1280, height: 800 });
await page.setInputFiles("#chooser", { name: "galpao.json", mimeType: "application/json", buffer: Buffer.from(JSON.stringify(model, null, 1)) });
await page.waitForSelector("#save-ifc");
await page.waitForFunction(() => exportifcViewer.ready);
await page.evaluate(() => document.querySelector("#problems li button").click());
await page.evaluate(() => exportifcViewer.view.look("iso"));
await page.keyboard.press("f");
await page.waitForFunction(() => exportifcViewer.view.settled);
await page.screenshot({ path: join(pictures, "page.png") });
await browser.close();
