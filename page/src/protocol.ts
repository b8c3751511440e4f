// What the page and its worker say to each other.

import type { Columns, References } from "./columns";
import type { Solids } from "./solids";

/** An exchange file, as it is or packed by gzip: in base64 as pages carry it, or as bytes. */
export type ModelSource = string | Blob;

export type Request =
  | { kind: "model"; model: ModelSource }
  | { kind: "engine"; packed: string }; // its WebAssembly, packed by gzip, in base64: when there are lines to look at

export type Report =
  | { kind: "progress"; stage: Stage; done: number } // from 0 to 1
  | { kind: "columns"; columns: Columns }
  | { kind: "lines"; solids: Solids } // without any solid
  | { kind: "references"; references: References }
  | { kind: "solids"; solids: Solids } // once with what is there soon, and again if that was not all
  | { kind: "failed"; reason: "damaged" | "tooLarge" | "unreadable"; detail: string };

export type Stage = "unpacking" | "reading" | "meshing";
