// Which bars are drawn next.
//
// Drawing 10,000 solids takes more than a second where the browser draws in software. So a picture begins with the
// thickest bars in it, as many as the budget allows, and a line for each other one; while nobody moves anything the
// rest of the solids follow, a budget at a time. The budget follows what drawing takes: a graphics card soon draws
// everything at once.

import { Box3, type Camera, Frustum, Matrix4, type Vector3 } from "three";
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
  private readonly pixels: Float32Array; // thickness of each element in the picture
  private visible: number[] = [];
  private order: number[] = []; // what is in the picture, thickest first
  private drawn = 0; // how many of `order` have their solids

  constructor(private readonly geometry: Geometry) {
    const { indexRange, edgeRange } = geometry;
    this.cost = Uint32Array.from(indexRange, (range, i) => range.count / 3 + edgeRange[i]!.count / 2);
    this.pixels = new Float32Array(indexRange.length);
  }

  setVisible(visible: Uint8Array): void {
    this.visible = [];
    visible.forEach((shown, i) => shown && this.visible.push(i));
  }

  /** Begins a picture: the elements to draw as solids now, and those to draw as lines. */
  begin(cameras: Cameras, camera: Camera): { solids: number[]; lines: number[] } {
    this.order = this.inPicture(camera);
    this.drawn = 0;
    const total = this.order.reduce((sum, i) => sum + this.cost[i]!, 0);
    if (total > this.budget) this.sort(cameras);
    const solids = this.next();
    const lines = this.order.slice(this.drawn).concat(solids.filter((i) => this.cost[i] === 0));
    return { solids, lines };
  }

  /** More elements to draw as solids into the same picture. */
  next(): number[] {
    const from = this.drawn;
    for (let spent = 0; this.drawn < this.order.length; this.drawn++) {
      spent += this.cost[this.order[this.drawn]!]!;
      if (spent > this.budget && this.drawn > from) break;
    }
    return this.order.slice(from, this.drawn);
  }

  get finished(): boolean {
    return this.drawn === this.order.length;
  }

  /** Learns from the milliseconds that a drawing took. */
  learn(taken: number): void {
    if (taken > slow) this.budget = Math.max(this.budget / 2, leastBudget);
    else if (taken < quick && !this.finished) this.budget *= 2;
  }

  private inPicture(camera: Camera): number[] {
    const frustum = new Frustum().setFromProjectionMatrix(
      new Matrix4().multiplyMatrices(camera.projectionMatrix, camera.matrixWorldInverse),
    );
    const box = new Box3();
    const { values } = this.geometry.bounds;
    return this.visible.filter((i) => {
      box.min.fromArray(values, i * 6);
      box.max.fromArray(values, i * 6 + 3);
      return frustum.intersectsBox(box);
    });
  }

  private sort(cameras: Cameras): void {
    const { pixels } = this;
    for (const i of this.order) {
      pixels[i] = this.geometry.thickness[i]! * cameras.pixelsPerMillimetre(this.distance(i, cameras.position));
    }
    this.order.sort((a, b) => pixels[b]! - pixels[a]!);
  }

  /** From the eye to the nearest point of an element's box. */
  private distance(index: number, eye: Vector3): number {
    const { values } = this.geometry.bounds;
    let squares = 0;
    for (let axis = 0; axis < 3; axis++) {
      const at = eye.getComponent(axis);
      const away = Math.max(values[index * 6 + axis]! - at, at - values[index * 6 + 3 + axis]!, 0);
      squares += away * away;
    }
    return Math.sqrt(squares);
  }
}
