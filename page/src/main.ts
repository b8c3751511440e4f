// Puts the page together: has the worker read the embedded file, fills the lists, starts the picture.

import type { WebGLRenderer } from "three";
import type { ViewName } from "./cameras";
import { button, byId, make } from "./dom";
import { type Geometry, makeGeometry } from "./geometry";
import { startRenderer } from "./graphics";
import { type Element, makeModel, type Model } from "./model";
import type { Colouring } from "./palette";
import { axesPicture, detailRows, legendRows, noteRows, totalsTable } from "./panel";
import type { Report, Request, Stage } from "./protocol";
import { View } from "./scene";
import { countElements, formatNumber, language, text, type TextKey } from "./texts";
import { Tree } from "./tree";
import { fromBase64 } from "./unpack";
import { Visibility } from "./visibility";

/** What tests and measurements look at. */
interface Inspection {
  ready: boolean;
  failed: string;
  model?: Model;
  geometry?: Geometry;
  view?: View;
  select?: (element: Element | null) => void;
  visible?: () => number;
  marks: Record<string, number>; // milliseconds since the page was opened
}

const inspection: Inspection = { ready: false, failed: "", marks: {} };
(window as unknown as { exportifcViewer: Inspection }).exportifcViewer = inspection;

/** What the program that wrote the page has to say about the model. */
const toldNotes = embedded("model-notes")
  .split("\n")
  .filter((note) => note !== "");

/** What is done when a stage begins, and the part of all that it is. */
const stages: Record<Stage, { text: TextKey; from: number; part: number }> = {
  unpacking: { text: "loading", from: 0, part: 0.4 },
  reading: { text: "loading", from: 0.4, part: 0.4 },
  meshing: { text: "meshing", from: 0.8, part: 0.2 },
};

const mark = (name: string) => (inspection.marks[name] ??= Math.round(performance.now()));

function start(): void {
  mark("started");
  labelShell();
  // From the page itself: a worker may come from nowhere else, and the page is one file.
  const worker = new Worker(URL.createObjectURL(new Blob([takeBlock("worker")], { type: "text/javascript" })));
  const send = (request: Request) => worker.postMessage(request);
  let page: Page;
  worker.onerror = (event) => fail("unreadable", event.message);
  worker.onmessage = ({ data }: MessageEvent<Report>) => {
    if (data.kind === "progress") showProgress(data.stage, data.done);
    else if (data.kind === "failed") fail(data.reason, data.reason === "unreadable" ? data.detail : "");
    else if (data.kind === "columns") {
      mark("parsed");
      showProgress("meshing", 0);
      page = new Page(makeModel(data.columns), startPicture());
    } else {
      mark(data.solids.whole ? "meshed" : "firstSolids");
      page.addGeometry(makeGeometry(page.model, data.solids));
      mark("scene");
      if (data.solids.whole) finish(worker).catch((error: unknown) => fail("unreadable", String(error)));
    }
  };
  send({ kind: "engine", packed: takeBlock("wasm") });
  // The model stands behind this script, so that the page can be seen before all of it is there.
  document.addEventListener("DOMContentLoaded", () => {
    const packed = takeBlock("model");
    if (packed === "") return fail("noModel");
    mark("loaded");
    send({ kind: "model", packed });
  });
}

/** Null when the browser gives no WebGL. */
function startPicture(): WebGLRenderer | null {
  const canvas = byId<HTMLCanvasElement>("canvas");
  try {
    return startRenderer(canvas);
  } catch {
    canvas.hidden = true;
    return null;
  }
}

async function finish(worker: Worker): Promise<void> {
  worker.terminate(); // and all that it holds
  byId("progress").hidden = true;
  await inspection.view?.firstPicture;
  mark("firstPicture");
  inspection.ready = true;
}

function showProgress(stage: Stage, done: number): void {
  const { text: key, from, part } = stages[stage];
  if (byId("progress-text").textContent !== text(key)) byId("progress-text").textContent = text(key);
  byId<HTMLProgressElement>("progress-bar").value = from + part * done;
}

class Page {
  private readonly visibility: Visibility;
  private readonly tree: Tree;
  private view: View | null = null;
  private geometry: Geometry | null = null;
  private selected: Element | null = null;
  private colouring: Colouring;
  private toolbar: Partial<Record<TextKey, HTMLButtonElement>> = {};

  /** Without a renderer there is no picture. */
  constructor(
    readonly model: Model,
    private readonly renderer: WebGLRenderer | null,
  ) {
    inspection.model = model;
    // One group only, as in a file without assemblies: sections tell more than groups.
    this.colouring = model.groups.length > 1 ? "group" : "section";
    this.visibility = new Visibility(model);
    byId("structure").append(
      make(
        "div",
        { class: "tools" },
        button(text("showAll"), () => this.visibility.setAll(true)),
        button(text("hideAll"), () => this.visibility.setAll(false)),
      ),
    );
    this.tree = new Tree(byId("structure"), model, this.visibility, (element) => this.select(element));
    this.tree.colour(this.colouring);
    this.visibility.onChange = () => {
      this.tree.refresh();
      this.view?.setVisible((element) => this.visibility.isVisible(element));
    };
    byId("totals").append(totalsTable(model, null), make("p", { class: "quiet" }, text("totalsNote")));
    byId("summary").textContent = countElements(model.elements.length);
    this.refreshLegend();
    this.refreshNotes([]);
    this.addToolbar();
    byId("close-details").addEventListener("click", () => this.select(null));
    document.addEventListener("keydown", (event) => this.key(event));
    inspection.select = (element) => this.select(element);
    inspection.visible = () => model.elements.filter((element) => this.visibility.isVisible(element)).length;
  }

  /** Takes what solids there are; again when more have come. */
  addGeometry(geometry: Geometry): void {
    this.geometry = geometry;
    inspection.geometry = geometry;
    byId("totals").querySelector("table")!.replaceWith(totalsTable(this.model, geometry.volumes));
    this.refreshNotes(geometry.missing);
    this.refreshSummary(geometry);
    if (this.view) this.view.setGeometry(geometry);
    else this.startPicture(geometry);
    if (this.selected) this.select(this.selected);
  }

  private startPicture(geometry: Geometry): void {
    byId("progress").classList.add("aside"); // what is left to do must not hide what is there
    if (!this.renderer) return;
    this.view = new View(byId("picture"), this.renderer, this.model, geometry, this.colouring);
    inspection.view = this.view;
    this.view.setVisible((element) => this.visibility.isVisible(element));
    this.view.onDrawn = () => axesPicture(byId("axes") as unknown as SVGElement, this.view!.cameras.axes());
    void this.view.firstPicture.then(() => mark("firstPicture"));
    this.listenToPointer(byId<HTMLCanvasElement>("canvas"));
    this.refreshToolbar();
  }

  private refreshSummary(geometry: Geometry): void {
    const { least, greatest } = geometry.bounds;
    const size = greatest.clone().sub(least).toArray().map((value) => formatNumber(value / 1000, 2));
    byId("summary").textContent = `${countElements(this.model.elements.length)} · ${text("extent")} ${size.join(" × ")} m`;
  }

  private select(element: Element | null): void {
    this.selected = element;
    byId("details").hidden = element === null; // before the tree, which it leaves less room for
    this.tree.select(element);
    this.view?.select(element);
    byId("spoken").textContent = "";
    if (!element) return;
    const volume = this.geometry ? this.geometry.volumes[element.index]! : null;
    byId("details-body").replaceChildren(
      ...detailRows(element, volume, {
        zoom: () => this.zoomToSelected(),
        isolate: () => this.visibility.isolate(element.section),
        hide: () => this.visibility.hideSection(element.section),
      }),
    );
    const length = `${formatNumber(element.length / 1000, 2)} m`;
    byId("spoken").textContent = text("selectedNow", element.section.text, element.ifcType, length);
  }

  private zoomToSelected(): void {
    if (this.selected) this.view?.fit([this.selected]);
  }

  private listenToPointer(canvas: HTMLCanvasElement): void {
    let down = { x: 0, y: 0 };
    const place = (event: PointerEvent) => ({ x: event.offsetX, y: event.offsetY });
    canvas.addEventListener("pointerdown", (event) => (down = place(event)));
    canvas.addEventListener("pointerup", (event) => {
      const up = place(event);
      const still = Math.hypot(up.x - down.x, up.y - down.y) < 4; // a drag turns, a click selects
      if (still && event.button === 0) this.select(this.view!.pick(up.x, up.y));
    });
    canvas.addEventListener("dblclick", () => this.zoomToSelected());
  }

  // --- toolbar, legend, notes ------------------------------------------------------------------

  private addToolbar(): void {
    const commands: [TextKey, string, () => void][] = [
      ["fit", "F", () => this.view?.fit()],
      ["iso", "1", () => this.look("iso")],
      ["front", "2", () => this.look("front")],
      ["side", "3", () => this.look("side")],
      ["top", "4", () => this.look("top")],
      ["perspective", "P", () => this.togglePerspective()],
      ["grid", "G", () => this.toggleGrid()],
      ["colours", "C", () => this.toggleColours()],
      ["help", "?", () => this.toggleHelp()],
    ];
    for (const [key, shortcut, run] of commands) {
      const node = button(text(key), run, { title: `${text(key)} (${shortcut})`, "aria-keyshortcuts": shortcut, "data-command": key });
      this.toolbar[key] = node;
      byId("toolbar").append(node);
    }
    this.refreshToolbar();
  }

  private refreshToolbar(grid = true): void {
    this.toolbar.perspective?.setAttribute("aria-pressed", String(this.view?.cameras.inPerspective ?? true));
    this.toolbar.grid?.setAttribute("aria-pressed", String(grid));
    this.toolbar.colours?.setAttribute("aria-pressed", String(this.colouring === "section"));
  }

  private look(name: ViewName): void {
    this.view?.look(name);
  }

  private togglePerspective(): void {
    this.view?.cameras.togglePerspective();
    this.toolbar.perspective?.setAttribute("aria-pressed", String(this.view?.cameras.inPerspective));
  }

  private toggleGrid(): void {
    this.toolbar.grid?.setAttribute("aria-pressed", String(this.view?.toggleGrid()));
  }

  private toggleColours(): void {
    this.colouring = this.colouring === "group" ? "section" : "group";
    this.toolbar.colours?.setAttribute("aria-pressed", String(this.colouring === "section"));
    this.tree.colour(this.colouring);
    this.view?.colour(this.colouring);
    this.refreshLegend();
  }

  private toggleHelp(): void {
    const help = byId<HTMLDialogElement>("help");
    if (help.open) help.close();
    else help.showModal();
  }

  private refreshLegend(): void {
    byId("legend-rows").replaceChildren(...legendRows(this.model, this.colouring));
  }

  private refreshNotes(missing: Element[]): void {
    const rows = [...noteRows(this.model, this.model.columns.complete, missing), ...toldNotes.map((note) => make("li", {}, note))];
    if (!this.renderer) rows.unshift(make("li", {}, text("noGraphics")));
    byId("notes").replaceChildren(...rows);
    byId("notes").hidden = rows.length === 0;
  }

  // --- keys ------------------------------------------------------------------------------------

  private key(event: KeyboardEvent): void {
    if (event.ctrlKey || event.metaKey || event.altKey || byId<HTMLDialogElement>("help").open) return;
    const turn = Math.PI / 24;
    const section = this.selected?.section;
    const anywhere: Record<string, () => void> = {
      f: () => this.view?.fit(),
      "1": () => this.look("iso"),
      "2": () => this.look("front"),
      "3": () => this.look("side"),
      "4": () => this.look("top"),
      p: () => this.togglePerspective(),
      g: () => this.toggleGrid(),
      c: () => this.toggleColours(),
      a: () => this.visibility.setAll(true),
      h: () => section && this.visibility.hideSection(section),
      i: () => section && this.visibility.isolate(section),
      z: () => this.zoomToSelected(),
      "+": () => this.view?.cameras.zoom(1.25),
      "-": () => this.view?.cameras.zoom(0.8),
      "?": () => this.toggleHelp(),
      escape: () => this.select(null),
    };
    const inPicture: Record<string, () => void> = {
      arrowleft: () => this.view?.cameras.turn(-turn, 0),
      arrowright: () => this.view?.cameras.turn(turn, 0),
      arrowup: () => this.view?.cameras.turn(0, turn),
      arrowdown: () => this.view?.cameras.turn(0, -turn),
    };
    const key = event.key.toLowerCase();
    const run = anywhere[key] ?? (document.activeElement === byId("canvas") ? inPicture[key] : undefined);
    if (!run) return;
    event.preventDefault();
    run();
  }
}

// --- the page around the model -----------------------------------------------------------------

/** Fills in what the page says before there is a model. */
function labelShell(): void {
  document.documentElement.lang = language;
  const name = embedded("model-name");
  document.title = name === "" ? text("appName") : `${name} – ${text("appName")}`;
  byId("title").textContent = name === "" ? text("appName") : name;
  for (const node of document.querySelectorAll<HTMLElement>("[data-text]")) node.textContent = text(node.dataset["text"] as TextKey);
  for (const node of document.querySelectorAll<HTMLElement>("[data-label]")) {
    node.setAttribute("aria-label", text(node.dataset["label"] as TextKey));
  }
  byId("progress-text").textContent = text("loading");
  byId("progress-bar").setAttribute("aria-label", text("progress"));
  labelTabs();
  labelHelp();
}

function labelTabs(): void {
  const tabs = [...document.querySelectorAll<HTMLButtonElement>("[role=tab]")];
  const open = (chosen: HTMLButtonElement) => {
    for (const tab of tabs) {
      tab.setAttribute("aria-selected", String(tab === chosen));
      tab.tabIndex = tab === chosen ? 0 : -1;
      byId(tab.getAttribute("aria-controls")!).hidden = tab !== chosen;
    }
  };
  tabs.forEach((tab, i) => {
    tab.addEventListener("click", () => open(tab));
    tab.addEventListener("keydown", (event) => {
      if (event.key !== "ArrowLeft" && event.key !== "ArrowRight") return;
      const next = tabs[(i + 1) % tabs.length]!; // there are two
      open(next);
      next.focus();
    });
  });
  open(tabs[0]!);
}

function labelHelp(): void {
  const keys: [string, TextKey][] = [
    ["F", "keyFit"],
    ["1 2 3 4", "keyViews"],
    ["P", "keyPerspective"],
    ["G", "keyGrid"],
    ["C", "keyColours"],
    ["A", "keyShowAll"],
    ["H", "keyHide"],
    ["I", "keyIsolate"],
    ["Z", "keyZoom"],
    ["+ −", "keyPlus"],
    ["← → ↑ ↓", "keyArrows"],
    ["Esc", "keyEscape"],
    ["?", "keyHelp"],
  ];
  const help = byId<HTMLDialogElement>("help");
  help.append(
    make("h2", {}, text("help")),
    make("dl", {}, ...keys.flatMap(([key, meaning]) => [make("dt", {}, make("kbd", {}, key)), make("dd", {}, text(meaning))])),
    make("p", { class: "quiet" }, text("credits")),
    button(text("close"), () => help.close()),
  );
}

/** What stands in a data block of the page; "" when nobody has filled its marker in. */
function takeBlock(id: string): string {
  const block = byId(id);
  const content = (block.textContent ?? "").trim();
  block.textContent = ""; // megabytes that nobody needs twice
  return content.startsWith("@") ? "" : content;
}

function embedded(id: string): string {
  return new TextDecoder().decode(fromBase64(takeBlock(id)));
}

function fail(key: TextKey, detail = ""): void {
  inspection.failed = key;
  byId("progress").hidden = false;
  byId("progress").classList.remove("aside");
  byId("progress-bar").hidden = true;
  byId("progress-text").textContent = text(key);
  if (detail !== "") byId("progress-text").append(make("small", {}, detail));
}

start();
