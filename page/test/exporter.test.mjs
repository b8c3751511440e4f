// The exporter of the page against the program: the same files but for GlobalIds, the same problems.
//
//   node test/exporter.test.mjs EXPORTER.wasm PROGRAM MODEL...
//
// Ends with the line "N passed, N failed".

import { execFileSync, spawnSync } from "node:child_process";
import { mkdtempSync, readFileSync, rmSync } from "node:fs";
import { tmpdir } from "node:os";
import { basename, dirname, join } from "node:path";
import { fileURLToPath } from "node:url";
import { build } from "esbuild";

const [wasm, program, ...models] = process.argv.slice(2);
if (!models.length) {
  console.error("usage: exporter.test.mjs EXPORTER.wasm PROGRAM MODEL...");
  process.exit(2);
}

const folder = mkdtempSync(join(tmpdir(), "exporter-"));
process.on("exit", () => rmSync(folder, { recursive: true, force: true }));
await build({
  entryPoints: [fileURLToPath(new URL("../src/exporter.ts", import.meta.url))],
  outfile: join(folder, "exporter.mjs"),
  bundle: true,
  format: "esm",
  logLevel: "error",
});
const { Exporter } = await import(join(folder, "exporter.mjs"));
const exporter = await Exporter.start(readFileSync(wasm));

let passed = 0;
let failed = 0;
const check = (what, good) => {
  good ? ++passed : ++failed;
  if (!good) console.log(`failed: ${what}`);
};

const withoutIds = (bytes) => bytes.toString("latin1").replace(/\('[0-9A-Za-z_$]{22}'/g, "('*'");

/** The keys that a model under another name shares; the program's own counts bars. */
const facts = (problems) => JSON.stringify(problems.map(({ file, ...rest }) => rest));

for (const model of models) {
  for (const language of ["en", "pt"]) {
    const env = { ...process.env, EXPORTIFC_LANG: language };
    const said = spawnSync(program, ["check", "--json", basename(model)], { cwd: dirname(model), env, encoding: "utf8", maxBuffer: 1 << 28 });
    const wanted = JSON.parse(said.stdout).models[0].problems;
    const open = exporter.open(readFileSync(model), basename(model), language);
    const flags = 2; // with notes
    if (open.result === 0) open.check(flags);
    check(`${model}, ${language}: the same problems`, facts(open.problems()) === facts(wanted));
    if (language === "en") {
      const output = join(folder, "program.ifc");
      rmSync(output, { force: true });
      spawnSync(program, ["export", "-q", model, "-o", output], { env });
      const pieces = [];
      const result = open.result === 0 ? open.export(0, (piece) => pieces.push(piece), () => {}) : open.result;
      let file = null;
      try {
        file = readFileSync(output);
      } catch {
        // the program refuses the model, too
      }
      check(`${model}: both write a file, or neither`, (result === 0) === (file !== null));
      if (file && result === 0) check(`${model}: the same bytes`, withoutIds(Buffer.concat(pieces)) === withoutIds(file));
    }
    open.close();
  }
}
check("the version", exporter.version() === execFileSync(program, ["--version"], { encoding: "utf8" }).trim().replace("exportifc ", ""));
check("the formats", exporter.formats().join() === ".json,.txt,.xlsx,.zip");

console.log(`${passed} passed, ${failed} failed`);
process.exitCode = failed ? 1 : 0;
