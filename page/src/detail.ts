// Which bars are drawn next.
//
// Drawing 10,000 solids takes more than a second where the browser draws in software. So a picture begins with the
// thickest bars in it, as many as the budget allows, and a line for each other one; while nobody moves anything the
// rest of the solids follow, a budget at a time. The budget follows what drawing takes: a graphics card soon draws
// everything at once.

import { type Camera, Frustum, Matrix4, type Vector3 } from "three";
import type { Cameras } from "./cameras";
import type { Geometry } from "./geometry";

/** Triangles and edges at a time to begin with: about a tenth of a second in software. */
const firstBudget = 80_000;
const leastBudget = 40_000; // below it the fixed cost of a drawing is the larger part
const quick = 40; // milliseconds of drawing that leave room for more
const slow = 200; // milliseconds of drawing that are felt

export class Detail {
  budget = firstBudget;
  private readonly cost: Uint32Array; // of each element's solid; 0 when it has none
  private readonly steps: Uint8Array; // thickness of each element in the picture
  private visible: Uint32Array = new Uint32Array();
  private order: Uint32Array = new Uint32Array(); // what is in the picture, thickest first
  private drawn = 0; // how many of `order` have their solids

  constructor(private readonly geometry: Geometry) {
    const costs = geometry.shapes.map(({ indices, edges }) => indices.length / 3 + edges.length / 2);
    this.cost = Uint32Array.from(geometry.shapeOf, (shape) => costs[shape] ?? 0);
    this.steps = new Uint8Array(this.cost.length);
  }

  setVisible(visible: Uint8Array): void {
    let count = 0;
    const indices = new Uint32Array(visible.length);
    visible.forEach((shown, i) => {
      if (shown) indices[count++] = i;
    });
    this.visible = indices.subarray(0, count);
  }

  /** Begins a picture: the elements to draw as solids now, and those to draw as lines. */
  begin(cameras: Cameras, camera: Camera): { solids: Uint32Array; lines: Uint32Array } {
    this.order = this.inPicture(camera);
    this.drawn = 0;
    const total = this.order.reduce((sum, i) => sum + this.cost[i]!, 0);
    if (total > this.budget) this.order = this.sorted(cameras);
    const solids = this.next();
    const bare = solids.filter((i) => this.cost[i] === 0);
    const lines = new Uint32Array(this.order.length - this.drawn + bare.length);
    lines.set(this.order.subarray(this.drawn));
    lines.set(bare, this.order.length - this.drawn);
    return { solids, lines };
  }

  /** More elements to draw as solids into the same picture. */
  next(): Uint32Array {
    const from = this.drawn;
    for (let spent = 0; this.drawn < this.order.length; this.drawn++) {
      spent += this.cost[this.order[this.drawn]!]!;
      if (spent > this.budget && this.drawn > from) break;
    }
    return this.order.subarray(from, this.drawn);
  }

  get finished(): boolean {
    return this.drawn === this.order.length;
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
    // Six numbers a plane: its normal and constant, and which corner of a box lies farthest inwards.
    const planes = frustum.planes.map(({ normal: { x, y, z }, constant }) => ({
      x, y, z, constant, atX: x > 0 ? 3 : 0, atY: y > 0 ? 4 : 1, atZ: z > 0 ? 5 : 2,
    }));
    const { values } = this.geometry.bounds;
    return this.visible.filter((i) => {
      const box = i * 6;
      for (const { x, y, z, constant, atX, atY, atZ } of planes) {
        if (x * values[box + atX]! + y * values[box + atY]! + z * values[box + atZ]! + constant < 0) return false;
      }
      return true;
    });
  }

  /** The elements of `order`, thickest first, in steps of an eighth of a doubling: nobody sees finer ones. */
  private sorted(cameras: Cameras): Uint32Array {
    const { steps, order } = this;
    const first = new Uint32Array(257); // where each step begins
    for (const i of order) {
      const pixels = this.geometry.thickness[i]! * cameras.pixelsPerMillimetre(this.distance(i, cameras.position));
      steps[i] = Math.min(Math.max(128 - 8 * Math.log2(pixels), 0), 255);
      first[steps[i]! + 1]!++;
    }
    for (let step = 1; step < 257; step++) first[step]! += first[step - 1]!;
    const sorted = new Uint32Array(order.length);
    for (const i of order) sorted[first[steps[i]!]!++] = i;
    return sorted;
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
