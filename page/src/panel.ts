// The totals, the legend, the notes and the card of the selected element.

import { button, make, swatch } from "./dom";
import type { Element, Kind, Model, Point, Section } from "./model";
import { type Colouring, kindColours, selectedColour, unknownColour } from "./palette";
import { countElements, formatNumber, text, type TextKey } from "./texts";
import { groupName, sectionName } from "./tree";

/** `volumes` holds cubic metres per element, or is null while there is no geometry. */
export function totalsTable(model: Model, volumes: Float64Array | null): HTMLTableElement {
  const row = (name: string, elements: Element[], unknown = false) => {
    const length = elements.reduce((sum, element) => sum + element.length, 0) / 1000;
    const volume = volumes && elements.reduce((sum, element) => sum + volumes[element.index]!, 0);
    return make(
      "tr",
      { class: unknown ? "unknown" : undefined },
      make("th", { scope: "row", title: name }, name, unknown ? make("span", { class: "badge" }, "!") : null),
      make("td", {}, formatNumber(elements.length)),
      make("td", {}, formatNumber(length, 2)),
      make("td", {}, volume === null ? "–" : formatNumber(volume, 4)),
    );
  };
  const heads: TextKey[] = ["section", "count", "lengthM", "volumeM3"];
  const byLength = (section: Section) => section.elements.reduce((sum, element) => sum + element.length, 0);
  const sections = [...model.sections].sort((a, b) => byLength(b) - byLength(a));
  return make(
    "table",
    {},
    make("caption", { class: "unseen" }, text("totalsCaption")),
    make("thead", {}, make("tr", {}, ...heads.map((head) => make("th", { scope: "col" }, text(head))))),
    make("tbody", {}, ...sections.map((s) => row(sectionName(s.text), s.elements, s.elements.some((e) => e.unknown)))),
    make("tfoot", {}, row(text("total"), model.elements)),
  );
}

export function legendRows(model: Model, colouring: Colouring): HTMLElement[] {
  const rows: HTMLElement[] = [];
  const add = (colour: string, label: string, count: number | null) =>
    rows.push(
      make("li", {}, swatch(colour), make("span", {}, label), count === null ? null : make("span", { class: "count" }, formatNumber(count))),
    );
  if (colouring === "section") rows.push(make("li", { class: "quiet" }, text("bySection")));
  else {
    const kinds: Kind[] = ["frame", "truss", "direct", "loose"];
    for (const kind of kinds) {
      const count = model.elements.filter((element) => element.group.kind === kind && !element.unknown).length;
      if (count > 0) add(kindColours[kind], text(kind), count);
    }
  }
  const unknown = model.elements.filter((element) => element.unknown).length;
  if (unknown > 0) add(unknownColour, text("unknown"), unknown);
  add(selectedColour, text("selected"), null);
  return rows;
}

export function noteRows(model: Model, complete: boolean, missing: Element[]): HTMLElement[] {
  const notes: string[] = [];
  const unknown = model.elements.filter((element) => element.unknown).length;
  if (unknown > 0) notes.push(text("unknownCount", countElements(unknown)));
  if (missing.length > 0) notes.push(text("missingCount", countElements(missing.length)));
  if (!complete) notes.push(text("incomplete"));
  return notes.map((note) => make("li", {}, note));
}

export interface DetailActions {
  zoom(): void;
  isolate(): void;
  hide(): void;
}

export function detailRows(element: Element, volume: number | null, actions: DetailActions): Node[] {
  const list = make("dl");
  const add = (key: TextKey, value: string) => list.append(make("dt", {}, text(key)), make("dd", { "data-field": key }, value));
  add("section", sectionName(element.section.text));
  add("name", element.name === "" ? "–" : element.name);
  add("ifcType", element.ifcType);
  add("group", groupName(element.group));
  add("length", `${formatNumber(element.length, 0, 1)} mm`);
  add("start", formatPoint(element.start));
  add("end", formatPoint(element.end));
  // Small numbers in dm³, which people can compare; totals stand in m³.
  add("volume", volume === null || volume === 0 ? "–" : `${formatNumber(volume * 1000, 3)} dm³`);
  add("reference", element.reference === "" ? "–" : element.reference);
  add("globalId", element.globalId);
  add("number", `#${element.number}`);
  return [
    ...(element.unknown ? [make("p", { class: "warning" }, text("unknownNote"))] : []),
    list,
    make(
      "div",
      { class: "actions" },
      button(text("zoomTo"), actions.zoom),
      button(text("isolate"), actions.isolate),
      button(text("hideSection"), actions.hide),
    ),
  ];
}

/** Tenths of a millimetre: the file's directions carry no more. */
function formatPoint(point: Point): string {
  return point.map((value) => formatNumber(Math.abs(value) < 0.05 ? 0 : value, 0, 1)).join(" ; ");
}

export function axesPicture(svg: SVGElement, axes: { x: number; y: number; towards: number }[]): void {
  const colours = ["#b3261e", "#2e7d32", "#1f4fa8"];
  const order = [0, 1, 2].sort((a, b) => axes[a]!.towards - axes[b]!.towards);
  const space = "http://www.w3.org/2000/svg";
  const shapes = order.flatMap((axis) => {
    const { x, y } = axes[axis]!;
    const line = document.createElementNS(space, "line");
    const label = document.createElementNS(space, "text");
    const set = (node: SVGElement, values: Record<string, string | number>) =>
      Object.entries(values).forEach(([name, value]) => node.setAttribute(name, String(value)));
    set(line, { x1: 0, y1: 0, x2: x * 24, y2: -y * 24, stroke: colours[axis]!, "stroke-width": 2, "stroke-linecap": "round" });
    set(label, { x: x * 33, y: -y * 33 + 4, fill: colours[axis]!, "text-anchor": "middle" });
    label.textContent = "XYZ"[axis]!;
    return [line, label];
  });
  svg.replaceChildren(...shapes);
}
