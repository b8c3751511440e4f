// Makes elements of the page. Texts go in as text, never as markup: section names hold any character.

type Attributes = Record<string, string | number | boolean | undefined>;

export function make<K extends keyof HTMLElementTagNameMap>(
  tag: K,
  attributes: Attributes = {},
  ...children: (Node | string | null)[]
): HTMLElementTagNameMap[K] {
  const node = document.createElement(tag);
  for (const [name, value] of Object.entries(attributes)) {
    if (value === undefined || value === false) continue;
    node.setAttribute(name, value === true ? "" : String(value));
  }
  node.append(...children.filter((child) => child !== null));
  return node;
}

export function button(label: string, onClick: () => void, attributes: Attributes = {}): HTMLButtonElement {
  const node = make("button", { type: "button", ...attributes }, label);
  node.addEventListener("click", onClick);
  return node;
}

export function byId<T extends HTMLElement = HTMLElement>(id: string): T {
  const node = document.getElementById(id);
  if (!node) throw new Error(`no #${id} in the page`);
  return node as T;
}

/** A small square of one colour, for lists and the legend. */
export function swatch(colour: string): HTMLElement {
  const node = make("span", { class: "swatch", "aria-hidden": "true" });
  node.style.background = colour;
  return node;
}
