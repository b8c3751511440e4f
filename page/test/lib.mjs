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
  bars.forEach((bar, i) => lines.push(`Bar ${i}`, ...bar.start, ...bar.end, bar.rotation ?? 0, bar.section, "", 0, ""));
  return lines.join("\r\n") + "\r\n";
}

/** A building of 20 by 20 bays: columns, beams across, beams along and a tube in every fourth line. */
export function building(count) {
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

/** Exports a batch model through the module; gives the IFC text. */
export function exported(text, buildFolder) {
  const [host, module] = ["run_host", "libexportIFC.so"].map((file) => join(buildFolder, file));
  for (const file of [host, module]) if (!existsSync(file)) throw new Error(`${file} is missing: build the project first`);
  const [model, ifc] = [join(scratch, "model.txt"), join(scratch, "model.ifc")];
  writeFileSync(model, text, "latin1");
  execFileSync(host, [module, model, ifc], { stdio: "ignore" });
  return readFileSync(ifc, "latin1");
}

/** The IFC file that the program makes of a model file. */
export function exportedByProgram(model, buildFolder) {
  const ifc = join(scratch, "program.ifc");
  execFileSync(join(buildFolder, "exportifc"), ["export", model, "-q", "-o", ifc], { stdio: "ignore" });
  return readFileSync(ifc);
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

/**
 * Writes the page for a file; null leaves its markers as they are. Options: `notes` on the model, how to `pack` it, into
 * which `template`, under which name in the scratch folder.
 */
export function writePage(ifc, name, { file = "page.html", template = page, ...options } = {}) {
  const filled = ifc === null ? readFileSync(template, "latin1") : embed(Buffer.from(ifc, "latin1"), name, { template, ...options });
  writeFileSync(join(scratch, file), filled, "latin1");
  return pathToFileURL(join(scratch, file)).href;
}

/**
 * All drawing goes by graphics that the processor plays; with PLAIN_WINDOW in the environment the picture alone, as the
 * browser starts by itself where there is no graphics card.
 */
export function startBrowser(...flags) {
  const executablePath = process.env.CHROMIUM ?? "/usr/bin/chromium";
  needs(executablePath);
  return chromium.launch({
    executablePath,
    args: [
      "--no-sandbox",
      ...(process.env.PLAIN_WINDOW ? [] : ["--use-angle=swiftshader"]),
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

/** Volume and box of each element as the engine measures a whole file: entity number → cubic metres, millimetres. */
export async function measured(ifc, circlePoints) {
  const { IfcAPI } = await import("web-ifc");
  const api = new IfcAPI();
  await api.Init();
  api.SetLogLevel(6);
  const model = api.OpenModel(Buffer.from(ifc, "latin1"), { CIRCLE_SEGMENTS: circlePoints });
  const found = new Map();
  api.StreamAllMeshes(model, (mesh) => {
    let volume = 0;
    const [least, most] = [[Infinity, Infinity, Infinity], [-Infinity, -Infinity, -Infinity]];
    for (let i = 0; i < mesh.geometries.size(); i++) {
      const { geometryExpressID, flatTransformation: m } = mesh.geometries.get(i);
      const geometry = api.GetGeometry(model, geometryExpressID);
      const vertices = api.GetVertexArray(geometry.GetVertexData(), geometry.GetVertexDataSize());
      const indices = api.GetIndexArray(geometry.GetIndexData(), geometry.GetIndexDataSize());
      const points = [];
      for (let v = 0; v < vertices.length; v += 6) {
        const [x, y, z] = vertices.subarray(v, v + 3);
        const row = (r) => m[r] * x + m[4 + r] * y + m[8 + r] * z + m[12 + r];
        points.push([row(0), -row(2), row(1)]);
      }
      const part = { volume: 0 };
      for (let k = 0; k < indices.length; k += 3) {
        // From the first point, so that places far away cost no precision.
        const [a, b, c] = [0, 1, 2].map((n) => points[indices[k + n]].map((value, axis) => value - points[0][axis]));
        part.volume += (a[0] * (b[1] * c[2] - b[2] * c[1]) + a[1] * (b[2] * c[0] - b[0] * c[2]) + a[2] * (b[0] * c[1] - b[1] * c[0])) / 6;
      }
      volume += Math.abs(part.volume);
      for (const point of points) {
        for (let axis = 0; axis < 3; axis++) {
          least[axis] = Math.min(least[axis], point[axis] * 1000);
          most[axis] = Math.max(most[axis], point[axis] * 1000);
        }
      }
    }
    if (volume > 0) found.set(mesh.expressID, { volume, least, most });
  });
  api.CloseModel(model);
  return found;
}
