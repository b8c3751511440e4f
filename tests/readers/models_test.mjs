// Whole models: the samples, a model from a host that answers queries, and models that show what is odd by design.
// Every exchange file is held against grammar and schema; what it may not keep to stands in the list of deviations.

import { readFileSync } from 'node:fs';
import { batchModel, exportModel, exportQueried, exportSample, readBytes, sampleText } from './lib/module.mjs';
import { checkText, showFault } from './lib/check.mjs';
import { distance, sectionAxes, toModel, toSection } from './lib/bars.mjs';
import { families } from './lib/families.mjs';
import { measure, pointsOf, read, readers } from './lib/reading.mjs';
import { Deviations } from './lib/deviations.mjs';
import { Runner } from './lib/runner.mjs';

const run = new Runner('models');
const deviations = new Deviations((by, name) => by === 'strict' && name !== 'all families');
const near = (a, b, tolerance = 0.1) => Math.abs(a - b) <= tolerance;

// Each fault must be listed for this model.
function strict(name, path) {
  const faults = checkText(readBytes(path), { own: true });
  const unlisted = faults.filter((f) => deviations.find('strict', name, f.code) === null);
  run.check(`${name} keeps to grammar and schema`, unlisted.length === 0, unlisted.slice(0, 3).map((f) => showFault(name, f)).join('; '));
  return faults;
}

const bar = (section, more = {}) => ({ start: [0, 0, 0], end: [1000, 0, 0], section, ...more });

function exportBars(name, bars, unit = 'mm') {
  const path = exportModel(name.replaceAll(' ', '-'), batchModel(bars, unit));
  strict(name, path);
  return path;
}

const readAll = (path) => Object.keys(readers).map((reader) => [reader, read(reader, path)]);
const names = (elements) => elements.map((e) => e.name).join(' ');

// ---- samples

const builtUp = new Set('][ [] UUE IENR CA 2L 2L_ASSIMETRICO LL >< <> LX LZ ICAR 2LLM LLLM VVLM LVLM LXLM LZLM UULM 2ULM'.split(' '));

function barsOf(text) {
  const lines = text.split('\r\n');
  return Array.from({ length: Number(lines[4]) }, (_, i) => {
    const bar = lines.slice(5 + 12 * i, 17 + 12 * i);
    return { start: bar.slice(1, 4).map(Number), end: bar.slice(4, 7).map(Number), rotation: Number(bar[7]), section: bar[8] };
  });
}

// The element names that a model text asks for: one per bar, two for a built-up section.
function namesOf(text) {
  return barsOf(text).flatMap(({ section }) => {
    const word = section.split(' ')[0];
    return builtUp.has(word) ? [`${word}_1`, `${word}_2`] : [word];
  });
}

for (const [sample, count] of [['familias', 80], ['galpao', 608]]) {
  const path = exportSample(sample);
  strict(sample, path);
  const wanted = namesOf(sampleText(sample));
  run.check(`${sample} has ${count} elements`, wanted.length === count, `${wanted.length}`);
  for (const [reader, elements] of readAll(path)) {
    run.check(`${reader}: ${sample}, every element by name`, elements.map((e) => e.name).join() === wanted.join(), names(elements).slice(0, 200));
    const hollow = elements.filter((e) => !(measure(e).volume > 0));
    run.check(`${reader}: ${sample}, every element has a body`, hollow.length === 0, hollow.map((e) => `#${e.id} ${e.name}`).join(', '));
  }
}

// ---- the clear distances that docs/known-limits.md gives for the built-up sections of familias

{
  const rows = readFileSync(new URL('../../docs/known-limits.md', import.meta.url), 'utf8').split('\n');
  const told = new Map(rows.flatMap((row) => {
    const m = /\| `([^`]+ [^`]+)` \| ([0-9.]+) \|$/.exec(row);
    return m ? [[m[1], Number(m[2])]] : [];
  }));
  run.check('the page tells the distances of twelve sections', told.size === 12, `${told.size}`);
  const bars = new Map(barsOf(sampleText('familias')).map((b) => [b.section, b]));
  const path = exportSample('familias');
  for (const [reader, elements] of readAll(path)) {
    for (const [section, clear] of told) {
      const { start, end, rotation } = bars.get(section);
      const axes = sectionAxes(start, end, rotation);
      const [first, second] = elements.filter((e) => e.description === section).map((e) => {
        const across = pointsOf(e).map((p) => toSection(axes, p)[0]);
        return [Math.min(...across), Math.max(...across)];
      });
      const found = Math.max(first[0] - second[1], second[0] - first[1]);
      run.check(`${reader}: the halves of ${section} are ${clear} mm apart`, near(found, clear), `${found.toFixed(3)}`);
    }
  }
}

// ---- the box of two webs, whose outline touches itself: both readers leave its cell open, as that page says

{
  const page = readFileSync(new URL('../../docs/known-limits.md', import.meta.url), 'utf8');
  const told = /`(PC [^`]+)` has ([\d ]+) mm².*: ([\d ]+) mm², \+(\d+) %/.exec(page);
  run.check('the page tells the areas of a box of two webs', told !== null);
  const [section, open, filled, more] = told ? [told[1], ...told.slice(2).map((text) => Number(text.replaceAll(' ', '')))] : [];
  const bar = barsOf(sampleText('familias')).find((b) => b.section === section);
  run.check('it is one of the sample', bar !== undefined, section);
  const [d0, , d2, d3, d4] = section.split(' ').slice(1).map(Number);
  run.check('its cell is what a filled one has more', near(filled, open + (d0 - 2 * d2) * (d4 - 2 * d3)) && near(more, 100 * (filled / open - 1), 0.5), `${open}, ${filled}, ${more} %`);
  for (const [reader, elements] of readAll(exportSample('familias'))) {
    const { volume } = measure(elements.find((e) => e.description === section));
    run.check(`${reader}: the cell of ${section} is open`, near(volume / distance(bar.start, bar.end), open, 0.001 * open), `${(volume / distance(bar.start, bar.end)).toFixed(1)} mm²`);
  }
}

// ---- units: coordinates are converted, dimensions never

for (const [unit, factor] of [['m', 1000], ['cm', 10], ['mm', 1], ['ft', 1]]) {
  const path = exportBars(`in ${unit}`, [bar('EC 80 0 0 12', { end: [2, 0, 0] })], unit);
  for (const [reader, [element]] of readAll(path)) {
    const { box } = measure(element);
    const size = box[1].map((v, i) => v - box[0][i]);
    run.check(`${reader}: 2 ${unit} are ${2 * factor} mm, a section of 80 stays 80`, near(size[0], 2 * factor) && near(size[1], 12) && near(size[2], 80), size.join(', '));
  }
}

// ---- a model from a host that answers queries: assemblies, columns, and what stays out

{
  const to = (end, section, dims, more) => ({ start: [0, 0, 0], end, section, dims, ...more });
  const i = [200, 100, 8, 6];
  const bars = [
    to([0, 0, 4000], 'W 200', i, { type: 4 }),
    to([0, 900, 4000], 'W 200', i, { type: 7 }), // leans, but not in X
    to([900, 0, 4000], 'W 200', i, { type: 7 }),
    to([0, 0, 4000], 'W 200', i, { type: 1 }),
    to([3000, 0, 0], '][ 150', [150, 50, 3, 8], { type: 2 }),
    to([3000, 0, 500], '2L 50', [50, 0, 0, 5, 8], { type: 9 }),
    to([3000, 0, 0], 'RED 16', [16], { type: 5 }),
    to([3000, 0, 0], 'RED 17', [17], { type: 10 }),
    to([3000, 0, 0], 'RED 18', [18], { type: 0, visible: 0 }),
  ];
  const storey = 'IfcBuildingStorey Pavimento 1';
  const frame = `IfcElementAssembly Elementos_de_Portico < ${storey}`;
  const truss = `IfcElementAssembly Elementos_de_Trelica < ${storey}`;
  const visible = [
    ['IfcColumn', 'W', frame], ['IfcColumn', 'W', frame], ['IfcMember', 'W', frame], ['IfcMember', 'W', frame], ['IfcBeam', '][_1', frame], ['IfcBeam', '][_2', frame],
    ['IfcMember', '2L_1', truss], ['IfcMember', '2L_2', truss], ['IfcBeam', 'RED', storey],
  ];
  for (const invisible of [false, true]) {
    const path = exportQueried('frame', bars, { invisible });
    strict('frame', path);
    const wanted = invisible ? [...visible, ['IfcBeam', 'RED', storey]] : visible;
    for (const [reader, elements] of readAll(path)) {
      const found = elements.map((e) => [e.type, e.name, e.path.slice(0, -2).map((p) => `${p.type} ${p.name}`).join(' < ')]);
      run.check(`${reader}: the frame has ${wanted.length} elements, invisible bars ${invisible ? 'in' : 'out'}`, found.length === wanted.length, `${found.length}`);
      wanted.forEach((want, k) => run.check(`${reader}: ${want.join(', ')}`, found[k]?.join() === want.join(), found[k]?.join(', ')));
    }
  }
}

// ---- the warehouse with all that a host knows of it, asked through the queries

{
  const typeNames = ['member', 'frame-beam', 'floor-beam', 'truss-chord', 'column', 'bracing', 'crane-beam', 'wind-column', 'stair', 'truss-web', 'not-exported', 'other'];
  const warehouse = JSON.parse(readFileSync(new URL('../../samples/galpao.json', import.meta.url), 'utf8'));
  const bars = warehouse.bars.map((b) => {
    const { text } = warehouse.sections[b.section];
    const [start, end] = b.nodes.map((n) => warehouse.nodes[n]);
    return {
      start, end, section: text, dims: text.split(' ').slice(1).map(Number),
      type: typeNames.indexOf(b.type ?? 'member'), visible: b.visible === false ? 0 : 1, rotation: b.angle, quarterTurns: b.quarterTurns,
    };
  });
  const group = (type) => {
    if ([1, 2, 4, 6, 7, 8].includes(type)) return 'Elementos_de_Portico';
    return [3, 9].includes(type) ? 'Elementos_de_Trelica' : 'Pavimento 1';
  };
  const wanted = bars.filter((b) => b.visible && b.type !== 10).flatMap((b) => {
    const [dx, , dz] = b.end.map((v, k) => 1000 * Math.abs(v - b.start[k]));
    const column = [4, 7].includes(b.type) && dx <= 0.01;
    const type = dz <= 0.01 ? 'IfcBeam' : column ? 'IfcColumn' : 'IfcMember';
    const word = b.section.split(' ')[0];
    return (builtUp.has(word) ? [`${word}_1`, `${word}_2`] : [word]).map((name) => [type, name, group(b.type)].join());
  });
  const path = exportQueried('warehouse', bars, { unit: warehouse.unit, invisible: false });
  strict('warehouse', path);
  for (const [reader, elements] of readAll(path)) {
    const found = elements.map((e) => [e.type, e.name, e.path[0]?.name].join());
    const wrong = wanted.findIndex((want, k) => want !== found[k]);
    run.check(`${reader}: the warehouse, ${wanted.length} elements by type, name and group`, found.length === wanted.length && wrong < 0, `${found.length}; ${wanted[wrong]} is ${found[wrong]}`);
  }
}

// ---- bars that run backwards: twelve section texts, taken whole

{
  const drawings = new Map(families.flatMap((f) => f.halves.map((h) => [h.label, { ...h, d: f.d }])));
  const backwards = ['2L_2', '2LLM_2', 'LXLM_1', 'LXLM_2', 'LX_1', 'LX_2', 'LZLM_1', 'LZLM_2', 'LZ_1', 'LZ_2', 'ZS', 'ZI'];
  const forwards = ['2L_1', 'ZSI', 'LL_1', 'ZS 150', 'LX_1 65'];
  const [start, end] = [[100, 200, 300], [1900, 700, 1300]];
  const bars = [...backwards, ...forwards].map((section) => ({ start, end, section, dims: drawings.get(section.split(' ')[0]).d }));
  const path = exportQueried('backwards', bars);
  strict('backwards', path);
  for (const [reader, elements] of readAll(path)) {
    bars.forEach(({ section }, k) => {
      const axes = backwards.includes(section) ? sectionAxes(end, start, 0) : sectionAxes(start, end, 0);
      const { drawing } = drawings.get(section.split(' ')[0]);
      const corners = drawing.loops.flat().flatMap(([u, v]) => [[u, v, 0], [u, v, axes.length]]).map((p) => toModel(axes, p));
      const found = elements[k] ? pointsOf(elements[k]) : [];
      const missing = corners.filter((c) => !found.some((p) => distance(p, c) <= 0.1));
      run.check(`${reader}: a bar of section text "${section}" runs ${backwards.includes(section) ? 'backwards' : 'forwards'}`, missing.length === 0, `${missing.length} of ${corners.length} corners are not there`);
    });
  }
}

// ---- what is odd by design, as the check and the readers see it (docs/known-limits.md)

exportBars('no bars', []);
exportBars('missing dimension', [bar('L 50 5')]);
exportBars('apostrophe', [bar("W 200' 100 8 6")]);
exportBars('backslash', [bar('W\\2 200 100 8 6')]);
exportBars('end of a comment', [bar('W */ 200 100 8 6')]);
exportBars('number too large', [bar('W 200 100 8 6', { end: ['1e39', 0, 0] })]);
exportBars('accent in a family word', [bar('W 200 100 8 6'), bar('Viga\xe7 200 100 8 6'), bar('W 200 100 8 6')]);
exportBars('accent behind a family word', [bar('W 200 100 8 6 \xe7')]);

{
  // The file stands, cut; what came before can still be in it.
  const path = exportModel('cut', batchModel([bar('W 200 100 8 6'), bar('W 200 100 8 6 \xe7')]));
  const text = readBytes(path);
  run.check('a character above U+00FF ends the file before it', text.endsWith("IFCISHAPEPROFILEDEF(.AREA., 'W 200 100 8 6 "), JSON.stringify(text.slice(-60)));
}

{
  const path = exportBars('zero length', [bar('W 200 100 8 6', { end: [0, 0, 0] })]);
  for (const [reader, [element]] of readAll(path)) {
    run.check(`${reader}: a bar without length is a beam`, element?.type === 'IfcBeam', element?.type);
    const { volume } = measure(element);
    run.check(`${reader}: a bar without length has no body`, !(volume > 0), `${volume}`);
  }
}

// The section's own size, from a bar along X: its x axis is the model's Y, its y axis the model's Z.
function sizes(path) {
  return readAll(path).map(([reader, elements]) => [reader, elements.map((e) => {
    const { box } = measure(e);
    return { y: [box[0][1], box[1][1]], z: [box[0][2], box[1][2]] };
  })]);
}
const width = ([low, high]) => high - low;

for (const [reader, [s]] of sizes(exportBars('unequal angle', [bar('LFF 100 75 8 8')]))) {
  run.check(`${reader}: an angle of 100 by 75 has two legs of 100`, near(width(s.y), 100) && near(width(s.z), 100), JSON.stringify(s));
}
for (const [reader, halves] of sizes(exportBars('asymmetric pair', [bar('2L_ASSIMETRICO 100 75 8 8 10')]))) {
  run.check(`${reader}: 2L_ASSIMETRICO is two squares of 4 in one place`, halves.length === 2 && halves.every((s) => [s.y, s.z].every(([a, b]) => near(a, -2) && near(b, 2))), JSON.stringify(halves));
}
for (const [reader, [first, second]] of sizes(exportBars('LL overlap', [bar('LL 60 0 0 5 8')]))) {
  run.check(`${reader}: the angles of LL with a distance of 8 lie 52 into each other`, near(second.y[1] - first.y[0], 52), JSON.stringify([first, second]));
}
for (const [reader, [first, second]] of sizes(exportBars('diamond overlap', [bar('<> 60 0 0 5 8')]))) {
  const depth = 4 * 60 * Math.SQRT1_2 - 8;
  run.check(`${reader}: the angles of <> with a width of 8 pass each other`, near(first.y[0], 4 - 2 * 60 * Math.SQRT1_2) && near(second.y[1] - first.y[0], depth), JSON.stringify([first, second]));
}
for (const [reader, [s]] of sizes(exportBars('glued dimensions', [bar('EC 80x40x20x12')]))) {
  run.check(`${reader}: the last number of 80x40x20x12 is lost`, near(width(s.y), 0), JSON.stringify(s));
}
for (const [reader, [s]] of sizes(exportBars('free x', [bar('EC 80 x 40 x 20 x 12')]))) {
  run.check(`${reader}: with blanks around each x it is not`, near(width(s.z), 80) && near(width(s.y), 12), JSON.stringify(s));
}
for (const [reader, [s]] of sizes(exportBars('unknown section', [bar('W200x100')]))) {
  run.check(`${reader}: an unknown section is a square of 4`, near(width(s.y), 4) && near(width(s.z), 4), JSON.stringify(s));
}

{
  const path = exportBars('long name', [bar('W 200 100 8 6'), bar('W 200 100 8 6 '.padEnd(48, '-')), bar('W 200 100 8 6 '.padEnd(47, '-'))]);
  for (const [reader, elements] of readAll(path)) {
    run.check(`${reader}: a section text of 48 characters is left out, one of 47 is not`, elements.length === 2 && elements[1].description.length === 47, `${elements.length}`);
  }
}

{
  const path = exportBars('one character', [bar('[')]);
  for (const [reader, [element]] of readAll(path)) {
    run.check(`${reader}: a one-character section text gives a blank description`, element.name === '[' && element.description === ' ' && element.reference === ' ', `"${element.name}", "${element.description}", "${element.reference}"`);
  }
}

{
  // Directions are written with five decimals: the far end of a bar of 38 m strays by some tenths of a millimetre.
  const [start, end] = [[0, 0, 0], [20000, 27000, 18001]];
  const path = exportBars('long bar', [bar('EC 80 0 0 12', { start, end })]);
  const axes = sectionAxes(start, end, 0);
  const far = [[6, 40], [-6, 40], [-6, -40], [6, -40]].map(([u, v]) => toModel(axes, [u, v, axes.length]));
  for (const [reader, [element]] of readAll(path)) {
    const ends = pointsOf(element).filter((p) => toSection(axes, p)[2] > axes.length / 2);
    const stray = Math.max(...far.map((corner) => Math.min(...ends.map((p) => distance(p, corner)))));
    run.check(`${reader}: the end of a bar of 38 m strays by less than 0.5 mm`, stray < 0.5, `${stray.toFixed(3)} mm`);
  }
}

{
  // 3.1415 stands for half a turn: an angle of a quarter turn comes out 0.0026 degrees larger.
  const path = exportBars('quarter turn', [bar('EC 80 0 0 12', { rotation: Math.PI / 2 })]);
  const angle = /angulo: ([0-9.]+)/.exec(readFileSync(path, 'latin1'))[1];
  run.check('an angle of a quarter turn is written as 90.0027 degrees', angle === '90.0027', angle);
  for (const [reader, [s]] of sizes(path)) {
    run.check(`${reader}: and turns the section`, near(width(s.y), 80) && near(width(s.z), 12), JSON.stringify(s));
  }
}

deviations.conclude(run);
run.finish();
