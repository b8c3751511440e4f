// The data blocks that the page carries: scripts of a type that no browser runs.

import { byId } from "./dom";
import { fromBase64 } from "./unpack";

/** What stands in a block; "" when nobody has filled its marker in. */
export function block(id: string): string {
  const content = (byId(id).textContent ?? "").trim();
  return content.startsWith("@") ? "" : content;
}

/** The same, once: megabytes that nobody needs twice are let go. */
export function takeBlock(id: string): string {
  const content = block(id);
  byId(id).textContent = "";
  return content;
}

export function textIn(id: string): string {
  return new TextDecoder().decode(fromBase64(block(id)));
}
