// The take-off of every section family, against the solids that an independent reader makes of the exchange file: their
// volumes give the area, their surfaces the outline.

import { spawnSync } from 'node:child_process';
import { existsSync, mkdtempSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { dirname, join, resolve } from 'node:path';
import { fileURLToPath } from 'node:url';
import { families, sectionText } from './lib/families.mjs';
import { measure, read } from './lib/reading.mjs';
import { Runner } from './lib/runner.mjs';

const run = new Runner('takeoff');
const top = join(dirname(fileURLToPath(import.meta.url)), '..', '..');
const program = resolve(process.env.PROGRAM ?? join(top, 'build', 'linux', 'exportifc'));
if (!existsSync(program)) {
  console.error(`${program} is not there: build first, or set PROGRAM`);
  process.exit(2);
}
const folder = mkdtempSync(join(tmpdir(), 'exportifc-takeoff-'));
process.on('exit', () => rmSync(folder, { recursive: true, force: true }));

const lengthMm = 2000;
const steel = 7850; // kg/m³
// The reader draws circles as polygons: with n corners they lose a part of area and outline of the order 1/n².
const tolerance = (family) => (family.round ? 0.02 : 1e-4);

// What no paint reaches: the inside of closed sections, and the seam where the one outline of a box with two webs meets
// itself.
const insides = {
  BOX: ([h, b, , t]) => 2 * (h - 2 * t) + 2 * (b - 2 * t),
  TUBO: ([d, , , t]) => Math.PI * (d - 2 * t),
  PC: ([h, , tf, tw, over]) => 2 * (h - 2 * tf) + 2 * (over - 2 * tw) + 2 * tw,
};

function surface({ vertices: v, triangles: t }) {
  let sum = 0;
  for (let i = 0; i < t.length; i += 3) {
    const [a, b, c] = [3 * t[i], 3 * t[i + 1], 3 * t[i + 2]];
    const [x, y, z] = [0, 1, 2].map((k) => v[b + k] - v[a + k]);
    const [p, q, r] = [0, 1, 2].map((k) => v[c + k] - v[a + k]);
    sum += Math.hypot(y * r - z * q, z * p - x * r, x * q - y * p) / 2;
  }
  return sum;
}

function exportifc(...args) {
  const ran = spawnSync(program, args, { encoding: 'utf8', env: { ...process.env, EXPORTIFC_LANG: 'en' } });
  if (ran.error) throw ran.error;
  return ran.stdout;
}

// One bar of each family, in rows that do not touch.
const model = {
  unit: 'mm',
  nodes: families.flatMap((_, i) => [[0, 1000 * i, 0], [lengthMm, 1000 * i, 0]]),
  sections: Object.fromEntries(families.map((family, i) => [`s${i}`, { text: sectionText(family), dims: family.d }])),
  bars: families.map((_, i) => ({ nodes: [2 * i, 2 * i + 1], section: `s${i}` })),
};
const path = join(folder, 'families.json');
writeFileSync(path, JSON.stringify(model));
const takeoff = JSON.parse(exportifc('takeoff', path, '--json'));
exportifc('export', path, '-q', '-o', join(folder, 'families.ifc'));
const elements = read('web-ifc', join(folder, 'families.ifc'));

run.check('each family has its row', takeoff.sections.length === families.length, `${takeoff.sections.length}`);
const near = (a, b, part) => Math.abs(a - b) <= part * Math.abs(b);
let next = 0;
families.forEach((family, i) => {
  const row = takeoff.sections[i];
  const halves = elements.slice(next, next + family.halves.length);
  next += halves.length;
  if (family.unknown) {
    run.check(`${family.word} is not drawn and weighs nothing`, !('massKg' in row) && !('areaCm2' in row), JSON.stringify(row));
    return;
  }
  const part = tolerance(family);
  const volume = halves.reduce((sum, half) => sum + Math.abs(measure(half).volume), 0);
  const area = volume / lengthMm;
  run.check(`${family.word} area`, near(row.areaCm2 * 100, area, part + 1 / area), `${row.areaCm2} cm², in the file ${area / 100}`);
  run.check(`${family.word} mass`, near(row.massKg, volume * 1e-9 * steel, part + 1e-3), `${row.massKg} kg, in the file ${volume * 1e-9 * steel}`);
  const ends = 2 * area;
  const painted = (halves.reduce((sum, half) => sum + surface(half), 0) - ends) / lengthMm - (insides[family.word]?.(family.d) ?? 0);
  run.check(`${family.word} paint`, near(row.paintPerMetreM2 * 1000, painted, part + 1 / painted), `${row.paintPerMetreM2} m²/m, in the file ${painted / 1000}`);
  run.check(`${family.word} pieces`, row.pieces === halves.length, `${row.pieces}`);
});
// ---- the frame of tests/saf, from its SAF workbook and its tables: volumes and ends by hand

const diagonal = Math.hypot(5000, 3000);
// Elements, and millimetres times square millimetres of the shapes without fillets.
const frame = {
  'HE 180 180 14 8.5': [8, 8 * 3000 * (2 * 180 * 14 + 152 * 8.5)],
  'IPE 300 150 10.7 7.1': [8, (4 * 6000 + 4 * 5000) * (2 * 150 * 10.7 + 278.6 * 7.1)],
  '2LLM 75 0 0 8 10': [8, 4 * diagonal * 2 * 8 * (2 * 75 - 8)],
  'UENR 200 75 20 2': [3, 3 * 5000 * (200 * 2 + 2 * 73 * 2 + 2 * 18 * 2)],
};
for (const model of ['two_storey.xlsx', 'two_storey_tables.xlsx', 'two_storey_tables']) {
  const file = join(folder, `${model.replace('.xlsx', '')}.ifc`);
  exportifc('export', join(top, 'tests', 'saf', model), '-q', '-o', file);
  const members = read('web-ifc', file);
  run.check(`${model} has the elements of the frame`, members.length === 27, `${members.length}`);
  for (const [section, [count, volume]] of Object.entries(frame)) {
    const own = members.filter((element) => element.description === section);
    run.check(`${model}: ${section}, elements`, own.length === count, `${own.length}`);
    const found = own.reduce((sum, element) => sum + Math.abs(measure(element).volume), 0);
    run.check(`${model}: ${section}, volume`, near(found, volume, 1e-4), `${found} mm³, by hand ${volume}`);
  }
  const boxes = members.map((element) => measure(element).box);
  const low = [0, 1, 2].map((k) => Math.min(...boxes.map(([from]) => from[k])));
  const high = [0, 1, 2].map((k) => Math.max(...boxes.map(([, to]) => to[k])));
  // Columns of 180 mm around the corners of 6 m by 5 m; purlins of 200 mm upon the upper beams; braces are cut square to
  // their axes, so half a leg of 75 mm reaches below the floor.
  const box = [[-90, -90, (-75 / 2) * (5000 / diagonal)], [6090, 5090, 6200]];
  run.check(`${model} stands where it should`, [...low, ...high].every((value, k) => Math.abs(value - box.flat()[k]) < 0.5), `${low} ${high}`);
}

run.check('every element is compared', next === elements.length, `${next} of ${elements.length}`);
run.finish();
