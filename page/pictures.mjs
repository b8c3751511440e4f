#!/usr/bin/env node
// pictures.mjs PROGRAM: draws the sample models into docs/pictures, as the page shows them.

import { execFileSync } from "node:child_process";
import { mkdirSync, readFileSync } from "node:fs";
import { join } from "node:path";
import { fileURLToPath } from "node:url";
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
await browser.close();
