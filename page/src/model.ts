// The structure as the page speaks of it: elements, the groups that hold them, their sections.

import { type Columns, elementTypes, type Kind } from "./columns";

export type { Kind };
export type Point = readonly [number, number, number];

const latin1 = new TextDecoder("latin1");

/** One place in all columns. There are a hundred thousand of them, so what few people ask for is made when they ask. */
export class Element {
  constructor(
    private readonly columns: Columns,
    readonly index: number, // position in Model.elements
    readonly section: Section,
    readonly group: Group,
  ) {}

  /** Entity number in the file. */
  get number(): number {
    return this.columns.numbers[this.index]!;
  }

  get globalId(): string {
    const { globalIds, globalIdEnds } = this.columns;
    return latin1.decode(globalIds.subarray(globalIdEnds[this.index - 1] ?? 0, globalIdEnds[this.index]));
  }

  get ifcType(): string {
    return elementTypes[this.columns.types[this.index]!]!;
  }

  get name(): string {
    return this.columns.nameTexts[this.columns.names[this.index]!]!;
  }

  /** The property 'Reference'. */
  get reference(): string {
    return this.columns.referenceTexts[this.columns.references[this.index]!]!;
  }

  /** Millimetres. */
  get start(): Point {
    return this.pointAt(this.index * 6);
  }

  get end(): Point {
    return this.pointAt(this.index * 6 + 3);
  }

  private pointAt(place: number): Point {
    const { ends } = this.columns;
    return [ends[place]!, ends[place + 1]!, ends[place + 2]!];
  }

  /** Millimetres. */
  get length(): number {
    return this.columns.lengths[this.index]!;
  }

  /** Stands nowhere: a broken model has places that are no numbers. */
  get lost(): boolean {
    return this.columns.lost[this.index] === 1;
  }

  /** The exporter had no profile for the section. */
  get unknown(): boolean {
    return this.columns.unknown[this.index] === 1;
  }
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
  columns: Columns;
  elements: Element[];
  sections: Section[];
  groups: Group[];
}

export function makeModel(columns: Columns): Model {
  const groups: Group[] = columns.groups.map(({ kind, name }) => ({ kind, name, elements: [], sections: [] }));
  const sections = new Map<string, Section>();
  const sectionOf = new Array<Section | undefined>(columns.sectionTexts.length); // by the place of its text
  const elements: Element[] = [];
  for (let index = 0; index < columns.numbers.length; index++) {
    const place = columns.sections[index]!;
    const text = columns.sectionTexts[place]!; // two places may hold one text, with blanks and without
    const section = (sectionOf[place] ??= entry(sections, text, () => ({ text, index: sections.size, elements: [] })));
    const group = groups[columns.groupOf[index]!]!;
    const element = new Element(columns, index, section, group);
    section.elements.push(element);
    group.elements.push(element);
    elements.push(element);
  }
  const used = groups.filter((group) => group.elements.length > 0);
  for (const group of used) group.sections = bySection(group.elements);
  return { columns, elements, sections: [...sections.values()], groups: used };
}

function bySection(elements: Element[]): { section: Section; elements: Element[] }[] {
  const found = new Map<Section, { section: Section; elements: Element[] }>();
  for (const element of elements) {
    entry(found, element.section, () => ({ section: element.section, elements: [] })).elements.push(element);
  }
  return [...found.values()].sort((a, b) => a.section.text.localeCompare(b.section.text, "pt", { numeric: true }));
}

function entry<K, V>(map: Map<K, V>, key: K, make: () => V): V {
  let value = map.get(key);
  if (value === undefined) map.set(key, (value = make()));
  return value;
}
