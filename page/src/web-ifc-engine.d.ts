// build.mjs cuts this module out of the package.
declare module "web-ifc/engine" {
  export default function createModule(options: object): Promise<unknown>;
}
