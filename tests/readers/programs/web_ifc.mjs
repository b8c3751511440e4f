// Reads an exchange file with web-ifc and prints what it found as JSON; see lib/reading.mjs for the form.

import { createRequire } from 'node:module';
import { readFileSync } from 'node:fs';

const webIfc = createRequire(import.meta.url)('web-ifc');

const api = new webIfc.IfcAPI();
await api.Init();
// Circles as fine as the tolerance of the volumes asks for.
const model = api.OpenModel(new Uint8Array(readFileSync(process.argv[2])), { CIRCLE_SEGMENTS: 96, COORDINATE_TO_ORIGIN: false });

const typeNames = new Map([
  [webIfc.IFCBEAM, 'IfcBeam'],
  [webIfc.IFCCOLUMN, 'IfcColumn'],
  [webIfc.IFCMEMBER, 'IfcMember'],
  [webIfc.IFCELEMENTASSEMBLY, 'IfcElementAssembly'],
  [webIfc.IFCBUILDINGSTOREY, 'IfcBuildingStorey'],
  [webIfc.IFCBUILDING, 'IfcBuilding'],
  [webIfc.IFCPROJECT, 'IfcProject'],
]);

function linesOf(type) {
  const ids = api.GetLineIDsWithType(model, type);
  return Array.from({ length: ids.size() }, (_, i) => ids.get(i));
}
const line = (id) => api.GetLine(model, id);

const parentOf = new Map();
for (const id of linesOf(webIfc.IFCRELCONTAINEDINSPATIALSTRUCTURE)) {
  const rel = line(id);
  rel.RelatedElements.forEach((e) => parentOf.set(e.value, rel.RelatingStructure.value));
}
for (const id of linesOf(webIfc.IFCRELAGGREGATES)) {
  const rel = line(id);
  rel.RelatedObjects.forEach((e) => parentOf.set(e.value, rel.RelatingObject.value));
}

const properties = new Map();
for (const id of linesOf(webIfc.IFCRELDEFINESBYPROPERTIES)) {
  const rel = line(id);
  const set = line(rel.RelatingPropertyDefinition.value);
  const values = Object.fromEntries(set.HasProperties.map((p) => {
    const property = line(p.value);
    return [property.Name.value, property.NominalValue.value];
  }));
  rel.RelatedObjects.forEach((e) => properties.set(e.value, { ...properties.get(e.value), ...values }));
}

// web-ifc turns the model so that Y points up, and gives metres: (x, y, z) there is (x, -z, y) here.
function toModel(v, m) {
  const x = m[0] * v[0] + m[4] * v[1] + m[8] * v[2] + m[12];
  const y = m[1] * v[0] + m[5] * v[1] + m[9] * v[2] + m[13];
  const z = m[2] * v[0] + m[6] * v[1] + m[10] * v[2] + m[14];
  return [1000 * x, -1000 * z, 1000 * y];
}

const meshes = new Map();
api.StreamAllMeshes(model, (mesh) => {
  const vertices = [];
  const triangles = [];
  for (let i = 0; i < mesh.geometries.size(); i += 1) {
    const placed = mesh.geometries.get(i);
    const geometry = api.GetGeometry(model, placed.geometryExpressID);
    const data = api.GetVertexArray(geometry.GetVertexData(), geometry.GetVertexDataSize());
    const base = vertices.length / 3;
    for (let k = 0; k < data.length; k += 6) vertices.push(...toModel([data[k], data[k + 1], data[k + 2]], placed.flatTransformation));
    api.GetIndexArray(geometry.GetIndexData(), geometry.GetIndexDataSize()).forEach((index) => triangles.push(base + index));
    geometry.delete();
  }
  meshes.set(mesh.expressID, { vertices, triangles });
});

function pathOf(id) {
  const path = [];
  for (let p = parentOf.get(id); p !== undefined; p = parentOf.get(p)) {
    path.push({ type: typeNames.get(api.GetLineType(model, p)) ?? 'other', name: line(p).Name?.value ?? null });
  }
  return path;
}

const elements = [webIfc.IFCBEAM, webIfc.IFCCOLUMN, webIfc.IFCMEMBER].flatMap((type) => linesOf(type).map((id) => {
  const e = line(id);
  return {
    id,
    type: typeNames.get(type),
    name: e.Name?.value ?? null,
    description: e.Description?.value ?? null,
    reference: properties.get(id)?.Reference ?? null,
    path: pathOf(id),
    ...(meshes.get(id) ?? { vertices: [], triangles: [] }),
  };
}));

process.stdout.write(JSON.stringify(elements));
