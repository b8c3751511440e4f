// What the page and its worker say to each other.

import type { Columns } from "./columns";
import type { Solids } from "./solids";

/** What stands in the page's data blocks, in base64. */
export type Request =
  | { kind: "engine"; packed: string } // its WebAssembly, packed by gzip
  | { kind: "model"; packed: string }; // the exchange file, as it is or packed by gzip

export type Report =
  | { kind: "progress"; stage: Stage; done: number } // from 0 to 1
  | { kind: "columns"; columns: Columns }
  | { kind: "solids"; solids: Solids } // once with what is there soon, and again if that was not all
  | { kind: "failed"; reason: "damaged" | "tooLarge" | "unreadable"; detail: string };

export type Stage = "unpacking" | "reading" | "meshing";
