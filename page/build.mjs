// Builds dist/viewer.html, one page with everything in it but the model.

import { build } from "esbuild";
import { mkdir, readFile, writeFile } from "node:fs/promises";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";
import { gzipSync } from "node:zlib";

const here = dirname(fileURLToPath(import.meta.url));
const packages = join(here, "node_modules");
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

const style = await build({ entryPoints: [join(here, "src/style.css")], minify: true, write: false });
const wasm = gzipSync(await readFile(join(packages, "web-ifc", "web-ifc.wasm")), { level: 9 });

const version = async (name) => JSON.parse(await read(packages, name, "package.json")).version;
const licences = [
  `This page contains three.js ${await version("three")}, under this licence:`,
  "",
  (await read(packages, "three", "LICENSE")).trim(),
  "",
  `It contains web-ifc ${await version("web-ifc")}, under the Mozilla Public License 2.0 (https://mozilla.org/MPL/2.0/);`,
  "its sources are at https://github.com/ThatOpen/engine_web-ifc and in the npm package web-ifc.",
].join("\n");

const parts = {
  LICENCES: licences.replaceAll("--", "- -").replaceAll("\u00a9", "(c)"),
  STYLE: style.outputFiles[0].text.trim(),
  WASM: wasm.toString("base64"),
  WORKER: await script("worker.ts"),
  SCRIPT: await script("main.ts"),
};
const page = (await read(here, "src/index.html")).replace(/@(LICENCES|STYLE|WASM|WORKER|SCRIPT)@/g, (_, name) => parts[name]);
for (const marker of ["@EXPORTIFC_MODEL@", "@EXPORTIFC_NAME@", "@EXPORTIFC_NOTES@"]) {
  if (page.split(marker).length !== 2) throw new Error(`${marker} must stand in the page exactly once`);
}
const foreign = /.{0,40}[^\t\n\r\x20-\x7e].{0,20}/.exec(page);
if (foreign) throw new Error(`the page must be plain ASCII, so that any program can fill it in: ${JSON.stringify(foreign[0])}`);
await mkdir(join(here, "dist"), { recursive: true });
await writeFile(join(here, "dist/viewer.html"), page);
console.log(`dist/viewer.html: ${page.length} bytes, script ${parts.SCRIPT.length}, worker ${parts.WORKER.length}, engine ${parts.WASM.length}`);
