// Zip files: an exchange file as the one member, as BIM tools write and read them under the name .ifczip; the tables of
// a model side by side.

import { Unzip, UnzipInflate, Zip, ZipDeflate, ZipPassThrough } from "fflate";

/** Why there is no exchange file in a zip file. */
export class ZipFault extends Error {
  constructor(readonly reason: "badZip" | "tooLargeHere") {
    super(reason);
  }
}

export const isZip = (start: string): boolean => /^PK(\x03\x04|\x05\x06)/.test(start);

/** A zip file with one member of that name. */
export const zipped = (file: Blob, name: string, progress: (done: number) => void): Promise<Blob> =>
  zipOf([{ file, member: new ZipDeflate(name, { level: 6 }) }], progress);

/** A zip file with these, not packed: it only goes to the exporter. */
export const together = (files: readonly File[]): Promise<Blob> =>
  zipOf(files.map((file) => ({ file, member: new ZipPassThrough(file.name) })), () => undefined);

async function zipOf(members: { file: Blob; member: ZipDeflate | ZipPassThrough }[], progress: (done: number) => void): Promise<Blob> {
  const pieces: Uint8Array<ArrayBuffer>[] = [];
  const zip = new Zip((error, piece) => {
    if (error) throw error;
    pieces.push(piece as Uint8Array<ArrayBuffer>);
  });
  for (const { file, member } of members) {
    zip.add(member);
    await eachPiece(file, (piece) => member.push(piece), progress);
    member.push(new Uint8Array(), true);
  }
  zip.end();
  return new Blob(pieces, { type: "application/zip" });
}

/**
 * The first member that is an exchange file by its name; null when there is none, as in a workbook. Of what unpacks to more
 * than `most` bytes nothing is kept.
 */
export async function firstExchangeFile(file: Blob, most: number, progress: (done: number) => void): Promise<Blob | null> {
  const pieces: Uint8Array<ArrayBuffer>[] = [];
  let [found, ended, size] = [false, false, 0];
  const unzip = new Unzip((member) => {
    if (found || !/\.ifc$/i.test(member.name)) return;
    found = true;
    member.ondata = (error, piece, last) => {
      if (error) throw new ZipFault("badZip");
      size += piece.length;
      if (size > most) throw new ZipFault("tooLargeHere");
      pieces.push(piece as Uint8Array<ArrayBuffer>);
      ended = last;
    };
    member.start();
  });
  unzip.register(UnzipInflate);
  try {
    await eachPiece(file, (piece) => unzip.push(piece), progress);
    unzip.push(new Uint8Array(), true);
  } catch (error) {
    if (!found) return null;
    throw error instanceof ZipFault ? error : new ZipFault("badZip");
  }
  if (!found) return null;
  if (!ended) throw new ZipFault("badZip");
  return new Blob(pieces);
}

async function eachPiece(file: Blob, take: (piece: Uint8Array) => void, progress: (done: number) => void): Promise<void> {
  const reader = file.stream().getReader();
  for (let read = 0; ; ) {
    const { done, value } = await reader.read();
    if (done) return;
    take(value);
    read += value.length;
    progress(read / file.size);
  }
}
