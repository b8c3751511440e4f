// Boxes around elements, in millimetres relative to the centre of the geometry.

import { Vector3 } from "three";
import type { Element } from "./model";

export class Bounds {
  /** Least and greatest x, y, z of each element. */
  readonly values: Float32Array;
  readonly least = new Vector3();
  readonly greatest = new Vector3();

  constructor(count: number) {
    this.values = new Float32Array(count * 6);
  }

  set(index: number, axis: number, least: number, greatest: number): void {
    this.values[index * 6 + axis] = least;
    this.values[index * 6 + 3 + axis] = greatest;
  }

  /** Takes stock of all boxes, when they are set. */
  close(): void {
    const boxes = this.of(null);
    this.least.setScalar(Infinity);
    this.greatest.setScalar(-Infinity);
    boxes.eachCorner((point) => {
      this.least.min(point);
      this.greatest.max(point);
    });
    if (boxes.empty) this.least.copy(this.greatest.setScalar(0));
  }

  /** Radius of a sphere about the origin that holds all boxes. */
  get radius(): number {
    return Math.max(this.least.length(), this.greatest.length(), 100);
  }

  /** The boxes of some elements; of all when there are none, or for null. */
  of(elements: Element[] | null): Boxes {
    const all = this.values.length / 6;
    const some = elements !== null && elements.length > 0;
    return new Boxes(this.values, some ? elements.map((element) => element.index) : Array.from({ length: all }, (_, i) => i));
  }
}

export class Boxes {
  constructor(
    private readonly values: Float32Array,
    private readonly indices: number[],
  ) {}

  get empty(): boolean {
    return this.indices.length === 0;
  }

  /** The point given to `use` is the same object each time. */
  eachCorner(use: (point: Vector3) => void): void {
    const point = new Vector3();
    const { values } = this;
    for (const index of this.indices) {
      for (let corner = 0; corner < 8; corner++) {
        const value = (axis: number) => values[index * 6 + axis + ((corner >> axis) & 1 ? 3 : 0)]!;
        use(point.set(value(0), value(1), value(2)));
      }
    }
  }
}
