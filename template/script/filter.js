import { countKinds, countShown } from "./counts.js";
import { kinds, maskOf } from "./item.js";
import { isWorse } from "./numbers.js";
import { Query } from "./search.js";
import { say } from "./texts.js";

/**
 * What the user lets through: the text of a search, the kinds that are hidden, and whether alike lines are
 * folded, the order of the lines, and whether all stand in one list; `unfolded` are the heads of alike lines that are unfolded all the same.
 */
export class Filters {
  search = "";
  hidden = [];
  alike = false;
  order = "page";
  flat = false;
  unfolded = new Set();
  query = new Query("");

  set(changes) {
    const { search } = this;
    Object.assign(this, changes);
    if (this.search !== search) this.query = new Query(this.search);
  }

  get isWorstFirst() {
    return this.flat && (this.order === "ratio" || this.order === "size");
  }

  get isErrorsOnly() {
    return !this.hidden.includes("error") && this.hidden.length === kinds.length - 1;
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
    if (this.order !== "page") parts.push(say(`order${this.order}`).toLowerCase());
    if (this.alike) parts.push(say("folded"));
    return parts;
  }
}

/** Works out which of the written lines match; those in one list match where their records do in any place. */
function matchLines(model, { hidden, query }, written) {
  const matchKinds = () => {
    for (const line of written.lines) line.matches = !hidden.includes(line.kind);
  };
  matchKinds();
  if (!query.isEmpty) {
    query.match(written);
    if (query.isEmpty) matchKinds();
  }
  if (!model.isFlat) return;
  for (const line of model.lines) {
    const { origin } = line;
    line.matches = origin.matches || origin.repeats.some(({ matches }) => matches);
  }
}

/** Of the lines of one branch that are alike, the worst stands for all. */
function foldAlike(model, unfolded) {
  const groups = new Map();
  for (const line of model.lines) {
    if (!line.matches || line.isBranch) continue;
    const key = `${line.parent.index} ${line.kind} ${maskOf(line)}`;
    const group = groups.get(key);
    if (group) group.push(line);
    else groups.set(key, [line]);
  }
  for (const group of groups.values()) {
    if (group.length < 2 || group.some((line) => unfolded.has(line))) continue;
    const head = group.reduce((worst, line) => (isWorse(line, worst) ? line : worst));
    for (const line of group) {
      line.shown = line === head;
      line.times = line === head ? group.length : 0;
    }
    head.alike = group;
  }
}

/**
 * Works out which lines match and which rows are shown. A branch is shown when something in it is; one that never
 * held a line is shown as long as nothing is filtered. `written` are the rows as they were written.
 */
export function applyFilters(model, filters, written) {
  matchLines(model, filters, written);
  for (const item of model.items) {
    item.shown = item.isLine ? item.matches : !filters.isActive && !item.isBranch;
    item.times = item.isLine && item.matches ? 1 : 0;
  }
  if (filters.alike) foldAlike(model, filters.unfolded);
  for (let at = model.items.length - 1; at >= 0; --at) {
    const item = model.items[at];
    if (item.shown) item.parent.shown = true;
  }
  if (filters.query.isEmpty) countKinds(model, filters.hidden);
  else countShown(model);
  const isWhole = !filters.isActive && !filters.alike;
  for (const node of model.branches) {
    node.rows = isWhole ? node.children : node.children.filter((child) => child.shown);
    node.ends = null;
  }
}
