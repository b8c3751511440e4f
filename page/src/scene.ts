// The picture: what is drawn, and what stands under the pointer.
//
// A bar is drawn as a solid or as a line; which, is chosen anew for each picture. Other drawings than the first of a
// picture add to it.

import {
  BufferAttribute,
  BufferGeometry,
  Color,
  GridHelper,
  LineBasicMaterial,
  LineSegments,
  Mesh,
  MeshLambertMaterial,
  Points,
  PointsMaterial,
  Scene,
  Vector3,
  type WebGLRenderer,
} from "three";
import { LineMaterial } from "three/addons/lines/LineMaterial.js";
import { LineSegments2 } from "three/addons/lines/LineSegments2.js";
import { LineSegmentsGeometry } from "three/addons/lines/LineSegmentsGeometry.js";
import { Bodies, drawOnly } from "./bodies";
import type { Cameras, ViewName } from "./cameras";
import { Detail, type Part } from "./detail";
import type { Geometry } from "./geometry";
import { fillHost, makeLights, makeLines } from "./graphics";
import type { Element, Model } from "./model";
import { type Colouring, colourOf, selectedColour, unknownColour } from "./palette";
import { nearestAxis, nearestOnRay } from "./picking";

export class View {
  /** Called after each drawing. */
  onDrawn: () => void = () => undefined;
  /** Resolves when the first picture is there. */
  readonly firstPicture: Promise<void>;
  detail: Detail;
  private readonly scene = new Scene();
  private readonly lights = makeLights();
  private bodies: Bodies;
  private readonly lines: LineSegments;
  private readonly unknownLines = fatLines(unknownColour, true);
  private readonly selectedMesh: Mesh;
  private readonly selectedLines = fatLines(selectedColour, false);
  private readonly selectedEnds: Points;
  private readonly grid: GridHelper;
  private readonly visible: Uint8Array;
  private selected: Element | null = null;
  private tellFirst: () => void = () => undefined;
  private showsGrid = true;
  private stale = true; // the picture no longer shows what it should
  private untried = true; // there is something the graphics have not made ready
  private scheduled = false; // a drawing will begin
  private busy = false; // a drawing is under way
  private disposed = false;
  private readonly observer: ResizeObserver;

  constructor(
    private readonly host: HTMLElement,
    private readonly renderer: WebGLRenderer,
    readonly cameras: Cameras,
    private readonly model: Model,
    private geometry: Geometry,
    private colouring: Colouring,
  ) {
    this.firstPicture = new Promise((resolve) => (this.tellFirst = resolve));
    this.visible = new Uint8Array(model.elements.length).fill(1);
    this.detail = new Detail(geometry);
    this.detail.setVisible(this.visible);
    cameras.onChange = () => this.redraw();

    this.bodies = new Bodies(geometry);
    this.lines = makeLines(this.axisPoints(model.elements));

    this.selectedMesh = new Mesh(new BufferGeometry(), new MeshLambertMaterial({ color: selectedColour, emissive: 0x5a3c00 }));
    this.selectedMesh.matrixAutoUpdate = false;
    this.selectedEnds = new Points(
      new BufferGeometry(),
      new PointsMaterial({ color: 0x1c2733, size: 7, sizeAttenuation: false, depthTest: false }),
    );

    this.grid = makeGrid(geometry.bounds.least, geometry.bounds.greatest);
    this.scene.add(...this.bodies.objects);
    for (const object of [this.unknownLines, this.selectedMesh, this.selectedLines, this.selectedEnds]) {
      object.frustumCulled = false; // its bounds follow nothing that is hidden or selected
      this.scene.add(object);
    }
    this.scene.add(this.lines, this.grid, this.lights.sky, this.lights.head, this.lights.head.target);

    this.colour(colouring);
    this.showSelected();
    this.resize();
    this.observer = new ResizeObserver(() => this.resize());
    this.observer.observe(host);
  }

  /** Gives back what the graphics hold, and draws no more; the renderer stays for the next view. */
  dispose(): void {
    this.disposed = true;
    this.observer.disconnect();
    this.scene.traverse((object) => {
      const { geometry, material } = object as Mesh;
      geometry?.dispose();
      for (const each of [material ?? []].flat()) each.dispose();
    });
    this.renderer.clear();
  }

  // --- what is drawn ---------------------------------------------------------------------------

  /** Takes over solids that were not there before. */
  setGeometry(geometry: Geometry): void {
    this.geometry = geometry;
    this.scene.remove(...this.bodies.objects);
    this.bodies.dispose();
    this.bodies = new Bodies(geometry);
    this.scene.add(...this.bodies.objects);
    const { budget } = this.detail;
    this.detail = new Detail(geometry);
    this.detail.budget = budget;
    this.detail.setVisible(this.visible);
    this.cameras.radius = geometry.bounds.radius;
    this.untried = true;
    this.colour(this.colouring);
    this.showSelected();
  }

  colour(colouring: Colouring): void {
    this.colouring = colouring;
    const ofLines = this.lines.geometry.getAttribute("color") as BufferAttribute;
    const known = new Map<string, Color>(); // colours are kept as linear light, as the shaders need them
    for (const element of this.model.elements) {
      const name = colourOf(element, colouring);
      let colour = known.get(name);
      if (!colour) known.set(name, (colour = new Color(name)));
      this.bodies.colour(element.index, colour);
      fillColour(ofLines, element.index * 2, 2, colour);
    }
    ofLines.needsUpdate = true;
    this.redraw();
  }

  setVisible(isVisible: (element: Element) => boolean): void {
    for (const element of this.model.elements) this.visible[element.index] = isVisible(element) ? 1 : 0;
    this.detail.setVisible(this.visible);
    this.setSegments(this.unknownLines, this.shown().filter((element) => element.unknown));
    this.showSelected();
    this.redraw();
  }

  private shown(): Element[] {
    return this.model.elements.filter((element) => this.visible[element.index]);
  }

  select(element: Element | null): void {
    this.selected = element;
    this.showSelected();
    this.redraw();
  }

  private showSelected(): void {
    const element = this.selected && this.visible[this.selected.index] ? this.selected : null;
    for (const object of [this.selectedMesh, this.selectedLines, this.selectedEnds]) object.visible = element !== null;
    if (!element) return;
    const { shapes, shapeOf, matrices } = this.geometry;
    const shape = shapes[shapeOf[element.index]!];
    this.selectedMesh.visible = shape !== undefined;
    if (shape) {
      this.selectedMesh.geometry.dispose();
      this.selectedMesh.geometry = new BufferGeometry();
      this.selectedMesh.geometry.setAttribute("position", new BufferAttribute(shape.positions, 3));
      this.selectedMesh.geometry.setAttribute("normal", new BufferAttribute(shape.normals, 4, true));
      this.selectedMesh.geometry.setIndex(new BufferAttribute(shape.indices, 1));
      this.selectedMesh.matrix.fromArray(matrices, element.index * 16);
    }
    this.setSegments(this.selectedLines, [element]);
    this.selectedEnds.geometry.setAttribute("position", new BufferAttribute(this.axisPoints([element]), 3));
  }

  private setSegments(lines: LineSegments2, elements: Element[]): void {
    lines.visible = elements.length > 0;
    if (!lines.visible) return;
    lines.geometry.dispose();
    lines.geometry = new LineSegmentsGeometry();
    lines.geometry.setPositions(this.axisPoints(elements));
  }

  /** Both ends of each element's axis, relative to the centre. */
  private axisPoints(elements: Element[]): Float32Array {
    const { centre } = this.geometry;
    const points = new Float32Array(elements.length * 6);
    elements.forEach(({ start, end, lost }, i) => {
      if (lost) return;
      for (let axis = 0; axis < 3; axis++) {
        points[i * 6 + axis] = start[axis]! - centre[axis]!;
        points[i * 6 + 3 + axis] = end[axis]! - centre[axis]!;
      }
    });
    return points;
  }

  toggleGrid(): boolean {
    this.showsGrid = !this.showsGrid;
    this.redraw();
    return this.showsGrid;
  }

  look(name: ViewName): void {
    this.cameras.look(name, this.geometry.bounds.of(this.shown()));
  }

  /** Frames some elements, or what is visible. */
  fit(elements?: Element[]): void {
    this.cameras.fit(this.geometry.bounds.of(elements ?? this.shown()));
  }

  // --- the pointer -----------------------------------------------------------------------------

  /** The visible element at a place of the picture, in pixels from its upper left corner. */
  pick(x: number, y: number): Element | null {
    const shown = this.shown();
    const ray = this.cameras.rayAt(x, y);
    const hit = nearestOnRay(ray, shown, this.geometry);
    // A bar that is thinner than a pixel, or drawn as a thick line, is hit beside its mesh.
    const thin = hit ? shown.filter((element) => element.unknown) : shown;
    const beside = nearestAxis(ray, thin, this.geometry.centre, this.cameras, x, y);
    return (beside && beside.distance < (hit?.distance ?? Infinity) ? beside : hit)?.element ?? null;
  }

  /** Where the middle of an element's axis lies in the picture, in pixels. */
  project(element: Element): { x: number; y: number } {
    const [ax, ay, az, bx, by, bz] = this.axisPoints([element]) as unknown as [number, number, number, number, number, number];
    return this.cameras.project(new Vector3((ax + bx) / 2, (ay + by) / 2, (az + bz) / 2));
  }

  // --- drawing ---------------------------------------------------------------------------------

  private resize(): void {
    if (fillHost(this.renderer, this.host)) this.redraw();
  }

  /** Begins a new picture soon. While a drawing is under way none is added, so that they do not pile up. */
  private redraw(): void {
    this.stale = true;
    this.schedule();
  }

  private schedule(): void {
    if (this.scheduled || this.busy || this.disposed) return;
    this.scheduled = true;
    requestAnimationFrame(() => void this.step());
  }

  /** Begins a picture or continues one, and goes on until nothing is left to draw. */
  private async step(): Promise<void> {
    this.scheduled = false;
    if (this.disposed) return;
    this.busy = true;
    while (this.untried) {
      await this.tryOut();
      if (this.disposed) return;
    }
    const start = performance.now();
    if (this.stale) this.draw();
    else this.render(this.detail.next(), false);
    await this.finished();
    this.busy = false;
    this.detail.learn(performance.now() - start);
    this.tellFirst();
    if (this.stale || !this.detail.finished) this.schedule();
  }

  /** Resolves when everything that was asked of the graphics is done. */
  private async finished(): Promise<void> {
    const gl = this.renderer.getContext() as WebGL2RenderingContext;
    const done = gl.fenceSync(gl.SYNC_GPU_COMMANDS_COMPLETE, 0);
    gl.flush();
    while (done && !gl.isContextLost() && gl.getSyncParameter(done, gl.SYNC_STATUS) !== gl.SIGNALED) {
      await new Promise((resolve) => setTimeout(resolve, 4));
    }
    gl.deleteSync(done);
  }

  /** Lets the graphics make their programs, and what the first solid takes, while the page goes on: both take a tenth of a second in software. */
  private async tryOut(): Promise<void> {
    this.untried = false;
    this.renderer.compile(this.scene, this.cameras.prepared());
    await this.finished();
    const { shapes, shapeOf } = this.geometry;
    const solid = shapeOf.findIndex((shape) => shapes[shape] !== undefined);
    if (solid < 0 || this.disposed) return;
    this.render({ solids: Uint32Array.of(solid), lines: new Uint32Array() }, false); // into the picture that is there
    await this.finished();
  }

  /** Begins a picture at once. */
  draw(): void {
    this.stale = false;
    const camera = this.cameras.prepared();
    // The light comes over the viewer's left shoulder, so that no view is dark.
    this.lights.head.position.set(-0.5, 0.6, 1).applyQuaternion(camera.quaternion);
    this.render(this.detail.begin(this.cameras, camera), true);
    this.onDrawn();
  }

  /** Draws some elements, into an empty picture or into the one that is there. */
  private render({ solids, lines }: Part, empty: boolean): void {
    this.bodies.show(solids);
    const ends = this.lines.geometry.getIndex()!.array as Uint32Array;
    for (let i = 0; i < lines.length; i++) {
      ends[i * 2] = lines[i]! * 2;
      ends[i * 2 + 1] = lines[i]! * 2 + 1;
    }
    drawOnly(this.lines, lines.length * 2);
    this.grid.visible = this.showsGrid && empty;
    if (empty) this.renderer.clear();
    this.renderer.render(this.scene, this.cameras.prepared());
  }

  /** True when the picture shows all it should. */
  get settled(): boolean {
    return !this.stale && !this.busy && !this.scheduled && this.detail.finished;
  }

  get drawCalls(): number {
    return this.renderer.info.render.calls;
  }

  get triangles(): number {
    return this.renderer.info.render.triangles;
  }
}

function fillColour(attribute: BufferAttribute, start: number, count: number, { r, g, b }: Color): void {
  const bytes = attribute.array as Uint8Array;
  for (let i = start * 4; i < (start + count) * 4; i += 4) {
    bytes[i] = r * 255;
    bytes[i + 1] = g * 255;
    bytes[i + 2] = b * 255;
  }
}

function fatLines(colour: string, depthTest: boolean): LineSegments2 {
  const lines = new LineSegments2(new LineSegmentsGeometry(), new LineMaterial({ color: colour, linewidth: 3, depthTest }));
  lines.renderOrder = depthTest ? 0 : 1;
  lines.visible = false;
  return lines;
}

/** A grid on the floor, in round steps of some sixth of the structure or less. */
function makeGrid(least: Vector3, greatest: Vector3): GridHelper {
  const size = new Vector3().subVectors(greatest, least);
  const span = Math.max(size.x, size.y, 500);
  const steps = [100, 500, 1000, 5000, 10000, 50000, 100000];
  const step = steps.findLast((s) => span / s >= 6) ?? 100;
  const count = Math.min(Math.ceil(span / step) + 4, 200);
  const grid = new GridHelper(count * step, count, 0xc3ccd6, 0xdbe1e8);
  grid.rotation.x = Math.PI / 2;
  grid.position.addVectors(least, greatest).divideScalar(2).setZ(least.z);
  (grid.material as LineBasicMaterial).depthWrite = false;
  grid.renderOrder = -1;
  return grid;
}
