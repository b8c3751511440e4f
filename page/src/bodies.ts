// The solids of all bars with their edges, drawn in few calls.
//
// A section that many bars have is drawn as instances: its mesh once, and a place and a colour for each bar. The bars
// of all other sections are one mesh together, of which index lists say what is drawn. So neither a large structure
// nor one in which every bar is different needs many calls.

import {
  BufferAttribute,
  BufferGeometry,
  Color,
  InstancedBufferAttribute,
  InstancedMesh,
  LineBasicMaterial,
  LineSegments,
  Mesh,
  MeshLambertMaterial,
  type Object3D,
  Sphere,
} from "three";
import type { Geometry } from "./geometry";
import type { Shape } from "./shapes";

/** Bars of one section from which on they are drawn as instances; below it two calls more cost more than they save. */
export const manyBars = 100;
const edgeShade = 0.7;

export class Bodies {
  readonly objects: Object3D[] = [];
  private readonly colours: Uint8Array; // four an element, linear light
  private readonly instanced = new Map<number, Instances>(); // by shape
  private readonly instancesOf: (Instances | null)[]; // of each element
  private readonly merged: Merged;

  constructor(private readonly geometry: Geometry) {
    const { shapes, shapeOf } = geometry;
    this.colours = new Uint8Array(shapeOf.length * 4).fill(255);
    const counts = new Uint32Array(shapes.length);
    for (const shape of shapeOf) if (shape >= 0) counts[shape]!++;
    const materials = new Materials(false);
    shapes.forEach((shape, i) => {
      if (counts[i]! >= manyBars) this.instanced.set(i, new Instances(shape, counts[i]!, materials));
    });
    this.instancesOf = Array.from(shapeOf, (shape) => this.instanced.get(shape) ?? null);
    this.merged = new Merged(geometry, (element) => shapeOf[element]! >= 0 && this.instancesOf[element] === null);
    for (const { mesh, edges } of [...this.instanced.values(), this.merged]) this.objects.push(mesh, edges);
    for (const object of this.objects) object.frustumCulled = false; // what is in the picture is found beforehand
  }

  /** Shown when `show` is called next. */
  colour(element: number, { r, g, b }: Color): void {
    this.colours[element * 4] = r * 255;
    this.colours[element * 4 + 1] = g * 255;
    this.colours[element * 4 + 2] = b * 255;
    this.merged.colour(element, this.colours);
  }

  /** Has these elements drawn, and no others. */
  show(elements: Iterable<number>): void {
    for (const instances of this.instanced.values()) instances.begin();
    this.merged.begin();
    for (const element of elements) {
      const instances = this.instancesOf[element]!;
      if (instances) instances.add(element, this.geometry.matrices, this.colours);
      else this.merged.add(element);
    }
    for (const instances of this.instanced.values()) instances.end();
    this.merged.end();
  }

  dispose(): void {
    for (const object of this.objects as (Mesh | LineSegments)[]) object.geometry.dispose();
  }
}

class Materials {
  readonly mesh: MeshLambertMaterial;
  readonly edges: LineBasicMaterial;
  constructor(vertexColors: boolean) {
    // Pushed back a little, so that the edges on it are drawn whole.
    this.mesh = new MeshLambertMaterial({ vertexColors, polygonOffset: true, polygonOffsetFactor: 1, polygonOffsetUnits: 1 });
    this.edges = new LineBasicMaterial({ vertexColors, color: new Color().setScalar(edgeShade) });
  }
}

/** The renderer draws whatever says so as instances; it has no class of its own for lines. */
class InstancedLines extends LineSegments {
  readonly isInstancedMesh = true;
  readonly morphTexture = null;
  readonly boundingSphere = new Sphere(); // nobody asks where they are
  count = 0;
  constructor(
    geometry: BufferGeometry,
    material: LineBasicMaterial,
    readonly instanceMatrix: InstancedBufferAttribute,
    readonly instanceColor: InstancedBufferAttribute,
  ) {
    super(geometry, material);
  }
}

class Instances {
  readonly mesh: InstancedMesh;
  readonly edges: InstancedLines;
  private readonly matrices: Float32Array;
  private readonly colours: Uint8Array;
  private count = 0;

  constructor(shape: Shape, bars: number, materials: Materials) {
    this.matrices = new Float32Array(bars * 16);
    this.colours = new Uint8Array(bars * 4);
    const matrixAttribute = new InstancedBufferAttribute(this.matrices, 16);
    const colourAttribute = new InstancedBufferAttribute(this.colours, 4, true);
    const body = new BufferGeometry();
    body.setAttribute("position", new BufferAttribute(shape.positions, 3));
    body.setAttribute("normal", new BufferAttribute(shape.normals, 4, true));
    body.setIndex(new BufferAttribute(shape.indices, 1));
    this.mesh = new InstancedMesh(body, materials.mesh, 0);
    this.mesh.instanceMatrix = matrixAttribute;
    this.mesh.instanceColor = colourAttribute;
    this.mesh.boundingSphere = new Sphere();
    const outline = new BufferGeometry();
    outline.setAttribute("position", body.getAttribute("position"));
    outline.setIndex(new BufferAttribute(shape.edges, 1));
    this.edges = new InstancedLines(outline, materials.edges, matrixAttribute, colourAttribute);
  }

  begin(): void {
    this.count = 0;
  }

  add(element: number, matrices: Float32Array, colours: Uint8Array): void {
    const [to, from] = [this.count * 16, element * 16];
    for (let i = 0; i < 16; i++) this.matrices[to + i] = matrices[from + i]!;
    for (let i = 0; i < 3; i++) this.colours[this.count * 4 + i] = colours[element * 4 + i]!;
    this.count++;
  }

  end(): void {
    this.mesh.count = this.edges.count = this.count;
    this.mesh.visible = this.edges.visible = this.count > 0;
    if (this.count === 0) return;
    useFirst(this.mesh.instanceMatrix, this.count * 16);
    useFirst(this.mesh.instanceColor!, this.count * 4);
  }
}

interface Range {
  vertices: number; // where they begin
  indices: number;
  edges: number;
  shape: Shape;
}

/** Elements whose vertices are all in one list. */
class Merged {
  readonly mesh: Mesh;
  readonly edges: LineSegments;
  private readonly ranges = new Map<number, Range>(); // by element
  private readonly indices: Uint32Array; // of all of them
  private readonly edgeIndices: Uint32Array;
  private indexCount = 0;
  private edgeCount = 0;

  constructor(geometry: Geometry, isMember: (element: number) => boolean) {
    const { shapes, shapeOf, matrices } = geometry;
    const end = { vertices: 0, indices: 0, edges: 0 };
    shapeOf.forEach((number, element) => {
      if (!isMember(element)) return;
      const shape = shapes[number]!;
      this.ranges.set(element, { ...end, shape });
      end.vertices += shape.positions.length / 3;
      end.indices += shape.indices.length;
      end.edges += shape.edges.length;
    });
    const positions = new Float32Array(end.vertices * 3);
    const normals = new Int8Array(end.vertices * 4);
    this.indices = new Uint32Array(end.indices);
    this.edgeIndices = new Uint32Array(end.edges);
    for (const [element, { shape, vertices, indices, edges }] of this.ranges) {
      placeVertices(shape, matrices, element * 16, positions, normals, vertices);
      shape.indices.forEach((vertex, i) => (this.indices[indices + i] = vertices + vertex));
      shape.edges.forEach((vertex, i) => (this.edgeIndices[edges + i] = vertices + vertex));
    }
    const body = new BufferGeometry();
    body.setAttribute("position", new BufferAttribute(positions, 3));
    body.setAttribute("normal", new BufferAttribute(normals, 4, true));
    body.setAttribute("color", new BufferAttribute(new Uint8Array(end.vertices * 4).fill(255), 4, true));
    body.setIndex(new BufferAttribute(new Uint32Array(end.indices), 1));
    const outline = new BufferGeometry();
    outline.setAttribute("position", body.getAttribute("position"));
    outline.setAttribute("color", body.getAttribute("color"));
    outline.setIndex(new BufferAttribute(new Uint32Array(end.edges), 1));
    const materials = new Materials(true);
    this.mesh = new Mesh(body, materials.mesh);
    this.edges = new LineSegments(outline, materials.edges);
  }

  colour(element: number, colours: Uint8Array): void {
    const range = this.ranges.get(element);
    if (!range) return;
    const attribute = this.mesh.geometry.getAttribute("color") as BufferAttribute;
    const bytes = attribute.array as Uint8Array;
    const end = range.vertices + range.shape.positions.length / 3;
    for (let vertex = range.vertices; vertex < end; vertex++) {
      for (let i = 0; i < 3; i++) bytes[vertex * 4 + i] = colours[element * 4 + i]!;
    }
    attribute.needsUpdate = true;
  }

  begin(): void {
    this.indexCount = this.edgeCount = 0;
  }

  add(element: number): void {
    const range = this.ranges.get(element);
    if (!range) return; // it has no solid
    const { shape, indices, edges } = range;
    const [drawn, drawnEdges] = [indexOf(this.mesh), indexOf(this.edges)];
    (drawn.array as Uint32Array).set(this.indices.subarray(indices, indices + shape.indices.length), this.indexCount);
    (drawnEdges.array as Uint32Array).set(this.edgeIndices.subarray(edges, edges + shape.edges.length), this.edgeCount);
    this.indexCount += shape.indices.length;
    this.edgeCount += shape.edges.length;
  }

  end(): void {
    drawOnly(this.mesh, this.indexCount);
    drawOnly(this.edges, this.edgeCount);
  }
}

/** Vertices and normals of a shape as one of its elements has them. */
function placeVertices(shape: Shape, matrices: Float32Array, at: number, positions: Float32Array, normals: Int8Array, first: number): void {
  const m = matrices.subarray(at, at + 16);
  const squares = [0, 4, 8].map((column) => m[column]! ** 2 + m[column + 1]! ** 2 + m[column + 2]! ** 2);
  const count = shape.positions.length / 3;
  for (let v = 0; v < count; v++) {
    const [x, y, z] = [shape.positions[v * 3]!, shape.positions[v * 3 + 1]!, shape.positions[v * 3 + 2]!];
    // Divided by the squares of what stretches it, a normal stays square on its face.
    const nx = shape.normals[v * 4]! / squares[0]!;
    const ny = shape.normals[v * 4 + 1]! / squares[1]!;
    const nz = shape.normals[v * 4 + 2]! / squares[2]!;
    const px = m[0]! * nx + m[4]! * ny + m[8]! * nz;
    const py = m[1]! * nx + m[5]! * ny + m[9]! * nz;
    const pz = m[2]! * nx + m[6]! * ny + m[10]! * nz;
    const scale = 127 / Math.sqrt(px * px + py * py + pz * pz);
    const [p, n] = [(first + v) * 3, (first + v) * 4];
    positions[p] = m[0]! * x + m[4]! * y + m[8]! * z + m[12]!;
    positions[p + 1] = m[1]! * x + m[5]! * y + m[9]! * z + m[13]!;
    positions[p + 2] = m[2]! * x + m[6]! * y + m[10]! * z + m[14]!;
    normals[n] = Math.round(px * scale);
    normals[n + 1] = Math.round(py * scale);
    normals[n + 2] = Math.round(pz * scale);
  }
}

function indexOf(object: Mesh | LineSegments): BufferAttribute {
  return object.geometry.getIndex()!;
}

/** Draws the first entries of an object's index, which have changed. */
export function drawOnly(object: Mesh | LineSegments, length: number): void {
  object.visible = length > 0;
  object.geometry.setDrawRange(0, length);
  if (length > 0) useFirst(indexOf(object), length);
}

function useFirst(attribute: BufferAttribute, length: number): void {
  attribute.clearUpdateRanges();
  attribute.addUpdateRange(0, length);
  attribute.needsUpdate = true;
}
