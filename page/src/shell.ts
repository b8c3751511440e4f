// What stands around the model: title, labels, tabs, the list of keys.

import { button, byId, make } from "./dom";
import { language, text, type TextKey } from "./texts";

/** Fills in what the page says whatever it shows; `name` is that of a file, or "". */
export function labelShell(name: string): void {
  document.documentElement.lang = language;
  document.title = name === "" ? text("appName") : `${name} – ${text("appName")}`;
  byId("title").textContent = name === "" ? text("appName") : name;
  for (const node of document.querySelectorAll<HTMLElement>("[data-text]")) node.textContent = text(node.dataset["text"] as TextKey);
  for (const node of document.querySelectorAll<HTMLElement>("[data-label]")) {
    node.setAttribute("aria-label", text(node.dataset["label"] as TextKey));
  }
  byId("progress-bar").setAttribute("aria-label", text("progress"));
  labelHelp();
}

/** Has the tabs chosen by pointer and by keys. */
export function startTabs(): void {
  tabs().forEach((tab) => {
    tab.addEventListener("click", () => openTab(tab));
    tab.addEventListener("keydown", (event) => {
      if (event.key !== "ArrowLeft" && event.key !== "ArrowRight") return;
      const shown = tabs().filter((other) => !other.hidden);
      const step = event.key === "ArrowRight" ? 1 : -1;
      const next = shown[(shown.indexOf(tab) + step + shown.length) % shown.length]!;
      openTab(next);
      next.focus();
    });
  });
  openTab(tabs()[0]!);
}

/** Shows the panel of a tab, and no other. */
export function openTab(chosen: HTMLButtonElement): void {
  for (const tab of tabs()) {
    tab.setAttribute("aria-selected", String(tab === chosen));
    tab.tabIndex = tab === chosen ? 0 : -1;
    byId(tab.getAttribute("aria-controls")!).hidden = tab !== chosen;
  }
}

const tabs = () => [...document.querySelectorAll<HTMLButtonElement>("[role=tab]")];

function labelHelp(): void {
  const keys: [string, TextKey][] = [
    ["F", "keyFit"],
    ["1 2 3 4", "keyViews"],
    ["P", "keyPerspective"],
    ["G", "keyGrid"],
    ["C", "keyColours"],
    ["A", "keyShowAll"],
    ["H", "keyHide"],
    ["I", "keyIsolate"],
    ["Z", "keyZoom"],
    ["+ −", "keyPlus"],
    ["← → ↑ ↓", "keyArrows"],
    ["Esc", "keyEscape"],
    ["?", "keyHelp"],
  ];
  const help = byId<HTMLDialogElement>("help");
  help.replaceChildren(
    make("h2", {}, text("help")),
    make("dl", {}, ...keys.flatMap(([key, meaning]) => [make("dt", {}, make("kbd", {}, key)), make("dd", {}, text(meaning))])),
    make("p", { class: "quiet" }, text("credits")),
    button(text("close"), () => help.close()),
  );
}
