// One model as the page shows it: lists, totals, details, picture, toolbar, keys.

import type { WebGLRenderer } from "three";
import { Cameras, type ViewName } from "./cameras";
import { button, byId, make } from "./dom";
import type { Geometry } from "./geometry";
import { inspection, mark } from "./inspection";
import type { Element, Model } from "./model";
import type { Colouring } from "./palette";
import { axesPicture, detailRows, legendRows, noteRows, totalsTable } from "./panel";
import { View } from "./scene";
import { Sketch } from "./sketch";
import { countElements, formatNumber, text, type TextKey } from "./texts";
import { Tree } from "./tree";
import { Visibility } from "./visibility";

export class Page {
  private readonly visibility: Visibility;
  private tree: Tree | null = null; // with all other lists
  renderer: WebGLRenderer | null = null; // none before the graphics start, or where the browser has none
  private cameras: Cameras | null = null;
  private sketch: Sketch | null = null; // until there is a view
  private view: View | null = null;
  private solids: Geometry | null = null;
  axes: Geometry | null = null; // the same without solids
  private selected: Element | null = null;
  private colouring: Colouring;
  private toolbar: Partial<Record<TextKey, HTMLButtonElement>> = {};

  private readonly closing = new AbortController(); // takes back what is listened to

  /** `told` are lines on the model from elsewhere. */
  constructor(
    readonly model: Model,
    private readonly told: string[],
  ) {
    inspection.model = model;
    // One group only, as in a file without assemblies: sections tell more than groups.
    this.colouring = model.groups.length > 1 ? "group" : "section";
    this.visibility = new Visibility(model);
  }

  /** Lists, totals and commands: once. */
  fillLists(): void {
    if (this.tree) return;
    byId("structure").append(
      make(
        "div",
        { class: "tools" },
        button(text("showAll"), () => this.visibility.setAll(true)),
        button(text("hideAll"), () => this.visibility.setAll(false)),
      ),
    );
    this.tree = new Tree(byId("structure"), this.model, this.visibility, (element) => this.select(element));
    this.tree.colour(this.colouring);
    this.visibility.onChange = () => {
      this.tree?.refresh();
      this.view?.setVisible((element) => this.visibility.isVisible(element));
    };
    byId("totals").append(totalsTable(this.model, null), make("p", { class: "quiet" }, text("totalsNote")));
    byId("summary").textContent = countElements(this.model.elements.length);
    this.refreshLegend();
    this.refreshNotes([]);
    this.addToolbar();
    byId("close-details").addEventListener("click", () => this.select(null), { signal: this.closing.signal });
    document.addEventListener("keydown", (event) => this.key(event), { signal: this.closing.signal });
    inspection.select = (element) => this.select(element);
    inspection.visible = () => this.model.elements.filter((element) => this.visibility.isVisible(element)).length;
  }

  get geometry(): Geometry | null {
    return this.solids;
  }

  /** Resolves when the graphics have drawn, and at once where they cannot. */
  get firstPicture(): Promise<void> {
    return this.view?.firstPicture ?? Promise.resolve();
  }

  /** Leaves the page as it was before. */
  close(): void {
    this.closing.abort();
    this.removeSketch();
    this.view?.dispose();
    this.cameras?.dispose();
    for (const list of ["structure", "totals", "legend-rows", "toolbar", "details-body", "axes", "notes", "spoken", "summary"]) {
      byId(list).replaceChildren();
    }
    byId("details").hidden = true;
    byId("notes").hidden = true;
    inspection.view = inspection.model = inspection.geometry = undefined;
  }

  /** Draws the elements by their axes before the graphics start; resolves when people see them. */
  drawSketch(axes: Geometry): Promise<void> {
    this.axes = axes;
    this.sketch = new Sketch(byId("picture"), this.model, this.colouring);
    return this.sketch.draw(this.lookAt(axes), axes.centre);
  }

  /** The same with the graphics, while no solid is there. */
  drawLines(axes: Geometry, renderer: WebGLRenderer | null): void {
    this.renderer = renderer;
    if (renderer) this.startPicture(axes, renderer);
    else this.removeSketch(); // it answers to nobody
  }

  private removeSketch(): void {
    this.sketch?.remove();
    this.sketch = null; // and the megabytes of its image
  }

  private lookAt({ bounds }: Geometry): Cameras {
    this.cameras = new Cameras(byId("picture"), byId<HTMLCanvasElement>("canvas"), bounds.radius);
    this.cameras.look("iso", bounds.of(null));
    return this.cameras;
  }

  /** Takes what solids there are; again when more have come. */
  addGeometry(geometry: Geometry): void {
    this.solids = geometry;
    inspection.geometry = geometry;
    byId("totals").querySelector("table")!.replaceWith(totalsTable(this.model, geometry.volumes));
    this.refreshNotes(geometry.missing);
    this.refreshSummary(geometry);
    if (this.view) this.view.setGeometry(geometry);
    else if (this.renderer) this.startPicture(geometry, this.renderer);
    if (this.selected) this.select(this.selected);
  }

  private startPicture(geometry: Geometry, renderer: WebGLRenderer): void {
    const cameras = this.cameras ?? this.lookAt(geometry);
    this.view = new View(byId("picture"), renderer, cameras, this.model, geometry, this.colouring);
    inspection.view = this.view;
    this.view.setVisible((element) => this.visibility.isVisible(element));
    this.view.onDrawn = () => axesPicture(byId("axes") as unknown as SVGElement, this.view!.cameras.axes());
    void this.view.firstPicture.then(() => {
      mark("turnable");
      this.removeSketch();
    });
    this.listenToPointer(byId<HTMLCanvasElement>("canvas"));
    this.refreshToolbar();
  }

  private refreshSummary(geometry: Geometry): void {
    const { least, greatest } = geometry.bounds;
    const size = greatest.clone().sub(least).toArray().map((value) => formatNumber(value / 1000, 2));
    byId("summary").textContent = `${countElements(this.model.elements.length)} · ${text("extent")} ${size.join(" × ")} m`;
  }

  select(element: Element | null): void {
    this.selected = element;
    byId("details").hidden = element === null; // before the tree, which it leaves less room for
    this.tree?.select(element);
    this.view?.select(element);
    byId("spoken").textContent = "";
    if (!element) return;
    const volume = this.solids ? this.solids.volumes[element.index]! : null;
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

  zoomToSelected(): void {
    if (this.selected) this.view?.fit([this.selected]);
  }

  private listenToPointer(canvas: HTMLCanvasElement): void {
    let down = { x: 0, y: 0 };
    const place = (event: PointerEvent) => ({ x: event.offsetX, y: event.offsetY });
    const { signal } = this.closing;
    canvas.addEventListener("pointerdown", (event) => (down = place(event)), { signal });
    canvas.addEventListener("pointerup", (event) => {
      const up = place(event);
      const still = Math.hypot(up.x - down.x, up.y - down.y) < 4; // a drag turns, a click selects
      if (still && event.button === 0) this.select(this.view!.pick(up.x, up.y));
    }, { signal });
    canvas.addEventListener("dblclick", () => this.zoomToSelected(), { signal });
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
    this.tree?.colour(this.colouring);
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
    const rows = [...noteRows(this.model, this.model.columns.complete, missing), ...this.told.map((note) => make("li", {}, note))];
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
