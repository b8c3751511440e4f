// The structure as the page speaks of it: elements, the groups that hold them, their sections.

import { StepText, toNumbers, toReference, toReferences, toText } from "./step";

/** How the file holds an element: in the frame or truss assembly, straight in the storey, or not at all. */
export type Kind = "frame" | "truss" | "direct" | "loose";

export type Point = readonly [number, number, number];

export interface Element {
  index: number; // position in Model.elements
  number: number; // entity number in the file
  globalId: string;
  ifcType: string;
  name: string;
  reference: string; // the property 'Reference'
  section: Section;
  group: Group;
  start: Point; // millimetres
  end: Point;
  length: number; // millimetres
  round: boolean; // a circle or a tube: its mesh is a polygon
  unknown: boolean; // the exporter had no profile for the section
}

/** All elements with one section text. */
export interface Section {
  text: string; // "" when the element has none
  index: number; // position in Model.sections
  elements: Element[];
}

export interface Group {
  kind: Kind;
  name: string; // as the file names the assembly or storey; "" for loose elements
  elements: Element[];
  sections: { section: Section; elements: Element[] }[];
}

export interface Model {
  elements: Element[];
  sections: Section[];
  groups: Group[];
}

const elementTypes = ["IFCBEAM", "IFCCOLUMN", "IFCMEMBER"];
const assemblyKinds: Record<string, Kind> = { Elementos_de_Portico: "frame", Elementos_de_Trelica: "truss" };
const roundProfiles = ["IFCCIRCLEPROFILEDEF", "IFCCIRCLEHOLLOWPROFILEDEF"];
const unknownProfile = "UnknownProfile";
const origin: Point = [0, 0, 0];

export function readModel(text: string): Model {
  const file = new StepText(text);
  const groups = new GroupFinder(file);
  const references = readReferences(file);
  const round = new Set(roundProfiles.flatMap((type) => file.numbersOf(type)));
  const sections = new Map<string, Section>();
  const elements: Element[] = [];

  const typed = elementTypes.flatMap((type) => file.numbersOf(type).map((number) => ({ number, type })));
  typed.sort((a, b) => a.number - b.number);
  for (const { number, type } of typed) {
    // GlobalId, owner, name, description, object type, placement, shape, tag
    const [globalId, , name, description, , placement, shape] = file.attributes(number);
    const sectionText = toText(description).trim();
    const section = entry(sections, sectionText, () => ({ text: sectionText, index: sections.size, elements: [] }));
    const solid = readSolid(file, toReference(shape));
    const { start, axis } = readPlacement(file, toReference(placement));
    const end: Point = [
      start[0] + axis[0] * solid.depth,
      start[1] + axis[1] * solid.depth,
      start[2] + axis[2] * solid.depth,
    ];
    const element: Element = {
      index: elements.length,
      number,
      globalId: toText(globalId),
      ifcType: type,
      name: toText(name).trim(),
      reference: (references.get(number) ?? "").trim(),
      section,
      group: groups.of(number),
      start,
      end,
      length: solid.depth,
      round: round.has(solid.profile),
      unknown: toText(file.attributes(solid.profile)[1]) === unknownProfile,
    };
    section.elements.push(element);
    element.group.elements.push(element);
    elements.push(element);
  }

  const used = groups.all().filter((group) => group.elements.length > 0);
  for (const group of used) group.sections = bySection(group.elements);
  return { elements, sections: [...sections.values()], groups: used };
}

/** Which group holds an element, and the groups in the order in which the tree shows them. */
class GroupFinder {
  private readonly byElement = new Map<number, Group>();
  private readonly assemblies: Group[] = [];
  private readonly storeys: Group[] = [];
  private readonly loose: Group = { kind: "loose", name: "", elements: [], sections: [] };

  constructor(file: StepText) {
    for (const number of file.numbersOf("IFCRELCONTAINEDINSPATIALSTRUCTURE")) {
      const [, , , , members, storey] = file.attributes(number);
      const name = toText(file.attributes(toReference(storey))[2]);
      this.storeys.push(this.add("direct", name, toReferences(members)));
    }
    const assemblies = new Set(file.numbersOf("IFCELEMENTASSEMBLY"));
    for (const number of file.numbersOf("IFCRELAGGREGATES")) {
      const [, , , , whole, members] = file.attributes(number);
      if (!assemblies.has(toReference(whole))) continue; // project, building and storey
      const name = toText(file.attributes(toReference(whole))[2]);
      this.assemblies.push(this.add(assemblyKinds[name] ?? "loose", name, toReferences(members)));
    }
  }

  private add(kind: Kind, name: string, members: number[]): Group {
    const group: Group = { kind, name, elements: [], sections: [] };
    for (const member of members) this.byElement.set(member, group);
    return group;
  }

  of(element: number): Group {
    return this.byElement.get(element) ?? this.loose;
  }

  all(): Group[] {
    return [...this.assemblies, ...this.storeys, this.loose];
  }
}

function bySection(elements: Element[]): { section: Section; elements: Element[] }[] {
  const found = new Map<Section, { section: Section; elements: Element[] }>();
  for (const element of elements) {
    entry(found, element.section, () => ({ section: element.section, elements: [] })).elements.push(element);
  }
  return [...found.values()].sort((a, b) => a.section.text.localeCompare(b.section.text, "pt", { numeric: true }));
}

/** Element number → value of its property 'Reference'. */
function readReferences(file: StepText): Map<number, string> {
  const references = new Map<number, string>();
  for (const number of file.numbersOf("IFCRELDEFINESBYPROPERTIES")) {
    const [, , , , members, set] = file.attributes(number);
    for (const property of toReferences(file.attributes(toReference(set))[4])) {
      const [name, , value] = file.attributes(property);
      if (toText(name) !== "Reference") continue;
      for (const member of toReferences(members)) references.set(member, toText(value));
    }
  }
  return references;
}

/** Bars stand in the storey's frame, which is the model's: the placement's own axes are model axes. */
function readPlacement(file: StepText, placement: number): { start: Point; axis: Point } {
  const [location, axis] = file.attributes(toReference(file.attributes(placement)[1]));
  return { start: readPoint(file, location) ?? origin, axis: readPoint(file, axis) ?? [0, 0, 1] };
}

function readSolid(file: StepText, shape: number): { profile: number; depth: number } {
  const representation = toReferences(file.attributes(shape)[2])[0] ?? 0;
  const solid = toReferences(file.attributes(representation)[3])[0] ?? 0;
  const [profile, , , depth] = file.attributes(solid);
  return { profile: toReference(profile), depth: Number(depth) || 0 };
}

function readPoint(file: StepText, attribute: string | undefined): Point | undefined {
  const [x, y, z] = toNumbers(file.attributes(toReference(attribute))[0]);
  return x === undefined || y === undefined || z === undefined ? undefined : [x, y, z];
}

function entry<K, V>(map: Map<K, V>, key: K, make: () => V): V {
  let value = map.get(key);
  if (value === undefined) map.set(key, (value = make()));
  return value;
}
