import { foldedOf, maskOf, textOf } from "./model.js";

function matchLines(model, filter) {
  for (const line of model.lines) {
    line.matches = !filter.hidden.has(line.kind);
    if (!line.matches || filter.query.isEmpty) continue;
    foldedOf(line);
    textOf(line);
    line.matches = filter.query.test(line);
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
 * Works out which lines match and which rows are shown, and answers how many lines match. `filter`: `hidden`
 * kinds, `query`, `alike` and the heads of alike lines that are `unfolded` again. A branch is shown when
 * something in it is; one that never held a line is shown as long as nothing is filtered.
 */
export function applyFilter(model, filter) {
  matchLines(model, filter);
  const isFiltering = filter.hidden.size > 0 || !filter.query.isEmpty;
  let count = 0;
  for (const item of model.items) {
    item.shown = item.isLine ? item.matches : !isFiltering && !item.isBranch;
    item.times = item.isLine && item.matches ? 1 : 0;
    count += item.times;
  }
  if (filter.alike) foldAlike(model, filter.unfolded);
  for (let at = model.items.length - 1; at >= 0; --at) {
    const item = model.items[at];
    if (item.shown) item.parent.shown = true;
  }
  for (const node of model.branches) {
    node.rows = node.children.filter((child) => child.shown);
    node.ends = null;
  }
  return count;
}
