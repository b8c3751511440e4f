// Checks exchange files against the grammar of ISO 10303-21 and the IFC2X3 tables:
//
//   node strict.mjs [--own] FILE...
//
// One line per fault, with its place; the exit code is 1 when there is any. --own also asks for what this exporter
// promises beyond the grammar (line ends, consecutive numbers).

import { readFileSync } from 'node:fs';
import { checkText, showFault } from './lib/check.mjs';

const args = process.argv.slice(2);
const own = args.includes('--own');
const files = args.filter((a) => a !== '--own');
if (files.length === 0) {
  console.error('usage: node strict.mjs [--own] FILE...');
  process.exit(2);
}
let count = 0;
for (const path of files) {
  const faults = checkText(readFileSync(path, 'latin1'), { own });
  faults.forEach((f) => console.log(showFault(path, f)));
  if (faults.length === 0) console.log(`${path}: no fault`);
  count += faults.length;
}
process.exit(count > 0 ? 1 : 0);
