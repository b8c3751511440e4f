// The page of one model, put together from the parts of this one: its own markup with nothing in it, and the scripts,
// styles and engine that both pages share.

import { block, textIn } from "./blocks";
import { byId } from "./dom";

/** `model` is the exchange file in base64, packed. */
export function modelPage(name: string, notes: string[], model: Blob): Blob {
  const licences = [...document.childNodes].find((node) => node.nodeType === Node.COMMENT_NODE);
  const parts: Record<string, string> = {
    LICENCES: (licences?.textContent ?? "").trim(),
    STYLE: document.querySelector("style")!.textContent.trim(),
    EXPORTING: "",
    WASM: block("wasm"),
    WORKER: block("worker"),
    SCRIPT: byId("script").textContent.trim(),
    EXPORTIFC_NAME: base64(name),
    EXPORTIFC_NOTES: base64(notes.join("\n")),
  };
  const fill = (markup: string) => markup.replace(/@(\w+)@/g, (_, part: string) => parts[part]!);
  // The brackets keep the marker out of this script, which is a part of the page, too.
  const [before, after] = textIn("page-markup").split(/@EXPORTIFC_MODEL[@]/);
  return new Blob([fill(before!), model, fill(after!)], { type: "text/html" });
}

function base64(words: string): string {
  return btoa(Array.from(new TextEncoder().encode(words), (byte) => String.fromCharCode(byte)).join(""));
}
