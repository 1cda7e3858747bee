// The order of the lines within their branches, and all lines of the page in one list.

import { build, page } from "./dom.js";
import { Branch, foldedOf, Item } from "./item.js";
import { ratioOf, sizeOf } from "./numbers.js";

export const orders = ["page", "text", "size", "ratio"];

const measures = { size: sizeOf, ratio: ratioOf };

/** What is larger comes first; a branch is as large as the largest line in it. */
function keyOf(item, measure) {
  if (item.isLine) return measure(item.origin);
  return item.children.reduce((largest, child) => Math.max(largest, keyOf(child, measure)), -1);
}

/** A text by which texts can be compared quickly: numbers stand in the order of their values, ё as е. */
function textKeyOf(item) {
  const parts = foldedOf(item).split(/0*(\d+)/);
  // Every second part is a number. To have them replaced one by one takes nearly twice as long.
  for (let at = 1; at < parts.length; at += 2)
    parts[at] = String.fromCharCode(0x30 + parts[at].length) + parts[at];
  return parts.join("");
}

function sorted(items, order) {
  if (order === "page") return items.toSorted((a, b) => a.number - b.number);
  if (order === "text") {
    for (const item of items) item.key = textKeyOf(item);
    return items.toSorted((a, b) => (a.key < b.key ? -1 : a.key > b.key ? 1 : a.number - b.number));
  }
  for (const item of items) item.key = keyOf(item, measures[order]);
  return items.toSorted((a, b) => b.key - a.key || a.number - b.number);
}

/** Puts the rows that are in the page into the order of their items. */
function moveRows({ children, lists }) {
  for (const { built } of children) if (built?.isConnected) lists[0].append(built);
}

function collect(node, items) {
  for (const child of node.children) {
    child.index = items.push(child) - 1;
    if (child.isBranch) collect(child, items);
  }
}

/** Sorts the rows of each branch, each row among those of its list. */
export function sortRows(model, order) {
  for (const node of model.branches) {
    if (node.lists.length > 1 || node.children.length < 2) continue;
    node.children = sorted(node.children, order);
    node.children.forEach((child, place) => (child.place = place));
    moveRows(node);
  }
  model.items = [];
  for (const tree of model.trees) collect(tree, model.items);
  model.lines = model.items.filter((item) => item.isLine);
}

/** The same records in one list, each once; a page that is but one list is that itself. */
export function makeFlatModel(written) {
  const { records, branches, totals, isItemPage } = written;
  if (branches.length === 1 && branches[0].lists.length === 1) return written;
  const list = build("ul", { class: "Container" });
  page.querySelector("#lines").append(list);
  const tree = new Branch(null);
  tree.addList(list);
  tree.index = -1;
  const lines = records.map((record, index) => {
    const line = new Item().setLine(record.style, record.markup);
    line.origin = record;
    line.number = line.index = index;
    tree.add(line);
    return line;
  });
  // Each record stands here once: what was counted of them holds for the list.
  tree.total = lines.length;
  tree.totals = totals;
  return {
    items: lines,
    trees: [tree],
    branches: [tree],
    lines,
    records: lines,
    singles: lines,
    shared: [],
    totals,
    places: totals,
    isItemPage,
    isFlat: true,
  };
}
