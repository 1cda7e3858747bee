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

  /** `longest` tells how long the longest text is that will be searched. */
  constructor(longest) {
    this.longest = longest;
  }

  set(changes) {
    const { search } = this;
    Object.assign(this, changes);
    if (this.search !== search) this.query = new Query(this.search, this.longest);
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
  if (!query.isEmpty) query.match(written, hidden);
  // A query that has taken too long is as good as none.
  if (query.isEmpty) for (const line of written.lines) line.matches = !hidden.includes(line.kind);
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
    line.times = line.matches ? 1 : 0;
    if (!line.matches || line.isBranch) continue;
    const key = `${line.parent.index} ${line.kind} ${maskOf(line)}`;
    const group = groups.get(key);
    if (group) group.push(line);
    else groups.set(key, [line]);
  }
  for (const group of groups.values()) {
    if (group.length < 2 || group.some(({ origin }) => unfolded.has(origin))) continue;
    const head = group.reduce((worst, line) => (isWorse(line, worst) ? line : worst));
    for (const line of group) line.times = line === head ? group.length : 0;
    head.alike = group;
  }
}

const none = [];

function isShown(row, isActive, alike) {
  if (!row.isLine) return row.isBranch ? row.rows.length > 0 : !isActive;
  if (!alike) row.times = row.matches ? 1 : 0;
  return row.rows.length > 0 || row.times > 0;
}

/** Takes up which rows are shown, and answers how many. Most branches hold so few that a loop by places is quickest. */
function showRows(rows, isActive, alike) {
  let count = 0;
  for (let at = 0; at < rows.length; ++at) {
    const row = rows[at];
    row.shown = isShown(row, isActive, alike);
    if (row.shown) ++count;
  }
  return count;
}

/**
 * Takes up which rows of a branch are shown. A branch is shown when something in it is; one that never held a line as
 * long as nothing is filtered.
 */
function showBranch(node, isActive, alike) {
  const { children } = node;
  const count = showRows(children, isActive, alike);
  // Most branches hold few lines and show all of them or none.
  if (count === children.length) node.rows = children;
  else node.rows = count ? children.filter(({ shown }) => shown) : none;
  node.ends = null;
}

/**
 * Works out which lines match and which rows are shown. `written` are the rows as they were written. Answers how many
 * records are shown, and in how many places of the tree.
 */
export function applyFilters(model, filters, written) {
  matchLines(model, filters, written);
  if (filters.alike) foldAlike(model, filters.unfolded);
  const { isActive, alike } = filters;
  // What lies inside a branch stands behind it.
  for (let at = model.branches.length - 1; at >= 0; --at) showBranch(model.branches[at], isActive, alike);
  return filters.query.isEmpty ? countKinds(model, filters.hidden) : countShown(model);
}
