// Which shape each element has, and how it stands in the model.
//
// A bar that is one profile drawn out along its axis takes the shape of its section, stretched to its length: the
// engine meshes the longest bar of each section only. Whatever else a file holds, and all elements of a file whose
// bars do not stand where this reader expects them, is meshed element by element.

import type { Bars, Columns } from "./columns";
import type { Engine, Mesh } from "./engine";
import { excerpt, findSections } from "./sections";
import { determinant, extent, makeShape, type Shape } from "./shapes";
import type { StepFile } from "./step";

export interface Solids {
  centre: [number, number, number]; // millimetres; all places are relative to it, so that 32-bit floats keep their precision
  shapes: Shape[];
  shapeOf: Int32Array; // position in `shapes` of each element's; −1 when it has no solid
  matrices: Float32Array; // 16 an element, column by column: its shape to millimetres from the centre
  bounds: Float32Array; // six an element: least and greatest X, Y and Z of its solid, or else of its axis
  thickness: Float32Array; // the larger side of an element's section, millimetres
  volumes: Float64Array; // cubic metres
  whole: boolean; // false while elements that are meshed one by one are missing
}

/** Elements meshed at a time, between two reports. */
const batch = 1000;
const millimetres = 1000; // per metre, in which the engine gives lengths

/**
 * Calls `deliver` with the bars whose shapes are known soon, and again with all others if there are any. Without an
 * engine every element lacks its solid, and the lists still hold.
 */
export function buildSolids(
  file: StepFile,
  columns: Columns,
  bars: Bars,
  engine: Engine | null,
  progress: (done: number) => void,
  deliver: (solids: Solids) => void,
): void {
  const builder = new Builder(columns, bars);
  const count = columns.numbers.length;
  const single = !engine ? [] : isCut(file) ? Array.from({ length: count }, (_, i) => i) : drawOut(file, columns, bars, engine, builder);
  if (!engine || single.length === 0) return deliver(builder.finish(true));
  deliver(builder.finish(false));
  engine.open(file.bytes);
  for (let from = 0; from < single.length; from += batch) {
    const numbers = new Map(single.slice(from, from + batch).map((i) => [columns.numbers[i]!, i]));
    meshSome(engine, numbers, (i, mesh) => builder.addSingle(i, mesh));
    progress(from / single.length);
  }
  engine.close();
  deliver(builder.finish(true));
}

/** Openings and additions are entities of their own, which change an element without its saying so. */
function isCut(file: StepFile): boolean {
  return file.numbersOf("IFCRELVOIDSELEMENT").length + file.numbersOf("IFCRELPROJECTSELEMENT").length > 0;
}

/** Makes the bars that are drawn out of a section; gives the elements for which that is no way. */
function drawOut(file: StepFile, columns: Columns, bars: Bars, engine: Engine, builder: Builder): number[] {
  const sections = findSections(file, columns, bars);
  const numbers = new Map<number, number>();
  const sectionOf = new Map<number, number>();
  sections.list.forEach(({ longest }, section) => {
    numbers.set(columns.numbers[longest]!, longest);
    sectionOf.set(longest, section);
  });
  const shapes = new Array<number>(sections.list.length).fill(-1);
  let expected = true;
  if (sections.list.length > 0) {
    engine.open(excerpt(file, [...numbers.keys()]));
    meshSome(engine, numbers, (i, mesh) => {
      const shape = builder.addSection(i, mesh);
      if (shape === "elsewhere") expected = false;
      else shapes[sectionOf.get(i)!] = shape;
    });
    engine.close();
  }
  const single: number[] = [];
  for (let i = 0; i < columns.numbers.length; i++) {
    const section = sections.of[i]!;
    const known = bars.profiles[i] !== 0 && columns.lengths[i]! >= 0;
    if (!known || !expected) single.push(i);
    else if (section >= 0 && shapes[section]! >= 0) builder.drawOut(i, shapes[section]!);
  }
  return single;
}

/** One bad element must not cost the others theirs: when a batch fails, its rest is meshed one by one. */
function meshSome(engine: Engine, elements: Map<number, number>, use: (index: number, mesh: Mesh) => void): void {
  const left = new Map(elements);
  try {
    engine.mesh([...elements.keys()], (mesh) => {
      const index = left.get(mesh.element);
      if (index === undefined || mesh.indices.length === 0) return;
      left.delete(mesh.element);
      use(index, mesh);
    });
  } catch {
    if (elements.size > 1) for (const [number, index] of left) meshSome(engine, new Map([[number, index]]), use);
  }
}

class Builder {
  private readonly shapes: Shape[] = [];
  private readonly corners: Float32Array[] = []; // of each shape: the points that its boxes follow from
  private readonly shapeOf: Int32Array;
  private readonly matrices: Float32Array;
  private readonly bounds: Float32Array;
  private readonly thickness: Float32Array;
  private readonly volumes: Float64Array;
  private readonly centre: [number, number, number];

  constructor(
    private readonly columns: Columns,
    private readonly bars: Bars,
  ) {
    const count = columns.numbers.length;
    this.shapeOf = new Int32Array(count).fill(-1);
    this.matrices = new Float32Array(count * 16);
    this.bounds = new Float32Array(count * 6);
    this.thickness = new Float32Array(count);
    this.volumes = new Float64Array(count);
    this.centre = middleOf(columns);
    for (let i = 0; i < count; i++) this.boundAxis(i);
  }

  /**
   * Takes the mesh of a bar as the shape of its section, in the bar's own frame and as long as 1. The engine's frame
   * must lie like the bar's, and the bar fill it from 0 to 1: else the file has other units or places than are read here.
   */
  addSection(bar: number, mesh: Mesh): number | "elsewhere" {
    const length = this.columns.lengths[bar]!;
    const frame = this.bars.placements.subarray(bar * 12, bar * 12 + 12);
    const model = toModel(mesh.transformation);
    const place = new Float64Array(12);
    let turned = 0;
    for (let column = 0; column < 12; column += 3) {
      for (let axis = 0; axis < 3; axis++) {
        let sum = 0;
        for (let row = 0; row < 3; row++) {
          const from = column === 9 ? frame[9 + row]! : 0;
          sum += frame[axis * 3 + row]! * (model[column + row]! - from);
        }
        place[column + axis] = axis === 2 ? sum / length : sum;
        if (column < 9) turned = Math.max(turned, Math.abs(sum - (column === axis * 3 ? 1 : 0)));
      }
    }
    const shape = makeShape(mesh, place, this.columns.round[bar] === 1);
    if (!shape) return -1;
    const near = (value: number, wanted: number) => Math.abs(value - wanted) * length < 0.01 + length * 1e-4;
    const along = extent(shape.positions, 2);
    if (!(turned < 1e-4) || !near(along[0], 0) || !near(along[1], 1)) return "elsewhere";
    this.corners.push(cornersOf(shape));
    return this.shapes.push(shape) - 1;
  }

  /** Gives a bar the shape of its section. */
  drawOut(bar: number, shape: number): void {
    const { placements } = this.bars;
    const length = this.columns.lengths[bar]!;
    for (let column = 0; column < 4; column++) {
      for (let row = 0; row < 3; row++) {
        const value = placements[bar * 12 + column * 3 + row]!;
        this.matrices[bar * 16 + column * 4 + row] =
          column === 2 ? value * length : column === 3 ? value - this.centre[row]! : value;
      }
    }
    this.place(bar, shape);
  }

  /** Gives an element a shape of its own. */
  addSingle(element: number, mesh: Mesh): void {
    const shape = makeShape(mesh, Float64Array.of(1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0), this.columns.round[element] === 1);
    if (!shape) return;
    const model = toModel(mesh.transformation);
    for (let column = 0; column < 4; column++) {
      for (let row = 0; row < 3; row++) {
        this.matrices[element * 16 + column * 4 + row] = model[column * 3 + row]! - (column === 3 ? this.centre[row]! : 0);
      }
    }
    this.corners.push(shape.positions);
    this.place(element, this.shapes.push(shape) - 1);
  }

  private place(element: number, number: number): void {
    const shape = this.shapes[number]!;
    const m = this.matrices.subarray(element * 16, element * 16 + 16);
    m[15] = 1;
    if (!m.every(Number.isFinite) || this.columns.lost[element]) return;
    const corners = this.corners[number]!;
    for (let axis = 0; axis < 3; axis++) {
      const [a, b, c, d] = [m[axis]!, m[4 + axis]!, m[8 + axis]!, m[12 + axis]!];
      let [least, greatest] = [Infinity, -Infinity];
      for (let i = 0; i < corners.length; i += 3) {
        const p = a * corners[i]! + b * corners[i + 1]! + c * corners[i + 2]! + d;
        if (p < least) least = p;
        if (p > greatest) greatest = p;
      }
      this.bounds[element * 6 + axis] = least;
      this.bounds[element * 6 + 3 + axis] = greatest;
    }
    const volume = Math.abs(determinant([m[0]!, m[1]!, m[2]!, m[4]!, m[5]!, m[6]!, m[8]!, m[9]!, m[10]!]));
    this.shapeOf[element] = number;
    this.volumes[element] = (shape.volume * volume) / millimetres ** 3;
    this.thickness[element] = shape.thickness * Math.hypot(m[0]!, m[1]!, m[2]!);
  }

  /** An element without a solid is still found and framed by its axis. */
  private boundAxis(element: number): void {
    const { ends, lost } = this.columns;
    if (lost[element]) return;
    for (let axis = 0; axis < 3; axis++) {
      const a = ends[element * 6 + axis]! - this.centre[axis]!;
      const b = ends[element * 6 + 3 + axis]! - this.centre[axis]!;
      this.bounds[element * 6 + axis] = Math.min(a, b);
      this.bounds[element * 6 + 3 + axis] = Math.max(a, b);
    }
  }

  finish(whole: boolean): Solids {
    const { centre, shapes, shapeOf, matrices, bounds, thickness, volumes } = this;
    return { centre, shapes, shapeOf, matrices, bounds, thickness, volumes, whole };
  }
}

/** A transformation of the engine, to metres with Y up, as one to millimetres with Z up: columns of three. */
function toModel(m: number[]): Float64Array {
  const model = new Float64Array(12);
  for (let column = 0; column < 4; column++) {
    model[column * 3] = m[column * 4]! * millimetres;
    model[column * 3 + 1] = -m[column * 4 + 2]! * millimetres;
    model[column * 3 + 2] = m[column * 4 + 1]! * millimetres;
  }
  return model;
}

function cornersOf({ positions, edges }: Shape): Float32Array {
  const corners = [...new Set(edges)].flatMap((vertex) => [...positions.subarray(vertex * 3, vertex * 3 + 3)]);
  return corners.length > 0 ? Float32Array.from(corners) : positions;
}

function middleOf({ ends, lost }: Columns): [number, number, number] {
  const least = [Infinity, Infinity, Infinity];
  const greatest = [-Infinity, -Infinity, -Infinity];
  for (let i = 0; i < ends.length; i++) {
    if (lost[Math.floor(i / 6)]) continue;
    least[i % 3] = Math.min(least[i % 3]!, ends[i]!);
    greatest[i % 3] = Math.max(greatest[i % 3]!, ends[i]!);
  }
  const middle = (axis: number) => {
    const value = (least[axis]! + greatest[axis]!) / 2;
    return Number.isFinite(value) ? value : 0;
  };
  return [middle(0), middle(1), middle(2)];
}
