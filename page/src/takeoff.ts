// The take-off of a model: what its sections weigh, by group and layer, and what is to be cut.

import { make } from "./dom";
import type { Takeoff, TakeoffRow } from "./exporter";
import { formatNumber, text, type TextKey } from "./texts";

/** Rows of a list that are shown; the file has all. */
const mostRows = 500;

/** A column with numbers: their key and their decimals. */
type Measure = [label: TextKey, key: string, decimals: number];

const bars: Measure = ["takeoffBars", "bars", 0];
const length: Measure = ["lengthM", "lengthM", 3];
const mass: Measure = ["takeoffMass", "massKg", 3];
const paint: Measure = ["takeoffPaint", "paintM2", 3];
const cut: Measure = ["takeoffCut", "cutMm", 0];

export function takeoffLists(takeoff: Takeoff): HTMLElement[] {
  const groups: Record<string, TextKey> = { frames: "frame", trusses: "truss", direct: "direct" };
  const nameOfSection = (row: TakeoffRow) => String(row["section"]);
  const lists: [TextKey, TakeoffRow[] | undefined, (row: TakeoffRow) => string, Measure[]][] = [
    ["takeoffSections", takeoff.sections, nameOfSection, [bars, length, mass, paint]],
    ["takeoffGroups", takeoff.groups, (row) => text(groups[String(row["group"])]!), [bars, length, mass, paint]],
    ["takeoffLayers", takeoff.layers, (row) => String(row["name"]), [bars, length, mass, paint]],
    ["takeoffCuts", takeoff.cuts, nameOfSection, [cut, bars, mass]],
  ];
  return lists.flatMap(([title, rows, name, measures]) => (rows ? [list(text(title), rows, name, measures, takeoff.total!)] : []));
}

function list(title: string, rows: TakeoffRow[], name: (row: TakeoffRow) => string, measures: Measure[], total: TakeoffRow): HTMLElement {
  const cells = (row: TakeoffRow, empty: string) =>
    measures.map(([, key, decimals]) => make("td", {}, key in row ? formatNumber(Number(row[key]), decimals) : empty));
  const left = rows.length - mostRows;
  return make(
    "section",
    {},
    make(
      "table",
      {},
      make("caption", {}, title),
      make("thead", {}, make("tr", {}, make("th", { scope: "col" }), ...measures.map(([label]) => make("th", { scope: "col" }, text(label))))),
      make(
        "tbody",
        {},
        ...rows.slice(0, mostRows).map((row) => make("tr", {}, make("th", { scope: "row", title: String(row["text"] ?? "") }, name(row)), ...cells(row, "–"))),
      ),
      make("tfoot", {}, make("tr", {}, make("th", { scope: "row" }, text("total")), ...cells(total, ""))),
    ),
    left > 0 ? make("p", { class: "quiet" }, text("takeoffMore", formatNumber(left))) : null,
  );
}
