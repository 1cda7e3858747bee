import { finish } from "./dom.js";
import { buildRows } from "./item.js";

const atOnce = 500;

const isPlaced = ({ built }) => Boolean(built?.isConnected);

/** Puts rows that follow each other in a branch into its list, behind what is there before them. */
function placeRows(rows) {
  const [first] = rows;
  const { parent } = first;
  if (parent.parent) placeRow(parent);
  if (!first.built) buildRows(rows);
  const { children, lists } = parent;
  let before = first.place - 1;
  while (before >= 0 && !isPlaced(children[before])) --before;
  const made = first.built.parentNode?.childNodes ?? [first.built];
  if (before < 0) lists[0].prepend(...made);
  else children[before].built.after(...made);
}

/** Puts a row into its list if it is not there yet. */
export function placeRow(row) {
  if (!isPlaced(row)) placeRows([row]);
}

const canBeBuilt = (row) => row && !row.built && row.plain !== null;

/** Puts rows of one branch into its list in steps, those that follow each other together. */
function* placeSteps(rows) {
  let at = 0;
  while (at < rows.length) {
    const from = at;
    while (at < from + atOnce && canBeBuilt(rows[at]) && rows[at].place === rows[from].place + at - from)
      ++at;
    if (at > from) placeRows(rows.slice(from, at));
    else placeRow(rows[at++]);
    yield;
  }
}

export const placeAll = (rows) => finish(placeSteps(rows));

/** Puts all rows that are not there yet into their lists, in steps. */
export function* fillSteps({ branches }) {
  for (const { children } of branches) yield* placeSteps(children);
}
