// Both pages in Firefox, from disk: the picture, the exported bytes, a refusal, and nothing that a user must never cause.
//
//   xvfb-run node test/firefox.test.mjs FOLDER      FOLDER holds the built exportifc
//
// Without a screen this browser gives no WebGL. Ends with the line "N passed, N failed".

import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { readFileSync, writeFileSync } from "node:fs";
import { join } from "node:path";
import { fileURLToPath, pathToFileURL } from "node:url";
import puppeteer from "puppeteer-core";
import { exported, needs, sample, scratch, writePage } from "./lib.mjs";

const buildFolder = process.argv[2];
const exporting = fileURLToPath(new URL("../dist/exportifc.html", import.meta.url));
const executablePath = process.env.FIREFOX ?? "/usr/bin/firefox-esr";
needs(executablePath, exporting, join(buildFolder, "exportifc"));

let [passed, failed] = [0, 0];
async function check(what, test) {
  try {
    await test();
    ++passed;
  } catch (error) {
    ++failed;
    console.log(`failed: ${what}: ${error.stack}`);
  }
}

const withoutIds = (file) => Buffer.from(file).toString("latin1").replace(/\('[0-9A-Za-z_$]{22}'/g, "('*'");
const browser = await puppeteer.launch({ browser: "firefox", executablePath, headless: false });

/** Opens a page; `faults` collects what a user must never cause, `saved` what the page gives to be saved. */
async function open(url) {
  const page = await browser.newPage();
  const faults = [];
  page.on("console", (message) => {
    // The browser remarks that software draws.
    const ours = !/WebGL warning|software/i.test(message.text());
    if (ours && ["error", "warn"].includes(message.type())) faults.push(`console: ${message.text()}`);
  });
  page.on("pageerror", (error) => faults.push(`exception: ${error}`));
  page.on("request", (request) => {
    if (!/^(file|data|blob):/.test(request.url())) faults.push(`request: ${request.url()}`);
  });
  await page.evaluateOnNewDocument(() => {
    globalThis.violations = [];
    addEventListener("securitypolicyviolation", ({ violatedDirective, blockedURI }) => violations.push(`${violatedDirective} ${blockedURI}`));
    const create = URL.createObjectURL;
    URL.createObjectURL = (blob) => {
      globalThis.lastBlob = blob;
      return create.call(URL, blob);
    };
  });
  await page.goto(url);
  return {
    page,
    settled: () => page.waitForFunction(() => exportifcViewer.ready || exportifcViewer.failed !== "", { timeout: 120000 }),
    faults: async () => [...faults, ...(await page.evaluate(() => violations))],
    saved: () => page.evaluate(() => lastBlob.text()),
  };
}

await check("the page of a model shows it", async () => {
  const shown = await open(writePage(exported(sample("galpao.txt"), buildFolder), "galpao.ifc"));
  await shown.settled();
  assert.equal(await shown.page.evaluate(() => exportifcViewer.failed), "");
  assert.equal(await shown.page.evaluate(() => exportifcViewer.model.elements.length), 608);
  assert.ok(await shown.page.evaluate(() => exportifcViewer.view !== undefined), "no picture");
  assert.deepEqual(await shown.faults(), []);
  await shown.page.close();
});

await check("the page that exports gives the program's bytes", async () => {
  const { page, settled, faults, saved } = await open(pathToFileURL(exporting).href);
  await page.waitForSelector('[data-sample="galpao.json"]');
  await page.click('[data-sample="galpao.json"]');
  await page.waitForSelector("#save-ifc", { timeout: 120000 });
  await settled();
  assert.ok(await page.evaluate(() => exportifcViewer.view !== undefined), "no picture");
  await page.click("#save-ifc");
  const output = join(scratch, "program.ifc");
  const model = fileURLToPath(new URL("../../samples/galpao.json", import.meta.url));
  execFileSync(join(buildFolder, "exportifc"), ["export", "-q", model, "-o", output]);
  assert.equal(withoutIds(await saved()), withoutIds(readFileSync(output)));
  assert.deepEqual(await faults(), []);
  await page.close();
});

await check("what would cut the file is refused, and cured", async () => {
  const { page, settled, faults } = await open(pathToFileURL(exporting).href);
  const model = join(scratch, "accents.json");
  writeFileSync(
    model,
    JSON.stringify({ unit: "mm", nodes: [[0, 0, 0], [0, 0, 3000]], sections: { a: { text: "CAÇÃO 10" } }, bars: [{ nodes: [0, 1], section: "a" }] }),
  );
  await page.waitForSelector("#chooser");
  await (await page.$("#chooser")).uploadFile(model);
  await page.waitForSelector("#transliterate", { timeout: 60000 });
  assert.equal(await page.$("#save-ifc"), null);
  await page.click("#transliterate");
  await page.waitForSelector("#save-ifc", { timeout: 60000 });
  await settled();
  assert.deepEqual(await faults(), []);
  await page.close();
});

await browser.close();
console.log(`${passed} passed, ${failed} failed`);
process.exitCode = failed ? 1 : 0;
