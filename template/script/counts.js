import { kinds, nameOf, textOf } from "./item.js";

const noneOfAny = () => ({ error: 0, warning: 0, message: 0, other: 0 });

/** Counts a line once in each branch around it, in which its record may stand several times. */
function countUp(line, count) {
  for (let node = line.parent; node && node.lastRecord !== line.record; node = node.parent) {
    node.lastRecord = line.record;
    count(node, line);
  }
}

const countTotal = ({ totals }, { kind }) => ++totals[kind];

function countLine(node, { kind }) {
  ++node.count;
  if (kind === "error") ++node.errors;
  else if (kind === "warning") ++node.warnings;
}

/** How many records of each kind stand below each branch; in the model how many there are, and in how many places. */
export function countTotals(model) {
  for (const node of model.branches) {
    node.totals = noneOfAny();
    node.lastRecord = null;
  }
  model.totals = noneOfAny();
  model.places = noneOfAny();
  for (const record of model.records) {
    countUp(record, countTotal);
    for (const line of record.repeats) countUp(line, countTotal);
    ++model.totals[record.kind];
    model.places[record.kind] += 1 + record.repeats.length;
  }
  for (const node of model.branches) node.total = sumOf(node.totals, kinds);
}

const sumOf = (totals, own) => own.reduce((sum, kind) => sum + totals[kind], 0);

/**
 * How many of them stand in the kinds that are not hidden, and how many of these are errors and warnings. Answers how
 * many there are, and in how many places.
 */
export function countKinds(model, hidden) {
  const own = kinds.filter((kind) => !hidden.includes(kind));
  for (const node of model.branches) {
    node.count = hidden.length ? sumOf(node.totals, own) : node.total;
    node.errors = hidden.includes("error") ? 0 : node.totals.error;
    node.warnings = hidden.includes("warning") ? 0 : node.totals.warning;
  }
  return { shown: sumOf(model.totals, own), places: sumOf(model.places, own) };
}

/** The same of those that the filters let through. */
export function countShown({ branches, records }) {
  for (const node of branches) {
    node.count = node.errors = node.warnings = 0;
    node.lastRecord = null;
  }
  let [shown, places] = [0, 0];
  for (const record of records) {
    const before = places;
    if (record.matches) {
      countUp(record, countLine);
      ++places;
    }
    for (const line of record.repeats) {
      if (!line.matches) continue;
      countUp(line, countLine);
      ++places;
    }
    if (places > before) ++shown;
  }
  return { shown, places };
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
