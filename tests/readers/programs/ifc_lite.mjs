// Reads an exchange file with IFClite and prints what it found as JSON; see lib/reading.mjs for the form.

import { createRequire } from 'node:module';
import { readFileSync } from 'node:fs';
import initialise, { IfcAPI } from '@ifc-lite/wasm';

const wasm = createRequire(import.meta.url).resolve('@ifc-lite/wasm/ifc-lite_bg.wasm');
await initialise({ module_or_path: readFileSync(wasm) });

const bytes = new Uint8Array(readFileSync(process.argv[2]));
const api = new IfcAPI();
const json = (data) => JSON.parse(new TextDecoder().decode(data));

// The tree of project, storey, assemblies and elements; a node's path is its GlobalId.
const nodes = new Map();
const parentOf = new Map();
for (const node of json(api.exportIfcx(bytes, false, false)).data) {
  const type = node.attributes?.['bsi::ifc::class']?.code;
  const known = nodes.get(node.path) ?? {};
  nodes.set(node.path, { type: type ?? known.type, name: node.attributes?.['bsi::ifc::prop::Name'] ?? known.name ?? null });
  Object.values(node.children ?? {}).forEach((child) => parentOf.set(child, node.path));
}

function pathOf(globalId) {
  const path = [];
  for (let p = parentOf.get(globalId); p !== undefined; p = parentOf.get(p)) path.push(nodes.get(p));
  return path;
}

// Y points up there too, in metres; each mesh has an origin of its own.
const meshes = new Map();
const pass = api.buildPrePassOnce(bytes);
api.setTessellationQuality('highest');
const batch = api.processGeometryBatch(
  bytes, pass.jobs, pass.unitScale, 0, 0, 0, false, pass.voidKeys, pass.voidCounts, pass.voidValues, pass.styleIds, pass.styleColors,
);
for (let i = 0; i < batch.length; i += 1) {
  const mesh = batch.get(i);
  const [ox, oy, oz] = mesh.origin;
  const p = mesh.positions;
  const known = meshes.get(mesh.expressId) ?? { vertices: [], triangles: [] };
  const base = known.vertices.length / 3;
  for (let k = 0; k < p.length; k += 3) known.vertices.push(1000 * (p[k] + ox), -1000 * (p[k + 2] + oz), 1000 * (p[k + 1] + oy));
  mesh.indices.forEach((index) => known.triangles.push(base + index));
  meshes.set(mesh.expressId, known);
  mesh.free();
}

const elementTypes = new Set(['IfcBeam', 'IfcColumn', 'IfcMember']);
const elements = json(api.exportJson(bytes, false, true, false)).filter((e) => elementTypes.has(e.type)).map((e) => ({
  id: e.expressId,
  type: e.type,
  name: e.name ?? null,
  description: e.description ?? null,
  reference: e.propertySets?.flatMap((set) => set.properties).find((p) => p.name === 'Reference')?.value ?? null,
  path: pathOf(e.globalId),
  ...(meshes.get(e.expressId) ?? { vertices: [], triangles: [] }),
}));

process.stdout.write(JSON.stringify(elements));
