import { kinds, nameOf, textOf } from "./item.js";

const sumOf = (counts, own) => own.reduce((sum, kind) => sum + counts[kind], 0);

function countLine(node, { kind }, by) {
  node.count += by;
  if (kind === "error") node.errors += by;
  else if (kind === "warning") node.warnings += by;
  else if (kind === "message") node.messages += by;
}

/** Adds what each branch holds to the branch around it. */
function addUp(branches) {
  // What lies inside a branch stands behind it.
  for (let at = branches.length - 1; at >= 0; --at) {
    const { parent, count, errors, warnings, messages } = branches[at];
    if (!parent) continue;
    parent.count += count;
    parent.errors += errors;
    parent.warnings += warnings;
    parent.messages += messages;
  }
}

/** The innermost branch that holds two branches, or null. */
function branchAround(one, other) {
  let [a, b] = [one, other];
  while (a && a !== b)
    if (a.level < b.level) b = b.parent;
    else a = a.parent;
  return a;
}

/**
 * Counts the places of a record that are shown, each in its branch. Where a place and the one before it come
 * together one is taken off: when the branches are added up, the record counts once in each of them.
 */
function countPlaces(record) {
  const { repeats } = record;
  let places = 0;
  let before = null;
  for (let at = -1; at < repeats.length; ++at) {
    const line = at < 0 ? record : repeats[at];
    if (!line.matches) continue;
    const { parent } = line;
    countLine(parent, line, 1);
    const both = before && branchAround(before, parent);
    if (both) countLine(both, line, -1);
    before = parent;
    ++places;
  }
  return places;
}

/**
 * How many records below each branch the filters let through, and how many of them are of which kind. Answers how many
 * there are, and in how many places.
 */
export function countShown({ branches, singles, shared }) {
  for (const node of branches) node.count = node.errors = node.warnings = node.messages = 0;
  let shown = 0;
  for (const line of singles) {
    if (!line.matches) continue;
    countLine(line.parent, line, 1);
    ++shown;
  }
  let places = shown;
  for (const record of shared) {
    const own = countPlaces(record);
    places += own;
    if (own) ++shown;
  }
  addUp(branches);
  return { shown, places };
}

/** How many records of each kind stand below each branch; in the model how many there are, and in how many places. */
export function countTotals(model) {
  const { branches, records } = model;
  model.singles = [];
  model.shared = [];
  for (const record of records) (record.repeats.length ? model.shared : model.singles).push(record);
  countShown(model);
  for (const node of branches) {
    const { count: total, errors: error, warnings: warning, messages: message } = node;
    node.total = total;
    node.totals = { error, warning, message, other: total - error - warning - message };
  }
  [model.totals, model.places] = [0, 1].map(() => ({ error: 0, warning: 0, message: 0, other: 0 }));
  for (const { kind, repeats } of records) {
    ++model.totals[kind];
    model.places[kind] += 1 + repeats.length;
  }
}

/** The same as `countShown` answers where nothing but kinds is hidden. */
export function countKinds({ branches, totals, places }, hidden) {
  const own = kinds.filter((kind) => !hidden.includes(kind));
  for (const node of branches) {
    node.count = hidden.length ? sumOf(node.totals, own) : node.total;
    node.errors = hidden.includes("error") ? 0 : node.totals.error;
    node.warnings = hidden.includes("warning") ? 0 : node.totals.warning;
  }
  return { shown: sumOf(totals, own), places: sumOf(places, own) };
}

/** How many lines the caption of a branch counts that do not stand below it. */
export function missingBelow(node) {
  const [, told] = / \((\d+)\)$/.exec(textOf(node)) ?? [];
  return Math.max(0, (told ?? 0) - node.total);
}

/** The branches whose captions count more lines than stand below them, each with its name. */
export function findMissing({ items }) {
  return items
    .filter((item) => item.isBranch || item.lists.length)
    .map((item) => ({ item, missing: (item.missing = missingBelow(item)) }))
    .filter(({ missing }) => missing)
    .map(({ item, missing }) => `${nameOf(item)}: ${missing}`);
}
