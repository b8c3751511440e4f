// Puts the page together: reads the embedded file, fills the lists, starts the picture.

import type { ViewName } from "./cameras";
import { button, byId, make } from "./dom";
import { Engine } from "./engine";
import { buildGeometry, type Geometry } from "./geometry";
import { type Element, type Model, readModel } from "./model";
import type { Colouring } from "./palette";
import { axesPicture, detailRows, legendRows, noteRows, totalsTable } from "./panel";
import { View } from "./scene";
import { openExchangeFile } from "./step";
import { countElements, formatNumber, language, text, type TextKey } from "./texts";
import { Tree } from "./tree";
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
const toldNotes = textOf(embedded("model-notes"))
  .split("\n")
  .filter((note) => note !== "");

const mark = (name: string) => (inspection.marks[name] = Math.round(performance.now()));

async function main(): Promise<void> {
  mark("started");
  labelShell();
  const bytes = embedded("model");
  if (!bytes) return fail("noModel");
  mark("decoded");
  await painted();

  const file = openExchangeFile(bytes);
  const model = readModel(file.text);
  inspection.model = model;
  mark("parsed");
  const page = new Page(model, file.complete);
  page.progress(text("meshing"));
  await painted();

  const engine = await startEngine(file.bytes);
  mark("opened");
  const geometry = await buildGeometry(model, engine, async (done) => {
    page.progress(`${text("meshing")} ${formatNumber((100 * done) / model.elements.length)} %`);
    await nextTask();
  });
  engine?.close();
  mark("meshed");
  page.addGeometry(geometry);
  mark("scene");
  await inspection.view?.firstPicture;
  mark("firstPicture");
  inspection.ready = true;
}

/** Null when the engine cannot read the file, or cannot run here. */
async function startEngine(file: Uint8Array): Promise<Engine | null> {
  try {
    const engine = await Engine.start(await inflate(byId("wasm").textContent ?? ""));
    engine.open(file);
    return engine;
  } catch {
    return null;
  }
}

class Page {
  private readonly visibility: Visibility;
  private readonly tree: Tree;
  private view: View | null = null;
  private geometry: Geometry | null = null;
  private selected: Element | null = null;
  private colouring: Colouring;
  private toolbar: Partial<Record<TextKey, HTMLButtonElement>> = {};

  constructor(
    private readonly model: Model,
    private readonly complete: boolean,
  ) {
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

  progress(message: string): void {
    byId("progress").textContent = message;
  }

  addGeometry(geometry: Geometry): void {
    this.geometry = geometry;
    inspection.geometry = geometry;
    byId("totals").querySelector("table")!.replaceWith(totalsTable(this.model, geometry.volumes));
    this.refreshNotes(geometry.missing);
    byId("progress").hidden = true;
    const canvas = byId<HTMLCanvasElement>("canvas");
    try {
      this.view = new View(byId("picture"), canvas, this.model, geometry, this.colouring);
    } catch {
      byId("notes").prepend(make("li", {}, text("noGraphics")));
      byId("notes").hidden = false;
      canvas.hidden = true;
      return;
    }
    inspection.view = this.view;
    const { least, greatest } = geometry.bounds;
    const size = greatest.clone().sub(least).toArray().map((value) => formatNumber(value / 1000, 2));
    byId("summary").textContent += ` · ${text("extent")} ${size.join(" × ")} m`;
    this.view.setVisible((element) => this.visibility.isVisible(element));
    this.view.onDrawn = () => axesPicture(byId("axes") as unknown as SVGElement, this.view!.cameras.axes());
    this.listenToPointer(canvas);
    this.refreshToolbar();
    if (this.selected) this.select(this.selected);
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
    const rows = [...noteRows(this.model, this.complete, missing), ...toldNotes.map((note) => make("li", {}, note))];
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
  const name = textOf(embedded("model-name"));
  document.title = name === "" ? text("appName") : `${name} – ${text("appName")}`;
  byId("title").textContent = name === "" ? text("appName") : name;
  for (const node of document.querySelectorAll<HTMLElement>("[data-text]")) node.textContent = text(node.dataset["text"] as TextKey);
  for (const node of document.querySelectorAll<HTMLElement>("[data-label]")) {
    node.setAttribute("aria-label", text(node.dataset["label"] as TextKey));
  }
  byId("progress").textContent = text("loading");
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

/** The bytes of a data block of the page; null when nobody has filled its marker in. */
function embedded(id: string): Uint8Array | null {
  const block = byId(id);
  const content = (block.textContent ?? "").trim();
  block.textContent = ""; // megabytes that nobody needs twice
  return content === "" || content.startsWith("@") ? null : fromBase64(content);
}

function textOf(bytes: Uint8Array | null): string {
  return bytes ? new TextDecoder().decode(bytes) : "";
}

function fromBase64(content: string): Uint8Array<ArrayBuffer> {
  const binary = atob(content);
  const bytes = new Uint8Array(binary.length);
  for (let i = 0; i < binary.length; i++) bytes[i] = binary.charCodeAt(i);
  return bytes;
}

async function inflate(content: string): Promise<Uint8Array> {
  const stream = new Blob([fromBase64(content.trim())]).stream().pipeThrough(new DecompressionStream("gzip"));
  return new Uint8Array(await new Response(stream).arrayBuffer());
}

/** Resolves when what was changed so far is on the screen. */
function painted(): Promise<void> {
  return new Promise((resolve) => requestAnimationFrame(() => setTimeout(resolve)));
}

function nextTask(): Promise<void> {
  return new Promise((resolve) => setTimeout(resolve));
}

function fail(key: TextKey): void {
  inspection.failed = key;
  byId("progress").hidden = false;
  byId("progress").textContent = text(key);
}

main().catch((error: unknown) => {
  fail("unreadable");
  byId("progress").append(make("small", {}, String(error)));
});
