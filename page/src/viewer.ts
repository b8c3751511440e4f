// Shows exchange files, one at a time: a worker reads, the page fills its lists and draws.

import type { WebGLRenderer } from "three";
import { byId } from "./dom";
import { type Geometry, makeGeometry } from "./geometry";
import { startRenderer } from "./graphics";
import { inspection, mark } from "./inspection";
import { makeModel } from "./model";
import { Page } from "./page";
import type { Progress } from "./progress";
import type { ModelSource, Report, Request } from "./protocol";
import type { TextKey } from "./texts";

/** What the page carries for it. */
export interface ViewerParts {
  worker: string; // its script
  engine: string; // web-ifc, packed, in base64
}

export class Viewer {
  private readonly script: string; // where the worker's script lies
  private worker: Worker | null = null;
  private page: Page | null = null;
  private renderer: WebGLRenderer | null | undefined;

  constructor(
    private readonly parts: ViewerParts,
    private readonly progress: Progress,
    private readonly onFailure: (reason: TextKey, detail: string) => void,
    private readonly onShown: () => void = () => undefined,
  ) {
    this.script = URL.createObjectURL(new Blob([parts.worker], { type: "text/javascript" }));
  }

  /** Has the worker start while the model is still on its way. */
  prepare(): void {
    // From the page itself: a worker may come from nowhere else, and the page is one file.
    this.worker = new Worker(this.script);
  }

  /** `notes` are lines on the model that stand above its lists. */
  show(model: ModelSource, notes: string[]): void {
    if (!this.worker) this.prepare();
    const worker = this.worker!;
    const fail = (detail: string) => this.fail("unreadable", detail);
    worker.onerror = (event) => fail(event.message);
    worker.onmessage = ({ data }: MessageEvent<Report>) => {
      try {
        this.take(data, notes);
      } catch (error) {
        fail(String(error));
      }
    };
    this.send({ kind: "model", model });
  }

  /** Ends what is under way and shows nothing. */
  clear(): void {
    this.stop();
    this.page?.close();
    this.page = null;
  }

  /** Says everything anew, in the language that is now spoken. */
  relabel(notes: string[]): void {
    const old = this.page;
    if (!old) return;
    old.close();
    const page = (this.page = new Page(old.model, notes));
    if (old.geometry) {
      page.renderer = old.renderer;
      page.fillLists();
      page.addGeometry(old.geometry);
    } else if (old.axes) void this.showLines(page, old.axes);
  }

  get shown(): Page | null {
    return this.page;
  }

  private take(report: Report, notes: string[]): void {
    if (report.kind === "progress") this.progress.at(report.stage, report.done);
    else if (report.kind === "failed") this.fail(report.reason, report.reason === "unreadable" ? report.detail : "");
    else if (report.kind === "columns") {
      mark("parsed");
      this.progress.at("meshing", 0);
      this.page = new Page(makeModel(report.columns), notes);
    } else if (report.kind === "references") Object.assign(this.page!.model.columns, report.references);
    else {
      const page = this.page!;
      const geometry = makeGeometry(page.model, report.solids);
      if (report.kind === "lines") return void this.showLines(page, geometry);
      mark(report.solids.whole ? "meshed" : "firstSolids");
      page.addGeometry(geometry);
      if (report.solids.whole) void this.finish(page);
    }
  }

  /** Graphics, lists and engine would only keep the first picture waiting; a page that nobody sees gets none. */
  private async showLines(page: Page, axes: Geometry): Promise<void> {
    const shown = page.drawSketch(axes);
    mark("sketched");
    if (!document.hidden) await shown;
    if (page !== this.page) return;
    mark("firstPicture");
    page.drawLines(axes, this.startPicture());
    if (!document.hidden) await page.firstPicture;
    if (page !== this.page) return;
    page.fillLists();
    this.progress.stepAside();
    this.send({ kind: "engine", packed: this.parts.engine });
  }

  private async finish(page: Page): Promise<void> {
    this.stop(); // and all that it holds
    this.progress.hide();
    await page.firstPicture;
    this.onShown();
    inspection.ready = true;
  }

  private fail(reason: TextKey, detail: string): void {
    this.stop();
    this.onFailure(reason, detail);
  }

  private stop(): void {
    this.worker?.terminate();
    this.worker = null;
  }

  private send(request: Request): void {
    this.worker?.postMessage(request);
  }

  /** Starts the graphics, which takes some tenths of a second in software. Null when the browser gives no WebGL. */
  startPicture(): WebGLRenderer | null {
    if (this.renderer !== undefined) return this.renderer;
    const canvas = byId<HTMLCanvasElement>("canvas");
    try {
      this.renderer = startRenderer(canvas, byId("picture"));
    } catch {
      canvas.hidden = true;
      this.renderer = null;
    }
    return this.renderer;
  }
}
