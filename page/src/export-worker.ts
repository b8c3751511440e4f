// Does one job beside the page: reads a dropped file, checks it, makes the exchange file, packs it.

import { Exporter, Flags, type OpenModel, Result } from "./exporter";
import type { Job, JobFailure, JobReport, Origin, Sources } from "./jobs";
import { fromBase64, mostBytes, unpack } from "./unpack";
import { firstExchangeFile, isZip, together, zipped, ZipFault } from "./zip";

const scope = self as unknown as {
  onmessage: (event: MessageEvent<Job>) => void;
  postMessage(report: JobReport): void;
};

/** Bytes of a model that this page takes: some three million bars. Text, model and file lie in memory together. */
const mostModelBytes = 2 ** 28;

const exchangeStart = "ISO-10303-21;";
/** Names the application in each file of this exporter, among its first lines. */
const ownName = "'Prototipo_korvane_ifc'";
const startBytes = 4096; // in which both are found

class Failed extends Error {
  constructor(
    readonly reason: JobFailure,
    detail = "",
  ) {
    super(detail);
  }
}

scope.onmessage = ({ data }) => {
  run(data).then(
    () => scope.postMessage({ kind: "done" }),
    (error: unknown) => scope.postMessage({ kind: "failed", ...reasonOf(error) }),
  );
};

function reasonOf(error: unknown): { reason: JobFailure; detail: string } {
  if (error instanceof Failed) return { reason: error.reason, detail: error.message };
  if (error instanceof ZipFault) return { reason: error.reason, detail: "" };
  if (error instanceof RangeError) return { reason: "tooLargeHere", detail: "" }; // no memory for an array
  return { reason: "ended", detail: String(error) };
}

async function run(job: Job): Promise<void> {
  switch (job.kind) {
    case "open": return open(job);
    case "check": return check(job);
    case "takeoff": return table(job);
    case "zip": return scope.postMessage({ kind: "content", content: await zipped(job.file, job.name, tell()) });
    case "pack": return scope.postMessage({ kind: "content", content: await packed(job.file) });
  }
}

type ModelJob = Extract<Job, { files: Sources }>;

async function open(job: ModelJob): Promise<void> {
  const source = await oneFile(job.files);
  let file = source;
  let start = await startOf(file);
  if (isZip(start)) {
    // Workbooks are zips, too, and tables may be in one: whatever holds no exchange file is left to the exporter.
    const inside = await firstExchangeFile(file, mostBytes, tell());
    if (!inside && /\.ifczip$/i.test(job.name)) throw new Failed("badZip");
    if (inside) {
      file = inside;
      start = await startOf(file);
    }
  }
  if (start.startsWith(exchangeStart) || /\.(ifc|ifczip)$/i.test(job.name)) {
    if (file.size > mostBytes) throw new Failed("tooLargeHere");
    return give(file, start.includes(ownName) ? "exporter" : "foreign");
  }
  await withModel(source, job, (model) => {
    if (!model || !isWritable(model)) return;
    scope.postMessage({ kind: "takeoff", takeoff: model.takeoff() });
    give(exchangeFile(model), "model");
  });
}

const check = async (job: ModelJob) => withModel(await oneFile(job.files), job, (model) => void (model && isWritable(model)));

/** The take-off for a spreadsheet, which sees by a mark that it is UTF-8. */
const table = async (job: ModelJob) =>
  withModel(await oneFile(job.files), job, (model) => {
    if (model) scope.postMessage({ kind: "content", content: new Blob(["\ufeff", model.takeoffTable()], { type: "text/csv" }) });
  });

/** Reads a model, says what is wrong with it and passes it on; null when it cannot be read. */
async function withModel(file: Blob, job: ModelJob, use: (model: OpenModel | null) => void): Promise<void> {
  if (file.size === 0) throw new Failed("emptyFile");
  if (file.size > mostModelBytes) throw new Failed("tooLargeHere");
  const bytes = await bytesOf(file);
  const exporter = await startExporter(job.exporter);
  const model = exporter.open(bytes, job.name, job.choices.language);
  if (model.result === Result.noMemory) throw new Failed("tooLargeHere");
  const isRead = model.result === Result.ok;
  if (isRead && job.choices.transliterate) model.transliterate();
  use(isRead ? model : tellFindings(model, false));
}

/** Says what is wrong with a model that was read. */
function isWritable(model: OpenModel): boolean {
  const result = model.check(Flags.notes);
  if (result === Result.noMemory) throw new Failed("tooLargeHere");
  tellFindings(model, result === Result.ok);
  return result === Result.ok;
}

function tellFindings(model: OpenModel, writable: boolean): null {
  scope.postMessage({ kind: "findings", findings: { problems: model.problems(), bars: model.barCount(), isWritable: writable } });
  return null;
}

function exchangeFile(model: OpenModel): Blob {
  const bars = Math.max(model.barCount(), 1);
  const progress = tell();
  let pieces: Uint8Array<ArrayBuffer>[] = [];
  let size = 0;
  const result = model.export(
    Flags.allBars,
    (piece) => {
      size += piece.length;
      if (size <= mostBytes) pieces.push(piece as Uint8Array<ArrayBuffer>);
      else pieces = [];
    },
    (done) => progress(done / bars),
  );
  if (result === Result.noMemory || size > mostBytes) throw new Failed("tooLargeHere");
  if (result !== Result.ok) throw new Failed("ended", `the export ended with ${result}`);
  return new Blob(pieces);
}

async function startExporter(packedExporter: string): Promise<Exporter> {
  if (typeof WebAssembly === "undefined") throw new Failed("noWebAssembly");
  const wasm = (await unpack(fromBase64(packedExporter), () => undefined)) as Uint8Array<ArrayBuffer>;
  try {
    return await Exporter.start(wasm);
  } catch (error) {
    throw new Failed("noWebAssembly", String(error));
  }
}

function give(file: Blob, origin: Origin): void {
  scope.postMessage({ kind: "exchange", file, origin });
}

const oneFile = ([file, ...others]: Sources): Promise<Blob> =>
  others.length === 0 ? Promise.resolve(file) : readable(together([file, ...others]));

const bytesOf = async (file: Blob): Promise<Uint8Array<ArrayBuffer>> => new Uint8Array(await readable(file.arrayBuffer()));

/** What is read, or the word for a folder and for a file that is gone. */
async function readable<Content>(reading: Promise<Content>): Promise<Content> {
  try {
    return await reading;
  } catch (error) {
    throw new Failed("unreadableFile", String(error));
  }
}

async function startOf(file: Blob): Promise<string> {
  return new TextDecoder("latin1").decode(await bytesOf(file.slice(0, startBytes)));
}

/** The file as pages carry it: packed by gzip, in base64. */
async function packed(file: Blob): Promise<Blob> {
  const bytes = new Uint8Array(await new Response(file.stream().pipeThrough(new CompressionStream("gzip"))).arrayBuffer());
  const step = 3 * 8192; // whole groups of three bytes, so that no padding comes between
  const letters: string[] = [];
  for (let at = 0; at < bytes.length; at += step) letters.push(btoa(String.fromCharCode(...bytes.subarray(at, at + step))));
  return new Blob(letters);
}

/** Reports progress in steps that can be seen. */
function tell(): (done: number) => void {
  let told = 0;
  return (done) => {
    if (done - told < 0.02) return;
    told = done;
    scope.postMessage({ kind: "progress", done });
  };
}
