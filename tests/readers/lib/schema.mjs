// The IFC2X3 tables, taken from what web-ifc ships: the declarations give every entity's attributes with their
// types and which may be left out, every enumeration and every select; the code beside them gives the order of the
// attributes in a file, which of them are derived, and which numbers are integers.

import { createRequire } from 'node:module';
import { readFileSync } from 'node:fs';
import { dirname, join } from 'node:path';

const require = createRequire(import.meta.url);
const webIfc = require('web-ifc');
const declarations = join(dirname(require.resolve('web-ifc')), 'ifc-schema.d.ts');

// web-ifc's index of the schema in its tables.
const ifc2x3 = 1;

// What the tables do not tell: these two are NUMBER in the schema, integers and reals alike.
const numberTypes = new Set(['IfcCountMeasure', 'IfcNumericMeasure']);
// Lists of bare numbers are reals but for these.
const integerLists = new Set(['RelatingPriorities', 'RelatedPriorities']);

// Splits at commas outside of brackets.
function splitTop(text) {
  const parts = [];
  let depth = 0;
  let begin = 0;
  for (let i = 0; i < text.length; i += 1) {
    const c = text[i];
    if ('([{<'.includes(c)) depth += 1;
    if (')]}>'.includes(c) && text[i - 1] !== '=') depth -= 1;
    if (c === ',' && depth === 0) {
      parts.push(text.slice(begin, i).trim());
      begin = i + 1;
    }
  }
  const last = text.slice(begin).trim();
  if (last) parts.push(last);
  return parts;
}

function namespaceText() {
  const all = readFileSync(declarations, 'utf8');
  const begin = all.indexOf('export declare namespace IFC2X3 {');
  const end = all.indexOf('\n}', begin);
  if (begin < 0 || end < 0) throw new Error('the IFC2X3 declarations are not where they were');
  return all.slice(begin, end);
}

function readDeclarations() {
  const classes = new Map();
  const selects = new Map();
  let current = null;
  for (const line of namespaceText().split('\n')) {
    let m;
    if ((m = /^    class (\w+)(?: extends (\w+))? \{/.exec(line))) {
      current = { name: m[1], parent: m[2] ?? null, members: [], parameters: null };
      classes.set(m[1], current);
    } else if ((m = /^    type (\w+) = (.*);$/.exec(line))) {
      selects.set(m[1], m[2]);
    } else if (current && (m = /^        static (\w+): any;/.exec(line))) {
      current.members.push(m[1]);
    } else if (current && (m = /^        constructor\((.*)\);$/.exec(line))) {
      current.parameters = m[1];
    }
  }
  return { classes, selects };
}

// "(Handle<IfcDirection> | IfcDirection)[] | null" -> { optional, list, base }
function readType(text) {
  let t = text.trim();
  let optional = false;
  if (t.endsWith('| null')) {
    optional = true;
    t = t.slice(0, -'| null'.length).trim();
  }
  let list = 0;
  while (t.endsWith('[]')) {
    list += 1;
    t = t.slice(0, -2);
  }
  const handle = /^\(Handle<(\w+)> \| \w+\)$/.exec(t);
  if (handle) return { optional, list, base: handle[1] };
  if (t === '(NumberHandle | number)') return { optional, list, base: 'number' };
  if (/^\w+$/.test(t)) return { optional, list, base: t };
  throw new Error(`a type of an unknown form: ${text}`);
}

export function loadSchema() {
  const { classes, selects } = readDeclarations();

  const isEntity = (name) => {
    for (let c = classes.get(name); c; c = classes.get(c.parent)) {
      if (c.parent === 'IfcLineObject') return true;
    }
    return false;
  };

  const enumerations = new Map();
  const simple = new Map();
  const parents = new Map();
  for (const c of classes.values()) {
    if (isEntity(c.name)) {
      parents.set(c.name, c.parent === 'IfcLineObject' ? null : c.parent);
    } else if (c.members.length > 0) {
      enumerations.set(c.name, new Set(c.members));
    } else {
      simple.set(c.name, simpleKind(c.name));
    }
  }

  const typecodes = new Map(Object.entries(webIfc).filter(([key, value]) => /^IFC[A-Z0-9]+$/.test(key) && typeof value === 'number'));
  const entities = new Map();
  for (const name of parents.keys()) {
    const code = typecodes.get(name.toUpperCase());
    const writer = webIfc.ToRawLineData[ifc2x3][code];
    const reader = webIfc.FromRawLineData[ifc2x3][code];
    if (!writer || !reader) continue;
    entities.set(name.toUpperCase(), { name, attributes: attributesOf(classes.get(name), writer, reader) });
  }
  if (entities.size < 600) throw new Error(`only ${entities.size} entities found in the IFC2X3 tables`);

  const ancestors = (name) => {
    const line = [];
    for (let n = name; n; n = parents.get(n)) line.push(n);
    return line;
  };

  // The members of a select, selects inside it opened: names of entities and of simple types.
  const members = new Map();
  const membersOf = (name) => {
    if (!members.has(name)) {
      const found = new Set();
      for (const part of selects.get(name).split(/\s*\|\s*(?![^(]*\))/)) {
        const { base } = readType(part);
        if (selects.has(base)) membersOf(base).forEach((n) => found.add(n));
        else found.add(base);
      }
      members.set(name, found);
    }
    return members.get(name);
  };

  return { entities, enumerations, simple, selects, membersOf, ancestors };
}

// How a value of a simple type is written: integer, real, number, string, boolean, logical, or a list of numbers.
function simpleKind(name) {
  if (numberTypes.has(name)) return 'number';
  if (name === 'IfcBoolean') return 'boolean';
  if (name === 'IfcLogical') return 'logical';
  const made = new webIfc.IFC2X3[name]([]);
  const kind = { 1: 'string', 4: 'real', 10: 'integer' }[made.type];
  if (!kind) throw new Error(`a simple type of an unknown form: ${name}`);
  const isList = Array.isArray(made.value);
  return isList && !(made instanceof webIfc.NumberHandle) && kind !== 'string' ? `list of ${kind}` : kind;
}

function attributesOf(declared, writer, reader) {
  const parameters = splitTop(declared.parameters ?? '').map((p) => {
    const colon = p.indexOf(':');
    return { name: p.slice(0, colon), ...readType(p.slice(colon + 1)) };
  });
  const body = writer.toString();
  const order = splitTop(body.slice(body.indexOf('[') + 1, body.lastIndexOf(']'))).map((item) => {
    if (item === 'void 0') return null;
    return /i\.(\w+)/.exec(item)[1];
  });
  const read = reader.toString();
  const readArgs = splitTop(read.slice(read.indexOf('(', read.indexOf('new IFC2X3')) + 1, read.lastIndexOf(')')));
  let next = 0;
  return order.map((name) => {
    if (name === null) return { name: 'derived', derived: true };
    const index = next;
    next += 1;
    const p = parameters[index];
    if (!p || p.name !== name) throw new Error(`${declared.name}: attribute ${name} does not meet its declaration`);
    if (p.base !== 'number') return p;
    const integer = p.list > 0 ? integerLists.has(name) : /, 10\)$/.test(readArgs[index]);
    return { ...p, base: integer ? 'integer' : 'real' };
  });
}
