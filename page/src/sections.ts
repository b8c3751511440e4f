// Finds the bars that are one profile drawn out to different lengths: a structure of a hundred thousand bars has a few
// dozen of them. The exporter writes a bar's profile again for each bar, so profiles are told apart by what they say.

import type { Bars, Columns } from "./columns";
import { apostrophe, digitsAt, eachReference, hash, newline, type StepFile } from "./step";

export interface Section {
  profile: number; // entity number of one of the equal profiles
  longest: number; // position of the bar that shows it best: the longest loses least when others are made from it
}

export interface Sections {
  list: Section[];
  of: Int32Array; // position in `list` of each element's section; −1 when it has none that is known
}

export function findSections(file: StepFile, columns: Columns, { profiles }: Bars): Sections {
  const { lengths, names, sections, sectionTexts } = columns;
  const list: Section[] = [];
  const of = new Int32Array(profiles.length).fill(-1);
  const byName = new Map<number, number>();
  const byProfile = new Map<number, number>();
  const byHash = new Map<number, number[]>();
  const texts = new ProfileTexts(file);
  for (let i = 0; i < profiles.length; i++) {
    const profile = profiles[i]!;
    if (profile === 0 || !(lengths[i]! > 0)) continue;
    // Bars of one name and one section text mostly are alike.
    const name = names[i]! * sectionTexts.length + sections[i]!;
    const guess = byName.get(name);
    let found = guess !== undefined && texts.same(profile, list[guess]!.profile) ? guess : byProfile.get(profile);
    if (found === undefined) {
      const sum = texts.hash(profile);
      let alike = byHash.get(sum);
      if (!alike) byHash.set(sum, (alike = []));
      found = alike.find((section) => texts.same(profile, list[section]!.profile));
      if (found === undefined) {
        found = list.push({ profile, longest: i }) - 1;
        alike.push(found);
      }
      byProfile.set(profile, found);
    }
    byName.set(name, found);
    of[i] = found;
    const section = list[found]!;
    if (lengths[i]! > lengths[section.longest]!) section.longest = i;
  }
  return { list, of };
}

const deepest = 8; // references within references; a profile of the exporter has two
const most = 20_000; // entities of one profile; a file in which everything refers to everything must end

/** What profiles say, each reference taken for what it stands for. */
class ProfileTexts {
  private left = 0;
  constructor(private readonly file: StepFile) {}

  hash(profile: number): number {
    this.left = most;
    return this.hashEntity(profile, deepest);
  }

  private hashEntity(number: number, depth: number): number {
    const { bytes } = this.file;
    const from = this.file.keywordAt(number);
    let sum = 0;
    let inString = false;
    for (let i = from; i >= 0 && i < bytes.length && bytes[i] !== newline; i++) {
      const c = bytes[i]!;
      if (c === apostrophe) inString = !inString;
      if (c === hash && !inString && depth > 0 && this.left-- > 0) {
        sum = (Math.imul(sum, 31) + this.hashEntity(digitsAt(bytes, i + 1), depth - 1)) | 0;
        i = behindDigits(bytes, i + 1) - 1;
      } else sum = (Math.imul(sum, 31) + c) | 0;
    }
    return sum;
  }

  same(one: number, other: number): boolean {
    this.left = most;
    return this.sameEntity(one, other, deepest);
  }

  private sameEntity(one: number, other: number, depth: number): boolean {
    if (one === other) return true;
    if (depth === 0 || this.left-- === 0) return false;
    const { bytes } = this.file;
    let [a, b] = [this.file.keywordAt(one), this.file.keywordAt(other)];
    let inString = false;
    if (a < 0 || b < 0) return false;
    for (let c = bytes[a]; c === bytes[b]; c = bytes[a]) {
      if (c === newline || c === undefined) return true;
      a++;
      b++;
      if (c === apostrophe) inString = !inString;
      if (c !== hash || inString) continue;
      if (!this.sameEntity(digitsAt(bytes, a), digitsAt(bytes, b), depth - 1)) return false;
      a = behindDigits(bytes, a);
      b = behindDigits(bytes, b);
    }
    return false;
  }
}

function behindDigits(bytes: Uint8Array, at: number): number {
  while (bytes[at]! >= 48 && bytes[at]! <= 57) at++;
  return at;
}

/** Some bars with all that they refer to, as an exchange file of their own. */
export function excerpt(file: StepFile, elements: number[]): Uint8Array {
  const wanted = new Set<number>();
  const waiting = [...file.numbersOf("IFCPROJECT"), ...elements]; // the project leads to the units
  for (let number = waiting.pop(); number !== undefined; number = waiting.pop()) {
    const [from, to] = file.content(number);
    if (from === to || wanted.has(number)) continue;
    wanted.add(number);
    eachReference(file.bytes, from, to, (inner) => waiting.push(inner));
  }
  const parts = [file.header];
  for (const number of [...wanted].sort((a, b) => a - b)) parts.push(file.line(number));
  parts.push(new TextEncoder().encode("ENDSEC;\nEND-ISO-10303-21;\n"));
  const whole = new Uint8Array(parts.reduce((sum, part) => sum + part.length, 0));
  let at = 0;
  for (const part of parts) {
    whole.set(part, at);
    at += part.length;
  }
  return whole;
}
