// Finds the element under the pointer. Boxes first, then the triangles of the few boxes that are hit.

import { type Camera, type Ray, Vector3 } from "three";
import type { Geometry } from "./geometry";
import type { Element, Point } from "./model";

export function nearestOnRay(ray: Ray, elements: Element[], geometry: Geometry): { element: Element; distance: number } | null {
  const { bounds, indices, indexRange, positions } = geometry;
  const a = new Vector3();
  const b = new Vector3();
  const c = new Vector3();
  const at = new Vector3();
  let best: { element: Element; distance: number } | null = null;
  for (const element of elements) {
    const entry = enterBox(ray, bounds, element.index * 6);
    if (entry === null || (best && entry > best.distance)) continue;
    const { start, count } = indexRange[element.index]!;
    for (let i = start; i < start + count; i += 3) {
      a.fromArray(positions, indices[i]! * 3);
      b.fromArray(positions, indices[i + 1]! * 3);
      c.fromArray(positions, indices[i + 2]! * 3);
      if (!ray.intersectTriangle(a, b, c, true, at)) continue;
      const distance = ray.origin.distanceTo(at);
      if (!best || distance < best.distance) best = { element, distance };
    }
  }
  return best;
}

/** Distance at which a ray enters a box; null when it misses. */
function enterBox(ray: Ray, bounds: Float32Array, box: number): number | null {
  let near = 0;
  let far = Infinity;
  for (let axis = 0; axis < 3; axis++) {
    const from = ray.origin.getComponent(axis);
    const along = ray.direction.getComponent(axis);
    const t1 = (bounds[box + axis]! - from) / along;
    const t2 = (bounds[box + 3 + axis]! - from) / along;
    near = Math.max(near, Math.min(t1, t2));
    far = Math.min(far, Math.max(t1, t2));
  }
  return near <= far ? near : null;
}

/** How far a place of the picture lies from an element's axis, in pixels, and how far along the ray that is. */
export function screenDistance(
  element: Element,
  centre: Point,
  camera: Camera,
  ray: Ray,
  window: { clientWidth: number; clientHeight: number },
  x: number,
  y: number,
): { pixels: number; depth: number } | null {
  const ends = [element.start, element.end].map((p) => new Vector3(p[0] - centre[0], p[1] - centre[1], p[2] - centre[2]));
  const [a, b] = ends as [Vector3, Vector3];
  const [pa, pb] = ends.map((end) => {
    const p = end.clone().project(camera);
    return { x: ((p.x + 1) / 2) * window.clientWidth, y: ((1 - p.y) / 2) * window.clientHeight, z: p.z };
  }) as [ScreenPoint, ScreenPoint];
  if (Math.abs(pa.z) > 1 || Math.abs(pb.z) > 1) return null; // an end lies behind the eye
  const [dx, dy] = [pb.x - pa.x, pb.y - pa.y];
  const lengthSquared = dx * dx + dy * dy;
  const t = lengthSquared > 0 ? Math.min(Math.max(((x - pa.x) * dx + (y - pa.y) * dy) / lengthSquared, 0), 1) : 0;
  const pixels = Math.hypot(pa.x + t * dx - x, pa.y + t * dy - y);
  return { pixels, depth: a.lerp(b, t).sub(ray.origin).dot(ray.direction) };
}

interface ScreenPoint {
  x: number;
  y: number;
  z: number;
}
