// The part of web-ifc that the page uses: the module itself, without its class for the whole schema,
// which is five megabytes of entity tables that nothing here needs.

import createModule from "web-ifc/engine";

interface Vector<T> {
  size(): number;
  get(index: number): T;
}

export interface PlacedGeometry {
  flatTransformation: number[]; // 4×4, column by column, to metres with Y up
  geometryExpressID: number;
}

interface FlatMesh {
  expressID: number;
  geometries: Vector<PlacedGeometry>;
  delete?(): void;
}

interface Geometry {
  GetVertexData(): number;
  GetVertexDataSize(): number;
  GetIndexData(): number;
  GetIndexDataSize(): number;
  delete(): void;
}

interface EngineModule {
  HEAPU8: Uint8Array;
  HEAPF32: Float32Array;
  HEAPU32: Uint32Array;
  SetLogLevel(level: number): void;
  OpenModel(settings: object, read: (to: number, from: number, size: number) => number): number;
  /** The package's own class passes a fourth argument here, which its engine for browsers does not take. */
  StreamMeshes(model: number, elements: number[], each: (mesh: FlatMesh) => void): void;
  GetGeometry(model: number, number: number): Geometry;
  CloseModel(model: number): void;
}

export interface Mesh {
  element: number; // entity number
  /** Six numbers a vertex, position and normal, in the solid's own frame and the file's unit. Valid in the callback only. */
  vertices: Float32Array;
  indices: Uint32Array; // three a triangle; valid in the callback only
  transformation: number[];
}

const circlePoints = 24;
/** Sides of the polygon that stands for a circle: the engine's last point is its first again. */
export const circleSides = circlePoints - 1;

const logLevelOff = 6;

// All settings must be given: the class that was left out holds the defaults.
const settings = {
  COORDINATE_TO_ORIGIN: false,
  CIRCLE_SEGMENTS: circlePoints,
  TAPE_SIZE: 67108864,
  MEMORY_LIMIT: 2147483648,
  LINEWRITER_BUFFER: 10000,
  TOLERANCE_PLANE_INTERSECTION: 1e-4,
  TOLERANCE_PLANE_DEVIATION: 1e-4,
  TOLERANCE_BACK_DEVIATION_DISTANCE: 1e-4,
  TOLERANCE_INSIDE_OUTSIDE_PERIMETER: 1e-10,
  TOLERANCE_SCALAR_EQUALITY: 1e-4,
  PLANE_REFIT_ITERATIONS: 1,
  BOOLEAN_UNION_THRESHOLD: 150,
};

export class Engine {
  private model = -1;

  private constructor(private readonly module: EngineModule) {}

  static async start(wasm: Uint8Array): Promise<Engine> {
    const quiet = () => undefined; // faults are counted and shown by the page
    const module = (await createModule({
      noInitialRun: true,
      wasmBinary: wasm,
      print: quiet,
      printErr: quiet,
    })) as EngineModule;
    module.SetLogLevel(logLevelOff);
    return new Engine(module);
  }

  open(file: Uint8Array): void {
    this.model = this.module.OpenModel(settings, (to, from, size) => {
      const part = file.subarray(from, from + size);
      this.module.HEAPU8.set(part, to);
      return part.length;
    });
    if (this.model < 0) throw new Error("the geometry engine could not open the file");
  }

  /** Meshes some elements; an element without geometry gets no call. */
  mesh(elements: number[], each: (mesh: Mesh) => void): void {
    const { module, model } = this;
    module.StreamMeshes(
      model,
      elements,
      (flat) => {
        for (let i = 0; i < flat.geometries.size(); i++) {
          const placed = flat.geometries.get(i);
          const geometry = module.GetGeometry(model, placed.geometryExpressID);
          const vertices = geometry.GetVertexData() / 4;
          const indices = geometry.GetIndexData() / 4;
          each({
            element: flat.expressID,
            vertices: module.HEAPF32.subarray(vertices, vertices + geometry.GetVertexDataSize()),
            indices: module.HEAPU32.subarray(indices, indices + geometry.GetIndexDataSize()),
            transformation: placed.flatTransformation,
          });
          geometry.delete();
        }
        flat.delete?.();
      },
    );
  }

  close(): void {
    if (this.model >= 0) this.module.CloseModel(this.model);
    this.model = -1;
  }
}
