// How fast web-ifc writes the entities of an exchange file.
//
//   node write.mjs EXPORTED.ifc OUT.ifc ROUNDS
//
// Outside the clock the file is read and every entity becomes a ready line object. On the clock: a
// new model, WriteLine for each object, SaveModel to bytes in memory ("kept"); and the same followed
// by one write of those bytes to a file ("written"). Nothing can be flushed line by line.
import { readFileSync, rmSync, writeFileSync } from 'node:fs';
import { IfcAPI, LogLevel } from 'web-ifc';

const [source, target, rounds] = process.argv.slice(2);
const api = new IfcAPI();
await api.Init();
api.SetLogLevel(LogLevel.LOG_LEVEL_OFF);

const read = api.OpenModel(new Uint8Array(readFileSync(source)));
const ids = api.GetAllLines(read);
const lines = [];
// The postal address is left out: WriteLine fails on the empty text in its list.
const writable = (line) => !Object.values(line).some((value) => Array.isArray(value) && value.includes(null));
for (let i = 0; i < ids.size(); ++i) {
  const line = api.GetLine(read, ids.get(i));
  if (writable(line)) lines.push(line);
}
if (ids.size() - lines.length > 1) throw new Error(`${ids.size() - lines.length} entities left out`);
api.CloseModel(read);

const median = (values) => values.sort((a, b) => a - b)[Math.floor(values.length / 2)];
const kept = [];
const written = [];
for (let round = 0; round < Number(rounds); ++round) {
  const start = performance.now();
  const model = api.CreateModel({ schema: 'IFC2X3' });
  for (const line of lines) api.WriteLine(model, line);
  const bytes = api.SaveModel(model);
  kept.push(performance.now() - start);
  rmSync(target, { force: true });
  const resumed = performance.now();
  writeFileSync(target, bytes);
  written.push(kept[kept.length - 1] + performance.now() - resumed);
  api.CloseModel(model);
}
const text = readFileSync(target, 'latin1');
const count = (text.match(/^#\d+=/gm) ?? []).length;
if (count !== lines.length) throw new Error(`${count} entities written, not ${lines.length}`);
console.log(`webifc_entities ${lines.length}`);
console.log(`webifc_kept_per_s ${Math.round((lines.length / median(kept)) * 1000)}`);
console.log(`webifc_written_per_s ${Math.round((lines.length / median(written)) * 1000)}`);
