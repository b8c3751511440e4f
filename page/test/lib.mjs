// What the test of the page and its measurement share: models, the exporter, the browser.

import { execFileSync } from "node:child_process";
import { existsSync, mkdtempSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { fileURLToPath, pathToFileURL } from "node:url";
import { embed } from "../embed.mjs";

/** Ends the program with one line when a file that it needs is not there. */
export function needs(...files) {
  for (const file of files) {
    if (!existsSync(file)) {
      console.error(`${file} is missing: build the project and its page first (README.md)`);
      process.exit(2);
    }
  }
}

const page = fileURLToPath(new URL("../dist/viewer.html", import.meta.url));
needs(fileURLToPath(new URL("../node_modules/playwright-core", import.meta.url)), page);
const { chromium } = await import("playwright-core");

const root = fileURLToPath(new URL("../../", import.meta.url));

/** A folder that is gone when the process ends. */
export const scratch = mkdtempSync(join(tmpdir(), "viewer-"));
process.on("exit", () => rmSync(scratch, { recursive: true, force: true }));

export const sample = (name) => readFileSync(join(root, "samples", name), "latin1");

/** The bars of a batch model: five lines of header, then twelve lines a bar. */
export function barsOf(modelText) {
  const lines = modelText.split(/\r?\n/);
  const scale = { m: 1000, cm: 10, mm: 1 }[lines[3]];
  const bars = [];
  for (let at = 5; bars.length < Number(lines[4]); at += 12) {
    const numbers = lines.slice(at + 1, at + 7).map((number) => Number(number.replace(",", ".")) * scale);
    bars.push({ start: numbers.slice(0, 3), end: numbers.slice(3), section: lines[at + 8] });
  }
  return bars;
}

export function modelText(unit, bars) {
  const lines = ["0", "0", "model", unit, bars.length];
  bars.forEach((bar, i) => lines.push(`Bar ${i}`, ...bar.start, ...bar.end, 0, bar.section, "", 0, ""));
  return lines.join("\r\n") + "\r\n";
}

/** Exports a batch model through the module; gives the IFC text. */
export function exported(text, buildFolder) {
  const [host, module] = ["run_host", "libexportIFC.so"].map((file) => join(buildFolder, file));
  for (const file of [host, module]) if (!existsSync(file)) throw new Error(`${file} is missing: build the project first`);
  const [model, ifc] = [join(scratch, "model.txt"), join(scratch, "model.ifc")];
  writeFileSync(model, text, "latin1");
  execFileSync(host, [module, model, ifc], { stdio: "ignore" });
  return readFileSync(ifc, "latin1");
}

const elementLine = /^#(\d+)= IFC(BEAM|COLUMN|MEMBER)\('[^']*', #5, '([^']*)', '([^']*)'/gm;

/** The elements of an exported file, read without the page's reader. */
export function elementsOf(ifc) {
  return [...ifc.matchAll(elementLine)].map(([, number, type, name, section]) => ({
    number: Number(number),
    type: `IFC${type}`,
    name,
    section,
  }));
}

/**
 * A batch model carries no bar types, so its export has no assemblies. This moves elements into them, with the
 * lines that an export from a host has. `kindOf` says "frame", "truss" or "direct" of an element.
 */
export function withAssemblies(ifc, kindOf) {
  const members = { frame: [], truss: [], direct: [] };
  for (const element of elementsOf(ifc)) members[kindOf(element)].push(element.number);
  const list = (numbers) => numbers.map((number) => `#${number}`).join(", ");
  let next = 1 + Number(ifc.slice(ifc.lastIndexOf("\n#") + 2).match(/^\d+/)[0]); // numbers only grow
  let lines = "";
  for (const [kind, name] of [["frame", "Elementos_de_Portico"], ["truss", "Elementos_de_Trelica"]]) {
    if (members[kind].length === 0) continue;
    lines +=
      `#${next}= IFCELEMENTASSEMBLY('0000000000000000000${kind[0]}00', #5, '${name}', '', $, #111, $, $, $, .NOTDEFINED.);\r\n` +
      `#${next + 1}= IFCRELAGGREGATES('0000000000000000000${kind[0]}01', #5, '${name}', 'Assembly', #${next}, (${list(members[kind])}));\r\n`;
    members.direct.push(next);
    next += 2;
  }
  return ifc.replace(
    /^(#\d+= IFCRELCONTAINEDINSPATIALSTRUCTURE\(.*?)\([^()]*\), #113\);/m,
    (_, start) => `${lines}${start}(${list(members.direct)}), #113);`,
  );
}

const pageFile = join(scratch, "page.html");

/** Writes the page for a file; null leaves its markers as they are. */
export function writePage(ifc, name, notes = []) {
  const filled = ifc === null ? readFileSync(page, "latin1") : embed(Buffer.from(ifc, "latin1"), name, notes);
  writeFileSync(pageFile, filled, "latin1");
  return pathToFileURL(pageFile).href;
}

export function startBrowser(...flags) {
  const executablePath = process.env.CHROMIUM ?? "/usr/bin/chromium";
  needs(executablePath);
  return chromium.launch({
    executablePath,
    args: [
      "--no-sandbox",
      "--use-angle=swiftshader",
      "--enable-unsafe-swiftshader",
      "--disable-quic",
      "--no-first-run",
      "--disable-background-networking",
      "--disable-component-update",
      "--disable-sync",
      ...flags,
    ],
  });
}

/** Opens a page and waits until it shows its model or says why not. `problems` collects what a user must never cause. */
export async function openPage(browser, url, { locale = "pt-BR", width = 1280, height = 800 } = {}) {
  const context = await browser.newContext({ locale, viewport: { width, height } });
  const page = await context.newPage();
  const problems = [];
  page.on("console", (message) => {
    // Reading pixels back, as these tests do, makes the driver remark on its speed.
    const ours = !message.text().includes("GL Driver Message");
    if (ours && ["error", "warning"].includes(message.type())) problems.push(`console: ${message.text()}`);
  });
  page.on("pageerror", (error) => problems.push(`exception: ${error}`));
  page.on("request", (request) => {
    if (!/^(file|data|blob):/.test(request.url())) problems.push(`request: ${request.url()}`);
  });
  await page.goto(url);
  await page.waitForFunction(() => exportifcViewer.ready || exportifcViewer.failed !== "", null, { timeout: 120000 });
  return { page, problems, close: () => context.close() };
}
