// Runs a reader in a process of its own and takes what it found: one entry per beam, column and member, in the order
// of the file,
//
//   { id, type, name, description, reference, path, vertices, triangles }
//
// reference is the value of the property 'Reference'; path names what the element is part of, from the nearest
// ({ type, name }) up to the project; vertices are x, y, z in millimetres, Z up, triangles index into them.

import { execFileSync } from 'node:child_process';
import { dirname, join } from 'node:path';
import { fileURLToPath } from 'node:url';

const programs = join(dirname(fileURLToPath(import.meta.url)), '..', 'programs');

export const readers = { 'web-ifc': 'web_ifc.mjs', 'ifc-lite': 'ifc_lite.mjs' };

export function read(reader, path) {
  const output = execFileSync(process.execPath, [join(programs, readers[reader]), path], {
    maxBuffer: 1 << 30,
    encoding: 'utf8',
    timeout: 120000,
    stdio: ['ignore', 'pipe', 'pipe'],
  });
  // A reader may log on the same stream before its answer, which is the one line that opens a list.
  const elements = JSON.parse(output.slice(output.lastIndexOf('\n[') + 1));
  return elements.sort((a, b) => a.id - b.id);
}

export const pointsOf = ({ vertices }) => Array.from({ length: vertices.length / 3 }, (_, i) => vertices.slice(3 * i, 3 * i + 3));

// { volume, centroid, box: [[low], [high]] } of a closed mesh; tetrahedra from its first vertex keep the digits.
export function measure({ vertices: v, triangles: t }) {
  const low = [Infinity, Infinity, Infinity];
  const high = [-Infinity, -Infinity, -Infinity];
  for (let i = 0; i < v.length; i += 1) {
    low[i % 3] = Math.min(low[i % 3], v[i]);
    high[i % 3] = Math.max(high[i % 3], v[i]);
  }
  const [ox, oy, oz] = v;
  let volume = 0;
  const moment = [0, 0, 0];
  for (let i = 0; i < t.length; i += 3) {
    const [a, b, c] = [3 * t[i], 3 * t[i + 1], 3 * t[i + 2]];
    const [ax, ay, az] = [v[a] - ox, v[a + 1] - oy, v[a + 2] - oz];
    const [bx, by, bz] = [v[b] - ox, v[b + 1] - oy, v[b + 2] - oz];
    const [cx, cy, cz] = [v[c] - ox, v[c + 1] - oy, v[c + 2] - oz];
    const part = (ax * (by * cz - bz * cy) - ay * (bx * cz - bz * cx) + az * (bx * cy - by * cx)) / 6;
    volume += part;
    moment[0] += (part * (ax + bx + cx)) / 4;
    moment[1] += (part * (ay + by + cy)) / 4;
    moment[2] += (part * (az + bz + cz)) / 4;
  }
  return { volume, centroid: [ox + moment[0] / volume, oy + moment[1] / volume, oz + moment[2] / volume], box: [low, high] };
}
