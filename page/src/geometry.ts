// One mesh and one set of edges for the whole structure, so that it is drawn in few calls;
// each element keeps its ranges in them.

import { Bounds } from "./bounds";
import { circleSides, type Engine, type Mesh } from "./engine";
import type { Element, Model, Point } from "./model";

export interface Range {
  start: number;
  count: number;
}

export interface Geometry {
  centre: Point; // millimetres; positions are relative to it, so that 32-bit floats keep their precision
  positions: Float32Array;
  normals: Int8Array; // four a vertex, the fourth is padding
  indices: Uint32Array;
  edges: Uint32Array; // pairs of vertices
  vertexRange: Range[]; // per element
  indexRange: Range[];
  edgeRange: Range[];
  bounds: Bounds; // relative to the centre
  thickness: Float32Array; // per element: the larger side of its section's box, millimetres
  volumes: Float64Array; // per element, cubic metres
  missing: Element[]; // elements that have no mesh
}

/** Elements meshed at a time, between two looks at what else the page has to do. */
const batch = 1000;
const millimetres = 1000; // per metre
// The polygon that stands for a circle is smaller than the circle by this factor, inside and outside alike.
const circleFactor = (2 * Math.PI) / circleSides / Math.sin((2 * Math.PI) / circleSides);

/** Without an engine every element is missing, and the lists still hold. */
export async function buildGeometry(
  model: Model,
  engine: Engine | null,
  breathe: (done: number) => Promise<void>,
): Promise<Geometry> {
  const builder = new Builder(model);
  for (let from = 0; engine && from < model.elements.length; from += batch) {
    meshSome(engine, model.elements.slice(from, from + batch), builder);
    await breathe(Math.min(from + batch, model.elements.length));
  }
  return builder.finish();
}

/** One bad element must not cost the others theirs: when a batch fails, its rest is meshed one by one. */
function meshSome(engine: Engine, elements: Element[], builder: Builder): void {
  try {
    engine.mesh(elements.map((element) => element.number), (mesh) => builder.add(mesh));
  } catch {
    if (elements.length === 1) return;
    for (const element of elements) if (!builder.has(element)) meshSome(engine, [element], builder);
  }
}

/** A typed array that grows; push returns where the room begins. */
class Growing<T extends Float32Array | Int8Array | Uint32Array> {
  length = 0;
  constructor(public array: T) {}

  room(count: number): number {
    const at = this.length;
    this.length += count;
    if (this.length > this.array.length) {
      const Type = this.array.constructor as new (size: number) => T;
      const larger = new Type(Math.max(this.length, this.array.length * 2));
      larger.set(this.array);
      this.array = larger;
    }
    return at;
  }

  cut(): T {
    return this.array.slice(0, this.length) as T;
  }
}

class Builder {
  private readonly positions = new Growing(new Float32Array(1 << 16));
  private readonly normals = new Growing(new Int8Array(1 << 16));
  private readonly indices = new Growing(new Uint32Array(1 << 16));
  private readonly edges = new Growing(new Uint32Array(1 << 16));
  private readonly vertexRange: Range[] = [];
  private readonly indexRange: Range[] = [];
  private readonly edgeRange: Range[] = [];
  private readonly bounds: Bounds;
  private readonly thickness: Float32Array;
  private readonly volumes: Float64Array;
  private readonly centre: Point;
  private readonly byNumber = new Map<number, Element>();

  constructor(private readonly model: Model) {
    const count = model.elements.length;
    this.centre = middleOf(model.elements);
    this.bounds = new Bounds(count);
    this.thickness = new Float32Array(count);
    this.volumes = new Float64Array(count);
    for (const element of model.elements) {
      this.byNumber.set(element.number, element);
      this.vertexRange.push({ start: 0, count: 0 });
      this.indexRange.push({ start: 0, count: 0 });
      this.edgeRange.push({ start: 0, count: 0 });
      this.boundAxis(element);
    }
  }

  has(element: Element): boolean {
    return this.indexRange[element.index]!.count > 0;
  }

  add(mesh: Mesh): void {
    const element = this.byNumber.get(mesh.element);
    const { vertices, indices } = mesh;
    if (!element || this.has(element) || indices.length === 0) return;
    const volume = signedVolume(vertices, indices);
    if (!Number.isFinite(volume) || volume === 0) return;
    // Seen from outside a triangle turns to the left; an outline drawn the other way gives the reverse.
    const reversed = volume < 0;
    const scale = millimetres * determinantRoot(mesh.transformation);
    this.thickness[element.index] = scale * Math.max(spread(vertices, 0), spread(vertices, 1));
    this.volumes[element.index] = Math.abs(volume) * (scale / millimetres) ** 3 * (element.round ? circleFactor : 1);

    const first = this.addVertices(element, mesh, scale, reversed);
    const at = this.indices.room(indices.length);
    const out = this.indices.array;
    for (let i = 0; i < indices.length; i += 3) {
      out[at + i] = first + indices[i]!;
      out[at + i + 1] = first + indices[reversed ? i + 2 : i + 1]!;
      out[at + i + 2] = first + indices[reversed ? i + 1 : i + 2]!;
    }
    this.indexRange[element.index] = { start: at, count: indices.length };
    this.addEdges(element, vertices, indices, first);
  }

  private addVertices(element: Element, mesh: Mesh, scale: number, reversed: boolean): number {
    const { vertices, transformation: m } = mesh;
    const count = vertices.length / 6;
    const at = this.positions.room(count * 3);
    const atNormal = this.normals.room(count * 4);
    const positions = this.positions.array;
    const normals = this.normals.array;
    // Rows of the transformation to millimetres with Z up: x, −z and y of the engine's result.
    const rows = [0, 2, 1].map((row) => {
      const sign = row === 2 ? -millimetres : millimetres;
      return [m[row]! * sign, m[4 + row]! * sign, m[8 + row]! * sign, m[12 + row]! * sign] as const;
    });
    const normalScale = (reversed ? -127 : 127) / scale;
    for (let axis = 0; axis < 3; axis++) {
      const [a, b, c, d] = rows[axis]!;
      const shift = d - this.centre[axis]!;
      let least = Infinity;
      let greatest = -Infinity;
      for (let v = 0; v < count; v++) {
        const i = v * 6;
        const p = a * vertices[i]! + b * vertices[i + 1]! + c * vertices[i + 2]! + shift;
        positions[at + v * 3 + axis] = p;
        if (p < least) least = p;
        if (p > greatest) greatest = p;
        const n = a * vertices[i + 3]! + b * vertices[i + 4]! + c * vertices[i + 5]!;
        normals[atNormal + v * 4 + axis] = Math.round(n * normalScale);
      }
      this.bounds.set(element.index, axis, least, greatest);
    }
    this.vertexRange[element.index] = { start: at / 3, count };
    return at / 3;
  }

  /**
   * The outline of both ends, and a line along the bar from each corner. The solid's own frame has Z along
   * the bar, and an end face shares no vertex with a side, so an edge of an end face that only one of its
   * triangles has is part of the outline. A round bar gets no lines along it but one, so that it stays visible
   * when it is thinner than a pixel.
   */
  private addEdges(element: Element, vertices: Float32Array, indices: Uint32Array, first: number): void {
    const at = this.edges.length;
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
      this.addEdge(first + a, first + b);
      corners.add(a).add(b);
    }
    for (const v of corners) {
      if (vertices[v * 6 + 5]! > 0) near.push(v);
      else far.set(key(v), v);
    }
    for (const v of element.round ? near.slice(0, 1) : near) {
      const other = far.get(key(v));
      if (other !== undefined) this.addEdge(first + v, first + other);
    }
    this.edgeRange[element.index] = { start: at, count: this.edges.length - at };
  }

  private addEdge(a: number, b: number): void {
    const at = this.edges.room(2);
    this.edges.array[at] = a;
    this.edges.array[at + 1] = b;
  }

  /** An element without a mesh is still found and framed by its axis. */
  private boundAxis(element: Element): void {
    for (let axis = 0; axis < 3; axis++) {
      const a = element.start[axis]! - this.centre[axis]!;
      const b = element.end[axis]! - this.centre[axis]!;
      this.bounds.set(element.index, axis, Math.min(a, b), Math.max(a, b));
    }
  }

  finish(): Geometry {
    this.bounds.close();
    return {
      centre: this.centre,
      positions: this.positions.cut(),
      normals: this.normals.cut(),
      indices: this.indices.cut(),
      edges: this.edges.cut(),
      vertexRange: this.vertexRange,
      indexRange: this.indexRange,
      edgeRange: this.edgeRange,
      bounds: this.bounds,
      thickness: this.thickness,
      volumes: this.volumes,
      missing: this.model.elements.filter((element) => !this.has(element)),
    };
  }
}

function middleOf(elements: Element[]): Point {
  const least = [Infinity, Infinity, Infinity];
  const greatest = [-Infinity, -Infinity, -Infinity];
  for (const { start, end } of elements) {
    for (const point of [start, end]) {
      for (let axis = 0; axis < 3; axis++) {
        least[axis] = Math.min(least[axis]!, point[axis]!);
        greatest[axis] = Math.max(greatest[axis]!, point[axis]!);
      }
    }
  }
  const middle = (axis: number) => {
    const value = (least[axis]! + greatest[axis]!) / 2;
    return Number.isFinite(value) ? value : 0;
  };
  return [middle(0), middle(1), middle(2)];
}

/** Extent of a mesh along X (0) or Y (1) of its own frame. */
function spread(vertices: Float32Array, axis: number): number {
  let least = Infinity;
  let greatest = -Infinity;
  for (let i = axis; i < vertices.length; i += 6) {
    least = Math.min(least, vertices[i]!);
    greatest = Math.max(greatest, vertices[i]!);
  }
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

/** How much a transformation stretches lengths: the cube root of what it does to volumes. */
function determinantRoot(m: number[]): number {
  const determinant =
    m[0]! * (m[5]! * m[10]! - m[6]! * m[9]!) -
    m[4]! * (m[1]! * m[10]! - m[2]! * m[9]!) +
    m[8]! * (m[1]! * m[6]! - m[2]! * m[5]!);
  return Math.cbrt(Math.abs(determinant));
}
