// Builds dist/viewer.html, one page with everything in it but the model, and dist/exportifc.html, the same with the
// exporter in it.

import { build } from "esbuild";
import { mkdir, readFile, writeFile } from "node:fs/promises";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";
import { gzipSync } from "node:zlib";

const here = dirname(fileURLToPath(import.meta.url));
const packages = join(here, "node_modules");
const exporter = join(here, "../build/page/exporter.wasm");
const read = (...path) => readFile(join(...path), "utf8");

/**
 * web-ifc's file for browsers is the engine's loader and five megabytes of tables for all schemas. The page
 * needs the loader only, which stands between two comments that its own build leaves there.
 */
const engineOnly = {
  name: "engine-only",
  setup(plugins) {
    plugins.onResolve({ filter: /^web-ifc\/engine$/ }, () => ({ path: "engine", namespace: "web-ifc" }));
    plugins.onLoad({ filter: /.*/, namespace: "web-ifc" }, async () => {
      const whole = await read(packages, "web-ifc", "web-ifc-api.js");
      const start = whole.indexOf("// dist/web-ifc.js\n");
      const end = whole.indexOf("// dist/ifc-schema.ts\n");
      const helper = /var __getOwnPropNames[\s\S]*?\n};\n/.exec(whole);
      if (start < 0 || end < start || !helper) throw new Error("web-ifc-api.js has another shape than the one known here");
      return { contents: `${helper[0]}${whole.slice(start, end)}export default require_web_ifc();\n`, loader: "js" };
    });
  },
};

async function script(entry) {
  const result = await build({
    entryPoints: [join(here, "src", entry)],
    bundle: true,
    minify: true,
    write: false,
    format: "iife",
    target: ["chrome105", "firefox113", "safari16.4"],
    legalComments: "none",
    charset: "ascii",
    plugins: [engineOnly],
  });
  return result.outputFiles[0].text.trim();
}

const version = async (name) => JSON.parse(await read(packages, name, "package.json")).version;
const licences = [
  `This page contains three.js ${await version("three")}, under this licence:`,
  "",
  (await read(packages, "three", "LICENSE")).trim(),
  "",
  `It contains web-ifc ${await version("web-ifc")}, under the Mozilla Public License 2.0 (https://mozilla.org/MPL/2.0/);`,
  "its sources are at https://github.com/ThatOpen/engine_web-ifc and in the npm package web-ifc.",
].join("\n");

/** Comments of markup hold no double hyphen, and the page is plain ASCII. */
const asComment = (text) => text.replaceAll("--", "- -").replaceAll("\u00a9", "(c)");
const packed = (bytes) => gzipSync(bytes, { level: 9 }).toString("base64");
const minifiedStyle = async (name) => (await build({ entryPoints: [join(here, "src", name)], minify: true, write: false })).outputFiles[0].text.trim();

const markup = await read(here, "src/index.html");
const parts = {
  LICENCES: asComment(licences),
  STYLE: await minifiedStyle("style.css"),
  WASM: packed(await readFile(join(packages, "web-ifc", "web-ifc.wasm"))),
  WORKER: await script("worker.ts"),
  SCRIPT: await script("main.ts"),
};
const fill = (text, values) => text.replace(/@([A-Z_]+)@/g, (marker, name) => values[name] ?? marker);

/** What turns the viewer's page into the one that exports. */
async function exporting() {
  const sample = async (name) => packed(await readFile(join(here, "../samples", name)));
  const own = [
    `This page packs with fflate ${await version("fflate")}, under this licence:`,
    "",
    (await read(packages, "fflate", "LICENSE")).trim(),
    "",
    "The exporter in it contains, under the same licence, JSON for Modern C++, Copyright (c) 2013-2022 Niels Lohmann;",
    "musl, Copyright (c) 2005-2020 Rich Felker and others; parts of Emscripten, Copyright (c) 2010-2022 The Emscripten",
    "Authors; and libc++ under the Apache License 2.0 with LLVM exceptions.",
  ];
  return fill((await read(here, "src/exporting.html")).trim(), {
    EXPORTER_LICENCES: asComment(own.join("\n")),
    EXPORTER_STYLE: await minifiedStyle("exporting.css"),
    PAGE_MARKUP: Buffer.from(markup).toString("base64"),
    EXPORTER: packed(await readFile(exporter)),
    SAMPLE_GALPAO: await sample("galpao.json"),
    SAMPLE_FAMILIAS: await sample("familias.json"),
    EXPORT_WORKER: await script("export-worker.ts"),
  });
}

async function write(name, page) {
  for (const marker of ["@EXPORTIFC_MODEL@", "@EXPORTIFC_NAME@", "@EXPORTIFC_NOTES@"]) {
    if (page.split(marker).length !== 2) throw new Error(`${marker} must stand in ${name} exactly once`);
  }
  const foreign = /.{0,40}[^\t\n\r\x20-\x7e].{0,20}/.exec(page);
  if (foreign) throw new Error(`${name} must be plain ASCII, so that any program can fill it in: ${JSON.stringify(foreign[0])}`);
  await writeFile(join(here, "dist", name), page);
  console.log(`dist/${name}: ${page.length} bytes`);
}

await mkdir(join(here, "dist"), { recursive: true });
await write("exportifc.html", fill(markup, { ...parts, EXPORTING: await exporting() }));
await write("viewer.html", fill(markup, { ...parts, EXPORTING: "" }));
