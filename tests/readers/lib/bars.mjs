// Bars in space: where a section's axes lie, and what an extruded drawing measures there. Written from the meaning
// of the rotation, not from the module's matrices.

const dot = (a, b) => a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
const cross = (a, b) => [a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]];
const scale = (a, f) => a.map((v) => v * f);
const add = (...vs) => vs.reduce((a, b) => [a[0] + b[0], a[1] + b[1], a[2] + b[2]]);
const subtract = (a, b) => add(a, scale(b, -1));
const length = (a) => Math.sqrt(dot(a, a));
const unit = (a) => scale(a, 1 / length(a));

const globalY = [0, 1, 0];

// { origin, x, y, z, length }: the section's axes at the bar's start, z along the bar. Without rotation the section's
// x axis points as much along the model's Y axis as a right angle to the bar allows; on a bar along Y itself it points
// against X (along X when the bar runs down Y). A positive rotation turns it from x towards y.
export function sectionAxes(start, end, rotation) {
  const z = unit(subtract(end, start));
  const upright = subtract(globalY, scale(z, dot(globalY, z)));
  const x0 = length(upright) > 1e-9 ? unit(upright) : [-Math.sign(z[1]), 0, 0];
  const y0 = cross(z, x0);
  const [c, s] = [Math.cos(rotation), Math.sin(rotation)];
  const x = add(scale(x0, c), scale(y0, s));
  return { origin: start, x, y: cross(z, x), z, length: length(subtract(end, start)) };
}

export const toModel = (axes, [u, v, w]) => add(axes.origin, scale(axes.x, u), scale(axes.y, v), scale(axes.z, w));

export function toSection(axes, point) {
  const d = subtract(point, axes.origin);
  return [dot(d, axes.x), dot(d, axes.y), dot(d, axes.z)];
}

// The box around a drawing extruded along its bar, in model coordinates.
export function extrudedBox(axes, drawing) {
  const low = [Infinity, Infinity, Infinity];
  const high = [-Infinity, -Infinity, -Infinity];
  const include = (point, reach = [0, 0, 0]) => point.forEach((value, i) => {
    low[i] = Math.min(low[i], value - reach[i]);
    high[i] = Math.max(high[i], value + reach[i]);
  });
  for (const w of [0, axes.length]) {
    (drawing.loops[0] ?? []).forEach(([u, v]) => include(toModel(axes, [u, v, w])));
    drawing.discs.filter((d) => !d.hole).forEach((d) => {
      include(toModel(axes, [d.x, d.y, w]), [0, 1, 2].map((i) => d.r * Math.hypot(axes.x[i], axes.y[i])));
    });
  }
  return [low, high];
}

export const distance = (a, b) => length(subtract(a, b));
