import { build, page, textParts } from "./dom.js";
import { hash } from "./hash.js";

export const kinds = ["error", "warning", "message", "other"];

const childless = [];

/**
 * A row of the tree, or (without an element) one of the page's trees, which is the parent of its top rows.
 *
 * `lists`: the page's lists that hold its children; `folds`: what folds away with the branch;
 * `matches`: a line that the filters let through; `shown`: a row that stands in the tree, open branch or not;
 * `rows`: the children that are shown; `times`: how many alike lines the row stands for;
 * `record`: the first of the lines that show the same record, mostly the line itself.
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
  record = this;
  isNear = false;
  isLarge = false;
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

  get isRepeat() {
    return this.record !== this;
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
  const isLeaf = element.childElementCount === 2;
  const second = isLeaf ? element.lastElementChild : element.firstElementChild?.nextElementSibling;
  if (/^Content\b/.test(second?.className)) return second;
  return element.querySelector(":scope > .Content") ?? element;
}

const kindOf = (caption) => / (error|warning|message)\b/.exec(caption.className)?.[1] ?? "other";

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
    const { className } = element;
    if (className.includes("ExpandLeaf")) {
      item.isLine = true;
      item.kind = kindOf(item.caption);
    } else item.isOpen = !className.includes("ExpandClosed");
    byElement.set(element, item);
  }
  const branches = [...trees, ...items.filter((item) => item.isBranch)];
  const lines = items.filter((item) => item.isLine);
  const isItemPage = lines.length > 0 && !page.querySelector(".serviceinfoblock");
  if (!isItemPage) joinRecords(branches);
  const records = lines.filter((line) => !line.isRepeat);
  return { items, trees, branches, byElement, lines, records, isItemPage };
}

/**
 * A record stands as a line in the list of each item that it names, a message in one list only. A list holds it
 * once, so that the n-th of equal lines in one list is the n-th of them in the other lists of the stage.
 */
function joinRecords(branches) {
  const stages = new Map();
  for (const node of branches) {
    const stage = node.lists[0].closest(".stageblock");
    if (!stages.has(stage)) stages.set(stage, []);
    if (node.children.some((child) => child.isLine && child.kind !== "message")) stages.get(stage).push(node);
  }
  for (const lists of stages.values()) if (lists.length > 1) joinLists(lists);
}

/** Whether a line may name several items; most lines don't, which is quickly seen. */
function mayRepeat({ kind, caption }) {
  const first = caption.firstElementChild;
  if (!first || kind === "message") return false;
  return first.nextElementSibling || first.localName !== "a" || /id=.*id=/s.test(first.getAttribute("href"));
}

/** What a line says and links to, as far as it tells records apart: as long strings they would fill the memory. */
function printOf({ kind, caption }) {
  let own = kind + caption.textContent;
  for (let part = caption.firstElementChild; part; part = part.nextElementSibling)
    for (const link of part.localName === "a" ? [part] : part.querySelectorAll("a"))
      own += link.getAttribute("href");
  return hash(own);
}

function joinLists(lists) {
  const records = new Map();
  for (const { children } of lists) {
    const counts = new Map();
    for (const line of children) {
      if (!line.isLine || !mayRepeat(line)) continue;
      const own = printOf(line);
      const count = (counts.get(own) ?? 0) + 1;
      counts.set(own, count);
      const key = `${count} ${own}`;
      if (records.has(key)) line.record = records.get(key);
      else records.set(key, line);
    }
  }
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
