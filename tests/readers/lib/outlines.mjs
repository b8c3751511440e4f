// Cross-sections as drawings, straight from the drawing of each IFC profile: every shape is centred on its bounding
// box, x to the right and y up. A drawing is { loops, discs }: loops are closed polygons, the first the outside and
// the others holes; discs are circles { x, y, r, hole }.
// h height over all, b width over all, tw web, tf flange, t wall, leg, lip, r radius.

const loop = (...points) => ({ loops: [points], discs: [] });

export const rectangle = (b, h) => loop([-b / 2, -h / 2], [b / 2, -h / 2], [b / 2, h / 2], [-b / 2, h / 2]);

export const hollowRectangle = (b, h, t) => ({
  loops: [rectangle(b, h).loops[0], rectangle(b - 2 * t, h - 2 * t).loops[0]],
  discs: [],
});

export const circle = (r) => ({ loops: [], discs: [{ x: 0, y: 0, r, hole: false }] });

export const tube = (r, t) => ({ loops: [], discs: [{ x: 0, y: 0, r, hole: false }, { x: 0, y: 0, r: r - t, hole: true }] });

// Upright, flanges above and below.
export const iShape = (h, b, tw, tf) => unequalI(h, b, tf, b, tf, tw);

export function unequalI(h, bTop, tTop, bBottom, tBottom, tw) {
  const top = h / 2;
  const w = tw / 2;
  return loop(
    [-bBottom / 2, -top], [bBottom / 2, -top], [bBottom / 2, tBottom - top], [w, tBottom - top], [w, top - tTop],
    [bTop / 2, top - tTop], [bTop / 2, top], [-bTop / 2, top], [-bTop / 2, top - tTop], [-w, top - tTop],
    [-w, tBottom - top], [-bBottom / 2, tBottom - top],
  );
}

// Web at the left, open to the right.
export const channel = (h, b, tw, tf) => loop(
  [-b / 2, -h / 2], [b / 2, -h / 2], [b / 2, tf - h / 2], [tw - b / 2, tf - h / 2],
  [tw - b / 2, h / 2 - tf], [b / 2, h / 2 - tf], [b / 2, h / 2], [-b / 2, h / 2],
);

// Web at the left, open to the right, lips turned in.
export const lippedChannel = (h, b, t, lip) => loop(
  [-b / 2, -h / 2], [b / 2, -h / 2], [b / 2, lip - h / 2], [b / 2 - t, lip - h / 2], [b / 2 - t, t - h / 2], [t - b / 2, t - h / 2],
  [t - b / 2, h / 2 - t], [b / 2 - t, h / 2 - t], [b / 2 - t, h / 2 - lip], [b / 2, h / 2 - lip], [b / 2, h / 2], [-b / 2, h / 2],
);

// Corner at the lower left.
export const angle = (leg, t) => loop(
  [-leg / 2, -leg / 2], [leg / 2, -leg / 2], [leg / 2, t - leg / 2], [t - leg / 2, t - leg / 2], [t - leg / 2, leg / 2], [-leg / 2, leg / 2],
);

// Flange above.
export const tee = (h, b, tw, tf) => loop(
  [-tw / 2, -h / 2], [tw / 2, -h / 2], [tw / 2, h / 2 - tf], [b / 2, h / 2 - tf], [b / 2, h / 2], [-b / 2, h / 2], [-b / 2, h / 2 - tf], [-tw / 2, h / 2 - tf],
);

// Crown above, brims turned out at the foot; b is the width over the two webs.
export function hat(h, b, brim, t) {
  const w = b / 2;
  const out = w - t + brim;
  return loop(
    [-out, -h / 2], [t - w, -h / 2], [t - w, h / 2 - t], [w - t, h / 2 - t], [w - t, -h / 2], [out, -h / 2], [out, t - h / 2],
    [w, t - h / 2], [w, h / 2], [-w, h / 2], [-w, t - h / 2], [-out, t - h / 2],
  );
}

// Bottom flange to the left, top flange to the right, the top lip hanging, the bottom lip standing. The bounding box
// of the two flanges is centred.
export function lippedZ(h, top, bottom, topLip, bottomLip, t) {
  const width = bottom + top - t;
  const x = (v) => v - width / 2;
  const y = (v) => v - h / 2;
  return loop(
    [x(0), y(0)], [x(bottom), y(0)], [x(bottom), y(h - t)], [x(width - t), y(h - t)], [x(width - t), y(h - topLip)], [x(width), y(h - topLip)],
    [x(width), y(h)], [x(bottom - t), y(h)], [x(bottom - t), y(t)], [x(t), y(t)], [x(t), y(bottomLip)], [x(0), y(bottomLip)],
  );
}

// Two flanges, and between them two webs; `over` is the width over the outer faces of the webs.
export function twoWebBox(h, b, tf, tw, over) {
  const y = h / 2 - tf;
  const g = over / 2;
  const cell = g - tw;
  return {
    loops: [
      [[-b / 2, -h / 2], [b / 2, -h / 2], [b / 2, -y], [g, -y], [g, y], [b / 2, y], [b / 2, h / 2], [-b / 2, h / 2], [-b / 2, y], [-g, y], [-g, -y], [-b / 2, -y]],
      [[-cell, -y], [cell, -y], [cell, y], [-cell, y]],
    ],
    discs: [],
  };
}

// Turned counter-clockwise about its own centre, then moved.
export function place(drawing, turn, x, y) {
  const a = (turn * Math.PI) / 180;
  const [c, s] = [Math.cos(a), Math.sin(a)];
  const put = ([px, py]) => [x + px * c - py * s, y + px * s + py * c];
  return {
    loops: drawing.loops.map((points) => points.map(put)),
    discs: drawing.discs.map((d) => {
      const [dx, dy] = put([d.x, d.y]);
      return { ...d, x: dx, y: dy };
    }),
  };
}

function polygonMoments(points) {
  let [area, mx, my] = [0, 0, 0];
  points.forEach(([x0, y0], i) => {
    const [x1, y1] = points[(i + 1) % points.length];
    const cross = x0 * y1 - x1 * y0;
    area += cross / 2;
    mx += ((x0 + x1) * cross) / 6;
    my += ((y0 + y1) * cross) / 6;
  });
  return area < 0 ? [-area, -mx, -my] : [area, mx, my];
}

// { area, x, y }: the drawing's area and centre of gravity.
export function moments(drawing) {
  let [area, mx, my] = [0, 0, 0];
  drawing.loops.forEach((points, i) => {
    const sign = i === 0 ? 1 : -1;
    const [a, x, y] = polygonMoments(points);
    area += sign * a;
    mx += sign * x;
    my += sign * y;
  });
  for (const d of drawing.discs) {
    const a = (d.hole ? -1 : 1) * Math.PI * d.r * d.r;
    area += a;
    mx += a * d.x;
    my += a * d.y;
  }
  return { area, x: mx / area, y: my / area };
}

function distanceToSegment([px, py], [ax, ay], [bx, by]) {
  const [dx, dy] = [bx - ax, by - ay];
  const t = Math.min(1, Math.max(0, ((px - ax) * dx + (py - ay) * dy) / (dx * dx + dy * dy)));
  return Math.hypot(px - ax - t * dx, py - ay - t * dy);
}

// How far a point lies from the nearest line of the drawing.
export function distanceToLines(drawing, p) {
  const lines = drawing.loops.flatMap((points) => points.map((a, i) => distanceToSegment(p, a, points[(i + 1) % points.length])));
  const circles = drawing.discs.map((d) => Math.abs(Math.hypot(p[0] - d.x, p[1] - d.y) - d.r));
  return Math.min(...lines, ...circles);
}
