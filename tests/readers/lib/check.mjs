// Holds a parsed file against the IFC2X3 tables. Every fault found is { code, message, line, column, entity,
// attribute, id }; an empty list means that the file keeps to grammar and schema.

import { Fault, parseStepFile } from './step_file.mjs';
import { loadSchema } from './schema.mjs';

const schema = loadSchema();

// How many items a list takes, where a bar model uses one; every other list of the schema takes one or more.
const listBounds = new Map([
  ['IfcCartesianPoint.Coordinates', [1, 3]],
  ['IfcDirection.DirectionRatios', [2, 3]],
  ['IfcPolyline.Points', [2, Infinity]],
]);

// Types whose values must be above zero.
const positiveTypes = new Set(['IfcPositiveLengthMeasure', 'IfcPositiveRatioMeasure', 'IfcPositivePlaneAngleMeasure']);

const globalIdForm = /^[0-3][0-9A-Za-z_$]{21}$/;

// The first number that the exporter hands out for the content, after its template.
const firstGenerated = 5006;

const hyphened = (kind) => kind.replaceAll(' ', '-');

export class Checker {
  constructor(file) {
    this.file = file;
    this.faults = [];
    this.byId = new Map();
    this.globalIds = new Map();
    this.placements = new Map();
  }

  add(code, message, place, where = {}) {
    this.faults.push({ code, message, line: place.line, column: place.column, ...where });
  }

  run() {
    this.checkHeader();
    for (const e of this.file.entities) {
      if (this.byId.has(e.id)) this.add('duplicate-number', `#${e.id} is used a second time`, e, { id: e.id });
      else this.byId.set(e.id, e);
    }
    for (const e of this.file.entities) this.checkEntity(e);
    this.checkPlacements();
    return this.faults;
  }

  checkHeader() {
    const [description, name, fileSchema] = this.file.header;
    const want = (h, count, kinds) => {
      const found = h.args.map((a) => a.kind);
      if (found.length !== count) this.add('wrong-header', `${h.keyword} takes ${count} values, not ${found.length}`, h);
      else if (found.join() !== kinds.join()) this.add('wrong-header', `${h.keyword} holds ${found.join(', ')}`, h);
    };
    want(description, 2, ['list', 'string']);
    want(name, 7, ['string', 'string', 'list', 'list', 'string', 'string', 'string']);
    want(fileSchema, 1, ['list']);
    if (this.faults.length > 0) return;
    const stamp = name.args[1].value;
    if (!/^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d(Z|[-+]\d\d:?\d\d)?$/.test(stamp)) {
      this.add('wrong-header', `"${stamp}" is no time stamp`, name.args[1]);
    }
    const names = fileSchema.args[0].value.map((v) => v.value);
    if (names.length !== 1 || names[0] !== 'IFC2X3') this.add('wrong-schema', `the schema is ${names.join(', ')}`, fileSchema);
  }

  checkEntity(e) {
    const type = schema.entities.get(e.keyword);
    if (!type) {
      this.add('unknown-entity', `${e.keyword} is no entity of IFC2X3`, e, { id: e.id });
      return;
    }
    const where = { id: e.id, entity: type.name };
    if (e.args.length !== type.attributes.length) {
      this.add('wrong-attribute-count', `${type.name} takes ${type.attributes.length} attributes, not ${e.args.length}`, e, where);
      return;
    }
    type.attributes.forEach((attribute, i) => this.checkAttribute(e.args[i], attribute, { ...where, attribute: attribute.name }));
    if (schema.ancestors(type.name).includes('IfcRoot')) this.checkGlobalId(e, where);
    const placement = type.attributes.findIndex((a) => a.name === 'ObjectPlacement');
    if (placement >= 0 && e.args[placement].kind === 'reference') {
      const id = e.args[placement].value;
      this.placements.set(id, [...(this.placements.get(id) ?? []), e]);
    }
  }

  checkGlobalId(e, where) {
    const value = e.args[0];
    if (value.kind !== 'string') return;
    const at = { ...where, attribute: 'GlobalId' };
    if (value.value.length !== 22) {
      this.add('short-globalid', `"${value.value}" has ${value.value.length} characters, not 22`, value, at);
    } else if (!globalIdForm.test(value.value)) {
      this.add('bad-globalid', `"${value.value}" does not begin with 0 to 3 or leaves the alphabet`, value, at);
    }
    if (this.globalIds.has(value.value)) {
      this.add('duplicate-globalid', `"${value.value}" is also the GlobalId of #${this.globalIds.get(value.value)}`, value, at);
    } else {
      this.globalIds.set(value.value, e.id);
    }
  }

  checkAttribute(value, attribute, where) {
    const name = `${where.entity}.${attribute.name}`;
    if (attribute.derived) {
      if (value.kind !== 'derived') this.add('value-for-derived', `${where.entity} derives this attribute; "*" must stand here`, value, where);
      return;
    }
    if (value.kind === 'unset') {
      if (!attribute.optional) this.add('missing-mandatory', `${name} may not be left out`, value, where);
      return;
    }
    this.checkList(value, attribute, attribute.list, where);
  }

  checkList(value, attribute, depth, where) {
    if (depth === 0) {
      this.checkValue(value, attribute.base, where);
      return;
    }
    if (value.kind !== 'list') {
      this.mismatch(value, 'list', where);
      return;
    }
    const [least, most] = listBounds.get(`${where.entity}.${attribute.name}`) ?? [1, Infinity];
    if (value.value.length < least) {
      this.add('list-too-short', `${where.entity}.${attribute.name} takes at least ${least} items, not ${value.value.length}`, value, where);
    } else if (value.value.length > most) {
      this.add('list-too-long', `${where.entity}.${attribute.name} takes at most ${most} items, not ${value.value.length}`, value, where);
    }
    value.value.forEach((item) => this.checkList(item, attribute, depth - 1, where));
  }

  mismatch(value, expected, where) {
    this.add(`${value.kind}-for-${hyphened(expected)}`, `${where.entity}.${where.attribute}: expected ${expected}, found ${value.kind}`, value, where);
  }

  checkValue(value, base, where) {
    if (schema.enumerations.has(base)) this.checkEnumeration(value, base, where);
    else if (schema.selects.has(base)) this.checkSelect(value, base, where);
    else if (schema.simple.has(base)) this.checkSimple(value, schema.simple.get(base), base, where);
    else if (['integer', 'real', 'string', 'boolean', 'logical'].includes(base)) this.checkSimple(value, base, base, where);
    else this.checkReference(value, [base], where);
  }

  checkEnumeration(value, base, where) {
    if (value.kind !== 'enumeration') this.mismatch(value, 'enumeration', where);
    else if (!schema.enumerations.get(base).has(value.value)) {
      this.add('unknown-enumeration', `.${value.value}. is no value of ${base}`, value, where);
    }
  }

  checkSimple(value, kind, base, where) {
    const expectsList = /^list of (.*)$/.exec(kind);
    if (expectsList) {
      if (value.kind !== 'list') this.mismatch(value, 'list', where);
      else value.value.forEach((item) => this.checkSimple(item, expectsList[1], base, where));
      return;
    }
    if (kind === 'number') {
      if (value.kind !== 'integer' && value.kind !== 'real') this.mismatch(value, 'number', where);
    } else if (kind === 'boolean' || kind === 'logical') {
      const allowed = kind === 'boolean' ? ['T', 'F'] : ['T', 'F', 'U'];
      if (value.kind !== 'enumeration') this.mismatch(value, kind, where);
      else if (!allowed.includes(value.value)) this.add('unknown-enumeration', `.${value.value}. is no ${kind}`, value, where);
    } else if (value.kind !== kind) {
      this.mismatch(value, kind, where);
    } else if (positiveTypes.has(base) && !(value.value > 0)) {
      this.add('not-positive', `${where.entity}.${where.attribute} must be above zero, not ${value.value}`, value, where);
    }
  }

  checkSelect(value, base, where) {
    const members = [...schema.membersOf(base)];
    const simple = members.filter((m) => schema.simple.has(m));
    const enumerations = members.filter((m) => schema.enumerations.has(m));
    const entities = members.filter((m) => !schema.simple.has(m) && !schema.enumerations.has(m));
    if (value.kind === 'reference' && entities.length > 0) {
      this.checkReference(value, entities, where);
    } else if (value.kind === 'typed') {
      const name = simple.find((m) => m.toUpperCase() === value.keyword);
      if (name) this.checkSimple(value.value, schema.simple.get(name), name, where);
      else this.add('wrong-select', `${value.keyword} is no choice of ${base}`, value, where);
    } else if (value.kind === 'enumeration' && enumerations.some((m) => schema.enumerations.get(m).has(value.value))) {
      // A choice among enumerations stands without its type's name.
    } else {
      this.mismatch(value, simple.length > 0 ? 'typed value' : 'reference', where);
    }
  }

  checkReference(value, bases, where) {
    if (value.kind !== 'reference') {
      this.mismatch(value, 'reference', where);
      return;
    }
    const target = this.byId.get(value.value);
    if (!target) {
      this.add('dangling-reference', `#${value.value} is not in the file`, value, where);
      return;
    }
    const type = schema.entities.get(target.keyword);
    if (!type) return;
    if (!schema.ancestors(type.name).some((name) => bases.includes(name))) {
      this.add('wrong-reference-type', `${where.entity}.${where.attribute} takes ${bases.join(' or ')}; #${value.value} is an ${type.name}`, value, where);
    }
  }

  // A placement places exactly one product.
  checkPlacements() {
    for (const [id, products] of this.placements) {
      if (products.length > 1) {
        this.add('shared-placement', `#${id} places ${products.map((e) => `#${e.id}`).join(', ')}`, products[1], { id, entity: 'IfcLocalPlacement', attribute: 'PlacesObject', places: products.map((e) => e.keyword) });
      }
    }
  }
}

// What only this exporter promises: CR LF at every line's end and nowhere else, and content numbers that count up
// from 5006 without a gap, in the order of the file.
function checkOwnHabits(text, file) {
  const faults = [];
  const add = (code, message, line, column = 1) => faults.push({ code, message, line, column });
  const lines = text.split('\n');
  if (lines.pop() !== '') add('not-crlf', 'the last line has no end', lines.length + 1);
  lines.forEach((line, i) => {
    if (!line.endsWith('\r') || line.indexOf('\r') !== line.length - 1) add('not-crlf', 'this line does not end with CR LF alone', i + 1, line.length);
  });
  let next = firstGenerated;
  for (const e of file.entities) {
    if (e.id < firstGenerated) continue;
    if (e.id !== next) add('number-gap', `expected #${next}, found #${e.id}`, e.line, e.column);
    next = e.id + 1;
  }
  return faults;
}

// `text` holds one character per byte. With `own` the habits of this exporter are checked too.
export function checkText(text, { own = false } = {}) {
  let file;
  try {
    file = parseStepFile(text);
  } catch (error) {
    if (!(error instanceof Fault)) throw error;
    return [{ code: error.code, message: error.message, line: error.line, column: error.column }];
  }
  const faults = new Checker(file).run();
  if (own) faults.push(...checkOwnHabits(text, file));
  return faults;
}

export const showFault = (path, f) => `${path}:${f.line}:${f.column}: ${f.code}: ${f.message}`;
