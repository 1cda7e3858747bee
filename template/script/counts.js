import { nameOf, textOf } from "./item.js";

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

/** How many records stand below each branch. */
export function countTotals(model) {
  for (const node of model.branches) node.total = 0;
  forEachLine(model, (line) => countUp(line, (node) => ++node.total));
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
