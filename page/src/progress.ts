// How far the page is, and what went wrong instead.

import { byId } from "./dom";
import type { Stage } from "./protocol";
import { text, type TextKey } from "./texts";

type Step = "exporting" | Stage;

/** What is said while a step is under way, and where in its work it begins and ends. */
const steps: Record<Step, { text: TextKey; from: number; part: number }> = {
  exporting: { text: "exporting", from: 0, part: 1 },
  unpacking: { text: "loading", from: 0, part: 0.4 },
  reading: { text: "loading", from: 0.4, part: 0.4 },
  meshing: { text: "meshing", from: 0.8, part: 0.2 },
};

/** `shown` is what has been done when the picture's own work begins, from 0 to 1. */
export class Progress {
  constructor(private readonly shown = 0) {}

  at(step: Step, done: number): void {
    const { text: key, from, part } = steps[step];
    const ofWork = from + part * done;
    this.say(text(key));
    byId("progress-bar").hidden = false;
    byId<HTMLProgressElement>("progress-bar").value = step === "exporting" ? this.shown * ofWork : this.shown + (1 - this.shown) * ofWork;
  }

  /** What is left to do must not hide what is there. */
  stepAside(): void {
    byId("progress").classList.add("aside");
  }

  hide(): void {
    byId("progress").hidden = true;
    byId("progress").classList.remove("aside");
  }

  fail(key: TextKey, detail: string): void {
    byId("progress").classList.remove("aside");
    byId("progress-bar").hidden = true;
    this.say(text(key));
    if (detail !== "") {
      const small = document.createElement("small");
      small.textContent = detail;
      byId("progress-text").append(small);
    }
  }

  private say(words: string): void {
    byId("progress").hidden = false;
    if (byId("progress-text").textContent !== words) byId("progress-text").textContent = words;
  }
}
