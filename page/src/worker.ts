// Reads the exchange file beside the page, which stays at its user's service meanwhile.

import { readColumns, readReferences } from "./columns";
import { Engine } from "./engine";
import type { ModelSource, Report, Request, Stage } from "./protocol";
import { buildSolids, type Solids } from "./solids";
import { StepFile } from "./step";
import { Fault, fromBase64, unpack } from "./unpack";

const scope = self as unknown as {
  onmessage: (event: MessageEvent<Request>) => void;
  postMessage(report: Report, transfer?: Transferable[]): void;
};

const betweenReports = 200; // milliseconds

let takeEngine: (packed: string) => void = () => undefined;
const engine = new Promise<string>((resolve) => (takeEngine = resolve)); // packed; it comes when the first picture is there

scope.onmessage = ({ data }) => {
  if (data.kind === "engine") takeEngine(data.packed);
  else {
    read(data.model).catch((error: unknown) => {
      const reason = error instanceof Fault ? error.reason : "unreadable";
      scope.postMessage({ kind: "failed", reason, detail: String(error) });
    });
  }
};

async function read(model: ModelSource): Promise<void> {
  const held = typeof model === "string" ? fromBase64(model) : new Uint8Array(await model.arrayBuffer());
  const bytes = await unpack(held, progressOf("unpacking"));
  const progress = progressOf("reading");
  const file = new StepFile(bytes, (done) => progress(done / 2));
  const { columns, bars } = readColumns(file, (done) => progress(0.5 + done / 2));
  // The columns are used here further on, so the page gets a copy.
  scope.postMessage({ kind: "columns", columns });
  buildSolids(file, columns, bars, null, progressOf("meshing"), (solids) => scope.postMessage({ kind: "lines", solids }));
  scope.postMessage({ kind: "references", references: readReferences(file, columns) });
  buildSolids(file, columns, bars, await startEngine(await engine), progressOf("meshing"), deliver);
}

/** The last ones are given away, and no copy is made of them. */
function deliver(solids: Solids): void {
  const { shapeOf, matrices, bounds, thickness, volumes, shapes, whole } = solids;
  const buffers = [shapeOf, matrices, bounds, thickness, volumes].map((column) => column.buffer as ArrayBuffer);
  for (const { positions, normals, indices, edges } of shapes) {
    buffers.push(...[positions, normals, indices, edges].map((list) => list.buffer as ArrayBuffer));
  }
  scope.postMessage({ kind: "solids", solids }, whole ? buffers : []);
}

/** Null when the engine cannot run here. */
async function startEngine(packed: string): Promise<Engine | null> {
  try {
    return await Engine.start(await unpack(fromBase64(packed), () => undefined));
  } catch {
    return null;
  }
}

/** Reports a stage now and then: what the page shows of it is a picture anew, which takes its time in software. */
function progressOf(stage: Stage): (done: number) => void {
  let told = performance.now();
  return (done) => {
    const now = performance.now();
    if (now - told < betweenReports) return;
    told = now;
    scope.postMessage({ kind: "progress", stage, done });
  };
}
