// The first picture: all bars as lines, drawn without the graphics, which take some tenths of a second to start where
// the processor plays them. Canvases wait for them, too, so this one is made as the bytes of an image.

import { Color, Matrix4 } from "three";
import type { Cameras } from "./cameras";
import { make } from "./dom";
import type { Element, Model, Point } from "./model";
import { type Colouring, colourOf } from "./palette";

export class Sketch {
  /** Beneath the graphics, which let it through until they have a picture of their own. */
  private readonly image = make("img", { class: "sketch", alt: "", elementtiming: "sketch" }); // browsers note when it shows

  constructor(
    private readonly host: HTMLElement,
    private readonly model: Model,
    private readonly colouring: Colouring,
  ) {
    host.prepend(this.image);
  }

  /** Resolves when people see it: the frame after the one that it was drawn for begins. */
  async draw(cameras: Cameras, centre: Point): Promise<void> {
    const bitmap = new Bitmap(this.host.clientWidth, this.host.clientHeight);
    this.drawLines(bitmap, cameras, centre);
    this.image.src = await bitmap.url();
    await this.image.decode().catch(() => undefined); // what cannot be drawn now, the graphics will
    await new Promise((resolve) => requestAnimationFrame(() => requestAnimationFrame(resolve)));
  }

  private drawLines(bitmap: Bitmap, cameras: Cameras, [x, y, z]: Point): void {
    const camera = cameras.prepared();
    const matrix = new Matrix4().multiplyMatrices(camera.projectionMatrix, camera.matrixWorldInverse);
    const m = matrix.multiply(new Matrix4().makeTranslation(-x, -y, -z)).elements;
    const { columns, elements } = this.model;
    const { ends } = columns;
    /** One coordinate of a point in the picture, from −1 to 1, by the rows of the matrix. */
    const along = (row: number, at: number): number =>
      (m[row]! * ends[at]! + m[row + 4]! * ends[at + 1]! + m[row + 8]! * ends[at + 2]! + m[row + 12]!) /
      (m[3]! * ends[at]! + m[7]! * ends[at + 1]! + m[11]! * ends[at + 2]! + m[15]!);
    const colours = new Map<string, number>();
    const draw = (element: Element, widths: number): void => {
      if (element.lost) return;
      const name = colourOf(element, this.colouring);
      let colour = colours.get(name);
      if (colour === undefined) colours.set(name, (colour = new Color(name).getHex()));
      const at = element.index * 6;
      bitmap.line(along(0, at), along(1, at), along(0, at + 3), along(1, at + 3), colour, widths);
    };
    for (const element of elements) draw(element, 1);
    for (const element of elements) if (element.unknown) draw(element, 3);
  }

  remove(): void {
    this.image.removeAttribute("src");
    this.image.remove();
  }
}

const header = 128; // bytes before the pixels; its own 122, and some more so that pixels are whole words

/** An image with nothing in it but lines. */
class Bitmap {
  private readonly bytes: Uint8Array<ArrayBuffer>;
  private readonly pixels: Uint32Array; // opacity, red, green, blue from the highest byte on; the upper left one first

  constructor(
    private readonly width: number,
    private readonly height: number,
  ) {
    this.bytes = new Uint8Array(header + 4 * width * height);
    this.pixels = new Uint32Array(this.bytes.buffer, header);
    const view = new DataView(this.bytes.buffer);
    const set = (at: number, ...words: number[]) => words.forEach((word, i) => view.setInt32(at + 4 * i, word, true));
    view.setUint16(0, 0x4d42, true);
    set(2, this.bytes.length, 0, header);
    set(14, 108, width, -height, (32 << 16) | 1, 3, 4 * width * height, 0, 0, 0, 0); // one plane of 32 bits, from above
    set(54, 0xff0000, 0xff00, 0xff, 0xff000000, 0x73524742); // where each colour stands; sRGB
  }

  /** From place to place, each from −1 to 1; what is wider than 1 has neighbours on both sides. */
  line(x: number, y: number, toX: number, toY: number, colour: number, width: number): void {
    const across = ((toX - x) * this.width) / 2;
    const down = ((y - toY) * this.height) / 2;
    const steps = Math.min(Math.ceil(Math.max(Math.abs(across), Math.abs(down), 1)), this.width + this.height);
    const steep = Math.abs(down) > Math.abs(across);
    for (let side = (1 - width) / 2; side <= (width - 1) / 2; side++) {
      const left = ((1 + x) * this.width) / 2 + (steep ? side : 0);
      const top = ((1 - y) * this.height) / 2 + (steep ? 0 : side);
      for (let step = 0; step <= steps; step++) {
        const column = Math.floor(left + (across * step) / steps);
        const row = Math.floor(top + (down * step) / steps);
        if (column >= 0 && column < this.width && row >= 0 && row < this.height) {
          this.pixels[row * this.width + column] = 0xff000000 | colour;
        }
      }
    }
  }

  /** The image in its own address: the page takes images from nowhere else. */
  url(): Promise<string> {
    return new Promise((resolve, reject) => {
      const reader = new FileReader();
      reader.onload = () => resolve(reader.result as string);
      reader.onerror = () => reject(reader.error);
      reader.readAsDataURL(new Blob([this.bytes], { type: "image/bmp" }));
    });
  }
}
