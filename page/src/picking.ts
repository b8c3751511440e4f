// Finds the element under the pointer. Boxes first, then the triangles of the few boxes that are hit, each in the
// frame of its shape.

import { Matrix4, Ray, Vector3 } from "three";
import type { Cameras } from "./cameras";
import type { Geometry } from "./geometry";
import type { Element, Point } from "./model";

const tolerance = 6; // pixels beside an axis that still hit it

interface Hit {
  element: Element;
  distance: number; // along the ray
}

export function nearestOnRay(ray: Ray, elements: Element[], geometry: Geometry): Hit | null {
  const { bounds, shapes, shapeOf, matrices } = geometry;
  const [a, b, c, at] = [new Vector3(), new Vector3(), new Vector3(), new Vector3()];
  const [matrix, inverse, inside] = [new Matrix4(), new Matrix4(), new Ray()];
  let best: Hit | null = null;
  for (const element of elements) {
    const shape = shapes[shapeOf[element.index]!];
    if (!shape) continue;
    const entry = enterBox(ray, bounds.values, element.index * 6);
    if (entry === null || (best && entry > best.distance)) continue;
    matrix.fromArray(matrices, element.index * 16);
    inside.copy(ray).applyMatrix4(inverse.copy(matrix).invert());
    for (let i = 0; i < shape.indices.length; i += 3) {
      a.fromArray(shape.positions, shape.indices[i]! * 3);
      b.fromArray(shape.positions, shape.indices[i + 1]! * 3);
      c.fromArray(shape.positions, shape.indices[i + 2]! * 3);
      if (!inside.intersectTriangle(a, b, c, true, at)) continue;
      const distance = ray.origin.distanceTo(at.applyMatrix4(matrix));
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

/** The element nearest to the eye among those whose axis passes close to a place of the picture. */
export function nearestAxis(ray: Ray, elements: Element[], centre: Point, cameras: Cameras, x: number, y: number): Hit | null {
  let best: Hit | null = null;
  for (const element of elements) {
    if (element.lost) continue;
    const [start, end] = [element.start, element.end].map(
      (p) => new Vector3(p[0] - centre[0], p[1] - centre[1], p[2] - centre[2]),
    ) as [Vector3, Vector3];
    const [a, b] = [cameras.project(start), cameras.project(end)];
    if (!a.inside || !b.inside) continue;
    const [dx, dy] = [b.x - a.x, b.y - a.y];
    const squares = dx * dx + dy * dy;
    const t = squares > 0 ? Math.min(Math.max(((x - a.x) * dx + (y - a.y) * dy) / squares, 0), 1) : 0;
    if (Math.hypot(a.x + t * dx - x, a.y + t * dy - y) > tolerance) continue;
    const distance = start.lerp(end, t).sub(ray.origin).dot(ray.direction);
    if (!best || distance < best.distance) best = { element, distance };
  }
  return best;
}
