// The list of groups, sections and elements, with a box to show or hide each group and section.

import { button, make, swatch } from "./dom";
import type { Element, Group, Model } from "./model";
import { type Colouring, colourOf, kindColours } from "./palette";
import { countElements, formatNumber, text } from "./texts";
import type { Leaf, Visibility } from "./visibility";

/** Elements that one opening of a section adds to the list. */
const page = 200;

export class Tree {
  private readonly boxes: { box: HTMLInputElement; leaves: Leaf[] }[] = [];
  private readonly swatches: { node: HTMLElement; element: Element }[] = [];
  private readonly groupSwatches: HTMLElement[] = [];
  private readonly rows = new Map<Element, HTMLButtonElement>();
  private readonly openers = new Map<Leaf, (upTo: Element) => void>();
  private readonly leafOf = new Map<Element, { leaf: Leaf; group: Group }>();
  private readonly groupOpeners = new Map<Group, () => void>();
  private current: HTMLButtonElement | null = null;

  constructor(
    host: HTMLElement,
    model: Model,
    private readonly visibility: Visibility,
    private readonly onSelect: (element: Element) => void,
  ) {
    host.append(make("ul", { class: "tree" }, ...model.groups.map((group) => this.groupItem(group))));
  }

  private groupItem(group: Group): HTMLLIElement {
    const label = groupName(group);
    const list = make("ul", {}, ...group.sections.map((leaf) => this.sectionItem(group, leaf)));
    const opener = this.opener(label, list, true);
    this.groupOpeners.set(group, () => setOpen(opener, list, true));
    const row = make(
      "div",
      { class: "row group" },
      opener,
      this.box(label, group.sections),
      this.groupSwatch(group),
      make("span", { class: "label" }, label),
      count(group.elements.length),
    );
    return make("li", { "data-group": group.kind }, row, list);
  }

  private groupSwatch(group: Group): HTMLElement {
    const node = swatch(kindColours[group.kind]);
    this.groupSwatches.push(node);
    return node;
  }

  private sectionItem(group: Group, leaf: Leaf): HTMLLIElement {
    const label = sectionName(leaf.section.text);
    const list = make("ul", { class: "elements" });
    const first = leaf.elements[0]!;
    const unknown = leaf.elements.some((element) => element.unknown);
    const colour = swatch("");
    this.swatches.push({ node: colour, element: first });

    let shown = 0;
    const more = button("", () => extend(shown + page), { class: "more" });
    const extend = (upTo: number) => {
      for (; shown < Math.min(upTo, leaf.elements.length); shown++) {
        list.insertBefore(make("li", {}, this.elementRow(leaf.elements[shown]!)), more.parentElement);
      }
      const left = leaf.elements.length - shown;
      more.textContent = text("more", formatNumber(left));
      more.parentElement!.hidden = left === 0;
    };
    list.append(make("li", {}, more));
    extend(0); // rows are made when somebody looks at them
    const opener = this.opener(label, list, false, () => shown === 0 && extend(page));
    for (const element of leaf.elements) this.leafOf.set(element, { leaf, group });
    this.openers.set(leaf, (element) => {
      extend(Math.max(shown, page, leaf.elements.indexOf(element) + 1));
      setOpen(opener, list, true);
    });

    const row = make(
      "div",
      { class: unknown ? "row section unknown" : "row section" },
      opener,
      this.box(label, [leaf]),
      colour,
      make("span", { class: "label", title: unknown ? `${label}: ${text("unknown")}` : label }, label),
      unknown ? make("span", { class: "badge", role: "img", "aria-label": text("unknown") }, "!") : null,
      count(leaf.elements.length),
    );
    return make("li", { "data-section": leaf.section.text }, row, list);
  }

  private elementRow(element: Element): HTMLButtonElement {
    const row = button("", () => this.onSelect(element), { class: "element", "data-number": element.number });
    row.append(
      make("span", {}, `#${element.number} ${element.name}`),
      make("span", { class: "quiet" }, element.ifcType),
      make("span", { class: "count" }, `${formatNumber(element.length / 1000, 2)} m`),
    );
    this.rows.set(element, row);
    return row;
  }

  private opener(label: string, list: HTMLElement, open: boolean, onOpen: () => void = () => undefined): HTMLButtonElement {
    const opener = button("", () => {
      onOpen();
      setOpen(opener, list, opener.getAttribute("aria-expanded") !== "true");
    }, { class: "opener", "aria-label": text("expand", label) });
    setOpen(opener, list, open);
    return opener;
  }

  private box(label: string, leaves: Leaf[]): HTMLInputElement {
    const box = make("input", { type: "checkbox", "aria-label": text("show", label) });
    box.checked = true;
    box.addEventListener("change", () => this.visibility.set(leaves, box.checked));
    this.boxes.push({ box, leaves });
    return box;
  }

  /** Brings the boxes in line with what is shown. */
  refresh(): void {
    for (const { box, leaves } of this.boxes) {
      const shown = leaves.filter((leaf) => this.visibility.isShown(leaf)).length;
      box.checked = shown === leaves.length;
      box.indeterminate = shown > 0 && shown < leaves.length;
      box.closest(".row")!.classList.toggle("off", shown === 0);
    }
  }

  colour(colouring: Colouring): void {
    for (const { node, element } of this.swatches) node.style.background = colourOf(element, colouring);
    for (const node of this.groupSwatches) node.hidden = colouring === "section"; // the group then has no one colour
  }

  /** Marks an element's row; the row is opened and brought into view. */
  select(element: Element | null): void {
    this.current?.removeAttribute("aria-current");
    this.current = null;
    if (!element) return;
    const { leaf, group } = this.leafOf.get(element)!;
    this.groupOpeners.get(group)!();
    this.openers.get(leaf)!(element);
    this.current = this.rows.get(element)!;
    this.current.setAttribute("aria-current", "true");
    this.current.scrollIntoView({ block: "nearest" });
  }
}

export function groupName(group: Group): string {
  if (group.kind === "direct") return group.name === "" ? text("direct") : text("directIn", group.name);
  return group.name === "" ? text("loose") : group.name;
}

export function sectionName(section: string): string {
  return section === "" ? text("noSection") : section;
}

function count(elements: number): HTMLElement {
  return make("span", { class: "count", title: countElements(elements) }, formatNumber(elements));
}

function setOpen(opener: HTMLButtonElement, list: HTMLElement, open: boolean): void {
  list.hidden = !open;
  opener.setAttribute("aria-expanded", String(open));
}
