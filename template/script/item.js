import { disarm, makeElement, textParts } from "./dom.js";
import { plainLink, plainText, rowEnd, rowStart, styleEnd } from "./markup.js";

export const kinds = ["error", "warning", "message", "other"];

// In a list of so many rows the line breaks between the rows' tags would double what the browser walks through.
export const heavyListRows = 1000;

const childless = [];
const itemsByElement = new WeakMap();

/**
 * A row of the tree that is a line, or may become one. Of these there are many: what only branches have is no field here.
 *
 * `markup`: of a row that is built when it is looked at, what the library wrote as its text;
 * `matches`: a line that the filters let through; `shown`: a row that stands in the tree, open branch or not;
 * `times`: how many alike lines the row stands for;
 * `record`: the first of the lines that show the same record, mostly the line itself; `repeats`: the others;
 * `origin`: of a line in the list of all lines, the line in its branch; `number`: its place in the page as written;
 * `foundPlain` and what follows it: found when it is first asked for, of equal lines in one of them; `key`: what the row
 * was sorted by; `height`: how high it was when it was laid out.
 */
export class Item {
  kind = "";
  matches = true;
  shown = true;
  times = 0;
  record = this;
  origin = this;
  repeats = childless;
  markup = undefined;
  number = 0;
  index = 0;
  place = 0;
  isNear = false;
  // Not 0: a browser would make all items anew for the first height that is no whole number.
  height = undefined;
  id = "";
  foundPlain = undefined;
  folded = undefined;
  mask = undefined;
  numbers = undefined;
  ratio = undefined;
  size = undefined;
  key = undefined;
  parent = null;
  built = null;

  /** Makes it a line; `style` is the class of its caption. */
  setLine(style, markup) {
    // The text that was cut out of the content goes, which a long page has many of.
    this.kind = kinds[kinds.indexOf(style)] ?? "other";
    if (this.kind === "other") this.otherStyle = style;
    this.markup = markup;
    return this;
  }

  get isLine() {
    return this.kind !== "";
  }

  /** The class of a line's caption. */
  get style() {
    return this.otherStyle ?? this.kind;
  }

  get level() {
    return this.parent.level + 1;
  }

  /** The row's element; it is built when it is asked for, unless the library wrote it. */
  get element() {
    if (!this.built) buildRows([this]);
    return this.built;
  }

  get caption() {
    return captionOf(this.element);
  }

  /** Whether the row is built from its markup, and can be built again. */
  get isMade() {
    return this.markup !== undefined;
  }

  /** The text of a row whose markup is but text and whole links; of another row null. */
  get plain() {
    if (this.foundPlain === undefined) this.foundPlain = this.isMade ? plainText(this.markup) : null;
    return this.foundPlain;
  }

  get isBranch() {
    return this.children.length > 0;
  }

  get isRepeat() {
    return this.record !== this;
  }
}

Object.assign(Item.prototype, {
  children: childless,
  rows: childless,
  lists: childless,
  folds: childless,
  isOpen: true,
});

/**
 * A row that may have others below it, or (without an element) one of the page's trees, which is the parent of its top
 * rows.
 *
 * `lists`: the page's lists that hold its children; `folds`: what folds away with the branch;
 * `rows`: the children that are shown;
 * `total`: how many records stand below it, and `totals` of each kind; `count`: how many of them the filters let
 * through; of these are `errors`, `warnings` and `messages`; `missing`: how many its caption counts that do not stand there;
 * `foldedName`: its caption as the search compares it; `captionHits`: what of a search its caption and those around hold.
 */
export class Branch extends Item {
  children = childless;
  rows = childless;
  lists = childless;
  folds = childless;
  isOpen = true;
  total = 0;
  totals = null;
  count = 0;
  errors = 0;
  warnings = 0;
  messages = 0;
  missing = 0;
  ends = null;
  foldedName = undefined;
  captionHits = childless;

  constructor(parent, built = null) {
    super();
    this.parent = parent;
    this.built = built;
    this.ownLevel = parent ? parent.level + 1 : 0;
    if (built) itemsByElement.set(built, this);
  }

  get level() {
    return this.ownLevel;
  }

  /** Makes it a folded branch with this caption. */
  setBranch(markup) {
    this.isOpen = false;
    this.markup = markup;
  }

  add(child) {
    if (this.children === childless) this.children = [];
    child.parent = this;
    child.place = this.children.push(child) - 1;
  }

  /** Takes a list of the page as one that holds children; `folds` are the blocks that fold away with it. */
  addList(list) {
    let block = list;
    while (this.built && block.parentElement !== this.built) block = block.parentElement;
    this.lists = [...this.lists, list];
    if (!this.folds.includes(block)) this.folds = [...this.folds, block];
  }
}

/** The item that a row's element belongs to. */
export const itemOf = (element) => itemsByElement.get(element) ?? null;

function captionOf(element) {
  const second = element.firstElementChild?.nextElementSibling;
  if (/^Content\b/.test(second?.className)) return second;
  return element.querySelector(":scope > .Content") ?? element;
}

const rowStartOf = ({ isLine, isOpen, style }) =>
  isLine
    ? `${rowStart}${style}${styleEnd}`
    : `<li class="Node ${isOpen ? "ExpandOpen" : "ExpandClosed"}">\n<div class="Expand"></div>\n<div class="Content">`;

// What is folded is left to the browser's own search.
const rowEndOf = ({ isLine, isOpen }) =>
  isLine
    ? rowEnd
    : `</div>\n<ul class="Container" role="group"${isOpen ? "" : ' hidden="until-found"'}></ul>\n</li>`;

function rowMarkup(item) {
  const isShort = item.parent.children.length < heavyListRows;
  const tags = (text) => (isShort ? text : text.replaceAll("\n", ""));
  return `${tags(`\n${rowStartOf(item)}`)}${item.plain === null ? "" : item.markup}${tags(rowEndOf(item))}`;
}

/** A new row for each item, in a list of their own. When there are several items, each must be plain. */
export function makeRows(items) {
  const list = makeElement("ul");
  list.innerHTML = items.map(rowMarkup).join("");
  const [first] = items;
  if (first?.plain === null) {
    // By itself it can't reach beyond its row.
    list.querySelector(".Content").innerHTML = first.markup;
    disarm(list);
  }
  return list;
}

/** Builds the rows of items, in a list of their own. When there are several items, each must be plain. */
export function buildRows(items) {
  let row = makeRows(items).firstElementChild;
  for (const item of items) {
    item.built = row;
    if (item.origin.id) row.id = item.origin.id;
    itemsByElement.set(row, item);
    if (!item.isLine) item.lists = item.folds = [row.lastElementChild];
    row = row.nextElementSibling;
  }
}

/** Takes a row that was built from its markup out of the page; it is built anew when it is asked for. */
export function dropRow(item) {
  const { previousSibling } = item.built;
  if (previousSibling?.nodeType === Node.TEXT_NODE) previousSibling.remove();
  item.built.remove();
  item.built = null;
  if (!item.isLine) item.lists = item.folds = childless;
}

function readText(item) {
  let text = "";
  for (const part of textParts(item.caption)) text += part ? part.data : "\n";
  return text;
}

/** The row whose text is read for all that show the same. */
const sourceOf = (item) => item.origin.record;

/** The item's own text; line breaks in it are line feeds. */
export function textOf(item) {
  const source = sourceOf(item);
  return source.plain ?? (source.readText ??= readText(source));
}

/** The caption of a branch without the count behind it. */
export function nameOf(item) {
  return textOf(item).replace(/ \(\d+\)$/, "");
}

/** The item's text as the search compares it. */
export function foldedOf(item) {
  const source = sourceOf(item);
  return (source.folded ??= fold(textOf(source)));
}

/** White space is as good as a blank, however much there is, and "е" as "ё". */
export function fold(text) {
  const lower = text.toLowerCase().replaceAll("ё", "е");
  return /[\t-\r\u00a0\u2000-\u202f]| {2}/.test(lower) ? lower.replace(/\s+/g, " ") : lower;
}

/** What remains of a line when its numbers are taken out; one blank is as good as another. */
export function maskOf(item) {
  const source = sourceOf(item);
  return (source.mask ??= textOf(source)
    .replace(/[-+\u2212]?\d+(?:[.,\u2009\u202f\u00a0]\d+)*/g, "#")
    .replace(/[\u00a0\u2000-\u202f]/g, " "));
}

/** The names of the branches around an item, outermost first. */
export function pathOf(item) {
  const path = [];
  for (let at = item.parent; at.parent; at = at.parent) path.unshift(nameOf(at));
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
