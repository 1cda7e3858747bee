import { countShown } from "./counts.js";
import { foldedOf, maskOf, textOf } from "./item.js";
import { parseQuery } from "./search.js";
import { say } from "./texts.js";

/**
 * What the user lets through: the text of a search, the kinds that are hidden, and whether alike lines are
 * folded; `unfolded` are the heads of alike lines that are unfolded all the same.
 */
export class Filters {
  search = "";
  hidden = [];
  alike = false;
  unfolded = new Set();
  query = parseQuery("");

  set(changes) {
    Object.assign(this, changes);
    this.query = parseQuery(this.search);
  }

  /** Whether lines may be hidden. */
  get isActive() {
    return this.hidden.length > 0 || !this.query.isEmpty;
  }

  /** The filters in words. */
  get words() {
    const parts = [];
    if (this.hidden.length)
      parts.push(say("hiddenKinds", this.hidden.map((kind) => say(kind).toLowerCase()).join(", ")));
    if (!this.query.isEmpty) parts.push(say("searched", this.search));
    if (this.alike) parts.push(say("folded"));
    return parts;
  }
}

function matchLines(model, { hidden, query }) {
  for (const line of model.lines) {
    line.matches = !hidden.includes(line.kind);
    if (!line.matches || query.isEmpty) continue;
    foldedOf(line);
    textOf(line);
    line.matches = query.test(line);
  }
}

/** Of the lines of one branch that are alike, the first stands for all. */
function foldAlike(model, unfolded) {
  const heads = new Map();
  for (const line of model.lines) {
    if (!line.matches || line.isBranch) continue;
    const key = `${line.parent.index} ${line.kind} ${maskOf(line)}`;
    const head = heads.get(key);
    if (!head) heads.set(key, line);
    else if (!unfolded.has(head)) {
      line.shown = false;
      line.times = 0;
      ++head.times;
    }
  }
}

/**
 * Works out which lines match and which rows are shown. A branch is shown when something in it is; one that never
 * held a line is shown as long as nothing is filtered.
 */
export function applyFilters(model, filters) {
  matchLines(model, filters);
  for (const item of model.items) {
    item.shown = item.isLine ? item.matches : !filters.isActive && !item.isBranch;
    item.times = item.isLine && item.matches ? 1 : 0;
  }
  if (filters.alike) foldAlike(model, filters.unfolded);
  for (let at = model.items.length - 1; at >= 0; --at) {
    const item = model.items[at];
    if (item.shown) item.parent.shown = true;
  }
  countShown(model);
  for (const node of model.branches) {
    node.rows = node.children.filter((child) => child.shown);
    node.ends = null;
  }
}
