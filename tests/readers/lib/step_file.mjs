// An ISO 10303-21 reader of its own: it takes the bytes of a file, knows nothing of the program that wrote them
// and stops at the first thing the grammar does not allow. What it returns is the file as data:
//
//   { header: [instance], entities: [instance] }
//   instance  { id, keyword, args, line, column }
//   value     { kind, value, line, column }, kind one of
//             unset $ · derived * · integer · real · string · enumeration · binary · reference · list · typed
//             (a typed value carries its keyword and one inner value)

export class Fault extends Error {
  constructor(code, message, line, column) {
    super(message);
    this.code = code;
    this.line = line;
    this.column = column;
  }
}

const isDigit = (c) => c >= '0' && c <= '9';
const isUpper = (c) => (c >= 'A' && c <= 'Z') || c === '_';
const isBlank = (c) => c === ' ' || c === '\t' || c === '\r' || c === '\n';

class Scanner {
  constructor(text) {
    this.text = text;
    this.at = 0;
    this.line = 1;
    this.lineStart = 0;
  }

  here() {
    return { line: this.line, column: this.at - this.lineStart + 1 };
  }

  fault(code, message, place = this.here()) {
    return new Fault(code, message, place.line, place.column);
  }

  step() {
    if (this.text[this.at] === '\n') {
      this.line += 1;
      this.lineStart = this.at + 1;
    }
    this.at += 1;
  }

  // Blanks, line ends and comments may stand between any two tokens.
  skip() {
    for (;;) {
      const c = this.text[this.at];
      if (c !== undefined && isBlank(c)) {
        this.step();
      } else if (c === '/' && this.text[this.at + 1] === '*') {
        this.comment();
      } else {
        return;
      }
    }
  }

  comment() {
    const place = this.here();
    const end = this.text.indexOf('*/', this.at + 2);
    if (end < 0) throw this.fault('unterminated-comment', 'this comment is never closed', place);
    while (this.at < end + 2) this.step();
  }

  peek() {
    this.skip();
    return this.text[this.at];
  }

  // The literal `word` as the next token.
  take(word, code) {
    this.skip();
    if (!this.text.startsWith(word, this.at)) {
      throw this.fault(code, `expected "${word}", found ${this.shown()}`);
    }
    for (let i = 0; i < word.length; i += 1) this.step();
  }

  has(word) {
    this.skip();
    return this.text.startsWith(word, this.at);
  }

  shown() {
    if (this.at >= this.text.length) return 'the end of the file';
    return JSON.stringify(this.text.slice(this.at, this.at + 12).split(/[\r\n]/)[0]);
  }

  keyword() {
    this.skip();
    const place = this.here();
    const begin = this.at;
    if (this.text[this.at] === '!') this.step();
    if (!isUpper(this.text[this.at] ?? '')) {
      throw this.fault('bad-keyword', `expected a keyword in capitals, found ${this.shown()}`, place);
    }
    while (isUpper(this.text[this.at] ?? '') || isDigit(this.text[this.at] ?? '')) this.step();
    return this.text.slice(begin, this.at);
  }

  instanceNumber() {
    const place = this.here();
    this.take('#', 'bad-reference');
    const begin = this.at;
    while (isDigit(this.text[this.at] ?? '')) this.step();
    const digits = this.text.slice(begin, this.at);
    if (!/[1-9]/.test(digits)) throw this.fault('bad-reference', 'an instance number is "#" and a number above 0', place);
    return Number(digits);
  }

  // Between apostrophes only the blank to the tilde may stand; anything else needs a "\" directive, and the
  // apostrophe itself is written twice.
  string() {
    const place = this.here();
    this.step();
    let value = '';
    for (;;) {
      const c = this.text[this.at];
      if (c === undefined || c === '\n' || c === '\r') {
        throw this.fault('unterminated-string', 'this text is never closed', place);
      }
      if (c === "'") {
        this.step();
        if (this.text[this.at] !== "'") return value;
        value += "'";
        this.step();
      } else if (c === '\\') {
        value += this.directive();
      } else if (c < ' ' || c > '~') {
        throw this.fault('bad-character', `the byte 0x${c.charCodeAt(0).toString(16)} may not stand in a text`);
      } else {
        value += c;
        this.step();
      }
    }
  }

  directive() {
    const rest = this.text.slice(this.at, this.at + 4096);
    const forms = [
      [/^\\\\/, () => '\\'],
      [/^\\S\\([ -~])/, (m) => String.fromCharCode(m[1].charCodeAt(0) + 128)],
      [/^\\P[A-I]\\/, () => ''],
      [/^\\X\\([0-9A-F]{2})/, (m) => String.fromCharCode(Number.parseInt(m[1], 16))],
      [/^\\X2\\((?:[0-9A-F]{4})+)\\X0\\/, (m) => m[1].match(/.{4}/g).map((h) => String.fromCharCode(Number.parseInt(h, 16))).join('')],
      [/^\\X4\\((?:[0-9A-F]{8})+)\\X0\\/, (m) => m[1].match(/.{8}/g).map((h) => String.fromCodePoint(Number.parseInt(h, 16))).join('')],
    ];
    for (const [form, meaning] of forms) {
      const m = form.exec(rest);
      if (m) {
        for (let i = 0; i < m[0].length; i += 1) this.step();
        return meaning(m);
      }
    }
    throw this.fault('bad-escape', `${this.shown()} is no directive for a character`);
  }

  // The longest run of characters that could belong to a number must be one as a whole.
  number() {
    const place = this.here();
    const begin = this.at;
    while (/[-+.0-9A-Za-z_]/.test(this.text[this.at] ?? '')) this.step();
    const text = this.text.slice(begin, this.at);
    if (/^[-+]?[0-9]+$/.test(text)) return { kind: 'integer', value: Number(text), text, ...place };
    if (/^[-+]?[0-9]+\.[0-9]*(E[-+]?[0-9]+)?$/.test(text)) return { kind: 'real', value: Number(text), text, ...place };
    throw this.fault('bad-number', `"${text}" is neither an integer nor a real number`, place);
  }

  enumeration() {
    const place = this.here();
    const m = /^\.([A-Z_][A-Z0-9_]*)\./.exec(this.text.slice(this.at, this.at + 256));
    if (!m) throw this.fault('bad-enumeration', `${this.shown()} is no enumeration value`, place);
    for (let i = 0; i < m[0].length; i += 1) this.step();
    return { kind: 'enumeration', value: m[1], ...place };
  }

  binary() {
    const place = this.here();
    const m = /^"([0-3][0-9A-F]*)"/.exec(this.text.slice(this.at, this.at + 65536));
    if (!m) throw this.fault('bad-binary', `${this.shown()} is no binary value`, place);
    for (let i = 0; i < m[0].length; i += 1) this.step();
    return { kind: 'binary', value: m[1], ...place };
  }

  value() {
    this.skip();
    const place = this.here();
    const c = this.text[this.at];
    if (c === '$' || c === '*') {
      this.step();
      return { kind: c === '$' ? 'unset' : 'derived', ...place };
    }
    if (c === "'") return { kind: 'string', value: this.string(), ...place };
    if (c === '#') return { kind: 'reference', value: this.instanceNumber(), ...place };
    if (c === '(') return { kind: 'list', value: this.list(), ...place };
    if (c === '"') return this.binary();
    if (c === '.') {
      if (isDigit(this.text[this.at + 1] ?? '')) return this.number();
      return this.enumeration();
    }
    if (c === '+' || c === '-' || isDigit(c ?? '')) return this.number();
    if (isUpper(c ?? '')) {
      const keyword = this.keyword();
      const inner = this.list();
      if (inner.length !== 1) {
        throw this.fault('bad-typed-value', `${keyword}(…) must hold exactly one value`, place);
      }
      return { kind: 'typed', keyword, value: inner[0], ...place };
    }
    throw this.fault('bad-value', `expected a value, found ${this.shown()}`, place);
  }

  list() {
    this.take('(', 'missing-parenthesis');
    const values = [];
    if (this.peek() === ')') {
      this.step();
      return values;
    }
    for (;;) {
      values.push(this.value());
      const c = this.peek();
      if (c === ')') {
        this.step();
        return values;
      }
      if (c !== ',') throw this.fault('missing-parenthesis', `expected "," or ")", found ${this.shown()}`);
      this.step();
    }
  }
}

function readHeader(scan) {
  scan.take('HEADER;', 'missing-header');
  const header = [];
  for (const expected of ['FILE_DESCRIPTION', 'FILE_NAME', 'FILE_SCHEMA']) {
    scan.skip();
    const place = scan.here();
    const keyword = scan.keyword();
    if (keyword !== expected) throw scan.fault('wrong-header', `expected ${expected}, found ${keyword}`, place);
    const args = scan.list();
    scan.take(';', 'missing-semicolon');
    header.push({ keyword, args, ...place });
  }
  scan.take('ENDSEC;', 'missing-endsec');
  return header;
}

function readEntities(scan) {
  scan.take('DATA;', 'missing-data');
  const entities = [];
  for (;;) {
    const c = scan.peek();
    if (c === undefined) throw scan.fault('missing-trailer', 'the file ends inside the data section');
    if (c !== '#') break;
    const place = scan.here();
    const id = scan.instanceNumber();
    scan.take('=', 'missing-equals');
    const keyword = scan.keyword();
    const args = scan.list();
    scan.take(';', 'missing-semicolon');
    entities.push({ id, keyword, args, ...place });
  }
  scan.take('ENDSEC;', 'missing-endsec');
  return entities;
}

// `text` holds one character per byte of the file.
export function parseStepFile(text) {
  const scan = new Scanner(text);
  scan.take('ISO-10303-21;', 'missing-header');
  const header = readHeader(scan);
  const entities = readEntities(scan);
  if (!scan.has('END-ISO-10303-21;')) throw scan.fault('missing-trailer', 'the file has no END-ISO-10303-21');
  scan.take('END-ISO-10303-21;', 'missing-trailer');
  if (scan.peek() !== undefined) throw scan.fault('text-after-trailer', `${scan.shown()} stands behind the end of the exchange structure`);
  return { header, entities };
}
