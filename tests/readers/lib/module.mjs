// Exports model files through the built module, as a host does.
//
//   MODULE         the module            (build/linux/libexportIFC.so)
//   RUN_HOST       the batch host        (build/linux/run_host)
//   MODEL_HOST     the querying host     (build/linux/tests/readers/model_host)

import { spawnSync } from 'node:child_process';
import { existsSync, mkdtempSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { dirname, join, resolve } from 'node:path';
import { fileURLToPath } from 'node:url';

const top = join(dirname(fileURLToPath(import.meta.url)), '..', '..', '..');
const inBuild = (name) => join(top, 'build', 'linux', name);

const modulePath = resolve(process.env.MODULE ?? inBuild('libexportIFC.so'));
const batchHost = resolve(process.env.RUN_HOST ?? inBuild('run_host'));
const queryingHost = resolve(process.env.MODEL_HOST ?? inBuild('tests/readers/model_host'));

for (const path of [modulePath, batchHost, queryingHost]) {
  if (!existsSync(path)) {
    console.error(`${path} is not there: build first, or set MODULE, RUN_HOST and MODEL_HOST`);
    process.exit(2);
  }
}

// A folder of its own per test program, gone at its end.
const folder = mkdtempSync(join(tmpdir(), 'exportifc-readers-'));
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

const unitCodes = { m: 0, cm: 1, mm: 2 };

// The path of the exchange file that the module writes when it asks a host for the model. Bars have what batch models
// cannot tell: { type, visible, quarterTurns, dims }. `invisible` answers the module's question.
export function exportQueried(name, bars, { unit = 'mm', invisible = true } = {}) {
  const lines = bars.map((bar) => [
    bar.type ?? 0, bar.visible ?? 1, bar.rotation ?? 0, bar.quarterTurns ?? 0, ...bar.start, ...bar.end,
    ...Array.from({ length: 10 }, (_, i) => bar.dims?.[i] ?? 0), bar.section,
  ].join(' '));
  const model = join(folder, `${name}.model`);
  const output = join(folder, `${name}.ifc`);
  writeFileSync(model, [`${unitCodes[unit]} ${bars.length}`, ...lines, ''].join('\n'), 'latin1');
  const run = spawnSync(queryingHost, [modulePath, model, output, invisible ? 'S' : 'N'], { encoding: 'utf8', timeout: 60000 });
  if (run.status !== 0) throw new Error(`the export of ${name} ended with ${run.status}: ${run.stderr}`);
  return output;
}

export const sampleText = (name) => readFileSync(join(top, 'samples', `${name}.txt`), 'latin1');
export const exportSample = (name) => exportModel(name, sampleText(name));
export const readBytes = (path) => readFileSync(path, 'latin1');
