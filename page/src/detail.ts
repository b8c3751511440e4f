// Which bars are drawn next, and how.
//
// A bar that is a pixel thick or more is drawn as a solid, any other as a line: nobody could tell its solid from that.
// Drawing 10,000 solids takes more than a second where the browser draws in software. So a picture begins with the
// thickest bars in it, as many as the budget allows, and lines for the others; while nobody moves anything the rest
// of the solids follow, a budget at a time. The budget follows what drawing takes: a graphics card soon draws
// everything at once.

import { type Camera, Frustum, Matrix4, type Vector3 } from "three";
import type { Cameras } from "./cameras";
import type { Geometry } from "./geometry";

/** Triangles and edges at a time to begin with: less than a tenth of a second in software. */
const firstBudget = 40_000;
const leastBudget = 15_000; // below it the fixed cost of a drawing is the larger part
const quick = 40; // milliseconds of drawing that leave room for more
const slow = 120; // milliseconds of drawing that are felt, and during which some browsers answer nobody

// Thickness is told apart in steps of an eighth of a doubling, the thickest first: nobody sees finer ones. Behind them
// come the lines, mixed, so that the first of them show the whole structure.
const steps = 256;
const onePixel = 127;

/** Elements to draw as solids and elements to draw as lines. */
export interface Part {
  solids: Uint32Array;
  lines: Uint32Array;
}

export class Detail {
  budget = firstBudget;
  linesAtOnce = 60_000; // about a tenth of a second in software
  private readonly cost: Uint32Array; // of each element's solid; 0 when it has none
  private readonly step: Uint8Array; // thickness of each element in the picture
  private visible: Uint32Array = new Uint32Array();
  private order: Uint32Array = new Uint32Array(); // what is in the picture, thickest first
  private thick = 0; // how many of `order` are to be solids
  private solids = 0; // how many of them are drawn
  private lines = 0; // up to where the others are

  constructor(private readonly geometry: Geometry) {
    const costs = geometry.shapes.map(({ indices, edges }) => indices.length / 3 + edges.length / 2);
    this.cost = Uint32Array.from(geometry.shapeOf, (shape) => costs[shape] ?? 0);
    this.step = new Uint8Array(this.cost.length);
  }

  setVisible(visible: Uint8Array): void {
    let count = 0;
    const indices = new Uint32Array(visible.length);
    visible.forEach((shown, i) => {
      if (shown) indices[count++] = i;
    });
    this.visible = indices.subarray(0, count);
  }

  /** Begins a picture. */
  begin(cameras: Cameras, camera: Camera): Part {
    this.sort(this.inPicture(camera), cameras);
    this.solids = 0;
    const solids = this.nextSolids();
    this.lines = this.solids;
    return { solids, lines: this.nextLines() };
  }

  /** More of it. */
  next(): Part {
    const none = new Uint32Array();
    if (this.lines < this.order.length) return { solids: none, lines: this.nextLines() };
    return { solids: this.nextSolids(), lines: none };
  }

  get finished(): boolean {
    return this.solids >= this.thick && this.lines >= this.order.length;
  }

  private nextSolids(): Uint32Array {
    const from = this.solids;
    for (let spent = 0; this.solids < this.thick; this.solids++) {
      spent += this.cost[this.order[this.solids]!]!;
      if (spent > this.budget && this.solids > from) break;
    }
    return this.order.subarray(from, this.solids);
  }

  private nextLines(): Uint32Array {
    const from = this.lines;
    this.lines = Math.min(from + Math.max(this.linesAtOnce, this.budget / 2), this.order.length);
    return this.order.subarray(from, this.lines);
  }

  /** Learns from the milliseconds that a drawing took. */
  learn(taken: number): void {
    if (taken > slow) this.budget = Math.max(this.budget / 2, leastBudget);
    else if (taken < quick && !this.finished) this.budget *= 2;
  }

  private inPicture(camera: Camera): Uint32Array {
    const frustum = new Frustum().setFromProjectionMatrix(
      new Matrix4().multiplyMatrices(camera.projectionMatrix, camera.matrixWorldInverse),
    );
    const { values } = this.geometry.bounds;
    const found = this.visible.slice();
    let count = found.length;
    for (const { normal, constant } of frustum.planes) {
      const { x, y, z } = normal;
      const [atX, atY, atZ] = [x > 0 ? 3 : 0, y > 0 ? 4 : 1, z > 0 ? 5 : 2]; // the corner of a box that lies farthest inwards
      let kept = 0;
      for (let i = 0; i < count; i++) {
        const box = found[i]! * 6;
        const inside = x * values[box + atX]! + y * values[box + atY]! + z * values[box + atZ]! + constant >= 0;
        if (inside) found[kept++] = found[i]!;
      }
      count = kept;
    }
    return found.subarray(0, count);
  }

  /** Puts elements into `order`, those that are to be lines last. */
  private sort(elements: Uint32Array, cameras: Cameras): void {
    const { step, cost } = this;
    const { thickness } = this.geometry;
    const first = new Uint32Array(steps + 1); // where each step begins
    const eye = cameras.position;
    for (let i = 0; i < elements.length; i++) {
      const element = elements[i]!;
      const pixels = thickness[element]! * cameras.pixelsPerMillimetre(this.distance(element, eye));
      const solid = pixels >= 1 && cost[element] !== 0;
      step[element] = solid ? Math.max(onePixel - 8 * Math.log2(pixels), 0) : steps / 2 + mixed(element);
      first[step[element]! + 1]!++;
    }
    for (let i = 1; i <= steps; i++) first[i]! += first[i - 1]!;
    this.thick = first[steps / 2]!;
    this.order = new Uint32Array(elements.length);
    for (let i = 0; i < elements.length; i++) this.order[first[step[elements[i]!]!]!++] = elements[i]!;
  }

  /** From the eye to the nearest point of an element's box. */
  private distance(index: number, { x, y, z }: Vector3): number {
    const { values } = this.geometry.bounds;
    const box = index * 6;
    const dx = Math.max(values[box]! - x, x - values[box + 3]!, 0);
    const dy = Math.max(values[box + 1]! - y, y - values[box + 4]!, 0);
    const dz = Math.max(values[box + 2]! - z, z - values[box + 5]!, 0);
    return Math.sqrt(dx * dx + dy * dy + dz * dz);
  }
}

/** One of the steps behind the solids; the same each time, and another for a neighbour. */
function mixed(element: number): number {
  return Math.imul(element, 0x9e3779b1) >>> 25;
}
