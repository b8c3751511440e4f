// Reads the entity lines of an exchange file by number, out of its bytes.
//
// The exporter writes one entity per line, so this looks at lines only; a stray apostrophe in a name then spoils its
// own line and no other. A large file has millions of lines: one pass notes where each begins, and its attributes
// are taken apart when somebody asks for them. No text is made but the few that people read.

const trailer = "END-ISO-10303-21;";
export const [newline, blank, hash, apostrophe, open, close, comma, equals] = [10, 32, 35, 39, 40, 41, 44, 61] as const;
const mostAttributes = 24; // no entity that is read here has more

/** Keywords whose entities are listed; all others are found by number only. */
export const listed = [
  "IFCBEAM",
  "IFCCOLUMN",
  "IFCMEMBER",
  "IFCELEMENTASSEMBLY",
  "IFCPROJECT",
  "IFCRELAGGREGATES",
  "IFCRELCONTAINEDINSPATIALSTRUCTURE",
  "IFCRELDEFINESBYPROPERTIES",
  "IFCRELPROJECTSELEMENT",
  "IFCRELVOIDSELEMENT",
] as const;
export type Listed = (typeof listed)[number];

const latin1 = new TextDecoder("latin1");

export class StepFile {
  /** The file as far as it is whole, closed if its end was missing. */
  readonly bytes: Uint8Array;
  /** False when the writer stopped before the end. */
  readonly complete: boolean;
  // Attributes that `take` found: from the first to behind the last byte of each.
  private readonly from = new Uint32Array(mostAttributes);
  private readonly to = new Uint32Array(mostAttributes);
  private taken = 0;
  private lines = new Uint32Array(1 << 12); // by entity number: where its line begins, plus one
  private readonly farLines = new Map<number, number>(); // of numbers too high for that
  private readonly numbers = new Map<Listed, number[]>();
  private readonly byHash = new Map<number, { keyword: Listed; numbers: number[] }>();

  /** `progress` is told how much is done, from 0 to 1. */
  constructor(bytes: Uint8Array, progress: (done: number) => void) {
    for (const keyword of listed) {
      const numbers: number[] = [];
      this.numbers.set(keyword, numbers);
      this.byHash.set(hashOf(new TextEncoder().encode(keyword)), { keyword, numbers });
    }
    this.complete = endsWithTrailer(bytes);
    this.bytes = this.complete ? bytes : closed(bytes);
    this.addLines(progress);
  }

  private addLines(progress: (done: number) => void): void {
    const { bytes } = this;
    const end = bytes.length;
    for (let [at, told] = [0, 0]; at < end; ) {
      if (at - told > 1 << 22) progress((told = at) / end);
      if (bytes[at] === hash) at = this.addLine(at);
      const feed = bytes.indexOf(newline, at); // sooner done by the browser than by a loop, which it first has to learn
      at = feed < 0 ? end : feed + 1;
    }
  }

  /** "#12= IFCNAME(…" → noted; gives a place in the line. */
  private addLine(line: number): number {
    const { bytes } = this;
    let at = line + 1;
    let number = 0;
    for (let digit = digitAt(bytes, at); digit >= 0; digit = digitAt(bytes, ++at)) number = number * 10 + digit;
    while (bytes[at] === blank) at++;
    if (bytes[at] !== equals || number === 0) return at;
    at++;
    while (bytes[at] === blank) at++;
    const word = at;
    let sum = 0;
    for (let c = bytes[at]!; (c >= 65 && c <= 90) || (c >= 48 && c <= 57) || c === 95; c = bytes[++at]!) sum = (Math.imul(sum, 31) + c) | 0;
    const behind = at;
    while (bytes[at] === blank) at++;
    if (bytes[at] !== open || behind === word) return at;
    this.setLine(number, line);
    const list = this.byHash.get(sum);
    if (list && this.spells(word, list.keyword)) list.numbers.push(number);
    return at;
  }

  private setLine(number: number, line: number): void {
    // The exporter numbers its lines in turn; a number that the file is too short for must not cost memory.
    if (number > this.bytes.length / 8) {
      this.farLines.set(number, line + 1);
      return;
    }
    if (number >= this.lines.length) {
      const larger = new Uint32Array(Math.max(number + 1, this.lines.length * 2));
      larger.set(this.lines);
      this.lines = larger;
    }
    this.lines[number] = line + 1;
  }

  /** Where an entity's line begins; −1 when there is none. */
  lineOf(number: number): number {
    return (this.lines[number] ?? this.farLines.get(number) ?? 0) - 1;
  }

  /** Numbers of all entities of one type, in file order. */
  numbersOf(keyword: Listed): readonly number[] {
    return this.numbers.get(keyword)!;
  }

  /** Where the first entity's line begins: all before it is header. */
  get header(): Uint8Array {
    const first = this.bytes.findIndex((byte, i) => byte === hash && (i === 0 || this.bytes[i - 1] === newline));
    return this.bytes.subarray(0, first < 0 ? this.bytes.length : first);
  }

  /** An entity's line. */
  line(number: number): Uint8Array {
    const from = this.lineOf(number);
    const end = this.bytes.indexOf(newline, from);
    return this.bytes.subarray(from, end < 0 ? this.bytes.length : end + 1);
  }

  /** An entity from its keyword to its last parenthesis: where it begins and ends; equal when there is none. */
  content(number: number): [number, number] {
    const { bytes } = this;
    const from = this.keywordAt(number);
    if (from < 0) return [0, 0];
    let to = from;
    while (to < bytes.length && bytes[to] !== newline) to++;
    while (to > from && bytes[to - 1] !== close) to--;
    return [from, to];
  }

  /** Whether an entity is of a type. */
  is(number: number, keyword: string): boolean {
    const at = this.keywordAt(number);
    return at >= 0 && this.spells(at, keyword) && !isWord(this.bytes[at + keyword.length]);
  }

  /** Where an entity's keyword begins; −1 when there is none. */
  keywordAt(number: number): number {
    let at = this.lineOf(number);
    if (at < 0) return -1;
    while (this.bytes[at] !== equals) at++;
    at++;
    while (this.bytes[at] === blank) at++;
    return at;
  }

  private spells(at: number, word: string): boolean {
    for (let i = 0; i < word.length; i++) if (this.bytes[at + i] !== word.charCodeAt(i)) return false;
    return true;
  }

  /**
   * Takes the attributes of an entity apart, at the commas outside of strings and parentheses; gives how many. The
   * methods below read one of them, and hold until the next entity is taken.
   */
  take(number: number): number {
    const { bytes } = this;
    this.taken = 0;
    let at = this.keywordAt(number);
    if (at < 0) return 0;
    while (bytes[at] !== open) at++; // addLine has seen it
    const whole = this.split(++at, bytes.length);
    if (!whole) this.split(at, this.content(number)[1] - 1);
    return this.taken;
  }

  /** Splits from a place to the parenthesis that closes, but not beyond `end`; false when the line ends before. */
  private split(from: number, end: number): boolean {
    const { bytes } = this;
    let depth = 0;
    let inString = false;
    let start = from;
    this.taken = 0;
    for (let i = from; i < end; i++) {
      const c = bytes[i]!;
      if (c > comma) continue;
      if (c === apostrophe) inString = !inString;
      else if (c === newline) return false;
      else if (inString) continue;
      else if (c === open) depth++;
      else if (c === close && depth-- === 0) {
        this.addAttribute(start, i);
        return true;
      } else if (c === comma && depth === 0) {
        this.addAttribute(start, i);
        start = i + 1;
      }
    }
    if (start <= end) this.addAttribute(start, end);
    return true;
  }

  private addAttribute(from: number, to: number): void {
    if (this.taken === mostAttributes) return;
    while (from < to && this.bytes[from]! <= blank) from++;
    while (to > from && this.bytes[to - 1]! <= blank) to--;
    this.from[this.taken] = from;
    this.to[this.taken++] = to;
  }

  /** "#12" → 12; 0 for anything else. */
  reference(attribute: number): number {
    if (attribute >= this.taken) return 0;
    const at = this.from[attribute]!;
    return this.bytes[at] === hash ? digitsAt(this.bytes, at + 1) : 0;
  }

  /** "(#1, #2)" → 1, then 2; gives how many. */
  eachReference(attribute: number, use: (number: number) => void): number {
    if (attribute >= this.taken || this.bytes[this.from[attribute]!] !== open) return 0;
    return eachReference(this.bytes, this.from[attribute]!, this.to[attribute]!, use);
  }

  /** "1.5" → 1.5; 0 for anything else. */
  number(attribute: number): number {
    return attribute < this.taken ? numberBetween(this.bytes, this.from[attribute]!, this.to[attribute]!) || 0 : 0;
  }

  /** "(1., 2., 3.)" → three numbers at a place of `out`; false when there are less. */
  triple(attribute: number, out: Float64Array, place: number): boolean {
    if (attribute >= this.taken) return false;
    let at = this.from[attribute]!;
    const to = this.to[attribute]!;
    if (this.bytes[at] !== open) return false;
    for (let axis = 0; axis < 3; axis++) {
      const start = ++at;
      while (at < to && this.bytes[at] !== comma && this.bytes[at] !== close) at++;
      if (at === to) return false;
      out[place + axis] = numberBetween(this.bytes, start, at);
      if (axis < 2 && this.bytes[at] === close) return false;
    }
    return true;
  }

  /** Whether an attribute is written so. */
  reads(attribute: number, written: string): boolean {
    const length = attribute < this.taken ? this.to[attribute]! - this.from[attribute]! : -1;
    return length === written.length && this.spells(this.from[attribute]!, written);
  }

  /** Where an attribute begins as it is written, and where it ends; both 0 when there is none. */
  startOf(attribute: number): number {
    return attribute < this.taken ? this.from[attribute]! : 0;
  }

  endOf(attribute: number): number {
    return attribute < this.taken ? this.to[attribute]! : 0;
  }

  /** Where the text between the first and the last apostrophe of an attribute begins and ends. */
  textRange(attribute: number): [number, number] {
    const end = this.endOf(attribute);
    let from = this.startOf(attribute);
    while (from < end && this.bytes[from] !== apostrophe) from++;
    from = Math.min(from + 1, end);
    let to = end;
    while (to > from && this.bytes[to - 1] !== apostrophe) to--;
    return [from, Math.max(to - 1, from)];
  }

  /** "'it''s'" → "it's"; a wrapped value such as IFCIDENTIFIER('x') → "x"; "$" → "". */
  text(attribute: number): string {
    const [from, to] = this.textRange(attribute);
    return latin1.decode(this.bytes.subarray(from, to)).replaceAll("''", "'");
  }
}

/** Texts that many entities share: each is made once. */
export class TextTable {
  readonly texts: string[] = [];
  private readonly raw: Uint8Array[] = [];
  private readonly byHash = new Map<number, number[]>();

  constructor() {
    this.add(new Uint8Array(), 0, 0, () => ""); // an element that has none gets the first
  }

  /** The position in `texts` of the text that is written between two places. */
  add(bytes: Uint8Array, from: number, to: number, read: () => string): number {
    const sum = hashOf(bytes, from, to);
    let known = this.byHash.get(sum);
    if (!known) this.byHash.set(sum, (known = []));
    for (const index of known) if (equal(this.raw[index]!, bytes, from, to)) return index;
    known.push(this.texts.length);
    this.raw.push(bytes.slice(from, to));
    return this.texts.push(read()) - 1;
  }
}

/** Every "#12" between two places, outside of strings; gives how many. */
export function eachReference(bytes: Uint8Array, from: number, to: number, use: (number: number) => void): number {
  let count = 0;
  let inString = false;
  for (let i = from; i < to; i++) {
    const c = bytes[i];
    if (c === apostrophe) inString = !inString;
    else if (c === hash && !inString) {
      const number = digitsAt(bytes, i + 1);
      if (number === 0) continue;
      use(number);
      count++;
    }
  }
  return count;
}

function hashOf(bytes: Uint8Array, from = 0, to = bytes.length): number {
  let sum = 0;
  for (let i = from; i < to; i++) sum = (Math.imul(sum, 31) + bytes[i]!) | 0;
  return sum;
}

function equal(one: Uint8Array, bytes: Uint8Array, from: number, to: number): boolean {
  if (one.length !== to - from) return false;
  for (let i = 0; i < one.length; i++) if (one[i] !== bytes[from + i]) return false;
  return true;
}

function isWord(c: number | undefined): boolean {
  return c !== undefined && ((c >= 65 && c <= 90) || (c >= 48 && c <= 57) || c === 95);
}

function digitAt(bytes: Uint8Array, at: number): number {
  const digit = bytes[at]! - 48;
  return digit >= 0 && digit <= 9 ? digit : -1;
}

export function digitsAt(bytes: Uint8Array, at: number): number {
  let number = 0;
  for (let digit = digitAt(bytes, at); digit >= 0; digit = digitAt(bytes, ++at)) number = number * 10 + digit;
  return number;
}

const powers = Array.from({ length: 16 }, (_, i) => 10 ** i);

/**
 * The number that is written between two places, as `Number` would read it. Up to fifteen digits without an exponent
 * are a whole number and a power of ten, both exact, so that their quotient is the nearest number.
 */
function numberBetween(bytes: Uint8Array, from: number, to: number): number {
  while (bytes[from] === blank) from++;
  const negative = bytes[from] === 45;
  let whole = 0;
  let digits = 0;
  let decimals = -1;
  let at = negative ? from + 1 : from;
  for (; at < to; at++) {
    const c = bytes[at]!;
    if (c === 46 && decimals < 0) decimals = 0;
    else if (c >= 48 && c <= 57 && digits < 15) {
      whole = whole * 10 + c - 48;
      digits++;
      if (decimals >= 0) decimals++;
    } else break;
  }
  if (at < to || digits === 0) return Number(latin1.decode(bytes.subarray(from, to)));
  const size = decimals > 0 ? whole / powers[decimals]! : whole;
  return negative ? -size : size;
}

function endsWithTrailer(bytes: Uint8Array): boolean {
  let end = bytes.length;
  while (end > 0 && bytes[end - 1]! <= blank) end--;
  return latin1.decode(bytes.subarray(Math.max(end - trailer.length, 0), end)) === trailer;
}

/** A file that ends early is cut after its last whole line and closed, so that the rest of it can be read. */
function closed(bytes: Uint8Array): Uint8Array {
  let end = bytes.length;
  for (; end > 0; end--) {
    const feed = bytes[end] === 13 ? end + 1 : end;
    if (bytes[end - 1] === 59 && bytes[feed] === newline) break;
  }
  const closing = new TextEncoder().encode(`\nENDSEC;\n${trailer}\n`);
  const whole = new Uint8Array(end + closing.length);
  whole.set(bytes.subarray(0, end));
  whole.set(closing, end);
  return whole;
}
