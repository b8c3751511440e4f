// cell.mjs CELL.html ELEMENTS: what a notebook shows of a model, in a browser; in a frame that may not do
// what a page of its own may. Ends with 1 and says why when not all elements are there.

import assert from "node:assert/strict";
import { resolve } from "node:path";
import { pathToFileURL } from "node:url";
import { startBrowser } from "../../page/test/lib.mjs";

const [cell, elements] = process.argv.slice(2);
const browser = await startBrowser();
try {
  const page = await browser.newPage();
  const problems = [];
  page.on("pageerror", (error) => problems.push(`exception: ${error}`));
  page.on("request", (request) => {
    if (!/^(file|data|blob|about):/.test(request.url())) problems.push(`request: ${request.url()}`);
  });
  await page.goto(pathToFileURL(resolve(cell)).href);
  const frame = await (await page.waitForSelector("iframe")).contentFrame();
  await frame.waitForFunction(() => exportifcViewer.ready || exportifcViewer.failed !== "", null, { timeout: 120000 });
  assert.equal(await frame.evaluate(() => exportifcViewer.failed), "");
  assert.equal(await frame.evaluate(() => exportifcViewer.model.elements.length), Number(elements));
  assert.deepEqual(problems, []);
} finally {
  await browser.close();
}
