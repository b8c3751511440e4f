// The list of what is wrong with a model; what concerns a bar leads to it.

import { button, make } from "./dom";
import type { Problem } from "./exporter";
import type { Findings } from "./jobs";
import type { Element, Model } from "./model";
import { formatNumber, text } from "./texts";

/** Problems that are listed at once. */
const page = 200;

interface Actions {
  /** Null while there is no picture. */
  select: ((bar: number) => void) | null;
  transliterate: (() => void) | null;
}

export function problemList(findings: Findings, actions: Actions): HTMLElement[] {
  const { problems } = findings;
  const list = make("ul", {});
  const more = button("", () => extend(), { class: "more" });
  let shown = 0;
  const extend = () => {
    const next = problems.slice(shown, shown + page);
    list.append(...next.map((problem) => row(problem, actions)));
    shown += next.length;
    more.hidden = shown === problems.length;
    more.textContent = text("moreProblems", formatNumber(problems.length - shown));
  };
  extend();
  const cure = actions.transliterate;
  return [
    make("h2", {}, countText(findings)),
    ...(cure
      ? [make("p", { class: "cure" }, text("transliterateWhy"), " ", button(text("transliterate"), cure, { id: "transliterate", class: "primary" }))]
      : []),
    list,
    more,
  ];
}

/** "2 problems, 1 note". */
export function countText({ problems }: Findings): string {
  const notes = problems.filter((problem) => problem.severity === "note").length;
  const others = problems.length - notes;
  const parts = [others === 0 ? text("noProblems") : text(others === 1 ? "problem" : "problemsMany", formatNumber(others))];
  if (notes > 0) parts.push(text(notes === 1 ? "noteOne" : "notesMany", formatNumber(notes)));
  return parts.join(", ");
}

/** What a problem is about, as the program says it behind its name: "3 bars from bar 7". */
export function barsText({ bars, firstBar }: Problem): string {
  if (!firstBar) return "";
  return bars! > 1 ? text("barsFrom", formatNumber(bars!), formatNumber(firstBar)) : text("bar", formatNumber(firstBar));
}

function row(problem: Problem, { select }: Actions): HTMLLIElement {
  const { severity, firstBar, cell, line, message } = problem;
  const [table] = /[^/]+\.csv$/i.exec(problem.file ?? "") ?? [""]; // one of several in a zip
  const places = [cell ?? table, line && !cell ? text("line", line) : "", barsText(problem)].filter((part) => part !== "").join(" · ");
  const words = [
    make("b", { class: `severity ${severity}` }, text(severity)),
    make("span", {}, message),
    places === "" ? null : make("span", { class: "quiet" }, places),
  ];
  if (!firstBar || !select) return make("li", {}, ...words);
  const leading = button("", () => select(firstBar), { title: text("showBar", formatNumber(firstBar)) });
  leading.append(...words.filter((word) => word !== null));
  return make("li", {}, leading);
}

/**
 * The first element of each bar; a built-up section makes two of one bar. Null when the model has other bars than the
 * file: some were left out, and nothing in the file says which.
 */
export function elementsOfBars(model: Model, bars: number): Element[] | null {
  const { elements } = model;
  const first = elements.filter((element, i) => !isSecondHalf(element, elements[i - 1]));
  return first.length === bars ? first : null;
}

function isSecondHalf(element: Element, before: Element | undefined): boolean {
  const stem = /^(.*)_2$/.exec(element.name)?.[1];
  return stem !== undefined && before?.name === `${stem}_1` && before.section === element.section;
}
