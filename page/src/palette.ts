// The colours of the picture and of the lists. Groups differ in lightness too, for those who see few hues.

import type { Element, Kind, Section } from "./model";

export const kindColours: Record<Kind, string> = {
  frame: "#1f6fb5",
  truss: "#1c9c7c",
  direct: "#8a7aa8",
  loose: "#8b949e",
};
export const unknownColour = "#d9480f";
export const selectedColour = "#ffb000";

export type Colouring = "group" | "section";

/** Hues a golden angle apart stay apart however many sections there are; the warning's reds are left out. */
function sectionColour(section: Section): string {
  const hue = 50 + ((section.index * 137.508) % 285);
  return `hsl(${hue.toFixed(0)}, 48%, ${section.index % 2 ? 38 : 50}%)`;
}

export function colourOf(element: Element, colouring: Colouring): string {
  if (element.unknown) return unknownColour;
  return colouring === "group" ? kindColours[element.group.kind] : sectionColour(element.section);
}
