// Every section family in nine directions and several rotations, exported by the module and read by two programs that
// know nothing of it: the reader must find each element with its names, and a body that is where the drawing of the
// section puts it.

import { readFileSync } from 'node:fs';
import { families, sectionText } from './lib/families.mjs';
import { distance, extrudedBox, sectionAxes, toModel, toSection } from './lib/bars.mjs';
import { distanceToLines, moments } from './lib/outlines.mjs';
import { batchModel, exportModel, exportQueried, readBytes } from './lib/module.mjs';
import { checkText, showFault } from './lib/check.mjs';
import { measure, pointsOf, read, readers } from './lib/reading.mjs';
import { Deviations } from './lib/deviations.mjs';
import { Runner } from './lib/runner.mjs';

const lengthTolerance = 0.1; // mm
const volumeTolerance = 0.001;
const roundVolumeTolerance = 0.002;

const directions = {
  '+X': [2000, 0, 0], '-X': [-1500, 0, 0], '+Y': [0, 1800, 0], '-Y': [0, -1200, 0], '+Z': [0, 0, 3000], '-Z': [0, 0, -900],
  'skew up': [1200, 900, 700], 'skew down': [-800, 1500, -600], 'leaning in Y': [0, 700, 1600],
};

const storey = 'IfcBuildingStorey Pavimento 1 < IfcBuilding < IfcProject';
const frame = `IfcElementAssembly Elementos_de_Portico < ${storey}`;
const truss = `IfcElementAssembly Elementos_de_Trelica < ${storey}`;
// Where a bar of each type belongs; type 10 is never exported.
const places = { 0: storey, 1: frame, 2: frame, 3: truss, 4: frame, 5: storey, 6: frame, 7: frame, 8: frame, 9: truss, 11: storey };
const columnTypes = [4, 7];
const types = Object.keys(places).map(Number);

// Both ways into the module. A batch model tells no types and no quarter turns: all of its bars are of type 0.
const routes = {
  batch: {
    turns: [{ rotation: 0 }, { rotation: 0.3 }],
    typeOf: () => 0,
    export: (bars) => exportModel('families', batchModel(bars)),
  },
  queried: {
    turns: [{ rotation: 0 }, { rotation: -0.4 }, { rotation: 0.3, quarterTurns: 1 }, { rotation: 0, quarterTurns: -2 }],
    typeOf: (number) => types[number % types.length],
    export: (bars) => exportQueried('families-queried', bars),
  },
};

function barsOf(route, family, row) {
  const { turns, typeOf } = routes[route];
  return Object.entries(directions).flatMap(([name, d], column) => turns.map((turn, layer) => {
    const start = [1000 * row - 30000, 4000 * column - 14000, 4000 * layer];
    const turned = Object.entries(turn).map(([what, value]) => `${what} ${value}`).join(', ');
    return {
      name: `${name}, ${turned}`,
      start,
      end: start.map((v, i) => v + d[i]),
      type: typeOf(row + column * turns.length + layer),
      section: sectionText(family),
      dims: family.d,
      ...turn,
    };
  }));
}

// One expected element per bar and half, in the order of the file.
function expectedOf(route, family, row) {
  return barsOf(route, family, row).flatMap((bar) => {
    const axes = sectionAxes(bar.start, bar.end, bar.rotation + ((bar.quarterTurns ?? 0) * Math.PI) / 2);
    return family.halves.map((half) => ({ bar, axes, half }));
  });
}

const near = (a, b, tolerance) => Math.abs(a - b) <= tolerance;
const shown = (values) => values.map((v) => v.toFixed(3)).join(', ');

// Each check gives null when it holds, else what is wrong.
const elementChecks = {
  // Level bars are beams; others are members, and columns when their type says so and they do not lean in X.
  type: (e, { bar }) => {
    const [dx, , dz] = bar.end.map((v, i) => Math.abs(v - bar.start[i]));
    const column = columnTypes.includes(bar.type) && dx <= 0.01;
    const want = dz <= 0.01 ? 'IfcBeam' : column ? 'IfcColumn' : 'IfcMember';
    return e.type === want ? null : `${e.type} instead of ${want}`;
  },
  name: (e, { half }) => (e.name === half.label ? null : `"${e.name}"`),
  description: (e, { bar }) => (e.description === bar.section ? null : `"${e.description}"`),
  reference: (e, { bar }) => (e.reference === bar.section ? null : `"${e.reference}"`),
  place: (e, { bar }) => {
    const place = e.path.map((p) => (['IfcBuilding', 'IfcProject'].includes(p.type) ? p.type : `${p.type} ${p.name}`)).join(' < ');
    return place === places[bar.type] ? null : `type ${bar.type}: ${place}`;
  },
  volume: (e, { axes, half }, family, measured, factor) => {
    const want = half.area * axes.length * factor;
    const tolerance = family.round ? roundVolumeTolerance : volumeTolerance;
    return near(measured.volume, want, tolerance * want) ? null : `${measured.volume.toFixed(0)} instead of ${want.toFixed(0)} mm³`;
  },
  box: (e, { axes, half }, family, measured) => {
    const want = extrudedBox(axes, half.drawing);
    const holds = [0, 1].every((side) => want[side].every((v, i) => near(v, measured.box[side][i], lengthTolerance)));
    return holds ? null : `${shown(measured.box.flat())} instead of ${shown(want.flat())}`;
  },
  // A square box says nothing of a section's turn; its corners do. Every corner of the drawing, holes included, must be
  // one of the body's at both ends, and the body may have no corner off the drawing's lines.
  corners: (e, { axes, half }) => {
    const found = sectionPoints(e, axes);
    const want = half.drawing.loops.flat().flatMap(([u, v]) => [[u, v, 0], [u, v, axes.length]]);
    const missing = want.find((q) => !found.some((p) => distance(p, q) <= lengthTolerance));
    if (missing) return `none at ${shown(missing)} of the section`;
    const atEnd = ([, , w]) => near(w, 0, lengthTolerance) || near(w, axes.length, lengthTolerance);
    const strange = found.find((p) => !atEnd(p) || distanceToLines(half.drawing, p) > lengthTolerance);
    return strange ? `one at ${shown(strange)} of the section` : null;
  },
  centroid: (e, { axes, half }, family, measured) => {
    const { x, y } = moments(half.drawing);
    const want = toModel(axes, [x, y, axes.length / 2]);
    return distance(measured.centroid, want) <= lengthTolerance ? null : `${shown(measured.centroid)} instead of ${shown(want)}`;
  },
};

function sectionPoints(element, axes) {
  return pointsOf(element).map((p) => toSection(axes, p));
}

function clearDistance(first, second) {
  const range = (points) => [Math.min(...points.map((p) => p[0])), Math.max(...points.map((p) => p[0]))];
  const [a, b] = [range(first), range(second)];
  return Math.max(a[0] - b[1], b[0] - a[1]);
}

const images = {
  mirror: ([u, v, w]) => [-u, v, w],
  point: ([u, v, w]) => [-u, -v, w],
  same: (p) => p,
};

// Every corner of the one must have its image among the corners of the other.
function isImage(first, second, image) {
  const covers = (points, others) => points.every((p) => others.some((q) => distance(image(p), q) <= lengthTolerance));
  return covers(first, second) && covers(second, first);
}

const pairChecks = {
  gap: (first, second, family) => {
    if (family.gap === null) return null;
    const clear = clearDistance(first, second);
    return near(clear, family.gap, lengthTolerance) ? null : `${clear.toFixed(3)} instead of ${family.gap.toFixed(3)} mm`;
  },
  symmetry: (first, second, family) => (isImage(first, second, images[family.symmetry]) ? null : `the halves are not each other's ${family.symmetry}`),
};

// What the list of deviations calls the file with every family.
const allFamilies = 'all families';

const run = new Runner('geometry');
const deviations = new Deviations((by, name) => by !== 'strict' || name === allFamilies);

function judge(reader, route, family, check, faults) {
  const listed = faults.length > 0 ? deviations.find(reader, family.word, check) : null;
  const more = faults.length > 1 ? ` (and ${faults.length - 1} more)` : '';
  return run.check(`${reader}, ${route}, family ${family.word}, ${check}`, faults.length === 0 || listed !== null, `${faults[0]}${more}`);
}

function checkFamily(reader, route, family, expected, found) {
  let good = judge(reader, route, family, 'found', found.length === expected.length ? [] : [`${found.length} of ${expected.length} elements`]);
  if (!good) return;
  const measured = found.map((e) => measure(e));
  for (const [check, holds] of Object.entries(elementChecks)) {
    const faultsWith = (factor) => expected.flatMap((want, i) => {
      const fault = holds(found[i], want, family, measured[i], factor);
      return fault === null ? [] : [`${want.half.label} along ${want.bar.name}: ${fault}`];
    });
    const faults = faultsWith(1);
    good = judge(reader, route, family, check, faults) && good;
    // A reader that is known to miss must miss by what is known.
    const factor = deviations.expects(reader, family.word, check)?.factor;
    if (factor) good = run.check(`${reader}, ${route}, family ${family.word}, ${check} times ${factor}`, faultsWith(factor).length === 0, faultsWith(factor)[0]) && good;
  }
  if (family.halves.length === 2) {
    for (const [check, holds] of Object.entries(pairChecks)) {
      const faults = [];
      for (let i = 0; i < found.length; i += 2) {
        const [first, second] = [i, i + 1].map((k) => sectionPoints(found[k], expected[k].axes));
        const fault = holds(first, second, family);
        if (fault !== null) faults.push(`along ${expected[i].bar.name}: ${fault}`);
      }
      good = judge(reader, route, family, check, faults) && good;
    }
  }
}

// What the module's own table holds beside the drawings: a family added there must be drawn here.
const table = readFileSync(new URL('../../profiles/section_family.cpp', import.meta.url), 'utf8');
const words = new Set([...table.matchAll(/^ *(simple|builtUp)\(L"([^"]+)",/gm)].flatMap(([, kind, word]) => (kind === 'simple' ? [word] : [`${word}_1`, `${word}_2`])));
const drawn = new Set(families.filter((f) => !f.unknown).flatMap((f) => f.halves.map((h) => h.label)));
run.check('the module has 78 family words', words.size === 78, `${words.size}`);
run.check('every family word has a drawing', [...words].every((w) => drawn.has(w)), [...words].filter((w) => !drawn.has(w)).join(' '));
run.check('every drawing has a family word', [...drawn].every((w) => words.has(w)), [...drawn].filter((w) => !words.has(w)).join(' '));

for (const route of Object.keys(routes)) {
  const expected = families.map((family, row) => expectedOf(route, family, row));
  const path = routes[route].export(families.flatMap((family, row) => barsOf(route, family, row)));
  const faults = checkText(readBytes(path), { own: true }).filter((f) => deviations.find('strict', allFamilies, f.code) === null);
  run.check(`${route}: the file of all families keeps to grammar and schema`, faults.length === 0, faults.slice(0, 3).map((f) => showFault('families', f)).join('; '));

  const count = expected.reduce((n, e) => n + e.length, 0);
  for (const reader of Object.keys(readers)) {
    const elements = read(reader, path);
    run.check(`${reader}, ${route}: ${count} elements in all`, elements.length === count, `${elements.length}`);
    let next = 0;
    families.forEach((family, row) => {
      checkFamily(reader, route, family, expected[row], elements.slice(next, next + expected[row].length));
      next += expected[row].length;
    });
  }
}

deviations.conclude(run);
run.finish();
