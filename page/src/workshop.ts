// The page that exports: takes files, shows what is wrong with a model and what it looks like, gives its files.

import { block, takeBlock } from "./blocks";
import { button, byId, make } from "./dom";
import { inspection } from "./inspection";
import type { Takeoff } from "./exporter";
import { type Findings, type Job, type JobFailure, type JobReport, Jobs, type Origin, type Running, type Sources } from "./jobs";
import { barsText, countText, elementsOfBars, problemList } from "./problems";
import { Progress } from "./progress";
import { labelShell, openTab } from "./shell";
import { takeoffLists } from "./takeoff";
import { modelPage } from "./template";
import { type Language, language, speak, text, type TextKey } from "./texts";
import { fromBase64, unpack } from "./unpack";
import { Viewer } from "./viewer";

const samples: { name: string; label: TextKey }[] = [
  { name: "galpao.json", label: "sampleWarehouse" },
  { name: "familias.json", label: "sampleFamilies" },
];
const languages: [Language, string][] = [["pt-BR", "Português"], ["en", "English"]];

/** The part of all work that is done when the exchange file is there. */
const exportPart = 0.3;

/** What somebody gave to the page, and what has become of it. */
interface Opened {
  sources: Sources;
  name: string;
  remark: Remark | null; // what was done beside what was asked for
  findings: Findings | null; // of a model
  takeoff: Takeoff | null; // of a model
  exchange: Blob | null; // its file
  origin: Origin;
}

type Remark = "transliterated" | "onlyFirst";

/** Why nothing is shown, in words that are found anew in the other language. */
type Refusal = () => string;

export class Workshop {
  private readonly jobs = new Jobs(takeBlock("export-worker"));
  private readonly exporter = takeBlock("exporter");
  private readonly progress = new Progress(exportPart);
  private readonly viewer = new Viewer(
    { worker: block("worker"), engine: block("wasm") },
    this.progress,
    (reason, detail) => this.refuse(() => text("badExchange", this.opened!.name) + (detail === "" ? ` ${text(reason)}` : ` ${detail}`)),
    () => this.arrived(),
  );
  private readonly chooser = make("input", { type: "file", id: "chooser", class: "unseen", tabindex: -1, multiple: true });
  private opened: Opened | null = null;
  private opening: Running | null = null;
  private checking: Running | null = null;
  private readonly saving = new Set<Running>();
  private refusal: Refusal | null = null;
  private status: Refusal = () => "";

  constructor() {
    byId("progress").append(button("", () => this.stop(), { id: "stop" }));
    byId("picture").append(make("section", { id: "start" }));
    byId("panel").prepend(make("section", { id: "problems" }));
    document.querySelector("header")!.append(make("nav", { id: "files" }));
    document.body.append(this.chooser);
    this.chooser.addEventListener("change", () => {
      this.openDropped(this.chooser.files);
      this.chooser.value = ""; // the same file may be chosen again
    });
    this.listenToDrops();
    this.progress.hide();
    this.render();
    setTimeout(() => this.viewer.startPicture(), 100); // while somebody looks for a file
    inspection.ready = true;
  }

  // --- files come ------------------------------------------------------------------------------

  private listenToDrops(): void {
    const over = (isOver: boolean) => document.body.classList.toggle("over", isOver);
    document.addEventListener("dragover", (event) => {
      event.preventDefault(); // else the browser leaves the page for the file
      over(true);
    });
    document.addEventListener("dragleave", (event) => event.relatedTarget === null && over(false));
    document.addEventListener("drop", (event) => {
      event.preventDefault();
      over(false);
      this.openDropped(event.dataTransfer?.files ?? null);
    });
  }

  /** The first of the files; the tables of a model count as one. */
  private openDropped(list: FileList | null): void {
    const [file, ...others] = list ?? [];
    if (!file) return;
    if (others.length === 0) return this.open([file], file.name);
    const areTables = [file, ...others].every(({ name }) => /\.csv$/i.test(name));
    areTables ? this.open([file, ...others], text("tablesName")) : this.open([file], file.name, "onlyFirst");
  }

  private async openSample(name: string): Promise<void> {
    inspection.ready = false;
    const bytes = await unpack(fromBase64(block(`sample-${name}`)), () => undefined);
    this.open([new File([bytes as Uint8Array<ArrayBuffer>], name)], name);
  }

  private open(sources: Sources, name: string, remark: Remark | null = null): void {
    this.clear();
    this.opened = { sources, name, remark, findings: null, takeoff: null, exchange: null, origin: "model" };
    inspection.ready = false;
    inspection.failed = "";
    this.say(() => this.summary());
    this.progress.at("exporting", 0);
    this.render();
    byId("stop").focus();
    this.opening = this.jobs.start(this.modelJob("open"), (report) => this.take(report));
  }

  private modelJob(kind: "open" | "check" | "takeoff"): Job {
    const { sources, name, remark } = this.opened!;
    const choices = { language: language === "en" ? "en" : "pt", transliterate: remark === "transliterated" } as const;
    return { kind, files: sources, name, choices, exporter: this.exporter };
  }

  private take(report: JobReport): void {
    const opened = this.opened!;
    if (report.kind === "done" || report.kind === "failed") this.opening = null;
    if (report.kind === "progress") this.progress.at("exporting", report.done);
    else if (report.kind === "failed") this.refuseFor(report.reason, report.detail);
    else if (report.kind === "findings") {
      opened.findings = report.findings;
      this.say(() => this.summary());
      if (!report.findings.isWritable) {
        const isRead = report.findings.bars > 0;
        this.refuse(() => text(isRead ? "refused" : "unreadableModel", opened.name));
      } else this.render();
    } else if (report.kind === "takeoff") opened.takeoff = report.takeoff;
    else if (report.kind === "exchange") {
      opened.exchange = report.file;
      opened.origin = report.origin;
      this.viewer.show(report.file, this.notes());
    }
  }

  /** What has become of the model so far. */
  private summary(): string {
    const { remark, findings } = this.opened!;
    return [...(remark ? [text(remark)] : []), ...(findings ? [countText(findings)] : [])].join(" ");
  }

  /** What stands above the lists of the picture; what is wrong with a model has a list of its own. */
  private notes(): string[] {
    return this.opened?.origin === "foreign" ? [text("isForeign")] : [];
  }

  private arrived(): void {
    const wasWaiting = document.activeElement === byId("stop") || document.activeElement === document.body;
    this.render();
    if (wasWaiting) byId("canvas").focus();
  }

  // --- nothing to show -------------------------------------------------------------------------

  private refuseFor(reason: JobFailure, detail: string): void {
    this.refuse(() => text(reason, this.opened!.name) + (detail === "" ? "" : ` (${detail})`));
  }

  private refuse(refusal: Refusal): void {
    this.endWork();
    this.refusal = refusal;
    this.render();
    (document.getElementById("transliterate") ?? byId("choose")).focus();
    inspection.failed = refusal();
    inspection.ready = true;
  }

  private stop(): void {
    this.clear();
    this.say(() => text("stopped"));
    this.render();
    byId("choose").focus();
    inspection.ready = true;
  }

  private clear(): void {
    this.endWork();
    this.opened = null;
    this.refusal = null;
  }

  private endWork(): void {
    for (const work of [this.opening, this.checking, ...this.saving]) work?.stop();
    this.opening = this.checking = null;
    this.saving.clear();
    this.viewer.clear();
    this.progress.hide();
  }

  // --- files go --------------------------------------------------------------------------------

  private saveAs(extension: string): void {
    const { exchange, name, findings } = this.opened!;
    const stem = name.replace(/\.[^.]*$/, "");
    const target = stem + extension;
    const inside = `${stem}.ifc`;
    const save = (content: Blob) => {
      download(content, target);
      this.say(() => text("saved", target));
    };
    if (extension === ".ifc") return save(exchange!);
    this.say(() => text("packing"));
    const notes = (findings?.problems ?? []).filter((problem) => problem.severity === "note").map((problem) => {
      const bars = barsText(problem);
      return bars === "" ? problem.message : `${bars}: ${problem.message}`;
    });
    const isPage = extension === ".html";
    const job = this.savingJob(extension, inside);
    const work = this.jobs.start(job, (report) => {
      if (report.kind === "done" || report.kind === "failed") this.saving.delete(work);
      if (report.kind === "content") save(isPage ? modelPage(inside, notes, report.content) : report.content);
      if (report.kind === "failed") this.say(() => text("notSaved", target));
    });
    this.saving.add(work);
  }

  private savingJob(extension: string, inside: string): Job {
    const file = this.opened!.exchange!;
    if (extension === ".csv") return this.modelJob("takeoff");
    return extension === ".html" ? { kind: "pack", file } : { kind: "zip", file, name: inside };
  }

  // --- what is seen ----------------------------------------------------------------------------

  private say(status: Refusal): void {
    this.status = status;
    const told = document.getElementById("told");
    if (told) told.textContent = status();
  }

  private speak(chosen: Language): void {
    speak(chosen);
    // What is wrong is said by the exporter itself, in one language at a time.
    const { opened } = this;
    if (opened && this.opening) this.open(opened.sources, opened.name, opened.remark);
    this.viewer.relabel(this.notes());
    this.render();
    byId(`speak-${chosen}`).focus();
    if (!opened?.findings || this.opening) return;
    this.checking?.stop();
    this.checking = this.jobs.start(this.modelJob("check"), (report) => {
      if (report.kind !== "findings") return;
      this.opened!.findings = report.findings;
      this.renderProblems();
    });
  }

  private render(): void {
    labelShell(this.opened?.name ?? "");
    if (!this.opened) {
      document.title = text("exporterName");
      byId("title").textContent = text("exporterName");
    }
    const isEmpty = !this.opened || this.refusal !== null;
    document.body.classList.toggle("empty", isEmpty);
    document.body.classList.toggle("unread", isEmpty && !this.opened?.findings);
    byId("stop").textContent = text("stop");
    this.chooser.setAttribute("aria-label", text("chooseFile"));
    this.renderFiles();
    this.renderStart(isEmpty);
    this.renderProblems();
    this.renderTakeoff();
  }

  private renderFiles(): void {
    const node = byId("files");
    node.setAttribute("aria-label", text("files"));
    const isThere = this.viewer.shown !== null && this.opened?.exchange != null && this.refusal === null;
    const save = (label: TextKey, hint: TextKey, extension: string) =>
      button(text(label), () => this.saveAs(extension), {
        id: `save${extension.replace(".", "-")}`,
        class: "primary",
        title: text(hint),
        "aria-label": `${text(label)}: ${text(hint)}`,
      });
    node.replaceChildren(
      make("p", { id: "told", role: "status" }, this.status()),
      ...(this.opened && this.refusal === null ? [button(text("openAnother"), () => this.chooser.click(), { id: "open-another" })] : []),
      ...(isThere
        ? [save("saveIfc", "saveIfcHint", ".ifc"), save("saveZip", "saveZipHint", ".ifczip"), save("savePage", "savePageHint", ".html")]
        : []),
      make(
        "div",
        { role: "group", class: "languages", "aria-label": text("languages") },
        ...languages.map(([code, name]) =>
          button(name, () => this.speak(code), { id: `speak-${code}`, lang: code, "aria-pressed": String(code === language) }),
        ),
      ),
    );
  }

  private renderStart(isEmpty: boolean): void {
    const node = byId("start");
    node.hidden = !isEmpty;
    node.setAttribute("aria-label", text("exporterName"));
    if (!isEmpty) return node.replaceChildren();
    node.replaceChildren(
      ...(this.refusal ? [make("p", { id: "refusal", role: "alert" }, this.refusal())] : []),
      make("p", { class: "purpose" }, text("purpose")),
      make(
        "div",
        { class: "target" },
        button(text("chooseFile"), () => this.chooser.click(), { id: "choose", class: "primary" }),
        make("p", {}, text("orDrop")),
      ),
      make(
        "p",
        { class: "samples" },
        make("span", {}, text("trySample")),
        ...samples.map(({ name, label }) => button(text(label), () => void this.openSample(name), { "data-sample": name })),
      ),
    );
  }

  private renderProblems(): void {
    const node = byId("problems");
    const opened = this.opened;
    node.hidden = !opened?.findings;
    node.setAttribute("aria-label", text("problems"));
    if (!opened?.findings) return node.replaceChildren();
    const { findings, sources, name, remark } = opened;
    const cannotBeWritten = !findings.isWritable && findings.problems.some(({ code }) => code === "unwritable-character");
    node.replaceChildren(
      ...problemList(findings, {
        select: this.selectorOf(findings),
        transliterate: cannotBeWritten && remark !== "transliterated" ? () => this.open(sources, name, "transliterated") : null,
      }),
    );
  }

  private renderTakeoff(): void {
    const tab = byId<HTMLButtonElement>("tab-takeoff");
    const takeoff = this.refusal === null ? this.opened?.takeoff : null;
    tab.hidden = !takeoff?.total;
    if (tab.hidden && tab.getAttribute("aria-selected") === "true") openTab(byId<HTMLButtonElement>("tab-structure"));
    const save = () => button(text("saveTakeoff"), () => this.saveAs(".csv"), { id: "save-csv", title: text("saveTakeoffHint") });
    byId("takeoff").replaceChildren(
      ...(tab.hidden ? [] : [save(), ...takeoffLists(takeoff!), make("p", { class: "quiet" }, text("takeoffNote"))]),
    );
  }

  /** Leads from a bar's number in the model to its element; null where that cannot be said. */
  private selectorOf({ bars }: Findings): ((bar: number) => void) | null {
    const page = this.viewer.shown;
    const elements = page && page.geometry && elementsOfBars(page.model, bars);
    if (!elements) return null;
    return (bar) => {
      page.select(elements[bar - 1] ?? null);
      page.zoomToSelected();
    };
  }
}

function download(content: Blob, name: string): void {
  const url = URL.createObjectURL(content);
  make("a", { href: url, download: name }).click();
  setTimeout(() => URL.revokeObjectURL(url), 60_000); // the browser takes its time to read it
}
