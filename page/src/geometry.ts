// Where the solids of elements are, for drawing and for picking.

import { Bounds } from "./bounds";
import type { Element, Model, Point } from "./model";
import type { Shape } from "./shapes";
import type { Solids } from "./solids";

export interface Geometry {
  centre: Point; // millimetres; all places are relative to it
  shapes: Shape[];
  shapeOf: Int32Array; // position in `shapes` of each element's; −1 when it has no solid
  matrices: Float32Array; // 16 an element: its shape to millimetres from the centre
  bounds: Bounds;
  thickness: Float32Array; // the larger side of an element's section, millimetres
  volumes: Float64Array; // cubic metres
  missing: Element[]; // elements that have no solid
}

export function makeGeometry(model: Model, solids: Solids): Geometry {
  const { centre, shapes, shapeOf, matrices, thickness, volumes, whole } = solids;
  // What is still to come is not missing.
  const missing = whole ? model.elements.filter((element) => shapeOf[element.index]! < 0) : [];
  return { centre, shapes, shapeOf, matrices, bounds: new Bounds(solids.bounds), thickness, volumes, missing };
}
