// Every section family with one set of dimensions, its area as a closed formula, and its drawing in section axes as
// an engineer would sketch it. Nothing here is read from the module: this is what its output is held against.
//
// d are the numbers behind the family word, in the order of the section text (a 0 where a family skips one), in
// millimetres. A simple family gives one drawing; a built-up one gives two, `gap` is the clear distance between them
// along x, and `symmetry` says how the second comes from the first: 'mirror' in the y axis, 'point' by half a turn
// about the bar's axis, 'same' when both lie in one place.

import { angle, channel, circle, hat, hollowRectangle, iShape, lippedChannel, lippedZ, place, rectangle, tee, tube, twoWebBox, unequalI } from './outlines.mjs';

const iArea = ([h, b, tf, tw]) => 2 * b * tf + (h - 2 * tf) * tw;
const channelArea = (h, b, tw, tf) => 2 * b * tf + (h - 2 * tf) * tw;
const lippedArea = (h, b, lip, t) => t * (h + 2 * (b - t) + 2 * (lip - t));
const angleArea = (leg, t) => t * (2 * leg - t);
const teeArea = (h, b, tf, tw) => b * tf + (h - tf) * tw;
const hatArea = (h, b, brim, t) => t * (b + 2 * brim + 2 * (h - 2 * t));
const zArea = (h, top, bottom, topLip, bottomLip, t) => t * (h - 2 * t + top + bottom + topLip - t + bottomLip - t);

const at = (turn, x, y, drawing) => place(drawing, turn, x, y);
const simple = (word, d, area, drawing) => ({ word, d, halves: [{ label: word, area, drawing }] });

function builtUp(word, d, area, gap, symmetry, drawings) {
  const halves = drawings.map((drawing, i) => ({ label: `${word}_${i + 1}`, area, drawing }));
  return { word, d, halves, gap, symmetry };
}

// Two channels of width b, webs apart by `gap`, open to the outside.
const backToBack = (b, gap, shape) => [at(180, -(gap + b) / 2, 0, shape), at(0, (gap + b) / 2, 0, shape)];
// Two channels of width b, flanges facing, `over` the width over both webs.
const faceToFace = (b, over, shape) => [at(0, -(over - b) / 2, 0, shape), at(180, (over - b) / 2, 0, shape)];

const iDims = { ILAM: [150, 100, 7, 5], CS: [200, 200, 10, 6], W: [310, 165, 10, 6], HP: [200, 205, 11, 11], PS: [300, 150, 8, 5], VS: [250, 120, 6, 4], VSE: [260, 130, 7, 5], CSE: [220, 210, 12, 8], CVS: [300, 200, 13, 8], HE: [180, 181, 9, 6], IPE: [240, 120, 10, 6] };
const iFamilies = Object.entries(iDims).map(([word, d]) => {
  const [h, b, tf, tw] = d;
  return simple(word, d, iArea(d), iShape(h, b, tw, tf));
});

const teeDims = { TW: [150, 120, 9, 6], TS: [140, 110, 8, 5], WT: [155, 165, 10, 7] };
const teeFamilies = Object.entries(teeDims).map(([word, d]) => {
  const [h, b, tf, tw] = d;
  return simple(word, d, teeArea(h, b, tf, tw), at(180, 0, 0, tee(h, b, tw, tf)));
});

// The four ways a single angle lies: the corner points to the foot of the page, to its right, or to the lower right.
const singleAngles = { L: 45, LLM: 45, LLM_EN: 135, LFF: 90, LLAM_EN: 90, LLAM: 90 };
const angleFamilies = Object.entries(singleAngles).map(([word, turn], i) => {
  const [leg, t] = [60 + 5 * i, 5 + i];
  return simple(word, [leg, 0, 0, t], angleArea(leg, t), at(turn, 0, 0, angle(leg, t)));
});

const s = (leg) => leg * Math.SQRT1_2;

// What two angles of one leg and gap look like, by the code.
const anglePairs = {
  '2L': ([leg, t, g]) => ({ gap: g, symmetry: 'point', drawings: [at(180, -(g + leg) / 2, 0, angle(leg, t)), at(0, (g + leg) / 2, 0, angle(leg, t))] }),
  LL: ([leg, t, g]) => ({ gap: g - leg, symmetry: 'mirror', drawings: [at(180, g / 2, 0, angle(leg, t)), at(270, -g / 2, 0, angle(leg, t))] }),
  '><': ([leg, t, g]) => ({ gap: g, symmetry: 'point', drawings: [at(45, g / 2 + s(leg), 0, angle(leg, t)), at(225, -g / 2 - s(leg), 0, angle(leg, t))] }),
  '<>': ([leg, t, g]) => ({ gap: g - 4 * s(leg), symmetry: 'point', drawings: [at(225, g / 2 - s(leg), 0, angle(leg, t)), at(45, s(leg) - g / 2, 0, angle(leg, t))] }),
  LX: ([leg, t, g]) => ({ gap: g, symmetry: 'point', drawings: [at(0, (g + leg) / 2, (g + leg) / 2, angle(leg, t)), at(180, -(g + leg) / 2, -(g + leg) / 2, angle(leg, t))] }),
  LZ: ([leg, t, g]) => ({ gap: g, symmetry: 'point', drawings: [at(270, (g + leg) / 2, (g + leg) / 2, angle(leg, t)), at(90, -(g + leg) / 2, -(g + leg) / 2, angle(leg, t))] }),
};
// The rolled-angle codes are drawn as the plain ones.
const anglePairCodes = { '2L': '2L', LL: 'LL', '><': '><', '<>': '<>', LX: 'LX', LZ: 'LZ', '2LLM': '2L', LLLM: 'LL', VVLM: '><', LVLM: '<>', LXLM: 'LX', LZLM: 'LZ' };
const anglePairDims = { '2L': [75, 6, 8], LL: [60, 5, 70], '><': [50, 5, 12], '<>': [40, 4, 120], LX: [65, 6, 10], LZ: [55, 5, 14], '2LLM': [76, 8, 9], LLLM: [64, 6, 80], VVLM: [51, 5, 6], LVLM: [38, 4, 112], LXLM: [70, 7, 11], LZLM: [45, 4, 10] };
const anglePairFamilies = Object.entries(anglePairCodes).map(([word, like]) => {
  const dims = anglePairDims[word];
  const [leg, t, g] = dims;
  const { gap, symmetry, drawings } = anglePairs[like](dims);
  return builtUp(word, [leg, 0, 0, t, g], angleArea(leg, t), gap, symmetry, drawings);
});

export const families = [
  ...iFamilies,
  ...teeFamilies,
  ...angleFamilies,
  ...anglePairFamilies,

  // A lone channel stands with the back of its web on the bar's axis, open to the left; the web and flanges of the
  // formed kinds share one thickness.
  simple('[', [200, 75, 0, 6], channelArea(200, 75, 6, 6), at(180, -75 / 2, 0, channel(200, 75, 6, 6))),
  simple('UENR', [150, 60, 20, 3], lippedArea(150, 60, 20, 3), at(180, -60 / 2, 0, lippedChannel(150, 60, 3, 20))),
  // A rolled one is centred; its third number is the web, its fourth the flange.
  simple('ULAM', [203, 57, 6, 10], channelArea(203, 57, 6, 10), at(180, 0, 0, channel(203, 57, 6, 10))),
  simple('UAP', [150, 65, 7, 10], channelArea(150, 65, 7, 10), at(180, 0, 0, channel(150, 65, 7, 10))),

  builtUp('][', [180, 70, 5, 9], channelArea(180, 70, 5, 5), 9, 'mirror', backToBack(70, 9, channel(180, 70, 5, 5))),
  builtUp('[]', [160, 55, 0, 4, 125], channelArea(160, 55, 4, 4), 125 - 2 * 55, 'mirror', faceToFace(55, 125, channel(160, 55, 4, 4))),
  builtUp('2ULM', [203, 57, 6, 10, 8], channelArea(203, 57, 6, 10), 8, 'mirror', backToBack(57, 8, channel(203, 57, 6, 10))),
  builtUp('UULM', [152, 49, 5, 9, 120], channelArea(152, 49, 5, 9), 120 - 2 * 49, 'mirror', faceToFace(49, 120, channel(152, 49, 5, 9))),
  builtUp('UUE', [150, 60, 20, 3, 7], lippedArea(150, 60, 20, 3), 7, 'mirror', faceToFace(60, 2 * 60 + 7, lippedChannel(150, 60, 3, 20))),
  builtUp('IENR', [200, 75, 25, 4, 6], lippedArea(200, 75, 25, 4), 6, 'mirror', backToBack(75, 6, lippedChannel(200, 75, 4, 25))),
  // Welded lip to lip: the fifth number is not used.
  builtUp('CA', [140, 50, 18, 3, 33], lippedArea(140, 50, 18, 3), 0, 'mirror', faceToFace(50, 2 * 50, lippedChannel(140, 50, 3, 18))),

  simple('BOX', [150, 90, 0, 5], 2 * 5 * (150 + 90 - 2 * 5), hollowRectangle(90, 150, 5)),
  simple('TEE', [60, 0, 0, 7], teeArea(60, 60, 7, 7), at(270, 0, 0, tee(60, 60, 7, 7))),

  // Round sections are small enough here that the corners of a reader's polygon stay within the box tolerance.
  { ...simple('TUBO', [42, 0, 0, 4], Math.PI * (21 ** 2 - 17 ** 2), tube(21, 4)), round: true },
  { ...simple('RED', [20], Math.PI * 10 ** 2, circle(10)), round: true },
  { ...simple('FRED', [25], Math.PI * 12.5 ** 2, circle(12.5)), round: true },

  // Bars of rectangular section lie with their first dimension upright.
  simple('EC', [80, 0, 0, 12], 80 * 12, rectangle(12, 80)),
  // A flat bar's thickness stands fourth, third or second: the first of them that is 0.001 or more.
  simple('RET', [90, 0, 0, 15], 90 * 15, rectangle(15, 90)),
  simple('RET', [90, 40, 20, 15], 90 * 15, rectangle(15, 90)),
  simple('RET', [90, 40, 20, 0.0005], 90 * 20, rectangle(20, 90)),
  simple('RET', [90, 40, 0, 0], 90 * 40, rectangle(40, 90)),
  // The crown's outer face lies on the bar's axis.
  simple('CART', [120, 80, 25, 3], hatArea(120, 80, 25, 3), at(0, 0, -60, hat(120, 80, 25, 3))),
  // Crowns face each other across the gap.
  builtUp('ICAR', [130, 60, 20, 3, 11], hatArea(60, 130, 20, 3), 11, 'mirror', [at(90, (60 + 11) / 2, 0, hat(60, 130, 20, 3)), at(270, -(60 + 11) / 2, 0, hat(60, 130, 20, 3))]),

  simple('Z', [200, 70, 60, 25, 20, 4], zArea(200, 70, 60, 25, 20, 4), lippedZ(200, 70, 60, 25, 20, 4)),
  simple('ZI', [180, 50, 65, 18, 22, 3, 99], zArea(180, 50, 65, 18, 22, 3), lippedZ(180, 50, 65, 18, 22, 3)),
  simple('ZS', [150, 50, 17, 3], zArea(150, 50, 50, 17, 17, 3), lippedZ(150, 50, 50, 17, 17, 3)),
  simple('ZSI', [160, 55, 19, 3], zArea(160, 55, 55, 19, 19, 3), lippedZ(160, 55, 55, 19, 19, 3)),

  simple('PC', [400, 250, 12, 8, 180], 2 * 250 * 12 + 2 * 8 * (400 - 2 * 12), twoWebBox(400, 250, 12, 8, 180)),
  simple('PSA', [350, 200, 12, 140, 9, 7], 200 * 12 + 140 * 9 + (350 - 12 - 9) * 7, unequalI(350, 200, 12, 140, 9, 7)),

  // A name without a writer, and a built-up code without one for its halves: a square of 4.
  { ...simple('DESCONHECIDO', [120, 60, 5, 5], 16, rectangle(4, 4)), unknown: true },
  { ...builtUp('2L_ASSIMETRICO', [100, 75, 8, 8, 10], 16, null, 'same', [rectangle(4, 4), rectangle(4, 4)]), unknown: true },
];

export const sectionText = (family) => [family.word, ...family.d].join(' ');
