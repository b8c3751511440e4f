// The page carries a model and shows it, or it carries the exporter and waits for models.

import { takeBlock, textIn } from "./blocks";
import { inspection, mark } from "./inspection";
import { Progress } from "./progress";
import { labelShell, startTabs } from "./shell";
import type { TextKey } from "./texts";
import { Viewer } from "./viewer";
import { Workshop } from "./workshop";

function start(): void {
  mark("started");
  startTabs();
  if (document.getElementById("exporter")) new Workshop();
  else showCarried();
}

function showCarried(): void {
  const progress = new Progress();
  labelShell(textIn("model-name"));
  progress.at("unpacking", 0);
  const fail = (reason: TextKey, detail = "") => {
    inspection.failed = reason;
    progress.fail(reason, detail);
  };
  const viewer = new Viewer({ worker: takeBlock("worker"), engine: takeBlock("wasm") }, progress, fail);
  viewer.prepare();
  // What the program that wrote the page has to say about the model.
  const notes = textIn("model-notes").split("\n").filter((note) => note !== "");
  // The model stands behind this script, so that the page can be seen before all of it is there.
  document.addEventListener("DOMContentLoaded", () => {
    const model = takeBlock("model");
    if (model === "") return fail("noModel");
    mark("loaded");
    viewer.show(model, notes);
  });
}

start();
