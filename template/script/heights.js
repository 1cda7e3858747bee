import { boxOf, build } from "./dom.js";
import { makeRows, treeOf } from "./item.js";

const sampledBranchRows = 200;
const sampledBranches = 40;
// Firefox holds nothing in view below 8.94 million pixels, as the bar has to be, and Chromium lays out nothing below
// 33.5 million, which a zoom takes its part of.
const greatestHeight = 8.9e6;

/** How high rows are: measured, or as long as they were not laid out, guessed from samples. */
export class Heights {
  rowHeight = 0;
  lineHeight = 0;

  constructor(model, main) {
    this.model = model;
    this.main = main;
    this.#guess();
  }

  /** Forgets what was measured and guesses anew. */
  forget() {
    for (const item of this.model.items) item.height = undefined;
    for (const node of this.model.branches) node.ends = null;
    this.#guess();
  }

  #guess() {
    const { model } = this;
    this.width = this.main.clientWidth;
    const large = model.branches.filter((node) => node.children.length > sampledBranchRows);
    const samples = large
      .slice(0, sampledBranches)
      .map((branch) => ({ branch, own: pick(branch.children, 16).filter((row) => row.isLine) }));
    samples.push({ branch: this, own: pick(model.lines, 100) });
    const heights = this.#measureCopies(samples.flatMap(({ own }) => own));
    this.rowHeight = Math.min(...heights);
    for (const { branch, own } of samples) {
      const sum = heights.splice(0, own.length).reduce((total, height) => total + height, 0);
      if (own.length) branch.lineHeight = sum / own.length;
    }
  }

  #measureCopies(items) {
    const list = build("ul", { class: "Container", "aria-hidden": "true" });
    for (const item of items) {
      const row = makeRows([item]).firstElementChild;
      row.dataset.near = "";
      row.style.marginLeft = `calc(${item.level - 1} * var(--indent))`;
      list.append(row);
    }
    this.main.append(list);
    const heights = Array.from(list.children, (row) => boxOf(row).height);
    list.remove();
    return heights;
  }

  /** Takes the heights that laid out rows really have; true when they differ from what was thought. */
  measure(items) {
    let differs = false;
    for (const item of items) {
      let { height } = boxOf(item.element);
      if (item.isOpen) for (const block of item.folds) height -= boxOf(block).height;
      if (Math.abs(height - this.of(item)) > 0.5) {
        differs = true;
        this.forgetAround(item);
      }
      item.height = height;
    }
    return differs;
  }

  /** The height of a row without the branch below it. */
  of(item) {
    if (item.height) return item.height;
    if (item.times > 1 || !item.isLine) return this.rowHeight;
    return item.parent.lineHeight ?? this.lineHeight;
  }

  /** Where each shown row of a branch ends, measured from the top of its list. */
  endsOf(node) {
    if (node.ends) return node.ends;
    const ends = new Float64Array(node.rows.length);
    let end = 0;
    node.rows.forEach((row, at) => {
      end += this.of(row);
      if (row.isOpen && row.rows.length) end += this.endsOf(row).at(-1);
      ends[at] = end;
    });
    return (node.ends = ends);
  }

  /** After a row has changed: where the rows end around it is to be worked out anew. */
  forgetAround(item) {
    for (let node = item.isBranch ? item : item.parent; node; node = node.parent) node.ends = null;
  }

  /** How far below the top of its tree's list a row stands, or would. */
  #depthOf(item) {
    const { parent } = item;
    const above = this.endsOf(parent)[parent.rows.indexOf(item) - 1] ?? 0;
    return above + (parent.parent ? this.#depthOf(parent) + this.of(parent) : 0);
  }

  #wholeOf(tree) {
    return tree.rows.length ? this.endsOf(tree).at(-1) : 0;
  }

  /** How much of the height of rows that are not laid out the page can give them. */
  get scale() {
    const whole = this.model.trees.reduce((sum, tree) => sum + this.#wholeOf(tree), 0);
    return Math.min(1, greatestHeight / whole);
  }

  /** Where in the window a tree would begin with all its rows laid out, and `item`, which is, where it stands. */
  #startOf(tree, item) {
    const { top, bottom } = boxOf(tree.lists[0]);
    const { scale } = this;
    if (scale === 1) return top;
    if (item && treeOf(item) === tree) return boxOf(item.element).top - this.#depthOf(item);
    if (top >= 0) return top;
    const last = bottom - this.#wholeOf(tree);
    return item ? last : Math.max(top / scale, last);
  }

  /** Where in the window a laid out row stands. */
  topOf(item) {
    return this.#startOf(treeOf(item), item) + this.#depthOf(item);
  }

  /** A row that belongs between two heights of the window, where rows have less room than they take. */
  placeBetween(top, bottom) {
    if (this.scale === 1) return null;
    for (const { branch, first, last } of this.between(top, bottom))
      for (const item of branch.rows.slice(first, last)) {
        const place = { item, top: this.#startOf(treeOf(item)) + this.#depthOf(item) };
        if (place.top >= top) return place;
      }
    return null;
  }

  /** The rows of an item's tree from so much above the item's top to so much below it, like `between`. */
  around(item, above, below) {
    const own = treeOf(item);
    const depth = this.#depthOf(item);
    return this.#partsOf((tree) => (tree === own ? 0 : Infinity), depth - above, depth + below);
  }

  /**
   * The rows between two heights of the window: for each branch there, the first and the end of its rows. `item` is
   * a row that stands where it belongs.
   */
  between(top, bottom, item) {
    return this.#partsOf((tree) => this.#startOf(tree, item), top, bottom);
  }

  #partsOf(startOf, top, bottom) {
    const parts = [];
    const add = (node, start) => {
      const ends = this.endsOf(node);
      const first = firstBeyond(ends, top - start);
      const part = { branch: node, first, last: first };
      parts.push(part);
      for (; part.last < node.rows.length; ++part.last) {
        const row = node.rows[part.last];
        const rowTop = start + (ends[part.last - 1] ?? 0);
        if (rowTop >= bottom) break;
        if (row.isOpen && row.rows.length) add(row, rowTop + this.of(row));
      }
    };
    for (const tree of this.model.trees) if (tree.rows.length) add(tree, startOf(tree));
    return parts;
  }
}

/** Index of the first end that lies beyond a position. */
function firstBeyond(ends, position) {
  let low = 0;
  let high = ends.length;
  while (low < high) {
    const middle = (low + high) >> 1;
    if (ends[middle] > position) high = middle;
    else low = middle + 1;
  }
  return low;
}

/** Up to `count` of the values, evenly spread. */
function pick(values, count) {
  const step = Math.max(1, values.length / count);
  return Array.from({ length: Math.min(count, values.length) }, (_, at) => values[Math.floor(at * step)]);
}
