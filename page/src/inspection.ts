// What tests and measurements look at; nothing else may.

import type { Geometry } from "./geometry";
import type { Element, Model } from "./model";
import type { View } from "./scene";

interface Inspection {
  ready: boolean; // nothing is under way
  failed: string; // why there is no model
  model?: Model | undefined;
  geometry?: Geometry | undefined;
  view?: View | undefined;
  select?: (element: Element | null) => void;
  visible?: () => number;
  marks: Record<string, number>; // milliseconds since the page was opened
}

export const inspection: Inspection = { ready: false, failed: "", marks: {} };
(window as unknown as { exportifcViewer: Inspection }).exportifcViewer = inspection;

export const mark = (name: string): number => (inspection.marks[name] ??= Math.round(performance.now()));
