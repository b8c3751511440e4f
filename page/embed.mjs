#!/usr/bin/env node
// embed.mjs IFC OUT.html: puts a file into the built page.

import { existsSync, readFileSync, realpathSync, writeFileSync } from "node:fs";
import { basename, dirname, join } from "node:path";
import { fileURLToPath } from "node:url";
import { gzipSync } from "node:zlib";

const built = join(dirname(fileURLToPath(import.meta.url)), "dist/viewer.html");

/** `notes` are lines that the page shows in its list; `pack` makes of the file what the page carries. */
export function embed(bytes, name, { notes = [], pack = gzipSync, template = built } = {}) {
  return readFileSync(template, "latin1")
    .replace("@EXPORTIFC_MODEL@", () => Buffer.from(pack(Buffer.from(bytes))).toString("base64"))
    .replace("@EXPORTIFC_NAME@", () => Buffer.from(name, "utf8").toString("base64"))
    .replace("@EXPORTIFC_NOTES@", () => Buffer.from(notes.join("\n"), "utf8").toString("base64"));
}

if (process.argv[1] === fileURLToPath(import.meta.url)) {
  const [input, output] = process.argv.slice(2);
  if (!input || !output) {
    console.error("usage: embed.mjs IFC OUT.html");
    process.exit(2);
  }
  const refuse = (reason) => {
    console.error(`embed.mjs: ${reason}`);
    process.exit(2);
  };
  if (!existsSync(built)) refuse(`${built} is missing: run page/build.sh first`);
  if (!existsSync(input)) refuse(`there is no file ${input}`);
  if (existsSync(output) && [input, built].some((read) => realpathSync(read) === realpathSync(output))) {
    refuse(`${output} is what is read: choose another output`);
  }
  try {
    writeFileSync(output, embed(readFileSync(input), basename(input)), "latin1");
  } catch (error) {
    refuse(error.message);
  }
}
