// Exports model files through the built module, as a host does.
//
//   MODULE         the module            (build/linux/libexportIFC.so)
//   RUN_HOST       the batch host        (build/linux/run_host)
//   MINIMAL_HOST   the interactive host  (build/linux/minimal_host)

import { spawnSync } from 'node:child_process';
import { existsSync, mkdtempSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { dirname, join, resolve } from 'node:path';
import { fileURLToPath } from 'node:url';

const top = join(dirname(fileURLToPath(import.meta.url)), '..', '..', '..');
const inBuild = (name) => join(top, 'build', 'linux', name);

export const modulePath = resolve(process.env.MODULE ?? inBuild('libexportIFC.so'));
export const batchHost = resolve(process.env.RUN_HOST ?? inBuild('run_host'));
export const interactiveHost = resolve(process.env.MINIMAL_HOST ?? inBuild('minimal_host'));

for (const path of [modulePath, batchHost, interactiveHost]) {
  if (!existsSync(path)) {
    console.error(`${path} is not there: build first, or set MODULE, RUN_HOST and MINIMAL_HOST`);
    process.exit(2);
  }
}

// A folder of its own per test program, gone at its end.
export const folder = mkdtempSync(join(tmpdir(), 'exportifc-readers-'));
process.on('exit', () => rmSync(folder, { recursive: true, force: true }));

// bars: { start, end, rotation, section } with coordinates in `unit` ('m', 'cm', 'mm').
export function batchModel(bars, unit = 'mm') {
  const lines = ['0', '0', 'readers', unit, String(bars.length)];
  bars.forEach((bar, i) => {
    lines.push(`Bar ${i + 1}`, ...bar.start.map(String), ...bar.end.map(String), String(bar.rotation ?? 0), bar.section, 'A36', '0', '');
  });
  return lines.map((line) => `${line}\r\n`).join('');
}

// The path of the exchange file that the module writes for a model text (one byte per character).
export function exportModel(name, text) {
  const model = join(folder, `${name}.txt`);
  const output = join(folder, `${name}.ifc`);
  writeFileSync(model, text, 'latin1');
  const run = spawnSync(batchHost, [modulePath, model, output], { encoding: 'utf8', timeout: 60000 });
  if (run.status !== 0) throw new Error(`the export of ${name} ended with ${run.status}: ${run.stderr}`);
  return output;
}

// The file that the module writes for the interactive host's own small frame. The module asks for the file's name and
// for invisible bars on a terminal, which `script` gives it.
export function exportInteractively(name) {
  const output = `${name}.ifc`;
  const quoted = [interactiveHost, modulePath].map((path) => `'${path.replaceAll("'", "'\\''")}'`).join(' ');
  const run = spawnSync('script', ['-qec', quoted, '/dev/null'], { cwd: folder, input: `${output}\nN\n`, encoding: 'utf8', timeout: 60000 });
  if (run.status !== 0) throw new Error(`the interactive export ended with ${run.status}: ${run.error ?? run.stdout}`);
  return join(folder, output);
}

export const sampleText = (name) => readFileSync(join(top, 'samples', `${name}.txt`), 'latin1');
export const exportSample = (name) => exportModel(name, sampleText(name));
export const readBytes = (path) => readFileSync(path, 'latin1');
