// The exchange file out of what a page holds: base64 of the file, as it is or packed by gzip.

/** Why there is no file; the words are the page's. */
export class Fault extends Error {
  constructor(readonly reason: "damaged" | "tooLarge") {
    super(reason);
  }
}

/** Bytes of a file that this page takes: some 600,000 bars. The file must fit into memory as a whole. */
export const mostBytes = 2 ** 30;
const mostGrowth = 1032; // times the packed size: no deflated data becomes larger than that

const values = new Uint8Array(128).fill(255);
[..."ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/"].forEach((letter, i) => (values[letter.charCodeAt(0)] = i));

/** Not in all browsers. */
const ofBrowser = (Uint8Array as { fromBase64?: (text: string) => Uint8Array<ArrayBuffer> }).fromBase64;

/** Line breaks and padding are passed over. */
export function fromBase64(text: string): Uint8Array<ArrayBuffer> {
  try {
    if (ofBrowser) return ofBrowser(text);
  } catch {
    // Of what is damaged the most is taken: unpacking says so.
  }
  const bytes = new Uint8Array(Math.ceil(text.length / 4) * 3);
  let [length, bits, held] = [0, 0, 0];
  for (let i = 0; i < text.length; i++) {
    const value = values[text.charCodeAt(i)];
    if (!(value! < 64)) continue;
    held = (held << 6) | value!;
    bits += 6;
    if (bits < 8) continue;
    bits -= 8;
    bytes[length++] = held >> bits;
  }
  return bytes.subarray(0, length);
}

/** `progress` is told how much is done, from 0 to 1. Throws a Fault. */
export async function unpack(packed: Uint8Array<ArrayBuffer>, progress: (done: number) => void): Promise<Uint8Array> {
  if (packed[0] !== 0x1f || packed[1] !== 0x8b) return packed;
  // The last four bytes tell the size, and what comes out must keep to it: so neither data that is damaged nor data
  // that is made to never end can ask for more memory than its own size explains. What says that it is too large may be
  // damaged instead, so it is looked through without being kept.
  const size = packed.length < 18 ? 0 : new DataView(packed.buffer, packed.byteOffset).getUint32(packed.length - 4, true);
  if (size > packed.length * mostGrowth) throw new Fault("damaged");
  const file = new Uint8Array(size > mostBytes ? 0 : size);
  let length = 0;
  const reader = new Blob([packed]).stream().pipeThrough(new DecompressionStream("gzip")).getReader();
  for (;;) {
    const { done, value } = await reader.read().catch(() => {
      throw new Fault("damaged");
    });
    if (done) break;
    if (length + value.length > Math.min(size, mostBytes)) {
      await reader.cancel();
      throw new Fault(size > mostBytes ? "tooLarge" : "damaged");
    }
    if (file.length > 0) file.set(value, length);
    length += value.length;
    progress(length / size);
  }
  if (length < size) throw new Fault("damaged");
  return file;
}
