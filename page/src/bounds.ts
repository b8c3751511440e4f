// Boxes around elements, in millimetres relative to the centre of the geometry.

import { Vector3 } from "three";
import type { Element } from "./model";

export class Bounds {
  readonly least = new Vector3(Infinity, Infinity, Infinity);
  readonly greatest = new Vector3(-Infinity, -Infinity, -Infinity);

  /** `values` holds least and greatest x, y, z of each element. */
  constructor(readonly values: Float32Array) {
    for (let i = 0; i < values.length; i += 6) {
      this.least.set(Math.min(this.least.x, values[i]!), Math.min(this.least.y, values[i + 1]!), Math.min(this.least.z, values[i + 2]!));
      this.greatest.set(
        Math.max(this.greatest.x, values[i + 3]!),
        Math.max(this.greatest.y, values[i + 4]!),
        Math.max(this.greatest.z, values[i + 5]!),
      );
    }
    if (values.length === 0) this.least.copy(this.greatest.setScalar(0));
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

  /** How far they reach in a direction, from the origin and in units of its length; −Infinity when there are none. */
  reach({ x, y, z }: Vector3): number {
    const { values } = this;
    const [atX, atY, atZ] = [x > 0 ? 3 : 0, y > 0 ? 4 : 1, z > 0 ? 5 : 2]; // the corner of a box that lies farthest there
    let farthest = -Infinity;
    for (const index of this.indices) {
      const box = index * 6;
      const here = x * values[box + atX]! + y * values[box + atY]! + z * values[box + atZ]!;
      if (here > farthest) farthest = here;
    }
    return farthest;
  }
}
