import { plainLink, plainText, rowEnd, rowStart } from "./content.js";
import { disarm, makeElement, textParts } from "./dom.js";

export const kinds = ["error", "warning", "message", "other"];

// In a list of so many rows the line breaks between the rows' tags would double what the browser walks through.
export const heavyListRows = 1000;

const childless = [];
const itemsByElement = new Map();

/**
 * A row of the tree, or (without an element) one of the page's trees, which is the parent of its top rows.
 *
 * `lists`: the page's lists that hold its children; `folds`: what folds away with the branch;
 * `markup`: of a line, what the library wrote as its text; `style`: and as its class;
 * `matches`: a line that the filters let through; `shown`: a row that stands in the tree, open branch or not;
 * `rows`: the children that are shown; `times`: how many alike lines the row stands for;
 * `record`: the first of the lines that show the same record, mostly the line itself; `repeats`: the others;
 * `total`: how many records stand below a branch; `count`: how many of them the filters let through; of these are
 * `errors` and `warnings`; `missing`: how many its caption counts that do not stand there.
 */
export class Item {
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
  repeats = childless;
  lastRecord = null;
  total = 0;
  count = 0;
  errors = 0;
  warnings = 0;
  missing = 0;
  isNear = false;
  isLarge = false;
  height = 0;
  ends = null;
  attributesKey = "";
  id = "";

  constructor(parent, built = null) {
    this.parent = parent;
    this.built = built;
    this.level = parent ? parent.level + 1 : 0;
    if (built) itemsByElement.set(built, this);
  }

  /** Makes it a line. */
  setLine(style, markup) {
    this.isLine = true;
    this.style = style;
    this.markup = markup;
    this.kind = kinds.includes(style) ? style : "other";
  }

  add(child) {
    if (this.children === childless) this.children = [];
    child.place = this.children.push(child) - 1;
  }

  /** Takes a list of the page as one that holds children; `folds` are the blocks that fold away with it. */
  addList(list) {
    let block = list;
    while (this.built && block.parentElement !== this.built) block = block.parentElement;
    this.lists = [...this.lists, list];
    if (!this.folds.includes(block)) this.folds = [...this.folds, block];
  }

  /** The row's element; a line's is built when it is asked for. */
  get element() {
    if (isHollow(this)) buildRows([this]);
    return this.built;
  }

  get caption() {
    return (this.foundCaption ??= captionOf(this.element));
  }

  /** The text of a line whose markup is but text and whole links; of another row null. */
  get plain() {
    if (this.foundPlain === undefined) this.foundPlain = this.isLine ? plainText(this.markup) : null;
    return this.foundPlain;
  }

  get isBranch() {
    return this.children.length > 0;
  }

  get isRepeat() {
    return this.record !== this;
  }
}

/** The item that a row's element belongs to. */
export const itemOf = (element) => itemsByElement.get(element) ?? null;

function captionOf(element) {
  const second = element.firstElementChild?.nextElementSibling;
  if (/^Content\b/.test(second?.className)) return second;
  return element.querySelector(":scope > .Content") ?? element;
}

function rowMarkup({ parent, style, markup, plain }) {
  const isShort = parent.children.length < heavyListRows;
  const tags = (text) => (isShort ? text : text.replaceAll("\n", ""));
  return `${tags(`\n${rowStart}`)}${style}">${plain === null ? "" : markup}${tags(rowEnd)}`;
}

/** A new row for each line, in a list of their own. When there are several lines, each must be plain. */
export function makeRows(lines) {
  const list = makeElement("ul");
  list.innerHTML = lines.map(rowMarkup).join("");
  const [first] = lines;
  if (first?.plain === null) {
    // By itself it can't reach beyond its row.
    list.querySelector(".Content").innerHTML = first.markup;
    disarm(list);
  }
  return list;
}

/** Whether a line has no row yet, or an empty one. */
export const isHollow = ({ isLine, built }) => isLine && !built?.firstChild;

/**
 * Makes empty rows for lines. A browser walks through all rows of a list for every change of one, and rows that are
 * made one after the other stand close together in its memory.
 */
export function makeHollowRows(lines) {
  const row = makeRows(lines.slice(0, 1)).firstElementChild;
  for (const line of lines) setRow(line, row.cloneNode());
}

function setRow(line, row) {
  line.built = row;
  if (line.id) row.id = line.id;
  itemsByElement.set(row, line);
}

/** Builds the rows of lines, in a list of their own. When there are several lines, each must be plain. */
export function buildRows(lines) {
  let row = makeRows(lines).firstElementChild;
  for (const line of lines) {
    if (line.built) line.built.append(...row.childNodes);
    else setRow(line, row);
    row = row.nextElementSibling;
  }
}

function readText(item) {
  if (item.plain !== null) return item.plain;
  let text = "";
  for (const part of textParts(item.caption)) text += part ? part.data : "\n";
  return text;
}

/** The item's own text; line breaks in it are line feeds. */
export function textOf(item) {
  return (item.text ??= readText(item));
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

/** The tree in which an item stands. */
export function treeOf(item) {
  let node = item;
  while (node.parent) node = node.parent;
  return node;
}

export const linksOf = (item) => [...item.caption.querySelectorAll("a[href]")];

/** The addresses and texts of a row's links; of a plain line without its element. */
function addressesOf(item) {
  if (item.plain !== null && !/&[#\w]+;/.test(item.markup)) return item.markup.matchAll(plainLink);
  return linksOf(item).map((link) => [null, link.getAttribute("href"), link.textContent]);
}

/** The model items that a row links to, each once. */
export function linkedItems(item) {
  const found = new Map();
  for (const [, address, name] of addressesOf(item)) {
    const id = /[?&]id=(-?\d+)/.exec(address)?.[1];
    if (id && /:\/\/locate-item\b/.test(address) && !found.has(id)) found.set(id, { id, name, address });
  }
  return [...found.values()];
}
