// The exporter itself, compiled for the page: include/exportifc/library.h says what each call does.

/** How a call of the library ended. */
export const enum Result {
  ok = 0,
  problems = 1,
  badUse = 2,
  unreadable = 3,
  notWritten = 4,
  noMemory = 5,
}

/** What a check or an export leaves out or adds. */
export const enum Flags {
  allBars = 0,
  visibleOnly = 1,
  notes = 2,
}

/** How a take-off gives its lists. */
const enum Lists {
  csv = 0,
  json = 1,
}

/** Rows by the keys that `exportifc takeoff --json` has; what a row does not have has no key. */
export type TakeoffRow = Record<string, string | number>;

export interface Takeoff {
  sections?: TakeoffRow[];
  groups?: TakeoffRow[];
  layers?: TakeoffRow[];
  cuts?: TakeoffRow[];
  total?: TakeoffRow;
}

/** A problem as `exportifc check --json` says it. */
export interface Problem {
  code: string;
  severity: "error" | "warning" | "note";
  message: string;
  file?: string;
  line?: number;
  column?: number;
  cell?: string;
  pointer?: string;
  bars?: number;
  firstBar?: number;
  section?: string;
}

interface Library {
  memory: WebAssembly.Memory;
  _initialize(): void;
  malloc(size: number): number;
  free(at: number): void;
  exportIfcVersion(): number;
  exportIfcFormats(): number;
  exportIfcOpen(bytes: number, size: number, name: number, language: number, model: number): Result;
  exportIfcClose(model: number): void;
  exportIfcBarCount(model: number): bigint;
  exportIfcTransliterate(model: number): Result;
  exportIfcCheck(model: number, flags: number): Result;
  exportIfcProblemsJson(model: number): number;
  pageExport(model: number, flags: number): Result;
  pageTakeoff(model: number, lists: Lists): Result;
}

const pointerSize = 4;

/** The library in this page; one model at a time is exported. */
export class Exporter {
  private write: (piece: Uint8Array) => void = () => {};
  private progress: (done: number) => void = () => {};
  private calls!: Library;

  /** Compiles the library; throws where there is no WebAssembly. */
  static async start(wasm: BufferSource): Promise<Exporter> {
    const exporter = new Exporter();
    const { instance } = await WebAssembly.instantiate(wasm, exporter.imports());
    exporter.calls = instance.exports as unknown as Library;
    exporter.calls._initialize();
    return exporter;
  }

  /** "1.0.0". */
  version(): string {
    return this.text(this.calls.exportIfcVersion());
  }

  /** The extensions of model files that `open` reads: ".json", ".txt", ".xlsx", ".zip". */
  formats(): string[] {
    return this.text(this.calls.exportIfcFormats()).split(";");
  }

  /** Reads a model. Close it, also when its result is not `ok`. */
  open(bytes: Uint8Array, name: string, language: string): OpenModel {
    const library = this.calls;
    const held = [this.put(bytes), this.put(terminated(name)), this.put(terminated(language))];
    const place = library.malloc(pointerSize);
    const result = library.exportIfcOpen(held[0]!, bytes.length, held[1]!, held[2]!, place);
    const model = new DataView(library.memory.buffer).getUint32(place, true);
    [...held, place].forEach((at) => library.free(at));
    return new OpenModel(this, library, model, result);
  }

  /** Runs one export with these two in place. */
  exporting(write: (piece: Uint8Array) => void, progress: (done: number) => void, run: () => Result): Result {
    [this.write, this.progress] = [write, progress];
    return run();
  }

  text(at: number): string {
    const memory = this.bytes();
    return new TextDecoder().decode(memory.subarray(at, memory.indexOf(0, at)));
  }

  private bytes(): Uint8Array<ArrayBuffer> {
    return new Uint8Array(this.calls.memory.buffer as ArrayBuffer);
  }

  private put(bytes: Uint8Array): number {
    const at = this.calls.malloc(Math.max(bytes.length, 1));
    if (at === 0) throw new RangeError("no memory for the model");
    this.bytes().set(bytes, at);
    return at;
  }

  /** What the library asks of the page. It has no environment, no files, and nothing to end. */
  private imports(): WebAssembly.Imports {
    const nothing = () => 0;
    const noSuchFile = () => 8; // as systems number it
    return {
      page: {
        write: (at: number, size: number) => this.write(this.bytes().slice(at, at + size)),
        progress: (done: number) => this.progress(done),
      },
      env: {
        getentropy: (at: number, size: number) => {
          crypto.getRandomValues(this.bytes().subarray(at, at + size));
          return 0;
        },
        emscripten_notify_memory_growth: nothing,
      },
      wasi_snapshot_preview1: {
        environ_get: nothing,
        environ_sizes_get: (count: number, size: number) => {
          const memory = new DataView(this.calls.memory.buffer);
          memory.setUint32(count, 0, true);
          memory.setUint32(size, 0, true);
          return 0;
        },
        fd_close: noSuchFile,
        fd_seek: noSuchFile,
        fd_write: noSuchFile,
        proc_exit: (code: number) => {
          throw new Error(`the exporter ended with ${code}`);
        },
      },
    };
  }
}

/** A model that the library holds. */
export class OpenModel {
  constructor(
    private readonly exporter: Exporter,
    private readonly calls: Library,
    private readonly model: number,
    readonly result: Result,
  ) {}

  barCount(): number {
    return Number(this.calls.exportIfcBarCount(this.model));
  }

  check(flags: Flags): Result {
    return this.calls.exportIfcCheck(this.model, flags);
  }

  /** What `open` or the last check found. */
  problems(): Problem[] {
    return JSON.parse(this.exporter.text(this.calls.exportIfcProblemsJson(this.model)));
  }

  transliterate(): Result {
    return this.calls.exportIfcTransliterate(this.model);
  }

  /** Writes the IFC file in pieces; `progress` is told the bars that are done. */
  export(flags: Flags, write: (piece: Uint8Array) => void, progress: (done: number) => void): Result {
    return this.exporter.exporting(write, progress, () => this.calls.pageExport(this.model, flags));
  }

  takeoff(): Takeoff {
    return JSON.parse(new TextDecoder().decode(this.lists(Lists.json)));
  }

  /** The take-off as spreadsheets of the model's language read it. */
  takeoffTable(): Uint8Array<ArrayBuffer> {
    return this.lists(Lists.csv);
  }

  private lists(form: Lists): Uint8Array<ArrayBuffer> {
    const pieces: Uint8Array<ArrayBuffer>[] = [];
    const take = (piece: Uint8Array) => void pieces.push(piece as Uint8Array<ArrayBuffer>);
    const result = this.exporter.exporting(take, () => {}, () => this.calls.pageTakeoff(this.model, form));
    if (result !== Result.ok) throw new Error(`the take-off ended with ${result}`);
    const whole = new Uint8Array(pieces.reduce((size, piece) => size + piece.length, 0));
    let at = 0;
    for (const piece of pieces) {
      whole.set(piece, at);
      at += piece.length;
    }
    return whole;
  }

  close(): void {
    this.calls.exportIfcClose(this.model);
  }
}

const terminated = (text: string) => new TextEncoder().encode(`${text}\0`);
