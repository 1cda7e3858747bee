import { kinds, nameOf, textOf } from "./item.js";

/** Counts a line once in each branch around it, in which its record may stand several times. */
function countUp(line, count) {
  for (let node = line.parent; node && node.lastRecord !== line.record; node = node.parent) {
    node.lastRecord = line.record;
    count(node);
  }
}

function forEachLine({ branches, records }, act) {
  for (const node of branches) node.lastRecord = null;
  for (const record of records) {
    act(record);
    for (const line of record.repeats) act(line);
  }
}

/** How many records of each kind stand below each branch. */
export function countTotals(model) {
  for (const node of model.branches) node.totals = { error: 0, warning: 0, message: 0, other: 0 };
  forEachLine(model, (line) => countUp(line, ({ totals }) => ++totals[line.kind]));
  for (const node of model.branches) node.total = countOf(node, kinds);
}

const countOf = ({ totals }, own) => own.reduce((sum, kind) => sum + totals[kind], 0);

/** How many of them stand in the kinds that are not hidden, and how many of these are errors and warnings. */
export function countKinds(model, hidden) {
  const own = kinds.filter((kind) => !hidden.includes(kind));
  for (const node of model.branches) {
    node.count = countOf(node, own);
    node.errors = hidden.includes("error") ? 0 : node.totals.error;
    node.warnings = hidden.includes("warning") ? 0 : node.totals.warning;
  }
}

/** How many of them the filters let through, and how many of these are errors and warnings. */
export function countShown(model) {
  for (const node of model.branches) node.count = node.errors = node.warnings = 0;
  forEachLine(model, (line) => {
    if (!line.matches) return;
    countUp(line, (node) => {
      ++node.count;
      if (line.kind === "error") ++node.errors;
      else if (line.kind === "warning") ++node.warnings;
    });
  });
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
