// Work that the page hands to a worker of its own: each job has one, so that it can be stopped at any time, and so that
// what a broken file does to it is over when it ends.

import type { Problem, Takeoff } from "./exporter";

export type Job =
  | { kind: "open" | "check" | "takeoff"; files: Sources; name: string; choices: Choices; exporter: string } // the exporter in base64, packed
  | { kind: "zip"; file: Blob; name: string }
  | { kind: "pack"; file: Blob };

/** A model's one file, or its tables. */
export type Sources = readonly [File, ...File[]];

export interface Choices {
  language: "pt" | "en";
  transliterate: boolean;
}

/** What a check says of a model. */
export interface Findings {
  problems: Problem[];
  bars: number;
  isWritable: boolean; // an exchange file can be made of it
}

export type JobReport =
  | { kind: "progress"; done: number } // from 0 to 1
  | { kind: "findings"; findings: Findings }
  | { kind: "exchange"; file: Blob; origin: Origin }
  | { kind: "takeoff"; takeoff: Takeoff }
  | { kind: "content"; content: Blob } // a zip; base64 of the packed file; a table
  | { kind: "done" }
  | { kind: "failed"; reason: JobFailure; detail: string };

/** Whose exchange file it is: made here of a model, or dropped as it is. */
export type Origin = "model" | "exporter" | "foreign";

export type JobFailure = "noWebAssembly" | "tooLargeHere" | "unreadableFile" | "badZip" | "emptyFile" | "ended";

/** A job under way. `stop` ends it: nothing is reported any more. */
export interface Running {
  stop(): void;
}

export class Jobs {
  private readonly script: string; // where the worker's script lies

  constructor(workerScript: string) {
    this.script = URL.createObjectURL(new Blob([workerScript], { type: "text/javascript" }));
  }

  /** `take` is called for each report; the last one is "done" or "failed". */
  start(job: Job, take: (report: JobReport) => void): Running {
    const worker = new Worker(this.script);
    const stop = () => worker.terminate();
    worker.onerror = (event) => {
      stop();
      take({ kind: "failed", reason: "ended", detail: event.message });
    };
    worker.onmessage = ({ data }: MessageEvent<JobReport>) => {
      if (data.kind === "done" || data.kind === "failed") stop();
      take(data);
    };
    worker.postMessage(job);
    return { stop };
  }
}
