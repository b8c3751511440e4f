// Everything that lists and lines need of a file, as columns: one place for each element in each of them. They pass
// from the worker to the page as they are, without a copy.

import { listed, type StepFile, TextTable } from "./step";

/** How the file holds an element: in the frame or truss assembly, straight in the storey, or not at all. */
export type Kind = "frame" | "truss" | "direct" | "loose";

/** What only the details of an element tell: it comes when there is a picture. */
export interface References {
  references: Uint32Array; // of the property 'Reference'
  referenceTexts: string[];
}

export interface Columns extends References {
  complete: boolean; // false when the writer of the file stopped before the end
  numbers: Uint32Array; // entity numbers, ascending
  types: Uint8Array; // positions in `elementTypes`
  names: Uint32Array; // positions in `nameTexts`
  sections: Uint32Array;
  nameTexts: string[];
  sectionTexts: string[];
  globalIds: Uint8Array; // one behind the other
  globalIdEnds: Uint32Array;
  ends: Float64Array; // six an element, start and end of its axis in millimetres
  lost: Uint8Array; // one of its ends is no number, or is beyond all places
  lengths: Float64Array; // millimetres
  round: Uint8Array; // a circle or a tube: its mesh is a polygon
  unknown: Uint8Array; // the exporter had no profile for the section
  groups: { kind: Kind; name: string }[]; // in the order in which the tree shows them; the last is of loose elements
  groupOf: Uint32Array;
}

/** What the solids need beyond it, of each element. */
export interface Bars {
  placements: Float64Array; // twelve an element: X, Y and Z axis of its solid and its origin, millimetres
  profiles: Uint32Array; // entity number of its profile when it is nothing but that profile drawn out along Z; else 0
}

export const elementTypes = ["IFCBEAM", "IFCCOLUMN", "IFCMEMBER"] as const satisfies readonly (typeof listed)[number][];
const assemblyKinds: Record<string, Kind> = { Elementos_de_Portico: "frame", Elementos_de_Trelica: "truss" };
const roundProfiles = ["IFCCIRCLEPROFILEDEF", "IFCCIRCLEHOLLOWPROFILEDEF"];
const unknownProfile = "UnknownProfile";

/** Millimetres from the origin: the distance to the moon. Squares of it are still numbers of 32 bits. */
const farthest = 4e11;

/** Reads a file; `progress` is told how much of it is done, from 0 to 1. */
export function readColumns(file: StepFile, progress: (done: number) => void): { columns: Columns; bars: Bars } {
  const elements = elementsOf(file);
  const count = elements.length;
  const [names, sections] = [new TextTable(), new TextTable()];
  const columns: Columns = {
    complete: file.complete,
    numbers: Uint32Array.from(elements, ({ number }) => number),
    types: Uint8Array.from(elements, ({ type }) => type),
    names: new Uint32Array(count),
    sections: new Uint32Array(count),
    references: new Uint32Array(count),
    nameTexts: names.texts,
    sectionTexts: sections.texts,
    referenceTexts: new TextTable().texts,
    globalIds: new Uint8Array(),
    globalIdEnds: new Uint32Array(count),
    ends: new Float64Array(count * 6),
    lost: new Uint8Array(count),
    lengths: new Float64Array(count),
    round: new Uint8Array(count),
    unknown: new Uint8Array(count),
    groups: [],
    groupOf: new Uint32Array(count),
  };
  const bars: Bars = { placements: new Float64Array(count * 12), profiles: new Uint32Array(count) };
  const ids = new IdList(count * 22);
  const placements = new Placements(file);
  const solids = new SolidReader(file);

  for (let i = 0; i < count; i++) {
    if (i % 10_000 === 0) progress(i / count);
    // GlobalId, owner, name, description, object type, placement, shape, tag
    file.take(columns.numbers[i]!);
    columns.globalIdEnds[i] = ids.add(file, 0);
    columns.names[i] = addText(names, file, 2);
    columns.sections[i] = addText(sections, file, 3);
    const placement = file.reference(5);
    const solid = solids.read(file.reference(6));
    const at = i * 12;
    placements.read(placement, bars.placements, at);
    placements.readOwn(solid.position, bars.placements, at);
    for (let axis = 0; axis < 3; axis++) {
      const start = bars.placements[at + 9 + axis]!;
      columns.ends[i * 6 + axis] = start;
      columns.ends[i * 6 + 3 + axis] = start + bars.placements[at + 6 + axis]! * solid.depth;
    }
    for (let end = i * 6; end < i * 6 + 6; end++) if (!(Math.abs(columns.ends[end]!) <= farthest)) columns.lost[i] = 1;
    columns.lengths[i] = solid.depth;
    columns.round[i] = roundProfiles.some((type) => file.is(solid.profile, type)) ? 1 : 0;
    file.take(solid.profile);
    columns.unknown[i] = file.reads(1, `'${unknownProfile}'`) ? 1 : 0;
    bars.profiles[i] = solid.plain ? solid.profile : 0;
  }
  columns.globalIds = ids.bytes;
  readGroups(file, columns);
  return { columns, bars };
}

/** Blanks around a text are left out. */
function addText(table: TextTable, file: StepFile, attribute: number): number {
  return table.add(file.bytes, file.startOf(attribute), file.endOf(attribute), () => file.text(attribute).trim());
}

function elementsOf(file: StepFile): { number: number; type: number }[] {
  const elements = elementTypes.flatMap((keyword, type) => file.numbersOf(keyword).map((number) => ({ number, type })));
  return elements.sort((a, b) => a.number - b.number);
}

/** Position of the element with an entity number; −1 when there is none. */
function indexOf(numbers: Uint32Array, number: number): number {
  let [low, high] = [0, numbers.length];
  while (low < high) {
    const middle = (low + high) >> 1;
    if (numbers[middle]! < number) low = middle + 1;
    else high = middle;
  }
  return numbers[low] === number ? low : -1;
}

/** Values of the property 'Reference'. */
export function readReferences(file: StepFile, { numbers }: Columns): References {
  const texts = new TextTable();
  const references = new Uint32Array(numbers.length);
  const members: number[] = [];
  const properties: number[] = [];
  for (const number of file.numbersOf("IFCRELDEFINESBYPROPERTIES")) {
    members.length = properties.length = 0;
    file.take(number);
    file.eachReference(4, (member) => members.push(member));
    file.take(file.reference(5));
    file.eachReference(4, (property) => properties.push(property));
    for (const property of properties) {
      file.take(property);
      if (!file.reads(0, "'Reference'")) continue;
      const value = addText(texts, file, 2);
      for (const member of members) {
        const i = indexOf(numbers, member);
        if (i >= 0) references[i] = value;
      }
    }
  }
  return { references, referenceTexts: texts.texts };
}

/** Which group holds an element; an assembly has the last word. */
function readGroups(file: StepFile, columns: Columns): void {
  const nameOf = (number: number) => (file.take(number), file.text(2));
  const storeys = file.numbersOf("IFCRELCONTAINEDINSPATIALSTRUCTURE").map((relation) => {
    file.take(relation);
    return { relation, members: 4, kind: "direct" as Kind, name: nameOf(file.reference(5)) };
  });
  const assemblies = file.numbersOf("IFCRELAGGREGATES").flatMap((relation) => {
    file.take(relation);
    const whole = file.reference(4);
    if (!file.is(whole, "IFCELEMENTASSEMBLY")) return []; // project, building and storey
    const name = nameOf(whole);
    return [{ relation, members: 5, kind: assemblyKinds[name] ?? ("loose" as Kind), name }];
  });
  const groups = [...assemblies, ...storeys];
  columns.groups = [...groups.map(({ kind, name }) => ({ kind, name })), { kind: "loose", name: "" }];
  columns.groupOf.fill(groups.length);
  for (const group of [...storeys, ...assemblies]) {
    file.take(group.relation);
    file.eachReference(group.members, (member) => {
      const i = indexOf(columns.numbers, member);
      if (i >= 0) columns.groupOf[i] = groups.indexOf(group);
    });
  }
}

/** GlobalIds, one behind the other. */
class IdList {
  bytes: Uint8Array;
  private length = 0;
  constructor(room: number) {
    this.bytes = new Uint8Array(room);
  }

  /** Adds a text of the entity taken last; gives where it ends. */
  add(file: StepFile, attribute: number): number {
    const [from, to] = file.textRange(attribute);
    if (this.length + to - from > this.bytes.length) {
      const larger = new Uint8Array(2 * (this.length + to - from));
      larger.set(this.bytes);
      this.bytes = larger;
    }
    for (let i = from; i < to; i++) this.bytes[this.length++] = file.bytes[i]!;
    return this.length;
  }
}

interface Solid {
  profile: number; // 0 when there is none
  position: number; // entity number of its placement in the element
  depth: number;
  plain: boolean; // the element is this solid alone, drawn out along Z
}

class SolidReader {
  private readonly direction = new Float64Array(3);
  constructor(private readonly file: StepFile) {}

  /** The first solid of an element's shape. */
  read(shape: number): Solid {
    const { file, direction } = this;
    let [item, items] = [0, 0];
    const first = (attribute: number) => {
      item = 0;
      items += file.eachReference(attribute, (number) => (item ||= number));
      return item;
    };
    file.take(shape);
    file.take(first(2));
    file.take(first(3));
    const solid = item;
    const [profile, position, along, depth] = [file.reference(0), file.reference(1), file.reference(2), file.number(3)];
    file.take(along);
    const upwards = file.triple(0, direction, 0) && direction[0] === 0 && direction[1] === 0 && direction[2]! > 0;
    const plain = items === 2 && file.is(solid, "IFCEXTRUDEDAREASOLID") && upwards;
    return { profile, position, depth, plain };
  }
}

const identity = Float64Array.of(1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0);
const deepest = 32; // placements within placements; a ring of them must end

/** Reads where things stand: X, Y and Z axis and origin, one behind the other. */
class Placements {
  private readonly parents = new Map<number, Float64Array>();
  private readonly own = new Float64Array(12);
  private readonly outer = new Float64Array(12);

  constructor(private readonly file: StepFile) {}

  /** An element's placement, from the model's frame. */
  read(placement: number, out: Float64Array, at: number): void {
    const { file } = this;
    file.take(placement);
    const [parent, own] = [file.reference(0), file.reference(1)];
    out.set(this.parent(parent, deepest), at);
    this.readOwn(own, out, at);
  }

  private parent(placement: number, left: number): Float64Array {
    const known = this.parents.get(placement);
    if (known) return known;
    if (left === 0 || this.file.take(placement) === 0) return identity;
    const [parent, own] = [this.file.reference(0), this.file.reference(1)];
    const result = this.parent(parent, left - 1).slice();
    this.readOwn(own, result, 0);
    this.parents.set(placement, result);
    return result;
  }

  /** Goes on from a placement by an IFCAXIS2PLACEMENT3D within it. */
  readOwn(number: number, out: Float64Array, at: number): void {
    const { file, own, outer } = this;
    if (file.take(number) === 0) return;
    const [location, axis, reference] = [file.reference(0), file.reference(1), file.reference(2)];
    own.set(identity);
    this.readTriple(location, 9);
    if (axis !== 0) this.readTriple(axis, 6);
    if (reference !== 0) this.readTriple(reference, 0);
    if (axis !== 0 || reference !== 0) makeSquare(own);
    for (let i = 0; i < 12; i++) outer[i] = out[at + i]!;
    for (let column = 0; column < 12; column += 3) {
      for (let row = 0; row < 3; row++) {
        const turned = outer[row]! * own[column]! + outer[3 + row]! * own[column + 1]! + outer[6 + row]! * own[column + 2]!;
        out[at + column + row] = column === 9 ? turned + outer[9 + row]! : turned;
      }
    }
  }

  private readTriple(number: number, place: number): void {
    this.file.take(number);
    this.file.triple(0, this.own, place);
  }
}

/** Y stands square on Z and the X that was read, X on both. */
function makeSquare(m: Float64Array): void {
  setUnit(m, 6, m[6]!, m[7]!, m[8]!);
  setUnit(m, 3, m[7]! * m[2]! - m[8]! * m[1]!, m[8]! * m[0]! - m[6]! * m[2]!, m[6]! * m[1]! - m[7]! * m[0]!);
  setUnit(m, 0, m[4]! * m[8]! - m[5]! * m[7]!, m[5]! * m[6]! - m[3]! * m[8]!, m[3]! * m[7]! - m[4]! * m[6]!);
}

function setUnit(m: Float64Array, at: number, x: number, y: number, z: number): void {
  const length = Math.sqrt(x * x + y * y + z * z);
  m[at] = x / length;
  m[at + 1] = y / length;
  m[at + 2] = z / length;
}
