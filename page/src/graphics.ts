// The renderer, the lights, and what is drawn by lines.

import {
  BufferAttribute,
  BufferGeometry,
  DirectionalLight,
  HemisphereLight,
  LineBasicMaterial,
  LineSegments,
  Vector2,
  WebGLRenderer,
} from "three";

export const mostPixelRatio = 2; // more of them nobody sees, and each costs time

/** As large as `host`. Throws when the browser gives no WebGL. */
export function startRenderer(canvas: HTMLCanvasElement, host: HTMLElement): WebGLRenderer {
  const renderer = new WebGLRenderer({ canvas, antialias: true, alpha: true, preserveDrawingBuffer: true });
  renderer.setClearColor(0, 0); // the page's own ground shows through
  renderer.autoClear = false; // a picture of many bars is drawn piece by piece
  renderer.setPixelRatio(Math.min(devicePixelRatio, mostPixelRatio));
  fillHost(renderer, host);
  return renderer;
}

/** True when the size was another one; setting it empties the picture, which takes a tenth of a second in software. */
export function fillHost(renderer: WebGLRenderer, { clientWidth, clientHeight }: HTMLElement): boolean {
  const { x, y } = renderer.getSize(new Vector2());
  if (clientWidth === 0 || clientHeight === 0 || (clientWidth === x && clientHeight === y)) return false;
  renderer.setSize(clientWidth, clientHeight, false);
  return true;
}

export function makeLights(): { sky: HemisphereLight; head: DirectionalLight } {
  return { sky: new HemisphereLight(0xffffff, 0xb8c2cc, 1.5), head: new DirectionalLight(0xffffff, 2.1) };
}

/** Lines between each two of some points, each with a colour of its own. */
export function makeLines(points: Float32Array): LineSegments {
  const geometry = new BufferGeometry();
  const count = points.length / 3;
  geometry.setAttribute("position", new BufferAttribute(points, 3));
  geometry.setAttribute("color", new BufferAttribute(new Uint8Array(count * 4).fill(255), 4, true));
  geometry.setIndex(new BufferAttribute(new Uint32Array(count), 1));
  const lines = new LineSegments(geometry, new LineBasicMaterial({ vertexColors: true }));
  lines.frustumCulled = false; // what is in the picture is found beforehand
  return lines;
}
