import { build, page, textParts } from "./dom.js";

export const kinds = ["error", "warning", "message", "other"];

const childless = [];

/**
 * A row of the tree, or (without an element) one of the page's trees, which is the parent of its top rows.
 *
 * `lists`: the page's lists that hold its children; `folds`: what folds away with the branch;
 * `matches`: a line that the filters let through; `shown`: a row that stands in the tree, open branch or not;
 * `rows`: the children that are shown; `times`: how many alike lines the row stands for.
 */
class Item {
  children = childless;
  rows = childless;
  lists = childless;
  folds = childless;
  kind = "";
  isLine = false;
  isOpen = true;
  matches = true;
  shown = true;
  times = 0;
  isNear = false;
  height = 0;
  ends = null;
  dress = "";
  id = "";

  constructor(parent, element) {
    this.parent = parent;
    this.element = element;
    this.level = parent ? parent.level + 1 : 0;
  }

  add(child) {
    if (this.children === childless) this.children = [];
    child.place = this.children.push(child) - 1;
  }

  /** Takes a list of the page as one that holds children; `folds` are the blocks that fold away with it. */
  addList(list) {
    let block = list;
    while (this.element && block.parentElement !== this.element) block = block.parentElement;
    this.lists = [...this.lists, list];
    if (!this.folds.includes(block)) this.folds = [...this.folds, block];
  }

  get isBranch() {
    return this.children.length > 0;
  }
}

const rowSelector = "li.Node, li.IsRoot";

/** What stray closing tags inside lines have thrown out of the page's content goes back. */
function gatherStrays() {
  const content = page.querySelector("#lines");
  for (const last of [content, content.parentElement])
    while (last.nextElementSibling) content.append(last.nextElementSibling);
  // The policy blocks images; what stands for one must not trouble a screen reader.
  for (const image of content.querySelectorAll("img")) image.alt ||= "";
}

/** The list around a row. A row that unclosed or stray tags have torn from its list is put back, or gets one. */
function listOf(row) {
  const parent = row.parentElement;
  if (parent.localName === "ul") return parent;
  const around = parent.closest("ul, li");
  if (around?.localName === "ul") {
    let torn = parent;
    while (torn.parentElement !== around) torn = torn.parentElement;
    torn.before(row);
    return around;
  }
  const before = row.previousElementSibling;
  const isGathered = before?.hasAttribute("data-gathered");
  const list = isGathered ? before : build("ul", { class: "Container", "data-gathered": "" });
  if (!isGathered) row.before(list);
  list.append(row);
  return list;
}

function captionOf(element) {
  const second = element.children[1];
  if (second?.classList.contains("Content")) return second;
  return element.querySelector(":scope > .Content") ?? element;
}

function kindOf(caption) {
  return kinds.find((kind) => caption.classList.contains(kind)) ?? "other";
}

/** Reads the page's rows, in document order. */
export function readModel() {
  gatherStrays();
  const items = [];
  const trees = [];
  const byElement = new Map();
  const owners = new Map();
  for (const element of page.querySelectorAll(rowSelector)) {
    const list = listOf(element);
    let parent = owners.get(list);
    if (!parent) {
      parent = byElement.get(list.parentElement?.closest(rowSelector));
      if (!parent) {
        parent = new Item(null, null);
        parent.index = -1 - trees.length;
        trees.push(parent);
      }
      parent.addList(list);
      owners.set(list, parent);
    }
    const item = new Item(parent, element);
    item.caption = captionOf(element);
    item.index = items.push(item) - 1;
    parent.add(item);
    if (element.classList.contains("ExpandLeaf")) {
      item.isLine = true;
      item.kind = kindOf(item.caption);
    } else item.isOpen = !element.classList.contains("ExpandClosed");
    byElement.set(element, item);
  }
  const branches = [...trees, ...items.filter((item) => item.isBranch)];
  return { items, trees, branches, byElement, lines: items.filter((item) => item.isLine) };
}

function readText(caption) {
  if (!caption.firstElementChild || !caption.querySelector("br")) return caption.textContent;
  let text = "";
  for (const part of textParts(caption)) text += part ? part.data : "\n";
  return text;
}

/** The item's own text; line breaks in it are line feeds. */
export function textOf(item) {
  return (item.text ??= readText(item.caption));
}

/** The caption of a branch without the count behind it. */
export function nameOf(item) {
  return textOf(item).replace(/ \(\d+\)$/, "");
}

/** The item's text as the search compares it. */
export function foldedOf(item) {
  return (item.folded ??= fold(textOf(item)));
}

export function fold(text) {
  const lower = text.toLowerCase();
  return /[\n\r\t\u00a0]/.test(lower) ? lower.replace(/\s+/g, " ") : lower;
}

/** What remains of a line when its numbers are taken out. */
export function maskOf(item) {
  return (item.mask ??= textOf(item).replace(/[-+\u2212]?\d+(?:[.,]\d+)*/g, "#"));
}

/** The names of the branches around an item, outermost first. */
export function pathOf(item) {
  const path = [];
  for (let at = item.parent; at.element; at = at.parent) path.unshift(nameOf(at));
  return path;
}

export const linksOf = (item) => [...item.caption.querySelectorAll("a[href]")];

/** The model items that a row links to, each once. */
export function linkedItems(item) {
  const found = new Map();
  for (const link of linksOf(item)) {
    const address = link.getAttribute("href");
    const id = /[?&]id=(-?\d+)/.exec(address)?.[1];
    if (id && /:\/\/locate-item\b/.test(address) && !found.has(id))
      found.set(id, { id, name: link.textContent, address });
  }
  return [...found.values()];
}

/** Two 32-bit halves mixed over the text's characters, as 53 bits in base 36. */
function hash(text) {
  let high = 0xdeadbeef;
  let low = 0x41c6ce57;
  for (let at = 0; at < text.length; ++at) {
    const code = text.charCodeAt(at);
    high = Math.imul(high ^ code, 2654435761);
    low = Math.imul(low ^ code, 1597334677);
  }
  high = Math.imul(high ^ (high >>> 16), 2246822507) ^ Math.imul(low ^ (low >>> 13), 3266489909);
  low = Math.imul(low ^ (low >>> 16), 2246822507) ^ Math.imul(high ^ (high >>> 13), 3266489909);
  return (4294967296 * (2097151 & low) + (high >>> 0)).toString(36);
}

/**
 * Gives every item an id made of its text, kind and branches, so that the same lines written again have the
 * same ids. The n-th item of one making gets a number behind.
 */
export function* giveIds(items) {
  const seen = new Map();
  for (const item of items) {
    const own = item.isLine ? textOf(item) : nameOf(item);
    const key = "L" + hash(`${item.parent.id}\n${item.kind}\n${own}`);
    const count = (seen.get(key) ?? 0) + 1;
    seen.set(key, count);
    item.id = count === 1 ? key : `${key}-${count}`;
    item.element.id = item.id;
    yield;
  }
}
