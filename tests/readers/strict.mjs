// Checks exchange files against the grammar of ISO 10303-21 and the IFC2X3 tables:
//
//   node strict.mjs [--own] FILE...
//
// One line per fault, with its place; the exit code is 1 when there is any but the expected one, which is shown as such,
// and 2 when a file cannot be read. --own also asks for what this exporter promises beyond the grammar (line ends,
// consecutive numbers).

import { readFileSync } from 'node:fs';
import { checkText, showFault } from './lib/check.mjs';

const args = process.argv.slice(2);
const own = args.includes('--own');
const files = args.filter((a) => a !== '--own');
if (files.length === 0) {
  console.error('usage: node strict.mjs [--own] FILE...');
  process.exit(2);
}

// What each export with assemblies has, by design (deviations.json). Any other products that share are a fault.
const together = new Set(['IFCBUILDINGSTOREY', 'IFCELEMENTASSEMBLY']);
const isExpected = (f) => f.code === 'shared-placement' && f.places.every((keyword) => together.has(keyword));

function textOf(path) {
  try {
    return readFileSync(path, 'latin1');
  } catch (error) {
    console.error(`strict.mjs: ${error.message}`);
    process.exit(2);
  }
}

let count = 0;
for (const path of files) {
  const found = checkText(textOf(path), { own });
  const faults = found.filter((f) => !isExpected(f));
  found.filter(isExpected).forEach((f) => console.log(`${showFault(path, f)} (expected: assemblies stand where their storey does)`));
  faults.forEach((f) => console.log(showFault(path, f)));
  if (faults.length === 0) console.log(`${path}: no fault${found.length > 0 ? ' but the expected one' : ''}`);
  count += faults.length;
}
process.exit(count > 0 ? 1 : 0);
