// The picture: cameras, drawing, finding what stands under the pointer.
//
// All bars are one mesh and one set of edges. Hiding rewrites the list of triangles, which takes
// milliseconds even for 10,000 bars, and keeps the number of draw calls at a handful.

import {
  BufferAttribute,
  BufferGeometry,
  Color,
  DirectionalLight,
  GridHelper,
  HemisphereLight,
  LineBasicMaterial,
  LineSegments,
  MOUSE,
  Mesh,
  MeshLambertMaterial,
  OrthographicCamera,
  PerspectiveCamera,
  Points,
  PointsMaterial,
  Raycaster,
  Scene,
  Vector2,
  Vector3,
  WebGLRenderer,
} from "three";
import { OrbitControls } from "three/addons/controls/OrbitControls.js";
import { LineMaterial } from "three/addons/lines/LineMaterial.js";
import { LineSegments2 } from "three/addons/lines/LineSegments2.js";
import { LineSegmentsGeometry } from "three/addons/lines/LineSegmentsGeometry.js";
import type { Geometry, Range } from "./geometry";
import type { Element, Model } from "./model";
import { type Colouring, colourOf, selectedColour, unknownColour } from "./palette";
import { nearestOnRay, screenDistance } from "./picking";

export type ViewName = "iso" | "front" | "side" | "top";

/** From where each standard view looks; the front is seen along Y, the side against X. */
const viewDirections: Record<ViewName, Vector3> = {
  iso: new Vector3(-1, -1.4, 0.9),
  front: new Vector3(0, -1, 0),
  side: new Vector3(1, 0, 0),
  // Not quite from above: the little that is left keeps Y upwards.
  top: new Vector3(0, -1e-4, 1),
};

const fieldOfView = 35; // degrees
const margin = 1.12; // room around what a fit frames
const edgeShade = 0.7;
const pickTolerance = 6; // pixels beside a thin bar that still hit it

export class View {
  onCamera: () => void = () => undefined;
  private readonly renderer: WebGLRenderer;
  private readonly scene = new Scene();
  private readonly perspective = new PerspectiveCamera(fieldOfView);
  private readonly orthographic = new OrthographicCamera();
  private camera: PerspectiveCamera | OrthographicCamera = this.perspective;
  private readonly controls: OrbitControls;
  private readonly headlight = new DirectionalLight(0xffffff, 2.1);
  private readonly bars: Mesh;
  private readonly edges: LineSegments;
  private readonly unknownLines: LineSegments2;
  private readonly selectedMesh: Mesh;
  private readonly selectedLines: LineSegments2;
  private readonly selectedEnds: Points;
  private readonly grid: GridHelper;
  private readonly visible: Uint8Array;
  private readonly radius: number; // of a sphere about the centre that holds the whole structure
  private selected: Element | null = null;
  private queued = false;

  constructor(
    private readonly host: HTMLElement,
    canvas: HTMLCanvasElement,
    private readonly model: Model,
    private readonly geometry: Geometry,
    colouring: Colouring,
  ) {
    this.renderer = new WebGLRenderer({ canvas, antialias: true, alpha: true });
    this.renderer.setPixelRatio(Math.min(devicePixelRatio, 2));
    this.visible = new Uint8Array(model.elements.length).fill(1);

    const positions = new BufferAttribute(geometry.positions, 3);
    const body = new BufferGeometry();
    body.setAttribute("position", positions);
    body.setAttribute("normal", new BufferAttribute(geometry.normals, 4, true));
    body.setAttribute("color", new BufferAttribute(new Uint8Array((geometry.positions.length / 3) * 4), 4, true));
    body.setIndex(new BufferAttribute(geometry.indices.slice(), 1));
    this.bars = new Mesh(
      body,
      // Pushed back a little, so that the edges on it are drawn whole.
      new MeshLambertMaterial({ vertexColors: true, polygonOffset: true, polygonOffsetFactor: 1, polygonOffsetUnits: 1 }),
    );

    const outline = new BufferGeometry();
    outline.setAttribute("position", positions);
    outline.setAttribute("color", body.getAttribute("color"));
    outline.setIndex(new BufferAttribute(geometry.edges.slice(), 1));
    const shade = new Color().setScalar(edgeShade);
    this.edges = new LineSegments(outline, new LineBasicMaterial({ vertexColors: true, color: shade }));

    const marked = new BufferGeometry();
    marked.setAttribute("position", positions);
    marked.setAttribute("normal", body.getAttribute("normal"));
    this.selectedMesh = new Mesh(marked, new MeshLambertMaterial({ color: selectedColour, emissive: 0x5a3c00 }));
    this.selectedLines = fatLines(selectedColour, 3, false);
    this.selectedEnds = new Points(
      new BufferGeometry(),
      new PointsMaterial({ color: 0x1c2733, size: 7, sizeAttenuation: false, depthTest: false }),
    );
    this.unknownLines = fatLines(unknownColour, 3, true);

    const { size, floor, radius } = this.measure();
    this.radius = radius;
    this.grid = makeGrid(size, floor);
    for (const object of [this.bars, this.edges, this.selectedMesh, this.selectedLines, this.selectedEnds, this.unknownLines]) {
      object.frustumCulled = false; // its bounds follow nothing that is hidden or selected
      this.scene.add(object);
    }
    this.scene.add(this.grid, new HemisphereLight(0xffffff, 0xb8c2cc, 1.5), this.headlight, this.headlight.target);

    for (const camera of [this.perspective, this.orthographic]) camera.up.set(0, 0, 1);
    this.controls = new OrbitControls(this.camera, canvas);
    this.controls.zoomToCursor = true;
    this.controls.mouseButtons = { LEFT: MOUSE.ROTATE, MIDDLE: MOUSE.PAN, RIGHT: MOUSE.PAN };
    this.controls.addEventListener("change", () => this.redraw());

    this.colour(colouring);
    this.applyVisible();
    this.select(null);
    new ResizeObserver(() => this.resize()).observe(host);
    this.resize();
    this.look("iso");
  }

  // --- what is drawn ---------------------------------------------------------------------------

  colour(colouring: Colouring): void {
    const colours = this.bars.geometry.getAttribute("color") as BufferAttribute;
    const bytes = colours.array as Uint8Array;
    const known = new Map<string, Color>(); // colours are kept as linear light, as the shaders need them
    for (const element of this.model.elements) {
      const name = colourOf(element, colouring);
      let colour = known.get(name);
      if (!colour) known.set(name, (colour = new Color(name)));
      const { start, count } = this.geometry.vertexRange[element.index]!;
      const [r, g, b] = [colour.r, colour.g, colour.b].map((part) => Math.round(part * 255)) as [number, number, number];
      for (let i = start * 4; i < (start + count) * 4; i += 4) {
        bytes[i] = r;
        bytes[i + 1] = g;
        bytes[i + 2] = b;
        bytes[i + 3] = 255;
      }
    }
    colours.needsUpdate = true;
    this.redraw();
  }

  setVisible(isVisible: (element: Element) => boolean): void {
    for (const element of this.model.elements) this.visible[element.index] = isVisible(element) ? 1 : 0;
    this.applyVisible();
  }

  private applyVisible(): void {
    this.keepVisible(this.bars.geometry, this.geometry.indices, this.geometry.indexRange);
    this.keepVisible(this.edges.geometry, this.geometry.edges, this.geometry.edgeRange);
    this.setSegments(this.unknownLines, this.model.elements.filter((e) => e.unknown && this.visible[e.index]));
    this.showSelected();
    this.redraw();
  }

  /** Moves the entries of the visible elements to the front and draws only those. */
  private keepVisible(target: BufferGeometry, all: Uint32Array, ranges: Range[]): void {
    const index = target.getIndex()!;
    const kept = index.array as Uint32Array;
    let length = 0;
    for (let i = 0; i < ranges.length; i++) {
      if (!this.visible[i]) continue;
      const { start, count } = ranges[i]!;
      kept.set(all.subarray(start, start + count), length);
      length += count;
    }
    index.needsUpdate = true;
    target.setDrawRange(0, length);
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
    const { start, count } = this.geometry.indexRange[element.index]!;
    this.selectedMesh.geometry.setIndex(new BufferAttribute(this.geometry.indices.slice(start, start + count), 1));
    this.selectedMesh.visible = count > 0;
    this.setSegments(this.selectedLines, [element]);
    const ends = new Float32Array([...this.local(element.start), ...this.local(element.end)]);
    this.selectedEnds.geometry.setAttribute("position", new BufferAttribute(ends, 3));
  }

  private setSegments(lines: LineSegments2, elements: Element[]): void {
    lines.visible = elements.length > 0;
    if (!lines.visible) return;
    lines.geometry.dispose();
    lines.geometry = new LineSegmentsGeometry();
    lines.geometry.setPositions(elements.flatMap((e) => [...this.local(e.start), ...this.local(e.end)]));
  }

  private local(point: readonly [number, number, number]): [number, number, number] {
    const { centre } = this.geometry;
    return [point[0] - centre[0], point[1] - centre[1], point[2] - centre[2]];
  }

  toggleGrid(): boolean {
    this.grid.visible = !this.grid.visible;
    this.redraw();
    return this.grid.visible;
  }

  // --- cameras ---------------------------------------------------------------------------------

  look(name: ViewName): void {
    this.controls.target.set(0, 0, 0);
    this.camera.position.copy(viewDirections[name]).normalize().multiplyScalar(this.radius * 4);
    this.fit();
  }

  get inPerspective(): boolean {
    return this.camera === this.perspective;
  }

  togglePerspective(): void {
    const from = this.camera;
    const to = this.inPerspective ? this.orthographic : this.perspective;
    const target = this.controls.target;
    const back = new Vector3().subVectors(from.position, target);
    const half = Math.tan((fieldOfView / 2) * (Math.PI / 180));
    // What stands at the target keeps its size.
    if (to instanceof OrthographicCamera) {
      this.setOrthographicHeight(2 * back.length() * half);
    } else {
      back.setLength((this.orthographicHeight() / this.orthographic.zoom) / (2 * half));
    }
    to.position.copy(target).add(back);
    this.camera = to;
    this.controls.object = to;
    this.resize();
    this.controls.update();
    this.redraw();
  }

  private orthographicHeight(): number {
    return this.orthographic.top - this.orthographic.bottom;
  }

  private setOrthographicHeight(height: number): void {
    this.orthographic.top = height / 2;
    this.orthographic.bottom = -height / 2;
    this.orthographic.zoom = 1;
    this.shapeCameras();
  }

  private shapeCameras(): void {
    const aspect = Math.max(this.host.clientWidth, 1) / Math.max(this.host.clientHeight, 1);
    this.perspective.aspect = aspect;
    const half = (this.orthographicHeight() / 2) * aspect;
    this.orthographic.left = -half;
    this.orthographic.right = half;
    this.perspective.updateProjectionMatrix();
    this.orthographic.updateProjectionMatrix();
  }

  /**
   * Frames some elements, or what is visible, without turning the camera. In perspective a point at (x, y, z),
   * z towards the eye, fits across when |x − eye x| ≤ slope · (distance − z): the greatest slope · z + x and
   * slope · z − x of all points give the eye's place and distance, and likewise for the height.
   */
  fit(elements?: Element[]): void {
    const wanted = elements ?? this.model.elements.filter((element) => this.visible[element.index]);
    const back = new Vector3().subVectors(this.camera.position, this.controls.target).normalize();
    const right = new Vector3().crossVectors(this.camera.up, back).normalize();
    const up = new Vector3().crossVectors(back, right);
    const aspect = this.host.clientWidth / Math.max(this.host.clientHeight, 1);
    const slope = this.inPerspective ? Math.tan((fieldOfView / 2) * (Math.PI / 180)) / margin : 0;
    const across = new Span(slope * aspect);
    const upwards = new Span(slope);
    const inwards = new Span(0);
    const point = new Vector3();
    for (const { index } of wanted.length > 0 ? wanted : this.model.elements) {
      for (let corner = 0; corner < 8; corner++) {
        this.corner(index, corner, point);
        const z = point.dot(back);
        across.add(point.dot(right), z);
        upwards.add(point.dot(up), z);
        inwards.add(z, 0);
      }
    }
    const target = new Vector3()
      .addScaledVector(right, across.middle)
      .addScaledVector(up, upwards.middle)
      .addScaledVector(back, inwards.middle);
    let distance = this.radius * 4;
    if (this.inPerspective) {
      distance = Math.max(across.half / (slope * aspect), upwards.half / slope) - inwards.middle;
    } else {
      this.setOrthographicHeight(2 * margin * Math.max(upwards.half, across.half / aspect, 1));
    }
    this.controls.target.copy(target);
    this.camera.position.copy(target).addScaledVector(back, Math.max(distance, 1));
    this.controls.update();
    this.redraw();
  }

  /** Turns about the target by angles in radians, as the arrow keys do. */
  turn(aside: number, upwards: number): void {
    const back = new Vector3().subVectors(this.camera.position, this.controls.target);
    back.applyAxisAngle(new Vector3(0, 0, 1), aside);
    const tilt = Math.min(Math.max(Math.asin(back.z / back.length()) + upwards, -1.55), 1.55);
    const flat = Math.hypot(back.x, back.y) || 1e-9;
    const length = back.length();
    back.set((back.x / flat) * Math.cos(tilt), (back.y / flat) * Math.cos(tilt), Math.sin(tilt)).multiplyScalar(length);
    this.camera.position.copy(this.controls.target).add(back);
    this.controls.update();
    this.redraw();
  }

  zoom(factor: number): void {
    if (this.camera instanceof OrthographicCamera) {
      this.camera.zoom *= factor;
      this.camera.updateProjectionMatrix();
    } else {
      this.camera.position.sub(this.controls.target).divideScalar(factor).add(this.controls.target);
    }
    this.controls.update();
    this.redraw();
  }

  /** The model's X, Y and Z as they lie in the picture: right and up parts of unit vectors, and towards the eye. */
  axes(): { x: number; y: number; towards: number }[] {
    const e = this.camera.matrixWorld.elements;
    return [0, 1, 2].map((axis) => ({ x: e[axis]!, y: e[4 + axis]!, towards: e[8 + axis]! }));
  }

  /** One of the eight corners of an element's box. */
  private corner(index: number, bits: number, to: Vector3): Vector3 {
    const { bounds } = this.geometry;
    const pick = (axis: number) => bounds[index * 6 + axis + ((bits >> axis) & 1 ? 3 : 0)]!;
    return to.set(pick(0), pick(1), pick(2));
  }

  private measure(): { size: Vector3; floor: Vector3; radius: number } {
    const least = new Vector3();
    const greatest = new Vector3();
    const point = new Vector3();
    this.model.elements.forEach((_, index) => {
      if (index === 0) greatest.copy(this.corner(0, 0, least));
      least.min(this.corner(index, 0, point));
      greatest.max(this.corner(index, 7, point));
    });
    const size = new Vector3().subVectors(greatest, least);
    const floor = least.clone().addScaledVector(size, 0.5).setZ(least.z);
    return { size, floor, radius: Math.max(least.length(), greatest.length(), 100) };
  }

  /** Size of the structure in millimetres. */
  get extent(): [number, number, number] {
    const { size } = this.measure();
    return [size.x, size.y, size.z];
  }

  // --- the pointer -----------------------------------------------------------------------------

  /** The visible element at a place of the picture, in pixels from its upper left corner. */
  pick(x: number, y: number): Element | null {
    const caster = new Raycaster();
    caster.setFromCamera(
      new Vector2((x / this.host.clientWidth) * 2 - 1, 1 - (y / this.host.clientHeight) * 2),
      this.camera,
    );
    const { ray } = caster;
    const shown = this.model.elements.filter((element) => this.visible[element.index]);
    const hit = nearestOnRay(ray, shown, this.geometry);
    // A bar that is thinner than a pixel, or drawn as a thick line, is hit beside its mesh.
    let best = hit?.element ?? null;
    let bestDepth = hit?.distance ?? Infinity;
    for (const element of hit ? shown.filter((e) => e.unknown) : shown) {
      const near = screenDistance(element, this.geometry.centre, this.camera, ray, this.host, x, y);
      if (near && near.pixels <= pickTolerance && near.depth < bestDepth) {
        best = element;
        bestDepth = near.depth;
      }
    }
    return best;
  }

  /** Where the middle of an element's axis lies in the picture, in pixels. */
  project(element: Element): { x: number; y: number } {
    const [a, b] = [this.local(element.start), this.local(element.end)];
    const point = new Vector3((a[0] + b[0]) / 2, (a[1] + b[1]) / 2, (a[2] + b[2]) / 2).project(this.camera);
    return { x: ((point.x + 1) / 2) * this.host.clientWidth, y: ((1 - point.y) / 2) * this.host.clientHeight };
  }

  // --- drawing ---------------------------------------------------------------------------------

  private resize(): void {
    const { clientWidth: width, clientHeight: height } = this.host;
    if (width === 0 || height === 0) return;
    this.renderer.setSize(width, height, false);
    this.shapeCameras();
    this.redraw();
  }

  private redraw(): void {
    if (this.queued) return;
    this.queued = true;
    requestAnimationFrame(() => {
      this.queued = false;
      this.draw();
    });
  }

  draw(): void {
    const distance = this.camera.position.length();
    this.camera.near = this.inPerspective ? Math.max(distance - this.radius * 1.5, this.radius / 2000) : distance - this.radius * 2;
    this.camera.far = distance + this.radius * 3;
    this.camera.updateProjectionMatrix();
    this.camera.updateMatrixWorld();
    // The light comes over the viewer's left shoulder, so that no view is dark.
    this.headlight.position.set(-0.5, 0.6, 1).applyQuaternion(this.camera.quaternion);
    this.renderer.render(this.scene, this.camera);
    this.onCamera();
  }

  get drawCalls(): number {
    return this.renderer.info.render.calls;
  }

  get triangles(): number {
    return this.renderer.info.render.triangles;
  }
}

/** The extent of points along one direction of the picture; `slope` is how much of it a unit of depth costs. */
class Span {
  private low = -Infinity;
  private high = -Infinity;
  constructor(private readonly slope: number) {}

  add(place: number, depth: number): void {
    this.low = Math.max(this.low, this.slope * depth - place);
    this.high = Math.max(this.high, this.slope * depth + place);
  }

  get middle(): number {
    return Number.isFinite(this.high) ? (this.high - this.low) / 2 : 0;
  }

  get half(): number {
    return Number.isFinite(this.high) ? (this.high + this.low) / 2 : 1;
  }
}

function fatLines(colour: string, width: number, depthTest: boolean): LineSegments2 {
  const lines = new LineSegments2(new LineSegmentsGeometry(), new LineMaterial({ color: colour, linewidth: width, depthTest }));
  lines.renderOrder = depthTest ? 0 : 1;
  lines.visible = false;
  return lines;
}

/** A grid on the floor whose step is the largest of 1, 5, 10, 50… m that gives some eight lines or more. */
function makeGrid(size: Vector3, floor: Vector3): GridHelper {
  const span = Math.max(size.x, size.y, 500);
  const steps = [100, 500, 1000, 5000, 10000, 50000, 100000];
  const step = steps.findLast((s) => span / s >= 6) ?? 100;
  const count = Math.min(Math.ceil(span / step) + 4, 200);
  const grid = new GridHelper(count * step, count, 0xc3ccd6, 0xdbe1e8);
  grid.rotation.x = Math.PI / 2;
  grid.position.copy(floor);
  (grid.material as LineBasicMaterial).depthWrite = false;
  grid.renderOrder = -1;
  return grid;
}
