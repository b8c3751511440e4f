// What is shown. The unit is one section within one group, as the tree lists them.

import type { Element, Model, Section } from "./model";

export interface Leaf {
  section: Section;
  elements: Element[];
}

export class Visibility {
  onChange: () => void = () => undefined;
  private readonly hidden = new Set<Leaf>();
  private readonly leaves: Leaf[];
  private readonly leafOf = new Map<Element, Leaf>();

  constructor(model: Model) {
    this.leaves = model.groups.flatMap((group) => group.sections);
    for (const leaf of this.leaves) for (const element of leaf.elements) this.leafOf.set(element, leaf);
  }

  isVisible(element: Element): boolean {
    return !this.hidden.has(this.leafOf.get(element)!);
  }

  isShown(leaf: Leaf): boolean {
    return !this.hidden.has(leaf);
  }

  set(leaves: Leaf[], shown: boolean): void {
    for (const leaf of leaves) {
      if (shown) this.hidden.delete(leaf);
      else this.hidden.add(leaf);
    }
    this.onChange();
  }

  setAll(shown: boolean): void {
    this.set(this.leaves, shown);
  }

  hideSection(section: Section): void {
    this.set(this.leaves.filter((leaf) => leaf.section === section), false);
  }

  isolate(section: Section): void {
    for (const leaf of this.leaves) if (leaf.section !== section) this.hidden.add(leaf);
    this.set(this.leaves.filter((leaf) => leaf.section === section), true);
  }
}
