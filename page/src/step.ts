// Reads the entity lines of an exchange file by number.
//
// The exporter writes one entity per line, so this looks at lines only; a stray apostrophe in a name
// then spoils its own line and no other. Attributes are taken apart when somebody asks for them.

const trailer = "END-ISO-10303-21;";

export interface ExchangeFile {
  bytes: Uint8Array;
  text: string;
  complete: boolean; // false when the writer stopped before the end
}

/** A file that ends early is cut after its last whole line and closed, so that the rest of it can be read. */
export function openExchangeFile(bytes: Uint8Array): ExchangeFile {
  const text = new TextDecoder("latin1").decode(bytes);
  if (text.trimEnd().endsWith(trailer)) return { bytes, text, complete: true };
  const end = Math.max(text.lastIndexOf(";\r\n"), text.lastIndexOf(";\n")) + 1; // characters are bytes in this encoding
  const closing = `\nENDSEC;\n${trailer}\n`;
  const closed = new Uint8Array(end + closing.length);
  closed.set(bytes.subarray(0, end));
  closed.set(new TextEncoder().encode(closing), end);
  return { bytes: closed, text: text.slice(0, end) + closing, complete: false };
}

export class StepText {
  private readonly bodies: (string | undefined)[] = [];
  private readonly numbersByKeyword = new Map<string, number[]>();

  constructor(text: string) {
    for (let from = 0; from < text.length; ) {
      let to = text.indexOf("\n", from);
      if (to < 0) to = text.length;
      if (text.charCodeAt(from) === 35 /* # */) this.addLine(text, from, to);
      from = to + 1;
    }
  }

  private addLine(text: string, from: number, to: number): void {
    const equals = text.indexOf("=", from);
    const open = text.indexOf("(", equals);
    const close = text.lastIndexOf(")", to);
    if (equals < 0 || open < 0 || open > to || close < open) return;
    const number = Number(text.slice(from + 1, equals));
    if (!Number.isInteger(number)) return;
    const keyword = text.slice(equals + 1, open).trim();
    this.bodies[number] = text.slice(open + 1, close);
    const numbers = this.numbersByKeyword.get(keyword);
    if (numbers) numbers.push(number);
    else this.numbersByKeyword.set(keyword, [number]);
  }

  /** Numbers of all entities of one type, in file order. */
  numbersOf(keyword: string): readonly number[] {
    return this.numbersByKeyword.get(keyword) ?? [];
  }

  /** The attributes of one entity as they are written; empty when there is no such entity. */
  attributes(number: number): string[] {
    const body = this.bodies[number];
    return body === undefined ? [] : splitList(body);
  }
}

/** Splits at the commas that stand outside of strings and parentheses. */
export function splitList(body: string): string[] {
  const parts: string[] = [];
  let depth = 0;
  let inString = false;
  let start = 0;
  for (let i = 0; i < body.length; i++) {
    const c = body.charCodeAt(i);
    if (c === 39 /* ' */) inString = !inString;
    else if (inString) continue;
    else if (c === 40 /* ( */) depth++;
    else if (c === 41 /* ) */) depth--;
    else if (c === 44 /* , */ && depth === 0) {
      parts.push(body.slice(start, i).trim());
      start = i + 1;
    }
  }
  const last = body.slice(start).trim();
  if (last !== "" || parts.length > 0) parts.push(last);
  return parts;
}

/** "#12" → 12; 0 for anything else. */
export function toReference(attribute: string | undefined): number {
  return attribute?.startsWith("#") ? Number(attribute.slice(1)) || 0 : 0;
}

/** "(#1, #2)" → [1, 2]. */
export function toReferences(attribute: string | undefined): number[] {
  return toList(attribute).map(toReference).filter((n) => n > 0);
}

/** "(1., 2.)" → [1, 2]. */
export function toNumbers(attribute: string | undefined): number[] {
  return toList(attribute).map(Number);
}

/** "'it''s'" → "it's"; a wrapped value such as IFCIDENTIFIER('x') → "x"; "$" → "". */
export function toText(attribute: string | undefined): string {
  if (!attribute) return "";
  const first = attribute.indexOf("'");
  const last = attribute.lastIndexOf("'");
  return first < 0 || last <= first ? "" : attribute.slice(first + 1, last).replaceAll("''", "'");
}

function toList(attribute: string | undefined): string[] {
  return attribute?.startsWith("(") && attribute.endsWith(")") ? splitList(attribute.slice(1, -1)) : [];
}
