// What bars of one section have in common: their mesh, the edges drawn on it, its volume.

import { circleSides, type Mesh } from "./engine";

/** In a frame of its own: that of its bars, as long as 1, or that of the one element that has it. */
export interface Shape {
  positions: Float32Array; // three a vertex
  normals: Int8Array; // four a vertex, the fourth is padding
  indices: Uint32Array; // three a triangle
  edges: Uint32Array; // pairs of vertices
  volume: number;
  thickness: number; // the larger side of the section's box
}

// The polygon that stands for a circle is smaller than the circle by this factor, inside and outside alike.
const circleFactor = (2 * Math.PI) / circleSides / Math.sin((2 * Math.PI) / circleSides);

/**
 * The engine's mesh, each vertex moved by `place`: nine numbers that turn and stretch, column by column, and three that
 * shift. Null when the mesh holds no volume.
 */
export function makeShape({ vertices, indices }: Mesh, place: Float64Array, round: boolean): Shape | null {
  const volume = signedVolume(vertices, indices);
  if (!Number.isFinite(volume) || volume === 0) return null;
  // Seen from outside a triangle turns to the left; an outline drawn the other way gives the reverse.
  const reversed = volume < 0;
  const count = vertices.length / 6;
  const positions = new Float32Array(count * 3);
  const normals = new Int8Array(count * 4);
  for (let v = 0; v < count; v++) {
    const [x, y, z] = [vertices[v * 6]!, vertices[v * 6 + 1]!, vertices[v * 6 + 2]!];
    const [nx, ny, nz] = [vertices[v * 6 + 3]!, vertices[v * 6 + 4]!, vertices[v * 6 + 5]!];
    // Stretched along an axis of the mesh, a face keeps its normal as far as meshes of bars have them: along or square.
    const normal = [0, 1, 2].map((axis) => place[axis]! * nx + place[3 + axis]! * ny + place[6 + axis]! * nz);
    const length = Math.hypot(...normal) * (reversed ? -1 : 1);
    for (let axis = 0; axis < 3; axis++) {
      positions[v * 3 + axis] = place[axis]! * x + place[3 + axis]! * y + place[6 + axis]! * z + place[9 + axis]!;
      normals[v * 4 + axis] = Math.round((127 * normal[axis]!) / length);
    }
  }
  return {
    positions,
    normals,
    indices: reversed ? indices.map((_, i) => indices[i % 3 === 0 ? i : i % 3 === 1 ? i + 1 : i - 1]!) : indices.slice(),
    edges: edgesOf(vertices, indices, round),
    volume: Math.abs(volume * determinant(place)) * (round ? circleFactor : 1),
    thickness: Math.max(spread(positions, 0), spread(positions, 1)),
  };
}

/**
 * The outline of both ends, and a line along the bar from each corner. The engine's frame has Z along the bar, and an
 * end face shares no vertex with a side, so an edge of an end face that only one of its triangles has is part of the
 * outline. A round bar gets no lines along it but one, so that it stays visible when it is thinner than a pixel.
 */
function edgesOf(vertices: Float32Array, indices: Uint32Array, round: boolean): Uint32Array {
  const edges: number[] = [];
  const near: number[] = []; // vertices of the outline where Z is greatest
  const far = new Map<string, number>(); // vertices of the other end by position
  const outline = new Map<number, [number, number]>();
  const key = (v: number) => `${vertices[v * 6]},${vertices[v * 6 + 1]}`;
  const vertexCount = vertices.length / 6;
  for (let i = 0; i < indices.length; i += 3) {
    const facing = vertices[indices[i]! * 6 + 5]!;
    if (Math.abs(facing) < 0.99) continue;
    for (let k = 0; k < 3; k++) {
      const a = indices[i + k]!;
      const b = indices[i + ((k + 1) % 3)]!;
      const edge = Math.min(a, b) * vertexCount + Math.max(a, b);
      if (!outline.delete(edge)) outline.set(edge, [a, b]);
    }
  }
  const corners = new Set<number>();
  for (const [a, b] of outline.values()) {
    edges.push(a, b);
    corners.add(a).add(b);
  }
  for (const v of corners) {
    if (vertices[v * 6 + 5]! > 0) near.push(v);
    else far.set(key(v), v);
  }
  for (const v of round ? near.slice(0, 1) : near) {
    const other = far.get(key(v));
    if (other !== undefined) edges.push(v, other);
  }
  return Uint32Array.from(edges);
}

/** Least and greatest of one coordinate. */
export function extent(positions: Float32Array, axis: number): [number, number] {
  let [least, greatest] = [Infinity, -Infinity];
  for (let i = axis; i < positions.length; i += 3) {
    least = Math.min(least, positions[i]!);
    greatest = Math.max(greatest, positions[i]!);
  }
  return [least, greatest];
}

function spread(positions: Float32Array, axis: number): number {
  const [least, greatest] = extent(positions, axis);
  return greatest - least;
}

/** Sum of the tetrahedra between the origin and each triangle, in the cube of the mesh's unit. */
function signedVolume(vertices: Float32Array, indices: Uint32Array): number {
  let sum = 0;
  for (let i = 0; i < indices.length; i += 3) {
    const a = indices[i]! * 6;
    const b = indices[i + 1]! * 6;
    const c = indices[i + 2]! * 6;
    const [ax, ay, az] = [vertices[a]!, vertices[a + 1]!, vertices[a + 2]!];
    const [bx, by, bz] = [vertices[b]!, vertices[b + 1]!, vertices[b + 2]!];
    const [cx, cy, cz] = [vertices[c]!, vertices[c + 1]!, vertices[c + 2]!];
    sum += ax * (by * cz - bz * cy) + ay * (bz * cx - bx * cz) + az * (bx * cy - by * cx);
  }
  return sum / 6;
}

/** What nine numbers, column by column, do to volumes. */
export function determinant(m: ArrayLike<number>): number {
  return (
    m[0]! * (m[4]! * m[8]! - m[5]! * m[7]!) - m[3]! * (m[1]! * m[8]! - m[2]! * m[7]!) + m[6]! * (m[1]! * m[5]! - m[2]! * m[4]!)
  );
}
