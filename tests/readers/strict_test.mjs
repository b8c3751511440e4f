// The strict check must accept what is right and refuse each broken file with the fault that names it, at its place.

import { readFileSync, readdirSync } from 'node:fs';
import { dirname, join } from 'node:path';
import { fileURLToPath } from 'node:url';
import { checkText, showFault } from './lib/check.mjs';
import { Runner } from './lib/runner.mjs';

const here = dirname(fileURLToPath(import.meta.url));
const read = (...path) => readFileSync(join(here, ...path), 'latin1');
const names = (folder) => readdirSync(join(here, folder)).filter((f) => f.endsWith('.ifc')).map((f) => f.slice(0, -4)).sort();

const run = new Runner('strict check');

// Only these faults break a habit of the exporter and no rule of the format.
const ownHabits = new Set(['not-crlf', 'number-gap']);

const good = read('good', 'minimal.ifc');
for (const name of names('good')) {
  const faults = checkText(read('good', `${name}.ifc`), { own: name === 'minimal' });
  run.check(`good/${name}`, faults.length === 0, faults.map((f) => showFault(name, f)).join('; '));
}

// The line where a broken file leaves the good one.
function firstDifference(text) {
  let i = 0;
  while (text[i] === good[i]) i += 1;
  return text.slice(0, i).split('\n').length;
}

for (const name of names('broken')) {
  const text = read('broken', `${name}.ifc`);
  const faults = checkText(text, { own: ownHabits.has(name) });
  const shown = faults.map((f) => showFault(name, f)).join('; ') || 'no fault found';
  run.check(`broken/${name}: its fault and no other`, faults.length === 1 && faults[0].code === name, shown);
  // A missing sign shows at the token behind it, so up to one line later.
  const line = firstDifference(text);
  run.check(`broken/${name}: at its place, line ${line}`, faults.length > 0 && faults[0].line - line >= 0 && faults[0].line - line <= 1, shown);
  if (ownHabits.has(name)) run.check(`broken/${name}: keeps to the format`, checkText(text).length === 0);
}

// A file cut anywhere is refused: what is left of it never passes for a whole one.
const cuts = [];
const end = good.trimEnd().length;
for (let length = 0; length < end; length += 7) {
  if (checkText(good.slice(0, length)).length === 0) cuts.push(length);
}
run.check('every beginning of a good file is refused', cuts.length === 0, `accepted at ${cuts.join(', ')} bytes`);

run.check('at least forty broken files', names('broken').length >= 40, `${names('broken').length}`);
run.finish();
