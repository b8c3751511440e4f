// Where the structure is seen from: perspective or parallel, standard views, fit, turn and zoom.

import { MOUSE, OrthographicCamera, PerspectiveCamera, Ray, Raycaster, Vector2, Vector3 } from "three";
import { OrbitControls } from "three/addons/controls/OrbitControls.js";
import type { Boxes } from "./bounds";

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
const slope = Math.tan((fieldOfView / 2) * (Math.PI / 180)); // half the picture's height at distance 1
// Pixels beside what a fit frames; toolbar and legend lie above and below it.
const besides = 24;
const aboveAndBelow = 58;
const steepest = 1.55; // radians above or below the horizon that the arrow keys reach

export class Cameras {
  private readonly perspective = new PerspectiveCamera(fieldOfView);
  private readonly orthographic = new OrthographicCamera();
  private active: PerspectiveCamera | OrthographicCamera = this.perspective;
  private readonly controls: OrbitControls;
  private pixels = 0; // the picture's height: to ask the page for it anew for each bar takes most of a frame
  /** Called when the structure is seen from elsewhere. */
  onChange: () => void = () => undefined;

  /** `radius` is that of a sphere about the origin that holds the whole structure. */
  constructor(
    private readonly host: HTMLElement,
    canvas: HTMLCanvasElement,
    public radius: number,
  ) {
    for (const camera of [this.perspective, this.orthographic]) camera.up.set(0, 0, 1);
    this.controls = new OrbitControls(this.active, canvas);
    this.controls.zoomToCursor = true;
    this.controls.mouseButtons = { LEFT: MOUSE.ROTATE, MIDDLE: MOUSE.PAN, RIGHT: MOUSE.PAN };
    this.controls.addEventListener("change", () => this.onChange());
  }

  dispose(): void {
    this.controls.dispose();
  }

  get inPerspective(): boolean {
    return this.active === this.perspective;
  }

  look(name: ViewName, boxes: Boxes): void {
    this.controls.target.set(0, 0, 0);
    this.active.position.copy(viewDirections[name]).setLength(this.radius * 4);
    this.fit(boxes);
  }

  /**
   * Frames boxes without turning the camera. In perspective a point at (x, y, z), z towards the eye, fits across
   * when |x − eye x| ≤ slope · (distance − z): the greatest slope · z + x and slope · z − x of all points give the
   * eye's place and distance, and likewise for the height.
   */
  fit(boxes: Boxes): void {
    const back = this.back().normalize();
    const right = new Vector3().crossVectors(this.active.up, back).normalize();
    const up = new Vector3().crossVectors(back, right);
    const { clientWidth: width, clientHeight: height } = this.host;
    const filledWidth = Math.max(1 - (2 * besides) / width, 0.5);
    const filledHeight = Math.max(1 - (2 * aboveAndBelow) / height, 0.5);
    const tiltAcross = slope * this.aspect * filledWidth;
    const tiltUpwards = slope * filledHeight;
    const across = spanOf(boxes, right, back, this.inPerspective ? tiltAcross : 0);
    const upwards = spanOf(boxes, up, back, this.inPerspective ? tiltUpwards : 0);
    const inwards = spanOf(boxes, back, back, 0);
    const target = this.controls.target.set(0, 0, 0);
    target.addScaledVector(right, across.middle).addScaledVector(up, upwards.middle).addScaledVector(back, inwards.middle);
    let distance = this.radius * 4;
    if (this.inPerspective) {
      distance = Math.max(across.half / tiltAcross, upwards.half / tiltUpwards) - inwards.middle;
    } else {
      this.setHeight(2 * Math.max(upwards.half / filledHeight, across.half / this.aspect / filledWidth, 1));
    }
    this.active.position.copy(target).addScaledVector(back, Math.max(distance, 1));
    this.changed();
  }

  togglePerspective(): void {
    const back = this.back();
    // What stands at the target keeps its size.
    if (this.inPerspective) {
      this.setHeight(2 * back.length() * slope);
      this.active = this.orthographic;
    } else {
      back.setLength(this.height() / this.orthographic.zoom / (2 * slope));
      this.active = this.perspective;
    }
    this.active.position.copy(this.controls.target).add(back);
    this.controls.object = this.active;
    this.changed();
  }

  /** Turns about the target by angles in radians. */
  turn(aside: number, upwards: number): void {
    const back = this.back().applyAxisAngle(new Vector3(0, 0, 1), aside);
    const length = back.length();
    const tilt = Math.min(Math.max(Math.asin(back.z / length) + upwards, -steepest), steepest);
    back.setZ(0).setLength(Math.cos(tilt)).setZ(Math.sin(tilt));
    this.active.position.copy(this.controls.target).addScaledVector(back, length);
    this.changed();
  }

  zoom(factor: number): void {
    const back = this.back().divideScalar(factor);
    if (this.inPerspective) this.perspective.position.copy(this.controls.target).add(back);
    else this.orthographic.zoom *= factor;
    this.changed();
  }

  /** From the target to the eye. */
  private back(): Vector3 {
    return new Vector3().subVectors(this.active.position, this.controls.target);
  }

  private changed(): void {
    this.controls.update();
    this.onChange();
  }

  // --- what the picture needs ------------------------------------------------------------------

  /** The camera, ready to draw with. */
  prepared(): PerspectiveCamera | OrthographicCamera {
    const camera = this.active;
    this.pixels = this.host.clientHeight;
    const distance = camera.position.length();
    camera.near = this.inPerspective ? Math.max(distance - this.radius * 1.5, this.radius / 2000) : distance - this.radius * 2;
    camera.far = distance + this.radius * 3;
    this.perspective.aspect = this.aspect;
    this.setHeight(this.height(), this.orthographic.zoom);
    camera.updateProjectionMatrix();
    camera.updateMatrixWorld();
    return camera;
  }

  /** Pixels that a millimetre takes at a distance from the eye of the camera that was prepared last. */
  pixelsPerMillimetre(distance: number): number {
    const height = this.inPerspective ? 2 * slope * distance : this.height() / this.orthographic.zoom;
    return this.pixels / Math.max(height, 1e-3);
  }

  get position(): Vector3 {
    return this.active.position;
  }

  /** The model's X, Y and Z as they lie in the picture: right and up parts of unit vectors, and towards the eye. */
  axes(): { x: number; y: number; towards: number }[] {
    const e = this.active.matrixWorld.elements;
    return [0, 1, 2].map((axis) => ({ x: e[axis]!, y: e[4 + axis]!, towards: e[8 + axis]! }));
  }

  /** What stands behind a place of the picture, given in pixels from its upper left corner. */
  rayAt(x: number, y: number): Ray {
    const caster = new Raycaster();
    caster.setFromCamera(new Vector2((x / this.host.clientWidth) * 2 - 1, 1 - (y / this.host.clientHeight) * 2), this.prepared());
    return caster.ray;
  }

  /** Place of a point in the picture, in pixels; `inside` is false when it lies behind the eye or too far. */
  project(point: Vector3): { x: number; y: number; inside: boolean } {
    const p = point.clone().project(this.active);
    return {
      x: ((p.x + 1) / 2) * this.host.clientWidth,
      y: ((1 - p.y) / 2) * this.host.clientHeight,
      inside: Math.abs(p.z) <= 1,
    };
  }

  private get aspect(): number {
    return Math.max(this.host.clientWidth, 1) / Math.max(this.host.clientHeight, 1);
  }

  /** Millimetres that the parallel picture's height shows at zoom 1. */
  private height(): number {
    return this.orthographic.top - this.orthographic.bottom;
  }

  private setHeight(height: number, zoom = 1): void {
    const camera = this.orthographic;
    camera.top = height / 2;
    camera.bottom = -height / 2;
    camera.right = (height / 2) * this.aspect;
    camera.left = -camera.right;
    camera.zoom = zoom;
  }
}

interface Span {
  middle: number;
  half: number;
}

/** The extent of boxes along one direction of the picture; `tilt` is how much of it a unit of depth costs. */
function spanOf(boxes: Boxes, direction: Vector3, depth: Vector3, tilt: number): Span {
  const high = boxes.reach(direction.clone().addScaledVector(depth, tilt));
  const low = boxes.reach(direction.clone().negate().addScaledVector(depth, tilt));
  return Number.isFinite(high) ? { middle: (high - low) / 2, half: (high + low) / 2 } : { middle: 0, half: 1 };
}
